// The bytes that std::exception::what() returns for a UTF-16 text.
#pragma once

#include <string>
#include <string_view>

#include "platform/code_page.h"

namespace NPlatform {

// UTF-8, which is what hosts show.
inline std::string ExceptionText(std::u16string_view text) {
    std::string bytes(3 * text.size(), '\0');
    bytes.resize(Utf16ToCodePage(kUtf8CodePage, text.data(), text.size(), bytes.data(), bytes.size()));
    return bytes;
}

}  // namespace NPlatform
