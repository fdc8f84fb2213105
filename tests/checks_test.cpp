#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <optional>
#include <random>
#include <set>

#include "checks/sentence.h"
#include "checks/table_checks.h"
#include "document/import_document.h"
#include "document/xml_exception.h"
#include "tests/host.h"
#include "tests/rooms.h"

namespace {

using namespace NChecks;
using NTest::Row;
using NTest::Table;
using NTest::TestHeap;
using Names = std::set<std::u16string>;

// A3, or nothing for the table as a whole.
std::string PlaceOf(const Place& place) { return place.row == kNowhere ? "" : NTest::Utf8(CellName(place)); }

class Looked {
  public:
    explicit Looked(const Table& table, const Names& vsgNames = {},
                    const VCSVReader::WorksheetFacts* facts = nullptr)
        : heap_(u"", &log_, table) {
        heap_.ReadData();
        heap_.CheckConsistency();
        list_ = FindFindings(*heap_.GetIterator(), true, nullptr, {vsgNames, {}, {}, u'|', true, facts});
    }

    [[nodiscard]] const FindingList& List() const { return list_; }
    [[nodiscard]] bool HasError() const {
        return std::ranges::any_of(list_.causes,
                                   [](const FoundCause& cause) { return cause.severity == Severity::Error; });
    }

    // "number-unreadable A3, column-lost B1, notation-mixed ", warnings in brackets.
    [[nodiscard]] std::string Summary() const {
        std::string summary;
        for (const Finding& finding : list_.findings) {
            const FoundCause& cause = list_.causes[finding.cause];
            const bool isWarning = cause.severity == Severity::Warning;
            summary.append(summary.empty() ? "" : ", ")
                .append(isWarning ? "(" : "")
                .append(NameOf(cause.rule));
            summary.append(" ").append(PlaceOf(finding.place)).append(isWarning ? ")" : "");
        }
        return summary;
    }

    [[nodiscard]] std::string Texts() const {
        std::string texts;
        for (const Finding& finding : list_.findings) texts += NTest::Utf8(finding.text) + "\n";
        return texts;
    }

    // The numbers of the document, or none where the conversion is refused.
    std::vector<std::string> Numbers() {
        NPlatform::TextBuffer document;
        std::vector<std::string> numbers;
        try {
            heap_.GetIterator()->Reset();
            VSimpleXMLCreation::BuildImportDocument(*heap_.GetIterator(), document, log_, u"", u"", {}, {},
                                                    {});
        } catch (const VSimpleXMLCreation::VSimpleXMLException&) {
            return numbers;
        }
        constexpr std::u16string_view kStart = u"<DTC number=\"";
        const std::u16string_view text = document.View();
        for (std::size_t at = 0; (at = text.find(kStart, at)) != std::u16string_view::npos;) {
            at += kStart.size();
            numbers.push_back(NTest::Utf8(text.substr(at, text.find(u'"', at) - at)));
        }
        return numbers;
    }

