// The library's UTF-16 and the command line's UTF-8, and what people get to see of them.
#pragma once

#include <cstddef>
#include <cstdio>
#include <limits>
#include <string>
#include <string_view>

#include "api/xls2tki.h"

namespace NCli {

struct DecodedText {
    NXls2Tki::WideString text;  // a byte that is not part of UTF-8 is the lone surrogate U+DC00 plus the byte
    bool isUtf8;                // there is no such byte
};

DecodedText DecodeUtf8(std::string_view bytes);

struct Utf8Run {
    std::size_t size;  // in bytes
    bool isAscii;
};

// The whole characters of UTF-8 at the beginning, up to a byte that is not part of one. Where the bytes end
// amid a character, up to 3 of them remain.
Utf8Run MeasureUtf8(std::string_view bytes);

// Lone surrogates that DecodeUtf8 makes become their byte again, all others U+FFFD.
std::string EncodeUtf8(std::basic_string_view<NXls2Tki::WideChar> text);

// With each ASCII letter in lower case.
std::string LowerCase(std::string_view text);

// What a table or a workbook holds must not control the terminal, nor look like something else. So people are
// shown a question mark for each character that they do not see (platform/unseen.h).

inline constexpr std::size_t kWholeName = std::numeric_limits<std::size_t>::max();

// The name in one line of UTF-8; after `longest` UTF-16 units, "..." replaces the rest.
std::string ShownName(std::basic_string_view<NXls2Tki::WideChar> name, std::size_t longest);

// Writes UTF-8 text of several lines, in which line feeds and tabs stay as they are. Allocates nothing.
void Show(std::string_view text, std::FILE* stream);

// JSON of one line with an escape in place of each character above.
std::string EscapeUnseen(std::string_view json);

}  // namespace NCli
