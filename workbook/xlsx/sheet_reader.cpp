#include "workbook/xlsx/sheet_reader.h"

#include <algorithm>
#include <cstring>

#include "workbook/range_address.h"
#include "workbook/utf16.h"
#include "workbook/xlsx/cell_value.h"
#include "workbook/xlsx/date_serial.h"
#include "workbook/xlsx/xml_text.h"

namespace NWorkbook::NXlsx {

namespace {

enum class ValueType : std::uint8_t { Number, SharedText, Text, InlineText, Bool, Error, Date, Unknown };

struct TypeName {
    const char* name;
    ValueType type;
};

constexpr TypeName kTypes[] = {
    {"s", ValueType::SharedText},
    {"n", ValueType::Number},
    {"str", ValueType::Text},
    {"b", ValueType::Bool},
    {"inlineStr", ValueType::InlineText},
    {"e", ValueType::Error},
    {"d", ValueType::Date},
};

ValueType TypeOf(const char* name) {
    for (const TypeName& known : kTypes) {
        if (std::strcmp(known.name, name) == 0) return known.type;
    }
    return ValueType::Unknown;
}

// The characters of a value that is not a text: more than the longest number has.
class ValueText {
  public:
    static constexpr std::size_t kCapacity = 512;

    void Clear() { size_ = 0; }
    // False: there is no room.
    bool Append(std::string_view text) {
        if (text.size() > kCapacity - size_) return false;
        std::memcpy(characters_ + size_, text.data(), text.size());
        size_ += text.size();
        return true;
    }
    // Without the blanks around it.
    [[nodiscard]] std::string_view Trimmed() const {
        std::string_view text(characters_, size_);
        while (!text.empty() && IsXmlBlank(text.front())) text.remove_prefix(1);
        while (!text.empty() && IsXmlBlank(text.back())) text.remove_suffix(1);
        return text;
    }

  private:
    char characters_[kCapacity]{};
    std::size_t size_ = 0;
};

class SheetReader : public XmlReader {
  public:
    SheetReader(OpenedWorkbook& workbook, CellTable& cells)
        : workbook_(workbook),
          sharedStrings_(workbook.SharedStrings()),
          numberFormats_(workbook.NumberFormats()),
          cells_(cells),
          text_(*workbook.texts, workbook.budget),
          unitsLeft_(MostUnitsOfWorksheet(workbook.package.BytesOfFile())) {}

    bool Start(const XmlElement& element) override {
        RefuseInValue();
        switch (element.depth) {
            case Root:
                CheckRoot(element, "worksheet");
                return true;
            case SheetData:
                return element.name == "sheetData";
            case Row:
                return element.name == "row" && StartRow(element);
            case CellElement:
                return element.name == "c" && StartCell(element);
            case Value:
                return StartValue(element);
            default:
                return StartText(element);
        }
    }

    void End(int depth) override {
        if (takesText_) text_.EndElement();
        takesValue_ = takesText_ = false;
        if (depth == CellElement) EndCell();
    }

    void LeaveOutForeign() override { RefuseInValue(); }

    void Text(std::string_view text) override {
        if (takesText_) {
            text_.Append(text);
        } else if (takesValue_ && !value_.Append(text)) {
            FailCell(u"has a value that is too long");
        }
    }

  private:
    enum Depth { Root = 1, SheetData, Row, CellElement, Value };

    bool StartRow(const XmlElement& element) {
        const char* const number = element.Find("r");
        const std::optional<std::size_t> row = number == nullptr ? row_ + std::size_t{1} : ParseIndex(number);
        if (!row || *row == 0 || *row > kLastRow) {
            throw PartFault{Fault::Damaged, number == nullptr
                                                ? std::u16string(u"there are too many rows")
                                                : u"there is no row '" + ToUtf16(number) + u"'"};
        }
        row_ = static_cast<std::uint32_t>(*row);
        place_ = {row_, 0};
        return true;
    }

    bool StartCell(const XmlElement& element) {
        const char* name = nullptr;
        const char* style = "";
        type_ = ValueType::Number;
        for (const char* const* next = element.attributes; *next != nullptr; next += 2) {
            if (std::strcmp(next[0], "r") == 0) name = next[1];
            if (std::strcmp(next[0], "t") == 0) type_ = TypeOf(next[1]);
            if (std::strcmp(next[0], "s") == 0) style = next[1];
        }
        PlaceCell(name);
        if (type_ == ValueType::Unknown) FailCell(u"is of an unknown type");
        hasValue_ = hasOwnText_ = hasFormula_ = false;
        showsDate_ = type_ == ValueType::Date || numberFormats_.ShowsDate(ParseIndex(style).value_or(0));
        value_.Clear();
        return true;
    }

