#include "document/dtc_convert.h"

#include "document/cell_text.h"
#include "document/xml_exception.h"
#include "platform/format.h"

namespace VSimpleXMLCreation {

namespace {

constexpr std::size_t kMessageCapacity = 128;

// A text that does not fit is cut, so that the explanation after it stays complete.
[[noreturn]] void Refuse(std::u16string_view pattern, std::u16string_view text) {
    const std::size_t room = kMessageCapacity - 1 - (pattern.size() - 2);
    throw VSimpleXMLException(NPlatform::Format(kMessageCapacity, pattern, {NPlatform::Cut(text, room)}));
}

bool BeginsLikeSae(std::u16string_view text) {
    const char16_t first = text.front();
    return first == u'P' || first == u'C' || first == u'B' || first == u'U';
}

std::uint32_t HexDigit(char16_t unit) {
    if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10U;
    const std::uint32_t zero = unit <= 0x40 ? 48 : 55;
    return unit - zero;
}

std::uint32_t SystemCode(char16_t letter) {
    if (letter == u'C') return 4;
    if (letter == u'B') return 8;
    if (letter == u'U') return 12;
    return 0;
}

}  // namespace

DtcNotation VDTCConvert::NotationOf(std::u16string_view text, bool hexDefault, bool saeCodes) {
    if (text.empty()) return DtcNotation::None;
    if (saeCodes && BeginsLikeSae(text)) return DtcNotation::Sae;
    if (text.starts_with(u"0x")) return DtcNotation::PrefixedHex;
    return hexDefault ? DtcNotation::Hex : DtcNotation::Decimal;
}

VDTCConvert::VDTCConvert(std::u16string_view text, bool hexDefault, bool saeCodes)
    : VDTCConvert(text, NotationOf(text, hexDefault, saeCodes)) {}

VDTCConvert::VDTCConvert(std::u16string_view text, DtcNotation notation) {
    const std::u16string_view trimmed = TrimBlanks(text);
    switch (notation) {
        case DtcNotation::None:
            break;
        case DtcNotation::Sae:
            ParseSae(trimmed);
            break;
        case DtcNotation::PrefixedHex:
            value_ = static_cast<std::int32_t>(ParseHex(trimmed.substr(2)));
            break;
        case DtcNotation::Hex:
            value_ = static_cast<std::int32_t>(ParseHex(trimmed));
            break;
        case DtcNotation::Decimal:
            value_ = DecimalValue(trimmed);
            break;
    }
}

std::uint32_t VDTCConvert::ParseHex(std::u16string_view text) {
    std::uint32_t value = 0;
    for (const char16_t unit : text) value = value << 4 | HexDigit(unit);
    return value;
}

void VDTCConvert::ParseSae(std::u16string_view text) {
    value_ = 0;
    const std::size_t length = text.size();
    if (length < 3 || length > 9 || length % 2 == 0) {
        Refuse(u"Given SAE DTC number %s has invalid length, expected 3, 5, 7 or 9 characters", text);
    }
    const std::uint32_t digits = ParseHex(text.substr(1));
    const std::size_t topShift = 4 * (length - 2);  // to the first digit
    const auto top = static_cast<std::uint32_t>(static_cast<std::int32_t>(digits) >> topShift);
    if (top > 3) Refuse(u"Given SAE DTC '%s' is invalid, top most two bits must be zero.", text);
    value_ = static_cast<std::int32_t>(digits | (top + SystemCode(text.front())) << topShift);
}

std::u16string VDTCConvert::ToString() const { return NPlatform::Format(12, u"%d", {value_}); }

}  // namespace VSimpleXMLCreation
