#include "sim/spades_game.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "sim/sim_fixtures.h"

namespace sim {
namespace {

using testing::MakeLegalDeal;

GameSetup Table() {
    GameSetup g;
    g.tableName = "Oak";
    g.host = "alice";
    g.players = {Player{"me_player", "1534"}, Player{"lefty_one", "1620"}, Player{"partner_x", "1480"},
                 Player{"righty_two", "1701"}};
    g.userSeat = 0;
    return g;
}

std::vector<const GameEvent*> Of(const SpadesGame& game, EventKind k) {
    std::vector<const GameEvent*> out;
    for (const auto& e : game.Events())
        if (e.kind == k) out.push_back(&e);
    return out;
}

// Checks a finished deal as the "Last Hand" shows it: every card once,
// suit followed, spades not led early, the winner of each trick leading
// the next, the trick counts.
void ExpectLegalDeal(const FinishedDeal& h) {
    ASSERT_TRUE(h.valid);
    std::set<Card> all;
    std::array<std::vector<Card>, kSeats> byTrick;  // [seat][t]
    for (int s = 0; s < kSeats; ++s)
        for (int t = 0; t < kTricks; ++t) {
            Card c = ParseCard(h.cards[s][t]);
            ASSERT_NE(c, 0) << h.cards[s][t];
            all.insert(c);
            byTrick[s].push_back(c);
        }
    ASSERT_EQ(all.size(), 52u);
    int leader = NextSeat(h.dealer);
    bool broken = false;
    std::array<int, kSeats> tricks{};
    for (int t = 0; t < kTricks; ++t) {
        ASSERT_EQ(h.leader[t], leader) << "trick " << t;
        std::array<Card, kSeats> trick{};
        for (int i = 0; i < kSeats; ++i) {
            int s = (leader + i) % kSeats;
            Hand held(byTrick[s].begin() + t, byTrick[s].end());
            Hand legal = LegalPlays(held, trick, leader, broken);
            ASSERT_NE(std::find(legal.begin(), legal.end(), byTrick[s][t]), legal.end())
                << "deal " << h.dealNumber << " trick " << t << " seat " << s << " " << h.cards[s][t];
            trick[s] = byTrick[s][t];
        }
        for (Card c : trick) broken = broken || SuitOf(c) == kSpades;
        leader = TrickWinner(trick, leader);
        ASSERT_EQ(h.winner[t], leader);
        ++tricks[leader];
    }
    EXPECT_EQ(h.tricks, tricks);
}

TEST(SimGame, ComputerPlayersBidSensiblyAndPlayLegally) {
    for (bool suicide : {false, true}) {
        platform::VirtualClock clock;
        GameSetup g = Table();
        g.seed = suicide ? 99 : 3;
        g.suicide = suicide;
        g.randomDeals = 150;
        SpadesGame game(clock, g);
        int deals = 0, nils = 0, lastDeal = 0, games = 0;
        std::map<std::string, int> bids;
        ScoreLine prev{};
        game.OnChange([&] {
            const TableState& s = game.State();
            if (!s.lastHand.valid || s.lastHand.dealNumber == lastDeal) return;
            lastDeal = s.lastHand.dealNumber;
            ++deals;
            ExpectLegalDeal(s.lastHand);
            int total = 0;
            for (int seat = 0; seat < kSeats; ++seat) {
                const std::string& b = s.lastHand.bids[seat];
                EXPECT_TRUE(IsValidBid(b)) << b;
                ++bids[b];
                nils += IsNilBid(b);
                total += BidTricks(b);
            }
            if (suicide) {
                for (int side = 0; side < 2; ++side)
                    EXPECT_NE(IsNilBid(s.lastHand.bids[side]), IsNilBid(s.lastHand.bids[side + 2]));
            }
            EXPECT_GE(total, suicide ? 2 : 5);
            // The score line follows from the previous one of the same game.
            if (s.dealInGame == 1) prev = {};
            ASSERT_FALSE(s.scoreLines.empty());
            EXPECT_EQ(s.scoreLines.back(), ScoreDeal(prev, s.lastHand.bids, s.lastHand.tricks));
            prev = s.scoreLines.back();
            games += s.gameOver;
        });
        game.Start();
        clock.Wait(150u * 400000u);
        EXPECT_TRUE(game.State().finished);
        EXPECT_EQ(deals, 150);
        EXPECT_GT(nils, 0) << "no Nil in 150 deals";
        EXPECT_LT(nils, suicide ? 400 : 150);
        // Forced Nils make suicide games long; ordinary games end often.
        if (!suicide) {
            EXPECT_GT(games, 5);
        }
        EXPECT_GT(bids.size(), 6u);  // a spread of bids, not one fixed value
    }
}

TEST(SimGame, OneScriptedDealInTime) {
    platform::VirtualClock clock;
    GameSetup g = Table();
    ScriptedDeal d = MakeLegalDeal(5, 2, {"3", "4", "N", "5"});
    g.scripted = {d};
    const Timing& tm = g.timing;
    SpadesGame game(clock, g);

    // Snapshots of the table after every change.
    std::vector<TableState> seen;
    game.OnChange([&] { seen.push_back(game.State()); });
    const std::uint32_t t0 = clock.TickCount();
    game.Start();
    EXPECT_EQ(game.State().phase, Phase::Idle);
    clock.Wait(10u * 60u * 1000u);
    ASSERT_TRUE(game.State().finished);

    auto start = Of(game, EventKind::DealStart);
    ASSERT_EQ(start.size(), 1u);
    EXPECT_EQ(start[0]->tick, t0 + tm.startMs);
    auto promptOff = Of(game, EventKind::PromptOff);
    ASSERT_EQ(promptOff.size(), 1u);
    EXPECT_EQ(promptOff[0]->tick, start[0]->tick + tm.promptMs);

    // Bids from West (after the dealer, South) round the table, one at a
    // time; the user (North) gets the panel and, without a click, the
    // scripted bid when the panel times out.
    auto bids = Of(game, EventKind::Bid);
    ASSERT_EQ(bids.size(), 4u);
    const int order[] = {3, 0, 1, 2};
    std::uint32_t at = promptOff[0]->tick;
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(bids[i]->seat, order[i]);
        EXPECT_EQ(bids[i]->text, d.bids[order[i]]);
        std::uint32_t gap = bids[i]->tick - at;
        if (order[i] == 0) {
            EXPECT_EQ(gap, tm.userBidTimeoutMs);
        } else {
            EXPECT_GE(gap, tm.bidMinMs);
            EXPECT_LE(gap, tm.bidMaxMs);
        }
        at = bids[i]->tick;
    }
    auto panel = Of(game, EventKind::BidPanelUp);
    ASSERT_EQ(panel.size(), 1u);
    EXPECT_EQ(panel[0]->tick, bids[0]->tick);
    EXPECT_EQ(panel[0]->text, "Ordinary");

