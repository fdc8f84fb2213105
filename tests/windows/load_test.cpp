// A host that loads the library when it needs it. The system has an Excel to start.
#include <gtest/gtest.h>
#include <windows.h>
// Behind it:
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
using Full = bool(Text, Text, Text, VImportType, bool, WideChar, Names, Names, Names, Text, Text, bool);

#define CONVERT "_ZN8NXls2Tki14Xls2TkiConvertEPKwS1_"
#define SET "RKSt3setINSt7__cxx1112basic_stringIwSt11char_traitsIwESaIwEEESt4lessIS9_ESaIS9_EE"

// Excel takes seconds to start. To version 11 the library refuses to list worksheets without starting it.
void SetExcelVersion(const std::wstring& number) {
    const std::wstring name = L"Excel.Application." + number;
    EXPECT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Classes\\Excel.Application\\CurVer", nullptr,
                              REG_SZ, name.c_str(), static_cast<DWORD>((name.size() + 1) * sizeof(wchar_t))),
              0);
}

void CallForCpp(const LoadedLibrary& library, Text input, VImportType type, Text output) {
    const WideStringSet set = {L"Text"};
    EXPECT_NE(library.Find<Text()>("_ZN8NXls2Tki17GetLoggedMessagesEv")(), nullptr);
    EXPECT_TRUE(library.Find<bool(bool)>("_ZN8NXls2Tki10XlsInitOleEb")(true));
    const auto convert =
        library.Find<bool(Text, Text, VImportType, bool, WideChar, bool)>(CONVERT "NS_11VImportTypeEbwb");
    EXPECT_TRUE(convert(input, output, type, false, L';', false));
    EXPECT_FALSE(convert(input, output, ImportTypeODBC, false, L';', false));
    const auto withTwo = library.Find<bool(Text, Text, VImportType, bool, WideChar, Names, Names, bool)>(
        CONVERT "NS_11VImportTypeEbw" SET "SF_b");
    EXPECT_TRUE(withTwo(input, output, type, false, L';', set, set, false));
    const auto withThree =
        library.Find<bool(Text, Text, VImportType, bool, WideChar, Names, Names, Names, Text, Text, bool)>(
            CONVERT "NS_11VImportTypeEbw" SET "SF_SF_S1_S1_b");
    EXPECT_TRUE(withThree(input, output, type, false, L';', set, set, set, L"V", L"D", true));
    const auto full = library.Find<Full>(CONVERT "S1_NS_11VImportTypeEbw" SET "SF_SF_S1_S1_b");
    EXPECT_TRUE(full(input, L"J1939", output, type, false, L';', set, set, set, L"", L"", true));
    std::vector<WideString> worksheets;
    const auto list = library.Find<bool(Text, std::vector<WideString>&)>(
        "_ZN8NXls2Tki18GetExcelWorksheetsEPKwRSt6vectorINSt7__cxx1112basic_stringIwSt11char_traitsIwESaIwEEE"
        "SaIS8_EE");
    EXPECT_EQ(list(input, worksheets), type == ImportTypeExcel);
    EXPECT_EQ(worksheets.size(), type == ImportTypeExcel ? 3U : 0U);
}

void CallForC(const LoadedLibrary& library, Text input, VImportType type, Text output) {
    EXPECT_TRUE(library.Find<decltype(xls2tki_init_ole)>("xls2tki_init_ole")(true));
    const Xls2TkiConversion conversion = {
        sizeof conversion, input,   nullptr, output,  type,   L';', false, false, {}, {}, {},
        nullptr,           nullptr, true,    nullptr, nullptr};
    EXPECT_TRUE(library.Find<decltype(xls2tki_convert)>("xls2tki_convert")(&conversion));
    Xls2TkiFacts facts{};
    facts.size = sizeof facts;
    EXPECT_TRUE(library.Find<decltype(xls2tki_facts)>("xls2tki_facts")(&facts) && facts.written);
    EXPECT_TRUE(library.Find<decltype(xls2tki_findings_complete)>("xls2tki_findings_complete")());
    Xls2TkiFinding finding{};
    finding.size = sizeof finding;
    EXPECT_FALSE(library.Find<decltype(xls2tki_finding)>("xls2tki_finding")(0, &finding));
    Xls2TkiFindingCount count{};
    count.size = sizeof count;
    EXPECT_TRUE(library.Find<decltype(xls2tki_finding_count)>("xls2tki_finding_count")(0, &count));
    EXPECT_STRNE(library.Find<decltype(xls2tki_message)>("xls2tki_message")(), L"");
    Xls2TkiNames names{};
    const auto list = library.Find<decltype(xls2tki_list_worksheets)>("xls2tki_list_worksheets");
    EXPECT_EQ(list(input, &names), type == ImportTypeExcel);
    EXPECT_EQ(names.count, type == ImportTypeExcel ? 3U : 0U);
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
    constexpr int kExcelEach = 6;
    constexpr int kRounds = 3 * kExcelEach + 1;
    const NTest::TempFolder folder;
    const WideString output = Wide(folder.Path("output"));
    const WideString table = Wide(folder.Put("input.csv", "DTC;Text\nP0123;x\n"));
    const WideString workbook =
        Wide(folder.Put("input.xlsx", NTest::ReadBytes(XLS2TKI_TEST_DATA "/../../examples/powertrain.xlsx")));
    std::size_t bytes = 0;
    for (int round = 0; round < kRounds; ++round) {
        if (round == kExcelEach + 1) bytes = CountBytes();  // by then the system has what it keeps
        const LoadedLibrary library;
        const bool usesExcel = round % kExcelEach == 0;
        const WideString& input = usesExcel ? workbook : table;
        SetExcelVersion(usesExcel ? L"14" : L"11");
        for (const auto call : {CallForCpp, CallForC}) {
            call(library, input.c_str(), usesExcel ? ImportTypeExcel : ImportTypeCSV, output.c_str());
        }
    }
    EXPECT_LT(CountBytes(), bytes + 500);
    EXPECT_NE(GetModuleHandleW(L"xls2tki.dll"), nullptr);  // it has stayed
    EXPECT_TRUE(folder.Read("output").ends_with("</TAMRISKIMPORT>\r\n"));
}

}  // namespace
