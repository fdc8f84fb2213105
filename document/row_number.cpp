#include "document/row_number.h"

#include "document/cell_text.h"

namespace VSimpleXMLCreation {

namespace {

// Upper case, and "0X" as the converter expects it.
void CopyNumberText(std::u16string_view cell, std::u16string& text) {
    text.assign(cell);
    for (char16_t& unit : text) {
        unit = UpperCase(unit);
        if (unit == u'X') unit = u'x';
    }
}

std::uint32_t PackJ1939(std::uint32_t spn, std::uint32_t fmi) {
    return fmi | (spn & 0xFF00) | (spn >> 11 & 0xE0) | (spn & 0xFF) << 16;
}

bool IsDecimalOnly(NumberRole role) { return role == NumberRole::Spn || role == NumberRole::Fmi; }

}  // namespace

NumberRole RoleOf(TableLayout layout, std::size_t column) {
    if (layout == TableLayout::SingleNumber) return NumberRole::DtcNumber;
    if (layout == TableLayout::J1939) return column == 0 ? NumberRole::Spn : NumberRole::Fmi;
    return column == 0 ? NumberRole::BaseDtc : NumberRole::FailureType;
}

std::int32_t NumberReader::NumberOf(const VCSVReader::VTableRow& row, bool withoutFirst) {
    const std::uint32_t first = withoutFirst ? 0 : Read(RoleOf(layout_, 0), row[0]);
    const bool hasSecond = NumberColumns(layout_) > 1;
    return Combine(first, hasSecond ? Read(RoleOf(layout_, 1), row[1]) : 0);
}

std::int32_t NumberReader::Combine(std::uint32_t first, std::uint32_t second) const {
    if (layout_ == TableLayout::J1939) return static_cast<std::int32_t>(PackJ1939(first, second));
    if (layout_ == TableLayout::BaseAndFailureType) return static_cast<std::int32_t>(first << 8 | second);
    return static_cast<std::int32_t>(first);
}

NumberReader::Reading NumberReader::ReadingOf(NumberRole role, std::u16string_view cell) {
    if (IsDecimalOnly(role)) return {cell, DtcNotation::Decimal};
    const bool isBase = role == NumberRole::BaseDtc;
    if (isBase && !notation_.saeCodes) return {cell, VDTCConvert::NotationOf(cell, false, false)};
    CopyNumberText(cell, text_);
    if (isBase) return {text_, DtcNotation::Sae};
    // Only with a single number column does the whole table decide how numbers are read.
    const NumberNotation notation = role == NumberRole::DtcNumber ? notation_ : NumberNotation{};
    return {text_, VDTCConvert::NotationOf(text_, notation.hexDigits, notation.saeCodes)};
}

// Of a base DTC, blanks at its ends are part of the code; of an SPN and an FMI, no white space in front is.
std::uint32_t NumberReader::Convert(NumberRole role, const Reading& reading) {
    if (IsDecimalOnly(role)) return static_cast<std::uint32_t>(DecimalValue(reading.text));
    if (role == NumberRole::BaseDtc && reading.notation == DtcNotation::Sae) {
        VDTCConvert converter({}, DtcNotation::None);
        converter.ParseSae(reading.text);
        return static_cast<std::uint32_t>(converter.GetValue());
    }
    return static_cast<std::uint32_t>(VDTCConvert(reading.text, reading.notation).GetValue());
}

}  // namespace VSimpleXMLCreation
