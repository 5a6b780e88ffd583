#include "tracking/trick_tracker.h"

#include <algorithm>

#include "tracking/deal_views.h"

namespace tracking {

std::array<int, 3> SideTricks(const std::array<int, 4>& byPos) {
    std::array<int, 3> t{byPos[0] + byPos[2], byPos[1] + byPos[3], 0};
    t[2] = t[0] + t[1];
    return t;
}

int TrickTracker::GetWinner(const std::array<int, 4>& counts) {
    DealState& d = e_.Deal;
    int winner = -1;
    for (int p = 0; p < 4; ++p) {
        if (counts[p] > d.TrickCounts[p]) {
            winner = p;
            const int kind = core::BidKind(d.Bids[p]);
            if (kind != 0) {
                d.NilBroken[p] = kind;
                if (e_.Settings.AlertFailNil) e_.AlertBeep(1);
            }
        }
        d.TrickCounts[p] = counts[p];
    }
    return winner;
}

TrickResult TrickTracker::Step() {
    if (!e_.CountersOn()) return TrickResult::Skipped;
    BusyFlags::Guard guard(e_.Busy, Busy::TrickStep);
    if (!guard.Held()) return TrickResult::Skipped;
    e_.Slots.SetDue(Job::LastTrick, e_.Clock.TickCount() + 800);
    TrickReading tr;
    (void)e_.Readers.CaptureTricks(tr);  // a failed read leaves the counts as they were
    GetWinner(tr.Counts);
    if (tr.NoTrick && prevTrickCount_ != 12) return TrickResult::NoTrick;
    const int t = tr.TrickNumber, p = prevTrickCount_;
    const bool over = t != 0 ? (tr.IsNew && t < p && p >= 10) : (p != -1);
    if (tr.IsNew && t > e_.Deal.TricksPlayed) e_.Deal.TricksPlayed = t;
    AfterTrick(t, 3000, 2000);
    if (!over) return TrickResult::Read;
    captureDeal_();
    return TrickResult::DealOver;
}

TrickResult TrickTracker::StepCounting() {
    if (!e_.CountersOn()) return TrickResult::Skipped;
    DealState& d = e_.Deal;
    bool over = false;
    {
        BusyFlags::Guard guard(e_.Busy, Busy::TrickStep);
        if (!guard.Held()) return TrickResult::Skipped;
        e_.Slots.SetDue(Job::LastTrick, e_.Clock.TickCount() + 1000);
        if (!w_.SubWindowAlive(JobIndex(Job::LastTrick))) {
            w_.NotExistProcess(JobIndex(Job::LastTrick), static_cast<int>(TrickResult::WindowMissing));
            return TrickResult::WindowMissing;
        }
        TrickReading tr;
        (void)e_.Readers.CaptureTricks(tr);
        GetWinner(tr.Counts);
        if (tr.NoTrick && prevTrickCount_ != 12) return TrickResult::NoTrick;
        std::array<std::string, 4> cards;
        bool got = false;
        for (int attempt = 0; attempt < 2 && !got; ++attempt) got = e_.Readers.ReadLastTrick(cards, d.CardsSeen);
        if (!got) return TrickResult::NoTrick;
        d.PlayedCards.push_back(cards);
        ShowTricksPlayed(e_);
        d.TricksPlayed = std::max(d.TricksPlayed + 1, tr.TrickNumber);
        if (d.CardsSeen >= 52 || d.TricksPlayed >= 13) {
            d.LastTrickMinimised = true;
            over = true;
        } else {
            const int t = tr.TrickNumber, p = prevTrickCount_;
            over = t != 0 ? (t < p && p >= 10) : (p != -1);
            AfterTrick(t, 10000, 8000);
        }
    }
    e_.Changed();
    if (!over) return TrickResult::Read;
    // The capture runs outside this step's busy flag, as it waits itself.
    captureDeal_();
    return TrickResult::DealOver;
}

// What both trick steps do after reading trick number t: the right counter
// shows the trick, and the last-hand capture moves earlier near the end.
void TrickTracker::AfterTrick(int t, std::uint32_t delayAt11, std::uint32_t delayAt12) {
    auto& counters = e_.Models.Counters;
    if (counters.CounterShown == 2) {
        auto tricks = SideTricks(e_.Deal.TrickCounts);
        counters.frmCounter.ShowCounterNow({e_.Scores.TeamScore[0], e_.Scores.TeamScore[1]}, tricks, e_.Deal.Bids,
                                           e_.Deal.NilBroken);
    }
    prevTrickCount_ = t;
    const std::uint32_t now = e_.Clock.TickCount();
    if (t == 11) e_.Slots.SetDue(Job::LastHand, now + delayAt11);
    if (t == 12) e_.Slots.SetDue(Job::LastHand, now + delayAt12);
    e_.Changed();
}

}  // namespace tracking

