#include "cli/text.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "platform/unseen.h"

namespace NCli {

using NPlatform::IsUnseen;
using NXls2Tki::WideChar;
using NXls2Tki::WideString;

namespace {

struct Sequence {
    char32_t character;
    std::size_t length;  // 0: the bytes are not UTF-8
};

Sequence ReadSequence(std::string_view bytes) {
    constexpr char32_t kLowest[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(bytes[0]);
    const auto length = static_cast<std::size_t>(std::countl_one(lead));
    if (length == 0) return {lead, 1};
    if (length == 1 || length > 4 || length > bytes.size()) return {0, 0};
    char32_t character = lead & (0x7FU >> length);
    for (std::size_t index = 1; index < length; ++index) {
        const auto byte = static_cast<unsigned char>(bytes[index]);
        if ((byte & 0xC0) != 0x80) return {0, 0};
        character = character << 6 | (byte & 0x3FU);
    }
    const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < kLowest[length] || character > 0x10FFFF || isSurrogate) return {0, 0};
    return {character, length};
}

// Lends each character with its bytes, U+FFFD with a byte that is not part of UTF-8.
template <typename Use>
void ForEachCharacter(std::string_view text, Use use) {
    while (!text.empty()) {
        const Sequence sequence = ReadSequence(text);
        const std::size_t size = std::max<std::size_t>(sequence.length, 1);
        use(text.substr(0, size), sequence.length == 0 ? 0xFFFD : sequence.character);
        text.remove_prefix(size);
    }
}

void AppendUtf16(WideString& text, char32_t character) {
    if (character < 0x10000) {
        text.push_back(static_cast<WideChar>(character));
        return;
    }
    text.push_back(static_cast<WideChar>(0xD7C0 + (character >> 10)));
    text.push_back(static_cast<WideChar>(0xDC00 + (character & 0x3FF)));
}

void AppendUtf8(std::string& bytes, char32_t character) {
    const auto trail = [character](int shift) {
        return static_cast<char>(0x80 | (character >> shift & 0x3F));
    };
    if (character < 0x80) {
        bytes += static_cast<char>(character);
    } else if (character < 0x800) {
        bytes += {static_cast<char>(0xC0 | character >> 6), trail(0)};
    } else if (character < 0x10000) {
        bytes += {static_cast<char>(0xE0 | character >> 12), trail(6), trail(0)};
    } else {
        bytes += {static_cast<char>(0xF0 | character >> 18), trail(12), trail(6), trail(0)};
    }
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
        const Sequence sequence = ReadSequence(bytes);
        if (sequence.length == 0) {
            decoded.isUtf8 = false;
            decoded.text.push_back(static_cast<WideChar>(0xDC00 + static_cast<unsigned char>(bytes[0])));
            bytes.remove_prefix(1);
        } else {
            AppendUtf16(decoded.text, sequence.character);
            bytes.remove_prefix(sequence.length);
        }
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
        if (at == begin) at += ReadSequence({at, end}).length;
        if (at == begin) break;
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
