#include "replay/virtual_timer.h"

#include <algorithm>

namespace replay {

VirtualTimer::VirtualTimer(platform::VirtualClock& clock, tracking::Companion& companion) : clock_(clock), companion_(companion) {}

VirtualTimer::~VirtualTimer() { Stop(); }

void VirtualTimer::Start() {
    running_ = true;
    job_ = clock_.Schedule(clock_.TickCount() + static_cast<std::uint32_t>(companion_.TimerInterval), [this] { Fire(); });
}

void VirtualTimer::Stop() {
    if (job_) clock_.Cancel(job_);
    job_ = 0;
    running_ = false;
}

void VirtualTimer::Fire() {
    job_ = 0;
    if (!running_) return;
    // The next tick is scheduled before this one runs, as a system timer
    // keeps firing while a handler waits; the busy flags turn it away.
    job_ = clock_.Schedule(clock_.TickCount() + static_cast<std::uint32_t>(std::max(1, companion_.TimerInterval)),
                           [this] { Fire(); });
    // Like a toolkit timer, it does not deliver a tick into a handler that is
    // still running (a wait inside it): nested ticks would overwrite the one
    // pixel buffer under a reader that is waiting for its copy.
    if (inTick_) return;
    inTick_ = true;
    if (companion_.TimerEnabled && !companion_.Ended) companion_.Timer1_Timer();
    inTick_ = false;
    if (companion_.Ended) Stop();
}

}  // namespace replay
