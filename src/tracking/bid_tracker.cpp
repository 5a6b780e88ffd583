#include "tracking/bid_tracker.h"

#include "core/text.h"

namespace tracking {

namespace {
bool IsNilKind(const std::string& bid) { return core::BidKind(bid) != 0; }
}  // namespace

void BidTracker::RefreshBidLabels() {
    for (int p = 0; p < 4; ++p) e_.Models.frmZ.lblBid[p].Caption = e_.Deal.Bids[p];
}

BidResult BidTracker::Step(bool automatic) {
    if (e_.Busy.Is(Busy::FileView)) return BidResult::Skipped;
    BusyFlags::Guard guard(e_.Busy, Busy::BidStep);
    if (!guard.Held()) return BidResult::Skipped;
    if (e_.Models.States.CardPlay == 2) e_.Models.States.CardPlay = 1;
    BidResult r;
    if (!w_.SubWindowAlive(JobIndex(Job::LastHand))) {
        r = BidResult::LastHandWindowMissing;
    } else if (!w_.SubWindowAlive(JobIndex(Job::ScoreWindow))) {
        r = BidResult::ScoreWindowMissing;
    } else {
        e_.Models.frmZ.cmdTimer.Enabled = false;
        r = Read();
    }
    Dispatch(r, automatic);
    auto& z = e_.Models.frmZ;
    z.cmdBid.Enabled = true;
    z.cmdTimer.Enabled = true;
    z.cmdHand.Visible = true;
    e_.Changed();
    return r;
}

BidResult BidTracker::Read() {
    DealState& d = e_.Deal;
    auto& z = e_.Models.frmZ;
    if (!d.LastTrickMinimised && w_.Sub(JobIndex(Job::LastTrick))) {
        e_.Desktop.windows.Minimize(w_.Sub(JobIndex(Job::LastTrick)));
        d.LastTrickMinimised = true;
    }
    if (e_.Rating && e_.Rating->MyRating.Caption.empty()) e_.ReadShowRating(0, w_.Game());
    const int code = e_.Readers.CaptureBid(d.Bids, d.BidCount, d.BidLocCount);
    z.cntBidLoc.Caption = std::to_string(d.BidLocCount);
    if (code == 11 || code == 13) return static_cast<BidResult>(code);
    if (d.BidCount > bidsShown_) {
        bidsShown_ = d.BidCount;
        RefreshBidLabels();
        if (d.BidCount == 4) bidsShown_ = 0;
    }
    z.cntBids.Caption = std::to_string(d.BidCount);
    if (d.BidCount == 0) return static_cast<BidResult>(code);
    if (d.Bids == d.PrevBids) return BidResult::BidsUnchanged;
    if (e_.Settings.AlertNilBids) {
        for (int p = 0; p < 4; ++p) {
            if (IsNilKind(d.Bids[p]) && !IsNilKind(d.PrevBids[p])) {
                e_.AlertBeep(1);
                e_.Clock.Wait(500);
            }
        }
    }
    d.PrevBids = d.Bids;
    if (d.BidCount >= 2 && e_.Alerts && !e_.Alerts->View.AlertName.Visible) {
        e_.Alerts->HideAskAlert();
        e_.Alerts->View.cmdAlertNone.Visible = true;
    }
    e_.Models.frmHelpBid.HideForBidCount(d.BidCount);
    if (d.PlayerNames[0].empty() && d.PlayerNames[1].empty() && d.NameState == 0) {
        d.NameState = 1;
        int c = 0;
        for (int attempt = 1; attempt <= 3; ++attempt) {
            std::vector<ScoreLine> lines;
            c = e_.Readers.CaptScore(lines);
            if (c == 0) {
                e_.Scores.Clear();
                for (const auto& l : lines) e_.Scores.AddRow(l);
                e_.Scores.LoadTeamFigures(e_.UserSeat());
                break;
            }
        }
        if (c != 0) return static_cast<BidResult>(c);
    }
    if (e_.Rating && e_.Rating->MyIdIndex != 0 && d.NameState == 1) {
        d.NameState = 2;
        reading::HandRead hr;
        (void)e_.Readers.CaptHand(hr);  // only the names are wanted; a failed read leaves them empty
        for (int p = 0; p < 4; ++p)
            if (!hr.Names[p].empty()) e_.Record.Names[p] = hr.Names[p];
        const std::size_t idIndex = static_cast<std::size_t>(e_.Rating->MyIdIndex - 1);
        const std::string id = idIndex < e_.Settings.MyIds.size() ? e_.Settings.MyIds[idIndex] : std::string();
        for (int p = 0; p < 4; ++p) {
            if (!core::Trim(id).empty() && players::NamesMatch(hr.Names[p], id)) {
                e_.Seats.sitNESW(p);
                break;
            }
        }
        for (int k = 0; k < 4; ++k) d.PlayerNames[k] = e_.Record.Names[e_.Seats.SeatAt(k)];
        for (int k = 0; k < 4; ++k) z.plName[k].Caption = d.PlayerNames[k];
    }
    auto& counters = e_.Models.Counters;
    if (e_.CountersOn() || e_.Settings.LeftCounterPos.On()) {
        const scoring::Side2 sc{e_.Scores.TeamScore[0], e_.Scores.TeamScore[1]};
        const scoring::Side2 bg{e_.Scores.TeamBags[0], e_.Scores.TeamBags[1]};
        if (d.BidCount > 3) {
            counters.StartPlay(sc, bg, d.Bids);
            counters.frmCounter0.Window.Visible = false;
        } else {
            counters.ShowBids(sc, bg, d.Bids, d.BidCount);
            counters.frmCounter.Window.Visible = false;
        }
    }
    if (d.BidCount == 0) return BidResult::BiddingNotStarted;
    if (d.BidCount < 4) return BidResult::BidsIncomplete;
    if (z.cmdScore.Caption == "Minimize") z.cmdScore.Caption = "Show Score";
    tricks_.NewDeal();
    e_.Readers.NewDeal();
    if (e_.CountingAllowed()) d.PlayedCards.clear();
    int nils = 0;
    for (const auto& b : d.Bids) nils += IsNilKind(b) ? 1 : 0;
    if (nils >= 2) {
        e_.AlertBeep(2);
        if (e_.Settings.JPN) {
            z.lblMsg.Caption = "２人が NIL をビッド";
            z.lblMsg.Visible = true;
        }
    }
    return BidResult::DealBegins;
}

void BidTracker::Dispatch(BidResult r, bool automatic) {
    DealState& d = e_.Deal;
    bool newDue = true;
    switch (r) {
        case BidResult::DealBegins:
            flow_.PrepareBidding();
            newDue = false;
            break;
        case BidResult::ScoreWindowMissing:
            if (e_.TickCount > 10) w_.NotExistProcess(JobIndex(Job::ScoreWindow), Code(r));
            break;
        case BidResult::ScoreReadFailed:
            if (e_.Settings.JPN)
                e_.ShowError(e_.Titles.Title(e_.LanguageRow(), JobIndex(Job::ScoreWindow)) + " 読み取りのエラー.");
            else
                e_.ShowError("Error occurred in reading score.");
            break;
        case BidResult::NamesReadFailed:
            e_.ShowError(e_.Settings.JPN ? "競技者名読み取りのエラー." : "Error occurred in reading player names.");
            break;
        case BidResult::GameNotStarted:
        case BidResult::BiddingNotStarted:
        case BidResult::NoTableBox:
        case BidResult::NoBidLabels:
            d.PrevBids = {};
            d.Bids = {};
            d.PlayedCards.clear();
            if (!automatic) e_.PutMsg(Code(r));
            break;
        case BidResult::BidsIncomplete:
            d.Bids = {};
            if (!automatic) e_.PutMsg(Code(r));
            break;
        case BidResult::BidsUnchanged:
            if (!automatic) e_.PutMsg(Code(r));
            break;
        case BidResult::LastHandWindowMissing:
            if (e_.TickCount >= 11) w_.NotExistProcess(JobIndex(Job::LastHand), Code(r));
            break;
        default:
            break;
    }
    if (!newDue) return;
    const std::uint32_t now = e_.Clock.TickCount();
    std::uint32_t due = now + (e_.TickCount < 3 ? 1000u : static_cast<std::uint32_t>(e_.Settings.WaitBidMs));
    if (r == BidResult::BidsIncomplete) {
        if (d.BidCount == 1) due = now + 2000;
        else if (d.BidCount == 2) due = now + 1500;
        else if (d.BidCount == 3) due = now + 800;
    } else if (Code(r) >= 11 && Code(r) <= 13) {
    } else if (d.BidCount == 4) {
        due = now + 2000;
    }
    e_.Slots.SetDue(Job::BidWatch, due);
}

}  // namespace tracking