    // Cards in the scripted order, the trick taken after a pause, the next
    // trick led by its winner.
    auto cards = Of(game, EventKind::Card);
    auto taken = Of(game, EventKind::TrickTaken);
    ASSERT_EQ(cards.size(), 52u);
    ASSERT_EQ(taken.size(), 13u);
    int leader = NextSeat(d.dealer);
    at = bids[3]->tick + tm.firstLeadMs;
    for (int t = 0; t < kTricks; ++t) {
        for (int i = 0; i < kSeats; ++i) {
            const GameEvent& e = *cards[static_cast<std::size_t>(t * 4 + i)];
            int seat = (leader + i) % kSeats;
            EXPECT_EQ(e.seat, seat);
            EXPECT_EQ(e.text, CardText(d.play[t][seat]));
            if (i == 0 && t == 0) {
                EXPECT_GE(e.tick - at, tm.cardMinMs);
            } else if (i == 0) {
                EXPECT_GE(e.tick - taken[t - 1]->tick, tm.cardMinMs);
                EXPECT_LE(e.tick - taken[t - 1]->tick, tm.cardMaxMs);
            } else {
                EXPECT_GE(e.tick - at, tm.cardMinMs);
                EXPECT_LE(e.tick - at, tm.cardMaxMs);
            }
            at = e.tick;
        }
        EXPECT_EQ(taken[t]->tick, at + tm.collectMs);
        leader = TrickWinner(d.play[t], leader);
        EXPECT_EQ(taken[t]->seat, leader);
    }
    auto lines = Of(game, EventKind::ScoreLineAdded);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0]->tick, taken[12]->tick + tm.scoreMs);
    auto fin = Of(game, EventKind::Finished);
    ASSERT_EQ(fin.size(), 1u);
    EXPECT_EQ(fin[0]->tick, lines[0]->tick + tm.nextDealMs);

    // What the table showed along the way.
    int promptStates = 0, panelStates = 0;
    std::size_t shownBids = 0;
    int tricksSeen = 0;
    for (const TableState& s : seen) {
        std::size_t n = static_cast<std::size_t>(std::count_if(s.bids.begin(), s.bids.end(), [](const std::string& b) { return !b.empty(); }));
        EXPECT_TRUE(n == shownBids || n == shownBids + 1) << "bids appear one by one";
        shownBids = n;
        if (s.waitPrompt) {
            ++promptStates;
            EXPECT_EQ(n, 0u);
        }
        if (s.bidPanel != BidPanel::None) {
            ++panelStates;
            EXPECT_EQ(s.turn, 0);
            EXPECT_TRUE(s.bids[0].empty());
        }
        int sum = s.tricks[0] + s.tricks[1] + s.tricks[2] + s.tricks[3];
        if (sum > tricksSeen) {
            // A trick was just taken: it is the "Last Trick" now.
            ASSERT_EQ(sum, tricksSeen + 1);
            const ScriptedDeal& sd = d;
            EXPECT_EQ(s.lastTrick.number, sum);
            for (int seat = 0; seat < kSeats; ++seat)
                EXPECT_EQ(s.lastTrick.cards[seat], CardText(sd.play[sum - 1][seat]));
            EXPECT_EQ(s.lastTrick.winner, taken[sum - 1]->seat);
            tricksSeen = sum;
        }
    }
    EXPECT_GT(promptStates, 0);
    EXPECT_GT(panelStates, 0);
    EXPECT_EQ(tricksSeen, 13);

    // The finished deal and its score line.
    const TableState& s = game.State();
    ASSERT_TRUE(s.lastHand.valid);
    ExpectLegalDeal(s.lastHand);
    for (int seat = 0; seat < kSeats; ++seat) {
        EXPECT_EQ(s.lastHand.names[seat], g.players[seat].name);
        for (int t = 0; t < kTricks; ++t) EXPECT_EQ(s.lastHand.cards[seat][t], CardText(d.play[t][seat]));
    }
    ASSERT_EQ(s.scoreLines.size(), 1u);
    EXPECT_EQ(s.scoreLines[0], ScoreDeal({}, d.bids, s.lastHand.tricks));
    EXPECT_EQ(s.lastHand.bids, d.bids);
}

