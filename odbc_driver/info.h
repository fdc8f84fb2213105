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

// Whether the driver has the function SQL_API_...
bool HasFunction(SQLUSMALLINT function);
// All of them as SQL_FUNC_EXISTS reads them; and as ODBC 2 did, SQL_TRUE or SQL_FALSE for each.
void PutFunctionBits(SQLUSMALLINT* bits);
void PutFunctionFlags(SQLUSMALLINT* flags);

}  // namespace NOdbcDriver
