#include "odbc_driver/odbc.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/database.h"
#include "sources/odbc_heap.h"
#include "sources/parser_exception.h"
#include "tests/driver_manager.h"
#include "tests/made_workbook.h"
#include "tests/rooms.h"

// These tests go through the real driver manager to a foreign driver, that of SQLite. It knows no workbooks:
// it finds its file under the data source's name '' in a configuration of our own.

// NOLINTBEGIN(bugprone-reserved-identifier)
// Our own driver refuses values as dates, as one without wide texts refuses those.
extern "C" {
static bool hasWideTexts = true, hasUtf8 = true;
SQLRETURN __real_SQLGetData(SQLHSTMT, SQLUSMALLINT, SQLSMALLINT, SQLPOINTER, SQLLEN, SQLLEN*);
SQLRETURN __wrap_SQLGetData(SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER data,
                            SQLLEN capacity, SQLLEN* length) {
    const bool isRefused = type == SQL_C_WCHAR && !hasWideTexts;
    const SQLRETURN result =
        __real_SQLGetData(handle, column, isRefused ? SQL_C_TYPE_DATE : type, data, capacity, length);
    auto* const bytes = static_cast<char*>(data);
    if (!hasUtf8 && type == SQL_C_CHAR) std::replace(bytes, bytes + *length, '\xC3', 'A');
    return result;
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

using NTest::MakeTable;
using NTest::Table;
using NTest::Utf8;

// The file with the tables stays the same. "trace" tells what the driver manager does.
class DriverManager : private NTest::DriverManager {
  public:
    DriverManager() {
        PutDataSources("['']\nStepAPI=1\nDatabase=" + Utf8(Folder().Path("tables")) + "\n");
        Install({});
    }

    // One whose name begins with "Broken" cannot be loaded.
    void Install(const std::vector<std::string>& descriptions) const {
        std::string lines = "[ODBC]\nTrace=Yes\nTraceFile=" + Utf8(Folder().Path("trace")) + "\n";
        for (const std::string& description : descriptions) {
            const bool isBroken = description.starts_with("Broken");
            lines +=
                "[" + description + "]\nDriver=" + (isBroken ? "missing" : XLS2TKI_TEST_ODBC_DRIVER) + "\n";
        }
        PutDrivers(lines);
    }

    // Leaves one driver installed, and only the tables that the SQL statements make.
    void MakeTables(const std::vector<std::u16string>& statements) const {
        Folder().Put("tables", "");
        Install({"An Excel Driver"});
        NPlatform::Database database;
        database.Open(u"DRIVER={An Excel Driver};Database=" + Folder().Path("tables"));
        for (const std::u16string& statement : statements) NPlatform::Recordset(database).Open(statement);
        database.Close();
    }

    [[nodiscard]] bool HasTraced(std::string_view text) const {
        return Folder().Read("trace").find(text) != std::string::npos;
    }
};

const DriverManager driverManager;

class Odbc : public testing::Test {
  protected:
    ~Odbc() override { driverManager.Install({}); }
};

// Reads as a conversion does; returns the message of a failure.
std::u16string Read(Table& table, const char16_t* path = u"table.xlsx") {
    VCSVReader::VLogObject log(true);
    VCSVReader::VDefaultODBCHeap heap(path, &log);
    std::u16string message;
    try {
        heap.OpenSource();
        heap.ReadData();
    } catch (const VCSVReader::VParserException& exception) {
        message = exception.GetMessage();
    }
    table = NTest::RowsOf(heap);
    return message;
}

TEST_F(Odbc, ChoosesTheDriver) {
    driverManager.MakeTables({u"CREATE TABLE DTC(a, b)"});
    const std::string x(900, 'x');
    const std::string umlauts = NTest::ReplaceAll(x.substr(0, 450), "x", "\xC3\xA4");
    const std::u16string noDriver = u"No Excel ODBC driver found";
    const std::pair<std::vector<std::string>, std::u16string> rows[] = {
        {{}, noDriver},
        {{"Text", "An Excel Driver (*.xls)", "Broken Excel"}, u""},
        {{"Text", "Broken Excel", "An Excel Driver (*.xls)"},
         u"Database error: [unixODBC][Driver Manager]Can't open lib 'missing' : file not found"},
        // The list of drivers is searched up to 2000 characters.
        {{x, x + x.substr(0, 88), std::string(100, 'y'), "An Excel"}, u""},
        {{x, x + x.substr(0, 88), std::string(101, 'y'), "An Excel"}, noDriver},
        {{umlauts + "1", umlauts + "2", umlauts + "3", "An Excel"}, u""},
    };
    for (const auto& [drivers, message] : rows) {
        driverManager.Install(drivers);
        Table table;
        EXPECT_EQ(Read(table), message) << testing::PrintToString(drivers);
        EXPECT_EQ(table.size(), message.empty() ? 1U : 0U);
    }
    driverManager.Install({"Text", "An Excel Driver"});
    EXPECT_EQ(NPlatform::InstalledDrivers(2000), (NTest::Row{u"Text", u"An Excel Driver"}));
    EXPECT_EQ(NPlatform::InstalledDrivers(20), NTest::Row{u"Text"});
}

TEST_F(Odbc, ReadsTheTable) {
    const std::u16string header = u"CREATE TABLE DTC(\"DTC\", \"Fault text\", \"\")";
    const std::u16string view = u"CREATE VIEW DTC AS SELECT 1 AS a, ";
    const auto textOf = [](std::size_t size) { return std::u16string(size, u'0'); };
    struct {
        std::vector<std::u16string> statements;
        Table table;
        std::u16string message = u"";
    } const rows[] = {
        {{}, {}, u"Database error: [SQLite]no such table: DTC (1)"},
        {{header}, MakeTable(u"DTC|Fault text|")},
        {{header, u"INSERT INTO DTC VALUES('P0016', NULL, 3.5), ('', ' x ', -7)"},
         MakeTable(u"DTC|Fault text|\nP0016||3.5\n| x |-7")},
        {{view + u"CAST(x'C3A4E282AC0DF09F9880' AS TEXT) AS b"}, MakeTable(u"a|b\n1|ä€\r😀")},
        {{view + u"hex(zeroblob(8388608)) AS b"}, {{u"a", u"b"}, {u"1", textOf(16'777'216)}}},
        {{view + u"'0'||hex(zeroblob(8388608)) AS b"},
         {{u"a", u"b"}},
         u"Database error: The value in column 2 has more than 16777216 characters."},
        {{view + u"2 AS [" + textOf(32'766) + u"]"},
         {},
         u"Database error: The name of column 2 has more than 32765 characters."},
    };
    for (const auto& [statements, expected, message] : rows) {
        driverManager.MakeTables(statements);
        Table table;
        EXPECT_EQ(Read(table), message);
        EXPECT_TRUE(table == expected) << (statements.empty() ? "" : Utf8(statements.back()));
    }
}

// Also where a piece of the value ends with it, as it does before a surrogate pair.
TEST_F(Odbc, EndsAValueAtItsNul) {
    const NTest::TempFolder folder;
    for (const std::size_t size : {32'764u, 32'765u, 32'766u, 98'300u}) {
        const std::string text = NTest::Repeat("x", size) + "_x0000_" + NTest::Repeat("y", 70'000);
        const std::u16string path =
            NTest::Zip(folder, NTest::Small({{"s.xml", NTest::Sheet("<row><c><v>1</v></c></row><row><c "
                                                                    "t='inlineStr'><is><t>" +
                                                                    text + "</t></is></c></row>")}}));
        NPlatform::Database database;
        database.Open(std::filesystem::path("DRIVER=" XLS2TKI_TEST_OWN_ODBC_DRIVER ";DBQ=").u16string() +
                      path);
        NPlatform::Recordset records(database);
        records.Open(u"SELECT * FROM S");
        const std::u16string value = records.Value(0);
        EXPECT_TRUE(value == std::u16string(size, u'x')) << size << ": " << value.size();
    }
}

TEST_F(Odbc, HandsTheFileNameOnAsItIs) {
    driverManager.MakeTables({u"CREATE TABLE DTC(a, b)"});
    Table table;
    EXPECT_EQ(Read(table, u"some/../my table.xlsx"), u"");
    EXPECT_TRUE(driverManager.HasTraced("[DRIVER={An Excel Driver};DSN='';DBQ=some/../my table.xlsx]"));
    EXPECT_TRUE(driverManager.HasTraced("[SELECT *FROM DTC ]"));
    EXPECT_EQ(Read(table, std::u16string(32'730, u'x').c_str()), u"");  // with the rest of the string, 32766
    EXPECT_EQ(Read(table, std::u16string(32'731, u'x').c_str()),
              u"Database error: The connect string has more than 32766 characters.");
}

TEST_F(Odbc, ReadsADriverWithoutWideTexts) {
    const NTest::TempFolder folder;
    const std::string text = NTest::Repeat("ä漢😀", 10'000);  // the first piece ends in a character
    const std::u16string path = NTest::Zip(
        folder,
        NTest::Small({{"s.xml", NTest::Sheet("<row><c t='str'><v>A</v></c></row><row><c t='str'><v>" + text +
                                             "</v></c></row><row><c/></row>"
                                             "<row><c t='str'><v>ä</v></c></row>")}}));
    hasWideTexts = false;
    NPlatform::Database database;
    database.Open(std::filesystem::path("DRIVER=" XLS2TKI_TEST_OWN_ODBC_DRIVER ";DBQ=").u16string() + path);
    NPlatform::Recordset records(database);
    records.Open(u"SELECT * FROM S");
    EXPECT_TRUE(Utf8(records.Value(0)) == text);
    records.MoveNext();
    EXPECT_EQ(Utf8(records.Value(0)), "");
    records.MoveNext();
    hasUtf8 = false;
    EXPECT_EQ(Utf8(records.Value(0)), "A¤");
    hasWideTexts = hasUtf8 = true;
}

}  // namespace
