#include "workbook/tables.h"

#include <gtest/gtest.h>

#include "tests/made_workbook.h"
#include "workbook/column_names.h"

namespace {

using namespace NWorkbook;
using namespace NTest;

// The rows of a worksheet; '|' and line feeds divide the cells. A number, #N/A or TRUE is a cell of its kind,
// '' an empty text, nothing no cell.
std::string Cells(std::string_view text) {
    const auto cell = [](const std::string& value, const std::string& place) -> std::string {
        const bool isNumber =
            !value.empty() && value.find_first_not_of("0123456789.eE+-") == std::string::npos;
        const std::string start = "<c r='" + place + "' ";
        if (value.empty()) return "";
        if (isNumber) return start + "><v>" + value + "</v></c>";
        if (value == "#N/A") return start + "t='e'><v>#N/A</v></c>";
        if (value == "TRUE") return start + "t='b'><v>1</v></c>";
        return start + "t='str'><v>" + (value == "''" ? "" : value) + "</v></c>";
    };
    std::string xml;
    std::string value;
    std::uint32_t row = 1;
    std::uint16_t column = 1;
    xml += "<row>";
    for (const char unit : std::string(text) + "\n") {
        if (unit != '|' && unit != '\n') {
            value += unit;
            continue;
        }
        xml += cell(value, Utf8(CellName(row, column++)));
        value.clear();
        if (unit == '\n') ++row, column = 1, xml += "</row><row>";
    }
    return Sheet(xml + "</row>");
}

// A workbook with the worksheets S, which has these cells, and It's, which has its name in B2; `names` are
// definedName elements, "DTC=" stands for one that is named so.
Parts Book(const std::string& names, std::string_view cells) {
    Parts parts = Small({{"s.xml", Cells(cells)}, {"t.xml", Cells("\n|It's")}});
    const std::string list = ReplaceAll(names, "DTC=", "<definedName name='DTC'>");
    parts["w.xml"] = ReplaceAll(parts["w.xml"], "</sheets>",
                                "<sheet name=\"It's\" r:id='b'/></sheets><definedNames>" +
                                    ReplaceAll(list, ";", "</definedName>") + "</definedNames>");
    parts["_rels/w.xml.rels"] = ReplaceAll(parts["_rels/w.xml.rels"], "</",
                                           "<Relationship Id='b' Type='worksheet' Target='t.xml'/></");
    return parts;
}

// "A|B\n1|~": the columns, then the records, ~ for NULL.
std::string Describe(const Table* table) {
    if (table == nullptr) return "none";
    std::string text;
    NumberText scratch;
    const auto add = [&text](std::u16string_view value, char before) {
        if (!text.empty()) text += before;
        text += Utf8(value);
    };
    for (std::size_t column = 0; column < table->ColumnCount(); ++column) {
        add(table->ColumnName(column), '|');
    }
    for (std::size_t row = 0; row < table->RowCount(); ++row) {
        for (std::size_t column = 0; column < table->ColumnCount(); ++column) {
            add(table->Value(row, column, scratch).value_or(u"~"), column > 0 ? '|' : '\n');
        }
    }
    return text;
}

class Tables : public testing::Test {
  protected:
    std::string Read(const Parts& parts, std::u16string_view name) {
        const std::u16string path = Zip(folder_, parts);
        try {
            return Describe(TableBook(path).Find(name).get());
        } catch (const WorkbookError& error) {
            return ReplaceAll(Utf8(error.Message()), Utf8(folder_.Path("")), "");
        }
    }

