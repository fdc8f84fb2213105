// The calls into Excel: one function for each member of its objects that the sources use.
//
// Each throws NPlatform::DispatchException for a failure that Excel reports and NPlatform::OleException for a
// call that did not reach it or a result of another type. On a reference without an object nothing happens:
// the result is no object, 0 or the empty text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/automation.h"

namespace VCSVReader::Excel {

using NPlatform::Dispatch;
using NPlatform::Variant;

inline constexpr std::u16string_view kProgId = u"Excel.Application";

// Of the longest description that a failure is reported with: characters, with the terminator.
inline constexpr std::size_t kDescriptionCapacity = 1024;

// Opening and saving have two forms; the long ones came with Excel 2002 and take further arguments.
enum class CallForm { Short, Long };

// Application
void SetVisible(const Dispatch& application, bool visible);
void SetDisplayAlerts(const Dispatch& application, bool display);
void SetEnableEvents(const Dispatch& application, bool enable);
void DisableMacros(const Dispatch& application);
Dispatch Workbooks(const Dispatch& application);
void Quit(const Dispatch& application);

// Workbooks
Dispatch Open(const Dispatch& workbooks, CallForm form, std::u16string_view path, const Variant& readOnly,
              const Variant& password);
Dispatch AddWorkbook(const Dispatch& workbooks);
void CloseAll(const Dispatch& workbooks);

// Workbook
void SaveAs(const Dispatch& workbook, CallForm form, std::u16string_view path);
void Save(const Dispatch& workbook);
void CloseWithoutSaving(const Dispatch& workbook);
Dispatch Worksheets(const Dispatch& workbook);

// Worksheets
std::int32_t Count(const Dispatch& worksheets);
// `index` counts from 1. It goes out as 16 bits if it fits.
Dispatch Item(const Dispatch& worksheets, std::int32_t index);
Dispatch Item(const Dispatch& worksheets, const Variant& index);
Dispatch AddWorksheet(const Dispatch& worksheets);

// Worksheet
std::u16string Name(const Dispatch& worksheet);
void SetName(const Dispatch& worksheet, std::u16string_view name);
void Delete(const Dispatch& worksheet);
// The block between two cells that are named in A1 notation.
Dispatch Range(const Dispatch& worksheet, std::u16string_view cell1, std::u16string_view cell2);
Dispatch UsedRange(const Dispatch& worksheet);

// Range: an array for a block of several cells, else the cell's value.
Variant Value2(const Dispatch& range);
// The same, but a number that is shown as a date is a date, which only an array tells.
Variant Value(const Dispatch& range);
void SetValue2(const Dispatch& range, const Variant& value);
// "$A$1:$D$20"
std::u16string Address(const Dispatch& range);

}  // namespace VCSVReader::Excel