  private:
    VCSVReader::VLogObject log_{false};
    TestHeap heap_;
    FindingList list_;
};

TEST(Checks, FindFaults) {
    const std::pair<const char16_t*, const char*> rows[] = {
        // Good tables.
        {u"DTC|T\nP0123|x\nc1234|y\nB123456 |z\nU01|t", ""},
        {u"DTC|T\n1234|x\n7|y\n 5|z", ""},
        {u"DTC|T\n12A4|x\n0010|y\nFF|z\n1b|t", ""},
        {u"DTC|T\n0x1A|x\n0xFF|y\n0XF0000000|z", ""},
        {u"SPN|FMI|T\n520192|31|x\n 1|0|y", ""},
        {u"BaseDTC|FTB|T\nP0123|0x11|x\nP0124|0xFF|y\nP0125|0|z", ""},
        {u"DTC|Failure Type|T\n0x12|34|x\n0x13|53|y", ""},
        {u"DTC|T|I||\nP0123|x|i||", ""},
        {u"DTC|T|SPN|FMI\nP0123|x|1|2", ""},
        {u"DTC|T|I\nP0123|caf\u00E9 \u20AC\t\u3042\U0001F600|\n||", "number-empty A3"},
        // Numbers.
        {u"DTC|T\nP0123-11|x\nP0124|y", "number-unreadable A2"},
        {u"DTC|T\nP0123|x\nP01234|y\nP4123|z\nPO123|t",
         "number-unreadable A3, number-unreadable A4, number-unreadable A5"},
        {u"DTC|T\n\u00A012|x\n13\u200B|y\n 0x12|z", "number-unreadable A3, number-unreadable A4"},
        {u"DTC|T\nP0123|x\n|y\n |z\n|", "number-empty A3, number-empty A4, number-empty A5"},
        {u"DTC|T\n2147483647|x\n2147483648|y\n-5|z", "number-range A3, number-range A4"},
        {u"DTC|T\n0xFFFFFFFF|x\n0x1FFFFFFFF|y\n0x000000001|z", "number-range A3"},
        {u"DTC|T\n0xFFFFFFFF|x\n1234567890|y", "number-range A3, notation-mixed "},
        {u"SPN|FMI|T\n524288|0|x\n1|32|y\n-1|-1|z\n0x12|1A|t",
         "number-unreadable A5, number-unreadable B5, number-range A2, number-range B3, number-range A4, "
         "number-range B4"},
        {u"BaseDTC|FTB|T\n0x1000000|0|x\n1|256|y\n0X12|1C|z\n1C|12|t",
         "number-unreadable A4, number-unreadable B4, number-unreadable A5, number-range A2, number-range "
         "B3, "
         "(notation-mixed )"},
        {u"DTC|T\n1.19305e+006|x\n5|y", "number-exponent A2"},
        {u"DTC|T\nP0123|x\np0123|y\n0x0123|z", "(number-duplicate A3), (number-duplicate A4)"},
        {u"SPN|FMI|T\n1|2|x\n1|3|y\n01|2|z", "(number-duplicate A4)"},
        {u"DTC|T\n0x10000001|x\n0x20000001|y\n0x10000001|z", "(number-duplicate A4)"},
        // Notations.
        {u"DTC|T\n1234|x\nTBD|y\n7|z", "number-unreadable A3, notation-mixed "},
        {u"DTC|T\n1234|x\n0x1A|y", "notation-mixed "},
        {u"DTC|T\n1234|x\nB0123|y", "notation-mixed , (notation-mixed A3)"},
        {u"DTC|T\n1234|x\nC0FFE|y\n?D|z", "number-unreadable A4, notation-mixed , (notation-mixed A3)"},
        {u"DTC|T\n1234|x\n1235|y\n1A|z", "(notation-mixed )"},
        {u"DTC|T\nP01|x\nP01234567|y", "notation-mixed A2, notation-mixed A3"},
        {u"DTC|T\nP0123 |x\nP0124 |y", "notation-mixed A2, notation-mixed A3"},
        {u"DTC|T\n1A2B|x\nC0FFE|y\nFF|z", "(notation-mixed A3)"},
        {u"DTC|T\nP0123|x\nP0124|y\n125|z", "(notation-mixed A4)"},
        {u"DTC|T\nP0123|x\nP0124|y\nP0125|z\nP012345|t", "(notation-mixed A5)"},
        {u"BaseDTC|FTB|T\nP012345|1|x\nP012346|1|y\nP0125|1|z\nP012347|1|t", "(notation-mixed A4)"},
        {u"DTC (hex)|T\n0123|x\n4711|y", "(notation-mixed A1)"},
        {u"DTC [0x]|T\n1234|x\n4711|y\n12|z\n13|u\n1A|t", ""},
        {u"DTC|T\n123|x\n124|y\nP0125|z", "(notation-mixed A4)"},
        {u"DTC|T\n0123|x\n124|y", "(notation-mixed A2)"},
        {u"BaseDTC|FTB|T\nP0123|11|x\nP0124|1C|y", "number-unreadable B3, (notation-mixed )"},
        {u"BaseDTC|FTB|T\n0x12|0x34|x\n18|53|y", "(notation-mixed ), (notation-mixed )"},
        {u"DTC|T\n1234|x\n0x10|y", "(notation-mixed )"},
        // Layouts.
        {u"SPN |FMI|T\n1|2|x", "layout-near-miss A1"},
        {u"FMI|SPN|T\n1|2|x\n1|3|y", "layout-near-miss A1"},
        {u"SPN (hex)|FMI|T\n91|3|x\n92|3|y", "layout-near-miss A1"},
        {u"Basis-DTC|Fehlertyp|T\n91|3|x\n92|3|y", "layout-near-miss A1"},
        {u"Pos|Fehlernummer|T\n10|1234|x\n20|1235|y", "layout-near-miss B1"},
        {u"1A2B|x\n1A2C|y", "layout-near-miss A1"},
        {u"No.|SPN|FMI|T\n1|2|3|x", "layout-near-miss B1"},
        {u"DTC|FTB|T\nP0123|1|x\nP0123|2|y", "layout-near-miss A1"},
        {u"Codes of 2026||\nDTC|T|I\nP0123|x|i", "layout-near-miss A1"},
        {u"P0122|x|\nP0123|y|i", "layout-near-miss A1"},
        {u"DTC|T\nP0123|x\ndtc |T\nP0124|y", "layout-near-miss A3"},
        {u"Text|DTC\nx|P0123\ny|P0124", "layout-near-miss B1"},
        {u"No.|DTC|T\n1|P0123|x\n2|P0124|y", "layout-near-miss B1"},
        {u"Nr|DTC|T\n17|4711|x\n9|4712|y", "layout-near-miss B1"},
        {u"No.|Fault|T\n1|P0123|x\n2|TBD|y\n3|P0124|z", "layout-near-miss B1"},
        {u"Code|SAE DTC|T\n4711|P0123|x\n4711|P0124|y", "layout-near-miss B1"},
        {u"DTC Nr|DTC\n1|4711\n2|4712", "layout-near-miss B1"},
        {u"ECU|DTC|T\nABS|1|x\nABS|2|y", "layout-near-miss B1"},
        {u"ID|Code|SAE code\n1|17|P0123\n2|18|P0124", "layout-near-miss C1"},
        {u"|DTC|T\n0|P0123|x\n1|P0124|y", "layout-near-miss B1"},
        {u"No.|SPN|T|FMI\n1|91|x|3\n2|91|y|4", "layout-near-miss B1"},
        {u"SPN|T|FMI\n91|x|3\n91|y|4", "layout-near-miss C1"},
        {u"DTC|T|FTB\nP0123|x|11\nP0123|y|12", "layout-near-miss C1"},
        {u"SPN|FMI no.|T\n91|3|x", "layout-near-miss A1"},
        {u"SPN|T|Fehlerart\n91|x|3", "layout-near-miss C1"},
        {u"DTC|Symptom|T\nP0123|1C|x", "layout-near-miss A1"},
        {u"DTC|Subtype|T\nP0123|0x1C|x", "layout-near-miss A1"},
        {u"DTC|T|Failure type byte\nP0123|x|1Ch", "layout-near-miss C1"},
        {u"Class|T|Code\nA1B2|x|P0123\nA1B3|y|P0124", "(layout-near-miss C1)"},
        {u"DTC number|T|DTC\n291|x|P0123\n4711|y|P0124", "(layout-near-miss C1)"},
        {u"DTC|Level|Meaning\nP0123|1|Stuck\nP0124|2|Low", "(layout-near-miss B1)"},
        {u"SPN|FMI|Level|Remark\n91|3|1|too low\n92|4|2|too high", "(layout-near-miss C1)"},
        {u"Code|Text ID|Note\nP0123|17|see page 5", "(layout-near-miss B1)"},
        // No layout but that which they have.
        {u"DTC|T|DTC class|Code|SPN name|Symptom\nP0123|x|1|17|oil|5\nP0124|y|2|P0125|oil|6", ""},
        {u"Fault code|T|DTC\nP0123|x|0x123\nP0124|y|0x124", ""},
        {u"DTC|T|FTB|SAE code\nP012311|x|11|P0123\nP012312|y|12|P0123", ""},
        {u"DTC|Failure type text|Failure type\nP0123|stuck|Signal\nP0124|open|Electrical", ""},
        {u"SPN|Failure mode|Level\n91|stuck|1", ""},
        {u"Number|T|Related|Code\n4711|x|TBD|1\n4713|y|P0124|2", ""},
        // Columns and headers.
        {u"DTC|T||I\nP0123|x|lost|i", "column-lost C1"},
        {u"|T\nP0123|x", "column-lost A1"},
        {u"DTC|T||I| |\nP0123|x||i||y", "column-lost D1, column-lost F1"},
        {u"DTC|T|I|J|I \nP0123|x|a|b|c", "(item-header E1)"},
        {u"SPN|FMI\n1|2", "(description-empty )"},
        {u"DTC|T\nP0123|\nP0124| ", "(description-empty B2), (description-empty B3)"},
        {u"|DTC|T\n|P0123|x\n|P0124|y", "column-lost A1"},
        {u"DTC||T\nP0123||x", "column-lost C1"},
        {u"DTC||T\nP0123|1|x x", "column-lost B1"},
        {u"DTC|T\n|x\n |y", "number-empty A1"},
        {u"SPN|FMI|T\n91||x\n92||y", "number-empty B1"},
        {u"DTC|\n1|", "(description-empty )"},
        // Texts.
        {u"DTC|T|I\u0001|\nP0123|\u0002|\uFFFF|", "text-not-xml C1, text-not-xml B2, text-not-xml C2"},
        {u"DTC|T\nP0123|K\u00C3\u00BChl", "text-encoding B2"},
        {u"DTC|T\nP0123|K\u00C3\u00BChl\nP0124|\u00E9", "(text-encoding B2)"},
        {u"DTC|T\nP0123|\u00C3\u00BC\u00C3\u00BC\u00C3\u00BC\u00C3\u00BC\nP0124|\u00C3\u00BC\nP0125|\u00E9",
         "text-encoding B2, text-encoding B3, text-encoding B4"},
        {u"DTC|T\nP0123|\u00C3\u00BC\u00C3\u00BC\u00C3\u00BC\u00C3\u00BC\u00C3\u00BC\nP0124|a\u00C3",
         "text-encoding B2, text-encoding B3"},
        {u"DTC|T\nP0123|\u00C3\u00BC\u00C3\u00BC\u00C3\u00BC\u00C3\u00BC\u00C3\u00BC\nP0124|a\u00E2\u0082",
         "text-encoding B2, text-encoding B3"},
        {u"DTC|T\nP0123|\u00C3\u00BC\u00C3\u00BC\nP0124|a\u00C3\nP0125|x", "(text-encoding B2)"},
        {u"DTC|T\nP0123|\u0096 \uFFFD", "text-encoding B2"},
        {u"DTC|T\nP0123|\uFFFD", "text-encoding B2"},
        {u"\u00EF\u00BB\u00BFSPN|FMI|T\n1|2|x\n1|3|y", "text-encoding A1"},
        // Rows.
        {u"DTC|T\rP0123|x", "row-lost "},
        {u"DTC|T", "row-lost "},
        {u"P0123|x", "layout-near-miss A1"},
    };
    for (const auto& [table, found] : rows) {
        EXPECT_EQ(Looked(NTest::MakeTable(table)).Summary(), found) << NTest::Utf8(table);
    }
}

TEST(Checks, TellWhatIsMeant) {
    const std::pair<const char16_t*, const char*> rows[] = {
        {u"DTC|T\nP0123-11|x\nP0123|y",
         "\"P0123-11\" is not an SAE code; the conversion fails. Put the failure type in a column of its "
         "own.\n"},
        {u"DTC|T\n\u04200123|x",
         "\"\u04200123\" is not a decimal number; the number becomes 0. U+0420 only looks like a Latin "
         "letter or digit. Type it again.\n"},
        {u"DTC|T\n1234h|x\n$12|y\n02. Jan|z\n2026-01-02|u\n0x1\u00AD2|v\nPage 2|w",
         "\"1234h\" is not a hexadecimal number; the number becomes 74577. Write hexadecimal numbers with "
         "0x.\n"
         "\"$12\" is not a hexadecimal number; the number becomes -3054. Write hexadecimal numbers with 0x.\n"
         "\"02. Jan\" is not a hexadecimal number; the number becomes -60489. If a spreadsheet program has "
         "made a date of it, format the column as text and enter it again.\n"
         "\"2026-01-02\" is not a hexadecimal number; the number becomes -766. If a spreadsheet program has "
         "made a date of it, format the column as text and enter it again.\n"
         "\"0x1<U+00AD>2\" is not a hexadecimal number; the number becomes 1890. Remove the blanks and "
         "invisible characters.\n"
         "\"Page 2\" is not a hexadecimal number; the number becomes -254. Fill in the number, or delete the "
         "row.\n"},
        {u"DTC|T\nP01 23|x\nBEEF1|y\n1|z",
         "\"P01 23\" is not an SAE code; the conversion fails. Remove the blanks and invisible characters.\n"
         "\"BEEF1\" is not an SAE code; the conversion fails. An SAE code is P, C, B or U and 2, 4, 6 or 8 "
         "hexadecimal digits, the first of them 0 to 3. Write a hexadecimal number with 0x.\n"},
        {u"DTC|FAILURE TYPE|T\n1|1C|x",
         "\"1C\" is not a failure type; the number becomes 257. Write hexadecimal numbers with 0x.\n"},
        {u"DTC|T||I|J\n1|x||y|",
         "Column D, \"I\", is left out with 1 cell, because column C before it is empty, including its "
         "header. Delete column C.\nColumn E, \"J\", is left out with 0 cells, because column C before it is "
         "empty, including its header. Delete column C.\n"},
        {u"DTC|T\n1|\u001B[2J\u202E0123456789012345678901234567890123\U0001F600",
         "\"<U+001B>[2J<U+202E>0123456789012345678901234567890123...\" has the character U+001B, with which "
         "no XML "
         "reader takes the document. Remove it.\n"},
        {u"DTC|state|Status\n1|x|y",
         "B1 \"state\" is the description, not an item, so it does not get the type VSG.\n"},
        {u"DTC|T\nTBD|x\nP0123|y",
         "\"TBD\" is not an SAE code; the number becomes 7613. Fill in the code, or delete the row.\n"},
        {u"DTC|T\n12 34|x\n |y\n1|",
         "\"12 34\" is not a decimal number; the number becomes 12. Write its digits alone.\nThe cell has "
         "only white space; the number becomes 0. Fill it in, or delete the row.\nThe DTC has no "
         "description. Fill it in.\n"},
        {u"DTC|T\nU01|x\nP0123 |y",
         "\"U01\" is not read as an SAE code, because no cell of the column has exactly 5 or 7 characters "
         "and "
         "begins with P, C, B or U; the number becomes 0. Write 0x00C1 instead.\n\"P0123 \" is not read as "
         "an "
         "SAE code, because no cell of the column has exactly 5 or 7 characters and begins with P, C, B or "
         "U; "
         "the number becomes 0. Remove the blanks after it.\n"},
        {u"DTC|T\n4294967295|x\n4294967296|y",
         "\"4294967295\" is above 2147483647, the highest decimal number; the number becomes 2147483647. "
         "Correct it, or write all numbers of the column in hexadecimal with 0x.\n\"4294967296\" is above "
         "2147483647, the highest decimal number; the number becomes 2147483647. Correct it.\n"},
        {u"DTC|T|FailureType\n1|x|0x1C",
         "A1 \"DTC\" and C1 \"FailureType\" are not read as a base DTC and a failure type: the numbers come "
         "from column A alone. Put them in columns A and B with the headers \"DTC\" and \"Failure Type\", "
         "and "
         "the description in column C.\n"},
        {u"DTC|T\nP0123|x\nP0124|y\nP0125|z\nP012345|t",
         "\"P012345\" has 7 characters, but most codes of the column have 5: its number has 3 bytes, theirs "
         "have 2. Correct it if it should be like them.\n"},
        {u"DTC|T|Status\n1|x|y",
         "No item column has the header \"state\", so none gets the type VSG from it. The nearest header is "
         "C1 "
         "\"Status\".\n"},
    };
    for (const auto& [table, texts] : rows) {
        const Names names = std::u16string_view(table).find(u"Status") != std::u16string_view::npos
                                ? Names{u"state"}
                                : Names{};
        EXPECT_EQ(Looked(NTest::MakeTable(table), names).Texts(), texts);
    }
}

TEST(Checks, ComparesTextsWithNumbersOfAWorkbook) {
    using Kind = VCSVReader::HeldValue::Kind;
    VCSVReader::WorksheetFacts facts;
    facts.values = {{1, 0, Kind::Number, 1193046}, {1, 2, Kind::Number, 1193046}, {2, 0, Kind::Number, 7.9},
                    {2, 3, Kind::Truth, 1},        {3, 0, Kind::Error, 2042},     {3, 2, Kind::Error, 2023}};
    const Looked looked(
        NTest::MakeTable(u"DTC|T|I|\n1.19305e+006|x|1.19305e+006|\n7|y|1.19305e+006|\n|||\n|z||x"), {},
        &facts);
    EXPECT_EQ(looked.Summary(),
              "number-empty A4, number-empty A5, number-exponent A2, column-lost D1, value-rounded C2, "
              "value-rounded A3, value-rounded C4");
    EXPECT_EQ(
        looked.Texts(),
        "The cell holds the error #N/A, which is read as an empty cell; the number becomes 0. Enter the "
        "number.\n"
        "The cell is empty; the number becomes 0. Fill it in, or delete the row.\n"
        "The cell holds the number 1193046, read as \"1.19305e+006\"; the number becomes -20474. Format the "
        "column as text and enter the number again.\n"
        "Column D has no header: it is left out with 1 cell. Give it a header.\n"
        "The cell holds the number 1193046, but is read as \"1.19305e+006\". Format the cell as text "
        "and enter the number again.\n"
        "The cell holds the number 7.9, but is read as \"7\". Format the cell as text and enter the "
        "number again.\n"
        "The cell holds the error #REF!, but is read as empty. Enter a text instead.\n");
}

TEST(Checks, ReportsWhatAWorksheetHasOutsideItsTable) {
    const VCSVReader::BehindEdge none;
    const std::tuple<const char16_t*, VCSVReader::BehindEdge, VCSVReader::BehindEdge, const char*> rows[] = {
        {u"DTC|T\nP0123|x", {2, 4, 0, u"P0124", false}, none, "row-lost A5"},
        {u"DTC|T\nP0123|x", {1, 4, 0, u"a", true}, none, "row-lost A5"},
        {u"DTC|T\nP0123|x", {1, 4, 0, u"a", false}, none, "(row-lost A5)"},
        {u"DTC|T", {1, 2, 0, u"1", false}, none, "row-lost A3"},
        {u"DTC|T\nP0123|x", none, {1, 0, 30, u"a", true}, "column-lost AE1"},
        {u"DTC|T\nP0123|x", none, {1, 1, 30, u"a", false}, "(column-lost AE2)"},
    };
    for (const auto& [table, below, right, found] : rows) {
        const VCSVReader::WorksheetFacts facts{{}, below, right};
        EXPECT_EQ(Looked(NTest::MakeTable(table), {}, &facts).Summary(), found);
    }
}

// All are counted; of each rule a thousand are kept, and some of each cause.
TEST(Checks, KeepWhatIsEnough) {
    Table table{{u"DTC", u"T"}};
    for (int row = 0; row < 1500; ++row) table.push_back({u"?", u"x"});
    for (int row = 0; row < 30; ++row) table.push_back({u" 0x1", u"x"});
    const Looked looked(table);
    ASSERT_EQ(looked.List().causes.size(), 2U);
    EXPECT_EQ(looked.List().causes[0].count, 30U);
    EXPECT_EQ(looked.List().causes[1].count, 1500U);
    ASSERT_EQ(looked.List().findings.size(), 1000U);
    EXPECT_EQ(looked.List().findings[0].place.row, 1U);
    EXPECT_EQ(looked.List().findings[979].cause, 1U);
    EXPECT_EQ(looked.List().findings[980].cause, 0U);
}

// ---- Random tables ----

std::mt19937 random(20261123);  // NOLINT: the same tables in every run

std::size_t Below(std::size_t limit) { return random() % limit; }

std::u16string Hex(std::uint32_t number, std::size_t digits) {
    std::u16string text;
    for (std::size_t digit = digits; digit-- > 0;) text += u"0123456789ABCDEF"[number >> (4 * digit) & 0xF];
    return text;
}

std::u16string Decimal(std::uint32_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

// A number as one cell or two, and what a reader makes of them.
struct Made {
    Row cells;
    std::uint32_t number;
};

Made MakeCode(std::uint32_t value, std::size_t digits) {
    const std::size_t letter = Below(4);
    const std::uint32_t rest = value % (1U << (4 * digits - 2));
    return {{u"PCBU"[letter] + Hex(rest, digits)},
            static_cast<std::uint32_t>(letter << (4 * digits - 2)) | rest};
}

// Tables in one notation. `make` gets another value for each row.
struct Notation {
    const char* name;
    Row headers;
    std::function<Made(std::uint32_t)> make;
};

Made WithFailureType(Made base, std::uint32_t value, bool isHex) {
    const std::uint32_t type = value % 0x100;
    base.cells.push_back(isHex ? u"0x" + Hex(type, 2) : Decimal(type));
    base.number = base.number << 8 | type;
    return base;
}

const Notation kNotations[] = {
    {"code4", {u"DTC"}, [](std::uint32_t value) { return MakeCode(value, 4); }},
    {"code6", {u"Code"}, [](std::uint32_t value) { return MakeCode(value, 6); }},
    {"decimal",
     {u"DTC"},
     [](std::uint32_t value) {
         return Made{{Decimal(value)}, value};
     }},
    {"prefixed",
     {u"dtc"},
     [](std::uint32_t value) {
         return Made{{u"0x" + Hex(value, 6)}, value};
     }},
    {"hex",
     {u"DTC"},
     [](std::uint32_t value) {
         return Made{{u"F" + Hex(value, 5)}, 0xF00000 | value};
     }},
    {"J1939",
     {u"SPN", u"FMI"},
     [](std::uint32_t value) {
         const std::uint32_t spn = value % 0x80000;
         const std::uint32_t packed = (spn & 0xFF) << 16 | (spn & 0xFF00) | (spn >> 16 << 5) | value % 32;
         return Made{{Decimal(spn), Decimal(value % 32)}, packed};
     }},
    {"code and type",
     {u"BaseDTC", u"FTB"},
     [](std::uint32_t value) { return WithFailureType(MakeCode(value, 4), value, true); }},
    {"code and decimal type",
     {u"DTC", u"Failure Type"},
     [](std::uint32_t value) { return WithFailureType(MakeCode(value, 4), value, false); }},
    {"hex and type",
     {u"dtc", u"failure type"},
     [](std::uint32_t value) {
         return WithFailureType({{u"0x" + Hex(value, 5)}, value}, value, true);
     }},
    {"decimal and type",
     {u"BASEDTC", u"FTB"},
     [](std::uint32_t value) {
         return WithFailureType({{Decimal(value)}, value}, value, false);
     }},
};

struct Clean {
    Table table;
    std::vector<std::string> numbers;
    std::size_t numberColumns;
};

Clean MakeClean(const Notation& notation) {
    constexpr const char16_t* kTexts[] = {u"a",   u"",  u"B b",        u"\u00FCber \u20AC",
                                          u"<&>", u"1", u"\U0001F600", u"x;y"};
    Clean clean{{notation.headers}, {}, notation.headers.size()};
    Row& header = clean.table[0];
    const std::size_t items = 1 + Below(4);
    header.emplace_back(u"Text");
    for (std::size_t item = 0; item < items; ++item)
        header.push_back(u"Item " + Decimal(static_cast<std::uint32_t>(item)));
    std::set<std::uint32_t> values;
    while (values.size() < 12) values.insert(0x3000 + static_cast<std::uint32_t>(Below(0x1000)));
    for (const std::uint32_t value : values) {
        Made made = notation.make(value);
        clean.numbers.push_back(std::to_string(static_cast<std::int32_t>(made.number)));
        made.cells.emplace_back(u"Text");
        for (std::size_t item = 0; item < items; ++item)
            made.cells.emplace_back(kTexts[Below(std::size(kTexts))]);
        clean.table.push_back(std::move(made.cells));
    }
    return clean;
}

TEST(Checks, LeaveCleanTablesAlone) {
    for (int round = 0; round < 20; ++round) {
        for (const Notation& notation : kNotations) {
            const Clean clean = MakeClean(notation);
            Looked looked(clean.table);
            EXPECT_EQ(looked.Texts(), "") << notation.name;
            EXPECT_EQ(looked.Numbers(), clean.numbers) << notation.name;
        }
    }
}

// What is put into a cell instead of its text, and the rule that finds it there.
struct Fault {
    const char* rule;
    std::function<std::u16string(const std::u16string&)> change;
};

Fault Becomes(const char* rule, std::u16string text) {
    return {rule, [text](const std::u16string&) { return text; }};
}

Fault Surround(const char* rule, std::u16string before, std::u16string behind) {
    return {rule, [=](const std::u16string& cell) { return before + cell + behind; }};
}

std::vector<Fault> NumberFaults() {
    std::vector<Fault> faults = {Becomes("number-empty", u""),
                                 Becomes("number-empty", u"  "),
                                 Becomes("number-empty", u"\u00A0"),
                                 Becomes("number-exponent", u"1.2E+05"),
                                 Becomes("number-exponent", u"3,4e-7"),
                                 Becomes("number-exponent", u"7E+5"),
                                 Becomes("number-range", u"0xF123456789"),
                                 Becomes("number-range", u"-7"),
                                 Becomes("number-range", u"99999999999")};
    for (const char16_t* const text :
         {u"TBD",        u"n/a",          u"-",     u"?",     u"12 34",    u"1,234",    u"3.5",   u"+5",
          u"0x",         u"0xG1",         u"PO123", u"P 123", u"P0123-11", u"P0123 11", u"P4123", u"P012G",
          u"\u04200123", u"\uFF11\uFF12", u"one",   u"1/2"}) {
        faults.push_back(Becomes("number-unreadable", text));
    }
    for (const char16_t* const text : {u"#", u"$", u"\u200B", u"\uFEFF", u"'", u"\""}) {
        faults.push_back(Surround("number-unreadable", text, u""));
        faults.push_back(Surround("number-unreadable", u"", text));
    }
    faults.push_back(Surround("number-unreadable", u"", u"h"));
    faults.push_back(Surround("number-unreadable", u"(", u")"));
    return faults;
}

// A sign is no digit: where numbers are hexadecimal or codes, a negative number is just unreadable. So is
// what has a prefix that is not understood.
bool IsExpected(const std::string& rule, const std::string& found) {
    return found == rule || (rule == "number-range" && found == "number-unreadable");
}

// Whether each finding stands in the row, and one that is expected at the place itself.
bool IsFoundAlone(const FindingList& list, const Place& place, const std::string& rule) {
    bool isFound = false;
    for (const Finding& finding : list.findings) {
        if (finding.place.row != kNowhere && finding.place.row != place.row) return false;
        const bool isHere = finding.place.row == place.row && finding.place.column == place.column;
        isFound = isFound || (isHere && IsExpected(rule, NameOf(list.causes[finding.cause].rule)));
    }
    return isFound;
}

TEST(Checks, FindEachFaultAtItsPlace) {
    const std::vector<Fault> faults = NumberFaults();
    std::size_t kinds = 0;
    for (const Notation& notation : kNotations) {
        for (std::size_t column = 0; column < notation.headers.size(); ++column) {
            for (const Fault& fault : faults) {
                Clean clean = MakeClean(notation);
                const Place place{1 + Below(clean.table.size() - 1), column};
                std::u16string& cell = clean.table[place.row][column];
                cell = fault.change(cell);
                const Looked looked(clean.table);
                EXPECT_TRUE(IsFoundAlone(looked.List(), place, fault.rule))
                    << notation.name << ", " << fault.rule << " " << NTest::Utf8(CellName(place)) << " "
                    << NTest::Utf8(cell) << "\n"
                    << looked.Summary() << "\n"
                    << looked.Texts();
                EXPECT_TRUE(looked.HasError());
                ++kinds;
            }
        }
    }
    EXPECT_GE(kinds, 200U);
}

TEST(Checks, FindFaultsOfTextsInEachLayout) {
    const std::pair<const char*, const char16_t*> kTexts[] = {
        {"text-not-xml", u"a\u0001"}, {"text-not-xml", u"\uFFFE"},   {"text-encoding", u"K\u00C3\u00BC"},
        {"text-encoding", u"\u0096"}, {"text-encoding", u"\uFFFD?"},
    };
    for (const Notation& notation : kNotations) {
        for (const auto& [rule, text] : kTexts) {
            Clean clean = MakeClean(notation);
            const Place place{1 + Below(clean.table.size() - 1), clean.numberColumns + Below(2)};
            clean.table[place.row][place.column] = text;
            EXPECT_TRUE(IsFoundAlone(Looked(clean.table).List(), place, rule)) << notation.name << rule;
        }
        Clean clean = MakeClean(notation);
        clean.table[3][clean.numberColumns] = u" ";
        EXPECT_TRUE(IsFoundAlone(Looked(clean.table).List(), {3, clean.numberColumns}, "description-empty"));
        clean = MakeClean(notation);
        for (std::size_t column = 0; column < clean.numberColumns; ++column) {
            clean.table[7][column] = clean.table[2][column];
        }
        EXPECT_TRUE(IsFoundAlone(Looked(clean.table).List(), {7, 0}, "number-duplicate"))
            << notation.name << Looked(clean.table).Texts();
        clean = MakeClean(notation);
        clean.table[0].back() = u"";
        clean.table[5].back() = u"x";
        EXPECT_EQ(Looked(clean.table).Summary(), "column-lost " + PlaceOf({0, clean.table[0].size() - 1}));
        clean = MakeClean(notation);
        clean.table.insert(clean.table.begin() + 4, clean.table[0]);
        EXPECT_TRUE(IsFoundAlone(Looked(clean.table).List(), {4, 0}, "layout-near-miss")) << notation.name;
        clean = MakeClean(notation);
        EXPECT_EQ(Looked(clean.table, {u"item 0"}).Summary(), "(item-header )");
        Table moved = clean.table;
        for (std::size_t row = 0; row < moved.size(); ++row) {
            moved[row].insert(moved[row].begin(),
                              row == 0 ? u"No." : Decimal(static_cast<std::uint32_t>(row)));
        }
        EXPECT_EQ(Looked(moved).Summary(), "layout-near-miss B1") << notation.name;
        moved = clean.table;
        for (Row& row : moved) std::swap(row[1], row[2]);
        clean.table[0][0] += u" ";
        if (clean.numberColumns > 1) {
            EXPECT_EQ(Looked(clean.table).Summary(), "layout-near-miss A1");
            EXPECT_EQ(Looked(moved).Summary(), "layout-near-miss C1") << notation.name;
        }
    }
}

// What a cell says to a reader who knows nothing of the rest of the table but whether its numbers are
// hexadecimal.
std::optional<std::uint32_t> PlainNumber(std::u16string cell, bool isHex) {
    while (!cell.empty() && cell.back() == u' ') cell.pop_back();
    while (!cell.empty() && cell.front() == u' ') cell.erase(0, 1);
    std::string text(cell.begin(), cell.end());
    for (const char16_t unit : cell) {
        if (unit > 0x7E) return std::nullopt;
    }
    const auto number = [](const std::string& digits, int base) -> std::optional<std::uint32_t> {
        std::size_t used = 0;
        if (digits.empty() || !std::isxdigit(static_cast<unsigned char>(digits[0]))) return std::nullopt;
        if (digits.size() > 1 && base == 16 && (digits[1] == 'x' || digits[1] == 'X')) return std::nullopt;
        const unsigned long long value = std::stoull("0" + digits, &used, base);
        if (used != digits.size() + 1 || value > 0xFFFFFFFF) return std::nullopt;
        return static_cast<std::uint32_t>(value);
    };
    const std::size_t letter = text.empty() ? std::string::npos : std::string("PCBUpcbu").find(text[0]);
    if (letter != std::string::npos && text.size() % 2 == 1 && text.size() >= 3 && text.size() <= 7) {
        const auto digits = number(text.substr(1), 16);
        if (!digits || text[1] > '3') return std::nullopt;
        return *digits | static_cast<std::uint32_t>(letter % 4 << (4 * text.size() - 6));
    }
    if (text.starts_with("0x") || text.starts_with("0X")) return number(text.substr(2), 16);
    return number(text, isHex ? 16 : 10);
}

TEST(Checks, LetNoWrongNumberPass) {
    constexpr const char16_t* kCells[] = {u"P0123", u"c1234", u"U2ABC12", u"1234",      u"77",    u"0x1A",
                                          u"0x10",  u"12",    u"1A",      u"FF",        u"C0FFE", u"B123",
                                          u"9 ",    u" 8",    u"TBD",     u" P0123",    u"0x1 ",  u"1.5",
                                          u"",      u"P01",   u"0X7",     u"5000000000"};
    int passed = 0;
    for (int round = 0; round < 20000; ++round) {
        Table table{{u"DTC", u"Text"}};
        bool isHex = false;
        const std::size_t choice = Below(std::size(kCells));
        for (std::size_t row = 0; row < 4; ++row) {
            const std::size_t pick = Below(3) == 0 ? Below(std::size(kCells)) : choice;
            table.push_back({kCells[pick], u"Text"});
            isHex = isHex || Names{u"1A", u"FF", u"B123"}.contains(table.back()[0]);
        }
        Looked looked(table);
        if (looked.HasError()) continue;
        ++passed;
        const std::vector<std::string> numbers = looked.Numbers();
        ASSERT_EQ(numbers.size(), 4U)
            << NTest::Utf8(table[1][0] + u" " + table[2][0] + u" " + table[3][0] + u" " + table[4][0]);
        for (std::size_t row = 0; row < 4; ++row) {
            const auto plain = PlainNumber(table[row + 1][0], isHex);
            ASSERT_TRUE(plain) << NTest::Utf8(table[row + 1][0]);
            EXPECT_EQ(std::to_string(static_cast<std::int32_t>(*plain)), numbers[row])
                << NTest::Utf8(table[1][0] + u" " + table[2][0] + u" " + table[3][0] + u" " + table[4][0]);
        }
    }
    EXPECT_GT(passed, 2000);
}

}  // namespace
