#include "odbc_driver/application_text.h"

#include "platform/code_page.h"

namespace NOdbcDriver {

std::string ToUtf8(std::u16string_view text) {
    constexpr std::size_t kMostBytesOfUnit = 3;
    std::string bytes(kMostBytesOfUnit * text.size(), '\0');
    bytes.resize(NPlatform::Utf16ToCodePage(NPlatform::kUtf8CodePage, text.data(), text.size(), bytes.data(),
                                            bytes.size()));
    return bytes;
}

}  // namespace NOdbcDriver
