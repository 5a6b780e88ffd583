// The loop and the deal steps against a scripted reader: deadlines, the
// pause, the trick turnover, the winner bookkeeping, the capture driver's
// retries and codes, and the right counter after a deal is filed.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "core/settings.h"
#include "core/text.h"
#include "platform/sim/virtual_clock.h"
#include "platform/sim/sim_desktop.h"
#include "scoring/deal_checks.h"
#include "tracking/companion.h"

namespace {

using tracking::Companion;
using tracking::Job;

struct FakeReaders final : tracking::GameReaders {
    tracking::TableInfo info;
    int bidCode = 12;
    tracking::Bids4 bids;
    int bidCount = 0;
    tracking::TrickReading trick;
    std::vector<tracking::ScoreLine> score;
    int scoreCode = 0;
    int scoreCalls = 0, handCalls = 0, bidCalls = 0, tableReads = 0, boardReads = 0;
    std::vector<reading::HandRead> hands;  // one per CaptHand call; the last repeats
    std::vector<int> handCodes;
    bool myTurn = false;
    int board = 0;
    tracking::ButtonTable boardXY{};
    std::function<void()> duringBid;  // runs inside CaptureBid, as a waiting reader lets events in

    void SetGameWindow(platform::WindowHandle, int) override {}
    void ReadTableInfo(tracking::TableInfo& i) override {
        ++tableReads;
        i = info;
    }
    int listReads = 0, listShownAfter = 0;  // the list stays empty for the first reads
    tracking::BoxStatus boxStatus;
    void ReadPlayerList(tracking::TableInfo& i) override {
        ++listReads;
        i.PlayerList = listReads > listShownAfter ? info.PlayerList : std::vector<std::string>{};
    }
    tracking::BoxStatus LastBoxStatus() const override { return boxStatus; }
    int CaptureBid(tracking::Bids4& b, int& n, int& loc) override {
        ++bidCalls;
        if (duringBid) duringBid();
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
        ++boardReads;
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

// The engine's parts wired as the companion wires them, for tests of one
// part's rule. The end of a deal seen by the trick step is counted and runs
// the automatic capture, as in the companion.
struct Rig {
    Rig(platform::SimDesktop& desk, platform::Clock& clock, const std::string& home, tracking::GameReaders& readers,
        const std::vector<std::string>& settings)
        : e(desk.Roles(), clock, core::Folders{home, "Work"}, readers, events, nullptr, nullptr),
          w(e),
          board(e, w),
          flow(e, board),
          tricks(e, w,
                 [this] {
                     ++dealsOver;
                     (void)capture.Capture(true);
                 }),
          filer(e, w, flow, tricks),
          capture(e, w, flow, filer),
          bids(e, w, flow, tricks),
          online(e, w, flow, tricks) {
        (void)core::ReadSettingsLines(settings, e.Settings, nullptr);
        e.Titles.SetWinTitles();
        e.Seats.InitNESW(e.Settings.MyIds);
        e.Records = std::make_unique<display::RecordFiles>(clock, e.Folders, desk.Roles().system.AnsiCodePage());
        w.SetScreenSize(desk.ScreenSize());
        e.Cap.SetSubWindows(&w);
    }
    // The table window is there: on-line as the first window pass goes.
    void GoOnline() {
        w.FindGameWindows();
        online.OffToOn();
    }

    tracking::CallbackEvents events;
    tracking::Engine e;
    tracking::GameWindows w;
    tracking::BiddingBoard board;
    tracking::DealFlow flow;
    tracking::TrickTracker tricks;
    tracking::DealFiler filer;
    tracking::DealCapture capture;
    tracking::BidTracker bids;
    tracking::OnlineState online;
    int dealsOver = 0;
};

const std::vector<std::string> kCounters = {"MyYahooID = me", "BidTrickCounter = (*,0),(*,0)"};

class LoopTest : public ::testing::Test {
protected:
    void SetUp() override {
        home = (std::filesystem::temp_directory_path() /
                ("tarvellos_loop_" + std::to_string(::getpid()) + "_" + std::string(::testing::UnitTest::GetInstance()->current_test_info()->name())))
                   .string();
        std::filesystem::remove_all(home);
        std::filesystem::create_directories(std::filesystem::path(home) / "Work");
    }
    void TearDown() override { std::filesystem::remove_all(home); }

    // Start-up with these settings, no game window yet.
    void Load(const std::vector<std::string>& settings) {
        core::WriteTextFile(core::JoinPath(home, core::kSettingsFile), settings, 1252);
        app = std::make_unique<Companion>(desk.Roles(), clock, core::Folders{home, "Work"}, fake, &events);
        app->SetArchiveCheck(false);
        ASSERT_TRUE(app->Start());
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
        app->Tick();
        ASSERT_EQ(app->Online(), tracking::OnlineMode::Online);
    }

    // The parts alone, on-line at the table.
    void BootRig(const std::vector<std::string>& settings) {
        rig = std::make_unique<Rig>(desk, clock, home, fake, settings);
        AddTable();
        rig->GoOnline();
        ASSERT_EQ(rig->e.Online, tracking::OnlineMode::Online);
    }

    // The bids of a deal are all in: the next due bid step begins its play.
    void BeginDeal() {
        fake.bidCode = 0;
        fake.bidCount = 4;
        fake.bids = {"3", "4", "2", "1"};
        clock.Advance(app->Slots().DueAt(Job::BidWatch) - clock.TickCount() + 1);
        app->Tick();
        ASSERT_TRUE(app->Slots().Armed(Job::LastHand));
    }

    std::string home;
    platform::VirtualClock clock{platform::LocalTime{2026, 3, 5, 21, 0, 0}};
    platform::SimDesktop desk{1280, 1024};
    FakeReaders fake;
    tracking::CallbackEvents events;
    std::unique_ptr<Companion> app;
    std::unique_ptr<Rig> rig;
    platform::WindowHandle table = 0, lastHand = 0, score = 0;
};

// ---------------------------------------------------------------------------
// The loop
// ---------------------------------------------------------------------------

// The tick that goes on-line only switches the interval, even with a job
// overdue; after it a job runs once the tick is strictly past its due time,
// also when that due time lies across the wrap of the tick counter.
TEST_F(LoopTest, FirstOnlineTickThenJobsStrictlyPastTheirDueTime) {
    clock = platform::VirtualClock(platform::LocalTime{2026, 3, 5, 21, 0, 0}, 0xFFFFFFFFu - 33000);
    Load({"MyYahooID = me"});
    EXPECT_EQ(app->TimerInterval(), 1000);
    app->ToggleAutoBid();  // off: the reminder is armed
    clock.Advance(30001);
    AddTable();
    app->Tick();
    EXPECT_EQ(app->Online(), tracking::OnlineMode::Online);
    EXPECT_EQ(app->TimerInterval(), 500);
    EXPECT_EQ(app->Models().frmZ.VisualAlarms, 0) << "the on-line tick runs no job";
    app->Tick();
    EXPECT_EQ(app->Models().frmZ.VisualAlarms, 1);

    app->ToggleAutoBid();  // on again: bids watched 3 s from now
    const std::uint32_t due = app->Slots().DueAt(Job::BidWatch);
    ASSERT_LT(due, clock.TickCount()) << "the due time must lie across the wrap";
    clock.Advance(due - clock.TickCount());
    app->Tick();
    EXPECT_EQ(fake.bidCalls, 0) << "due == tick start must not run";
    clock.Advance(1);
    app->Tick();
    EXPECT_EQ(fake.bidCalls, 1);
}

// A tick that comes while a step waits (the reader lets events in) or while
// the game is minimised returns without touching the table.
TEST_F(LoopTest, NestedOrMinimisedTickIsTurnedAway) {
    Boot();
    app->Tick();
    int nestedReads = -1;
    fake.duringBid = [&] {
        const int before = fake.tableReads;
        app->Tick();
        nestedReads = fake.tableReads - before;
    };
    clock.Advance(app->Slots().DueAt(Job::BidWatch) - clock.TickCount() + 1);
    app->Tick();
    EXPECT_EQ(fake.bidCalls, 1);
    EXPECT_EQ(nestedReads, 0) << "the nested tick read the table";
    EXPECT_FALSE(app->Busy());
    fake.duringBid = nullptr;

    EXPECT_EQ(app->Models().frmZ.cmdScore.Caption, "Minimize");
    app->PressScoreButton();
    EXPECT_TRUE(platform::IsMinimized(desk, table));
    const int reads = fake.tableReads;
    app->Tick();
    app->ResizeMain(20);
    app->Tick();
    EXPECT_EQ(fake.tableReads, reads);
    app->ResizeMain(400);
    EXPECT_FALSE(platform::IsMinimized(desk, table));
    app->Tick();
    EXPECT_EQ(fake.tableReads, reads + 1);
}

TEST_F(LoopTest, PauseFreezesTheCaptureDeadlineAndResumeShiftsIt) {
    Boot({"MyYahooID = me"});
    app->Tick();
    ASSERT_NO_FATAL_FAILURE(BeginDeal());
    clock.Advance(6000);
    const std::uint32_t left = app->Slots().DueAt(Job::LastHand) - clock.TickCount();
    const std::uint32_t bidDue = app->Slots().DueAt(Job::BidWatch);
    const int reads = fake.scoreCalls;
    app->TogglePause();
    const std::uint32_t pausedAt = clock.TickCount();
    clock.Advance(60000);
    app->Tick();
    EXPECT_EQ(app->Models().frmZ.cmdTimer.Caption, "60");
    // A long pause alarms once at two and once at three minutes.
    auto alarmsAt = [&](int secs) {
        const int before = app->Models().frmZ.VisualAlarms;
        clock.Advance(static_cast<std::uint32_t>(secs * 1000) - (clock.TickCount() - pausedAt));
        app->Tick();
        return app->Models().frmZ.VisualAlarms - before;
    };
    for (auto [secs, alarms] : {std::pair{119, 0}, {120, 1}, {121, 0}, {180, 1}})
        EXPECT_EQ(alarmsAt(secs), alarms) << secs;
    EXPECT_EQ(fake.scoreCalls, reads) << "nothing runs while paused";
    app->TogglePause();
    EXPECT_EQ(app->Models().frmZ.cmdTimer.Caption, "Pause");
    EXPECT_EQ(app->Slots().DueAt(Job::LastHand), clock.TickCount() + left);
    EXPECT_EQ(app->Slots().DueAt(Job::BidWatch), bidDue) << "the bid watch is not shifted";
}

TEST_F(LoopTest, GameEndsAtTheGamePointWithDifferentScores) {
    Boot(kCounters);
    std::vector<tracking::GameOver> over;
    events.OnGameOver = [&](const tracking::GameOver& g) { over.push_back(g); };
    fake.hands = {SomeHand("me")};
    fake.score = {{500, 0, 500, 0}};
    app->CaptureHandNow();
    EXPECT_TRUE(over.empty()) << "500 against 500 goes on";
    reading::HandRead h = SomeHand("me");
    std::swap(h.Cards[0][0], h.Cards[1][0]);
    fake.hands = {h};
    fake.score = {{500, 0, 500, 0}, {510, 1, 480, 3}};
    desk.ClearRecords();
    app->CaptureHandNow();
    ASSERT_EQ(over.size(), 1u);
    EXPECT_EQ(over[0].Score, (scoring::ScoreRows::Row{510, 1, 480, 3}));
    EXPECT_EQ(app->GamesOver(), 1);
    EXPECT_NE(std::find(desk.Sounds().begin(), desk.Sounds().end(), "SystemStart"), desk.Sounds().end());
}

TEST_F(LoopTest, ScoreButtonCycles) {
    Boot({"TopMostScoreWindow = yes"});
    EXPECT_EQ(app->Models().frmZ.cmdScore.Caption, "Hide Score");
    for (const std::string want : {"Show Score", "Hide Score", "Show Score"}) {
        app->PressScoreButton();
        EXPECT_EQ(app->Models().frmZ.cmdScore.Caption, want);
        EXPECT_EQ(platform::IsMinimized(desk, score), want == "Show Score");
    }
    EXPECT_EQ(app->Settings().TopMostScoreWindow, 0);
}

TEST_F(LoopTest, BoardClicksOnlyAllowedButtonsAndHidesAfterTheBid) {
    Boot({"BiddingBoard = (10,10)"});
    fake.board = tracking::BoardOrdinary;
    fake.myTurn = true;
    for (int i = 1; i <= 14; ++i) fake.boardXY[i] = {120 + 10 * i, 420};
    app->Tick();
    ASSERT_TRUE(app->Models().frmBoard.Visible) << "the user's turn with the panel up shows the board";
    desk.ClearRecords();
    app->PressBoardButton(12);
    EXPECT_TRUE(desk.Clicks().empty()) << "bid 12 is never pressed for the user";
    app->PressBoardButton(3);  // mode 7 asks for a confirmation first
    EXPECT_EQ(app->Models().frmBoard.Btn[17].Caption, "3 OK ?");
    EXPECT_TRUE(desk.Clicks().empty());
    // The panel goes away after the first click.
    desk.OnClick([&](const platform::SimClick&) { fake.board = 0; });
    app->PressBoardButton(17);
    ASSERT_EQ(desk.Clicks().size(), 1u);
    EXPECT_EQ(desk.Clicks()[0].At, (platform::Point{150 + 2, 420 + 2}));
    EXPECT_EQ(app->Deal().Bidding, tracking::BidState::BoardHiddenAfterBid);
    EXPECT_FALSE(app->Models().frmBoard.Visible);
    // Hidden after the bid, the panel is not read again in this deal.
    fake.board = tracking::BoardOrdinary;
    const int reads = fake.boardReads;
    app->Tick();
    EXPECT_EQ(fake.boardReads, reads);
    EXPECT_FALSE(app->Models().frmBoard.Visible);
}

TEST_F(LoopTest, NarrowScreenReducesTheGameWindow) {
    desk.SetScreenSize(800, 600);
    Load({"Reduce SpadesWindow = 600"});
    table = desk.AddWindow("Game: Spades Table: Elm Host: bob", {20, 30, 660, 580});
    app->Tick();
    EXPECT_EQ(desk.WindowRect(table), (platform::Rect{-5, 25, 595, 575}));
}

TEST_F(LoopTest, EndKeepsTheWindowPositionsForTheNextRun) {
    Boot({"CFG = places.txt"});
    desk.Move(lastHand, {300, 420, 500, 620});
    app->End();
    EXPECT_FALSE(app->Ended()) << "End takes effect at the next tick";
    app->Tick();
    EXPECT_TRUE(app->Ended());
    EXPECT_FALSE(app->TimerEnabled());
    std::vector<std::string> lines;
    ASSERT_TRUE(core::ReadTextFile(core::JoinPath(home, "places.txt"), 1252, lines));
    ASSERT_GE(lines.size(), 9u);
    EXPECT_NE(lines[4].find("Last Hand Window"), std::string::npos);
    // The next run puts a "Last Hand" window that opens at the corner back.
    Load({"CFG = places.txt"});
    desk.Move(lastHand, {0, 0, 200, 200});
    app->Tick();
    EXPECT_EQ(desk.WindowRect(lastHand), (platform::Rect{300, 420, 500, 620}));
}

TEST_F(LoopTest, WindowListSkipsHiddenWindowsAndCollectsPopups) {
    Boot({"TopmostPlayerInfo = yes"});
    desk.AddWindow("Game: Spades Table: Pine Host: zed", {0, 0, 100, 100},
                   platform::WindowInfo{.Decorated = true, .Visible = false});
    const auto bare = desk.AddWindow("Player information", {0, 0, 100, 100},
                                     platform::WindowInfo{.Decorated = false, .Visible = true});
    const auto info = desk.AddWindow("Player information", {0, 0, 100, 100});
    const auto alerts = desk.AddWindow("Alerts", {0, 0, 100, 100});
    const auto lobby = desk.AddWindow("Yahoo! Spades", {10, 10, 1010, 810});
    app->Tick();
    EXPECT_NE(app->Models().frmZ.Caption.find("Oak"), std::string::npos) << "a hidden table is not the game";
    EXPECT_TRUE(desk.Find(info)->Topmost);
    EXPECT_FALSE(desk.Find(bare)->Topmost) << "a window without caption or border is not listed";
    EXPECT_FALSE(desk.Find(alerts)->Topmost) << "\"Alerts\" is not \"Alert\"";
    EXPECT_EQ(desk.WindowRect(lobby), (platform::Rect{200, 100, 1000, 700}));
}

// ---------------------------------------------------------------------------
// The right counter after a deal is filed
// ---------------------------------------------------------------------------

// A deal whose bids were not all seen still gets the right counter; its start
// is the line before the deal, not the one the deal just wrote.
TEST_F(LoopTest, CounterOfAnUnseenBiddingStartsFromTheLineBefore) {
    Boot(kCounters);
    ASSERT_NE(app->Models().Counters.CounterShown, 2);
    fake.hands = {SomeHand("me")};
    fake.score = {{50, 1, 30, 2}, {120, 3, 80, 5}};
    app->CaptureHandNow();
    ASSERT_EQ(app->FiledCount(), 1);
    const auto& c = app->Models().Counters.frmCounter;
    EXPECT_EQ(c.StartScore, (scoring::Side2{50, 30}));
    EXPECT_EQ(c.StartBags, (scoring::Side2{1, 2}));
    EXPECT_EQ(c.cPts0[0].Caption, "50");
}

// The counter goes a second after the deal was filed, also when that second
// is the first of a new day.
TEST_F(LoopTest, CounterHiddenASecondAfterFilingAcrossMidnight) {
    clock = platform::VirtualClock(platform::LocalTime{2026, 3, 5, 23, 59, 50});
    Boot(kCounters);
    ASSERT_LT(clock.Elapsed(), 9000u);
    clock.Advance(static_cast<std::uint32_t>(9000 - clock.Elapsed()));  // 23:59:59
    fake.hands = {SomeHand("me")};
    fake.score = {{50, 1, 30, 2}};
    app->CaptureHandNow();
    ASSERT_EQ(app->FiledCount(), 1);
    ASSERT_EQ(clock.Now().Second, 59);
    const auto& counters = app->Models().Counters;
    EXPECT_EQ(counters.CounterShown, 2);
    app->Tick();
    EXPECT_EQ(counters.CounterShown, 2) << "hidden in the second it was filed";
    clock.Advance(static_cast<std::uint32_t>(11000 - clock.Elapsed()));  // 00:00:01
    app->Tick();
    EXPECT_EQ(counters.CounterShown, 0) << "still shown after midnight";
    EXPECT_FALSE(counters.frmCounter.Window.Visible);
}

// ---------------------------------------------------------------------------
// The parts' rules
// ---------------------------------------------------------------------------

TEST_F(LoopTest, GetWinnerNamesTheRisingPositionAndBooksABrokenNil) {
    BootRig({});
    auto& d = rig->e.Deal;
    d.TrickCounts = {2, 1, 0, 3};
    d.Bids = {"3", "N", "4", "2"};
    EXPECT_EQ(rig->tricks.GetWinner({2, 2, 0, 3}), 1);
    EXPECT_EQ(d.NilBroken[1], 1);
    d.Bids = {"D", "N", "4", "2"};
    EXPECT_EQ(rig->tricks.GetWinner({3, 2, 0, 4}), 3) << "a later position overrides an earlier one";
    EXPECT_EQ(d.NilBroken[0], 2);
    EXPECT_EQ(rig->tricks.GetWinner({3, 2, 0, 4}), -1);
}

TEST_F(LoopTest, TrickNumberTurnoverEndsTheDealAndLateTricksHurryIt) {
    BootRig(kCounters);
    auto read = [&](int t, bool isNew = true, bool noTrick = false) {
        fake.trick = {};
        fake.trick.TrickNumber = t;
        fake.trick.IsNew = isNew;
        fake.trick.NoTrick = noTrick;
        return rig->tricks.Step();
    };
    // The deal ends when trick `t` follows trick `prev` (-1: none read yet).
    auto ends = [&](int prev, int t, bool isNew = true, bool noTrick = false) {
        rig->tricks.NewDeal();
        if (prev >= 0) read(prev);
        const int before = rig->dealsOver;
        read(t, isNew, noTrick);
        return rig->dealsOver > before;
    };
    EXPECT_TRUE(ends(12, 3));
    EXPECT_FALSE(ends(2, 3));
    EXPECT_FALSE(ends(-1, 0));
    EXPECT_TRUE(ends(5, 0));
    EXPECT_FALSE(ends(12, 3, false)) << "the plain form only ends on a new trick";
    EXPECT_FALSE(ends(9, 3)) << "a fall from below 10 is not the next deal";
    EXPECT_TRUE(ends(12, 0, true, true)) << "an empty window after trick 12";
    EXPECT_FALSE(ends(5, 0, true, true));
    // The automatic capture needs its job armed: nothing was read, and its
    // due time stayed.
    EXPECT_FALSE(rig->e.Slots.Armed(Job::LastHand));
    EXPECT_EQ(fake.scoreCalls, 0);
    // Tricks 11 and 12 bring the capture forward.
    auto& slots = rig->e.Slots;
    slots.Arm(Job::LastHand, clock.TickCount() + 10000);
    rig->tricks.NewDeal();
    read(10);
    EXPECT_EQ(slots.DueAt(Job::LastHand), clock.TickCount() + 10000);
    read(11);
    EXPECT_EQ(slots.DueAt(Job::LastHand), clock.TickCount() + 3000);
    read(12);
    EXPECT_EQ(slots.DueAt(Job::LastHand), clock.TickCount() + 2000);
    EXPECT_EQ(slots.DueAt(Job::LastTrick), clock.TickCount() + 800);
}

// Bids come in one by one: the watch is rescheduled by their number, and Nil
// alerts sound for a bid that just became Nil (two Nils warn with two beeps).
// The fourth bid begins the deal's play, with the trick count of the last
// deal forgotten.
TEST_F(LoopTest, BidStepSchedulesByTheNumberOfBidsAndAlertsNils) {
    BootRig({"AlertNilBids = yes", "BidTrickCounter = (*,0),(*,0)"});
    fake.trick.TrickNumber = 5;
    (void)rig->tricks.Step();  // the last deal stopped at trick 5
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
        const auto r = rig->bids.Step(true);
        EXPECT_EQ(desk.Sounds().size(), row.sounds) << n << " bids";
        if (n < 4) {
            EXPECT_EQ(r, tracking::BidResult::BidsIncomplete);
            EXPECT_EQ(rig->e.Slots.DueAt(Job::BidWatch), clock.TickCount() + row.due) << n << " bids";
        } else {
            EXPECT_EQ(r, tracking::BidResult::DealBegins);
        }
    }
    const auto& slots = rig->e.Slots;
    EXPECT_FALSE(slots.Armed(Job::BidWatch)) << "four bids: the deal's play begins";
    EXPECT_TRUE(slots.Armed(Job::LastHand));
    EXPECT_TRUE(slots.Armed(Job::LastTrick));
    fake.trick = {};
    (void)rig->tricks.Step();
    EXPECT_EQ(rig->dealsOver, 0) << "no trick yet in a new deal does not end it";
}

TEST_F(LoopTest, CaptureCodesRetriesAndTheirMessages) {
    using tracking::CaptureResult;
    rig = std::make_unique<Rig>(desk, clock, home, fake, kCounters);
    auto& e = rig->e;
    auto& capture = rig->capture;
    // Off-line: the "Hand" button does nothing.
    EXPECT_EQ(capture.Capture(false), CaptureResult::Skipped);
    EXPECT_EQ(fake.scoreCalls, 0);
    AddTable();
    rig->GoOnline();
    // Automatic with its job disarmed: nothing, and the due time stays.
    e.Slots.Arm(Job::LastHand, 1234);
    e.Slots.Disarm(Job::LastHand);
    EXPECT_EQ(capture.Capture(true), CaptureResult::Skipped);
    EXPECT_EQ(fake.scoreCalls, 0);
    EXPECT_EQ(e.Slots.DueAt(Job::LastHand), 1234u);
    // Four empty names: read at attempts 1 and 5 only, then given up.
    fake.score = {{50, 1, 30, 2}};
    fake.hands = {reading::HandRead{}};
    EXPECT_EQ(capture.Capture(false), CaptureResult::EmptyNames);
    EXPECT_EQ(fake.handCalls, 2);
    EXPECT_EQ(rig->filer.FiledCount(), 0);
    EXPECT_EQ(e.Models.frmZ.cntBids.Caption, "9");
    // The score window shows no new line: reported only by hand.
    fake.score = {};
    EXPECT_EQ(capture.Capture(false), CaptureResult::ScoreUnchanged);
    ASSERT_FALSE(e.ErrorLog.empty());
    EXPECT_EQ(e.ErrorLog.back(), e.Models.frmErrMsg.Text);
    const std::size_t errors = e.ErrorLog.size();
    e.Slots.Arm(Job::LastHand, clock.TickCount());
    EXPECT_EQ(capture.Capture(true), CaptureResult::ScoreUnchanged);
    EXPECT_EQ(e.ErrorLog.size(), errors);
    EXPECT_EQ(e.Slots.DueAt(Job::LastHand), clock.TickCount() + 10000) << "the next automatic try";
    // A good capture files the deal; the same hands again are not filed.
    fake.score = {{50, 1, 30, 2}};
    fake.hands = {SomeHand("me")};
    EXPECT_EQ(capture.Capture(false), CaptureResult::Filed);
    ASSERT_EQ(rig->filer.FiledCount(), 1);
    fake.score = {{50, 1, 30, 2}, {90, 2, 70, 3}};
    EXPECT_EQ(capture.Capture(false), CaptureResult::HandUnchanged);
    EXPECT_EQ(rig->filer.FiledCount(), 1);
    EXPECT_GT(e.ErrorLog.size(), errors);
    // Score reading failing five times, with its text.
    fake.scoreCode = 2;
    const int calls = fake.scoreCalls;
    EXPECT_EQ(capture.Capture(false), CaptureResult::ScoreReadFailed);
    EXPECT_EQ(fake.scoreCalls - calls, 5);
    EXPECT_EQ(e.ErrorLog.back(), "Error occurred in reading score.");
}

// The bid step's reading errors, in the English and the Japanese interface.
TEST_F(LoopTest, BidStepReadingErrorsInBothInterfaces) {
    BootRig({"BidTrickCounter = (*,0),(*,0)"});
    fake.bidCode = 0;
    fake.bidCount = 1;
    fake.bids = {"3", "", "", ""};
    std::vector<std::string> shown;
    for (const bool jpn : {false, true}) {
        rig->e.Settings.JPN = jpn;
        for (const int code : {2, 4}) {
            fake.scoreCode = code;
            rig->e.Deal = tracking::DealState{};
            (void)rig->bids.Step(false);
            shown.push_back(rig->e.ErrorLog.empty() ? "" : rig->e.ErrorLog.back());
        }
    }
    EXPECT_EQ(shown, (std::vector<std::string>{"Error occurred in reading score.", "Error occurred in reading player names.",
                                               "Spades Score 読み取りのエラー.", "競技者名読み取りのエラー."}));
}

// Deals the game ended while nothing could be read cannot be filed, but
// they are told: score lines that jumped by more than one, and a new game
// begun before the old one's last deal was read. That deal is filed when the
// "Last Hand" window still shows it.
TEST_F(LoopTest, DealsEndedUnreadAreToldAsMissed) {
    using tracking::CaptureResult;
    BootRig(kCounters);
    std::vector<tracking::FiledDeal> filed;
    rig->events.OnDealFiled = [&filed](const tracking::FiledDeal& d) { filed.push_back(d); };
    auto hand = [](int k) {
        reading::HandRead h = SomeHand("me");
        for (auto& seat : h.Cards) std::swap(seat[0], seat[static_cast<std::size_t>(k)]);
        return h;
    };
    const tracking::ScoreLine a{50, 1, 30, 2}, b{90, 2, 70, 3}, c{130, 3, 40, 3};
    fake.score = {a};
    fake.hands = {hand(1)};
    ASSERT_EQ(rig->capture.Capture(false), CaptureResult::Filed);
    fake.score = {a, b, c};
    fake.hands = {hand(2)};
    ASSERT_EQ(rig->capture.Capture(false), CaptureResult::Filed);
    fake.score = {};
    EXPECT_EQ(rig->capture.Capture(false), CaptureResult::NewGame);
    fake.score = {a};
    fake.hands = {hand(3)};
    ASSERT_EQ(rig->capture.Capture(false), CaptureResult::Filed);
    ASSERT_EQ(filed.size(), 3u);
    EXPECT_EQ(filed[0].Missed, 0) << "nothing is known before the first deal filed";
    EXPECT_EQ(filed[1].Missed, 1);
    EXPECT_EQ(filed[2].Missed, 1) << "the old game's last deal";
    EXPECT_EQ(rig->e.ErrorLog.back(), "1 deal ended while the game's windows could not be read; not filed.");

    // The game's last deal still shows after the next game emptied the
    // score window: filed with the line its bids and tricks give, flagged.
    rig->e.Deal.Bids = {"3", "4", "2", "1"};
    fake.score = {a, b};
    fake.hands = {hand(4)};
    ASSERT_EQ(rig->capture.Capture(false), CaptureResult::Filed);
    fake.score = {};
    fake.hands = {hand(5)};
    rig->e.Deal.Bids = {"3", "4", "2", "1"};
    EXPECT_EQ(rig->capture.Capture(false), CaptureResult::NewGame);
    ASSERT_EQ(filed.size(), 5u);
    const tracking::FiledDeal& last = filed.back();
    EXPECT_EQ(last.ScoreRow, scoring::ExpectedScoreLine(b, last.Bids, last.Tricks));
    ASSERT_EQ(last.Warnings.size(), 1u);
    EXPECT_NE(last.Warnings[0].find("computed from the bids and tricks"), std::string::npos);
    fake.score = {a};
    fake.hands = {hand(6)};
    ASSERT_EQ(rig->capture.Capture(false), CaptureResult::Filed);
    EXPECT_EQ(filed.back().Missed, 0) << "nothing of the old game was lost";
}

// Deadlines are compared across the wrap of the tick counter; the pause keeps
// what was left of the sub-window jobs and gives it back on resume, and leaves
// the other jobs alone.
TEST(JobSlotsTest, DeadlinesHoldAcrossTheWrapAndThePause) {
    using tracking::JobSlots;
    const std::uint32_t nearWrap = 0xFFFFFF00u;
    JobSlots s;
    s.Arm(Job::LastHand, nearWrap + 0x200);  // 0x100 after the wrap
    for (std::uint32_t now : {nearWrap, 0xFFFFFFFFu, 0u, 0x100u}) EXPECT_FALSE(s.Due(Job::LastHand, now)) << now;
    EXPECT_TRUE(s.ArmedAndDue(Job::LastHand, 0x101));
    EXPECT_TRUE(JobSlots::Later(5, 0xFFFFFFF0u));
    EXPECT_FALSE(JobSlots::Later(0xFFFFFFF0u, 5));

    s.Arm(Job::LastTrick, nearWrap - 50);  // already past when paused
    s.Arm(Job::BidWatch, nearWrap + 100);
    s.Arm(Job::Reminder, nearWrap + 300);
    s.Freeze(nearWrap);
    EXPECT_EQ(s.Left(Job::LastHand), 0x200);
    EXPECT_EQ(s.Left(Job::LastTrick), 0);
    s.Thaw(0x10);
    EXPECT_EQ(s.DueAt(Job::LastHand), 0x210u);
    EXPECT_EQ(s.DueAt(Job::LastTrick), 0x10u);
    EXPECT_EQ(s.DueAt(Job::BidWatch), nearWrap + 100);
    EXPECT_EQ(s.DueAt(Job::Reminder), nearWrap + 300);
    EXPECT_TRUE(s.Armed(Job::LastHand) && s.Armed(Job::LastTrick));
}

// Our own windows repeat the table's title and player names; a window pass
// must never take one of them for the game's.
TEST_F(LoopTest, OwnWindowsAreNeverTakenForTheGame) {
    Boot({"TopmostPlayerInfo = yes"});
    desk.AddOwnWindow("Yahoo! Games: Game: Spades Table: Pine Host: zed", {0, 0, 300, 200});
    const auto ours = desk.AddOwnWindow("Player information", {0, 0, 100, 100});
    app->Tick();
    EXPECT_NE(app->Models().frmZ.Caption.find("Oak"), std::string::npos) << "our own window was taken for the game";
    EXPECT_FALSE(desk.Find(ours)->Topmost) << "our own window was taken for a popup";
}

// A new table's player list may still be empty: the rating is read again,
// each time from the list read afresh, up to 30 times; the sub-windows are
// opened whatever came of it.
class RatingSearch : public LoopTest, public ::testing::WithParamInterface<int> {};

TEST_P(RatingSearch, ANewTableTriesUpTo30Times) {
    const int emptyReads = GetParam();
    fake.info.PlayerList = {"kibitz_a,1500", "me_player,1612"};
    fake.info.ButtonXY[1] = {100, 120};
    fake.listShownAfter = emptyReads;
    ASSERT_NO_FATAL_FAILURE(Boot({"MyYahooID = me_player"}));
    EXPECT_EQ(fake.listReads, std::min(emptyReads + 1, 30));
    EXPECT_EQ(core::Trim(app->Rating()->MyRating.Caption), emptyReads < 30 ? "1612" : "");
    EXPECT_EQ(desk.Clicks().size(), 1u) << "the sub-window button was not pressed";
}

INSTANTIATE_TEST_SUITE_P(EmptyListReads, RatingSearch, ::testing::Values(0, 4, 29, 1000));

// Every tick that gets that far puts the companion windows that are kept on
// top back on top: card play, error, bid help, score window and the current
// counter; a window not kept on top is left where it is.
TEST_F(LoopTest, CompanionWindowsKeptOnTopEveryTick) {
    using tracking::CompanionWindow;
    std::vector<CompanionWindow> raised;
    events.OnRaiseWindow = [&](CompanionWindow w) { raised.push_back(w); };
    Boot({"MyYahooID = me_player", "CountCards = yes (*,0)", "PasteScoreTable = yes (*,0)",
          "BidTrickCounter = (*,0),(*,0)", "HelpBidIn4thSeat = yes (*,0)"});
    auto count = [&](CompanionWindow w) { return std::count(raised.begin(), raised.end(), w); };
    app->Tick();
    raised.clear();
    app->Tick();
    EXPECT_EQ(count(CompanionWindow::CardPlay), 1);
    EXPECT_EQ(count(CompanionWindow::Score), 1);
    EXPECT_EQ(count(CompanionWindow::ErrMsg), 0) << "the error window is not shown";
    EXPECT_EQ(count(CompanionWindow::RemainingCards), 0) << "not switched on";
    app->CaptureHandNow();  // nothing to read: the error window shows
    ASSERT_TRUE(app->Models().frmErrMsg.Visible);
    raised.clear();
    app->Tick();
    EXPECT_EQ(count(CompanionWindow::ErrMsg), 1);
    EXPECT_EQ(count(CompanionWindow::CardPlay), 1);
}

// The window finder keeps the handles; a sub-window about to be copied is
// first moved wholly onto the screen.
TEST_F(LoopTest, SubWindowsAreFoundAndPutOnTheScreenBeforeACopy) {
    desk.SetScreenSize(800, 600);
    BootRig({});
    rig->w.FindSubWindow(-1);
    const platform::WindowHandle trick = rig->w.Sub(1);
    ASSERT_NE(trick, 0u);
    EXPECT_EQ(rig->e.Cap.SubWindowHandle(1), trick);
    EXPECT_EQ(rig->e.Cap.SubWindowHandle(2), lastHand);
    EXPECT_GT(rig->e.Cap.CaptureSubWindow(1), 0);
    EXPECT_EQ(desk.WindowRect(trick), (platform::Rect{605, 0, 805, 200}));
    rig->w.Forget();
    EXPECT_EQ(rig->e.Cap.SubWindowHandle(1), 0u);
}

}  // namespace
