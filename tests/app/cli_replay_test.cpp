// `tarvellos-cli replay` as an outside check runs it: JSON Lines on stdout,
// the program folder's files, exit codes and messages for bad scenarios.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <sys/wait.h>
#include <unistd.h>

#include "core/json.h"
#include "core/text.h"

namespace {

namespace fs = std::filesystem;

struct CliRun {
    int code = -1;
    std::vector<core::Json> lines;
    std::string out, err;
};

// Runs the tool with these arguments: exit code, stdout (as JSON lines unless
// told it is text), stderr.
CliRun Cli(const std::string& args, bool json = true) {
    const std::string errPath = (fs::temp_directory_path() / ("tarvellos_cli_replay_stderr_" + std::to_string(::getpid()) + ".txt")).string();
    const std::string cmd = std::string(TARVELLOS_CLI) + " " + args + " 2>'" + errPath + "'";
    CliRun r;
    FILE* f = popen(cmd.c_str(), "r");
    if (!f) return r;
    char buf[4096];
    for (std::size_t n; (n = fread(buf, 1, sizeof buf, f)) > 0;) r.out.append(buf, n);
    const int st = pclose(f);
    r.code = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    std::stringstream ss(r.out);
    for (std::string line; json && std::getline(ss, line);) {
        std::string error;
        r.lines.emplace_back();
        EXPECT_TRUE(core::Json::Parse(line, r.lines.back(), error)) << "not JSON: " << line;
    }
    std::ifstream e(errPath);
    r.err.assign(std::istreambuf_iterator<char>(e), {});
    return r;
}

// Each test replays into an empty program folder.
struct CliReplay : ::testing::Test {
    void SetUp() override { fs::remove_all(out); }
    void TearDown() override { fs::remove_all(out); }

    CliRun Replay(const std::string& scenario) {
        const std::string path = (fs::temp_directory_path() / ("tarvellos_cli_replay_" + std::to_string(::getpid()) + ".json")).string();
        std::ofstream(path, std::ios::binary) << scenario;
        return Cli("replay '" + path + "' --out '" + out + "'");
    }

    const std::string out = (fs::temp_directory_path() / ("tarvellos_cli_replay_out_" + std::to_string(::getpid()))).string();
};

// One list of the counter's labels joined by "|".
std::string Texts(const core::Json& deal, const char* key) {
    std::string s;
    for (const auto& t : deal.Get("counter")->Get(key)->Items()) s += (s.empty() ? "" : "|") + t.AsString();
    return s;
}

const std::string kHead = R"JSON({"start": "2026-03-05T21:00:00", "language": 1, "screen": [1280, 1024],
 "table": {"name": "Oak", "host": "alice", "dnilPass": false, "suicide": false},
 "settings": ["MyYahooID = me_player", "BidTrickCounter = (*,0),(*,0)"],
 "alertFile": ["badguy_77(Staller),"],
 "players": ["me_player", "lefty_one", "partner_x", "righty_two"],
 "ratings": ["1534", "1620", "1480", "1701"],)JSON";

// North holds the lowest cards of every suit, East the highest.
const std::string kHands = R"(["2C","3C","4C","5C","2D","3D","4D","2H","3H","4H","2S","3S","4S"],
 ["AS","KS","QS","JS","TS","AH","KH","QH","AD","KD","QD","AC","KC"],
 ["5S","6S","7S","8S","9S","5H","6H","7H","8H","5D","6D","7D","8D"],)";
const std::string kWest = R"(["6C","7C","8C","9C","TC","JC","QC","9D","TD","JD","9H","TH","JH"])";

