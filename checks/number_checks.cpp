#include "checks/number_checks.h"

#include <algorithm>

#include "checks/causes.h"
#include "checks/notation_checks.h"
#include "checks/sentence.h"
#include "checks/unreadable.h"
#include "checks/worksheet_checks.h"
#include "document/cell_text.h"
#include "document/xml_exception.h"

namespace NChecks {

using VCSVReader::VTableRow;
using VSimpleXMLCreation::DtcNotation;
using VSimpleXMLCreation::NumberReader;
using VSimpleXMLCreation::NumberRole;
using VSimpleXMLCreation::Trim;
using VSimpleXMLCreation::UpperCase;

namespace {

std::uint32_t HighestOf(NumberRole role) {
    switch (role) {
        case NumberRole::Spn:
            return 0x7FFFF;
        case NumberRole::Fmi:
            return 31;
        case NumberRole::BaseDtc:
            return 0xFFFFFF;
        case NumberRole::FailureType:
            return 0xFF;
        default:
            return 0xFFFFFFFF;
    }
}

std::u16string_view LimitOf(NumberRole role, bool isDecimal) {
    switch (role) {
        case NumberRole::Spn:
            return u"above 524287, the highest SPN";
        case NumberRole::Fmi:
            return u"above 31, the highest FMI";
        case NumberRole::BaseDtc:
            return u"above 16777215 (0xFFFFFF), the highest base DTC";
        case NumberRole::FailureType:
            return u"above 255, the highest failure type";
        default:
            return isDecimal ? u"above 2147483647, the highest decimal number"
                             : u"longer than 8 hexadecimal digits";
    }
}

// Of a text that is all digits.
bool IsBelow32Bits(std::u16string_view digits) {
    constexpr std::uint64_t kEnd = std::uint64_t{1} << 32;
    std::uint64_t number = 0;
    for (const char16_t digit : digits) number = std::min(kEnd, number * 10 + (digit - u'0'));
    return number < kEnd;
}

bool IsSameText(std::u16string_view one, std::u16string_view other) {
    const auto isSame = [](char16_t unit, char16_t otherUnit) {
        return UpperCase(unit) == UpperCase(otherUnit);
    };
    return std::ranges::equal(Trim(one), Trim(other), isSame);
}

}  // namespace

void NumberChecks::LookAtRow(std::size_t row) {
    const VTableRow& cells = table_.Row(row);
    const auto look = [&](std::size_t column) {
        return ExactNumber({{row, column}, cells[column], RoleOf(table_.layout, column)});
    };
    const auto first = look(0);
    const auto second = NumberColumns(table_.layout) > 1 ? look(1) : 0;
    if (first && second) duplicates_.Add(reader_.Combine(*first, *second), row);
}

// None, and reported, unless the document has exactly the cell's number.
std::optional<std::uint32_t> NumberChecks::ExactNumber(const Cell& cell) {
    const NumberReader::Reading reading = reader_.ReadingOf(cell.role, cell.text);
    const Verdict verdict = Judge(cell.role, cell.text, reading);
    if (verdict == Verdict::Exact) {
        const std::uint32_t number = NumberReader::Convert(cell.role, reading);
        Count(cell, reading);
        if (number <= HighestOf(cell.role)) return number;
        ReportRange(cell, Verdict::TooLarge);
    } else if (verdict == Verdict::Empty) {
        ReportEmpty(cell);
    } else if (verdict == Verdict::Unreadable) {
        ReportUnreadable(cell);
    } else {
        ReportRange(cell, verdict);
    }
    return std::nullopt;
}

void NumberChecks::Count(const Cell& cell, const NumberReader::Reading& reading) {
    NumberTallies& tallies = tallies_[cell.place.column];
    const std::size_t row = cell.place.row;
    const std::u16string_view text = Trim(reading.text);
    if (reading.notation == DtcNotation::Sae) {
        tallies.codes.Add(row);
        tallies.codesBySize[text.size() / 2 - 1].Add(row);
        if (text[0] == u'B' || text[0] == u'C') tallies.hexCodes.Add(row);
    } else if (reading.notation == DtcNotation::PrefixedHex) {
        tallies.prefixed.Add(row);
    } else if (reading.notation == DtcNotation::Hex && !IsAllDigits(text)) {
        tallies.hexWords.Add(row);
    } else {
        tallies.digits.Add(row);
        if (DependsOnNotation(text)) tallies.dependentDigits.Add(row);
        if (text.size() > 1 && text[0] == u'0' && reading.notation == DtcNotation::Decimal) {
            tallies.leadingZeros.Add(row);
        }
    }
}

// Null where the text says it.
const VCSVReader::HeldValue* NumberChecks::HeldIn(const Place& place) const {
    return wishes_.worksheet == nullptr ? nullptr : wishes_.worksheet->Find(place.row, place.column);
}

void NumberChecks::ReportEmpty(const Cell& cell) {
    if (const auto* const value = HeldIn(cell.place)) {
        return collector_.Add(kNoNumberHeld, cell.place,
                              [&] { return TellNoNumber(*value, Outcome(cell.place.row)); });
    }
    if (IsBlankRow(table_.Row(cell.place.row))) {
        if (cell.place.column > 0) return;
        return collector_.Add(kEmptyRow, cell.place, [&] {
            return Say(u"The row is empty%s; %s. Delete it.",
                       {wishes_.separator == 0 ? u"" : u" except for separators", Outcome(cell.place.row)});
        });
    }
    collector_.Add(kEmptyCell, cell.place, [&] {
        return Say(u"The cell %s; %s. Fill it in, or delete the row.",
                   {cell.text.empty() ? u"is empty" : u"has only white space", Outcome(cell.place.row)});
    });
}

void NumberChecks::ReportRange(const Cell& cell, Verdict verdict) {
    if (verdict == Verdict::Negative) {
        return collector_.Add(kNegative, cell.place, [&] {
            return Say(u"%s is negative; %s. Write it without the sign.",
                       {Quote(cell.text), Outcome(cell.place.row)});
        });
    }
    const bool isHexByOthers = table_.notation.hexDigits && cell.role == NumberRole::DtcNumber;
    if (isHexByOthers && IsAllDigits(Trim(cell.text))) tallies_[0].dependentDigits.Add(cell.place.row);
    collector_.Add(kAboveLimit, cell.place, [&] {
        const bool isDecimal = IsAllDigits(Trim(cell.text)) && !table_.notation.hexDigits;
        // A letter in it would make the others hexadecimal, so all have to be.
        const bool fitsInHex =
            isDecimal && cell.role == NumberRole::DtcNumber && IsBelow32Bits(Trim(cell.text));
        return Say(u"%s is %s; %s. %s",
                   {Quote(cell.text), LimitOf(cell.role, isDecimal), Outcome(cell.place.row),
                    fitsInHex ? u"Correct it, or write all numbers of the column in hexadecimal with 0x."
                              : u"Correct it."});
    });
}

void NumberChecks::ReportUnreadable(const Cell& cell) {
    if (ReportHeader(cell)) return;
    const std::u16string_view text = Trim(cell.text);
    if (IsExponent(text)) return ReportExponent(cell);
    const bool isBaseAmongCodes = cell.role == NumberRole::BaseDtc && table_.notation.saeCodes;
    if (isBaseAmongCodes && (IsAllDigits(text) || IsPrefixedHex(text))) {
        return tallies_[0].refusedNumbers.Add(cell.place.row);
    }
    ReportAsUnreadable(cell);
}

void NumberChecks::ReportExponent(const Cell& cell) {
    collector_.Add(kExponent, cell.place, [&] {
        const auto* const value = HeldIn(cell.place);
        const std::u16string held =
            value != nullptr
                ? Say(u"The cell holds %s, read as %s", {DescribeValue(*value), Quote(cell.text)})
                : Say(u"A spreadsheet program has rounded the number to %s", {Quote(cell.text)});
        return Say(u"%s; %s. Format the column as text and enter the number again.",
                   {held, Outcome(cell.place.row)});
    });
}

void NumberChecks::ReportAsUnreadable(const Cell& cell) {
    const Unreadable reason = WhyUnreadable(cell.role, cell.text, table_.notation);
    if (reason == Unreadable::HexWithoutPrefix)
        tallies_[cell.place.column].refusedHexWords.Add(cell.place.row);
    collector_.Add(CauseOf(reason), cell.place, [&] {
        return TellUnreadable(reason, cell.role, cell.text, table_.notation, Outcome(cell.place.row));
    });
}

// Either they are wrong among SAE codes, or a code is wrong among them.
void NumberChecks::ReportRefusedNumbers() {
    const Tally& numbers = tallies_[0].refusedNumbers;
    if (numbers.count == 0 || numbers.count > tallies_[0].codes.count) return;
    for (std::size_t row = numbers.first; row < table_.RowCount(); ++row) {
        const std::u16string_view cell = table_.Row(row)[0];
        const std::u16string_view text = Trim(cell);
        if (IsAllDigits(text) || IsPrefixedHex(text))
            ReportAsUnreadable({{row, 0}, cell, NumberRole::BaseDtc});
    }
}

// Where tables were put together, the header is among the rows again.
bool NumberChecks::ReportHeader(const Cell& cell) {
    const VTableRow& row = table_.Row(cell.place.row);
    const VTableRow& header = table_.Header();
    if (!IsSameText(row[0], header[0]) || !IsSameText(row[1], header[1])) return false;
    if (cell.place.column > 0) return true;
    collector_.Add(kHeaderAgain, cell.place, [&] {
        return Say(u"%s is the header again; %s. Delete the row.",
                   {Quote(cell.text), Outcome(cell.place.row)});
    });
    return true;
}

// What the row becomes, whether or not there is a document.
std::u16string NumberChecks::Outcome(std::size_t row) {
    try {
        return Say(u"the number becomes %d", {reader_.NumberOf(table_.Row(row), false)});
    } catch (const VSimpleXMLCreation::VSimpleXMLException&) {
        return u"the conversion fails";
    }
}

std::u16string NumberChecks::Texts(std::size_t row) const {
    const VTableRow& cells = table_.Row(row);
    if (NumberColumns(table_.layout) == 1) return Quote(cells[0]);
    return Say(u"%s with %s", {Quote(cells[0]), Quote(cells[1])});
}

void NumberChecks::Finish() {
    ReportRefusedNumbers();
    for (std::size_t column = 0; column < NumberColumns(table_.layout); ++column) {
        CheckNotation(table_, column, tallies_[column], reader_, collector_);
    }
    duplicates_.ForEach([this](std::size_t row, std::size_t first) {
        collector_.Add(kDuplicate, {row, 0}, [&] {
            return Say(
                u"%s has the same number as %s %s: %d. Correct one of them, or delete its row.",
                {Texts(row), CellName({first, 0}), Texts(first), reader_.NumberOf(table_.Row(row), false)});
        });
    });
}

}  // namespace NChecks
