#include "workbook/xlsx/not_kept.h"

#include <algorithm>
#include <set>

#include "workbook/xlsx/part_name.h"
#include "workbook/xlsx/xml_part.h"

namespace NWorkbook::NXlsx {

namespace {

// What a part or element means to the user; no words: nothing that would be missed.
struct Meaning {
    std::string_view name;
    std::u16string_view words;
};

// By the beginning of the part's key.
constexpr Meaning kParts[] = {
    {"[content_types].xml", u""},
    {"docprops/custom", u"document properties"},
    {"docprops/", u""},
    {"xl/theme/", u""},
    {"xl/styles.xml", u""},
    {"xl/calcchain.xml", u""},  // the order in which formulas are calculated
    {"xl/chart", u"charts"},
    {"xl/drawings/", u"drawings"},
    {"xl/media/", u"pictures"},
    {"xl/vba", u"macros"},
    {"xl/macrosheets/", u"macros"},
    {"xl/dialogsheets/", u"dialogue sheets"},
    {"xl/comments", u"comments"},
    {"xl/threadedcomments/", u"comments"},
    {"xl/persons/", u"comments"},
    {"xl/tables/", u"tables"},
    {"xl/pivot", u"pivot tables"},
    {"xl/slicer", u"slicers"},
    {"xl/externallinks/", u"links to other workbooks"},
    {"xl/connections", u"data connections"},
    {"xl/querytables/", u"data connections"},
    {"xl/ctrlprops/", u"controls"},
    {"xl/activex/", u"controls"},
    {"xl/embeddings/", u"embedded objects"},
    {"xl/printersettings/", u"print settings"},
    {"xl/richdata/", u"rich values"},
    {"xl/metadata", u"rich values"},
    {"customxml/", u"custom XML"},
};

constexpr Meaning kWorkbookElements[] = {
    {"fileVersion", u""},
    {"workbookPr", u""},
    {"bookViews", u""},
    {"sheets", u""},
    {"calcPr", u""},
    {"definedNames", u"defined names"},
    {"externalReferences", u""},  // parts of their own
    {"pivotCaches", u""},
    {"extLst", u""},
    {"fileRecoveryPr", u""},
    {"workbookProtection", u"protection"},
    {"fileSharing", u"protection"},
};

constexpr Meaning kSheetElements[] = {
    {"dimension", u""},
    {"sheetFormatPr", u""},
    {"sheetData", u""},
    {"sheetPr", u""},
    {"sheetViews", u""},
    {"pageMargins", u""},
    {"phoneticPr", u""},
    {"sheetCalcPr", u""},
    {"ignoredErrors", u""},
    {"drawing", u""},
    {"legacyDrawing", u""},
    {"tableParts", u""},  // parts of their own
    {"mergeCells", u"merged cells"},
    {"conditionalFormatting", u"conditional formats"},
    {"dataValidations", u"data validation"},
    {"hyperlinks", u"hyperlinks"},
    {"autoFilter", u"filters"},
    {"sheetProtection", u"protection"},
    {"protectedRanges", u"protection"},
    {"printOptions", u"print settings"},
    {"pageSetup", u"print settings"},
    {"headerFooter", u"print settings"},
    {"rowBreaks", u"print settings"},
    {"colBreaks", u"print settings"},
};

class Findings {
  public:
    void Add(std::u16string_view words) {
        if (words.empty() || std::find(words_.begin(), words_.end(), words) != words_.end()) return;
        words_.push_back(words);
    }

    template <std::size_t Size>
    void AddElement(const Meaning (&meanings)[Size], std::string_view name) {
        const auto* const found =
            std::find_if(std::begin(meanings), std::end(meanings),
                         [name](const Meaning& meaning) { return meaning.name == name; });
        Add(found == std::end(meanings) ? u"other settings" : found->words);
    }

    [[nodiscard]] std::u16string Joined() const {
        std::u16string text;
        for (const std::u16string_view words : words_) text.append(text.empty() ? u"" : u", ").append(words);
        return text;
    }

  private:
    std::vector<std::u16string_view> words_;
};

class FindingReader : public XmlReader {
  public:
    explicit FindingReader(Findings& findings) : findings_(findings) {}

  protected:
    Findings& findings_;
};

// An element without attributes counts when there is something in it.
class WorkbookScan : public FindingReader {
  public:
    using FindingReader::FindingReader;

