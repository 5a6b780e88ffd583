// Flows of the companion seen from outside, on the simulated game read from
// pixels: the rating after each game, the table's flags and status label,
// the narrowed 624-pixel table, and the player's commands pressed by a
// scenario's actions at their virtual times.
#include <gtest/gtest.h>

#include <filesystem>

#include "core/text.h"
#include "replay/program_files.h"
#include "replay/session.h"
#include "sim/scenario.h"

namespace {

namespace fs = std::filesystem;

const std::string kTable = R"("start": "2026-03-05T21:00:00", "language": 1,
 "players": ["me_player", "lefty_one", "partner_x", "righty_two"], "seed": 3,)";
const std::string kPlainTable = R"("table": {"name": "Oak", "host": "alice", "dnilPass": false, "suicide": false},)";

// A session in a fresh program folder of its own, from the scenario's members
// after the table's (screen and settings default to a wide screen and the
// user's ID).
struct Sitting {
    Sitting(const std::string& name, const std::string& members, const std::string& screen = "[1280, 1024]",
        const std::string& settings = R"J(["MyYahooID = me_player", "BidTrickCounter = (*,0),(*,0)"])J")
        : home((fs::temp_directory_path() / ("tarvellos_flows_" + name)).string()),
          s(Parse("{" + kTable + R"("screen": )" + screen + R"(, "settings": )" + settings + ", " + members + "}"),
            Fresh(home)) {
        const replay::ProgramFiles pf = replay::WriteProgramFiles(s.Scenario, home);
        EXPECT_TRUE(pf.Ok) << pf.Error;
        s.Events.OnGameOver = [this](const tracking::GameOver& g) { games.push_back(g); };
        s.Events.OnDealFiled = [this](const tracking::FiledDeal&) { ++filed; };
    }
    ~Sitting() { fs::remove_all(home); }

    static sim::Scenario Parse(const std::string& text) {
        sim::Scenario sc;
        std::string error;
        EXPECT_TRUE(sim::ParseScenario(text, sc, error)) << error << "\n" << text;
        return sc;
    }
    static std::string Fresh(const std::string& home) {
        fs::remove_all(home);
        return home;
    }
    std::vector<std::string> History() const {
        std::vector<std::string> lines;
        (void)core::ReadTextFile(core::JoinPath(home, "SpadesHistory.TXT"), 1252, lines);
        return lines;
    }

    std::string home;
    replay::Session s;
    std::vector<tracking::GameOver> games;
    int filed = 0;
};

// ---------------------------------------------------------------------------
// Ratings
// ---------------------------------------------------------------------------

// The list shows the ratings the scenario gives after each game: a new one is
// recorded, the same one again is not; the companion reads it from the list.
TEST(RatingsAfterGames, RecordedWhenChangedOnly) {
    Sitting r("ratings", kPlainTable + R"("ratings": ["1534", "1620", "1480", "1701"], "deals": 200, "games": 2,
        "ratingsAfterGame": [["1561", "1600", "1490", "1690"], ["1561", "1610", "1470", "1720"]])");
    ASSERT_TRUE(r.s.Start());
    ASSERT_TRUE(r.s.Run());
    ASSERT_EQ(r.games.size(), 2u);
    EXPECT_EQ(core::Trim(r.games[0].Rating) + " " + r.games[0].RatingNote, "1561 recorded");
    EXPECT_TRUE(r.games[0].RatingRecorded);
    EXPECT_EQ(core::Trim(r.games[1].Rating) + " " + r.games[1].RatingNote, "1561 unchanged since the last recorded game");
    EXPECT_FALSE(r.games[1].RatingRecorded);
    const auto lines = r.History();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(core::Left(lines[0], 5), "1561 ");
    EXPECT_EQ(r.s.Game.Game().State().players[1].rating, "1610");
}

// A provisional player's first rating shows only in the table's text area;
// the companion reads it there and records the number, not "prov".
TEST(RatingsAfterGames, ProvisionalRatingReadFromTheTextArea) {
    Sitting r("provisional", kPlainTable + R"("ratings": ["provisional", "1620", "1480", "1701"], "deals": 200, "games": 1,
        "ratingsAfterGame": [["1488", "1620", "1480", "1701"]])");
    ASSERT_TRUE(r.s.Start());
    r.s.Advance(20000);
    EXPECT_EQ(r.s.App.Rating()->MyRating.Caption, "prov");
    ASSERT_TRUE(r.s.Run());
    ASSERT_EQ(r.games.size(), 1u);
    EXPECT_EQ(r.s.Game.Game().State().textArea, std::vector<std::string>{"me_player newrating: 1488"});
    EXPECT_EQ(r.s.Game.Game().State().players[0].rating, "provisional") << "the list changes with the next game";
    const auto lines = r.History();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(core::Left(lines[0], 5), "1488 ");
    // The text area as the reader reads it: the name, then the number.
    EXPECT_EQ(r.s.Screen.Readers.RatingLines(), std::vector<std::string>{"me_playernewrating:1488"});
}

