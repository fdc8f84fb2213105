// Looking at a table.
#pragma once

#include <string_view>

#include "checks/finding.h"
#include "checks/table.h"

namespace NChecks {

// What reading a table from text left over: the position behind its last row, and the characters of a quoted
// cell that was not closed.
struct Unfinished {
    Place place;
    std::u16string_view text;
};

// Looks at a table as far as it was read, whether it passed its consistency check or not. `unfinished`: null
// where all of the text became rows.
//
// `hasPassed`: the table passed. All of it is looked at then; else only how it was read. Where memory is
// short, there are fewer findings, and the list says so.
FindingList FindFindings(VCSVReader::VHeapIterator& iterator, bool hasPassed, const Unfinished* unfinished,
                         const Wishes& wishes);

}  // namespace NChecks
