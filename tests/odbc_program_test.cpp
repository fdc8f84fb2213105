// The driver as programs have it.
#include <gtest/gtest.h>

#include <thread>
#include <tuple>

#include "tests/driver_manager.h"
#include "tests/odbc_workbook.h"

namespace {

using NTest::Units;
using NTest::Utf8;

const NTest::DriverManager driverManager;

const std::string kSpeaker = "[xls2tki][Excel Driver]";

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

    SQLHANDLE connection = nullptr;
    SQLHANDLE statement = nullptr;

  private:
    SQLHANDLE environment_ = nullptr;
};

class OdbcDriverManager : public NTest::OdbcWorkbook {
  protected:
    OdbcDriverManager() {
        driverManager.PutDrivers("[An Excel Driver]\nThreading=0\nDriver=" XLS2TKI_TEST_OWN_ODBC_DRIVER "\n");
        driverManager.PutDataSources("[Table]\nDriver=An Excel Driver\nDBQ=" + Utf8(workbook_) +
                                     "\n[None]\n" + "Driver=An Excel Driver\n");
    }

    [[nodiscard]] std::u16string ConnectString() const {
        return u"DRIVER={An Excel Driver};DBQ=" + workbook_;
    }

    void Connect(Program& program) const {
        ASSERT_EQ(program.Connect(ConnectString()), Utf8(ConnectString()));
    }
    void Open(Program& program, const std::u16string& sql = u"SELECT * FROM DTC") const {
        Connect(program);
        ASSERT_EQ(program.Execute(sql), SQL_SUCCESS) << program.Told();
    }
};

TEST_F(OdbcDriverManager, ConnectsToWorkbooks) {
    const std::string path = Utf8(workbook_);
    const std::pair<std::u16string, std::string> rows[] = {
        {ConnectString() + u";UID=me;X",
         "HY000 " + kSpeaker +
             "\"X\" in the connect string is not KEYWORD=value. A value that holds a "
             "semicolon has to stand in braces: DBQ={a;b.xlsx}."},
        {u"DRIVER={An Excel Driver};DSN='';DBQ=" + workbook_, "DRIVER={An Excel Driver};DSN='';DBQ=" + path},
        {u"DSN=Table;", "DSN=Table;DBQ=" + path},
        {u"DSN=Table;DBQ=none", "08001 " + kSpeaker + "'none' cannot be opened."},
        {u"DSN=None",
         "08001 " + kSpeaker + "The data source None names no workbook: it needs a line DBQ=path."},
        {u"DRIVER={An Excel Driver}",
         "08001 " + kSpeaker + "The connect string names no workbook: it needs DBQ=path."},
    };
    for (const auto& [text, expected] : rows) EXPECT_EQ(Program().Connect(text), expected) << Utf8(text);
    Program program;
    std::u16string source = u"Table";
    EXPECT_EQ(SQLConnectW(program.connection, Units(source), 5, nullptr, 0, nullptr, 0), SQL_SUCCESS);
    EXPECT_EQ(Program().Connect(ConnectString(), 5),
              "01004 " + kSpeaker + "The text is longer than its buffer; its end is missing.");
}

TEST_F(OdbcDriverManager, TellsWhatIsWrong) {
    Program program;
    Open(program);
    EXPECT_EQ(program.Rows(), "aä😀z|42\n~|3.5\nx|P\n");
    EXPECT_EQ(program.Execute(u"SELECT * FROM [S$]"), SQL_SUCCESS);
    EXPECT_EQ(program.Rows(), "aä😀z|42|\n~|3.5|~\nx|P|~\n");
    EXPECT_EQ(program.Execute(u"SELECT \"b\", A, [B] FROM DTC"), SQL_SUCCESS);
    EXPECT_EQ(program.Rows(), "42|aä😀z|42\n3.5|~|3.5\nP|x|P\n");
    program.Execute(u"SELECT A, [C c] FROM DTC");
    EXPECT_EQ(program.Told(), "42S22 " + kSpeaker + "The table DTC has no column \"C c\".");
    program.Execute(u"SELECT * FROM dtcs");
    EXPECT_EQ(program.Told(), "42S02 " + kSpeaker + "The workbook has no table \"dtcs\"; it has: DTC, S$.");
    const std::tuple<SQLSMALLINT, SQLSMALLINT, std::string> fields[] = {
        {0, SQL_DIAG_DYNAMIC_FUNCTION, "SELECT CURSOR"},
        {1, SQL_DIAG_SQLSTATE, "42S02"},
        {1, SQL_DIAG_CLASS_ORIGIN, "ISO 9075"},
        {1, SQL_DIAG_SERVER_NAME, ""}};
    for (const auto& [record, field, expected] : fields) {
        char16_t told[20] = u"#";
        SQLGetDiagFieldW(SQL_HANDLE_STMT, program.statement, record, field, told, sizeof told, nullptr);
        EXPECT_EQ(Utf8(told), expected);
    }
}

