// The state the engine's parts share, and the services they all use (clock,
// desktop, readers, events, messages, sounds, the log). Only the parts and
// the Companion that composes them see it; each part keeps what is its own
// privately and reaches the rest through here.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/folders.h"
#include "core/notation.h"
#include "core/settings.h"
#include "display/deal_record.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "players/alert_checks.h"
#include "players/alert_list.h"
#include "players/ratings.h"
#include "reading/pixels.h"
#include "reading/win_titles.h"
#include "scoring/rules.h"
#include "tracking/companion_events.h"
#include "tracking/companion_models.h"
#include "tracking/job_slots.h"
#include "tracking/readers.h"
#include "tracking/results.h"
#include "tracking/safe_click.h"

namespace tracking {

// The deal being followed, from its first bid to its capture.
struct DealState {
    int BidCount = 0;
    int BidLocCount = 0;
    Bids4 Bids, PrevBids;              // by table position
    int TricksPlayed = 0, CardsSeen = 0;
    std::array<int, 4> TrickCounts{};  // by table position
    std::array<int, 4> NilBroken{};    // Nil kind of a broken Nil, by table position
    int NameState = 0;                 // 0 names unknown, 1 score read, 2 names read
    std::array<std::string, 4> PlayerNames;  // by table position
    BidState Bidding = BidState::Watching;
    int BoardShown = 1;                // 2 while the board is shown
    int FirstPlayerPos = 0;
    bool LastTrickMinimised = false;
    std::vector<std::array<std::string, 4>> PlayedCards;  // tricks of the deal, by position
};

struct Engine {
    // `cap` and `titles` are the ones the readers use; null when the readers
    // read no pixels (the engine then keeps its own).
    Engine(const platform::Desktop& desktop, platform::Clock& clock, core::Folders folders, GameReaders& readers,
           CompanionEvents& events, reading::Capture* cap, reading::WinTitles* titles);

private:
    std::unique_ptr<reading::Capture> ownCap_;
    std::unique_ptr<reading::WinTitles> ownTitles_;

public:

    platform::Desktop Desktop;
    platform::Clock& Clock;
    core::Folders Folders;
    GameReaders& Readers;
    CompanionEvents& Events;

    core::Settings Settings;
    reading::Capture& Cap;
    reading::WinTitles& Titles;
    CompanionModels Models;
    // Every press of a game button goes through here.
    SafeClicker Clicker;
    JobSlots Slots;
    BusyFlags Busy;

    OnlineMode Online = OnlineMode::Fresh;
    // Deals ended since start: with the bids made, it names a state of the
    // game for the at-most-one-click rule.
    int DealNumber = 0;
    GameLanguage Language = GameLanguage::English;
    std::int32_t TickCount = 0;
    std::uint32_t TickStart = 0;
    std::int32_t TimerInterval = 1000;
    std::int32_t LoopInterval = 500;
    bool TimerEnabled = false;
    bool Ended = false;
    bool GameMinimised = false;

    TableInfo Table;
    DealState Deal;
    core::SeatMap Seats;
    scoring::ScoreRows Scores;
    display::DealRecord Record;
    std::unique_ptr<display::RecordFiles> Records;
    players::AlertList AlertList;
    std::unique_ptr<players::AlertChecker> Alerts;
    std::unique_ptr<players::Ratings> Rating;
    players::TableNames TableNames;
    std::vector<std::string> ErrorLog;  // every text the error window showed
    // How wide texts print: the window layer gives the real fonts' measure.
    core::TextWidthFn Measure = core::ApproxTextWidth;
    platform::Point StoredCardPlayPos{};  // from the position file

    [[nodiscard]] bool OffLine() const { return Online != OnlineMode::Online; }
    [[nodiscard]] int UserSeat() const { return Seats.SeatAt(0); }
    [[nodiscard]] bool CountersOn() const { return Settings.RightCounterPos.On(); }
    [[nodiscard]] bool CountingAllowed() const { return Rating && Rating->CountingAllowed; }
    [[nodiscard]] int LanguageRow() const { return tracking::LanguageRow(Language); }

    void Log(const std::string& line);
    void ShowError(const std::string& text);
    void PutMsg(int code);
    // A click for the user that was not made: the user is told why.
    void ClickRefused(const std::string& what, ClickResult why);
    void VisualAlarm() { ++Models.frmZ.VisualAlarms; }
    void PlayAlertSound(const std::string& alias);
    // n exclamations, each followed by a wait.
    void AlertBeep(int n);
    void Changed() { Events.ModelsChanged(); }
    // After a table reading: a Double Nil pass or suicide table seen for the
    // first time is signalled (when the player asked for it) and named on
    // the main window in red.
    void SignalTableFlags(bool dnilPassBefore, bool suicideBefore);
    // The main window's BOX status label from what the box locator said last.
    void RefreshBoxState();

    // How the alert checks and the ratings reach the table's player list.
    players::TableAccess TableAccessNow(platform::WindowHandle game);
    void UpdateTableNames();
    // Reads the user's rating from the table and shows it (mode 0 on a new
    // table, 1 after a game, 2 on request); the rating's LastHistory says
    // what the history file got.
    void ReadShowRating(int mode, platform::WindowHandle game);
};

}  // namespace tracking
