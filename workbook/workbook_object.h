// The objects of one workbook and of its worksheets.
#pragma once

#include "platform/automation.h"
#include "workbook/session.h"

namespace NWorkbook {

// Workbook: `Save` and `SaveAs` write what SaveWorkbook writes and refuse what it refuses. `Save` needs a
// path from `Open` or `SaveAs`, and refuses a workbook that was opened read-only; so does `SaveAs` under the
// same path, another path makes it writable. `SaveAs` takes Filename as it is, without adding an extension; a
// FileFormat other than 51 or a password is refused. `Close` with SaveChanges true saves first, as Filename
// if given. Sheets: `Item` takes a number from 1 or a name, without regard to case. `Add` adds Count
// worksheets, 1 to 255, before the active worksheet; the first of them is the result and becomes active. A
// workbook just opened or made has its first worksheet active. The new names are "Sheet" and the next number
// that is not taken.
NPlatform::Variant MakeWorkbookObject(WorkbookReference reference);

// Worksheet: `Name` follows RefuseWorksheetName and is that of no other worksheet; `Delete` refuses the last
// one. `Range` takes one or two addresses as ParseAddress does, in any order, and gives the block they span.
// Range: `Value2` gives what ReadValues gives and takes what WriteValue takes.
NPlatform::Variant MakeWorksheetObject(WorksheetReference reference);

}  // namespace NWorkbook
