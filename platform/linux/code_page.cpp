#include "platform/code_page.h"

#include "platform/utf8.h"

namespace NPlatform {

namespace {

constexpr std::size_t kStride = 32;

// A fixed number of turns and no way out of the loop: the compiler makes vector instructions of it.
bool IsAscii(const char16_t* units) {
    char16_t all = 0;
    for (std::size_t index = 0; index < kStride; ++index) all = static_cast<char16_t>(all | units[index]);
    return all < 0x80;
}

// Copies the ASCII characters at the front, most of them many at a time.
std::size_t CopyAscii(const char16_t* units, std::size_t count, char* out) {
    std::size_t done = 0;
    while (count - done >= kStride && IsAscii(units + done)) {
        for (std::size_t index = 0; index < kStride; ++index) {
            out[done + index] = static_cast<char>(units[done + index]);
        }
        done += kStride;
    }
    while (done < count && units[done] < 0x80) {
        out[done] = static_cast<char>(units[done]);
        ++done;
    }
    return done;
}

struct Utf16Sequence {
    char32_t character;
    std::size_t length;
};

Utf16Sequence DecodeUtf16(const char16_t* units, std::size_t count) {
    const char16_t first = units[0];
    if ((first & 0xF800) != 0xD800) return {first, 1};
    const bool isPair = first < 0xDC00 && count > 1 && (units[1] & 0xFC00) == 0xDC00;
    if (!isPair) return {kReplacementCharacter, 1};
    return {0x10000 + ((first & 0x3FFU) << 10) + (units[1] & 0x3FFU), 2};
}

}  // namespace

std::size_t Utf16ToCodePage(std::uint32_t codePage, const char16_t* units, std::size_t count, char* out,
                            std::size_t capacity) {
    if (codePage != kUtf8CodePage) return 0;
    char* const begin = out;
    char* const end = out + capacity;
    while (count > 0) {
        const auto room = static_cast<std::size_t>(end - out);
        const std::size_t ascii = CopyAscii(units, count < room ? count : room, out);
        out += ascii;
        units += ascii;
        count -= ascii;
        if (count == 0) break;
        char bytes[4];
        const Utf16Sequence sequence = DecodeUtf16(units, count);
        const char* const bytesEnd = EncodeUtf8(sequence.character, bytes);
        if (bytesEnd - bytes > end - out) return 0;
        for (const char* byte = bytes; byte != bytesEnd; ++byte) *out++ = *byte;
        units += sequence.length;
        count -= sequence.length;
    }
    return static_cast<std::size_t>(out - begin);
}

}  // namespace NPlatform
