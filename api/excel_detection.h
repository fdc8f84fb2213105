// Which Excel is installed, and what follows from it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "log/log_object.h"
#include "sources/excel_interface.h"

namespace NXls2Tki {

// The numbers are fixed.
enum VExcelVersion : std::int32_t {
    ExcelVersion2000 = 0,
    ExcelVersion2003 = 1,
    ExcelVersionUnknown = 2,
    ExcelNotInstalled = 3,
    ExcelVersion2007 = 4,
    ExcelVersion2010 = 5,
    ExcelAccessDenied = 6,
};

// Looks the installed version up in the system's registry: the default value of
// HKEY_LOCAL_MACHINE\SOFTWARE\Classes\Excel.Application\CurVer, a text of at most 2048 units with its
// terminator, which has to be there unless the value has no bytes at all. Puts the version's name for the
// user into `displayString`, for ExcelVersionUnknown the registry's text itself; leaves it alone for
// ExcelNotInstalled and ExcelAccessDenied. The latter also replaces the detection error text.
VExcelVersion DetectExcelVersion(std::u16string& displayString);

// Puts into `messageText` what the user should know about the version: the warning for ExcelVersionUnknown,
// the reason for those with which nothing can be read. For the others the text stays as it is.
void ReportExcelVersion(VExcelVersion version, std::u16string_view displayString,
                        std::u16string& messageText);

// The source that drives this version and knows the workbook's worksheets; versions that are not known are
// driven as Excel 2010. Null for ExcelVersion2003, whose source does not know them, and where nothing can be
// read. `log` outlives the source.
std::unique_ptr<VCSVReader::IExcelHeap> MakeExcelHeap(VExcelVersion version, std::u16string_view path,
                                                      VCSVReader::VLogObject& log);

}  // namespace NXls2Tki
