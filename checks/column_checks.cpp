#include "checks/column_checks.h"

#include <algorithm>

#include "checks/causes.h"
#include "checks/sentence.h"
#include "document/cell_text.h"
#include "platform/edit_distance.h"
#include "sources/cell_name.h"

namespace NChecks {

using VCSVReader::ColumnName;
using VSimpleXMLCreation::Trim;
using VSimpleXMLCreation::UpperCase;

namespace {

std::size_t FilledCells(const Table& table, std::size_t column) {
    std::size_t filled = 0;
    for (std::size_t row = 1; row < table.RowCount(); ++row)
        filled += IsBlank(table.Row(row)[column]) ? 0U : 1U;
    return filled;
}

std::u16string_view LossOf(const Table& table, std::size_t column) {
    if (column < NumberColumns(table.layout)) return u", and no DTC has a number";
    return column == table.DescriptionColumn() ? u", and no DTC has a description" : u"";
}

void ReportNoHeader(const Table& table, std::size_t column, Collector& collector) {
    collector.Add(kColumnWithoutHeader, {0, column}, [&] {
        return Say(u"Column %s has no header: it is left out with %s%s. Give it a header.",
                   {ColumnName(column), Counted(FilledCells(table, column), u"cell", u"cells"),
                    LossOf(table, column)});
    });
}

// Tells whether anything is lost.
bool ReportBehindEnd(const Table& table, std::size_t column, Collector& collector) {
    if (IsBlank(table.Header()[column]) && FilledCells(table, column) == 0) return false;
    collector.Add(kBehindEnd, {0, column}, [&] {
        return Say(
            u"Column %s, %s, is left out with %s, because column %s before it is empty, including its "
            u"header. "
            u"Delete "
            u"column %s.",
            {ColumnName(column), Quote(table.Header()[column]),
             Counted(FilledCells(table, column), u"cell", u"cells"), ColumnName(table.endColumn),
             ColumnName(table.endColumn)});
    });
    return true;
}

// The document has nothing but empty DTCs.
void ReportEmptyFirst(Collector& collector) {
    collector.Add(kBehindEnd, {0, 0}, [] {
        return std::u16string(
            u"Column A is empty, including its header, so no column is read. Delete column A.");
    });
}

// The column whose header is most like the name; kNowhere where none is.
std::size_t NearestColumn(const Table& table, std::u16string_view name) {
    constexpr std::size_t kMostColumns = 200;
    constexpr std::size_t kLongest = 64;
    std::size_t nearest = kNowhere;
    std::size_t least = name.size() / 2 + 1;
    if (name.size() > kLongest) return nearest;
    for (std::size_t column = 0; column < std::min(table.endColumn, kMostColumns); ++column) {
        const std::u16string_view header = Trim(table.Header()[column]);
        if (header.empty() || header.size() > kLongest) continue;
        const std::size_t distance = NPlatform::EditDistance(
            name, header, [](char16_t a, char16_t b) { return UpperCase(a) == UpperCase(b); });
        if (distance >= least) continue;
        least = distance;
        nearest = column;
    }
    return nearest;
}

// The item columns, by their headers.
std::vector<std::size_t> SortedItemColumns(const Table& table) {
    std::vector<std::size_t> columns;
    for (std::size_t column = table.DescriptionColumn() + 1; column < table.endColumn; ++column) {
        if (!table.IsSkipped(column)) columns.push_back(column);
    }
    std::ranges::stable_sort(columns, {}, [&](std::size_t column) { return Trim(table.Header()[column]); });
    return columns;
}

void ReportName(const Table& table, std::u16string_view name, std::u16string_view type,
                Collector& collector) {
    collector.Add(kUnknownName, {}, [&] {
        for (std::size_t column = 0; column < std::min(table.DescriptionColumn() + 1, table.endColumn);
             ++column) {
            if (Trim(table.Header()[column]) != Trim(name)) continue;
            return Say(
                u"%s is %s, not an item, so it does not get the type %s.",
                {NameCell({0, column}, table.Header()[column]),
                 column == table.DescriptionColumn() ? u"the description" : u"a column of numbers", type});
        }
        const std::size_t nearest = NearestColumn(table, Trim(name));
        const std::u16string hint =
            nearest == kNowhere
                ? u""
                : Say(u" The nearest header is %s.", {NameCell({0, nearest}, table.Header()[nearest])});
        return Say(u"No item column has the header %s, so none gets the type %s from it.%s",
                   {Quote(name), type, hint});
    });
}

}  // namespace

void CheckColumns(const Table& table, bool hasNumbers, Collector& collector) {
    if (table.endColumn == 0) return ReportEmptyFirst(collector);
    for (std::size_t column = hasNumbers ? 0 : 1; column < table.endColumn; ++column) {
        if (IsBlank(table.Header()[column])) ReportNoHeader(table, column, collector);
    }
    bool isAnyLost = false;
    for (std::size_t column = table.endColumn + 1; column < table.ColumnCount(); ++column) {
        isAnyLost = ReportBehindEnd(table, column, collector) || isAnyLost;
    }
    if (isAnyLost || table.RowCount() == 1 || table.DescriptionColumn() < table.endColumn) return;
    collector.Add(kNoDescription, {}, [] {
        return std::u16string(
            u"The table has no column for descriptions: no DTC has one. Add it right behind the numbers.");
    });
}

void CheckItemHeaders(const Table& table, const Wishes& wishes, Collector& collector) {
    const std::vector<std::size_t> columns = SortedItemColumns(table);
    const auto header = [&table](std::size_t column) { return Trim(table.Header()[column]); };
    for (std::size_t index = 1; index < columns.size(); ++index) {
        const std::size_t before = columns[index - 1];
        const std::size_t column = columns[index];
        if (header(before) != header(column)) continue;
        collector.Add(kSameHeader, {0, column}, [&] {
            return Say(u"%s is also the header of column %s: two items have the same name. Rename one.",
                       {Quote(header(column)), ColumnName(before)});
        });
    }
    const auto isKnown = [&](const std::u16string& name) {
        return name.empty() || std::ranges::binary_search(columns, std::u16string_view(name), {}, header);
    };
    for (const std::u16string& name : wishes.vsgNames) {
        if (!isKnown(name)) ReportName(table, name, u"VSG", collector);
    }
    for (const std::u16string& name : wishes.secondNames) {
        if (!isKnown(name)) ReportName(table, name, u"A", collector);
    }
    for (const std::u16string& name : wishes.thirdNames) {
        if (!isKnown(name) && !wishes.secondNames.contains(name)) ReportName(table, name, u"A", collector);
    }
}

}  // namespace NChecks