TEST_F(OdbcDriverManager, FetchesValueByValue) {
    Program program;
    Open(program);
    SQLHANDLE const on = program.statement;
    char room[9] = "#";
    SQLLEN left = 0;
    SQLFetch(on);
    for (int round = 0; round < 2; ++round) {  // another column lets the first one begin anew
        for (const SQLLEN bytes : {10, 4}) {
            EXPECT_EQ(SQLGetData(on, 1, SQL_C_DEFAULT, room, 9, &left),
                      bytes == 10 ? SQL_SUCCESS_WITH_INFO : 0);
            EXPECT_EQ(left, bytes);
        }
        EXPECT_EQ(SQLGetData(on, 1, SQL_C_DEFAULT, room, 9, &left), SQL_NO_DATA);
        EXPECT_EQ(SQLGetData(on, 2, SQL_C_SLONG, room, 0, &left), SQL_SUCCESS);
    }
    SQLFetch(on);
    EXPECT_EQ(SQLGetData(on, 1, SQL_C_CHAR, room, 2, nullptr), SQL_ERROR);
    EXPECT_EQ(program.Told(),
              "22002 " + kSpeaker + "The value is NULL, and there is no indicator to tell it.");
    EXPECT_EQ(SQLGetData(on, 1, SQL_C_CHAR, room, 2, &left), SQL_SUCCESS);
    EXPECT_EQ(left, SQL_NULL_DATA);
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
        EXPECT_EQ(program.Told(), "01004 " + kSpeaker +
                                      "The value is longer than its buffer; its end is missing.\n01S07 " +
                                      kSpeaker + "The number has lost its fraction.");
        EXPECT_EQ(std::u16string(isByRow ? records[1].text : texts[0]), u"aä");
        EXPECT_EQ((isByRow ? records[1].textLength : textLengths[0]), 10);
        EXPECT_EQ((isByRow ? records[2].textLength : textLengths[1]), SQL_NULL_DATA);
        EXPECT_EQ((isByRow ? records[1].number : numbers[0]), 42);
        EXPECT_EQ((isByRow ? records[2].number : numbers[1]), 3);
        EXPECT_EQ((isByRow ? records[2].numberLength : numberLengths[1]), 4);
        EXPECT_EQ(SQLFetchScroll(program.statement, SQL_FETCH_NEXT, 0), SQL_ERROR);
        EXPECT_EQ(program.Told(), "22018 " + kSpeaker + "\"P\" is no number.");
        SQLLEN row = 0;
        SQLINTEGER column = 0;
        SQLGetDiagFieldW(SQL_HANDLE_STMT, program.statement, 1, SQL_DIAG_ROW_NUMBER, &row, 0, nullptr);
        SQLGetDiagFieldW(SQL_HANDLE_STMT, program.statement, 1, SQL_DIAG_COLUMN_NUMBER, &column, 0, nullptr);
        EXPECT_EQ(std::pair(row, column), std::pair(SQLLEN{1}, 2));
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
        {{}, {}, u"s", {}, "~|~|S$|TABLE|~\n"},
        {u"", u"", u"", u"%", "~|~|~|TABLE|~\n"},
        {u"%", u"", u"", {}, ""},
        {u"", u"%", u"", {}, ""},
    };
    Program program;
    Connect(program);
    const auto units = [](Text& text) { return text ? Units(*text) : nullptr; };
    for (auto [catalogue, schema, table, types, expected] : rows) {
        EXPECT_EQ(SQLTablesW(program.statement, units(catalogue), SQL_NTS, units(schema), SQL_NTS,
                             units(table), SQL_NTS, units(types), SQL_NTS),
                  SQL_SUCCESS);
        EXPECT_EQ(program.Rows(), expected);
    }
    Text table = u"dtc", column = u"_";
    SQLColumnsW(program.statement, nullptr, 0, nullptr, 0, units(table), 3, units(column), 1);
    EXPECT_EQ(program.Rows(),
              "~|~|DTC|A|-9|VARCHAR|8|16|~|~|1|~|~|-9|~|16|1|YES\n"
              "~|~|DTC|B|-9|VARCHAR|3|6|~|~|1|~|~|-9|~|6|2|YES\n");
    SQLGetTypeInfoW(program.statement, SQL_ALL_TYPES);
    EXPECT_EQ(program.Rows(4), "VARCHAR|-9|32767\n");
}

