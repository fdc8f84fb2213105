#include "workbook/date_formats.h"

namespace NWorkbook {

namespace {

bool IsElapsedTime(std::string_view bracketed) {
    return !bracketed.empty() && bracketed.find_first_not_of("hHmMsS") == std::string_view::npos;
}

}  // namespace

bool IsUsualDateFormat(std::size_t id) {
    return (id >= 14 && id <= 22) || (id >= 27 && id <= 36) || (id >= 45 && id <= 47) ||
           (id >= 50 && id <= 58);
}

bool IsDateFormat(std::string_view code) {
    for (std::size_t index = 0; index < code.size() && code[index] != ';'; ++index) {
        switch (code[index]) {
            case '"':
                index = code.find('"', index + 1);
                break;
            case '[': {
                const std::size_t begin = index + 1;
                index = code.find(']', begin);
                if (index != std::string_view::npos && IsElapsedTime(code.substr(begin, index - begin)))
                    return true;
                break;
            }
            case '\\':
            case '_':
            case '*':
                ++index;
                break;
            default:
                if (std::string_view("dDmMyYhHsS").find(code[index]) != std::string_view::npos) return true;
        }
        if (index == std::string_view::npos) return false;
    }
    return false;
}

}  // namespace NWorkbook
