#include "sources/worksheet_facts.h"

#include <algorithm>
#include <utility>

namespace VCSVReader {

std::u16string_view ShownTruth(bool truth) { return truth ? u"TRUE" : u"FALSE"; }

std::u16string_view ShownError(std::int32_t number) {
    constexpr std::pair<std::int32_t, std::u16string_view> kErrors[] = {
        {2000, u"#NULL!"},  {2007, u"#DIV/0!"},   {2015, u"#VALUE!"},   {2023, u"#REF!"},
        {2029, u"#NAME?"},  {2036, u"#NUM!"},     {2042, u"#N/A"},      {2043, u"#GETTING_DATA"},
        {2045, u"#SPILL!"}, {2046, u"#CONNECT!"}, {2047, u"#BLOCKED!"}, {2048, u"#UNKNOWN!"},
        {2049, u"#FIELD!"}, {2050, u"#CALC!"}};
    for (const auto& [known, text] : kErrors) {
        if (known == number) return text;
    }
    return u"#ERROR";
}

const HeldValue* WorksheetFacts::Find(std::size_t row, std::size_t column) const {
    const auto place = [](const HeldValue& value) {
        return std::pair<std::size_t, std::size_t>(value.row, value.column);
    };
    const auto found = std::ranges::lower_bound(values, std::pair(row, column), {}, place);
    return found == values.end() || place(*found) != std::pair(row, column) ? nullptr : &*found;
}

}  // namespace VCSVReader
