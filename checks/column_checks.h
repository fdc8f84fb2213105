// Columns that are left out, and headers that name none.
#pragma once

#include "checks/collector.h"
#include "checks/table.h"

namespace NChecks {

// `hasNumbers`: the numbers are in the number columns.
void CheckColumns(const Table& table, bool hasNumbers, Collector& collector);

// Item columns with the same header, and names of the caller that no item column has.
void CheckItemHeaders(const Table& table, const Wishes& wishes, Collector& collector);

}  // namespace NChecks
