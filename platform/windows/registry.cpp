#include "platform/registry.h"

#include <windows.h>

#include "platform/windows/wide.h"

namespace NPlatform {

static RegistryResult ResultOf(LSTATUS status, RegistryResult denied) {
    if (status == ERROR_SUCCESS) return RegistryResult::Done;
    return status == ERROR_ACCESS_DENIED ? denied : RegistryResult::Failed;
}

RegistryResult ReadRegistry(std::u16string_view path, std::span<std::byte> buffer, std::uint32_t& type,
                            std::size_t& size) {
    HKEY key = nullptr;
    const LSTATUS opened = RegOpenKeyExW(HKEY_LOCAL_MACHINE, ToWide(path).c_str(), 0, KEY_READ, &key);
    if (opened != ERROR_SUCCESS) return ResultOf(opened, RegistryResult::KeyDenied);
    DWORD valueType = 0;
    auto valueSize = static_cast<DWORD>(buffer.size());
    const LSTATUS read =
        RegQueryValueExW(key, L"", nullptr, &valueType, reinterpret_cast<BYTE*>(buffer.data()), &valueSize);
    RegCloseKey(key);
    if (read == ERROR_SUCCESS) {
        type = valueType;
        size = valueSize;
    }
    return ResultOf(read, RegistryResult::ValueDenied);
}

}  // namespace NPlatform
