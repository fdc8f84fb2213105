#include "workbook/range_address.h"

#include <algorithm>

#include "workbook/error.h"

namespace NWorkbook {

namespace {

constexpr std::uint32_t kLetters = 26;
constexpr std::uint32_t kDigits = 10;

// Reads letters or digits as a number and takes them from the text. What is beyond `last` gives 0, as nothing
// at all does.
template <typename ValueOf>
std::uint32_t Take(std::u16string_view& text, std::uint32_t base, std::uint32_t last, ValueOf valueOf) {
    if (text.starts_with(u'$')) text.remove_prefix(1);
    std::uint32_t number = 0;
    std::size_t size = 0;
    for (; size < text.size(); ++size) {
        const int value = valueOf(text[size]);
        if (value < 0) break;
        number = number * base + static_cast<std::uint32_t>(value);
        if (number > last) return 0;
    }
    text.remove_prefix(size);
    return number;
}

// A is 1.
int LetterValue(char16_t unit) {
    if (unit >= u'A' && unit <= u'Z') return unit - u'A' + 1;
    return unit >= u'a' && unit <= u'z' ? unit - u'a' + 1 : -1;
}

int DigitValue(char16_t unit) { return unit >= u'0' && unit <= u'9' ? unit - u'0' : -1; }

bool TakeCell(std::u16string_view& text, CellBlock& cell) {
    cell.firstColumn = static_cast<std::uint16_t>(Take(text, kLetters, kLastColumn, LetterValue));
    cell.firstRow = Take(text, kDigits, kLastRow, DigitValue);
    cell.lastColumn = cell.firstColumn;
    cell.lastRow = cell.firstRow;
    return cell.firstColumn > 0 && cell.firstRow > 0;
}

}  // namespace

CellBlock ParseAddress(std::u16string_view address) {
    std::u16string_view text = address;
    CellBlock first{};
    bool isValid = TakeCell(text, first);
    CellBlock last = first;
    if (isValid && text.starts_with(u':')) {
        text.remove_prefix(1);
        isValid = TakeCell(text, last);
    }
    if (!isValid || !text.empty()) {
        throw WorkbookError(u"'" + std::u16string(address) +
                            u"' is not the address of a cell between A1 and XFD1048576.");
    }
    return Span(first, last);
}

CellBlock Span(const CellBlock& one, const CellBlock& other) {
    return {std::min(one.firstRow, other.firstRow), std::max(one.lastRow, other.lastRow),
            std::min(one.firstColumn, other.firstColumn), std::max(one.lastColumn, other.lastColumn)};
}

std::u16string CellName(std::uint32_t row, std::uint16_t column) {
    char room[kMostUnitsOfCellName];
    const std::string_view name = WriteCellName(row, column, room);
    return {name.begin(), name.end()};
}

std::string_view WriteCellName(std::uint32_t row, std::uint16_t column, char (&room)[kMostUnitsOfCellName]) {
    char* const end = room + kMostUnitsOfCellName;
    char* begin = end;
    for (std::uint32_t rest = row; rest > 0; rest /= kDigits) {
        *--begin = static_cast<char>('0' + rest % kDigits);
    }
    for (std::uint32_t rest = column; rest > 0; rest = (rest - 1) / kLetters) {
        *--begin = static_cast<char>('A' + (rest - 1) % kLetters);
    }
    return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace NWorkbook
