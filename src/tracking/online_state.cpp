#include "tracking/online_state.h"

#include <cstdio>

#include "tracking/deal_views.h"

namespace tracking {

void OnlineState::LoadCompanionWindows() {
    const platform::Rect& game = w_.GameRect();
    if (e_.Alerts && e_.Alerts->PromptOn()) e_.Alerts->ShowAskAlert(game);
    auto& m = e_.Models;
    const auto& s = e_.Settings;
    m.frmBoard.Loaded = m.frmBoard.BoardMode != 0;
    m.States.CardPlay = s.CountCardsPos.On() ? 2 : 0;
    const platform::Point tableAt{game.Left + e_.Table.Box.Left, game.Top + e_.Table.Box.Top};
    if (s.RightCounterPos.On()) {
        scoring::CounterPlacementInput in;
        in.Setting = {s.RightCounterPos.X, s.RightCounterPos.Y};
        in.TableAt = {tableAt.X, tableAt.Y};
        m.Counters.frmCounter.Place(in);
    }
    if (s.LeftCounterPos.On()) {
        scoring::CounterPlacementInput in;
        in.Setting = {s.LeftCounterPos.X, s.LeftCounterPos.Y};
        in.TableAt = {tableAt.X, tableAt.Y};
        m.Counters.frmCounter0.Place(in);
    }
    if (s.HelpBidIn4thSeat.On()) m.frmHelpBid.Place({s.HelpBidIn4thSeat.X, s.HelpBidIn4thSeat.Y}, {game.Left, game.Top});
    m.States.RemainingCards = s.RemainingCardsPos.On() ? 1 : 0;
    m.States.ScoreWindow = s.PasteScoreTable.On() ? 2 : 0;
    m.States.BoxState = s.ShowBoxState ? 1 : 0;
    LoadDealViews(e_, game);
}

void OnlineState::UnloadCompanionWindows() {
    auto& m = e_.Models;
    m.frmBoard.Visible = false;
    m.frmBoard.Loaded = false;
    m.States = {};
    m.Counters.HideCounter();
    m.Counters.frmCounter.Window.Visible = false;
    m.Counters.frmCounter0.Window.Visible = false;
    m.frmErrMsg.Hide();
    m.frmHelpBid.Window.Visible = false;
    m.frmCardPlay.Window.Visible = false;
    m.frmScore.Window.Visible = false;
    m.Hands.Window.Visible = false;
    if (e_.Alerts) e_.Alerts->UnloadAskAlert();
}

void OnlineState::OffToOn() {
    e_.Online = OnlineMode::Online;
    auto& z = e_.Models.frmZ;
    z.LinkMenuEnabled = false;
    z.AlertMenuEnabled = false;
    e_.Models.frmBoard.BoardMode = e_.Settings.BoardMode;
    if (e_.Alerts) e_.Alerts->SetToolTipTextPlNames(true);
    w_.GetSubWindows();
    LoadCompanionWindows();
    z.cmdScore.Visible = true;
    const platform::WindowHandle score = w_.Sub(JobIndex(Job::ScoreWindow));
    if (e_.Settings.TopMostScoreWindow == 2) {
        if (score) e_.Desktop.windows.Restore(score);
        z.cmdScore.Caption = "Hide Score";
    } else {
        z.cmdScore.Caption = "Minimize";
    }
    z.lblLog.Visible = !e_.Settings.log.empty();
    z.lblBoxState.Visible = e_.Settings.ShowBoxState;
    z.cmdTimer.Visible = true;
    e_.Slots.Arm(Job::BidWatch, e_.Clock.TickCount() + static_cast<std::uint32_t>(e_.Settings.WaitBidMs));
    e_.Seats.InitNESW(e_.Settings.MyIds);
    e_.TickCount = 0;
    e_.Log("Offline ==> Online");
    e_.Changed();
}

void OnlineState::OnToOff() {
    auto& z = e_.Models.frmZ;
    z.cmdScore.Visible = false;
    z.LinkMenuEnabled = true;
    z.AlertMenuEnabled = true;
    if (e_.Alerts) e_.Alerts->SetToolTipTextPlNames(false);
    if (!e_.Settings.log.empty()) {
        const platform::LocalTime t = e_.Clock.Now();
        char buf[64];
        std::snprintf(buf, sizeof buf, "%04d/%02d/%02d %02d:%02d:%02d", t.Year, t.Month, t.Day, t.Hour, t.Minute,
                      t.Second);
        e_.Log(std::string(buf) + " Online ==> OffLine");
    }
    UnloadCompanionWindows();
    z.lblMsg.Visible = false;
    e_.Models.frmBoard.BoardMode = e_.Settings.BoardMode;
    e_.Table = TableInfo{};
    e_.TableNames = players::TableNames{};
    e_.Deal.PlayerNames = {};
    e_.Record.Names = {};
    e_.Deal.Bids = {};
    e_.Deal.PrevBids = {};
    if (e_.Alerts) {
        e_.Alerts->View.AlertName.Caption.clear();
        e_.Alerts->View.AlertName.Visible = false;
        e_.Alerts->View.cmdAlertNone.Visible = false;
    }
    z.cmdTimer.Visible = false;
    z.lblBoxState.Visible = false;
    e_.Slots.DisarmAll();
    e_.Language = GameLanguage::English;
    z.Caption = kProgramCaption;
    e_.Online = OnlineMode::Offline;
    w_.Forget();
    e_.Changed();
}

void OnlineState::Restart() {
    e_.Online = OnlineMode::Fresh;
    e_.Models.frmBoard.BoardMode = e_.Settings.BoardMode;
    UnloadCompanionWindows();
    if (e_.Rating) e_.Rating->MyRating.Caption.clear();
    e_.Models.filBox.Fill(e_.Folders.WorkFolder());
    tricks_.NewDeal();
    flow_.PrepareNextGame(w_.GameRect());
    flow_.EndDealReset();
    w_.Forget();
    w_.FindGameWindows();
    w_.FindSubWindow(-1);
    e_.Changed();
}

}  // namespace tracking
