// A host that loads the library when it needs it.
#include <gtest/gtest.h>
#include <windows.h>

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
    Function* Find(const char* decoratedName) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, decoratedName)));
    }

  private:
    HMODULE module_;
};

DWORD OpenHandles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

TEST(Windows, LoadsAndFreesTheLibraryAgainAndAgain) {
    using Convert = bool(const WideChar*, const WideChar*, VImportType, bool, WideChar, bool);
    const NTest::TempFolder folder;
    const WideString input = Wide(folder.Put("input", "DTC;Text\nP0123;x\n"));
    const WideString output = Wide(folder.Path("output"));
    DWORD handles = 0;
    for (int round = 0; round < 100; ++round) {
        if (round == 10) handles = OpenHandles();  // by then the system has what it keeps
        const LoadedLibrary library;
        EXPECT_STREQ(library.Find<const WideChar*()>("_ZN8NXls2Tki17GetLoggedMessagesEv")(), L"");
        EXPECT_TRUE(library.Find<bool(bool)>("_ZN8NXls2Tki10XlsInitOleEb")(true));
        const auto convert = library.Find<Convert>("_ZN8NXls2Tki14Xls2TkiConvertEPKwS1_NS_11VImportTypeEbwb");
        EXPECT_TRUE(convert(input.c_str(), output.c_str(), ImportTypeCSV, false, L';', false));
        EXPECT_FALSE(convert(input.c_str(), output.c_str(), ImportTypeODBC, false, L';', false));
    }
    EXPECT_EQ(OpenHandles(), handles);
    EXPECT_EQ(GetModuleHandleW(L"xls2tki.dll"), nullptr);
    EXPECT_TRUE(folder.Read("output").ends_with("</TAMRISKIMPORT>\r\n"));
}

}  // namespace
