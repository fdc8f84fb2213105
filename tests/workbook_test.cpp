#include <gtest/gtest.h>

#include "tests/described_workbook.h"
#include "tests/host.h"
#include "tests/made_workbook.h"
#include "workbook/date_formats.h"
#include "workbook/file_formats.h"
#include "workbook/range_address.h"
#include "workbook/xlsx/cell_value.h"
#include "workbook/xlsx/date_serial.h"
#include "workbook/xlsx/part_name.h"
#include "workbook/xlsx/text_builder.h"

namespace {

using namespace NWorkbook;
using namespace NWorkbook::NXlsx;
using namespace NTest;

// Everything that a workbook holds, as the texts beside the files in tests/data/workbooks have it.
std::string DescribeAll(const Workbook& workbook) {
    std::string text;
    for (const auto& sheet : workbook.worksheets) {
        text += "sheet: " + Utf8(sheet->Name()) + "\n";
        for (const Cell* cell = sheet->Cells().Begin(); cell != sheet->Cells().End(); ++cell) {
            text += Utf8(CellName(cell->row, cell->column)) + " " + Describe(*cell) + "\n";
        }
    }
    return text;
}

TEST(Workbooks, ReadAsOtherProgramsReadThem) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(XLS2TKI_TEST_DATA "/workbooks")) {
        if (entry.path().extension() != ".xlsx") continue;
        ++count;
        auto cells = entry.path();
        const std::string expected = ReadBytes(cells.replace_extension(".cells"));
        const auto workbook = OpenWorkbook(entry.path().u16string());
        EXPECT_EQ(DescribeAll(*workbook), expected) << entry.path();
        EXPECT_FALSE(workbook->isOwn);
    }
    EXPECT_EQ(count, 5);
}

TEST(Workbooks, RefuseDamagedParts) {
    const std::string sheetLine = "'a.xlsx' is damaged: part 's.xml', line 1: ";
    const std::string sheetLarge = "'a.xlsx' is too large: part 's.xml', line 1: ";
    const std::string noPart = "'a.xlsx' is damaged: part 'w.xml': worksheet 'S' refers to no part.";
    const std::string folderName = Repeat("f", 60000) + "/";
    std::string shortTargets;  // each of which has the folder in front of it
    for (int number = 0; number < 300; ++number) {
        shortTargets += "<Relationship Id='r" + std::to_string(number) + "' Type='' Target='t'/>";
    }
    const struct {
        Parts changed;
        std::string outcome;
    } kRows[] = {
        {{}, "n 1 "},
        {{{"w.xml", ""}}, "'a.xlsx' is not a workbook."},
        {{{"s.xml", ""}}, "'a.xlsx' is damaged: part 's.xml': it is missing."},
        {{{"xl/workbook.bin", "x"}},
         "'a.xlsx' is a binary workbook (.xlsb), which cannot be read. Save it as .xlsx."},
        {{{"_rels/w.xml.rels", Relationships("chartsheet", "s.xml")}}, ""},
        {{{"_rels/w.xml.rels", Relationships("worksheet", "xl/")}}, noPart},
        {{{"_rels/w.xml.rels", Relationships("worksheet", Repeat("s", 65536))}}, noPart},
        {{{"w.xml", ReplaceAll(Small({})["w.xml"], "'S'", "'" + Repeat("x", 32) + "'")}},
         "'a.xlsx' is damaged: part 'w.xml', line 1: the name of worksheet '" + Repeat("x", 31) +
             "...' has more than 31 characters."},
        {{{"_rels/.rels", Relationships("officeDocument", folderName + "w.xml")},
          {folderName + "w.xml", Small({})["w.xml"]},
          {folderName + "_rels/w.xml.rels",
           ReplaceAll(Relationships("worksheet", "s.xml"), "</", shortTargets + "</")}},
         "'a.xlsx' is too large: part '" + folderName.substr(0, 300) +
             "', line 1: its targets are too long."},
        {{{"_rels/w.xml.rels", ReplaceAll(Relationships("worksheet", "s.xml"), "</",
                                          "<Relationship Id='a' Type='' Target=''/></")}},
         "'a.xlsx' is damaged: part '_rels/w.xml.rels', line 1: there are two relationships 'a'."},
        {{{"S.xml", "<a/>"}}, "'a.xlsx' is damaged: part 's.xml': there are two of this name."},
        {{{"s.xml", "<a>"}}, sheetLine + "its root element is of another namespace."},
        {{{"s.xml", "<!DOCTYPE a><a/>"}},
         sheetLine + "it has a document type declaration, which no workbook has."},
        {{{"s.xml", Sheet("<row>")}}, sheetLine + "mismatched tag."},
        {{{"s.xml", Sheet("<row r='1048577'/>")}}, sheetLine + "there is no row '1048577'."},
        {{{"s.xml", Sheet("<row><c r='XFE1'/></row>")}}, sheetLine + "there is no cell 'XFE1'."},
        {{{"s.xml", Sheet("<row><c r='XFD1'/><c/></row>")}},
         sheetLine + "there are too many cells in a row."},
        {{{"s.xml", Sheet("<row><c t='x'/></row>")}}, sheetLine + "cell A1 is of an unknown type."},
        {{{"s.xml", Sheet("<row r='7'><c r='B7'><v>1,5</v></c></row>")}},
         sheetLine + "cell B7 has the value '1,5', which is none of its type."},
        {{{"s.xml", Sheet("<row><c><v>12<t/>34</v></c></row>")}},
         sheetLine + "cell A1 has an element within its value."},
        {{{"s.xml", Sheet("<row><c t='inlineStr'><is><r><r><t>x</t></r><t>y</t></r></is></c></row>")}},
         "t y "},
        {{{"s.xml", Sheet("<row><c><v>1</v><v>2</v></c></row>")}}, "n 1 "},
        {{{"s.xml", Sheet("<row><c t='s'><v>3</v></c></row>")}},
         sheetLine + "cell A1 refers to shared string 3, which there is not."},
        {{{"s.xml", Sheet(Repeat("<row>", 300))}}, sheetLarge + "its elements are nested too deeply."},
        {{{"s.xml", Sheet("<row a='" + Repeat("x", 2 << 20))}}, sheetLarge + "a tag or comment is too long."},
        {{{"s.xml", Sheet(Repeat(" ", 50 << 20))}}, sheetLarge + "a text is too long."},
    };
    const TempFolder folder;
    for (const auto& row : kRows) EXPECT_EQ(Outcome(folder, Zip(folder, Small(row.changed))), row.outcome);
}

