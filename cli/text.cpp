#include "cli/text.h"

#include <cstdint>
#include <cstring>

#include "platform/unseen.h"
#include "platform/utf8.h"

namespace NCli {

using NPlatform::IsUnseen;
using NPlatform::Utf8Sequence;
using NXls2Tki::WideChar;
using NXls2Tki::WideString;

namespace {

Utf8Sequence ReadSequence(std::string_view bytes) {
    return NPlatform::DecodeUtf8(bytes.data(), bytes.data() + bytes.size());
}

// Lends each character with its bytes, U+FFFD with bytes that are not UTF-8.
template <typename Use>
void ForEachCharacter(std::string_view text, Use use) {
    while (!text.empty()) {
        const Utf8Sequence sequence = ReadSequence(text);
        use(text.substr(0, sequence.length), sequence.character);
        text.remove_prefix(sequence.length);
    }
}

void AppendUtf16(WideString& text, char32_t character) {
    char16_t units[2];
    text.append(units, NPlatform::EncodeUtf16(character, units));
}

void AppendUtf8(std::string& text, char32_t character) {
    char bytes[4];
    text.append(bytes, NPlatform::EncodeUtf8(character, bytes));
}

bool IsAscii(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

const char* SkipAscii(const char* at, const char* end) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080;
    for (std::uint64_t word = 0; at + sizeof word <= end; at += sizeof word) {
        std::memcpy(&word, at, sizeof word);
        if ((word & kHighBits) != 0) break;
    }
    while (at < end && IsAscii(*at)) ++at;
    return at;
}

bool IsTrail(char byte) { return (byte & 0xC0) == 0x80; }
bool IsBetween(char byte, unsigned lowest, unsigned highest) {
    return static_cast<unsigned char>(byte) - lowest <= highest - lowest;
}

// Those characters of two and three bytes that need no closer look: most there are.
const char* SkipPlain(const char* at, const char* end) {
    while (end - at >= 2 && IsBetween(at[0], 0xC2, 0xDF) && IsTrail(at[1])) at += 2;
    while (end - at >= 3 && IsBetween(at[0], 0xE1, 0xEC) && IsTrail(at[1]) && IsTrail(at[2])) at += 3;
    return at;
}

bool IsHigh(char32_t unit) { return (unit & 0xFC00) == 0xD800; }
bool IsLow(char32_t unit) { return (unit & 0xFC00) == 0xDC00; }

}  // namespace

DecodedText DecodeUtf8(std::string_view bytes) {
    DecodedText decoded{{}, true};
    while (!bytes.empty()) {
        const Utf8Sequence sequence = ReadSequence(bytes);
        if (sequence.wellFormed) {
            AppendUtf16(decoded.text, sequence.character);
        } else {
            decoded.isUtf8 = false;
            for (const char byte : bytes.substr(0, sequence.length))
                decoded.text.push_back(static_cast<WideChar>(0xDC00 + static_cast<unsigned char>(byte)));
        }
        bytes.remove_prefix(sequence.length);
    }
    return decoded;
}

Utf8Run MeasureUtf8(std::string_view bytes) {
    const char* const end = bytes.data() + bytes.size();
    const char* at = SkipAscii(bytes.data(), end);
    const bool isAscii = at == end;
    while (at < end) {
        const char* const begin = at;
        at = SkipPlain(at, end);
        if (at < end && IsAscii(*at)) at = SkipAscii(at, end);
        if (at > begin) continue;
        const Utf8Sequence sequence = ReadSequence({at, end});
        if (!sequence.wellFormed) break;
        at += sequence.length;
    }
    return {static_cast<std::size_t>(at - bytes.data()), isAscii};
}

std::string EncodeUtf8(std::basic_string_view<WideChar> text) {
    std::string bytes;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char32_t unit = text[index];
        const char32_t next = index + 1 < text.size() ? text[index + 1] : 0;
        if (IsHigh(unit) && IsLow(next)) {
            AppendUtf8(bytes, 0x10000 + ((unit & 0x3FF) << 10 | (next & 0x3FF)));
            ++index;
        } else if (unit >= 0xDC80 && unit <= 0xDCFF) {
            bytes += static_cast<char>(unit & 0xFF);
        } else {
            AppendUtf8(bytes, IsHigh(unit) || IsLow(unit) ? 0xFFFD : unit);
        }
    }
    return bytes;
}

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& character : lower) {
        if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
    }
    return lower;
}

std::string ShownName(std::basic_string_view<WideChar> name, std::size_t longest) {
    std::basic_string_view<WideChar> begin = name.substr(0, longest);
    const bool isCut = begin.size() < name.size();
    if (isCut && !begin.empty() && IsHigh(begin.back())) begin.remove_suffix(1);
    std::string shown;
    ForEachCharacter(EncodeUtf8(begin), [&shown](std::string_view bytes, char32_t character) {
        shown += IsUnseen(character) ? "?" : bytes;
    });
    return shown + (isCut ? "..." : "");
}

void Show(std::string_view text, std::FILE* stream) {
    const char* begin = text.data();  // of what is still to be written
    const auto writeTo = [&begin, stream](const char* end) {
        std::fwrite(begin, 1, static_cast<std::size_t>(end - begin), stream);
    };
    ForEachCharacter(text, [&](std::string_view bytes, char32_t character) {
        if (!IsUnseen(character) || character == '\n' || character == '\t') return;
        writeTo(bytes.data());
        std::fputc('?', stream);
        begin = bytes.data() + bytes.size();
    });
    writeTo(text.data() + text.size());
}

std::string EscapeUnseen(std::string_view json) {
    std::string escaped;
    ForEachCharacter(json, [&escaped](std::string_view bytes, char32_t character) {
        if (!IsUnseen(character)) {
            escaped += bytes;
            return;
        }
        WideString units;
        AppendUtf16(units, character);
        for (const WideChar unit : units) {
            char escape[7];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
            escaped += escape;
        }
    });
    return escaped;
}

}  // namespace NCli
