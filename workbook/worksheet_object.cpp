#include <algorithm>

#include "workbook/cell_rules.h"
#include "workbook/dispatch_ids.h"
#include "workbook/engine_object.h"
#include "workbook/range_values.h"
#include "workbook/workbook_object.h"

namespace NWorkbook {

using NPlatform::Variant;

namespace {

class RangeObject : public EngineObject<RangeObject> {
  public:
    RangeObject(WorksheetReference reference, const CellBlock& block)
        : reference_(std::move(reference)), block_(block) {}

    static const Member kMembers[2];

  private:
    Variant Values(const Arguments&) {
        const auto worksheet = reference_.Get();
        return ReadValues(reference_.workbook.Get()->workbook->texts, *worksheet, block_);
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
    {DispatchIds::Range::kValue2, kGet, 0, 0, &RangeObject::Values},
    {DispatchIds::Range::kValue2, kPut, 1, 1, &RangeObject::SetValue},
};

class WorksheetObject : public EngineObject<WorksheetObject> {
  public:
    explicit WorksheetObject(WorksheetReference reference) : reference_(std::move(reference)) {}

    static const Member kMembers[4];

  private:
    Variant Range(const Arguments& arguments) {
        static_cast<void>(reference_.Get());
        const CellBlock one = ParseAddress(arguments.Text(0));
        const bool isAlone = arguments[1].IsMissing();
        return MakeObject<RangeObject>(reference_,
                                       isAlone ? one : Span(one, ParseAddress(arguments.Text(1))));
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

    // The next worksheet becomes active in its place, or the last one.
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
    {DispatchIds::Worksheet::kRange, kGet, 1, 2, &WorksheetObject::Range},
    {DispatchIds::Worksheet::kName, kGet, 0, 0, &WorksheetObject::Name},
    {DispatchIds::Worksheet::kName, kPut, 1, 1, &WorksheetObject::SetName},
    {DispatchIds::Worksheet::kDelete, kMethod, 0, 0, &WorksheetObject::Delete},
};

}  // namespace

NPlatform::Variant MakeWorksheetObject(WorksheetReference reference) {
    return MakeObject<WorksheetObject>(std::move(reference));
}

}  // namespace NWorkbook
