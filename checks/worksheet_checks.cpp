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
                u"Row 1 has no text and no number in its first cells, so there is no table: %s not read. "
                u"Delete what is empty above the header and in front of it.",
                {lost});
        }
        return Say(
            u"The table ends with row %d, because row %d has no text and no number in its first cells: %s "
            u"not read. %s",
            {Count(rows), Count(rows + 1), lost,
             below.row > rows ? u"If this belongs to the table, delete the empty rows between."
                              : u"Enter a text or a number in its first cell."});
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
    if (!IsNumberCell(table, place) || value.kind == HeldValue::Kind::Date) return false;
    return value.kind != HeldValue::Kind::Number || IsExponent(table.Row(place.row)[place.column]);
}

std::u16string_view AdviceFor(HeldValue::Kind kind) {
    switch (kind) {
        case HeldValue::Kind::Number:
            return u"Format the cell as text and enter the number again.";
        case HeldValue::Kind::Date:
            return u"Format the cell as text and enter it again.";
        case HeldValue::Kind::Formula:
            return u"Open the workbook in Excel and save it.";
        default:
            return u"Enter a text instead.";
    }
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

std::u16string TellNoNumber(const HeldValue& value, std::u16string_view outcome) {
    const bool isFormula = value.kind == HeldValue::Kind::Formula;
    return Say(u"The cell holds %s, which is read as an empty cell; %s. %s",
               {DescribeValue(value), outcome, isFormula ? AdviceFor(value.kind) : u"Enter the number."});
}

std::u16string DescribeValue(const HeldValue& value) {
    switch (value.kind) {
        case HeldValue::Kind::Date:
            return u"a date or a time";
        case HeldValue::Kind::Truth:
            return Say(u"the truth value %s", {VCSVReader::ShownTruth(value.number != 0)});
        case HeldValue::Kind::Error:
            return Say(u"the error %s", {VCSVReader::ShownError(static_cast<std::int32_t>(value.number))});
        case HeldValue::Kind::Formula:
            return u"a formula without a saved result";
        default:
            return Say(u"the number %s", {DigitsOf(value.number)});
    }
}

}  // namespace NChecks
