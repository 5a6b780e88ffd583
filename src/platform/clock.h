// Time for the whole program: tick counts, time of day and waits. Every
// wait goes through here so tests and replays can run in virtual time.
#pragma once

#include <cstdint>

namespace platform {

struct LocalTime {
    int Year = 2000, Month = 1, Day = 1;
    int Hour = 0, Minute = 0, Second = 0;
    int Weekday = 6;  // 0 = Sunday
};

class Clock {
public:
    virtual ~Clock() = default;
    // Milliseconds since an arbitrary start (GetTickCount), wraps at 2^32.
    virtual std::uint32_t TickCount() = 0;
    virtual LocalTime Now() = 0;
    // Seconds since local midnight.
    int SecondsOfDay() {
        LocalTime t = Now();
        return t.Hour * 3600 + t.Minute * 60 + t.Second;
    }
    // Waits ms milliseconds while keeping the program responsive: the GUI
    // runs pending events, a console run sleeps, the virtual clock advances
    // time and runs whatever is due meanwhile.
    virtual void Wait(std::uint32_t ms) = 0;
};

// Real time, for console runs without a GUI event loop.
class SystemClock final : public Clock {
public:
    std::uint32_t TickCount() override;
    LocalTime Now() override;
    void Wait(std::uint32_t ms) override;
};

// Date arithmetic shared by the clocks.
LocalTime AddSeconds(const LocalTime& t, std::int64_t seconds);

}  // namespace platform
