#include "platform/registry.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/files.h"
#include "platform/linux/paths.h"
#include "platform/linux/reg_file.h"

namespace NPlatform {

namespace {

constexpr std::uintmax_t kLargestFile = std::uintmax_t{1} << 24;

constexpr std::u16string_view kOwnRegistry =
    u"REGEDIT4\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\Excel.Application\\CurVer]\n"
    "@=\"Excel.Application.14\"\n";

TextBuffer ReadRegistry() {
    TextBuffer text;
    const char* const path = std::getenv("XLS2TKI_REGISTRY");
    if (path == nullptr || *path == '\0') {
        text.Append(kOwnRegistry);
        return text;
    }
    std::error_code error;
    if (std::filesystem::file_size(path, error) > kLargestFile || error) return text;
    if (ReadTextFile(PathFromBytes(path), TextEncoding::Utf8, text) != TextFileResult::Read) text.Truncate(0);
    return text;
}

}  // namespace

RegistryResult RegistryKey::Open(std::u16string_view path) {
    Close();
    const TextBuffer text = ReadRegistry();
    std::optional<OpenRegistryKey> found =
        FindInRegFile(text.View(), std::u16string(u"HKEY_LOCAL_MACHINE\\").append(path));
    if (!found) return RegistryResult::Failed;
    if (found->isDenied) return RegistryResult::AccessDenied;
    key_ = new OpenRegistryKey(std::move(*found));
    return RegistryResult::Done;
}

RegistryResult RegistryKey::Read(std::u16string_view name, std::span<std::byte> buffer, std::uint32_t& type,
                                 std::size_t& size) const {
    const RegistryValue* const value = key_ == nullptr ? nullptr : key_->Find(name);
    if (value == nullptr) return RegistryResult::Failed;
    if (value->isDenied) return RegistryResult::AccessDenied;
    if (value->data.size() > buffer.size()) return RegistryResult::Failed;
    std::copy(value->data.begin(), value->data.end(), buffer.begin());
    type = value->type;
    size = value->data.size();
    return RegistryResult::Done;
}

void RegistryKey::Close() noexcept {
    delete key_;
    key_ = nullptr;
}

}  // namespace NPlatform
