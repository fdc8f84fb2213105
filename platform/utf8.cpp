#include "platform/utf8.h"

namespace NPlatform {

namespace {

struct LeadByte {
    std::size_t length;           // of the whole sequence; 0: no sequence begins so
    unsigned char secondLowest;   // the second byte's range excludes overlong forms, surrogates and
    unsigned char secondHighest;  // what is beyond U+10FFFF
    char32_t bits;
};

LeadByte ReadLeadByte(unsigned char byte) {
    if (byte < 0x80) return {1, 0, 0, byte};
    if (byte >= 0xC2 && byte <= 0xDF) return {2, 0x80, 0xBF, byte & 0x1FU};
    if (byte == 0xE0) return {3, 0xA0, 0xBF, 0};
    if (byte == 0xED) return {3, 0x80, 0x9F, 0xD};
    if (byte >= 0xE1 && byte <= 0xEF) return {3, 0x80, 0xBF, byte & 0xFU};
    if (byte == 0xF0) return {4, 0x90, 0xBF, 0};
    if (byte >= 0xF1 && byte <= 0xF3) return {4, 0x80, 0xBF, byte & 0x7U};
    if (byte == 0xF4) return {4, 0x80, 0x8F, 4};
    return {0, 0, 0, 0};
}

}  // namespace

Utf8Sequence DecodeUtf8(const char* first, const char* last) {
    const LeadByte lead = ReadLeadByte(static_cast<unsigned char>(*first));
    if (lead.length == 0) return {kReplacementCharacter, 1, false, false};
    char32_t character = lead.bits;
    const auto available = static_cast<std::size_t>(last - first);
    for (std::size_t index = 1; index < lead.length; ++index) {
        if (index == available) return {kReplacementCharacter, index, false, true};
        const auto byte = static_cast<unsigned char>(first[index]);
        const unsigned char lowest = index == 1 ? lead.secondLowest : 0x80;
        const unsigned char highest = index == 1 ? lead.secondHighest : 0xBF;
        if (byte < lowest || byte > highest) return {kReplacementCharacter, index, false, false};
        character = character << 6 | (byte & 0x3FU);
    }
    return {character, lead.length, true, false};
}

char16_t* EncodeUtf16(char32_t character, char16_t* out) {
    if (character < 0x10000) {
        *out++ = static_cast<char16_t>(character);
        return out;
    }
    *out++ = static_cast<char16_t>(0xD7C0 + (character >> 10));
    *out++ = static_cast<char16_t>(0xDC00 + (character & 0x3FF));
    return out;
}

char* EncodeUtf8(char32_t character, char* out) {
    const auto trail = [character](int shift) {
        return static_cast<char>(0x80 | (character >> shift & 0x3F));
    };
    if (character < 0x80) {
        *out++ = static_cast<char>(character);
    } else if (character < 0x800) {
        *out++ = static_cast<char>(0xC0 | character >> 6);
        *out++ = trail(0);
    } else if (character < 0x10000) {
        *out++ = static_cast<char>(0xE0 | character >> 12);
        *out++ = trail(6);
        *out++ = trail(0);
    } else {
        *out++ = static_cast<char>(0xF0 | character >> 18);
        *out++ = trail(12);
        *out++ = trail(6);
        *out++ = trail(0);
    }
    return out;
}

}  // namespace NPlatform
