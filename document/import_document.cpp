#include "document/import_document.h"

#include <vector>

#include "document/cell_text.h"
#include "document/dtc_convert.h"
#include "document/table_scan.h"
#include "document/xml_exception.h"
#include "document/xml_tag.h"
#include "platform/code_page.h"
#include "platform/format.h"

namespace VSimpleXMLCreation {

using VCSVReader::VHeapIterator;
using VCSVReader::VLogObject;
using VCSVReader::VTableRow;

namespace {

using NameSet = std::set<std::u16string>;

struct ItemTypes {
    const NameSet& vsgNames;
    const NameSet& secondNames;
    const NameSet& thirdNames;

    [[nodiscard]] std::u16string_view TypeOf(const std::u16string& header) const {
        if (vsgNames.contains(header)) return u"VSG";
        return thirdNames.contains(header) || secondNames.contains(header) ? u"A" : u"RI";
    }
};

// Upper case, and "0X" as the converter wants it.
void CopyNumberText(std::u16string_view cell, std::u16string& text) {
    text.assign(cell);
    for (char16_t& unit : text) {
        unit = UpperCase(unit);
        if (unit == u'X') unit = u'x';
    }
}

std::uint32_t PackJ1939(std::uint32_t spn, std::uint32_t fmi) {
    return fmi | (spn & 0xFF00) | (spn >> 11 & 0xE0) | (spn & 0xFF) << 16;
}

// Turns rows into elements, the header first.
class DocumentBuilder {
  public:
    DocumentBuilder(NumberNotation notation, std::vector<bool> skipped, const ItemTypes& types,
                    VLogObject& log)
        : notation_(notation),
          skipped_(std::move(skipped)),
          itemModels_(skipped_.size()),
          types_(types),
          log_(log) {}

    void AddSkeleton(std::u16string_view diagnosticInstance, std::u16string_view variant);
    void AddHeader(const VTableRow& row);
    void AddDtc(const VTableRow& row);
    [[nodiscard]] NPlatform::TextBuffer Print() const { return root_.Print(); }
    [[nodiscard]] std::size_t PrintedSize() const { return root_.PrintedSize(); }

  private:
    [[nodiscard]] std::u16string ItemId(std::size_t column) const;
    void AddItemMapping(std::size_t column, std::u16string_view header);
    void AddItem(VXmlTag& record, std::size_t column, std::u16string_view cell);
    void AddNumber(VXmlTag& dtc, const VTableRow& row);
    std::uint32_t BaseDtc(std::u16string_view cell);
    std::uint32_t Convert(std::u16string_view cell, NumberNotation notation);

