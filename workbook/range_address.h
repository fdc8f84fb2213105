// Addresses of cells as people write them: column letters, row digits.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "workbook/cells.h"

namespace NWorkbook {

// A rectangle of cells, its edges included.
struct CellBlock {
    std::uint32_t firstRow;
    std::uint32_t lastRow;
    std::uint16_t firstColumn;
    std::uint16_t lastColumn;

    [[nodiscard]] std::size_t Rows() const { return lastRow - firstRow + std::size_t{1}; }
    [[nodiscard]] std::size_t Columns() const { return lastColumn - firstColumn + std::size_t{1}; }
    [[nodiscard]] std::size_t Cells() const { return Rows() * Columns(); }
};

struct CellPlace {
    std::uint32_t row;
    std::uint16_t column;
};

// From "A1" to "XFD1048576", letters in either case. Nothing for anything else.
std::optional<CellPlace> ParseCellName(std::string_view name);
std::optional<CellPlace> ParseCellName(std::u16string_view name);

// Such a name, or two of them with a colon between them, or whole columns or rows, "A:C" and "1:3"; a $
// before letters or digits does not matter. Nothing for anything else.
std::optional<CellBlock> ParseReference(std::u16string_view reference);

// The smallest block that holds both.
CellBlock Span(const CellBlock& one, const CellBlock& other);

// "A1" for the first row and column.
std::u16string CellName(std::uint32_t row, std::uint16_t column);

// Writes the name into the end of `room` and returns it.
inline constexpr std::size_t kMostUnitsOfCellName = 10;
std::string_view WriteCellName(std::uint32_t row, std::uint16_t column, char (&room)[kMostUnitsOfCellName]);

}  // namespace NWorkbook
