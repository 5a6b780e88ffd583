// `tarvellos-cli read table|lasthand|lasttrick|score` as users and outside
// checks run it: exact JSON on stdout, exit codes, usage errors.
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
#include "sim/render_table.h"
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
    return r;
}

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

core::Json ParseOrFail(const std::string& text) {
    core::Json j;
    std::string err;
    EXPECT_TRUE(core::Json::Parse(text, j, err)) << err << "\n" << text;
    return j;
}

std::filesystem::path TempDir() {
    auto d = std::filesystem::temp_directory_path() / ("tarvellos_cli_read_" + std::to_string(::getpid()));
    std::filesystem::create_directories(d);
    return d;
}

std::string SavePng(const platform::Image& img, const std::string& name) {
    std::string err;
    EXPECT_TRUE(reading::SaveImagePng((TempDir() / name).string(), img, err)) << err;
    return (TempDir() / name).string();
}

// "[item, item, ...]" with `n` items.
std::string List(const std::string& item, int n) {
    std::string out = "[" + item;
    for (int i = 1; i < n; ++i) out += ", " + item;
    return out + "]";
}

const std::string kExamples = std::string(TARVELLOS_SOURCE_DIR) + "/tests/data/examples/readers/";
const std::string kNoTrick = "{\"suits\": [-1, 0, 0, 0], \"ranks\": [0, 0, 0, 0]}";

}  // namespace

TEST(CliReadTable, ReproducesTheExampleTableExactly) {
    CliRun r = Cli("read table " + kExamples + "example_table.png");
    ASSERT_EQ(r.code, 0);
    const core::Json got = ParseOrFail(r.out);
    const core::Json want = ParseOrFail(Slurp(kExamples + "example_table.json"));
    EXPECT_EQ(got.Dump(), want.Dump());
    // One object on one line, the tool's own separators.
    EXPECT_EQ(r.out, got.Dump() + "\n");
}

TEST(CliReadTable, AnnotatedCopyHasTheImageSizeAndMarksTheBox) {
    const auto out = TempDir() / "annotated.png";
    CliRun r = Cli("read table " + kExamples + "example_table.png --annotate " + out.string());
    ASSERT_EQ(r.code, 0);
    platform::Image a, src;
    std::string err;
    ASSERT_TRUE(reading::LoadImageFile(out.string(), a, err)) << err;
    ASSERT_TRUE(reading::LoadImageFile(kExamples + "example_table.png", src, err)) << err;
    EXPECT_EQ((std::pair{a.Width, a.Height}), (std::pair{src.Width, src.Height}));
    EXPECT_NE(a.At(236, 247), src.At(236, 247));  // box corner drawn over
    EXPECT_EQ(a.At(600, 650), src.At(600, 650));  // elsewhere untouched
}

TEST(CliReadTable, LanguageAndDoubleNilPassOptionsOnRenderedTables) {
    reading::GlyphTable g;
    sim::TableView v;
    v.Language = 5;
    v.Bids = {std::string("4"), std::string("D"), std::nullopt, std::string("N")};
    v.Tricks = {1, 0, 2, 0};
    v.Panel = 200;
    v.SuicideMarker = true;
    const auto path = TempDir() / "italian.png";
    std::string err;
    ASSERT_TRUE(reading::SaveImagePng(path.string(), sim::RenderTableWindow(v, g), err)) << err;

    CliRun r = Cli("read table " + path.string() + " --lang 5 --dnilpass");
    ASSERT_EQ(r.code, 0);
    const core::Json j = ParseOrFail(r.out);
    EXPECT_EQ(j.Get("bids")->Dump(), "[\"4\", \"DP\", \"\", \"N\"]");
    EXPECT_EQ(j.Get("tricks")->Dump(), "[1, 0, 2, 0]");
    EXPECT_TRUE(j.Get("dnilPass")->AsBool());
    EXPECT_TRUE(j.Get("suicide")->AsBool());
    EXPECT_EQ(j.Get("panel")->Get("stat")->AsInt(), 200);
    EXPECT_TRUE(j.Get("panel")->Get("buttons")->Has("15"));

    // Read as English the Italian labels are not found.
    r = Cli("read table " + path.string());
    ASSERT_EQ(r.code, 0);
    const core::Json e = ParseOrFail(r.out);
    EXPECT_EQ(e.Get("bidStatus")->AsInt(), 12);
    EXPECT_FALSE(e.Get("dnilPass")->AsBool());
}

TEST(CliReadTable, UsageErrorsAndUnreadableFilesFail) {
    const auto dir = TempDir();
    std::ofstream(dir / "junk.png") << "not an image";
    const std::string ex = kExamples + "example_table.png";
    for (const std::string& args : {std::string(), (dir / "missing.png").string(), (dir / "junk.png").string(), ex + " --lang 4",
                                    ex + " --lang", ex + " --lang x", ex + " --bogus", ex + " " + ex})
        EXPECT_NE(Cli("read table " + args).code, 0) << args;
}

