// The diagnostics of a handle for its latest call.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "odbc_driver/odbc.h"

namespace NOdbcDriver {

// A diagnostic record. The state is a literal of five characters.
struct Diagnostic {
    const char16_t* state;
    std::u16string message;  // one sentence, without who speaks
    SQLLEN row = SQL_NO_ROW_NUMBER;
    SQLINTEGER column = SQL_NO_COLUMN_NUMBER;
};

// The message with who speaks.
std::u16string MessageOf(const Diagnostic& record);

using DiagnosticField = std::variant<std::u16string, SQLLEN, SQLINTEGER>;

// Ends a call with SQL_ERROR and this record.
class OdbcError {
  public:
    OdbcError(const char16_t* state, std::u16string message) : diagnostic_{state, std::move(message)} {}

    [[nodiscard]] const Diagnostic& Record() const { return diagnostic_; }

  private:
    Diagnostic diagnostic_;
};

class Diagnostics {
  public:
    Diagnostics();

    // At the beginning of each call.
    void Clear() noexcept;
    // The call still succeeds, with information. Of very many records only the first are kept.
    void Add(Diagnostic record);
    void AddOutOfMemory() noexcept;
    // A text did not fit into the application's buffer.
    void AddIfCut(bool isCut);

    [[nodiscard]] std::size_t Count() const { return records_.size(); }
    // Numbers count from 1. NULL if there is no such record.
    [[nodiscard]] const Diagnostic* Find(SQLSMALLINT number) const;

    // A field (SQL_DIAG_...) of a record there is, or of the header, which is number 0; nothing if the field
    // is not known. The driver manager knows itself how many records there are and how the call ended.
    [[nodiscard]] std::optional<DiagnosticField> Field(SQLSMALLINT number, SQLSMALLINT field) const;

  private:
    std::vector<Diagnostic> records_;
};

}  // namespace NOdbcDriver
