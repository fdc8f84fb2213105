#include "workbook/xlsx/shared_strings.h"

#include <algorithm>

namespace NWorkbook::NXlsx {

bool IsTextElement(int level, std::string_view name) {
    return HoldsText(name) || (level == 1 && name == "r");
}

class SharedStrings::Reader : public XmlReader {
  public:
    Reader(SharedStrings& strings, TextStore& store, Budget& budget)
        : strings_(strings), text_(store, budget), budget_(budget) {}

    bool Start(const XmlElement& element) override {
        RefuseInText();
        if (element.depth == 1) {
            CheckRoot(element, "sst");
            return true;
        }
        if (element.depth == kItem) return element.name == "si";
        isText_ = HoldsText(element.name);
        if (isText_) text_.BeginElement(element.keepsBlanks);
        return IsTextElement(element.depth - kItem, element.name);
    }

    void End(int depth) override {
        if (isText_) text_.EndElement();
        isText_ = false;
        if (depth != kItem) return;
        Spend(budget_.sharedStrings, 1, u"there are too many shared strings");
        strings_.Add(text_.Close());
    }

    void LeaveOutForeign() override { RefuseInText(); }

    void Text(std::string_view text) override {
        if (isText_) text_.Append(text);
    }

  private:
    static constexpr int kItem = 2;  // depth

    // Text after an element would be lost.
    void RefuseInText() const {
        if (isText_) throw PartFault{Fault::Damaged, u"a shared string has an element within its text"};
    }

    SharedStrings& strings_;
    TextBuilder text_;
    Budget& budget_;
    bool isText_ = false;
};

SharedStrings::SharedStrings(Package& package, std::string_view part, TextStore& store, Budget& budget) {
    if (part.empty() || !package.Has(part)) return;
    Reader reader(*this, store, budget);
    ReadXmlPart(package, part, XmlNamespace::Spreadsheet, reader);
}

void SharedStrings::Add(TextPlace text) {
    if (size_ == texts_.Size()) texts_.Grow(std::max<std::size_t>(256, 2 * size_));
    texts_.Data()[size_++] = text;
}

}  // namespace NWorkbook::NXlsx
