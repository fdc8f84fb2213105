#include <gtest/gtest.h>

#include "api/xls2tki.h"
#include "platform/database.h"
#include "sources/odbc_heap.h"
#include "sources/parser_exception.h"
#include "tests/host.h"
#include "tests/rooms.h"

// These tests go through the real driver manager to a foreign driver, that of SQLite. It knows no workbooks:
// it finds its file under the data source's name '' in a configuration of our own.

namespace {

using NTest::MakeTable;
using NTest::Table;
using NTest::Utf8;
using VCSVReader::VDefaultODBCHeap;

// The driver manager looks for its configuration once in a process and remembers what it found: this one is
// there before any test, its folder and the file with the tables stay the same. What it does is written to
// "trace".
class DriverManager {
  public:
    DriverManager() {
        setenv("ODBCSYSINI", Utf8(folder_.Path("")).c_str(), 1);
        setenv("ODBCINI", Utf8(folder_.Path("odbc.ini")).c_str(), 1);
        folder_.Put("odbc.ini", "['']\nStepAPI=1\nDatabase=" + Utf8(folder_.Path("tables")) + "\n");
        Install({});
    }

    // One whose name begins with "Broken" cannot be loaded.
    void Install(const std::vector<std::string>& descriptions) const {
        std::string lines = "[ODBC]\nTrace=Yes\nTraceFile=" + Utf8(folder_.Path("trace")) + "\n";
        for (const std::string& description : descriptions) {
            const bool isBroken = description.starts_with("Broken");
            lines +=
                "[" + description + "]\nDriver=" + (isBroken ? "missing" : XLS2TKI_TEST_ODBC_DRIVER) + "\n";
        }
        folder_.Put("odbcinst.ini", lines);
    }

    // In the place of all tables that are there, makes those of the SQL statements.
    void MakeTables(const std::vector<std::u16string>& statements) const {
        folder_.Put("tables", "");
        Install({"SQLite"});
        NPlatform::Database database;
        database.Open(u"DRIVER={SQLite};Database=" + folder_.Path("tables"));
        for (const std::u16string& statement : statements) NPlatform::Recordset(database).Open(statement);
        database.Close();
    }

    [[nodiscard]] bool HasTraced(std::string_view text) const {
        return folder_.Read("trace").find(text) != std::string::npos;
    }

