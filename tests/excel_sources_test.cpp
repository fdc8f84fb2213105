#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

#include "platform/files.h"
#include "platform/user.h"
#include "sources/cell_name.h"
#include "sources/data_area.h"
#include "sources/default_excel_heap.h"
#include "sources/excel_heap.h"
#include "sources/number_text.h"
#include "sources/parser_exception.h"
#include "tests/recording_server.h"

namespace {

using namespace VCSVReader;
using NTest::Cells;
using NTest::MakeTable;
using NTest::RecordingExcel;
using NTest::Table;

Cells CellsOf(std::u16string_view text) { return NTest::MakeCells(MakeTable(text), NTest::MakeCell); }

// What passes out of the call.
template <typename Call>
std::string OutcomeOf(Call call) {
    try {
        call();
    } catch (const VParserException& exception) {
        return NTest::Utf8(exception.GetMessage());
    } catch (const NPlatform::DispatchException&) {
        return "DispatchException";
    }
    return "";
}

TEST(ExcelSources, NamesCells) {
    const std::pair<std::uint64_t, const char16_t*> columns[] = {
        {0, u"A"},     {25, u"Z"},      {26, u"AA"},     {51, u"AZ"},
        {52, u"BA"},   {675, u"YZ"},    {676, u"ZA"},    {701, u"ZZ"},
        {702, u"AAA"}, {16383, u"XFD"}, {18277, u"ZZZ"}, {4294967295, u"MWLQKWV"}};
    for (const auto& [column, name] : columns) {
        EXPECT_EQ(ColumnName(column), name);
        EXPECT_EQ(CellName(column, 18446744073709551615U), name + std::u16string(u"18446744073709551615"));
    }
}

TEST(ExcelSources, WritesNumbers) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const std::tuple<double, const char16_t*, const char16_t*, const char16_t*> rows[] = {
        {42, u"42", u"42", u"42"},
        {-0.0, u"-0", u"-0", u"0"},
        {-2.5, u"-2.5", u"-2.5", u"-2"},
        {0.1 + 0.2, u"0.3", u"0.30000000000000004", u"0"},
        {999999, u"999999", u"999999", u"999999"},
        {1e6, u"1e+006", u"1000000", u"1000000"},
        {-1e6, u"-1e+006", u"-1000000", u"-1000000"},
        {1234567, u"1.23457e+006", u"1234567", u"1234567"},
        {2147483648, u"2147483648", u"2147483648", u"-2147483648"},
        {-2147483648.5, u"-2147483648.5", u"-2147483648.5", u"-2147483648"},
        {-2147483649.0, u"-2147483649", u"-2147483649", u"-2147483648"},
        {0.0001, u"0.0001", u"0.0001", u"0"},
        {1e16, u"1e+016", u"10000000000000000", u"-2147483648"},
        {-1.5e-300, u"-1.5e-300", nullptr, u"0"},
        {std::numeric_limits<double>::denorm_min(), u"4.940656458412465e-324", nullptr, u"0"},
        {kInfinity, u"inf", u"inf", u"-2147483648"},
        {std::numeric_limits<double>::quiet_NaN(), u"nan", u"nan", u"-2147483648"},
    };
    for (const auto& [number, text, trimmed, truncated] : rows) {
        NumberBuffer buffer;
        EXPECT_EQ(WriteNumber(number, buffer), std::u16string(text));
        EXPECT_EQ(WriteTruncatedNumber(number, buffer), std::u16string(truncated));
        const std::string written = NTest::Utf8(WriteTrimmedNumber(number, buffer));
        if (trimmed == nullptr) {
            EXPECT_EQ(std::strtod(written.c_str(), nullptr), number) << written;
        } else {
            EXPECT_EQ(written, NTest::Utf8(trimmed));
        }
    }
}

