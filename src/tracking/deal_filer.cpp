#include "tracking/deal_filer.h"

#include "core/text.h"
#include "scoring/nil_history.h"
#include "tracking/deal_views.h"

namespace tracking {

void DealFiler::File(const reading::HandRead& hand, int p) {
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
    std::string name;
    out.Saves.push_back(e_.Records->WriteRecordFile(rec, e_.Models.filBox.Entries, name));
    if (!name.empty()) e_.Models.filBox.InsertTop(name);

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
        core::SaveResult save;
        const auto nil =
            scoring::WriteNilHistory(nd, {e_.Scores.TeamScore[0], e_.Scores.TeamScore[1]}, ctx, e_.Clock, &save);
        if (!save.Path.empty()) out.Saves.push_back(save);
        else if (nil == scoring::NilHistoryResult::Error)
            out.Saves.push_back(core::SaveResult::Failed(
                core::JoinPath(e_.Folders.WorkFolder(), scoring::NilReportName(e_.Settings.JPN)),
                "the Nil history could not be updated"));
    }
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
        if (!e_.Rating->LastSave.Path.empty()) g.Saves.push_back(e_.Rating->LastSave);
    }
    e_.PlayAlertSound(we > they ? e_.Settings.AlertWinning : e_.Settings.AlertLosing);
    g.Score = e_.Scores.At(e_.Scores.ScoreRowCount);
    ++gamesOver_;
    tricks_.NewDeal();
    flow_.PrepareNextGame(w_.GameRect());
    prevHands_ = hand.Cards;
    e_.Events.GameEnded(g);
}

}  // namespace tracking