// One refers to a part that is missing, one to none.
TEST(Workbooks, ReadTheWorksheetsThatAreWhole) {
    const TempFolder folder;
    Parts parts = Small({});
    parts["w.xml"] =
        ReplaceAll(parts["w.xml"], "<sheet ", "<sheet name='M' r:id='m'/><sheet name='N'/><sheet ");
    parts["_rels/w.xml.rels"] = ReplaceAll(parts["_rels/w.xml.rels"], "</",
                                           "<Relationship Id='m' Type='worksheet' Target='m.xml'/></");
    const auto workbook = OpenWorkbook(Zip(folder, parts));
    EXPECT_THROW(workbook->worksheets.at(0)->Cells(), WorkbookError);
    EXPECT_THROW(workbook->worksheets.at(1)->Cells(), WorkbookError);
    EXPECT_EQ(Describe(*workbook->worksheets.at(2)->Cells().Begin()), "n 1");
}

// As Excel does.
TEST(Workbooks, TrimTextsUnlessTheyKeepTheirBlanks) {
    const auto cell = [](const std::string& type, const std::string& text) {
        return Sheet("<row><c t='" + type + "'>" + text + "</c></row>");
    };
    const std::pair<std::string, std::string> kRows[] = {
        {cell("str", "<v> &#9;&#13;&#10; a b&#xA0;\n </v>"), "t a b\u00A0 "},
        {cell("str", "<v xml:space='preserve'> a\n</v>"), "t  a\\10 "},
        {cell("inlineStr", "<is><t>  </t></is>"), "t  "},
        {cell("inlineStr", "<is><t>_x0020_a_x000D_ </t></is>"), "t  a\\13 "},
        {cell("inlineStr", "<is><r><t>a </t></r><r><t xml:space='preserve'> b </t></r><r><t> c</t></r></is>"),
         "t a b c "},
        {cell("inlineStr", "<is xml:space='preserve'><t> a</t><t xml:space='default'> b</t></is>"), "t  ab "},
    };
    const TempFolder folder;
    for (const auto& [sheet, outcome] : kRows)
        EXPECT_EQ(Outcome(folder, Zip(folder, Small({{"s.xml", sheet}}))), outcome) << sheet;
}

