// The rooms' char16_t and the system's wchar_t, which are the same 16 bits here.
#pragma once

#include <string>
#include <string_view>

namespace NPlatform {

static_assert(sizeof(wchar_t) == sizeof(char16_t));

inline std::wstring ToWide(std::u16string_view text) { return {text.begin(), text.end()}; }
inline std::u16string FromWide(std::wstring_view text) { return {text.begin(), text.end()}; }

// The same text in the same place, for what only passes the system's border.
inline const wchar_t* AsWide(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }
inline const char16_t* AsUtf16(const wchar_t* text) { return reinterpret_cast<const char16_t*>(text); }

}  // namespace NPlatform
