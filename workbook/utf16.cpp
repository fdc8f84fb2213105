#include "workbook/utf16.h"

#include <cstdint>
#include <cstring>

#include "platform/utf8.h"

namespace NWorkbook {

namespace {

constexpr std::size_t kStride = 8;

bool IsAscii(const char* bytes) {
    std::uint64_t all = 0;
    std::memcpy(&all, bytes, kStride);
    return (all & 0x8080'8080'8080'8080U) == 0;
}

}  // namespace

char16_t* Utf8ToUtf16(std::string_view text, char16_t* out) {
    const char* next = text.data();
    const char* const end = next + text.size();
    while (true) {
        while (static_cast<std::size_t>(end - next) >= kStride && IsAscii(next)) {
            for (std::size_t index = 0; index < kStride; ++index)
                out[index] = static_cast<unsigned char>(next[index]);
            next += kStride;
            out += kStride;
        }
        for (; next != end && static_cast<unsigned char>(*next) < 0x80; ++next) {
            *out++ = static_cast<unsigned char>(*next);
        }
        if (next == end) return out;
        const NPlatform::Utf8Sequence sequence = NPlatform::DecodeUtf8(next, end);
        out = NPlatform::EncodeUtf16(sequence.character, out);
        next += sequence.length;
    }
}

std::u16string ToUtf16(std::string_view text) {
    std::u16string units(text.size(), u'\0');
    units.resize(static_cast<std::size_t>(Utf8ToUtf16(text, units.data()) - units.data()));
    return units;
}

}  // namespace NWorkbook
