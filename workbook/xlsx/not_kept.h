// What saving would lose.
#pragma once

#include <string>

#include "workbook/xlsx/opened_workbook.h"

namespace NWorkbook::NXlsx {

// What the file holds beside worksheets of numbers, texts and truth values, as words with commas between
// them; empty if nothing. What is not known to be plain counts. Reads all worksheets again. Throws
// WorkbookError.
std::u16string FindWhatIsNotKept(OpenedWorkbook& workbook);

}  // namespace NWorkbook::NXlsx
