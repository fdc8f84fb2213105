// What headers say that their columns hold. Only their ASCII letters and digits count, in either case.
#pragma once

#include <cstdint>
#include <string_view>

namespace NChecks {

// How clearly a header says that its column holds the DTC numbers. Mention: "DTC class". Near: "Fault code",
// "DTC Nr". Exact: "DTC", "SAE code", "SPN".
enum class DtcClaim : std::uint8_t { None, Mention, Near, Exact };

DtcClaim ClaimOf(std::u16string_view header);

bool SaysSpn(std::u16string_view header);
bool SaysDescription(std::u16string_view header);
bool SaysHexadecimal(std::u16string_view header);

// What belongs to a number that is made of two columns.
enum class SecondNumber : std::uint8_t { Fmi, FailureType };

// How clearly a header says that. Loose: a word with other meanings, too, such as "Symptom". Clear: "FMI
// no.", "Failure type". Exact: "FMI", "FTB".
enum class SecondClaim : std::uint8_t { None, Loose, Clear, Exact };

SecondClaim SecondClaimOf(std::u16string_view header, SecondNumber number);

}  // namespace NChecks
