#include "api/conversion.h"

#include <memory>
#include <new>

#include "api/excel_detection.h"
#include "api/xls2tki.h"
#include "checks/table_checks.h"
#include "document/import_document.h"
#include "document/xml_exception.h"
#include "log/log_object.h"
#include "platform/files.h"
#include "platform/format.h"
#include "platform/user.h"
#include "sources/csv_heap.h"
#include "sources/default_excel_heap.h"
#include "sources/odbc_heap.h"
#include "sources/parser_exception.h"
#include "xml/text_conv.h"
#include "xml/utf8_serializer.h"

namespace NXls2Tki {

using NPlatform::Format;
using NPlatform::TextBuffer;
using VCSVReader::IExcelHeap;
using VCSVReader::VHeapInterface;
using VCSVReader::VLogObject;

namespace {

constexpr int kPrecision = 15;

void LogUser(VLogObject& log) {
    std::u16string name;
    if (!NPlatform::UserName(name, 255)) return;
    log.LogMessage(Format(1024, u"Current user is: '%s' (result of WIN-API GetUserName())", {name}));
}

std::unique_ptr<VHeapInterface> MakeExcelSource(std::u16string_view path, VLogObject& log,
                                                std::u16string& messageText) {
    std::u16string displayString;
    const VExcelVersion version = DetectExcelVersion(displayString);
    ReportExcelVersion(version, displayString, messageText);
    if (version == ExcelVersion2003) return std::make_unique<VCSVReader::VDefaultExcelHeap>(path, &log);
    return MakeExcelHeap(version, path, log);
}

// Null, and the reason in `messageText`, where nothing reads this kind of input.
std::unique_ptr<VHeapInterface> MakeSource(const ConversionRequest& request, VLogObject& log,
                                           std::u16string& messageText) {
    switch (request.importType) {
        case ImportTypeCSV:
            return std::make_unique<VCSVReader::VDefaultCSVHeap>(request.inputPath, &log, request.separator,
                                                                 request.utf8);
        case ImportTypeExcel:
            return MakeExcelSource(request.inputPath, log, messageText);
        case ImportTypeODBC:
            return std::make_unique<VCSVReader::VDefaultODBCHeap>(request.inputPath, &log);
        default:
            messageText = u"Import type not supported";
            return nullptr;
    }
}

void ReadTable(VHeapInterface& source, std::u16string_view worksheetName) {
    if (auto* const workbook = dynamic_cast<IExcelHeap*>(&source)) {
        workbook->SetScanColumns(10);
        workbook->SetScanRows(0);
        if (!worksheetName.empty()) return workbook->ReadWorksheet(std::u16string(worksheetName));
    }
    source.ReadData();
}

// What the parser of a text left over where a quoted cell was not closed.
std::optional<NChecks::Unfinished> FindUnfinished(const VHeapInterface& source) {
    const auto* const table = dynamic_cast<const VCSVReader::VDefaultCSVHeap*>(&source);
    if (table == nullptr) return std::nullopt;
    std::int32_t line = 0;
    std::int32_t column = 0;
    std::int32_t position = 0;
    table->GetParsePosition(line, column, position);
    if (column == 1 && position == 1) return std::nullopt;
    return NChecks::Unfinished{{static_cast<std::size_t>(line) - 1, static_cast<std::size_t>(column) - 1},
                               table->PendingCell()};
}

// Null where the source reads no worksheet.
const VCSVReader::WorksheetFacts* FactsOf(const VHeapInterface& source) {
    const auto* const worksheets = dynamic_cast<const VCSVReader::WorksheetSource*>(&source);
    return worksheets == nullptr ? nullptr : worksheets->Facts();
}

void FindFindings(VHeapInterface& source, const ConversionRequest& request, bool hasPassed,
                  Outcome& outcome) {
    if (!request.findings) return;
    const bool isText = request.importType == ImportTypeCSV;
    const auto unfinished = FindUnfinished(source);
    const NChecks::Wishes wishes = {.vsgNames = request.vsgNames,
                                    .secondNames = request.secondNames,
                                    .thirdNames = request.thirdNames,
                                    .separator = isText ? request.separator : u'\0',
                                    .isEightBit = isText && !request.utf8,
                                    .worksheet = FactsOf(source)};
    outcome.findings =
        NChecks::FindFindings(*source.GetIterator(), hasPassed, unfinished ? &*unfinished : nullptr, wishes);
}

// With the findings, also where it does not pass.
void CheckTable(VHeapInterface& source, const ConversionRequest& request, Outcome& outcome) {
    try {
        source.CheckConsistency();
    } catch (const VCSVReader::VParserException&) {
        FindFindings(source, request, false, outcome);
        throw;
    }
    FindFindings(source, request, true, outcome);
}

TextBuffer BuildDocument(VHeapInterface& source, const ConversionRequest& request, VLogObject& log,
                         Outcome& outcome, VSimpleXMLCreation::DocumentFacts& facts) {
    source.OpenSource();
    auto* const worksheets = dynamic_cast<VCSVReader::WorksheetSource*>(&source);
    if (request.findings && worksheets != nullptr) worksheets->WantFacts();
    ReadTable(source, request.worksheetName);
    CheckTable(source, request, outcome);
    TextBuffer document;
    VSimpleXMLCreation::BuildImportDocument(*source.GetIterator(), document, log, request.diagnosticInstance,
                                            request.variant, request.vsgNames, request.secondNames,
                                            request.thirdNames, &facts);
    return document;
}

// Obtained here, while an older output is still whole.
void ReserveMemoryToWrite(const TextBuffer& document) {
    if (NTamriskUtil::ReserveUtf8(document.Size())) return;
    throw VSimpleXMLCreation::VSimpleXMLException(
        u"There is not enough memory to write the import document.");
}

// The document is written: a lack of memory makes no failure of that.
void TellEnd(VLogObject& log, std::u16string& messageText) {
    try {
        log.LogMessage(u"Writing to file completed.");
        messageText = log.LastLine();
    } catch (const std::bad_alloc&) {  // the line before stays the last
    }
}

// Whether the whole document is in the output, as far as the system says.
bool WriteDocument(const TextBuffer& document, std::u16string_view path) {
    NPlatform::TextOutputStream stream(path);
    NTamriskUtil::NXml::VUTF8Serializer serializer(stream, kPrecision);
    serializer.Write(document.View());
    return stream.Close() && NTamriskUtil::LastConversionStatus() == NTamriskUtil::ConversionStatus::Done;
}

bool Run(const ConversionRequest& request, VLogObject& log, Outcome& outcome) {
    const std::unique_ptr<VHeapInterface> source = MakeSource(request, log, outcome.messageText);
    if (source == nullptr) return false;
    VSimpleXMLCreation::DocumentFacts facts;
    const TextBuffer document = BuildDocument(*source, request, log, outcome, facts);
    ReserveMemoryToWrite(document);
    log.LogMessage(u"Writing XML structure to file.");
    outcome.messageText = log.LastLine();
    outcome.isWritten = WriteDocument(document, request.outputPath);
    TellEnd(log, outcome.messageText);
    outcome.facts = std::move(facts);
    return true;
}

}  // namespace

bool Convert(const ConversionRequest& request, Outcome& outcome) {
    VLogObject log(request.forwardMessages, request.listener);
    LogUser(log);
    try {
        return Run(request, log, outcome);
    } catch (const VCSVReader::VParserException& exception) {
        outcome.messageText = exception.GetMessage();
    } catch (const VSimpleXMLCreation::VSimpleXMLException& exception) {
        outcome.messageText = exception.GetMessage();
    }
    return false;
}

bool ListWorksheets(std::u16string_view path, std::vector<std::u16string>& names,
                    std::u16string& messageText) {
    VLogObject log(false);
    std::u16string displayString;
    const VExcelVersion version = DetectExcelVersion(displayString);
    if (version == ExcelVersion2003) {
        messageText = u"On using Excel 2003, it is not possible to detect contained Worksheets!";
        return false;
    }
    ReportExcelVersion(version, displayString, messageText);
    const std::unique_ptr<IExcelHeap> workbook = MakeExcelHeap(version, path, log);
    if (workbook == nullptr) return false;
    workbook->OpenWorkbook(false, false, u"");
    workbook->GetWorksheetNames(names);
    return true;
}

}  // namespace NXls2Tki
