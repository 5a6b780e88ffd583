// The companion: the engine's parts composed, driven by a timer tick and by
// commands named for what the player does. It owns nothing of the parts'
// work; it decides which part runs when (the loop), and passes commands on.
#pragma once

#include <memory>
#include <string>

#include "core/folders.h"
#include "core/startup.h"
#include "display/work_folder.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "tracking/bid_tracker.h"
#include "tracking/bidding_board.h"
#include "tracking/companion_events.h"
#include "tracking/companion_models.h"
#include "tracking/deal_capture.h"
#include "tracking/deal_filer.h"
#include "tracking/deal_flow.h"
#include "tracking/engine.h"
#include "tracking/game_windows.h"
#include "tracking/online_state.h"
#include "tracking/pixel_readers.h"
#include "tracking/readers.h"
#include "tracking/trick_tracker.h"

namespace tracking {

class Companion {
public:
    // The product: the readers read the pixels that `screen` captures.
    Companion(const platform::Desktop& desktop, platform::Clock& clock, core::Folders folders, ScreenReading& screen,
              CompanionEvents& events);
    // Readers that read no pixels (tests): no listener, unless one is given.
    Companion(const platform::Desktop& desktop, platform::Clock& clock, core::Folders folders, GameReaders& readers,
              CompanionEvents* events = nullptr);
    Companion(const Companion&) = delete;
    Companion& operator=(const Companion&) = delete;

    // Start-up: settings, start-up checks, alert lists, windows, file box.
    // False when a start-up check stopped the program.
    [[nodiscard]] bool Start();
    // One tick of the timer; the timer asks TimerInterval() for its period.
    void Tick();

    // --- commands (what the player does) ---------------------------------------------
    void TogglePause();                 // the pause button
    void ToggleAutoBid();               // right click on "Bid"
    void ToggleAutoHand();              // right click on "Hand"
    void CaptureBidsNow();              // "Bid"
    void CaptureHandNow();              // "Hand"
    void End();                         // "End": ends at the next tick
    void RecordRatingNow();             // right click on "End": the rating read and recorded
    void PressBoardButton(int index);   // a button of the bidding board
    void PressScoreButton();            // "Minimize" / "Show Score" / "Hide Score"
    void ResizeMain(int heightPx);      // the main window's height changed
    void RestartTable();                // "Restart": read the table afresh
    // The file box: show a stored deal; returns the reading code (0 = shown).
    int OpenRecord(const std::string& name);
    void SelectRecord(int index, bool selected = true);
    // Starts deleting the selected records (Delete key); DEL confirms, Undo
    // keeps them. False when nothing was selected.
    bool DeleteRecord();
    void ConfirmDelete();
    void UndoDelete();
    // "Delete ALL Work Files": `confirm` answers the dialog.
    display::DelWorkResult EmptyWorkFolder(bool confirm);
    // The same, the dialog shown by `ask` (the window's modal dialog).
    display::DelWorkResult EmptyWorkFolder(const std::function<void(display::DelWorkDialog&)>& ask);
    // The seat menu of table position `pos`; `reason` answers the reason
    // dialog ("" closes it without one).
    void ChooseSeatMenuEntry(int pos, const std::string& reason);
    // The same, the reason dialog shown by `ask` when the entry needs one.
    void ChooseSeatMenuEntry(int pos, const players::ReasonQuestion& ask);
    void PressPromptButton();           // the alert prompt's button
    void PressNoneButton();             // "None": check the table again
    // The player dragged a companion window.
    void MoveCompanionWindow(CompanionWindow w, int x, int y);

    // --- what the windows and tests read ---------------------------------------------
    [[nodiscard]] const CompanionModels& Models() const { return e_.Models; }
    [[nodiscard]] const core::Settings& Settings() const { return e_.Settings; }
    [[nodiscard]] const JobSlots& Slots() const { return e_.Slots; }
    [[nodiscard]] const DealState& Deal() const { return e_.Deal; }
    [[nodiscard]] const TableInfo& Table() const { return e_.Table; }
    [[nodiscard]] const display::DealRecord& Record() const { return e_.Record; }
    [[nodiscard]] const display::DealRecord& ShownRecord() const { return shown_; }
    [[nodiscard]] const std::string& ShownRecordName() const { return shownName_; }
    [[nodiscard]] OnlineMode Online() const { return e_.Online; }
    [[nodiscard]] GameLanguage Language() const { return e_.Language; }
    [[nodiscard]] bool Ended() const { return e_.Ended; }
    [[nodiscard]] bool TimerEnabled() const { return e_.TimerEnabled && !e_.Ended; }
    [[nodiscard]] std::int32_t TimerInterval() const { return e_.TimerInterval; }
    [[nodiscard]] bool Busy() const { return e_.Busy.Any(); }
    [[nodiscard]] int UserSeat() const { return e_.UserSeat(); }
    [[nodiscard]] int FiledCount() const { return filer_.FiledCount(); }
    [[nodiscard]] int GamesOver() const { return filer_.GamesOver(); }
    [[nodiscard]] const std::vector<std::string>& ErrorLog() const { return e_.ErrorLog; }
    [[nodiscard]] const players::Ratings* Rating() const { return e_.Rating.get(); }
    [[nodiscard]] const players::AlertChecker* Alerts() const { return e_.Alerts.get(); }
    [[nodiscard]] const display::RecordFiles* Records() const { return e_.Records.get(); }
    [[nodiscard]] const core::Folders& Folders() const { return e_.Folders; }
    [[nodiscard]] const core::StartupScreen& StartupScreen() const { return screen_; }

    // Start-up refuses to run from an archive or temporary folder; a
    // simulated session may well run from one.
    void SetArchiveCheck(bool on) { checkArchive_ = on; }
    // The window layer measures texts with the fonts it prints them in.
    void SetTextMeasure(core::TextWidthFn measure) { e_.Measure = std::move(measure); }

private:
    // Both public constructors come here; null `cap`/`titles` when the
    // readers read no pixels.
    Companion(const platform::Desktop& desktop, platform::Clock& clock, core::Folders folders, GameReaders& readers,
              CompanionEvents* events, reading::Capture* cap, reading::WinTitles* titles);
    bool LoadSettingsAndLists();
    void WindowPass();
    void BidWatch();
    void KeepOnTop();
    void ClickBidAuto();
    void PauseDisplay();
    bool TestMyTurn();
    void Wire();

    CompanionEvents nullEvents_;  // the listener when none is given
    Engine e_;
    GameWindows windows_;
    BiddingBoard board_;
    DealFlow flow_;
    TrickTracker tricks_;
    DealFiler filer_;
    DealCapture capture_;
    BidTracker bids_;
    OnlineState online_;

    core::StartupScreen screen_;
    bool checkArchive_ = true;
    bool endFlag_ = false;
    std::uint32_t pausedAt_ = 0;
    bool myTurnSeen_ = false;
    display::DealRecord shown_;
    std::string shownName_;
};

}  // namespace tracking
