#include "workbook/xls/defined_names.h"

#include <algorithm>
#include <iterator>

namespace NWorkbook::NXls {

namespace {

// What a name's record says of it.
constexpr std::uint16_t kIsHidden = 0x0001;
constexpr std::uint16_t kIsBuiltIn = 0x0020;

// A formula's beginning, its class of results aside: it refers to a cell or to a block of a worksheet.
constexpr std::uint8_t kClass = 0x60;
constexpr std::uint8_t kReference = 0x1A;
constexpr std::uint8_t kArea = 0x1B;

constexpr std::uint16_t kOwnWorksheets = 0x0401;

// First and last row or column of a block, from 0; `count` are all.
struct Range {
    std::uint32_t first;
    std::uint32_t last;

    [[nodiscard]] bool IsWithin(std::uint32_t count) const { return first < count && last < count; }
    // From 1, and to the edge that a worksheet has here, if it reaches from edge to edge.
    [[nodiscard]] Range Widened(std::uint32_t count, std::uint32_t edge) const {
        const auto [from, to] = std::minmax(first, last);
        return from == 0 && to == count - 1 ? Range{1, edge} : Range{from + 1, to + 1};
    }
};

class NamesReader {
  public:
    NamesReader(const Contents& contents, TextReader& texts) : version_(contents.version), texts_(texts) {
        std::size_t count = 0;
        for (const Contents::Sheet& sheet : contents.sheets) {
            worksheets_.push_back(sheet.isWorksheet ? std::optional(count++) : std::nullopt);
        }
    }

    // References to worksheets stand in front of the names that use them.
    std::vector<DefinedName> Read(RecordReader& records) {
        for (records.Next(); records.Type() != RecordType::EndOfFile; records.Next()) {
            Fields fields(records);
            if (records.Type() == RecordType::SupBook) ReadBook(fields);
            if (records.Type() == RecordType::ExternSheet && version_ == Version::Biff8) ReadTabs(fields);
            if (records.Type() == RecordType::Name) ReadName(fields);
        }
        ofWorkbook_.insert(ofWorkbook_.end(), std::make_move_iterator(ofWorksheets_.begin()),
                           std::make_move_iterator(ofWorksheets_.end()));
        return std::move(ofWorkbook_);
    }

  private:
    // Worksheets that a reference means, by their place among all sheets.
    struct Tabs {
        std::uint16_t book;
        Range range;
    };

    void ReadBook(Fields& fields) {
        fields.Skip(sizeof(std::uint16_t));
        isOwnBook_.push_back(fields.Take<std::uint16_t>() == kOwnWorksheets);
    }

    void ReadTabs(Fields& fields) {
        for (auto count = fields.Take<std::uint16_t>(); count > 0; --count) {
            const auto book = fields.Take<std::uint16_t>();
            tabs_.push_back({book, TakeRange<std::uint16_t>(fields)});
        }
    }

    void ReadName(Fields& fields) {
        constexpr std::size_t kLengthsOfMenuTexts = 4;
        const auto flags = fields.Take<std::uint16_t>();
        fields.Skip(1);  // a key
        const auto length = fields.Take<std::uint8_t>();
        const auto formulaSize = fields.Take<std::uint16_t>();
        fields.Skip(sizeof(std::uint16_t));
        const bool isOfWorksheet = fields.Take<std::uint16_t>() != 0;
        fields.Skip(kLengthsOfMenuTexts);
        std::u16string name = texts_.ReadName(fields, length);
        if (name.empty() || (flags & (kIsHidden | kIsBuiltIn)) != 0) return;
        const auto place = ReadFormula(fields, formulaSize);
        if (!place) return;
        if (ofWorkbook_.size() + ofWorksheets_.size() == kMostDefinedNames) {
            throw PartFault{Fault::TooLarge, u"there are too many defined names"};
        }
        (isOfWorksheet ? ofWorksheets_ : ofWorkbook_)
            .push_back({std::move(name), place->worksheet, place->block});
    }

    struct Place {
        std::size_t worksheet;
        CellBlock block;
    };

