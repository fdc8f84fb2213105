// Findings as lines for people.
#pragma once

#include <cstddef>
#include <string>

#include "cli/options.h"

namespace NCli {

// "1 row", "2 rows"
std::string Counted(std::size_t count, const char* noun);

// The name that begins a line about an input.
std::string ShownInput(const Options& options);

// "2 errors, 1 warning"; empty where there is neither.
std::string CountedFindings(std::size_t errors, std::size_t warnings);

// Shows the findings of the last conversion on standard error, if it looked for them and there are any: of
// each rule at most 20 lines, then how many there are of all. `hasPassed`: the conversion did not fail. Of
// one of many files, only the counts are shown.
void ShowFindings(const Options& options, bool hasPassed);

}  // namespace NCli
