// What a table is, in one line for people.
#pragma once

#include <string>

#include "cli/options.h"

namespace NCli {

// Of the last conversion, which has not failed: how many DTCs, how their numbers are read, the smallest and
// the largest one, and the items by their headers. With a line feed.
std::string DescribeTable(const Options& options);

}  // namespace NCli
