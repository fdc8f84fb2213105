// The driver as programs have it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstring>
#include <thread>
#include <tuple>

#include "odbc_driver/odbc.h"
#include "tests/driver_manager.h"
#include "tests/made_workbook.h"

namespace {

using NTest::Utf8;

const NTest::DriverManager driverManager;

// A program that reads a workbook through the driver manager.
class Program {
  public:
    Program() {
        SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment_);
        SQLSetEnvAttr(environment_, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
        SQLAllocHandle(SQL_HANDLE_DBC, environment_, &connection);
    }
    Program(const Program&) = delete;
    ~Program() {
        SQLDisconnect(connection);
        SQLFreeHandle(SQL_HANDLE_DBC, connection);
        SQLFreeHandle(SQL_HANDLE_ENV, environment_);
    }

    // Returns the completed connect string, or what is told.
    std::string Connect(std::u16string text, SQLSMALLINT capacity = 1000) {
        std::u16string completed(1000, u'#');
        SQLSMALLINT length = 0;
        const SQLRETURN result = SQLDriverConnectW(connection, nullptr, Units(text), SQL_NTS,
                                                   Units(completed), capacity, &length, SQL_DRIVER_NOPROMPT);
        if (result == SQL_SUCCESS) SQLAllocHandle(SQL_HANDLE_STMT, connection, &statement);
        if (result != SQL_SUCCESS) return Told(SQL_HANDLE_DBC, connection);
        return Utf8(completed.substr(0, static_cast<std::size_t>(length)));
    }

    SQLRETURN Execute(std::u16string sql) { return SQLExecDirectW(statement, Units(sql), SQL_NTS); }

    // The rows of the open cursor, "a|b" each; NULL is ~. `columns`: those before it only.
    std::string Rows(int columns = 100) {
        SQLSMALLINT count = 0;
        SQLNumResultCols(statement, &count);
        std::string rows;
        while (SQLFetch(statement) == SQL_SUCCESS) {
            for (SQLUSMALLINT column = 1; column <= count && column < columns; ++column) {
                char text[200] = "";
                SQLLEN length = 0;
                SQLGetData(statement, column, SQL_C_CHAR, text, sizeof text, &length);
                rows.append(column == 1 ? "" : "|").append(length == SQL_NULL_DATA ? "~" : text);
            }
            rows += '\n';
        }
        SQLCloseCursor(statement);
        return rows;
    }

    static std::string Told(SQLSMALLINT kind, SQLHANDLE handle) {
        std::u16string state(6, u'\0');
        std::u16string text(1000, u'\0');
        SQLSMALLINT length = 0;
        std::string told;
        for (SQLSMALLINT number = 1;
             SQLGetDiagRecW(kind, handle, number, Units(state), nullptr, Units(text), 1000, &length) == 0;
             ++number) {
            told.append(number > 1 ? "\n" : "").append(Utf8(state.substr(0, 5))).append(" ");
            told += Utf8(text.substr(0, static_cast<std::size_t>(length)));
        }
        return told;
    }
    std::string Told() const { return Told(SQL_HANDLE_STMT, statement); }

    static SQLWCHAR* Units(std::u16string& text) { return reinterpret_cast<SQLWCHAR*>(text.data()); }

    SQLHANDLE connection = nullptr;
    SQLHANDLE statement = nullptr;

  private:
    SQLHANDLE environment_ = nullptr;
};

// The table DTC of a workbook's file, in which A has "aä😀z", nothing and x, and B has 42, 3.5 and P.
class OdbcDriverManager : public testing::Test {
  protected:
    OdbcDriverManager() {
        const auto text = [](const std::string& value) { return "<c t='str'><v>" + value + "</v></c>"; };
        NTest::Parts parts = NTest::Small(
            {{"s.xml", NTest::Sheet("<row>" + text("A") + text("B") + "</row><row>" + text("aä😀z") +
                                    "<c><v>42</v></c></row><row><c/><c><v>3.5</v></c></row><row>" +
                                    text("x") + text("P") + "</row>")}});
        parts["w.xml"] = NTest::ReplaceAll(
            parts["w.xml"], "</sheets>",
            "</sheets><definedNames><definedName name='DTC'>S!$A$1:$B$4</definedName></definedNames>");
        workbook_ = Zip(folder_, parts);
        driverManager.PutDrivers("[An Excel Driver]\nThreading=0\nDriver=" XLS2TKI_TEST_OWN_ODBC_DRIVER "\n");
        driverManager.PutDataSources("[Table]\nDriver=An Excel Driver\nDBQ=" + Utf8(workbook_) +
                                     "\n[None]\n" + "Driver=An Excel Driver\n");
    }

