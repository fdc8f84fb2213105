#include "platform/registry.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "platform/files.h"
#include "platform/linux/paths.h"
#include "platform/linux/reg_file.h"

namespace NPlatform {

// A value is looked for in the text when it is read: a malicious file can have millions.
struct OpenRegistryKey {
    TextBuffer text;
    std::u16string path;
};

namespace {

constexpr std::uintmax_t kLargestFile = std::uintmax_t{1} << 24;

constexpr std::u16string_view kOwnRegistry =
    u"REGEDIT4\n"
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\Excel.Application\\CurVer]\n"
    "@=\"Excel.Application.14\"\n";

TextBuffer ReadRegistry() {
    TextBuffer text;
    const char* const path = secure_getenv("XLS2TKI_REGISTRY");
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
    auto key = std::make_unique<OpenRegistryKey>();
    key->text = ReadRegistry();
    key->path.assign(u"HKEY_LOCAL_MACHINE\\").append(path);
    const std::optional<FoundRegistryKey> found = FindInRegFile(key->text.View(), key->path, u"");
    if (!found) return RegistryResult::Failed;
    if (found->isDenied) return RegistryResult::AccessDenied;
    key_ = key.release();
    return RegistryResult::Done;
}

RegistryResult RegistryKey::Read(std::u16string_view name, std::span<std::byte> buffer, std::uint32_t& type,
                                 std::size_t& size) const {
    if (key_ == nullptr) return RegistryResult::Failed;
    const std::optional<FoundRegistryKey> found = FindInRegFile(key_->text.View(), key_->path, name);
    if (!found || !found->value) return RegistryResult::Failed;
    const RegistryValue& value = *found->value;
    if (value.isDenied) return RegistryResult::AccessDenied;
    if (value.data.size() > buffer.size()) return RegistryResult::Failed;
    std::copy(value.data.begin(), value.data.end(), buffer.begin());
    type = value.type;
    size = value.data.size();
    return RegistryResult::Done;
}

void RegistryKey::Close() noexcept {
    delete key_;
    key_ = nullptr;
}

}  // namespace NPlatform
