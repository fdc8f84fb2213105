// What the command does, once its command line is read.
#pragma once

#include "cli/options.h"

namespace NCli {

// Both throw Failure, and std::bad_alloc when the memory is exhausted.
void ListWorksheets(const Options& options);
void Convert(const Options& given);

// In the exit status of one of many files, which is else the command's: the table has an error.
inline constexpr int kErrorsFound = 4;

// The exit status of one of many files, of what it would be alone.
int WithErrorsFound(int status);

}  // namespace NCli
