// The driver without the driver manager, which keeps wrong calls from a driver and answers some questions
// itself.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <tuple>

#include "tests/odbc_workbook.h"

namespace {

using NTest::Units;
using NTest::Utf8;

class OdbcDriverAlone : public NTest::OdbcWorkbook {
  protected:
#define CALL(function) reinterpret_cast<decltype(&(function))>(dlsym(library_, #function))
    OdbcDriverAlone() : library_(dlopen(XLS2TKI_TEST_OWN_ODBC_DRIVER, RTLD_NOW | RTLD_LOCAL)) {
        EXPECT_NE(library_, nullptr) << dlerror();
        EXPECT_EQ(CALL(SQLAllocHandle)(SQL_HANDLE_ENV, nullptr, &environment_), SQL_SUCCESS);
        EXPECT_EQ(CALL(SQLAllocHandle)(SQL_HANDLE_DBC, environment_, &connection_), SQL_SUCCESS);
    }
    ~OdbcDriverAlone() override {
        EXPECT_EQ(CALL(SQLDisconnect)(connection_), SQL_SUCCESS);  // the statement goes with it
        EXPECT_EQ(CALL(SQLFreeHandle)(SQL_HANDLE_DBC, connection_), SQL_SUCCESS);
        EXPECT_EQ(CALL(SQLFreeHandle)(SQL_HANDLE_ENV, environment_), SQL_SUCCESS);
        dlclose(library_);
    }
    void Connect() {
        std::u16string text = u"DBQ=" + workbook_;
        EXPECT_EQ(CALL(SQLDriverConnectW)(connection_, nullptr, Units(text), SQL_NTS, nullptr, 0, nullptr, 0),
                  SQL_SUCCESS);
        EXPECT_EQ(CALL(SQLAllocHandle)(SQL_HANDLE_STMT, connection_, &statement_), SQL_SUCCESS);
    }
    // The state that a call of the statement has left; empty if it has left none.
    std::string State(SQLRETURN result) {
        std::u16string told(6, u'#');
        const SQLRETURN found =
            CALL(SQLGetDiagRecW)(SQL_HANDLE_STMT, statement_, 1, Units(told), nullptr, nullptr, 0, nullptr);
        EXPECT_EQ(found == SQL_NO_DATA, result == SQL_SUCCESS || result == SQL_NO_DATA);
        return found == SQL_NO_DATA ? "" : Utf8(told.substr(0, 5));
    }

    static SQLPOINTER ToPointer(SQLULEN number) { return reinterpret_cast<SQLPOINTER>(number); }