TEST(ExcelSources, FindsTheEndOfTheData) {
    const std::u16string gap = u"a||||||||||||";  // the next cell is column M
    const std::tuple<std::u16string, std::int32_t, std::int32_t, const char16_t*, int> rows[] = {
        // the worksheet, rows and columns of a block beyond the first, the end, the number of blocks
        {u"", 0, 10, u"A1", 1},
        {u"a|b|c|d\n1|2|3|4\n1|2|3|4", 0, 10, u"D3", 7},
        {gap + u"m", 0, 10, u"M1", 4},
        {u"a|||||||||||||||||||||||x", 0, 10, u"A1", 3},
        {u"a\na\na\na\na\n\na\na\na", 0, 10, u"A5", 11},
        {u"a|!|?\n!|?", 0, 10, u"A1", 3},
        {u"''\n#1", 0, 10, u"A2", 5},
        {u"a\n" + gap + u"m\n|||b", 0, 10, u"M3", 8},
        {u"a|!|?|x\n!|?", -5, -5, u"D2", 9},
        {u"a\n\n\nb|c", 2, 1, u"B4", 6},
        {u"a\n\n\n\nb", 3, 3, u"A5", 5},
        {u"a\n\n\n\n\n\nb", 2, 3, u"A1", 3},
    };
    for (const auto& [text, scanRows, scanColumns, end, blocks] : rows) {
        RecordingExcel excel({{u"One", CellsOf(text)}});
        NPlatform::Dispatch application;
        application.Create(u"Excel.Application");
        const NPlatform::Variant item = application.Get(0xAA, {NPlatform::Variant::Int16(1)});
        excel.Begin(0);
        EXPECT_EQ(FindDataArea(item.AsObject(), scanRows, scanColumns), end) << NTest::Utf8(text);
        const std::string& trace = excel.Trace();
        std::size_t count = 0;
        for (std::size_t at = 0; (at = trace.find(" get 56C", at)) != std::string::npos; ++at) ++count;
        EXPECT_EQ(count, blocks) << trace;
    }
}

// ---- What each generation asks for ----

std::unique_ptr<IExcelHeap> MakeSource(char generation, std::u16string_view path, VLogObject* log) {
    if (generation == '0') return std::make_unique<VExcel2000Heap>(path, log);
    if (generation == '7') return std::make_unique<VExcel2007Heap>(path, log);
    return std::make_unique<VExcel2010Heap>(path, log);
}

// A section of excel_calls.txt for one generation: "07X|line" is for those whose letter stands before the
// bar, "@name" another section.
std::string CallsOf(const std::string& name, char generation) {
    static const std::string all = NTest::ReadBytes(XLS2TKI_TEST_DATA "/excel_calls.txt");
    const std::size_t begin = all.find("[" + name + "]\n") + name.size() + 3;
    std::istringstream lines(all.substr(begin, all.find("\n\n", begin) - begin));
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        const std::size_t bar = line.find('|');
        if (bar != std::string::npos && line.find(generation) >= bar) continue;
        line.erase(0, bar + 1);
        result += line.starts_with('@') ? CallsOf(line.substr(1), generation) : line + "\n";
    }
    return result;
}

struct Operation {
    const char* name;
    bool isOpen;  // whether the workbook is open before
    void (*run)(IExcelHeap& source);
    std::string outcome = "";
    const char* failOn = "none";
};

void OpenAndRead(IExcelHeap& source) {
    source.OpenSource();
    source.SetScanColumns(10);
    source.ReadData();
}

void OpenAndReadAgain(IExcelHeap& source) {
    OpenAndRead(source);
    source.ReadWorksheet(u"One");
}

const char* const kOneWorksheet =
    "Excel file must always contain at least one data sheet - add a new one before deleting this sheet!";

const Operation kOperations[] = {
    {"opens and reads", false, OpenAndRead},
    {"opens with a password", false, [](IExcelHeap& source) { source.OpenWorkbook(false, true, u"secret"); }},
    {"creates", false, [](IExcelHeap& source) { source.OpenWorkbook(true, true, u"secret"); }},
    {"reads by name", true, [](IExcelHeap& source) { source.ReadWorksheet(u"Two"); }},
    {"reads by a wrong name", true, [](IExcelHeap& source) { source.ReadWorksheet(u"one"); }},
    {"finds facts", true,
     [](IExcelHeap& source) {
         dynamic_cast<WorksheetSource&>(source).WantFacts();
         source.ReadWorksheet(u"One");
     }},
    {"writes", true,
     [](IExcelHeap& source) {
         source.SetCellText(27, 4, u"nowhere");
         source.AddWorksheet(u"Three");
         source.SetCellText(27, 4, u"text");
         source.SelectWorksheet(u"two");
         source.SetCellNumber(4, 27, 1);
         source.SelectWorksheet(u"Two");
         source.SetCellNumber(4, 27, 1.5);
         source.SaveWorkbook();
         source.SetDisplayAlerts(true);
     }},
    {"deletes by name", true,
     [](IExcelHeap& source) {
         EXPECT_FALSE(source.DeleteWorksheet(u"two"));
         EXPECT_TRUE(source.DeleteWorksheet(u"Two"));
         source.DeleteLastWorksheet();
     },
     kOneWorksheet},
    {"deletes the last", true,
     [](IExcelHeap& source) {
         source.DeleteLastWorksheet();
         source.DeleteWorksheet(u"One");
     },
     kOneWorksheet},
    {"cannot start", false, OpenAndReadAgain, "No Workbook", "start"},
    {"cannot open", false, OpenAndReadAgain, "No Workbook", "Workbooks call"},
    {"cannot save", false, [](IExcelHeap& source) { source.OpenWorkbook(true, false, u""); }, "",
     "Workbook call"},
};

