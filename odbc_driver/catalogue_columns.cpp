#include "odbc_driver/catalogue_columns.h"

namespace NOdbcDriver {

namespace {

RowsResult::Columns ColumnsOfForeignKeys() {
    return {{u"PKTABLE_CAT"},
            {u"PKTABLE_SCHEM"},
            {u"PKTABLE_NAME"},
            {u"PKCOLUMN_NAME"},
            {u"FKTABLE_CAT"},
            {u"FKTABLE_SCHEM"},
            {u"FKTABLE_NAME"},
            {u"FKCOLUMN_NAME"},
            {u"KEY_SEQ", SQL_SMALLINT},
            {u"UPDATE_RULE", SQL_SMALLINT},
            {u"DELETE_RULE", SQL_SMALLINT},
            {u"FK_NAME"},
            {u"PK_NAME"},
            {u"DEFERRABILITY", SQL_SMALLINT}};
}

// What SQLColumns and SQLProcedureColumns both report after the names and the kind of a column.
RowsResult::Columns Described(RowsResult::Columns columns) {
    columns.insert(columns.end(), {{u"DATA_TYPE", SQL_SMALLINT},
                                   {u"TYPE_NAME"},
                                   {u"COLUMN_SIZE", SQL_INTEGER},
                                   {u"BUFFER_LENGTH", SQL_INTEGER},
                                   {u"DECIMAL_DIGITS", SQL_SMALLINT},
                                   {u"NUM_PREC_RADIX", SQL_SMALLINT},
                                   {u"NULLABLE", SQL_SMALLINT},
                                   {u"REMARKS"},
                                   {u"COLUMN_DEF"},
                                   {u"SQL_DATA_TYPE", SQL_SMALLINT},
                                   {u"SQL_DATETIME_SUB", SQL_SMALLINT},
                                   {u"CHAR_OCTET_LENGTH", SQL_INTEGER},
                                   {u"ORDINAL_POSITION", SQL_INTEGER},
                                   {u"IS_NULLABLE"}});
    return columns;
}

}  // namespace

RowsResult::Columns ColumnsOfTables() {
    return {{u"TABLE_CAT"}, {u"TABLE_SCHEM"}, {u"TABLE_NAME"}, {u"TABLE_TYPE"}, {u"REMARKS"}};
}

RowsResult::Columns ColumnsOfColumns() {
    return Described({{u"TABLE_CAT"}, {u"TABLE_SCHEM"}, {u"TABLE_NAME"}, {u"COLUMN_NAME"}});
}

RowsResult::Columns ColumnsOfTypes() {
    return {{u"TYPE_NAME"},
            {u"DATA_TYPE", SQL_SMALLINT},
            {u"COLUMN_SIZE", SQL_INTEGER},
            {u"LITERAL_PREFIX"},
            {u"LITERAL_SUFFIX"},
            {u"CREATE_PARAMS"},
            {u"NULLABLE", SQL_SMALLINT},
            {u"CASE_SENSITIVE", SQL_SMALLINT},
            {u"SEARCHABLE", SQL_SMALLINT},
            {u"UNSIGNED_ATTRIBUTE", SQL_SMALLINT},
            {u"FIXED_PREC_SCALE", SQL_SMALLINT},
            {u"AUTO_UNIQUE_VALUE", SQL_SMALLINT},
            {u"LOCAL_TYPE_NAME"},
            {u"MINIMUM_SCALE", SQL_SMALLINT},
            {u"MAXIMUM_SCALE", SQL_SMALLINT},
            {u"SQL_DATA_TYPE", SQL_SMALLINT},
            {u"SQL_DATETIME_SUB", SQL_SMALLINT},
            {u"NUM_PREC_RADIX", SQL_INTEGER},
            {u"INTERVAL_PRECISION", SQL_SMALLINT}};
}

RowsResult::Columns ColumnsOf(Absent what) {
    switch (what) {
        case Absent::PrimaryKeys:
            return {{u"TABLE_CAT"},   {u"TABLE_SCHEM"},           {u"TABLE_NAME"},
                    {u"COLUMN_NAME"}, {u"KEY_SEQ", SQL_SMALLINT}, {u"PK_NAME"}};
        case Absent::ForeignKeys:
            return ColumnsOfForeignKeys();
        case Absent::Statistics:
            return {{u"TABLE_CAT"},
                    {u"TABLE_SCHEM"},
                    {u"TABLE_NAME"},
                    {u"NON_UNIQUE", SQL_SMALLINT},
                    {u"INDEX_QUALIFIER"},
                    {u"INDEX_NAME"},
                    {u"TYPE", SQL_SMALLINT},
                    {u"ORDINAL_POSITION", SQL_SMALLINT},
                    {u"COLUMN_NAME"},
                    {u"ASC_OR_DESC"},
                    {u"CARDINALITY", SQL_INTEGER},
                    {u"PAGES", SQL_INTEGER},
                    {u"FILTER_CONDITION"}};
        case Absent::SpecialColumns:
            return {{u"SCOPE", SQL_SMALLINT},          {u"COLUMN_NAME"},
                    {u"DATA_TYPE", SQL_SMALLINT},      {u"TYPE_NAME"},
                    {u"COLUMN_SIZE", SQL_INTEGER},     {u"BUFFER_LENGTH", SQL_INTEGER},
                    {u"DECIMAL_DIGITS", SQL_SMALLINT}, {u"PSEUDO_COLUMN", SQL_SMALLINT}};
        case Absent::TablePrivileges:
            return {{u"TABLE_CAT"}, {u"TABLE_SCHEM"}, {u"TABLE_NAME"},  {u"GRANTOR"},
                    {u"GRANTEE"},   {u"PRIVILEGE"},   {u"IS_GRANTABLE"}};
        case Absent::ColumnPrivileges:
            return {{u"TABLE_CAT"}, {u"TABLE_SCHEM"}, {u"TABLE_NAME"}, {u"COLUMN_NAME"},
                    {u"GRANTOR"},   {u"GRANTEE"},     {u"PRIVILEGE"},  {u"IS_GRANTABLE"}};
        case Absent::Procedures:
            return {{u"PROCEDURE_CAT"},
                    {u"PROCEDURE_SCHEM"},
                    {u"PROCEDURE_NAME"},
                    {u"NUM_INPUT_PARAMS", SQL_INTEGER},
                    {u"NUM_OUTPUT_PARAMS", SQL_INTEGER},
                    {u"NUM_RESULT_SETS", SQL_INTEGER},
                    {u"REMARKS"},
                    {u"PROCEDURE_TYPE", SQL_SMALLINT}};
        case Absent::ProcedureColumns:
            return Described({{u"PROCEDURE_CAT"},
                              {u"PROCEDURE_SCHEM"},
                              {u"PROCEDURE_NAME"},
                              {u"COLUMN_NAME"},
                              {u"COLUMN_TYPE", SQL_SMALLINT}});
    }
    return {};
}

}  // namespace NOdbcDriver
