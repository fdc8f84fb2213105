// UTF-8, as parts and their names have it, to UTF-16.
#pragma once

#include <string>
#include <string_view>

namespace NWorkbook {

// Writes UTF-16 to `out`, which has room for a unit for each byte, and returns the place behind it. The text
// is taken to be well-formed, as an XML parser hands it out; what is not becomes other characters, no more.
char16_t* Utf8ToUtf16(std::string_view text, char16_t* out);

std::u16string ToUtf16(std::string_view text);

}  // namespace NWorkbook
