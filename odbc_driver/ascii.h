// Letters and blanks of keywords. Everything beyond ASCII is left as it is.
#pragma once

#include <algorithm>
#include <string_view>

namespace NOdbcDriver {

inline constexpr std::u16string_view kBlanks = u" \t\r\n\f\v";

inline bool IsBlank(char16_t unit) { return kBlanks.find(unit) != std::u16string_view::npos; }

inline char16_t ToUpper(char16_t unit) {
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
}

inline bool EqualsIgnoringCase(std::u16string_view a, std::u16string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char16_t x, char16_t y) { return ToUpper(x) == ToUpper(y); });
}

// Without the blanks at both ends.
inline std::u16string_view Trim(std::u16string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::u16string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace NOdbcDriver
