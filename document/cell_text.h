// Small operations on cell texts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace VSimpleXMLCreation {

// White space as the platform's wide-character classification has it: U+0009 to U+000D, U+0020, U+0085,
// U+00A0 and Unicode's other spaces and line separators.
bool IsWhiteSpace(char16_t unit);

// The text without white space at both ends.
std::u16string_view Trim(std::u16string_view text);

// The text without blanks (U+0020 alone) at both ends.
std::u16string_view TrimBlanks(std::u16string_view text);

// a to z become A to Z; nothing else changes, as in the platform's default locale.
inline char16_t UpperCase(char16_t unit) {
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
}
std::u16string UpperCase(std::u16string_view text);

// Leading white space, an optional sign, decimal digits up to the first other character; 0 when there are
// none. A value beyond the 32-bit range stops at its end, as in the platform's conversion.
std::int32_t DecimalValue(std::u16string_view text);

}  // namespace VSimpleXMLCreation
