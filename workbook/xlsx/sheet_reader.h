// Reads the cells of one worksheet.
#pragma once

#include "workbook/cells.h"
#include "workbook/xlsx/opened_workbook.h"

namespace NWorkbook::NXlsx {

// Takes the values that the file holds: of formulas the results that were kept, dates as numbers. Where a
// cell or row does not say where it is, it follows the one before. Cells without a value are left out; a text
// that is empty, also as the result of a formula, is a text. Throws WorkbookError.
void ReadSheet(OpenedWorkbook& workbook, const WorkbookContents::Sheet& sheet, CellTable& cells);

}  // namespace NWorkbook::NXlsx