// Runs the clock in small steps until `pred` holds (at most `ms`).
template <typename Pred>
bool RunUntil(platform::VirtualClock& clock, Pred pred, std::uint32_t ms = 600000) {
    for (std::uint32_t t = 0; t < ms; t += 100) {
        if (pred()) return true;
        clock.Wait(100);
    }
    return pred();
}

TEST(SimGame, UserBidsThroughThePanel) {
    platform::VirtualClock clock;
    GameSetup g = Table();
    g.scripted = {MakeLegalDeal(8, 2, {"4", "3", "2", "3"})};  // West bids first, then North
    SpadesGame game(clock, g);
    game.Start();
    EXPECT_FALSE(game.UserBid("4"));  // nothing to bid yet
    ASSERT_TRUE(RunUntil(clock, [&] { return game.State().phase == Phase::Bidding; }));
    EXPECT_FALSE(game.UserBid("4"));  // West's turn
    ASSERT_TRUE(RunUntil(clock, [&] { return game.State().bidPanel != BidPanel::None; }));
    const TableState& s = game.State();
    EXPECT_EQ(s.bidPanel, BidPanel::Ordinary);
    EXPECT_EQ(s.turn, 0);
    EXPECT_FALSE(game.UserShowCards());
    for (const char* bad : {"D", "0", "14", "", "DP"}) EXPECT_FALSE(game.UserBid(bad)) << bad;
    const std::uint64_t v = game.Version();
    EXPECT_TRUE(game.UserBid("6"));
    EXPECT_GT(game.Version(), v);
    EXPECT_EQ(s.bids[0], "6");
    EXPECT_EQ(s.bidPanel, BidPanel::None);
    EXPECT_EQ(s.turn, 1);
    EXPECT_FALSE(game.UserBid("7"));
    clock.Wait(600000);
    ASSERT_TRUE(s.finished);
    EXPECT_EQ(s.lastHand.bids[0], "6");  // the click, not the script
    EXPECT_EQ(s.scoreLines[0], ScoreDeal({}, {"6", "3", "2", "3"}, s.lastHand.tricks));
    // The timeout never fired: the bid came at the click.
    auto bids = Of(game, EventKind::Bid);
    EXPECT_EQ(bids[0]->tick - Of(game, EventKind::BidPanelUp)[0]->tick, 0u);
}

