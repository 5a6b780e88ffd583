#include "sim/sim_game_desktop.h"

#include <gtest/gtest.h>

#include "reading/cards.h"
#include "reading/score_reader.h"
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

TEST(SimGameDesktop, TableButtonsOpenWindowsAndTheBidPanelBids) {
    Rig r;
    r.sim.Start();
    EXPECT_EQ(r.desk.WindowText(r.sim.TableWindow()), "Game: Spades Table: Oak Host: alice");
    for (int slot = 1; slot <= 3; ++slot) EXPECT_EQ(r.sim.SubWindow(slot), 0);
    const std::pair<TableButtonKind, const char*> buttons[] = {
        {TableButtonKind::LastTrick, "Last Trick"}, {TableButtonKind::LastHand, "Last Hand"}, {TableButtonKind::Score, "Spades Score"}};
    for (int slot = 1; slot <= 3; ++slot) {
        ASSERT_TRUE(r.Click(buttons[slot - 1].first));
        const platform::WindowHandle h = r.sim.SubWindow(slot);
        EXPECT_EQ(r.desk.WindowText(h), buttons[slot - 1].second);
        platform::Rect rect;
        ASSERT_TRUE(r.desk.GetWindowRect(h, rect));
        EXPECT_TRUE(rect.Left == 0 && rect.Top == 0) << "the game opens its windows at the screen's corner";
        ASSERT_TRUE(r.Click(buttons[slot - 1].first));
        EXPECT_EQ(r.sim.SubWindow(slot), h) << "a second click raises the open window";
    }
    platform::Rect client;
    ASSERT_TRUE(r.desk.GetClientRect(r.sim.SubWindow(SimGameDesktop::kLastHand), client));
    EXPECT_EQ(client.Width(), last_hand::kWidth);

    // The bid panel's buttons exist only while it is up, and bid for the user.
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

// The companion's readers read back what the simulated game shows, in the
// site language's titles and card letters.
TEST(SimGameDesktop, ReadersReadTheGamesWindows) {
    for (int language : {1, 3, 5}) {
        SCOPED_TRACE(language);
        const ScriptedDeal d2 = MakeLegalDeal(32, 2, {"5", "2", "2", "3"});
        Rig r(language, {MakeLegalDeal(31, 1, {"3", "N", "4", "4"}), d2});
        r.sim.Start(true);
        if (language == 5) {
            EXPECT_EQ(r.desk.WindowText(r.sim.TableWindow()).rfind("Partita: Spades", 0), 0u);
            EXPECT_EQ(r.desk.WindowText(r.sim.SubWindow(1)), "Ultima presa");
            EXPECT_EQ(r.desk.WindowText(r.sim.SubWindow(2)), "Ultima mano");
            EXPECT_EQ(r.desk.WindowText(r.sim.SubWindow(3)), "Punteggio di Peppa");
        }
        const TableState& s = r.sim.Game().State();
        ASSERT_TRUE(RunUntil(r.clock, [&] { return s.scoreLines.size() == 2; }));

        reading::Capture cap(r.desk, r.clock);
        for (std::size_t slot = 1; slot <= 3; ++slot) cap.SubWindow[slot].Handle = r.sim.SubWindow(static_cast<int>(slot));
        reading::WinTitles titles;
        reading::GlyphTable glyphs;
        glyphs.SelectFont(1, language, titles.BidLabel(language), titles.TrickLabel(language));
        reading::ScoreReader scores(cap, glyphs);
        reading::ScoreLines lines;
        ASSERT_EQ(scores.CaptScore(lines), 0);
        ASSERT_EQ(lines.Count, 2);
        for (std::size_t i = 0; i < 2; ++i) EXPECT_EQ(lines.Line[i + 1], s.scoreLines[i]) << i;

        reading::CardReader cards(cap, glyphs);
        cards.GameLanguage = language;
        reading::HandRead hand;
        ASSERT_EQ(cards.CaptHand(hand), 0);
        for (std::size_t seat = 0; seat < 4; ++seat) {
            EXPECT_EQ(hand.Names[seat], s.players[seat].name);
            for (std::size_t t = 0; t < 13; ++t) {
                EXPECT_EQ(hand.Cards[seat][t], CardText(d2.play[t][seat])) << seat << "," << t;
                EXPECT_EQ(hand.Marks[seat][t] == 1, s.lastHand.leader[t] == static_cast<int>(seat));
            }
        }
        // "Last Trick" slots go round the table from the user.
        reading::TrickRead trick;
        ASSERT_TRUE(cards.ReadLastTrick(trick, 1));
        for (std::size_t k = 0; k < 4; ++k) {
            const Card c = d2.play[12][(static_cast<std::size_t>(s.userSeat) + k) % 4];
            EXPECT_EQ(trick.Suits[k], SuitOf(c));
            EXPECT_EQ(trick.Ranks[k], RankOf(c));
        }
    }
}

TEST(SimGameDesktop, WindowsRedrawWhenResizedClosedOrReopened) {
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

    // Closed windows stay closed until their button is clicked again.
    r.sim.CloseSubWindow(2);
    r.clock.Wait(2000);
    EXPECT_EQ(r.sim.SubWindow(2), 0);
    ASSERT_TRUE(r.Click(TableButtonKind::LastHand));
    EXPECT_NE(r.sim.SubWindow(2), 0);

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
