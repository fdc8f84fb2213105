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

bool IsNumberInBlanks(std::u16string_view cell) {
    const std::u16string_view text = Strip(cell);
    if (text.size() == cell.size()) return false;
    return IsAllHexDigits(text) || IsPrefixedHex(text) || IsCode(text);
}

std::u16string_view KindOf(NumberRole role, std::u16string_view cell, NumberNotation notation) {
    if (role == NumberRole::Spn) return u"an SPN";
    if (role == NumberRole::Fmi) return u"an FMI";
    if (role == NumberRole::FailureType) return u"a failure type";
    if (notation.saeCodes || BeginsLikeCode(Strip(cell), notation)) return u"an SAE code";
    if (role == NumberRole::BaseDtc) return u"a base DTC";
    return notation.hexDigits ? u"a hexadecimal number" : u"a decimal number";
}

std::u16string AdviceFor(Unreadable reason, NumberRole role, std::u16string_view cell,
                         NumberNotation notation) {
    switch (reason) {
        case Unreadable::WithFailureType:
            return u"Put the failure type in a column of its own.";
        case Unreadable::BlanksAround:
            return u"Remove the blanks and invisible characters around it.";
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
            return u"An SAE code is P, C, B or U and 2, 4, 6 or 8 hexadecimal digits, the first of them 0 to "
                   u"3.";
        case Unreadable::Placeholder:
            return HoldsCodes(role) && notation.saeCodes ? u"Fill in the code, or delete the row."
                                                         : u"Fill in the number, or delete the row.";
        default:
            if (role == NumberRole::DtcNumber && notation.saeCodes) {
                return u"Write an SAE code, or a hexadecimal number with 0x.";
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
    if (IsNumberInBlanks(cell)) return Unreadable::BlanksAround;
    if (std::any_of(cell.begin(), cell.end(), IsLookAlike)) return Unreadable::LookAlike;
    const bool isCodeOfLetters = BeginsLikeCode(text, notation) && IsAllHexDigits(text.substr(1));
    if (!isCodeOfLetters && std::none_of(text.begin(), text.end(), IsDigit)) return Unreadable::Placeholder;
    if (HoldsCodes(role) &&
        (BeginsLikeCode(text, notation) || (role == NumberRole::BaseDtc && notation.saeCodes))) {
        return Unreadable::MalformedCode;
    }
    return Unreadable::Other;
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
