// Cells that are not wholly numbers.
#pragma once

#include <string>
#include <string_view>

#include "checks/collector.h"
#include "document/row_number.h"

namespace NChecks {

enum class Unreadable {
    CodeNotTaken,      // an SAE code in a column without one of 5 or 7 characters
    WithFailureType,   // an SAE code and a failure type in one cell: P0123-11
    Blanks,            // a number with white space or invisible characters
    LookAlike,         // letters and digits of other alphabets
    HexWithoutPrefix,  // hexadecimal digits where decimal ones are read, or with another mark: 12h, $12
    LargePrefix,       // 0X where only 0x is supported
    PrefixNotTaken,    // 0x where only decimal numbers are supported
    MalformedCode,     // begins like an SAE code
    Placeholder,       // without a digit, or begins with a word: TBD, n/a, ?, Page 2
    Date,              // as a spreadsheet program makes it of 1-2: 02. Jan
    Other,
};

// For a cell that is not exact, not empty and not out of range.
Unreadable WhyUnreadable(VSimpleXMLCreation::NumberRole role, std::u16string_view cell,
                         VSimpleXMLCreation::NumberNotation notation);

Cause CauseOf(Unreadable reason);

// The sentence; `outcome` is its middle.
std::u16string TellUnreadable(Unreadable reason, VSimpleXMLCreation::NumberRole role,
                              std::u16string_view cell, VSimpleXMLCreation::NumberNotation notation,
                              std::u16string_view outcome);

}  // namespace NChecks
