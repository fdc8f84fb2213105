// The local time.
#pragma once

#include "platform/replaceable.h"

namespace NPlatform {

struct CalendarTime {
    int year;    // as written, for example 2026
    int month;   // 1 to 12
    int day;     // 1 to 31
    int hour;    // 0 to 23
    int minute;  // 0 to 59
    int second;  // 0 to 59
};

// Fills in the current local time. False: the system failed; the argument is then unchanged.
extern Replaceable<bool(CalendarTime&)> LocalTime;

}  // namespace NPlatform