    [[nodiscard]] std::u16string ConnectString() const {
        return u"DRIVER={An Excel Driver};DBQ=" + workbook_;
    }

    // Connected, with the table's cursor open unless there is other SQL.
    void Open(Program& program, const std::u16string& sql = u"SELECT * FROM DTC") const {
        ASSERT_EQ(program.Connect(ConnectString()), Utf8(ConnectString()));
        ASSERT_EQ(program.Execute(sql), SQL_SUCCESS) << program.Told();
    }

    NTest::TempFolder folder_;
    std::u16string workbook_;
};

TEST_F(OdbcDriverManager, ConnectsToWorkbooks) {
    const std::string speaker = "[xls2tki][Excel Driver]";
    const std::string path = Utf8(workbook_);
    const std::pair<std::u16string, std::string> rows[] = {
        {ConnectString() + u";UID=me;X",
         "HY000 " + speaker +
             "\"X\" in the connect string is not KEYWORD=value. A value that holds a "
             "semicolon has to stand in braces: DBQ={a;b.xlsx}."},
        {u"DRIVER={An Excel Driver};DSN='';DBQ=" + workbook_, "DRIVER={An Excel Driver};DSN='';DBQ=" + path},
        {u"DSN=Table;", "DSN=Table;DBQ=" + path},
        {u"DSN=Table;DBQ=none", "08001 " + speaker + "'none' cannot be opened."},
        {u"DSN=None",
         "08001 " + speaker + "The data source None names no workbook: it needs a line DBQ=path."},
        {u"DRIVER={An Excel Driver}",
         "08001 " + speaker + "The connect string names no workbook: it needs DBQ=path."},
    };
    for (const auto& [text, expected] : rows) EXPECT_EQ(Program().Connect(text), expected) << Utf8(text);
    EXPECT_EQ(Program().Connect(ConnectString(), 5),
              "01004 " + speaker + "The text is longer than its buffer; its end is missing.");
}

TEST_F(OdbcDriverManager, TellsWhatIsWrong) {
    const std::string speaker = "[xls2tki][Excel Driver]";
    Program program;
    Open(program);
    EXPECT_EQ(program.Rows(), "aä😀z|42\n~|3.5\nx|P\n");
    EXPECT_EQ(program.Execute(u"SELECT * FROM [S$]"), SQL_SUCCESS);
    EXPECT_EQ(program.Rows(), "aä😀z|42\n~|3.5\nx|P\n");
    program.Execute(u"SELECT * FROM dtcs");
    EXPECT_EQ(program.Told(), "42S02 " + speaker + "The workbook has no table \"dtcs\"; it has: DTC, S$.");
    program.Execute(u"DELETE FROM DTC");
    EXPECT_EQ(program.Told(),
              "42000 " + speaker +
                  "SELECT * FROM table is the one SQL statement that is understood; \"DELETE\" at "
                  "character 1 does not belong to it.");
}

TEST_F(OdbcDriverManager, FetchesInPieces) {
    struct {
        SQLSMALLINT type;
        SQLLEN capacity;
        std::string pieces;  // "units:left in bytes" of each call
    } const rows[] = {
        {SQL_C_WCHAR, 12, "5:10 "},    {SQL_C_DEFAULT, 9, "2:10 3:6 "},
        {SQL_C_WCHAR, 8, "2:10 3:6 "}, {SQL_C_WCHAR, 4, "1:10 1:8 1:6 1:4 1:2 "},
        {SQL_C_CHAR, 9, "8:8 "},       {SQL_C_CHAR, 8, "7:8 1:1 "},
        {SQL_C_CHAR, 7, "3:8 5:5 "},   {SQL_C_CHAR, 3, "1:8 2:7 2:5 2:3 1:1 "},
        {SQL_C_BINARY, 10, "10:10 "},  {SQL_C_BINARY, 3, "3:10 3:7 3:4 1:1 "},
    };
    Program program;
    Open(program);
    EXPECT_EQ(SQLFetch(program.statement), SQL_SUCCESS);
    for (const auto& row : rows) {
        const bool isNarrow = row.type == SQL_C_CHAR;
        std::string pieces, bytes;
        char room[16] = {};
        SQLLEN length = 0;
        SQLGetData(program.statement, 2, SQL_C_SLONG, room, 0, &length);  // so that the other begins anew
        while (SQLGetData(program.statement, 1, row.type, room, row.capacity, &length) != SQL_NO_DATA) {
            const bool isBinary = row.type == SQL_C_BINARY;
            const std::size_t units =
                isBinary   ? static_cast<std::size_t>(std::min(length, row.capacity))
                : isNarrow ? std::strlen(room)
                           : std::char_traits<char16_t>::length(reinterpret_cast<char16_t*>(room));
            pieces += std::to_string(units) + ":" + std::to_string(length) + " ";
            bytes.append(room, units * (isNarrow || isBinary ? 1 : 2));
            ASSERT_LT(pieces.size(), 100U);
        }
        EXPECT_EQ(pieces, row.pieces);
        const std::u16string wide = u"aä😀z";
        EXPECT_EQ(bytes, isNarrow ? "aä😀z" : std::string(reinterpret_cast<const char*>(wide.data()), 10));
    }
    char room[2] = "#";
    SQLLEN length = 0;
    SQLFetch(program.statement);
    EXPECT_EQ(SQLGetData(program.statement, 1, SQL_C_CHAR, room, 2, nullptr), SQL_ERROR);
    EXPECT_EQ(program.Told(),
              "22002 [xls2tki][Excel Driver]The value is NULL, and there is no indicator to tell it.");
    EXPECT_EQ(SQLGetData(program.statement, 1, SQL_C_CHAR, room, 2, &length), SQL_SUCCESS);
    EXPECT_EQ(length, SQL_NULL_DATA);
    EXPECT_EQ(SQLGetData(program.statement, 2, SQL_C_CHAR, room, 0, &length), SQL_SUCCESS_WITH_INFO);
    EXPECT_EQ(length, 3);
    EXPECT_EQ(room[0], '#');
}

// Two rows at once into structures, whose first lies 8 bytes behind what is bound.
TEST_F(OdbcDriverManager, FetchesIntoArrays) {
    struct Record {
        SQLLEN textLength, numberLength;
        char16_t text[3];
        SQLINTEGER number;
    };
    for (const bool isByRow : {true, false}) {
        Program program;
        Open(program);
        Record records[3] = {};
        SQLLEN textLengths[2], numberLengths[2], offset = 0;
        char16_t texts[2][3];
        SQLINTEGER numbers[2];
        SQLULEN fetched = 0;
        SQLUSMALLINT status[2];
        const auto set = [&program](SQLINTEGER attribute, auto value) {
            EXPECT_EQ(SQLSetStmtAttrW(program.statement, attribute, reinterpret_cast<SQLPOINTER>(value), 0),
                      SQL_SUCCESS);
        };
        set(SQL_ATTR_ROW_ARRAY_SIZE, SQLULEN{2});
        set(SQL_ATTR_ROWS_FETCHED_PTR, &fetched);
        set(SQL_ATTR_ROW_STATUS_PTR, status);
        if (isByRow) {
            offset = sizeof(Record);
            set(SQL_ATTR_ROW_BIND_TYPE, sizeof(Record));
            set(SQL_ATTR_ROW_BIND_OFFSET_PTR, &offset);
            SQLBindCol(program.statement, 1, SQL_C_WCHAR, records->text, 6, &records->textLength);
            SQLBindCol(program.statement, 2, SQL_C_SLONG, &records->number, 0, &records->numberLength);
        } else {
            SQLBindCol(program.statement, 1, SQL_C_WCHAR, texts, 6, textLengths);
            SQLBindCol(program.statement, 2, SQL_C_SLONG, numbers, 0, numberLengths);
        }
        EXPECT_EQ(SQLFetch(program.statement), SQL_SUCCESS_WITH_INFO);
        EXPECT_EQ(program.Told(),
                  "01004 [xls2tki][Excel Driver]The value is longer than its buffer; its end is missing."
                  "\n01S07 [xls2tki][Excel Driver]The number has lost its fraction.");
        EXPECT_EQ(std::u16string(isByRow ? records[1].text : texts[0]), u"aä");
        EXPECT_EQ((isByRow ? records[1].textLength : textLengths[0]), 10);
        EXPECT_EQ((isByRow ? records[2].textLength : textLengths[1]), SQL_NULL_DATA);
        EXPECT_EQ((isByRow ? records[1].number : numbers[0]), 42);
        EXPECT_EQ((isByRow ? records[2].number : numbers[1]), 3);
        EXPECT_EQ((isByRow ? records[2].numberLength : numberLengths[1]), 4);
        EXPECT_EQ(SQLFetchScroll(program.statement, SQL_FETCH_NEXT, 0), SQL_ERROR);
        EXPECT_EQ(program.Told(), "22018 [xls2tki][Excel Driver]\"P\" is no number.");
        EXPECT_EQ(fetched, 1U);
        EXPECT_EQ(status[0], SQL_ROW_ERROR);
        EXPECT_EQ(status[1], SQL_ROW_NOROW);
        EXPECT_EQ(std::u16string(isByRow ? records[1].text : texts[0]), u"x");
        EXPECT_EQ(SQLFetch(program.statement), SQL_NO_DATA);
        EXPECT_EQ(fetched, 0U);
    }
}

TEST_F(OdbcDriverManager, ListsTablesAndColumns) {
    using Text = std::optional<std::u16string>;
    struct {
        Text catalogue, schema, table, types;
        std::string tables;
    } const rows[] = {
        {{}, {}, {}, {}, "~|~|DTC|TABLE|~\n~|~|S$|TABLE|~\n"},
        {u"", u"%", u"%$", u"VIEW, 'TABLE'", "~|~|S$|TABLE|~\n"},
        {{}, {}, u"dt_", u"VIEW,TABLES", ""},
        {u"x", {}, {}, {}, ""},
        {u"", u"", u"", u"%", "~|~|~|TABLE|~\n"},
        {u"%", u"", u"", {}, ""},
        {u"", u"%", u"", {}, ""},
    };
    Program program;
    Open(program);
    SQLCloseCursor(program.statement);
    const auto units = [](Text& text) { return text ? Program::Units(*text) : nullptr; };
    for (auto [catalogue, schema, table, types, expected] : rows) {
        EXPECT_EQ(SQLTablesW(program.statement, units(catalogue), SQL_NTS, units(schema), SQL_NTS,
                             units(table), SQL_NTS, units(types), SQL_NTS),
                  SQL_SUCCESS);
        EXPECT_EQ(program.Rows(), expected);
    }
    Text table = u"dtc", column = u"_";
    SQLColumnsW(program.statement, nullptr, 0, nullptr, 0, units(table), 3, units(column), 1);
    EXPECT_EQ(program.Rows(),
              "~|~|DTC|A|-9|VARCHAR|5|10|~|~|1|~|~|-9|~|10|1|YES\n"
              "~|~|DTC|B|-9|VARCHAR|3|6|~|~|1|~|~|-9|~|6|2|YES\n");
    SQLGetTypeInfoW(program.statement, SQL_ALL_TYPES);
    EXPECT_EQ(program.Rows(4), "VARCHAR|-9|32767\n");
}

TEST_F(OdbcDriverManager, ListsTheColumnsThatCanBeRead) {
    const std::string speaker = "01000 [xls2tki][Excel Driver]";
    std::string names;
    for (int number = 100; number <= 150; ++number) {
        names += "<definedName name='N" + std::to_string(number) + "'>S!$1:$1</definedName>";
    }
    NTest::Parts parts =
        NTest::Small({{"s.xml", NTest::Sheet("<row>" + NTest::Repeat("<c><v>1</v></c>", 1000) + "</row>")},
                      {"t.xml", NTest::Sheet("<row>")}});
    parts["w.xml"] =
        NTest::ReplaceAll(parts["w.xml"], "</sheets>",
                          "<sheet name='M' r:id='b'/></sheets><definedNames>" + names + "</definedNames>");
    parts["_rels/w.xml.rels"] = NTest::ReplaceAll(parts["_rels/w.xml.rels"], "</",
                                                  "<Relationship Id='b' Type='worksheet' Target='t.xml'/></");
    workbook_ = Zip(folder_, parts);
    Program program;
    Open(program, u"SELECT * FROM S");
    SQLCloseCursor(program.statement);
    const auto list = [&program](std::u16string table) {
        return SQLColumnsW(program.statement, nullptr, 0, nullptr, 0, Program::Units(table), SQL_NTS, nullptr,
                           0);
    };
    EXPECT_EQ(list(u"%"), SQL_SUCCESS_WITH_INFO);
    const std::string told = program.Told();
    EXPECT_EQ(told.substr(0, told.find(" '")), speaker + "Table M$ is left out:");
    EXPECT_EQ(
        told.substr(told.find('\n') + 1),
        speaker +
            "There are too many columns: those of table N150 and of the tables behind it are left out.");
    EXPECT_EQ(SQLFetch(program.statement), SQL_SUCCESS);
    SQLCloseCursor(program.statement);
    EXPECT_EQ(list(u"M$"), SQL_ERROR);
    EXPECT_EQ(list(u"N14_"), SQL_SUCCESS) << program.Told();
}

TEST_F(OdbcDriverManager, DescribesTheRowsOfAResult) {
    Program program;
    Open(program);
    SQLHANDLE descriptor = nullptr;
    SQLGetStmtAttrW(program.statement, SQL_ATTR_IMP_ROW_DESC, &descriptor, 0, nullptr);
    const auto number = [descriptor](SQLSMALLINT column, SQLSMALLINT field, auto value) {
        EXPECT_EQ(SQLGetDescFieldW(descriptor, column, field, &value, 0, nullptr), SQL_SUCCESS) << field;
        return value;
    };
    const auto told = [descriptor] { return Program::Told(SQL_HANDLE_DESC, descriptor).substr(0, 5); };
    EXPECT_EQ(number(0, SQL_DESC_COUNT, SQLSMALLINT{-1}), 2);
    EXPECT_EQ(number(2, SQL_DESC_CONCISE_TYPE, SQLSMALLINT{-1}), SQL_WVARCHAR);
    EXPECT_EQ(number(2, SQL_DESC_CASE_SENSITIVE, SQLINTEGER{-1}), SQL_TRUE);
    EXPECT_EQ(number(2, SQL_DESC_LENGTH, ~SQLULEN{0}), 3U);
    char16_t name[2] = {};
    SQLINTEGER length = 0;
    EXPECT_EQ(SQLGetDescFieldW(descriptor, 2, SQL_DESC_NAME, name, sizeof name, &length), SQL_SUCCESS);
    EXPECT_EQ(std::u16string(name), u"B");
    EXPECT_EQ(length, 2);
    EXPECT_EQ(SQLGetDescFieldW(descriptor, 3, SQL_DESC_NAME, name, sizeof name, &length), SQL_ERROR);
    EXPECT_EQ(told(), "07009");
    EXPECT_EQ(SQLSetDescFieldW(descriptor, 1, SQL_DESC_TYPE, nullptr, 0), SQL_ERROR);
    EXPECT_EQ(told(), "HY016");
}

// Threading=0: the driver manager lets them in at the same time.
TEST_F(OdbcDriverManager, ServesManyThreads) {
    Program shared;
    Open(shared);
    SQLCloseCursor(shared.statement);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([this, &shared] {
            Program own;
            Open(own);
            EXPECT_EQ(own.Rows(), "aä😀z|42\n~|3.5\nx|P\n");
            SQLHANDLE const ownStatement = own.statement;
            for (int round = 0; round < 500; ++round) {
                SQLAllocHandle(SQL_HANDLE_STMT, shared.connection, &own.statement);
                EXPECT_EQ(own.Execute(u"SELECT * FROM S"), SQL_SUCCESS) << own.Told();
                SQLFreeHandle(SQL_HANDLE_STMT, own.statement);
            }
            own.statement = ownStatement;
        });
    }
    for (std::thread& thread : threads) thread.join();
}

