#include "sim/sim_game_desktop.h"

#include <gtest/gtest.h>

#include "reading/cards.h"
#include "reading/score_reader.h"
#include "sim/sim_fixtures.h"

namespace sim {
namespace {

using testing::BaseScenario;
using testing::DealJson;
using testing::MakeLegalDeal;

Scenario Load(const core::Json& j) {
    Scenario sc;
    std::string error;
    EXPECT_TRUE(ScenarioFromJson(j, sc, error)) << error;
    return sc;
}

Scenario Scripted(std::vector<ScriptedDeal> deals, int language = 1) {
    core::Json list = core::Json::Array();
    for (const auto& d : deals) list.Push(DealJson(d));
    core::Json j = BaseScenario(list);
    j.Set("language", language);
    return Load(j);
}

// Clicks the middle of the first table button of `kind` (and `bid`).
bool ClickTable(platform::SimDesktop& desk, SimGameDesktop& game, TableButtonKind kind, const std::string& bid = {}) {
    platform::Rect client;
    desk.GetClientRect(game.TableWindow(), client);
    TableContext ctx{game.Language(), client.Width(), client.Height(), nullptr};
    platform::Point origin;
    desk.ClientOrigin(game.TableWindow(), origin);
    TablePicture pic;
    PlainTablePicture(game.Game().State(), ctx, pic);
    for (const auto& b : pic.Buttons) {
        if (b.Kind != kind || b.Bid != bid) continue;
        desk.SetCursorPos({origin.X + (b.Area.Left + b.Area.Right) / 2, origin.Y + (b.Area.Top + b.Area.Bottom) / 2});
        desk.LeftClick();
        return true;
    }
    return false;
}

template <typename Pred>
bool RunUntil(platform::VirtualClock& clock, Pred pred, std::uint32_t ms = 900000) {
    for (std::uint32_t t = 0; t < ms; t += 100) {
        if (pred()) return true;
        clock.Wait(100);
    }
    return pred();
}

TEST(SimGameDesktop, TableButtonsOpenWindowsAndTheBidPanelBids) {
    platform::SimDesktop desk;
    platform::VirtualClock clock;
    SimGameDesktop sim(desk, clock, Scripted({MakeLegalDeal(3, 2, {"4", "3", "2", "3"})}));
    sim.Start();
    ASSERT_NE(sim.TableWindow(), 0);
    EXPECT_EQ(desk.WindowText(sim.TableWindow()), "Game: Spades Table: Oak Host: alice");
    for (int slot = 1; slot <= 3; ++slot) EXPECT_EQ(sim.SubWindow(slot), 0);

    ASSERT_TRUE(ClickTable(desk, sim, TableButtonKind::LastHand));
    platform::WindowHandle hand = sim.SubWindow(SimGameDesktop::kLastHand);
    ASSERT_NE(hand, 0);
    EXPECT_EQ(desk.WindowText(hand), "Last Hand");
    platform::Rect r;
    ASSERT_TRUE(desk.GetWindowRect(hand, r));
    EXPECT_EQ(r.Left, 0);  // the game opens its windows at the screen's corner
    EXPECT_EQ(r.Top, 0);
    ASSERT_TRUE(desk.GetClientRect(hand, r));
    EXPECT_EQ(r.Width(), last_hand::kWidth);
    ASSERT_TRUE(ClickTable(desk, sim, TableButtonKind::Score));
    EXPECT_EQ(desk.WindowText(sim.SubWindow(SimGameDesktop::kScore)), "Spades Score");
    ASSERT_TRUE(ClickTable(desk, sim, TableButtonKind::LastTrick));
    EXPECT_EQ(desk.WindowText(sim.SubWindow(SimGameDesktop::kLastTrick)), "Last Trick");
    // A second click raises the open window instead of opening another.
    ASSERT_TRUE(ClickTable(desk, sim, TableButtonKind::LastHand));
    EXPECT_EQ(sim.SubWindow(SimGameDesktop::kLastHand), hand);

    // The bid panel's buttons exist only while it is up, and bid for the user.
    EXPECT_FALSE(ClickTable(desk, sim, TableButtonKind::Bid, "5"));
    ASSERT_TRUE(RunUntil(clock, [&] { return sim.Game().State().bidPanel == BidPanel::Ordinary; }));
    ASSERT_TRUE(ClickTable(desk, sim, TableButtonKind::Bid, "5"));
    EXPECT_EQ(sim.Game().State().bids[0], "5");
    EXPECT_EQ(sim.Game().State().bidPanel, BidPanel::None);
    EXPECT_EQ(sim.StrayClicks(), 0);
    desk.SetCursorPos({1270, 1010});
    desk.LeftClick();
    EXPECT_EQ(sim.StrayClicks(), 1);
}

TEST(SimGameDesktop, SubWindowTitlesFollowTheSiteLanguage) {
    platform::SimDesktop desk;
    platform::VirtualClock clock;
    SimGameDesktop sim(desk, clock, Scripted({MakeLegalDeal(3, 2, {"4", "3", "2", "3"})}, 5));
    sim.Start(true);
    EXPECT_EQ(desk.WindowText(sim.TableWindow()).rfind("Partita: Spades", 0), 0u);
    EXPECT_EQ(desk.WindowText(sim.SubWindow(1)), "Ultima presa");
    EXPECT_EQ(desk.WindowText(sim.SubWindow(2)), "Ultima mano");
    EXPECT_EQ(desk.WindowText(sim.SubWindow(3)), "Punteggio di Peppa");
}

// The readers of the companion read back what the simulated game shows.
TEST(SimGameDesktop, ReadersReadTheGamesWindows) {
    for (int language : {1, 3, 5}) {
        SCOPED_TRACE(language);
        platform::SimDesktop desk;
        platform::VirtualClock clock;
        ScriptedDeal d1 = MakeLegalDeal(31, 1, {"3", "N", "4", "4"});
        ScriptedDeal d2 = MakeLegalDeal(32, 2, {"5", "2", "2", "3"});
        SimGameDesktop sim(desk, clock, Scripted({d1, d2}, language));
        sim.Start(true);
        const TableState& s = sim.Game().State();
        ASSERT_TRUE(RunUntil(clock, [&] { return s.scoreLines.size() == 2; }));

        reading::Capture cap(desk, clock);
        for (int slot = 1; slot <= 3; ++slot) cap.SubWindow[static_cast<std::size_t>(slot)].Handle = sim.SubWindow(slot);
        reading::WinTitles titles;
        reading::GlyphTable glyphs;
        glyphs.SelectFont(1, language, titles.BidLabel(language), titles.TrickLabel(language));

        reading::ScoreReader scores(cap, glyphs);
        reading::ScoreLines lines;
        ASSERT_EQ(scores.CaptScore(lines), 0);
        ASSERT_EQ(lines.Count, 2);
        for (std::size_t i = 0; i < 2; ++i)
            for (std::size_t c = 0; c < 4; ++c) EXPECT_EQ(lines.Line[i + 1][c], s.scoreLines[i][c]) << i << "," << c;

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

        reading::TrickRead trick;
        ASSERT_TRUE(cards.ReadLastTrick(trick, 1));
        for (int k = 0; k < 4; ++k) {
            Card c = d2.play[12][static_cast<std::size_t>((s.userSeat + k) % 4)];
            EXPECT_EQ(trick.Suits[static_cast<std::size_t>(k)], SuitOf(c));
            EXPECT_EQ(trick.Ranks[static_cast<std::size_t>(k)], RankOf(c));
        }
    }
}

TEST(SimGameDesktop, WindowsRedrawWhenResizedClosedOrReopened) {
    platform::SimDesktop desk;
    platform::VirtualClock clock;
    SimGameDesktop sim(desk, clock, Scripted({MakeLegalDeal(3, 2, {"4", "3", "2", "3"})}));
    sim.Start(true);
    // The companion enlarges the score window: the next repaint fills it.
    platform::WindowHandle score = sim.SubWindow(3);
    platform::Rect r;
    desk.GetWindowRect(score, r);
    desk.MoveWindow(score, {r.Left, r.Top, r.Right, r.Bottom + 64});
    clock.Wait(500);
    const platform::SimWindow* w = desk.Find(score);
    ASSERT_NE(w, nullptr);
    const int bottom = w->Pixels.Height - w->ClientInset.Bottom - 2;
    EXPECT_NE(w->Pixels.At(w->ClientInset.Left + 10, bottom), desk.Find(score)->Pixels.At(1, 1))
        << "the enlarged part shows the score table, not the bare frame";

    // Closed windows stay closed until their button is clicked again.
    sim.CloseSubWindow(2);
    EXPECT_EQ(sim.SubWindow(2), 0);
    clock.Wait(2000);
    EXPECT_EQ(sim.SubWindow(2), 0);
    ASSERT_TRUE(ClickTable(desk, sim, TableButtonKind::LastHand));
    EXPECT_NE(sim.SubWindow(2), 0);

    // The table goes away with its windows; the game plays on and the table
    // comes back without sub-windows.
    sim.CloseTable();
    EXPECT_EQ(sim.TableWindow(), 0);
    EXPECT_TRUE(desk.TopLevelWindows().empty());
    clock.Wait(20000);
    sim.ReopenTable();
    EXPECT_NE(sim.TableWindow(), 0);
    EXPECT_EQ(sim.SubWindow(1), 0);
    clock.Wait(600000);
    EXPECT_TRUE(sim.Game().State().finished);
}

}  // namespace
}  // namespace sim
