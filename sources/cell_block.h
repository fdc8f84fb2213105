// The value of a block of cells on its way into the table.
#pragma once

#include <utility>

#include "platform/automation.h"
#include "sources/vector_heap.h"

namespace VCSVReader {

// A range's value as rows and columns, both counted from 1; the value of a single cell is one row of one.
class CellBlock {
  public:
    explicit CellBlock(NPlatform::Variant value)
        : value_(std::move(value)),
          array_(value_.Type() == NPlatform::VariantType::Array ? &value_.AsArray() : nullptr) {}
    CellBlock(const CellBlock&) = delete;
    CellBlock& operator=(const CellBlock&) = delete;

    [[nodiscard]] std::int32_t Rows() const { return array_ == nullptr ? 1 : array_->UpperBound(1); }
    [[nodiscard]] std::int32_t Columns() const { return array_ == nullptr ? 1 : array_->UpperBound(2); }

    // Within the bounds. A text belongs to the block.
    [[nodiscard]] NPlatform::VariantElement At(std::int32_t row, std::int32_t column) const {
        return array_ == nullptr ? Single() : array_->At(row, column);
    }

  private:
    [[nodiscard]] NPlatform::VariantElement Single() const {
        NPlatform::VariantElement element;
        element.type = value_.Type();
        if (element.type == NPlatform::VariantType::Double) element.number = value_.AsDouble();
        if (element.type == NPlatform::VariantType::String) element.text = value_.AsString();
        if (element.type == NPlatform::VariantType::Bool) element.integer = value_.AsBool() ? 1 : 0;
        if (element.type == NPlatform::VariantType::Error) element.integer = value_.AsErrorCode();
        return element;
    }

    NPlatform::Variant value_;
    const NPlatform::VariantArray* array_;
};

// Adds the rows of the block to the table. A text is a cell as it is, up to a NUL; `numberText` makes the
// text of a number from row, column and number; everything else, as errors and logical values, is an empty
// cell.
template <typename NumberText>
void AddRows(const CellBlock& block, V2DVectorHeap& table, NumberText numberText) {
    using NPlatform::VariantType;
    const std::int32_t rows = block.Rows();
    const std::int32_t columns = block.Columns();
    for (std::int32_t row = 1; row <= rows; ++row) {
        for (std::int32_t column = 1; column <= columns; ++column) {
            const NPlatform::VariantElement cell = block.At(row, column);
            if (cell.type == VariantType::Double) {
                table.AddCell(numberText(row, column, cell.number));
            } else {
                const bool hasText = cell.type == VariantType::String && !cell.text.empty();
                table.AddCell(hasText ? cell.text.data() : u"");
            }
        }
        table.EndRow(false);
    }
}

}  // namespace VCSVReader
