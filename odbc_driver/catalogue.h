// What there is: tables, columns, types. Each result has the columns that ODBC prescribes, in its order.
#pragma once

#include <memory>

#include "odbc_driver/catalogue_columns.h"
#include "odbc_driver/diagnostics.h"
#include "odbc_driver/name_pattern.h"
#include "odbc_driver/result.h"

namespace NOdbcDriver {

struct TablesRequest {
    OptionalText catalogue;
    OptionalText schema;
    OptionalText table;
    OptionalText types;   // a list such as TABLE,VIEW or 'TABLE'
    bool isName = false;  // the table is a name, not a pattern
};

// SQLTables. Defined names and worksheets are both of the type TABLE, since many programs do not show what
// belongs to the system. There are no catalogues and schemas: for one with a name there are no tables. The
// questions for all catalogues, all schemas and all types are understood.
std::unique_ptr<Result> ListTables(const NWorkbook::TableBook& book, const TablesRequest& request);

struct ColumnsRequest {
    OptionalText catalogue;
    OptionalText schema;
    NamePattern table;
    NamePattern column;
};

// SQLColumns. Reads the tables that match. One that cannot be read is left out, with a record (01000) that
// names it; so are the last ones where it would take too long to look at all. Throws WorkbookError where
// nothing is left to list, and OdbcError where a pattern takes too long.
std::unique_ptr<Result> ListColumns(NWorkbook::TableBook& book, ColumnsRequest& request,
                                    Diagnostics& diagnostics);

// SQLGetTypeInfo: texts are the only type.
std::unique_ptr<Result> ListTypes(SQLSMALLINT type);

// The result, without rows, for what a workbook does not have.
std::unique_ptr<Result> ListNothing(Absent what);

}  // namespace NOdbcDriver
