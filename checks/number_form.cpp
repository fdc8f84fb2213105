#include "checks/number_form.h"

#include <algorithm>
#include <limits>

#include "checks/characters.h"
#include "document/cell_text.h"

namespace NChecks {

using VSimpleXMLCreation::DtcNotation;
using VSimpleXMLCreation::IsWhiteSpace;
using VSimpleXMLCreation::NumberReader;
using VSimpleXMLCreation::NumberRole;
using VSimpleXMLCreation::Trim;
using VSimpleXMLCreation::TrimBlanks;
using VSimpleXMLCreation::UpperCase;

namespace {

std::u16string_view WithoutLeadingZeros(std::u16string_view digits) {
    return digits.substr(std::min(digits.find_first_not_of(u'0'), digits.size()));
}

bool IsSystemLetter(char16_t unit) {
    const char16_t letter = UpperCase(unit);
    return letter == u'P' || letter == u'C' || letter == u'B' || letter == u'U';
}

Verdict JudgeHex(std::u16string_view digits) {
    if (!IsAllHexDigits(digits)) return Verdict::Unreadable;
    return WithoutLeadingZeros(digits).size() <= 8 ? Verdict::Exact : Verdict::TooLarge;
}

// The document stops at the highest signed number.
Verdict JudgeDecimal(std::u16string_view text) {
    const bool isNegative = text.starts_with(u'-');
    const std::u16string_view digits = text.substr(isNegative ? 1 : 0);
    if (!IsAllDigits(digits)) return Verdict::Unreadable;
    if (isNegative) return Verdict::Negative;
    constexpr std::u16string_view kHighest = u"2147483647";
    const std::u16string_view value = WithoutLeadingZeros(digits);
    const bool fits =
        value.size() < kHighest.size() || (value.size() == kHighest.size() && value <= kHighest);
    return fits ? Verdict::Exact : Verdict::TooLarge;
}

}  // namespace

bool IsCode(std::u16string_view text) {
    if (text.size() < 3 || text.size() > 9 || text.size() % 2 == 0) return false;
    return IsSystemLetter(text[0]) && text[1] >= u'0' && text[1] <= u'3' && IsAllHexDigits(text.substr(1));
}

bool IsPrefixedHex(std::u16string_view text) {
    return text.size() > 2 && text[0] == u'0' && UpperCase(text[1]) == u'X' && IsAllHexDigits(text.substr(2));
}

bool IsAllDigits(std::u16string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

bool IsAllHexDigits(std::u16string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), IsHexDigit);
}

bool DependsOnNotation(std::u16string_view digits) { return WithoutLeadingZeros(digits).size() > 1; }

bool IsExponent(std::u16string_view text) {
    // Most texts that are not numbers begin with another character.
    if (!IsAllDigits(text.substr(text.starts_with(u'-') ? 1 : 0, 1))) return false;
    const std::size_t mark = text.find_first_of(u"eE");
    if (mark == std::u16string_view::npos) return false;
    std::u16string_view mantissa = text.substr(0, mark);
    std::u16string_view exponent = text.substr(mark + 1);
    if (mantissa.starts_with(u'-')) mantissa.remove_prefix(1);
    const bool hasSign = exponent.starts_with(u'+') || exponent.starts_with(u'-');
    if (hasSign) exponent.remove_prefix(1);
    const std::size_t point = mantissa.find_first_of(u".,");
    const bool hasPoint = point != std::u16string_view::npos;
    const bool isNumber = hasPoint
                              ? IsAllDigits(mantissa.substr(0, point)) &&
                                    (point + 1 == mantissa.size() || IsAllDigits(mantissa.substr(point + 1)))
                              : IsAllDigits(mantissa);
    return isNumber && (hasSign || hasPoint) && IsAllDigits(exponent);
}

std::u16string_view Strip(std::u16string_view text) {
    const auto isOdd = [](char16_t unit) { return IsWhiteSpace(unit) || IsUnseen(unit); };
    while (!text.empty() && isOdd(text.front())) text.remove_prefix(1);
    while (!text.empty() && isOdd(text.back())) text.remove_suffix(1);
    return text;
}

Verdict Judge(NumberRole role, std::u16string_view cell, const NumberReader::Reading& reading) {
    if (Trim(cell).empty()) return Verdict::Empty;
    switch (reading.notation) {
        case DtcNotation::Sae:  // of a base DTC, blanks are part
            return IsCode(role == NumberRole::BaseDtc ? reading.text : TrimBlanks(reading.text))
                       ? Verdict::Exact
                       : Verdict::Unreadable;
        case DtcNotation::PrefixedHex:
            return JudgeHex(TrimBlanks(reading.text).substr(2));
        case DtcNotation::Hex:
            return JudgeHex(TrimBlanks(reading.text));
        default:
            return JudgeDecimal(Trim(reading.text));
    }
}

}  // namespace NChecks
