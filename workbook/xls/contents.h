// What the records in front of the worksheets say.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "workbook/xls/record_reader.h"
#include "workbook/xls/texts.h"

namespace NWorkbook::NXls {

// Of a worksheet.
inline constexpr std::uint16_t kColumnCount = 256;

struct Contents {
    struct Sheet {
        std::u16string name;
        std::uint32_t offset;  // of its first record
        bool isWorksheet;      // not a chart, a macro sheet or a dialogue sheet
    };

    Version version = Version::Biff8;
    std::uint16_t codePage = NPlatform::kWesternCodePage;
    std::vector<Sheet> sheets;                   // in workbook order, those of all kinds
    std::optional<std::uint64_t> sharedStrings;  // the record's offset
    std::vector<bool> showsDate;                 // whether numbers are shown as dates, by format of cell
};

// From the beginning of the stream. Throws PartFault, also where there are more than kMostWorksheets or one's
// name is too long; WorkbookError for what is not damaged but cannot be read.
Contents ReadContents(const WorkbookFile& file, RecordReader& records, TextStore& store, Budget& budget);

// Whether a record of this type begins a workbook of Excel 2, 3 or 4.
bool IsOfExcel2To4(RecordType type);

// Goes through the first records of a worksheet. False also where they are damaged.
bool IsDialogueSheet(Stream& stream, std::uint64_t offset);

}  // namespace NWorkbook::NXls
