#include "workbook/xlsx/opened_workbook.h"

#include "platform/format.h"
#include "workbook/cell_rules.h"
#include "workbook/utf16.h"
#include "workbook/workbook.h"
#include "workbook/xlsx/written_parts.h"

namespace NWorkbook::NXlsx {

namespace {

constexpr std::uint64_t kMostBytes = std::uint64_t{64} << 20;
constexpr std::string_view kUsualPart = "xl/workbook.xml";

class ContentsReader : public XmlReader {
  public:
    explicit ContentsReader(WorkbookContents& contents) : contents_(contents) {}

    bool Start(const XmlElement& element) override {
        if (element.depth == 1) {
            CheckRoot(element, "workbook");
            return true;
        }
        if (element.depth == 2) {
            if (element.name == "workbookPr") contents_.isFrom1904 = element.IsTrue("date1904");
            if (element.name == "fileVersion") TakeVersion(element);
            return element.name == "sheets";
        }
        if (element.name == "sheet") AddSheet(element);
        return false;
    }

  private:
    void TakeVersion(const XmlElement& element) {
        const char* const application = element.Find("appName");
        contents_.isOwn = application != nullptr && application == kApplicationName;
    }

    void AddSheet(const XmlElement& element) {
        const Relationship* const relationship = FindRelationship(element);
        if (relationship != nullptr && relationship->kind != "worksheet") return;
        const char* const name = element.Find("name");
        if (name == nullptr) throw PartFault{Fault::Damaged, u"a worksheet has no name"};
        std::u16string text = ToUtf16(name);
        text.resize(DecodeEscapes(text.data(), text.size()));
        RefuseLongWorksheetName(text);
        if (contents_.worksheets.size() == kMostWorksheets) {
            throw PartFault{Fault::TooLarge, u"there are too many worksheets"};
        }
        const std::string_view part =
            relationship == nullptr ? std::string_view() : std::string_view(relationship->part);
        contents_.worksheets.push_back({std::move(text), part});
    }

    // NULL if there is none.
    [[nodiscard]] const Relationship* FindRelationship(const XmlElement& element) const {
        const char* const reference = element.FindReference();
        if (reference == nullptr) return nullptr;
        const auto found = contents_.relationships.find(std::string_view(reference));
        return found == contents_.relationships.end() ? nullptr : &found->second;
    }

    WorkbookContents& contents_;
};

std::string FindMainPart(Package& package) {
    const Relationships relationships = ReadRelationships(package, "");
    std::string part(FindPart(relationships, "officeDocument"));
    if (part.empty()) part = kUsualPart;
    if (!package.Has(part)) throw package.Error(u"is not a workbook.");
    return part;
}

}  // namespace

WorkbookContents ReadContents(Package& package) {
    WorkbookContents contents;
    contents.part = FindMainPart(package);
    contents.relationships = ReadRelationships(package, contents.part);
    contents.sharedStrings = FindPart(contents.relationships, "sharedStrings");
    ContentsReader reader(contents);
    ReadXmlPart(package, contents.part, XmlNamespace::Spreadsheet, reader, kMostBytes);
    return contents;
}

const SharedStrings& OpenedWorkbook::SharedStrings() {
    if (!sharedStrings_) sharedStrings_.emplace(package, contents.sharedStrings, *texts, budget);
    return *sharedStrings_;
}

const NXlsx::NumberFormats& OpenedWorkbook::NumberFormats() {
    if (!numberFormats_) numberFormats_.emplace(package, FindPart(contents.relationships, "styles"));
    return *numberFormats_;
}

void OpenedWorkbook::ReadWorksheet(const WorkbookContents::Sheet& sheet, XmlReader& reader) {
    if (sheet.part.empty()) {
        throw package.PartError(contents.part,
                                {Fault::Damaged, u"worksheet '" + sheet.name + u"' refers to no part"});
    }
    ReadXmlPart(package, sheet.part, XmlNamespace::Spreadsheet, reader);
}

}  // namespace NWorkbook::NXlsx
