#include "workbook/workbook.h"

#include "workbook/defined_names.h"
#include "workbook/not_kept.h"
#include "workbook/opened_workbook.h"
#include "workbook/sheet_reader.h"

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

std::unique_ptr<Workbook> OpenWorkbook(std::u16string_view path) {
    auto workbook = std::make_unique<Workbook>();
    const auto opened = std::make_shared<OpenedWorkbook>(path, workbook->texts);
    for (const WorkbookContents::Sheet& sheet : opened->contents.worksheets) {
        workbook->worksheets.push_back(std::make_shared<Worksheet>(
            sheet.name, [opened, &sheet](CellTable& cells) { ReadSheet(*opened, sheet, cells); }));
    }
    workbook->path = opened->package.FullPath();
    workbook->findWhatIsNotKept = [opened] { return FindWhatIsNotKept(*opened); };
    workbook->readDefinedNames = [opened] { return ReadDefinedNames(*opened); };
    return workbook;
}

}  // namespace NWorkbook
