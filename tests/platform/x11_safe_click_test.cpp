// The click rules on a real X server: a button under another window is not
// pressed; an uncovered one is pressed at its exact point and the pointer
// goes back where the user had it.
#include <gtest/gtest.h>

#if defined(TARVELLOS_HAVE_X11)

#include <memory>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/x11/x11_desktop.h"
#include "platform/x11_rig.h"
#include "tracking/safe_click.h"

namespace {

using tracking::ClickResult;

struct Target {
    Target(const std::string& title, int x, int y, int w, int h)
        : proc({TARVELLOS_X11_TARGET, title, std::to_string(x), std::to_string(y), std::to_string(w),
                std::to_string(h)}) {
        if (const auto line = proc.ReadLine(5000); line && line->rfind("window ", 0) == 0)
            id = std::stoll(line->substr(7));
    }
    x11test::Child proc;
    platform::WindowHandle id = 0;
};

TEST(X11SafeClick, ACoveredButtonIsNotPressedAnUncoveredOneExactly) {
    x11test::XServer server;
    if (!server.Ok()) GTEST_SKIP() << "Xvfb could not be started";
    Target game("Game: Spades Table: Oak", 100, 100, 300, 200);
    ASSERT_NE(game.id, 0);
    std::string error;
    auto d = platform::X11Desktop::Open(error);
    ASSERT_TRUE(d) << error;
    platform::SystemClock clock;
    std::vector<std::string> log;
    tracking::SafeClicker clicker(*d, *d, clock, [&](const std::string& l) { log.push_back(l); });

    tracking::ClickTarget t;
    t.Window = game.id;
    t.ReadAt = *d->WindowRect(game.id);
    t.Screen = {100 + 40, 100 + 30};
    t.What = "bid 4 button";
    t.State = "deal 0 bids 2";
    d->SetCursorPos({700, 500});

    {
        Target cover("Notes", 120, 110, 80, 60);
        ASSERT_NE(cover.id, 0);
        EXPECT_EQ(clicker.Click(t, {}, {}), ClickResult::Covered);
        EXPECT_FALSE(cover.proc.ReadLine(300)) << "the covering window got a click";
    }
    EXPECT_FALSE(game.proc.ReadLine(100));
    EXPECT_TRUE(x11test::WaitUntil([&] { return clicker.CoveredBy(game.id, t.Screen) == 0; }));

    EXPECT_EQ(clicker.Click(t, {}, {}), ClickResult::Done);
    EXPECT_EQ(game.proc.ReadLine(3000), "click 1 40 30");
    EXPECT_EQ(d->CursorPos(), (platform::Point{700, 500}));
    // The same state is not pressed twice.
    EXPECT_EQ(clicker.Click(t, {}, {}), ClickResult::AlreadyClicked);
    EXPECT_FALSE(game.proc.ReadLine(200));
    ASSERT_EQ(log.size(), 3u);
}

}  // namespace

#else

TEST(X11SafeClick, NotBuilt) { GTEST_SKIP() << "built without the X11 libraries"; }

#endif
