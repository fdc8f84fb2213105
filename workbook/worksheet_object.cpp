#include <algorithm>

#include "platform/format.h"
#include "workbook/cell_rules.h"
#include "workbook/dispatch_ids.h"
#include "workbook/engine_object.h"
#include "workbook/range_values.h"
#include "workbook/workbook_object.h"

namespace NWorkbook {

using NPlatform::Variant;

namespace {

// "$D$20"
std::u16string AbsoluteName(std::uint32_t row, std::uint16_t column) {
    const std::u16string name = CellName(row, column);
    const std::u16string_view letters(name.data(), name.find_first_of(u"0123456789"));
    return NPlatform::Format(16, u"$%s$%d", {letters, static_cast<std::int32_t>(row)});
}

// The smallest block that holds all cells; A1 if there are none.
CellBlock FilledBlock(CellTable& cells) {
    if (cells.Begin() == cells.End()) return {1, 1, 1, 1};
    CellBlock block{cells.Begin()->row, cells.End()[-1].row, cells.Begin()->column, cells.Begin()->column};
    const Cell* const end = cells.End();
    for (const Cell* cell = cells.Begin(); cell != end; ++cell) {
        block.firstColumn = std::min(block.firstColumn, cell->column);
        block.lastColumn = std::max(block.lastColumn, cell->column);
    }
    return block;
}

class RangeObject : public EngineObject<RangeObject> {
  public:
    RangeObject(WorksheetReference reference, const CellBlock& block)
        : reference_(std::move(reference)), block_(block) {}

    static const Member kMembers[4];

  private:
    Variant Address(const Arguments&) {
        const std::u16string first = AbsoluteName(block_.firstRow, block_.firstColumn);
        return Variant::String(
            block_.Cells() == 1 ? first : first + u':' + AbsoluteName(block_.lastRow, block_.lastColumn));
    }

    Variant Values(const Arguments&) {
        const auto worksheet = reference_.Get();
        return ReadValues(reference_.workbook.Get()->workbook->texts, *worksheet, block_);
    }

    Variant ShownValues(const Arguments&) {
        const auto worksheet = reference_.Get();
        return ReadShownValues(reference_.workbook.Get()->workbook->texts, *worksheet, block_);
    }

    Variant SetValue(const Arguments& arguments) {
        const auto worksheet = reference_.Get();
        WriteValue(*reference_.workbook.Get()->workbook->texts, *worksheet, block_, arguments[0]);
        return {};
    }

    WorksheetReference reference_;
    CellBlock block_;
};

constinit const RangeObject::Member RangeObject::kMembers[] = {
    {DispatchIds::Range::kValue, kGet, 0, 0, &RangeObject::ShownValues},
    {DispatchIds::Range::kAddress, kGet, 0, 0, &RangeObject::Address},
    {DispatchIds::Range::kValue2, kGet, 0, 0, &RangeObject::Values},
    {DispatchIds::Range::kValue2, kPut, 1, 1, &RangeObject::SetValue},
};

class WorksheetObject : public EngineObject<WorksheetObject> {
  public:
    explicit WorksheetObject(WorksheetReference reference) : reference_(std::move(reference)) {}

    static const Member kMembers[5];

  private:
    Variant Range(const Arguments& arguments) {
        static_cast<void>(reference_.Get());
        return MakeObject<RangeObject>(reference_,
                                       Span(CellNamed(arguments.Text(0)), CellNamed(arguments.Text(1))));
    }

    static CellBlock CellNamed(const std::u16string& name) {
        const std::optional<CellPlace> place = ParseCellName(name);
        if (place) return {place->row, place->row, place->column, place->column};
        throw WorkbookError(u"'" + name + u"' is not the address of a cell between A1 and XFD1048576.");
    }

    Variant UsedRange(const Arguments&) {
        return MakeObject<RangeObject>(reference_, FilledBlock(reference_.Get()->Cells()));
    }

    Variant Name(const Arguments&) { return Variant::String(reference_.Get()->Name()); }

    Variant SetName(const Arguments& arguments) {
        const auto worksheet = reference_.Get();
        const std::u16string& name = arguments.Text(0);
        RefuseWorksheetName(name);
        for (const auto& other : reference_.workbook.Get()->workbook->worksheets) {
            if (other != worksheet && IsSameWorksheetName(other->Name(), name)) {
                throw WorkbookError(u"Another worksheet is named '" + other->Name() + u"'.");
            }
        }
        worksheet->Rename(name);
        return {};
    }

    // The next worksheet becomes active instead, or the last one.
    Variant Delete(const Arguments&) {
        const auto worksheet = reference_.Get();
        const auto opened = reference_.workbook.Get();
        auto& worksheets = opened->workbook->worksheets;
        if (worksheets.size() == 1) throw WorkbookError(u"The last worksheet cannot be deleted.");
        const auto next = worksheets.erase(std::find(worksheets.begin(), worksheets.end(), worksheet));
        if (opened->active == worksheet)
            opened->active = next == worksheets.end() ? worksheets.back() : *next;
        return {};
    }

    WorksheetReference reference_;
};

constinit const WorksheetObject::Member WorksheetObject::kMembers[] = {
    {DispatchIds::Worksheet::kRange, kGet, 2, 2, &WorksheetObject::Range},
    {DispatchIds::Worksheet::kUsedRange, kGet, 0, 0, &WorksheetObject::UsedRange},
    {DispatchIds::Worksheet::kName, kGet, 0, 0, &WorksheetObject::Name},
    {DispatchIds::Worksheet::kName, kPut, 1, 1, &WorksheetObject::SetName},
    {DispatchIds::Worksheet::kDelete, kMethod, 0, 0, &WorksheetObject::Delete},
};

}  // namespace

NPlatform::Variant MakeWorksheetObject(WorksheetReference reference) {
    return MakeObject<WorksheetObject>(std::move(reference));
}

}  // namespace NWorkbook
