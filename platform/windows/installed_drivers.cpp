#include <windows.h>

#include <algorithm>
#include <limits>

#include "platform/database.h"
#include "platform/driver_list.h"
#include "platform/windows/wide.h"

namespace NPlatform {

namespace {

using ListFunction = BOOL(WINAPI*)(LPWSTR list, WORD capacity, WORD* size);

// Loaded from the system's own folder at the first use. It stays loaded: nobody owns it. Null: there is none.
HMODULE Installer() {
    static HMODULE library = nullptr;
    if (library == nullptr) {
        library = LoadLibraryExW(L"odbccp32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    }
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
