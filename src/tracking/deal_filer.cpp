#include "tracking/deal_filer.h"

#include <iterator>

#include "core/text.h"
#include "tracking/deal_views.h"

namespace tracking {

core::SaveResult DealFiler::WriteRecord(const display::DealRecord& rec, std::string& name) {
    name.clear();
    core::SaveResult r = e_.Records->WriteRecordFile(rec, e_.Models.filBox.Entries, name);
    if (!name.empty()) e_.Models.filBox.InsertTop(name);
    return r;
}

core::SaveResult DealFiler::WriteNil(const scoring::NilDeal& deal, const std::array<int, 2>& teamScore,
                                     const scoring::NilHistoryContext& ctx) {
    core::SaveResult save;
    const auto nil = scoring::WriteNilHistory(deal, teamScore, ctx, e_.Clock, &save);
    if (nil == scoring::NilHistoryResult::Error && save.Path.empty())
        return core::SaveResult::Failed(core::JoinPath(ctx.Folder, scoring::NilReportName(ctx.Japanese)),
                                        "the Nil history could not be updated");
    // Nothing to write (no Nil bid, or none counted) is no failure.
    if (save.Path.empty()) save.Saved = true;
    return save;
}

std::vector<core::SaveResult> DealFiler::WriteKept() {
    std::vector<core::SaveResult> out;
    for (auto it = kept_.begin(); it != kept_.end();) {
        if (it->Record) {
            std::string name;
            out.push_back(WriteRecord(*it->Record, name));
            if (out.back().Saved) it->Record.reset();
        }
        if (it->Nil) {
            const core::SaveResult nil = WriteNil(*it->Nil, it->TeamScore, it->NilContext);
            if (!nil.Path.empty()) out.push_back(nil);
            if (nil.Saved) it->Nil.reset();
        }
        it = it->Record || it->Nil ? std::next(it) : kept_.erase(it);
    }
    for (const auto& s : out)
        if (s.Saved) e_.Log("DealFiler: " + s.Path + " written now for a deal kept since its save failed");
    return out;
}

void DealFiler::ReportFailedSaves(const std::vector<core::SaveResult>& saves) {
    std::string failed;
    for (const auto& s : saves) {
        if (s.Saved) continue;
        e_.Log("DealFiler: " + s.Path + " was not saved: " + s.Reason);
        failed += (failed.empty() ? "" : "; ") + s.Path + " (" + s.Reason + ")";
    }
    if (failed.empty()) return;
    e_.ShowError("Not saved: " + failed + ". " +
                 (kept_.empty() ? std::string("")
                                : std::to_string(kept_.size()) + (kept_.size() == 1 ? " deal is" : " deals are") +
                                      " kept and saved again after the next deal."));
}

void DealFiler::File(const reading::HandRead& hand, int p, const std::vector<std::string>& warnings, int missed) {
    prevHands_ = hand.Cards;
    DealState& d = e_.Deal;
    std::array<std::string, 4> bidsBySeat;
    for (int k = 0; k < 4; ++k)
        bidsBySeat[static_cast<std::size_t>((p + k) % 4)] = d.PrevBids[k].empty() ? d.Bids[k] : d.PrevBids[k];

    display::DealRecord& rec = e_.Record;
    rec.State = 1;
    rec.Names = hand.Names;
    rec.Seat2 = bidsBySeat;
    for (int t = 0; t < display::TrickCount; ++t) {
        for (int s = 0; s < 4; ++s) {
            rec.Trick[t][s] = hand.Cards[s][t];
            rec.Mark[t][s] = hand.Marks[s][t];
        }
    }
    auto& z = e_.Models.frmZ;
    for (int k = 0; k < 4; ++k) {
        d.PlayerNames[k] = rec.Names[e_.Seats.SeatAt(k)];
        z.plName[k].Caption = d.PlayerNames[k];
    }

    FiledDeal out;
    out.Warnings = warnings;
    out.Missed = missed;
    if (missed > 0) {
        const std::string text = std::to_string(missed) + (missed == 1 ? " deal" : " deals") +
                                 " ended while the game's windows could not be read; not filed.";
        e_.Log("DealFiler: " + text);
        e_.ShowError(text);
    }
    out.Retried = WriteKept();
    KeptDeal keep;
    std::string name;
    out.Saves.push_back(WriteRecord(rec, name));
    if (!out.Saves.back().Saved) keep.Record = rec;
    if (!warnings.empty()) {
        std::string rules;
        for (const auto& w : warnings) rules += (rules.empty() ? "" : "; ") + w;
        e_.ShowError((name.empty() ? std::string("This deal was") : "Deal " + name) +
                     " filed from a reading that breaks a rule of the game: " + rules + ".");
    }

    if (e_.Alerts) e_.Alerts->CheckSeatPlayers(rec.Names);
    int firstSeat = 0;
    for (int s = 0; s < 4; ++s)
        if (rec.Mark[0][s] == display::MarkBrackets) firstSeat = s;
    d.FirstPlayerPos = e_.Seats.InvSeat(firstSeat);

    // The score line of this deal, then the counters.
    e_.Scores.LoadTeamFigures(e_.UserSeat());
    scoring::TrickMarks leadMarks{};
    for (int t = 0; t < 13; ++t)
        for (int s = 0; s < 4; ++s) leadMarks[t][s] = rec.Mark[t][s] == display::MarkBrackets ? 1 : 0;
    const scoring::TrickCounts tc = scoring::DealTrickCounts(rec.Trick, leadMarks);
    std::array<int, 4> tricksByPos{};
    for (int k = 0; k < 4; ++k) tricksByPos[k] = tc.Tricks[e_.Seats.SeatAt(k)];
    Bids4 bidsByPos;
    for (int k = 0; k < 4; ++k) bidsByPos[k] = bidsBySeat[e_.Seats.SeatAt(k)];
    auto& counters = e_.Models.Counters;
    if (e_.CountersOn()) {
        for (int k = 0; k < 4; ++k) {
            const int kind = core::BidKind(bidsByPos[k]);
            if (kind != 0 && tricksByPos[k] > 0) d.NilBroken[k] = kind;
        }
        if (counters.CounterShown != 2) {
            // The bids were never all seen: start the right counter from the
            // line before this deal.
            const auto prev = e_.Scores.At(e_.Scores.ScoreRowCount - 1);
            const int uc = scoring::ScoreRows::UserPointsColumn(e_.UserSeat());
            const int oc = scoring::ScoreRows::OpponentPointsColumn(e_.UserSeat());
            counters.StartPlay({prev[uc], prev[oc]}, {prev[uc + 1], prev[oc + 1]}, bidsByPos);
        }
        auto tricks = SideTricks(tricksByPos);
        counters.frmCounter.ShowCounterNow({e_.Scores.TeamScore[0], e_.Scores.TeamScore[1]}, tricks, bidsByPos,
                                           d.NilBroken);
        hideCounterAt_ = (e_.Clock.SecondsOfDay() + 1) % 86400;
    }
    {
        scoring::NilDeal nd;
        nd.Names = rec.Names;
        nd.Bids = bidsBySeat;
        for (int s = 0; s < 4; ++s) nd.Tricks[s] = tc.Tricks[s];
        nd.Cards = scoring::HandsFromTricks(rec.Trick);
        nd.SeatOfPos = e_.Seats.SeatOfPos();
        scoring::NilHistoryContext ctx;
        ctx.Folder = e_.Folders.WorkFolder();
        ctx.Japanese = e_.Settings.JPN;
        ctx.UserIdentified = e_.Rating && e_.Rating->MyIdIndex != 0;
        ctx.SuicideTable = e_.Table.SuicideTable;
        ctx.DoubleNilPassTable = e_.Table.DNilPassTable;
        ctx.AlertFailNil = e_.Settings.AlertFailNil;
        if (!e_.Settings.log.empty()) ctx.LogPath = e_.Folders.EnterProgramFolder(e_.Settings.log);
        ctx.FailNilAlert = [this] { e_.AlertBeep(1); };
        keep.TeamScore = {e_.Scores.TeamScore[0], e_.Scores.TeamScore[1]};
        const core::SaveResult save = WriteNil(nd, keep.TeamScore, ctx);
        if (!save.Path.empty()) out.Saves.push_back(save);
        if (!save.Saved) {
            keep.Nil = nd;
            keep.NilContext = ctx;
            keep.NilContext.AlertFailNil = false;  // the alert was given when the deal ended
            keep.NilContext.FailNilAlert = nullptr;
        }
    }
    if (keep.Record || keep.Nil) {
        kept_.push_back(std::move(keep));
        if (kept_.size() > kMaxKept) {
            const KeptDeal& gone = kept_.front();
            const std::string what = gone.Record ? "a deal's record" : "a deal's Nil count";
            e_.Log("DealFiler: " + what + " kept since it could not be saved is given up (" +
                   std::to_string(kMaxKept) + " deals wait already)");
            out.Saves.push_back(core::SaveResult::Failed(
                e_.Folders.WorkFolder(),
                what + " given up after " + std::to_string(kMaxKept) + " later deals could not be saved either"));
            kept_.pop_front();
        }
    }
    std::vector<core::SaveResult> all = out.Retried;
    all.insert(all.end(), out.Saves.begin(), out.Saves.end());
    ReportFailedSaves(all);
    if (e_.Settings.MinimizeLastHand && w_.Sub(JobIndex(Job::LastHand)))
        e_.Desktop.windows.Minimize(w_.Sub(JobIndex(Job::LastHand)));

    ++filed_;
    out.File = name;
    out.ScoreRow = e_.Scores.At(e_.Scores.ScoreRowCount);
    const auto& c = counters.frmCounter;
    for (int i = 0; i < 3; ++i) out.cTrk[i] = c.cTrk[i].Caption;
    for (int i = 0; i < 2; ++i) {
        out.cPts[i] = c.cPts[i].Caption;
        out.cBag[i] = c.cBag[i].Caption;
        out.aPt[i] = c.aPt[i].Caption;
    }
    out.Bids = bidsBySeat;
    out.Names = rec.Names;
    for (int s = 0; s < 4; ++s) out.Tricks[s] = tc.Tricks[s];
    out.UserSeat = e_.UserSeat();
    out.Kept = static_cast<int>(kept_.size());
    ShowFiledDeal(e_);
    e_.Changed();
    e_.Events.DealFiled(out);

    const int we = e_.Scores.TeamScore[0], they = e_.Scores.TeamScore[1];
    if ((we >= e_.Settings.GamePoint || they >= e_.Settings.GamePoint) && we != they) GameEnd(hand);
    flow_.EndDealReset();
}

void DealFiler::GameEnd(const reading::HandRead& hand) {
    const int we = e_.Scores.TeamScore[0], they = e_.Scores.TeamScore[1];
    e_.Clock.Wait(1000);
    GameOver g;
    if (e_.Rating) {
        e_.Rating->LastHistory = players::HistoryResult::NotRecorded;
        e_.Rating->LastSave = {};
    }
    e_.ReadShowRating(1, w_.Game());
    if (e_.Rating) {
        g.Rating = e_.Rating->MyRating.Caption;
        g.RatingRecorded = e_.Rating->LastHistory == players::HistoryResult::Written && e_.Rating->LastSave.Saved;
        g.RatingNote = g.RatingRecorded || e_.Rating->LastSave.Reason.empty()
                           ? players::HistoryResultText(e_.Rating->LastHistory)
                           : e_.Rating->LastSave.Reason;
        if (!e_.Rating->LastSave.Path.empty()) g.Saves.push_back(e_.Rating->LastSave);
    }
    ReportFailedSaves(g.Saves);
    e_.PlayAlertSound(we > they ? e_.Settings.AlertWinning : e_.Settings.AlertLosing);
    g.Score = e_.Scores.At(e_.Scores.ScoreRowCount);
    ++gamesOver_;
    tricks_.NewDeal();
    flow_.PrepareNextGame(w_.GameRect());
    prevHands_ = hand.Cards;
    e_.Events.GameEnded(g);
}

}  // namespace tracking
