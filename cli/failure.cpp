#include "cli/failure.h"

#include <cstdio>
#include <system_error>

#include "cli/text.h"

namespace NCli {

void Tell(std::string_view text) {
    std::fputs("xls2tki: ", stderr);
    Show(text, stderr);
    if (!text.ends_with('\n')) std::fputc('\n', stderr);
}

void Note(const std::string& sentence) { Tell("Note: " + sentence); }

std::string SystemText(int error) { return std::generic_category().message(error); }

}  // namespace NCli
