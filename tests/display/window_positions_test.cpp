#include "display/window_positions.h"

#include <gtest/gtest.h>

#include "core/folders.h"
#include "temp_dir.h"

using namespace display;
using display_test::Exists;
using display_test::ReadBytes;
using display_test::TempDir;
using display_test::WriteBytes;

namespace {

constexpr int kCp = 1252;
const platform::Rect kMain{100, 50, 400, 650};  // 300 x 600

PosTable Positions(std::initializer_list<platform::Point> pts) {
    PosTable t{};
    int i = 0;
    for (const auto& p : pts) t[i++] = p;
    return t;
}

}  // namespace

TEST(WindowPositions, LinesUsePrintZonesOfFourteen) {
    EXPECT_EQ(PrintZones({PrintNum(1280), "PC Screen Width"}), " 1280         PC Screen Width");
    EXPECT_EQ(PrintZones({PrintNum(-5), PrintNum(20), "x"}), "-5             20           x");
    EXPECT_EQ(PrintZones({PrintNum(-2147483647LL - 1), "y"}), "-2147483648   y");

    PosTable cur{};
    cur[PosSpadesWindow] = {12, 34};
    cur[PosRightCounter] = {-3, 7};
    const auto lines = FormatWindowPositions(1280, kMain, cur, PosTable{});
    ASSERT_EQ(lines.size(), 9u);
    EXPECT_EQ(lines[0], " 1280         PC Screen Width");
    EXPECT_EQ(lines[1], " 100           50            600          Tarvello Window");
    EXPECT_EQ(lines[2], " 12            34           Spades Window");
    EXPECT_EQ(lines[3], " 0             0            Score Window");
    EXPECT_EQ(lines[8], "-3             7            Right Counter");
    EXPECT_EQ(lines[6].substr(28), "Card Play Window");
}

TEST(WindowPositions, WriteKeepsOldPairsOfAbsentWindowsAndClamps) {
    const PosTable previous = Positions({{5, 6}, {7, 8}, {9, 10}});
    PosTable cur{};
    cur[PosSpadesWindow] = {1200, -50};  // far off: clamped
    cur[PosScoreWindow] = {0, 0};        // not there: the old pair
    cur[PosLastHandWindow] = {-4, 4};    // left + top = 0: the old pair too
    const auto lines = FormatWindowPositions(1280, kMain, cur, previous);
    EXPECT_EQ(lines[2], " 0            -10           Spades Window");
    EXPECT_EQ(lines[3], " 7             8            Score Window");
    EXPECT_EQ(lines[4], " 9             10           Last Hand Window");
}

TEST(WindowPositions, SmallScreenStoresTheLeftFromTheRightEdge) {
    const auto small = FormatWindowPositions(800, platform::Rect{100, 0, 500, 300}, PosTable{}, PosTable{});
    EXPECT_EQ(small[1].substr(0, 14), " 400          ");  // 100 + (800 - 500)
    const auto farRight = FormatWindowPositions(800, platform::Rect{450, 0, 750, 300}, PosTable{}, PosTable{});
    EXPECT_EQ(farRight[1].substr(0, 14), " 450          ");
}

TEST(WindowPositions, SaveAndLoadRoundTrip) {
    TempDir dir;
    const std::string path = dir.ProgramFile("Pos.CFG");
    PosTable cur{};
    cur[PosSpadesWindow] = {10, 20};
    cur[PosCardPlayWindow] = {300, 400};
    ASSERT_TRUE(SaveWindowPositions(path, 1280, kMain, cur, kCp));
    EXPECT_EQ(ReadBytes(path).substr(0, 31), " 1280         PC Screen Width\r\n");

    // Next run: only the score window is open; the others keep their pairs.
    PosTable next{};
    next[PosScoreWindow] = {55, 66};
    ASSERT_TRUE(SaveWindowPositions(path, 1280, kMain, next, kCp));

    const LoadedPositions got = LoadWindowPositions(path, {1280, 1024}, platform::Rect{0, 0, 300, 600}, kCp);
    EXPECT_TRUE(got.Found);
    EXPECT_EQ(got.Main, kMain);
    EXPECT_EQ(got.PosCount, 7);
    EXPECT_EQ(got.Pos[PosSpadesWindow], (platform::Point{10, 20}));
    EXPECT_EQ(got.Pos[PosScoreWindow], (platform::Point{55, 66}));
    EXPECT_EQ(got.Pos[PosCardPlayWindow], (platform::Point{300, 400}));
}

