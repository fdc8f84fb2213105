#include "workbook/xls/sheet_reader.h"

#include <bit>
#include <cmath>

#include "platform/format.h"
#include "workbook/range_address.h"

namespace NWorkbook::NXls {

namespace {

constexpr std::uint16_t kWorksheet = 0x0010;  // in its first record

// 30 bits of a number: the upper ones of a double, or a whole number; and whether it is a hundred times as
// large as the number of the cell.
double RkNumber(std::uint32_t rk) {
    constexpr std::uint32_t kIsHundredfold = 1;
    constexpr std::uint32_t kIsWhole = 2;
    constexpr std::uint32_t kMarks = kIsHundredfold | kIsWhole;
    const double number = (rk & kIsWhole) != 0 ? static_cast<double>(static_cast<std::int32_t>(rk) >> 2)
                                               : std::bit_cast<double>(std::uint64_t{rk & ~kMarks} << 32);
    return (rk & kIsHundredfold) != 0 ? number / 100 : number;
}

CellError ErrorOf(std::uint8_t code) {
    const auto error = static_cast<CellError>(2000 + code);
    switch (error) {
        case CellError::Null:
        case CellError::DivisionByZero:
        case CellError::Value:
        case CellError::Reference:
        case CellError::Name:
        case CellError::Number:
        case CellError::NotAvailable:
        case CellError::GettingData:
            return error;
    }
    return CellError::Value;
}

class SheetReader {
  public:
    SheetReader(OpenedWorkbook& workbook, RecordReader& records, CellTable& cells)
        : records_(records),
          sharedStrings_(workbook.SharedStrings()),
          showsDate_(workbook.contents.showsDate),
          texts_(workbook.Texts()),
          budget_(workbook.budget),
          cells_(cells),
          unitsLeft_(MostUnitsOfWorksheet(workbook.file->Size())) {}

    void Read() {
        records_.Next();
        Fields fields(records_);
        if (records_.Type() != RecordType::BeginningOfFile ||
            fields.Take<std::uint32_t>() >> 16 != kWorksheet) {
            throw PartFault{Fault::Damaged, u"no worksheet begins here"};
        }
        // Charts within the worksheet have records of their own.
        for (std::size_t depth = 1; depth > 0;) {
            records_.Next();
            if (records_.Type() == RecordType::BeginningOfFile) ++depth;
            if (records_.Type() == RecordType::EndOfFile) --depth;
            if (depth == 1) ReadRecord();
        }
        RefuseMissingText();
    }

  private:
    void ReadRecord() {
        Fields fields(records_);
        switch (records_.Type()) {
            case RecordType::Number:
                StartCell(fields);
                AddNumber(fields.Take<double>());
                break;
            case RecordType::Rk:
                StartCell(fields);
                AddNumber(RkNumber(fields.Take<std::uint32_t>()));
                break;
            case RecordType::MulRk:
                ReadNumbers(fields);
                break;
            case RecordType::Label:
            case RecordType::RString:
                StartCell(fields);
                ReadText(fields);
                break;
            case RecordType::LabelSst:
                StartCell(fields);
                AddText(SharedText(fields.Take<std::uint32_t>()));
                break;
            case RecordType::BoolErr:
                StartCell(fields);
                ReadBoolOrError(fields);
                break;
            case RecordType::Formula:
            case RecordType::FormulaOfExcel3:
            case RecordType::FormulaOfExcel4:
                StartCell(fields);
                ReadResult(fields.Take<std::uint64_t>());
                break;
            case RecordType::String:
            case RecordType::StringOfExcel2:
                if (!awaitsText_) break;
                awaitsText_ = false;
                ReadText(fields);
                break;
            default:
                break;
        }
    }

    void StartCell(Fields& fields) {
        const auto row = fields.Take<std::uint16_t>();
        PlaceCell(row, fields.Take<std::uint16_t>());
        format_ = fields.Take<std::uint16_t>();
    }

    // Row and column count from 0.
    void PlaceCell(std::uint32_t row, std::uint32_t column) {
        RefuseMissingText();
        if (column >= kColumnCount) {
            throw PartFault{Fault::Damaged,
                            NPlatform::Format(
                                100, u"a cell in row %d is in column %d, of 256",
                                {static_cast<std::int32_t>(row + 1), static_cast<std::int32_t>(column + 1)})};
        }
        row_ = row + 1;
        column_ = static_cast<std::uint16_t>(column + 1);
    }

