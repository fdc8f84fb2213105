#include <gtest/gtest.h>

#include <tuple>

#include "platform/files.h"
#include "sources/csv_heap.h"
#include "sources/csv_parser.h"
#include "sources/default_excel_heap.h"
#include "sources/excel_heap.h"
#include "sources/parser_exception.h"
#include "tests/host.h"
#include "tests/recording_server.h"
#include "tests/rooms.h"
#include "tests/source_kind.h"

namespace {

using namespace std::string_literals;
using namespace VCSVReader;
using NTest::MakeTable;
using NTest::Row;
using NTest::RowsOf;
using NTest::SourceKind;
using NTest::Table;
using NTest::TempFolder;

// The message that the call throws, if any.
template <typename Call>
std::u16string MessageOf(Call call) {
    try {
        call();
    } catch (const VParserException& exception) {
        return exception.GetMessage();
    }
    return u"";
}

// ---- What every source has to do ----

std::unique_ptr<VHeapInterface> MakeTestHeap(const TempFolder& folder, const Table& table, VLogObject* log) {
    return std::make_unique<NTest::TestHeap>(folder.Put("input", ""), log, table);
}

std::unique_ptr<VHeapInterface> MakeCsvHeap(const TempFolder& folder, const Table& table, VLogObject* log) {
    std::string text;
    for (const Row& row : table) {
        for (const std::u16string& cell : row) {
            text += &cell == &row.front() ? "\"" : "\";\"";
            text += NTest::ReplaceAll(NTest::Utf8(cell), "\"", "\"\"");
        }
        text += "\"\n";
    }
    return std::make_unique<VDefaultCSVHeap>(folder.Put("input", text), log, u';', true);
}

std::unique_ptr<NTest::RecordingExcel> drivenExcel;

// The default source takes an empty text for the end of the header; it gets a logical value, which every
// source reads as "".
template <typename Source>
std::unique_ptr<VHeapInterface> MakeExcelHeap(const TempFolder& folder, const Table& table, VLogObject* log) {
    constexpr bool kIsDefault = std::is_same_v<Source, VDefaultExcelHeap>;
    const auto makeCell = [](const std::u16string& text) {
        return kIsDefault && text.empty() ? NPlatform::Variant::Bool(true) : NPlatform::Variant::String(text);
    };
    const std::vector<NTest::Sheet> sheets = {{u"Codes", NTest::MakeCells(table, makeCell)}};
    drivenExcel = std::make_unique<NTest::RecordingExcel>(sheets);
    auto source = std::make_unique<Source>(folder.Put("input", ""), log);
    if constexpr (!kIsDefault) source->SetScanColumns(10);
    return source;
}

class SourceContract : public testing::TestWithParam<SourceKind> {
  protected:
    ~SourceContract() override { drivenExcel.reset(); }

    std::unique_ptr<VHeapInterface> Make(const Table& table) {
        return GetParam().make(folder_, table, &log_);
    }

    // Makes a source and goes through it as a conversion does.
    std::unique_ptr<VHeapInterface> Read(const Table& table) {
        std::unique_ptr<VHeapInterface> source = Make(table);
        source->OpenSource();
        source->ReadData();
        source->CheckConsistency();
        return source;
    }

    // Makes a source and fills it: a small letter is a character, a capital a cell; '.' ends a cell, '/' a
    // row, '!' both.
    std::unique_ptr<VHeapInterface> Fill(std::string_view steps) {
        std::unique_ptr<VHeapInterface> source = Make({});
        for (const char step : steps) {
            const char16_t text[] = {static_cast<char16_t>(step), 0};
            if (step >= 'a') {
                source->AppendChar(text[0]);
            } else if (step >= 'A') {
                source->AddCell(text);
            } else if (step == '.') {
                source->AddCell(u"");
            } else {
                source->EndRow(step == '!');
            }
        }
        return source;
    }