// Without ratings given, the user's rating moves a few points after each game.
TEST(RatingsAfterGames, WithoutThemTheUsersRatingMoves) {
    sim::Scenario sc = Sitting::Parse("{" + kTable + kPlainTable + R"("screen": [1280, 1024], "settings": [],
        "ratings": ["1534", "1620", "1480", "1701"], "deals": 200, "games": 3})");
    platform::VirtualClock clock(sc.start);
    sim::SpadesGame game(clock, sc.game);
    game.Start();
    std::vector<std::string> seen;
    std::size_t events = 0;
    while (!game.State().finished && clock.Elapsed() < 6u * 3600 * 1000) {
        clock.Wait(1000);
        for (; events < game.Events().size(); ++events)
            if (game.Events()[events].kind == sim::EventKind::GameOver) seen.push_back(game.State().players[0].rating);
    }
    ASSERT_EQ(seen.size(), 3u);
    std::string before = "1534";
    for (const std::string& now : seen) {
        const int step = std::abs(core::ValInt(now) - core::ValInt(before));
        EXPECT_TRUE(step >= 3 && step <= 11) << before << " -> " << now;
        before = now;
    }
    EXPECT_EQ(game.State().players[1].rating, "1620") << "the others' ratings stay";
}

// ---------------------------------------------------------------------------
// The table's flags and the BOX status
// ---------------------------------------------------------------------------

// A Double Nil pass table is signalled once, a suicide table three times,
// each with the alert sound and named in red, when the player asked for it;
// unasked, the flag is only known.
TEST(TableFlags, SignalledWhenAskedFor) {
    struct Row {
        bool suicide;
        const char* setting;
        int alarms;
        const char* label;
    };
    const Row rows[] = {{false, "AlertDnilPassTable = yes", 1, "DNil Pass Table ! "},
                        {true, "AlertSuicideTable = yes", 3, "Suicide Table ! "},
                        {true, "AlertDnilPassTable = yes", 0, ""}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.setting + std::string(row.suicide ? " suicide" : " dnil"));
        const std::string table = std::string(R"("table": {"name": "Oak", "host": "alice", "dnilPass": )") +
                                  (row.suicide ? "false" : "true") + R"(, "suicide": )" + (row.suicide ? "true" : "false") + "},";
        Sitting r("flags", table + R"("ratings": ["1534", "1620", "1480", "1701"], "deals": 1)", "[1280, 1024]",
                  std::string(R"(["MyYahooID = me_player", ")") + row.setting + "\"]");
        ASSERT_TRUE(r.s.Start());
        r.s.Advance(15000);
        const auto& z = r.s.App.Models().frmZ;
        EXPECT_EQ(r.s.App.Table().SuicideTable, row.suicide);
        EXPECT_EQ(r.s.App.Table().DNilPassTable, !row.suicide);
        EXPECT_EQ(z.VisualAlarms, row.alarms);
        EXPECT_EQ(z.lblMsg.Caption, row.label);
        if (row.alarms > 0) {
            EXPECT_TRUE(z.lblMsg.Visible);
            EXPECT_EQ(z.lblMsg.ForeColor, core::Red);
            EXPECT_EQ(z.lblMsg.TextFont.Size, 14);
        }
        // The box was searched for and found: its corner in blue.
        EXPECT_EQ(z.lblBoxState.Caption, "236,247");
        EXPECT_EQ(z.lblBoxState.ForeColor, core::Blue);
    }
}

// On an 800-pixel screen the game window is narrowed to 624 pixels; the
// English table then has its known layout, the player list lower down, and
// the box needs no search.
TEST(NarrowTable, The624LayoutIsReadWithoutASearch) {
    Sitting r("narrow", kPlainTable + R"("ratings": ["1534", "1620", "1480", "1701"], "deals": 2)", "[800, 600]",
              R"J(["MyYahooID = me_player", "Reduce SpadesWindow = 624", "BidTrickCounter = (*,0),(*,0)"])J");
    ASSERT_TRUE(r.s.Start());
    ASSERT_TRUE(r.s.Run());
    EXPECT_EQ(r.filed, 2);
    EXPECT_EQ(r.s.Desktop.WindowRect(r.s.Game.TableWindow()).value_or(platform::Rect{}).Width(), 624);
    EXPECT_EQ(r.s.App.Models().frmZ.lblBoxState.Caption, "Box OK") << "no search was made";
    EXPECT_EQ(core::Trim(r.s.App.Rating()->MyRating.Caption), "1534") << "the list read at its lower place";
    EXPECT_TRUE(r.s.App.ErrorLog().empty()) << r.s.App.ErrorLog().front();
}

