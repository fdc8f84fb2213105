#include "workbook/opened_workbook.h"

#include "workbook/relationships.h"
#include "workbook/utf16.h"
#include "workbook/workbook.h"
#include "workbook/xml_part.h"

namespace NWorkbook {

namespace {

constexpr std::uint64_t kMostBytes = std::uint64_t{64} << 20;
constexpr std::string_view kUsualPart = "xl/workbook.xml";

class ContentsReader : public XmlReader {
  public:
    ContentsReader(const Relationships& relationships, WorkbookContents& contents)
        : relationships_(relationships), contents_(contents) {}

    bool Start(const XmlElement& element) override {
        if (element.depth == 1) {
            CheckRoot(element, "workbook");
            return true;
        }
        if (element.depth == 2) {
            if (element.name == "workbookPr") contents_.isFrom1904 = element.IsTrue("date1904");
            return element.name == "sheets";
        }
        if (element.name == "sheet") AddSheet(element);
        return false;
    }

  private:
    void AddSheet(const XmlElement& element) {
        const char* const name = element.Find("name");
        const char* const reference = element.FindReference();
        if (name == nullptr || reference == nullptr) {
            throw PartFault{Fault::Damaged, u"a worksheet has no name or no relationship"};
        }
        std::u16string text = ToUtf16(name);
        text.resize(DecodeEscapes(text.data(), text.size()));
        const auto found = relationships_.find(std::string_view(reference));
        if (found == relationships_.end() || found->second.part.empty()) {
            throw PartFault{Fault::Damaged, u"worksheet '" + text + u"' refers to no part"};
        }
        if (found->second.kind != "worksheet") return;
        if (contents_.worksheets.size() == kMostWorksheets) {
            throw PartFault{Fault::TooLarge, u"there are too many worksheets"};
        }
        const char* const state = element.Find("state");
        const bool isHidden = state != nullptr && std::string_view(state) != "visible";
        contents_.worksheets.push_back({std::move(text), found->second.part, isHidden});
    }

    const Relationships& relationships_;
    WorkbookContents& contents_;
};

std::string FindMainPart(Package& package) {
    std::string part = FindPart(ReadRelationships(package, ""), "officeDocument");
    if (part.empty()) part = kUsualPart;
    if (!package.Has(part)) throw package.Error(u"is not a workbook.");
    return part;
}

}  // namespace

WorkbookContents ReadContents(Package& package) {
    WorkbookContents contents;
    contents.part = FindMainPart(package);
    const Relationships relationships = ReadRelationships(package, contents.part);
    contents.sharedStrings = FindPart(relationships, "sharedStrings");
    ContentsReader reader(relationships, contents);
    ReadXmlPart(package, contents.part, XmlNamespace::Spreadsheet, reader, kMostBytes);
    if (contents.worksheets.empty()) throw package.Error(u"has no worksheet.");
    return contents;
}

const SharedStrings& OpenedWorkbook::SharedStrings() {
    if (!sharedStrings_) sharedStrings_.emplace(package, contents.sharedStrings, *texts, budget);
    return *sharedStrings_;
}

}  // namespace NWorkbook
