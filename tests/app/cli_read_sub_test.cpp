// `tarvellos-cli read lasthand|lasttrick|score` as users and outside checks
// run it: exact JSON on stdout, exit codes, usage errors.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include "core/json.h"
#include "reading/glyphs.h"
#include "reading/image_file.h"
#include "sim/sub_windows.h"

namespace {

struct CliRun { int code = -1; std::string out; };

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
    return std::string(std::istreambuf_iterator<char>(in), {});
}

std::string SavePng(const platform::Image& img, const std::string& name) {
    const auto dir = std::filesystem::temp_directory_path() / ("rcards_cli_" + std::to_string(::getpid()));
    std::filesystem::create_directories(dir);
    std::string err;
    EXPECT_TRUE(reading::SaveImagePng((dir / name).string(), img, err)) << err;
    return (dir / name).string();
}

const std::string kExamples = std::string(TARVELLOS_SHARED_DIR) + "/examples/readers";
const std::string kNoTrick = "{\"suits\": [-1, 0, 0, 0], \"ranks\": [0, 0, 0, 0]}";

}  // namespace

TEST(CliReadSub, ReproducesTheStoredExamplesExactly) {
    for (const std::string name : {"example_lasthand", "example_score"}) {
        std::string cmd = Slurp(kExamples + "/" + name + ".cmd");
        cmd.erase(cmd.find_last_not_of(" \r\n") + 1);
        ASSERT_EQ(cmd.substr(0, 14), "tarvellos-cli ");
        const CliRun r = Cli(cmd.substr(14), kExamples);
        core::Json want;
        std::string err;
        ASSERT_TRUE(core::Json::Parse(Slurp(kExamples + "/" + name + ".json"), want, err)) << err;
        EXPECT_EQ(r.code, 0) << name;
        EXPECT_EQ(r.out, want.Dump()) << name;
    }
}

TEST(CliReadSub, LastHandInTheLanguageGiven) {
    reading::GlyphTable glyphs;
    sim::LastHandView v;
    v.Language = 5;
    v.Names = {"anna", "bruno", "carla", "dino"};
    core::Json want = core::Json::Object(), cards = core::Json::Array(), marks = core::Json::Array();
    v.Marks[2][0] = 1;
    for (std::size_t p = 0; p < 4; ++p) {
        for (std::size_t c = 0; c < 13; ++c) v.Cards[p][c] = std::string(1, "23456789TJQKA"[c]) + "CDHS"[p];
        cards.Push(core::Json::ArrayOf(std::vector<std::string>(v.Cards[p].begin(), v.Cards[p].end())));
        marks.Push(core::Json::ArrayOf(std::vector<int>(v.Marks[p].begin(), v.Marks[p].end())));
    }
    want.Set("status", 0);
    want.Set("names", core::Json::ArrayOf(std::vector<std::string>(v.Names.begin(), v.Names.end())));
    want.Set("cards", cards);
    want.Set("marks", marks);
    const std::string path = SavePng(sim::RenderLastHand(v, glyphs), "hand_it.png");
    CliRun r = Cli("read lasthand " + path + " --lang 5");
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.out, want.Dump());

    // Read as English, the Italian suit letters are not the notation's.
    r = Cli("read lasthand " + path);
    EXPECT_EQ(r.code, 0);
    EXPECT_NE(r.out.find("\"AP\"]], \"marks\""), std::string::npos) << "West's ace of spades: " << r.out;
}

// Rendered windows, a blank trick, a cut-off score table and a 1x1 image:
// exit code 0 and the reader's status in the output.
TEST(CliReadSub, OutputAndStatusCodes) {
    reading::GlyphTable glyphs;
    sim::ScoreWindowView cut;
    for (int i = 1; i <= 6; ++i) cut.Lines.push_back({i * 50, i, -i * 10, 9 - i});
    cut.Rows = 4;  // two lines below the image's bottom
    const std::string one = SavePng(platform::Image(1, 1), "one.png");
    auto list = [](const std::string& item, int n) {  // "[item, item, ...]"
        std::string out = "[" + item;
        for (int i = 1; i < n; ++i) out += ", " + item;
        return out + "]";
    };
    const std::pair<std::string, std::string> rows[] = {
        {"lasttrick " + SavePng(sim::RenderLastTrick({{3, 2, 0, 1}, {14, 10, 2, 12}}), "trick.png"),
         "{\"suits\": [3, 2, 0, 1], \"ranks\": [14, 10, 2, 12]}"},
        {"lasttrick " + SavePng(platform::Image(270, 130, 0x2E8B57), "blank_trick.png"), kNoTrick},
        {"score " + SavePng(sim::RenderScoreWindow(cut, glyphs), "score_cut.png"),
         "{\"status\": 2, \"lines\": [[50, 1, -10, 8], [100, 2, -20, 7], [150, 3, -30, 6], [200, 4, -40, 5]]}"},
        {"lasthand " + one, "{\"status\": 22, \"names\": " + list("\"\"", 4) + ", \"cards\": " + list(list("\"\"", 13), 4) +
                                ", \"marks\": " + list(list("0", 13), 4) + "}"},
        {"score " + one, "{\"status\": 2, \"lines\": []}"},
        {"lasttrick " + one, kNoTrick}};
    for (const auto& [args, want] : rows) {
        const CliRun r = Cli("read " + args);
        EXPECT_EQ(r.code, 0) << args;
        EXPECT_EQ(r.out, want) << args;
    }
}

TEST(CliReadSub, UsageErrorsAndUnreadableFiles) {
    const std::string img = kExamples + "/example_score.png";
    const std::string notImage = SavePng(platform::Image(2, 2), "x.png") + ".txt";
    { std::ofstream(notImage) << "not an image"; }
    for (const std::string& args : std::vector<std::string>{"read lasthand", "read score", "read lasttrick", "read lasthand " + img + " --lang",
                                   "read lasthand " + img + " --lang 0", "read lasthand " + img + " --lang 4",
                                   "read lasthand " + img + " --lang 11",
                                   "read lasthand " + img + " --lang x", "read score " + img + " --lang 1",
                                   "read lasttrick " + img + " --mode 2", "read score " + img + " " + img,
                                   "read score /nonexistent/none.png", "read lasthand " + notImage}) {
        const CliRun r = Cli(args);
        EXPECT_NE(r.code, 0) << args;
        EXPECT_EQ(r.out, "") << args;
    }
}
