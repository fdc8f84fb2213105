// Finds the facts of a worksheet.
#pragma once

#include "sources/cell_block.h"
#include "sources/number_text.h"
#include "sources/worksheet_facts.h"

namespace VCSVReader {

// `table`: the cells that were read, from A1 on; null where the worksheet has no table. `write` made the
// texts of their numbers. Asks for the values of the table as they are shown, the used range and the values
// outside the table, of a large worksheet only for some millions of cells. A failure of automation ends up in
// the facts alone.
void FindFacts(const NPlatform::Dispatch& worksheet, const CellBlock* table, NumberWriter write,
               WorksheetFacts& facts);

}  // namespace VCSVReader
