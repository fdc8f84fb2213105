#include "document/import_document.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

#include "document/cell_text.h"
#include "document/row_number.h"
#include "document/table_scan.h"
#include "document/xml_escape.h"
#include "document/xml_exception.h"
#include "document/xml_printer.h"
#include "document/xml_tag.h"
#include "platform/code_page.h"
#include "platform/format.h"

namespace VSimpleXMLCreation {

using VCSVReader::VHeapIterator;
using VCSVReader::VLogObject;
using VCSVReader::VTableRow;

namespace {

using NameSet = std::set<std::u16string>;

constexpr std::size_t kMostOfUnit = 5;  // what a unit becomes when it is escaped

struct ItemTypes {
    const NameSet& vsgNames;
    const NameSet& secondNames;
    const NameSet& thirdNames;

    [[nodiscard]] std::u16string_view TypeOf(const std::u16string& header) const {
        if (vsgNames.contains(header)) return u"VSG";
        return thirdNames.contains(header) || secondNames.contains(header) ? u"A" : u"RI";
    }
};

struct ItemColumn {
    std::size_t index;
    const VXmlTag* model;  // the column's record items are made like it
};

// Turns rows into elements, the header first, and prints those of each data row before it goes on to the
// next.
class DocumentBuilder {
  public:
    DocumentBuilder(NumberNotation notation, std::vector<bool> skipped, const ItemTypes& types,
                    VLogObject& log);

    void AddSkeleton(std::u16string_view diagnosticInstance, std::u16string_view variant);
    void AddHeader(const VTableRow& row);
    void AddDtc(const VTableRow& row);
    // Call it after the last row, once.
    NPlatform::TextBuffer Finish() { return printer_->Finish(); }
    [[nodiscard]] DocumentFacts& Facts() { return facts_; }

  private:
    void AddModels();
    void AddItemColumn(std::size_t column, std::u16string_view header);
    void SetCellText(VXmlTag& tag, std::u16string_view cell);
    void TakeRoom(std::size_t size);
    void RequireFit();
    [[noreturn]] void RefuseRow() const;
    void AddNumber(VXmlTag& dtc, const VTableRow& row);

