// `tarvellos-cli read table` as users and outside checks run it.
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include "core/json.h"
#include "reading/glyphs.h"
#include "reading/image_file.h"
#include "sim/render_table.h"

namespace {

struct CliRun {
    int code = -1;
    std::string out;
};

CliRun Cli(const std::string& args) {
    CliRun r;
    const std::string cmd = std::string(TARVELLOS_CLI) + " read table " + args + " 2>/dev/null";
    FILE* f = popen(cmd.c_str(), "r");
    if (!f) return r;
    char buf[4096];
    std::size_t n;
    while ((n = fread(buf, 1, sizeof buf, f)) > 0) r.out.append(buf, n);
    const int st = pclose(f);
    r.code = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    return r;
}

core::Json ParseOrFail(const std::string& text) {
    core::Json j;
    std::string err;
    EXPECT_TRUE(core::Json::Parse(text, j, err)) << err << "\n" << text;
    return j;
}

std::filesystem::path TempDir() {
    auto d = std::filesystem::temp_directory_path() / ("rtext_cli_" + std::to_string(::getpid()));
    std::filesystem::create_directories(d);
    return d;
}

}  // namespace

TEST(CliReadTable, ReproducesTheExampleTableExactly) {
    const std::string dir = std::string(TARVELLOS_SHARED_DIR) + "/examples/readers/";
    CliRun r = Cli(dir + "example_table.png");
    ASSERT_EQ(r.code, 0);
    const core::Json got = ParseOrFail(r.out);
    std::ifstream in(dir + "example_table.json", std::ios::binary);
    const core::Json want = ParseOrFail(std::string(std::istreambuf_iterator<char>(in), {}));
    EXPECT_EQ(got.Dump(), want.Dump());
    // One object on one line, the tool's own separators.
    EXPECT_EQ(r.out, got.Dump() + "\n");
}

TEST(CliReadTable, AnnotatedCopyHasTheImageSizeAndMarksTheBox) {
    const std::string dir = std::string(TARVELLOS_SHARED_DIR) + "/examples/readers/";
    const auto out = TempDir() / "annotated.png";
    CliRun r = Cli(dir + "example_table.png --annotate " + out.string());
    ASSERT_EQ(r.code, 0);
    platform::Image a, src;
    std::string err;
    ASSERT_TRUE(reading::LoadImageFile(out.string(), a, err)) << err;
    ASSERT_TRUE(reading::LoadImageFile(dir + "example_table.png", src, err)) << err;
    EXPECT_EQ(a.Width, src.Width);
    EXPECT_EQ(a.Height, src.Height);
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

    CliRun r = Cli(path.string() + " --lang 5 --dnilpass");
    ASSERT_EQ(r.code, 0);
    const core::Json j = ParseOrFail(r.out);
    EXPECT_EQ(j.Get("bids")->Dump(), "[\"4\", \"DP\", \"\", \"N\"]");
    EXPECT_EQ(j.Get("tricks")->Dump(), "[1, 0, 2, 0]");
    EXPECT_TRUE(j.Get("dnilPass")->AsBool());
    EXPECT_TRUE(j.Get("suicide")->AsBool());
    EXPECT_EQ(j.Get("panel")->Get("stat")->AsInt(), 200);
    EXPECT_TRUE(j.Get("panel")->Get("buttons")->Has("15"));
    EXPECT_TRUE(j.Get("buttons")->Has("5"));
    EXPECT_FALSE(j.Get("buttons")->Has("4"));

    // Read as English the Italian labels are not found.
    r = Cli(path.string());
    ASSERT_EQ(r.code, 0);
    const core::Json e = ParseOrFail(r.out);
    EXPECT_EQ(e.Get("bidStatus")->AsInt(), 12);
    EXPECT_FALSE(e.Get("dnilPass")->AsBool());
}

TEST(CliReadTable, UsageErrorsAndUnreadableFilesFail) {
    const auto dir = TempDir();
    std::ofstream(dir / "junk.png") << "not an image";
    const std::string ex = std::string(TARVELLOS_SHARED_DIR) + "/examples/readers/example_table.png";
    for (const std::string& args : {std::string(), (dir / "missing.png").string(), (dir / "junk.png").string(), ex + " --lang 4",
                                    ex + " --lang", ex + " --lang x", ex + " --bogus", ex + " " + ex})
        EXPECT_NE(Cli(args).code, 0) << args;
}

TEST(CliReadTable, TinyImagesStillGiveOneObject) {
    const auto path = TempDir() / "one.png";
    std::string err;
    ASSERT_TRUE(reading::SaveImagePng(path.string(), platform::Image(1, 1), err)) << err;
    CliRun r = Cli(path.string() + " --lang 2");
    ASSERT_EQ(r.code, 0);
    const core::Json j = ParseOrFail(r.out);
    EXPECT_EQ(j.Get("box")->Dump(), "[0, 0, 0, 0]");
    EXPECT_EQ(j.Get("bidStatus")->AsInt(), 0);
    EXPECT_EQ(j.Get("panel")->Get("stat")->AsInt(), 0);
    EXPECT_FALSE(j.Get("myTurn")->AsBool());
}
