// The table source that drives Excel 2003.
#pragma once

#include "platform/automation.h"
#include "sources/vector_heap.h"
#include "sources/worksheet_facts.h"

namespace VCSVReader {

// Starts a hidden Excel, reads the first worksheet of the workbook and quits Excel, all in ReadData. The
// table has as many rows as column A has filled cells from A1 down, at most 16383, and as many columns as row
// 1 has from A1 to the right, at most 207. A cell is filled unless it is empty or holds the empty text.
// Numbers are read as whole numbers, truncated toward zero; one outside the 32-bit range as -2147483648.
//
// Where A1 is not filled the table is empty: neither the data area nor the stepping through it is logged.
class VDefaultExcelHeap : public V2DVectorHeap, public WorksheetSource {
  public:
    using V2DVectorHeap::V2DVectorHeap;

    // Checks that the input can be opened.
    void OpenSource() override;

    // Reads the worksheet. An Excel that cannot be started is logged and leaves the table empty. Throws
    // VParserException, Excel being quit, where the file cannot be opened, the workbook has no worksheet, or
    // the data reaches beyond the limits; NPlatform::DispatchException and NPlatform::OleException for any
    // other failure of automation.
    void ReadData() override;

    // The filled cells of column A and of row 1. Throw VParserException beyond the limits.
    [[nodiscard]] std::uint32_t CountDataRows(const NPlatform::Dispatch& worksheet) const;
    [[nodiscard]] std::uint32_t CountHeaderColumns(const NPlatform::Dispatch& worksheet) const;

    // The address of the data's bottom-right cell, as in D25; the empty text where there is no data.
    [[nodiscard]] std::u16string DataAreaEnd(const NPlatform::Dispatch& worksheet) const;

  private:
    void ReadFirstWorksheet(const NPlatform::Dispatch& application);
    // Reads the cells from A1 to `end`, none for the empty text, and finds the facts if they are wanted;
    // returns the range that they are.
    NPlatform::Dispatch ReadArea(const NPlatform::Dispatch& worksheet, std::u16string_view end);
};

}  // namespace VCSVReader
