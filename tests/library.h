// The library's functions take texts in the type that hosts of the system use; the tests have them as UTF-16.
#pragma once

#include <string>
#include <string_view>

#include "api/xls2tki.h"

namespace NTest {

inline NXls2Tki::WideString Wide(std::u16string_view text) { return {text.begin(), text.end()}; }

inline NXls2Tki::WideString operator""_w(const char16_t* text, std::size_t size) {
    return Wide({text, size});
}

inline std::u16string LoggedMessages() {
    const NXls2Tki::WideString messages = NXls2Tki::GetLoggedMessages();
    return {messages.begin(), messages.end()};
}

}  // namespace NTest
