#include "sources/excel_heap.h"

#include "platform/files.h"
#include "platform/format.h"
#include "platform/user.h"
#include "sources/cell_block.h"
#include "sources/cell_name.h"
#include "sources/data_area.h"
#include "sources/find_facts.h"
#include "sources/parser_exception.h"
#include "sources/worksheets.h"

namespace VCSVReader {

using NPlatform::Cut;
using NPlatform::Dispatch;
using NPlatform::DispatchException;
using NPlatform::Format;
using NPlatform::OleException;
using NPlatform::Variant;

namespace {

struct Differences {
    std::u16string_view announcement;
    Excel::CallForm form;
    bool logsUser;
    bool disablesMacros;
    bool explainsFailures;  // with code, source and help file
    bool checksFile;
    bool logsSteps;
    bool mutesAlerts;  // around deleting and closing; and lets go of the workbook before it quits
};

template <ExcelGeneration kGeneration>
constexpr Differences kIs{};

template <>
constexpr Differences kIs<ExcelGeneration::Excel2000> = {
    .announcement = u"Using Excel automation to receive data.",
    .form = Excel::CallForm::Short,
    .logsUser = false,
    .disablesMacros = false,
    .explainsFailures = false,
    .checksFile = true,
    .logsSteps = false,
    .mutesAlerts = false,
};

template <>
constexpr Differences kIs<ExcelGeneration::Excel2007> = {
    .announcement = u"Using VExcel2007Heap (excel automation) to receive data.",
    .form = Excel::CallForm::Long,
    .logsUser = true,
    .disablesMacros = true,
    .explainsFailures = true,
    .checksFile = true,
    .logsSteps = false,
    .mutesAlerts = false,
};

template <>
constexpr Differences kIs<ExcelGeneration::Excel2010> = {
    .announcement = u"Using VExcel2010Heap (excel automation) to receive data.",
    .form = Excel::CallForm::Long,
    .logsUser = true,
    .disablesMacros = true,
    .explainsFailures = true,
    .checksFile = false,
    .logsSteps = true,
    .mutesAlerts = true,
};

constexpr std::size_t kMessageCapacity = 2048;

std::u16string_view Description(std::u16string_view text) {
    return Cut(text, Excel::kDescriptionCapacity - 1);
}

std::u16string StartFailure(const OleException& failure, bool explain) {
    if (!explain) {
        return Format(kMessageCapacity, u"Couldn't start Excel. Reason: %s",
                      {Description(failure.Message())});
    }
    return Format(kMessageCapacity, u"Couldn't start Excel. (Code: ' 0x%08lx')\nReason: %s",
                  {static_cast<std::uint32_t>(failure.Status()), Description(failure.Message())});
}

std::u16string PlainFailure(const DispatchException& failure) {
    return Format(kMessageCapacity, u"OleDispatch Error: %s", {Description(failure.Description())});
}

// `pattern` takes code, description, source and help file.
std::u16string ExplainedFailure(std::u16string_view pattern, const DispatchException& failure) {
    return Format(
        kMessageCapacity, pattern,
        {std::uint32_t{failure.Code()}, failure.Description(), failure.Source(), failure.HelpFile()});
}

void SetCell(const Dispatch& worksheet, std::uint32_t column, std::uint32_t row, const Variant& value) {
    const std::u16string cell = CellName(column, std::uint64_t{row} + 1);
    Excel::SetValue2(Excel::Range(worksheet, cell, cell), value);
}

// For destructors, which cannot report a failure.
template <typename Step>
void Attempt(Step step) noexcept {
    try {
        step();
    } catch (...) {  // the steps that follow still have to be taken
    }
}

}  // namespace

// ---- Opening and closing ----

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::OpenWorkbook(bool createNew, bool readOnly, std::u16string password) {
    CloseExcel();
    Log(kIs<kGeneration>.announcement);
    LogStep(u"Starting Excel2010 application.");
    if (kIs<kGeneration>.checksFile) V2DVectorHeap::OpenSource();
    if (!StartExcel()) return;
    LogStep(u"Hiding Excel2010 application.");
    QuietExcel();
    LogStep(u"Creating Excel2010 workbook.");
    const Dispatch workbooks = Excel::Workbooks(*application_);
    Log(u"opening file in workbook");
    workbook_ = std::make_unique<Dispatch>();
    if (createNew) {
        CreateFile(workbooks);
    } else {
        OpenFile(workbooks, readOnly, password);
    }
}

template <ExcelGeneration kGeneration>
bool VExcelHeap<kGeneration>::StartExcel() {
    std::u16string user;
    if (kIs<kGeneration>.logsUser && NPlatform::UserName(user, 256)) {
        Log(Format(1024, u"Current user is: '%s'", {user}));
    }
    application_ = std::make_unique<Dispatch>();
    try {
        application_->Create(Excel::kProgId);
    } catch (const OleException& failure) {
        Log(StartFailure(failure, kIs<kGeneration>.explainsFailures));
        return false;
    }
    return true;
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::QuietExcel() {
    Excel::SetVisible(*application_, false);
    Excel::SetDisplayAlerts(*application_, false);
    if (kIs<kGeneration>.disablesMacros) Excel::DisableMacros(*application_);
    Excel::SetEnableEvents(*application_, false);
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::OpenFile(const Dispatch& workbooks, bool readOnly,
                                       std::u16string_view password) {
    try {
        *workbook_ = Excel::Open(workbooks, kIs<kGeneration>.form, FileName(),
                                 Variant::Int16(readOnly ? 1 : 0), Variant::String(password));
    } catch (const DispatchException& failure) {
        if (!kIs<kGeneration>.explainsFailures) return DropWorkbook(workbooks, PlainFailure(failure));
        DropWorkbook(workbooks, ExplainedFailure(
                                    u"Could not read out existing sheets of excel file. (Code: ' 0x%08lx')\n"
                                    u"Reason: %s\nSource: %s\nHelpfile: %s",
                                    failure));
        Log(u"Could not read out existing sheets of excel file!");
    }
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::CreateFile(const Dispatch& workbooks) {
    try {
        *workbook_ = Excel::AddWorkbook(workbooks);
        NPlatform::RemoveFile(FileName());
        Excel::SaveAs(*workbook_, kIs<kGeneration>.form, FileName());
    } catch (const DispatchException& failure) {
        if (!kIs<kGeneration>.explainsFailures) return DropWorkbook(workbooks, PlainFailure(failure));
        Log(
            ExplainedFailure(u"COleDispatchException occured. Reason: (Code: ' 0x%08lx') %s\n Source: %s\n"
                             u"Helpfile: %s",
                             failure));
    }
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::DropWorkbook(const Dispatch& workbooks, std::u16string_view reason) {
    const auto dropped = std::move(workbook_);  // goes after the call, even where that fails
    Log(reason);
    Excel::CloseAll(workbooks);
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::CloseExcel() noexcept {
    constexpr Differences kDifferences = kIs<kGeneration>;
    currentWorksheet_.reset();
    if (workbook_ != nullptr) {
        if (kDifferences.mutesAlerts) Attempt([&] { SetDisplayAlerts(false); });
        Attempt([&] { Excel::CloseWithoutSaving(*workbook_); });
        if (kDifferences.mutesAlerts) Attempt([&] { SetDisplayAlerts(true); });
        if (kDifferences.mutesAlerts) workbook_.reset();
    }
    if (application_ != nullptr) Attempt([&] { Excel::Quit(*application_); });
    workbook_.reset();
    application_.reset();
}

// ---- Reading ----

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::GetWorksheetNames(std::vector<std::u16string>& names) {
    LogStep(u"Looking for worksheets");
    if (application_ == nullptr) return;
    LogStep(u"Creating worksheets object.");
    if (workbook_ == nullptr) return Log(u"No Excel instance available.");
    {
        const Dispatch worksheets = Excel::Worksheets(*workbook_);
        VisitWorksheets(worksheets, CountWorksheets(worksheets), [&names](const Dispatch& worksheet) {
            names.push_back(Excel::Name(worksheet));
            return false;
        });
    }
    LogStep(u"worksheets object destroyed");
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::ReadData() {
    LogStep(u"Read all worksheets");
    std::vector<std::u16string> names;
    GetWorksheetNames(names);
    if (!names.empty()) ReadWorksheet(names.front());
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::ReadWorksheet(const std::u16string& name) {
    LogStep(u"Read specific worksheet");
    const Dispatch worksheets = Excel::Worksheets(Workbook());
    const Dispatch worksheet = ChooseWorksheet(worksheets, CountWorksheets(worksheets), name);
    Log(u"Using sheet: '" + Excel::Name(worksheet) + u"'");
    const std::u16string end = FindDataArea(worksheet, scanRows_, scanColumns_);
    Log(Format(1024, u"Data Area A1:%s", {end}));
    numbers_.Clear();
    Variant value = Excel::Value2(Excel::Range(worksheet, u"A1", end));
    if (value.IsEmpty()) return LookFurther(worksheet, nullptr);
    Log(u"Stepping through table");
    const CellBlock table(std::move(value));
    AddBlock(table);
    LookFurther(worksheet, &table);
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::AddBlock(const CellBlock& block) {
    const NumberWriter write = Writer();
    NumberBuffer buffer{};
    AddRows(block, *this, [&](std::int32_t row, std::int32_t column, double number) {
        numbers_.Append(static_cast<std::uint32_t>(row), static_cast<std::uint32_t>(column), number);
        return write(number, buffer);
    });
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::LookFurther(const Dispatch& worksheet, const CellBlock* table) {
    if (FactsToFind() != nullptr) FindFacts(worksheet, table, Writer(), *FactsToFind());
}

template <ExcelGeneration kGeneration>
bool VExcelHeap<kGeneration>::HasCellNumber(std::uint32_t row, std::uint32_t column) const {
    return numbers_.Find(row, column) != nullptr;
}

template <ExcelGeneration kGeneration>
double VExcelHeap<kGeneration>::GetCellNumber(std::uint32_t row, std::uint32_t column) const {
    const double* const number = numbers_.Find(row, column);
    return number == nullptr ? 0.0 : *number;
}

// ---- Writing ----

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::AddWorksheet(const std::u16string& name) {
    const Dispatch worksheets = Excel::Worksheets(Workbook());
    currentWorksheet_.reset();
    currentWorksheet_ = std::make_unique<Dispatch>(Excel::AddWorksheet(worksheets));
    Excel::SetName(*currentWorksheet_, name);
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::SelectWorksheet(const std::u16string& name) {
    currentWorksheet_.reset();
    Dispatch found = FindWorksheet(Excel::Worksheets(Workbook()), name);
    if (found.HasObject()) currentWorksheet_ = std::make_unique<Dispatch>(std::move(found));
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::SetCellText(std::uint32_t column, std::uint32_t row,
                                          const std::u16string& text) {
    if (currentWorksheet_ != nullptr) SetCell(*currentWorksheet_, column, row, Variant::String(text));
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::SetCellNumber(std::uint32_t row, std::uint32_t column, double number) {
    if (currentWorksheet_ != nullptr) SetCell(*currentWorksheet_, column, row, Variant::Double(number));
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::SaveWorkbook() {
    Excel::Save(Workbook());
}

template <ExcelGeneration kGeneration>
bool VExcelHeap<kGeneration>::DeleteWorksheet(const std::u16string& name) {
    const Dispatch worksheets = Excel::Worksheets(Workbook());
    CountWorksheetsBeforeDelete(worksheets);
    const Dispatch found = FindWorksheet(worksheets, name);
    if (!found.HasObject()) return false;
    if (kIs<kGeneration>.mutesAlerts) SetDisplayAlerts(false);
    Excel::Delete(found);
    if (kIs<kGeneration>.mutesAlerts) SetDisplayAlerts(true);
    return true;
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::DeleteLastWorksheet() {
    const Dispatch worksheets = Excel::Worksheets(Workbook());
    const std::int32_t count = CountWorksheetsBeforeDelete(worksheets);
    Excel::Delete(Excel::Item(worksheets, Variant::Int32(count)));
}

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::SetDisplayAlerts(bool display) {
    if (application_ != nullptr) Excel::SetDisplayAlerts(*application_, display);
}

// ---- Small helpers ----

template <ExcelGeneration kGeneration>
void VExcelHeap<kGeneration>::LogStep(std::u16string_view message) {
    if (kIs<kGeneration>.logsSteps) Log(message);
}

template <ExcelGeneration kGeneration>
const Dispatch& VExcelHeap<kGeneration>::Workbook() const {
    if (workbook_ == nullptr) throw VParserException(u"No Workbook");
    return *workbook_;
}

template class VExcelHeap<ExcelGeneration::Excel2000>;
template class VExcelHeap<ExcelGeneration::Excel2007>;
template class VExcelHeap<ExcelGeneration::Excel2010>;

}  // namespace VCSVReader
