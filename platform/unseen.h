// Characters that people do not see.
#pragma once

namespace NPlatform {

// Control characters, and those that have no width, begin a line or change the direction of writing. A text
// with them can control a terminal, or look like another text. Blanks of any width are not among them.
constexpr bool IsUnseen(char32_t character) {
    constexpr struct {
        char32_t first;
        char32_t last;
    } kRanges[] = {{0, 0x1F},        {0x7F, 0x9F},     {0xAD, 0xAD},      {0x61C, 0x61C},
                   {0x180E, 0x180E}, {0x200B, 0x200F}, {0x2028, 0x202E},  {0x2060, 0x206F},
                   {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE007F}};
    for (const auto& [first, last] : kRanges) {
        if (character <= last) return character >= first;
    }
    return false;
}

}  // namespace NPlatform
