// The interface of all table sources.
#pragma once

#include <cstdint>

#include "sources/table.h"

namespace VCSVReader {

// A source lives for one conversion: it is made on an input, opened, read once, checked, walked, destroyed.
// Every failure is a VParserException.
class VHeapInterface {
  public:
    virtual ~VHeapInterface() = default;

    // Adds a character to the pending cell.
    virtual void AppendChar(const char16_t& character) = 0;
    // Ends a cell: with "", the pending one; with any other zero-terminated text, that text is the cell and
    // pending characters are dropped.
    virtual void AddCell(const char16_t* text) = 0;
    // Ends the row; `closeCell` ends the pending cell first, so that the row receives one more.
    virtual void EndRow(bool closeCell) = 0;
    // Checks the table's shape: at least one row, at least two columns, all rows as long as the first.
    virtual void CheckConsistency() = 0;
    // Opens the input.
    virtual void OpenSource() = 0;
    // Reads the whole input into the table.
    virtual void ReadData() = 0;
    // The table's one iterator, which belongs to the source.
    virtual VHeapIterator* GetIterator() = 0;
    // The current position, each counted from 1: the row, the cell in the row, the character in the cell.
    virtual void GetParsePosition(std::int32_t& line, std::int32_t& column, std::int32_t& position) const = 0;

  protected:
    VHeapInterface() = default;
    VHeapInterface(const VHeapInterface&) = default;
    VHeapInterface& operator=(const VHeapInterface&) = default;
};

}  // namespace VCSVReader
