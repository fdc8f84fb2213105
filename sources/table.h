// The cell table as its readers see it.
//
// A table is a sequence of rows, a row a sequence of cells, a cell a UTF-16 text, stored exactly as the
// source delivered it. Row 0 is the header, its cells are the column titles; rows 1 and up are data.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace VCSVReader {

// One row. Its cells are adjacent; the table that owns them outlives the row and the views it
// gives.
class VTableRow {
  public:
    // `ends`: for each of the `size` cells the number of units from `units` to the cell's end.
    VTableRow(const char16_t* units, const std::uint32_t* ends, std::size_t size)
        : units_(units), ends_(ends), size_(size) {}

    [[nodiscard]] std::size_t size() const { return size_; }

    // The length of all cells together.
    [[nodiscard]] std::size_t TextSize() const { return size_ == 0 ? 0 : ends_[size_ - 1]; }

    // The cell of the 0-based column, which has to be below size().
    std::u16string_view operator[](std::size_t column) const {
        const std::uint32_t begin = column == 0 ? 0 : ends_[column - 1];
        return {units_ + begin, ends_[column] - begin};
    }

  private:
    const char16_t* units_;
    const std::uint32_t* ends_;
    std::size_t size_;
};

// Walks the rows of one table from the first to the last, any number of times.
class VHeapIterator {
  public:
    virtual ~VHeapIterator() = default;
    // The next row; it belongs to the table. Undefined after the last: ask HasMoreRows first.
    virtual const VTableRow* GetNextRow() = 0;
    // Goes back to the first row.
    virtual void Reset() = 0;
    [[nodiscard]] virtual bool HasMoreRows() const = 0;
    // Whether the row that GetNextRow returned last is the header.
    [[nodiscard]] virtual bool IsHeaderRow() const = 0;

  protected:
    VHeapIterator() = default;
    VHeapIterator(const VHeapIterator&) = default;
    VHeapIterator& operator=(const VHeapIterator&) = default;
};

}  // namespace VCSVReader