  private:
    NTest::TempFolder folder_;
};

const DriverManager driverManager;

// Reads as a conversion does; returns the message of a failure.
std::u16string Read(Table& table, const char16_t* path = u"table.xlsx") {
    VCSVReader::VLogObject log(true);
    VDefaultODBCHeap heap(path, &log);
    std::u16string message;
    try {
        heap.OpenSource();
        heap.ReadData();
        heap.CheckConsistency();
    } catch (const VCSVReader::VParserException& exception) {
        message = exception.GetMessage();
    }
    table = NTest::RowsOf(heap);
    return message;
}

TEST(Odbc, ChoosesTheDriver) {
    driverManager.MakeTables({u"CREATE TABLE DTC(a, b)"});
    const std::u16string broken =
        u"Database error: [unixODBC][Driver Manager]Can't open lib 'missing' : file not found";
    const std::pair<std::vector<std::string>, std::u16string> rows[] = {
        {{}, u"No Excel ODBC driver found"},
        {{"Some excel driver", "EXCEL"}, u"No Excel ODBC driver found"},
        {{"Text", "An Excel Driver (*.xls)", "Broken Excel"}, u""},
        {{"Text", "Broken Excel", "An Excel Driver (*.xls)"}, broken},
        {{std::string(900, 'x'), std::string(900, 'y'), std::string(188, 'z'), "An Excel"}, u""},
        // Whose description ends just behind the part of the list that is searched.
        {{std::string(900, 'x'), std::string(900, 'y'), std::string(189, 'z'), "An Excel"},
         u"No Excel ODBC driver found"},
    };
    for (const auto& [drivers, message] : rows) {
        driverManager.Install(drivers);
        Table table;
        EXPECT_EQ(Read(table), message) << testing::PrintToString(drivers);
        EXPECT_EQ(table.size(), message.empty() ? 1U : 0U);
    }
}

TEST(Odbc, ReadsTheTable) {
    const std::u16string header = u"CREATE TABLE DTC(\"DTC\", \"Fault text\", \"\")";
    const auto select = [](std::u16string_view value) {
        return std::u16string(u"CREATE VIEW DTC AS SELECT 1 AS a, ").append(value).append(u" AS b");
    };
    const auto valueOf = [](std::size_t size) {
        return Table{{u"a", u"b"}, {u"1", std::u16string(size, u'0')}};
    };
    const std::u16string longest = u"hex(zeroblob(8388608))";
    const std::u16string tooLong =
        u"Database error: The value in column 2 has more than 16777216 characters.";
    struct {
        std::vector<std::u16string> statements;
        Table table;
        std::u16string message = u"";
    } const rows[] = {
        {{}, {}, u"Database error: [SQLite]no such table: DTC (1)"},
        {{header}, MakeTable(u"DTC|Fault text|")},
        {{header, u"INSERT INTO DTC VALUES('P0016', NULL, 3.5), ('', ' x ', -7)"},
         MakeTable(u"DTC|Fault text|\nP0016||3.5\n| x |-7")},
        {{select(u"CAST(x'C3A4E282AC0DF09F9880' AS TEXT)")}, MakeTable(u"a|b\n1|ä€\r😀")},
        {{select(u"hex(zeroblob(16382))")}, valueOf(32'764)},
        {{select(u"hex(zeroblob(16383))")}, valueOf(32'766)},
        {{select(u"'0'||hex(zeroblob(16383))")}, valueOf(32'767)},
        {{select(u"hex(zeroblob(16384))")}, valueOf(32'768)},
        {{select(u"hex(zeroblob(50000))")}, valueOf(100'000)},
        {{u"CREATE TABLE DTC(a, " + std::u16string(32'765, u'n') + u")"},
         {{u"a", std::u16string(32'765, u'n')}}},
        {{u"CREATE TABLE DTC(a, " + std::u16string(32'766, u'n') + u")"},
         {},
         u"Database error: The name of column 2 has more than 32765 characters."},
        {{select(longest)}, valueOf(16'777'216)},
        {{select(longest + u"||'0'")}, {{u"a", u"b"}}, tooLong},
        {{u"CREATE TABLE N(n)", u"INSERT INTO N VALUES (-1), (-9223372036854775807 - 1), (2)",
          u"CREATE VIEW DTC AS SELECT n AS a, abs(n) AS b FROM N"},
         MakeTable(u"a|b"),
         u"Database error: [SQLite]integer overflow (1)"},
        {{u"CREATE TABLE DTC(only)"},
         {{u"only"}},
         u"The Header (first row in excel sheet) does not define enough columns. It should define at least "
         u"two columns containing DTC and Description. (Data-Area in Excel is assumed as 'Z1S1:Z1S1')"},
    };
    for (const auto& [statements, expected, message] : rows) {
        driverManager.MakeTables(statements);
        driverManager.Install({"An Excel Driver"});
        Table table;
        EXPECT_EQ(Read(table), message);
        EXPECT_TRUE(table == expected) << (statements.empty() ? "" : Utf8(statements.back()));
    }
}

TEST(Odbc, TellsWhatItDoes) {
    driverManager.MakeTables({u"CREATE TABLE DTC(a, b, c)", u"INSERT INTO DTC VALUES(1, 2, 3), (4, 5, 6)"});
    driverManager.Install({"An Excel Driver"});
    const NTest::Progress progress;
    Table table;
    Read(table);
    const std::vector<std::u16string> expected = {u"Using VDefaultODBCHeap to receive data.",
                                                  u"Trying to get Excel driver for ODBC",
                                                  u"Opening ODBC database",
                                                  u"Allocating the recordset",
                                                  u"Trying to get recordset from table 'DTC'",
                                                  u"Stepping through record set",
                                                  u"Closing database ...",
                                                  u"Closing database ... done",
                                                  u"Checking consistency of data ... ",
                                                  u"Target Array has 3 rows and 3 columns",
                                                  u"Checking consistency of data ... done"};
    EXPECT_EQ(NTest::Progress::Messages(), expected);
}

TEST(Odbc, HandsTheFileNameOnAsItIs) {
    driverManager.MakeTables({u"CREATE TABLE DTC(a, b)"});
    driverManager.Install({"An Excel Driver"});
    Table table;
    EXPECT_EQ(Read(table, u"some/../folder/my table.xlsx"), u"");
    EXPECT_TRUE(
        driverManager.HasTraced("[DRIVER={An Excel Driver};DSN='';DBQ=some/../folder/my table.xlsx]"));
    EXPECT_TRUE(driverManager.HasTraced("[SELECT *FROM DTC ]"));
    EXPECT_EQ(Read(table, std::u16string(32'730, u'x').c_str()), u"");  // with the rest of the string, 32766
    EXPECT_EQ(Read(table, std::u16string(32'731, u'x').c_str()),
              u"Database error: The connect string has more than 32766 characters.");
}

TEST(Odbc, ConvertsUnlessARecordFails) {
    using namespace NXls2Tki;
    const NTest::TempFolder folder;
    const auto convert = [&folder](const std::u16string& number) {
        driverManager.MakeTables({u"CREATE TABLE N(n)", u"INSERT INTO N VALUES (1), (" + number + u"), (3)",
                                  u"CREATE VIEW DTC AS SELECT abs(n) AS DTC, 'text' AS Description FROM N"});
        driverManager.Install({"An Excel Driver"});
        const std::u16string output = folder.Put("output", "as it was");
        return Xls2TkiConvert(u"table.xlsx", output.c_str(), ImportTypeODBC, false, u';', false);
    };
    EXPECT_TRUE(convert(u"-2"));
    EXPECT_NE(folder.Read("output").find("<DTC number=\"2\" ><ERRORTEXT>text</ERRORTEXT>"),
              std::string::npos);
    EXPECT_FALSE(convert(u"-9223372036854775807 - 1"));
    EXPECT_EQ(folder.Read("output"), "as it was");
}

}  // namespace
