// What a source that drives Excel can do beyond reading the first worksheet.
#pragma once

#include <string>
#include <vector>

#include "sources/vector_heap.h"

namespace VCSVReader {

// A workbook is opened or created, then listed, read or written; the destructor closes it without saving and
// quits Excel. Names of worksheets are compared exactly, with regard to case.
//
// Errors: VParserException holds a sentence for the user. NPlatform::DispatchException is a failure that
// Excel reports for a call, NPlatform::OleException a call that did not reach it; both pass out of every
// operation, the failures apart that OpenWorkbook logs. Where there is no workbook, those that read, add,
// select or delete a worksheet or save throw VParserException "No Workbook".
class IExcelHeap : public V2DVectorHeap {
  public:
    using V2DVectorHeap::V2DVectorHeap;

    // Starts a hidden Excel and opens the input file in it, read-only or not; an empty password is none. With
    // `createNew` it makes a workbook, deletes the file that has the input's name and saves the workbook
    // under it; the other two arguments then have no effect, and for the Excels that have the file checked
    // first (see excel_heap.h) it has to exist. Where Excel cannot be started, or refuses the file, that is
    // logged and there is no workbook. What was open before is closed. Throws VParserException for a file
    // that the source itself cannot open.
    virtual void OpenWorkbook(bool createNew, bool readOnly, std::u16string password) = 0;

    // Appends the names of all worksheets, in the workbook's order; none without a workbook.
    // Throws VParserException for a workbook without a worksheet.
    virtual void GetWorksheetNames(std::vector<std::u16string>& names) = 0;

    // Reads the data of the worksheet of this name into the table, after the rows that are there; no
    // worksheet of this name: of the last one. Throws VParserException for a workbook without a worksheet.
    virtual void ReadWorksheet(const std::u16string& name) = 0;

    // How many columns and rows the blocks by which the data is searched reach beyond their first cell (see
    // data_area.h). Both are 0 at first.
    virtual void SetScanColumns(std::int32_t columns) = 0;
    virtual void SetScanRows(std::int32_t rows) = 0;

    // Adds a worksheet; it becomes the current one, then it is given this name.
    virtual void AddWorksheet(const std::u16string& name) = 0;

    // Makes the first worksheet of this name the current one. If there is none, there is no current one.
    virtual void SelectWorksheet(const std::u16string& name) = 0;

    // Write a cell of the current worksheet, if there is one. Column and row count from 0.
    // Mind the order of the two.
    virtual void SetCellText(std::uint32_t column, std::uint32_t row, const std::u16string& text) = 0;
    virtual void SetCellNumber(std::uint32_t row, std::uint32_t column, double number) = 0;

    // Whether the cell held a number when ReadWorksheet last ran, and which; 0.0 where it did not. Row and
    // column count from 1.
    [[nodiscard]] virtual bool HasCellNumber(std::uint32_t row, std::uint32_t column) const = 0;
    [[nodiscard]] virtual double GetCellNumber(std::uint32_t row, std::uint32_t column) const = 0;

    // Saves the workbook to its file.
    virtual void SaveWorkbook() = 0;

    // From now on numbers are read as the shortest decimal that is exact (see number_text.h).
    virtual void UseTrimmedNumberText() = 0;

    // Delete the last worksheet, or the first of this name; true: one was deleted. Throw VParserException for
    // a workbook that has no worksheet, or only one.
    virtual void DeleteLastWorksheet() = 0;
    virtual bool DeleteWorksheet(const std::u16string& name) = 0;

    // Whether Excel may ask its user questions. No effect without Excel.
    virtual void SetDisplayAlerts(bool display) = 0;
};

}  // namespace VCSVReader
