// Going on-line when a game table appears and off-line when it goes: the
// companion windows are loaded and placed beside the table, or put away and
// the table's state forgotten. A restart forgets the table while it stays.
#pragma once

#include "tracking/deal_flow.h"
#include "tracking/engine.h"
#include "tracking/game_windows.h"
#include "tracking/trick_tracker.h"

namespace tracking {

class OnlineState {
public:
    OnlineState(Engine& e, GameWindows& w, DealFlow& flow, TrickTracker& tricks)
        : e_(e), w_(w), flow_(flow), tricks_(tricks) {}

    void OffToOn();
    void OnToOff();
    // The "Restart" command: everything of the table is read afresh.
    void Restart();

private:
    void LoadCompanionWindows();
    void UnloadCompanionWindows();

    Engine& e_;
    GameWindows& w_;
    DealFlow& flow_;
    TrickTracker& tricks_;
};

}  // namespace tracking