    // Nothing for what is not one block of one worksheet.
    std::optional<Place> ReadFormula(Fields& fields, std::size_t size) {
        const bool isNew = version_ == Version::Biff8;
        const std::size_t sizeOfReference = isNew ? 7 : 18;
        const std::size_t sizeOfArea = isNew ? 11 : 21;
        if (size != sizeOfReference && size != sizeOfArea) return std::nullopt;
        const auto token = fields.Take<std::uint8_t>();
        const bool isArea = size == sizeOfArea;
        if ((token & kClass) == 0 || (token & ~kClass) != (isArea ? kArea : kReference)) return std::nullopt;
        const std::optional<std::size_t> worksheet = isNew ? TakeTabs(fields) : TakeOldTabs(fields);
        const std::optional<CellBlock> block = isArea ? TakeArea(fields) : TakeReference(fields);
        if (!worksheet || !block) return std::nullopt;
        return Place{*worksheet, *block};
    }

    std::optional<std::size_t> TakeTabs(Fields& fields) {
        const auto index = fields.Take<std::uint16_t>();
        if (index >= tabs_.size()) return std::nullopt;
        const Tabs& tabs = tabs_[index];
        const bool areOwn = tabs.book < isOwnBook_.size() && isOwnBook_[tabs.book];
        return areOwn ? OneWorksheet(tabs.range) : std::nullopt;
    }

    std::optional<std::size_t> TakeOldTabs(Fields& fields) {
        constexpr std::size_t kUnused = 8;
        const bool areOwn = fields.Take<std::int16_t>() < 0;
        fields.Skip(kUnused);
        const auto range = TakeRange<std::uint16_t>(fields);
        return areOwn ? OneWorksheet(range) : std::nullopt;
    }

    [[nodiscard]] std::optional<std::size_t> OneWorksheet(const Range& tabs) const {
        if (tabs.first != tabs.last || tabs.first >= worksheets_.size()) return std::nullopt;
        return worksheets_[tabs.first];
    }

    std::optional<CellBlock> TakeArea(Fields& fields) {
        const auto rows = TakeRange<std::uint16_t>(fields);
        const bool isNew = version_ == Version::Biff8;
        return BlockOf(rows, isNew ? TakeRange<std::uint16_t>(fields) : TakeRange<std::uint8_t>(fields));
    }

    std::optional<CellBlock> TakeReference(Fields& fields) {
        const std::uint32_t row = fields.Take<std::uint16_t>();
        const std::uint32_t column =
            version_ == Version::Biff8 ? fields.Take<std::uint16_t>() : fields.Take<std::uint8_t>();
        return BlockOf({row, row}, {column, column});
    }

    // Two bits of the columns, before Excel 97 of the rows, say whether they are absolute.
    [[nodiscard]] std::optional<CellBlock> BlockOf(Range rows, Range columns) const {
        constexpr std::uint32_t kNumber = 0x3FFF;
        const bool isNew = version_ == Version::Biff8;
        Range& marked = isNew ? columns : rows;
        marked = {marked.first & kNumber, marked.last & kNumber};
        if (!columns.IsWithin(kColumnCount)) return std::nullopt;
        rows = rows.Widened(isNew ? 65'536 : 16'384, kLastRow);
        columns = columns.Widened(kColumnCount, kLastColumn);
        return CellBlock{rows.first, rows.last, static_cast<std::uint16_t>(columns.first),
                         static_cast<std::uint16_t>(columns.last)};
    }

    template <typename T>
    static Range TakeRange(Fields& fields) {
        const T first = fields.Take<T>();
        return {first, fields.Take<T>()};
    }

    Version version_;
    TextReader& texts_;
    std::vector<std::optional<std::size_t>> worksheets_;  // for each sheet, by its index among them
    std::vector<bool> isOwnBook_;
    std::vector<Tabs> tabs_;
    std::vector<DefinedName> ofWorkbook_;
    std::vector<DefinedName> ofWorksheets_;
};

}  // namespace

std::vector<DefinedName> ReadDefinedNames(OpenedWorkbook& workbook) {
    return workbook.ReadRecords(0, [&workbook](RecordReader& records) {
        TextReader texts = workbook.Texts();
        return NamesReader(workbook.contents, texts).Read(records);
    });
}

}  // namespace NWorkbook::NXls
