// `tarvellos-cli replay` as an outside check runs it: JSON Lines on stdout,
// the program folder's files, exit codes and messages for bad scenarios.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <sys/wait.h>

#include "core/json.h"
#include "core/text.h"

namespace {

namespace fs = std::filesystem;

struct CliRun {
    int code = -1;
    std::vector<core::Json> lines;
    std::string out, err;
};

CliRun Replay(const std::string& scenario, const std::string& out) {
    const fs::path dir = fs::temp_directory_path() / "tarvellos_cli_replay";
    fs::create_directories(dir);
    const std::string path = (dir / "scenario.json").string();
    std::ofstream(path, std::ios::binary) << scenario;
    const std::string errPath = (dir / "stderr.txt").string();
    const std::string cmd = std::string(TARVELLOS_CLI) + " replay '" + path + "' --out '" + out + "' 2>'" + errPath + "'";
    CliRun r;
    FILE* f = popen(cmd.c_str(), "r");
    if (!f) return r;
    char buf[4096];
    std::size_t n;
    while ((n = fread(buf, 1, sizeof buf, f)) > 0) r.out.append(buf, n);
    const int st = pclose(f);
    r.code = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    std::stringstream ss(r.out);
    std::string line;
    while (std::getline(ss, line)) {
        core::Json j;
        std::string error;
        EXPECT_TRUE(core::Json::Parse(line, j, error)) << "not JSON: " << line;
        r.lines.push_back(j);
    }
    std::ifstream e(errPath);
    std::stringstream es;
    es << e.rdbuf();
    r.err = es.str();
    return r;
}

std::string Texts(const core::Json* a) {
    std::string s;
    for (const auto& t : a->Items()) s += (s.empty() ? "" : "|") + t.AsString();
    return s;
}

const std::string kHead = R"JSON({"start": "2026-03-05T21:00:00", "language": 1, "screen": [1280, 1024],
 "table": {"name": "Oak", "host": "alice", "dnilPass": false, "suicide": false},
 "settings": ["MyYahooID = me_player", "BidTrickCounter = (*,0),(*,0)"],
 "alertFile": ["badguy_77(Staller),"],
 "players": ["me_player", "lefty_one", "partner_x", "righty_two"],
 "ratings": ["1534", "1620", "1480", "1701"],)JSON";

// North holds the lowest cards of every suit, East the highest.
const std::string kLow = R"(["2C","3C","4C","5C","2D","3D","4D","2H","3H","4H","2S","3S","4S"])";
const std::string kHigh = R"(["AS","KS","QS","JS","TS","AH","KH","QH","AD","KD","QD","AC","KC"])";
const std::string kMid = R"(["5S","6S","7S","8S","9S","5H","6H","7H","8H","5D","6D","7D","8D"])";
const std::string kRest = R"(["6C","7C","8C","9C","TC","JC","QC","9D","TD","JD","9H","TH","JH"])";

TEST(CliReplay, NilAndDoubleNilMadeAndSet) {
    const std::string sc = kHead + R"( "deals": [
      {"dealer": 3, "hands": [)" + kLow + "," + kHigh + "," + kMid + "," + kRest + R"(], "bids": ["N", "D", "4", "3"]},
      {"dealer": 0, "hands": [)" + kLow + "," + kHigh + "," + kMid + "," + kRest + R"(], "bids": ["D", "N", "4", "3"]}],
     "seed": 7})";
    const std::string out = (fs::temp_directory_path() / "tarvellos_cli_replay_nil").string();
    fs::remove_all(out);
    CliRun r = Replay(sc, out);
    ASSERT_EQ(r.code, 0) << r.err;
    ASSERT_EQ(r.lines.size(), 2u) << r.out;
    const core::Json& d1 = r.lines[0];
    EXPECT_EQ(d1.Get("deal")->AsInt(), 1);
    EXPECT_EQ(d1.Get("file")->AsString(), "03_05_001");
    // North's Nil made (+100) and South's 4 set (-40); East's Double Nil set
    // (-200) and West's 3 made with East's twelve tricks (+30, 9 bags).
    EXPECT_EQ(d1.Get("scoreRow")->Dump(), "[60, 0, -161, 9]");
    const core::Json* c1 = d1.Get("counter");
    EXPECT_EQ(Texts(c1->Get("cTrk")), "1|12|13");
    EXPECT_EQ(Texts(c1->Get("cPts")), "60|-161");
    EXPECT_EQ(Texts(c1->Get("cBag")), "N Making|DNil Set");
    const core::Json& d2 = r.lines[1];
    // North's Double Nil made (+200), South's 4 set; East's Nil set (-100),
    // West's 3 made: 9 more bags bring E/W to 18, a penalty of 100.
    const core::Json* row2 = d2.Get("scoreRow");
    EXPECT_EQ(row2->Items()[0].AsInt(), 60 + 200 - 40);
    EXPECT_EQ(Texts(d2.Get("counter")->Get("cBag")), "D Making|Nil Set");

    // The record file holds every card with the lead marks, and the score line.
    std::vector<std::string> lines;
    ASSERT_TRUE(core::ReadTextFile((fs::path(out) / "Work" / "03_05_001.spd").string(), 1252, lines));
    ASSERT_GE(lines.size(), 8u);
    EXPECT_EQ(lines[0], "me_player, lefty_one, partner_x, righty_two");
    EXPECT_EQ(lines[1], "N, D, 4, 3");
    EXPECT_EQ(core::Left(lines[2], 4), "[2C]") << "West dealt: North leads the first trick";
    EXPECT_EQ(lines[7], "60, 0, -161, 9");
    // The Nil history is kept in the work folder.
    EXPECT_TRUE(fs::exists(fs::path(out) / "Work" / "RecordNILs.TXT"));
    // The scenario's files were written before start-up.
    EXPECT_TRUE(fs::exists(fs::path(out) / "TarvelloS.INI"));
    EXPECT_TRUE(fs::exists(fs::path(out) / "Alert.TXT"));
    fs::remove_all(out);
}

