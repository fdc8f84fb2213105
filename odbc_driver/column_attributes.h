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

// The digits that a number has at most. Of a text the bytes in UTF-8, since many programs make a buffer for
// narrow text from it; and, above 255, one more for its terminator, which some of them forget there.
SQLULEN ColumnSize(Result& result, std::size_t column);

// The bytes that a value has at most: of a text, twice its column's size, which is enough in UTF-16 as well.
SQLLEN OctetLength(Result& result, std::size_t column);

// The type of a value that an application fetches as SQL_C_DEFAULT.
SQLSMALLINT DefaultCType(SQLSMALLINT columnType);

inline constexpr std::u16string_view kTextTypeName = u"VARCHAR";

}  // namespace NOdbcDriver