    void PlaceCell(const char* name) {
        if (name != nullptr) {
            const std::optional<CellPlace> place = ParseCellName(name);
            if (!place) throw PartFault{Fault::Damaged, u"there is no cell '" + ToUtf16(name) + u"'"};
            place_ = *place;
        } else if (place_.column == kLastColumn) {
            throw PartFault{Fault::Damaged, u"there are too many cells in a row"};
        } else {
            ++place_.column;
        }
    }

    // Of several values the first one counts, and a text of the cell's own more than a value beside it.
    bool StartValue(const XmlElement& element) {
        hasFormula_ = hasFormula_ || element.name == "f";
        const bool isOwnText = type_ == ValueType::InlineText && element.name == "is" && !hasOwnText_;
        if (!isOwnText && (hasValue_ || element.name != "v")) return false;
        if (isOwnText) text_.Discard();
        hasValue_ = true;
        hasOwnText_ = isOwnText;
        takesText_ = !isOwnText && (type_ == ValueType::Text || type_ == ValueType::InlineText);
        takesValue_ = !isOwnText && !takesText_;
        if (takesText_) text_.BeginElement(element.keepsBlanks);
        return true;
    }

    // Text after an element would be lost, or read as one number with the text before it.
    void RefuseInValue() const {
        if (takesValue_ || takesText_) FailCell(u"has an element within its value");
    }

    bool StartText(const XmlElement& element) {
        takesText_ = HoldsText(element.name);
        if (takesText_) text_.BeginElement(element.keepsBlanks);
        return IsTextElement(element.depth - Value, element.name);
    }

    void EndCell() {
        if (!hasValue_ && !hasFormula_) return;
        Cell cell{place_.row, place_.column, CellType::Nothing, {}};
        if (hasValue_ && (type_ == ValueType::Text || type_ == ValueType::InlineText)) {
            SetText(cell, text_.Close());
        } else if (const std::string_view text = value_.Trimmed(); !text.empty()) {
            SetValue(cell, text);
        }
        if (cell.type == CellType::Nothing && !hasFormula_) return;
        Spend(workbook_.budget.cells, 1, u"the workbook has too many cells");
        if (cell.type == CellType::Nothing) {
            return cells_.Note({place_.row, place_.column, CellNote::UnsavedFormula});
        }
        cells_.Add(cell);
        if (showsDate_ && cell.type == CellType::Number) {
            cells_.Note({place_.row, place_.column, CellNote::ShowsDate});
        }
    }

    void SetValue(Cell& cell, std::string_view text) {
        switch (type_) {
            case ValueType::SharedText:
                SetText(cell, SharedText(text));
                break;
            case ValueType::Bool:
                cell.type = CellType::Bool;
                cell.truth = Known(ParseBool(text), text);
                break;
            case ValueType::Error:
                cell.type = CellType::Error;
                cell.error = Known(ParseError(text), text);
                break;
            case ValueType::Date:
                cell.type = CellType::Number;
                cell.number = Known(DateSerial(text, workbook_.contents.isFrom1904), text);
                break;
            default:
                cell.type = CellType::Number;
                cell.number = Known(ParseNumber(text), text);
        }
    }

    TextPlace SharedText(std::string_view text) {
        const TextPlace place = sharedStrings_.Find(Known(ParseIndex(text), text));
        if (place == nullptr) FailCell(u"refers to shared string " + ToUtf16(text) + u", which there is not");
        return place;
    }

    void SetText(Cell& cell, TextPlace text) {
        Spend(unitsLeft_, TextAt(text).size(), u"the texts of the cells have too many characters");
        cell.type = CellType::Text;
        cell.text = text;
    }

    template <typename T>
    [[nodiscard]] T Known(const std::optional<T>& value, std::string_view text) const {
        if (!value) FailCell(u"has the value '" + ToUtf16(text) + u"', which is none of its type");
        return *value;
    }

    [[noreturn]] void FailCell(std::u16string_view what) const {
        throw PartFault{Fault::Damaged,
                        u"cell " + CellName(place_.row, place_.column) + u" " + std::u16string(what)};
    }

    OpenedWorkbook& workbook_;
    const SharedStrings& sharedStrings_;
    const NumberFormats& numberFormats_;
    CellTable& cells_;
    TextBuilder text_;
    ValueText value_;
    std::size_t unitsLeft_;
    std::uint32_t row_ = 0;
    CellPlace place_{};
    ValueType type_ = ValueType::Number;
    bool hasValue_ = false;
    bool hasOwnText_ = false;
    bool hasFormula_ = false;
    bool showsDate_ = false;
    bool takesValue_ = false;
    bool takesText_ = false;
};

}  // namespace

void ReadSheet(OpenedWorkbook& workbook, const WorkbookContents::Sheet& sheet, CellTable& cells) {
    SheetReader reader(workbook, cells);
    workbook.ReadWorksheet(sheet, reader);
}

}  // namespace NWorkbook::NXlsx
