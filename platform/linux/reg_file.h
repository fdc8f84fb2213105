// The text format in which registries are exported; see platform/registry.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace NPlatform {

struct RegistryValue {
    std::u16string name;  // empty: the key's default value
    std::uint32_t type;
    std::vector<std::byte> data;
    bool isDenied;
};

struct OpenRegistryKey {
    bool isDenied = false;
    std::vector<RegistryValue> values;

    // Null where there is no such value. As long as the values stay as they are.
    [[nodiscard]] const RegistryValue* Find(std::u16string_view name) const;
};

// The key at this path, its root included, after all lines of the file. Lines end with a line feed.
std::optional<OpenRegistryKey> FindInRegFile(std::u16string_view text, std::u16string_view path);

}  // namespace NPlatform
