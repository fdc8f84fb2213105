// The replacements that keep a text from being read as markup: "&", "<" and ">" become "&amp;", "&lt;" and
// "&gt;".
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace VSimpleXMLCreation {

// Most characters are above u'>' and require only one comparison.
inline bool IsEscaped(char16_t unit) {
    return unit <= u'>' && (unit == u'>' || unit == u'<' || unit == u'&');
}

inline bool HasEscaped(std::u16string_view text) { return std::any_of(text.begin(), text.end(), IsEscaped); }

// How many units the escaped text has, at most five times those of the text.
std::size_t EscapedSize(std::u16string_view text);

// Writes EscapedSize(text) units and returns the place after them.
char16_t* CopyEscaped(std::u16string_view text, char16_t* out);

}  // namespace VSimpleXMLCreation
