// What the reading of a workbook's worksheets shares.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbook/package.h"
#include "workbook/shared_strings.h"
#include "workbook/text_builder.h"

namespace NWorkbook {

// What the workbook's main part says.
struct WorkbookContents {
    struct Sheet {
        std::u16string name;
        std::string part;
        bool isHidden;
    };

    std::string part;
    std::vector<Sheet> worksheets;  // in workbook order
    std::string sharedStrings;      // the part; empty if there is none
    bool isFrom1904 = false;        // where dates count from
};

// Throws WorkbookError, also where there are more than kMostWorksheets.
WorkbookContents ReadContents(Package& package);

class OpenedWorkbook {
  public:
    OpenedWorkbook(std::u16string_view path, std::shared_ptr<TextStore> store)
        : package(path), contents(ReadContents(package)), texts(std::move(store)) {}

    // Reads them when they are first asked for. Throws WorkbookError.
    const NWorkbook::SharedStrings& SharedStrings();

    Package package;
    WorkbookContents contents;
    std::shared_ptr<TextStore> texts;
    Budget budget;

  private:
    std::optional<NWorkbook::SharedStrings> sharedStrings_;
};

}  // namespace NWorkbook
