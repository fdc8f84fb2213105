#include "sources/find_facts.h"

#include <algorithm>
#include <optional>
#include <string>

#include "sources/cell_name.h"
#include "sources/excel_automation.h"

namespace VCSVReader {

namespace {

using NPlatform::Dispatch;
using NPlatform::VariantElement;
using NPlatform::VariantType;

// Both count from 0, as do those of a block, whose ends are after its last row and column.
struct Corner {
    std::uint32_t row = 0;
    std::uint32_t column = 0;
};

struct Block {
    Corner first;
    Corner end;
};

// Behind the last cell of "$A$1:$D$20"; of whole rows, "$1:$20", or columns, as far as every Excel reaches.
std::optional<Corner> EndOf(std::u16string_view address) {
    constexpr std::uint32_t kMost = 1 << 24;
    const std::size_t colon = address.find(u':');
    Corner end;
    for (const char16_t unit : address.substr(colon == std::u16string_view::npos ? 0 : colon + 1)) {
        if (unit >= u'A' && unit <= u'Z') end.column = end.column * 26 + (unit - u'A' + 1);
        if (unit >= u'0' && unit <= u'9') end.row = end.row * 10 + (unit - u'0');
        if (end.row > kMost || end.column > kMost) return std::nullopt;
    }
    if (end.row == 0 && end.column == 0) return std::nullopt;
    return Corner{end.row == 0 ? 65536 : end.row, end.column == 0 ? 256 : end.column};
}

Corner SizeOf(const CellBlock& table) {
    return {static_cast<std::uint32_t>(table.Rows()), static_cast<std::uint32_t>(table.Columns())};
}

bool HasValue(const VariantElement& cell) {
    if (cell.type == VariantType::String) {
        return cell.text.find_first_not_of(u" \t\r\n\u00A0") != std::u16string_view::npos;
    }
    return cell.type != VariantType::Empty;
}

// Errors of cells are failure codes, which end with Excel's number.
std::int32_t ErrorNumber(const VariantElement& cell) { return cell.integer & 0xFFFF; }

std::u16string TextOf(const VariantElement& cell) {
    NumberBuffer buffer;
    if (cell.type == VariantType::String) return std::u16string(cell.text);
    if (cell.type == VariantType::Double) return WriteTrimmedNumber(cell.number, buffer);
    if (cell.type == VariantType::Bool) return std::u16string(ShownTruth(cell.integer != 0));
    return std::u16string(ShownError(ErrorNumber(cell)));
}

using ReadRange = NPlatform::Variant (*)(const Dispatch& range);

// Lends the cells with a value, row by row. They are fetched in pieces, which bound the memory that a used
// range with few values takes.
template <typename Visit>
void VisitValues(const Dispatch& worksheet, const Block& block, ReadRange read, Visit visit) {
    constexpr std::uint32_t kCellsAtOnce = 1 << 16;
    constexpr std::uint32_t kMostCells = 10'000'000;
    if (block.first.row >= block.end.row || block.first.column >= block.end.column) return;
    const std::uint32_t columns = block.end.column - block.first.column;
    const std::uint32_t rowsAtOnce = std::max<std::uint32_t>(kCellsAtOnce / columns, 1);
    const std::uint32_t mostRows = std::max<std::uint32_t>(kMostCells / columns, 1);
    const std::uint32_t end = std::min(block.end.row - block.first.row, mostRows) + block.first.row;
    for (std::uint32_t row = block.first.row; row < end; row += rowsAtOnce) {
        const std::u16string firstName = CellName(block.first.column, row + 1);
        const std::u16string lastName = CellName(block.end.column - 1, std::min(row + rowsAtOnce, end));
        const CellBlock piece(read(Excel::Range(worksheet, firstName, lastName)));
        for (std::int32_t r = 1; r <= piece.Rows(); ++r) {
            for (std::int32_t c = 1; c <= piece.Columns(); ++c) {
                const VariantElement cell = piece.At(r, c);
                if (!HasValue(cell)) continue;
                visit(Corner{row + static_cast<std::uint32_t>(r) - 1,
                             block.first.column + static_cast<std::uint32_t>(c) - 1},
                      cell);
            }
        }
    }
}

void Begin(BehindEdge& behind, const Corner& place, const VariantElement& cell) {
    behind.row = place.row;
    behind.column = place.column;
    behind.text = TextOf(cell);
}

void LookBelow(const Dispatch& worksheet, const Block& block, BehindEdge& below) {
    std::uint32_t lastRow = 0;
    VisitValues(worksheet, block, Excel::Value2, [&](const Corner& place, const VariantElement& cell) {
        if (below.count == 0) Begin(below, place, cell);
        const bool isNew = below.count == 0 || place.row != lastRow;
        if (isNew) ++below.count;
        below.isTable = below.isTable || !isNew;
        lastRow = place.row;
    });
}

// The first cell is the topmost of the first column that has one.
void LookRight(const Dispatch& worksheet, const Block& block, BehindEdge& right) {
    if (block.first.column >= block.end.column) return;
    std::vector<bool> isFilled(block.end.column - block.first.column);
    VisitValues(worksheet, block, Excel::Value2, [&](const Corner& place, const VariantElement& cell) {
        const std::size_t column = place.column - block.first.column;
        if (right.count == 0 || place.column < right.column) Begin(right, place, cell);
        if (!isFilled[column]) ++right.count;
        isFilled[column] = true;
        right.isTable = right.isTable || place.row == 0;
    });
}

void LookBehindEdges(const Dispatch& worksheet, const Corner& end, WorksheetFacts& facts) {
    const std::optional<Corner> used = EndOf(Excel::Address(Excel::UsedRange(worksheet)));
    if (!used) return;
    LookBelow(worksheet, {{end.row, 0}, *used}, facts.below);
    LookRight(worksheet, {{0, end.column}, {end.row, used->column}}, facts.right);
}

void Add(const HeldValue& value, WorksheetFacts& facts) {
    if (facts.values.size() < WorksheetFacts::kMostValues) {
        facts.values.push_back(value);
    } else {
        facts.isComplete = false;
    }
}

// What the cells of the table show by themselves.
void LookAtValues(const CellBlock& table, NumberWriter write, WorksheetFacts& facts) {
    using Kind = HeldValue::Kind;
    NumberBuffer buffer;
    for (std::int32_t row = 1; row <= table.Rows(); ++row) {
        for (std::int32_t column = 1; column <= table.Columns(); ++column) {
            const VariantElement cell = table.At(row, column);
            HeldValue held{static_cast<std::uint32_t>(row - 1), static_cast<std::uint16_t>(column - 1),
                           Kind::Number, cell.number};
            if (cell.type == VariantType::Double) {
                if (!ShowsNumber(write(cell.number, buffer), cell.number)) Add(held, facts);
            } else if (cell.type == VariantType::Bool) {
                held.kind = Kind::Truth;
                held.number = cell.integer;
                Add(held, facts);
            } else if (cell.type == VariantType::Error) {
                held.kind = Kind::Error;
                held.number = ErrorNumber(cell);
                Add(held, facts);
            }
        }
    }
}

// Dates, and formulas without a result: only the values as they are shown tell of them.
void LookAtShownValues(const Dispatch& worksheet, const CellBlock& table, WorksheetFacts& facts) {
    const Block block{{}, SizeOf(table)};
    VisitValues(worksheet, block, Excel::Value, [&](const Corner& place, const VariantElement& shown) {
        HeldValue held{place.row, static_cast<std::uint16_t>(place.column), HeldValue::Kind::Date,
                       shown.number};
        if (shown.type == VariantType::Error) {
            const auto row = static_cast<std::int32_t>(place.row + 1);
            if (table.At(row, static_cast<std::int32_t>(place.column + 1)).type != VariantType::Empty) return;
            held.kind = HeldValue::Kind::Formula;
        } else if (shown.type != VariantType::Date) {
            return;
        }
        Add(held, facts);
    });
}

// A date, which was found first, counts more than a number in the same place.
void SortValues(std::vector<HeldValue>& values) {
    const auto place = [](const HeldValue& value) { return std::pair(value.row, value.column); };
    std::ranges::stable_sort(values, {}, place);
    const auto isSame = [&](const HeldValue& one, const HeldValue& other) {
        return place(one) == place(other);
    };
    values.erase(std::unique(values.begin(), values.end(), isSame), values.end());
}

}  // namespace

void FindFacts(const Dispatch& worksheet, const CellBlock* table, NumberWriter write, WorksheetFacts& facts) {
    facts = {};
    try {
        if (table != nullptr) LookAtShownValues(worksheet, *table, facts);
        LookBehindEdges(worksheet, table == nullptr ? Corner() : SizeOf(*table), facts);
    } catch (const std::exception&) {
        facts.isComplete = false;
    }
    if (table != nullptr) LookAtValues(*table, write, facts);
    SortValues(facts.values);
}

}  // namespace VCSVReader
