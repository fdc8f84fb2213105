// The .xls format: a stream of records, which lies in a compound file.
#pragma once

#include <memory>

#include "workbook/workbook.h"
#include "workbook/workbook_file.h"

namespace NWorkbook::NXls {

// Whether a file can be one, by its first bytes.
bool CanBe(std::string_view firstBytes);

// Of such a file: Excel 5.0 to 2003, others are refused. Reads worksheets when they are first asked for.
// Throws WorkbookError.
std::unique_ptr<Workbook> Open(std::unique_ptr<WorkbookFile> file);

}  // namespace NWorkbook::NXls
