#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "api/excel_detection.h"
#include "api/xls2tki.h"
#include "api/xls2tki_c.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/ole.h"
#include "platform/user.h"
#include "tests/host.h"
#include "tests/library.h"
#include "tests/recording_server.h"
#include "tests/registry.h"
#include "tests/rooms.h"

namespace {

using namespace std::string_view_literals;
using namespace NXls2Tki;
using NPlatform::CalendarTime;
using NPlatform::TextBuffer;
using NPlatform::TextEncoding;
using NPlatform::TextFileResult;
using NTest::LoggedMessages;
using NTest::Progress;
using NTest::Replacement;
using NTest::TempFolder;
using NTest::Wide;
using NTest::operator""_w;

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
    const NTest::WorkingFolder working(folder);
    const std::u16string output = folder.Put("output", std::string(5000, 'o'));
    const Replacement clock(NPlatform::LocalTime, AFixedTime);
    for (const auto user : {Ada, Nobody}) {
        const Replacement name(NPlatform::UserName, user);
        const Progress progress;
        EXPECT_TRUE(
            Xls2TkiConvert(u"input"_w.c_str(), Wide(output).c_str(), ImportTypeCSV, true, u',', false));
        std::vector<std::u16string> steps = {
            u"Current user is: 'Ada' (result of WIN-API GetUserName())",
            u"Using VDefaultCSVHeap to receive data.",
            u"Trying to acces file ... ",
            u"Using infile '" + folder.Path("input") + u"'",
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
        EXPECT_EQ(LoggedMessages(), u"[2026/11/16 07:05:32] Writing to file completed.\n");
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
        {kGood, ImportTypeODBC, u"No Excel ODBC driver found"},
    };
    const std::u16string output = folder.Put("output", "as it was");
    const auto expectFailure = [&](const std::u16string& from, VImportType importType,
                                   const std::u16string& message) {
        const Progress progress;
        EXPECT_FALSE(xls2tki_convert(nullptr));  // leaves a reason of its own
        EXPECT_FALSE(Xls2TkiConvert(Wide(from).c_str(), Wide(output).c_str(), importType, true, u';', false));
        EXPECT_EQ(LoggedMessages(), message);
        EXPECT_EQ(WideString(xls2tki_message()), Wide(message));
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
        EXPECT_TRUE(
            Xls2TkiConvert(Wide(input).c_str(), Wide(output).c_str(), ImportTypeCSV, false, u';', false));
    }
    EXPECT_TRUE(folder.Read("missing/output").empty());
    EXPECT_TRUE(folder.Read("input").starts_with("<?xml"));
}

// A registry whose key for the current Excel has this value.
class InstalledExcel : public NTest::Registry {
  public:
    explicit InstalledExcel(const std::string& value)
        : Registry("REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\Excel.Application\\CurVer]\n" + value) {
    }
};

TEST(Api, DetectsTheInstalledExcel) {
    const auto text = [](const std::string& name) { return "@=\"" + name + "\""; };
    const std::tuple<std::string, VExcelVersion, std::u16string> rows[] = {
        {text("Excel.Application.10"), ExcelVersion2000, u"Microsoft Excel 2000"},
        {text("Excel.Application.11"), ExcelVersion2003, u"Microsoft Excel 2003"},
        {text("Excel.Application.12"), ExcelVersion2007, u"Microsoft Excel 2007"},
        {text("Excel.Application.14"), ExcelVersion2010, u"Microsoft Excel 2010"},
        {text("Excel.Application.15"), ExcelVersionUnknown, u"Excel.Application.15"},
        {text("Excel.Application.9"), ExcelVersionUnknown, u"Excel.Application.9"},
        {text("excel.application.11"), ExcelVersionUnknown, u"excel.application.11"},
        {text("Excel.Application.11 "), ExcelVersionUnknown, u"Excel.Application.11 "},
        {text(""), ExcelVersionUnknown, u""},
        {text(std::string(2047, 'x')), ExcelVersionUnknown, std::u16string(2047, u'x')},
        {text(std::string(2048, 'x')), ExcelNotInstalled, u"unchanged"},
        {"@=hex(1):", ExcelVersionUnknown, u""},
        {"@=hex(1):61,00,00,00,62,00,00,00", ExcelVersionUnknown, u"a"},
        {"@=hex(2):25,00,78,00,25,00,00,00", ExcelVersionUnknown, u"%x%"},
        {"@=hex(1):61,00", ExcelNotInstalled, u"unchanged"},
        {"@=hex(1):61,00,00,00,00", ExcelNotInstalled, u"unchanged"},
        {"@=hex(7):61,00,00,00,00,00", ExcelNotInstalled, u"unchanged"},
        {"@=dword:00000000", ExcelNotInstalled, u"unchanged"},
        {"\"Name\"=\"Excel.Application.14\"", ExcelNotInstalled, u"unchanged"},
        {"[-HKEY_LOCAL_MACHINE\\SOFTWARE]", ExcelNotInstalled, u"unchanged"},
        {";deny key", ExcelAccessDenied, u"unchanged"},
        {";deny value\n" + text("Excel.Application.14"), ExcelAccessDenied, u"unchanged"},
    };
    for (const auto& [value, version, expected] : rows) {
        const InstalledExcel excel(value);
        std::u16string displayString = u"unchanged";
        EXPECT_EQ(DetectExcelVersion(displayString), version) << value;
        EXPECT_EQ(displayString, expected) << value;
    }
}

std::u16string AccessDenied(const std::u16string& what) {
    return u"It is not possible to detect Excel version. (ERROR_ACCESS_DENIED: Korvalith.exe can't access "
           u"registry " +
           what +
           u": 'HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\Excel.Application\\CurVer'. "
           u"Please check if installation of MS Excel is available for current user.)";
}

constexpr char16_t kWarning[] =
    u"The application MS Excel 2000 or higher is needed on this system. The currently installed MS Excel "
    u"version is unknown (Excel.Application.15). Trying to use Excel 2010 interfaces.";

// Each text of the message text replaces the one before, and a listing that works leaves it as it was.
TEST(Api, DrivesTheInstalledExcel) {
    const std::u16string kNotInstalled =
        u"The application MS Excel 2000 or higher is not installed on this system. Aborting data "
        u"transformation.";
    const struct {
        std::string value;
        std::u16string announcement;  // of the source that converts; empty: none
        std::u16string failure;       // for want of a worksheet
        bool isListed;
        std::u16string listing;
    } rows[] = {
        {"@=\"Excel.Application.10\"", u"Using Excel automation to receive data.", u"No Workbook", true,
         u"No Workbook"},
        {"@=\"Excel.Application.11\"", u"Using VDefaultExcelHeap (excel automation) to receive data.",
         u"Empty data given ?!", false,
         u"On using Excel 2003, it is not possible to detect contained Worksheets!"},
        {"@=\"Excel.Application.12\"", u"Using VExcel2007Heap (excel automation) to receive data.",
         u"No Workbook", true, u"No Workbook"},
        {"@=\"Excel.Application.14\"", u"Using VExcel2010Heap (excel automation) to receive data.",
         u"No Workbook", true, u"No Workbook"},
        {"@=\"Excel.Application.15\"", u"Using VExcel2010Heap (excel automation) to receive data.",
         u"No Workbook", true, kWarning},
        {"", u"", kNotInstalled, false, kNotInstalled},
        {";deny key", u"", AccessDenied(u"path"), false, AccessDenied(u"path")},
        {";deny value\n@=\"\"", u"", AccessDenied(u"value"), false, AccessDenied(u"value")},
    };
    NTest::RecordingExcel excel({});
    const TempFolder folder;
    const std::u16string input = folder.Put("input", "");
    const std::u16string output = folder.Put("output", "as it was");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.value);
        const InstalledExcel installed(row.value);
        const Progress progress;
        excel.Begin(1);  // it does not start
        EXPECT_FALSE(Xls2TkiConvert(Wide(input).c_str(), u"Sheet"_w.c_str(), Wide(output).c_str(),
                                    ImportTypeExcel, true, u';', {}, {}, {}, nullptr, nullptr, false));
        EXPECT_EQ(LoggedMessages(), row.failure);
        EXPECT_EQ(folder.Read("output"), "as it was");
        if (row.announcement.empty()) {
            EXPECT_EQ(Progress::Messages().size(), 1U);
        } else {
            EXPECT_EQ(Progress::Messages().at(1), row.announcement);
        }
        const std::size_t count = Progress::Messages().size();
        std::vector<WideString> names = {u"as it was"_w};
        excel.Begin(1);
        EXPECT_EQ(GetExcelWorksheets(Wide(input).c_str(), names), row.isListed);
        EXPECT_EQ(LoggedMessages(), row.listing);
        EXPECT_EQ(names, row.isListed ? std::vector<WideString>() : std::vector<WideString>{u"as it was"_w});
        EXPECT_EQ(Progress::Messages().size(), count);
    }
}

