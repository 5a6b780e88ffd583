#include "sim/sim_game_desktop.h"

#include <gtest/gtest.h>

#include "sim/sim_fixtures.h"

namespace sim {
namespace {

Scenario OneDeal() {
    Scenario sc;
    std::string error;
    EXPECT_TRUE(ScenarioFromJson(testing::OneDealScenario(testing::MakeLegalDeal(3, 2, {"4", "3", "2", "3"})), sc, error)) << error;
    return sc;
}

struct Rig {
    Rig() : sim(desk, clock, OneDeal()) {}
    // Clicks the middle of the first table button of `kind` (and `bid`).
    bool Click(TableButtonKind kind, const std::string& bid = {}) {
        const platform::Rect client = desk.ClientRect(sim.TableWindow()).value_or(platform::Rect{});
        const platform::Point origin = desk.ClientOrigin(sim.TableWindow()).value_or(platform::Point{});
        TablePicture pic;
        PlainTablePicture(sim.Game().State(), {sim.Language(), client.Width(), client.Height(), nullptr}, pic);
        for (const auto& b : pic.Buttons) {
            if (b.Kind != kind || b.Bid != bid) continue;
            desk.SetCursorPos({origin.X + (b.Area.Left + b.Area.Right) / 2, origin.Y + (b.Area.Top + b.Area.Bottom) / 2});
            desk.LeftClick();
            return true;
        }
        return false;
    }
    platform::SimDesktop desk;
    platform::VirtualClock clock;
    SimGameDesktop sim;
};

// Reading these windows in the site languages, reopening them and bidding
// through the panel are covered end to end by the session tests; here: what
// the windows are and how they behave.
TEST(SimGameDesktop, ButtonsOpenTitledWindowsAtTheCorner) {
    const std::array<std::string, 4> titles = {"Game: Spades Table: Oak Host: alice", "Last Trick", "Last Hand", "Spades Score"};
    const TableButtonKind buttons[] = {TableButtonKind::LastTrick, TableButtonKind::LastHand, TableButtonKind::Score};
    Rig r;
    r.sim.Start();
    EXPECT_EQ(r.desk.Title(r.sim.TableWindow()), titles[0]);
    for (int slot = 1; slot <= 3; ++slot) {
        EXPECT_EQ(r.sim.SubWindow(slot), 0) << "closed until its button is clicked";
        ASSERT_TRUE(r.Click(buttons[slot - 1]));
        const platform::WindowHandle h = r.sim.SubWindow(slot);
        EXPECT_EQ(r.desk.Title(h), titles[static_cast<std::size_t>(slot)]);
        const auto rect = r.desk.WindowRect(h);
        ASSERT_TRUE(rect);
        EXPECT_TRUE(rect->Left == 0 && rect->Top == 0) << "the game opens its windows at the screen's corner";
        ASSERT_TRUE(r.Click(buttons[slot - 1]));
        EXPECT_EQ(r.sim.SubWindow(slot), h) << "a second click raises the open window";
    }
    // Bid buttons exist only while the panel is up; a click elsewhere is stray.
    EXPECT_FALSE(r.Click(TableButtonKind::Bid, "5"));
    r.desk.SetCursorPos({1270, 1010});
    r.desk.LeftClick();
    EXPECT_EQ(r.sim.StrayClicks(), 1);
}

TEST(SimGameDesktop, WindowsRedrawWhenResizedAndTheTableComesBackBare) {
    Rig r;
    r.sim.Start(true);
    // The companion enlarges the score window: the next repaint fills it.
    const platform::WindowHandle score = r.sim.SubWindow(3);
    const platform::Rect rect = r.desk.WindowRect(score).value_or(platform::Rect{});
    r.desk.Move(score, {rect.Left, rect.Top, rect.Right, rect.Bottom + 64});
    r.clock.Wait(500);
    const platform::SimWindow* w = r.desk.Find(score);
    ASSERT_NE(w, nullptr);
    EXPECT_NE(w->Pixels.At(w->ClientInset.Left + 10, w->Pixels.Height - w->ClientInset.Bottom - 2), w->Pixels.At(1, 1))
        << "the enlarged part shows the score table, not the bare frame";

    // The table goes away with its windows and comes back without them.
    r.sim.CloseTable();
    EXPECT_TRUE(r.desk.TopLevel().empty());
    r.sim.ReopenTable();
    EXPECT_EQ(r.sim.SubWindow(1), 0);
}

}  // namespace
}  // namespace sim
