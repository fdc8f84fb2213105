#include "checks/worksheet_checks.h"

#include "checks/causes.h"
#include "checks/number_form.h"
#include "checks/sentence.h"
#include "sources/cell_name.h"

namespace NChecks {

using VCSVReader::BehindEdge;
using VCSVReader::HeldValue;
using VCSVReader::WorksheetFacts;

namespace {

Place PlaceOf(const BehindEdge& behind) { return {behind.row, behind.column}; }

// "the row of A6 "text" is", "2 rows from A6 "text" on are"
std::u16string Lost(const BehindEdge& behind, std::u16string_view one, std::u16string_view many) {
    const std::u16string first = NameCell(PlaceOf(behind), behind.text);
    if (behind.count == 1) return Say(u"the %s of %s is", {one, first});
    return Say(u"%s from %s on are", {Counted(behind.count, one, many), first});
}

void ReportRows(const BehindEdge& below, std::size_t rows, Collector& collector) {
    const std::u16string_view text = Strip(below.text);
    const bool isTable = below.isTable || IsCode(text) || IsPrefixedHex(text) || IsAllDigits(text);
    collector.Add(isTable ? kRowsBelow : kNoteBelow, PlaceOf(below), [&] {
        const std::u16string lost = Lost(below, u"row", u"rows");
        if (rows == 0) {
            return Say(
                u"Row 1 has nothing in its first cells, so there is no table: %s not read. Delete what "
                u"is empty above the header and in front of it.",
                {lost});
        }
        return Say(
            u"The table ends with row %d, because row %d has nothing in its first cells: %s not read. %s",
            {Count(rows), Count(rows + 1), lost,
             below.row > rows ? u"If this belongs to the table, delete the empty rows between."
                              : u"Fill in the first cell of the row."});
    });
}

void ReportColumns(const BehindEdge& right, std::size_t columns, Collector& collector) {
    collector.Add(right.isTable ? kColumnsRight : kNoteRight, PlaceOf(right), [&] {
        return Say(
            u"The table ends with column %s: %s not read. If this belongs to the table, delete the empty "
            u"columns between.",
            {VCSVReader::ColumnName(columns - 1), Lost(right, u"column", u"columns")});
    });
}

bool IsNumberCell(const Table& table, const Place& place) {
    return place.row > 0 && place.column < NumberColumns(table.layout);
}

// Other rules report these.
bool IsReported(const Table& table, const HeldValue& value) {
    const Place place{value.row, value.column};
    if (place.row > 0 && table.IsSkipped(place.column)) return true;
    if (!IsNumberCell(table, place)) return false;
    return value.kind != HeldValue::Kind::Number || IsExponent(table.Row(place.row)[place.column]);
}

std::u16string_view AdviceFor(HeldValue::Kind kind) {
    return kind == HeldValue::Kind::Number ? u"Format the cell as text and enter the number again."
                                           : u"Enter a text instead.";
}

}  // namespace

void CheckEdges(const WorksheetFacts& facts, std::size_t rows, std::size_t columns, Collector& collector) {
    if (facts.below.count > 0) ReportRows(facts.below, rows, collector);
    if (facts.right.count > 0) ReportColumns(facts.right, columns, collector);
}

void CheckValues(const Table& table, const WorksheetFacts& facts, Collector& collector) {
    for (const HeldValue& value : facts.values) {
        if (IsReported(table, value)) continue;
        const Place place{value.row, value.column};
        collector.Add(kRounded, place, [&] {
            const std::u16string_view text = table.Row(place.row)[place.column];
            return Say(u"The cell holds %s, but is read as %s. %s",
                       {DescribeValue(value), text.empty() ? u"empty" : Quote(text), AdviceFor(value.kind)});
        });
    }
}

std::u16string DescribeValue(const HeldValue& value) {
    switch (value.kind) {
        case HeldValue::Kind::Truth:
            return Say(u"the truth value %s", {value.shown});
        case HeldValue::Kind::Error:
            return Say(u"the error %s", {value.shown});
        default:
            return Say(u"the number %s", {DigitsOf(value.number)});
    }
}

}  // namespace NChecks
