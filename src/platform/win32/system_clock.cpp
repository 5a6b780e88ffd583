#include <ctime>

#include "platform/clock.h"

namespace platform {

LocalTime SystemClock::Now() {
    const std::time_t now = std::time(nullptr);
    std::tm tm{};
    localtime_s(&tm, &now);
    LocalTime t;
    t.Year = tm.tm_year + 1900;
    t.Month = tm.tm_mon + 1;
    t.Day = tm.tm_mday;
    t.Hour = tm.tm_hour;
    t.Minute = tm.tm_min;
    t.Second = tm.tm_sec;
    t.Weekday = tm.tm_wday;
    return t;
}

}  // namespace platform
