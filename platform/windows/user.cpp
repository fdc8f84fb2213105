#include "platform/user.h"

#include <windows.h>

#include "platform/windows/wide.h"

namespace NPlatform {

static bool ReadUserName(std::u16string& name, std::size_t capacity) {
    std::wstring buffer(capacity, L'\0');
    auto size = static_cast<DWORD>(capacity);  // afterwards with the terminator
    if (GetUserNameW(buffer.data(), &size) == 0) return false;
    name = FromWide(buffer.c_str());
    return true;
}

constinit Replaceable<bool(std::u16string&, std::size_t)> UserName{ReadUserName};

}  // namespace NPlatform
