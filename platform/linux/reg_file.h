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
    bool isDenied;
};

struct FoundRegistryKey {
    bool isDenied = false;
    std::optional<RegistryValue> value;  // none: the key has no such value
};

// The key at this path, its root included, and its value of this name ("" is the default value), after all
// lines of the file. Lines end with a line feed.
std::optional<FoundRegistryKey> FindInRegFile(std::u16string_view text, std::u16string_view path,
                                              std::u16string_view valueName);

}  // namespace NPlatform