class ExcelGenerations : public testing::TestWithParam<char> {
  protected:
    // Makes a source, runs the operation and ends the source. The trace begins with the operation.
    std::string Run(const Operation& operation, int failAt = 0) {
        RecordingExcel excel({{u"One", CellsOf(u"a|#1.5")}, {u"Two", {}}});
        folder_.Put("input", "");
        std::unique_ptr<IExcelHeap> source = MakeSource(GetParam(), path_, &log_);
        if (operation.isOpen) source->OpenSource();
        excel.Begin(failAt, operation.failOn);
        outcome_ = OutcomeOf([&] { operation.run(*source); });
        source.reset();
        EXPECT_EQ(excel.liveObjects, 0);
        return NTest::ReplaceAll(excel.Trace(), NTest::Utf8(path_), "*");
    }

    static bool TellUser(std::u16string& name, std::size_t capacity) {
        name = u"tester";
        return capacity == 256;
    }

    NTest::TempFolder folder_;
    std::u16string path_ = folder_.Path("input");
    std::string outcome_;
    VLogObject log_{true};
    NTest::Progress progress_;
    NTest::Replacement<bool(std::u16string&, std::size_t)> user_{NPlatform::UserName, TellUser};
};

TEST_P(ExcelGenerations, AskExcelStepByStep) {
    for (const Operation& operation : kOperations) {
        EXPECT_EQ(Run(operation), CallsOf(operation.name, GetParam()));
        EXPECT_EQ(outcome_, operation.outcome);
    }
}

// The calls alone, one in each line.
std::vector<std::string> CallsIn(const std::string& trace) {
    std::istringstream lines(trace);
    std::vector<std::string> calls;
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with('>') && !line.starts_with('~')) calls.push_back(line);
    }
    return calls;
}

bool IsPartOfOpening(const std::string& call) {
    const char* const calls[] = {"start", "Workbooks call", "Workbook call 11C", "Workbook call 785"};
    return std::any_of(std::begin(calls), std::end(calls),
                       [&](auto begin) { return call.starts_with(begin); });
}

