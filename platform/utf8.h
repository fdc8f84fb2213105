// Decoding UTF-8 one character at a time.
#pragma once

#include <cstddef>

namespace NPlatform {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

struct Utf8Sequence {
    char32_t character;  // the character; U+FFFD where the bytes are malformed
    std::size_t length;  // how many bytes it takes, 1 to 4; of malformed bytes, those that belong together
    bool wellFormed;
    bool cutShort;  // the bytes are the beginning of a character whose rest is missing
};

// Reads the character at `first`, which has to be before `last`. A malformed sequence is as long as the
// Unicode standard recommends for substitution: the longest beginning of a character, at least one byte.
Utf8Sequence DecodeUtf8(const char* first, const char* last);

// Writes the character as one or two UTF-16 units and returns the place after them.
char16_t* EncodeUtf16(char32_t character, char16_t* out);

// Writes the character as UTF-8, at most 4 bytes, and returns the place after them.
char* EncodeUtf8(char32_t character, char* out);

}  // namespace NPlatform
