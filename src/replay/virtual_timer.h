// The companion's timer on a virtual clock: a tick every TimerInterval()
// while the companion's timer is enabled.
#pragma once

#include "platform/sim/virtual_clock.h"
#include "tracking/companion.h"

namespace replay {

class VirtualTimer {
public:
    VirtualTimer(platform::VirtualClock& clock, tracking::Companion& companion);
    ~VirtualTimer();
    VirtualTimer(const VirtualTimer&) = delete;
    VirtualTimer& operator=(const VirtualTimer&) = delete;
    void Start();
    void Stop();

private:
    void Fire();
    platform::VirtualClock& clock_;
    tracking::Companion& companion_;
    int job_ = 0;
    bool running_ = false;
    bool inTick_ = false;
};

}  // namespace replay
