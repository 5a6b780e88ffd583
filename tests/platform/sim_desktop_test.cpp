#include <gtest/gtest.h>

#include <array>

#include "platform/clock.h"
#include "platform/sim_desktop.h"

using namespace platform;

namespace {

std::vector<std::uint16_t> Copy(SimDesktop& d, WindowHandle h, bool client, Rect r, std::int32_t& lines) {
    const std::int32_t w = r.Width(), len = w + (w & 1);
    std::vector<std::uint16_t> bits(static_cast<std::size_t>(len * r.Height()), 0xFFFF);
    lines = d.CopyRegion(h, client, r, bits);
    return bits;
}

}  // namespace

// Client areas are captured in every session test.
TEST(SimDesktopCapture, BottomUpFiveFiveFiveWithPaddedRows) {
    SimDesktop d(800, 600);
    WindowHandle h = d.AddWindow("Game", {10, 20, 110, 120});
    Image img(100, 100, Rgb(255, 255, 255));
    img.Set(0, 0, Rgb(0xF8, 0x08, 0x10));  // top-left
    img.Set(2, 4, Rgb(7, 8, 255));           // bottom-left of the region below
    d.SetImage(h, img);
    std::int32_t lines = 0;
    auto bits = Copy(d, h, false, {0, 0, 3, 5}, lines);  // odd width: rows of 4 words
    ASSERT_EQ(lines, 5);
    ASSERT_EQ(bits.size(), 20u);
    // Lowest row first: pixel (x, y) at (Bottom-1-y)*Length + x.
    EXPECT_EQ(bits[(5 - 1 - 0) * 4 + 0], (31 << 10) | (1 << 5) | 2);
    EXPECT_EQ(bits[0 * 4 + 2], (0 << 10) | (1 << 5) | 31);
    EXPECT_EQ(bits[3], 0xFFFF) << "the pad word is left alone";
}

TEST(SimDesktopCapture, DesktopComposesWindowsInZOrder) {
    SimDesktop d(200, 100);
    d.SetBackground(0);
    WindowHandle a = d.AddWindow("A", {0, 0, 50, 50});
    d.SetImage(a, Image(50, 50, Rgb(255, 0, 0)));
    WindowHandle b = d.AddWindow("B", {25, 0, 75, 50});
    d.SetImage(b, Image(50, 50, Rgb(0, 255, 0)));
    std::int32_t lines = 0;
    auto bits = Copy(d, d.DesktopWindow(), false, {20, 10, 30, 11}, lines);
    ASSERT_EQ(lines, 1);
    EXPECT_EQ(bits[0], 31 << 10);  // x=20: A
    EXPECT_EQ(bits[9], 31 << 5);   // x=29: B on top
    d.SetWindowPos(a, ZOrder::Topmost);
    bits = Copy(d, d.DesktopWindow(), false, {20, 10, 30, 11}, lines);
    EXPECT_EQ(bits[9], 31 << 10);
}

// Clicks on the game's buttons (and stray ones) are followed by the simulator
// and session tests; here a window closing mid-read and the sounds.
TEST(SimDesktopFaults, WindowClosesMidReadAndEmptySoundsAreNotPlayed) {
    SimDesktop d;
    WindowHandle h = d.AddWindow("T", {0, 0, 40, 40});
    d.CloseAfterCalls(h, 2);
    EXPECT_EQ(d.WindowText(h), "T");
    Rect r;
    EXPECT_FALSE(d.GetWindowRect(h, r));
    EXPECT_EQ(d.WindowText(h), "");
    EXPECT_EQ(d.WindowStyle(h), 0u);
    d.PlaySystemSound("");
    d.PlaySystemSound("SystemExclamation");
    EXPECT_EQ(d.Sounds(), std::vector<std::string>{"SystemExclamation"});
}

TEST(VirtualClockTest, WaitRunsDueJobsInOrderAndNestedWaitsAdvance) {
    VirtualClock c({2026, 3, 5, 23, 59, 59}, 100);
    std::vector<int> order;
    c.Schedule(150, [&] { order.push_back(2); });
    c.Schedule(120, [&] {
        order.push_back(1);
        c.Wait(10);  // a job that itself waits
    });
    c.Schedule(900, [&] { order.push_back(3); });
    c.Wait(500);
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
    EXPECT_EQ(c.TickCount(), 600u);
    c.Wait(1000);
    EXPECT_EQ(order.back(), 3);
    const LocalTime t = c.Now();
    EXPECT_EQ((std::array<int, 3>{t.Day, t.Hour, t.Weekday}), (std::array<int, 3>{6, 0, 5}));  // 6 March 2026 is a Friday
}

TEST(VirtualClockTest, TickCountWrapsLikeTheSystemCounter) {
    VirtualClock c({}, 0xFFFFFF00u);
    bool ran = false;
    c.Schedule(0x00000010u, [&] { ran = true; });
    c.Wait(0x200);
    EXPECT_TRUE(ran);
    EXPECT_EQ(c.TickCount(), 0x100u);
}