    TempFolder folder_;
    VLogObject log_{true};
};

TEST_P(SourceContract, DeliversEachCellAsItIs) {
    Table large;
    for (std::size_t row = 0; row < 2000; ++row) large.push_back({std::u16string(row, u'x'), u"", u"end"});
    Table tables[] = {MakeTable(u"a|b"),
                      MakeTable(u"|\n|"),
                      MakeTable(u" a |b; \"c\"\n\t|ä€😀'<&>"),
                      {{u"one\ntwo", u"\n"}},
                      large};
    for (Table& table : tables) {
        Row names = {u"A", u"B", u"C"};
        names.resize(table.front().size());
        if (GetParam().namesColumns) table.insert(table.begin(), names);
        EXPECT_EQ(RowsOf(*Read(table)), table);
    }
}

TEST_P(SourceContract, WalksItsRows) {
    const auto source = Read(MakeTable(u"a|b\nc|d\ne|f"));
    VHeapIterator& iterator = *source->GetIterator();
    for (int walk = 0; walk < 2; ++walk) {
        std::u16string seen;
        EXPECT_FALSE(iterator.IsHeaderRow());
        while (iterator.HasMoreRows()) {
            seen += (*iterator.GetNextRow())[1];
            seen += iterator.IsHeaderRow() ? u'!' : u'.';
        }
        EXPECT_EQ(seen, u"b!d.f.");
        iterator.Reset();
    }
    EXPECT_EQ(&iterator, source->GetIterator());
}

TEST_P(SourceContract, TellsWhatItDoes) {
    const NTest::Progress progress;
    Read(MakeTable(u"a|b\nc|d\ne|f"));
    std::vector<std::u16string> expected = GetParam().progress;
    for (std::u16string& message : expected) {
        const std::size_t star = message.find(u'*');
        if (star != std::u16string::npos) message.replace(star, 1, folder_.Path("input"));
    }
    expected.emplace_back(u"Checking consistency of data ... ");
    expected.emplace_back(u"Target Array has 3 rows and 2 columns");
    expected.emplace_back(u"Checking consistency of data ... done");
    std::vector<std::u16string> messages = NTest::Progress::Messages();
    if (GetParam().progress.empty()) messages.erase(messages.begin(), messages.end() - 3);
    EXPECT_EQ(messages, expected);
}

TEST_P(SourceContract, RefusesAnInputThatCannotBeOpened) {
    const auto source = Make({});
    const std::u16string path = folder_.Path("input");
    std::filesystem::remove(path);
    EXPECT_EQ(MessageOf([&] { source->OpenSource(); }),
              GetParam().checksFile ? u"Error opening inputfile:\n'" + path + u"'" : u"");
}

TEST_P(SourceContract, BuildsItsTable) {
    using Position = std::vector<std::int32_t>;
    const std::tuple<const char*, Table, Position> rows[] = {
        {"", {}, {1, 1, 1}},
        {"ab", {}, {1, 1, 3}},
        {"aX.bc", {}, {1, 3, 3}},
        {"ab./", {{u"ab"}}, {2, 1, 1}},
        {"XaY.b.!", {{u"X", u"Y", u"", u"b", u""}}, {2, 1, 1}},
        {"!", {{u""}}, {2, 1, 1}},
        {"//", {{}, {}}, {3, 1, 1}},
        {"a.b/", {{u"a"}}, {2, 1, 2}},
        {"a.b/c.X!", {{u"a"}, {u"bc", u"X", u""}}, {3, 1, 1}},
    };
    for (const auto& [steps, table, expected] : rows) {
        const auto source = Fill(steps);
        Position position(3);
        source->GetParsePosition(position[0], position[1], position[2]);
        EXPECT_EQ(RowsOf(*source), table) << steps;
        EXPECT_EQ(position, expected) << steps;
    }
}

TEST_P(SourceContract, ChecksTheShapeOfItsTable) {
    const std::u16string header =
        u"The Header (first row in excel sheet) does not define enough columns. It should define at least "
        u"two columns "
        u"containing DTC and Description. (Data-Area in Excel is assumed as '";
    const std::string longCell(2000, 'c');
    const std::pair<std::string, std::u16string> rows[] = {
        {"", u"Empty data given ?!"},
        {"A/B/C/D/E/", header + u"Z1S1:Z5S1')"},
        {"/AB/", header + u"Z1S1:Z2S0')"},
        {"AB/", u""},
        {"ABCD/ABCD/ABCD/EFG/A/", u"Row [3] defines 3 columns. Header defines 4\nValues:\nE\nF\nG\n"},
        {"AB/CD.!", u"Row [1] defines 4 columns. Header defines 2\nValues:\nC\nD\n\n\n"},
        {"AB//", u"Row [1] defines 0 columns. Header defines 2\nValues:\n"},
        {"AB/" + longCell + "!",
         u"Row [1] defines 1 columns. Header defines 2\nValues:\n" + std::u16string(1023 - 52, u'c')},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(MessageOf([&] { Fill(row.first)->CheckConsistency(); }), row.second) << row.first;
    }
    std::string manyCells(1'000'000, '.');
    EXPECT_EQ(MessageOf([&] { Fill(manyCells); }), u"");
    EXPECT_EQ(MessageOf([&] { Fill(manyCells += '.'); }),
              u"Row [0] has too many columns, at most 1000000 are possible.");
}

INSTANTIATE_TEST_SUITE_P(
    Sources, SourceContract,
    testing::Values(SourceKind{"TestHeap", MakeTestHeap, {u"Trying to acces file ... ", u"Using infile '*'"}},
                    SourceKind{"Csv",
                               MakeCsvHeap,
                               {u"Using VDefaultCSVHeap to receive data.", u"Trying to acces file ... ",
                                u"Using infile '*'", u"Reading CSV File.", u"Reading CSV File done.",
                                u"Parsing CSV file ... ", u"Parsing CSV file ... done"}},
                    SourceKind{"Excel2000", MakeExcelHeap<VExcel2000Heap>},
                    SourceKind{"Excel2007", MakeExcelHeap<VExcel2007Heap>},
                    SourceKind{"Excel2010", MakeExcelHeap<VExcel2010Heap>, {}, false},
                    SourceKind{"DefaultExcel", MakeExcelHeap<VDefaultExcelHeap>}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(SystemsSources, SourceContract, testing::ValuesIn(NTest::SystemsSourceKinds()),
                         [](const auto& test) { return test.param.name; });

// ---- CSV ----

// Parses the text as a CSV source does; returns the message, if any.
std::u16string Parse(const std::u16string& text, char16_t separator, Table& table) {
    static const std::u16string* content;
    content = &text;
    const auto find = [](std::u16string_view, std::u16string&) { return true; };
    const auto read = [](std::u16string_view, NPlatform::TextEncoding, NPlatform::TextBuffer& result) {
        result.Append(*content);
        return NPlatform::TextFileResult::Read;
    };
    const NTest::Replacement findFile(NPlatform::FindReadableFile, +find);
    const NTest::Replacement readFile(NPlatform::ReadTextFile, +read);
    VLogObject log(false);
    VDefaultCSVHeap heap(u"", &log, separator, true);
    heap.OpenSource();
    const std::u16string message = MessageOf([&] { heap.ReadData(); });
    table = RowsOf(heap);
    return message;
}

// The same by the states alone, one character after another.
std::u16string ParseByCharacter(const std::u16string& text, char16_t separator, Table& table) {
    VLogObject log(false);
    NTest::TestHeap heap(u"", &log, {});
    std::unique_ptr<VParserStateInterface> state = std::make_unique<VParserStart>(&heap, separator);
    const std::u16string message = MessageOf([&] {
        for (const char16_t& unit : text) {
            VParserStateInterface* const next = state->HandleChar(&unit);
            EXPECT_NE(next, state.get());
            state.reset(next);
        }
    });
    table = RowsOf(heap);
    return message;
}

TEST(Sources, ParsesCsv) {
    struct {
        std::u16string text;
        char16_t separator;
        Table table;
        std::u16string unknown = u"";  // character, and where
    } const rows[] = {
        {u"", u';', {}},
        {u"a;b;\n", u';', {{u"a", u"b", u""}}},
        {u";\n\nab;c\n", u';', {{u"", u""}, {u""}, {u"ab", u"c"}}},
        {u"a;b", u';', {}},
        {u" a\t;\r b\r\r\n", u';', {{u" a\t", u"\r b\r\r"}}},
        {u"a,b;c\n", u',', {{u"a", u"b;c"}}},
        {u"a\0b;\0\n"s, u';', {{u"a\0b"s, u"\0"s}}},
        {u"\"x;y\";z\n", u';', {{u"x;y", u"z"}}},
        {u"\"a\nb\";\"\"\n", u';', {{u"a\nb", u""}}},
        {u"\"say \"\"hi\"\"\"\n", u';', {{u"say \"hi\""}}},
        {u"ab\"cd;e\"\"\n", u';', {{u"ab\"cd", u"e\"\""}}},
        {u" \"a;b\"\n", u';', {{u" \"a", u"b\""}}},
        {u"a;b\n\"c;d\n", u';', {{u"a", u"b"}}},
        {u"a;b\n\"c\"", u';', {{u"a", u"b"}}},
        {u"\"a\" ;b\n", u';', {}, u"' ' in line 1, column 1, position 2"},
        {u"\"a\"\r\n", u';', {}, u"'\r' in line 1, column 1, position 2"},
        {u"a;b\n\"x\n\ny\";z;\"p\"\"q\"!;\n", u';', {{u"a", u"b"}}, u"'!' in line 2, column 3, position 4"},
        // Special characters as separators: what is tested first wins.
        {u"a\"b\"\"c\n\"\n", u'"', {{u"a", u"b", u"c\n"}}},
        {u"a\"\"b\"\n", u'"', {{u"a", u"b"}}},
        {u"\"a\"\"b\"\n", u'"', {{u"a\"b"}}},
        {u"a\n\"b\"\nc\n", u'\n', {{u"a", u"b"}}},
        {u"axbx\"x\"x\n", u'x', {{u"a", u"b", u"x", u""}}},
        {u"\xFEFF-a\xFEFF\n", u'\xFEFF', {{u"", u"-a", u""}}},
        {u"a\0b\n"s, u'\0', {{u"a", u"b"}}},
        {u"a\rb\r\n", u'\r', {{u"a", u"b", u""}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.text));
        std::u16string message = row.unknown;
        if (!message.empty()) message.insert(0, u"Error parsing csv file.\nUnknown character ");
        for (const auto parse : {Parse, ParseByCharacter}) {
            Table table;
            EXPECT_EQ(parse(row.text, row.separator, table), message);
            EXPECT_EQ(table, row.table);
        }
    }
}

}  // namespace
