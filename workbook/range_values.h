// The values of cells as automation hands them out.
#pragma once

#include "platform/automation.h"
#include "workbook/range_address.h"
#include "workbook/workbook.h"

namespace NWorkbook {

// What `Value2` gives. One cell: a number, a text, a truth value, an error (0x800A0000 plus its number) or
// empty. A block: an array of these, as the cells are now; it keeps the texts alive. Throws WorkbookError for
// a block of more than CellTable::kMostCells cells or a worksheet that cannot be read.
NPlatform::Variant ReadValues(const std::shared_ptr<TextStore>& texts, Worksheet& worksheet,
                              const CellBlock& block);

// What `Value` gives: the same, but in a block a number that is shown as a date is a date, and a formula
// whose result was not saved is the error #GETTING_DATA, since its result is still to come.
NPlatform::Variant ReadShownValues(const std::shared_ptr<TextStore>& texts, Worksheet& worksheet,
                                   const CellBlock& block);

// Puts one value into each cell of the block. A text stays a text, also one that looks like a number, a date
// or a formula; the empty value empties the cell. Throws WorkbookError, and nothing has changed, for a block
// of more than CellTable::kMostCells cells, a number that is not finite, or a text longer than
// kMostUnitsOfCell; OleException for a value of another type, arrays included.
void WriteValue(TextStore& texts, Worksheet& worksheet, const CellBlock& block,
                const NPlatform::Variant& value);

}  // namespace NWorkbook
