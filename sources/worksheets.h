// Finding worksheets in an open workbook.
#pragma once

#include <string_view>

#include "sources/excel_automation.h"

namespace VCSVReader {

// The number of worksheets. Throws VParserException if there is none.
std::int32_t CountWorksheets(const NPlatform::Dispatch& worksheets);

// The same before one is removed: throws VParserException also if there is only one.
std::int32_t CountWorksheetsBeforeDelete(const NPlatform::Dispatch& worksheets);

// Gives `visit` one worksheet after another until it returns true; the result says whether it did. `count`
// is the number of worksheets, which is read again after each of them.
template <typename Visit>
bool VisitWorksheets(const NPlatform::Dispatch& worksheets, std::int32_t count, Visit visit) {
    for (std::int32_t index = 1; index <= count; ++index) {
        if (visit(Excel::Item(worksheets, index))) return true;
        count = Excel::Count(worksheets);
    }
    return false;
}

// The first worksheet of this name; no object if there is none.
NPlatform::Dispatch FindWorksheet(const NPlatform::Dispatch& worksheets, std::u16string_view name);

// The first worksheet of this name, otherwise the last one. `count` is at least 1.
NPlatform::Dispatch ChooseWorksheet(const NPlatform::Dispatch& worksheets, std::int32_t count,
                                    std::u16string_view name);

}  // namespace VCSVReader
