// Names of cells in A1 notation.
#pragma once

#include <cstdint>
#include <string>

namespace VCSVReader {

// The letters of the column, counted from 0: A for 0, Z for 25, AA for 26, ZZ for 701, AAA for 702. Below
// 2^64 - 1, as is every column that a worksheet could have.
std::u16string ColumnName(std::uint64_t column);

// The cell of the column, counted from 0, and the row, counted from 1: C7 for 2 and 7.
std::u16string CellName(std::uint64_t column, std::uint64_t row);

}  // namespace VCSVReader
