#include "workbook/xlsx/defined_names.h"
#include "workbook/xlsx/opened_workbook.h"
#include "workbook/xlsx/sheet_reader.h"
#include "workbook/xlsx/xlsx.h"

namespace NWorkbook::NXlsx {

std::unique_ptr<Workbook> Open(std::unique_ptr<WorkbookFile> file) {
    auto workbook = std::make_unique<Workbook>();
    workbook->path = file->FullPath();
    const auto opened = std::make_shared<OpenedWorkbook>(std::move(file), workbook->texts);
    for (const WorkbookContents::Sheet& sheet : opened->contents.worksheets) {
        workbook->worksheets.push_back(std::make_shared<Worksheet>(
            sheet.name, [opened, &sheet](CellTable& cells) { ReadSheet(*opened, sheet, cells); }));
    }
    workbook->isOwn = opened->contents.isOwn;
    workbook->readDefinedNames = [opened] { return ReadDefinedNames(*opened); };
    return workbook;
}

}  // namespace NWorkbook::NXlsx
