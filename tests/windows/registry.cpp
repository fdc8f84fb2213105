// Writes what the file says into the real registry, as the registry editor would.
#include "tests/registry.h"

#include <windows.h>
// Behind it:
#include <aclapi.h>

#include <string>

#include "platform/linux/reg_file.h"

namespace NTest {

namespace {

constexpr wchar_t kProgram[] = L"SOFTWARE\\Classes\\Excel.Application";
constexpr wchar_t kKey[] = L"SOFTWARE\\Classes\\Excel.Application\\CurVer";

std::optional<NPlatform::FoundRegistryKey> Find(std::string_view file) {
    return NPlatform::FindInRegFile(std::u16string(file.begin(), file.end()),
                                    u"HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\Excel.Application\\CurVer");
}

bool deniesValues = false;

// The system has rights for keys alone. That one for the value is missing is played in front of it.
LSTATUS WINAPI ReadUnlessDenied(HKEY key, LPCWSTR name, DWORD* reserved, DWORD* type, BYTE* data,
                                DWORD* size) {
    if (deniesValues) return ERROR_ACCESS_DENIED;
    static const auto read = reinterpret_cast<decltype(&RegQueryValueExW)>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"advapi32.dll"), "RegQueryValueExW")));
    return read(key, name, reserved, type, data, size);
}

// Nobody may read the key, its owner included, who can still delete it.
void Deny(HKEY key) {
    EXPLICIT_ACCESSW everybody{};
    wchar_t name[] = L"EVERYONE";
    BuildExplicitAccessWithNameW(&everybody, name, KEY_READ, DENY_ACCESS, NO_INHERITANCE);
    PACL list = nullptr;
    SetEntriesInAclW(1, &everybody, nullptr, &list);
    SetSecurityInfo(key, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, list, nullptr);
    LocalFree(list);
}

}  // namespace

// Where calls look up the system's function; the linker takes it in the place of the one that it would make.
extern "C" {
constinit decltype(&RegQueryValueExW) __imp_RegQueryValueExW = ReadUnlessDenied;
}

Registry::Registry(std::string_view file) {
    const auto found = Find(file);
    if (!found) return;
    HKEY key = nullptr;
    RegCreateKeyExW(HKEY_LOCAL_MACHINE, kKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    if (found->value) {
        const auto& [type, data] = *found->value;
        RegSetValueExW(key, nullptr, 0, type, reinterpret_cast<const BYTE*>(data.data()),
                       static_cast<DWORD>(data.size()));
        deniesValues = found->isValueDenied;
    }
    if (found->isDenied) Deny(key);
    RegCloseKey(key);
}

Registry::~Registry() {
    deniesValues = false;
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kKey);
    RegDeleteKeyW(HKEY_LOCAL_MACHINE, kProgram);
}

}  // namespace NTest
