// The cells of a worksheet, each found at once.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "workbook/range_address.h"
#include "workbook/workbook.h"

namespace NWorkbook {

// Does not change after it is made: may be read from several threads. Keeps the worksheet and its texts, and
// the worksheet has to stay as it is.
class SheetRows {
  public:
    // Throws WorkbookError when the worksheet cannot be read.
    SheetRows(std::shared_ptr<const TextStore> texts, std::shared_ptr<Worksheet> worksheet);

    // NULL where nothing is.
    [[nodiscard]] const Cell* Find(std::uint32_t row, std::uint32_t column) const;

    // The smallest block that holds all cells within this one, which is of whole columns or of whole rows;
    // its first place alone if there are none. Looks at each column, or at each row that has cells, once.
    [[nodiscard]] CellBlock Filled(const CellBlock& within) const;

  private:
    // The rows of a column's first and last cell; 0 if there are none.
    struct ColumnEnds {
        std::uint32_t firstRow = 0;
        std::uint32_t lastRow = 0;
    };

    [[nodiscard]] CellBlock FilledColumns(const CellBlock& within) const;
    [[nodiscard]] CellBlock FilledRows(const CellBlock& within) const;
    [[nodiscard]] bool HasRow(std::uint32_t row) const {
        return row >= firstRow_ && row - firstRow_ < rowStarts_.size() - 1;
    }

    std::shared_ptr<const TextStore> texts_;
    std::shared_ptr<Worksheet> worksheet_;
    const Cell* cells_;
    std::uint32_t firstRow_ = 0;
    std::vector<std::uint32_t> rowStarts_;  // among the cells, of each row from the first, and their end
    std::vector<ColumnEnds> columnEnds_;    // of each column from 1
};

}  // namespace NWorkbook
