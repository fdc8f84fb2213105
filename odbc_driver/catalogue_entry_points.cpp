// Catalogue calls: each opens a cursor on a result of its own.
#include "odbc_driver/application_text.h"
#include "odbc_driver/catalogue.h"
#include "odbc_driver/connection.h"
#include "odbc_driver/entry_point.h"
#include "odbc_driver/statement.h"

using namespace NOdbcDriver;

namespace {

template <typename Unit>
OptionalText GetOptionalText(const Unit* text, SQLSMALLINT length) {
    if (text == nullptr) return std::nullopt;
    return GetText(text, length);
}

template <typename Unit>
SQLRETURN OpenTables(SQLHSTMT handle, Unit* catalogue, SQLSMALLINT catalogueLength, Unit* schema,
                     SQLSMALLINT schemaLength, Unit* table, SQLSMALLINT tableLength, Unit* types,
                     SQLSMALLINT typesLength) {
    return Enter<Statement>(handle, [=](Statement& statement) {
        const TablesRequest request = {GetOptionalText(catalogue, catalogueLength),
                                       GetOptionalText(schema, schemaLength),
                                       GetOptionalText(table, tableLength),
                                       GetOptionalText(types, typesLength), statement.metadataId == SQL_TRUE};
        statement.Open(ListTables(statement.Owner().Book(), request));
    });
}

template <typename Unit>
SQLRETURN OpenColumns(SQLHSTMT handle, Unit* catalogue, SQLSMALLINT catalogueLength, Unit* schema,
                      SQLSMALLINT schemaLength, Unit* table, SQLSMALLINT tableLength, Unit* column,
                      SQLSMALLINT columnLength) {
    return Enter<Statement>(handle, [=](Statement& statement) {
        const bool isName = statement.metadataId == SQL_TRUE;
        ColumnsRequest request = {GetOptionalText(catalogue, catalogueLength),
                                  GetOptionalText(schema, schemaLength),
                                  NamePattern(GetOptionalText(table, tableLength), isName),
                                  NamePattern(GetOptionalText(column, columnLength), isName)};
        statement.Open(ListColumns(statement.Owner().Book(), request, statement.diagnostics));
    });
}

SQLRETURN OpenTypes(SQLHSTMT handle, SQLSMALLINT type) {
    return Enter<Statement>(handle, [=](Statement& statement) { statement.Open(ListTypes(type)); });
}

SQLRETURN OpenNothing(SQLHSTMT handle, Absent what) {
    return Enter<Statement>(handle, [=](Statement& statement) { statement.Open(ListNothing(what)); });
}

}  // namespace

