// Where the data of a worksheet ends.
#pragma once

#include <cstdint>
#include <string>

#include "platform/automation.h"

namespace VCSVReader {

// The name of the bottom-right cell of the data, as in F120; A1 for a worksheet without data. Cells with a
// number or a text count.
//
// The worksheet is fetched in blocks that reach `scanRows` and `scanColumns` beyond their first cell; less
// than 0 is taken as 0. From A1 on, blocks are taken to the right until one has no data, and then, below
// them, until the first of a band has none. The next block begins `scanColumns` columns (`scanRows` rows)
// further, or one. So with 10 columns and 0 rows the data ends above the first row that has nothing in A to
// K. In a block of one cell, any value counts.
//
// Errors are those of the calls into Excel (see excel_automation.h).
std::u16string FindDataArea(const NPlatform::Dispatch& worksheet, std::int32_t scanRows,
                            std::int32_t scanColumns);

}  // namespace VCSVReader
