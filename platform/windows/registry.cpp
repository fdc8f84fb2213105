#include "platform/registry.h"

#include <windows.h>

#include "platform/windows/wide.h"

namespace NPlatform {

namespace {

RegistryResult ResultOf(LSTATUS status) {
    if (status == ERROR_SUCCESS) return RegistryResult::Done;
    return status == ERROR_ACCESS_DENIED ? RegistryResult::AccessDenied : RegistryResult::Failed;
}

HKEY HandleOf(OpenRegistryKey* key) { return reinterpret_cast<HKEY>(key); }

}  // namespace

RegistryResult RegistryKey::Open(std::u16string_view path) {
    Close();
    HKEY opened = nullptr;
    const LSTATUS status = RegOpenKeyExW(HKEY_LOCAL_MACHINE, ToWide(path).c_str(), 0, KEY_READ, &opened);
    if (status == ERROR_SUCCESS) key_ = reinterpret_cast<OpenRegistryKey*>(opened);
    return ResultOf(status);
}

RegistryResult RegistryKey::Read(std::u16string_view name, std::span<std::byte> buffer, std::uint32_t& type,
                                 std::size_t& size) const {
    if (key_ == nullptr) return RegistryResult::Failed;
    DWORD valueType = 0;
    auto valueSize = static_cast<DWORD>(buffer.size());
    const LSTATUS status = RegQueryValueExW(HandleOf(key_), ToWide(name).c_str(), nullptr, &valueType,
                                            reinterpret_cast<BYTE*>(buffer.data()), &valueSize);
    if (status == ERROR_SUCCESS) {
        type = valueType;
        size = valueSize;
    }
    return ResultOf(status);
}

void RegistryKey::Close() noexcept {
    if (key_ != nullptr) RegCloseKey(HandleOf(key_));
    key_ = nullptr;
}

}  // namespace NPlatform
