// Simulated time for tests, replays and the demo.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/clock.h"

namespace platform {

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
    // The wall clock is set (by the user, or a time server) `seconds` on or
    // back; the tick count goes on undisturbed, as on a real system.
    void ShiftWallClock(std::int64_t seconds) { start_ = AddSeconds(start_, seconds); }
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

}  // namespace platform
