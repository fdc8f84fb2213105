#include "odbc_driver/application_text.h"
#include "odbc_driver/connection.h"
#include "odbc_driver/numbered.h"

namespace NOdbcDriver {

namespace {

struct KeptAttribute {
    SQLINTEGER number;
    SQLUINTEGER Connection::*value;
};

constexpr KeptAttribute kKeptAttributes[] = {
    {SQL_ATTR_ACCESS_MODE, &Connection::accessMode},
    {SQL_ATTR_AUTOCOMMIT, &Connection::autocommit},
    {SQL_ATTR_CONNECTION_TIMEOUT, &Connection::connectionTimeout},
    {SQL_ATTR_CURSOR_TYPE, &Connection::cursorType},
    {SQL_ATTR_LOGIN_TIMEOUT, &Connection::loginTimeout},
    {SQL_ATTR_METADATA_ID, &Connection::metadataId},
};

[[noreturn]] void Refuse() { throw OdbcError(u"HYC00", u"The connection has no attribute of this number."); }

}  // namespace

void Connection::SetAttribute(SQLINTEGER attribute, SQLPOINTER value) {
    if (const KeptAttribute* const kept = FindNumbered(kKeptAttributes, attribute)) {
        this->*kept->value = static_cast<SQLUINTEGER>(reinterpret_cast<SQLULEN>(value));
    } else if (attribute != SQL_ATTR_ANSI_APP) {  // narrow or wide programs: they see the same
        Refuse();
    }
}

void Connection::GetAttribute(SQLINTEGER attribute, SQLPOINTER value) const {
    if (const KeptAttribute* const kept = FindNumbered(kKeptAttributes, attribute)) {
        PutNumber(this->*kept->value, value);
    } else if (attribute == SQL_ATTR_CONNECTION_DEAD) {
        PutNumber(static_cast<SQLUINTEGER>(IsConnected() ? SQL_CD_FALSE : SQL_CD_TRUE), value);
    } else if (attribute == SQL_ATTR_AUTO_IPD) {
        PutNumber(SQLUINTEGER{SQL_FALSE}, value);
    } else if (attribute == SQL_ATTR_ASYNC_ENABLE) {
        PutNumber(SQLULEN{SQL_ASYNC_ENABLE_OFF}, value);
    } else {
        Refuse();
    }
}

}  // namespace NOdbcDriver
