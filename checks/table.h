// The table and what the document is going to make of it.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "checks/finding.h"
#include "document/table_scan.h"
#include "sources/table.h"
#include "sources/worksheet_facts.h"

namespace NChecks {

// What the caller of the conversion said.
struct Wishes {
    const std::set<std::u16string>& vsgNames;
    const std::set<std::u16string>& secondNames;
    const std::set<std::u16string>& thirdNames;
    // Of an input that is lines of text, the character between two cells; 0 for any other input.
    char16_t separator;
    bool isEightBit;                              // each byte was read as a character
    const VCSVReader::WorksheetFacts* worksheet;  // null where the input is none
};

// A table that passed its consistency check.
class Table {
  public:
    explicit Table(VCSVReader::VHeapIterator& iterator);

    [[nodiscard]] std::size_t RowCount() const { return rows.size(); }  // with the header
    [[nodiscard]] std::size_t ColumnCount() const { return rows.front()->size(); }
    [[nodiscard]] const VCSVReader::VTableRow& Row(std::size_t row) const { return *rows[row]; }
    [[nodiscard]] const VCSVReader::VTableRow& Header() const { return *rows.front(); }
    [[nodiscard]] std::size_t DescriptionColumn() const {
        return VSimpleXMLCreation::FirstItemColumn(layout) - 1;
    }
    // Whether nothing of the column reaches the document.
    [[nodiscard]] bool IsSkipped(std::size_t column) const;

    std::vector<const VCSVReader::VTableRow*> rows;
    VSimpleXMLCreation::NumberNotation notation;
    VSimpleXMLCreation::TableLayout layout;
    std::size_t endColumn;  // with which the table ends
};

bool IsBlank(std::u16string_view cell);
bool IsBlankRow(const VCSVReader::VTableRow& row);

}  // namespace NChecks
