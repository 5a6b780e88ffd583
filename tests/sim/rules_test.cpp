#include "sim/rules.h"

#include <gtest/gtest.h>

#include <random>

#include "scoring/deal_checks.h"

namespace sim {
namespace {

Card C(const char* t) { return ParseCard(t); }
Hand H(std::initializer_list<const char*> cards) {
    Hand h;
    for (const char* c : cards) h.push_back(C(c));
    return h;
}
using Bids = std::array<std::string, kSeats>;

TEST(SimRules, CardTextsAndBidsAreStrict) {
    for (Card c : FullDeck()) EXPECT_EQ(C(CardText(c).c_str()), c) << CardText(c);
    for (const char* bad : {"", "A", "1S", "AX", "as", "10H", "[AS", "AS "}) EXPECT_EQ(C(bad), 0) << bad;
    for (const char* ok : {"1", "10", "13", "N", "D"}) EXPECT_TRUE(IsValidBid(ok)) << ok;
    for (const char* bad : {"", "0", "14", "01", "DP", "n", "4 "}) EXPECT_FALSE(IsValidBid(bad)) << bad;
}

TEST(SimRules, SuicideNeedsExactlyOneNilPerSide) {
    Bids bids{"", "N", "", ""};
    EXPECT_TRUE(SuicideAllows(bids, 0, "4"));   // partner (South) not bid yet
    EXPECT_TRUE(SuicideAllows(bids, 3, "3"));   // East bid Nil: West bids a number
    EXPECT_FALSE(SuicideAllows(bids, 3, "N"));  // not both
    bids[0] = "5";
    EXPECT_FALSE(SuicideAllows(bids, 2, "2"));  // North bid a number: South must bid Nil
    EXPECT_TRUE(SuicideAllows(bids, 2, "D"));
}

TEST(SimRules, LegalPlaysAndTrickWinners) {
    const Hand hand = H({"2C", "KC", "5H", "3S", "AS"});
    std::array<Card, kSeats> trick{};
    EXPECT_EQ(LegalPlays(hand, trick, 1, false), H({"2C", "KC", "5H"}));  // no spade lead before broken
    EXPECT_EQ(LegalPlays(hand, trick, 1, true), hand);
    EXPECT_EQ(LegalPlays(H({"3S", "AS"}), trick, 1, false), H({"3S", "AS"}));  // nothing else to lead
    trick[3] = C("9C");
    EXPECT_EQ(LegalPlays(hand, trick, 3, false), H({"2C", "KC"}));  // follow suit
    trick[3] = C("9D");
    EXPECT_EQ(LegalPlays(hand, trick, 3, false), hand);  // void: anything

    EXPECT_EQ(TrickWinner({C("AD"), C("5H"), C("KH"), C("2H")}, 1), 2);  // off-suit ace loses
    EXPECT_EQ(TrickWinner({C("2S"), C("5H"), C("AH"), C("4S")}, 1), 3);  // highest trump
    EXPECT_EQ(TrickWinner({C("TS"), C("AH"), C("JS"), C("3S")}, 0), 2);  // spades led
    EXPECT_EQ(TrickWinner({C("AC"), C("AD"), C("AH"), C("2C")}, 3), 0);  // nobody follows
}

TEST(SimRules, ScoreLines) {
    struct Row {
        const char* what;
        ScoreLine prev;
        Bids bids;
        std::array<int, kSeats> tricks;
        ScoreLine want;
    };
    const Row rows[] = {
        {"made with bags / set", {0, 0, 0, 0}, {"4", "2", "3", "3"}, {5, 2, 4, 2}, {72, 2, -50, 0}},
        {"exact contracts", {0, 0, 0, 0}, {"3", "3", "3", "4"}, {3, 3, 3, 4}, {60, 0, 70, 0}},
        {"Nil made", {0, 0, 0, 0}, {"N", "4", "4", "4"}, {0, 4, 5, 4}, {141, 1, 80, 0}},
        // The Nil bidder's tricks count toward the partner's contract.
        {"Nil set", {0, 0, 0, 0}, {"N", "4", "4", "4"}, {2, 3, 4, 4}, {-58, 2, -80, 0}},
        {"Nil made, partner set", {0, 0, 0, 0}, {"5", "4", "N", "4"}, {3, 5, 0, 5}, {50, 0, 82, 2}},
        {"Double Nil made", {0, 0, 0, 0}, {"4", "D", "4", "5"}, {4, 0, 4, 5}, {80, 0, 250, 0}},
        {"Double Nil set", {0, 0, 0, 0}, {"4", "D", "4", "5"}, {4, 1, 4, 4}, {80, 0, -150, 0}},
        // Both partners Nil: every trick is a bag, and 9 + 2 bags cost 100.
        {"both Nil", {0, 0, 0, 9}, {"5", "N", "6", "N"}, {6, 2, 5, 0}, {110, 0, -98, 1}},
        {"8 + 3 bags", {200, 8, 0, 0}, {"4", "4", "3", "2"}, {5, 3, 5, 0}, {173, 1, -60, 0}},
        {"exactly ten bags", {0, 7, 0, 0}, {"2", "4", "2", "2"}, {4, 3, 3, 3}, {-57, 0, 60, 0}},
        {"two tens of bags", {0, 9, 0, 0}, {"1", "N", "N", "N"}, {13, 0, 0, 0}, {-78, 1, 200, 0}},
        {"overbid is always set", {0, 0, 0, 0}, {"7", "1", "7", "1"}, {7, 0, 6, 0}, {-140, 0, -20, 0}},
    };
    for (const Row& r : rows) EXPECT_EQ(ScoreDeal(r.prev, r.bids, r.tricks), r.want) << r.what;
}

TEST(SimRules, GameOver) {
    EXPECT_TRUE(IsGameOver({500, 0, 480, 0}));
    EXPECT_TRUE(IsGameOver({480, 0, 520, 0}));
    EXPECT_TRUE(IsGameOver({530, 0, 510, 0}));
    EXPECT_FALSE(IsGameOver({510, 0, 510, 0}));  // tied above the game point: play on
    EXPECT_FALSE(IsGameOver({499, 9, 450, 0}));
    EXPECT_TRUE(IsGameOver({300, 0, 250, 0}, 300));
}

}  // namespace
}  // namespace sim

