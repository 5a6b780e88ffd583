#include "platform/sim/virtual_clock.h"

#include <algorithm>

namespace platform {

VirtualClock::VirtualClock(LocalTime start, std::uint32_t startTick) : tick_(startTick), start_(start) {
    start_ = AddSeconds(start, 0);  // normalise the weekday
}

LocalTime VirtualClock::Now() { return AddSeconds(start_, static_cast<std::int64_t>(elapsed_ / 1000)); }

int VirtualClock::Schedule(std::uint32_t at, std::function<void()> fn) {
    int id = nextId_++;
    jobs_.push_back({at, id, std::move(fn)});
    return id;
}

void VirtualClock::Cancel(int id) {
    jobs_.erase(std::remove_if(jobs_.begin(), jobs_.end(), [id](const Job& j) { return j.id == id; }), jobs_.end());
}

void VirtualClock::Wait(std::uint32_t ms) {
    // Run due jobs in time order; a job may itself wait (nested), which
    // simply advances time further, as a real message loop would.
    const std::uint32_t target = tick_ + ms;
    ++depth_;
    for (;;) {
        auto due = jobs_.end();
        for (auto it = jobs_.begin(); it != jobs_.end(); ++it) {
            std::int32_t until = static_cast<std::int32_t>(it->at - target);
            if (until <= 0 && (due == jobs_.end() || static_cast<std::int32_t>(it->at - due->at) < 0)) due = it;
        }
        if (due == jobs_.end()) break;
        if (static_cast<std::int32_t>(due->at - tick_) > 0) {
            elapsed_ += static_cast<std::uint32_t>(due->at - tick_);
            tick_ = due->at;
        }
        Job job = std::move(*due);
        jobs_.erase(due);
        job.fn();
    }
    if (static_cast<std::int32_t>(target - tick_) > 0) {
        elapsed_ += static_cast<std::uint32_t>(target - tick_);
        tick_ = target;
    }
    --depth_;
}

}  // namespace platform