    void* library_;
    SQLHANDLE environment_ = nullptr, connection_ = nullptr, statement_ = nullptr;
};

TEST_F(OdbcDriverAlone, KeepsWhatIsSet) {
    Connect();
    SQLULEN value = 0;

    // A statement's attribute, what it is set to, the state that this leaves, and what it is then.
    const std::tuple<SQLINTEGER, SQLULEN, std::string, SQLULEN> attributes[] = {
        {SQL_ATTR_ROW_ARRAY_SIZE, 9, "", 9},
        {SQL_ATTR_ROW_ARRAY_SIZE, 0, "HY024", 9},
        {SQL_ATTR_CURSOR_TYPE, SQL_CURSOR_FORWARD_ONLY, "", SQL_CURSOR_FORWARD_ONLY},
        {SQL_ATTR_CURSOR_TYPE, SQL_CURSOR_DYNAMIC, "01S02", SQL_CURSOR_STATIC},
        {SQL_ATTR_CURSOR_SCROLLABLE, SQL_NONSCROLLABLE, "", SQL_NONSCROLLABLE},
        {SQL_ATTR_CURSOR_SCROLLABLE, SQL_SCROLLABLE, "", SQL_SCROLLABLE},
        {SQL_ATTR_CONCURRENCY, SQL_CONCUR_READ_ONLY, "", SQL_CONCUR_READ_ONLY},
        {SQL_ATTR_APP_ROW_DESC, 0, "", 0},
        {SQL_ATTR_APP_ROW_DESC, 8, "HYC00", 0},
        {SQL_ATTR_ROW_NUMBER, 8, "HY092", 0},
    };
    for (const auto& [attribute, set, state, kept] : attributes) {
        EXPECT_EQ(State(CALL(SQLSetStmtAttrW)(statement_, attribute, ToPointer(set), 0)), state) << attribute;
        value = 0;
        if (kept != 0) CALL(SQLGetStmtAttrW)(statement_, attribute, &value, 0, nullptr);
        EXPECT_EQ(value, kept) << attribute;
    }
    EXPECT_EQ(State(CALL(SQLGetStmtAttrW)(statement_, SQL_ATTR_ROW_NUMBER, &value, 0, nullptr)), "");
    EXPECT_EQ(value, 0U);
    EXPECT_EQ(State(CALL(SQLGetStmtAttrW)(statement_, 12345, &value, 0, nullptr)), "HY092");

    SQLHANDLE rows = nullptr;
    CALL(SQLGetStmtAttrW)(statement_, SQL_ATTR_APP_ROW_DESC, &rows, 0, nullptr);
    for (const SQLSMALLINT field : std::initializer_list<SQLSMALLINT>{
             SQL_DESC_CONCISE_TYPE, SQL_DESC_DATA_PTR, SQL_DESC_OCTET_LENGTH, SQL_DESC_OCTET_LENGTH_PTR,
             SQL_DESC_INDICATOR_PTR, SQL_DESC_ARRAY_SIZE, SQL_DESC_BIND_TYPE, SQL_DESC_BIND_OFFSET_PTR,
             SQL_DESC_ARRAY_STATUS_PTR, SQL_DESC_ROWS_PROCESSED_PTR, SQL_DESC_COUNT}) {
        const auto number = static_cast<SQLULEN>(field);
        EXPECT_EQ(CALL(SQLSetDescFieldW)(rows, 2, field, ToPointer(number), 0), SQL_SUCCESS) << field;
        value = 0;
        EXPECT_EQ(CALL(SQLGetDescFieldW)(rows, 2, field, &value, 0, nullptr), SQL_SUCCESS) << field;
        EXPECT_EQ(value, number) << field;
    }
    const auto state = [&](SQLRETURN result) {
        EXPECT_EQ(result, SQL_ERROR);
        char16_t told[6] = {};
        CALL(SQLGetDiagFieldW)(SQL_HANDLE_DESC, rows, 1, SQL_DIAG_SQLSTATE, told, sizeof told, nullptr);
        return Utf8(told);
    };
    EXPECT_EQ(state(CALL(SQLGetDescFieldW)(rows, 3000, SQL_DESC_TYPE, &value, 0, nullptr)), "07009");
    EXPECT_EQ(state(CALL(SQLGetDescFieldW)(rows, 1, SQL_DESC_NAME, &value, 0, nullptr)), "HY091");
    EXPECT_EQ(state(CALL(SQLSetDescFieldW)(rows, 0, SQL_DESC_TYPE, nullptr, 0)), "07009");
    EXPECT_EQ(state(CALL(SQLSetDescFieldW)(rows, 1, SQL_DESC_NAME, nullptr, 0)), "HY091");

    const std::tuple<SQLUSMALLINT, std::string> answers[] = {
        {SQL_DBMS_NAME, "Excel workbook"},  {SQL_DATABASE_NAME, Utf8(workbook_)},
        {SQL_DATA_SOURCE_NAME, ""},         {SQL_DATA_SOURCE_READ_ONLY, "Y"},
        {SQL_IDENTIFIER_QUOTE_CHAR, "\""},  {SQL_GETDATA_EXTENSIONS, "\x0F"},
        {SQL_MAX_TABLES_IN_SELECT, "\x01"}, {SQL_SQL92_PREDICATES, ""},
        {SQL_OJ_CAPABILITIES, ""},
    };
    for (const auto& [question, answer] : answers) {
        char16_t told[512] = {};
        EXPECT_EQ(CALL(SQLGetInfoW)(connection_, question, told, sizeof told, nullptr), SQL_SUCCESS)
            << question;
        EXPECT_EQ(Utf8(told), answer) << question;
    }
    EXPECT_EQ(CALL(SQLGetInfoW)(connection_, 9999, &value, 0, nullptr), SQL_ERROR);

    EXPECT_EQ(CALL(SQLSetConnectAttrW)(connection_, SQL_ATTR_LOGIN_TIMEOUT, ToPointer(5), 0), SQL_SUCCESS);
    EXPECT_EQ(CALL(SQLSetConnectAttrW)(connection_, SQL_ATTR_ANSI_APP, nullptr, 0), SQL_SUCCESS);
    for (const auto& [attribute, kept] : {std::pair<SQLINTEGER, SQLULEN>(SQL_ATTR_LOGIN_TIMEOUT, 5),
                                          {SQL_ATTR_CONNECTION_DEAD, SQL_CD_FALSE},
                                          {SQL_ATTR_AUTO_IPD, SQL_FALSE},
                                          {SQL_ATTR_ASYNC_ENABLE, SQL_ASYNC_ENABLE_OFF},
                                          {SQL_ATTR_CURRENT_CATALOG, 0}}) {
        value = 0;
        EXPECT_EQ(CALL(SQLGetConnectAttrW)(connection_, attribute, &value, sizeof value, nullptr),
                  SQL_SUCCESS);
        EXPECT_EQ(value, kept) << attribute;
    }
    EXPECT_EQ(CALL(SQLSetConnectAttrW)(connection_, 12345, nullptr, 0), SQL_ERROR);
    EXPECT_EQ(CALL(SQLGetConnectAttrW)(connection_, 12345, &value, 0, nullptr), SQL_ERROR);
    EXPECT_EQ(CALL(SQLSetEnvAttr)(environment_, 12345, nullptr, 0), SQL_ERROR);
    EXPECT_EQ(CALL(SQLEndTran)(SQL_HANDLE_ENV, environment_, SQL_ROLLBACK), SQL_SUCCESS);
}

TEST_F(OdbcDriverAlone, BearsWrongCalls) {
    SQLSMALLINT count = 0;
    char room[8];
    EXPECT_EQ(CALL(SQLAllocHandle)(SQL_HANDLE_DBC, nullptr, &statement_), SQL_INVALID_HANDLE);
    EXPECT_EQ(CALL(SQLFetch)(nullptr), SQL_INVALID_HANDLE);
    alignas(std::max_align_t) char foreign[4] = "abc";
    for (const SQLSMALLINT kind : std::initializer_list<SQLSMALLINT>{SQL_HANDLE_ENV, SQL_HANDLE_DBC,
                                                                     SQL_HANDLE_STMT, SQL_HANDLE_DESC}) {
        EXPECT_EQ(CALL(SQLFreeHandle)(kind, foreign),
                  kind == SQL_HANDLE_DESC ? SQL_ERROR : SQL_INVALID_HANDLE);
        EXPECT_EQ(CALL(SQLGetDiagRecW)(kind, foreign, 1, nullptr, nullptr, nullptr, 0, nullptr),
                  SQL_INVALID_HANDLE);
    }
    EXPECT_EQ(CALL(SQLAllocHandle)(SQL_HANDLE_STMT, connection_, &statement_), SQL_ERROR);
    Connect();
    std::u16string text = u"SELECT * FROM DTC";
    EXPECT_EQ(CALL(SQLDriverConnectW)(connection_, nullptr, Units(text), SQL_NTS, nullptr, 0, nullptr, 0),
              SQL_ERROR);  // it is open already
    EXPECT_EQ(State(CALL(SQLExecute)(statement_)), "HY010");
    EXPECT_EQ(State(CALL(SQLNumResultCols)(statement_, &count)), "HY010");
    EXPECT_EQ(State(CALL(SQLCloseCursor)(statement_)), "24000");
    SQLHANDLE rows = nullptr;
    EXPECT_EQ(State(CALL(SQLGetStmtAttrW)(statement_, SQL_ATTR_IMP_ROW_DESC, &rows, 0, nullptr)), "");
    EXPECT_EQ(CALL(SQLGetDescFieldW)(rows, 0, SQL_DESC_COUNT, &count, 0, nullptr), SQL_SUCCESS);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(CALL(SQLGetDescFieldW)(rows, 1, SQL_DESC_TYPE, &count, 0, nullptr), SQL_ERROR);
    EXPECT_EQ(State(CALL(SQLFetch)(statement_)), "24000");
    EXPECT_EQ(State(CALL(SQLPrepareW)(statement_, Units(text), -5)), "HY090");
    EXPECT_EQ(State(CALL(SQLPrepareW)(statement_, Units(text), SQL_NTS)), "");
    EXPECT_EQ(State(CALL(SQLFetch)(statement_)), "24000");
    EXPECT_EQ(State(CALL(SQLExecute)(statement_)), "");
    EXPECT_EQ(State(CALL(SQLExecute)(statement_)), "24000");
    EXPECT_EQ(State(CALL(SQLGetData)(statement_, 1, SQL_C_CHAR, room, 8, nullptr)), "24000");
    EXPECT_EQ(State(CALL(SQLFetch)(statement_)), "");
    char16_t name[2] = {};
    EXPECT_EQ(CALL(SQLGetDescFieldW)(rows, 2, SQL_DESC_NAME, name, sizeof name, nullptr), SQL_SUCCESS);
    EXPECT_EQ(std::u16string(name), u"B");
    SQLULEN size = ~SQLULEN{0};
    EXPECT_EQ(CALL(SQLGetDescFieldW)(rows, 2, SQL_DESC_LENGTH, &size, 0, nullptr), SQL_SUCCESS);
    EXPECT_EQ(size, 3U);
    EXPECT_EQ(CALL(SQLSetDescFieldW)(rows, 1, SQL_DESC_TYPE, nullptr, 0), SQL_ERROR);
    for (const SQLUSMALLINT column : std::initializer_list<SQLUSMALLINT>{0, 3, 65535}) {
        EXPECT_EQ(State(CALL(SQLGetData)(statement_, column, SQL_C_CHAR, room, 8, nullptr)), "07009");
    }
    EXPECT_EQ(State(CALL(SQLGetData)(statement_, 1, SQL_C_CHAR, room, -1, nullptr)), "HY090");
    EXPECT_EQ(State(CALL(SQLBindCol)(statement_, 0, SQL_C_CHAR, room, 8, nullptr)), "07009");
    EXPECT_EQ(State(CALL(SQLBindCol)(statement_, 1, SQL_C_CHAR, room, -1, nullptr)), "HY090");
    EXPECT_EQ(CALL(SQLFreeHandle)(SQL_HANDLE_STMT, statement_), SQL_SUCCESS);
}
#undef CALL

}  // namespace
