// Rule checks of a deal's readings: each misreading names the rule it broke.
#include "scoring/deal_checks.h"

#include <gtest/gtest.h>

#include "core/notation.h"

using namespace scoring;

namespace {

// Seat s holds the whole of suit s: trick t is everyone's t-th card, North leads.
Hands SuitPerSeat() {
    Hands h{};
    for (int s = 0; s < 4; ++s)
        for (int r = 0; r < 13; ++r) h[s][r] = s * 100 + r + 2;
    return h;
}

void FromHands(const Hands& h, TrickCards& cards, TrickMarks& marks) {
    for (int t = 0; t < 13; ++t)
        for (int s = 0; s < 4; ++s) {
            cards[t][s] = core::CardText(h[s][t]);
            marks[t][s] = s == 0 ? 1 : 0;
        }
}

TEST(DealChecks, LastHandNeedsFiftyTwoDifferentCards) {
    Hands h = SuitPerSeat();
    EXPECT_EQ(CheckLastHand(h), "");
    h[2][5] = h[1][5];
    EXPECT_EQ(CheckLastHand(h), core::CardText(h[1][5]) + " appears twice in the last hand");
    h = SuitPerSeat();
    h[3][0] = 0;  // an unread card
    EXPECT_EQ(CheckLastHand(h), "West's hand holds card code 0, not a card");
}

TEST(DealChecks, TricksOneCardEachAndSuitFollowedWhereTheHandCould) {
    TrickCards cards;
    TrickMarks marks{};
    FromHands(SuitPerSeat(), cards, marks);
    // Nobody can follow clubs: every seat holds one suit only.
    EXPECT_EQ(CheckTricks(cards, marks, 13), "");
    EXPECT_EQ(CheckTricks(cards, marks, 5), "");

    TrickCards missing = cards;
    missing[3][1] = "";
    EXPECT_EQ(CheckTricks(missing, marks, 13), "trick 4 has no card of East");
    EXPECT_EQ(CheckTricks(missing, marks, 3), "") << "a trick not yet played is not checked";

    TrickCards twice = cards;
    twice[6][2] = cards[6][1];
    EXPECT_EQ(CheckTricks(twice, marks, 13), cards[6][1] + " is played twice");

    TrickMarks twoLeaders = marks;
    twoLeaders[0][2] = 1;
    EXPECT_EQ(CheckTricks(cards, twoLeaders, 13), "trick 1 has 2 leaders");

    // East shows no club in trick 1 but plays one in trick 5.
    TrickCards revoke = cards;
    std::swap(revoke[4][0], revoke[4][1]);
    EXPECT_EQ(CheckTricks(revoke, marks, 13), "East did not follow suit in trick 1 but still held 6C");
    EXPECT_EQ(CheckTricks(revoke, marks, 4), "") << "not known before trick 5";
}

TEST(DealChecks, TrickCountsAddUpToTheTricksPlayed) {
    EXPECT_EQ(CheckTrickCounts({4, 3, 3, 3}, 13), "");
    EXPECT_EQ(CheckTrickCounts({0, 0, 0, 0}, 0), "");
    EXPECT_EQ(CheckTrickCounts({4, 3, 3, 2}, 13), "the trick counts add up to 12, not to the 13 tricks played");
    EXPECT_EQ(CheckTrickCounts({14, 0, 0, -1}, 13), "North took 14 tricks");
}

TEST(DealChecks, BidsLegalForTheTable) {
    EXPECT_EQ(CheckBids({"4", "N", "9", "D"}, false), "");
    EXPECT_EQ(CheckBids({"4", "DP", "3", "2"}, true), "");
    EXPECT_EQ(CheckBids({"4", "DP", "3", "2"}, false), "East bid a Double Nil with a pass at a table without the pass");
    for (const char* bad : {"", "0", "14", "?", "4?", "07"})
        EXPECT_EQ(CheckBids({"4", "3", bad, "2"}, false), std::string("South's bid \"") + bad + "\" is not a bid") << bad;
    EXPECT_EQ(CheckBids({"7", "3", "7", "2"}, false), "North/South bid 14 tricks");
}

TEST(DealChecks, ScoreLineFromBidsAndTricks) {
    const struct {
        ScoreRows::Row prev;
        std::array<std::string, 4> bids;
        std::array<int, 4> tricks;
        ScoreRows::Row next;
    } rows[] = {
        {{0, 0, 0, 0}, {"4", "3", "3", "2"}, {4, 3, 3, 3}, {70, 0, 51, 1}},        // made, one bag
        {{0, 0, 0, 0}, {"4", "3", "3", "5"}, {4, 3, 3, 3}, {70, 0, -80, 0}},       // E/W set
        {{100, 9, 50, 0}, {"4", "3", "3", "2"}, {5, 2, 3, 3}, {71, 0, 100, 0}},     // ten bags cost 100
        {{0, 0, 0, 0}, {"N", "3", "5", "2"}, {0, 3, 6, 4}, {151, 1, 52, 2}},       // Nil made
        {{0, 0, 0, 0}, {"N", "3", "5", "2"}, {1, 3, 5, 4}, {-49, 1, 52, 2}},       // Nil broken, its trick a bag
        {{0, 0, 0, 0}, {"D", "3", "N", "2"}, {0, 7, 0, 6}, {300, 0, 58, 8}},       // two Nil bidders
    };
    for (const auto& r : rows) {
        EXPECT_EQ(ExpectedScoreLine(r.prev, r.bids, r.tricks), r.next) << r.bids[0] << r.bids[2];
        EXPECT_EQ(CheckScoreLine(r.prev, r.next, r.bids, r.tricks), "");
    }
    EXPECT_EQ(CheckScoreLine({0, 0, 0, 0}, {80, 0, 51, 1}, {"4", "3", "3", "2"}, {4, 3, 3, 3}),
              "North/South have 80 points; bids and tricks give 70");
    EXPECT_EQ(CheckScoreLine({0, 0, 0, 0}, {70, 0, 51, 0}, {"4", "3", "3", "2"}, {4, 3, 3, 3}),
              "East/West have 0 bags; bids and tricks give 1");
}

// The whole deal: one text per broken rule, the first card rule only, and
// bids and score judged only when every bid was seen.
TEST(DealChecks, WholeDealNamesEachBrokenRuleOnce) {
    DealReading d;
    FromHands(SuitPerSeat(), d.Cards, d.Marks);
    // North leads the first trick; West trumps it and every trick after,
    // leading each: West takes all 13.
    for (int t = 1; t < 13; ++t) d.Marks[t] = {0, 0, 0, 1};
    d.Bids = {"1", "1", "1", "12"};
    d.Next = ExpectedScoreLine({}, d.Bids, {0, 0, 0, 13});
    EXPECT_TRUE(CheckDeal(d).empty());

    DealReading unseen = d;
    unseen.Bids[2] = "";
    unseen.Next = {1, 2, 3, 4};
    EXPECT_TRUE(CheckDeal(unseen).empty()) << "a deal joined late has no bids to judge";

    DealReading wrongScore = d;
    wrongScore.Next[2] += 10;
    ASSERT_EQ(CheckDeal(wrongScore).size(), 1u);
    EXPECT_NE(CheckDeal(wrongScore)[0].find("East/West have"), std::string::npos);

    // A misread card is one warning, and the score is not judged on it.
    DealReading misread = wrongScore;
    misread.Cards[3][1] = "1";
    misread.Bids[0] = "14";
    const auto broken = CheckDeal(misread);
    ASSERT_EQ(broken.size(), 2u);
    EXPECT_NE(broken[0].find("East's hand holds"), std::string::npos) << broken[0];
    EXPECT_EQ(broken[1], "North's bid \"14\" is not a bid");
}

}  // namespace
