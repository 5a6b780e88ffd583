#include "platform/sim/sim_desktop.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/factory/open_desktop.h"

using namespace platform;

namespace {

std::vector<std::uint16_t> Copy(SimDesktop& d, WindowHandle h, Area area, Rect r, std::int32_t& lines) {
    const std::int32_t w = r.Width(), len = w + (w & 1);
    std::vector<std::uint16_t> bits(static_cast<std::size_t>(len * r.Height()), 0xFFFF);
    lines = h == 0 ? d.CopyScreenRegion(r, bits) : d.CopyRegion(h, area, r, bits);
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
    img.Set(4 + 1, 23 + 2, Rgb(255, 0, 0));  // client (1, 2) below the default frame
    d.SetImage(h, img);
    std::int32_t lines = 0;
    auto bits = Copy(d, h, Area::Window, {0, 0, 3, 5}, lines);  // odd width: rows of 4 words
    ASSERT_EQ(lines, 5);
    ASSERT_EQ(bits.size(), 20u);
    // Lowest row first: pixel (x, y) at (Bottom-1-y)*Length + x.
    EXPECT_EQ(bits[(5 - 1 - 0) * 4 + 0], (31 << 10) | (1 << 5) | 2);
    EXPECT_EQ(bits[0 * 4 + 2], (0 << 10) | (1 << 5) | 31);
    EXPECT_EQ(bits[3], 0xFFFF) << "the pad word is left alone";

    bits = Copy(d, h, Area::Client, {1, 2, 2, 3}, lines);
    ASSERT_EQ(lines, 1);
    EXPECT_EQ(bits[0], 31 << 10) << "client coordinates start inside the frame";
}

TEST(SimDesktopCapture, ScreenComposesWindowsInZOrderAndMissesMinimisedOnes) {
    SimDesktop d(200, 100);
    d.SetBackground(0);
    WindowHandle a = d.AddWindow("A", {0, 0, 50, 50});
    d.SetImage(a, Image(50, 50, Rgb(255, 0, 0)));
    WindowHandle b = d.AddWindow("B", {25, 0, 75, 50});
    d.SetImage(b, Image(50, 50, Rgb(0, 255, 0)));
    std::int32_t lines = 0;
    auto bits = Copy(d, 0, Area::Window, {20, 10, 30, 11}, lines);
    ASSERT_EQ(lines, 1);
    EXPECT_EQ(bits[0], 31 << 10);  // x=20: A
    EXPECT_EQ(bits[9], 31 << 5);   // x=29: B on top
    d.SetTopmost(a, true);
    bits = Copy(d, 0, Area::Window, {20, 10, 30, 11}, lines);
    EXPECT_EQ(bits[9], 31 << 10);
    d.Minimize(a);
    bits = Copy(d, 0, Area::Window, {20, 10, 30, 11}, lines);
    EXPECT_EQ(bits[0], 0) << "background where the minimised window stood";
    EXPECT_EQ(bits[9], 31 << 5);
}

TEST(SimDesktopCapture, NothingComesFromAnUnusableRequest) {
    SimDesktop d;
    WindowHandle h = d.AddWindow("W", {0, 0, 40, 40});
    std::vector<std::uint16_t> small(3);
    EXPECT_EQ(d.CopyRegion(h, Area::Window, {0, 0, 2, 2}, small), 0) << "buffer too small";
    EXPECT_EQ(d.CopyRegion(h, Area::Window, {5, 5, 5, 9}, small), 0) << "empty region";
    std::int32_t lines = 0;
    d.FailCaptures(h, 1);
    Copy(d, h, Area::Window, {0, 0, 2, 2}, lines);
    EXPECT_EQ(lines, 0) << "injected failure";
    Copy(d, h, Area::Window, {0, 0, 2, 2}, lines);
    EXPECT_EQ(lines, 2) << "only the next copy fails";
    // Rows below the window read as black rather than failing.
    auto bits = Copy(d, h, Area::Window, {0, 38, 2, 42}, lines);
    EXPECT_EQ(lines, 4);
    EXPECT_EQ(bits[0], 0);
}

// A window may close between any two calls of the window pass; every
// question about it must then come back empty, never with stale or
// made-up values.
TEST(SimDesktopWindows, EveryQueryOnAVanishedWindowGivesNothing) {
    SimDesktop d;
    WindowHandle h = d.AddWindow("T", {0, 0, 40, 40});
    d.CloseAfterCalls(h, 2);
    EXPECT_EQ(d.Title(h), "T");
    EXPECT_EQ(d.WindowRect(h), std::nullopt) << "closed on the second call";
    EXPECT_EQ(d.Title(h), std::nullopt);
    EXPECT_EQ(d.Info(h), std::nullopt);
    EXPECT_EQ(d.ClientRect(h), std::nullopt);
    EXPECT_EQ(d.ClientOrigin(h), std::nullopt);
    EXPECT_FALSE(d.IsWindow(h));
    EXPECT_FALSE(d.IsOwnWindow(h));
    EXPECT_FALSE(d.Move(h, {0, 0, 10, 10}));
    d.SetTopmost(h, true);
    d.Minimize(h);
    d.Restore(h);
    EXPECT_FALSE(IsMinimized(d, h));
    EXPECT_TRUE(d.TopLevel().empty());
    std::vector<std::uint16_t> bits(16);
    EXPECT_EQ(d.CopyRegion(h, Area::Client, {0, 0, 4, 4}, bits), 0);
    EXPECT_EQ(d.Info(0), std::nullopt) << "no window at all";
}

TEST(SimDesktopWindows, OwnWindowsAreToldApartFromOthersOfTheSameTitle) {
    SimDesktop d;
    const WindowHandle game = d.AddWindow("Spades - Table 12", {0, 0, 600, 400});
    const WindowHandle ours = d.AddOwnWindow("Spades - Table 12", {600, 0, 800, 200});
    EXPECT_FALSE(d.IsOwnWindow(game));
    EXPECT_TRUE(d.IsOwnWindow(ours));
    EXPECT_EQ(d.Title(ours), d.Title(game)) << "only ownership tells them apart";
    EXPECT_EQ(d.TopLevel(), (std::vector<WindowHandle>{ours, game}));
}

TEST(SimDesktopWindows, MinimiseAndRestoreShowInTheInfoAndTheClientArea) {
    SimDesktop d;
    const WindowHandle h = d.AddWindow("W", {10, 10, 110, 60});
    EXPECT_EQ(d.Info(h), (WindowInfo{true, true, false}));
    EXPECT_EQ(d.ClientRect(h), (Rect{0, 0, 100 - 8, 50 - 27}));
    d.Minimize(h);
    EXPECT_EQ(d.Info(h), (WindowInfo{true, true, true}));
    EXPECT_EQ(d.ClientRect(h), Rect{}) << "a minimised window has no client area";
    std::vector<std::uint16_t> bits(16);
    EXPECT_EQ(d.CopyRegion(h, Area::Window, {0, 0, 4, 4}, bits), 0) << "nothing to copy while minimised";
    EXPECT_EQ(d.WindowRect(h), (Rect{10, 10, 110, 60})) << "the place is kept for the restore";
    d.Restore(h);
    EXPECT_FALSE(IsMinimized(d, h));
    EXPECT_EQ(d.CopyRegion(h, Area::Window, {0, 0, 4, 4}, bits), 4);

    const WindowHandle hidden = d.AddWindow("H", {0, 0, 10, 10}, WindowInfo{true, false, false});
    const WindowHandle bare = d.AddWindow("B", {0, 0, 10, 10}, WindowInfo{false, true, false});
    EXPECT_EQ(d.Info(hidden), (WindowInfo{true, false, false}));
    EXPECT_EQ(d.Info(bare), (WindowInfo{false, true, false}));
}

TEST(SimDesktopWindows, TopmostWindowsStayAboveTheRest) {
    SimDesktop d;
    const WindowHandle a = d.AddWindow("A", {0, 0, 10, 10});
    const WindowHandle b = d.AddWindow("B", {0, 0, 10, 10});
    d.SetTopmost(a, true);
    EXPECT_EQ(d.TopLevel(), (std::vector<WindowHandle>{a, b}));
    d.SetTopmost(b, false);  // raised, but only among the windows that are not topmost
    EXPECT_EQ(d.TopLevel(), (std::vector<WindowHandle>{a, b}));
    d.SetTopmost(b, true);
    EXPECT_EQ(d.TopLevel(), (std::vector<WindowHandle>{b, a}));
    d.SetTopmost(b, false);
    EXPECT_EQ(d.TopLevel(), (std::vector<WindowHandle>{a, b}));
    d.SetTopmost(0, true);  // no window: nothing happens
    EXPECT_EQ(d.TopLevel().size(), 2u);
}

// Clicks on the game's buttons (and stray ones) are followed by the simulator
// and session tests; here the input and sound roles on their own.
TEST(SimDesktopInputAndSound, ClicksLandOnTheWindowUnderTheCursorAndEmptySoundsAreNotPlayed) {
    SimDesktop d;
    const WindowHandle h = d.AddWindow("W", {100, 100, 200, 200});
    Desktop roles = d.Roles();
    roles.input.SetCursorPos({150, 150});
    roles.input.LeftClick();
    roles.input.SetCursorPos({50, 50});
    roles.input.LeftClick();
    ASSERT_EQ(d.Clicks().size(), 2u);
    EXPECT_EQ(d.Clicks()[0].Target, h);
    EXPECT_EQ(d.Clicks()[1].Target, 0) << "a click on the bare screen hits no window";
    EXPECT_EQ(roles.input.CursorPos(), (Point{50, 50}));
    roles.sound.PlaySystemSound("");
    roles.sound.PlaySystemSound("SystemExclamation");
    roles.sound.Beep();
    EXPECT_EQ(d.Sounds(), std::vector<std::string>{"SystemExclamation"});
    EXPECT_EQ(d.Beeps(), 1);
}

TEST(DesktopFactory, OpensTheSimulatedDesktopAndExplainsAMissingNativeOne) {
    EXPECT_EQ(ParseDesktopKind("sim"), DesktopKind::Simulated);
    EXPECT_EQ(ParseDesktopKind("native"), DesktopKind::Native);
    EXPECT_EQ(ParseDesktopKind("Sim"), std::nullopt);
    EXPECT_EQ(ParseDesktopKind(""), std::nullopt);

    OpenedDesktop sim = OpenDesktop(DesktopKind::Simulated);
    ASSERT_NE(sim.Backend, nullptr) << sim.Error;
    EXPECT_TRUE(sim.Backend->Roles().windows.TopLevel().empty());

    OpenedDesktop native = OpenDesktop(DesktopKind::Native);
    if (!native.Backend) {
        EXPECT_FALSE(native.Error.empty()) << "a refusal says why";
    }
}
