// What a worksheet holds that its table does not.
#pragma once

#include <string>

#include "checks/collector.h"
#include "checks/table.h"
#include "sources/worksheet_facts.h"

namespace NChecks {

// Rows and columns outside the table, which has this many; none where the worksheet gave no table.
void CheckEdges(const VCSVReader::WorksheetFacts& facts, std::size_t rows, std::size_t columns,
                Collector& collector);

// Cells whose text is not what the worksheet shows, those apart that are reported as a number already.
void CheckValues(const Table& table, const VCSVReader::WorksheetFacts& facts, Collector& collector);

// Of a number cell that is read as empty; `outcome` is the middle of the sentence.
std::u16string TellNoNumber(const VCSVReader::HeldValue& value, std::u16string_view outcome);

// "the error #N/A", "the number 1193046"
std::u16string DescribeValue(const VCSVReader::HeldValue& value);

}  // namespace NChecks
