// What the text of a number cell looks like.
#pragma once

#include <string_view>

#include "document/row_number.h"

namespace NChecks {

// P, C, B or U in either case and 2, 4, 6 or 8 hexadecimal digits, the first of them 0 to 3.
bool IsCode(std::u16string_view text);

// 0x in either case and hexadecimal digits.
bool IsPrefixedHex(std::u16string_view text);

bool IsAllDigits(std::u16string_view text);     // none for the empty text
bool IsAllHexDigits(std::u16string_view text);  // as above

// Digits, of which several mean one number in decimal and another in hexadecimal.
bool DependsOnNotation(std::u16string_view digits);

// An exponent as spreadsheet programs write it, which no hexadecimal number is: 1.23E+05.
bool IsExponent(std::u16string_view text);

// The text without white space and invisible characters at both ends.
std::u16string_view Strip(std::u16string_view text);

// Whether the document has exactly the number that the cell shows.
enum class Verdict { Exact, Empty, Unreadable, TooLarge, Negative };

// The limits of SPN, FMI, failure type and base DTC are not looked at here.
Verdict Judge(VSimpleXMLCreation::NumberRole role, std::u16string_view cell,
              const VSimpleXMLCreation::NumberReader::Reading& reading);

}  // namespace NChecks