    const TempFolder folder_;
};

TEST_F(Tables, AreBlocksOfCells) {
    const char* const kCells = "\n|DTC|Text||7\n|P0001|a\n\n||''|#N/A|TRUE\n9";
    const std::pair<const char*, const char*> rows[] = {
        {"S!$B$2:$C$3", "DTC|Text\nP0001|a"},
        {"S!B2:C3", "DTC|Text\nP0001|a"},
        {"s!$b$2:$c$3", "DTC|Text\nP0001|a"},
        {"'S'!$B$2", "DTC"},
        {"'It''s'!B2", "It's"},
        {"S!A1:B2", "F1|F2\n~|DTC"},
        {"S!B3:E5", "P0001|a|F3|F4\n~|~|~|~\n~||~|TRUE"},
        {"S!$B:$C", "DTC|Text\nP0001|a\n~|~\n~|"},
        {"S!$E:$E", "7\n~\n~\nTRUE"},
        {"S!$2:$3", "DTC|Text|F3|7\nP0001|a|~|~"},
        {"S!$4:$9", "F1|F2|F3|F4|TRUE\n9|~|~|~|~"},
        {"S!$7:$9", "F1"},
        {"S!$1:$1048576", "F1|DTC|Text|F4|7\n~|P0001|a|~|~\n~|~|~|~|~\n~|~||~|TRUE\n9|~|~|~|~"},
        {"S!XFD1048576", "F1"},
        // What is no block of cells of one worksheet.
        {"", "none"},
        {"S!", "none"},
        {"S!1", "none"},
        {"S!A0:B0", "none"},
        {"S!A:B1", "none"},
        {"S!A1:2", "none"},
        {"S!$$1:$$2", "none"},
        {"S!$A$1:$B$1048577", "none"},
        {"S!$A$1:$B$1,S!$D$1", "none"},
        {"S!#REF!", "none"},
        {"#REF!$A$1", "none"},
        {"A1:B2", "none"},
        {"'S!A1", "none"},
        {"'S'A1", "none"},
        {"'It's'!A1", "none"},
        {"[1]S!A1:B2", "none"},
        {"OFFSET(S!A1,0,0)", "none"},
    };
    for (const auto& [reference, table] : rows) {
        EXPECT_EQ(Read(Book("DTC=" + std::string(reference) + ";", kCells), u"DTC"), table) << reference;
    }
    EXPECT_EQ(Read(Book("DTC=S!A1" + Repeat(" ", 1 << 20) + ";", ""), u"DTC"), "none");
    EXPECT_EQ(Read(Book("", kCells), u"S$"), Read(Book("DTC=S!A2:E6;", kCells), u"DTC"));
    EXPECT_EQ(Read(Book("", ""), u"S"), "F1");
}

TEST_F(Tables, HaveNames) {
    const std::string names =
        "<definedName name='B' localSheetId='1'>S!A1;<definedName name='a' localSheetId='0'>S!B1;"
        "<definedName name='A'>S!A1;<definedName name='b' localSheetId='0'>S!B1;<definedName name='A'>S!B1;"
        "<definedName name='H' hidden='1'>S!A1;<definedName name='C'>1;<definedName name='_XLNM.X'>S!A1;"
        "<definedName name='_x0043_'>S!A1;<definedName name=''>S!A1;<definedName>S!A1;"
        "<definedName name=\"It's\">S!C1;<x><definedName name='D'>S!A1;</x>";
    const Parts book = Book(names, "one|two|three");
    TableBook tables(Zip(folder_, book));
    std::string all;
    for (const auto& [name, isWorksheet] : tables.Names()) {
        all += Utf8(name) + (isWorksheet ? " worksheet|" : "|");
    }
    EXPECT_EQ(all, "A|C|It's|B|S$ worksheet|It's$ worksheet|");
    const std::pair<const char16_t*, const char*> rows[] = {
        {u"a", "one"},      {u"b", "one"},           {u"IT'S", "three"},
        {u"it's$", "It's"}, {u"S", "one|two|three"}, {u"s$", "one|two|three"},
        {u"S$$", "none"},   {u"H", "none"},          {u"", "none"},
        {u"$", "none"},     {u"D", "none"},
    };
    for (const auto& [name, table] : rows) EXPECT_EQ(Describe(tables.Find(name).get()), table) << Utf8(name);
}

TEST_F(Tables, RefuseWhatIsTooLarge) {
    EXPECT_EQ(Read(Book("", "a" + Repeat("\n", 60'000) + Repeat("|", 900) + "b"), u"S"),
              "Table 'S$', from A1 to AHQ60001, has more than 50 million cells, empty ones included.");
    EXPECT_EQ(Read(Book("DTC=S!A1:XFC1048575;", ""), u"dtc"),
              "Table 'DTC', from A1 to XFC1048575, has more than 50 million cells, empty ones included.");
    Parts parts = Book("", "");
    parts["s.xml"] =
        Sheet("<row>" + Repeat("<c t='str'><v>" + Repeat("x", 32'768) + "</v></c>", 512) + "</row>");
    EXPECT_EQ(Read(parts, u"S").size(), 512U * 32'769 + 9 * 1 + 90 * 2 + 412 * 3 - 1);
    parts["s.xml"] = ReplaceAll(parts["s.xml"], "</row>", "<c><v>1</v></c></row>");
    EXPECT_EQ(Read(parts, u"S"), "Table 'S$', from A1 to SS1, has names of columns that are too long.");
    std::string names;
    for (int number = 0; number <= 65'536; ++number) {
        names += "<definedName name='N" + std::to_string(number) + "'>S!A1;";
    }
    EXPECT_EQ(Read(Book(names, ""), u"S"),
              "'a.xlsx' is too large: part 'w.xml', line 1: there are too many defined names.");
}

TEST_F(Tables, RefuseDamagedWorksheetsAgainAndAgain) {
    Parts parts = Book("DTC=S!A1;", "");
    parts["s.xml"] = Sheet("<row>");
    TableBook tables(Zip(folder_, parts));
    EXPECT_THROW(tables.Find(u"S"), WorkbookError);
    EXPECT_THROW(tables.Find(u"DTC"), WorkbookError);
    EXPECT_EQ(Describe(tables.Find(u"It's").get()), "It's");
}

TEST(ColumnNames, AreThereAndUnique) {
    using Names = std::vector<std::u16string>;
    const std::pair<Names, Names> rows[] = {
        {{u"A", u"B"}, {u"A", u"B"}},
        {{u"", u"A", u""}, {u"F1", u"A", u"F3"}},
        {{u"A", u"a", u"A"}, {u"A", u"a1", u"A2"}},
        {{u"A", u"A", u"a1"}, {u"A", u"A2", u"a1"}},
        {{u"", u"f1", u"F1"}, {u"F11", u"f1", u"F12"}},
        {{u"A1", u"A", u"A", u"A1"}, {u"A1", u"A", u"A2", u"A11"}},
        {{u"Ä", u"ä"}, {u"Ä", u"ä"}},
    };
    for (const auto& [texts, names] : rows) EXPECT_EQ(NameColumns(texts), names);
    const Names many = NameColumns(Names(16'384, u"x"));
    EXPECT_EQ(many.back(), u"x16383");
}

TEST(NumberTexts, HaveTheFewestDigits) {
    const std::pair<double, const char16_t*> rows[] = {
        {-0.0, u"0"},
        {-7, u"-7"},
        {0.1, u"0.1"},
        {0.1 + 0.2, u"0.30000000000000004"},
        {999999999999999, u"999999999999999"},
        {1e15, u"1e+15"},
        {0.00001, u"0.00001"},
        {9.9e-6, u"9.9e-06"},
        {-1.7976931348623157e308, u"-1.7976931348623157e+308"},
        {5e-324, u"5e-324"},
    };
    NumberText scratch;
    for (const auto& [number, text] : rows) EXPECT_EQ(WriteNumber(number, scratch), text);
}

}  // namespace
