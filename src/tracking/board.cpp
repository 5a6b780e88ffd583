#include "tracking/board.h"

namespace tracking {

void Board::Layout(int mode, bool dnilPassTable) {
    Mode = mode;
    for (auto& b : Btn) b = BoardButton{};
    if (mode == BoardOrdinary) {
        Caption = "Spades Bidding";
        for (int i = 1; i <= 13; ++i) Btn[i] = {std::to_string(i), true};
        Btn[14] = {"Nil", true};
        Btn[21] = {"Never Mind", true};
    } else if (mode == BoardDoubleNil) {
        Caption = "Spades Bidding";
        Btn[15] = {dnilPassTable ? " DNIL Pass" : "Double Nil", true};
        Btn[16] = {"Show", true};
    } else if (mode == BoardConfirm) {
        Caption = "Spades Bidding";
        const std::string bid = RememberedBid == 14 ? "NIL OK?" : std::to_string(RememberedBid) + " OK ?";
        Btn[17] = {bid, true};
        Btn[18] = {"Cancel", true};
        Btn[20] = {"Don't Care", true};
    }
}

}  // namespace tracking
