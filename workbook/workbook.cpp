#include "workbook/workbook.h"

namespace NWorkbook {

CellTable& Worksheet::Cells() {
    if (read_) {
        CellTable cells;
        read_(cells);
        cells_ = std::move(cells);
        read_ = nullptr;
    }
    return cells_;
}

std::unique_ptr<Workbook> OpenWorkbook(std::u16string_view path) {
    throw WorkbookError(u"No workbook can be opened yet: '" + std::u16string(path) + u"'.");
}

}  // namespace NWorkbook
