// The names that a workbook gives to blocks of cells.
#pragma once

#include <vector>

#include "workbook/workbook.h"
#include "workbook/xlsx/opened_workbook.h"

namespace NWorkbook::NXlsx {

// So many of them are read: a workbook of more is refused.
inline constexpr std::size_t kMostDefinedNames = 65'536;

// As Workbook::readDefinedNames promises. Throws WorkbookError.
std::vector<DefinedName> ReadDefinedNames(OpenedWorkbook& workbook);

}  // namespace NWorkbook::NXlsx
