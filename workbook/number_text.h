// Numbers of cells as texts.
#pragma once

#include <array>
#include <string_view>

namespace NWorkbook {

// Has room for any number's text.
using NumberText = std::array<char16_t, 32>;

// The fewest digits that give the number back: 42, -0.1, 1234567.5. From 0.00001 on and below 1e15 without an
// exponent, else as 1e+15, 1.5e-06. Minus zero is 0. The text is in `text`.
std::u16string_view WriteNumber(double number, NumberText& text);

}  // namespace NWorkbook
