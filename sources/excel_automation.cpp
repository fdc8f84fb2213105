#include "sources/excel_automation.h"

#include <limits>

namespace VCSVReader::Excel {

namespace {

using NPlatform::DispatchId;

// The members of Excel's type library.
namespace Member {
constexpr DispatchId kValue = 0x6;
constexpr DispatchId kName = 0x6E;
constexpr DispatchId kDelete = 0x75;
constexpr DispatchId kCount = 0x76;
constexpr DispatchId kItem = 0xAA;
constexpr DispatchId kAdd = 0xB5;
constexpr DispatchId kRange = 0xC5;
constexpr DispatchId kAddress = 0xEC;
constexpr DispatchId kClose = 0x115;
constexpr DispatchId kSave = 0x11B;
constexpr DispatchId kSaveAs = 0x11C;
constexpr DispatchId kQuit = 0x12E;
constexpr DispatchId kDisplayAlerts = 0x157;
constexpr DispatchId kUsedRange = 0x19C;
constexpr DispatchId kWorksheets = 0x1EE;
constexpr DispatchId kVisible = 0x22E;
constexpr DispatchId kWorkbooks = 0x23C;
constexpr DispatchId kOpen = 0x2AA;
constexpr DispatchId kEnableEvents = 0x4BC;
constexpr DispatchId kValue2 = 0x56C;
constexpr DispatchId kLongOpen = 0x783;
constexpr DispatchId kLongSaveAs = 0x785;
constexpr DispatchId kAutomationSecurity = 0x795;
}  // namespace Member

constexpr std::int32_t kForceDisableMacros = 3;
constexpr std::int32_t kExclusiveAccess = 3;
constexpr std::int16_t kLocalChangesWin = 2;

Dispatch ObjectIn(const Variant& value) { return value.IsEmpty() ? Dispatch() : value.AsObject(); }

std::u16string TextIn(const Variant& value) { return value.IsEmpty() ? std::u16string() : value.AsString(); }

}  // namespace

void SetVisible(const Dispatch& application, bool visible) {
    application.Put(Member::kVisible, Variant::Bool(visible));
}

void SetDisplayAlerts(const Dispatch& application, bool display) {
    application.Put(Member::kDisplayAlerts, Variant::Bool(display));
}

void SetEnableEvents(const Dispatch& application, bool enable) {
    application.Put(Member::kEnableEvents, Variant::Bool(enable));
}

void DisableMacros(const Dispatch& application) {
    application.Put(Member::kAutomationSecurity, Variant::Int32(kForceDisableMacros));
}

Dispatch Workbooks(const Dispatch& application) { return ObjectIn(application.Get(Member::kWorkbooks)); }

void Quit(const Dispatch& application) { application.Call(Member::kQuit); }

Dispatch Open(const Dispatch& workbooks, CallForm form, std::u16string_view path, const Variant& readOnly,
              const Variant& password) {
    const Variant name = Variant::String(path);
    const Variant none = Variant::Missing();
    if (form == CallForm::Short) {
        return ObjectIn(workbooks.Call(Member::kOpen, {name, none, readOnly, none, password, none, none, none,
                                                       none, none, none, none, none}));
    }
    return ObjectIn(workbooks.Call(Member::kLongOpen, {name, none, readOnly, none, password, none, none, none,
                                                       none, none, none, none, none, none, none}));
}

Dispatch AddWorkbook(const Dispatch& workbooks) {
    return ObjectIn(workbooks.Call(Member::kAdd, {Variant::Missing()}));
}

void CloseAll(const Dispatch& workbooks) { workbooks.Call(Member::kClose); }

void SaveAs(const Dispatch& workbook, CallForm form, std::u16string_view path) {
    const Variant name = Variant::String(path);
    const Variant none = Variant::Missing();
    const Variant access = Variant::Int32(kExclusiveAccess);
    const Variant conflicts = Variant::Int16(kLocalChangesWin);
    if (form == CallForm::Short) {
        workbook.Call(Member::kSaveAs,
                      {name, none, none, none, none, none, access, conflicts, none, none, none});
    } else {
        workbook.Call(Member::kLongSaveAs,
                      {name, none, none, none, none, none, access, conflicts, none, none, none, none});
    }
}

void Save(const Dispatch& workbook) { workbook.Call(Member::kSave); }

void CloseWithoutSaving(const Dispatch& workbook) {
    workbook.Call(Member::kClose, {Variant::Int16(0), Variant::Missing(), Variant::Missing()});
}

Dispatch Worksheets(const Dispatch& workbook) { return ObjectIn(workbook.Get(Member::kWorksheets)); }

std::int32_t Count(const Dispatch& worksheets) {
    const Variant count = worksheets.Get(Member::kCount);
    return count.IsEmpty() ? 0 : count.AsInteger();
}

Dispatch Item(const Dispatch& worksheets, std::int32_t index) {
    const bool isShort = index <= std::numeric_limits<std::int16_t>::max();
    return Item(worksheets,
                isShort ? Variant::Int16(static_cast<std::int16_t>(index)) : Variant::Int32(index));
}

Dispatch Item(const Dispatch& worksheets, const Variant& index) {
    return ObjectIn(worksheets.Get(Member::kItem, {index}));
}

Dispatch AddWorksheet(const Dispatch& worksheets) {
    const Variant none = Variant::Missing();
    return ObjectIn(worksheets.Call(Member::kAdd, {none, none, Variant::Double(1), none}));
}

std::u16string Name(const Dispatch& worksheet) { return TextIn(worksheet.Get(Member::kName)); }

void SetName(const Dispatch& worksheet, std::u16string_view name) {
    worksheet.Put(Member::kName, Variant::String(name));
}

void Delete(const Dispatch& worksheet) { worksheet.Call(Member::kDelete); }

Dispatch Range(const Dispatch& worksheet, std::u16string_view cell1, std::u16string_view cell2) {
    return ObjectIn(worksheet.Get(Member::kRange, {Variant::String(cell1), Variant::String(cell2)}));
}

Dispatch UsedRange(const Dispatch& worksheet) { return ObjectIn(worksheet.Get(Member::kUsedRange)); }

Variant Value2(const Dispatch& range) { return range.Get(Member::kValue2); }

Variant Value(const Dispatch& range) { return range.Get(Member::kValue); }

void SetValue2(const Dispatch& range, const Variant& value) { range.Put(Member::kValue2, value); }

std::u16string Address(const Dispatch& range) { return TextIn(range.Get(Member::kAddress)); }

}  // namespace VCSVReader::Excel
