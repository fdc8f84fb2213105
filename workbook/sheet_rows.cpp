#include "workbook/sheet_rows.h"

#include <algorithm>

namespace NWorkbook {

SheetRows::SheetRows(std::shared_ptr<const TextStore> texts, std::shared_ptr<Worksheet> worksheet)
    : texts_(std::move(texts)), worksheet_(std::move(worksheet)), cells_(worksheet_->Cells().Begin()) {
    const Cell* const end = worksheet_->Cells().End();
    if (cells_ != end) {
        firstRow_ = cells_->row;
        rowStarts_.reserve(end[-1].row - firstRow_ + std::size_t{2});
    }
    for (const Cell* cell = cells_; cell != end; ++cell) {
        const std::size_t row = cell->row - firstRow_;
        if (row >= rowStarts_.size()) rowStarts_.resize(row + 1, static_cast<std::uint32_t>(cell - cells_));
    }
    rowStarts_.push_back(static_cast<std::uint32_t>(end - cells_));
}

const Cell* SheetRows::Find(std::uint32_t row, std::uint32_t column) const {
    if (!HasRow(row)) return nullptr;
    const Cell* const begin = cells_ + rowStarts_[row - firstRow_];
    const Cell* const end = cells_ + rowStarts_[row - firstRow_ + 1];
    if (begin == end || column < begin->column) return nullptr;
    // Where no cell before it is empty, it is the last of these; it is none of those behind.
    const auto count = std::min<std::ptrdiff_t>(end - begin, column - begin->column + std::ptrdiff_t{1});
    const Cell* const last = begin + count - 1;
    if (last->column == column) return last;
    const Cell* const cell = std::lower_bound(
        begin, last, column, [](const Cell& one, std::uint32_t wanted) { return one.column < wanted; });
    return cell->column == column ? cell : nullptr;
}

CellBlock SheetRows::Filled(const CellBlock& within) const {
    CellBlock filled{within.lastRow, 0, within.lastColumn, 0};
    for (const Cell* cell = cells_; cell != cells_ + rowStarts_.back(); ++cell) {
        const bool isWithin = cell->row >= within.firstRow && cell->row <= within.lastRow &&
                              cell->column >= within.firstColumn && cell->column <= within.lastColumn;
        if (isWithin) filled = Span(filled, {cell->row, cell->row, cell->column, cell->column});
    }
    if (filled.lastRow > 0) return filled;
    return {within.firstRow, within.firstRow, within.firstColumn, within.firstColumn};
}

}  // namespace NWorkbook