    void ReadNumbers(Fields& fields) {
        constexpr std::size_t kNumberSize = sizeof format_ + sizeof(std::uint32_t);
        const auto row = fields.Take<std::uint16_t>();
        const auto first = fields.Take<std::uint16_t>();
        std::uint32_t column = first;
        for (; fields.Left() >= kNumberSize; ++column) {
            PlaceCell(row, column);
            format_ = fields.Take<std::uint16_t>();
            AddNumber(RkNumber(fields.Take<std::uint32_t>()));
        }
        // The record ends with the last column.
        if (column == first || fields.Take<std::uint16_t>() != column - 1) {
            FailCell(u"is not the last one that the record names");
        }
    }

    void ReadBoolOrError(Fields& fields) {
        const auto value = fields.Take<std::uint8_t>();
        const bool isError = fields.Take<std::uint8_t>() != 0;
        isError ? AddError(value) : AddBool(value);
    }

    // Of a formula: a number, or a mark and what it is instead.
    void ReadResult(std::uint64_t result) {
        constexpr std::uint64_t kIsNoNumber = 0xFFFF;
        const auto value = static_cast<std::uint8_t>(result >> 16);
        if (result >> 48 != kIsNoNumber) return AddNumber(std::bit_cast<double>(result));
        switch (result & 0xFF) {
            case 0:
                awaitsText_ = true;
                return;
            case 1:
                return AddBool(value);
            case 2:
                return AddError(value);
            case 3:
                return AddText(texts_.Empty());
            default:
                FailCell(u"has a formula with a result of an unknown type");
        }
    }

    // It stands in a record of its own, behind others that belong to the formula.
    void RefuseMissingText() const {
        if (awaitsText_) FailCell(u"has a formula without the text that is its result");
    }

    void ReadText(Fields& fields) {
        const auto length = fields.Take<std::uint16_t>();
        AddText(texts_.Read(fields, length));
    }

    TextPlace SharedText(std::uint32_t index) {
        if (index < sharedStrings_.size()) return sharedStrings_[index];
        FailCell(u"refers to a shared string that there is not");
    }

    void AddNumber(double number) {
        if (!std::isfinite(number)) FailCell(u"has a number that is infinite or not a number");
        Add({.row = row_, .column = column_, .type = CellType::Number, .number = number});
        if (format_ < showsDate_.size() && showsDate_[format_]) {
            cells_.Note({row_, column_, CellNote::ShowsDate});
        }
    }

    void AddText(TextPlace text) {
        Spend(unitsLeft_, TextAt(text).size(), u"the texts of the cells have too many characters");
        Add({.row = row_, .column = column_, .type = CellType::Text, .text = text});
    }

    void AddBool(std::uint8_t value) {
        Add({.row = row_, .column = column_, .type = CellType::Bool, .truth = value != 0});
    }

    void AddError(std::uint8_t code) {
        Add({.row = row_, .column = column_, .type = CellType::Error, .error = ErrorOf(code)});
    }

    void Add(const Cell& cell) {
        Spend(budget_.cells, 1, u"the workbook has too many cells");
        cells_.Add(cell);
    }

    [[noreturn]] void FailCell(std::u16string_view what) const {
        throw PartFault{Fault::Damaged, u"cell " + CellName(row_, column_) + u" " + std::u16string(what)};
    }

    RecordReader& records_;
    const std::vector<TextPlace>& sharedStrings_;
    const std::vector<bool>& showsDate_;
    TextReader texts_;
    Budget& budget_;
    CellTable& cells_;
    std::size_t unitsLeft_;
    std::uint32_t row_ = 1;
    std::uint16_t column_ = 1;
    std::uint16_t format_ = 0;
    bool awaitsText_ = false;
};

}  // namespace

void ReadSheet(OpenedWorkbook& workbook, const Contents::Sheet& sheet, CellTable& cells) {
    workbook.SharedStrings();  // whose failure is one of their own record
    workbook.ReadRecords(sheet.offset,
                         [&](RecordReader& records) { SheetReader(workbook, records, cells).Read(); });
}

}  // namespace NWorkbook::NXls
