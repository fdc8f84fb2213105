#include "cli/failure.h"

#include <cstdio>
#include <cstring>
#include <system_error>

namespace NCli {

void Tell(const char* text) {
    const std::size_t size = std::strlen(text);
    const bool endsLine = size > 0 && text[size - 1] == '\n';
    std::fprintf(stderr, "xls2tki: %s%s", text, endsLine ? "" : "\n");
}

std::string SystemText(int error) { return std::generic_category().message(error); }

}  // namespace NCli
