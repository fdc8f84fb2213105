// What the reading of a workbook's worksheets shares.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "workbook/xlsx/number_formats.h"
#include "workbook/xlsx/package.h"
#include "workbook/xlsx/relationships.h"
#include "workbook/xlsx/shared_strings.h"
#include "workbook/xlsx/text_builder.h"
#include "workbook/xlsx/xml_part.h"

namespace NWorkbook::NXlsx {

// What the workbook's main part says.
struct WorkbookContents {
    struct Sheet {
        std::u16string name;
        std::string_view part;  // empty if it refers to none, which spoils this worksheet alone
    };

    WorkbookContents() = default;
    WorkbookContents(WorkbookContents&&) = default;  // not to be copied: the views stay where they are

    std::string part;
    Relationships relationships;     // of the part; the views below are of them
    std::vector<Sheet> worksheets;   // in workbook order, maybe none
    std::string_view sharedStrings;  // the part; empty if there is none
    bool isFrom1904 = false;         // where dates count from
    bool isOwn = false;              // this engine wrote the file
};

// Throws WorkbookError, also where there are more than kMostWorksheets or one's name is too long.
WorkbookContents ReadContents(Package& package);

class OpenedWorkbook {
  public:
    OpenedWorkbook(std::unique_ptr<WorkbookFile> file, std::shared_ptr<TextStore> store)
        : package(std::move(file)), contents(ReadContents(package)), texts(std::move(store)) {}

    // Reads them when they are first asked for. Throws WorkbookError.
    const NXlsx::SharedStrings& SharedStrings();
    // The same.
    const NXlsx::NumberFormats& NumberFormats();
    // Throws WorkbookError.
    void ReadWorksheet(const WorkbookContents::Sheet& sheet, XmlReader& reader);

    Package package;
    WorkbookContents contents;
    std::shared_ptr<TextStore> texts;
    Budget budget;

  private:
    std::optional<NXlsx::SharedStrings> sharedStrings_;
    std::optional<NXlsx::NumberFormats> numberFormats_;
};

}  // namespace NWorkbook::NXlsx