TEST(SimGame, DoubleNilPanelAndShowCards) {
    for (bool show : {false, true}) {
        platform::VirtualClock clock;
        GameSetup g = Table();
        g.scripted = {MakeLegalDeal(21, 3, {"D", "3", "5", "3"})};
        SpadesGame game(clock, g);
        game.Start();
        ASSERT_TRUE(RunUntil(clock, [&] { return game.State().bidPanel != BidPanel::None; }));
        EXPECT_EQ(game.State().bidPanel, BidPanel::DoubleNil);
        EXPECT_FALSE(game.UserBid("3"));  // numbers are on the other panel
        if (show) {
            EXPECT_TRUE(game.UserShowCards());
            EXPECT_EQ(game.State().bidPanel, BidPanel::Ordinary);
            EXPECT_FALSE(game.UserBid("D"));
            EXPECT_TRUE(game.UserBid("N"));
        } else {
            EXPECT_TRUE(game.UserBid("D"));
        }
        clock.Wait(600000);
        EXPECT_EQ(game.State().lastHand.bids[0], show ? "N" : "D");
    }
    // A random deal offers Double Nil only to a side trailing by 100.
    platform::VirtualClock clock;
    GameSetup g = Table();
    g.randomDeals = 1;
    SpadesGame game(clock, g);
    game.Start();
    ASSERT_TRUE(RunUntil(clock, [&] { return game.State().bidPanel != BidPanel::None; }));
    EXPECT_EQ(game.State().bidPanel, BidPanel::Ordinary);
}

TEST(SimGame, SuicideTableRefusesAWrongUserBid) {
    platform::VirtualClock clock;
    GameSetup g = Table();
    g.suicide = true;
    g.scripted = {MakeLegalDeal(4, 1, {"N", "3", "5", "N"})};  // South bids first, then West, then North
    SpadesGame game(clock, g);
    game.Start();
    ASSERT_TRUE(RunUntil(clock, [&] { return game.State().bidPanel != BidPanel::None; }));
    EXPECT_EQ(game.State().bids[2], "5");
    EXPECT_FALSE(game.UserBid("2"));  // South bid a number: North must bid Nil
    EXPECT_TRUE(game.UserBid("N"));
}

