#include "sources/cell_name.h"

namespace VCSVReader {

namespace {

// Of the largest 64-bit number.
constexpr std::size_t kMostLetters = 14;
constexpr std::size_t kMostDigits = 20;

// Each writes what ends at `end`, the last unit first, and returns where it begins.
char16_t* WriteLetters(std::uint64_t column, char16_t* end) {
    for (std::uint64_t rest = column + 1; rest > 0; rest = (rest - 1) / 26) {
        *--end = static_cast<char16_t>(u'A' + (rest - 1) % 26);
    }
    return end;
}

char16_t* WriteDigits(std::uint64_t row, char16_t* end) {
    for (std::uint64_t rest = row; rest > 0; rest /= 10) *--end = static_cast<char16_t>(u'0' + rest % 10);
    return end;
}

}  // namespace

std::u16string ColumnName(std::uint64_t column) {
    char16_t units[kMostLetters];
    char16_t* const end = units + kMostLetters;
    return {WriteLetters(column, end), end};
}

std::u16string CellName(std::uint64_t column, std::uint64_t row) {
    char16_t units[kMostLetters + kMostDigits];
    char16_t* const end = units + kMostLetters + kMostDigits;
    return {WriteLetters(column, WriteDigits(row, end)), end};
}

}  // namespace VCSVReader
