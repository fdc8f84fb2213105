// How much memory one workbook may ask for.
#pragma once

#include <algorithm>

#include "workbook/cells.h"
#include "workbook/part_fault.h"

namespace NWorkbook {

// What is left of it: generous limits, so that a small file cannot fill the memory.
struct Budget {
    std::size_t cells = CellTable::kMostCells;
    std::size_t sharedStrings = CellTable::kMostCells;
    std::size_t units = std::size_t{1} << 29;  // of texts that are kept, UTF-16
};

// The texts of one worksheet's cells, where shared ones count once for each cell: a small file can name very
// many.
inline std::size_t MostUnitsOfWorksheet(std::uint64_t bytesOfFile) {
    constexpr std::uint64_t kMost = std::uint64_t{1} << 29;
    constexpr std::uint64_t kForAll = std::uint64_t{1} << 27;
    constexpr std::uint64_t kForAByte = 50;
    return static_cast<std::size_t>(std::clamp(kForAByte * bytesOfFile, kForAll, kMost));
}

// Takes `count` from it. Throws PartFault, with the words for too much, where less is left.
inline void Spend(std::size_t& left, std::size_t count, const char16_t* tooMuch) {
    if (count > left) throw PartFault{Fault::TooLarge, tooMuch};
    left -= count;
}

}  // namespace NWorkbook
