#include "sources/worksheets.h"

#include "sources/parser_exception.h"

namespace VCSVReader {

using NPlatform::Dispatch;

std::int32_t CountWorksheets(const Dispatch& worksheets) {
    const std::int32_t count = Excel::Count(worksheets);
    if (count < 1) throw VParserException(u"Excel file does not contain a data sheet!");
    return count;
}

std::int32_t CountWorksheetsBeforeDelete(const Dispatch& worksheets) {
    const std::int32_t count = CountWorksheets(worksheets);
    if (count == 1) {
        throw VParserException(
            u"Excel file must always contain at least one data sheet - add a new one before deleting this "
            u"sheet!");
    }
    return count;
}

Dispatch FindWorksheet(const Dispatch& worksheets, std::u16string_view name) {
    Dispatch found;
    VisitWorksheets(worksheets, Excel::Count(worksheets), [&](const Dispatch& worksheet) {
        if (Excel::Name(worksheet) != name) return false;
        found = worksheet;
        return true;
    });
    return found;
}

Dispatch ChooseWorksheet(const Dispatch& worksheets, std::int32_t count, std::u16string_view name) {
    Dispatch chosen = Excel::Item(worksheets, 1);
    VisitWorksheets(worksheets, count, [&](Dispatch worksheet) {
        chosen = std::move(worksheet);
        return Excel::Name(chosen) == name;
    });
    return chosen;
}

}  // namespace VCSVReader
