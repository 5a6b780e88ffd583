#include "sim/spades_game.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "sim/sim_fixtures.h"

namespace sim {
namespace {

using testing::MakeLegalDeal;

GameSetup TableSetup(std::vector<ScriptedDeal> scripted = {}, int randomDeals = 0, std::uint32_t seed = 1) {
    GameSetup g;
    g.host = "alice";
    g.players = {Player{"me_player", "1534"}, Player{"lefty_one", "1620"}, Player{"partner_x", "1480"},
                 Player{"righty_two", "1701"}};
    g.scripted = std::move(scripted);
    g.randomDeals = randomDeals;
    g.seed = seed;
    return g;
}

// A started game on its own clock.
struct Table {
    explicit Table(GameSetup g) : game(clock, std::move(g)) { game.Start(); }
    // Runs the clock in small steps until `pred` holds (at most `ms`).
    template <typename Pred>
    bool Until(Pred pred, std::uint32_t ms = 600000) {
        for (std::uint32_t t = 0; t < ms && !pred(); t += 100) clock.Wait(100);
        return pred();
    }
    std::vector<const GameEvent*> Of(EventKind k) const {
        std::vector<const GameEvent*> out;
        for (const auto& e : game.Events())
            if (e.kind == k) out.push_back(&e);
        return out;
    }
    platform::VirtualClock clock;
    SpadesGame game;
};

// "" when a finished deal is legal: the scenario reader (checked on its own)
// accepts its cards and bids, and leaders, winners and trick counts follow.
std::string CheckDeal(const FinishedDeal& h, bool suicide) {
    if (!h.valid) return "not valid";
    ScriptedDeal d;
    d.dealer = h.dealer;
    d.bids = h.bids;
    int leader = NextSeat(h.dealer);
    std::array<int, kSeats> tricks{};
    for (int t = 0; t < kTricks; ++t) {
        for (int s = 0; s < kSeats; ++s) d.hands[s].push_back(d.play[t][s] = ParseCard(h.cards[s][t]));
        if (h.leader[t] != leader) return "leader of trick " + std::to_string(t);
        leader = TrickWinner(d.play[t], leader);
        if (h.winner[t] != leader) return "winner of trick " + std::to_string(t);
        ++tricks[leader];
    }
    if (tricks != h.tricks) return "trick counts";
    core::Json deals = core::Json::Array();
    deals.Push(testing::DealJson(d));
    core::Json j = testing::BaseScenario(deals), table = *j.Get("table");
    table.Set("suicide", suicide);
    j.Set("table", table);
    Scenario sc;
    std::string error;
    ScenarioFromJson(j, sc, error);
    return error;
}

TEST(SimGame, ComputerPlayersBidSensiblyAndPlayLegally) {
    for (bool suicide : {false, true}) {
        GameSetup g = TableSetup({}, 150, suicide ? 99 : 3);
        g.suicide = suicide;
        Table tb(g);
        int deals = 0, lastDeal = 0, nils = 0, games = 0;
        std::map<std::string, int> bids;
        ScoreLine prev{};
        tb.game.OnChange([&] {
            const TableState& s = tb.game.State();
            if (!s.lastHand.valid || s.lastHand.dealNumber == lastDeal) return;
            lastDeal = s.lastHand.dealNumber;
            ++deals;
            EXPECT_EQ(CheckDeal(s.lastHand, suicide), "") << "deal " << lastDeal;
            int total = 0;
            for (const std::string& b : s.lastHand.bids) {
                ++bids[b];
                nils += IsNilBid(b);
                total += BidTricks(b);
            }
            EXPECT_GE(total, suicide ? 2 : 5);
            // The score line follows from the previous one of the same game.
            if (s.dealInGame == 1) prev = {};
            ASSERT_FALSE(s.scoreLines.empty());
            EXPECT_EQ(s.scoreLines.back(), ScoreDeal(prev, s.lastHand.bids, s.lastHand.tricks));
            prev = s.scoreLines.back();
            games += s.gameOver;
        });
        tb.clock.Wait(150u * 400000u);
        EXPECT_TRUE(tb.game.State().finished);
        EXPECT_EQ(deals, 150);
        EXPECT_GT(nils, 0) << "no Nil in 150 deals";
        EXPECT_LT(nils, suicide ? 400 : 150);
        if (!suicide) { EXPECT_GT(games, 5); }  // forced Nils make suicide games long
        EXPECT_GT(bids.size(), 6u);          // a spread of bids, not one fixed value
    }
}

TEST(SimGame, OneScriptedDealInTime) {
    const ScriptedDeal d = MakeLegalDeal(5, 2, {"3", "4", "N", "5"});
    const Timing tm;
    platform::VirtualClock clock;
    const std::uint32_t t0 = clock.TickCount();
    SpadesGame game(clock, TableSetup({d}));
    std::vector<TableState> seen;  // the table after every change
    game.OnChange([&] { seen.push_back(game.State()); });
    game.Start();
    EXPECT_EQ(game.State().phase, Phase::Idle);
    clock.Wait(10u * 60u * 1000u);
    ASSERT_TRUE(game.State().finished);
    std::map<EventKind, std::vector<const GameEvent*>> ev;
    for (const auto& e : game.Events()) ev[e.kind].push_back(&e);
    ASSERT_EQ(ev[EventKind::DealStart].size(), 1u);
    EXPECT_EQ(ev[EventKind::DealStart][0]->tick, t0 + tm.startMs);
    ASSERT_EQ(ev[EventKind::PromptOff].size(), 1u);
    EXPECT_EQ(ev[EventKind::PromptOff][0]->tick, t0 + tm.startMs + tm.promptMs);

    // Bids from West (after the dealer, South) round the table; the user
    // (North) gets the panel and, without a click, the scripted bid when
    // the panel times out.
    const auto& bids = ev[EventKind::Bid];
    ASSERT_EQ(bids.size(), 4u);
    std::uint32_t at = ev[EventKind::PromptOff][0]->tick;
    for (int i = 0; i < 4; ++i) {
        const int seat = (3 + i) % 4;
        EXPECT_EQ(bids[i]->seat, seat);
        EXPECT_EQ(bids[i]->text, d.bids[seat]);
        const std::uint32_t gap = bids[i]->tick - at;
        if (seat == 0) { EXPECT_EQ(gap, tm.userBidTimeoutMs); } else { EXPECT_TRUE(gap >= tm.bidMinMs && gap <= tm.bidMaxMs) << gap; }
        at = bids[i]->tick;
    }
    ASSERT_EQ(ev[EventKind::BidPanelUp].size(), 1u);
    EXPECT_EQ(ev[EventKind::BidPanelUp][0]->tick, bids[0]->tick);
    EXPECT_EQ(ev[EventKind::BidPanelUp][0]->text, "Ordinary");

    // Cards in the scripted order, each trick taken after a pause and the
    // next led by its winner.
    const auto& cards = ev[EventKind::Card];
    const auto& taken = ev[EventKind::TrickTaken];
    ASSERT_EQ(cards.size(), 52u);
    ASSERT_EQ(taken.size(), 13u);
    int leader = NextSeat(d.dealer);
    for (int t = 0; t < kTricks; ++t) {
        for (int i = 0; i < kSeats; ++i) {
            const GameEvent& e = *cards[static_cast<std::size_t>(t * 4 + i)];
            const std::uint32_t from = i > 0 ? at : t > 0 ? taken[t - 1]->tick : bids[3]->tick + tm.firstLeadMs;
            EXPECT_EQ(e.seat, (leader + i) % kSeats);
            EXPECT_EQ(e.text, CardText(d.play[t][e.seat]));
            EXPECT_GE(e.tick - from, tm.cardMinMs);
            if (t + i > 0) { EXPECT_LE(e.tick - from, tm.cardMaxMs); }
            at = e.tick;
        }
        EXPECT_EQ(taken[t]->tick, at + tm.collectMs);
        leader = TrickWinner(d.play[t], leader);
        EXPECT_EQ(taken[t]->seat, leader);
    }
    ASSERT_EQ(ev[EventKind::ScoreLineAdded].size(), 1u);
    EXPECT_EQ(ev[EventKind::ScoreLineAdded][0]->tick, taken[12]->tick + tm.scoreMs);
    ASSERT_EQ(ev[EventKind::Finished].size(), 1u);
    EXPECT_EQ(ev[EventKind::Finished][0]->tick, taken[12]->tick + tm.scoreMs + tm.nextDealMs);

    // What the table showed along the way: bids one by one, the prompt before
    // them, the panel only on the user's turn, each trick taken as "Last Trick".
    int promptStates = 0, panelStates = 0, tricksSeen = 0;
    std::size_t shownBids = 0;
    for (const TableState& s : seen) {
        const auto n = static_cast<std::size_t>(std::count_if(s.bids.begin(), s.bids.end(), [](const std::string& b) { return !b.empty(); }));
        EXPECT_TRUE(n == shownBids || n == shownBids + 1);
        shownBids = n;
        if (s.waitPrompt) { EXPECT_EQ(n, 0u); }
        promptStates += s.waitPrompt;
        if (s.bidPanel != BidPanel::None) { EXPECT_TRUE(s.turn == 0 && s.bids[0].empty()); }
        panelStates += s.bidPanel != BidPanel::None;
        const int sum = s.tricks[0] + s.tricks[1] + s.tricks[2] + s.tricks[3];
        if (sum == tricksSeen) continue;
        ASSERT_EQ(sum, tricksSeen + 1);
        EXPECT_EQ(s.lastTrick.number, sum);
        for (int seat = 0; seat < kSeats; ++seat) EXPECT_EQ(s.lastTrick.cards[seat], CardText(d.play[sum - 1][seat]));
        EXPECT_EQ(s.lastTrick.winner, taken[sum - 1]->seat);
        tricksSeen = sum;
    }
    EXPECT_GT(promptStates, 0);
    EXPECT_GT(panelStates, 0);
    EXPECT_EQ(tricksSeen, 13);

    const TableState& s = game.State();
    EXPECT_EQ(CheckDeal(s.lastHand, false), "");
    for (int seat = 0; seat < kSeats; ++seat) {
        EXPECT_EQ(s.lastHand.names[seat], game.Setup().players[seat].name);
        for (int t = 0; t < kTricks; ++t) EXPECT_EQ(s.lastHand.cards[seat][t], CardText(d.play[t][seat]));
    }
    EXPECT_EQ(s.lastHand.bids, d.bids);
    EXPECT_EQ(s.scoreLines, std::vector<ScoreLine>{ScoreDeal({}, d.bids, s.lastHand.tricks)});
}

TEST(SimGame, UserBidsThroughThePanel) {
    Table tb(TableSetup({MakeLegalDeal(8, 2, {"4", "3", "2", "3"})}));  // West bids first, then North
    const TableState& s = tb.game.State();
    EXPECT_FALSE(tb.game.UserBid("4"));  // nothing to bid yet
    ASSERT_TRUE(tb.Until([&] { return s.phase == Phase::Bidding; }));
    EXPECT_FALSE(tb.game.UserBid("4"));  // West's turn
    ASSERT_TRUE(tb.Until([&] { return s.bidPanel != BidPanel::None; }));
    EXPECT_EQ(s.bidPanel, BidPanel::Ordinary);
    EXPECT_FALSE(tb.game.UserShowCards());
    for (const char* bad : {"D", "0", "14", "", "DP"}) EXPECT_FALSE(tb.game.UserBid(bad)) << bad;
    const std::uint64_t v = tb.game.Version();
    EXPECT_TRUE(tb.game.UserBid("6"));
    EXPECT_GT(tb.game.Version(), v);
    EXPECT_EQ(s.bidPanel, BidPanel::None);
    EXPECT_EQ(s.turn, 1);
    EXPECT_FALSE(tb.game.UserBid("7"));
    tb.clock.Wait(600000);
    ASSERT_TRUE(s.finished);
    EXPECT_EQ(s.lastHand.bids[0], "6");  // the click, not the script
    EXPECT_EQ(s.scoreLines[0], ScoreDeal({}, {"6", "3", "2", "3"}, s.lastHand.tricks));
    EXPECT_EQ(tb.Of(EventKind::Bid)[0]->tick, tb.Of(EventKind::BidPanelUp)[0]->tick) << "no timeout after a click";

    // Suicide: South (first to bid) bid a number, so North must bid Nil.
    GameSetup g = TableSetup({MakeLegalDeal(4, 1, {"N", "3", "5", "N"})});
    g.suicide = true;
    Table su(g);
    ASSERT_TRUE(su.Until([&] { return su.game.State().bidPanel != BidPanel::None; }));
    EXPECT_EQ(su.game.State().bids[2], "5");
    EXPECT_FALSE(su.game.UserBid("2"));
    EXPECT_TRUE(su.game.UserBid("N"));
}

TEST(SimGame, DoubleNilPanelAndShowCards) {
    for (bool show : {false, true}) {
        Table tb(TableSetup({MakeLegalDeal(21, 3, {"D", "3", "5", "3"})}));
        ASSERT_TRUE(tb.Until([&] { return tb.game.State().bidPanel != BidPanel::None; }));
        EXPECT_EQ(tb.game.State().bidPanel, BidPanel::DoubleNil);
        EXPECT_FALSE(tb.game.UserBid("3"));  // numbers are on the other panel
        if (show) {
            EXPECT_TRUE(tb.game.UserShowCards());
            EXPECT_EQ(tb.game.State().bidPanel, BidPanel::Ordinary);
            EXPECT_FALSE(tb.game.UserBid("D"));
        }
        EXPECT_TRUE(tb.game.UserBid(show ? "N" : "D"));
        tb.clock.Wait(600000);
        EXPECT_EQ(tb.game.State().lastHand.bids[0], show ? "N" : "D");
    }
    // A random deal offers Double Nil only to a side trailing by 100.
    Table tb(TableSetup({}, 1));
    ASSERT_TRUE(tb.Until([&] { return tb.game.State().bidPanel != BidPanel::None; }));
    EXPECT_EQ(tb.game.State().bidPanel, BidPanel::Ordinary);
}

TEST(SimGame, DoubleNilPassExchangesTwoCards) {
    GameSetup g = TableSetup({}, 1, 17);
    g.dnilPass = true;
    g.doubleNilDeficit = -1000;  // open at any score
    Table tb(g);
    ASSERT_TRUE(tb.Until([&] { return tb.game.State().bidPanel == BidPanel::DoubleNil; }));
    const Hands before = tb.game.DealtHands();
    ASSERT_TRUE(tb.game.UserBid("D"));
    ASSERT_TRUE(tb.Until([&] { return tb.game.State().phase == Phase::Passing; }));
    ASSERT_TRUE(tb.Until([&] { return tb.game.State().phase == Phase::Playing; }));
    const Hands after = tb.game.DealtHands();
    EXPECT_EQ(tb.Of(EventKind::PassDone).size(), 1u);
    for (int s : {1, 3}) EXPECT_EQ(after[s], before[s]);
    for (int s : {0, 2}) {
        Hand kept;
        std::set_intersection(before[s].begin(), before[s].end(), after[s].begin(), after[s].end(), std::back_inserter(kept));
        EXPECT_EQ(after[s].size(), 13u);
        EXPECT_EQ(kept.size(), 11u) << "seat " << s;
    }
    // The Double Nil bidder gave away its two highest cards.
    auto cost = [](Card c) { return RankOf(c) + (SuitOf(c) == kSpades ? 100 : 0); };
    Hand gone, kept;
    std::set_difference(before[0].begin(), before[0].end(), after[0].begin(), after[0].end(), std::back_inserter(gone));
    std::set_intersection(before[0].begin(), before[0].end(), after[0].begin(), after[0].end(), std::back_inserter(kept));
    for (Card c : gone)
        for (Card k : kept) EXPECT_GE(cost(c), cost(k));
    tb.clock.Wait(600000);
    EXPECT_EQ(CheckDeal(tb.game.State().lastHand, false), "");
    for (int s = 0; s < kSeats; ++s) {
        Hand played;
        for (const auto& c : tb.game.State().lastHand.cards[s]) played.push_back(ParseCard(c));
        std::sort(played.begin(), played.end());
        EXPECT_EQ(played, after[s]);
    }
}

TEST(SimGame, GameEndsAt500AndANewGameStarts) {
    Table tb(TableSetup({}, 0, 12));  // endless
    const TableState& s = tb.game.State();
    ASSERT_TRUE(tb.Until([&] { return s.gameOver; }, 4u * 3600u * 1000u));
    EXPECT_EQ(s.phase, Phase::GameOver);
    ASSERT_EQ(static_cast<int>(s.scoreLines.size()), s.dealInGame);
    for (std::size_t i = 0; i < s.scoreLines.size(); ++i)
        EXPECT_EQ(IsGameOver(s.scoreLines[i]), i + 1 == s.scoreLines.size()) << i;
    const int dealNumber = s.dealNumber;
    const std::uint32_t over = tb.Of(EventKind::GameOver)[0]->tick;

    // The final line stays up, then the score list is emptied and the next deal begins.
    ASSERT_TRUE(tb.Until([&] { return !s.gameOver; }));
    ASSERT_EQ(tb.Of(EventKind::NewGame).size(), 1u);
    EXPECT_EQ(tb.Of(EventKind::NewGame)[0]->tick, over + Timing{}.gameOverMs);
    EXPECT_TRUE(s.scoreLines.empty());
    EXPECT_EQ(s.gameNumber, 2);
    EXPECT_EQ(s.dealInGame, 1);
    EXPECT_EQ(s.dealNumber, dealNumber + 1);
    EXPECT_TRUE(s.waitPrompt);
    ASSERT_TRUE(tb.Until([&] { return s.scoreLines.size() == 1; }));
    EXPECT_EQ(s.scoreLines[0], ScoreDeal({}, s.lastHand.bids, s.lastHand.tricks));
}

TEST(SimGame, SameSeedSameGameAndNothingLeftScheduled) {
    auto run = [](std::uint32_t seed) {
        Table tb(TableSetup({}, 3, seed));
        tb.clock.Wait(3600000);
        std::string log;
        for (const auto& e : tb.game.Events())
            log += std::to_string(e.tick) + EventName(e.kind) + std::to_string(e.seat) + e.text + ";";
        return log;
    };
    EXPECT_EQ(run(5), run(5));
    EXPECT_NE(run(5), run(6));

    platform::VirtualClock clock;
    {
        SpadesGame game(clock, TableSetup({}, 2));
        game.Start();
        clock.Wait(10000);
        EXPECT_EQ(game.State().phase, Phase::Bidding);
    }
    clock.Wait(3600000);  // would touch the dead game if a step were left
}

}  // namespace
}  // namespace sim
