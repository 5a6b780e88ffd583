// The companion itself: the main window frmZ as a model, its start-up, its
// polling timer with the job slots, the discovery of the game's windows,
// going on-line and off-line, the deal steps (bids, tricks), the capture of
// the finished deal, and the bidding board's clicks. Everything runs on one
// thread; waits go through the clock, which may run nested ticks, and the
// busy flags turn those away.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/folders.h"
#include "core/notation.h"
#include "core/save_result.h"
#include "core/settings.h"
#include "core/startup.h"
#include "display/deal_record.h"
#include "display/err_msg.h"
#include "display/file_box.h"
#include "display/window_positions.h"
#include "platform/clock.h"
#include "platform/desktop.h"
#include "players/alert_checks.h"
#include "players/alert_list.h"
#include "players/ratings.h"
#include "reading/pixels.h"
#include "reading/win_titles.h"
#include "scoring/counter.h"
#include "scoring/help_bid.h"
#include "scoring/nil_history.h"
#include "scoring/rules.h"
#include "tracking/board.h"
#include "tracking/readers.h"

namespace tracking {

constexpr const char* kProgramCaption = "TarvelloS  2.5";
constexpr std::int32_t kInitialInterval = 1000;
constexpr int kSlotCount = 6;
constexpr int SlotReminder = 0, SlotTrick = 1, SlotHand = 2, SlotScore = 3, SlotBidWatch = 4;
constexpr int kMaxListedWindows = 1000;
constexpr int kMaxPopups = 100;

struct ButtonModel {
    std::string Caption;
    bool Visible = true;
    bool Enabled = true;
    std::uint32_t BackColor = core::kMainWindowBackColor;
    bool Bold = false;
    int FontSize = 10;
};

struct LabelModel {
    std::string Caption;
    bool Visible = true;
};

// frmZ as the window layer draws it.
struct MainWindow {
    std::string Caption = kProgramCaption;
    platform::Rect Rect{0, 0, 330, 560};
    bool Topmost = false;
    std::array<LabelModel, 4> plName;   // player names by table position
    std::array<LabelModel, 4> lblBid;   // bids by table position
    std::array<LabelModel, 4> lblSeat;  // seat letters
    ButtonModel cmdBid{"Bid"}, cmdHand{"Hand"}, cmdScore{"Minimize", false}, cmdTimer{"Pause", false};
    ButtonModel cmdEnd{"End", false};
    LabelModel cntPlayers{"0"}, cntBids{"0"}, cntBidLoc{"0"};
    LabelModel lblMsg{"", false}, lblLog{"log", false}, lblBoxState{"", false};
    LabelModel fraCapture{"", false};
    bool LinkMenuEnabled = true, AlertMenuEnabled = true;
    std::string LinkMenuCaption = "Yahoo! Spades";
    int VisualAlarms = 0;  // red boxes drawn
    std::string LastBoardIndex;  // the board's last button index shown on the main window
};

// A listed top-level window.
struct ListedWindow {
    platform::WindowHandle Handle = 0;
    std::string Title;
};

// One filed deal, as the replay reports it.
struct FiledDeal {
    std::string File;
    scoring::ScoreRows::Row ScoreRow{};
    std::array<std::string, 3> cTrk;
    std::array<std::string, 2> cPts, cBag, aPt;
    std::array<std::string, 4> Bids;   // by compass seat
    std::array<std::string, 4> Names;  // by compass seat
    std::array<int, 4> Tricks{};       // by compass seat
    int UserSeat = 0;
    // Every player file this deal wrote or failed to write (record, Nil
    // history, rating history), in the order written.
    std::vector<core::SaveResult> Saves;
};

class Companion {
public:
    Companion(const platform::Desktop& desktop, platform::Clock& clock, core::Folders folders, GameReaders& readers);
    ~Companion();
    Companion(const Companion&) = delete;
    Companion& operator=(const Companion&) = delete;

    // --- start-up and the loop ---------------------------------------------------
    // False when a start-up check stopped the program (Ended is then set).
    bool Form_Load();
    bool FormLoad();
    void Timer1_Timer();
    void WindowPass();
    void cmdTimer_Click();
    void cmdBid_MouseDown(int button);
    void cmdHand_MouseDown(int button);
    void cmdBid_Click() {
        if (!OffLine()) BidStep(0);
    }
    void cmdHand_Click() { CaptureLastHand(0); }
    void cmdEnd_Click() { EndFlag = true; }
    void ShowTop(int mode, platform::WindowHandle h);
    // The main window's height changed (pixels).
    void Form_Resize(int heightPx);

    // --- windows of the game -------------------------------------------------------
    void FindGameWindows();
    void FindSubWindow(int slot);
    void OpenSubWindows(int slot);
    void PlaceSubWindow(int slot);
    void GetSubWindows();
    bool OffLine() const { return OnlineMode != 1; }
    void OffToOn();
    void OnToOff();
    void MoveWinGame();
    void cmdScore_Click();

    // --- the deal ---------------------------------------------------------------------
    void BidStep(int autoMode);
    void EndDealReset();
    void PrepareBidding();
    void TrickStep();
    void TrickStepCounting();
    int GetWinner(const std::array<int, 4>& counts);
    bool TestMyTurn();
    void NotExistProcess(int slot, int code);
    void PrepareNextGame();
    void Restart();
    void CaptureLastHand(int autoMode);
    void ClickBidAuto();

    // --- the bidding board -------------------------------------------------------------
    int GetBoardStat();
    void CheckBoard();
    void ClickBidButton(int index, bool reread);
    void ClickAt(int x, int y);
    void DoClickEver(int index);
    void ShowBoard(int mode);
    void Btn_Click(int index);
    void HideMe();

