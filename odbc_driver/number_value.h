// Texts as numbers of the types that C has.
#pragma once

#include <string_view>

#include "odbc_driver/odbc.h"

namespace NOdbcDriver {

struct NumberTransfer {
    SQLLEN size;  // of the type, in bytes
    bool lostFraction;
};

// The size in bytes of a C type for numbers; 0 for other types.
SQLLEN NumberSize(SQLSMALLINT type);

// Writes the number that the text is, blanks around it aside, in the C type. `data` may be NULL. An integer
// loses its fraction. Throws OdbcError: 22018 where the text is no number, 22003 where the type cannot hold
// it, 07006 for a type that is not for numbers.
NumberTransfer PutNumberValue(std::u16string_view text, SQLSMALLINT type, SQLPOINTER data);

}  // namespace NOdbcDriver
