// The rooms' char16_t and the system's own character type, which are the same 16 bits.
#pragma once

#include <windows.h>
// Behind it:
#include <string>
#include <string_view>

namespace NPlatform {

static_assert(sizeof(WCHAR) == sizeof(char16_t));

inline std::basic_string<WCHAR> ToWide(std::u16string_view text) { return {text.begin(), text.end()}; }
inline std::u16string FromWide(std::basic_string_view<WCHAR> text) { return {text.begin(), text.end()}; }

// The same text in the same place, for what only passes the system's border.
inline const WCHAR* AsWide(const char16_t* text) { return reinterpret_cast<const WCHAR*>(text); }
inline const char16_t* AsUtf16(const WCHAR* text) { return reinterpret_cast<const char16_t*>(text); }

}  // namespace NPlatform
