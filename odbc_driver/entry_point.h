// What every function that programs call has in common.
#pragma once

#include <mutex>
#include <type_traits>

#include "odbc_driver/handle.h"
#include "workbook/error.h"

namespace NOdbcDriver {

// Each entry point does its work in `call`, which gets the handle's object and returns an SQLRETURN or
// nothing for SQL_SUCCESS. Nobody else uses the connection meanwhile, the handle has told all of its call
// before, and what is thrown becomes a diagnostic record. A successful call with records is one with
// information.
template <typename Object, typename Call>
SQLRETURN Enter(SQLHANDLE handle, const Call& call) noexcept {
    auto* const object = FindObject<Object>(handle);
    if (object == nullptr) return SQL_INVALID_HANDLE;
    const std::lock_guard lock(object->Mutex());
    Diagnostics& diagnostics = object->diagnostics;
    diagnostics.Clear();
    SQLRETURN result = SQL_ERROR;
    try {
        try {
            if constexpr (std::is_void_v<decltype(call(*object))>) {
                call(*object);
                result = SQL_SUCCESS;
            } else {
                result = call(*object);
            }
            if (result == SQL_SUCCESS && diagnostics.Count() > 0) result = SQL_SUCCESS_WITH_INFO;
        } catch (const OdbcError& error) {
            diagnostics.Add(error.Record());
        } catch (const NWorkbook::WorkbookError& error) {
            diagnostics.Add({u"HY000", error.Message()});
        }
    } catch (...) {
        result = SQL_ERROR;
        diagnostics.AddOutOfMemory();  // the rooms below throw nothing else
    }
    return result;
}

}  // namespace NOdbcDriver
