// Files a captured deal: the record file and the file box, the alert check
// on the names, the counters, the Nil history, and at the game point the
// rating and the next game.
#pragma once

#include <array>
#include <string>

#include "reading/cards.h"
#include "tracking/deal_flow.h"
#include "tracking/engine.h"
#include "tracking/game_windows.h"
#include "tracking/trick_tracker.h"

namespace tracking {

class DealFiler {
public:
    DealFiler(Engine& e, GameWindows& w, DealFlow& flow, TrickTracker& tricks)
        : e_(e), w_(w), flow_(flow), tricks_(tricks) {}

    // The same four hands as the deal filed last: the game still shows it.
    [[nodiscard]] bool AlreadyFiled(const reading::HandRead& hand) const { return hand.Cards == prevHands_; }
    // Files the deal read from the "Last Hand" window; `userSeat` is the
    // compass seat of the user.
    void File(const reading::HandRead& hand, int userSeat);

    // Filed deals and finished games since start.
    [[nodiscard]] int FiledCount() const { return filed_; }
    [[nodiscard]] int GamesOver() const { return gamesOver_; }
    // Seconds of the day at which the right counter is hidden after a deal
    // (set when the deal is filed; -1 = none).
    [[nodiscard]] int HideCounterAt() const { return hideCounterAt_; }
    void ClearHideCounter() { hideCounterAt_ = -1; }

private:
    void GameEnd(const reading::HandRead& hand);

    Engine& e_;
    GameWindows& w_;
    DealFlow& flow_;
    TrickTracker& tricks_;
    std::array<std::array<std::string, 13>, 4> prevHands_;
    int filed_ = 0;
    int gamesOver_ = 0;
    int hideCounterAt_ = -1;
};

}  // namespace tracking
