// The names that a workbook gives to blocks of cells.
#pragma once

#include <vector>

#include "workbook/workbook.h"
#include "workbook/xls/opened_workbook.h"

namespace NWorkbook::NXls {

// As Workbook::readDefinedNames promises. Throws WorkbookError.
std::vector<DefinedName> ReadDefinedNames(OpenedWorkbook& workbook);

}  // namespace NWorkbook::NXls
