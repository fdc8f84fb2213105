// Connections: opening a workbook, and what is known about it and the driver.
#include "odbc_driver/application_text.h"
#include "odbc_driver/connect_string.h"
#include "odbc_driver/connection.h"
#include "odbc_driver/entry_point.h"
#include "odbc_driver/info.h"

using namespace NOdbcDriver;

extern "C" {

// There is nothing to ask the user: whatever the completion, what is missing is an error.
SQLRETURN SQL_API SQLDriverConnectW(SQLHDBC handle, SQLHWND, SQLWCHAR* text, SQLSMALLINT length,
                                    SQLWCHAR* completed, SQLSMALLINT capacity, SQLSMALLINT* completedLength,
                                    SQLUSMALLINT) {
    return Enter<Connection>(handle, [=](Connection& connection) {
        const std::u16string complete = connection.Connect(GetText(text, length));
        connection.diagnostics.AddIfCut(PutText(complete, completed, capacity, completedLength));
    });
}

// The name of the data source is all that counts: a workbook knows neither users nor passwords.
SQLRETURN SQL_API SQLConnectW(SQLHDBC handle, SQLWCHAR* dataSource, SQLSMALLINT length, SQLWCHAR*,
                              SQLSMALLINT, SQLWCHAR*, SQLSMALLINT) {
    return Enter<Connection>(handle, [=](Connection& connection) {
        connection.Connect(u"DSN=" + QuoteValue(GetText(dataSource, length)));
    });
}

SQLRETURN SQL_API SQLDisconnect(SQLHDBC handle) {
    return Enter<Connection>(handle, [](Connection& connection) { connection.Disconnect(); });
}

SQLRETURN SQL_API SQLGetInfoW(SQLHDBC handle, SQLUSMALLINT question, SQLPOINTER value, SQLSMALLINT capacity,
                              SQLSMALLINT* length) {
    return Enter<Connection>(handle, [=](Connection& connection) {
        const auto answer = GetInfo(connection, question);
        if (const auto* const text = std::get_if<std::u16string>(&answer)) {
            connection.diagnostics.AddIfCut(PutTextInBytes(*text, value, capacity, length));
        } else if (const auto* const small = std::get_if<SQLUSMALLINT>(&answer)) {
            PutNumber(*small, value);
            PutNumber(SQLSMALLINT{sizeof *small}, length);
        } else {
            PutNumber(std::get<SQLUINTEGER>(answer), value);
            PutNumber(SQLSMALLINT{sizeof(SQLUINTEGER)}, length);
        }
    });
}

SQLRETURN SQL_API SQLSetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
    return Enter<Connection>(handle,
                             [=](Connection& connection) { connection.SetAttribute(attribute, value); });
}

SQLRETURN SQL_API SQLGetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value,
                                     SQLINTEGER capacity, SQLINTEGER* length) {
    return Enter<Connection>(handle, [=](Connection& connection) {
        if (attribute == SQL_ATTR_CURRENT_CATALOG) {
            connection.diagnostics.AddIfCut(PutTextInBytes(u"", value, capacity, length));
        } else {
            connection.GetAttribute(attribute, value);
        }
    });
}

// Nothing is ever written: each transaction ends well.
SQLRETURN SQL_API SQLEndTran(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT) {
    if (kind == SQL_HANDLE_ENV) return Enter<Environment>(handle, [](Environment&) {});
    return Enter<Connection>(handle, [](Connection&) {});
}

// Statements go to the workbook as they are.
SQLRETURN SQL_API SQLNativeSqlW(SQLHDBC handle, SQLWCHAR* sql, SQLINTEGER length, SQLWCHAR* native,
                                SQLINTEGER capacity, SQLINTEGER* nativeLength) {
    return Enter<Connection>(handle, [=](Connection& connection) {
        connection.diagnostics.AddIfCut(PutText(GetText(sql, length), native, capacity, nativeLength));
    });
}

}  // extern "C"
