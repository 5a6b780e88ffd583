// Whole sessions: the simulated game on the simulated desktop, the
// companion reading it from pixels, in virtual time. Each test checks what
// the user would see: counters, record files, histories, error messages,
// and that every click lands on the game's windows.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include <unistd.h>

#include "core/text.h"
#include "core/notation.h"
#include "display/card_play.h"
#include "display/deal_record.h"
#include "sim/scenario.h"
#include "replay/program_files.h"
#include "replay/session.h"

namespace {

namespace fs = std::filesystem;

// Per process: two builds' test runs at once (or a run left behind) must
// never share a home, or one deletes the other's records mid-game.
std::string TempHome(const std::string& name) {
    auto p = fs::temp_directory_path() / ("tarvellos_session_" + std::to_string(::getpid()) + "_" + name);
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
        const replay::ProgramFiles pf = replay::WriteProgramFiles(s.Scenario, home);
        EXPECT_TRUE(pf.Ok) << pf.Error;
        s.Events.OnDealFiled = [this](const tracking::FiledDeal& d) {
            filed.push_back(d);
            shown.push_back(s.Game.Game().State().lastHand);
        };
        s.Events.OnGameOver = [this](const tracking::GameOver& g) { gameOvers.push_back(g.Score); };
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

// Every deal the game played is filed with the game's score line and trick
// counts, and its record file holds every card, leader and name as the game's
// "Last Hand" showed them.
void ExpectFiledAsPlayed(Table& r) {
    const auto lines = r.GameLines();
    ASSERT_EQ(r.filed.size(), lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string& file = r.filed[i].File;
        EXPECT_EQ(r.filed[i].ScoreRow, lines[i]) << file;
        display::DealRecord rec;
        EXPECT_EQ(r.s.App.Records()->ReadRecordFile(file, rec), 0) << file;
        const sim::FinishedDeal& lh = r.shown[i];
        ASSERT_TRUE(lh.valid);
        for (int seat = 0; seat < 4; ++seat) {
            for (int t = 0; t < 13; ++t) {
                EXPECT_EQ(rec.Trick[t][seat], lh.cards[seat][t]) << file << " trick " << t + 1;
                EXPECT_EQ(rec.Mark[t][seat] == display::MarkBrackets, lh.leader[t] == seat) << file;
            }
            EXPECT_EQ(rec.Names[seat], lh.names[seat]);
            EXPECT_EQ(r.filed[i].Tricks[seat], lh.tricks[seat]) << file;
        }
    }
}

class Languages : public ::testing::TestWithParam<int> {};

TEST_P(Languages, DealsAreFollowedOnEverySite) {
    TableSetup sp;
    sp.language = GetParam();
    Table r(sp, "lang" + std::to_string(GetParam()));
    ASSERT_TRUE(r.s.Start());
    ASSERT_TRUE(r.s.Run()) << r.filed.size() << " filed";
    ExpectFiledAsPlayed(r);
    EXPECT_EQ(static_cast<int>(r.s.App.Language()), GetParam());
    EXPECT_TRUE(r.s.App.ErrorLog().empty()) << r.s.App.ErrorLog().front();
    r.ExpectNoStrayClicks();
}

INSTANTIATE_TEST_SUITE_P(Sites, Languages, ::testing::Values(1, 3, 5, 6, 8));

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
    // The player list shows the user's new rating after the game.
    const std::string renewed = r.s.Game.Game().State().players[0].rating;
    EXPECT_NE(renewed, "1534");
    EXPECT_EQ(hist[0].substr(0, 5), renewed + " ") << hist[0];
    // The next game begins in the emptied score window, which the reader
    // shrinks; its deals are filed too, also those the shrunk window cuts off.
    const std::size_t firstGame = r.filed.size();
    for (int i = 0; i < 3600 && r.filed.size() < firstGame + 5; ++i) r.s.Advance(1000);
    ASSERT_EQ(r.filed.size(), firstGame + 5);
    EXPECT_EQ(r.filed.back().ScoreRow, r.GameLines()[firstGame + 4]);
    r.ExpectNoStrayClicks();
}

TEST(Session, UserSeatFoundThroughMyYahooIDAndItsCounter) {
    TableSetup sp;
    sp.players = {"lefty_one", "partner_x", "me_player", "righty_two"};  // the user sits South
    sp.deals = "1";
    Table r(sp, "seat");
    ASSERT_TRUE(r.s.Start());
    ASSERT_TRUE(r.s.Run());
    ASSERT_EQ(r.filed.size(), 1u);
    EXPECT_EQ(r.filed[0].File, "03_05_001");
    EXPECT_EQ(r.filed[0].UserSeat, core::South);
    EXPECT_EQ(r.s.App.Models().frmZ.plName[0].Caption, "me_player");
    EXPECT_EQ(r.s.App.Models().frmZ.plName[2].Caption, "lefty_one");
    EXPECT_EQ(r.s.App.Models().frmZ.Caption, "TarvelloS  2.5 Table: Oak [alice]");
    // South's side is North-South: the counter's "We" figures are those of N/S.
    const auto& row = r.filed[0].ScoreRow;
    EXPECT_EQ(r.filed[0].cPts[0] + "|" + r.filed[0].cPts[1], std::to_string(row[0]) + "|" + std::to_string(row[2]));
    EXPECT_EQ(r.filed[0].cTrk[2], "13");
}

TEST(Session, SpecialTablesAreRecognised) {
    for (bool suicide : {false, true}) {
        TableSetup sp;
        sp.dnilPass = !suicide;
        sp.suicide = suicide;
        sp.deals = "1";
        Table r(sp, suicide ? "suicide" : "dnil");
        ASSERT_TRUE(r.s.Start());
        ASSERT_TRUE(r.s.Run());
        EXPECT_EQ(r.s.App.Table().DNilPassTable, !suicide);
        EXPECT_EQ(r.s.App.Table().SuicideTable, suicide);
        ExpectFiledAsPlayed(r);
        ASSERT_EQ(r.filed.size(), 1u);
        if (!suicide) continue;
        // At a suicide table one partner of each side bids Nil.
        const auto& b = r.filed[0].Bids;
        EXPECT_NE(core::BidKind(b[0]) != 0, core::BidKind(b[2]) != 0);
        EXPECT_NE(core::BidKind(b[1]) != 0, core::BidKind(b[3]) != 0);
    }
}

TEST(Session, TheBoardBidsForTheUserInEveryDeal) {
    TableSetup sp;
    sp.settings.push_back("BiddingBoard = (10,10)");
    Table r(sp, "board");
    ASSERT_TRUE(r.s.Start());
    const auto seat = static_cast<std::size_t>(r.s.Game.Game().Setup().userSeat);
    const std::array<std::string, 2> bids = {"4", "N"};
    const std::array<int, 2> buttons = {4, 14};
    for (std::size_t deal = 0; deal < 2; ++deal) {
        // Until the board comes up for the user's bid.
        for (int i = 0; i < 3000 && !r.s.App.Models().frmBoard.Visible; ++i) r.s.Advance(100);
        ASSERT_TRUE(r.s.App.Models().frmBoard.Visible) << "deal " << deal + 1;
        EXPECT_EQ(r.s.Game.Game().State().turn, static_cast<int>(seat));
        r.s.App.PressBoardButton(buttons[deal]);
        r.s.App.PressBoardButton(17);  // the confirmation: "4 OK ?", "NIL OK?"
        EXPECT_FALSE(r.s.App.Models().frmBoard.Visible);
        for (int i = 0; i < 3000 && r.filed.size() <= deal; ++i) r.s.Advance(1000);
        ASSERT_EQ(r.filed.size(), deal + 1);
        EXPECT_EQ(r.filed[deal].Bids[seat], bids[deal]);
    }
    EXPECT_EQ(r.filed[1].File, "03_05_002");
    r.ExpectNoStrayClicks();
}

// A window over the game's bid panel: the board's press is not made, the
// user is told, and once the window is gone the press goes through.
TEST(Session, TheBoardDoesNotPressACoveredBidButton) {
    TableSetup sp;
    sp.settings.push_back("BiddingBoard = (10,10)");
    sp.deals = "1";
    Table r(sp, "board_covered");
    ASSERT_TRUE(r.s.Start());
    for (int i = 0; i < 3000 && !r.s.App.Models().frmBoard.Visible; ++i) r.s.Advance(100);
    ASSERT_TRUE(r.s.App.Models().frmBoard.Visible);
    const platform::Rect game = *r.s.Desktop.WindowRect(r.s.Game.TableWindow());
    const auto cover = r.s.Desktop.AddWindow("Notepad", {game.Left + 100, game.Top + 250, game.Left + 400, game.Top + 450});
    const std::size_t clicks = r.s.Desktop.Clicks().size();
    r.s.App.PressBoardButton(4);
    r.s.App.PressBoardButton(17);
    EXPECT_EQ(r.s.Desktop.Clicks().size(), clicks);
    ASSERT_FALSE(r.s.App.ErrorLog().empty());
    EXPECT_NE(r.s.App.ErrorLog().back().find("covers the button"), std::string::npos) << r.s.App.ErrorLog().back();
    EXPECT_EQ(r.s.Game.Game().State().bids[static_cast<std::size_t>(r.s.Game.Game().Setup().userSeat)], "");

    r.s.Desktop.CloseWindow(cover);
    r.s.App.PressBoardButton(4);
    r.s.App.PressBoardButton(17);
    EXPECT_EQ(r.s.Game.Game().State().bids[static_cast<std::size_t>(r.s.Game.Game().Setup().userSeat)], "4");
    r.ExpectNoStrayClicks();
}

// Captures that deliver nothing at first, a pause, the table window closing
// and coming back, a restart, closed sub-windows (reopened by clicking): no
// deal is lost.
TEST(Session, InterruptionsLoseNoDeal) {
    TableSetup sp;
    sp.deals = "3";
    Table r(sp, "interrupted");
    ASSERT_TRUE(r.s.Start());
    for (int i = 0; i < 3600 && r.s.Game.SubWindow(sim::SimGameDesktop::kLastHand) == 0; ++i) r.s.Advance(500);
    r.s.Desktop.FailCaptures(r.s.Game.SubWindow(sim::SimGameDesktop::kLastHand), 6);
    r.s.Desktop.FailCaptures(r.s.Game.SubWindow(sim::SimGameDesktop::kScore), 6);
    for (int i = 0; i < 3600 && !r.s.App.Slots().Armed(tracking::Job::LastHand); ++i) r.s.Advance(500);
    ASSERT_TRUE(r.s.App.Slots().Armed(tracking::Job::LastHand));
    r.s.App.TogglePause();
    const std::int32_t left = r.s.App.Slots().Left(tracking::Job::LastHand);
    r.s.Advance(30000);
    EXPECT_TRUE(r.filed.empty()) << "nothing is captured while paused";
    r.s.App.TogglePause();
    EXPECT_EQ(r.s.App.Slots().DueAt(tracking::Job::LastHand), r.s.Clock.TickCount() + static_cast<std::uint32_t>(left));
    for (int i = 0; i < 3600 && r.filed.empty(); ++i) r.s.Advance(1000);
    ASSERT_EQ(r.filed.size(), 1u);
    r.s.Game.CloseTable();
    r.s.Advance(2000);
    EXPECT_EQ(r.s.App.Online(), tracking::OnlineMode::Offline);
    EXPECT_EQ(r.s.App.Models().frmZ.Caption, tracking::kProgramCaption);
    r.s.Game.ReopenTable();
    r.s.Advance(2000);
    EXPECT_EQ(r.s.App.Online(), tracking::OnlineMode::Online);
    r.s.App.RestartTable();
    EXPECT_EQ(r.s.App.Online(), tracking::OnlineMode::Fresh);
    r.s.Advance(1500);
    EXPECT_EQ(r.s.App.Online(), tracking::OnlineMode::Online);
    r.s.Game.CloseSubWindow(sim::SimGameDesktop::kLastHand);
    r.s.Game.CloseSubWindow(sim::SimGameDesktop::kScore);
    ASSERT_TRUE(r.s.Run());
    ExpectFiledAsPlayed(r);
    EXPECT_EQ(r.filed.size(), 3u);
    EXPECT_NE(r.s.Game.SubWindow(sim::SimGameDesktop::kLastHand), 0);
    r.ExpectNoStrayClicks();
}

// A font entry that names the wrong digit (every "0" read as "8", so a ten
// reads as no card) makes each "Last Hand" break the rules: it is read again
// up to the fifth time, the broken rule goes to the log each time, and the
// deal is filed all the same, with the rule as a warning in the error window
// and in the filed deal.
TEST(Session, MisreadDealsAreReadAgainAndFiledWithAWarning) {
    TableSetup sp;
    sp.settings.push_back("log = trace.log");
    Table r(sp, "misread");
    for (auto& g : r.s.Screen.Readers().Glyphs().Glyphs)
        if (g.Name == "0") g.Name = "8";
    ASSERT_TRUE(r.s.Start());
    ASSERT_TRUE(r.s.Run());
    ASSERT_EQ(r.filed.size(), 2u) << "a doubtful reading is filed, not dropped";
    for (const auto& d : r.filed) {
        ASSERT_EQ(d.Warnings.size(), 1u) << d.File;
        EXPECT_NE(d.Warnings[0].find("not a card"), std::string::npos) << d.Warnings[0];
    }
    ASSERT_EQ(r.s.App.ErrorLog().size(), 2u);
    EXPECT_EQ(r.s.App.ErrorLog()[0], "Deal " + r.filed[0].File + " filed from a reading that breaks a rule of the game: " +
                                         r.filed[0].Warnings[0] + ".");
    std::vector<std::string> log;
    ASSERT_TRUE(core::ReadTextFile(core::JoinPath(r.home, "trace.log"), 1252, log));
    int again = 0, filedWarned = 0;
    for (const auto& l : log) {
        if (l.find("not a card; read again") != std::string::npos) ++again;
        if (l.find("not a card; filed with a warning") != std::string::npos) ++filedWarned;
    }
    EXPECT_EQ(again, 2 * 4) << "each deal read five times in all";
    EXPECT_EQ(filedWarned, 2);
}

// The same game read right: no warning anywhere.
TEST(Session, ReadingsThatKeepTheRulesCarryNoWarning) {
    TableSetup sp;
    sp.deals = "6";
    Table r(sp, "rules_hold");
    ASSERT_TRUE(r.s.Start());
    ASSERT_TRUE(r.s.Run());
    ASSERT_EQ(r.filed.size(), 6u);
    for (const auto& d : r.filed) EXPECT_TRUE(d.Warnings.empty()) << d.File << ": " << d.Warnings.front();
    EXPECT_TRUE(r.s.App.ErrorLog().empty()) << r.s.App.ErrorLog().front();
}

// A shape no font knows (the "x" switched off) is written to the log once,
// in the table's hex form and where it was seen, however often it is read.
TEST(Session, UnknownShapesAreHarvestedOnceEach) {
    TableSetup sp;
    sp.settings.push_back("log = trace.log");
    Table r(sp, "harvest");
    for (auto& g : r.s.Screen.Readers().Glyphs().Glyphs)
        if (g.Name == "x") g.Column[1] = 0;
    ASSERT_TRUE(r.s.Start());
    ASSERT_TRUE(r.s.Run());
    std::vector<std::string> log;
    ASSERT_TRUE(core::ReadTextFile(core::JoinPath(r.home, "trace.log"), 1252, log));
    std::vector<std::string> shapes;
    for (const auto& l : log)
        if (core::StartsWith(l, "? ")) shapes.push_back(l.substr(2, l.find(' ', 2) - 2));
    ASSERT_FALSE(shapes.empty()) << "partner_x's name holds an unknown shape";
    for (std::size_t i = 0; i < shapes.size(); ++i) {
        EXPECT_EQ(shapes[i].size() % 3, 0u) << shapes[i];
        for (std::size_t j = i + 1; j < shapes.size(); ++j) EXPECT_NE(shapes[i], shapes[j]) << "written twice";
    }
    // Without a log nothing is harvested, and nothing breaks.
    TableSetup quiet;
    Table q(quiet, "harvest_quiet");
    for (auto& g : q.s.Screen.Readers().Glyphs().Glyphs)
        if (g.Name == "x") g.Column[1] = 0;
    ASSERT_TRUE(q.s.Start());
    ASSERT_TRUE(q.s.Run());
    EXPECT_EQ(q.filed.size(), 2u);
}

// The work folder cannot be written for one deal (a file stands where the
// folder was, as a full or broken disk would refuse it): the error window
// names the file, the deal is kept in memory, and it is written before the
// next deal's own record once the folder is back, under the name it missed.
TEST(Session, AFailedSaveIsShownKeptAndWrittenAtTheNextDealEnd) {
    TableSetup sp;
    sp.deals = "3";
    Table r(sp, "failed_save");
    const fs::path work = fs::path(r.home) / "Work", aside = fs::path(r.home) / "Work.away";
    const auto filed = r.s.Events.OnDealFiled;
    r.s.Events.OnDealFiled = [&](const tracking::FiledDeal& d) {
        filed(d);
        if (r.filed.size() == 1) {
            fs::rename(work, aside);
            core::WriteTextFile(work.string(), {"not a folder"}, 1252);
        } else if (r.filed.size() == 2) {
            fs::remove(work);
            fs::rename(aside, work);
        }
    };
    ASSERT_TRUE(r.s.Start());
    ASSERT_TRUE(r.s.Run());
    ASSERT_EQ(r.filed.size(), 3u);
    const tracking::FiledDeal& lost = r.filed[1];
    EXPECT_TRUE(lost.File.empty());
    ASSERT_FALSE(lost.Saves.empty());
    EXPECT_FALSE(lost.Saves[0].Saved);
    EXPECT_EQ(lost.Kept, 1);
    ASSERT_FALSE(r.s.App.ErrorLog().empty());
    const std::string& shown = r.s.App.ErrorLog().back();
    EXPECT_EQ(shown.rfind("Not saved: " + lost.Saves[0].Path, 0), 0u) << shown;
    EXPECT_NE(shown.find("1 deal is kept and saved again after the next deal."), std::string::npos) << shown;

    const tracking::FiledDeal& next = r.filed[2];
    ASSERT_FALSE(next.Retried.empty());
    EXPECT_TRUE(next.Retried[0].Saved);
    EXPECT_EQ(next.Retried[0].Path, lost.Saves[0].Path) << "the name the deal missed";
    EXPECT_EQ(next.Kept, 0);
    // The kept record is the second deal's, and the third has its own file.
    display::DealRecord rec;
    ASSERT_EQ(r.s.App.Records()->ReadRecordFile(fs::path(lost.Saves[0].Path).stem().string(), rec), 0);
    for (int seat = 0; seat < 4; ++seat)
        for (int t = 0; t < 13; ++t) EXPECT_EQ(rec.Trick[t][seat], r.shown[1].cards[seat][t]);
    EXPECT_NE(next.File, fs::path(lost.Saves[0].Path).stem().string());
    EXPECT_EQ(r.s.App.Records()->ReadRecordFile(next.File, rec), 0);
    EXPECT_EQ(r.s.App.Models().filBox.Entries.size(), 3u);

    // A rating line that cannot be written at the game's end is shown too.
    TableSetup sp2;
    sp2.deals = "40";
    sp2.seed = 3;
    Table g(sp2, "failed_rating");
    fs::create_directories(fs::path(g.home) / "SpadesHistory.TXT.tmp~");
    ASSERT_TRUE(g.s.Start());
    for (int i = 0; i < 4 * 3600 && g.gameOvers.empty() && !g.s.GameFinished(); ++i) g.s.Advance(1000);
    ASSERT_EQ(g.gameOvers.size(), 1u);
    bool ratingShown = false;
    for (const auto& text : g.s.App.ErrorLog())
        ratingShown = ratingShown || text.rfind("Not saved: " + core::JoinPath(g.home, "SpadesHistory.TXT"), 0) == 0;
    EXPECT_TRUE(ratingShown);
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
    EXPECT_TRUE(r.s.App.Rating()->CountingAllowed);
    ASSERT_GE(r.s.App.Deal().PlayedCards.size(), 5u);
    // The cards of the last trick and the trick labels, by table position,
    // are the game's.
    const auto& st = r.s.Game.Game().State();
    const auto& read = r.s.App.Deal().PlayedCards.back();
    for (std::size_t k = 0; k < 4; ++k) {
        const auto seat = static_cast<std::size_t>((st.userSeat + static_cast<int>(k)) % 4);
        EXPECT_EQ(read[k], st.lastTrick.cards[seat]);
        EXPECT_EQ(r.s.App.Deal().TrickCounts[k], st.tricks[seat]);
    }
}

// The card displays after every filed deal: the card play window holds each
// card of the record in its trick column and seat row, the hand display
// shows all 52 cards, and the score sheet prints the new totals; mid-deal
// the card play window holds the tricks read so far.
TEST(Session, CardDisplaysAndScoreSheetFollowEachDeal) {
    TableSetup sp;
    sp.deals = "3";
    sp.settings.insert(sp.settings.end(), {"CountCards = yes (*,0)", "MyHand = (*,0)", "PasteScoreTable = (*,0)"});
    Table r(sp, "views");
    int checked = 0;
    r.s.Events.OnDealFiled = [&](const tracking::FiledDeal& d) {
        const auto& m = r.s.App.Models();
        const auto& rec = r.s.App.Record();
        const auto& sheet = m.CardSheet;
        ASSERT_TRUE(m.frmCardPlay.Window.Visible);
        const auto cells = m.frmCardPlay.Items.All<core::DrawImage>();
        ASSERT_EQ(cells.size(), 52u);
        for (const auto& c : cells) {
            const int t = (c.X - 38) / 26;
            int row = 0;
            while (row < 3 && display::CardPlayRowY(row) != c.Y) ++row;
            ASSERT_EQ(display::CardPlayRowY(row), c.Y);
            const int seat = (d.UserSeat + row + 1) % 4;
            const int code = core::CardCode(rec.Trick[static_cast<std::size_t>(t)][static_cast<std::size_t>(seat)]);
            EXPECT_EQ(c.SrcX, 25 * (code % 100 - 2)) << "trick " << t + 1 << " row " << row;
            EXPECT_EQ(c.SrcY % (4 * sheet.LineHeight), (code / 100) * sheet.LineHeight % (4 * sheet.LineHeight));
        }
        ASSERT_TRUE(m.Hands.Window.Visible);
        int ranks = 0;
        for (const auto& i : m.Hands.Hands.Items.All<core::DrawImage>())
            if (i.SrcY != m.TextSheet.SuitRowY()) ++ranks;
        EXPECT_EQ(ranks, 52);
        EXPECT_EQ(m.Hands.TrickTable.All<core::DrawImage>().size(), 52u);
        // The user's side's total after the deal, at the sheet's last line.
        const int uc = (d.UserSeat % 2) * 2;
        const int total = d.ScoreRow[static_cast<std::size_t>(uc)];
        const auto& sh = m.ScoreSheet;
        if (rec.ScoreRowCount > 1) {
            bool found = false;
            for (const auto& t : sh.Main.All<core::DrawText>())
                found |= t.Y == sh.CurrentY + 2 * sh.M.Pitch && t.X > sh.M.C[1] && t.Text == std::to_string(std::abs(total));
            EXPECT_TRUE(found) << "total " << total;
        }
        EXPECT_TRUE(m.frmScore.Window.Visible);
        EXPECT_EQ(m.frmScore.MyName[3].Caption.substr(0, 4), "me_p");
        ++checked;
    };
    ASSERT_TRUE(r.s.Start());
    // Mid-deal: the card play window shows the tricks read so far.
    for (int i = 0; i < 3600; ++i) {
        const auto& st = r.s.Game.Game().State();
        if (st.phase == sim::Phase::Playing && st.lastTrick.number == 5) break;
        r.s.Advance(250);
    }
    r.s.Advance(1500);
    const auto& cp = r.s.App.Models().frmCardPlay;
    EXPECT_EQ(cp.Items.All<core::DrawImage>().size(), 4 * r.s.App.Deal().PlayedCards.size());
    EXPECT_GE(r.s.App.Deal().PlayedCards.size(), 4u);
    ASSERT_TRUE(r.s.Run());
    EXPECT_EQ(checked, 3);
}

TEST(Session, SecondInstanceIsRefused) {
    Table r(TableSetup{}, "second");
    r.s.Desktop.SetPrevInstance(true);
    EXPECT_FALSE(r.s.Start());
    EXPECT_TRUE(r.s.App.Ended());
    EXPECT_FALSE(r.s.App.TimerEnabled());
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