namespace {

// The companion's check of a score line agrees with the game's scoring over
// every kind of deal: made, set, Nils, two Nil bidders, bag penalties.
TEST(SimRulesAgainstChecks, ScoreLineCheckAgreesWithTheGame) {
    std::mt19937 rng(7);
    const std::array<std::string, 4> kinds = {"N", "D", "1", "13"};
    for (int n = 0; n < 2000; ++n) {
        std::array<std::string, 4> bids;
        for (auto& b : bids) {
            const int r = static_cast<int>(rng() % 16);
            b = r < 2 ? kinds[static_cast<std::size_t>(r)] : std::to_string(r % 7 + 1);
        }
        std::array<int, 4> tricks{};
        for (int left = 13, s = 0; s < 4; ++s) {
            tricks[static_cast<std::size_t>(s)] = s == 3 ? left : static_cast<int>(rng() % static_cast<unsigned>(left + 1));
            left -= tricks[static_cast<std::size_t>(s)];
        }
        const sim::ScoreLine prev = {static_cast<int>(rng() % 600) - 100, static_cast<int>(rng() % 10),
                                     static_cast<int>(rng() % 600) - 100, static_cast<int>(rng() % 10)};
        const sim::ScoreLine next = sim::ScoreDeal(prev, bids, tricks);
        EXPECT_EQ(scoring::CheckScoreLine(prev, next, bids, tricks), "")
            << bids[0] << " " << bids[1] << " " << bids[2] << " " << bids[3];
    }
}

}  // namespace
