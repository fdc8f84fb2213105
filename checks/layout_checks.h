// Whether the table is laid out as its author meant it.
#pragma once

#include "checks/collector.h"
#include "checks/table.h"

namespace NChecks {

// What is still worth looking at.
struct LayoutVerdict {
    bool hasNumbers = true;  // false: the number columns are not those that were meant
    bool hasHeader = true;   // false: the first row is none
};

LayoutVerdict CheckLayout(const Table& table, Collector& collector);

}  // namespace NChecks
