// Whole sessions: the simulated game on the simulated desktop, the
// companion reading it from pixels, in virtual time. Each test checks what
// the user would see: counters, record files, histories, error messages,
// and that every click lands on the game's windows.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "core/text.h"
#include "display/deal_record.h"
#include "sim/scenario.h"
#include "replay/session.h"

namespace {

namespace fs = std::filesystem;

std::string TempHome(const std::string& name) {
    auto p = fs::temp_directory_path() / ("tarvellos_session_" + name);
    fs::remove_all(p);
    return p.string();
}

struct TableSetup {
    int language = 1;
    std::string deals = "2";
    std::vector<std::string> settings = {"MyYahooID = me_player", "BidTrickCounter = (*,0),(*,0)"};
    std::vector<std::string> players = {"me_player", "lefty_one", "partner_x", "righty_two"};
    bool dnilPass = false, suicide = false;
    int seed = 7;
};

std::string Quoted(const std::vector<std::string>& v) {
    std::string s = "[";
    for (std::size_t i = 0; i < v.size(); ++i) s += (i ? ", " : "") + core::JsonQuote(v[i]);
    return s + "]";
}

sim::Scenario Make(const TableSetup& sp) {
    std::ostringstream o;
    o << R"({"start": "2026-03-05T21:00:00", "language": )" << sp.language << R"(, "screen": [1280, 1024],)"
      << R"("table": {"name": "Oak", "host": "alice", "dnilPass": )" << (sp.dnilPass ? "true" : "false")
      << R"(, "suicide": )" << (sp.suicide ? "true" : "false") << "},"
      << R"("settings": )" << Quoted(sp.settings) << ","
      << R"("players": )" << Quoted(sp.players) << ","
      << R"("ratings": ["1534", "1620", "1480", "1701"], "watchers": [["kibitz_a", "1500"]],)"
      << R"("deals": )" << sp.deals << R"(, "seed": )" << sp.seed << "}";
    sim::Scenario sc;
    std::string err;
    EXPECT_TRUE(sim::ParseScenario(o.str(), sc, err)) << err << "\n" << o.str();
    return sc;
}

struct Table {
    explicit Table(const TableSetup& sp, const std::string& name) : home(TempHome(name)), s(Make(sp), home) {
        std::string err;
        EXPECT_TRUE(s.WriteProgramFiles(err)) << err;
        s.App.OnDealFiled = [this](const tracking::FiledDeal& d) {
            filed.push_back(d);
            shown.push_back(s.Game.Game().State().lastHand);
        };
        s.App.OnGameOver = [this](const scoring::ScoreRows::Row& r) { gameOvers.push_back(r); };
    }
    ~Table() { fs::remove_all(home); }

    // The game's own score lines, in the order it showed them (all games).
    std::vector<sim::ScoreLine> GameLines() const {
        std::vector<sim::ScoreLine> lines;
        for (const auto& e : s.Game.Game().Events()) {
            if (e.kind != sim::EventKind::ScoreLineAdded) continue;
            sim::ScoreLine l{};
            std::stringstream ss(e.text);
            std::string part;
            for (int i = 0; i < 4 && std::getline(ss, part, ','); ++i) l[static_cast<std::size_t>(i)] = std::stoi(part);
            lines.push_back(l);
        }
        return lines;
    }

    // Every click landed on one of the game's windows (the simulator counts
    // the others).
    void ExpectNoStrayClicks() {
        EXPECT_EQ(s.Game.StrayClicks(), 0);
        for (const auto& c : s.Desktop.Clicks()) EXPECT_NE(c.Target, 0) << "click at " << c.At.X << "," << c.At.Y;
    }

