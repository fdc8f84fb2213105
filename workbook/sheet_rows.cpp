#include "workbook/sheet_rows.h"

#include <algorithm>

namespace NWorkbook {

namespace {

// What every block spans with.
CellBlock NothingOf(const CellBlock& within) { return {within.lastRow, 0, within.lastColumn, 0}; }

}  // namespace

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
        if (cell->column > columnEnds_.size()) columnEnds_.resize(cell->column);
        ColumnEnds& ends = columnEnds_[cell->column - 1U];
        if (ends.firstRow == 0) ends.firstRow = cell->row;
        ends.lastRow = cell->row;
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
    const CellBlock filled = within.Rows() == kLastRow ? FilledColumns(within) : FilledRows(within);
    if (filled.lastRow > 0) return filled;
    return {within.firstRow, within.firstRow, within.firstColumn, within.firstColumn};
}

CellBlock SheetRows::FilledColumns(const CellBlock& within) const {
    CellBlock filled = NothingOf(within);
    const std::size_t last = std::min<std::size_t>(within.lastColumn, columnEnds_.size());
    for (std::size_t column = within.firstColumn; column <= last; ++column) {
        const ColumnEnds& ends = columnEnds_[column - 1];
        const auto place = static_cast<std::uint16_t>(column);
        if (ends.lastRow > 0) filled = Span(filled, {ends.firstRow, ends.lastRow, place, place});
    }
    return filled;
}

CellBlock SheetRows::FilledRows(const CellBlock& within) const {
    CellBlock filled = NothingOf(within);
    const std::uint32_t firstRow = std::max(within.firstRow, firstRow_);
    if (!HasRow(firstRow)) return filled;
    const Cell* const end = cells_ + rowStarts_.back();
    for (const Cell* cell = cells_ + rowStarts_[firstRow - firstRow_]; cell != end;) {
        if (cell->row > within.lastRow) break;
        const Cell* const nextRow = cells_ + rowStarts_[cell->row - firstRow_ + 1];
        filled = Span(filled, {cell->row, cell->row, cell->column, nextRow[-1].column});
        cell = nextRow;
    }
    return filled;
}

}  // namespace NWorkbook
