#include "workbook/range_values.h"

#include <algorithm>
#include <cmath>

#include "workbook/cell_rules.h"

namespace NWorkbook {

using NPlatform::Variant;
using NPlatform::VariantElement;
using NPlatform::VariantType;

namespace {

// Errors of cells are failure codes of this facility.
constexpr std::uint32_t kCellErrorCodes = 0x800A0000;

VariantElement ElementOf(const Cell& cell) {
    switch (cell.type) {
        case CellType::Number:
            return {.type = VariantType::Double, .number = cell.number, .text = {}};
        case CellType::Text:
            return {.type = VariantType::String, .text = TextAt(cell.text)};
        case CellType::Bool:
            return {.type = VariantType::Bool, .integer = cell.truth ? 1 : 0, .text = {}};
        case CellType::Error:
            return {.type = VariantType::Error,
                    .integer = static_cast<std::int32_t>(kCellErrorCodes + static_cast<unsigned>(cell.error)),
                    .text = {}};
        case CellType::Nothing:
            break;
    }
    return {};
}

// A copy of a block's cells, row by row, the empty ones too.
class BlockValues : public NPlatform::VariantArray {
  public:
    BlockValues(std::shared_ptr<const TextStore> texts, CellTable& table, const CellBlock& block)
        : texts_(std::move(texts)), columns_(block.Columns()), cells_(block.Cells()) {
        Cell* next = cells_.Data();
        const Cell* cell = table.From(block.firstRow, block.firstColumn);
        const Cell* const end = table.End();
        while (cell != end && cell->row <= block.lastRow) {
            if (cell->column < block.firstColumn) {
                cell = table.From(cell->row, block.firstColumn);
            } else if (cell->column > block.lastColumn) {
                cell = table.From(cell->row + 1, block.firstColumn);
            } else {
                const std::size_t place =
                    (cell->row - block.firstRow) * columns_ + (cell->column - block.firstColumn);
                std::fill(next, cells_.Data() + place, Cell{});
                next = cells_.Data() + place;
                *next++ = *cell++;
            }
        }
        std::fill(next, cells_.Data() + cells_.Size(), Cell{});
    }

    [[nodiscard]] std::int32_t UpperBound(int dimension) const override {
        return static_cast<std::int32_t>(dimension == 1 ? cells_.Size() / columns_ : columns_);
    }

    [[nodiscard]] VariantElement At(std::int32_t row, std::int32_t column) const override {
        return ElementOf(cells_.Data()[static_cast<std::size_t>(row - 1) * columns_ +
                                       static_cast<std::size_t>(column - 1)]);
    }

  private:
    std::shared_ptr<const TextStore> texts_;
    std::size_t columns_;
    NPlatform::Array<Cell> cells_;
};

std::vector<NotedCell> NotesIn(CellTable& table, const CellBlock& block) {
    std::vector<NotedCell> notes;
    for (const NotedCell& cell : table.Notes()) {
        const bool isColumn = cell.column >= block.firstColumn && cell.column <= block.lastColumn;
        if (isColumn && cell.row >= block.firstRow && cell.row <= block.lastRow) notes.push_back(cell);
    }
    return notes;
}

class ShownValues : public BlockValues {
  public:
    ShownValues(std::shared_ptr<const TextStore> texts, CellTable& table, const CellBlock& block)
        : BlockValues(std::move(texts), table, block), block_(block), notes_(NotesIn(table, block)) {}

    [[nodiscard]] VariantElement At(std::int32_t row, std::int32_t column) const override {
        VariantElement element = BlockValues::At(row, column);
        const std::pair place(block_.firstRow + static_cast<std::uint32_t>(row) - 1,
                              block_.firstColumn + static_cast<std::uint32_t>(column) - 1);
        const auto placeOf = [](const NotedCell& cell) {
            return std::pair<std::uint32_t, std::uint32_t>(cell.row, cell.column);
        };
        const auto note = std::ranges::lower_bound(notes_, place, {}, placeOf);
        if (note == notes_.end() || placeOf(*note) != place) return element;
        if (note->note == CellNote::ShowsDate && element.type == VariantType::Double) {
            element.type = VariantType::Date;
        } else if (note->note == CellNote::UnsavedFormula && element.type == VariantType::Empty) {
            return ElementOf(
                {.row = 0, .column = 0, .type = CellType::Error, .error = CellError::GettingData});
        }
        return element;
    }

  private:
    CellBlock block_;
    std::vector<NotedCell> notes_;
};

void RefuseLargeBlock(const CellBlock& block) {
    if (block.Cells() <= CellTable::kMostCells) return;
    throw WorkbookError(u"The block from " + CellName(block.firstRow, block.firstColumn) + u" to " +
                        CellName(block.lastRow, block.lastColumn) + u" has more than 50 million cells.");
}

// The cell at the block's beginning that the value makes.
Cell CellOf(TextStore& texts, const CellBlock& block, const Variant& value) {
    Cell cell{.row = block.firstRow, .column = block.firstColumn, .type = CellType::Number, .number = 0};
    switch (value.Type()) {
        case VariantType::Empty:
            cell.type = CellType::Nothing;
            break;
        case VariantType::Bool:
            cell.type = CellType::Bool;
            cell.truth = value.AsBool();
            break;
        case VariantType::String:
            RefuseLongText(value.AsString(), cell.row, cell.column);
            texts.Append(value.AsString());
            cell.type = CellType::Text;
            cell.text = texts.Close();
            break;
        case VariantType::Int16:
        case VariantType::Int32:
            cell.number = value.AsInteger();
            break;
        default:
            cell.number = value.AsDouble();
            RefuseStrangeNumber(cell.number, cell.row, cell.column);
    }
    return cell;
}

}  // namespace

Variant ReadValues(const std::shared_ptr<TextStore>& texts, Worksheet& worksheet, const CellBlock& block) {
    RefuseLargeBlock(block);
    CellTable& table = worksheet.Cells();
    if (block.Cells() > 1) return Variant::Array(std::make_shared<BlockValues>(texts, table, block));
    const Cell* const cell = table.From(block.firstRow, block.firstColumn);
    const bool isThere =
        cell != table.End() && cell->row == block.firstRow && cell->column == block.firstColumn;
    return isThere ? Variant::Of(ElementOf(*cell)) : Variant();
}

Variant ReadShownValues(const std::shared_ptr<TextStore>& texts, Worksheet& worksheet,
                        const CellBlock& block) {
    if (block.Cells() == 1) return ReadValues(texts, worksheet, block);
    RefuseLargeBlock(block);
    return Variant::Array(std::make_shared<ShownValues>(texts, worksheet.Cells(), block));
}

void WriteValue(TextStore& texts, Worksheet& worksheet, const CellBlock& block, const Variant& value) {
    RefuseLargeBlock(block);
    CellTable& table = worksheet.Cells();
    Cell cell = CellOf(texts, block, value);
    for (cell.row = block.firstRow; cell.row <= block.lastRow; ++cell.row) {
        for (std::uint32_t column = block.firstColumn; column <= block.lastColumn; ++column) {
            cell.column = static_cast<std::uint16_t>(column);
            table.Add(cell);
        }
    }
}

}  // namespace NWorkbook