TEST(WindowPositions, LoadClampsPairsAndKeepsTheMainWindowOnScreen) {
    TempDir dir;
    const std::string path = dir.ProgramFile("pos.txt");
    WriteBytes(path,
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
    EXPECT_EQ(got.Pos[PosSpadesWindow], (platform::Point{0, 30}));
    EXPECT_EQ(got.Pos[PosScoreWindow], (platform::Point{-10, -15}));
    EXPECT_EQ(got.Pos[PosLastHandWindow], (platform::Point{5, 0}));
    EXPECT_EQ(got.Pos[PosLastTrickWindow], (platform::Point{0, 0}));

    // Past the bottom: moved up to end at the edge.
    WriteBytes(path, " 1024 \r\n 10 700 \r\n");
    const LoadedPositions low = LoadWindowPositions(path, {1024, 768}, platform::Rect{0, 0, 300, 600}, kCp);
    EXPECT_EQ(low.Main, (platform::Rect{10, 168, 310, 768}));
    EXPECT_EQ(low.PosCount, 0);
}

TEST(WindowPositions, AFileForAnotherScreenWidthIsDeleted) {
    TempDir dir;
    const std::string path = dir.ProgramFile("pos.txt");
    ASSERT_TRUE(SaveWindowPositions(path, 1280, kMain, PosTable{}, kCp));
    const LoadedPositions got = LoadWindowPositions(path, {1920, 1080}, kMain, kCp);
    EXPECT_FALSE(got.Found);
    EXPECT_TRUE(got.Deleted);
    EXPECT_EQ(got.Main, kMain);
    EXPECT_FALSE(Exists(path));

    // No file, or no setting: nothing happens.
    const LoadedPositions none = LoadWindowPositions(path, {1920, 1080}, kMain, kCp);
    EXPECT_FALSE(none.Found || none.Deleted);
    EXPECT_TRUE(SaveWindowPositions("", 1280, kMain, PosTable{}, kCp));
    core::Folders f;
    f.ProgramFolder = dir.Path();
    EXPECT_EQ(PositionFilePath(f, ""), "");
    EXPECT_EQ(PositionFilePath(f, "  "), "");
    WriteBytes(dir.ProgramFile("Pos.Cfg"), "");
    EXPECT_EQ(PositionFilePath(f, "POS.CFG"), dir.ProgramFile("Pos.Cfg"));
}

TEST(WindowPositions, GarbageIsReadAsZerosAndRewrittenWhole) {
    TempDir dir;
    const std::string path = dir.ProgramFile("pos.txt");
    WriteBytes(path, std::string("\x00\xFF garbage\r\n,,,,\r\n\r\nabc def\r\n 99999999999 -99999999999\r\n", 56));
    const PosTable prev = ReadPreviousPositions(path, kCp);
    EXPECT_EQ(prev[0], (platform::Point{0, 0}));
    EXPECT_EQ(prev[1], (platform::Point{0, 0}));
    EXPECT_EQ(prev[2], (platform::Point{2147483647, -2147483647 - 1}));
    ASSERT_TRUE(SaveWindowPositions(path, 1280, kMain, PosTable{}, kCp));
    const LoadedPositions got = LoadWindowPositions(path, {1280, 1024}, kMain, kCp);
    EXPECT_TRUE(got.Found);
    EXPECT_EQ(got.PosCount, 7);
    EXPECT_EQ(got.Pos[2], (platform::Point{0, -10}));
}
