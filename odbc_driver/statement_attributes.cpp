#include "odbc_driver/application_text.h"
#include "odbc_driver/numbered.h"
#include "odbc_driver/statement.h"

namespace NOdbcDriver {

namespace {

// Attributes that are fields of a descriptor's header.
struct HeaderAttribute {
    SQLINTEGER number;
    SQLSMALLINT field;
    Descriptor Statement::*descriptor;
};

constexpr HeaderAttribute kHeaderAttributes[] = {
    {SQL_ATTR_ROW_ARRAY_SIZE, SQL_DESC_ARRAY_SIZE, &Statement::applicationRows},
    {SQL_ATTR_ROW_BIND_TYPE, SQL_DESC_BIND_TYPE, &Statement::applicationRows},
    {SQL_ATTR_ROW_BIND_OFFSET_PTR, SQL_DESC_BIND_OFFSET_PTR, &Statement::applicationRows},
    {SQL_ATTR_ROW_OPERATION_PTR, SQL_DESC_ARRAY_STATUS_PTR, &Statement::applicationRows},
    {SQL_ATTR_ROW_STATUS_PTR, SQL_DESC_ARRAY_STATUS_PTR, &Statement::implementationRows},
    {SQL_ATTR_ROWS_FETCHED_PTR, SQL_DESC_ROWS_PROCESSED_PTR, &Statement::implementationRows},
    {SQL_ATTR_PARAMSET_SIZE, SQL_DESC_ARRAY_SIZE, &Statement::applicationParameters},
    {SQL_ATTR_PARAM_BIND_TYPE, SQL_DESC_BIND_TYPE, &Statement::applicationParameters},
    {SQL_ATTR_PARAM_BIND_OFFSET_PTR, SQL_DESC_BIND_OFFSET_PTR, &Statement::applicationParameters},
    {SQL_ATTR_PARAM_OPERATION_PTR, SQL_DESC_ARRAY_STATUS_PTR, &Statement::applicationParameters},
    {SQL_ATTR_PARAM_STATUS_PTR, SQL_DESC_ARRAY_STATUS_PTR, &Statement::implementationParameters},
    {SQL_ATTR_PARAMS_PROCESSED_PTR, SQL_DESC_ROWS_PROCESSED_PTR, &Statement::implementationParameters},
};

// Attributes with one fixed value.
struct FixedAttribute {
    SQLINTEGER number;
    SQLULEN value;
};

constexpr FixedAttribute kFixedAttributes[] = {
    {SQL_ATTR_ASYNC_ENABLE, SQL_ASYNC_ENABLE_OFF},
    {SQL_ATTR_CONCURRENCY, SQL_CONCUR_READ_ONLY},
    {SQL_ATTR_CURSOR_SENSITIVITY, SQL_INSENSITIVE},
    {SQL_ATTR_ENABLE_AUTO_IPD, SQL_FALSE},
    {SQL_ATTR_KEYSET_SIZE, 0},
    {SQL_ATTR_MAX_LENGTH, 0},
    {SQL_ATTR_QUERY_TIMEOUT, 0},
    {SQL_ATTR_RETRIEVE_DATA, SQL_RD_ON},
    {SQL_ATTR_SIMULATE_CURSOR, SQL_SC_NON_UNIQUE},
    {SQL_ATTR_USE_BOOKMARKS, SQL_UB_OFF},
};

struct KeptAttribute {
    SQLINTEGER number;
    SQLULEN Statement::*value;
};

constexpr KeptAttribute kKeptAttributes[] = {
    {SQL_ATTR_MAX_ROWS, &Statement::maxRows},
    {SQL_ATTR_NOSCAN, &Statement::noScan},
    {SQL_ATTR_METADATA_ID, &Statement::metadataId},
    {SQL_ROWSET_SIZE, &Statement::extendedRows},
};

struct DescriptorAttribute {
    SQLINTEGER number;
    Descriptor Statement::*descriptor;
};

constexpr DescriptorAttribute kDescriptorAttributes[] = {
    {SQL_ATTR_APP_ROW_DESC, &Statement::applicationRows},
    {SQL_ATTR_IMP_ROW_DESC, &Statement::implementationRows},
    {SQL_ATTR_APP_PARAM_DESC, &Statement::applicationParameters},
    {SQL_ATTR_IMP_PARAM_DESC, &Statement::implementationParameters},
};

[[noreturn]] void Refuse() { throw OdbcError(u"HY092", u"A statement has no attribute of this number."); }

}  // namespace

void Statement::TellReplaced() {
    diagnostics.Add({u"01S02", u"The attribute's value is not supported; another one is used."});
}

void Statement::SetAttribute(SQLINTEGER attribute, SQLPOINTER value) {
    const auto asNumber = reinterpret_cast<SQLULEN>(value);
    if (attribute == SQL_ATTR_CURSOR_TYPE) {
        SetCursorType(asNumber);
    } else if (attribute == SQL_ATTR_CURSOR_SCROLLABLE) {
        SetCursorType(asNumber == SQL_NONSCROLLABLE ? SQL_CURSOR_FORWARD_ONLY : SQL_CURSOR_STATIC);
    } else if (const auto* header = FindNumbered(kHeaderAttributes, attribute)) {
        (this->*header->descriptor).SetField(0, header->field, value);
    } else if (const auto* kept = FindNumbered(kKeptAttributes, attribute)) {
        this->*kept->value = asNumber;
    } else if (const auto* fixed = FindNumbered(kFixedAttributes, attribute)) {
        if (asNumber != fixed->value) TellReplaced();
    } else if (const auto* descriptor = FindNumbered(kDescriptorAttributes, attribute)) {
        const bool isOwn = value == nullptr || value == &(this->*descriptor->descriptor);
        if (!isOwn) throw OdbcError(u"HYC00", u"A statement has the descriptors that it was made with.");
    } else {
        Refuse();
    }
}

void Statement::GetAttribute(SQLINTEGER attribute, SQLPOINTER value) {
    SQLINTEGER* const noLength = nullptr;
    if (attribute == SQL_ATTR_ROW_NUMBER) {
        PutNumber(RowNumber(), value);
    } else if (attribute == SQL_ATTR_CURSOR_TYPE) {
        PutNumber(cursorType_, value);
    } else if (attribute == SQL_ATTR_CURSOR_SCROLLABLE) {
        PutNumber(static_cast<SQLULEN>(IsForwardOnly() ? SQL_NONSCROLLABLE : SQL_SCROLLABLE), value);
    } else if (const auto* header = FindNumbered(kHeaderAttributes, attribute)) {
        if (header->field == SQL_DESC_BIND_TYPE) {
            PutNumber((this->*header->descriptor).bindType, value);
        } else {
            PutAnswer<SQLWCHAR>((this->*header->descriptor).GetField(0, header->field), value, 0, noLength);
        }
    } else if (const auto* kept = FindNumbered(kKeptAttributes, attribute)) {
        PutNumber(this->*kept->value, value);
    } else if (const auto* fixed = FindNumbered(kFixedAttributes, attribute)) {
        PutNumber(fixed->value, value);
    } else if (const auto* descriptor = FindNumbered(kDescriptorAttributes, attribute)) {
        PutNumber(static_cast<SQLPOINTER>(&(this->*descriptor->descriptor)), value);
    } else {
        Refuse();
    }
}

}  // namespace NOdbcDriver
