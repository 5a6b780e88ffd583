// The console tool under faults a new user meets: files that are no images,
// saves that fail, a home folder holding the player's own files.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "core/temp_dir.h"

namespace {

namespace fs = std::filesystem;

struct CliRun {
    int code = -1;
    std::string out, err;
    std::vector<std::string> errLines;
};

CliRun Cli(const std::string& args) {
    TempDir errDir;
    const std::string cmd = std::string(TARVELLOS_CLI) + " " + args + " 2>'" + errDir.File("err") + "'";
    CliRun r;
    FILE* f = popen(cmd.c_str(), "r");
    if (!f) return r;
    char buf[4096];
    for (std::size_t n; (n = fread(buf, 1, sizeof buf, f)) > 0;) r.out.append(buf, n);
    const int st = pclose(f);
    r.code = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    r.err = errDir.Get("err");
    std::stringstream ss(r.err);
    for (std::string l; std::getline(ss, l);) r.errLines.push_back(l);
    return r;
}

TEST(CliFaults, ReadRefusesWhatIsNotARegularFileInOneLine) {
    TempDir dir;
    ASSERT_EQ(mkfifo(dir.File("fifo").c_str(), 0600), 0);
    for (const std::string& image : {dir.Folder(), dir.File("fifo"), std::string("/dev/zero")})
        for (const char* kind : {"table", "score"}) {
            const CliRun r = Cli(std::string("read ") + kind + " '" + image + "'");
            EXPECT_EQ(r.code, 1) << kind << " " << image;
            ASSERT_EQ(r.errLines.size(), 1u) << r.err;
            EXPECT_NE(r.err.find("not a regular file"), std::string::npos) << r.err;
        }
}

// Saves fail from deal 6 on (a folder stands where each temporary file
// would go): every lost file is named on stderr, the JSON lines say which,
// the run fails, and no rating is claimed recorded.
TEST(CliFaults, EveryLostSaveIsNamedAndTheRunFails) {
    TempDir home;
    for (const char* blocker : {"Work/03_05_006.spd.tmp~", "Work/RecordNILs.TXT.tmp~", "SpadesHistory.TXT.tmp~"})
        fs::create_directories(home.Path() / blocker);
    const CliRun r = Cli("demo --json --home '" + home.Folder() + "'");
    EXPECT_EQ(r.code, 1);
    for (const char* lost : {"/Work/03_05_006.spd was not saved (7 times): cannot create a temporary file: Is a directory",
                             "/Work/RecordNILs.TXT was not saved", "/SpadesHistory.TXT was not saved"})
        EXPECT_NE(r.err.find(home.Folder() + lost), std::string::npos) << lost << "\n" << r.err;
    std::stringstream lines(r.out);
    int deal = 0, unsaved = 0;
    for (std::string l; std::getline(lines, l);) {
        if (l.find("\"deal\"") == std::string::npos) continue;
        ++deal;
        const bool saved = l.find("\"saved\": true") != std::string::npos;
        EXPECT_EQ(saved, deal < 6) << l;
        unsaved += l.find("\"failed\": [{\"file\": \"" + home.Folder() + "/Work/03_05_006.spd\"") != std::string::npos;
    }
    EXPECT_EQ(unsaved, 7);
    EXPECT_NE(r.out.find("\"gameOver\": true, \"score\""), std::string::npos);
    EXPECT_NE(r.out.find("\"file\": \"" + home.Folder() + "/SpadesHistory.TXT\""), std::string::npos);

    TempDir again;
    fs::create_directories(again.Path() / "SpadesHistory.TXT.tmp~");
    const CliRun human = Cli("demo --human --home '" + again.Folder() + "'");
    EXPECT_EQ(human.code, 1);
    EXPECT_EQ(human.out.find("recorded in"), std::string::npos) << human.out;
    EXPECT_NE(human.out.find("NOT recorded"), std::string::npos);
}

// The player's own settings and alert list are never replaced by built-in
// copies, by the demo or by a replay into their folder.
TEST(CliFaults, ThePlayersOwnFilesAreKept) {
    const std::string ini = "MyYahooID = me_player\r\nAlertTime = 7\r\n", alert = "my_enemy(cheats),\r\n";
    TempDir home;
    home.Put("TarvelloS.INI", ini);
    home.Put("Alert.TXT", alert);
    EXPECT_EQ(Cli("demo --json --deals 1 --home '" + home.Folder() + "'").code, 0);
    EXPECT_EQ(home.Get("TarvelloS.INI"), ini);
    EXPECT_EQ(home.Get("Alert.TXT"), alert);

    home.Put("scenario.json", R"({"start": "2026-03-05T21:00:00", "language": 1, "screen": [1280, 1024],
 "table": {"name": "Oak", "host": "alice", "dnilPass": false, "suicide": false},
 "settings": ["MyYahooID = me_player"], "alertFile": ["someone_else,"],
 "players": ["me_player", "lefty_one", "partner_x", "righty_two"], "ratings": ["1534", "1620", "1480", "1701"],
 "deals": 1, "seed": 2})");
    const CliRun r = Cli("replay '" + home.File("scenario.json") + "' --out '" + home.Folder() + "'");
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.err.find("kept the existing " + home.File("Alert.TXT")), std::string::npos) << r.err;
    EXPECT_EQ(home.Get("TarvelloS.INI"), ini);
    EXPECT_EQ(home.Get("Alert.TXT"), alert);
}

// Without --home the demo plays in a new folder of its own each time.
TEST(CliFaults, DemoWithoutHomeUsesAFreshFolder) {
    const CliRun a = Cli("demo --human --deals 1"), b = Cli("demo --human --deals 1");
    const auto folder = [](const std::string& out) {
        const std::size_t at = out.find("program folder ");
        return at == std::string::npos ? std::string() : out.substr(at + 15, out.find('\n', at) - at - 15);
    };
    ASSERT_EQ(std::pair(a.code, b.code), std::pair(0, 0));
    EXPECT_NE(folder(a.out), folder(b.out));
    EXPECT_NE(folder(a.out).find("tarvellos-demo-"), std::string::npos);
    for (const auto& r : {a, b}) fs::remove_all(folder(r.out));
}

}  // namespace
