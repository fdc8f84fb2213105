#include "workbook/xlsx/defined_names.h"

#include <iterator>

#include "workbook/name_index.h"
#include "workbook/utf16.h"
#include "workbook/xlsx/text_builder.h"
#include "workbook/xlsx/xml_part.h"

namespace NWorkbook::NXlsx {

namespace {

// What is longer is none that a spreadsheet program would take.
constexpr std::size_t kMostUnitsOfName = 255;
constexpr std::size_t kMostBytesOfName = 7 * kMostUnitsOfName;  // all of them escaped
constexpr std::size_t kMostBytesOfReference = 1024;

std::u16string Decode(std::string_view text) {
    std::u16string units = ToUtf16(text);
    units.resize(DecodeEscapes(units.data(), units.size()));
    return units;
}

// Takes "'it''s'" from the front of the text, as "it's". False: the second quote is missing.
bool TakeQuoted(std::u16string_view& text, std::u16string& name) {
    text.remove_prefix(1);
    for (;;) {
        const std::size_t quote = text.find(u'\'');
        if (quote == std::u16string_view::npos) return false;
        name += text.substr(0, quote);
        text.remove_prefix(quote + 1);
        if (!text.starts_with(u'\'')) return true;
        name += u'\'';
        text.remove_prefix(1);
    }
}

// Takes the worksheet's name and the mark after it from the front of the text. False: there is none.
bool TakeSheetName(std::u16string_view& text, std::u16string& name) {
    if (text.starts_with(u'#')) return false;  // #REF!, an error
    if (text.starts_with(u'\'')) {
        if (!TakeQuoted(text, name)) return false;
    } else {
        name = text.substr(0, text.find(u'!'));
        text.remove_prefix(name.size());
    }
    if (!text.starts_with(u'!')) return false;
    text.remove_prefix(1);
    return true;
}

class DefinedNamesReader : public XmlReader {
  public:
    explicit DefinedNamesReader(const std::vector<WorkbookContents::Sheet>& worksheets) {
        for (std::size_t index = 0; index < worksheets.size(); ++index) {
            worksheets_.Add(worksheets[index].name, index);
        }
    }

    bool Start(const XmlElement& element) override {
        switch (element.depth) {
            case Root:
                return true;
            case List:
                return element.name == "definedNames";
            case Item:
                return element.name == "definedName" && StartName(element);
            default:
                return false;
        }
    }

    void End(int depth) override {
        if (depth != Item) return;
        isInName_ = false;
        if (reference_.size() <= kMostBytesOfReference) AddName();
    }

    void Text(std::string_view text) override {
        if (isInName_ && reference_.size() <= kMostBytesOfReference) reference_ += text;
    }

    std::vector<DefinedName> Take() {
        ofWorkbook_.insert(ofWorkbook_.end(), std::make_move_iterator(ofWorksheets_.begin()),
                           std::make_move_iterator(ofWorksheets_.end()));
        return std::move(ofWorkbook_);
    }

  private:
    enum Depth { Root = 1, List, Item };

    bool StartName(const XmlElement& element) {
        const char* const name = element.Find("name");
        if (name == nullptr || element.IsTrue("hidden")) return false;
        const std::string_view text = name;
        if (text.empty() || text.size() > kMostBytesOfName) return false;
        name_ = Decode(text);
        if (name_.size() > kMostUnitsOfName) return false;
        if (WithoutAsciiCase(name_).starts_with(u"_xlnm.")) return false;
        isOfWorksheet_ = element.Find("localSheetId") != nullptr;
        isInName_ = true;
        reference_.clear();
        return true;
    }

    void AddName() {
        const std::u16string reference = ToUtf16(reference_);
        std::u16string_view rest = reference;
        std::u16string sheetName;
        if (!TakeSheetName(rest, sheetName)) return;
        const std::optional<std::size_t> worksheet = worksheets_.Find(sheetName);
        const std::optional<CellBlock> block = ParseReference(rest);
        if (!worksheet || !block) return;
        if (ofWorkbook_.size() + ofWorksheets_.size() == kMostDefinedNames) {
            throw PartFault{Fault::TooLarge, u"there are too many defined names"};
        }
        (isOfWorksheet_ ? ofWorksheets_ : ofWorkbook_).push_back({name_, *worksheet, *block});
    }

    NameIndex worksheets_;
    std::vector<DefinedName> ofWorkbook_;
    std::vector<DefinedName> ofWorksheets_;
    std::u16string name_;
    std::string reference_;
    bool isOfWorksheet_ = false;
    bool isInName_ = false;
};

}  // namespace

std::vector<DefinedName> ReadDefinedNames(OpenedWorkbook& workbook) {
    DefinedNamesReader reader(workbook.contents.worksheets);
    ReadXmlPart(workbook.package, workbook.contents.part, XmlNamespace::Spreadsheet, reader);
    return reader.Take();
}

}  // namespace NWorkbook::NXlsx
