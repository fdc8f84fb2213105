// Dates as the numbers by which spreadsheet programs know them.
#pragma once

#include <optional>
#include <string_view>

namespace NWorkbook::NXlsx {

// The days since the last day of 1899, 1900 counted as a leap year, as spreadsheet programs do, or since the
// first day of 1904; the time is a part of a day. Takes "2021-03-04", "2021-03-04T05:06:07.8" and "05:06:07",
// the seconds or their parts left out or not; a time zone at the end, up to 14:00 either way, has no effect.
// Nothing for anything else and for dates before the first day.
std::optional<double> DateSerial(std::string_view text, bool isFrom1904);

}  // namespace NWorkbook::NXlsx