    std::string home;
    replay::Session s;
    std::vector<tracking::FiledDeal> filed;
    std::vector<sim::FinishedDeal> shown;  // the game's "Last Hand" when each deal was filed
    std::vector<scoring::ScoreRows::Row> gameOvers;
};

bool LinesFromEvents(const Table& r) { return !r.GameLines().empty(); }

// Every deal the game played is filed with the game's score line, and the
// record file holds all 52 cards with one lead mark per trick.
void ExpectFiledAsPlayed(Table& r) {
    const auto lines = r.GameLines();
    ASSERT_TRUE(LinesFromEvents(r) || lines.empty());
    ASSERT_EQ(r.filed.size(), lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(r.filed[i].ScoreRow, lines[i]) << "deal " << i + 1;
        display::DealRecord rec;
        EXPECT_EQ(r.s.App.Records->ReadRecordFile(r.filed[i].File, rec), 0) << r.filed[i].File;
        int cards = 0, leads = 0;
        for (int t = 0; t < 13; ++t) {
            for (int seat = 0; seat < 4; ++seat) {
                cards += core::CardCode(rec.Trick[t][seat]) > 0 ? 1 : 0;
                leads += rec.Mark[t][seat] == display::MarkBrackets ? 1 : 0;
            }
        }
        EXPECT_EQ(cards, 52) << r.filed[i].File;
        EXPECT_EQ(leads, 13) << r.filed[i].File;
        // Every card and every leader as the game played them.
        const sim::FinishedDeal& lh = r.shown[i];
        ASSERT_TRUE(lh.valid);
        for (int t = 0; t < 13; ++t) {
            for (int seat = 0; seat < 4; ++seat) {
                EXPECT_EQ(rec.Trick[t][seat], lh.cards[seat][t]) << r.filed[i].File << " trick " << t + 1;
                EXPECT_EQ(rec.Mark[t][seat] == display::MarkBrackets, lh.leader[t] == seat) << r.filed[i].File;
            }
        }
        for (int seat = 0; seat < 4; ++seat) {
            EXPECT_EQ(rec.Names[seat], lh.names[seat]);
            EXPECT_EQ(r.filed[i].Tricks[seat], lh.tricks[seat]) << r.filed[i].File;
        }
    }
}

TEST(Session, TwoDealsEnglishFiledWithCountersAndRecords) {
    Table r(TableSetup{}, "english");
    ASSERT_TRUE(r.s.Start());
    ASSERT_TRUE(r.s.Run());
    ExpectFiledAsPlayed(r);
    ASSERT_EQ(r.filed.size(), 2u);
    EXPECT_EQ(r.filed[0].File, "03_05_001");
    EXPECT_EQ(r.filed[1].File, "03_05_002");
    // The right counter shows the game's score of the deal for the user's side.
    const auto& row = r.filed[1].ScoreRow;
    EXPECT_EQ(r.filed[1].cPts[0], std::to_string(row[0]));
    EXPECT_EQ(r.filed[1].cPts[1], std::to_string(row[2]));
    EXPECT_EQ(r.filed[1].cTrk[2], "13");
    EXPECT_EQ(r.s.App.frmZ.Caption, "TarvelloS  2.5 Table: Oak [alice]");
    EXPECT_TRUE(r.s.App.ErrorLog.empty()) << r.s.App.ErrorLog.front();
    r.ExpectNoStrayClicks();
}

TEST(Session, WholeGameTo500InEnglishWritesTheRatingHistory) {
    TableSetup sp;
    sp.deals = "40";
    sp.seed = 3;
    Table r(sp, "game500");
    ASSERT_TRUE(r.s.Start());
    // Until the first game is over.
    for (int i = 0; i < 4 * 3600 && r.gameOvers.empty() && !r.s.GameFinished(); ++i) r.s.Advance(1000);
    ASSERT_EQ(r.gameOvers.size(), 1u);
    const auto last = r.gameOvers[0];
    EXPECT_TRUE(last[0] >= 500 || last[2] >= 500);
    EXPECT_NE(last[0], last[2]);
    EXPECT_EQ(r.s.GamesPlayed(), 1);
    std::vector<std::string> hist;
    ASSERT_TRUE(core::ReadTextFile(core::JoinPath(r.home, "SpadesHistory.TXT"), 1252, hist));
    ASSERT_FALSE(hist.empty());
    EXPECT_NE(hist[0].find("1534"), std::string::npos) << hist[0];
    // The next game begins in the emptied score window, which the reader
    // shrinks; its deals are filed too, also those the shrunk window cuts off.
    const std::size_t firstGame = r.filed.size();
    for (int i = 0; i < 3600 && r.filed.size() < firstGame + 5; ++i) r.s.Advance(1000);
    ASSERT_EQ(r.filed.size(), firstGame + 5);
    EXPECT_EQ(r.filed.back().ScoreRow, r.GameLines()[firstGame + 4]);
    r.ExpectNoStrayClicks();
}

class Languages : public ::testing::TestWithParam<int> {};

TEST_P(Languages, DealsAreFollowedOnEverySite) {
    TableSetup sp;
    sp.language = GetParam();
    Table r(sp, "lang" + std::to_string(GetParam()));
    ASSERT_TRUE(r.s.Start());
    ASSERT_TRUE(r.s.Run()) << r.filed.size() << " filed";
    ExpectFiledAsPlayed(r);
    EXPECT_EQ(r.s.App.GameLanguage, GetParam());
    EXPECT_TRUE(r.s.App.ErrorLog.empty());
}

INSTANTIATE_TEST_SUITE_P(Sites, Languages, ::testing::Values(3, 5, 6, 8));

TEST(Session, UserSeatFoundThroughMyYahooID) {
    TableSetup sp;
    sp.players = {"lefty_one", "partner_x", "me_player", "righty_two"};  // the user sits South
    sp.deals = "1";
    Table r(sp, "seat");
    ASSERT_TRUE(r.s.Start());
    ASSERT_TRUE(r.s.Run());
    ASSERT_EQ(r.filed.size(), 1u);
    EXPECT_EQ(r.filed[0].UserSeat, core::South);
    EXPECT_EQ(r.s.App.frmZ.plName[0].Caption, "me_player");
    EXPECT_EQ(r.s.App.frmZ.plName[2].Caption, "lefty_one");
    // South's side is North-South: the counter's "We" figures are those of N/S.
    EXPECT_EQ(r.filed[0].cPts[0], std::to_string(r.filed[0].ScoreRow[0]));
}

TEST(Session, SpecialTablesAreRecognised) {
    TableSetup sp;
    sp.dnilPass = true;
    sp.deals = "1";
    Table r(sp, "dnil");
    ASSERT_TRUE(r.s.Start());
    ASSERT_TRUE(r.s.Run());
    EXPECT_TRUE(r.s.App.Table.DNilPassTable);
    EXPECT_FALSE(r.s.App.Table.SuicideTable);
    ExpectFiledAsPlayed(r);

    TableSetup su;
    su.suicide = true;
    su.deals = "1";
    Table r2(su, "suicide");
    ASSERT_TRUE(r2.s.Start());
    ASSERT_TRUE(r2.s.Run());
    EXPECT_TRUE(r2.s.App.Table.SuicideTable);
    ExpectFiledAsPlayed(r2);
    // At a suicide table one partner of each side bids Nil.
    ASSERT_EQ(r2.filed.size(), 1u);
    const auto& b = r2.filed[0].Bids;
    EXPECT_NE(core::BidKind(b[0]) != 0, core::BidKind(b[2]) != 0);
    EXPECT_NE(core::BidKind(b[1]) != 0, core::BidKind(b[3]) != 0);
}

TEST(Session, TheBoardBidsForTheUserInEveryDeal) {
    TableSetup sp;
    sp.settings.push_back("BiddingBoard = (10,10)");
    sp.deals = "2";
    Table r(sp, "board");
    ASSERT_TRUE(r.s.Start());
    const int seat = r.s.Game.Game().Setup().userSeat;
    const std::array<std::string, 2> bids = {"4", "N"};
    const std::array<int, 2> buttons = {4, 14};
    for (int deal = 0; deal < 2; ++deal) {
        // Until the board comes up for the user's bid.
        for (int i = 0; i < 3000 && !r.s.App.frmBoard.Visible; ++i) r.s.Advance(100);
        ASSERT_TRUE(r.s.App.frmBoard.Visible) << "deal " << deal + 1;
        EXPECT_EQ(r.s.Game.Game().State().turn, seat);
        r.s.App.Btn_Click(buttons[deal]);
        r.s.App.Btn_Click(17);  // the confirmation: "4 OK ?", "NIL OK?"
        EXPECT_FALSE(r.s.App.frmBoard.Visible);
        EXPECT_EQ(r.s.Game.Game().State().bids[static_cast<std::size_t>(seat)], bids[deal]);
        for (int i = 0; i < 3000 && static_cast<int>(r.filed.size()) <= deal; ++i) r.s.Advance(1000);
    }
    ASSERT_TRUE(r.s.Run());
    ASSERT_EQ(r.filed.size(), 2u);
    EXPECT_EQ(r.filed[0].Bids[static_cast<std::size_t>(seat)], "4");
    EXPECT_EQ(r.filed[1].Bids[static_cast<std::size_t>(seat)], "N");
    r.ExpectNoStrayClicks();
}

TEST(Session, GameWindowClosingAndComingBack) {
    TableSetup sp;
    sp.deals = "3";
    Table r(sp, "offline");
    ASSERT_TRUE(r.s.Start());
    for (int i = 0; i < 3600 && r.filed.empty(); ++i) r.s.Advance(1000);
    ASSERT_EQ(r.filed.size(), 1u);
    r.s.Game.CloseTable();
    r.s.Advance(2000);
    EXPECT_EQ(r.s.App.OnlineMode, 2);
    EXPECT_EQ(r.s.App.frmZ.Caption, tracking::kProgramCaption);
    r.s.Game.ReopenTable();
    r.s.Advance(2000);
    EXPECT_EQ(r.s.App.OnlineMode, 1);
    // The deals played after the return are filed again.
    ASSERT_TRUE(r.s.Run() || r.s.GameFinished());
    EXPECT_GE(r.filed.size(), 2u);
    r.ExpectNoStrayClicks();
}

TEST(Session, ClosedSubWindowsAreReopenedByClicking) {
    TableSetup sp;
    sp.deals = "3";
    Table r(sp, "reopen");
    ASSERT_TRUE(r.s.Start());
    for (int i = 0; i < 3600 && r.filed.empty(); ++i) r.s.Advance(1000);
    ASSERT_EQ(r.filed.size(), 1u);
    r.s.Game.CloseSubWindow(sim::SimGameDesktop::kLastHand);
    r.s.Game.CloseSubWindow(sim::SimGameDesktop::kScore);
    ASSERT_TRUE(r.s.Run());
    ExpectFiledAsPlayed(r);
    EXPECT_NE(r.s.Game.SubWindow(sim::SimGameDesktop::kLastHand), 0);
    r.ExpectNoStrayClicks();
}

TEST(Session, CapturesThatDeliverNothingAreRetried) {
    TableSetup sp;
    sp.deals = "2";
    Table r(sp, "nocapture");
    ASSERT_TRUE(r.s.Start());
    for (int i = 0; i < 3600 && r.s.Game.SubWindow(sim::SimGameDesktop::kLastHand) == 0; ++i) r.s.Advance(500);
    r.s.Desktop.FailCaptures(r.s.Game.SubWindow(sim::SimGameDesktop::kLastHand), 6);
    r.s.Desktop.FailCaptures(r.s.Game.SubWindow(sim::SimGameDesktop::kScore), 6);
    ASSERT_TRUE(r.s.Run());
    ExpectFiledAsPlayed(r);
}

TEST(Session, PausedCompanionMissesNothingOnceResumed) {
    TableSetup sp;
    sp.deals = "2";
    Table r(sp, "pause");
    ASSERT_TRUE(r.s.Start());
    for (int i = 0; i < 3600 && !r.s.App.SlotArmed[tracking::SlotHand]; ++i) r.s.Advance(500);
    ASSERT_TRUE(r.s.App.SlotArmed[tracking::SlotHand]);
    r.s.App.cmdTimer_Click();
    const std::int32_t left = r.s.App.SlotLeft[tracking::SlotHand];
    const std::size_t before = r.filed.size();
    r.s.Advance(30000);
    EXPECT_EQ(r.filed.size(), before) << "nothing is captured while paused";
    r.s.App.cmdTimer_Click();
    EXPECT_EQ(r.s.App.SlotDue[tracking::SlotHand], r.s.Clock.TickCount() + static_cast<std::uint32_t>(left));
    ASSERT_TRUE(r.s.Run());
    EXPECT_EQ(r.filed.size(), 2u);
}

TEST(Session, CountingFormReadsTheLastTrickCards) {
    TableSetup sp;
    sp.settings.push_back("CountCards = (10,10)");
    Table r(sp, "counting");
    ASSERT_TRUE(r.s.Start());
    // Wait for the middle of the first deal's play.
    for (int i = 0; i < 3600; ++i) {
        const auto& st = r.s.Game.Game().State();
        if (st.phase == sim::Phase::Playing && st.lastTrick.number == 6) break;
        r.s.Advance(250);
    }
    r.s.Advance(1200);
    EXPECT_TRUE(r.s.App.Rating->CountingAllowed);
    EXPECT_GE(r.s.App.PlayedCards.size(), 5u);
    ASSERT_FALSE(r.s.App.PlayedCards.empty());
    // The cards of the last trick read, by table position, are the game's.
    const auto& st = r.s.Game.Game().State();
    const auto& read = r.s.App.PlayedCards.back();
    for (int k = 0; k < 4; ++k)
        EXPECT_EQ(read[static_cast<std::size_t>(k)], st.lastTrick.cards[static_cast<std::size_t>((st.userSeat + k) % 4)]);
    // The trick labels, by table position, agree with the game's counts.
    for (int k = 0; k < 4; ++k)
        EXPECT_EQ(r.s.App.TrickCounts[static_cast<std::size_t>(k)], st.tricks[static_cast<std::size_t>((st.userSeat + k) % 4)]);
    ASSERT_TRUE(r.s.Run());
    ExpectFiledAsPlayed(r);
}

TEST(Session, RestartReconnectsOnTheNextTick) {
    TableSetup sp;
    sp.deals = "2";
    Table r(sp, "restart");
    ASSERT_TRUE(r.s.Start());
    for (int i = 0; i < 3600 && r.filed.empty(); ++i) r.s.Advance(1000);
    r.s.App.Restart();
    EXPECT_EQ(r.s.App.OnlineMode, 0);
    r.s.Advance(1500);
    EXPECT_EQ(r.s.App.OnlineMode, 1);
    ASSERT_TRUE(r.s.Run());
    EXPECT_EQ(r.filed.size(), 2u);
}

TEST(Session, SecondInstanceIsRefused) {
    Table r(TableSetup{}, "second");
    r.s.Desktop.SetPrevInstance(true);
    EXPECT_FALSE(r.s.Start());
    EXPECT_TRUE(r.s.App.Ended);
    EXPECT_TRUE(r.s.Desktop.Clicks().empty());
}

// A session runs as long as its game goes on: a long game (here one deal of
// over five hours, e.g. many deals) is not cut off by a fixed time budget.
TEST(Session, LongGamesAreFollowedToTheirEnd) {
    TableSetup sp;
    sp.deals = "1";
    sim::Scenario sc = Make(sp);
    sc.game.timing.cardMinMs = sc.game.timing.cardMaxMs = 6 * 60 * 1000;
    const std::string home = TempHome("long");
    {
        replay::Session s(sc, home);
        ASSERT_TRUE(s.Start());
        s.Timer.Stop();  // only the game's time matters here
        s.Run();
        EXPECT_TRUE(s.GameFinished());
    }
    fs::remove_all(home);
}

}  // namespace