// ---------------------------------------------------------------------------
// The player's commands, pressed by a scenario's actions
// ---------------------------------------------------------------------------

// What the player sees after each action, one line each.
std::string Snapshot(const replay::Session& s) {
    const auto& app = s.App;
    const auto& box = app.Models().filBox;
    std::string files;
    for (const std::string& f : box.Entries) files += f + " ";
    const auto* alerts = app.Alerts();
    std::string line = "shown=" + app.ShownRecordName() + " files=" + files + "online=" +
                       std::to_string(static_cast<int>(app.Online()));
    if (alerts) {
        line += " alert=" + (alerts->View.AlertName.Visible ? alerts->View.AlertName.Caption : std::string("-"));
        line += alerts->View.cmdAlertNone.Visible ? " none-button" : "";
    }
    return line + " timer=" + app.Models().frmZ.cmdTimer.Caption;
}

// After the game, the player looks at a stored deal, deletes one record
// (first undone, then confirmed), puts a player on the alert list from the
// seat menu, asks for the table to be checked, records the rating by hand,
// moves a counter, restarts, empties the work folder and ends: each action
// at its time, each with its effect, and the counter's place kept for the
// next run.
TEST(Actions, EveryFlowOfThePlayerFromAScenario) {
    const std::string actions = R"("actions": [
        {"at": "2026-03-05T21:15:00", "do": "openRecord", "arg": "03_05_001"},
        {"at": "2026-03-05T21:15:10", "do": "selectRecord", "arg": 0},
        {"at": "2026-03-05T21:15:11", "do": "deleteRecord"},
        {"at": "2026-03-05T21:15:12", "do": "undoDelete"},
        {"at": "2026-03-05T21:15:20", "do": "selectRecord", "arg": 0},
        {"at": "2026-03-05T21:15:21", "do": "deleteRecord"},
        {"at": "2026-03-05T21:15:22", "do": "confirmDelete"},
        {"at": "2026-03-05T21:15:25", "do": "pressNoneButton"},
        {"at": "2026-03-05T21:15:30", "do": "chooseSeatMenuEntry", "arg": [1, "Staller"]},
        {"at": "2026-03-05T21:15:35", "do": "pressPromptButton"},
        {"at": "2026-03-05T21:15:40", "do": "recordRatingNow"},
        {"at": "2026-03-05T21:15:58", "do": "pressBoardButton", "arg": 3},
        {"at": "2026-03-05T21:16:00", "do": "restartTable"},
        {"at": "2026-03-05T21:16:01", "do": "togglePause"},
        {"at": "2026-03-05T21:16:30", "do": "togglePause"},
        {"at": "2026-03-05T21:16:35", "do": "moveCompanionWindow", "arg": ["rightCounter", 700, 650]},
        {"at": "2026-03-05T21:16:40", "do": "emptyWorkFolder", "arg": true},
        {"at": "2026-03-05T21:16:50", "do": "end"}],)";
    const std::string settings = R"J(["MyYahooID = me_player", "BidTrickCounter = (*,0),(*,0)", "CFG = places.txt",
        "AskAlert = (*,0)"])J";
    Sitting r("actions", kPlainTable + actions + R"("ratings": ["1534", "1620", "1480", "1701"], "deals": 2)",
              "[1280, 1024]", settings);
    ASSERT_EQ(r.s.ActionsError(), "");
    std::vector<std::string> seen;
    const fs::path work = fs::path(r.home) / "Work";
    bool backedUp = false;
    r.s.OnAction = [&](const replay::Action& a) {
        seen.push_back(a.What.substr(a.What.find(' ') + 1) + ": " + Snapshot(r.s));
        if (a.What.ends_with("confirmDelete")) backedUp = fs::exists(work / "BAK03_05_002.spd");
    };
    ASSERT_TRUE(r.s.Start());
    ASSERT_TRUE(r.s.Run()) << "the session ends with the player's End";
    EXPECT_TRUE(r.s.App.Ended());
    ASSERT_EQ(r.filed, 2);
    ASSERT_EQ(seen.size(), 18u);
    const std::string both = "files=03_05_002 03_05_001 ";
    EXPECT_EQ(seen[0], "openRecord: shown=03_05_001 " + both + "online=1 alert=- none-button timer=Pause");
    EXPECT_EQ(seen[3], "undoDelete: shown=03_05_001 " + both + "online=1 alert=- none-button timer=Pause");
    EXPECT_EQ(seen[6], "confirmDelete: shown=03_05_001 files=03_05_001 online=1 alert=- none-button timer=Pause");
    EXPECT_TRUE(backedUp);
    EXPECT_EQ(seen[7], "pressNoneButton: shown=03_05_001 files=03_05_001 online=1 alert=- none-button timer=Pause");
    // The seat menu put East on the alert list with the reason; the prompt's
    // check (at the next tick) found him at the table.
    std::vector<std::string> alertFile;
    ASSERT_TRUE(core::ReadTextFile(core::JoinPath(r.home, "Alert.TXT"), 1252, alertFile));
    bool listed = false;
    for (const auto& l : alertFile) listed = listed || (core::Contains(l, "lefty_one") && core::Contains(l, "Staller"));
    EXPECT_TRUE(listed);
    EXPECT_NE(seen[10].find("alert=lefty_on"), std::string::npos) << seen[10];
    // The rating recorded by hand: a line without the game's result.
    const auto history = r.History();
    ASSERT_EQ(history.size(), 1u);
    EXPECT_EQ(core::Left(history[0], 5), "1534 ");
    EXPECT_FALSE(core::Contains(history[0], "Win") || core::Contains(history[0], "Lost")) << history[0];
    // Restart goes off-line; the next tick finds the table again.
    EXPECT_EQ(seen[12].substr(0, 30), "restartTable: shown=03_05_001 ");
    EXPECT_NE(seen[12].find("online=0"), std::string::npos) << seen[12];
    EXPECT_NE(seen[13].find("online=1"), std::string::npos) << seen[13];
    EXPECT_EQ(r.s.Game.StrayClicks(), 0) << "a board button with no board up presses nothing";
    EXPECT_TRUE(seen[13].ends_with(" timer=0") && seen[14].ends_with(" timer=Pause")) << seen[13] << "\n" << seen[14];
    // "Delete ALL Work Files" gave every record its backup name.
    EXPECT_NE(seen[16].find("files=online"), std::string::npos) << seen[16];
    EXPECT_FALSE(fs::exists(work / "03_05_001.spd"));
    EXPECT_TRUE(fs::exists(work / "BAK03_05_001.spd"));

    // The next run finds the right counter where the player put it.
    replay::Session again(r.s.Scenario, r.home);
    ASSERT_TRUE(again.App.Start());
    EXPECT_EQ(again.App.Models().Counters.frmCounter.Window.Left, 700);
    EXPECT_EQ(again.App.Models().Counters.frmCounter.Window.Top, 650);
}

