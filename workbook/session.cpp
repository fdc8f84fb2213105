#include "workbook/session.h"

namespace NWorkbook {

std::shared_ptr<HeldWorkbook> WorkbookReference::Get() const {
    std::shared_ptr<HeldWorkbook> held = opened.lock();
    if (held == nullptr) throw WorkbookError(u"The workbook is closed.");
    return held;
}

std::shared_ptr<Worksheet> WorksheetReference::Get() const {
    std::shared_ptr<Worksheet> held = worksheet.lock();
    if (held != nullptr) return held;
    const bool isClosed = workbook.opened.expired();
    throw WorkbookError(isClosed ? u"The workbook is closed." : u"The worksheet is deleted.");
}

}  // namespace NWorkbook
