// What a document was made of, for those who want to check it.
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
    std::size_t columns = 0;  // with those that are skipped
    // The wholly empty column with which the table ends; it and all behind it are skipped. `columns` where
    // there is none.
    std::size_t endColumn = 0;
    std::vector<std::size_t> columnsWithoutHeader;  // those before the end, which are skipped, in their order
    std::size_t itemColumns = 0;
    std::size_t items = 0;                    // in all rows
    std::vector<std::u16string> itemHeaders;  // of the item columns
    // Of all DTCs, as unsigned numbers; 0 where there are none.
    std::uint32_t smallestNumber = 0;
    std::uint32_t largestNumber = 0;
};

}  // namespace VSimpleXMLCreation
