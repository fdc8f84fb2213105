#include "sources/cell_name.h"

#include <charconv>

namespace VCSVReader {

std::u16string ColumnName(std::uint64_t column) {
    std::u16string name;
    for (std::uint64_t rest = column + 1; rest > 0; rest = (rest - 1) / 26) {
        name.insert(name.begin(), static_cast<char16_t>(u'A' + (rest - 1) % 26));
    }
    return name;
}

std::u16string CellName(std::uint64_t column, std::uint64_t row) {
    char digits[20];
    const char* const end = std::to_chars(digits, digits + sizeof digits, row).ptr;
    std::u16string name = ColumnName(column);
    name.append(static_cast<const char*>(digits), end);
    return name;
}

}  // namespace VCSVReader
