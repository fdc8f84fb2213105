#include "platform/code_page.h"

#include <windows.h>

#include <algorithm>
#include <limits>

#include "platform/windows/wide.h"

namespace NPlatform {

std::size_t Utf16ToCodePage(std::uint32_t codePage, const char16_t* units, std::size_t count, char* out,
                            std::size_t capacity) {
    constexpr std::size_t kMost = std::numeric_limits<int>::max();
    // The system takes no room for the question how much is needed.
    if (count == 0 || count > kMost || capacity == 0) return 0;
    const int bytes = WideCharToMultiByte(codePage, 0, AsWide(units), static_cast<int>(count), out,
                                          static_cast<int>(std::min(capacity, kMost)), nullptr, nullptr);
    return static_cast<std::size_t>(std::max(bytes, 0));
}

}  // namespace NPlatform
