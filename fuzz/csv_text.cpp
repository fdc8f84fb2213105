// CSV text to document. The input is a byte of options, then the file.
//
//   bit 0     the file is UTF-8
//   bit 1     the names of the diagnostic instance and of the variant are given
//   bits 2-4  the separator
#include <expat.h>

#include <algorithm>
#include <memory>
#include <set>

#include "checks/characters.h"
#include "checks/table_checks.h"
#include "document/import_document.h"
#include "document/xml_exception.h"
#include "fuzz/document_model.h"
#include "fuzz/memory_file.h"
#include "platform/files.h"
#include "sources/csv_heap.h"
#include "sources/parser_exception.h"
#include "xml/text_conv.h"

namespace {

using namespace NFuzz;

constexpr std::u16string_view kSeparators = u";,\t|\"\n\u20AC ";

struct Options {
    bool utf8;
    char16_t separator;
    Names names;
};

Options ReadOptions(std::uint8_t bits) {
    const bool named = (bits & 2) != 0;
    return {(bits & 1) != 0,
            kSeparators[bits >> 2 & 7],
            {named ? u"I\"<&" : u"", named ? u"V" : u"", {u"VSG", u"Both"}, {u"A", u"Both", u"Third"}}};
}

// Texts are safe to show, and places are in the table.
void CheckFindings(VCSVReader::VHeapInterface& source, bool hasPassed, const Options& options) {
    VCSVReader::VHeapIterator& rows = *source.GetIterator();
    std::size_t count = 0;
    for (rows.Reset(); rows.HasMoreRows(); rows.GetNextRow()) ++count;
    const std::set<std::u16string> third = {u"Third"};
    const NChecks::Wishes wishes = {options.names.vsg, options.names.a, third,
                                    options.separator, !options.utf8,   nullptr};
    const NChecks::FindingList list = NChecks::FindFindings(rows, hasPassed, nullptr, wishes);
    for (const NChecks::Finding& finding : list.findings) {
        Require(!finding.text.empty() && std::ranges::none_of(finding.text, NChecks::IsUnseen),
                "the text of a finding can be shown");
        Require(finding.place.row == NChecks::kNowhere || finding.place.row < count,
                "a finding is in the table");
    }
}

std::optional<std::u16string> Convert(const std::u16string& path, const Options& options) {
    VCSVReader::VLogObject log(false);
    VCSVReader::VDefaultCSVHeap source(path, &log, options.separator, options.utf8);
    NPlatform::TextBuffer document;
    try {
        source.OpenSource();
        source.ReadData();
        CheckFindings(source, false, options);
        source.CheckConsistency();
        CheckFindings(source, true, options);
        VSimpleXMLCreation::BuildImportDocument(*source.GetIterator(), document, log,
                                                options.names.diagnosticInstance, options.names.variant,
                                                options.names.vsg, options.names.a, {u"Third"});
    } catch (const VCSVReader::VParserException& exception) {
        Require(!exception.GetMessage().empty(), "a refusal has a message");
        return std::nullopt;
    } catch (const VSimpleXMLCreation::VSimpleXMLException& exception) {
        Require(!exception.GetMessage().empty(), "a refusal has a message");
        return std::nullopt;
    }
    return std::u16string(document.View());
}

std::optional<std::u16string> ConvertPlainly(std::u16string_view text, const Options& options) {
    const std::optional<Table> table = ParseCsv(text, options.separator);
    return table && IsConsistent(*table) ? PrintDocument(*table, options.names) : std::nullopt;
}

std::u16string DecodeEightBit(std::string_view bytes) {
    std::u16string text;
    for (std::size_t index = 0; index < bytes.size(); ++index) {
        if (bytes.substr(index, 2) != "\r\n") text += static_cast<unsigned char>(bytes[index]);
    }
    return text.empty() || text.back() == u'\n' ? text : text + u"\n";
}

std::u16string Decode(const std::u16string& path, std::string_view bytes, bool utf8) {
    if (!utf8) return DecodeEightBit(bytes);
    NPlatform::TextBuffer text;
    const auto result = NPlatform::ReadTextFile(path, NPlatform::TextEncoding::Utf8, text);
    Require(result == NPlatform::TextFileResult::Read, "a file can be read");
    return std::u16string(text.View());
}

// Characters that XML forbids are written as they are.
bool IsAllowedInXml(std::u16string_view text) {
    for (const char16_t unit : text) {
        if (unit < u' ' && unit != u'\t' && unit != u'\n' && unit != u'\r') return false;
        if (unit >= 0xFFFE) return false;
    }
    return true;
}

void CheckIsXml(std::u16string_view document) {
    const char* begin = nullptr;
    const char* end = nullptr;
    NTamriskUtil::WideToUtf8(document.data(), document.data() + document.size(), begin, end);
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate(nullptr),
                                                                              XML_ParserFree);
    Require(XML_Parse(parser.get(), begin, static_cast<int>(end - begin), XML_TRUE) == XML_STATUS_OK,
            "a document is well-formed");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const Options options = ReadOptions(data[0]);
    const std::string_view bytes = Bytes(data + 1, size - 1);
    const MemoryFile file(bytes);
    const std::optional<std::u16string> document = Convert(file.Path(), options);
    Require(document == ConvertPlainly(Decode(file.Path(), bytes, options.utf8), options),
            "a document is what the plainest conversion makes of the table");
    if (document && IsAllowedInXml(*document)) CheckIsXml(*document);
    return 0;
}
