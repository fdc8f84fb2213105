#include "sources/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>

namespace VCSVReader {

namespace {

using Characters = std::array<char, std::tuple_size_v<NumberBuffer>>;

// Leaves room for the NUL and for a third digit of the exponent.
char* Limit(Characters& text) { return text.data() + text.size() - 2; }

const char16_t* Widen(const char* begin, const char* end, NumberBuffer& buffer) {
    *std::copy(begin, end, buffer.begin()) = 0;
    return buffer.data();
}

// "1e+20" becomes "1e+020".
char* WidenExponent(char* begin, char* end) {
    char* const mark = std::find(begin, end, 'e');
    if (end - mark != 4) return end;
    std::copy_backward(mark + 2, end, end + 1);
    mark[2] = '0';
    return end + 1;
}

}  // namespace

std::int32_t TruncateNumber(double number) {
    constexpr double kBeyond = 2147483648.0;
    const bool fits = number > -kBeyond - 1 && number < kBeyond;  // false for what is no number
    return fits ? static_cast<std::int32_t>(number) : std::numeric_limits<std::int32_t>::min();
}

const char16_t* WriteNumber(double number, NumberBuffer& buffer) {
    const std::int32_t whole = TruncateNumber(number);
    const bool isWhole = number == whole;
    // Most cells: the same text as below, many times faster.
    if (isWhole && whole != 0 && whole > -1'000'000 && whole < 1'000'000) {
        return WriteTruncatedNumber(number, buffer);
    }
    Characters text;
    char* const end =
        std::to_chars(text.data(), Limit(text), number, std::chars_format::general, isWhole ? 6 : 16).ptr;
    return Widen(text.data(), WidenExponent(text.data(), end), buffer);
}

const char16_t* WriteTrimmedNumber(double number, NumberBuffer& buffer) {
    Characters text;
    const char* const end = std::to_chars(text.data(), Limit(text), number, std::chars_format::fixed).ptr;
    return Widen(text.data(), end, buffer);
}

const char16_t* WriteTruncatedNumber(double number, NumberBuffer& buffer) {
    Characters text;
    const char* const end = std::to_chars(text.data(), Limit(text), TruncateNumber(number)).ptr;
    return Widen(text.data(), end, buffer);
}

bool ShowsNumber(const char16_t* text, double number) {
    Characters characters;
    char* end = characters.data();
    for (; *text != 0; ++text) *end++ = static_cast<char>(*text);
    double shown = 0;
    const auto read = std::from_chars(characters.data(), end, shown, std::chars_format::fixed);
    return read.ptr == end && std::fabs(shown - number) <= std::fabs(number) * 1e-12;
}

}  // namespace VCSVReader
