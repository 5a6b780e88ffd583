// The turning points of a deal and a game: the bidding is over (a deal
// begins), the deal was filed (watch for the next bids), a game ended.
#pragma once

#include "tracking/bidding_board.h"
#include "tracking/engine.h"

namespace tracking {

class DealFlow {
public:
    DealFlow(Engine& e, BiddingBoard& board) : e_(e), board_(board) {}

    // Four bids are known: arm the trick and last-hand jobs.
    void PrepareBidding();
    // The deal is over (filed, or a new game found): watch for the next bids.
    void EndDealReset();
    // A side reached the game point: a new game starts from nothing.
    void PrepareNextGame(const platform::Rect& gameRect);

private:
    Engine& e_;
    BiddingBoard& board_;
};

}  // namespace tracking