    VXmlTagRoot root_{u"TAMRISKIMPORT"};
    VXmlTag* itemMappings_ = nullptr;
    VXmlTag* dtcs_ = nullptr;
    DocumentFacts facts_;
    std::vector<bool> skipped_;
    // A row that is never printed; the elements of all others are made like its elements.
    VXmlTag* dtcModel_ = nullptr;
    VXmlTag* errorTextModel_ = nullptr;
    VXmlTag* recordModel_ = nullptr;
    std::vector<ItemColumn> itemColumns_;
    ItemTypes types_;
    VLogObject& log_;
    std::optional<NumberReader> numbers_;
    std::size_t room_ = NPlatform::kMostUnitsToUtf8;  // for the texts of the current row
    bool fits_ = false;                               // whether they fit surely
    std::optional<VXmlPrinter> printer_;
};

DocumentBuilder::DocumentBuilder(NumberNotation notation, std::vector<bool> skipped, const ItemTypes& types,
                                 VLogObject& log)
    : skipped_(std::move(skipped)), types_(types), log_(log) {
    const auto end = std::find(skipped_.begin(), skipped_.end(), true);
    facts_.notation = notation;
    facts_.columns = skipped_.size();
    facts_.endColumn = static_cast<std::size_t>(end - skipped_.begin());
}

// The caller's names are the only values that may hold a double quote, which would end the attribute early.
void SetNameAttribute(VXmlTag& tag, std::u16string_view attribute, std::u16string_view name) {
    std::u16string escaped(EscapedSize(name), u'\0');
    CopyEscaped(name, escaped.data());
    for (std::size_t quote = 0; (quote = escaped.find(u'"', quote)) != std::u16string::npos;) {
        escaped.replace(quote, 1, u"&quot;");
    }
    tag.SetAttribute(attribute, escaped, false);
}

void DocumentBuilder::AddSkeleton(std::u16string_view diagnosticInstance, std::u16string_view variant) {
    root_.SetAttribute(u"dtdfilevers", u"1.5.2", false);
    root_.SetAttribute(u"xmlns:xsi", u"http://www.w3.org/2001/XMLSchema-instance", false);
    VXmlTag* const collection = root_.AddChild(u"IMPORTDOC")->AddChild(u"DTCCOLLECTION");
    VXmlTag* const service = collection->AddChild(u"SERVICEMAPPING");
    if (!diagnosticInstance.empty()) SetNameAttribute(*service, u"diaginstance", diagnosticInstance);
    if (!variant.empty()) SetNameAttribute(*service, u"variant", variant);
    itemMappings_ = collection->AddChild(u"RECORDTEMPLATEMAPPING");
    dtcs_ = collection->AddChild(u"DTCS");
}

void DocumentBuilder::AddHeader(const VTableRow& row) {
    facts_.layout = DetectLayout(row);
    numbers_.emplace(facts_.layout, facts_.notation);
    AddModels();
    for (std::size_t column = 0; column < row.size(); ++column) {
        if (skipped_[column]) continue;
        const std::u16string_view header = Trim(row[column]);
        if (header.empty()) {
            skipped_[column] = true;
            facts_.columnsWithoutHeader.push_back(column);
            log_.LogMessage(NPlatform::Format(1024, u"Skipping column index '%d' as header is empty!",
                                              {static_cast<std::int32_t>(column)}));
        } else if (column >= FirstItemColumn(facts_.layout)) {
            AddItemColumn(column, header);
        }
    }
    facts_.itemColumns = itemColumns_.size();
    facts_.smallestNumber = std::numeric_limits<std::uint32_t>::max();
    dtcs_->DropChildren();
    printer_.emplace(root_, *dtcs_);
    RequireFit();
}

void DocumentBuilder::AddModels() {
    dtcModel_ = dtcs_->AddChild(u"DTC");
    errorTextModel_ = dtcModel_->AddChild(u"ERRORTEXT");
    recordModel_ = dtcModel_->AddChild(u"RECORD");
}

// Items are numbered from 1, by column.
void DocumentBuilder::AddItemColumn(std::size_t column, std::u16string_view header) {
    const auto number = static_cast<std::int32_t>(column - FirstItemColumn(facts_.layout) + 1);
    const std::u16string id = NPlatform::Format(16, u"_%d", {number});
    VXmlTag* const mapping = itemMappings_->AddChild(u"ITEMMAPPING");
    mapping->SetAttribute(u"id", id, true);
    mapping->SetAttribute(u"type", types_.TypeOf(std::u16string(header)), false);
    SetCellText(*mapping, header);
    VXmlTag* const model = recordModel_->AddChild(u"RECORDITEM");
    model->SetAttribute(u"itemmappingref", id, true);
    itemColumns_.push_back({column, model});
    facts_.itemHeaders.emplace_back(header);
}

void DocumentBuilder::AddDtc(const VTableRow& row) {
    ++facts_.rows;
    fits_ = kMostOfUnit * row.TextSize() <= room_;
    VXmlTag* const dtc = dtcs_->AddChildLike(*dtcModel_);
    VXmlTag* const errorText = dtc->AddChildLike(*errorTextModel_);
    VXmlTag* const record = dtc->AddChildLike(*recordModel_);
    AddNumber(*dtc, row);
    const std::size_t description = FirstItemColumn(facts_.layout) - 1;
    if (description < row.size() && !skipped_[description]) SetCellText(*errorText, row[description]);
    for (const ItemColumn& column : itemColumns_) {
        const std::u16string_view cell = row[column.index];
        if (cell.empty()) continue;
        SetCellText(*record->AddChildLike(*column.model), cell);
        ++facts_.items;
    }
    printer_->PrintChildren();
    RequireFit();
}

// A text that does not fit is found before its memory is taken. Rows that fit whatever is in their cells, and
// that is nearly all, are not looked at cell by cell.
void DocumentBuilder::SetCellText(VXmlTag& tag, std::u16string_view cell) {
    if (!fits_) TakeRoom(EscapedSize(cell));
    tag.ReferToText(cell);
}

void DocumentBuilder::TakeRoom(std::size_t size) {
    if (size > room_) RefuseRow();
    room_ -= size;
}

// With its markup, after the row was printed.
void DocumentBuilder::RequireFit() {
    if (printer_->PrintedSize() > NPlatform::kMostUnitsToUtf8) RefuseRow();
    room_ = NPlatform::kMostUnitsToUtf8 - printer_->PrintedSize();
}

void DocumentBuilder::RefuseRow() const {
    throw VSimpleXMLException(NPlatform::Format(
        256,
        u"The import document is too large, at most %d characters can be written. Row [%d] does not fit.",
        {static_cast<std::int32_t>(NPlatform::kMostUnitsToUtf8), static_cast<std::int32_t>(facts_.rows)}));
}

// With two number columns, the second one completes the number: without it there is none.
void DocumentBuilder::AddNumber(VXmlTag& dtc, const VTableRow& row) {
    const std::size_t last = NumberColumns(facts_.layout) - 1;
    if (skipped_[last]) return;
    const std::int32_t number = numbers_->NumberOf(row, skipped_[0]);
    dtc.SetNumberAttribute(u"number", number);
    facts_.smallestNumber = std::min(facts_.smallestNumber, static_cast<std::uint32_t>(number));
    facts_.largestNumber = std::max(facts_.largestNumber, static_cast<std::uint32_t>(number));
}

}  // namespace

void BuildImportDocument(VHeapIterator& iterator, NPlatform::TextBuffer& result, VLogObject& log,
                         std::u16string_view diagnosticInstance, std::u16string_view variant,
                         const NameSet& vsgNames, const NameSet& secondNames, const NameSet& thirdNames,
                         DocumentFacts* facts) {
    const NumberNotation notation = ScanNumberNotation(iterator);
    DocumentBuilder builder(notation, FindSkippedColumns(iterator, log), {vsgNames, secondNames, thirdNames},
                            log);
    builder.AddSkeleton(diagnosticInstance, variant);
    iterator.Reset();
    while (iterator.HasMoreRows()) {
        const VTableRow& row = *iterator.GetNextRow();
        if (iterator.IsHeaderRow()) {
            builder.AddHeader(row);
        } else {
            builder.AddDtc(row);
        }
    }
    result = builder.Finish();
    if (facts == nullptr) return;
    *facts = std::move(builder.Facts());
    facts->smallestNumber = std::min(facts->smallestNumber, facts->largestNumber);
}

}  // namespace VSimpleXMLCreation
