#include "document/table_scan.h"

#include <algorithm>

#include "document/cell_text.h"
#include "platform/format.h"

namespace VSimpleXMLCreation {

using VCSVReader::VHeapIterator;
using VCSVReader::VTableRow;

namespace {

constexpr std::size_t kMessageCapacity = 1024;

bool IsHexLetter(char16_t unit) { return UpperCase(unit) >= u'A' && UpperCase(unit) <= u'F'; }

std::vector<std::size_t> EmptyColumns(const VTableRow& row) {
    std::vector<std::size_t> columns;
    for (std::size_t column = 0; column < row.size(); ++column) {
        if (Trim(row[column]).empty()) columns.push_back(column);
    }
    return columns;
}

}  // namespace

bool LooksLikeSae(std::u16string_view cell) {
    if (cell.size() != 5 && cell.size() != 7) return false;
    return std::u16string_view(u"PBCU").find(UpperCase(cell.front())) != std::u16string_view::npos;
}

bool HasHexLetter(std::u16string_view cell) { return std::any_of(cell.begin(), cell.end(), IsHexLetter); }

NumberNotation ScanNumberNotation(VHeapIterator& iterator) {
    NumberNotation notation;
    while (iterator.HasMoreRows()) {
        const VTableRow& row = *iterator.GetNextRow();
        if (iterator.IsHeaderRow()) continue;
        const std::u16string_view cell = row[0];
        notation.hexDigits = notation.hexDigits || HasHexLetter(cell);
        notation.saeCodes = notation.saeCodes || LooksLikeSae(cell);
    }
    return notation;
}

std::size_t FindEndColumn(VHeapIterator& iterator) {
    iterator.Reset();
    const VTableRow& header = *iterator.GetNextRow();
    std::vector<std::size_t> empty = EmptyColumns(header);
    while (!empty.empty() && iterator.HasMoreRows()) {
        const VTableRow& row = *iterator.GetNextRow();
        std::erase_if(empty, [&row](std::size_t column) { return !Trim(row[column]).empty(); });
    }
    return empty.empty() ? header.size() : empty.front();
}

std::vector<bool> FindSkippedColumns(VHeapIterator& iterator, VCSVReader::VLogObject& log) {
    const std::size_t end = FindEndColumn(iterator);
    iterator.Reset();
    std::vector<bool> skipped(iterator.GetNextRow()->size());
    if (end < skipped.size()) {
        log.LogMessage(NPlatform::Format(
            kMessageCapacity, u"Found empty column index '%d'. Skipping all columns behind this column.",
            {static_cast<std::int32_t>(end)}));
        std::fill(skipped.begin() + static_cast<std::ptrdiff_t>(end), skipped.end(), true);
    }
    return skipped;
}

TableLayout DetectLayout(const VTableRow& header) {
    const std::u16string first = UpperCase(header[0]);
    const std::u16string second = UpperCase(header[1]);
    if (first == u"SPN" && second == u"FMI") return TableLayout::J1939;
    if (first == u"BASEDTC" && second == u"FTB") return TableLayout::BaseAndFailureType;
    if (first == u"DTC" && second == u"FAILURE TYPE") return TableLayout::BaseAndFailureType;
    return TableLayout::SingleNumber;
}

std::size_t NumberColumns(TableLayout layout) { return layout == TableLayout::SingleNumber ? 1 : 2; }

std::size_t FirstItemColumn(TableLayout layout) { return NumberColumns(layout) + 1; }

}  // namespace VSimpleXMLCreation
