// What a running application holds, and how its objects refer to it.
#pragma once

#include <memory>
#include <vector>

#include "workbook/workbook.h"

namespace NWorkbook {

struct HeldWorkbook {
    std::unique_ptr<Workbook> workbook;
    bool isReadOnly = false;
    std::shared_ptr<Worksheet> active;  // NULL if there is no worksheet
    int newWorksheets = 0;              // how many numbers of new names were used or found taken
};

// Owns the open workbooks; every object of the application holds it. There is no reference the other way.
struct Session {
    bool hasQuit = false;
    std::vector<std::shared_ptr<HeldWorkbook>> workbooks;
};

// Refers to an open workbook. Closing it ends that.
struct WorkbookReference {
    std::shared_ptr<Session> session;
    std::weak_ptr<HeldWorkbook> opened;

    // Throws WorkbookError when the workbook is closed.
    [[nodiscard]] std::shared_ptr<HeldWorkbook> Get() const;
};

// Refers to a worksheet of an open workbook. Deleting it ends that.
struct WorksheetReference {
    WorkbookReference workbook;
    std::weak_ptr<Worksheet> worksheet;

    // Throws WorkbookError when the worksheet is deleted or its workbook is closed.
    [[nodiscard]] std::shared_ptr<Worksheet> Get() const;
};

}  // namespace NWorkbook
