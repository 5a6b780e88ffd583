// The bidding board: reads the game's bid panel, shows the board with the
// buttons of that panel, and presses the game's button the user chose.
#pragma once

#include "tracking/engine.h"
#include "tracking/game_windows.h"

namespace tracking {

class BiddingBoard {
public:
    BiddingBoard(Engine& e, GameWindows& w) : e_(e), w_(w) {}

    // 100 ordinary panel, 200 Double Nil panel, 0 none (or the board was
    // hidden after a bid).
    int GetBoardStat();
    // Opens the board for the panel the game shows, when the mode wants it.
    void CheckBoard();
    void ShowBoard(int mode);
    // A button of the board was pressed (1-13 bids, 14 Nil, 15 Double Nil,
    // 16 Show, 17 confirmation, 18 Cancel, 20 Don't Care, 21 Never Mind).
    void Press(int index);
    void HideMe();
    // A new deal: the board closes and its panel is new again.
    void NewDeal();

private:
    // True when the press was made and the panel went.
    bool ClickBidButton(int index);
    // The panel a button belongs to (0 = none).
    static int WantedPanel(int index);
    bool DoClickEver(int index);

    platform::Rect readAt_;  // the game window when the panel was last read
    ButtonTable buttons_{};  // scratch for the effect check

    Engine& e_;
    GameWindows& w_;
};

}  // namespace tracking
