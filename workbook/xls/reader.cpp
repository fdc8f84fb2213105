#include "workbook/xls/defined_names.h"
#include "workbook/xls/opened_workbook.h"
#include "workbook/xls/sheet_reader.h"
#include "workbook/xls/xls.h"

namespace NWorkbook::NXls {

std::unique_ptr<Workbook> Open(std::unique_ptr<WorkbookFile> file) {
    auto workbook = std::make_unique<Workbook>();
    workbook->path = file->FullPath();
    const auto opened = std::make_shared<OpenedWorkbook>(std::move(file), workbook->texts);
    for (const Contents::Sheet& sheet : opened->contents.sheets) {
        if (!sheet.isWorksheet) continue;
        workbook->worksheets.push_back(std::make_shared<Worksheet>(
            sheet.name, [opened, &sheet](CellTable& cells) { ReadSheet(*opened, sheet, cells); }));
    }
    workbook->isOwn = false;
    workbook->readDefinedNames = [opened] { return ReadDefinedNames(*opened); };
    return workbook;
}

}  // namespace NWorkbook::NXls
