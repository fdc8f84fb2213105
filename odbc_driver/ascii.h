// Letters and blanks of keywords. Everything beyond ASCII is left as it is.
#pragma once

#include <algorithm>
#include <string_view>

#include "workbook/ascii_case.h"

namespace NOdbcDriver {

inline constexpr std::u16string_view kBlanks = u" \t\r\n\f\v";

inline bool IsBlank(char16_t unit) { return kBlanks.find(unit) != std::u16string_view::npos; }

inline bool EqualsIgnoringCase(std::u16string_view a, std::u16string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char16_t x, char16_t y) {
        return NWorkbook::WithoutAsciiCase(x) == NWorkbook::WithoutAsciiCase(y);
    });
}

// Without the blanks at both ends.
inline std::u16string_view Trim(std::u16string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::u16string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace NOdbcDriver