// 60 KB that name 1 GB of text.
TEST(Workbooks, RefuseSharedTextsThatGrowTooLong) {
    const TempFolder folder;
    Parts parts =
        Small({{"t.xml",
                "<sst xmlns='" + std::string(kMain) + "'><si><t>" + Repeat("x", 32767) + "</t></si></sst>"},
               {"s.xml", Sheet("<row>" + Repeat("<c r='A1' t='s'><v>0</v></c>", 16400) + "</row>")}});
    parts["_rels/w.xml.rels"] = ReplaceAll(parts["_rels/w.xml.rels"], "</",
                                           "<Relationship Id='b' Type='sharedStrings' Target='t.xml'/></");
    EXPECT_EQ(
        Outcome(folder, Zip(folder, parts)),
        "'a.xlsx' is too large: part 's.xml', line 1: the texts of the cells have too many characters.");
}

// 26 worksheets that are the same 10 KB, each of them 10 MiB when it is unpacked.
TEST(Workbooks, RefuseSmallFilesThatBecomeLarge) {
    const TempFolder folder;
    Parts parts = Small({{"s.xml", Sheet(Repeat(" ", 10 << 20))}});
    parts["w.xml"] =
        ReplaceAll(parts["w.xml"], "<sheet name='S' r:id='a'/>", Repeat("<sheet name='S' r:id='a'/>", 26));
    EXPECT_EQ(Outcome(folder, Zip(folder, parts)),
              "'a.xlsx' is too large: part 's.xml': the parts have more than 256 MiB when they are unpacked, "
              "and more than 100 times as much as the file.");
}

TEST(Workbooks, RefuseOtherFiles) {
    const TempFolder folder;
    EXPECT_EQ(Outcome(folder, folder.Path("none")), "'none' cannot be opened.");
    EXPECT_EQ(Outcome(folder, folder.Put("a", "")), "'a' is not a workbook.");
}

// Cut at each byte or with some bytes changed: another outcome perhaps, but always one.
TEST(Workbooks, SurviveDamage) {
    const TempFolder folder;
    const std::string whole = ReadBytes(Zip(folder, Small({})));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_NE(Outcome(folder, folder.Put("cut", whole.substr(0, size))), "n 1 ") << size;
    }
    std::mt19937 random(1);
    for (int round = 0; round < 500; ++round) {
        std::string damaged = whole;
        for (int count = 0; count < 3; ++count)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        Outcome(folder, folder.Put("damaged", damaged));
    }
}

TEST(NumberFormats, ShowDatesAndTimes) {
    for (const char* const code :
         {"d", "YYYY", "0 \"x\" ss", "[h]", "[Red]m", "\\h:h", "[$-F800]dddd\\, mmmm"}) {
        EXPECT_TRUE(IsDateFormat(code)) << code;
    }
    for (const char* const code :
         {"", "General", "0.00E+00", "0 \"days\"", "\\d0", "_d*m0", "[Red]0;d", "0\"d", "[d", "@"}) {
        EXPECT_FALSE(IsDateFormat(code)) << code;
    }
}

TEST(Workbooks, NoticeThatTheFileWasCut) {
    const TempFolder folder;
    const auto path = Zip(folder, Small({}));
    const auto workbook = OpenWorkbook(path);
    std::filesystem::resize_file(path, 10);
    try {
        workbook->worksheets[0]->Cells();
        ADD_FAILURE() << "it was read";
    } catch (const WorkbookError& error) {
        EXPECT_TRUE(error.Message().ends_with(u"it has become shorter since it was opened."));
    }
}

TEST(CellTable, SortsAndKeepsTheLast) {
    CellTable cells;
    const auto add = [&cells](std::uint32_t row, std::uint16_t column, double number,
                              CellType type = CellType::Number) {
        Cell cell{row, column, type, {}};
        cell.number = number;
        cells.Add(cell);
    };
    add(2, 1, 1), add(1, 2, 2), add(1, 1, 3), add(2, 1, 4), add(1, 2, 0, CellType::Nothing), add(3, 1, 5);
    std::string text;
    for (const Cell* cell = cells.Begin(); cell != cells.End(); ++cell) text += Describe(*cell) + " ";
    EXPECT_EQ(text, "n 3 n 4 n 5 ");
    EXPECT_EQ(cells.From(2, 2)->number, 5);
    EXPECT_EQ(cells.From(3, 2), cells.End());
}

