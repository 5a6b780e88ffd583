// The trick steps: read the trick counts (and, where counting is allowed,
// the cards of the last trick), keep the right counter's projection up to
// date, notice broken Nils, and move the last-hand capture earlier when the
// deal nears its end.
#pragma once

#include <functional>

#include "tracking/engine.h"
#include "tracking/game_windows.h"

namespace tracking {

class TrickTracker {
public:
    // `captureDeal` runs the capture of the finished deal.
    TrickTracker(Engine& e, GameWindows& w, std::function<void()> captureDeal)
        : e_(e), w_(w), captureDeal_(std::move(captureDeal)) {}

    // The plain step (trick counts only) or the counting step (cards too).
    TrickResult Step();
    TrickResult StepCounting();
    // The bidding of a new deal is over, or a new game begins.
    void NewDeal() { prevTrickCount_ = -1; }
    // Counts by table position: which player took the latest trick (-1 none).
    int GetWinner(const std::array<int, 4>& counts);

private:
    void AfterTrick(int t, std::uint32_t delayAt11, std::uint32_t delayAt12);

    Engine& e_;
    GameWindows& w_;
    std::function<void()> captureDeal_;
    int prevTrickCount_ = -1;
};

// Tricks of each side, and both together.
std::array<int, 3> SideTricks(const std::array<int, 4>& byPos);

}  // namespace tracking
