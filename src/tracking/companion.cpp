#include "tracking/companion.h"

#include <cmath>

#include "core/text.h"

namespace tracking {

Companion::Companion(const platform::Desktop& desktop, platform::Clock& clock, core::Folders folders, ScreenReading& screen,
                     CompanionEvents& events)
    : Companion(desktop, clock, std::move(folders), screen.Readers(), &events, &screen.Cap(), &screen.Titles()) {}

Companion::Companion(const platform::Desktop& desktop, platform::Clock& clock, core::Folders folders, GameReaders& readers,
                     CompanionEvents* events)
    : Companion(desktop, clock, std::move(folders), readers, events, nullptr, nullptr) {}

Companion::Companion(const platform::Desktop& desktop, platform::Clock& clock, core::Folders folders, GameReaders& readers,
                     CompanionEvents* events, reading::Capture* cap, reading::WinTitles* titles)
    : e_(desktop, clock, std::move(folders), readers, events ? *events : nullEvents_, cap, titles),
      windows_(e_),
      board_(e_, windows_),
      flow_(e_, board_),
      tricks_(e_, windows_, [this] { capture_.Capture(true); }),
      filer_(e_, windows_, flow_, tricks_),
      capture_(e_, windows_, flow_, filer_),
      bids_(e_, windows_, flow_, tricks_),
      online_(e_, windows_, flow_, tricks_) {
    Wire();
}

void Companion::Wire() { e_.Cap.SetSubWindows(&windows_); }

// ---------------------------------------------------------------------------
// The tick
// ---------------------------------------------------------------------------

void Companion::Tick() {
    if (e_.Ended || !e_.TimerEnabled) return;
    e_.TickStart = e_.Clock.TickCount();
    if (e_.Busy.Any() || e_.GameMinimised || (e_.Alerts && e_.Alerts->InAlertCheck)) return;
    {
        BusyFlags::Guard pass(e_.Busy, Busy::WindowPass);
        WindowPass();
    }
    if (e_.Ended || e_.OffLine()) return;

    // The right counter goes a second after a deal was filed. The time of
    // day wraps at midnight: a deadline is past when it lies less than half
    // a day behind.
    if (filer_.HideCounterAt() >= 0) {
        const int behind = (e_.Clock.SecondsOfDay() - filer_.HideCounterAt() + 86400) % 86400;
        if (behind > 0 && behind < 43200) {
            e_.Models.Counters.HideCounter();
            e_.Models.States.RemainingCards = 0;
            filer_.ClearHideCounter();
            e_.Changed();
        }
    }
    if (pausedAt_ != 0) {
        PauseDisplay();
        return;
    }
    ++e_.TickCount;
    if (e_.TickCount == 1) e_.TimerInterval = e_.LoopInterval;
    if (e_.TickCount < 2) return;

    // The reminder that automatic bid capture is off repeats until it is disarmed.
    if (e_.Slots.ArmedAndDue(Job::Reminder, e_.TickStart)) {
        e_.VisualAlarm();
        e_.PlayAlertSound(e_.Settings.AlertSound);
        e_.Changed();
    }

    if (e_.Slots.Armed(Job::LastTrick)) {
        if (e_.Models.frmBoard.Visible) board_.HideMe();
        if (!myTurnSeen_ && TestMyTurn()) {
            e_.Desktop.windows.SetTopmost(windows_.Game(), true);
            e_.RefreshBoxState();
            myTurnSeen_ = true;
        }
        // Tested twice; the step re-arms its own deadline, so the second
        // test normally fails.
        for (int twice = 0; twice < 2; ++twice) {
            if (e_.Slots.ArmedAndDue(Job::LastTrick, e_.TickStart)) {
                if (e_.CountingAllowed()) (void)tricks_.StepCounting();
                else (void)tricks_.Step();
            }
        }
    }

    if (e_.Slots.Armed(Job::LastHand)) {
        if (e_.Slots.Due(Job::LastHand, e_.Clock.TickCount())) (void)capture_.Capture(true);
    } else if (e_.Slots.Armed(Job::BidWatch)) {
        const BidState before = e_.Deal.Bidding;
        BidWatch();
        if (before == BidState::OrdinaryBoard || before == BidState::DoubleNilBoard ||
            before == BidState::BoardShown)
            return;
    }

    e_.RefreshBoxState();
    // The alert prompt's follow-up.
    if (e_.Alerts && e_.Alerts->AskAlertPending()) {
        players::TableAccess t = e_.TableAccessNow(windows_.Game());
        e_.Alerts->ExecAskAlert(t);
        e_.Changed();
    }
    KeepOnTop();
}

void Companion::BidWatch() {
    const auto& s = e_.Settings;
    switch (e_.Deal.Bidding) {
        case BidState::BoardHiddenAfterBid:
            e_.TimerInterval = e_.LoopInterval;
            ClickBidAuto();
            break;
        case BidState::OrdinaryBoard: {
            ClickBidAuto();
            const int st = board_.GetBoardStat();
            if (st == 0) board_.HideMe();
            else if (st == BoardOrdinary) board_.ShowBoard(BoardOrdinary);
            break;
        }
        case BidState::DoubleNilBoard:
        case BidState::BoardShown:
            ClickBidAuto();
            if (board_.GetBoardStat() == 0) {
                board_.HideMe();
                return;
            }
            break;
        case BidState::Watching: {
            e_.TimerInterval = e_.LoopInterval;
            ClickBidAuto();
            const bool boardCheck = (e_.Models.frmBoard.BoardMode & 1) != 0 ||
                                    (s.AlertDnilPassTable && e_.Table.DNilPassTable);
            const bool helpOn = s.HelpBidIn4thSeat.On();
            const int n = e_.Deal.BidCount;
            auto showHelp = [&] {
                e_.Models.frmHelpBid.Show_HelpBid(e_.Scores, e_.UserSeat(), e_.Deal.Bids, n, s.log);
                e_.Changed();
                e_.Events.RaiseWindow(CompanionWindow::HelpBid);
            };
            if (boardCheck) {
                if (TestMyTurn()) {
                    board_.CheckBoard();
                    ClickBidAuto();
                    if (e_.Models.frmBoard.Visible) {
                        e_.Models.frmBoard.Topmost = true;
                        e_.Events.RaiseWindow(CompanionWindow::Board);
                    }
                    if ((n == 2 || n == 3) && helpOn) showHelp();
                }
            } else if (helpOn && (n == 2 || n == 3) && TestMyTurn()) {
                showHelp();
            }
            return;
        }
    }
    // While a board is up, the left counter and the bid help stay above it.
    if (e_.Deal.Bidding != BidState::BoardHiddenAfterBid) {
        if (e_.Models.Counters.CounterShown == 1) e_.Events.RaiseWindow(CompanionWindow::LeftCounter);
        if (e_.Models.frmHelpBid.Window.Visible) e_.Events.RaiseWindow(CompanionWindow::HelpBid);
    }
}

void Companion::KeepOnTop() {
    const auto& st = e_.Models.States;
    if (st.CardPlay == 2) e_.Events.RaiseWindow(CompanionWindow::CardPlay);
    if (e_.Models.frmErrMsg.Visible) e_.Events.RaiseWindow(CompanionWindow::ErrMsg);
    if (e_.Models.frmHelpBid.Window.Visible) e_.Events.RaiseWindow(CompanionWindow::HelpBid);
    // The remaining-cards box (frmMyBOX) is the box-state window.
    if (st.RemainingCards == 2) e_.Events.RaiseWindow(CompanionWindow::RemainingCards);
    if (st.BoxState == 2) e_.Events.RaiseWindow(CompanionWindow::BoxState);
    if (st.ScoreWindow == 2) e_.Events.RaiseWindow(CompanionWindow::Score);
    const int shown = e_.Models.Counters.CounterShown;
    if (shown == 1) e_.Events.RaiseWindow(CompanionWindow::LeftCounter);
    else if (shown == 2) e_.Events.RaiseWindow(CompanionWindow::RightCounter);
    windows_.KeepGameWindowsOnTop();
}

void Companion::PauseDisplay() {
    auto& button = e_.Models.frmZ.cmdTimer;
    const std::uint32_t ms = e_.Clock.TickCount() - pausedAt_;
    const long secs = std::lround(static_cast<double>(ms) / 1000.0);
    const std::string caption = std::to_string(secs);
    if (caption != button.Caption) {
        button.Caption = caption;
        e_.Changed();
    }
    const long shown = core::ValInt(button.Caption);
    if (shown == 120 || shown == 180) {
        e_.VisualAlarm();
        e_.PlayAlertSound(e_.Settings.AlertSound);
    }
}

void Companion::ClickBidAuto() {
    if (e_.Slots.ArmedAndDue(Job::BidWatch, e_.TickStart)) (void)bids_.Step(true);
}

bool Companion::TestMyTurn() {
    if (windows_.Game() == 0) return false;
    windows_.RestoreGameIfMinimised();
    return e_.Readers.TestMyTurn();
}

void Companion::WindowPass() {
    if (endFlag_) {
        if (e_.Records) e_.Records->RemoveMarkerAtExit();
        windows_.SavePositions();
        e_.Ended = true;
        e_.TimerEnabled = false;
        e_.Events.Ended();
        return;
    }
    windows_.Recheck();
    windows_.FindGameWindows();
    const platform::WindowHandle game = windows_.Game();
    if (game == 0) {
        if (!e_.OffLine()) online_.OnToOff();
        return;
    }
    if (e_.OffLine()) {
        e_.Desktop.windows.SetTopmost(game, true);
        e_.Desktop.windows.Restore(game);
    }
    windows_.ApplyLeftEdgeRule();
    windows_.MoveWinGame();
    if (e_.OffLine()) online_.OffToOn();
    windows_.GetSubWindows();
    // The alert check runs on every tenth tick while the bids are watched.
    if (windows_.Game() != 0 && e_.Alerts && !e_.Alerts->testAlert() && e_.Slots.Armed(Job::BidWatch) &&
        e_.Deal.BidCount <= 3 && e_.TickCount % 10 == 4) {
        players::TableAccess t = e_.TableAccessNow(windows_.Game());
        e_.Alerts->CheckAlertPlayer(t);
        if (e_.Alerts->testAlert()) e_.Events.PlayerAlert(e_.Alerts->View.AlertName.Caption);
        e_.Changed();
    }
}

// ---------------------------------------------------------------------------
// Commands
// ---------------------------------------------------------------------------

void Companion::TogglePause() {
    if (e_.OffLine()) return;
    auto& button = e_.Models.frmZ.cmdTimer;
    const std::uint32_t now = e_.Clock.TickCount();
    if (button.Caption == "Pause" || button.Caption == "休止") {
        pausedAt_ = now == 0 ? 1 : now;
        button.Caption = "0";
        button.TextFont.Bold = true;
        if (!e_.Settings.JPN) button.TextFont.Size = 12;
        e_.Slots.Freeze(pausedAt_);
        e_.Desktop.windows.SetTopmost(windows_.Game(), false);
        e_.Models.frmZ.Topmost = true;
    } else {
        button.Caption = e_.Settings.JPN ? "休止" : "Pause";
        button.TextFont.Bold = false;
        button.TextFont.Size = 10;
        e_.Slots.Thaw(now);
        pausedAt_ = 0;
        e_.Deal.BidLocCount = 0;
        e_.Models.frmZ.Topmost = false;
        e_.Desktop.windows.SetTopmost(windows_.Game(), true);
    }
    e_.Changed();
}

void Companion::CaptureBidsNow() {
    if (!e_.OffLine()) (void)bids_.Step(false);
}

void Companion::CaptureHandNow() { (void)capture_.Capture(false); }

void Companion::End() {
    endFlag_ = true;
    screen_.EndRequested = true;  // a fatal stop waiting at start-up ends now
}

void Companion::RecordRatingNow() {
    if (e_.OffLine()) return;
    e_.ReadShowRating(2, windows_.Game());
    e_.Changed();
}

void Companion::PressBoardButton(int index) { board_.Press(index); }

void Companion::PressScoreButton() { windows_.PressScoreButton(); }

void Companion::ResizeMain(int heightPx) { windows_.MainResized(heightPx); }

void Companion::RestartTable() {
    online_.Restart();
    myTurnSeen_ = false;
}

}  // namespace tracking
