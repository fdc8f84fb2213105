// What workbooks hold, as texts to compare.
#pragma once

#include <cstdio>
#include <string>

#include "tests/host.h"
#include "workbook/file_formats.h"

namespace NTest {

inline std::string Describe(const NWorkbook::Cell& cell) {
    using NWorkbook::CellType;
    char number[40];
    std::snprintf(number, sizeof number, "%.17g", cell.type == CellType::Number ? cell.number : 0);
    switch (cell.type) {
        case CellType::Number:
            return std::string("n ") + number;
        case CellType::Text:
            return "t " +
                   ReplaceAll(ReplaceAll(Utf8(NWorkbook::TextAt(cell.text)), "\r", "\\13"), "\n", "\\10");
        case CellType::Bool:
            return cell.truth ? "b 1" : "b 0";
        case CellType::Error:
            return "e " + std::to_string(static_cast<int>(cell.error));
        case CellType::Nothing:
            break;
    }
    return "nothing";
}

// What the workbook holds, or the sentence that refuses it, without the folder.
inline std::string Outcome(const TempFolder& folder, const std::u16string& path) {
    try {
        const auto workbook = NWorkbook::OpenWorkbook(path);
        std::string text;
        for (const auto& sheet : workbook->worksheets) {
            for (const NWorkbook::Cell* cell = sheet->Cells().Begin(); cell != sheet->Cells().End(); ++cell) {
                text += Describe(*cell) + " ";
            }
        }
        return text;
    } catch (const NWorkbook::WorkbookError& error) {
        return ReplaceAll(Utf8(error.Message()), Utf8(folder.Path("")), "");
    }
}

}  // namespace NTest
