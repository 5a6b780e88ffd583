// The bid step: reads the bids at the table, shows them on the main window
// and the left counter, learns the names and the user's seat on the first
// bids of a game, and decides when the next reading is due.
#pragma once

#include "tracking/deal_flow.h"
#include "tracking/engine.h"
#include "tracking/game_windows.h"
#include "tracking/trick_tracker.h"

namespace tracking {

class BidTracker {
public:
    BidTracker(Engine& e, GameWindows& w, DealFlow& flow, TrickTracker& tricks)
        : e_(e), w_(w), flow_(flow), tricks_(tricks) {}

    // One step; `automatic` steps stay silent about reading states that a
    // step started by the "Bid" button reports.
    BidResult Step(bool automatic);

private:
    BidResult Read();
    void Dispatch(BidResult r, bool automatic);
    void RefreshBidLabels();

    Engine& e_;
    GameWindows& w_;
    DealFlow& flow_;
    TrickTracker& tricks_;
    int bidsShown_ = 0;
};

}  // namespace tracking
