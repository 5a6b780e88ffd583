#include "tracking/companion_models.h"

namespace tracking {

void Board::Layout(int mode, bool dnilPassTable) {
    Mode = mode;
    for (auto& b : Btn) b = core::MakeButton("", false);
    if (mode == BoardOrdinary) {
        Caption = "Spades Bidding";
        for (int i = 1; i <= 13; ++i) Btn[i] = core::MakeButton(std::to_string(i));
        Btn[14] = core::MakeButton("Nil");
        Btn[21] = core::MakeButton("Never Mind");
    } else if (mode == BoardDoubleNil) {
        Caption = "Spades Bidding";
        Btn[15] = core::MakeButton(dnilPassTable ? " DNIL Pass" : "Double Nil");
        Btn[16] = core::MakeButton("Show");
    } else if (mode == BoardConfirm) {
        Caption = "Spades Bidding";
        const std::string bid = RememberedBid == 14 ? "NIL OK?" : std::to_string(RememberedBid) + " OK ?";
        Btn[17] = core::MakeButton(bid);
        Btn[18] = core::MakeButton("Cancel");
        Btn[20] = core::MakeButton("Don't Care");
    }
}

}  // namespace tracking
