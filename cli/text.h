// The library's UTF-16 and the command line's UTF-8.
#pragma once

#include <string>
#include <string_view>

#include "api/xls2tki.h"

namespace NCli {

struct DecodedText {
    NXls2Tki::WideString text;  // a byte that is not part of UTF-8 is the lone surrogate U+DC00 plus the byte
    bool isUtf8;                // there is no such byte
};

DecodedText DecodeUtf8(std::string_view bytes);

// Lone surrogates that DecodeUtf8 makes become their byte again, all others U+FFFD.
std::string EncodeUtf8(std::basic_string_view<NXls2Tki::WideChar> text);

}  // namespace NCli
