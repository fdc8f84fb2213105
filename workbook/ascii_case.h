// Names without regard to the case of ASCII letters.
#pragma once

#include <string>
#include <string_view>

namespace NWorkbook {

// The small letter of a capital one of ASCII.
inline char16_t WithoutAsciiCase(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit - u'A' + u'a') : unit;
}

inline std::u16string WithoutAsciiCase(std::u16string_view name) {
    std::u16string folded(name);
    for (char16_t& unit : folded) unit = WithoutAsciiCase(unit);
    return folded;
}

}  // namespace NWorkbook
