#include "platform/registry.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
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

RegistryResult ReadRegistry(std::u16string_view path, std::span<std::byte> buffer, std::uint32_t& type,
                            std::size_t& size) {
    const TextBuffer text = ReadRegistry();
    const std::u16string root = u"HKEY_LOCAL_MACHINE\\";
    const std::optional<FoundRegistryKey> key = FindInRegFile(text.View(), root + std::u16string(path));
    if (!key) return RegistryResult::Failed;
    if (key->isDenied) return RegistryResult::KeyDenied;
    if (key->isValueDenied) return RegistryResult::ValueDenied;
    if (!key->value || key->value->data.size() > buffer.size()) return RegistryResult::Failed;
    std::copy(key->value->data.begin(), key->value->data.end(), buffer.begin());
    type = key->value->type;
    size = key->value->data.size();
    return RegistryResult::Done;
}

}  // namespace NPlatform
