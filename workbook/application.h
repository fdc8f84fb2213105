// A spreadsheet application without a face: the first of the objects that automation drives.
//
// The objects answer the members in dispatch_ids.h with the meaning that spreadsheet applications give them;
// arguments that are not named below are taken and have no effect. A failure is a DispatchException with code
// 1004 and a sentence for the user; so is the end of the memory. A reference to an object stays usable in
// whatever order the others are released; when its workbook is closed or its worksheet deleted, the object
// says so. Nothing is saved unless asked for, as there is nobody to ask.
#pragma once

#include "platform/automation.h"

namespace NWorkbook {

// Application: `Visible`, `DisplayAlerts`, `EnableEvents` and `AutomationSecurity` can be set; nothing is
// shown and no macro runs anyway. `Quit` closes all workbooks; afterwards there are no more `Workbooks`, and
// another `Quit` does nothing.
// Workbooks: `Open` takes Filename, ReadOnly and Password, which no file that can be opened needs. A file
// that is opened twice gives two workbooks that know nothing of each other. `Add` makes one worksheet,
// "Sheet1", and takes no template. `Close` closes all workbooks.
NPlatform::Dispatch StartApplication();

}  // namespace NWorkbook
