// Connections: opening a workbook, and what is known about it and the driver.
#include "odbc_driver/application_text.h"
#include "odbc_driver/connect_string.h"
#include "odbc_driver/connection.h"
#include "odbc_driver/entry_point.h"
#include "odbc_driver/info.h"

using namespace NOdbcDriver;

namespace {

// The driver never asks the user: with any completion, a missing value is an error.
template <typename Unit>
SQLRETURN DriverConnect(SQLHDBC handle, Unit* text, SQLSMALLINT length, Unit* completed, SQLSMALLINT capacity,
                        SQLSMALLINT* completedLength) {
    return Enter<Connection>(handle, [=](Connection& connection) {
        const std::u16string complete = connection.Connect(GetText(text, length));
        connection.diagnostics.AddIfCut(PutText(complete, completed, capacity, completedLength));
    });
}

// The name of the data source is all that counts: a workbook knows neither users nor passwords.
template <typename Unit>
SQLRETURN Connect(SQLHDBC handle, Unit* dataSource, SQLSMALLINT length) {
    return Enter<Connection>(handle, [=](Connection& connection) {
        connection.Connect(u"DSN=" + QuoteValue(GetText(dataSource, length)));
    });
}

template <typename Unit>
SQLRETURN GetInfoOf(SQLHDBC handle, SQLUSMALLINT question, SQLPOINTER value, SQLSMALLINT capacity,
                    SQLSMALLINT* length) {
    return Enter<Connection>(handle, [=](Connection& connection) {
        connection.diagnostics.AddIfCut(
            PutAnswer<Unit>(GetInfo(connection, question), value, capacity, length));
    });
}

template <typename Unit>
SQLRETURN GetConnectAttr(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER capacity,
                         SQLINTEGER* length) {
    return Enter<Connection>(handle, [=](Connection& connection) {
        if (attribute == SQL_ATTR_CURRENT_CATALOG) {
            connection.diagnostics.AddIfCut(PutText<Unit>(u"", value, capacity, length, 1));
        } else {
            connection.GetAttribute(attribute, value);
        }
    });
}

// Statements go to the workbook as they are.
template <typename Unit>
SQLRETURN NativeSql(SQLHDBC handle, Unit* sql, SQLINTEGER length, Unit* native, SQLINTEGER capacity,
                    SQLINTEGER* nativeLength) {
    return Enter<Connection>(handle, [=](Connection& connection) {
        connection.diagnostics.AddIfCut(PutText(GetText(sql, length), native, capacity, nativeLength));
    });
}

}  // namespace

extern "C" {

SQLRETURN SQL_API SQLDriverConnect(SQLHDBC handle, SQLHWND, SQLCHAR* text, SQLSMALLINT length,
                                   SQLCHAR* completed, SQLSMALLINT capacity, SQLSMALLINT* completedLength,
                                   SQLUSMALLINT) {
    return DriverConnect(handle, text, length, completed, capacity, completedLength);
}

SQLRETURN SQL_API SQLDriverConnectW(SQLHDBC handle, SQLHWND, SQLWCHAR* text, SQLSMALLINT length,
                                    SQLWCHAR* completed, SQLSMALLINT capacity, SQLSMALLINT* completedLength,
                                    SQLUSMALLINT) {
    return DriverConnect(handle, text, length, completed, capacity, completedLength);
}

SQLRETURN SQL_API SQLConnect(SQLHDBC handle, SQLCHAR* dataSource, SQLSMALLINT length, SQLCHAR*, SQLSMALLINT,
                             SQLCHAR*, SQLSMALLINT) {
    return Connect(handle, dataSource, length);
}

SQLRETURN SQL_API SQLConnectW(SQLHDBC handle, SQLWCHAR* dataSource, SQLSMALLINT length, SQLWCHAR*,
                              SQLSMALLINT, SQLWCHAR*, SQLSMALLINT) {
    return Connect(handle, dataSource, length);
}

SQLRETURN SQL_API SQLDisconnect(SQLHDBC handle) {
    return Enter<Connection>(handle, [](Connection& connection) { connection.Disconnect(); });
}

SQLRETURN SQL_API SQLGetInfo(SQLHDBC handle, SQLUSMALLINT question, SQLPOINTER value, SQLSMALLINT capacity,
                             SQLSMALLINT* length) {
    return GetInfoOf<SQLCHAR>(handle, question, value, capacity, length);
}

SQLRETURN SQL_API SQLGetInfoW(SQLHDBC handle, SQLUSMALLINT question, SQLPOINTER value, SQLSMALLINT capacity,
                              SQLSMALLINT* length) {
    return GetInfoOf<SQLWCHAR>(handle, question, value, capacity, length);
}

SQLRETURN SQL_API SQLSetConnectAttr(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
    return Enter<Connection>(handle,
                             [=](Connection& connection) { connection.SetAttribute(attribute, value); });
}

SQLRETURN SQL_API SQLSetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value,
                                     SQLINTEGER length) {
    return SQLSetConnectAttr(handle, attribute, value, length);
}

SQLRETURN SQL_API SQLGetConnectAttr(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value,
                                    SQLINTEGER capacity, SQLINTEGER* length) {
    return GetConnectAttr<SQLCHAR>(handle, attribute, value, capacity, length);
}

SQLRETURN SQL_API SQLGetConnectAttrW(SQLHDBC handle, SQLINTEGER attribute, SQLPOINTER value,
                                     SQLINTEGER capacity, SQLINTEGER* length) {
    return GetConnectAttr<SQLWCHAR>(handle, attribute, value, capacity, length);
}

// Nothing is ever written: each transaction ends well.
SQLRETURN SQL_API SQLEndTran(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT) {
    if (kind == SQL_HANDLE_ENV) return Enter<Environment>(handle, [](Environment&) {});
    return Enter<Connection>(handle, [](Connection&) {});
}

SQLRETURN SQL_API SQLNativeSql(SQLHDBC handle, SQLCHAR* sql, SQLINTEGER length, SQLCHAR* native,
                               SQLINTEGER capacity, SQLINTEGER* nativeLength) {
    return NativeSql(handle, sql, length, native, capacity, nativeLength);
}

SQLRETURN SQL_API SQLNativeSqlW(SQLHDBC handle, SQLWCHAR* sql, SQLINTEGER length, SQLWCHAR* native,
                                SQLINTEGER capacity, SQLINTEGER* nativeLength) {
    return NativeSql(handle, sql, length, native, capacity, nativeLength);
}

}  // extern "C"
