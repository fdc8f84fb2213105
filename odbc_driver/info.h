// What the driver can do, and what the connection is to.
#pragma once

#include <string>
#include <variant>

#include "odbc_driver/connection.h"

namespace NOdbcDriver {

// The answer of SQLGetInfo in the type that ODBC has for the question. Throws OdbcError (HY096) for a
// question there is not.
std::variant<std::u16string, SQLUSMALLINT, SQLUINTEGER> GetInfo(const Connection& connection,
                                                                SQLUSMALLINT question);

}  // namespace NOdbcDriver
