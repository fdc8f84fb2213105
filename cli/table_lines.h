// What a table is, and what is wrong with it, as lines for people.
#pragma once

#include <string>

#include "cli/findings.h"
#include "cli/options.h"

namespace NCli {

// "2 errors, 1 warning" of the last conversion; empty if there is neither.
std::string CountedFindings();

// Shows the findings of the last conversion on standard error, if it looked for them and there are any: of
// each rule at most 20 lines, then how many there are of all. Of one of many files, only the counts are
// shown.
void ShowFindings(const Options& options, const Findings& findings);

// Of the last conversion, which has not failed: how many DTCs, how their numbers are read, the smallest and
// the largest one, and the items by their headers.
std::string DescribeTable();

// The name that begins a line about an input.
std::string ShownInput(const Options& options);

}  // namespace NCli
