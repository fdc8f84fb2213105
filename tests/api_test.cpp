#include <gtest/gtest.h>

#include <tuple>

#include "api/xls2tki.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/ole.h"
#include "platform/user.h"
#include "tests/host.h"
#include "tests/rooms.h"

namespace {

using namespace std::string_view_literals;
using namespace NXls2Tki;
using NPlatform::CalendarTime;
using NPlatform::TextBuffer;
using NPlatform::TextEncoding;
using NPlatform::TextFileResult;
using NTest::Progress;
using NTest::Replacement;
using NTest::TempFolder;

bool AFixedTime(CalendarTime& time) {
    time = {2026, 11, 16, 7, 5, 32};
    return true;
}
bool Ada(std::u16string& name, std::size_t) {
    name = u"Ada";
    return true;
}
bool Nobody(std::u16string&, std::size_t) { return false; }

TEST(Api, TellsEachStepOfAConversion) {
    const TempFolder folder;
    folder.Put("input", "DTC,Text\r\nP0123,x\r\n");
    const std::u16string input = std::filesystem::relative(folder.Path("input")).u16string();
    const std::u16string output = folder.Put("output", std::string(5000, 'o'));
    const Replacement clock(NPlatform::LocalTime, AFixedTime);
    for (const auto user : {Ada, Nobody}) {
        const Replacement name(NPlatform::UserName, user);
        const Progress progress;
        EXPECT_TRUE(Xls2TkiConvert(input.c_str(), output.c_str(), ImportTypeCSV, true, u',', false));
        std::vector<std::u16string> steps = {
            u"Current user is: 'Ada' (result of WIN-API GetUserName())",
            u"Using VDefaultCSVHeap to receive data.",
            u"Trying to acces file ... ",
            u"Using infile '" + std::filesystem::absolute(input).u16string() + u"'",
            u"Reading CSV File.",
            u"Reading CSV File done.",
            u"Parsing CSV file ... ",
            u"Parsing CSV file ... done",
            u"Checking consistency of data ... ",
            u"Target Array has 2 rows and 2 columns",
            u"Checking consistency of data ... done",
            u"Writing XML structure to file.",
            u"Writing to file completed.",
        };
        if (user == Nobody) steps.erase(steps.begin());
        EXPECT_EQ(Progress::Messages(), steps);
        EXPECT_EQ(GetLoggedMessages(), u"[2026/11/16 07:05:32] Writing to file completed.\n"sv);
        EXPECT_TRUE(folder.Read("output").ends_with("\r\n</TAMRISKIMPORT>\r\n"));
    }
}

TEST(Api, LeavesTheOutputAloneWhenItFails) {
    constexpr auto kOther = static_cast<VImportType>(3);
    constexpr auto kNegative = static_cast<VImportType>(-1);
    constexpr std::string_view kGood = "DTC;Text\nP0123;x\n";
    const TempFolder folder;
    const std::u16string input = folder.Path("input");
    const std::tuple<std::string_view, VImportType, const char16_t*> rows[] = {
        {"", ImportTypeCSV, u"Empty data given ?!"},
        {"DTC\n1\n", ImportTypeCSV,
         u"The Header (first row in excel sheet) does not define enough columns. It should define at least "
         u"two columns containing DTC and Description. (Data-Area in Excel is assumed as 'Z1S1:Z2S1')"},
        {"DTC;Text\n1;a\n2\n", ImportTypeCSV, u"Row [2] defines 1 columns. Header defines 2\nValues:\n2\n"},
        {"DTC;Text\n1;\"a\"b\n", ImportTypeCSV,
         u"Error parsing csv file.\nUnknown character 'b' in line 2, column 2, position 2"},
        {"DTC;Text\nP01234;a\nP0123;b\n", ImportTypeCSV,
         u"Given SAE DTC number P01234 has invalid length, expected 3, 5, 7 or 9 characters"},
        {"\xFF\xFE;\0T\0\n\0"sv, ImportTypeCSV,
         u"Row [1] defines 1 columns. Header defines 2\nValues:\n\xFFFD\n"},
        {kGood, kOther, u"Import type not supported"},
        {kGood, kNegative, u"Import type not supported"},
        {kGood, ImportTypeExcel,
         u"This version cannot read Excel workbooks yet. Save the table as a CSV file."},
        {kGood, ImportTypeODBC, u"This version cannot read through ODBC yet. Save the table as a CSV file."},
    };
    const std::u16string output = folder.Put("output", "as it was");
    const auto expectFailure = [&](const std::u16string& from, VImportType importType,
                                   const std::u16string& message) {
        const Progress progress;
        EXPECT_FALSE(Xls2TkiConvert(from.c_str(), output.c_str(), importType, true, u';', false));
        EXPECT_EQ(GetLoggedMessages(), message);
        EXPECT_EQ(folder.Read("output"), "as it was");
        EXPECT_NE(Progress::Messages().back(), u"Writing XML structure to file.");
    };
    for (const auto& [content, importType, message] : rows)
        expectFailure(folder.Put("input", content), importType, message);
    for (const std::u16string& path : {folder.Path("missing"), folder.Path("")}) {
        expectFailure(path, ImportTypeCSV, u"Error opening inputfile:\n'" + path + u"'");
    }

    folder.Put("input", kGood);
    static TextFileResult result;
    const auto reader = [](std::u16string_view, TextEncoding, TextBuffer& text) {
        if (result != TextFileResult::NotOpened) text.Append(u"DTC;Text\n");
        return result;
    };
    const Replacement replacement(NPlatform::ReadTextFile, +reader);
    result = TextFileResult::TooLarge;
    expectFailure(input, ImportTypeCSV,
                  u"Error reading inputfile, it is larger than 2 GB:\n'" + input + u"'");
    result = TextFileResult::Failed;
    expectFailure(input, ImportTypeCSV, u"Error reading inputfile:\n'" + input + u"'");
    result = TextFileResult::NotOpened;
    expectFailure(input, ImportTypeCSV, u"Empty data given ?!");
    result = TextFileResult::Read;
    const NTest::NoBuffers none;
    expectFailure(input, ImportTypeCSV, u"There is not enough memory to write the import document.");
}

TEST(Api, SaysNothingOfAnOutputThatCannotBeWritten) {
    const TempFolder folder;
    const std::u16string input = folder.Put("input", "DTC;Text\nP0123;x\n");
    const std::u16string missing = folder.Path("missing/output");
    for (const char16_t* output : {missing.c_str(), u"", u"/dev/full", input.c_str()}) {
        EXPECT_TRUE(Xls2TkiConvert(input.c_str(), output, ImportTypeCSV, false, u';', false));
    }
    EXPECT_TRUE(folder.Read("missing/output").empty());
    EXPECT_TRUE(folder.Read("input").starts_with("<?xml"));
}

// The preparation happens once in a process, so all of it is in one test.
TEST(Api, PreparesAutomationOnce) {
    static std::u16string calls;
    const auto init = [] { return (calls += u"init ").empty(); };
    const Replacement failingInit(NPlatform::InitAutomation, +init);
    const Replacement controls(
        NPlatform::EnableControls, +[] { calls += u"controls "; });
    const Replacement box(
        NPlatform::ShowMessageBox, +[](const char16_t* text) { calls += text; });
    EXPECT_FALSE(XlsInitOle(false));
    EXPECT_TRUE(XlsInitOle(false));
    EXPECT_TRUE(XlsInitOle(true));
    EXPECT_EQ(calls, u"init Could not initialize COM dll");
}

}  // namespace
