#include "odbc_driver/diagnostics.h"

#include "odbc_driver/application_text.h"

namespace NOdbcDriver {

namespace {

// The component and the data source, as ODBC wants them before each message.
constexpr std::u16string_view kSpeaker = u"[xls2tki][Excel Driver]";

// A record without a message of its own tells this: where memory has run out none can be made.
constexpr std::u16string_view kOutOfMemory = u"There is not enough memory.";

constexpr std::size_t kUsualRecords = 8;
constexpr std::size_t kMostRecords = 1000;

std::u16string MessageOf(const Diagnostic& record) {
    std::u16string message(kSpeaker);
    return message += record.message.empty() ? kOutOfMemory : record.message;
}

// Of the states of this driver, what ODBC has added to those of the standard.
bool IsOfOdbc(std::u16string_view state) { return state.substr(2, 1) == u"S"; }

SQLRETURN ReturnCode(bool isCut) { return isCut ? SQL_SUCCESS_WITH_INFO : SQL_SUCCESS; }

SQLRETURN GetHeaderField(SQLSMALLINT field, SQLPOINTER value, SQLSMALLINT capacity, SQLSMALLINT* length) {
    switch (field) {
        case SQL_DIAG_CURSOR_ROW_COUNT:
        case SQL_DIAG_ROW_COUNT:
            PutNumber(SQLLEN{-1}, value);
            return SQL_SUCCESS;
        case SQL_DIAG_DYNAMIC_FUNCTION_CODE:
            PutNumber(SQLINTEGER{SQL_DIAG_SELECT_CURSOR}, value);
            return SQL_SUCCESS;
        case SQL_DIAG_DYNAMIC_FUNCTION:
            return ReturnCode(PutTextInBytes(u"SELECT CURSOR", value, capacity, length));
        default:
            return SQL_ERROR;
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

SQLRETURN Diagnostics::GetRecord(SQLSMALLINT number, SQLWCHAR* state, SQLINTEGER* nativeCode,
                                 SQLWCHAR* message, SQLSMALLINT capacity, SQLSMALLINT* length) const {
    if (number <= 0 || capacity < 0) return SQL_ERROR;
    const Diagnostic* const record = Find(number);
    if (record == nullptr) return SQL_NO_DATA;
    constexpr SQLSMALLINT kStateCapacity = 6;
    PutText(record->state, state, kStateCapacity, static_cast<SQLSMALLINT*>(nullptr));
    if (nativeCode != nullptr) *nativeCode = 0;
    return ReturnCode(PutText(MessageOf(*record), message, capacity, length));
}

SQLRETURN Diagnostics::GetField(SQLSMALLINT number, SQLSMALLINT field, SQLPOINTER value, SQLSMALLINT capacity,
                                SQLSMALLINT* length) const {
    if (number < 0) return SQL_ERROR;
    if (number == 0) return GetHeaderField(field, value, capacity, length);
    const Diagnostic* const record = Find(number);
    if (record == nullptr) return SQL_NO_DATA;
    const auto text = [=](std::u16string_view characters) {
        return ReturnCode(PutTextInBytes(characters, value, capacity, length));
    };
    switch (field) {
        case SQL_DIAG_SQLSTATE:
            return text(record->state);
        case SQL_DIAG_MESSAGE_TEXT:
            return text(MessageOf(*record));
        case SQL_DIAG_CLASS_ORIGIN:
            return text(u"ISO 9075");
        case SQL_DIAG_SUBCLASS_ORIGIN:
            return text(IsOfOdbc(record->state) ? u"ODBC 3.0" : u"ISO 9075");
        case SQL_DIAG_CONNECTION_NAME:
        case SQL_DIAG_SERVER_NAME:
            return text(u"");
        case SQL_DIAG_NATIVE:
            PutNumber(SQLINTEGER{0}, value);
            return SQL_SUCCESS;
        case SQL_DIAG_COLUMN_NUMBER:
            PutNumber(record->column, value);
            return SQL_SUCCESS;
        case SQL_DIAG_ROW_NUMBER:
            PutNumber(record->row, value);
            return SQL_SUCCESS;
        default:
            return SQL_ERROR;
    }
}

}  // namespace NOdbcDriver
