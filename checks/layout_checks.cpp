#include "checks/layout_checks.h"

#include <algorithm>
#include <optional>

#include "checks/causes.h"
#include "checks/characters.h"
#include "checks/header_meaning.h"
#include "checks/number_form.h"
#include "checks/sentence.h"
#include "document/cell_text.h"
#include "sources/cell_name.h"

namespace NChecks {

using VCSVReader::ColumnName;
using VCSVReader::VTableRow;
using VSimpleXMLCreation::TableLayout;
using VSimpleXMLCreation::UpperCase;

namespace {

// The byte order mark of UTF-8, read as 8-bit text.
constexpr std::u16string_view kByteOrderMark = u"\u00EF\u00BB\u00BF";

std::size_t FilledCells(const VTableRow& row) {
    std::size_t filled = 0;
    for (std::size_t column = 0; column < row.size(); ++column) filled += IsBlank(row[column]) ? 0U : 1U;
    return filled;
}

bool IsWholeCode(std::u16string_view text) { return IsCode(text) && (text.size() == 5 || text.size() == 7); }

bool LooksLikeNumber(std::u16string_view cell) {
    const std::u16string_view text = Strip(cell);
    return (IsCode(text) && text.size() >= 5) || IsPrefixedHex(text) || IsAllDigits(text);
}

bool LooksLikeNumberCell(std::u16string_view text) {
    return IsAllHexDigits(text) || IsPrefixedHex(text) || IsCode(text);
}

bool IsCodeOrPrefixed(std::u16string_view text) { return IsWholeCode(text) || IsPrefixedHex(text); }

// An FMI or a failure type: 31, 1C, 0x1C, 1Ch.
bool IsSmallNumber(std::u16string_view text) {
    if (IsPrefixedHex(text)) return text.size() <= 4;
    if (IsAllDigits(text)) return text.size() <= 3;
    if (text.ends_with(u'h') || text.ends_with(u'H')) text.remove_suffix(1);
    return text.size() <= 2 && IsAllHexDigits(text);
}

// Whether it has three bytes, so that the failure type is part of it.
bool IsWholeNumber(std::u16string_view text) {
    if (IsCode(text)) return text.size() >= 7;
    if (IsPrefixedHex(text)) text.remove_prefix(2);
    text.remove_prefix(std::min(text.find_first_not_of(u'0'), text.size()));
    return IsAllHexDigits(text) && text.size() > (IsAllDigits(text) ? 5U : 4U);
}

// Two words, or one where the header says so.
bool IsText(std::u16string_view text, bool isOneWordEnough) {
    if (LooksLikeNumber(text)) return false;
    return isOneWordEnough || text.find(u' ') != std::u16string_view::npos;
}

// What the first rows show about the columns.
class Sample {
  public:
    explicit Sample(const Table& table) : table_(table), end_(std::min<std::size_t>(table.RowCount(), 200)) {}

    [[nodiscard]] std::size_t End() const { return end_; }

    // Whether more than half of the cells that are not blank are what is looked for.
    template <typename Is>
    [[nodiscard]] bool MostAre(std::size_t column, Is is) const {
        const auto [filled, found] = Count(column, is);
        return found * 2 > filled;
    }
    template <typename Is>
    [[nodiscard]] bool AllAre(std::size_t column, Is is) const {
        const auto [filled, found] = Count(column, is);
        return filled > 0 && found == filled;
    }

    [[nodiscard]] bool HasCells(std::size_t column) const {
        return MostAre(column, [](std::u16string_view) { return true; });
    }

    // 1, 2, 3 and so on, with few exceptions.
    [[nodiscard]] bool IsCounted(std::size_t column) const {
        constexpr std::size_t kLongest = 9;
        std::size_t expected = 0;
        std::size_t found = 0;
        for (std::size_t row = 1; row < end_; ++row) {
            const std::u16string_view text = Strip(table_.Row(row)[column]);
            if (!IsAllDigits(text) || text.size() > kLongest) continue;
            std::size_t number = 0;
            for (const char16_t digit : text) number = number * 10 + (digit - u'0');
            if (number == expected || (row == 1 && number == 1)) ++found;
            expected = number + 1;
        }
        return found * 4 > (end_ - 1) * 3;
    }

  private:
    struct Counts {
        std::size_t filled = 0;
        std::size_t found = 0;
    };

    template <typename Is>
    [[nodiscard]] Counts Count(std::size_t column, Is is) const {
        Counts counts;
        for (std::size_t row = 1; row < end_; ++row) {
            const std::u16string_view text = Strip(table_.Row(row)[column]);
            if (text.empty()) continue;
            ++counts.filled;
            if (is(text)) ++counts.found;
        }
        return counts;
    }

    const Table& table_;
    std::size_t end_;  // after its last row
};

class LayoutChecks {
  public:
    LayoutChecks(const Table& table, Collector& collector)
        : table_(table), collector_(collector), sample_(table) {}

