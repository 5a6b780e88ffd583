// The companion's Timer1 on a virtual clock.
#pragma once

#include "platform/sim/virtual_clock.h"
#include "tracking/companion.h"

namespace replay {

// Runs Timer1 on a virtual clock: a tick every TimerInterval while enabled.
class VirtualTimer {
public:
    VirtualTimer(platform::VirtualClock& clock, tracking::Companion& companion);
    ~VirtualTimer();
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
