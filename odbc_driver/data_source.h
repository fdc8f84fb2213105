// Data sources, as the configuration of ODBC has them.
#pragma once

#include <string>
#include <string_view>

namespace NOdbcDriver {

// The value that the data source has for the keyword; empty if it has none, or there is no such data source.
std::u16string ReadDataSource(std::u16string_view name, std::u16string_view keyword);

}  // namespace NOdbcDriver
