#include "sources/data_area.h"

#include <algorithm>

#include "sources/cell_name.h"
#include "sources/excel_automation.h"

namespace VCSVReader {

namespace {

using NPlatform::VariantType;

// Rows count from 1, columns from 0; 64 bits, since neither spans nor bounds of arrays are bounded.
struct Cell {
    std::int64_t row = 1;
    std::int64_t column = 0;
};

std::u16string NameOf(const Cell& cell) {
    return CellName(static_cast<std::uint64_t>(cell.column), static_cast<std::uint64_t>(cell.row));
}

class DataAreaSearch {
  public:
    DataAreaSearch(const NPlatform::Dispatch& worksheet, std::int64_t rowSpan, std::int64_t columnSpan)
        : worksheet_(worksheet), rowSpan_(rowSpan), columnSpan_(columnSpan) {}

    // The bottom-right cell of the data.
    Cell Run() {
        const std::int64_t step = std::max<std::int64_t>(rowSpan_, 1);
        for (std::int64_t row = 1; SearchBand(row);) row += step;
        return end_;
    }

  private:
    // True: there is data.
    bool SearchBand(std::int64_t row) {
        const std::int64_t step = std::max<std::int64_t>(columnSpan_, 1);
        std::int64_t column = 0;
        while (SearchBlock({row, column})) column += step;
        return column > 0;
    }

    bool SearchBlock(const Cell& first) {
        const std::u16string firstName = NameOf(first);
        const std::u16string lastName = NameOf({first.row + rowSpan_, first.column + columnSpan_});
        const NPlatform::Variant value = Excel::Value2(Excel::Range(worksheet_, firstName, lastName));
        if (value.IsEmpty()) return false;
        if (firstName != lastName) return SearchCells(first, value.AsArray());
        Include(first);
        return true;
    }

    bool SearchCells(const Cell& first, const NPlatform::VariantArray& cells) {
        const std::int32_t rows = cells.UpperBound(1);
        const std::int32_t columns = cells.UpperBound(2);
        bool found = false;
        for (std::int32_t row = 1; row <= rows; ++row) {
            for (std::int32_t column = 1; column <= columns; ++column) {
                const VariantType type = cells.At(row, column).type;
                if (type != VariantType::Double && type != VariantType::String) continue;
                Include({first.row + row - 1, first.column + column - 1});
                found = true;
            }
        }
        return found;
    }

    void Include(const Cell& cell) {
        end_ = {std::max(end_.row, cell.row), std::max(end_.column, cell.column)};
    }

    const NPlatform::Dispatch& worksheet_;
    std::int64_t rowSpan_;
    std::int64_t columnSpan_;
    Cell end_;
};

}  // namespace

std::u16string FindDataArea(const NPlatform::Dispatch& worksheet, std::int32_t scanRows,
                            std::int32_t scanColumns) {
    return NameOf(DataAreaSearch(worksheet, std::max(scanRows, 0), std::max(scanColumns, 0)).Run());
}

}  // namespace VCSVReader
