// The numbers of the members, as spreadsheet applications publish them.
#pragma once

#include "platform/automation.h"

namespace NWorkbook::DispatchIds {

using NPlatform::DispatchId;

namespace Application {
inline constexpr DispatchId kQuit = 0x12E;
inline constexpr DispatchId kDisplayAlerts = 0x157;
inline constexpr DispatchId kVisible = 0x22E;
inline constexpr DispatchId kWorkbooks = 0x23C;
inline constexpr DispatchId kEnableEvents = 0x4BC;
inline constexpr DispatchId kAutomationSecurity = 0x795;
}  // namespace Application

namespace Workbooks {
inline constexpr DispatchId kAdd = 0xB5;
inline constexpr DispatchId kClose = 0x115;
inline constexpr DispatchId kOpen13 = 0x2AA;  // with up to 13 arguments
inline constexpr DispatchId kOpen15 = 0x783;
}  // namespace Workbooks

namespace Workbook {
inline constexpr DispatchId kClose = 0x115;
inline constexpr DispatchId kSave = 0x11B;
inline constexpr DispatchId kSaveAs11 = 0x11C;
inline constexpr DispatchId kWorksheets = 0x1EE;
inline constexpr DispatchId kSaveAs12 = 0x785;
}  // namespace Workbook

namespace Sheets {
inline constexpr DispatchId kCount = 0x76;
inline constexpr DispatchId kItem = 0xAA;
inline constexpr DispatchId kAdd = 0xB5;
}  // namespace Sheets

namespace Worksheet {
inline constexpr DispatchId kName = 0x6E;
inline constexpr DispatchId kDelete = 0x75;
inline constexpr DispatchId kRange = 0xC5;
inline constexpr DispatchId kUsedRange = 0x19C;
}  // namespace Worksheet

namespace Range {
inline constexpr DispatchId kValue = 0x6;
inline constexpr DispatchId kAddress = 0xEC;
inline constexpr DispatchId kValue2 = 0x56C;
}  // namespace Range

}  // namespace NWorkbook::DispatchIds
