#include "tracking/deal_flow.h"

namespace tracking {

void DealFlow::PrepareBidding() {
    DealState& d = e_.Deal;
    d.Bidding = BidState::Watching;
    d.CardsSeen = 0;
    board_.NewDeal();
    if (e_.Alerts) e_.Alerts->HideAskAlert();
    e_.Models.frmZ.Topmost = false;
    d.TricksPlayed = 0;
    d.TrickCounts = {};
    d.NilBroken = {};
    e_.Slots.Disarm(Job::Reminder);
    e_.Slots.Disarm(Job::BidWatch);
    const std::uint32_t now = e_.Clock.TickCount();
    if (e_.CountingAllowed() || e_.CountersOn()) e_.Slots.Arm(Job::LastTrick, now + 300);
    if (e_.Settings.AutoCaptHand) e_.Slots.Arm(Job::LastHand, now + static_cast<std::uint32_t>(e_.Settings.WaitHandMs));
    e_.Models.frmZ.cmdBid.BackColor = e_.Settings.BackColor;
    e_.Models.frmZ.cmdHand.BackColor = 0x0080FF;
    e_.Changed();
}

void DealFlow::EndDealReset() {
    ++e_.DealNumber;
    DealState& d = e_.Deal;
    d.Bidding = BidState::Watching;
    e_.Models.frmZ.lblMsg.Caption.clear();
    d.PrevBids = {};
    d.Bids = {};
    e_.Models.frmZ.cmdHand.BackColor = core::kMainWindowBackColor;
    e_.Models.frmZ.cmdBid.BackColor = core::kMainWindowBackColor;
    if (e_.Settings.AutoCaptBid)
        e_.Slots.Arm(Job::BidWatch, e_.Clock.TickCount() + static_cast<std::uint32_t>(e_.Settings.WaitBidMs));
    else
        e_.Slots.Disarm(Job::BidWatch);
    e_.Slots.Disarm(Job::LastHand);
    e_.Slots.Disarm(Job::LastTrick);
    d.PlayedCards.clear();
    e_.Models.States.RemainingCards = 0;
    e_.Changed();
}

void DealFlow::PrepareNextGame(const platform::Rect& gameRect) {
    e_.Record = display::DealRecord{};
    DealState& d = e_.Deal;
    d.Bids = {};
    d.PrevBids = {};
    d.TrickCounts = {};
    d.NilBroken = {};
    e_.Models.Counters.frmCounter0.ClrCounter();
    if (e_.Alerts) {
        e_.Alerts->View.AlertName.Caption.clear();
        e_.Alerts->View.AlertName.Visible = false;
        e_.Alerts->View.cmdAlertNone.Visible = false;
        if (!e_.OffLine() && e_.Alerts->PromptOn()) e_.Alerts->ShowAskAlert(gameRect);
    }
    d.NameState = 0;
    d.PlayerNames = {};
    e_.Changed();
}

}  // namespace tracking
