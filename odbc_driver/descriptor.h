// Descriptors: where the values of a row set go, and what they are.
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "odbc_driver/handle.h"
#include "odbc_driver/result.h"
#include "odbc_driver/value_transfer.h"

namespace NOdbcDriver {

// What an application binds to a column.
struct Binding {
    SQLSMALLINT type = SQL_C_DEFAULT;
    SQLPOINTER data = nullptr;
    SQLLEN capacity = 0;  // in bytes
    SQLLEN* length = nullptr;
    SQLLEN* indicator = nullptr;

    [[nodiscard]] bool IsBound() const {
        return data != nullptr || length != nullptr || indicator != nullptr;
    }
};

// A field of a descriptor, in the type that ODBC has for it.
using FieldValue = std::variant<std::u16string_view, SQLLEN, SQLINTEGER, SQLSMALLINT, SQLPOINTER>;

// One of a statement's four. That of the application's rows holds the bindings; that of the implementation's
// rows tells what is known about the columns of the statement's result; of the others only the header
// matters.
class Descriptor : public Handle {
  public:
    static constexpr HandleKind kKind = HandleKind::Descriptor;

    // `described`, if not NULL, is where the statement has its result, as soon as there is one.
    explicit Descriptor(std::mutex& mutex, const std::unique_ptr<Result>* described = nullptr)
        : Handle(kKind, mutex), described_(described) {}

    // `column` counts from 1; number 0 names the header. Throws OdbcError: HY091 for a field there is not,
    // 07009 for a column that is not bound or that the result has not, HY016 where columns are only told of.
    void SetField(SQLSMALLINT column, SQLSMALLINT field, SQLPOINTER value);
    // A text is valid as long as the result. Also throws HY007 where there is no result to tell of.
    [[nodiscard]] FieldValue GetField(SQLSMALLINT column, SQLSMALLINT field) const;

    // Binds the column, which counts from 1, or ends that.
    void Bind(SQLUSMALLINT column, const Binding& binding);
    void UnbindAll() { bindings_.clear(); }
    // Of the columns from the first on.
    [[nodiscard]] const std::vector<Binding>& Bindings() const { return bindings_; }

    // Where the binding's value of a row, which counts from 0 in the row set, has to go; `type` is that of
    // the value, which SQL_C_DEFAULT leaves open.
    [[nodiscard]] Target TargetOf(const Binding& binding, SQLSMALLINT type, std::size_t row) const;

    // The header.
    SQLULEN arraySize = 1;                  // the rows of a row set
    SQLULEN bindType = SQL_BIND_BY_COLUMN;  // or the size of the structure that a row goes to
    SQLLEN* bindOffset = nullptr;           // is added to all addresses; may be NULL
    SQLUSMALLINT* arrayStatus = nullptr;    // gets the status of each row; may be NULL
    SQLULEN* rowsProcessed = nullptr;       // gets the number of rows; may be NULL

  private:
    bool SetHeaderField(SQLSMALLINT field, SQLPOINTER value);
    [[nodiscard]] std::optional<FieldValue> HeaderField(SQLSMALLINT field) const;
    [[nodiscard]] FieldValue BindingField(SQLSMALLINT column, SQLSMALLINT field) const;
    [[nodiscard]] FieldValue ResultField(SQLSMALLINT column, SQLSMALLINT field) const;
    [[nodiscard]] std::size_t Count() const;
    void RequireBindings() const;

    const std::unique_ptr<Result>* described_;
    std::vector<Binding> bindings_;
};

}  // namespace NOdbcDriver
