// What the command does, once its command line is read.
#pragma once

#include "cli/options.h"

namespace NCli {

// Both throw Failure, and std::bad_alloc when the memory is exhausted.
void ListWorksheets(const Options& options);
void Convert(const Options& given);

}  // namespace NCli
