#include "cli/failure.h"

#include <cstdio>
#include <system_error>

namespace NCli {

void Tell(const char* text) {
    std::fputs("xls2tki: ", stderr);
    char last = '\0';
    for (; *text != '\0'; ++text) {
        last = *text;
        const auto byte = static_cast<unsigned char>(last);
        const bool isControl = (byte < 0x20 && last != '\n' && last != '\t') || byte == 0x7F;
        std::fputc(isControl ? '?' : last, stderr);
    }
    if (last != '\n') std::fputc('\n', stderr);
}

void Note(const std::string& sentence) { Tell(("Note: " + sentence).c_str()); }

std::string SystemText(int error) { return std::generic_category().message(error); }

}  // namespace NCli