extern "C" {

SQLRETURN SQL_API SQLTables(SQLHSTMT handle, SQLCHAR* catalogue, SQLSMALLINT catalogueLength, SQLCHAR* schema,
                            SQLSMALLINT schemaLength, SQLCHAR* table, SQLSMALLINT tableLength, SQLCHAR* types,
                            SQLSMALLINT typesLength) {
    return OpenTables(handle, catalogue, catalogueLength, schema, schemaLength, table, tableLength, types,
                      typesLength);
}

SQLRETURN SQL_API SQLTablesW(SQLHSTMT handle, SQLWCHAR* catalogue, SQLSMALLINT catalogueLength,
                             SQLWCHAR* schema, SQLSMALLINT schemaLength, SQLWCHAR* table,
                             SQLSMALLINT tableLength, SQLWCHAR* types, SQLSMALLINT typesLength) {
    return OpenTables(handle, catalogue, catalogueLength, schema, schemaLength, table, tableLength, types,
                      typesLength);
}

SQLRETURN SQL_API SQLColumns(SQLHSTMT handle, SQLCHAR* catalogue, SQLSMALLINT catalogueLength,
                             SQLCHAR* schema, SQLSMALLINT schemaLength, SQLCHAR* table,
                             SQLSMALLINT tableLength, SQLCHAR* column, SQLSMALLINT columnLength) {
    return OpenColumns(handle, catalogue, catalogueLength, schema, schemaLength, table, tableLength, column,
                       columnLength);
}

SQLRETURN SQL_API SQLColumnsW(SQLHSTMT handle, SQLWCHAR* catalogue, SQLSMALLINT catalogueLength,
                              SQLWCHAR* schema, SQLSMALLINT schemaLength, SQLWCHAR* table,
                              SQLSMALLINT tableLength, SQLWCHAR* column, SQLSMALLINT columnLength) {
    return OpenColumns(handle, catalogue, catalogueLength, schema, schemaLength, table, tableLength, column,
                       columnLength);
}

SQLRETURN SQL_API SQLGetTypeInfo(SQLHSTMT handle, SQLSMALLINT type) { return OpenTypes(handle, type); }

SQLRETURN SQL_API SQLGetTypeInfoW(SQLHSTMT handle, SQLSMALLINT type) { return OpenTypes(handle, type); }

SQLRETURN SQL_API SQLPrimaryKeys(SQLHSTMT handle, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT, SQLCHAR*,
                                 SQLSMALLINT) {
    return OpenNothing(handle, Absent::PrimaryKeys);
}

SQLRETURN SQL_API SQLPrimaryKeysW(SQLHSTMT handle, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*,
                                  SQLSMALLINT) {
    return OpenNothing(handle, Absent::PrimaryKeys);
}

SQLRETURN SQL_API SQLForeignKeys(SQLHSTMT handle, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT, SQLCHAR*,
                                 SQLSMALLINT, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT, SQLCHAR*,
                                 SQLSMALLINT) {
    return OpenNothing(handle, Absent::ForeignKeys);
}

SQLRETURN SQL_API SQLForeignKeysW(SQLHSTMT handle, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*,
                                  SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*,
                                  SQLSMALLINT) {
    return OpenNothing(handle, Absent::ForeignKeys);
}

SQLRETURN SQL_API SQLStatistics(SQLHSTMT handle, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT, SQLCHAR*,
                                SQLSMALLINT, SQLUSMALLINT, SQLUSMALLINT) {
    return OpenNothing(handle, Absent::Statistics);
}

SQLRETURN SQL_API SQLStatisticsW(SQLHSTMT handle, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*,
                                 SQLSMALLINT, SQLUSMALLINT, SQLUSMALLINT) {
    return OpenNothing(handle, Absent::Statistics);
}

SQLRETURN SQL_API SQLSpecialColumns(SQLHSTMT handle, SQLUSMALLINT, SQLCHAR*, SQLSMALLINT, SQLCHAR*,
                                    SQLSMALLINT, SQLCHAR*, SQLSMALLINT, SQLUSMALLINT, SQLUSMALLINT) {
    return OpenNothing(handle, Absent::SpecialColumns);
}

SQLRETURN SQL_API SQLSpecialColumnsW(SQLHSTMT handle, SQLUSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*,
                                     SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLUSMALLINT, SQLUSMALLINT) {
    return OpenNothing(handle, Absent::SpecialColumns);
}

SQLRETURN SQL_API SQLTablePrivileges(SQLHSTMT handle, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT, SQLCHAR*,
                                     SQLSMALLINT) {
    return OpenNothing(handle, Absent::TablePrivileges);
}

SQLRETURN SQL_API SQLTablePrivilegesW(SQLHSTMT handle, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT,
                                      SQLWCHAR*, SQLSMALLINT) {
    return OpenNothing(handle, Absent::TablePrivileges);
}

SQLRETURN SQL_API SQLColumnPrivileges(SQLHSTMT handle, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT, SQLCHAR*,
                                      SQLSMALLINT, SQLCHAR*, SQLSMALLINT) {
    return OpenNothing(handle, Absent::ColumnPrivileges);
}

SQLRETURN SQL_API SQLColumnPrivilegesW(SQLHSTMT handle, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT,
                                       SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT) {
    return OpenNothing(handle, Absent::ColumnPrivileges);
}

SQLRETURN SQL_API SQLProcedures(SQLHSTMT handle, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT, SQLCHAR*,
                                SQLSMALLINT) {
    return OpenNothing(handle, Absent::Procedures);
}

SQLRETURN SQL_API SQLProceduresW(SQLHSTMT handle, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*,
                                 SQLSMALLINT) {
    return OpenNothing(handle, Absent::Procedures);
}

SQLRETURN SQL_API SQLProcedureColumns(SQLHSTMT handle, SQLCHAR*, SQLSMALLINT, SQLCHAR*, SQLSMALLINT, SQLCHAR*,
                                      SQLSMALLINT, SQLCHAR*, SQLSMALLINT) {
    return OpenNothing(handle, Absent::ProcedureColumns);
}

SQLRETURN SQL_API SQLProcedureColumnsW(SQLHSTMT handle, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT,
                                       SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT) {
    return OpenNothing(handle, Absent::ProcedureColumns);
}

}  // extern "C"