TEST(Api, LetsFailuresOfExcelPass) {
    NTest::RecordingExcel excel({});
    const TempFolder folder;
    const std::u16string input = folder.Put("input", "");
    for (const std::string version : {"10", "11", "12", "14", "15"}) {
        SCOPED_TRACE(version);
        const InstalledExcel installed("@=\"Excel.Application." + version + "\"");
        std::vector<WideString> names = {u"as it was"_w};
        const auto expectFailure = [&](const std::function<void()>& call) {
            excel.Begin(2);
            try {
                call();
                ADD_FAILURE();
            } catch (const std::exception& failure) {
                EXPECT_STREQ(failure.what(), "Broken");
            }
            EXPECT_EQ(LoggedMessages(), version == "15" ? std::u16string(kWarning) : u"");
            EXPECT_EQ(names, std::vector<WideString>{u"as it was"_w});
            EXPECT_EQ(excel.liveObjects, 0);
        };
        expectFailure(
            [&] { Xls2TkiConvert(Wide(input).c_str(), nullptr, ImportTypeExcel, false, u';', false); });
        if (version != "11") expectFailure([&] { GetExcelWorksheets(Wide(input).c_str(), names); });
    }
    const InstalledExcel installed("@=\"Excel.Application.15\"");
    Xls2TkiConversion conversion{};
    const WideString path = Wide(input);
    conversion.size = sizeof conversion;
    conversion.inputPath = path.c_str();
    conversion.importType = XLS2TKI_EXCEL;
    excel.Begin(2);
    EXPECT_FALSE(xls2tki_convert(&conversion));
    EXPECT_EQ(xls2tki_failure(), XLS2TKI_EXCEL_FAILED);
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
