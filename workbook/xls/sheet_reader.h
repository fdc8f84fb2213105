// Reads the cells of one worksheet.
#pragma once

#include "workbook/cells.h"
#include "workbook/xls/opened_workbook.h"

namespace NWorkbook::NXls {

// Takes the values that the file holds: of formulas the results that were kept, dates as the numbers that
// they are. Cells without a value are left out; a text that is empty, also as the result of a formula, is a
// text. Throws WorkbookError.
void ReadSheet(OpenedWorkbook& workbook, const Contents::Sheet& sheet, CellTable& cells);

}  // namespace NWorkbook::NXls
