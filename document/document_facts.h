// How a table was read and what its document contains.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "document/table_scan.h"

namespace VSimpleXMLCreation {

// Columns have 0-based indices.
struct DocumentFacts {
    TableLayout layout = TableLayout::SingleNumber;
    NumberNotation notation;
    std::size_t rows = 0;     // without the header: the DTCs
    std::size_t columns = 0;  // including skipped ones
    // The empty column that ends the table; it and all columns after it are skipped. `columns` if
    // there is none.
    std::size_t endColumn = 0;
    std::vector<std::size_t> columnsWithoutHeader;  // those before the end, which are skipped, in their order
    std::size_t itemColumns = 0;
    std::size_t items = 0;                    // in all rows
    std::vector<std::u16string> itemHeaders;  // of the item columns
    // Of all DTCs, as unsigned numbers; 0 if there are none.
    std::uint32_t smallestNumber = 0;
    std::uint32_t largestNumber = 0;
};

}  // namespace VSimpleXMLCreation
