// Kinds of characters that matter to findings.
#pragma once

#include <cstddef>
#include <string_view>

namespace NChecks {

inline bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

inline bool IsHexDigit(char16_t unit) {
    return IsDigit(unit) || (unit >= u'A' && unit <= u'F') || (unit >= u'a' && unit <= u'f');
}

inline bool IsHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
inline bool IsLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

// Half of a surrogate pair without the other half.
inline bool IsHalfPair(std::u16string_view text, std::size_t index) {
    if (IsHighSurrogate(text[index])) return index + 1 == text.size() || !IsLowSurrogate(text[index + 1]);
    return IsLowSurrogate(text[index]) && (index == 0 || !IsHighSurrogate(text[index - 1]));
}

// C1 control characters. As 8-bit text they are letters and punctuation of Windows-1252.
inline bool IsC1Control(char16_t unit) { return unit >= 0x80 && unit <= 0x9F; }

// Control characters, blanks other than U+0020, and what has no width or changes the direction.
inline bool IsUnseen(char16_t unit) {
    if (unit < 0x7F) return unit < u' ';
    if (unit <= 0xA0 || unit == 0xAD || unit == 0x061C || unit == 0x1680 || unit == 0x180E) return true;
    if (unit < 0x2000) return false;
    return unit <= 0x200F || (unit >= 0x2028 && unit <= 0x202F) || (unit >= 0x205F && unit <= 0x206F) ||
           unit == 0x3000 || unit == 0xFEFF || unit >= 0xFFF0;
}

// No XML document may have them.
inline bool IsForbiddenInXml(char16_t unit) {
    return (unit < u' ' && unit != u'\t' && unit != u'\n' && unit != u'\r') || unit >= 0xFFFE;
}

}  // namespace NChecks
