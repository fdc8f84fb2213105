// Kinds of characters that matter to findings.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/unseen.h"

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

// What is not seen, blanks other than U+0020, and what no text should have.
inline bool IsUnseen(char16_t unit) {
    if (NPlatform::IsUnseen(unit) || unit == 0xA0 || unit == 0x1680) return true;
    return (unit >= 0x2000 && unit <= 0x200A) || unit == 0x202F || unit == 0x205F || unit == 0x3000 ||
           unit >= 0xFFF0;
}

// No XML document may have them.
inline bool IsForbiddenInXml(char16_t unit) {
    return (unit < u' ' && unit != u'\t' && unit != u'\n' && unit != u'\r') || unit >= 0xFFFE;
}

}  // namespace NChecks
