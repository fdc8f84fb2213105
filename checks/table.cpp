#include "checks/table.h"

#include "document/cell_text.h"

namespace NChecks {

using VCSVReader::VTableRow;

Table::Table(VCSVReader::VHeapIterator& iterator) {
    iterator.Reset();
    notation = VSimpleXMLCreation::ScanNumberNotation(iterator);
    endColumn = VSimpleXMLCreation::FindEndColumn(iterator);
    for (iterator.Reset(); iterator.HasMoreRows();) rows.push_back(iterator.GetNextRow());
    layout = VSimpleXMLCreation::DetectLayout(Header());
}

bool Table::IsSkipped(std::size_t column) const { return column >= endColumn || IsBlank(Header()[column]); }

bool IsBlank(std::u16string_view cell) { return VSimpleXMLCreation::Trim(cell).empty(); }

bool IsBlankRow(const VTableRow& row) {
    for (std::size_t column = 0; column < row.size(); ++column) {
        if (!IsBlank(row[column])) return false;
    }
    return true;
}

}  // namespace NChecks
