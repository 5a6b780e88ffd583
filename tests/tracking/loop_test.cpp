// The loop and the deal steps against a scripted reader: deadlines, the
// pause, the trick turnover, the winner bookkeeping, the capture driver's
// retries and codes.
#include <gtest/gtest.h>

#include <filesystem>

#include "core/text.h"
#include "platform/sim/virtual_clock.h"
#include "platform/sim/sim_desktop.h"
#include "tracking/companion.h"

namespace {

using tracking::Companion;

struct FakeReaders final : tracking::GameReaders {
    tracking::TableInfo info;
    int bidCode = 12;
    tracking::Bids4 bids;
    int bidCount = 0;
    tracking::TrickReading trick;
    std::vector<tracking::ScoreLine> score;
    int scoreCode = 0;
    int scoreCalls = 0, handCalls = 0, bidCalls = 0;
    std::vector<reading::HandRead> hands;  // one per CaptHand call; the last repeats
    std::vector<int> handCodes;
    bool myTurn = false;
    int board = 0;
    tracking::ButtonTable boardXY{};

    void SetGameWindow(platform::WindowHandle, int) override {}
    void ReadTableInfo(tracking::TableInfo& i) override { i = info; }
    void ReadPlayerList(tracking::TableInfo& i) override { i.PlayerList = info.PlayerList; }
    int CaptureBid(tracking::Bids4& b, int& n, int& loc) override {
        ++bidCalls;
        b = bids;
        n = bidCount;
        loc = 4;
        return bidCode;
    }
    int CaptureTricks(tracking::TrickReading& out) override {
        out = trick;
        return 0;
    }
    bool ReadLastTrick(std::array<std::string, 4>&, int&) override { return false; }
    int CaptScore(std::vector<tracking::ScoreLine>& lines) override {
        ++scoreCalls;
        lines = score;
        return scoreCode;
    }
    int CaptHand(reading::HandRead& out) override {
        const std::size_t i = static_cast<std::size_t>(handCalls++);
        if (!hands.empty()) out = hands[std::min(i, hands.size() - 1)];
        return handCodes.empty() ? 0 : handCodes[std::min(i, handCodes.size() - 1)];
    }
    int GetBoardStat(tracking::ButtonTable& xy) override {
        xy = boardXY;
        return board;
    }
    bool TestMyTurn() override { return myTurn; }
    std::vector<std::string> RatingLines() override { return {}; }
    void NewDeal() override {}
};

reading::HandRead SomeHand(const std::string& northName) {
    reading::HandRead h;
    h.Names = {northName, "east_p", "south_p", "west_p"};
    for (int s = 0; s < 4; ++s)
        for (int t = 0; t < 13; ++t) h.Cards[s][t] = std::string{"23456789TJQKA"[t], "CDHS"[s]};
    for (int t = 0; t < 13; ++t) h.Marks[0][t] = 1;  // North leads every trick
    return h;
}

class LoopTest : public ::testing::Test {
protected:
    void SetUp() override {
        home = (std::filesystem::temp_directory_path() /
                ("tarvellos_loop_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name())))
                   .string();
        std::filesystem::remove_all(home);
        std::filesystem::create_directories(home);
    }
    void TearDown() override { std::filesystem::remove_all(home); }

    // Start-up with these settings, no game window yet.
    void Load(const std::vector<std::string>& settings) {
        core::WriteTextFile(core::JoinPath(home, core::kSettingsFile), settings, 1252);
        app = std::make_unique<Companion>(desk.Roles(), clock, core::Folders{home, "Work"}, fake);
        app->CheckArchive = false;
        ASSERT_TRUE(app->Form_Load());
    }

    // A table window with its sub-windows appears.
    void AddTable() {
        table = desk.AddWindow("Yahoo! Games: Game: Spades Table: Oak Host: alice", {0, 0, 615, 700});
        desk.AddWindow("Last Trick", {700, 0, 900, 200});
        lastHand = desk.AddWindow("Last Hand", {700, 300, 900, 500});
        score = desk.AddWindow("Spades Score", {700, 600, 900, 800});
        fake.info.BoxFound = true;
        fake.info.Box = {236, 247, 471, 396};
    }

    // Start-up, a table window, one window pass on-line.
    void Boot(const std::vector<std::string>& settings = {}) {
        ASSERT_NO_FATAL_FAILURE(Load(settings));
        AddTable();
        app->Timer1_Timer();
        ASSERT_EQ(app->OnlineMode, 1);
    }

    std::string home;
    platform::VirtualClock clock{platform::LocalTime{2026, 3, 5, 21, 0, 0}};
    platform::SimDesktop desk{1280, 1024};
    FakeReaders fake;
    std::unique_ptr<Companion> app;
    platform::WindowHandle table = 0, lastHand = 0, score = 0;
};

// The tick that goes on-line only switches the interval; after it a slot
// runs once the tick is strictly past its due time.
TEST_F(LoopTest, FirstOnlineTickThenSlotsStrictlyPastTheirDueTime) {
    Load({"MyYahooID = me", "BidTrickCounter = (*,0),(*,0)"});
    EXPECT_EQ(app->TimerInterval, 1000);
    AddTable();
    app->SlotDue[tracking::SlotBidWatch] = clock.TickCount() - 5000;
    app->Timer1_Timer();
    EXPECT_EQ(app->OnlineMode, 1);
    EXPECT_EQ(app->TickCount, 1);
    EXPECT_EQ(app->TimerInterval, 500);
    EXPECT_EQ(fake.bidCalls, 0);
    app->SlotDue[tracking::SlotBidWatch] = clock.TickCount();
    app->Timer1_Timer();
    EXPECT_EQ(fake.bidCalls, 0) << "due == TickStart must not run";
    clock.Advance(1);
    app->Timer1_Timer();
    EXPECT_EQ(fake.bidCalls, 1);
}

TEST_F(LoopTest, BusyOrShrunkLoopTurnsTheTickAway) {
    Boot();
    const int before = app->TickCount;
    app->InBidStep = true;
    app->Timer1_Timer();
    app->InBidStep = false;
    app->Form_Resize(20);
    EXPECT_TRUE(platform::IsMinimized(desk, table));
    app->Timer1_Timer();
    EXPECT_EQ(app->TickCount, before);
    app->Form_Resize(400);
    EXPECT_FALSE(platform::IsMinimized(desk, table));
    app->Timer1_Timer();
    EXPECT_EQ(app->TickCount, before + 1);
}

TEST_F(LoopTest, PauseFreezesTheCaptureDeadlineAndResumeShiftsIt) {
    Boot({"MyYahooID = me"});
    app->Timer1_Timer();
    app->Timer1_Timer();
    app->SlotArmed[tracking::SlotHand] = true;
    app->SlotDue[tracking::SlotHand] = clock.TickCount() + 4000;
    app->SlotDue[tracking::SlotBidWatch] = clock.TickCount() + 4000;
    app->cmdTimer_Click();
    clock.Advance(60000);
    app->Timer1_Timer();
    EXPECT_EQ(app->frmZ.cmdTimer.Caption, "60");
    // A long pause alarms once at two and once at three minutes.
    auto alarmsAt = [&](int secs) {
        const int before = app->frmZ.VisualAlarms;
        clock.Advance(static_cast<std::uint32_t>(secs * 1000) - (clock.TickCount() - app->PausedAt));
        app->Timer1_Timer();
        return app->frmZ.VisualAlarms - before;
    };
    for (auto [secs, alarms] : {std::pair{119, 0}, {120, 1}, {121, 0}, {180, 1}})
        EXPECT_EQ(alarmsAt(secs), alarms) << secs;
    EXPECT_EQ(fake.scoreCalls, 0) << "nothing runs while paused";
    app->cmdTimer_Click();
    EXPECT_EQ(app->frmZ.cmdTimer.Caption, "Pause");
    EXPECT_EQ(app->SlotDue[tracking::SlotHand], clock.TickCount() + 4000);
    // Slot 4 is not shifted: it stays where it was.
    EXPECT_LT(static_cast<std::int32_t>(app->SlotDue[tracking::SlotBidWatch] - clock.TickCount()), 0);
}

TEST_F(LoopTest, GetWinnerNamesTheRisingPositionAndBooksABrokenNil) {
    Boot();
    app->TrickCounts = {2, 1, 0, 3};
    app->Bids = {"3", "N", "4", "2"};
    EXPECT_EQ(app->GetWinner({2, 2, 0, 3}), 1);
    EXPECT_EQ(app->NilBroken[1], 1);
    app->Bids = {"D", "N", "4", "2"};
    EXPECT_EQ(app->GetWinner({3, 2, 0, 4}), 3) << "a later position overrides an earlier one";
    EXPECT_EQ(app->NilBroken[0], 2);
    EXPECT_EQ(app->GetWinner({3, 2, 0, 4}), -1);
}

TEST_F(LoopTest, TrickNumberTurnoverEndsTheDealAndLateTricksHurryIt) {
    Boot({"MyYahooID = me", "BidTrickCounter = (*,0),(*,0)"});
    fake.score = {{50, 1, 30, 2}};
    fake.hands = {SomeHand("me")};
    auto step = [&](int prev, int t, bool isNew = true) {
        app->SlotArmed[tracking::SlotHand] = true;
        app->PrevTrickCount = prev;
        fake.trick = {};
        fake.trick.TrickNumber = t;
        fake.trick.IsNew = isNew;
        const int before = fake.scoreCalls;
        app->TrickStep();
        return fake.scoreCalls > before;
    };
    EXPECT_TRUE(step(12, 3));
    EXPECT_FALSE(step(2, 3));
    EXPECT_FALSE(step(-1, 0));
    EXPECT_TRUE(step(5, 0));
    EXPECT_FALSE(step(12, 3, false)) << "the plain form only ends on a new trick";
    EXPECT_FALSE(step(9, 3)) << "a fall from below 10 is not the next deal";
    // Tricks 11 and 12 bring the capture forward.
    fake.trick = {};
    app->SlotArmed[tracking::SlotHand] = true;
    app->SlotDue[tracking::SlotHand] = clock.TickCount() + 10000;
    app->PrevTrickCount = 10;
    fake.trick.TrickNumber = 11;
    app->TrickStep();
    EXPECT_EQ(app->SlotDue[tracking::SlotHand], clock.TickCount() + 3000);
    fake.trick.TrickNumber = 12;
    app->TrickStep();
    EXPECT_EQ(app->SlotDue[tracking::SlotHand], clock.TickCount() + 2000);
    EXPECT_EQ(app->SlotDue[tracking::SlotTrick], clock.TickCount() + 800);
}

// Bids come in one by one: the watch is rescheduled by their number, and Nil
// alerts sound for a bid that just became Nil (two Nils warn with two beeps).
TEST_F(LoopTest, BidStepSchedulesByTheNumberOfBidsAndAlertsNils) {
    Boot({"AlertNilBids = yes"});
    for (int i = 0; i < 4; ++i) app->Timer1_Timer();
    fake.bidCode = 0;
    struct Row {
        tracking::Bids4 bids;
        std::uint32_t due;
        std::size_t sounds;
    };
    const Row rows[] = {{{"3", "", "", ""}, 2000, 0},
                        {{"N", "4", "", ""}, 1500, 1},
                        {{"N", "4", "2", ""}, 800, 0},
                        {{"N", "4", "2", "DP"}, 0, 3}};
    for (int n = 1; n <= 4; ++n) {
        const Row& row = rows[n - 1];
        fake.bidCount = n;
        fake.bids = row.bids;
        desk.ClearRecords();
        app->BidStep(1);
        EXPECT_EQ(desk.Sounds().size(), row.sounds) << n << " bids";
        if (n < 4) {
            EXPECT_EQ(app->SlotDue[tracking::SlotBidWatch], clock.TickCount() + row.due) << n << " bids";
        }
    }
    EXPECT_FALSE(app->SlotArmed[tracking::SlotBidWatch]) << "four bids: the deal's play begins";
    EXPECT_TRUE(app->SlotArmed[tracking::SlotHand]);
    EXPECT_EQ(app->PrevTrickCount, -1);
}

TEST_F(LoopTest, CaptureCodesRetriesAndTheirMessages) {
    Boot({"MyYahooID = me", "BidTrickCounter = (*,0),(*,0)"});
    // Off-line: the "Hand" button does nothing.
    app->OnlineMode = 2;
    app->CaptureLastHand(0);
    EXPECT_EQ(fake.scoreCalls, 0);
    app->OnlineMode = 1;
    // Automatic with slot 2 disarmed: nothing, and the due time stays.
    app->SlotArmed[tracking::SlotHand] = false;
    app->SlotDue[tracking::SlotHand] = 1234;
    app->CaptureLastHand(1);
    EXPECT_EQ(fake.scoreCalls, 0);
    EXPECT_EQ(app->SlotDue[tracking::SlotHand], 1234u);
    // Four empty names: read at attempts 1 and 5 only, then given up.
    fake.score = {{50, 1, 30, 2}};
    fake.hands = {reading::HandRead{}};
    app->CaptureLastHand(0);
    EXPECT_EQ(fake.handCalls, 2);
    EXPECT_EQ(app->FiledCount, 0);
    EXPECT_EQ(app->frmZ.cntBids.Caption, "9");
    // The score window shows no new line: code 7, reported only by hand.
    fake.score = {};
    app->CaptureLastHand(0);
    ASSERT_FALSE(app->ErrorLog.empty());
    EXPECT_EQ(app->ErrorLog.back(), app->frmErrMsg.Text);
    const std::size_t errors = app->ErrorLog.size();
    app->SlotArmed[tracking::SlotHand] = true;
    app->CaptureLastHand(1);
    EXPECT_EQ(app->ErrorLog.size(), errors);
    // A good capture files the deal; the same hands again are code 24.
    fake.score = {{50, 1, 30, 2}};
    fake.hands = {SomeHand("me")};
    app->CaptureLastHand(0);
    ASSERT_EQ(app->FiledCount, 1);
    fake.score = {{50, 1, 30, 2}, {90, 2, 70, 3}};
    app->CaptureLastHand(0);
    EXPECT_EQ(app->FiledCount, 1);
    EXPECT_GT(app->ErrorLog.size(), errors);
    // Score reading failing five times: code 2 with its text.
    fake.scoreCode = 2;
    const int calls = fake.scoreCalls;
    app->CaptureLastHand(0);
    EXPECT_EQ(fake.scoreCalls - calls, 5);
    EXPECT_EQ(app->ErrorLog.back(), "Error occurred in reading score.");
}

TEST_F(LoopTest, GameEndsAtTheGamePointWithDifferentScores) {
    Boot({"MyYahooID = me", "BidTrickCounter = (*,0),(*,0)"});
    std::vector<scoring::ScoreRows::Row> over;
    app->OnGameOver = [&](const scoring::ScoreRows::Row& r) { over.push_back(r); };
    fake.hands = {SomeHand("me")};
    fake.score = {{500, 0, 500, 0}};
    app->CaptureLastHand(0);
    EXPECT_TRUE(over.empty()) << "500 against 500 goes on";
    reading::HandRead h = SomeHand("me");
    std::swap(h.Cards[0][0], h.Cards[1][0]);
    fake.hands = {h};
    fake.score = {{500, 0, 500, 0}, {510, 1, 480, 3}};
    desk.ClearRecords();
    app->CaptureLastHand(0);
    ASSERT_EQ(over.size(), 1u);
    EXPECT_EQ(over[0], (scoring::ScoreRows::Row{510, 1, 480, 3}));
    EXPECT_NE(std::find(desk.Sounds().begin(), desk.Sounds().end(), "SystemStart"), desk.Sounds().end());
}

TEST_F(LoopTest, ScoreButtonCycles) {
    Boot();
    EXPECT_EQ(app->frmZ.cmdScore.Caption, "Minimize");
    app->frmZ.cmdScore.Caption = "Show Score";
    for (const std::string want : {"Hide Score", "Show Score", "Hide Score"}) {
        app->cmdScore_Click();
        EXPECT_EQ(app->frmZ.cmdScore.Caption, want);
        EXPECT_EQ(platform::IsMinimized(desk, score), want == "Show Score");
    }
    EXPECT_EQ(app->Settings.TopMostScoreWindow, 2);
}

TEST_F(LoopTest, BoardClicksOnlyAllowedButtonsAndHidesAfterTheBid) {
    Boot({"BiddingBoard = (10,10)"});
    fake.board = tracking::BoardOrdinary;
    for (int i = 1; i <= 14; ++i) fake.boardXY[i] = {120 + 10 * i, 420};
    app->CheckBoard();
    desk.ClearRecords();
    app->Btn_Click(12);
    EXPECT_TRUE(desk.Clicks().empty()) << "bid 12 is never pressed for the user";
    app->Btn_Click(3);  // mode 7 asks for a confirmation first
    EXPECT_EQ(app->frmBoard.Btn[17].Caption, "3 OK ?");
    // The panel goes away after the first click.
    desk.OnClick([&](const platform::SimClick&) { fake.board = 0; });
    app->Btn_Click(17);
    ASSERT_EQ(desk.Clicks().size(), 1u);
    EXPECT_EQ(desk.Clicks()[0].At, (platform::Point{150 + 2, 420 + 2}));
    EXPECT_EQ(app->BidState, -4);
    EXPECT_EQ(app->GetBoardStat(), 0) << "with BidState -4 the panel is not read";
}

TEST_F(LoopTest, NarrowScreenReducesTheGameWindow) {
    desk.SetScreenSize(800, 600);
    Load({"Reduce SpadesWindow = 600"});
    table = desk.AddWindow("Game: Spades Table: Elm Host: bob", {20, 30, 660, 580});
    app->Timer1_Timer();
    EXPECT_EQ(desk.WindowRect(table), (platform::Rect{-5, 25, 595, 575}));
}

TEST_F(LoopTest, EndKeepsTheWindowPositionsForTheNextRun) {
    Boot({"CFG = places.txt"});
    desk.Move(lastHand, {300, 420, 500, 620});
    app->FindSubWindow(-1);
    app->cmdEnd_Click();
    app->Timer1_Timer();
    EXPECT_TRUE(app->Ended);
    EXPECT_FALSE(app->TimerEnabled);
    std::vector<std::string> lines;
    ASSERT_TRUE(core::ReadTextFile(core::JoinPath(home, "places.txt"), 1252, lines));
    ASSERT_GE(lines.size(), 9u);
    EXPECT_NE(lines[4].find("Last Hand Window"), std::string::npos);
    Load({"CFG = places.txt"});  // the next run
    EXPECT_EQ(app->Cap.SubWindow[tracking::SlotHand].Home, (platform::Point{300, 420}));
}

TEST_F(LoopTest, WindowListSkipsHiddenWindowsAndCollectsPopups) {
    Boot({"TopmostPlayerInfo = yes"});
    const auto hidden = desk.AddWindow("Game: Spades Table: Pine Host: zed", {0, 0, 100, 100},
                                       platform::WindowInfo{.Decorated = true, .Visible = false});
    const auto bare = desk.AddWindow("Player information", {0, 0, 100, 100},
                                     platform::WindowInfo{.Decorated = false, .Visible = true});
    const auto info = desk.AddWindow("Player information", {0, 0, 100, 100});
    desk.AddWindow("Alerts", {0, 0, 100, 100});
    const auto lobby = desk.AddWindow("Yahoo! Spades", {10, 10, 1010, 810});
    app->FindGameWindows();
    for (const auto& w : app->WindowList) EXPECT_TRUE(w.Handle != hidden && w.Handle != bare);
    EXPECT_EQ(app->GameWindow, table);
    ASSERT_EQ(app->PopupWindows.size(), 1u) << "\"Alerts\" is not \"Alert\"";
    EXPECT_EQ(app->PopupWindows[0], info);
    EXPECT_EQ(desk.WindowRect(lobby), (platform::Rect{200, 100, 1000, 700}));
}

// Our own windows repeat the table's title and player names; a window pass
// must never take one of them for the game's.
TEST_F(LoopTest, OwnWindowsAreNeverTakenForTheGame) {
    Boot({"TopmostPlayerInfo = yes"});
    const auto ours = desk.AddOwnWindow("Yahoo! Games: Game: Spades Table: Oak Host: alice", {0, 0, 300, 200});
    desk.AddOwnWindow("Player information", {0, 0, 100, 100});
    app->FindGameWindows();
    EXPECT_EQ(app->GameWindow, table);
    for (const auto& w : app->WindowList) EXPECT_NE(w.Handle, ours);
    EXPECT_TRUE(app->PopupWindows.empty());
}

}  // namespace
