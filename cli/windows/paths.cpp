// Paths by the system's own rules. The C++ library takes the name of a server for a folder's.
#include <windows.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "cli/system.h"
#include "cli/windows/handle.h"

namespace NCli {

namespace fs = std::filesystem;

namespace {

// In front of a path that the system takes as it is, and so at any length.
constexpr std::wstring_view kAsItIs = L"\\\\?\\";
constexpr std::wstring_view kOnServerAsItIs = L"\\\\?\\UNC\\";
constexpr std::wstring_view kOnServer = L"\\\\";
constexpr std::wstring_view kDevice = L"\\\\.\\";

// Asks the system for a path, which may be longer than one thinks. Empty where it fails.
template <typename Ask>
std::wstring AskForPath(Ask ask) {
    std::wstring path(MAX_PATH, L'\0');
    while (true) {
        const DWORD size = ask(path.data(), static_cast<DWORD>(path.size()));
        const bool fits = size < path.size();  // else it is the size that is needed
        path.resize(fits ? size : size + 1);   // the oldest Windows leaves the NUL out of the size
        if (fits) return path;
    }
}

// With links as they are; what is no path stays as it is.
std::wstring FullPath(const fs::path& path) {
    const std::wstring full = AskForPath([&path](wchar_t* buffer, DWORD size) {
        return GetFullPathNameW(path.c_str(), size, buffer, nullptr);
    });
    return full.empty() ? path.native() : full;
}

// Without links, short names and letters of shares. Empty for what is no file or folder.
std::wstring FinalPath(HANDLE file) {
    return AskForPath([file](wchar_t* buffer, DWORD size) {
        return GetFinalPathNameByHandleW(file, buffer, size, FILE_NAME_NORMALIZED | VOLUME_NAME_DOS);
    });
}

std::wstring WithoutPrefix(const std::wstring& path) {
    if (path.starts_with(kOnServerAsItIs)) {
        return std::wstring(kOnServer).append(path, kOnServerAsItIs.size());
    }
    return path.starts_with(kAsItIs) ? path.substr(kAsItIs.size()) : path;
}

// As far as the path is there. `rest` is what is missing.
std::wstring FinalPathOfBeginning(const std::wstring& full, std::wstring& rest) {
    for (std::size_t end = full.size(); end > kOnServer.size(); end = full.rfind(L'\\', end - 2) + 1) {
        const Handle there = OpenToAsk(full.substr(0, end));
        if (!there) continue;
        rest = full.substr(end);
        return FinalPath(there.get());
    }
    return {};
}

}  // namespace

// A folder's path may have 248 characters without more ado, a file's 12 more.
fs::path ToSystemPath(const fs::path& path) {
    constexpr std::size_t kLongest = 247;
    const std::wstring full = FullPath(path);
    if (full.size() <= kLongest || full.starts_with(kAsItIs) || full.starts_with(kDevice)) return full;
    const bool isOnServer = full.starts_with(kOnServer);
    return isOnServer ? std::wstring(kOnServerAsItIs).append(full, kOnServer.size())
                      : std::wstring(kAsItIs).append(full);
}

// Excel does not know the prefix.
fs::path ToExcelPath(const fs::path& path) { return WithoutPrefix(FullPath(path)); }

Handle OpenToAsk(const fs::path& path) {
    return OwnFile(CreateFileW(ToSystemPath(path).c_str(), FILE_READ_ATTRIBUTES, kShareWithEverybody, nullptr,
                               OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
}

fs::path PlaceOf(const fs::path& file) {
    const std::wstring full = FullPath(file);
    std::wstring rest;
    std::wstring place = FinalPathOfBeginning(full, rest);
    if (place.empty()) {
        place = full;
    } else if (!rest.empty()) {
        if (!place.ends_with(L'\\')) place += L'\\';
        place += rest;
    }
    place = WithoutPrefix(place);
    CharUpperBuffW(place.data(), static_cast<DWORD>(place.size()));
    return place;
}

std::string ToUriPath(const fs::path& path) {
    const bool isRelative = !path.has_root_name() && !path.has_root_directory();
    std::string bytes = ToBytes(isRelative ? path : ToExcelPath(path));
    std::replace(bytes.begin(), bytes.end(), '\\', '/');
    return isRelative || bytes.starts_with('/') ? bytes : std::string("/").append(bytes);
}

}  // namespace NCli
