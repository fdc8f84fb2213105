// Words for findings.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "checks/finding.h"
#include "platform/format.h"

namespace NChecks {

// The text in double quotes, on one line and safe to show anywhere: what cannot be seen, or changes how the
// rest is shown, becomes "<U+0009>". A long text is cut, never within a surrogate pair, and ends with "...".
std::u16string Quote(std::u16string_view text);

// At least four digits.
std::u16string HexText(std::uint32_t number);

// "U+0420"
std::u16string CodePoint(char32_t character);

// A7
std::u16string CellName(const Place& place);

// "Cell A7 "text""
std::u16string NameCell(const Place& place, std::u16string_view text);

// A count as Format takes it.
inline std::int32_t Count(std::size_t count) {
    return static_cast<std::int32_t>(count < 0x7FFFFFFF ? count : 0x7FFFFFFF);
}

// "1 cell", "2 cells"
std::u16string Counted(std::size_t count, std::u16string_view one, std::u16string_view many);

// The number without an exponent, if that is not too long.
std::u16string DigitsOf(double number);

inline std::u16string Say(std::u16string_view pattern,
                          std::initializer_list<NPlatform::FormatArgument> arguments) {
    constexpr std::size_t kCapacity = 2048;
    return NPlatform::Format(kCapacity, pattern, arguments);
}

}  // namespace NChecks