// What a program may ask and set of its handles, without the driver manager, which answers some of it itself.
TEST_F(OdbcDriverManager, KeepsWhatIsSet) {
    void* const library = dlopen(XLS2TKI_TEST_OWN_ODBC_DRIVER, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
#define CALL(function) reinterpret_cast<decltype(&(function))>(dlsym(library, #function))
    SQLHANDLE environment = nullptr, connection = nullptr, statement = nullptr, rows = nullptr;
    CALL(SQLAllocHandle)(SQL_HANDLE_ENV, nullptr, &environment);
    CALL(SQLAllocHandle)(SQL_HANDLE_DBC, environment, &connection);
    std::u16string text = u"DBQ=" + workbook_;
    CALL(SQLDriverConnectW)(connection, nullptr, Program::Units(text), SQL_NTS, nullptr, 0, nullptr, 0);
    CALL(SQLAllocHandle)(SQL_HANDLE_STMT, connection, &statement);
    const auto pointer = [](SQLULEN number) { return reinterpret_cast<SQLPOINTER>(number); };
    SQLULEN value = 0;

    // A statement's attribute, what it is set to, and what it is then.
    const std::tuple<SQLINTEGER, SQLULEN, SQLRETURN, SQLULEN> attributes[] = {
        {SQL_ATTR_MAX_ROWS, 7, SQL_SUCCESS, 7},
        {SQL_ATTR_ROW_ARRAY_SIZE, 9, SQL_SUCCESS, 9},
        {SQL_ATTR_ROW_BIND_TYPE, 40, SQL_SUCCESS, 40},
        {SQL_ATTR_ROW_BIND_OFFSET_PTR, 800, SQL_SUCCESS, 800},
        {SQL_ATTR_ROW_STATUS_PTR, 1600, SQL_SUCCESS, 1600},
        {SQL_ATTR_ROWS_FETCHED_PTR, 2400, SQL_SUCCESS, 2400},
        {SQL_ATTR_CURSOR_TYPE, SQL_CURSOR_FORWARD_ONLY, SQL_SUCCESS, SQL_CURSOR_FORWARD_ONLY},
        {SQL_ATTR_CURSOR_TYPE, SQL_CURSOR_STATIC, SQL_SUCCESS_WITH_INFO, SQL_CURSOR_FORWARD_ONLY},
        {SQL_ATTR_APP_ROW_DESC, 0, SQL_SUCCESS, 0},
        {SQL_ATTR_APP_ROW_DESC, 8, SQL_ERROR, 0},
        {12345, 8, SQL_ERROR, 0},
    };
    for (const auto& [attribute, set, result, kept] : attributes) {
        EXPECT_EQ(CALL(SQLSetStmtAttrW)(statement, attribute, pointer(set), 0), result) << attribute;
        value = 0;
        if (kept != 0) CALL(SQLGetStmtAttrW)(statement, attribute, &value, 0, nullptr);
        EXPECT_EQ(value, kept) << attribute;
    }

    CALL(SQLGetStmtAttrW)(statement, SQL_ATTR_APP_ROW_DESC, &rows, 0, nullptr);
    for (const SQLSMALLINT field : std::initializer_list<SQLSMALLINT>{
             SQL_DESC_CONCISE_TYPE, SQL_DESC_DATA_PTR, SQL_DESC_OCTET_LENGTH, SQL_DESC_OCTET_LENGTH_PTR,
             SQL_DESC_INDICATOR_PTR, SQL_DESC_ARRAY_SIZE, SQL_DESC_BIND_TYPE, SQL_DESC_BIND_OFFSET_PTR,
             SQL_DESC_ARRAY_STATUS_PTR, SQL_DESC_ROWS_PROCESSED_PTR}) {
        const auto number = static_cast<SQLULEN>(field + 3);
        EXPECT_EQ(CALL(SQLSetDescFieldW)(rows, 2, field, pointer(number), 0), SQL_SUCCESS) << field;
        value = 0;
        EXPECT_EQ(CALL(SQLGetDescFieldW)(rows, 2, field, &value, 0, nullptr), SQL_SUCCESS) << field;
        EXPECT_EQ(value, number) << field;
    }
    EXPECT_EQ(CALL(SQLGetDescFieldW)(rows, 3, SQL_DESC_TYPE, &value, 0, nullptr), SQL_ERROR);
    EXPECT_EQ(CALL(SQLSetDescFieldW)(rows, 0, SQL_DESC_TYPE, nullptr, 0), SQL_ERROR);
    EXPECT_EQ(CALL(SQLSetDescFieldW)(rows, 1, SQL_DESC_NAME, nullptr, 0), SQL_ERROR);

    const auto field = [&](SQLSMALLINT record, SQLSMALLINT number) {
        char16_t told[128] = {};
        CALL(SQLGetDiagFieldW)(SQL_HANDLE_DESC, rows, record, number, told, sizeof told, nullptr);
        return Utf8(told);
    };
    EXPECT_EQ(field(0, SQL_DIAG_NUMBER), "\1");
    EXPECT_EQ(field(1, SQL_DIAG_SQLSTATE), "HY091");
    EXPECT_EQ(field(1, SQL_DIAG_MESSAGE_TEXT),
              "[xls2tki][Excel Driver]The descriptor has no field of this number.");
    EXPECT_EQ(field(1, SQL_DIAG_CLASS_ORIGIN), "ISO 9075");
    EXPECT_EQ(field(1, SQL_DIAG_SUBCLASS_ORIGIN), "ISO 9075");
    EXPECT_EQ(field(1, SQL_DIAG_SERVER_NAME), "");
    EXPECT_EQ(field(0, SQL_DIAG_DYNAMIC_FUNCTION), "SELECT CURSOR");
    EXPECT_EQ(CALL(SQLGetDiagFieldW)(SQL_HANDLE_DESC, rows, 2, SQL_DIAG_NATIVE, &value, 0, nullptr),
              SQL_NO_DATA);

    const std::tuple<SQLUSMALLINT, std::string> answers[] = {
        {SQL_DBMS_NAME, "Excel workbook"}, {SQL_DATABASE_NAME, Utf8(workbook_)},
        {SQL_DATA_SOURCE_READ_ONLY, "Y"},  {SQL_IDENTIFIER_QUOTE_CHAR, "\""},
        {SQL_GETDATA_EXTENSIONS, "\x0B"},  {SQL_SQL92_PREDICATES, ""},
    };
    for (const auto& [question, answer] : answers) {
        char16_t told[512] = {};
        EXPECT_EQ(CALL(SQLGetInfoW)(connection, question, told, sizeof told, nullptr), SQL_SUCCESS)
            << question;
        EXPECT_EQ(Utf8(told), answer) << question;
    }
    EXPECT_EQ(CALL(SQLGetInfoW)(connection, 9999, &value, 0, nullptr), SQL_ERROR);

    EXPECT_EQ(CALL(SQLSetConnectAttrW)(connection, SQL_ATTR_LOGIN_TIMEOUT, pointer(5), 0), SQL_SUCCESS);
    for (const auto& [attribute, kept] : {std::pair<SQLINTEGER, SQLUINTEGER>(SQL_ATTR_LOGIN_TIMEOUT, 5),
                                          {SQL_ATTR_CONNECTION_DEAD, SQL_CD_FALSE},
                                          {SQL_ATTR_AUTO_IPD, SQL_FALSE}}) {
        SQLUINTEGER number = 99;
        EXPECT_EQ(CALL(SQLGetConnectAttrW)(connection, attribute, &number, 0, nullptr), SQL_SUCCESS);
        EXPECT_EQ(number, kept) << attribute;
    }
    EXPECT_EQ(CALL(SQLSetConnectAttrW)(connection, 12345, nullptr, 0), SQL_ERROR);
    CALL(SQLDisconnect)(connection);
    CALL(SQLFreeHandle)(SQL_HANDLE_DBC, connection);
    CALL(SQLFreeHandle)(SQL_HANDLE_ENV, environment);
#undef CALL
    dlclose(library);
}

// What the driver manager keeps from a driver, and a driver has to bear nevertheless.
TEST_F(OdbcDriverManager, IsNotNeeded) {
    void* const library = dlopen(XLS2TKI_TEST_OWN_ODBC_DRIVER, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
#define CALL(function) reinterpret_cast<decltype(&(function))>(dlsym(library, #function))
    SQLHANDLE environment = nullptr, connection = nullptr, statement = nullptr;
    EXPECT_EQ(CALL(SQLAllocHandle)(SQL_HANDLE_DBC, nullptr, &connection), SQL_INVALID_HANDLE);
    EXPECT_EQ(CALL(SQLFetch)(nullptr), SQL_INVALID_HANDLE);
    alignas(std::max_align_t) char foreign[4] = "abc";
    for (const int number : {SQL_HANDLE_ENV, SQL_HANDLE_DBC, SQL_HANDLE_STMT, SQL_HANDLE_DESC}) {
        const auto kind = static_cast<SQLSMALLINT>(number);
        EXPECT_EQ(CALL(SQLFreeHandle)(kind, foreign), SQL_INVALID_HANDLE);
        EXPECT_EQ(CALL(SQLGetDiagRecW)(kind, foreign, 1, nullptr, nullptr, nullptr, 0, nullptr),
                  SQL_INVALID_HANDLE);
    }
    EXPECT_EQ(CALL(SQLAllocHandle)(SQL_HANDLE_ENV, nullptr, &environment), SQL_SUCCESS);
    EXPECT_EQ(CALL(SQLAllocHandle)(SQL_HANDLE_DBC, environment, &connection), SQL_SUCCESS);
    EXPECT_EQ(CALL(SQLAllocHandle)(SQL_HANDLE_STMT, connection, &statement), SQL_ERROR);
    std::u16string text = u"DBQ=" + workbook_;
    EXPECT_EQ(
        CALL(SQLDriverConnectW)(connection, nullptr, Program::Units(text), SQL_NTS, nullptr, 0, nullptr, 0),
        SQL_SUCCESS);
    EXPECT_EQ(CALL(SQLAllocHandle)(SQL_HANDLE_STMT, connection, &statement), SQL_SUCCESS);
    const auto state = [&] {
        std::u16string told(6, u'#');
        CALL(SQLGetDiagRecW)
        (SQL_HANDLE_STMT, statement, 1, Program::Units(told), nullptr, nullptr, 0, nullptr);
        return Utf8(told.substr(0, 5));
    };
    SQLSMALLINT count = 0;
    char room[8];
    EXPECT_EQ(CALL(SQLExecute)(statement), SQL_ERROR);
    EXPECT_EQ(state(), "HY010");
    EXPECT_EQ(CALL(SQLNumResultCols)(statement, &count), SQL_ERROR);
    EXPECT_EQ(state(), "HY010");
    SQLHANDLE rows = nullptr;
    EXPECT_EQ(CALL(SQLGetStmtAttrW)(statement, SQL_ATTR_IMP_ROW_DESC, &rows, 0, nullptr), SQL_SUCCESS);
    EXPECT_EQ(CALL(SQLGetDescFieldW)(rows, 0, SQL_DESC_COUNT, &count, 0, nullptr), SQL_SUCCESS);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(CALL(SQLGetDescFieldW)(rows, 1, SQL_DESC_TYPE, &count, 0, nullptr), SQL_ERROR);
    EXPECT_EQ(CALL(SQLFetch)(statement), SQL_ERROR);
    EXPECT_EQ(state(), "24000");
    text = u"SELECT * FROM DTC";
    EXPECT_EQ(CALL(SQLPrepareW)(statement, Program::Units(text), -5), SQL_ERROR);
    EXPECT_EQ(state(), "HY090");
    EXPECT_EQ(CALL(SQLPrepareW)(statement, Program::Units(text), SQL_NTS), SQL_SUCCESS);
    EXPECT_EQ(CALL(SQLFetch)(statement), SQL_ERROR);
    EXPECT_EQ(CALL(SQLExecute)(statement), SQL_SUCCESS);
    EXPECT_EQ(CALL(SQLExecute)(statement), SQL_ERROR);
    EXPECT_EQ(state(), "24000");
    EXPECT_EQ(CALL(SQLGetData)(statement, 1, SQL_C_CHAR, room, 8, nullptr), SQL_ERROR);
    EXPECT_EQ(state(), "24000");
    EXPECT_EQ(CALL(SQLFetch)(statement), SQL_SUCCESS);
    for (const SQLUSMALLINT column : std::initializer_list<SQLUSMALLINT>{0, 3, 65535}) {
        EXPECT_EQ(CALL(SQLGetData)(statement, column, SQL_C_CHAR, room, 8, nullptr), SQL_ERROR);
        EXPECT_EQ(state(), "07009");
    }
    EXPECT_EQ(CALL(SQLGetData)(statement, 1, SQL_C_CHAR, room, -1, nullptr), SQL_ERROR);
    EXPECT_EQ(state(), "HY090");
    EXPECT_EQ(CALL(SQLDisconnect)(connection), SQL_SUCCESS);  // the statement goes with it
    EXPECT_EQ(CALL(SQLFreeHandle)(SQL_HANDLE_DBC, connection), SQL_SUCCESS);
    EXPECT_EQ(CALL(SQLFreeHandle)(SQL_HANDLE_ENV, environment), SQL_SUCCESS);
#undef CALL
    dlclose(library);
}

}  // namespace
