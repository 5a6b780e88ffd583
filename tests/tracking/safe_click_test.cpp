// Clicks for the user: made only where the game's button is sure to get
// them, once per game state, the cursor put back, and each one logged.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/sim/sim_desktop.h"
#include "platform/sim/virtual_clock.h"
#include "tracking/safe_click.h"

namespace {

using platform::Point;
using platform::Rect;
using tracking::ClickResult;
using tracking::ClickTarget;

struct Rig {
    platform::SimDesktop desktop;
    platform::VirtualClock clock;
    std::vector<std::string> log;
    tracking::SafeClicker clicker{desktop, desktop, clock, [this](const std::string& l) { log.push_back(l); }};
    platform::WindowHandle game = desktop.AddWindow("Game: Spades Table: Oak", {100, 100, 900, 700});

    ClickTarget Button(const std::string& state = "deal 1 bid 0") {
        ClickTarget t;
        t.Window = game;
        t.ReadAt = {100, 100, 900, 700};
        t.Screen = {300, 400};
        t.What = "bid 4 button";
        t.State = state;
        return t;
    }
};

TEST(SafeClick, ASafeClickPressesOnceAndPutsTheCursorBack) {
    Rig r;
    r.desktop.SetCursorPos({5, 6});
    int rereads = 0;
    EXPECT_EQ(r.clicker.Click(r.Button(), [&] { return ++rereads > 0; }, [] { return true; }), ClickResult::Done);
    ASSERT_EQ(r.desktop.Clicks().size(), 1u);
    EXPECT_EQ(r.desktop.Clicks()[0].At, (Point{300, 400}));
    EXPECT_EQ(r.desktop.Clicks()[0].Target, r.game);
    EXPECT_EQ(rereads, 1);
    EXPECT_EQ(r.desktop.CursorPos(), (Point{5, 6}));
    ASSERT_EQ(r.log.size(), 1u);
    EXPECT_EQ(r.log[0], "Click bid 4 button at 300,400: clicked");
}

TEST(SafeClick, ACoveredButtonIsNotClicked) {
    Rig r;
    // One of the companion's own always-on-top windows over the button.
    const auto own = r.desktop.AddOwnWindow("Bid", {250, 350, 350, 450});
    EXPECT_EQ(r.clicker.CoveredBy(r.game, {300, 400}), own);
    EXPECT_EQ(r.clicker.Click(r.Button(), {}, {}), ClickResult::Covered);
    EXPECT_TRUE(r.desktop.Clicks().empty());
    EXPECT_NE(r.log.at(0).find("another window covers the button"), std::string::npos);

    // Minimised, or beside the point, a window above is no cover.
    r.desktop.Minimize(own);
    const auto beside = r.desktop.AddWindow("Notes", {310, 350, 500, 450});
    EXPECT_EQ(r.clicker.CoveredBy(r.game, {300, 400}), 0);
    EXPECT_EQ(r.clicker.Click(r.Button(), {}, {}), ClickResult::Done);
    // A window below the game's is none either.
    r.desktop.BringToTop(r.game);
    r.desktop.Move(beside, {250, 350, 350, 450});
    EXPECT_EQ(r.clicker.CoveredBy(r.game, {300, 400}), 0);
}

TEST(SafeClick, TheGameWindowMustBeWhereAndAsTheButtonWasRead) {
    Rig r;
    ClickTarget t = r.Button();
    r.desktop.Move(r.game, {120, 100, 920, 700});
    EXPECT_EQ(r.clicker.Click(t, {}, {}), ClickResult::WindowMoved);
    t.ReadAt = {120, 100, 920, 700};
    t.Screen = {950, 400};  // a point that is not on the window
    EXPECT_EQ(r.clicker.Click(t, {}, {}), ClickResult::WindowMoved);
    t.Screen = {300, 400};
    r.desktop.Minimize(r.game);
    EXPECT_EQ(r.clicker.Click(t, {}, {}), ClickResult::WindowHidden);
    r.desktop.Restore(r.game);
    EXPECT_EQ(r.clicker.Click(t, [] { return false; }, {}), ClickResult::ButtonChanged);
    r.desktop.CloseWindow(r.game);
    EXPECT_EQ(r.clicker.Click(t, {}, {}), ClickResult::WindowGone);
    EXPECT_TRUE(r.desktop.Clicks().empty());
    EXPECT_EQ(r.log.size(), 5u);
}

TEST(SafeClick, OneClickPerGameStateEvenWithoutEffect) {
    Rig r;
    const std::uint64_t start = r.clock.Elapsed();
    EXPECT_EQ(r.clicker.Click(r.Button("deal 1 bid 2"), {}, [] { return false; }, 1000), ClickResult::NoEffect);
    EXPECT_GE(r.clock.Elapsed() - start, 1000u);  // the effect was waited for
    EXPECT_EQ(r.clicker.Click(r.Button("deal 1 bid 2"), {}, {}), ClickResult::AlreadyClicked);
    EXPECT_EQ(r.desktop.Clicks().size(), 1u);
    // A refusal does not use up the state: once safe, the click is made.
    EXPECT_EQ(r.clicker.Click(r.Button("deal 1 bid 3"), [] { return false; }, {}), ClickResult::ButtonChanged);
    int polls = 0;
    EXPECT_EQ(r.clicker.Click(r.Button("deal 1 bid 3"), {}, [&] { return ++polls == 3; }), ClickResult::Done);
    EXPECT_EQ(polls, 3);
    EXPECT_EQ(r.desktop.Clicks().size(), 2u);
    // Another button's click in between does not open the first state again.
    EXPECT_EQ(r.clicker.Click(r.Button("deal 1 bid 2"), {}, {}), ClickResult::AlreadyClicked);
}

}  // namespace
