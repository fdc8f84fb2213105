// Statements: queries, their results and the cursors on them.
#include "odbc_driver/application_text.h"
#include "odbc_driver/column_attributes.h"
#include "odbc_driver/entry_point.h"
#include "odbc_driver/statement.h"

using namespace NOdbcDriver;

namespace {

template <typename Call>
SQLRETURN EnterStatement(SQLHSTMT handle, const Call& call) {
    return Enter<Statement>(handle, call);
}

RowSet RowSetOf(const Statement& statement) {
    return {statement.applicationRows.arraySize, statement.implementationRows.rowsProcessed,
            statement.implementationRows.arrayStatus};
}

template <typename Unit>
SQLRETURN Prepare(SQLHSTMT handle, Unit* sql, SQLINTEGER length) {
    return EnterStatement(handle, [=](Statement& statement) { statement.Prepare(GetText(sql, length)); });
}

template <typename Unit>
SQLRETURN ExecDirect(SQLHSTMT handle, Unit* sql, SQLINTEGER length) {
    return EnterStatement(handle,
                          [=](Statement& statement) { statement.ExecuteDirectly(GetText(sql, length)); });
}

template <typename Unit>
SQLRETURN DescribeCol(SQLHSTMT handle, SQLUSMALLINT number, Unit* name, SQLSMALLINT capacity,
                      SQLSMALLINT* length, SQLSMALLINT* type, SQLULEN* size, SQLSMALLINT* scale,
                      SQLSMALLINT* nullable) {
    return EnterStatement(handle, [=](Statement& statement) {
        const std::size_t column = statement.ColumnIndex(number);
        Result& result = statement.RequireResult();
        statement.diagnostics.AddIfCut(PutText(result.ColumnName(column), name, capacity, length));
        PutNumber(result.ColumnType(column), type);
        if (size != nullptr) *size = ColumnSize(result, column);
        PutNumber(SQLSMALLINT{0}, scale);
        PutNumber(SQLSMALLINT{SQL_NULLABLE}, nullable);
    });
}

template <typename Unit>
SQLRETURN ColAttribute(SQLHSTMT handle, SQLUSMALLINT number, SQLUSMALLINT attribute, SQLPOINTER text,
                       SQLSMALLINT capacity, SQLSMALLINT* length, SQLLEN* value) {
    return EnterStatement(handle, [=](Statement& statement) {
        if (attribute == SQL_DESC_COUNT || attribute == SQL_COLUMN_COUNT) {
            PutNumber(static_cast<SQLLEN>(statement.RequireResult().ColumnCount()), value);
            return;
        }
        const auto found = GetColumnAttribute(statement.RequireResult(), statement.ColumnIndex(number),
                                              static_cast<SQLSMALLINT>(attribute));
        if (const auto* const characters = std::get_if<std::u16string_view>(&found)) {
            statement.diagnostics.AddIfCut(PutText<Unit>(*characters, text, capacity, length, 1));
        } else {
            PutNumber(std::get<SQLLEN>(found), value);
        }
    });
}

template <typename Unit>
SQLRETURN GetDescField(SQLHDESC handle, SQLSMALLINT column, SQLSMALLINT field, SQLPOINTER value,
                       SQLINTEGER capacity, SQLINTEGER* length) {
    return Enter<Descriptor>(handle, [=](Descriptor& descriptor) {
        descriptor.diagnostics.AddIfCut(
            PutAnswer<Unit>(descriptor.GetField(column, field), value, capacity, length));
    });
}

}  // namespace

