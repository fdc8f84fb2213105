#include "cli/windows/names.h"

#include <windows.h>
// Behind it:
#include <shlwapi.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string_view>

#include "cli/failure.h"
#include "cli/files.h"
#include "cli/system.h"
#include "cli/text.h"

namespace NCli {

namespace fs = std::filesystem;

namespace {

constexpr wchar_t kSeparators[] = L"\\/";

bool IsSameName(std::wstring_view name, std::wstring_view other) {
    return CompareStringOrdinal(name.data(), static_cast<int>(name.size()), other.data(),
                                static_cast<int>(other.size()), TRUE) == CSTR_EQUAL;
}

// Whatever the extension. The superscript digits count, too.
bool IsDevice(std::wstring_view name) {
    static constexpr std::wstring_view kDevices[] = {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"};
    static constexpr std::wstring_view kDigits = L"123456789\u00B9\u00B2\u00B3";
    name = name.substr(0, name.find(L'.'));
    name = name.substr(0, name.find_last_not_of(L' ') + 1);
    const bool hasNumber = name.size() == 4 && kDigits.find(name[3]) != std::wstring_view::npos;
    if (hasNumber && (IsSameName(name.substr(0, 3), L"COM") || IsSameName(name.substr(0, 3), L"LPT")))
        return true;
    return std::any_of(std::begin(kDevices), std::end(kDevices),
                       [name](std::wstring_view device) { return IsSameName(name, device); });
}

std::string Quoted(std::wstring_view text) { return '"' + EncodeUtf8(text) + '"'; }

// Of a file's or a folder's own name.
std::string FaultOfPart(std::wstring_view name) {
    static constexpr std::wstring_view kForbidden = L"<>:\"|?*";
    for (const wchar_t& unit : name) {
        if (unit < L' ') return "a file name cannot contain control characters";
        if (kForbidden.find(unit) != std::wstring_view::npos)
            return "a file name cannot contain " + Quoted({&unit, 1});
    }
    return IsDevice(name) ? Quoted(name) + " is a device" : std::string();
}

// Behind the drive, and what may stand before it.
std::wstring_view WithoutDrive(std::wstring_view path) {
    if (path.starts_with(L"\\\\?\\") || path.starts_with(L"//?/")) path.remove_prefix(4);
    return path.substr(path.substr(0, 2).ends_with(L':') ? 2 : 0);
}

struct CloseSearch {
    void operator()(void* search) const {
        if (search != INVALID_HANDLE_VALUE) FindClose(search);
    }
};

}  // namespace

std::string ToArgument(const std::wstring& given) {
    std::string argument = EncodeUtf8(given);
    if (DecodeUtf8(argument).text == given) return argument;
    throw WrongUsage("The argument \"" + argument + "\" contains half a character.");
}

// The device that takes and forgets everything is meant.
std::string FaultOfName(const fs::path& file) {
    std::wstring_view rest = file.native();
    if (IsSameName(rest, L"NUL")) return {};
    rest = WithoutDrive(rest);
    std::wstring_view name;
    for (bool isLast = false; !isLast;) {
        const std::size_t end = rest.find_first_of(kSeparators);
        isLast = end == std::wstring_view::npos;
        name = rest.substr(0, end);
        rest.remove_prefix(isLast ? rest.size() : end + 1);
        if (std::string fault = FaultOfPart(name); !fault.empty()) return fault;
    }
    if (name.empty() || name == L"." || name == L"..") return "it is the name of a folder";
    return name.ends_with(L'.') || name.ends_with(L' ') ? "a file name cannot end with a dot or a blank" : "";
}

// Among others, the system matches files by short names that nobody sees. Hidden files are left out: Excel
// keeps some beside open workbooks.
std::vector<std::string> FilesOfPattern(const std::string& pattern) {
    const std::wstring given = DecodeUtf8(pattern).text;
    const std::size_t begin = given.find_last_of(L"\\/:") + 1;
    if (given.find_first_of(L"*?", begin) == std::wstring::npos) return {pattern};
    constexpr DWORD kOthers = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN;
    WIN32_FIND_DATAW found{};
    const std::unique_ptr<void, CloseSearch> search(FindFirstFileW(ToSystemPath(given).c_str(), &found));
    std::vector<std::string> files;
    for (bool isFound = search.get() != INVALID_HANDLE_VALUE; isFound;
         isFound = FindNextFileW(search.get(), &found) != 0) {
        const bool isMeant = (found.dwFileAttributes & kOthers) == 0 &&
                             PathMatchSpecW(found.cFileName, given.c_str() + begin) != 0;
        if (isMeant) files.push_back(ToArgument(given.substr(0, begin) + found.cFileName));
    }
    if (files.empty()) throw WrongUsage("No file matches " + NameOf(given) + ".");
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace NCli
