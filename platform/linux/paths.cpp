#include "platform/linux/paths.h"

#include "platform/code_page.h"
#include "platform/utf8.h"

namespace NPlatform {

namespace {

bool IsEscapedByte(char16_t unit) { return unit >= 0xDC80 && unit <= 0xDCFF; }

bool IsHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }

void AppendUtf8(std::string& bytes, std::u16string_view text) {
    const std::size_t size = bytes.size();
    bytes.resize(size + 3 * text.size());
    bytes.resize(size + Utf16ToCodePage(kUtf8CodePage, text.data(), text.size(), bytes.data() + size,
                                        3 * text.size()));
}

}  // namespace

std::string PathToBytes(std::u16string_view path) {
    std::string bytes;
    std::size_t begin = 0;
    for (std::size_t index = 0; index < path.size(); ++index) {
        if (!IsEscapedByte(path[index]) || (index > 0 && IsHighSurrogate(path[index - 1]))) continue;
        AppendUtf8(bytes, path.substr(begin, index - begin));
        bytes.push_back(static_cast<char>(path[index] & 0xFF));
        begin = index + 1;
    }
    AppendUtf8(bytes, path.substr(begin));
    return bytes;
}

std::u16string PathFromBytes(std::string_view bytes) {
    std::u16string path;
    const char* const last = bytes.data() + bytes.size();
    for (const char* byte = bytes.data(); byte != last;) {
        const Utf8Sequence sequence = DecodeUtf8(byte, last);
        if (sequence.wellFormed) {
            char16_t units[2];
            path.append(units, EncodeUtf16(sequence.character, units));
            byte += sequence.length;
        } else {
            path.push_back(static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(*byte++)));
        }
    }
    return path;
}

}  // namespace NPlatform