// A scenario naming a command that does not exist, or giving a command a
// wrong argument, is refused with the member named.
TEST(Actions, WrongActionsNameTheMember) {
    const std::pair<std::string, std::string> rows[] = {
        {R"({"at": "2026-03-05T21:01:00", "do": "openRecrod", "arg": "x"})", "actions[0].do: \"openRecrod\" is not a command"},
        {R"({"at": "2026-03-05T21:01:00", "do": "pressBoardButton", "arg": 22})", "actions[0].arg: pressBoardButton needs a whole number 1 .. 21"},
        {R"({"at": "2026-03-05T21:01:00", "do": "togglePause", "arg": 1})", "actions[0].arg: togglePause takes no arg"},
        {R"({"at": "2026-03-05T21:01:00", "do": "chooseSeatMenuEntry", "arg": [4, "x"]})", "actions[0].arg: chooseSeatMenuEntry needs"},
        {R"({"at": "2026-03-05T21:01:00", "do": "moveCompanionWindow", "arg": ["board", 1, 2]})", "actions[0].arg: moveCompanionWindow needs"},
        {R"({"at": "2026-03-05T20:59:59", "do": "end"})", "actions[0].at: must lie between the start"},
        {R"({"at": "21:01", "do": "end"})", "actions[0].at: \"21:01\" is not a date and time"},
        {R"({"at": "2026-03-05T21:01:00", "do": "end", "when": 1})", "actions[0].when: unknown member"},
    };
    for (const auto& [action, says] : rows) {
        sim::Scenario sc;
        std::string error;
        const std::string text = "{" + kTable + kPlainTable + R"("screen": [1280, 1024], "settings": [],
            "ratings": ["1534", "1620", "1480", "1701"], "deals": 1, "actions": [)" + action + "]}";
        EXPECT_FALSE(replay::ParseSessionScenario(text, sc, error)) << action;
        EXPECT_EQ(error.substr(0, says.size()), says) << error;
    }
}

}  // namespace
