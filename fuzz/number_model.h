// What DTC texts mean, worked out in the plainest way: what the library is compared with.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace NFuzz {

inline constexpr std::u16string_view kWhiteSpace =
    u"\t\n\v\f\r \u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A\u2028"
    u"\u2029\u202F\u205F\u3000";

// Without the units of `blanks` at both ends.
std::u16string_view Strip(std::u16string_view text, std::u16string_view blanks);

std::uint32_t DecimalNumber(std::u16string_view text);
std::uint32_t HexNumber(std::u16string_view text);
// None: the code is malformed.
std::optional<std::uint32_t> SaeNumber(std::u16string_view text);

// As VDTCConvert has it; none where that throws.
std::optional<std::uint32_t> DtcNumber(std::u16string_view text, bool hexDefault, bool saeCodes);

}  // namespace NFuzz
