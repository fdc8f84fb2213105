// The parts of the files that this engine writes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workbook/workbook.h"

namespace NWorkbook::NXlsx {

// By this name, which it puts into each file, the engine knows those that it wrote itself.
inline constexpr std::string_view kApplicationName = "xls2tki";

struct WrittenPart {
    std::string name;
    std::string content;  // XML, UTF-8
};

// In the order of the file. Numbers have as many digits as it takes to read the same number again; a text is
// written as often as it occurs. Throws WorkbookError for a cell that cannot be written.
std::vector<WrittenPart> WriteParts(const Workbook& workbook);

}  // namespace NWorkbook::NXlsx
