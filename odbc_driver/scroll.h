// Where a scrollable cursor goes.
#pragma once

#include "odbc_driver/odbc.h"

namespace NOdbcDriver {

// Rows count from 1.
struct CursorPosition {
    SQLLEN firstRow;  // of the row set; 0 before the first row, lastRow + 1 after the last
    SQLLEN rows;      // in the row set
    SQLLEN lastRow;   // of the result
};

struct Scrolled {
    SQLLEN firstRow = 0;  // as above
    bool isCut = false;   // the row set would begin before the first row, and begins with it
};

// As ODBC has it for SQLFetchScroll: `direction` is SQL_FETCH_..., of which SQL_FETCH_BOOKMARK and unknown
// ones are refused (OdbcError HY106); `size` is that of the new row set.
Scrolled Scroll(const CursorPosition& from, SQLSMALLINT direction, SQLLEN offset, SQLULEN size);

}  // namespace NOdbcDriver
