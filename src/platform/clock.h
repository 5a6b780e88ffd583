// Time for the whole program: tick counts, time of day and waits. Every
// wait goes through here so tests and replays can run in virtual time.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

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

// Deterministic time. Wait() advances the clock and runs the scheduled
// callbacks (simulator steps, timer ticks) that fall due within the wait,
// in time order.
class VirtualClock final : public Clock {
public:
    explicit VirtualClock(LocalTime start = {}, std::uint32_t startTick = 1000000);
    std::uint32_t TickCount() override { return tick_; }
    LocalTime Now() override;
    void Wait(std::uint32_t ms) override;

    // Advance time by ms without anything being "waited for" by the caller.
    void Advance(std::uint32_t ms) { Wait(ms); }
    // Calls fn at tick `at` (or at once on the next advance when already due).
    // Returns an id for Cancel.
    int Schedule(std::uint32_t at, std::function<void()> fn);
    void Cancel(int id);
    // Total virtual milliseconds waited so far.
    std::uint64_t Elapsed() const { return elapsed_; }

private:
    struct Job {
        std::uint32_t at;
        int id;
        std::function<void()> fn;
    };
    std::uint32_t tick_;
    std::uint64_t elapsed_ = 0;
    LocalTime start_;
    std::vector<Job> jobs_;
    int nextId_ = 1;
    int depth_ = 0;
};

// Date arithmetic shared by the clocks.
LocalTime AddSeconds(const LocalTime& t, std::int64_t seconds);

}  // namespace platform