    VXmlTagRoot root_{u"TAMRISKIMPORT"};
    VXmlTag* itemMappings_ = nullptr;
    VXmlTag* dtcs_ = nullptr;
    TableLayout layout_ = TableLayout::SingleNumber;
    NumberNotation notation_;
    std::vector<bool> skipped_;
    std::vector<VXmlTag*>
        itemModels_;  // for each column its first record item, which the others are made like
    ItemTypes types_;
    VLogObject& log_;
    std::u16string numberText_;
};

void DocumentBuilder::AddSkeleton(std::u16string_view diagnosticInstance, std::u16string_view variant) {
    root_.SetAttribute(u"dtdfilevers", u"1.5.2", false);
    root_.SetAttribute(u"xmlns:xsi", u"http://www.w3.org/2001/XMLSchema-instance", false);
    VXmlTag* const collection = root_.AddChild(u"IMPORTDOC")->AddChild(u"DTCCOLLECTION");
    VXmlTag* const service = collection->AddChild(u"SERVICEMAPPING");
    if (!diagnosticInstance.empty()) service->SetAttribute(u"diaginstance", diagnosticInstance, true);
    if (!variant.empty()) service->SetAttribute(u"variant", variant, true);
    itemMappings_ = collection->AddChild(u"RECORDTEMPLATEMAPPING");
    dtcs_ = collection->AddChild(u"DTCS");
}

void DocumentBuilder::AddHeader(const VTableRow& row) {
    layout_ = DetectLayout(row);
    for (std::size_t column = 0; column < row.size(); ++column) {
        if (skipped_[column]) continue;
        const std::u16string_view header = Trim(row[column]);
        if (header.empty()) {
            skipped_[column] = true;
            log_.LogMessage(NPlatform::Format(1024, u"Skipping column index '%d' as header is empty!",
                                              {static_cast<std::int32_t>(column)}));
        } else if (column >= FirstItemColumn(layout_)) {
            AddItemMapping(column, header);
        }
    }
}

// Items are numbered from 1, by column.
std::u16string DocumentBuilder::ItemId(std::size_t column) const {
    const auto number = static_cast<std::int32_t>(column - FirstItemColumn(layout_) + 1);
    return NPlatform::Format(16, u"_%d", {number});
}

void DocumentBuilder::AddItemMapping(std::size_t column, std::u16string_view header) {
    VXmlTag* const mapping = itemMappings_->AddChild(u"ITEMMAPPING");
    mapping->SetAttribute(u"id", ItemId(column), true);
    mapping->SetAttribute(u"type", types_.TypeOf(std::u16string(header)), false);
    mapping->ReferToText(header);
}

void DocumentBuilder::AddItem(VXmlTag& record, std::size_t column, std::u16string_view cell) {
    VXmlTag*& model = itemModels_[column];
    VXmlTag* item = nullptr;
    if (model != nullptr) {
        item = record.AddChildLike(*model);
    } else {
        item = model = record.AddChild(u"RECORDITEM");
        item->SetAttribute(u"itemmappingref", ItemId(column), true);
    }
    item->ReferToText(cell);
}

void DocumentBuilder::AddDtc(const VTableRow& row) {
    VXmlTag* const dtc = dtcs_->AddChild(u"DTC");
    VXmlTag* const errorText = dtc->AddChild(u"ERRORTEXT");
    VXmlTag* const record = dtc->AddChild(u"RECORD");
    AddNumber(*dtc, row);
    const std::size_t description = FirstItemColumn(layout_) - 1;
    if (description < row.size() && !skipped_[description]) errorText->ReferToText(row[description]);
    for (std::size_t column = description + 1; column < row.size(); ++column) {
        if (!skipped_[column] && !row[column].empty()) AddItem(*record, column, row[column]);
    }
}

// With two number columns the second one completes the number, so without it there is none.
void DocumentBuilder::AddNumber(VXmlTag& dtc, const VTableRow& row) {
    std::uint32_t number = 0;
    if (layout_ == TableLayout::SingleNumber) {
        if (skipped_[0]) return;
        number = Convert(row[0], notation_);
    } else if (layout_ == TableLayout::J1939) {
        const std::int32_t spn = skipped_[0] ? 0 : DecimalValue(row[0]);
        if (skipped_[1]) return;
        number = PackJ1939(static_cast<std::uint32_t>(spn), static_cast<std::uint32_t>(DecimalValue(row[1])));
    } else {
        const std::uint32_t base = skipped_[0] ? 0 : BaseDtc(row[0]);
        if (skipped_[1]) return;
        number = base << 8 | Convert(row[1], {});
    }
    dtc.SetNumberAttribute(u"number", static_cast<std::int32_t>(number));
}

std::uint32_t DocumentBuilder::BaseDtc(std::u16string_view cell) {
    if (!notation_.saeCodes) return static_cast<std::uint32_t>(VDTCConvert(cell, false, false).GetValue());
    CopyNumberText(cell, numberText_);
    VDTCConvert converter({}, false, false);
    converter.ParseSae(numberText_);
    return static_cast<std::uint32_t>(converter.GetValue());
}

std::uint32_t DocumentBuilder::Convert(std::u16string_view cell, NumberNotation notation) {
    CopyNumberText(cell, numberText_);
    const VDTCConvert converter(numberText_, notation.hexDigits, notation.saeCodes);
    return static_cast<std::uint32_t>(converter.GetValue());
}

// Found while the document grows, so that a table much too large takes no more memory than the largest that
// fits.
[[noreturn]] void RefuseSize(std::size_t rowIndex) {
    throw VSimpleXMLException(NPlatform::Format(
        256,
        u"The import document is too large, at most %d characters can be written. Row [%d] does not fit.",
        {static_cast<std::int32_t>(NPlatform::kMostUnitsToUtf8), static_cast<std::int32_t>(rowIndex)}));
}

}  // namespace

void BuildImportDocument(VHeapIterator& iterator, NPlatform::TextBuffer& result, VLogObject& log,
                         std::u16string_view diagnosticInstance, std::u16string_view variant,
                         const NameSet& vsgNames, const NameSet& secondNames, const NameSet& thirdNames) {
    const NumberNotation notation = ScanNumberNotation(iterator);
    DocumentBuilder builder(notation, FindSkippedColumns(iterator, log), {vsgNames, secondNames, thirdNames},
                            log);
    builder.AddSkeleton(diagnosticInstance, variant);
    iterator.Reset();
    for (std::size_t index = 0; iterator.HasMoreRows(); ++index) {
        const VTableRow& row = *iterator.GetNextRow();
        if (iterator.IsHeaderRow()) {
            builder.AddHeader(row);
        } else {
            builder.AddDtc(row);
        }
        if (builder.PrintedSize() > NPlatform::kMostUnitsToUtf8) RefuseSize(index);
    }
    result = builder.Print();
}

}  // namespace VSimpleXMLCreation
