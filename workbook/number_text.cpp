#include "workbook/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace NWorkbook {

std::u16string_view WriteNumber(double number, NumberText& text) {
    constexpr double kLeastFixed = 1e-5;
    constexpr double kLeastBeyondFixed = 1e15;
    const double size = std::fabs(number);
    const bool isFixed = number == 0 || (size >= kLeastFixed && size < kLeastBeyondFixed);
    std::array<char, std::tuple_size_v<NumberText>> characters{};
    char* const begin = characters.data();
    const char* const end = std::to_chars(begin, begin + characters.size(), number == 0 ? 0 : number,
                                          isFixed ? std::chars_format::fixed : std::chars_format::scientific)
                                .ptr;
    std::copy<const char*>(begin, end, text.begin());
    return {text.data(), static_cast<std::size_t>(end - begin)};
}

}  // namespace NWorkbook
