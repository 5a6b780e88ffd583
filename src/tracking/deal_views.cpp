#include "tracking/deal_views.h"

#include "core/notation.h"
#include "tracking/engine.h"

namespace tracking {

namespace {

// The hand display window's outer size: the four hands and the trick table.
constexpr int kHandsWidth = 606;
constexpr int kHandsHeight = 262;

// The seat that led the deal's first trick; -1 when the record does not say.
int FirstLeaderSeat(const display::DealRecord& rec) {
    for (int s = 0; s < 4; ++s)
        if (rec.Mark[0][static_cast<std::size_t>(s)] == display::MarkBrackets) return s;
    return -1;
}

std::array<std::string, 4> NamesBySeat(const Engine& e) {
    std::array<std::string, 4> names = e.Record.Names;
    for (int s = 0; s < 4; ++s)
        if (names[static_cast<std::size_t>(s)].empty())
            names[static_cast<std::size_t>(s)] = e.Deal.PlayerNames[static_cast<std::size_t>(e.Seats.InvSeat(s))];
    return names;
}

}  // namespace

void LoadDealViews(Engine& e, const platform::Rect& game) {
    auto& m = e.Models;
    const auto& s = e.Settings;
    const platform::Rect& main = m.frmZ.Rect;
    if (s.CountCardsPos.On()) {
        const platform::Point stored = e.StoredCardPlayPos;
        display::LoadCardPlay(m.frmCardPlay, s.JPN, display::CompanionBack, {stored.X, stored.Y}, s.CountCardsPos,
                              main.Left, main.Top);
    }
    if (s.PasteScoreTable.On())
        scoring::LoadScoreWindow(m.frmScore, s.JPN, s.BackColor, s.PasteScoreTable, game.Right + 4, game.Top + 300);
    if (s.MyHandPos.On()) {
        core::WindowModel& w = m.Hands.Window;
        w.Caption = s.JPN ? " 手札" : "Hands";
        w.BackColor = display::CompanionBack;
        w.Width = kHandsWidth;
        w.Height = kHandsHeight;
        if (s.MyHandPos.DefaultPlace()) {
            // Beside the main window, on the side with room for it.
            const int screenWidth = e.Desktop.windows.ScreenSize().X;
            w.Left = main.Right + 4 + kHandsWidth <= screenWidth ? main.Right + 4 : main.Left - 4 - kHandsWidth;
            w.Top = main.Top;
        } else {
            w.Left = s.MyHandPos.X;
            w.Top = s.MyHandPos.Y;
        }
    }
}

void ClearHandsView(Engine& e) {
    e.Models.Hands.Hands = display::HandsView{};
    e.Models.Hands.Hands.Items.BackColor = display::CompanionBack;
    e.Models.Hands.TrickTable.Clear();
}

void ShowTricksPlayed(Engine& e) {
    // The "Remaining Cards" box comes with the deal's first trick read.
    if (e.Settings.RemainingCardsPos.On() && e.Models.States.RemainingCards != 2) {
        e.Models.RemainingCards = display::spdShow_AllCards(e.CountingAllowed());
        e.Models.States.RemainingCards = 2;
    }
    auto& w = e.Models.frmCardPlay;
    if (w.State == display::CardPlayUnloaded) return;
    display::PlayedCards played;
    const auto& tricks = e.Deal.PlayedCards;
    for (std::size_t t = 0; t < tricks.size() && t < display::TrickCount; ++t) {
        for (std::size_t p = 0; p < 4; ++p) {
            const std::string& text = tricks[t][p];
            if (text.empty()) continue;
            const int code = core::CardCode(text);
            if (code % 100 < 2 || code % 100 > 14) continue;
            played.Code[t][p] = code;
            if (text.front() == '[') played.Style[t][p] = display::StyleSquare;
            played.TricksPlayed = static_cast<int>(t) + 1;
        }
    }
    display::ShowCardPlay(w, played, e.Models.CardSheet);
}

void ShowFiledDeal(Engine& e) {
    auto& m = e.Models;
    const display::DealRecord& rec = e.Record;
    const auto& seatOfPos = e.Seats.SeatOfPos();
    scoring::TrickMarks leads{};
    for (std::size_t t = 0; t < 13; ++t)
        for (std::size_t s = 0; s < 4; ++s) leads[t][s] = rec.Mark[t][s] == display::MarkBrackets ? 1 : 0;
    const scoring::TrickCounts counts = scoring::DealTrickCounts(rec.Trick, leads);
    const display::PlayedCards played = display::PlayedFromRecord(rec, seatOfPos, &counts.Winner);

    if (m.frmCardPlay.State != display::CardPlayUnloaded) display::ShowCardPlay(m.frmCardPlay, played, m.CardSheet);

    if (e.Settings.MyHandPos.On()) {
        const display::FourHands hands = display::HandsFromRecord(rec, e.Settings.CardOrderDescending);
        // A filed deal is complete: nothing is left to count, so it is drawn
        // without the void and holder marks of a deal in progress.
        m.Hands.Hands = display::BuildHandsView(hands, seatOfPos, m.TextSheet, false, e.Measure);
        m.Hands.TrickTable = display::BuildTrickTable(played, m.CardSheet, HandsTrickTableLeft, 4);
        m.Hands.Window.Visible = true;
        ++m.Hands.Window.TopmostRequests;
    }

    scoring::ScoreSheetInput in;
    in.Names = NamesBySeat(e);
    in.Bids = rec.Seat2;
    in.FirstLeader = FirstLeaderSeat(rec);
    in.UserSeat = e.UserSeat();
    in.Online = !e.OffLine();
    in.Top = 4;
    m.ScoreSheet = scoring::BuildScoreSheet(e.Scores, in, e.Measure);
    if (e.Settings.PasteScoreTable.On() && m.ScoreSheet.Mirroring)
        scoring::Show_Score(m.frmScore, m.ScoreSheet, in.Names, in.UserSeat, 2, e.Measure);
}

void ClearDealScore(Engine& e) { scoring::ClearScoreSheet(e.Models.ScoreSheet); }

}  // namespace tracking
