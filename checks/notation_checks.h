// Cells that change how others are read.
#pragma once

#include "checks/number_checks.h"

namespace NChecks {

// Looks at a number column as a whole, when each of its cells was looked at.
void CheckNotation(const Table& table, std::size_t column, const NumberTallies& tallies,
                   VSimpleXMLCreation::NumberReader& reader, Collector& collector);

}  // namespace NChecks