TEST(CellTable, FindsPlacesInAnyOrder) {
    constexpr std::uint32_t kRows = 40;
    CellTable cells;
    for (std::uint32_t row = 1; row <= kRows; ++row) cells.Add({2 * row, 5, CellType::Bool, {}});
    for (std::uint32_t start = 1; start <= 2 * kRows; ++start) {
        for (const std::uint32_t row : {start, start, start + 1, 1 + start / 3, start + 30, 2 * kRows}) {
            const std::uint32_t before = std::min((row - 1) / 2, kRows);
            EXPECT_EQ(cells.From(row, 5) - cells.Begin(), before) << row;
        }
    }
}

TEST(CellValues, AreReadExactlyOrNotAtAll) {
    for (const char* text :
         {"", "-", "nan", "inf", "-inf", "1E400", "1 2", "0x1", "1,5", "+-1", "1e99999999999999999999"}) {
        EXPECT_FALSE(ParseNumber(text)) << text;
    }
    const std::string zeros(400, '0');
    EXPECT_FALSE(ParseNumber("1" + zeros + "e-10"));
    EXPECT_EQ(ParseNumber("-0." + zeros + "1e+10"), 0.0);
    EXPECT_EQ(ParseNumber("1e-99999999999999999999"), 0.0);
    EXPECT_EQ(ParseNumber("-.5"), -0.5);
    EXPECT_EQ(ParseNumber("+4.9E-324"), 4.9E-324);
    for (const char* text : {"", "A", "1", "A0", "1A", "A1048577", "XFE1", "AAAA1", "A1B", "A99999999999"}) {
        EXPECT_FALSE(ParseCellName(text)) << text;
    }
    EXPECT_EQ(ParseCellName("xfd1048576")->column, kLastColumn);
    EXPECT_EQ(ParseError("#SPILL!"), CellError::Value);
    EXPECT_FALSE(ParseIndex("-1") || ParseIndex("1.0") || ParseBool("2") || ParseError("x"));
}

TEST(CellValues, DatesAreSerialNumbers) {
    const struct {
        const char* text;
        bool isFrom1904;
        double serial;
    } kRows[] = {{"1900-01-01", false, 1},
                 {"1900-03-01", false, 61},
                 {"1904-01-01", true, 0},
                 {"2021-01-01T12:00:00.000+14:00", false, 44197.5},
                 {"23:59:59.5", false, 86399.5 / 86400}};
    for (const auto& row : kRows) EXPECT_EQ(DateSerial(row.text, row.isFrom1904), row.serial) << row.text;
    for (const char* text : {"", "2021-02-29", "1899-12-30", "2021-1-1", "2021-01-01T", "24:00", "12:00:00x",
                             "P1D", "12:00+14:01", "12:00-00:60"}) {
        EXPECT_FALSE(DateSerial(text, false)) << text;
    }
}

TEST(CellValues, EscapesBecomeUnits) {
    std::u16string text = u"_x0041__x005f_x0041__x00G1_x_x004_xD83D_";
    text.resize(DecodeEscapes(text.data(), text.size()));
    EXPECT_EQ(text, std::u16string(u"A_x0041__x00G1_x_x004") + char16_t{0xD83D});
}

TEST(PartNames, AreResolved) {
    EXPECT_EQ(ResolveTarget("xl/workbook.xml", "worksheets/a.xml"), "xl/worksheets/a.xml");
    EXPECT_EQ(ResolveTarget("xl/workbook.xml", "/xl/a.xml"), "xl/a.xml");
    EXPECT_EQ(ResolveTarget("xl/workbook.xml", "../../..\\a//./b"), "a/b");
    for (const char* folder : {"", ".", "..", "a/", "/", "a/..", "\\."}) {
        EXPECT_EQ(ResolveTarget("xl/workbook.xml", folder), "") << folder;
    }
    EXPECT_EQ(RelationshipsOf("xl/workbook.xml"), "xl/_rels/workbook.xml.rels");
    EXPECT_EQ(PartKey("\\XL\\A%20B%2"), "xl/a b%2");
}

}  // namespace
