// The objects of one workbook and of its worksheets.
#pragma once

#include "platform/automation.h"
#include "workbook/session.h"

namespace NWorkbook {

// Workbook: `Save` and `SaveAs` write what SaveWorkbook writes and refuse what it refuses. `Save` needs a
// path from `Open` or `SaveAs`, and refuses a workbook that was opened read-only; so does `SaveAs` under the
// same path, another path makes it writable. `SaveAs` takes Filename as it is, without adding an extension,
// and refuses a FileFormat and passwords. `Close` refuses SaveChanges. Sheets: `Item` takes a number from 1.
// `Add` adds one worksheet before the active one; the new one becomes active. A workbook just opened or made
// has its first worksheet active. The new name is "Sheet" and the next number that is not taken.
NPlatform::Variant MakeWorkbookObject(WorkbookReference reference);

// Worksheet: `Name` follows RefuseWorksheetName and is that of no other worksheet; `Delete` refuses the last
// one. `Range` takes two names of cells, in any order, and gives the block that
// they span.
// Range: `Value2` gives what ReadValues gives and takes what WriteValue takes.
NPlatform::Variant MakeWorksheetObject(WorksheetReference reference);

}  // namespace NWorkbook