TEST(CliReadTable, TinyImagesStillGiveOneObject) {
    const auto path = TempDir() / "one.png";
    std::string err;
    ASSERT_TRUE(reading::SaveImagePng(path.string(), platform::Image(1, 1), err)) << err;
    CliRun r = Cli("read table " + path.string() + " --lang 2");
    ASSERT_EQ(r.code, 0);
    const core::Json j = ParseOrFail(r.out);
    EXPECT_EQ(j.Get("box")->Dump(), "[0, 0, 0, 0]");
    EXPECT_EQ(j.Get("bidStatus")->AsInt(), 0);
    EXPECT_EQ(j.Get("panel")->Get("stat")->AsInt(), 0);
}

TEST(CliReadSub, ReproducesTheStoredExamplesExactly) {
    for (const std::string name : {"example_lasthand", "example_score"}) {
        std::string cmd = Slurp(kExamples + name + ".cmd");
        cmd.erase(cmd.find_last_not_of(" \r\n") + 1);
        ASSERT_EQ(cmd.substr(0, 14), "tarvellos-cli ");
        const CliRun r = Cli(cmd.substr(14), kExamples);
        core::Json want;
        std::string err;
        ASSERT_TRUE(core::Json::Parse(Slurp(kExamples + name + ".json"), want, err)) << err;
        EXPECT_EQ(r.code, 0) << name;
        EXPECT_EQ(r.out, want.Dump() + "\n") << name;
    }
}

// Lead marks are in the stored example.
TEST(CliReadSub, LastHandInTheLanguageGiven) {
    reading::GlyphTable glyphs;
    sim::LastHandView v;
    v.Language = 5;
    v.Names = {"anna", "bruno", "carla", "dino"};
    std::vector<std::string> cards;
    for (std::size_t p = 0; p < 4; ++p) {
        for (std::size_t c = 0; c < 13; ++c) v.Cards[p][c] = std::string(1, "23456789TJQKA"[c]) + "CDHS"[p];
        cards.push_back(core::Json::ArrayOf(std::vector<std::string>(v.Cards[p].begin(), v.Cards[p].end())).Dump());
    }
    const std::string path = SavePng(sim::RenderLastHand(v, glyphs), "hand_it.png");
    CliRun r = Cli("read lasthand " + path + " --lang 5");
    EXPECT_EQ(r.code, 0);
    EXPECT_EQ(r.out, "{\"status\": 0, \"names\": [\"anna\", \"bruno\", \"carla\", \"dino\"], \"cards\": [" + cards[0] + ", " +
                         cards[1] + ", " + cards[2] + ", " + cards[3] + "], \"marks\": " + List(List("0", 13), 4) + "}\n");

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
    const std::pair<std::string, std::string> rows[] = {
        {"lasttrick " + SavePng(sim::RenderLastTrick({{3, 2, 0, 1}, {14, 10, 2, 12}}), "trick.png"),
         "{\"suits\": [3, 2, 0, 1], \"ranks\": [14, 10, 2, 12]}"},
        {"lasttrick " + SavePng(platform::Image(270, 130, 0x2E8B57), "blank_trick.png"), kNoTrick},
        {"score " + SavePng(sim::RenderScoreWindow(cut, glyphs), "score_cut.png"),
         "{\"status\": 2, \"lines\": [[50, 1, -10, 8], [100, 2, -20, 7], [150, 3, -30, 6], [200, 4, -40, 5]]}"},
        {"lasthand " + one, "{\"status\": 22, \"names\": " + List("\"\"", 4) + ", \"cards\": " + List(List("\"\"", 13), 4) +
                                ", \"marks\": " + List(List("0", 13), 4) + "}"},
        {"score " + one, "{\"status\": 2, \"lines\": []}"},
        {"lasttrick " + one, kNoTrick}};
    for (const auto& [args, want] : rows) {
        const CliRun r = Cli("read " + args);
        EXPECT_EQ(r.code, 0) << args;
        EXPECT_EQ(r.out, want + "\n") << args;
    }
}

TEST(CliReadSub, UsageErrorsAndUnreadableFiles) {
    const std::string img = kExamples + "example_score.png";
    const std::string notImage = SavePng(platform::Image(2, 2), "x.png") + ".txt";
    { std::ofstream(notImage) << "not an image"; }
    for (const std::string& args :
         std::vector<std::string>{"read lasthand", "read lasthand " + img + " --lang", "read lasthand " + img + " --lang 0",
                                  "read lasthand " + img + " --lang 4", "read lasthand " + img + " --lang 11",
                                  "read lasthand " + img + " --lang x", "read score " + img + " --lang 1",
                                  "read lasttrick " + img + " --mode 2", "read score " + img + " " + img,
                                  "read score /nonexistent/none.png", "read lasthand " + notImage}) {
        const CliRun r = Cli(args);
        EXPECT_NE(r.code, 0) << args;
        EXPECT_EQ(r.out, "") << args;
    }
}
