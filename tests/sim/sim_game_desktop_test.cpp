#include "sim/sim_game_desktop.h"

#include <gtest/gtest.h>

#include "sim/sim_fixtures.h"

namespace sim {
namespace {

using testing::MakeLegalDeal;
using testing::RunUntil;

Scenario Scripted(std::vector<ScriptedDeal> deals, int language = 1) {
    core::Json list = core::Json::Array();
    for (const auto& d : deals) list.Push(testing::DealJson(d));
    core::Json j = testing::BaseScenario(list);
    j.Set("language", language);
    Scenario sc;
    std::string error;
    EXPECT_TRUE(ScenarioFromJson(j, sc, error)) << error;
    return sc;
}

struct Rig {
    explicit Rig(int language = 1, std::vector<ScriptedDeal> deals = {MakeLegalDeal(3, 2, {"4", "3", "2", "3"})})
        : sim(desk, clock, Scripted(std::move(deals), language)) {}
    // Clicks the middle of the first table button of `kind` (and `bid`).
    bool Click(TableButtonKind kind, const std::string& bid = {}) {
        platform::Rect client;
        platform::Point origin;
        desk.GetClientRect(sim.TableWindow(), client);
        desk.ClientOrigin(sim.TableWindow(), origin);
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

// Reading these windows in the site languages is covered end to end by the
// tracking session tests; here: what the windows are and how they behave.
TEST(SimGameDesktop, ButtonsOpenTitledWindowsAtTheCornerAndTheBidPanelBids) {
    const std::array<std::string, 4> english = {"Game: Spades Table: Oak Host: alice", "Last Trick", "Last Hand", "Spades Score"};
    const std::array<std::string, 4> italian = {"Partita: Spades", "Ultima presa", "Ultima mano", "Punteggio di Peppa"};
    const TableButtonKind buttons[] = {TableButtonKind::LastTrick, TableButtonKind::LastHand, TableButtonKind::Score};
    for (int language : {1, 5}) {
        Rig r(language);
        r.sim.Start();
        const auto& titles = language == 1 ? english : italian;
        const std::string title = r.desk.WindowText(r.sim.TableWindow());
        EXPECT_EQ(language == 1 ? title : title.substr(0, titles[0].size()), titles[0]);
        for (int slot = 1; slot <= 3; ++slot) {
            EXPECT_EQ(r.sim.SubWindow(slot), 0) << "closed until its button is clicked";
            ASSERT_TRUE(r.Click(buttons[slot - 1]));
            const platform::WindowHandle h = r.sim.SubWindow(slot);
            EXPECT_EQ(r.desk.WindowText(h), titles[static_cast<std::size_t>(slot)]);
            platform::Rect rect;
            ASSERT_TRUE(r.desk.GetWindowRect(h, rect));
            EXPECT_TRUE(rect.Left == 0 && rect.Top == 0) << "the game opens its windows at the screen's corner";
            ASSERT_TRUE(r.Click(buttons[slot - 1]));
            EXPECT_EQ(r.sim.SubWindow(slot), h) << "a second click raises the open window";
        }
    }
    // The bid panel's buttons exist only while it is up, and bid for the user.
    Rig r;
    r.sim.Start();
    EXPECT_FALSE(r.Click(TableButtonKind::Bid, "5"));
    ASSERT_TRUE(RunUntil(r.clock, [&] { return r.sim.Game().State().bidPanel == BidPanel::Ordinary; }));
    ASSERT_TRUE(r.Click(TableButtonKind::Bid, "5"));
    EXPECT_EQ(r.sim.Game().State().bids[0], "5");
    EXPECT_EQ(r.sim.Game().State().bidPanel, BidPanel::None);
    EXPECT_EQ(r.sim.StrayClicks(), 0);
    r.desk.SetCursorPos({1270, 1010});
    r.desk.LeftClick();
    EXPECT_EQ(r.sim.StrayClicks(), 1);
}

TEST(SimGameDesktop, WindowsRedrawWhenResizedAndTheTableComesBackBare) {
    Rig r;
    r.sim.Start(true);
    // The companion enlarges the score window: the next repaint fills it.
    const platform::WindowHandle score = r.sim.SubWindow(3);
    platform::Rect rect;
    r.desk.GetWindowRect(score, rect);
    r.desk.MoveWindow(score, {rect.Left, rect.Top, rect.Right, rect.Bottom + 64});
    r.clock.Wait(500);
    const platform::SimWindow* w = r.desk.Find(score);
    ASSERT_NE(w, nullptr);
    EXPECT_NE(w->Pixels.At(w->ClientInset.Left + 10, w->Pixels.Height - w->ClientInset.Bottom - 2), w->Pixels.At(1, 1))
        << "the enlarged part shows the score table, not the bare frame";

    // The table goes away with its windows; the game plays on and the table
    // comes back without sub-windows.
    r.sim.CloseTable();
    EXPECT_EQ(r.sim.TableWindow(), 0);
    EXPECT_TRUE(r.desk.TopLevelWindows().empty());
    r.clock.Wait(20000);
    r.sim.ReopenTable();
    EXPECT_NE(r.sim.TableWindow(), 0);
    EXPECT_EQ(r.sim.SubWindow(1), 0);
    r.clock.Wait(600000);
    EXPECT_TRUE(r.sim.Game().State().finished);
}

}  // namespace
}  // namespace sim
