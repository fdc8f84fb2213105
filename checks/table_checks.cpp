#include "checks/table_checks.h"

#include <algorithm>
#include <new>

#include "checks/causes.h"
#include "checks/column_checks.h"
#include "checks/layout_checks.h"
#include "checks/number_checks.h"
#include "checks/sentence.h"
#include "checks/text_checks.h"
#include "checks/worksheet_checks.h"

namespace NChecks {

using VCSVReader::VHeapIterator;
using VCSVReader::VTableRow;

namespace {

std::size_t LineFeeds(std::u16string_view text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), u'\n'));
}

void ReportUnfinished(const Unfinished& unfinished, Collector& collector) {
    collector.Add(kUnfinishedQuote, unfinished.place, [&] {
        return Say(
            u"The double quote at the beginning of this cell is never closed: %s. This row and all rows "
            u"after "
            u"it, %s, are left out. Close the quote, or remove it.",
            {Quote(unfinished.text), Counted(LineFeeds(unfinished.text), u"line", u"lines")});
    });
}

// A text whose only row has carriage returns has no other line ends. Tells whether it is so.
bool ReportCarriageReturns(VHeapIterator& iterator, Collector& collector) {
    iterator.Reset();
    if (!iterator.HasMoreRows()) return false;
    const VTableRow& row = *iterator.GetNextRow();
    if (iterator.HasMoreRows() || row.size() == 0) return false;
    const std::u16string_view text(row[0].data(), row.TextSize());
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), u'\r'));
    if (lines == 0) return false;
    collector.Add(kCarriageReturns, {}, [&] {
        return Say(
            u"The lines of the file end in carriage returns only: %s became part of the header, and there is "
            u"no DTC. Save the file with other line ends.",
            {Counted(lines, u"line", u"lines")});
    });
    return true;
}

void ReportNoRows(Collector& collector) {
    collector.Add(kNoRows, {}, [] {
        return std::u16string(
            u"The table has a header and no rows, and the document no DTC. Fill in the rows, or convert "
            u"another table.");
    });
}

// The rows and columns that were read.
void CheckEdges(VHeapIterator& iterator, const VCSVReader::WorksheetFacts& facts, Collector& collector) {
    std::size_t rows = 0;
    std::size_t columns = 0;
    for (iterator.Reset(); iterator.HasMoreRows(); ++rows) columns = iterator.GetNextRow()->size();
    CheckEdges(facts, rows, columns, collector);
}

// Cells of a worksheet that only read as empty do not count.
bool IsEmptyColumn(const Table& table, std::size_t column, const VCSVReader::WorksheetFacts* facts) {
    const auto isHere = [column](const VCSVReader::HeldValue& value) { return value.column == column; };
    if (facts != nullptr && std::ranges::any_of(facts->values, isHere)) return false;
    std::size_t row = 1;
    while (row < table.RowCount() && IsBlank(table.Row(row)[column])) ++row;
    return row == table.RowCount();
}

// Whether no row has a number because a whole column is empty. A single row is reported as such.
bool ReportEmptyNumbers(const Table& table, const Wishes& wishes, Collector& collector) {
    bool isAny = false;
    for (std::size_t column = 0; column < NumberColumns(table.layout); ++column) {
        if (table.RowCount() <= 2 || !IsEmptyColumn(table, column, wishes.worksheet)) continue;
        isAny = true;
        collector.Add(kEmptyColumn, {0, column}, [&] {
            return Say(u"All cells below %s are empty, so no DTC has its number. Fill them in.",
                       {Quote(table.Header()[column])});
        });
    }
    return isAny;
}

void CheckRows(const Table& table, const Wishes& wishes, const LayoutVerdict& verdict, TextChecks& texts,
               Collector& collector) {
    NumberChecks numbers(table, wishes, collector);
    const std::size_t description = table.DescriptionColumn();
    const bool hasNumbers =
        verdict.hasNumbers && !table.IsSkipped(0) && !ReportEmptyNumbers(table, wishes, collector);
    const bool hasDescription =
        verdict.hasNumbers && description < table.endColumn && !table.IsSkipped(description);
    for (std::size_t row = 1; row < table.RowCount(); ++row) {
        texts.LookAtRow(row);
        if (hasNumbers) numbers.LookAtRow(row);
        const VTableRow& cells = table.Row(row);
        if (!hasDescription || !IsBlank(cells[description]) || IsBlankRow(cells)) continue;
        collector.Add(kEmptyDescription, {row, description},
                      [] { return std::u16string(u"The DTC has no description. Fill it in."); });
    }
    if (hasNumbers) numbers.Finish();
}

void CheckTable(VHeapIterator& iterator, const Wishes& wishes, Collector& collector) {
    const Table table(iterator);
    TextChecks texts(table, wishes, collector);
    const LayoutVerdict verdict = CheckLayout(table, collector);
    texts.LookAtRow(0);
    CheckRows(table, wishes, verdict, texts, collector);
    texts.Finish();
    if (wishes.worksheet != nullptr) CheckValues(table, *wishes.worksheet, collector);
    if (!verdict.hasHeader) return;
    if (table.RowCount() == 1 && !collector.Has(Rule::RowLost)) ReportNoRows(collector);
    CheckColumns(table, verdict.hasNumbers, collector);
    if (table.endColumn == 0) return;
    CheckItemHeaders(table, wishes, collector);
}

// Walks once over the rows; lines count from 1.
void FindLines(VHeapIterator& iterator, std::vector<Finding>& findings) {
    std::vector<Finding*> places;
    for (Finding& finding : findings) {
        if (finding.place.row != kNowhere) places.push_back(&finding);
    }
    std::ranges::sort(places, {}, [](const Finding* finding) { return finding->place.row; });
    std::size_t line = 1;
    std::size_t row = 0;
    iterator.Reset();
    for (Finding* const finding : places) {
        for (; row < finding->place.row && iterator.HasMoreRows(); ++row) {
            const VTableRow& cells = *iterator.GetNextRow();
            line += 1 + (cells.size() == 0 ? 0 : LineFeeds({cells[0].data(), cells.TextSize()}));
        }
        finding->line = line;
    }
}

}  // namespace

FindingList FindFindings(VHeapIterator& iterator, bool hasPassed, const Unfinished* unfinished,
                         const Wishes& wishes) {
    FindingList list;
    bool isComplete = hasPassed;
    Collector collector;
    try {
        if (unfinished != nullptr) ReportUnfinished(*unfinished, collector);
        if (wishes.worksheet != nullptr) {
            isComplete = isComplete && wishes.worksheet->isComplete;
            CheckEdges(iterator, *wishes.worksheet, collector);
        }
        const bool isText = wishes.separator != 0;
        if (!(isText && ReportCarriageReturns(iterator, collector)) && hasPassed) {
            CheckTable(iterator, wishes, collector);
        }
    } catch (const std::bad_alloc&) {
        isComplete = false;
    }
    try {
        list = collector.Finish();
        if (wishes.separator != 0 && wishes.separator != u'\n') FindLines(iterator, list.findings);
    } catch (const std::bad_alloc&) {
        list = {};
        isComplete = false;
    }
    iterator.Reset();
    list.isComplete = isComplete;
    return list;
}

}  // namespace NChecks
