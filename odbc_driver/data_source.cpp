#include "odbc_driver/data_source.h"

#include <odbcinst.h>

#include "odbc_driver/application_text.h"

namespace NOdbcDriver {

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
