// What the library found wrong with the table of the last conversion, if that looked for findings.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace NCli {

// One thing that is wrong, at one place. Texts are UTF-8.
struct Finding {
    std::string_view rule;   // such as "number-unreadable"
    bool isError;            // else a warning
    std::string cell;        // as a worksheet names it, such as A7; empty for the table as a whole
    std::size_t line;        // of a text file, from 1; 0 for other inputs and for the table as a whole
    std::string text;        // one to three sentences on one line
    std::size_t cause;       // from 0: places with one number have one cause
    std::size_t causeCount;  // how many places have the cause, those that are not listed among them
};

struct FindingCount {
    std::string_view rule;
    std::size_t errors;
    std::size_t warnings;
    std::size_t listed;  // how many of them are in the list
};

struct Findings {
    bool areKnown = false;             // the conversion looked for them, and read the table
    bool isComplete = false;           // all of the table was looked at
    std::vector<FindingCount> counts;  // of the rules that found something, in their order
    std::vector<Finding> list;         // by rule, then by place; of each rule at most 1000
};

// Throws std::bad_alloc.
Findings TakeFindings();

// Of all rules together. Allocates nothing.
struct FindingTotals {
    std::size_t errors = 0;
    std::size_t warnings = 0;
};
FindingTotals CountFindings();

}  // namespace NCli
