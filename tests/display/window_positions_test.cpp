#include "display/window_positions.h"

#include <gtest/gtest.h>

#include "core/folders.h"
#include "temp_dir.h"

using namespace display;
using namespace display_test;
using P = platform::Point;

namespace {
constexpr int kCp = 1252;
const platform::Rect kMain{100, 50, 400, 650};  // 300 x 600
}  // namespace

TEST(WindowPositions, LinesInPrintZonesKeepingOldPairsAndClamping) {
    EXPECT_EQ(PrintZones({PrintNum(-5), PrintNum(20), "x"}), "-5             20           x");
    EXPECT_EQ(PrintZones({PrintNum(-2147483647LL - 1), "y"}), "-2147483648   y");

    const PosTable previous = {P{5, 6}, P{7, 8}, P{9, 10}};
    PosTable cur{};
    cur[PosSpadesWindow] = {1200, -50};  // far off: clamped
    cur[PosScoreWindow] = {0, 0};        // not there: the old pair
    cur[PosLastHandWindow] = {-4, 4};    // left + top = 0: the old pair too
    cur[PosRightCounter] = {-3, 7};
    const std::vector<std::string> want = {" 1280         PC Screen Width",
                                           " 100           50            600          Tarvello Window",
                                           " 0            -10           Spades Window",
                                           " 7             8            Score Window",
                                           " 9             10           Last Hand Window",
                                           " 0             0            Last Trick Window",
                                           " 0             0            Card Play Window",
                                           " 0             0            Left Counter",
                                           "-3             7            Right Counter"};
    EXPECT_EQ(FormatWindowPositions(1280, kMain, cur, previous), want);

    // On a small screen a window near the left edge stores its left from the right edge.
    const auto small = FormatWindowPositions(800, platform::Rect{100, 0, 500, 300}, PosTable{}, PosTable{});
    EXPECT_EQ(small[1].substr(0, 14), " 400          ");  // 100 + (800 - 500)
    const auto farRight = FormatWindowPositions(800, platform::Rect{450, 0, 750, 300}, PosTable{}, PosTable{});
    EXPECT_EQ(farRight[1].substr(0, 14), " 450          ");
}

TEST(WindowPositions, SaveAndLoadRoundTrip) {
    ProgramDir dir;
    const std::string path = dir.File("Pos.CFG");
    PosTable cur{};
    cur[PosSpadesWindow] = {10, 20};
    cur[PosCardPlayWindow] = {300, 400};
    ASSERT_TRUE(SaveWindowPositions(path, 1280, kMain, cur, kCp));
    EXPECT_EQ(dir.Get("Pos.CFG").substr(0, 31), " 1280         PC Screen Width\r\n");
    // That a later save keeps the pairs of windows not open is fuzzed.
    const LoadedPositions got = LoadWindowPositions(path, {1280, 1024}, platform::Rect{0, 0, 300, 600}, kCp);
    EXPECT_TRUE(got.Found && got.Main == kMain && got.PosCount == 7);
    EXPECT_EQ(got.Pos, (PosTable{P{10, 20}, P{}, P{}, P{}, P{300, 400}, P{}, P{}}));
}

TEST(WindowPositions, LoadClampsPairsAndKeepsTheMainWindowOnScreen) {
    ProgramDir dir;
    const std::string path = dir.File("pos.txt");
    dir.Put("pos.txt",
               " 1024         PC Screen Width\r\n"
               " 900          -1           600          Tarvello Window\r\n"
               " 1200         30           Spades Window\r\n"
               "-40          -40           Score Window\r\n"
               " 5            1001         Last Hand Window\r\n");
    const LoadedPositions got = LoadWindowPositions(path, {1024, 768}, platform::Rect{10, 20, 310, 620}, kCp);
    ASSERT_TRUE(got.Found);
    // x 900 would reach past the right edge; a negative y keeps the top.
    EXPECT_EQ(got.Main, (platform::Rect{724, 20, 1024, 620}));
    EXPECT_EQ(got.PosCount, 3);
    EXPECT_EQ(got.Pos, (PosTable{P{0, 30}, P{-10, -15}, P{5, 0}}));
    // Past the bottom: moved up to end at the edge.
    dir.Put("pos.txt", " 1024 \r\n 10 700 \r\n");
    const LoadedPositions low = LoadWindowPositions(path, {1024, 768}, platform::Rect{0, 0, 300, 600}, kCp);
    EXPECT_EQ(low.Main, (platform::Rect{10, 168, 310, 768}));
    EXPECT_EQ(low.PosCount, 0);
}

// Garbage files are fuzzed: loading clamps every pair and a save keeps them.
TEST(WindowPositions, OtherScreenWidthsAndMissingSettings) {
    ProgramDir dir;
    const std::string path = dir.File("pos.txt");
    ASSERT_TRUE(SaveWindowPositions(path, 1280, kMain, PosTable{}, kCp));
    LoadedPositions got = LoadWindowPositions(path, {1920, 1080}, kMain, kCp);
    EXPECT_TRUE(!got.Found && got.Deleted) << "a file for another screen width is deleted";
    EXPECT_EQ(got.Main, kMain);
    EXPECT_FALSE(std::filesystem::exists(path));
    got = LoadWindowPositions(path, {1920, 1080}, kMain, kCp);
    EXPECT_FALSE(got.Found || got.Deleted);
    // No setting: nothing happens; a setting names the file in any letter case.
    EXPECT_TRUE(SaveWindowPositions("", 1280, kMain, PosTable{}, kCp));
    EXPECT_EQ(PositionFilePath(dir.Folders(), "  "), "");
    dir.Put("Pos.Cfg", "");
    EXPECT_EQ(PositionFilePath(dir.Folders(), "POS.CFG"), dir.File("Pos.Cfg"));
}
