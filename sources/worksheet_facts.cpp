#include "sources/worksheet_facts.h"

#include <algorithm>
#include <utility>

namespace VCSVReader {

const HeldValue* WorksheetFacts::Find(std::size_t row, std::size_t column) const {
    const auto place = [](const HeldValue& value) {
        return std::pair<std::size_t, std::size_t>(value.row, value.column);
    };
    const auto found = std::ranges::lower_bound(values, std::pair(row, column), {}, place);
    return found == values.end() || place(*found) != std::pair(row, column) ? nullptr : &*found;
}

}  // namespace VCSVReader
