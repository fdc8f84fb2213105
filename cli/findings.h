// What the library found wrong with the table of the last conversion, if that looked for findings.
#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <string>

namespace NCli {

inline constexpr std::size_t kNowhere = std::numeric_limits<std::size_t>::max();

// One thing that is wrong, at one place. Texts are UTF-8.
struct Finding {
    std::string rule;  // such as "number-unreadable"
    bool isError;      // else a warning
    // From 0, row 0 being the header; both kNowhere for the table as a whole.
    std::size_t row;
    std::size_t column;
    std::string cell;        // as a worksheet names it, such as A7; empty for the table as a whole
    std::size_t line;        // of a text file, from 1; 0 for other inputs and for the table as a whole
    std::string text;        // one to three sentences on one line
    std::size_t cause;       // from 0; findings of one cause follow each other
    std::size_t causeCount;  // how many places have the cause, those that are not handed out among them
};

struct FindingCount {
    std::string rule;
    std::size_t errors;
    std::size_t warnings;
};

// Lends the findings, one at a time, in the order of the rules; of each rule at most 1000. Throws
// std::bad_alloc.
void ForEachFinding(const std::function<void(const Finding&)>& use);

// The same for the counts of all rules, those that found nothing included. None where the conversion did not
// look for findings or the table was not read.
void ForEachFindingCount(const std::function<void(const FindingCount&)>& use);

// Whether there may be any: the conversion was to look for findings, and read the table.
bool HaveBeenLookedFor();

// Of all rules together.
struct FindingTotals {
    std::size_t errors = 0;
    std::size_t warnings = 0;
};
FindingTotals CountFindings();

}  // namespace NCli
