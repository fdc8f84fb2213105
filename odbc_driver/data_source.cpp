#include "odbc_driver/data_source.h"

#include <odbcinst.h>

#include "platform/code_page.h"
#include "workbook/utf16.h"

namespace NOdbcDriver {

namespace {

std::string ToUtf8(std::u16string_view text) {
    std::string bytes(3 * text.size(), '\0');
    bytes.resize(NPlatform::Utf16ToCodePage(NPlatform::kUtf8CodePage, text.data(), text.size(), bytes.data(),
                                            bytes.size()));
    return bytes;
}

}  // namespace

// By the narrow function: the wide one of unixODBC takes each byte of UTF-8 for a character.
std::u16string ReadDataSource(std::u16string_view name, std::u16string_view keyword) {
    constexpr int kCapacity = 4096;
    std::string value(kCapacity, '\0');
    const int size = SQLGetPrivateProfileString(ToUtf8(name).c_str(), ToUtf8(keyword).c_str(), "",
                                                value.data(), kCapacity, "ODBC.INI");
    if (size <= 0 || size >= kCapacity) return {};
    return NWorkbook::ToUtf16(value.c_str());
}

}  // namespace NOdbcDriver
