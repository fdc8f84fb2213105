// The columns that ODBC prescribes for each result of the catalogue functions, in its order.
#pragma once

#include "odbc_driver/result.h"

namespace NOdbcDriver {

RowsResult::Columns ColumnsOfTables();
RowsResult::Columns ColumnsOfColumns();
RowsResult::Columns ColumnsOfTypes();

// What a workbook does not have.
enum class Absent {
    PrimaryKeys,
    ForeignKeys,
    Statistics,
    SpecialColumns,
    TablePrivileges,
    ColumnPrivileges,
    Procedures,
    ProcedureColumns
};

RowsResult::Columns ColumnsOf(Absent what);

}  // namespace NOdbcDriver