TEST_F(OdbcDriverManager, ListsTheColumnsThatCanBeRead) {
    const std::string speaker = "01000 " + kSpeaker;
    // 10 tables that cannot be read take as long as a thousand columns or as a million characters.
    std::string names;
    for (int number = 100; number <= 150; ++number) {
        names += "<definedName name='N" + std::to_string(number) + "'>S!$1:$1</definedName>";
        if (number < 110)
            names += "<definedName name='M" + std::to_string(number) + "'>M!$1:$1</definedName>";
    }
    NTest::Parts parts =
        NTest::Small({{"s.xml", NTest::Sheet("<row><c t='str'><v>" + NTest::Repeat("x", 1'000'000) +
                                             "</v></c>" + NTest::Repeat("<c><v>1</v></c>", 999) + "</row>")},
                      {"t.xml", NTest::Sheet("<row>")}});
    parts["w.xml"] =
        NTest::ReplaceAll(parts["w.xml"], "</sheets>",
                          "<sheet name='M' r:id='b'/></sheets><definedNames>" + names + "</definedNames>");
    parts["_rels/w.xml.rels"] = NTest::ReplaceAll(parts["_rels/w.xml.rels"], "</",
                                                  "<Relationship Id='b' Type='worksheet' Target='t.xml'/></");
    workbook_ = Zip(folder_, parts);
    Program program;
    Connect(program);
    const auto list = [&program](std::u16string table) {
        return SQLColumnsW(program.statement, nullptr, 0, nullptr, 0, Units(table), SQL_NTS, nullptr, 0);
    };
    EXPECT_EQ(list(u"%"), SQL_SUCCESS_WITH_INFO);
    const std::string told = program.Told();
    EXPECT_EQ(told.substr(0, told.find(" '")), speaker + "Table M$ is left out:");
    EXPECT_EQ(
        told.substr(told.rfind('\n') + 1),
        speaker +
            "There are too many columns: those of table N125 and of the tables behind it are left out.");
    EXPECT_EQ(SQLFetch(program.statement), SQL_SUCCESS);
    SQLCloseCursor(program.statement);
    EXPECT_EQ(list(u"M$"), SQL_ERROR);
    EXPECT_EQ(program.Execute(u"SELECT * FROM x"), SQL_ERROR);
    EXPECT_TRUE(program.Told().ends_with(", N104, M104, ....")) << program.Told();
    EXPECT_EQ(list(u"N14_"), SQL_SUCCESS) << program.Told();
}

