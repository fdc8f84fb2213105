#include "odbc_driver/diagnostics.h"

namespace NOdbcDriver {

namespace {

// The component and the data source, which ODBC expects before each message.
constexpr std::u16string_view kSpeaker = u"[xls2tki][Excel Driver]";

// The message of a record without one of its own: without memory, none can be made.
constexpr std::u16string_view kOutOfMemory = u"There is not enough memory.";

constexpr std::size_t kUsualRecords = 8;
constexpr std::size_t kMostRecords = 1000;

// Of the states of this driver, what ODBC has added to those of the standard.
bool IsOfOdbc(std::u16string_view state) { return state.substr(2, 1) == u"S"; }

std::optional<DiagnosticField> HeaderField(SQLSMALLINT field) {
    switch (field) {
        case SQL_DIAG_CURSOR_ROW_COUNT:
        case SQL_DIAG_ROW_COUNT:
            return SQLLEN{-1};
        case SQL_DIAG_DYNAMIC_FUNCTION_CODE:
            return SQLINTEGER{SQL_DIAG_SELECT_CURSOR};
        case SQL_DIAG_DYNAMIC_FUNCTION:
            return u"SELECT CURSOR";
        default:
            return std::nullopt;
    }
}

}  // namespace

Diagnostics::Diagnostics() { records_.reserve(kUsualRecords); }

void Diagnostics::Clear() noexcept { records_.clear(); }

void Diagnostics::Add(Diagnostic record) {
    if (records_.size() < kMostRecords) records_.push_back(std::move(record));
}

void Diagnostics::AddOutOfMemory() noexcept {
    if (records_.size() == records_.capacity()) records_.pop_back();
    records_.push_back({u"HY001", {}});
}

void Diagnostics::AddIfCut(bool isCut) {
    if (isCut) Add({u"01004", u"The text is longer than its buffer; its end is missing."});
}

const Diagnostic* Diagnostics::Find(SQLSMALLINT number) const {
    const auto index = static_cast<std::size_t>(number) - 1;
    return number > 0 && index < records_.size() ? &records_[index] : nullptr;
}

std::optional<DiagnosticField> Diagnostics::Field(SQLSMALLINT number, SQLSMALLINT field) const {
    if (number == 0) return HeaderField(field);
    const Diagnostic& record = *Find(number);
    switch (field) {
        case SQL_DIAG_SQLSTATE:
            return record.state;
        case SQL_DIAG_MESSAGE_TEXT:
            return MessageOf(record);
        case SQL_DIAG_CLASS_ORIGIN:
            return u"ISO 9075";
        case SQL_DIAG_SUBCLASS_ORIGIN:
            return IsOfOdbc(record.state) ? u"ODBC 3.0" : u"ISO 9075";
        case SQL_DIAG_CONNECTION_NAME:
        case SQL_DIAG_SERVER_NAME:
            return u"";
        case SQL_DIAG_NATIVE:
            return SQLINTEGER{0};
        case SQL_DIAG_COLUMN_NUMBER:
            return record.column;
        case SQL_DIAG_ROW_NUMBER:
            return record.row;
        default:
            return std::nullopt;
    }
}

std::u16string MessageOf(const Diagnostic& record) {
    std::u16string message(kSpeaker);
    return message += record.message.empty() ? kOutOfMemory : record.message;
}

}  // namespace NOdbcDriver
