#include "platform/clock.h"

#include <ctime>

namespace NPlatform {

static bool ReadLocalTime(CalendarTime& time) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (now == -1 || localtime_s(&local, &now) != 0) return false;
    time = {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
    return true;
}

constinit Replaceable<bool(CalendarTime&)> LocalTime{ReadLocalTime};

}  // namespace NPlatform
