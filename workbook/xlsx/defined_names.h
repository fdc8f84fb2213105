// The names that a workbook gives to blocks of cells.
#pragma once

#include <vector>

#include "workbook/workbook.h"
#include "workbook/xlsx/opened_workbook.h"

namespace NWorkbook::NXlsx {

// As Workbook::readDefinedNames promises. Throws WorkbookError.
std::vector<DefinedName> ReadDefinedNames(OpenedWorkbook& workbook);

}  // namespace NWorkbook::NXlsx