TEST_F(CliReplay, NilAndDoubleNilMadeAndSet) {
    CliRun r = Replay(kHead + R"( "deals": [
      {"dealer": 3, "hands": [)" + kHands + kWest + R"(], "bids": ["N", "D", "4", "3"]},
      {"dealer": 0, "hands": [)" + kHands + kWest + R"(], "bids": ["D", "N", "4", "3"]}],
     "seed": 7})");
    ASSERT_EQ(r.code, 0) << r.err;
    ASSERT_EQ(r.lines.size(), 2u) << r.out;
    // North's Nil made (+100) and South's 4 set (-40); East's Double Nil set
    // (-200) and West's 3 made with East's twelve tricks (+30, 9 bags).
    EXPECT_EQ(r.lines[0].Get("file")->AsString() + " " + r.lines[0].Get("scoreRow")->Dump(),
              "03_05_001 [60, 0, -161, 9]");
    EXPECT_EQ(Texts(r.lines[0], "cTrk") + " / " + Texts(r.lines[0], "cPts") + " / " + Texts(r.lines[0], "cBag"),
              "1|12|13 / 60|-161 / N Making|DNil Set");
    // North's Double Nil made (+200), South's 4 set; East's Nil set (-100),
    // West's 3 made: 9 more bags bring E/W to 18, a penalty of 100. N/S: 60 + 200 - 40.
    EXPECT_EQ(std::to_string(r.lines[1].Get("scoreRow")->Items()[0].AsInt()) + " " + Texts(r.lines[1], "cBag"),
              "220 D Making|Nil Set");

    // The record file holds every card with the lead marks, and the score line.
    std::vector<std::string> lines;
    ASSERT_TRUE(core::ReadTextFile((fs::path(out) / "Work" / "03_05_001.spd").string(), 1252, lines));
    ASSERT_GE(lines.size(), 8u);
    // West dealt: North leads the first trick with [2C].
    EXPECT_EQ(lines[0] + "|" + lines[1] + "|" + core::Left(lines[2], 4) + "|" + lines[7],
              "me_player, lefty_one, partner_x, righty_two|N, D, 4, 3|[2C]|60, 0, -161, 9");
    // The Nil history, and the scenario's files written before start-up.
    for (const char* file : {"Work/RecordNILs.TXT", "TarvelloS.INI", "Alert.TXT"})
        EXPECT_TRUE(fs::exists(fs::path(out) / file)) << file;
}

TEST_F(CliReplay, RandomDealsToTheEndOfAGame) {
    CliRun r = Replay(kHead + R"( "deals": 13, "seed": 2})");
    ASSERT_EQ(r.code, 0) << r.err;
    // Deal numbers in order, and one game-over line with its four score figures
    // right after the deal that ends the game (the next deal opens a new one).
    std::string seen;
    for (const auto& j : r.lines) {
        if (j.Has("deal")) seen += std::to_string(j.Get("deal")->AsInt()) + " ";
        if (j.Has("gameOver") && j.Get("gameOver")->AsBool() && j.Get("score")->Size() == 4u) seen += "over ";
    }
    EXPECT_EQ(seen, "1 2 3 4 5 6 7 8 9 10 11 12 over 13 ");
}

// A deal whose record file cannot be written (here "Work" is a file) is not
// filed as far as the user is concerned: say so and fail.
TEST_F(CliReplay, UnwritableWorkFolderFails) {
    fs::create_directories(out);
    std::ofstream((fs::path(out) / "Work").string()) << "not a folder";
    CliRun r = Replay(kHead + R"( "deals": 1, "seed": 2})");
    EXPECT_NE(r.code, 0);
    EXPECT_NE(r.err.find("was not saved"), std::string::npos) << r.err;
}

// The histories count as much as the records: a Nil report or rating
// history that could not be written is named on stderr too, and fails the run.
TEST_F(CliReplay, LostHistoriesAreNamedToo) {
    for (const char* blocker : {"Work/RecordNILs.TXT.tmp~", "SpadesHistory.TXT.tmp~"})
        fs::create_directories(fs::path(out) / blocker);
    CliRun r = Replay(kHead + R"( "deals": 13, "seed": 2})");
    EXPECT_EQ(r.code, 1) << r.err;
    std::vector<std::string> failed;
    for (const auto& j : r.lines) {
        if (!j.Has("failed")) continue;
        EXPECT_FALSE(j.Get("saved")->AsBool());
        for (const auto& f : j.Get("failed")->Items()) failed.push_back(f.Get("file")->AsString());
    }
    ASSERT_FALSE(failed.empty());
    bool history = false;
    for (const std::string& f : failed) {
        EXPECT_NE(r.err.find(f + " was not saved"), std::string::npos) << f << "\n" << r.err;
        history = history || f == (fs::path(out) / "SpadesHistory.TXT").string();
    }
    EXPECT_TRUE(history) << "the game's rating line";
}

