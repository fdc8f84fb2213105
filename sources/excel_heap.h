// The table sources that drive Excel, one for each generation of its automation interface.
#pragma once

#include <memory>

#include "platform/automation.h"
#include "sources/excel_interface.h"
#include "sources/number_map.h"
#include "sources/number_text.h"
#include "sources/worksheet_facts.h"

namespace VCSVReader {

class CellBlock;

enum class ExcelGeneration { Excel2000, Excel2007, Excel2010 };

// One design for all generations; they differ in messages, in the forms of a few calls and in the switches
// that keep Excel quiet (see the table in excel_heap.cpp).
//
// The input file is checked before Excel is started, except with Excel 2010, which gets the name as it was
// given. Excel runs hidden, without alerts and events, from 2007 on without macros. No message about
// a failure has more than 2047 characters; where Excel does not start, or Excel 2000 refuses the file, it
// shows at most 1023 of the description.
//
// A worksheet whose data is the one cell A1 is a table of one row and one column.
template <ExcelGeneration kGeneration>
class VExcelHeap final : public IExcelHeap, public WorksheetSource {
  public:
    VExcelHeap(std::u16string_view fileName, VLogObject* log) : IExcelHeap(fileName, log) {}
    VExcelHeap(const VExcelHeap&) = delete;
    VExcelHeap& operator=(const VExcelHeap&) = delete;
    // Closes the workbook without saving, quits Excel and releases both, even if a call fails.
    ~VExcelHeap() override { CloseExcel(); }

    // Opens the workbook for reading and writing, without a password.
    void OpenSource() override { OpenWorkbook(false, false, u""); }
    // Reads the first worksheet, or nothing where there is no workbook.
    void ReadData() override;

    void OpenWorkbook(bool createNew, bool readOnly, std::u16string password) override;
    void GetWorksheetNames(std::vector<std::u16string>& names) override;
    void ReadWorksheet(const std::u16string& name) override;
    void SetScanColumns(std::int32_t columns) override { scanColumns_ = columns; }
    void SetScanRows(std::int32_t rows) override { scanRows_ = rows; }
    void AddWorksheet(const std::u16string& name) override;
    void SelectWorksheet(const std::u16string& name) override;
    void SetCellText(std::uint32_t column, std::uint32_t row, const std::u16string& text) override;
    void SetCellNumber(std::uint32_t row, std::uint32_t column, double number) override;
    [[nodiscard]] bool HasCellNumber(std::uint32_t row, std::uint32_t column) const override;
    [[nodiscard]] double GetCellNumber(std::uint32_t row, std::uint32_t column) const override;
    void SaveWorkbook() override;
    void UseTrimmedNumberText() override { trimNumbers_ = true; }
    void DeleteLastWorksheet() override;
    bool DeleteWorksheet(const std::u16string& name) override;
    void SetDisplayAlerts(bool display) override;

  private:
    // False: Excel cannot be started, which is logged.
    bool StartExcel();
    void QuietExcel();
    void OpenFile(const NPlatform::Dispatch& workbooks, bool readOnly, std::u16string_view password);
    void CreateFile(const NPlatform::Dispatch& workbooks);
    void DropWorkbook(const NPlatform::Dispatch& workbooks, std::u16string_view reason);
    void CloseExcel() noexcept;
    void AddBlock(const CellBlock& block);
    // Null: the worksheet has no data.
    void LookFurther(const NPlatform::Dispatch& worksheet, const CellBlock* table);
    [[nodiscard]] NumberWriter Writer() const { return trimNumbers_ ? WriteTrimmedNumber : WriteNumber; }
    // For the generation that reports every step.
    void LogStep(std::u16string_view message);
    // Throws VParserException if there is none.
    [[nodiscard]] const NPlatform::Dispatch& Workbook() const;

    std::int32_t scanRows_ = 0;
    std::int32_t scanColumns_ = 0;
    std::unique_ptr<NPlatform::Dispatch> application_;
    std::unique_ptr<NPlatform::Dispatch> workbook_;
    std::unique_ptr<NPlatform::Dispatch> currentWorksheet_;
    NumberMap numbers_;  // of the last read
    bool trimNumbers_ = false;
};

using VExcel2000Heap = VExcelHeap<ExcelGeneration::Excel2000>;
using VExcel2007Heap = VExcelHeap<ExcelGeneration::Excel2007>;
using VExcel2010Heap = VExcelHeap<ExcelGeneration::Excel2010>;

extern template class VExcelHeap<ExcelGeneration::Excel2000>;
extern template class VExcelHeap<ExcelGeneration::Excel2007>;
extern template class VExcelHeap<ExcelGeneration::Excel2010>;

}  // namespace VCSVReader
