// A host that loads the library when it needs it. The system has an Excel to start.
#include <gtest/gtest.h>
#include <windows.h>
// Behind it:
#include <algorithm>

#include "api/xls2tki.h"
#include "api/xls2tki_c.h"
#include "tests/host.h"
#include "tests/library.h"

namespace {

using namespace NXls2Tki;
using NTest::Wide;

class LoadedLibrary {
  public:
    LoadedLibrary() : module_(LoadLibraryW(L"xls2tki.dll")) {}
    LoadedLibrary(const LoadedLibrary&) = delete;
    ~LoadedLibrary() { FreeLibrary(module_); }

    template <typename Function>
    Function* Find(const char* exportedName) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, exportedName)));
    }

  private:
    HMODULE module_;
};

using Text = const WideChar*;
using Names = const WideStringSet&;

#define CONVERT "_ZN8NXls2Tki14Xls2TkiConvertEPKwS1_"
#define SET "RKSt3setINSt7__cxx1112basic_stringIwSt11char_traitsIwESaIwEEESt4lessIS9_ESaIS9_EE"

struct Files {
    WideString input;
    VImportType type;
    WideString output;
};

void ConvertByEachOverload(const LoadedLibrary& library, const Files& files) {
    const WideStringSet set = {L"Text"};
    const Text input = files.input.c_str();
    const Text output = files.output.c_str();
    const auto convert =
        library.Find<bool(Text, Text, VImportType, bool, WideChar, bool)>(CONVERT "NS_11VImportTypeEbwb");
    EXPECT_TRUE(convert(input, output, files.type, false, L';', false));
    EXPECT_FALSE(convert(input, output, ImportTypeODBC, false, L';', false));
    const auto convertTwo = library.Find<bool(Text, Text, VImportType, bool, WideChar, Names, Names, bool)>(
        CONVERT "NS_11VImportTypeEbw" SET "SF_b");
    EXPECT_TRUE(convertTwo(input, output, files.type, false, L';', set, set, false));
    const auto convertThree =
        library.Find<bool(Text, Text, VImportType, bool, WideChar, Names, Names, Names, Text, Text, bool)>(
            CONVERT "NS_11VImportTypeEbw" SET "SF_SF_S1_S1_b");
    EXPECT_TRUE(convertThree(input, output, files.type, false, L';', set, set, set, L"V", L"D", true));
    const auto convertSheet =
        library
            .Find<bool(Text, Text, Text, VImportType, bool, WideChar, Names, Names, Names, Text, Text, bool)>(
                CONVERT "S1_NS_11VImportTypeEbw" SET "SF_SF_S1_S1_b");
    EXPECT_TRUE(
        convertSheet(input, L"J1939", output, files.type, false, L';', set, set, set, L"", L"", true));
}

void CallForCpp(const LoadedLibrary& library, const Files& files) {
    const auto loggedMessages = library.Find<Text()>("_ZN8NXls2Tki17GetLoggedMessagesEv");
    EXPECT_STREQ(loggedMessages(), L"");
    EXPECT_TRUE(library.Find<bool(bool)>("_ZN8NXls2Tki10XlsInitOleEb")(true));
    ConvertByEachOverload(library, files);
    EXPECT_STRNE(loggedMessages(), L"");
    const auto list = library.Find<bool(Text, std::vector<WideString>&)>(
        "_ZN8NXls2Tki18GetExcelWorksheetsEPKwRSt6vectorINSt7__cxx1112basic_stringIwSt11char_traitsIwESaIwEEE"
        "SaIS8_EE");
    ASSERT_NE(list, nullptr);
    if (files.type != ImportTypeExcel) return;
    std::vector<WideString> worksheets;
    EXPECT_TRUE(list(files.input.c_str(), worksheets));
    EXPECT_EQ(worksheets.size(), 3U);
}

void CallForC(const LoadedLibrary& library, const Files& files) {
    EXPECT_TRUE(library.Find<decltype(xls2tki_init_ole)>("xls2tki_init_ole")(true));
    Xls2TkiConversion conversion{};
    conversion.size = sizeof conversion;
    conversion.inputPath = files.input.c_str();
    conversion.outputPath = files.output.c_str();
    conversion.importType = files.type;
    conversion.separator = L';';
    EXPECT_TRUE(library.Find<decltype(xls2tki_convert)>("xls2tki_convert")(&conversion));
    Xls2TkiFacts facts{};
    facts.size = sizeof facts;
    EXPECT_TRUE(library.Find<decltype(xls2tki_facts)>("xls2tki_facts")(&facts));
    EXPECT_STRNE(library.Find<decltype(xls2tki_message)>("xls2tki_message")(), L"");
    const auto list = library.Find<decltype(xls2tki_list_worksheets)>("xls2tki_list_worksheets");
    ASSERT_NE(list, nullptr);
    if (files.type != ImportTypeExcel) return;
    Xls2TkiNames names{};
    EXPECT_TRUE(list(files.input.c_str(), &names));
    EXPECT_EQ(names.count, 3U);
}

std::size_t CountHandles() {
    struct Entry {
        ULONG process;
        UCHAR rest[20];
    };
    static_assert(sizeof(Entry) == 24);
    constexpr int kAllHandles = 16;
    static ULONG list[1 << 18];
    const auto query = reinterpret_cast<LONG(WINAPI*)(int, void*, ULONG, ULONG*)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    EXPECT_EQ(query(kAllHandles, list, sizeof list, nullptr), 0);
    const auto* const first = reinterpret_cast<const Entry*>(list + 2);
    const auto isOurs = [](const Entry& entry) { return entry.process == GetCurrentProcessId(); };
    return static_cast<std::size_t>(std::count_if(first, first + list[0], isOurs));
}

std::size_t CountBytes() {
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(std::size(heaps)), heaps);
    std::size_t bytes = 0;
    for (DWORD index = 0; index < count; ++index) {
        PROCESS_HEAP_ENTRY block{};
        while (HeapWalk(heaps[index], &block) != 0) {
            if ((block.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += block.cbData;
        }
    }
    return bytes;
}

TEST(Windows, LoadsAndFreesTheLibraryAgainAndAgain) {
    constexpr int kRounds = 100;
    constexpr int kExcelEach = 40;  // as it takes seconds to start
    const NTest::TempFolder folder;
    const WideString output = Wide(folder.Path("output"));
    const std::string workbook = NTest::ReadBytes(XLS2TKI_TEST_DATA "/../../examples/powertrain.xlsx");
    const Files tables[] = {
        {Wide(folder.Put("input.csv", "DTC;Text\nP0123;x\n")), ImportTypeCSV, output},
        {Wide(folder.Put("input.xlsx", workbook)), ImportTypeExcel, output},
    };
    std::size_t handles = 0;
    std::size_t bytes = 0;
    for (int round = 0; round < kRounds; ++round) {
        if (round == kExcelEach + 1) {  // by then the system has what it keeps
            handles = CountHandles();
            bytes = CountBytes();
        }
        const LoadedLibrary library;
        const Files& files = tables[round % kExcelEach == 0 ? 1 : 0];
        CallForCpp(library, files);
        CallForC(library, files);
    }
    EXPECT_GT(handles, 0U);
    EXPECT_EQ(CountHandles(), handles);
    constexpr std::size_t kMostForARound = 20;
    EXPECT_LT(CountBytes(), bytes + kMostForARound * kRounds);
    EXPECT_EQ(GetModuleHandleW(L"xls2tki.dll"), nullptr);
    EXPECT_TRUE(folder.Read("output").ends_with("</TAMRISKIMPORT>\r\n"));
}

}  // namespace