// Whichever call fails: nothing is kept, Excel is quit, and the failure passes out unless it belongs to
// opening.
TEST_P(ExcelGenerations, TidyUpBehindEveryFailure) {
    const std::size_t closing = CallsIn(CallsOf("close", GetParam())).size();
    for (const Operation& operation : kOperations) {
        if (operation.failOn != std::string("none")) continue;
        const std::vector<std::string> calls = CallsIn(Run(operation));
        for (std::size_t index = 0; index < calls.size(); ++index) {
            const std::string trace = Run(operation, static_cast<int>(index) + 1);
            SCOPED_TRACE(calls[index] + " fails\n" + trace);
            const auto has = [&trace](const char* line) { return trace.find(line) != std::string::npos; };
            const bool isForFacts =
                operation.name == std::string("finds facts") && index + closing + 4 >= calls.size();
            const bool passes =
                !IsPartOfOpening(calls[index]) && !isForFacts && index + closing < calls.size();
            EXPECT_EQ(outcome_ == "DispatchException", passes) << outcome_;
            EXPECT_EQ(has("\nApplication call 12E\n"), calls[index] != "start");
            EXPECT_TRUE(!has("~Workbook\n") || has(" call 115"));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(ExcelSources, ExcelGenerations, testing::Values('0', '7', 'X'));

TEST(ExcelSources, ReadCellsAndRememberNumbers) {
    RecordingExcel excel({{u"One", CellsOf(u"#42|#1234567|!|?|''||text")}, {u"Two", CellsOf(u"#0.5")}});
    VLogObject log(false);
    VExcel2010Heap source(u"input", &log);
    source.OpenSource();
    source.SetScanColumns(10);
    source.ReadWorksheet(u"One");
    EXPECT_TRUE(source.HasCellNumber(1, 2));
    EXPECT_EQ(source.GetCellNumber(1, 2), 1234567);
    EXPECT_FALSE(source.HasCellNumber(1, 7));
    EXPECT_FALSE(source.HasCellNumber(2, 1));
    EXPECT_EQ(source.GetCellNumber(1, 7), 0.0);
    source.UseTrimmedNumberText();
    source.ReadWorksheet(u"One");
    source.ReadWorksheet(u"Two");
    EXPECT_EQ(NTest::RowsOf(source), MakeTable(u"42|1.23457e+006|||||text\n42|1234567|||||text\n0.5"));
    EXPECT_FALSE(source.HasCellNumber(1, 2));
    EXPECT_EQ(source.GetCellNumber(1, 1), 0.5);
}

// "below 2 A6 'text', right 1 Z1 'text', B2 TRUE"; a bang where it looks like a part of the table.
std::string Summary(const WorksheetFacts& facts) {
    const auto behind = [](const char* name, const BehindEdge& edge) {
        if (edge.count == 0) return std::string();
        const std::u16string cell = CellName(edge.column, std::uint64_t{edge.row} + 1);
        return name + std::to_string(edge.count) + " " + NTest::Utf8(cell + u" '" + edge.text + u"'") +
               (edge.isTable ? "! " : " ");
    };
    std::string summary = behind("below ", facts.below) + behind("right ", facts.right);
    for (const HeldValue& value : facts.values) {
        NumberBuffer buffer;
        std::u16string shown;
        switch (value.kind) {
            case HeldValue::Kind::Truth:
                shown = ShownTruth(value.number != 0);
                break;
            case HeldValue::Kind::Error:
                shown = ShownError(static_cast<std::int32_t>(value.number));
                break;
            case HeldValue::Kind::Formula:
                shown = u"=";
                break;
            default:
                shown = WriteTrimmedNumber(value.number, buffer);
                if (value.kind == HeldValue::Kind::Date) shown += u"d";
        }
        summary += NTest::Utf8(CellName(value.column, std::uint64_t{value.row} + 1) + u" " + shown + u" ");
    }
    return facts.isComplete ? summary : summary + "incomplete";
}

TEST(ExcelSources, FindWhatTheTableLeavesOut) {
    const std::u16string gap(22, u'|');
    const std::tuple<std::u16string, const char*, const char*, const char*> rows[] = {
        // the worksheet, the call that fails, and the facts of Excel 2010 and of Excel 2003
        {u"a|b\n1|2", "none", "", ""},
        {u"a|b\n1|2\n\n\n3|4\n5", "none", "below 2 A5 '3'! ", "below 2 A5 '3'! "},
        {u"a|b\n1|2\n||| \n\n|!", "none", "below 1 B5 'TRUE' ", "below 1 B5 'TRUE' "},
        {u"a|b\n1|2\n|#1.5|?", "none", "right 1 C3 '#N/A' ", "below 1 B3 '1.5'! "},
        {u"a|b||d\n1|2", "none", "", "right 1 D1 'd'! "},
        {u"a|b" + gap + u"\n1|2" + gap + u"z|y", "none", "right 2 X2 'z' ", "right 2 X2 'z' "},
        {u"\n\n|x|y", "none", "below 1 B3 'x'! ", "below 1 B3 'x'! "},
        {u"a|b|!\n#3.7|#0.1|?\n#1234567|#1e16|x", "none", "C1 TRUE C2 #N/A A3 1234567 B3 10000000000000000 ",
         "C1 TRUE A2 3.7 B2 0.1 C2 #N/A B3 10000000000000000 "},
        {u"a|b\n1|2\n\n3|4", "Worksheet get 19C", "incomplete", "incomplete"},
        {u"a|b\n1|2\n\n3|4", "Range get EC", "incomplete", "incomplete"},
        {u"a|b\n1|2\n\n3|4", "Worksheet get C5 'A3' 'B4'", "incomplete", "incomplete"},
    };
    for (const auto& [cells, failOn, facts, defaultFacts] : rows) {
        RecordingExcel excel({{u"One", CellsOf(cells)}});
        const NTest::TempFolder folder;
        VLogObject log(false);
        VExcel2010Heap source(u"input", &log);
        VDefaultExcelHeap defaultSource(folder.Put("input", ""), &log);
        source.WantFacts();
        defaultSource.WantFacts();
        source.OpenSource();
        source.SetScanColumns(10);
        excel.Begin(0, failOn);
        source.ReadData();
        EXPECT_EQ(Summary(*source.Facts()), facts) << NTest::Utf8(cells);
        defaultSource.OpenSource();
        excel.Begin(0, failOn);
        defaultSource.ReadData();
        EXPECT_EQ(Summary(*defaultSource.Facts()), defaultFacts) << NTest::Utf8(cells);
    }
}

TEST(ExcelSources, CutDescriptions) {
    const NTest::Progress progress;
    const std::u16string reason(2000, u'x');
    const std::tuple<char, const char*, std::size_t> rows[] = {{'0', "start", 30 + 1023},
                                                               {'7', "start", 52 + 1023},
                                                               {'0', "Workbooks call", 19 + 1023},
                                                               {'7', "Workbooks call", 0}};
    for (const auto& [generation, failOn, size] : rows) {
        RecordingExcel excel({});
        excel.description = reason;
        VLogObject log(true);
        const NTest::TempFolder folder;
        const auto source = MakeSource(generation, folder.Put("input", ""), &log);
        excel.Begin(0, failOn);
        source->OpenSource();
        const std::size_t index = NTest::Progress::Messages().size() - (size == 0 ? 2 : 1);
        EXPECT_EQ(NTest::Progress::Messages()[index].size(), size == 0 ? 2047 : size);
    }
}

// ---- The default source ----

struct DefaultRun {
    std::string trace;
    std::string outcome;
    Table table;
};

DefaultRun RunDefault(const Cells& cells, int failAt = 0) {
    const NTest::Progress progress;
    const NTest::TempFolder folder;
    const std::u16string path = folder.Put("input", "");
    RecordingExcel excel({{u"One", cells}});
    excel.tellsOfCells = true;
    excel.Begin(failAt);
    VLogObject log(true);
    VDefaultExcelHeap source(path, &log);
    source.OpenSource();
    const std::string outcome = OutcomeOf([&source] { source.ReadData(); });
    EXPECT_EQ(excel.liveObjects, 0);
    return {NTest::ReplaceAll(excel.Trace(), NTest::Utf8(path), "*"), outcome, NTest::RowsOf(source)};
}

TEST(ExcelSources, DefaultReadsWhatRowAndColumnAnnounce) {
    const std::tuple<const char16_t*, const char*, Table> rows[] = {
        {u"a|#3.7", "default reads", {{u"a", u"3"}}},
        {u"a|!||d\n|e", "default reads", {{u"a", u""}}},
        {u"", "default reads nothing", {}},
        {u"''|b\nc", "default reads nothing", {}},
    };
    for (const auto& [cells, calls, table] : rows) {
        const DefaultRun run = RunDefault(CellsOf(cells));
        EXPECT_EQ(run.trace, CallsOf(calls, '0'));
        EXPECT_EQ(run.table, table);
    }
    EXPECT_EQ(RunDefault(CellsOf(u"#-2.5")).table, MakeTable(u"-2"));
    EXPECT_EQ(RunDefault(CellsOf(u"a|b|c\n#1e10||?\n''")).table, MakeTable(u"a|b|c\n-2147483648||"));
}

TEST(ExcelSources, DefaultQuitsExcelWhereItRefusesTheFile) {
    const auto filled = [](std::size_t rows, std::size_t columns) {
        return Cells(rows, std::vector<NPlatform::Variant>(columns, NPlatform::Variant::Bool(true)));
    };
    const std::tuple<std::size_t, std::size_t, const char*> sizes[] = {
        {16383, 1, ""},
        {1, 207, ""},
        {16384, 1, "Found more than 16384 rows in Excel file ?!?"},
        {1, 208, "Found more than 208 columns in Excel file ?!?"},
    };
    for (const auto& [rows, columns, message] : sizes) {
        const DefaultRun run = RunDefault(filled(rows, columns));
        EXPECT_EQ(run.outcome, message);
        EXPECT_EQ(run.table.size(), run.outcome.empty() ? rows : 0);
        EXPECT_NE(run.trace.find("Application call 12E\n"), std::string::npos);
    }
    const Cells cells = CellsOf(u"a|b");
    const std::vector<std::string> calls = CallsIn(CallsOf("default reads", '0'));
    for (std::size_t index = 0; index < calls.size(); ++index) {
        const DefaultRun run = RunDefault(cells, static_cast<int>(index) + 1);
        const bool isOpening = calls[index].starts_with("Workbooks call");
        EXPECT_EQ(run.outcome, calls[index] == "start" ? ""
                               : isOpening ? "Broken Please use -o (=ODBC) to convert file to tki."
                                           : "DispatchException");
        if (isOpening) {
            EXPECT_TRUE(
                run.trace.ends_with("\nWorkbooks call 115\n~Workbooks\nApplication call 12E\n~Application\n"))
                << run.trace;
        }
    }
}

}  // namespace
