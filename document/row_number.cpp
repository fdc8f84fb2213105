#include "document/row_number.h"

#include "document/cell_text.h"

namespace VSimpleXMLCreation {

namespace {

// Upper case, and "0X" as the converter wants it.
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
    if (layout_ == TableLayout::SingleNumber) return static_cast<std::int32_t>(first);
    const std::uint32_t second = Read(RoleOf(layout_, 1), row[1]);
    return static_cast<std::int32_t>(layout_ == TableLayout::J1939 ? PackJ1939(first, second)
                                                                   : first << 8 | second);
}

std::uint32_t NumberReader::Read(NumberRole role, std::u16string_view cell) {
    if (IsDecimalOnly(role)) return static_cast<std::uint32_t>(DecimalValue(cell));
    const Reading reading = ReadingOf(role, cell);
    if (role == NumberRole::BaseDtc && notation_.saeCodes) {
        VDTCConvert converter({}, false, false);
        converter.ParseSae(reading.text);
        return static_cast<std::uint32_t>(converter.GetValue());
    }
    const NumberNotation notation = NotationFor(role);
    const VDTCConvert converter(reading.text, notation.hexDigits, notation.saeCodes);
    return static_cast<std::uint32_t>(converter.GetValue());
}

NumberReader::Reading NumberReader::ReadingOf(NumberRole role, std::u16string_view cell) {
    if (IsDecimalOnly(role)) return {cell, DtcNotation::Decimal};
    const bool isBase = role == NumberRole::BaseDtc;
    if (isBase && !notation_.saeCodes) return {cell, VDTCConvert::NotationOf(cell, false, false)};
    CopyNumberText(cell, text_);
    if (isBase) return {text_, DtcNotation::Sae};
    const NumberNotation notation = NotationFor(role);
    return {text_, VDTCConvert::NotationOf(text_, notation.hexDigits, notation.saeCodes)};
}

// Only the numbers of a single column are read as the table as a whole tells.
NumberNotation NumberReader::NotationFor(NumberRole role) const {
    return role == NumberRole::DtcNumber ? notation_ : NumberNotation{};
}

}  // namespace VSimpleXMLCreation
