// The cells of a CSV text, one after another.
#pragma once

#include <cstdio>
#include <string>

#include "cli/csv_text.h"
#include "cli/options.h"

namespace NCli {

class CsvWalk {
  public:
    enum class End {
        OfCell,
        OfRow,
        Fault,       // a character after the closing quote
        Unfinished,  // no quote closes it
    };

    // From the text's beginning, read as the options say, or as the library does without them. The text has
    // to stay open.
    CsvWalk(const Options& options, std::FILE* text);

    // Goes to the next cell. False: there is none, or the one before was the last that could be read.
    bool Next();

    // Of the cell. Rows and lines count from 1, columns from 0.
    [[nodiscard]] std::size_t Row() const { return row_; }
    [[nodiscard]] std::size_t Column() const { return column_; }
    [[nodiscard]] std::size_t Line() const { return line_; }         // in which it begins
    [[nodiscard]] std::string CellName() const;                      // A7
    [[nodiscard]] const std::string& Text() const { return text_; }  // its first bytes, without quotes
    [[nodiscard]] End HowItEnds() const { return end_; }

  private:
    static constexpr std::size_t kMostText = 4096;

    CsvStep TakeCharacter();

    CsvCharacters characters_;
    CsvCells cells_;
    std::string text_;
    End end_ = End::OfRow;
    bool hasEnded_ = false;  // the text
    std::size_t row_ = 0;
    std::size_t column_ = 0;
    std::size_t line_ = 1;
    std::size_t lines_ = 1;  // to where the walk is
};

}  // namespace NCli