TEST(CliReplay, RandomDealsToTheEndOfAGame) {
    const std::string sc = kHead + R"( "deals": 13, "seed": 2})";
    const std::string out = (fs::temp_directory_path() / "tarvellos_cli_replay_game").string();
    fs::remove_all(out);
    CliRun r = Replay(sc, out);
    ASSERT_EQ(r.code, 0) << r.err;
    int deals = 0, over = 0;
    for (const auto& j : r.lines) {
        if (j.Has("deal")) {
            EXPECT_EQ(j.Get("deal")->AsInt(), ++deals);
        }
        if (j.Has("gameOver")) {
            ++over;
            EXPECT_EQ(j.Get("score")->Size(), 4u);
            EXPECT_TRUE(j.Get("gameOver")->AsBool());
        }
    }
    EXPECT_EQ(deals, 13);
    EXPECT_EQ(over, 1);
    EXPECT_TRUE(fs::exists(fs::path(out) / "SpadesHistory.TXT"));
    fs::remove_all(out);
}

// A deal whose record file cannot be written (here "Work" is a file) is not
// filed as far as the user is concerned: say so and fail.
TEST(CliReplay, UnwritableWorkFolderFails) {
    const std::string out = (fs::temp_directory_path() / "tarvellos_cli_replay_nowork").string();
    fs::remove_all(out);
    fs::create_directories(out);
    std::ofstream((fs::path(out) / "Work").string()) << "not a folder";
    const std::string sc = kHead + R"( "deals": 1, "seed": 2})";
    CliRun r = Replay(sc, out);
    EXPECT_NE(r.code, 0);
    EXPECT_NE(r.err.find("could not be written"), std::string::npos) << r.err;
    fs::remove_all(out);
}

TEST(CliReplay, BadScenariosNameWhatIsWrong) {
    const std::string out = (fs::temp_directory_path() / "tarvellos_cli_replay_bad").string();
    CliRun r = Replay("{\"language\": 1", out);
    EXPECT_NE(r.code, 0);
    EXPECT_FALSE(r.err.empty());
    EXPECT_TRUE(r.lines.empty());

    const std::string badCard = kHead + R"( "deals": [{"dealer": 0, "hands": [)" + kLow + "," + kHigh + "," + kMid +
                                R"(, ["6C","7C","8C","9C","TC","JC","QC","9D","TD","JD","9H","TH","ZZ"]], "bids": ["1","2","3","4"]}]})";
    r = Replay(badCard, out);
    EXPECT_NE(r.code, 0);
    EXPECT_NE(r.err.find("deals[0]"), std::string::npos) << r.err;

    r = Replay(kHead + R"( "deals": 0})", out);
    EXPECT_NE(r.code, 0) << r.out;

    fs::remove_all(out);
}

}  // namespace

// The demo refuses a deal count or seed it cannot use instead of quietly
// playing its default game.
TEST(CliDemo, BadNumbersAreUsageErrors) {
    for (const char* args : {"--deals x", "--deals 0", "--seed -1"}) {
        const std::string cmd = std::string(TARVELLOS_CLI) + " demo --json " + args + " 2>/dev/null";
        FILE* f = popen(cmd.c_str(), "r");
        ASSERT_NE(f, nullptr);
        char buf[256];
        const std::size_t n = fread(buf, 1, sizeof buf, f);
        const int st = pclose(f);
        EXPECT_EQ(n, 0u) << args;
        EXPECT_TRUE(WIFEXITED(st) && WEXITSTATUS(st) == 2) << args;
    }
}
