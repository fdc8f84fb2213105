#include "checks/layout_checks.h"

#include <algorithm>
#include <array>
#include <optional>

#include "checks/causes.h"
#include "checks/characters.h"
#include "checks/number_form.h"
#include "checks/sentence.h"
#include "document/cell_text.h"

namespace NChecks {

using VCSVReader::VTableRow;
using VSimpleXMLCreation::TableLayout;

namespace {

// The byte order mark of UTF-8, read as 8-bit text.
constexpr std::u16string_view kByteOrderMark = u"\u00EF\u00BB\u00BF";

// Letters and digits alone, in upper case.
std::u16string Essence(std::u16string_view header) {
    std::u16string essence;
    for (const char16_t unit : header) {
        const char16_t upper = VSimpleXMLCreation::UpperCase(unit);
        if (IsDigit(upper) || (upper >= u'A' && upper <= u'Z')) essence.push_back(upper);
    }
    return essence;
}

template <std::size_t kSize>
bool IsOneOf(const std::u16string& essence, const std::array<std::u16string_view, kSize>& names) {
    return std::find(names.begin(), names.end(), essence) != names.end();
}

bool IsSpn(const std::u16string& header) {
    constexpr std::array<std::u16string_view, 4> kNames = {u"SPN", u"SUSPECTPARAMETERNUMBER", u"J1939SPN",
                                                           u"SPNNUMBER"};
    return IsOneOf(header, kNames);
}

bool IsFmi(const std::u16string& header) {
    constexpr std::array<std::u16string_view, 5> kNames = {
        u"FMI", u"FAILUREMODEIDENTIFIER", u"FAILUREMODEINDICATOR", u"FAILUREMODE", u"J1939FMI"};
    return IsOneOf(header, kNames);
}

bool IsBase(const std::u16string& header) {
    constexpr std::array<std::u16string_view, 6> kNames = {u"BASEDTC", u"DTCBASE", u"BASE",
                                                           u"DTC",     u"DTCCODE", u"CODE"};
    return IsOneOf(header, kNames);
}

bool IsFailureType(const std::u16string& header) {
    constexpr std::array<std::u16string_view, 6> kNames = {u"FTB",       u"FAILURETYPE",   u"FAILURETYPEBYTE",
                                                           u"FAULTTYPE", u"FAULTTYPEBYTE", u"FT"};
    return IsOneOf(header, kNames);
}

// The layout that two headers mean, in either order.
std::optional<TableLayout> LayoutMeant(const std::u16string& one, const std::u16string& other) {
    if ((IsSpn(one) && IsFmi(other)) || (IsFmi(one) && IsSpn(other))) return TableLayout::J1939;
    if ((IsBase(one) && IsFailureType(other)) || (IsFailureType(one) && IsBase(other))) {
        return TableLayout::BaseAndFailureType;
    }
    return std::nullopt;
}

bool NamesNumber(std::u16string_view header) {
    const std::u16string essence = Essence(header);
    const auto has = [&essence](std::u16string_view word) {
        return essence.find(word) != std::u16string::npos;
    };
    return has(u"DTC") || has(u"CODE") || has(u"SPN") || has(u"TROUBLE");
}

class LayoutChecks {
  public:
    LayoutChecks(const Table& table, Collector& collector) : table_(table), collector_(collector) {}

    LayoutVerdict Run() {
        if (IsTitle()) return {false, false};
        const bool hasMark = Header(0).starts_with(kByteOrderMark);
        if (hasMark) ReportMark();
        if (table_.layout != TableLayout::SingleNumber) return {};
        if (IsNearMiss(hasMark)) return {false, true};
        if (IsData()) return {true, false};
        return {!IsOtherColumn(), true};
    }

  private:
    [[nodiscard]] std::u16string_view Header(std::size_t column) const { return table_.Header()[column]; }

    void ReportMark() {
        collector_.Add(kMark, {0, 0}, [&] {
            return Say(
                u"%s begins with the byte order mark of UTF-8, which is part of the header so. Read the file "
                u"as UTF-8.",
                {Quote(Header(0))});
        });
    }

    bool IsTitle();
    bool IsNearMiss(bool isReported);
    bool IsData();
    bool IsOtherColumn();
    [[nodiscard]] bool HoldsCodes(std::size_t column) const;
    [[nodiscard]] bool FirstHoldsNumbers() const;
    [[nodiscard]] std::size_t SampleEnd() const;

