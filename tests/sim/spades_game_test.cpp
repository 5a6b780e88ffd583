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
    template <typename Pred>
    bool Until(Pred pred, std::uint32_t ms = 600000) { return testing::RunUntil(clock, pred, ms); }
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
    Scenario sc;
    std::string error;
    ScenarioFromJson(testing::OneDealScenario(d, false, suicide), sc, error);
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
    std::uint32_t prev = clock.TickCount();
    SpadesGame game(clock, TableSetup({d}));
    game.Start();
    clock.Wait(10u * 60u * 1000u);
    ASSERT_TRUE(game.State().finished);
    const TableState& s = game.State();

    // Bids from West (after the dealer, South) round the table; the user
    // (North) gets the panel and, without a click, the scripted bid when it
    // times out. The cards and tricks that follow are filed one by one by
    // the session tests; here the delays between all the events.
    const std::vector<std::string> want = {"DealStart 2 1", "PromptOff -1 ", "Bid 3 5", "BidPanelUp 0 Ordinary",
                                           "Bid 0 3", "Bid 1 4", "Bid 2 N"};
    const std::map<EventKind, std::pair<std::uint32_t, std::uint32_t>> delay = {
        {EventKind::DealStart, {tm.startMs, tm.startMs}}, {EventKind::PromptOff, {tm.promptMs, tm.promptMs}},
        {EventKind::BidPanelUp, {0, 0}}, {EventKind::Bid, {tm.bidMinMs, tm.bidMaxMs}},
        {EventKind::Card, {tm.cardMinMs, tm.cardMaxMs}}, {EventKind::TrickTaken, {tm.collectMs, tm.collectMs}},
        {EventKind::ScoreLineAdded, {tm.scoreMs, tm.scoreMs}}, {EventKind::Finished, {tm.nextDealMs, tm.nextDealMs}}};
    std::vector<std::string> got;
    for (const GameEvent& e : game.Events()) {
        auto [lo, hi] = delay.at(e.kind);
        if (e.kind == EventKind::Bid && e.seat == 0) lo = hi = tm.userBidTimeoutMs;
        if (e.kind == EventKind::Card && got.back() == "Bid 2 N") lo += tm.firstLeadMs, hi += tm.firstLeadMs;
        got.push_back(EventName(e.kind) + (" " + std::to_string(e.seat)) + " " + e.text);
        EXPECT_TRUE(e.tick - prev >= lo && e.tick - prev <= hi) << got.back() << " after " << e.tick - prev << " ms";
        prev = e.tick;
    }
    ASSERT_EQ(got.size(), want.size() + 13 * 5 + 2);
    EXPECT_EQ(std::vector<std::string>(got.begin(), got.begin() + 7), want);
    EXPECT_EQ(s.scoreLines, std::vector<ScoreLine>{ScoreDeal({}, d.bids, s.lastHand.tricks)});
}

TEST(SimGame, UserBidsThroughThePanel) {
    Table tb(TableSetup({MakeLegalDeal(8, 2, {"4", "3", "2", "3"})}));  // West bids first, then North
    const TableState& s = tb.game.State();
    EXPECT_FALSE(tb.game.UserBid("4"));  // nothing to bid yet
    ASSERT_TRUE(tb.Until([&] { return s.phase == Phase::Bidding; }));
    EXPECT_FALSE(tb.game.UserBid("4"));  // West's turn
    ASSERT_TRUE(tb.Until([&] { return s.bidPanel == BidPanel::Ordinary; }));
    EXPECT_FALSE(tb.game.UserShowCards());
    for (const char* bad : {"D", "0", "14", "", "DP"}) EXPECT_FALSE(tb.game.UserBid(bad)) << bad;
    EXPECT_TRUE(tb.game.UserBid("6"));
    EXPECT_EQ(s.bidPanel, BidPanel::None);
    EXPECT_EQ(s.turn, 1);
    EXPECT_FALSE(tb.game.UserBid("7"));
    tb.clock.Wait(600000);
    EXPECT_EQ(s.lastHand.bids[0], "6");  // the click, not the script
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
        ASSERT_TRUE(tb.Until([&] { return tb.game.State().bidPanel == BidPanel::DoubleNil; }));
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
    auto cost = [](Card c) { return RankOf(c) + (SuitOf(c) == kSpades ? 100 : 0); };
    for (int s : {0, 2}) {
        Hand kept, gone;
        std::set_intersection(before[s].begin(), before[s].end(), after[s].begin(), after[s].end(), std::back_inserter(kept));
        std::set_difference(before[s].begin(), before[s].end(), after[s].begin(), after[s].end(), std::back_inserter(gone));
        EXPECT_EQ(after[s].size(), 13u);
        EXPECT_EQ(kept.size(), 11u) << "seat " << s;
        for (Card c : gone)  // the Double Nil bidder gives away its two highest cards
            for (Card k : kept) EXPECT_TRUE(s != 0 || cost(c) >= cost(k)) << CardText(c) << " kept " << CardText(k);
    }
    // The deal is played from the hands after the pass.
    tb.clock.Wait(600000);
    for (int s : {0, 2}) {
        Hand played;
        for (const auto& c : tb.game.State().lastHand.cards[s]) played.push_back(ParseCard(c));
        std::sort(played.begin(), played.end());
        EXPECT_EQ(played, after[s]);
    }
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
