// What the whole table decides before a document is built from it.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "log/log_object.h"
#include "sources/table.h"

namespace VSimpleXMLCreation {

// How the first column writes its numbers.
struct NumberNotation {
    // Some data cell holds a letter from A to F, in either case.
    bool hexDigits = false;
    // Some data cell has 5 or 7 characters and begins with P, B, C or U, in either case.
    bool saeCodes = false;
};

// Whether the cell has a letter from A to F, in either case.
bool HasHexLetter(std::u16string_view cell);

// Whether the cell makes texts that begin with P, C, B or U SAE codes.
bool LooksLikeSae(std::u16string_view cell);

// Looks at the first cell of each data row, from the iterator's position on.
NumberNotation ScanNumberNotation(VCSVReader::VHeapIterator& iterator);

// The 0-based column with which the table ends: the first whose cells are all empty or white space, the
// header's included. The number of columns if there is none.
std::size_t FindEndColumn(VCSVReader::VHeapIterator& iterator);

// Which columns produce nothing, one flag a column. A column whose cells are all empty or white space, the
// header's included, is the end of the table: it and all columns after it are skipped, and the log gets a
// message with its 0-based index.
std::vector<bool> FindSkippedColumns(VCSVReader::VHeapIterator& iterator, VCSVReader::VLogObject& log);

// The meaning of the first columns, from the first two headers. Case does not matter, blanks do.
enum class TableLayout {
    // DTC number, description.
    SingleNumber,
    // SPN, FMI, description: "SPN" and "FMI".
    J1939,
    // Base DTC, failure type byte, description: "BASEDTC" and "FTB", or "DTC" and "FAILURE TYPE".
    BaseAndFailureType,
};

TableLayout DetectLayout(const VCSVReader::VTableRow& header);

// How many columns make the number, from the first on: 1 or 2.
std::size_t NumberColumns(TableLayout layout);

// The first record item column, 0-based. The description is right before it.
std::size_t FirstItemColumn(TableLayout layout);

}  // namespace VSimpleXMLCreation