    const Table& table_;
    Collector& collector_;
};

std::size_t FilledCells(const VTableRow& row) {
    std::size_t filled = 0;
    for (std::size_t column = 0; column < row.size(); ++column) filled += IsBlank(row[column]) ? 0U : 1U;
    return filled;
}

bool LooksLikeNumber(std::u16string_view cell) {
    const std::u16string_view text = Strip(cell);
    return (IsCode(text) && text.size() >= 5) || IsPrefixedHex(text) || IsAllDigits(text);
}

// One filled cell, and below it a row that looks like a header.
bool LayoutChecks::IsTitle() {
    const VTableRow& header = table_.Header();
    if (FilledCells(header) != 1) return false;
    std::size_t next = 1;
    while (next < SampleEnd() && IsBlankRow(table_.Row(next))) ++next;
    if (next == SampleEnd()) return false;
    if (FilledCells(table_.Row(next)) < 2 || LooksLikeNumber(table_.Row(next)[0])) return false;
    std::size_t column = 0;
    while (IsBlank(header[column])) ++column;
    collector_.Add(kTitle, {0, column}, [&] {
        return Say(
            u"The first row has one filled cell, %s, and is read as the header. If it is a title, delete "
            u"all above the header.",
            {Quote(header[column])});
    });
    return true;
}

bool LayoutChecks::IsNearMiss(bool isReported) {
    const std::u16string first = Essence(Header(0).substr(isReported ? kByteOrderMark.size() : 0));
    const std::u16string second = Essence(Header(1));
    std::optional<TableLayout> meant = LayoutMeant(first, second);
    std::size_t column = 0;
    if (!meant && table_.ColumnCount() > 2 && !NamesNumber(Header(0))) {
        meant = LayoutMeant(second, Essence(Header(2)));
        column = 1;
    }
    if (!meant) return false;
    if (isReported) return true;
    const bool isJ1939 = *meant == TableLayout::J1939;
    collector_.Add(kNearMiss, {0, column}, [&] {
        return Say(
            u"The headers %s and %s are not the %s and %s in A1 and B1 with which a table has %s. The "
            u"numbers "
            u"are made of column A alone. Correct the headers, or the order of the columns.",
            {Quote(Header(column)), Quote(Header(column + 1)), isJ1939 ? u"\"SPN\"" : u"\"BaseDTC\"",
             isJ1939 ? u"\"FMI\"" : u"\"FTB\"", isJ1939 ? u"SPN and FMI" : u"a base DTC and a failure type"});
    });
    return true;
}

bool LayoutChecks::IsData() {
    if (!LooksLikeNumber(Header(0))) return false;
    collector_.Add(kFirstRowIsData, {0, 0}, [&] {
        return Say(
            u"The first row looks like data, %s; it is read as the header and gives no DTC. Put a header "
            u"above "
            u"it.",
            {Quote(Header(0))});
    });
    return true;
}

std::size_t LayoutChecks::SampleEnd() const { return std::min<std::size_t>(table_.RowCount(), 50); }

// Of 5 or 7 characters, in the first rows.
bool LayoutChecks::HoldsCodes(std::size_t column) const {
    std::size_t codes = 0;
    for (std::size_t row = 1; row < SampleEnd(); ++row) {
        const std::u16string_view text = Strip(table_.Row(row)[column]);
        if (text.empty()) continue;
        if (!IsCode(text) || (text.size() != 5 && text.size() != 7)) return false;
        ++codes;
    }
    return codes > 0;
}

bool LayoutChecks::FirstHoldsNumbers() const {
    for (std::size_t row = 1; row < SampleEnd(); ++row) {
        const std::u16string_view text = Strip(table_.Row(row)[0]);
        if (!IsAllHexDigits(text) && !IsPrefixedHex(text) && !IsCode(text)) return false;
    }
    return true;
}

// SAE codes in another column than the first.
bool LayoutChecks::IsOtherColumn() {
    if (NamesNumber(Header(0)) || table_.notation.saeCodes) return false;
    const std::size_t end = std::min<std::size_t>(table_.ColumnCount(), 50);
    for (std::size_t column = 1; column < end; ++column) {
        if (!HoldsCodes(column)) continue;
        const bool isSure = !FirstHoldsNumbers();
        collector_.Add(isSure ? kOtherColumn : kOtherColumnPerhaps, {0, column}, [&] {
            return Say(
                u"The column %s holds SAE codes, but the numbers are read from the first column, %s. Move it "
                u"to "
                u"the front if it holds the DTCs.",
                {Quote(Header(column)), Quote(Header(0))});
        });
        return isSure;
    }
    return false;
}

}  // namespace

LayoutVerdict CheckLayout(const Table& table, Collector& collector) {
    return LayoutChecks(table, collector).Run();
}

}  // namespace NChecks
