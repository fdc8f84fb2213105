#include <windows.h>

#include <algorithm>
#include <limits>

#include "platform/database.h"
#include "platform/driver_list.h"
#include "platform/windows/wide.h"

namespace NPlatform {

namespace {

using ListFunction = BOOL(WINAPI*)(LPWSTR list, WORD capacity, WORD* size);

std::wstring SystemFolder() {
    wchar_t folder[MAX_PATH] = {};
    return GetSystemDirectoryW(folder, MAX_PATH) < MAX_PATH ? folder : L"";
}

// Loaded at the first use from the system's own folder, and never freed. Null: there is no such library.
HMODULE Installer() {
    static const HMODULE library = LoadLibraryW((SystemFolder() + L"\\odbccp32.dll").c_str());
    return library;
}

std::vector<std::u16string> ListDrivers(std::size_t capacity) {
    const HMODULE installer = Installer();
    if (installer == nullptr) return {};
    const auto listDrivers = reinterpret_cast<ListFunction>(
        reinterpret_cast<void*>(GetProcAddress(installer, "SQLGetInstalledDriversW")));
    const std::size_t size = std::min<std::size_t>(capacity, std::numeric_limits<WORD>::max());
    std::wstring list(size, L'\0');
    WORD ignored = 0;
    if (listDrivers == nullptr || listDrivers(list.data(), static_cast<WORD>(size), &ignored) == 0) return {};
    std::vector<std::u16string> descriptions;
    for (const std::wstring& description : TextsIn(list)) descriptions.push_back(FromWide(description));
    return descriptions;
}

}  // namespace

constinit Replaceable<std::vector<std::u16string>(std::size_t)> InstalledDrivers{ListDrivers};

}  // namespace NPlatform