// Threading=0: the driver manager lets them in at the same time.
TEST_F(OdbcDriverManager, ServesManyThreads) {
    Program shared;
    Connect(shared);
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

// What programs ask beside tables and values.
TEST_F(OdbcDriverManager, AnswersQuestions) {
    Program program;
    Connect(program);
    SQLHANDLE& statement = program.statement;
    std::u16string sql = u"SELECT * FROM S";
    SQLHANDLE descriptor = nullptr;
    EXPECT_EQ(SQLAllocHandle(SQL_HANDLE_DESC, program.connection, &descriptor), SQL_ERROR);
    SQLUSMALLINT hasFunction = 99;
    EXPECT_EQ(SQLGetFunctions(program.connection, SQL_API_SQLDESCRIBEPARAM, &hasFunction), SQL_SUCCESS);
    EXPECT_EQ(hasFunction, SQL_FALSE);
    std::u16string text(100, u'#');
    SQLINTEGER size = 0;
    SQLNativeSqlW(program.connection, Units(sql), SQL_NTS, Units(text), 100, &size);
    EXPECT_EQ(text.substr(0, static_cast<std::size_t>(size)), sql);

    SQLSMALLINT count = -1;
    SQLLEN rows = -1, columns = -1;
    SQLINTEGER bound = 0, fetched = 0;
    EXPECT_EQ(SQLPrepareW(statement, Units(sql), SQL_NTS), SQL_SUCCESS);
    EXPECT_EQ(SQLNumParams(statement, &count), SQL_SUCCESS);
    EXPECT_EQ(SQLExecute(statement), SQL_SUCCESS);
    EXPECT_EQ(SQLRowCount(statement, &rows), SQL_SUCCESS);
    EXPECT_EQ(SQLColAttributeW(statement, 0, SQL_DESC_COUNT, nullptr, 0, nullptr, &columns), SQL_SUCCESS);
    EXPECT_EQ(SQLFetchScroll(statement, SQL_FETCH_PRIOR, 0), SQL_ERROR);
    EXPECT_EQ(program.Told(),
              "HY106 " + kSpeaker + "This cursor fetches the next rows only; a static one fetches any.");
    EXPECT_EQ(SQLBindCol(statement, 2, SQL_C_SLONG, &bound, 0, nullptr), SQL_SUCCESS);
    EXPECT_EQ(SQLFetch(statement), SQL_SUCCESS);
    EXPECT_EQ(SQLGetData(statement, 2, SQL_ARD_TYPE, &fetched, 0, nullptr), SQL_SUCCESS);
    EXPECT_EQ(std::tuple(count, rows, columns, bound, fetched), std::tuple(0, 3, 3, 42, 42));
    EXPECT_EQ(SQLFreeStmt(statement, SQL_UNBIND), SQL_SUCCESS);
    EXPECT_EQ(SQLFreeHandle(SQL_HANDLE_STMT, statement), SQL_SUCCESS);
    EXPECT_EQ(SQLAllocHandle(SQL_HANDLE_STMT, program.connection, &statement), SQL_SUCCESS);

    // As programs of ODBC 2 fetch.
    const auto set = [&statement](SQLINTEGER attribute, SQLULEN value) {
        return SQLSetStmtAttrW(statement, attribute, reinterpret_cast<SQLPOINTER>(value), 0);
    };
    SQLUSMALLINT status[4] = {};
    SQLULEN fetchedRows = 0;
    EXPECT_EQ(set(SQL_ROWSET_SIZE, 4), SQL_SUCCESS);
    EXPECT_EQ(set(SQL_ATTR_MAX_ROWS, 2), SQL_SUCCESS);
    EXPECT_EQ(set(SQL_ATTR_CURSOR_TYPE, SQL_CURSOR_STATIC), SQL_SUCCESS);
    EXPECT_EQ(program.Execute(sql), SQL_SUCCESS);
    EXPECT_EQ(SQLRowCount(statement, &rows), SQL_SUCCESS);
    EXPECT_EQ(rows, 2);
    EXPECT_EQ(SQLExtendedFetch(statement, SQL_FETCH_LAST, 0, &fetchedRows, status), SQL_SUCCESS);
    EXPECT_EQ(fetchedRows, 2U);
    EXPECT_EQ(std::pair(int{status[1]}, int{status[2]}), std::pair(SQL_ROW_SUCCESS, SQL_ROW_NOROW));
    EXPECT_EQ(SQLExtendedFetch(statement, SQL_FETCH_ABSOLUTE, -3, &fetchedRows, status),
              SQL_SUCCESS_WITH_INFO);
    EXPECT_EQ(program.Told(),
              "01S06 " + kSpeaker + "There are fewer rows before the row set: it begins with the first.");
    const auto value = [&statement](SQLSETPOSIROW row) {
        double number = -1;
        EXPECT_EQ(SQLSetPos(statement, row, SQL_POSITION, SQL_LOCK_NO_CHANGE), SQL_SUCCESS);
        EXPECT_EQ(SQLGetData(statement, 2, SQL_C_DOUBLE, &number, 0, nullptr), SQL_SUCCESS);
        return number;
    };
    EXPECT_EQ(std::tuple(value(2), value(1), value(2)), std::tuple(3.5, 42, 3.5));
    EXPECT_EQ(SQLSetPos(statement, 3, SQL_POSITION, SQL_LOCK_NO_CHANGE), SQL_ERROR);
    EXPECT_EQ(SQLSetPos(statement, 1, SQL_DELETE, SQL_LOCK_NO_CHANGE), SQL_ERROR);
    EXPECT_EQ(SQLMoreResults(statement), SQL_NO_DATA);
}

// UTF-8 goes in and comes out; NULs that are counted in a length are no text.
TEST_F(OdbcDriverManager, ServesNarrowPrograms) {
    const auto text = [](const std::string& value) { return "<c t='str'><v>" + value + "</v></c>"; };
    NTest::Parts parts = NTest::Small(
        {{"s.xml", NTest::Sheet("<row>" + text("Fehlertext ß😀") + "</row><row>" + text("ä") + "</row>")}});
    parts["w.xml"] = NTest::ReplaceAll(parts["w.xml"], "name='S'", "name='Größe'");
    workbook_ = Zip(folder_, parts);
    Program program;
    const auto bytes = [](std::string& given) { return reinterpret_cast<SQLCHAR*>(given.data()); };
    std::string given = Utf8(ConnectString()) + std::string(2, '\0');
    char told[100] = "";
    auto* const room = reinterpret_cast<SQLCHAR*>(told);
    SQLSMALLINT length = 0;
    EXPECT_EQ(SQLDriverConnect(program.connection, nullptr, bytes(given),
                               static_cast<SQLSMALLINT>(given.size()), room, 8, &length, 0),
              SQL_SUCCESS_WITH_INFO);
    EXPECT_STREQ(told, "DRIVER=");
    EXPECT_EQ(static_cast<std::size_t>(length), given.size() - 2);
    SQLAllocHandle(SQL_HANDLE_STMT, program.connection, &program.statement);
    given = "SELECT * FROM [Grösse]";
    EXPECT_EQ(SQLExecDirect(program.statement, bytes(given), SQL_NTS), SQL_ERROR);
    SQLGetDiagRec(SQL_HANDLE_STMT, program.statement, 1, room, nullptr, room + 6, 90, &length);
    EXPECT_STREQ(told, "42S02");
    EXPECT_EQ(std::string(told + 6, static_cast<std::size_t>(length)),
              kSpeaker + "The workbook has no table \"Grösse\"; it has: Größe$.");
    given = std::string("SELECT * FROM Größe\0\0", 23);
    EXPECT_EQ(SQLExecDirect(program.statement, bytes(given), 23), SQL_SUCCESS) << program.Told();
    SQLDescribeCol(program.statement, 1, room, 16, &length, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(length, 17);
    EXPECT_EQ(std::string(told), std::string("Fehlertext ß😀").substr(0, 15));  // to the last byte
}

// The catalogue functions that list what no workbook has: how many columns there are, and the last one.
TEST_F(OdbcDriverManager, ListsNothingOfWhatThereIsNot) {
    Program program;
    Connect(program);
    SQLHANDLE const on = program.statement;
    std::u16string table = u"DTC";
    SQLWCHAR *const any = nullptr, *const dtc = Units(table);
    const auto columns = [&program](SQLRETURN result) {
        EXPECT_EQ(result, SQL_SUCCESS) << program.Told();
        SQLSMALLINT count = 0, length = 0;
        std::u16string name(100, u'#');
        SQLNumResultCols(program.statement, &count);
        SQLDescribeColW(program.statement, static_cast<SQLUSMALLINT>(count), Units(name), 100, &length,
                        nullptr, nullptr, nullptr, nullptr);
        EXPECT_EQ(program.Rows(), "");
        return std::to_string(count).append(" ").append(
            Utf8(name.substr(0, static_cast<std::size_t>(length))));
    };
    EXPECT_EQ(columns(SQLPrimaryKeysW(on, any, 0, any, 0, dtc, 3)), "6 PK_NAME");
    EXPECT_EQ(columns(SQLForeignKeysW(on, any, 0, any, 0, dtc, 3, any, 0, any, 0, any, 0)),
              "14 DEFERRABILITY");
    EXPECT_EQ(columns(SQLStatisticsW(on, any, 0, any, 0, dtc, 3, 0, 0)), "13 FILTER_CONDITION");
    EXPECT_EQ(columns(SQLSpecialColumnsW(on, SQL_BEST_ROWID, any, 0, any, 0, dtc, 3, 0, 0)),
              "8 PSEUDO_COLUMN");
    EXPECT_EQ(columns(SQLTablePrivilegesW(on, any, 0, any, 0, any, 0)), "7 IS_GRANTABLE");
    EXPECT_EQ(columns(SQLColumnPrivilegesW(on, any, 0, any, 0, dtc, 3, any, 0)), "8 IS_GRANTABLE");
    EXPECT_EQ(columns(SQLProceduresW(on, any, 0, any, 0, any, 0)), "8 PROCEDURE_TYPE");
    EXPECT_EQ(columns(SQLProcedureColumnsW(on, any, 0, any, 0, any, 0, any, 0)), "19 IS_NULLABLE");
}

}  // namespace
