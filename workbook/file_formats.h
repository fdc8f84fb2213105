// The formats in which files hold workbooks. Nothing else in this room knows them; each has a folder of its
// own.
#pragma once

#include <memory>
#include <string_view>

#include "workbook/workbook.h"

namespace NWorkbook {

// Opens a file for reading. Its first bytes decide on the format, not its name. Throws WorkbookError.
std::unique_ptr<Workbook> OpenWorkbook(std::u16string_view path);

// Writes the workbook as .xlsx and remembers the path. Only Workbook::isOwn can be saved. What the file held
// before stays when this fails. Throws WorkbookError.
void SaveWorkbook(Workbook& workbook, std::u16string_view path);

}  // namespace NWorkbook
