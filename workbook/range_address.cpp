#include "workbook/range_address.h"

#include <algorithm>

namespace NWorkbook {

namespace {

constexpr std::uint32_t kLetters = 26;
constexpr std::uint32_t kDigits = 10;

// Takes letters or digits from the front of the text as a number, which is 0 if there are none. False: the
// number is 0 or beyond `last`.
template <typename Unit, typename ValueOf>
bool Take(std::basic_string_view<Unit>& text, std::uint32_t base, std::uint32_t last, ValueOf valueOf,
          std::uint32_t& number) {
    std::size_t size = 0;
    for (number = 0; size < text.size(); ++size) {
        const int value = valueOf(text[size]);
        if (value < 0) break;
        number = number * base + static_cast<std::uint32_t>(value);
        if (number > last) return false;
    }
    text.remove_prefix(size);
    return number > 0 || size == 0;
}

// A is 1.
template <typename Unit>
int LetterValue(Unit unit) {
    if (unit >= 'A' && unit <= 'Z') return unit - 'A' + 1;
    return unit >= 'a' && unit <= 'z' ? unit - 'a' + 1 : -1;
}

template <typename Unit>
int DigitValue(Unit unit) {
    return unit >= '0' && unit <= '9' ? unit - '0' : -1;
}

// A column, a row or both: 0 stands for the one that is missing.
struct Corner {
    std::uint32_t column = 0;
    std::uint32_t row = 0;

    [[nodiscard]] bool IsCell() const { return column > 0 && row > 0; }
};

struct Corners {
    Corner first;
    Corner last;
    bool arePair;

    [[nodiscard]] bool AreCells() const { return first.IsCell() && last.IsCell(); }
};

template <typename Unit>
bool TakeColumn(std::basic_string_view<Unit>& text, Corner& corner) {
    return Take(text, kLetters, kLastColumn, LetterValue<Unit>, corner.column);
}

template <typename Unit>
bool TakeRow(std::basic_string_view<Unit>& text, Corner& corner) {
    return Take(text, kDigits, kLastRow, DigitValue<Unit>, corner.row);
}

template <typename Unit>
std::optional<CellPlace> ParseCell(std::basic_string_view<Unit> name) {
    Corner corner;
    if (!TakeColumn(name, corner) || !TakeRow(name, corner)) return std::nullopt;
    if (!name.empty() || !corner.IsCell()) return std::nullopt;
    return CellPlace{corner.row, static_cast<std::uint16_t>(corner.column)};
}

// Takes a $ from the front of the text, where something else stands behind it.
void TakeDollar(std::u16string_view& text, int (*valueOf)(char16_t)) {
    if (text.size() > 1 && text.front() == u'$' && valueOf(text[1]) >= 0) text.remove_prefix(1);
}

bool TakeCorner(std::u16string_view& text, Corner& corner) {
    TakeDollar(text, LetterValue);
    if (!TakeColumn(text, corner)) return false;
    TakeDollar(text, DigitValue);
    return TakeRow(text, corner);
}

std::optional<Corners> ParseCorners(std::u16string_view text) {
    Corners corners{};
    if (!TakeCorner(text, corners.first)) return std::nullopt;
    corners.last = corners.first;
    corners.arePair = text.starts_with(u':');
    if (corners.arePair) {
        text.remove_prefix(1);
        if (!TakeCorner(text, corners.last)) return std::nullopt;
    }
    if (!text.empty()) return std::nullopt;
    return corners;
}

CellBlock BlockOf(const Corners& corners) {
    const auto& [first, last, arePair] = corners;
    const auto [firstRow, lastRow] = std::minmax(first.row, last.row);
    const auto [firstColumn, lastColumn] = std::minmax(first.column, last.column);
    return {firstRow, lastRow, static_cast<std::uint16_t>(firstColumn),
            static_cast<std::uint16_t>(lastColumn)};
}

}  // namespace

std::optional<CellPlace> ParseCellName(std::string_view name) { return ParseCell(name); }
std::optional<CellPlace> ParseCellName(std::u16string_view name) { return ParseCell(name); }

std::optional<CellBlock> ParseReference(std::u16string_view reference) {
    std::optional<Corners> corners = ParseCorners(reference);
    if (!corners) return std::nullopt;
    auto& [first, last, arePair] = *corners;
    if (arePair && first.row == 0 && last.row == 0) {
        first.row = 1;
        last.row = kLastRow;
    } else if (arePair && first.column == 0 && last.column == 0) {
        first.column = 1;
        last.column = kLastColumn;
    }
    if (!corners->AreCells()) return std::nullopt;
    return BlockOf(*corners);
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
