#include "checks/table.h"

#include "document/cell_text.h"

namespace NChecks {

using VCSVReader::VTableRow;

namespace {

VSimpleXMLCreation::NumberNotation ScanNotation(VCSVReader::VHeapIterator& iterator) {
    iterator.Reset();
    return VSimpleXMLCreation::ScanNumberNotation(iterator);
}

std::vector<const VTableRow*> AllRows(VCSVReader::VHeapIterator& iterator) {
    std::vector<const VTableRow*> rows;
    for (iterator.Reset(); iterator.HasMoreRows();) rows.push_back(iterator.GetNextRow());
    return rows;
}

}  // namespace

Table::Table(VCSVReader::VHeapIterator& iterator)
    : rows(AllRows(iterator)),
      notation(ScanNotation(iterator)),
      layout(VSimpleXMLCreation::DetectLayout(Header())),
      endColumn(VSimpleXMLCreation::FindEndColumn(iterator)) {}

bool Table::IsSkipped(std::size_t column) const { return column >= endColumn || IsBlank(Header()[column]); }

bool IsBlank(std::u16string_view cell) { return VSimpleXMLCreation::Trim(cell).empty(); }

bool IsBlankRow(const VTableRow& row) {
    for (std::size_t column = 0; column < row.size(); ++column) {
        if (!IsBlank(row[column])) return false;
    }
    return true;
}

}  // namespace NChecks
