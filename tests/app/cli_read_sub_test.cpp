// `tarvellos-cli read lasthand|lasttrick|score` as users and outside checks
// run it: exact JSON on stdout, exit codes, usage errors.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include "core/json.h"
#include "reading/glyphs.h"
#include "reading/image_file.h"
#include "sim/sub_windows.h"

namespace {

struct CliRun {
    int code = -1;
    std::string out;
};

// Runs the tool in `dir` with the arguments after "tarvellos-cli".
CliRun Cli(const std::string& args, const std::string& dir = ".") {
    CliRun r;
    const std::string cmd = "cd '" + dir + "' && " + std::string(TARVELLOS_CLI) + " " + args + " 2>/dev/null";
    FILE* f = popen(cmd.c_str(), "r");
    if (!f) return r;
    char buf[4096];
    std::size_t n;
    while ((n = fread(buf, 1, sizeof buf, f)) > 0) r.out.append(buf, n);
    const int st = pclose(f);
    r.code = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    while (!r.out.empty() && (r.out.back() == '\n' || r.out.back() == '\r')) r.out.pop_back();
    return r;
}

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream ss;
    ss << in.rdbuf();
    return ss.str();
}

// The JSON text in the tool's own compact form.
std::string Compact(const std::string& text) {
    core::Json j;
    std::string err;
    EXPECT_TRUE(core::Json::Parse(text, j, err)) << err << "\n" << text;
    return j.Dump();
}

std::filesystem::path TempDir() {
    auto d = std::filesystem::temp_directory_path() / ("rcards_cli_" + std::to_string(::getpid()));
    std::filesystem::create_directories(d);
    return d;
}

std::string SavePng(const platform::Image& img, const std::string& name) {
    const std::string path = (TempDir() / name).string();
    std::string err;
    EXPECT_TRUE(reading::SaveImagePng(path, img, err)) << err;
    return path;
}

const std::string kExamples = std::string(TARVELLOS_SHARED_DIR) + "/examples/readers";

}  // namespace

TEST(CliReadSub, ReproducesTheStoredExamplesExactly) {
    for (const std::string& name : std::vector<std::string>{"example_lasthand", "example_score"}) {
        std::string cmd = Slurp(kExamples + "/" + name + ".cmd");
        while (!cmd.empty() && (cmd.back() == '\n' || cmd.back() == ' ' || cmd.back() == '\r')) cmd.pop_back();
        const std::string prefix = "tarvellos-cli ";
        ASSERT_EQ(cmd.rfind(prefix, 0), 0u) << cmd;
        CliRun r = Cli(cmd.substr(prefix.size()), kExamples);
        EXPECT_EQ(r.code, 0) << name;
        EXPECT_EQ(r.out, Compact(Slurp(kExamples + "/" + name + ".json"))) << name;
    }
}

TEST(CliReadSub, LastTrickReadsEachSlotAndReportsFailure) {
    sim::LastTrickView v{{3, 2, 0, 1}, {14, 10, 2, 12}};
    const std::string ok = SavePng(sim::RenderLastTrick(v), "trick.png");
    CliRun r = Cli("read lasttrick " + ok);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.out, "{\"suits\": [3, 2, 0, 1], \"ranks\": [14, 10, 2, 12]}");

    const std::string blank = SavePng(platform::Image(270, 130, 0x2E8B57), "blank_trick.png");
    r = Cli("read lasttrick " + blank);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.out, "{\"suits\": [-1, 0, 0, 0], \"ranks\": [0, 0, 0, 0]}");
}

TEST(CliReadSub, LastHandInTheLanguageGiven) {
    reading::GlyphTable glyphs;
    sim::LastHandView v;
    v.Language = 5;
    v.Names = {"anna", "bruno", "carla", "dino"};
    const std::string ranks = "23456789TJQKA", suits = "CDHS";
    for (std::size_t p = 0; p < 4; ++p)
        for (std::size_t c = 0; c < 13; ++c) v.Cards[p][c] = std::string(1, ranks[c]) + suits[p];
    v.Marks[2][0] = 1;
    const std::string path = SavePng(sim::RenderLastHand(v, glyphs), "hand_it.png");
    CliRun r = Cli("read lasthand " + path + " --lang 5");
    ASSERT_EQ(r.code, 0);
    core::Json j;
    std::string err;
    ASSERT_TRUE(core::Json::Parse(r.out, j, err)) << r.out;
    EXPECT_EQ(j.Get("status")->AsInt(), 0);
    EXPECT_EQ(j.Get("names")->Items()[1].AsString(), "bruno");
    EXPECT_EQ(j.Get("cards")->Items()[3].Items()[12].AsString(), "AS");
    EXPECT_EQ(j.Get("cards")->Items()[0].Items()[8].AsString(), "TC");
    EXPECT_EQ(j.Get("marks")->Items()[2].Items()[0].AsInt(), 1);

    // Read as English, the Italian suit letters are not the notation's.
    r = Cli("read lasthand " + path);
    ASSERT_EQ(r.code, 0);
    ASSERT_TRUE(core::Json::Parse(r.out, j, err));
    EXPECT_EQ(j.Get("cards")->Items()[3].Items()[12].AsString(), "AP");
}

TEST(CliReadSub, CutOffScoreTableGivesStatusTwoWithWhatWasRead) {
    reading::GlyphTable glyphs;
    sim::ScoreWindowView v;
    for (int i = 1; i <= 6; ++i) v.Lines.push_back({i * 50, i, -i * 10, 9 - i});
    v.Rows = 4;  // two lines below the image's bottom
    CliRun r = Cli("read score " + SavePng(sim::RenderScoreWindow(v, glyphs), "score_cut.png"));
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.out, "{\"status\": 2, \"lines\": [[50, 1, -10, 8], [100, 2, -20, 7], [150, 3, -30, 6], [200, 4, -40, 5]]}");
}

TEST(CliReadSub, TinyImagesGiveStatusCodes) {
    const std::string one = SavePng(platform::Image(1, 1), "one.png");
    CliRun r = Cli("read lasthand " + one);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.out.rfind("{\"status\": 22, \"names\": [\"\", \"\", \"\", \"\"], \"cards\": [[\"\"", 0), 0u) << r.out;
    r = Cli("read score " + one);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.out, "{\"status\": 2, \"lines\": []}");
    r = Cli("read lasttrick " + one);
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.out, "{\"suits\": [-1, 0, 0, 0], \"ranks\": [0, 0, 0, 0]}");
}

TEST(CliReadSub, UsageErrorsAndUnreadableFiles) {
    const std::string img = kExamples + "/example_score.png";
    const std::string notImage = SavePng(platform::Image(2, 2), "x.png") + ".txt";
    { std::ofstream(notImage) << "not an image"; }
    for (const std::string& args : std::vector<std::string>{"read lasthand", "read score", "read lasttrick", "read lasthand " + img + " --lang",
                                   "read lasthand " + img + " --lang 0", "read lasthand " + img + " --lang 11",
                                   "read lasthand " + img + " --lang x", "read score " + img + " --lang 1",
                                   "read lasttrick " + img + " --mode 2", "read score " + img + " " + img,
                                   "read score /nonexistent/none.png", "read lasthand " + notImage}) {
        CliRun r = Cli(args);
        EXPECT_NE(r.code, 0) << args;
        EXPECT_EQ(r.out, "") << args;
    }
}
