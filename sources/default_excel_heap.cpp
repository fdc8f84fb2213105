#include "sources/default_excel_heap.h"

#include "platform/format.h"
#include "sources/cell_block.h"
#include "sources/cell_name.h"
#include "sources/find_facts.h"
#include "sources/parser_exception.h"
#include "sources/worksheets.h"

namespace VCSVReader {

using NPlatform::Cut;
using NPlatform::Dispatch;
using NPlatform::Format;
using NPlatform::Variant;
using NPlatform::VariantElement;
using NPlatform::VariantType;

namespace {

constexpr std::size_t kMostDescription = Excel::kDescriptionCapacity - 1;

// How many cells are filled before the first that is not; `cellAt` gives those from 1 to `count`. Throws
// VParserException with the pattern, which takes the count, where all are filled.
template <typename CellAt>
std::uint32_t CountFilled(std::int32_t count, std::u16string_view pattern, CellAt cellAt) {
    for (std::int32_t index = 1; index <= count; ++index) {
        const VariantElement cell = cellAt(index);
        const bool isEmptyText = cell.type == VariantType::String && cell.text.empty();
        if (cell.type == VariantType::Empty || isEmptyText) return static_cast<std::uint32_t>(index - 1);
    }
    throw VParserException(Format(256, pattern, {count}));
}

Dispatch OpenFile(const Dispatch& workbooks, std::u16string_view path) {
    try {
        return Excel::Open(workbooks, Excel::CallForm::Long, path, Variant::Missing(), Variant::Missing());
    } catch (const NPlatform::DispatchException& failure) {
        Excel::CloseAll(workbooks);
        throw VParserException(std::u16string(Cut(failure.Description(), kMostDescription)) +
                               u" Please use -o (=ODBC) to convert file to tki.");
    }
}

}  // namespace

void VDefaultExcelHeap::OpenSource() {
    Log(u"Using VDefaultExcelHeap (excel automation) to receive data.");
    V2DVectorHeap::OpenSource();
}

void VDefaultExcelHeap::ReadData() {
    Log(u"Starting excel (Default)");
    Dispatch application;
    try {
        application.Create(Excel::kProgId);
    } catch (const NPlatform::OleException& failure) {
        Log(Format(2048, u"Couldn't start Excel. Reason: %s", {Cut(failure.Message(), kMostDescription)}));
        return;
    }
    try {
        ReadFirstWorksheet(application);
    } catch (const VParserException&) {
        Excel::Quit(application);
        throw;
    }
}

// What is made last is released first: range, worksheet, worksheets, workbook, workbooks.
void VDefaultExcelHeap::ReadFirstWorksheet(const Dispatch& application) {
    Excel::SetVisible(application, false);
    Log(u"opening workbook");
    const Dispatch workbooks = Excel::Workbooks(application);
    Log(u"opening file in workbook");
    const Dispatch workbook = OpenFile(workbooks, FileName());
    const Dispatch worksheets = Excel::Worksheets(workbook);
    CountWorksheets(worksheets);
    Log(u"Accessing first sheet in file");
    const Dispatch worksheet = Excel::Item(worksheets, 1);
    const Dispatch range = ReadArea(worksheet, DataAreaEnd(worksheet));
    Log(u"Closing workbook");
    Excel::CloseWithoutSaving(workbook);
    Log(u"Shutting down excel ...");
    Excel::Quit(application);
    Log(u"Shutting down excel ... done");
}

Dispatch VDefaultExcelHeap::ReadArea(const Dispatch& worksheet, std::u16string_view end) {
    if (end.empty()) {
        if (FactsToFind() != nullptr) FindFacts(worksheet, nullptr, WriteTruncatedNumber, *FactsToFind());
        return {};
    }
    Log(Format(1024, u"Data Area A1:%s", {end}));
    Dispatch range = Excel::Range(worksheet, u"A1", end);
    const CellBlock block(Excel::Value2(range));
    Log(u"Stepping through table");
    NumberBuffer buffer{};
    AddRows(block, *this, [&buffer](std::int32_t, std::int32_t, double number) {
        return WriteTruncatedNumber(number, buffer);
    });
    if (FactsToFind() != nullptr) FindFacts(worksheet, &block, WriteTruncatedNumber, *FactsToFind());
    return range;
}

std::uint32_t VDefaultExcelHeap::CountDataRows(const Dispatch& worksheet) const {
    const CellBlock strip(Excel::Value2(Excel::Range(worksheet, u"A1", u"A16384")));
    return CountFilled(strip.Rows(), u"Found more than %d rows in Excel file ?!?",
                       [&strip](std::int32_t row) { return strip.At(row, 1); });
}

std::uint32_t VDefaultExcelHeap::CountHeaderColumns(const Dispatch& worksheet) const {
    const CellBlock strip(Excel::Value2(Excel::Range(worksheet, u"A1", u"GZ1")));
    return CountFilled(strip.Columns(), u"Found more than %d columns in Excel file ?!?",
                       [&strip](std::int32_t column) { return strip.At(1, column); });
}

std::u16string VDefaultExcelHeap::DataAreaEnd(const Dispatch& worksheet) const {
    const std::uint32_t columns = CountHeaderColumns(worksheet);
    const std::uint32_t rows = CountDataRows(worksheet);
    return columns == 0 || rows == 0 ? std::u16string() : CellName(columns - 1, rows);
}

}  // namespace VCSVReader