extern "C" {

SQLRETURN SQL_API SQLPrepare(SQLHSTMT handle, SQLCHAR* sql, SQLINTEGER length) {
    return Prepare(handle, sql, length);
}

SQLRETURN SQL_API SQLPrepareW(SQLHSTMT handle, SQLWCHAR* sql, SQLINTEGER length) {
    return Prepare(handle, sql, length);
}

SQLRETURN SQL_API SQLExecute(SQLHSTMT handle) {
    return EnterStatement(handle, [](Statement& statement) { statement.Execute(); });
}

SQLRETURN SQL_API SQLExecDirect(SQLHSTMT handle, SQLCHAR* sql, SQLINTEGER length) {
    return ExecDirect(handle, sql, length);
}

SQLRETURN SQL_API SQLExecDirectW(SQLHSTMT handle, SQLWCHAR* sql, SQLINTEGER length) {
    return ExecDirect(handle, sql, length);
}

SQLRETURN SQL_API SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT* count) {
    return EnterStatement(handle, [=](Statement& statement) {
        PutNumber(static_cast<SQLSMALLINT>(statement.RequireResult().ColumnCount()), count);
    });
}

SQLRETURN SQL_API SQLRowCount(SQLHSTMT handle, SQLLEN* count) {
    return EnterStatement(
        handle, [=](Statement& statement) { PutNumber(static_cast<SQLLEN>(statement.RowCount()), count); });
}

SQLRETURN SQL_API SQLDescribeCol(SQLHSTMT handle, SQLUSMALLINT number, SQLCHAR* name, SQLSMALLINT capacity,
                                 SQLSMALLINT* length, SQLSMALLINT* type, SQLULEN* size, SQLSMALLINT* scale,
                                 SQLSMALLINT* nullable) {
    return DescribeCol(handle, number, name, capacity, length, type, size, scale, nullable);
}

SQLRETURN SQL_API SQLDescribeColW(SQLHSTMT handle, SQLUSMALLINT number, SQLWCHAR* name, SQLSMALLINT capacity,
                                  SQLSMALLINT* length, SQLSMALLINT* type, SQLULEN* size, SQLSMALLINT* scale,
                                  SQLSMALLINT* nullable) {
    return DescribeCol(handle, number, name, capacity, length, type, size, scale, nullable);
}

SQLRETURN SQL_API SQLColAttribute(SQLHSTMT handle, SQLUSMALLINT number, SQLUSMALLINT attribute,
                                  SQLPOINTER text, SQLSMALLINT capacity, SQLSMALLINT* length, SQLLEN* value) {
    return ColAttribute<SQLCHAR>(handle, number, attribute, text, capacity, length, value);
}

SQLRETURN SQL_API SQLColAttributeW(SQLHSTMT handle, SQLUSMALLINT number, SQLUSMALLINT attribute,
                                   SQLPOINTER text, SQLSMALLINT capacity, SQLSMALLINT* length,
                                   SQLLEN* value) {
    return ColAttribute<SQLWCHAR>(handle, number, attribute, text, capacity, length, value);
}

SQLRETURN SQL_API SQLBindCol(SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER data,
                             SQLLEN capacity, SQLLEN* length) {
    return EnterStatement(handle, [=](Statement& statement) {
        if (capacity < 0) throw OdbcError(u"HY090", u"The length of a buffer is below zero.");
        statement.applicationRows.Bind(column, {type, data, capacity, length, length});
    });
}

SQLRETURN SQL_API SQLFetch(SQLHSTMT handle) {
    return EnterStatement(handle, [](Statement& statement) { return statement.Fetch(RowSetOf(statement)); });
}

SQLRETURN SQL_API SQLFetchScroll(SQLHSTMT handle, SQLSMALLINT direction, SQLLEN offset) {
    return EnterStatement(handle, [=](Statement& statement) {
        return statement.Fetch(RowSetOf(statement), direction, offset);
    });
}

SQLRETURN SQL_API SQLExtendedFetch(SQLHSTMT handle, SQLUSMALLINT direction, SQLLEN offset, SQLULEN* fetched,
                                   SQLUSMALLINT* status) {
    return EnterStatement(handle, [=](Statement& statement) {
        return statement.Fetch({statement.extendedRows, fetched, status}, static_cast<SQLSMALLINT>(direction),
                               offset);
    });
}