    bool Start(const XmlElement& element) override {
        const bool isEmpty = element.depth == 2 && *element.attributes == nullptr;
        if (element.depth == 2) name_ = element.name;
        if (element.depth > 1 && !isEmpty) findings_.AddElement(kWorkbookElements, name_);
        return element.depth == 1 || isEmpty;
    }

  private:
    std::string name_;  // of the element at depth 2
};

class SharedStringsScan : public FindingReader {
  public:
    using FindingReader::FindingReader;

    bool Start(const XmlElement& element) override {
        if (element.depth > 2 && element.name != "t") findings_.Add(u"rich text");
        return element.depth <= 2;
    }
};

class SheetScan : public FindingReader {
  public:
    using FindingReader::FindingReader;

    bool Start(const XmlElement& element) override {
        switch (element.depth) {
            case 1:
                return true;
            case 2:
                if (element.name != "cols") findings_.AddElement(kSheetElements, element.name);
                return element.name == "sheetData" || element.name == "cols";
            case 3:
                LookAtRow(element);
                return element.name == "row";
            case 4:
                LookAtCell(element);
                return true;
            case 5:
                if (element.name == "f") findings_.Add(u"formulas");
                return element.name == "is";
            default:
                if (element.name != "t") findings_.Add(u"rich text");
                return false;
        }
    }

  private:
    // Or at a column, which has the same attributes.
    void LookAtRow(const XmlElement& row) {
        if (row.IsTrue("customWidth")) findings_.Add(u"column widths");
        if (row.IsTrue("customHeight")) findings_.Add(u"row heights");
        if (row.IsTrue("hidden")) findings_.Add(u"hidden rows or columns");
        LookAtStyle(row);
    }

    void LookAtCell(const XmlElement& cell) {
        const char* const type = cell.Find("t");
        if (type != nullptr && std::string_view(type) == "e") findings_.Add(u"error values");
        LookAtStyle(cell);
    }

    void LookAtStyle(const XmlElement& element) {
        const char* const style = element.Find(element.name == "col" ? "style" : "s");
        if (style != nullptr && std::string_view(style) != "0") findings_.Add(u"formats");
    }
};

void LookAtParts(const OpenedWorkbook& workbook, Findings& findings) {
    std::set<std::string_view> read = {workbook.contents.part, workbook.contents.sharedStrings};
    for (const WorkbookContents::Sheet& sheet : workbook.contents.worksheets) read.insert(sheet.part);
    std::vector<std::string> plain;
    plain.reserve(read.size());
    for (const std::string_view part : read) plain.push_back(PartKey(part));
    std::sort(plain.begin(), plain.end());
    for (const auto& entry : workbook.package.Parts()) {
        const std::string& part = entry.first;
        if (part.ends_with(".rels") || std::binary_search(plain.begin(), plain.end(), part)) continue;
        const auto* const known =
            std::find_if(std::begin(kParts), std::end(kParts),
                         [&part](const Meaning& meaning) { return part.starts_with(meaning.name); });
        findings.Add(known == std::end(kParts) ? u"other parts" : known->words);
    }
}

void LookAtWorkbook(OpenedWorkbook& workbook, Findings& findings) {
    const WorkbookContents& contents = workbook.contents;
    if (contents.isFrom1904) findings.Add(u"dates that count from 1904");
    if (std::any_of(contents.worksheets.begin(), contents.worksheets.end(),
                    [](const WorkbookContents::Sheet& sheet) { return sheet.isHidden; })) {
        findings.Add(u"hidden worksheets");
    }
    WorkbookScan scan(findings);
    ReadXmlPart(workbook.package, contents.part, XmlNamespace::Spreadsheet, scan);
}

}  // namespace

std::u16string FindWhatIsNotKept(OpenedWorkbook& workbook) {
    Findings findings;
    LookAtParts(workbook, findings);
    LookAtWorkbook(workbook, findings);
    if (workbook.package.Has(workbook.contents.sharedStrings)) {
        SharedStringsScan scan(findings);
        ReadXmlPart(workbook.package, workbook.contents.sharedStrings, XmlNamespace::Spreadsheet, scan);
    }
    std::set<std::string_view> seen;
    for (const WorkbookContents::Sheet& sheet : workbook.contents.worksheets) {
        if (!seen.insert(sheet.part).second) continue;
        SheetScan scan(findings);
        workbook.ReadWorksheet(sheet, scan);
    }
    return findings.Joined();
}

}  // namespace NWorkbook::NXlsx
