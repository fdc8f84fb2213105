#include "workbook/utf16.h"

#include <cstdint>
#include <cstring>

namespace NWorkbook {

namespace {

constexpr std::size_t kStride = 8;

bool IsAscii(const char* bytes) {
    std::uint64_t all = 0;
    std::memcpy(&all, bytes, kStride);
    return (all & 0x8080'8080'8080'8080U) == 0;
}

std::size_t LengthOf(unsigned char first) {
    if (first < 0xC0) return 1;
    if (first < 0xE0) return 2;
    return first < 0xF0 ? 3 : 4;
}

}  // namespace

char16_t* Utf8ToUtf16(std::string_view text, char16_t* out) {
    const char* next = text.data();
    const char* const end = next + text.size();
    while (next != end) {
        while (static_cast<std::size_t>(end - next) >= kStride && IsAscii(next)) {
            for (std::size_t index = 0; index < kStride; ++index)
                out[index] = static_cast<unsigned char>(next[index]);
            next += kStride;
            out += kStride;
        }
        if (next == end) break;
        const auto first = static_cast<unsigned char>(*next++);
        std::size_t trailing = LengthOf(first) - 1;
        char32_t character = trailing == 0 ? first : first & (0x3FU >> trailing);
        for (; trailing > 0 && next != end; --trailing) {
            character = character << 6 | (static_cast<unsigned char>(*next++) & 0x3FU);
        }
        if (character < 0x10000) {
            *out++ = static_cast<char16_t>(character);
        } else {
            *out++ = static_cast<char16_t>(0xD7C0 + (character >> 10));
            *out++ = static_cast<char16_t>(0xDC00 + (character & 0x3FF));
        }
    }
    return out;
}

std::u16string ToUtf16(std::string_view text) {
    std::u16string units(text.size(), u'\0');
    units.resize(static_cast<std::size_t>(Utf8ToUtf16(text, units.data()) - units.data()));
    return units;
}

}  // namespace NWorkbook
