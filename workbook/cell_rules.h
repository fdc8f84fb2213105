// What a cell may hold: what spreadsheet programs open again.
#pragma once

#include <cstdint>
#include <string_view>

namespace NWorkbook {

// In UTF-16 units.
inline constexpr std::size_t kMostUnitsOfCell = 32'767;

inline constexpr std::size_t kMostUnitsOfWorksheetName = 31;

// Throw WorkbookError, which names the cell, for a text longer than that and for an infinite number or one
// that is not a number.
void RefuseLongText(std::u16string_view text, std::uint32_t row, std::uint16_t column);
void RefuseStrangeNumber(double number, std::uint32_t row, std::uint16_t column);

// Throws WorkbookError for a name that a worksheet may not have, whatever the others are called: it has 1 to
// 31 units, none of : \ / ? * [ ], no control character, half a surrogate pair or noncharacter, and neither
// begins nor ends with an apostrophe.
void RefuseWorksheetName(std::u16string_view name);

// Throws PartFault for the name of a worksheet in a file that is longer than that.
void RefuseLongWorksheetName(std::u16string_view name);

// Whether two worksheets of one workbook may not have these names: they are equal, or differ in the case of
// Latin, Greek or Cyrillic letters only.
bool IsSameWorksheetName(std::u16string_view one, std::u16string_view other);

// Whether the character at `index` is not allowed in an XML document: most control characters, half a
// surrogate pair, U+FFFE and U+FFFF.
bool IsNoXmlCharacter(std::u16string_view text, std::size_t index);

}  // namespace NWorkbook