    LayoutVerdict Run() {
        if (IsTitle()) return {false, false};
        hasMark_ = Header(0).starts_with(kByteOrderMark);
        if (hasMark_) ReportMark();
        if (table_.layout == TableLayout::SingleNumber) {
            if (IsNearMiss(SecondNumber::Fmi) || IsNearMiss(SecondNumber::FailureType)) return {false, true};
            if (IsData()) return {true, false};
            if (IsOtherColumn()) return {false, true};
        }
        CheckDescription();
        return {};
    }

  private:
    // How sure it is that a column holds the DTC numbers instead of the first one.
    enum class Suspicion { None, Perhaps, Sure };

    [[nodiscard]] std::u16string_view Header(std::size_t column) const { return table_.Header()[column]; }
    // Without a byte order mark.
    [[nodiscard]] std::u16string_view Meant(std::size_t column) const {
        return Header(column).substr(hasMark_ && column == 0 ? kByteOrderMark.size() : 0);
    }
    // Behind those that are looked at.
    [[nodiscard]] std::size_t ColumnEnd() const { return std::min<std::size_t>(table_.endColumn, 200); }

    void ReportMark() {
        collector_.Add(kMark, {0, 0}, [&] {
            return Say(
                u"%s begins with the byte order mark of UTF-8, which becomes part of the header. Read the "
                u"file as UTF-8.",
                {Quote(Header(0))});
        });
    }

    bool IsTitle();
    bool IsNearMiss(SecondNumber number);
    void ReportNearMiss(SecondNumber number, std::size_t first, std::size_t second);
    [[nodiscard]] std::size_t FirstOfTwo(SecondNumber number) const;
    [[nodiscard]] std::size_t SecondOfTwo(SecondNumber number) const;
    bool IsData();
    bool IsOtherColumn();
    [[nodiscard]] Suspicion Suspect(std::size_t column) const;
    void CheckDescription();

