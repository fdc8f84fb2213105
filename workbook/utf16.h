// UTF-8, as parts and their names have it, to UTF-16.
#pragma once

#include <string>
#include <string_view>

namespace NWorkbook {

// Writes UTF-16 to `out`, which has room for a unit for each byte, and returns the place after it. What is
// malformed, as it can be in the names of parts, becomes U+FFFD.
char16_t* Utf8ToUtf16(std::string_view text, char16_t* out);

std::u16string ToUtf16(std::string_view text);

}  // namespace NWorkbook
