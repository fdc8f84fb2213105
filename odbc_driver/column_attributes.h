// What is known about a column of a result.
#pragma once

#include <string_view>
#include <variant>

#include "odbc_driver/result.h"

namespace NOdbcDriver {

// The attribute of the column, which counts from 0, that SQLColAttribute and the fields of an implementation
// row descriptor name (SQL_DESC_..., or SQL_COLUMN_... of ODBC 2). A text is valid as long as the result.
// Throws OdbcError (HY091) for any other.
std::variant<SQLLEN, std::u16string_view> GetColumnAttribute(Result& result, std::size_t column,
                                                             SQLSMALLINT attribute);

// The UTF-16 units, or digits, that a value has at most.
SQLULEN ColumnSize(Result& result, std::size_t column);

// The bytes that a value has at most: of a text in UTF-16 or in UTF-8, whichever is longer.
SQLLEN OctetLength(Result& result, std::size_t column);

// The type of a value that an application fetches as SQL_C_DEFAULT.
SQLSMALLINT DefaultCType(SQLSMALLINT columnType);

inline constexpr std::u16string_view kTextTypeName = u"VARCHAR";

}  // namespace NOdbcDriver
