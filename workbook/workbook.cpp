#include "workbook/workbook.h"

namespace NWorkbook {

CellTable& Worksheet::Cells() {
    if (!read_) return cells_;
    try {
        CellTable cells;
        read_(cells);
        cells_ = std::move(cells);
        read_ = nullptr;
    } catch (const WorkbookError& error) {
        read_ = [error](CellTable&) { throw error; };
        throw;
    }
    return cells_;
}

}  // namespace NWorkbook
