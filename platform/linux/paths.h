// Paths between the library's UTF-16 and the system's bytes.
#pragma once

#include <string>
#include <string_view>

namespace NPlatform {

// UTF-8. A lone surrogate from U+DC80 to U+DCFF stands for the byte 0x80 to 0xFF, so that every name that
// PathFromBytes read goes back unchanged.
std::string PathToBytes(std::u16string_view path);

// A byte that is not part of well-formed UTF-8 becomes the lone surrogate U+DC00 plus the byte.
std::u16string PathFromBytes(std::string_view bytes);

}  // namespace NPlatform