    const Table& table_;
    Collector& collector_;
    Sample sample_;
    bool hasMark_ = false;
};

// One filled cell, and below it a row that looks like a header.
bool LayoutChecks::IsTitle() {
    const VTableRow& header = table_.Header();
    if (FilledCells(header) != 1) return false;
    std::size_t next = 1;
    while (next < sample_.End() && IsBlankRow(table_.Row(next))) ++next;
    if (next == sample_.End()) return false;
    if (FilledCells(table_.Row(next)) < 2 || LooksLikeNumber(table_.Row(next)[0])) return false;
    std::size_t column = 0;
    while (IsBlank(header[column])) ++column;
    collector_.Add(kTitle, {0, column}, [&] {
        return Say(
            u"The first row has only one filled cell, %s, and is read as the header. If it is a title, "
            u"delete "
            u"all rows above the header.",
            {Quote(header[column])});
    });
    return true;
}

// The first column that may be an SPN or a base DTC; kNowhere if there is none.
std::size_t LayoutChecks::FirstOfTwo(SecondNumber number) const {
    for (std::size_t column = 0; column < ColumnEnd(); ++column) {
        const std::u16string_view header = Meant(column);
        const bool isSpn = SaysSpn(header);
        if (number == SecondNumber::Fmi ? isSpn : !isSpn && ClaimOf(header) >= DtcClaim::Near) return column;
    }
    return kNowhere;
}

// The first column that must be an FMI or a failure type. Words with other meanings count only where their
// cells are numbers, and those with many meanings only where a second number has its place.
std::size_t LayoutChecks::SecondOfTwo(SecondNumber number) const {
    for (std::size_t column = 0; column < ColumnEnd(); ++column) {
        const SecondClaim claim = SecondClaimOf(Meant(column), number);
        if (claim == SecondClaim::None) continue;
        const bool isInPlace = column <= 1;
        if (claim == SecondClaim::Exact && (isInPlace || sample_.HasCells(column))) return column;
        if (claim == SecondClaim::Loose && !isInPlace && number == SecondNumber::FailureType) continue;
        if (sample_.MostAre(column, IsSmallNumber)) return column;
    }
    return kNowhere;
}

bool LayoutChecks::IsNearMiss(SecondNumber number) {
    const std::size_t first = FirstOfTwo(number);
    const std::size_t second = SecondOfTwo(number);
    if (first == kNowhere || second == kNowhere) return false;
    const bool isFirstProper = ClaimOf(Meant(0)) == DtcClaim::Exact || sample_.MostAre(0, IsWholeCode);
    if (first > 0 && second > 0 && isFirstProper) return false;
    const bool isPart = number == SecondNumber::FailureType && first == 0 && second > 1;
    if (isPart && sample_.MostAre(0, IsWholeNumber)) return false;
    if (!(hasMark_ && first == 0 && second == 1)) ReportNearMiss(number, first, second);
    return true;
}

// The headers that need the least change.
std::u16string_view HeadersFor(SecondNumber number, std::u16string_view first, std::u16string_view second) {
    if (number == SecondNumber::Fmi) return u"\"SPN\" and \"FMI\"";
    const bool isBase = UpperCase(first).starts_with(u"BASE");
    return isBase || SecondClaimOf(second, number) == SecondClaim::Exact ? u"\"BaseDTC\" and \"FTB\""
                                                                         : u"\"DTC\" and \"Failure Type\"";
}

void LayoutChecks::ReportNearMiss(SecondNumber number, std::size_t first, std::size_t second) {
    const bool isFirstInPlace = first == 0 && second > 1;
    collector_.Add(kNearMiss, {0, isFirstInPlace ? second : std::min(first, second)}, [&] {
        return Say(
            u"%s and %s are not read as %s: the numbers come from column A alone. Put them in columns A and "
            u"B with the headers %s, and the description in column C.",
            {NameCell({0, first}, Header(first)), NameCell({0, second}, Header(second)),
             number == SecondNumber::Fmi ? u"SPN and FMI" : u"a base DTC and a failure type",
             HeadersFor(number, Header(first), Header(second))});
    });
}

bool LayoutChecks::IsData() {
    const std::u16string_view first = Strip(Header(0));
    const bool isHex = IsAllHexDigits(first) && std::ranges::any_of(first, IsDigit) &&
                       sample_.MostAre(0, LooksLikeNumberCell);
    if (!isHex && !LooksLikeNumber(first)) return false;
    collector_.Add(kFirstRowIsData, {0, 0}, [&] {
        return Say(
            u"The first row looks like data, %s, but is read as the header and gives no DTC. Insert a header "
            u"row above it.",
            {Quote(Header(0))});
    });
    return true;
}

LayoutChecks::Suspicion LayoutChecks::Suspect(std::size_t column) const {
    const DtcClaim first = ClaimOf(Meant(0));
    const DtcClaim claim = ClaimOf(Header(column));
    const bool isDescription = column == table_.DescriptionColumn();
    if (first == DtcClaim::Exact) return Suspicion::None;
    if (claim == DtcClaim::Exact && isDescription) return Suspicion::Sure;
    const bool isFirstCode = sample_.MostAre(0, IsCodeOrPrefixed);
    const bool isFirstOther = sample_.IsCounted(0) || !sample_.MostAre(0, LooksLikeNumberCell);
    const Suspicion byFirst = isFirstOther ? Suspicion::Sure : Suspicion::Perhaps;
    if (claim == DtcClaim::Exact) {
        if (first < DtcClaim::Near) return isFirstCode ? Suspicion::Perhaps : Suspicion::Sure;
        return isFirstCode ? Suspicion::None : byFirst;
    }
    if (isFirstCode) return Suspicion::None;
    if (sample_.MostAre(column, IsWholeCode)) return byFirst;
    const bool isNearer = claim == DtcClaim::Near && first < DtcClaim::Near;
    if (!isNearer || !sample_.MostAre(column, LooksLikeNumberCell)) return Suspicion::None;
    if (isDescription) return Suspicion::Sure;
    return isFirstOther ? Suspicion::Sure : Suspicion::None;
}

// The DTC numbers in another column than the first.
bool LayoutChecks::IsOtherColumn() {
    std::size_t suspect = kNowhere;
    Suspicion most = Suspicion::None;
    for (std::size_t column = 1; column < ColumnEnd(); ++column) {
        const Suspicion suspicion = Suspect(column);
        const bool isClearer =
            suspicion == most && suspect != kNowhere && ClaimOf(Header(column)) > ClaimOf(Header(suspect));
        if (suspicion <= most && !isClearer) continue;
        most = suspicion;
        suspect = column;
    }
    if (suspect == kNowhere) return false;
    if (most == Suspicion::Sure) {
        collector_.Add(kOtherColumn, {0, suspect}, [&] {
            return Say(
                u"Column %s, %s, seems to hold the DTC numbers, but only column A is read as numbers. Move "
                u"it to the front.",
                {ColumnName(suspect), Quote(Header(suspect))});
        });
    } else {
        collector_.Add(kOtherColumnPerhaps, {0, suspect}, [&] {
            return Say(
                u"Column %s, %s, may hold the DTC numbers, but only column A, %s, is read as numbers. If it "
                u"does, move it to the front.",
                {ColumnName(suspect), Quote(Header(suspect)), Quote(Header(0))});
        });
    }
    return most == Suspicion::Sure;
}

// Numbers where the description is read, and texts after them.
void LayoutChecks::CheckDescription() {
    const std::size_t description = table_.DescriptionColumn();
    if (description >= ColumnEnd() || IsBlank(Header(description)) || SaysDescription(Header(description)))
        return;
    if (!sample_.AllAre(description, LooksLikeNumber)) return;
    for (std::size_t column = description + 1; column < ColumnEnd(); ++column) {
        const bool isNamed = SaysDescription(Header(column));
        if (!sample_.MostAre(column, [&](std::u16string_view text) { return IsText(text, isNamed); })) {
            continue;
        }
        return collector_.Add(kOtherDescription, {0, description}, [&] {
            return Say(
                u"Column %s, %s, is read as the description, but holds only numbers; column %s, %s, holds "
                u"texts. Put the description right behind the numbers.",
                {ColumnName(description), Quote(Header(description)), ColumnName(column),
                 Quote(Header(column))});
        });
    }
}

}  // namespace

LayoutVerdict CheckLayout(const Table& table, Collector& collector) {
    return LayoutChecks(table, collector).Run();
}

}  // namespace NChecks
