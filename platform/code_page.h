// UTF-16 to a code page.
#pragma once

#include <cstddef>
#include <cstdint>

namespace NPlatform {

inline constexpr std::uint32_t kUtf8CodePage = 65001;

// The most UTF-16 units that one conversion to UTF-8 takes: three bytes each have to stay within a 32-bit
// signed count.
inline constexpr std::size_t kMostUnitsToUtf8 = 715'827'882;

// Converts `count` UTF-16 units to the code page, writing at most `capacity` bytes and no terminator. Returns
// the number of bytes; 0 when there is nothing to convert, the result does not fit or the system does not
// know the code page. An unpaired surrogate becomes U+FFFD.
std::size_t Utf16ToCodePage(std::uint32_t codePage, const char16_t* units, std::size_t count, char* out,
                            std::size_t capacity);

}  // namespace NPlatform
