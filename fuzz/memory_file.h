// What all targets need: an input as a file, and a way to say that a promise is broken.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace NFuzz {

inline std::string_view Bytes(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// The bytes as UTF-16; an odd one at the end is left out.
inline std::u16string Utf16(const std::uint8_t* data, std::size_t size) {
    std::u16string text(size / sizeof(char16_t), u'\0');
    if (!text.empty()) std::memcpy(text.data(), data, text.size() * sizeof(char16_t));
    return text;
}

// A file that the system keeps in memory.
class MemoryFile {
  public:
    explicit MemoryFile(std::string_view bytes);
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile();

    [[nodiscard]] std::u16string Path() const;

  private:
    int descriptor_;
};

// Ends the process, so that the input is kept, where `holds` is false.
void Require(bool holds, const char* promise);

}  // namespace NFuzz
