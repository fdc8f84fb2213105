#include "workbook/cells.h"

#include <algorithm>

#include "platform/format.h"
#include "workbook/error.h"

namespace NWorkbook {

static bool IsBefore(const Cell& one, const Cell& other) {
    return one.row != other.row ? one.row < other.row : one.column < other.column;
}

static bool IsSamePlace(const Cell& one, const Cell& other) {
    return one.row == other.row && one.column == other.column;
}

static void RefuseCells() {
    throw WorkbookError(NPlatform::Format(200, u"A worksheet has more than %d cells.",
                                          {std::int32_t{CellTable::kMostCells}}));
}

void CellTable::Add(const Cell& cell) {
    // One place given again and again takes no memory.
    if (size_ > 0 && IsSamePlace(cells_.Data()[size_ - 1], cell)) {
        cells_.Data()[size_ - 1] = cell;
        if (cell.type == CellType::Nothing) sorted_ = std::min(sorted_, size_ - 1);
        return;
    }
    const bool isLast = sorted_ == size_ && (size_ == 0 || IsBefore(cells_.Data()[size_ - 1], cell));
    if (isLast && cell.type == CellType::Nothing) return;
    if (size_ == kMostCells) RefuseCells();
    if (size_ == cells_.Size()) cells_.Grow(std::max<std::size_t>(256, 2 * size_));
    cells_.Data()[size_++] = cell;
    if (isLast) sorted_ = size_;
}

void CellTable::Note(const NotedCell& cell) {
    if (notes_.size() == kMostCells) RefuseCells();
    notes_.push_back(cell);
}

const std::vector<NotedCell>& CellTable::Notes() {
    const auto place = [](const NotedCell& cell) { return std::pair(cell.row, cell.column); };
    if (!std::ranges::is_sorted(notes_, {}, place)) std::ranges::stable_sort(notes_, {}, place);
    return notes_;
}

const Cell* CellTable::Begin() {
    Sort();
    return cells_.Data();
}

const Cell* CellTable::End() {
    Sort();
    return cells_.Data() + size_;
}

const Cell* CellTable::From(std::uint32_t row, std::uint16_t column) {
    Sort();
    const Cell place{row, column, CellType::Nothing, {}};
    const Cell* const cells = cells_.Data();
    // The place is usually close after the last one, so the steps stay small.
    const bool isBehind = before_ < size_ && IsBefore(cells[before_], place);
    const std::size_t begin = isBehind ? before_ : 0;
    std::size_t reach = 1;
    while (reach < size_ - begin && IsBefore(cells[begin + reach], place)) reach *= 2;
    const std::size_t end = std::min(begin + reach, size_);
    const Cell* const found = std::lower_bound(cells + begin, cells + end, place, IsBefore);
    before_ = found == cells ? 0 : static_cast<std::size_t>(found - cells) - 1;
    return found;
}

void CellTable::Sort() {
    if (sorted_ == size_) return;
    Cell* const begin = cells_.Data();
    Cell* const end = begin + size_;
    // Most often a few cells were added to many sorted ones.
    std::stable_sort(begin + sorted_, end, IsBefore);
    std::inplace_merge(begin, begin + sorted_, end, IsBefore);
    Cell* out = begin;
    for (const Cell* cell = begin; cell != end; ++cell) {
        const bool isLastOfPlace = cell + 1 == end || IsBefore(*cell, cell[1]);
        if (isLastOfPlace && cell->type != CellType::Nothing) *out++ = *cell;
    }
    size_ = sorted_ = static_cast<std::size_t>(out - begin);
}

}  // namespace NWorkbook