TEST(SimGame, DoubleNilPassExchangesTwoCards) {
    platform::VirtualClock clock;
    GameSetup g = Table();
    g.dnilPass = true;
    g.doubleNilDeficit = -1000;  // open at any score
    g.randomDeals = 1;
    g.seed = 17;
    SpadesGame game(clock, g);
    game.Start();
    ASSERT_TRUE(RunUntil(clock, [&] { return game.State().bidPanel == BidPanel::DoubleNil; }));
    const Hands before = game.DealtHands();
    ASSERT_TRUE(game.UserBid("D"));
    ASSERT_TRUE(RunUntil(clock, [&] { return game.State().phase == Phase::Passing; }));
    ASSERT_TRUE(RunUntil(clock, [&] { return game.State().phase == Phase::Playing; }));
    const Hands after = game.DealtHands();
    for (int s : {1, 3}) EXPECT_EQ(after[s], before[s]);
    for (int s : {0, 2}) {
        ASSERT_EQ(after[s].size(), 13u);
        Hand kept;
        std::set_intersection(before[s].begin(), before[s].end(), after[s].begin(), after[s].end(), std::back_inserter(kept));
        EXPECT_EQ(kept.size(), 11u) << "seat " << s;
    }
    // The Double Nil bidder gave away its two highest cards.
    Hand gone;
    std::set_difference(before[0].begin(), before[0].end(), after[0].begin(), after[0].end(), std::back_inserter(gone));
    auto cost = [](Card c) { return RankOf(c) + (SuitOf(c) == kSpades ? 100 : 0); };
    for (Card c : gone) {
        for (Card k : after[0]) {
            if (std::find(before[0].begin(), before[0].end(), k) != before[0].end()) {
                EXPECT_GE(cost(c), cost(k));
            }
        }
    }
    ASSERT_EQ(Of(game, EventKind::PassDone).size(), 1u);
    clock.Wait(600000);
    ExpectLegalDeal(game.State().lastHand);
    for (int s = 0; s < kSeats; ++s) {
        Hand played;
        for (const auto& c : game.State().lastHand.cards[s]) played.push_back(ParseCard(c));
        std::sort(played.begin(), played.end());
        EXPECT_EQ(played, after[s]);
    }
}

TEST(SimGame, GameEndsAt500AndANewGameStarts) {
    platform::VirtualClock clock;
    GameSetup g = Table();
    g.randomDeals = 0;  // endless
    g.seed = 12;
    SpadesGame game(clock, g);
    game.Start();
    const TableState& s = game.State();
    ASSERT_TRUE(RunUntil(clock, [&] { return s.gameOver; }, 4u * 3600u * 1000u));
    ASSERT_FALSE(s.scoreLines.empty());
    EXPECT_TRUE(IsGameOver(s.scoreLines.back()));
    for (std::size_t i = 0; i + 1 < s.scoreLines.size(); ++i) EXPECT_FALSE(IsGameOver(s.scoreLines[i]));
    EXPECT_EQ(s.phase, Phase::GameOver);
    const int dealsInFirstGame = s.dealInGame;
    EXPECT_EQ(static_cast<int>(s.scoreLines.size()), dealsInFirstGame);
    const int dealNumber = s.dealNumber;
    const std::uint32_t over = Of(game, EventKind::GameOver)[0]->tick;

    // The final line stays up, then the score list is emptied and the next
    // deal begins.
    ASSERT_TRUE(RunUntil(clock, [&] { return !s.gameOver; }));
    auto newGame = Of(game, EventKind::NewGame);
    ASSERT_EQ(newGame.size(), 1u);
    EXPECT_EQ(newGame[0]->tick, over + g.timing.gameOverMs);
    EXPECT_TRUE(s.scoreLines.empty());
    EXPECT_EQ(s.gameNumber, 2);
    EXPECT_EQ(s.dealInGame, 1);
    EXPECT_EQ(s.dealNumber, dealNumber + 1);
    EXPECT_TRUE(s.waitPrompt);
    ASSERT_TRUE(RunUntil(clock, [&] { return s.scoreLines.size() == 1; }));
    EXPECT_EQ(s.scoreLines[0], ScoreDeal({}, s.lastHand.bids, s.lastHand.tricks));
}

TEST(SimGame, SameSeedSameGame) {
    auto run = [](std::uint32_t seed) {
        platform::VirtualClock clock;
        GameSetup g = Table();
        g.seed = seed;
        g.randomDeals = 3;
        SpadesGame game(clock, g);
        game.Start();
        clock.Wait(3600000);
        std::string log;
        for (const auto& e : game.Events())
            log += std::to_string(e.tick) + EventName(e.kind) + std::to_string(e.seat) + e.text + ";";
        return log;
    };
    EXPECT_EQ(run(5), run(5));
    EXPECT_NE(run(5), run(6));
}

TEST(SimGame, DestroyedGameLeavesNothingScheduled) {
    platform::VirtualClock clock;
    {
        GameSetup g = Table();
        g.randomDeals = 2;
        SpadesGame game(clock, g);
        game.Start();
        clock.Wait(10000);
        EXPECT_EQ(game.State().phase, Phase::Bidding);
    }
    clock.Wait(3600000);  // would touch the dead game if a step were left
}

}  // namespace
}  // namespace sim
