// Handles: making and freeing them, their diagnostics, the environment's attributes.
#include "odbc_driver/application_text.h"
#include "odbc_driver/connection.h"
#include "odbc_driver/entry_point.h"
#include "odbc_driver/statement.h"

using namespace NOdbcDriver;

namespace {

// There is no handle yet to report an error: only memory can be missing.
SQLRETURN MakeEnvironment(SQLHANDLE* handle) noexcept {
    try {
        *handle = new Environment;
        return SQL_SUCCESS;
    } catch (...) {
        return SQL_ERROR;
    }
}

SQLRETURN FreeStatement(SQLHANDLE handle) {
    const auto* const statement = FindObject<Statement>(handle);
    if (statement == nullptr) return SQL_INVALID_HANDLE;
    return Enter<Connection>(&statement->Owner(),
                             [=](Connection& connection) { connection.RemoveStatement(*statement); });
}

template <typename Object>
SQLRETURN Free(SQLHANDLE handle) {
    const auto* const object = FindObject<Object>(handle);
    if (object == nullptr) return SQL_INVALID_HANDLE;
    delete object;
    return SQL_SUCCESS;
}

// Any handle; NULL for what is no handle of this kind.
const Handle* ToHandle(SQLSMALLINT kind, SQLHANDLE handle) {
    switch (kind) {
        case SQL_HANDLE_ENV:
            return FindObject<Environment>(handle);
        case SQL_HANDLE_DBC:
            return FindObject<Connection>(handle);
        case SQL_HANDLE_STMT:
            return FindObject<Statement>(handle);
        default:
            return FindObject<Descriptor>(handle);
    }
}

// Asks a handle for its diagnostics, which makes none.
template <typename Call>
SQLRETURN Ask(SQLSMALLINT kind, SQLHANDLE handle, const Call& call) noexcept {
    const Handle* const object = ToHandle(kind, handle);
    if (object == nullptr) return SQL_INVALID_HANDLE;
    const std::lock_guard lock(object->Mutex());
    try {
        return call(object->diagnostics);
    } catch (...) {
        return SQL_ERROR;
    }
}

SQLRETURN ReturnCode(bool isCut) { return isCut ? SQL_SUCCESS_WITH_INFO : SQL_SUCCESS; }

template <typename Unit>
SQLRETURN GetDiagRec(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number, Unit* state,
                     SQLINTEGER* nativeCode, Unit* message, SQLSMALLINT capacity, SQLSMALLINT* length) {
    return Ask(kind, handle, [=](const Diagnostics& diagnostics) -> SQLRETURN {
        if (number <= 0 || capacity < 0) return SQL_ERROR;
        const Diagnostic* const record = diagnostics.Find(number);
        if (record == nullptr) return SQL_NO_DATA;
        constexpr SQLSMALLINT kStateCapacity = 6;
        PutText(record->state, state, kStateCapacity, static_cast<SQLSMALLINT*>(nullptr));
        PutNumber(SQLINTEGER{0}, nativeCode);
        return ReturnCode(PutText(MessageOf(*record), message, capacity, length));
    });
}

template <typename Unit>
SQLRETURN GetDiagField(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number, SQLSMALLINT field,
                       SQLPOINTER value, SQLSMALLINT capacity, SQLSMALLINT* length) {
    return Ask(kind, handle, [=](const Diagnostics& diagnostics) -> SQLRETURN {
        if (number < 0) return SQL_ERROR;
        if (number > 0 && diagnostics.Find(number) == nullptr) return SQL_NO_DATA;
        const std::optional<DiagnosticField> found = diagnostics.Field(number, field);
        return found ? ReturnCode(PutAnswer<Unit>(*found, value, capacity, length)) : SQL_ERROR;
    });
}

// The driver manager keeps the other attributes of an environment to itself.
void RequireVersion(SQLINTEGER attribute) {
    if (attribute == SQL_ATTR_ODBC_VERSION) return;
    throw OdbcError(u"HYC00", u"The environment has no attribute of this number.");
}

}  // namespace

extern "C" {

SQLRETURN SQL_API SQLAllocHandle(SQLSMALLINT kind, SQLHANDLE parent, SQLHANDLE* handle) {
    *handle = SQL_NULL_HANDLE;
    switch (kind) {
        case SQL_HANDLE_ENV:
            return MakeEnvironment(handle);
        case SQL_HANDLE_DBC:
            return Enter<Environment>(parent, [=](Environment&) { *handle = new Connection; });
        case SQL_HANDLE_STMT:
            return Enter<Connection>(parent,
                                     [=](Connection& connection) { *handle = &connection.AddStatement(); });
        default:
            return Enter<Connection>(parent, [](Connection&) {
                throw OdbcError(u"HYC00", u"There are no descriptors beside those of statements.");
            });
    }
}

SQLRETURN SQL_API SQLFreeHandle(SQLSMALLINT kind, SQLHANDLE handle) {
    switch (kind) {
        case SQL_HANDLE_ENV:
            return Free<Environment>(handle);
        case SQL_HANDLE_DBC:
            return Free<Connection>(handle);
        case SQL_HANDLE_STMT:
            return FreeStatement(handle);
        default:  // a descriptor belongs to its statement
            return SQL_ERROR;
    }
}

SQLRETURN SQL_API SQLFreeStmt(SQLHSTMT handle, SQLUSMALLINT what) {
    return Enter<Statement>(handle, [=](Statement& statement) {
        if (what == SQL_CLOSE) statement.Close();
        if (what == SQL_UNBIND) statement.applicationRows.UnbindAll();
    });
}

SQLRETURN SQL_API SQLSetEnvAttr(SQLHENV handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER) {
    return Enter<Environment>(handle, [=](Environment& environment) {
        RequireVersion(attribute);
        environment.odbcVersion = static_cast<SQLINTEGER>(reinterpret_cast<SQLLEN>(value));
    });
}

SQLRETURN SQL_API SQLGetEnvAttr(SQLHENV handle, SQLINTEGER attribute, SQLPOINTER value, SQLINTEGER,
                                SQLINTEGER*) {
    return Enter<Environment>(handle, [=](Environment& environment) {
        RequireVersion(attribute);
        PutNumber(environment.odbcVersion, value);
    });
}

SQLRETURN SQL_API SQLGetDiagRec(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number, SQLCHAR* state,
                                SQLINTEGER* nativeCode, SQLCHAR* message, SQLSMALLINT capacity,
                                SQLSMALLINT* length) {
    return GetDiagRec(kind, handle, number, state, nativeCode, message, capacity, length);
}

SQLRETURN SQL_API SQLGetDiagRecW(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number, SQLWCHAR* state,
                                 SQLINTEGER* nativeCode, SQLWCHAR* message, SQLSMALLINT capacity,
                                 SQLSMALLINT* length) {
    return GetDiagRec(kind, handle, number, state, nativeCode, message, capacity, length);
}

SQLRETURN SQL_API SQLGetDiagField(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number, SQLSMALLINT field,
                                  SQLPOINTER value, SQLSMALLINT capacity, SQLSMALLINT* length) {
    return GetDiagField<SQLCHAR>(kind, handle, number, field, value, capacity, length);
}

SQLRETURN SQL_API SQLGetDiagFieldW(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT number, SQLSMALLINT field,
                                   SQLPOINTER value, SQLSMALLINT capacity, SQLSMALLINT* length) {
    return GetDiagField<SQLWCHAR>(kind, handle, number, field, value, capacity, length);
}

}  // extern "C"
