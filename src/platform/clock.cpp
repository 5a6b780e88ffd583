#include "platform/clock.h"

#include <chrono>
#include <thread>

namespace platform {

namespace {

// Days since 1970-01-01 for a civil date (proleptic Gregorian).
std::int64_t DaysFromCivil(int y, int m, int d) {
    y -= m <= 2;
    const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * static_cast<unsigned>(m + (m > 2 ? -3 : 9)) + 2) / 5 + static_cast<unsigned>(d) - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

void CivilFromDays(std::int64_t z, int& y, int& m, int& d) {
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    y = static_cast<int>(static_cast<std::int64_t>(yoe) + era * 400 + (m <= 2));
}

}  // namespace

LocalTime AddSeconds(const LocalTime& t, std::int64_t seconds) {
    std::int64_t total = DaysFromCivil(t.Year, t.Month, t.Day) * 86400 + t.Hour * 3600 + t.Minute * 60 +
                         t.Second + seconds;
    std::int64_t days = total >= 0 ? total / 86400 : (total - 86399) / 86400;
    std::int64_t rest = total - days * 86400;
    LocalTime r;
    CivilFromDays(days, r.Year, r.Month, r.Day);
    r.Hour = static_cast<int>(rest / 3600);
    r.Minute = static_cast<int>(rest / 60 % 60);
    r.Second = static_cast<int>(rest % 60);
    r.Weekday = static_cast<int>(((days % 7) + 7 + 4) % 7);  // 1970-01-01 was a Thursday
    return r;
}

std::uint32_t SystemClock::TickCount() {
    using namespace std::chrono;
    return static_cast<std::uint32_t>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

void SystemClock::Wait(std::uint32_t ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

}  // namespace platform
