// CSV text, walked through as the library's parser does.
#pragma once

#include <cstdio>

#include "api/xls2tki.h"
#include "cli/options.h"

namespace NCli {

inline constexpr int kEndOfText = -1;

// The characters of a CSV text. What is beyond ASCII may come as several, of which none is ASCII.
class CsvCharacters {
  public:
    // From the position of `text`, after a byte order mark. It has to stay open.
    CsvCharacters(std::FILE* text, Encoding encoding) : text_(text), isUtf16_(encoding == Encoding::Utf16) {}

    // A carriage return before a line feed is left out.
    int Next();

  private:
    int NextUnit();

    std::FILE* text_;
    bool isUtf16_;
    int ahead_ = kEndOfText;
};

enum class CsvStep {
    Quote,  // that opens a cell, or closes it or is doubled
    Character,
    EndOfCell,
    EndOfRow,
    Fault,  // a character after the closing quote
};

// Where cells and rows end in what it is given.
class CsvCells {
  public:
    explicit CsvCells(NXls2Tki::WideChar separator) : separator_(separator) {}

    // Takes the next character, and says what it is. Behind a fault there is nothing to take.
    CsvStep Take(int character);

  private:
    enum class Place { Start, Unquoted, Quoted, BehindQuote };

    int separator_;
    Place place_ = Place::Start;
};

}  // namespace NCli
