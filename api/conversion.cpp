#include "api/conversion.h"

#include <memory>

#include "api/xls2tki.h"
#include "document/import_document.h"
#include "document/xml_exception.h"
#include "log/log_object.h"
#include "platform/files.h"
#include "platform/format.h"
#include "platform/user.h"
#include "sources/csv_heap.h"
#include "sources/parser_exception.h"
#include "xml/text_conv.h"
#include "xml/utf8_serializer.h"

namespace NXls2Tki {

using NPlatform::Format;
using NPlatform::TextBuffer;
using VCSVReader::VHeapInterface;
using VCSVReader::VLogObject;

namespace {

constexpr int kPrecision = 15;

void LogUser(VLogObject& log) {
    std::u16string name;
    if (!NPlatform::UserName(name, 255)) return;
    log.LogMessage(Format(1024, u"Current user is: '%s' (result of WIN-API GetUserName())", {name}));
}

// Null and a reason when nothing reads this kind of input.
std::unique_ptr<VHeapInterface> MakeSource(const ConversionRequest& request, VLogObject& log,
                                           std::u16string& reason) {
    switch (request.importType) {
        case ImportTypeCSV:
            return std::make_unique<VCSVReader::VDefaultCSVHeap>(request.inputPath, &log, request.separator,
                                                                 request.utf8);
        case ImportTypeExcel:
            reason = u"This version cannot read Excel workbooks yet. Save the table as a CSV file.";
            return nullptr;
        case ImportTypeODBC:
            reason = u"This version cannot read through ODBC yet. Save the table as a CSV file.";
            return nullptr;
        default:
            reason = u"Import type not supported";
            return nullptr;
    }
}

TextBuffer BuildDocument(VHeapInterface& source, const ConversionRequest& request, VLogObject& log) {
    source.OpenSource();
    source.ReadData();
    source.CheckConsistency();
    TextBuffer document;
    VSimpleXMLCreation::BuildImportDocument(*source.GetIterator(), document, log, request.diagnosticInstance,
                                            request.variant, request.vsgNames, request.secondNames,
                                            request.thirdNames);
    return document;
}

// Obtained here, while an older output is still whole.
void ReserveMemoryToWrite(const TextBuffer& document) {
    if (NTamriskUtil::ReserveUtf8(document.Size())) return;
    throw VSimpleXMLCreation::VSimpleXMLException(
        u"There is not enough memory to write the import document.");
}

std::u16string Run(const ConversionRequest& request, VHeapInterface& source, VLogObject& log) {
    const TextBuffer document = BuildDocument(source, request, log);
    ReserveMemoryToWrite(document);
    log.LogMessage(u"Writing XML structure to file.");
    NPlatform::TextOutputStream stream(request.outputPath);
    NTamriskUtil::NXml::VUTF8Serializer serializer(stream, kPrecision);
    serializer.Write(document.View());
    log.LogMessage(u"Writing to file completed.");
    return log.LastLine();
}

}  // namespace

ConversionOutcome Convert(const ConversionRequest& request) {
    VLogObject log(request.forwardMessages);
    LogUser(log);
    std::u16string reason;
    const std::unique_ptr<VHeapInterface> source = MakeSource(request, log, reason);
    if (source == nullptr) return {false, reason};
    try {
        return {true, Run(request, *source, log)};
    } catch (const VCSVReader::VParserException& exception) {
        return {false, exception.GetMessage()};
    } catch (const VSimpleXMLCreation::VSimpleXMLException& exception) {
        return {false, exception.GetMessage()};
    }
}

}  // namespace NXls2Tki
