#include "checks/unreadable.h"

#include <algorithm>

#include "checks/causes.h"
#include "checks/characters.h"
#include "checks/number_form.h"
#include "checks/sentence.h"
#include "document/cell_text.h"
#include "document/dtc_convert.h"

namespace NChecks {

using VSimpleXMLCreation::DtcNotation;
using VSimpleXMLCreation::LooksLikeSae;
using VSimpleXMLCreation::NumberNotation;
using VSimpleXMLCreation::NumberRole;
using VSimpleXMLCreation::UpperCase;
using VSimpleXMLCreation::VDTCConvert;

namespace {

// Greek, Coptic, Cyrillic and Armenian letters, and the full-width forms of letters and digits.
bool IsLookAlike(char16_t unit) {
    if (unit >= 0x370 && unit <= 0x58F) return true;
    return (unit >= 0xFF10 && unit <= 0xFF19) || (unit >= 0xFF21 && unit <= 0xFF3A) ||
           (unit >= 0xFF41 && unit <= 0xFF5A);
}

bool HoldsCodes(NumberRole role) { return role == NumberRole::DtcNumber || role == NumberRole::BaseDtc; }

bool IsOnlyDecimal(NumberRole role) { return role == NumberRole::Spn || role == NumberRole::Fmi; }

// A text that begins with one of the letters is read as a code if there are any.
bool BeginsLikeCode(std::u16string_view text, NumberNotation notation) {
    constexpr std::u16string_view kLetters = u"PCBUpcbu";
    return text.size() > 1 && kLetters.find(text[0]) != std::u16string_view::npos &&
           (notation.saeCodes || IsDigit(text[1]));
}

// "P0123-11", "P0123 11", "P0123:1A"
bool HasFailureType(std::u16string_view text) {
    constexpr std::size_t kCode = 5;
    if (text.size() != kCode + 3 || !IsCode(text.substr(0, kCode))) return false;
    return !IsHexDigit(text[kCode]) && IsAllHexDigits(text.substr(kCode + 1));
}

bool IsNumberWithBlanks(std::u16string_view cell) {
    const auto isOdd = [](char16_t unit) { return Strip({&unit, 1}).empty(); };
    if (std::ranges::none_of(cell, isOdd)) return false;
    std::u16string text(cell);
    std::erase_if(text, isOdd);
    return IsPrefixedHex(text) || IsCode(text) || IsAllHexDigits(Strip(cell));
}

// 1234h, $1234, x1234, &H1234, Ox1234
bool IsMarkedHex(std::u16string_view text) {
    for (const std::u16string_view mark : {u"$", u"X", u"&H", u"OX"}) {
        if (UpperCase(text.substr(0, mark.size())) == mark) return IsAllHexDigits(text.substr(mark.size()));
    }
    return (text.ends_with(u'h') || text.ends_with(u'H')) && IsAllHexDigits(text.substr(0, text.size() - 1));
}

bool IsLetter(char16_t unit) {
    const char16_t upper = UpperCase(unit);
    return upper >= u'A' && upper <= u'Z';
}

std::size_t LettersAtStart(std::u16string_view text) {
    return static_cast<std::size_t>(std::ranges::find_if_not(text, IsLetter) - text.begin());
}

// 2026-01-02, 02.01.2026, 2-Jan, 02. Jan, Jan 02
bool IsDate(std::u16string_view text) {
    constexpr std::u16string_view kMonths =
        u"JAN FEB MAR MRZ APR MAY MAI JUN JUL AUG SEP OCT OKT NOV DEC DEZ";
    constexpr std::size_t kLongest = 30;
    if (text.size() > kLongest) return false;
    const auto* const month = std::ranges::find_if(text, IsLetter);
    std::u16string rest(text);
    if (month != text.end()) {
        const auto begin = static_cast<std::size_t>(month - text.begin());
        const std::size_t size = LettersAtStart(text.substr(begin));
        if (size < 3 || kMonths.find(UpperCase(text.substr(begin, 3))) == std::u16string_view::npos)
            return false;
        rest.erase(begin, size);
    }
    const auto isPart = [](char16_t unit) {
        return IsDigit(unit) || std::u16string_view(u" .-/:").find(unit) != std::u16string_view::npos;
    };
    if (!std::ranges::all_of(rest, isPart)) return false;
    std::size_t numbers = 0;
    bool hasYear = false;
    for (std::size_t begin = 0; (begin = rest.find_first_of(u"0123456789", begin)) != std::u16string::npos;) {
        const std::size_t end = std::min(rest.find_first_not_of(u"0123456789", begin), rest.size());
        hasYear = hasYear || end - begin == 4;
        ++numbers;
        begin = end;
    }
    return month == text.end() ? numbers >= 3 && hasYear : numbers > 0;
}

std::u16string_view KindOf(NumberRole role, std::u16string_view cell, NumberNotation notation) {
    if (role == NumberRole::Spn) return u"an SPN";
    if (role == NumberRole::Fmi) return u"an FMI";
    if (role == NumberRole::FailureType) return u"a failure type";
    if (role == NumberRole::DtcNumber && Strip(cell).substr(0, 2) == u"0x") return u"a hexadecimal number";
    if (notation.saeCodes || BeginsLikeCode(Strip(cell), notation)) return u"an SAE code";
    if (role == NumberRole::BaseDtc) return u"a base DTC";
    return notation.hexDigits ? u"a hexadecimal number" : u"a decimal number";
}

// Of a text that has no number of any notation.
Unreadable WhyNoNumber(NumberRole role, std::u16string_view text, NumberNotation notation) {
    if (IsDate(text)) return Unreadable::Date;
    const bool isCodeOfLetters = BeginsLikeCode(text, notation) && IsAllHexDigits(text.substr(1));
    const bool isWord = LettersAtStart(text) > 2 || std::none_of(text.begin(), text.end(), IsDigit);
    if (isWord && !isCodeOfLetters) return Unreadable::Placeholder;
    if (HoldsCodes(role) &&
        (BeginsLikeCode(text, notation) || (role == NumberRole::BaseDtc && notation.saeCodes))) {
        return Unreadable::MalformedCode;
    }
    if (IsMarkedHex(text)) return Unreadable::HexWithoutPrefix;
    return Unreadable::Other;
}

std::u16string AdviceFor(Unreadable reason, NumberRole role, std::u16string_view cell,
                         NumberNotation notation) {
    switch (reason) {
        case Unreadable::WithFailureType:
            return u"Put the failure type in a column of its own.";
        case Unreadable::Blanks:
            return u"Remove the blanks and invisible characters.";
        case Unreadable::LookAlike: {
            const auto* const unit = std::find_if(cell.begin(), cell.end(), IsLookAlike);
            return Say(u"%s only looks like a Latin letter or digit. Type it again.", {CodePoint(*unit)});
        }
        case Unreadable::HexWithoutPrefix:
            return IsOnlyDecimal(role) ? u"Write it as a decimal number."
                                       : u"Write hexadecimal numbers with 0x.";
        case Unreadable::LargePrefix:
            return u"Write 0x with a small x.";
        case Unreadable::PrefixNotTaken:
            return u"Write it as a decimal number.";
        case Unreadable::MalformedCode:
            return Say(
                u"An SAE code is P, C, B or U and 2, 4, 6 or 8 hexadecimal digits, the first of them 0 to "
                u"3.%s",
                {role == NumberRole::DtcNumber && IsAllHexDigits(Strip(cell))
                     ? u" Write a hexadecimal number with 0x."
                     : u""});
        case Unreadable::Date:
            return u"If a spreadsheet program has made a date of it, format the column as text and enter it "
                   u"again.";
        case Unreadable::Placeholder:
            return HoldsCodes(role) && notation.saeCodes ? u"Fill in the code, or delete the row."
                                                         : u"Fill in the number, or delete the row.";
        default:
            if (role == NumberRole::DtcNumber && notation.saeCodes) {
                return u"Write an SAE code, or a hexadecimal number with 0x.";
            }
            if (role == NumberRole::DtcNumber && Strip(cell).starts_with(u"0x")) {
                return u"Write hexadecimal digits alone after 0x.";
            }
            // In a column of DTC numbers, 0x changes how others are read.
            return IsOnlyDecimal(role) || role == NumberRole::DtcNumber
                       ? u"Write its digits alone."
                       : u"Write decimal digits alone, or 0x and hexadecimal digits.";
    }
}

// The code itself may be right: its number in hexadecimal is read in any column.
std::u16string AdviceForCode(std::u16string_view cell) {
    const std::u16string code = UpperCase(Strip(cell));
    if (LooksLikeSae(code)) return u"Remove the blanks after it.";
    const VDTCConvert number(code, DtcNotation::Sae);
    return Say(u"Write 0x%s instead.", {HexText(static_cast<std::uint32_t>(number.GetValue()))});
}

}  // namespace

Unreadable WhyUnreadable(NumberRole role, std::u16string_view cell, NumberNotation notation) {
    const std::u16string_view text = Strip(cell);
    const bool isCode = HoldsCodes(role) && IsCode(text);
    if (isCode && !notation.saeCodes && cell.starts_with(text)) return Unreadable::CodeNotTaken;
    if (HoldsCodes(role) && HasFailureType(text)) return Unreadable::WithFailureType;
    if (!isCode && IsAllHexDigits(text) && !IsAllDigits(text) && text.size() == cell.size()) {
        return HoldsCodes(role) && notation.saeCodes ? Unreadable::MalformedCode
                                                     : Unreadable::HexWithoutPrefix;
    }
    if (IsPrefixedHex(text)) {
        if (IsOnlyDecimal(role)) return Unreadable::PrefixNotTaken;
        if (role == NumberRole::BaseDtc && !notation.saeCodes && cell.starts_with(u"0X")) {
            return Unreadable::LargePrefix;
        }
    }
    if (IsNumberWithBlanks(cell)) return Unreadable::Blanks;
    if (std::any_of(cell.begin(), cell.end(), IsLookAlike)) return Unreadable::LookAlike;
    return WhyNoNumber(role, text, notation);
}

Cause CauseOf(Unreadable reason) {
    if (reason == Unreadable::CodeNotTaken) return kCodeNotTaken;
    return {Rule::NumberUnreadable, static_cast<std::size_t>(reason)};
}

std::u16string TellUnreadable(Unreadable reason, NumberRole role, std::u16string_view cell,
                              NumberNotation notation, std::u16string_view outcome) {
    if (reason == Unreadable::CodeNotTaken) {
        return Say(
            u"%s is not read as an SAE code, because no cell of the column has exactly 5 or 7 characters and "
            u"begins with P, C, B or U; %s. %s",
            {Quote(cell), outcome, AdviceForCode(cell)});
    }
    return Say(u"%s is not %s; %s. %s",
               {Quote(cell), KindOf(role, cell, notation), outcome, AdviceFor(reason, role, cell, notation)});
}

}  // namespace NChecks
