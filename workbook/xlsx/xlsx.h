// The .xlsx format: a zip archive of parts, which are XML.
#pragma once

#include <memory>
#include <string_view>

#include "workbook/workbook.h"
#include "workbook/workbook_file.h"

namespace NWorkbook::NXlsx {

// Of a file that begins as a zip archive does. Reads worksheets when they are first asked for. Throws
// WorkbookError.
std::unique_ptr<Workbook> Open(std::unique_ptr<WorkbookFile> file);

// Writes the workbook. Messages name the path as it is given. What the file held before stays when this
// fails. Throws WorkbookError.
void Save(const Workbook& workbook, std::u16string_view path, std::u16string_view fullPath);

}  // namespace NWorkbook::NXlsx
