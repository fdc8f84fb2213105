#include "workbook/cell_rules.h"

#include <algorithm>
#include <cmath>

#include "platform/format.h"
#include "workbook/error.h"
#include "workbook/part_fault.h"
#include "workbook/range_address.h"

namespace NWorkbook {

namespace {

constexpr std::u16string_view kNotInNames = u":\\/?*[]\t\n\r";

bool IsHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
bool IsLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

// Of a capital Latin, Greek or Cyrillic letter; anything else stays.
char16_t SmallLetterOf(char16_t unit) {
    const bool isLatin = (unit >= u'A' && unit <= u'Z') || (unit >= u'À' && unit <= u'Þ' && unit != u'×');
    const bool isGreek = unit >= u'Α' && unit <= u'Ω';
    if (isLatin || isGreek || (unit >= u'А' && unit <= u'Я')) return static_cast<char16_t>(unit + 0x20);
    return unit >= u'Ѐ' && unit <= u'Џ' ? static_cast<char16_t>(unit + 0x50) : unit;
}

[[noreturn]] void RefuseName(std::u16string_view name, std::u16string_view reason) {
    throw WorkbookError(u"A worksheet cannot be named '" + std::u16string(name) + u"': " +
                        std::u16string(reason));
}

}  // namespace

void RefuseLongText(std::u16string_view text, std::uint32_t row, std::uint16_t column) {
    if (text.size() <= kMostUnitsOfCell) return;
    throw WorkbookError(u"The text in cell " + CellName(row, column) + u" has more than 32767 characters.");
}

void RefuseStrangeNumber(double number, std::uint32_t row, std::uint16_t column) {
    if (std::isfinite(number)) return;
    throw WorkbookError(u"The number in cell " + CellName(row, column) + u" is infinite or not a number.");
}

void RefuseWorksheetName(std::u16string_view name) {
    if (name.empty()) RefuseName(name, u"a name needs a character.");
    if (name.size() > kMostUnitsOfWorksheetName) RefuseName(name, u"a name has at most 31 characters.");
    if (name.front() == u'\'' || name.back() == u'\'') {
        RefuseName(name, u"a name neither begins nor ends with an apostrophe.");
    }
    for (std::size_t index = 0; index < name.size(); ++index) {
        if (kNotInNames.find(name[index]) != std::u16string_view::npos || IsNoXmlCharacter(name, index)) {
            RefuseName(name, u"a name holds none of : \\ / ? * [ ] and no control character.");
        }
    }
}

void RefuseLongWorksheetName(std::u16string_view name) {
    if (name.size() <= kMostUnitsOfWorksheetName) return;
    throw PartFault{Fault::Damaged, u"the name of worksheet '" +
                                        std::u16string(NPlatform::Cut(name, kMostUnitsOfWorksheetName)) +
                                        u"...' has more than 31 characters"};
}

bool IsSameWorksheetName(std::u16string_view one, std::u16string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char16_t a, char16_t b) { return SmallLetterOf(a) == SmallLetterOf(b); });
}

bool IsNoXmlCharacter(std::u16string_view text, std::size_t index) {
    const char16_t unit = text[index];
    if (unit < u' ') return unit != u'\t' && unit != u'\n' && unit != u'\r';
    if (IsHighSurrogate(unit)) return index + 1 == text.size() || !IsLowSurrogate(text[index + 1]);
    if (IsLowSurrogate(unit)) return index == 0 || !IsHighSurrogate(text[index - 1]);
    return unit >= 0xFFFE;
}

}  // namespace NWorkbook