SQLRETURN SQL_API SQLSetPos(SQLHSTMT handle, SQLSETPOSIROW row, SQLUSMALLINT operation, SQLUSMALLINT) {
    return EnterStatement(handle, [=](Statement& statement) {
        if (operation != SQL_POSITION) throw OdbcError(u"HYC00", u"Rows cannot be changed or locked.");
        statement.SetPosition(row);
    });
}

SQLRETURN SQL_API SQLGetData(SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER data,
                             SQLLEN capacity, SQLLEN* length) {
    return EnterStatement(handle, [=](Statement& statement) {
        return statement.GetData(column, {type, data, capacity, length, length});
    });
}

SQLRETURN SQL_API SQLCloseCursor(SQLHSTMT handle) {
    return EnterStatement(handle, [](Statement& statement) {
        if (!statement.IsOpen()) throw OdbcError(u"24000", u"No cursor is open.");
        statement.Close();
    });
}

// A call never waits, so there is nothing to cancel.
SQLRETURN SQL_API SQLCancel(SQLHSTMT handle) {
    return FindObject<Statement>(handle) == nullptr ? SQL_INVALID_HANDLE : SQL_SUCCESS;
}

SQLRETURN SQL_API SQLMoreResults(SQLHSTMT handle) {
    return EnterStatement(handle, [](Statement& statement) -> SQLRETURN {
        statement.Close();
        return SQL_NO_DATA;
    });
}

SQLRETURN SQL_API SQLNumParams(SQLHSTMT handle, SQLSMALLINT* count) {
    return EnterStatement(handle, [=](Statement&) { PutNumber(SQLSMALLINT{0}, count); });
}

SQLRETURN SQL_API SQLSetStmtAttr(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
    return EnterStatement(handle, [=](Statement& statement) { statement.SetAttribute(attribute, value); });
}

SQLRETURN SQL_API SQLSetStmtAttrW(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value,
                                  SQLINTEGER length) {
    return SQLSetStmtAttr(handle, attribute, value, length);
}

SQLRETURN SQL_API SQLGetStmtAttr(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER,
                                 SQLINTEGER*) {
    return EnterStatement(handle, [=](Statement& statement) { statement.GetAttribute(attribute, value); });
}

SQLRETURN SQL_API SQLGetStmtAttrW(SQLHSTMT handle, SQLINTEGER attribute, SQLPOINTER value,
                                  SQLINTEGER capacity, SQLINTEGER* length) {
    return SQLGetStmtAttr(handle, attribute, value, capacity, length);
}

SQLRETURN SQL_API SQLSetDescField(SQLHDESC handle, SQLSMALLINT column, SQLSMALLINT field, SQLPOINTER value,
                                  SQLINTEGER) {
    return Enter<Descriptor>(handle,
                             [=](Descriptor& descriptor) { descriptor.SetField(column, field, value); });
}

SQLRETURN SQL_API SQLSetDescFieldW(SQLHDESC handle, SQLSMALLINT column, SQLSMALLINT field, SQLPOINTER value,
                                   SQLINTEGER length) {
    return SQLSetDescField(handle, column, field, value, length);
}

SQLRETURN SQL_API SQLGetDescField(SQLHDESC handle, SQLSMALLINT column, SQLSMALLINT field, SQLPOINTER value,
                                  SQLINTEGER capacity, SQLINTEGER* length) {
    return GetDescField<SQLCHAR>(handle, column, field, value, capacity, length);
}

SQLRETURN SQL_API SQLGetDescFieldW(SQLHDESC handle, SQLSMALLINT column, SQLSMALLINT field, SQLPOINTER value,
                                   SQLINTEGER capacity, SQLINTEGER* length) {
    return GetDescField<SQLWCHAR>(handle, column, field, value, capacity, length);
}

}  // extern "C"
