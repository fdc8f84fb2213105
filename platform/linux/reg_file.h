// The text format in which registries are exported; see platform/registry.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace NPlatform {

struct RegistryValue {
    std::uint32_t type;
    std::vector<std::byte> data;
};

struct FoundRegistryKey {
    bool isDenied = false;
    bool isValueDenied = false;
    std::optional<RegistryValue> value;  // the default value; none: the key has none, or none of text
};

// The key at this path, its root included; nothing if the file has no such key. Lines end with a line feed.
std::optional<FoundRegistryKey> FindInRegFile(std::u16string_view text, std::u16string_view path);

}  // namespace NPlatform