    // --- state (names as the program knows them) ---------------------------------------
    platform::Desktop& Desktop() { return desktop_; }
    platform::Clock& Clock() { return clock_; }
    const core::Folders& Folders() const { return folders_; }

    core::Settings Settings;
    core::StartupScreen Screen;
    bool CheckArchive = true;  // refuse to run from an archive or temporary folder
    bool Ended = false;  // the program has ended (fatal stop or End)
    bool EndFlag = false;
    bool SettingsFileFound = false;

    // Timer1.
    std::int32_t TimerInterval = kInitialInterval;
    bool TimerEnabled = false;
    std::int32_t LoopInterval = 500;

    // Slots and loop state.
    std::array<bool, kSlotCount> SlotArmed{};
    std::array<std::uint32_t, kSlotCount> SlotDue{};
    std::array<std::int32_t, kSlotCount> SlotLeft{};
    std::int32_t TickCount = 0;
    std::uint32_t TickStart = 0;
    std::uint32_t PausedAt = 0;
    int MyTurnSeen = 0;
    int GameMinimised = 0;
    int OnlineMode = 0;
    int HideCounterAt = 0;  // seconds of the day, 0 = none
    bool InWindowPass = false, InBidStep = false, InTrickStep = false, InFileView = false, InHandCapture = false;
    bool DisplayHeld = false;
    bool FileOperation = false;

    // Windows of the game.
    std::vector<ListedWindow> WindowList;
    platform::WindowHandle GameWindow = 0;
    std::array<int, 3> SiteIndex{-1, -1, -1};
    std::vector<platform::WindowHandle> PopupWindows;
    int GameLanguage = 1;
    std::array<bool, 6> RecheckSlots{};
    bool RecheckRequested = false;
    platform::Rect GameRect;
    platform::Point ScreenSize;
    int FrameExtra = 0;
    bool GamePlaced = false;
    platform::Point GameHome;
    TableInfo Table;
    std::string TableTitle;       // title of the table being followed
    bool NewTableSeen = false;
    bool SuppressSubWindowSearch = false;

    // Deal state.
    int BidCount = 0, BidsShown = 0, BidLocCount = 0;
    Bids4 Bids, PrevBids, CompareBids;
    int TricksPlayed = 0, CardsSeen = 0;
    std::array<int, 4> TrickCounts{};
    int PrevTrickCount = -1;
    std::array<int, 4> NilBroken{};
    int LastTrickMinimised = 0;
    int NameState = 0;
    std::array<std::string, 4> PlayerNames;  // by table position
    int BidState = 0;
    int BoardShown = 1;
    int FirstPlayerPos = 0;
    std::array<std::array<std::string, 13>, 4> PrevHands;
    std::vector<std::array<std::string, 4>> PlayedCards;  // card play record of the deal, by position
    display::DealRecord Record;
    scoring::ScoreRows Scores;

    // Companion windows.
    MainWindow frmZ;
    Board frmBoard;
    scoring::Counters Counters;
    scoring::HelpBid frmHelpBid;
    display::ErrMsgWindow frmErrMsg;
    display::FileBox filBox;
    std::unique_ptr<display::RecordFiles> Records;
    int CardPlayState = 0, ScoreWindowState = 0, RemainingCardsState = 0, BoxStateWindow = 0;
    core::SeatMap Seats;
    reading::WinTitles Titles;
    reading::Capture Cap;
    players::AlertList AlertList;
    std::unique_ptr<players::AlertChecker> Alerts;
    std::unique_ptr<players::Ratings> Rating;
    players::TableNames TableNames;

    // Hooks and what the replay and the demo want to see.
    scoring::NilHistoryResult LastNilHistory = scoring::NilHistoryResult::NotApplicable;
    std::function<void(const FiledDeal&)> OnDealFiled;
    std::function<void(const scoring::ScoreRows::Row&)> OnGameOver;
    std::function<void(const std::string&)> Trace;
    std::vector<std::string> ErrorLog;  // every text the error window showed
    int FiledCount = 0;
    int GamesOver = 0;

    int UserSeat() const { return Seats.SeatAt(0); }
    bool CountersOn() const { return Settings.RightCounterPos.On(); }

private:
    void LoadCompanionWindows();
    void UnloadCompanionWindows();
    void ArmSlot(int slot, std::uint32_t due) { SlotArmed[slot] = true; SlotDue[slot] = due; }
    void Disarm(int slot) { SlotArmed[slot] = false; }
    bool Due(int slot, std::uint32_t now) const {
        return static_cast<std::int32_t>(now - SlotDue[slot]) > 0;
    }
    void VisualAlarm();
    void PlayAlertSound(const std::string& alias);
    void AlertBeep(int n);
    void ShowError(const std::string& text);
    void PutMsg(int code);
    void RefreshBidLabels();
    void ApplyLeftEdgeRule();
    void MoveGame(const platform::Rect& r);
    void UpdateTableNames();
    players::TableAccess TableAccessNow();
    players::RatingContext RatingContextNow();
    void ReadShowRating(int mode);
    int CaptureLastHandBody(int autoMode);
    void FileDeal(const reading::HandRead& hand, int p);
    std::array<int, 3> SideTricks(const std::array<int, 4>& byPos) const;
    void AfterTrick(int t, std::uint32_t delayAt11, std::uint32_t delayAt12);
    void Log(const std::string& line);

    platform::Desktop desktop_;
    platform::Clock& clock_;
    core::Folders folders_;
    GameReaders& readers_;
    std::string scoreCaptionBeforeMinimise_;
    platform::WindowHandle lastTableWindow_ = 0;
};

}  // namespace tracking
