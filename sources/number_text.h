// How the numbers of a worksheet become texts. The decimal point is always '.'.
#pragma once

#include <array>
#include <cstdint>

namespace VCSVReader {

// Has room for the longest text of each kind: 309 digits before the point, or 340 places after it.
using NumberBuffer = std::array<char16_t, 352>;

// Toward zero; -2147483648 for what is outside the 32-bit range and for what is no number.
std::int32_t TruncateNumber(double number);

// Each writes into the buffer and returns its beginning; the text ends with a NUL.
using NumberWriter = const char16_t* (*)(double number, NumberBuffer& buffer);

// At most 6 significant digits for a number that its truncation equals, at most 16 for any other, without
// trailing zeros; with an exponent of a sign and at least three digits where the decimal exponent is below -4
// or not below the number of digits: 42, 0.1, 1.23457e+006 for 1234567, 2147483648, 1e+020.
const char16_t* WriteNumber(double number, NumberBuffer& buffer);

// The shortest decimal, without an exponent, that is this number and no other: 1234567, 0.1, 100, 0.00001.
const char16_t* WriteTrimmedNumber(double number, NumberBuffer& buffer);

// The truncated number: 12, 3 for 3.7, -2 for -2.5.
const char16_t* WriteTruncatedNumber(double number, NumberBuffer& buffer);

// Whether the text, which one of these wrote, has no exponent and at least the first 12 digits of the number.
bool ShowsNumber(const char16_t* text, double number);

}  // namespace VCSVReader