TEST_F(CliReplay, BadScenariosNameWhatIsWrong) {
    const std::string badCard = R"(["6C","7C","8C","9C","TC","JC","QC","9D","TD","JD","9H","TH","ZZ"])";
    const std::pair<std::string, std::string> rows[] = {
        {"{\"language\": 1", ""},
        {kHead + R"( "deals": [{"dealer": 0, "hands": [)" + kHands + badCard + R"(], "bids": ["1","2","3","4"]}]})",
         "deals[0]"},
        {kHead + R"( "deals": 0})", ""},
        {kHead + R"( "deals": 1, "actions": [{"at": "2026-03-05T21:05:00", "do": "fly"}]})", "actions[0].do"},
    };
    for (const auto& [scenario, says] : rows) {
        CliRun r = Replay(scenario);
        EXPECT_NE(r.code, 0) << scenario;
        EXPECT_TRUE(r.lines.empty()) << r.out;
        EXPECT_TRUE(!r.err.empty() && r.err.find(says) != std::string::npos) << r.err;
    }
}

// The demo refuses a deal count or seed it cannot use instead of quietly
// playing its default game.
TEST(CliDemo, BadNumbersAreUsageErrors) {
    for (const char* args : {"--deals x", "--deals 0", "--seed -1"}) {
        const CliRun r = Cli(std::string("demo --json ") + args);
        EXPECT_EQ(std::to_string(r.code) + " [" + r.out + "]", "2 []") << args;
    }
}

// Three games: one history line each while the rating moves; none when it
// stays what the history last recorded. The demo says which, game by game.
TEST(CliDemo, ThreeGamesRecordTheRatingOnlyWhenItChanged) {
    const fs::path home = fs::temp_directory_path() / ("tarvellos_cli_demo_ratings_" + std::to_string(::getpid()));
    const std::string history = (home / "SpadesHistory.TXT").string();
    const std::string earlier = "1534 2026/03/04 20:00:00 Win  (510,300) me_player    lefty_one    partner_x    righty_two   USA";
    for (const bool same : {false, true}) {
        fs::remove_all(home);
        fs::create_directories(home);
        ASSERT_TRUE(core::WriteTextFile(history, {earlier}, 1252));
        const CliRun r = Cli("demo --json --games 3 --home '" + home.string() + "'" + (same ? " --same-ratings" : ""));
        ASSERT_EQ(r.code, 0) << r.err;
        std::string notes;
        for (const auto& j : r.lines)
            if (j.Has("gameOver"))
                notes += j.Get("rating")->AsString() + (j.Get("ratingRecorded")->AsBool() ? " recorded|" : " " + j.Get("ratingNote")->AsString() + "|");
        std::vector<std::string> lines;
        ASSERT_TRUE(core::ReadTextFile(history, 1252, lines));
        if (same) {
            const std::string unchanged = "1534 unchanged since the last recorded game|";
            EXPECT_EQ(notes, unchanged + unchanged + unchanged);
            EXPECT_EQ(lines, std::vector<std::string>{earlier});
        } else {
            // Newest first, each line with the rating the list showed after its game.
            ASSERT_EQ(lines.size(), 4u) << notes;
            EXPECT_EQ(lines[3], earlier);
            EXPECT_EQ(notes, core::Left(lines[2], 4) + " recorded|" + core::Left(lines[1], 4) + " recorded|" +
                                 core::Left(lines[0], 4) + " recorded|");
            EXPECT_NE(core::Left(lines[2], 4), "1534");
        }
        const CliRun human = Cli("demo --human --games 1 --home '" + home.string() + "'" + (same ? " --same-ratings" : ""), false);
        EXPECT_EQ(human.out.find("recorded in") != std::string::npos, !same) << human.out;
    }
    fs::remove_all(home);
}

}  // namespace
