#include "sim/rules.h"

#include <gtest/gtest.h>

namespace sim {
namespace {

Card C(const char* t) { return ParseCard(t); }
Hand H(std::initializer_list<const char*> cards) {
    Hand h;
    for (const char* c : cards) h.push_back(C(c));
    return h;
}
using Bids = std::array<std::string, kSeats>;
using Tricks = std::array<int, kSeats>;

TEST(SimRules, CardTextsAreStrict) {
    EXPECT_EQ(C("AS"), 314);
    EXPECT_EQ(C("2C"), 2);
    EXPECT_EQ(C("TH"), 210);
    EXPECT_EQ(CardText(314), "AS");
    EXPECT_EQ(CardText(111), "JD");
    for (const char* bad : {"", "A", "1S", "AX", "as", "10H", "[AS", "AS "}) EXPECT_EQ(C(bad), 0) << bad;
    EXPECT_EQ(FullDeck().size(), 52u);
}

TEST(SimRules, BidsAndSuicide) {
    for (const char* ok : {"1", "9", "10", "13", "N", "D"}) EXPECT_TRUE(IsValidBid(ok)) << ok;
    for (const char* bad : {"", "0", "14", "01", "DP", "n", "4 "}) EXPECT_FALSE(IsValidBid(bad)) << bad;
    EXPECT_EQ(BidTricks("12"), 12);
    EXPECT_EQ(BidTricks("N"), 0);
    EXPECT_EQ(NilValue("D"), 200);

    Bids bids{"", "N", "", ""};
    EXPECT_TRUE(SuicideAllows(bids, 0, "4"));   // partner (South) not bid yet
    EXPECT_TRUE(SuicideAllows(bids, 3, "3"));   // East bid Nil: West bids a number
    EXPECT_FALSE(SuicideAllows(bids, 3, "N"));  // not both
    bids[0] = "5";
    EXPECT_FALSE(SuicideAllows(bids, 2, "2"));  // North bid a number: South must bid Nil
    EXPECT_TRUE(SuicideAllows(bids, 2, "D"));
}

TEST(SimRules, LegalPlaysFollowSuitAndSpadeLeads) {
    Hand hand = H({"2C", "KC", "5H", "3S", "AS"});
    std::array<Card, kSeats> none{};
    // Leading before spades are broken: no spade.
    EXPECT_EQ(LegalPlays(hand, none, 1, false), H({"2C", "KC", "5H"}));
    EXPECT_EQ(LegalPlays(hand, none, 1, true), hand);
    // Only spades left: they may be led.
    EXPECT_EQ(LegalPlays(H({"3S", "AS"}), none, 1, false), H({"3S", "AS"}));
    // Following: the led suit if held, else anything.
    std::array<Card, kSeats> trick{};
    trick[3] = C("9C");
    EXPECT_EQ(LegalPlays(hand, trick, 3, false), H({"2C", "KC"}));
    trick[3] = C("9D");
    EXPECT_EQ(LegalPlays(hand, trick, 3, false), hand);
}

TEST(SimRules, TrickWinner) {
    // Led by East: highest of the led suit wins, off-suit cards never do.
    EXPECT_EQ(TrickWinner({C("AD"), C("5H"), C("KH"), C("2H")}, 1), 2);
    // A spade beats the led suit; the highest spade wins.
    EXPECT_EQ(TrickWinner({C("2S"), C("5H"), C("AH"), C("4S")}, 1), 3);
    // Spades led: plain spade ranking.
    EXPECT_EQ(TrickWinner({C("TS"), C("AH"), C("JS"), C("3S")}, 0), 2);
    // Nobody follows: the leader wins.
    EXPECT_EQ(TrickWinner({C("AC"), C("AD"), C("AH"), C("2C")}, 3), 0);
}

TEST(SimRules, ContractsMadeAndSet) {
    // N/S bid 4 + 3 and take 9: 70 + 2 bags. E/W bid 5 and take 4: set.
    Bids bids{"4", "2", "3", "3"};
    Tricks tricks{5, 2, 4, 2};
    ScoreLine line = ScoreDeal({0, 0, 0, 0}, bids, tricks);
    EXPECT_EQ(line, (ScoreLine{72, 2, -50, 0}));
    // Cumulative from a previous line.
    line = ScoreDeal({100, 3, 50, 1}, bids, tricks);
    EXPECT_EQ(line, (ScoreLine{172, 5, 0, 1}));
    // Exactly the contract: no bag.
    EXPECT_EQ(ScoreDeal({0, 0, 0, 0}, {"3", "3", "3", "4"}, {3, 3, 3, 4}), (ScoreLine{60, 0, 70, 0}));
}

TEST(SimRules, NilAndDoubleNil) {
    // North Nil made, South 4 takes 5: 40 + 1 + 100.
    EXPECT_EQ(ScoreSide(0, {"N", "4", "4", "4"}, {0, 4, 5, 4}, 0).points, 141);
    // North Nil set with 2 tricks; those tricks count for South's 4: 6 - 4 = 2 bags.
    SideResult r = ScoreSide(0, {"N", "4", "4", "4"}, {2, 3, 4, 4}, 0);
    EXPECT_EQ(r.contract, 4);
    EXPECT_EQ(r.tricks, 6);
    EXPECT_EQ(r.bags, 2);
    EXPECT_EQ(r.points, 40 + 2 - 100);
    // Double Nil made and set.
    EXPECT_EQ(ScoreSide(1, {"4", "D", "4", "5"}, {4, 0, 4, 5}, 0).points, 50 + 200);
    EXPECT_EQ(ScoreSide(1, {"4", "D", "4", "5"}, {4, 1, 4, 4}, 0).points, 50 - 200);
    // Nil made but the partner is set.
    EXPECT_EQ(ScoreSide(0, {"5", "4", "N", "4"}, {3, 5, 0, 5}, 0).points, -50 + 100);
}

TEST(SimRules, BothPartnersNilMakeEveryTrickABag) {
    // East and West both Nil: East takes 2 tricks, West none.
    SideResult r = ScoreSide(1, {"5", "N", "6", "N"}, {6, 2, 5, 0}, 0);
    EXPECT_EQ(r.contract, 0);
    EXPECT_EQ(r.bags, 2);
    EXPECT_EQ(r.points, 2 - 100 + 100);
    ScoreLine line = ScoreDeal({0, 0, 0, 9}, {"5", "N", "6", "N"}, {6, 2, 5, 0});
    EXPECT_EQ(line[2], 2 - 100 + 100 - 100);  // 9 + 2 bags: the ten-bag penalty
    EXPECT_EQ(line[3], 1);
}

TEST(SimRules, BagPenalties) {
    // 8 bags + 3: pay 100, count falls to 1.
    ScoreLine line = ScoreDeal({200, 8, 0, 0}, {"4", "4", "3", "2"}, {5, 3, 5, 0});
    EXPECT_EQ(line[0], 200 + 73 - 100);
    EXPECT_EQ(line[1], 1);
    // Exactly ten.
    line = ScoreDeal({0, 7, 0, 0}, {"2", "4", "2", "2"}, {4, 3, 3, 3});
    EXPECT_EQ(line[0], 43 - 100);
    EXPECT_EQ(line[1], 0);
    // 9 + 12 = 21 bags: two full tens cost 200.
    line = ScoreDeal({0, 9, 0, 0}, {"1", "N", "N", "N"}, {13, 0, 0, 0});
    EXPECT_EQ(line[0], 10 + 12 + 100 - 200);  // South's Nil made
    EXPECT_EQ(line[1], 1);
}

TEST(SimRules, OverbidSideIsAlwaysSet) {
    // 7 + 7 = 14 can never be made, even with all thirteen tricks.
    ScoreLine line = ScoreDeal({0, 0, 0, 0}, {"7", "1", "7", "1"}, {7, 0, 6, 0});
    EXPECT_EQ(line[0], -140);
    EXPECT_EQ(line[1], 0);
    EXPECT_EQ(line[2], -20);
}

TEST(SimRules, GameOver) {
    EXPECT_TRUE(IsGameOver({500, 0, 480, 0}));
    EXPECT_TRUE(IsGameOver({480, 0, 520, 0}));
    EXPECT_TRUE(IsGameOver({530, 0, 510, 0}));
    EXPECT_FALSE(IsGameOver({510, 0, 510, 0}));
    EXPECT_FALSE(IsGameOver({499, 9, 450, 0}));
    EXPECT_FALSE(IsGameOver({-300, 0, 100, 0}));
    EXPECT_TRUE(IsGameOver({300, 0, 250, 0}, 300));
}

}  // namespace
}  // namespace sim
