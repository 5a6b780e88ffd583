#include "scoring/rules.h"

#include <gtest/gtest.h>

#include "core/notation.h"

using namespace scoring;

TEST(ScoreRows, DealFiguresTeamFiguresAndCapacity) {
    ScoreRows rows;
    ASSERT_TRUE(rows.AddRow({120, 8, 95, 2}));
    ASSERT_TRUE(rows.AddRow({163, 1, -41, 5}));
    // Bag count 8 then 1 is 3 bags and the ten-bag penalty; 2 then 5 is 3.
    const auto ns = rows.DealPoints(2, ScoreRows::NSPoints), ew = rows.DealPoints(2, ScoreRows::EWPoints);
    EXPECT_EQ((std::array<int, 4>{ns.Points, ns.Bags, ew.Points, ew.Bags}), (std::array<int, 4>{43, 3, -136, 3}));
    EXPECT_EQ(rows.DealPoints(1, ScoreRows::EWPoints).Points, 95);  // row 0 is the zero line
    // The user's side follows the parity of the user's seat (whole games show the even seats).
    rows.LoadTeamFigures(core::East);
    EXPECT_EQ(rows.TeamScore, (std::array<std::int32_t, 2>{-41, 163}));
    EXPECT_EQ(rows.TeamBags, (std::array<std::int32_t, 2>{5, 1}));

    for (int i = 2; i < ScoreRows::MaxRows; ++i) ASSERT_TRUE(rows.AddRow({i, 0, 0, 0}));
    EXPECT_FALSE(rows.AddRow({1, 1, 1, 1}));
    EXPECT_EQ(rows.ScoreRowCount, 100);
}

TEST(Bids, NumberAllMadePointsAndGameOver) {
    const std::pair<const char*, int> numbers[] = {{"4", 4}, {"13", 13}, {"N", 0}, {"DP", 0}, {"", 0}, {"999999", 13}};
    for (const auto& [bid, n] : numbers) EXPECT_EQ(BidNumber(bid), n) << bid;
    EXPECT_EQ(AllMadePoints(100, 3, "N", "3"), 230);
    EXPECT_EQ(AllMadePoints(100, 0, "D", "N"), 400);
    // Over at the game point unless tied.
    EXPECT_EQ(GameOver(510, 510), GameResult::Running);
    EXPECT_EQ(GameOver(499, 300), GameResult::Running);
    EXPECT_EQ(GameOver(480, 520), GameResult::TheyWon);
    EXPECT_EQ(GameOver(500, 499), GameResult::WeWon);
}

TEST(Tricks, WinnerBySuitAndTrump) {
    const int h5 = core::CardCode("5H"), hK = core::CardCode("KH"), s2 = core::CardCode("2S"),
              s9 = core::CardCode("9S"), dA = core::CardCode("AD"), c2 = core::CardCode("2C");
    EXPECT_EQ(TrickWinner({h5, s2, hK, s9}, 0, core::NoTrump), 2);
    // A higher code of another suit does not follow the lead.
    EXPECT_EQ(TrickWinner({dA, c2, h5, hK}, 1, core::Spades), 1);
    // The leader keeps it when nobody follows higher.
    EXPECT_EQ(TrickWinner({c2, c2 + 3, dA, hK}, 1, core::Spades), 1);
    EXPECT_EQ(TrickWinner({h5, s2, hK, s9}, 7, core::Spades), 0);
}

TEST(Tricks, CountsOfADealRecord) {
    // Seat t % 4 leads trick t with a low club and the next trick's leader
    // wins it with the ace; the last trick is led by North with a heart and
    // ruffed by East.
    TrickCards cards;
    TrickMarks marks{};
    for (int t = 0; t < 13; ++t) {
        for (int s = 0; s < 4; ++s) {
            cards[t][s] = core::CardText(s == (t + 1) % 4 ? 14 : 2 + s);
            marks[t][s] = s == t % 4 ? 1 : 0;
        }
    }
    cards[12] = {"4H", "3S", "2H", "AH"};
    TrickCounts c = DealTrickCounts(cards, marks);
    // Trick t is won by the leader of t + 1; the last one by East's spade.
    EXPECT_EQ(c.Winner[12][1], 1);
    const Hands h = HandsFromTricks(cards);
    EXPECT_EQ(std::pair(h[0][12], h[3][12]), std::pair(204, 214));

    // Tricks 6 on not known yet: the pass stops at trick 5, whose winner
    // follows from its cards.
    for (int t = 5; t < 13; ++t) marks[t] = {2, 2, 2, 2};
    cards[4] = {"2D", "KD", "3D", "4D"};  // led by seat 0, won by seat 1
    c = DealTrickCounts(cards, marks);
    EXPECT_EQ(c.Tricks[0] + c.Tricks[1] + c.Tricks[2] + c.Tricks[3], 5);
    EXPECT_EQ(c.Winner[4][1], 1);
    for (int t = 5; t < 13; ++t) EXPECT_EQ(c.Winner[t], (std::array<std::uint8_t, 4>{})) << t;
    for (auto& row : marks) row = {2, 2, 2, 2};
    EXPECT_EQ(DealTrickCounts(cards, marks).Tricks, (std::array<std::uint8_t, 4>{}));
}

namespace {

// The ten-bag penalty of the projection comes when the running bags reach
// ten, not only past it, and only once, however far past ten they go.
TEST(Projection, TenBagPenaltyAtTheThreshold) {
    struct Row {
        int startBags, tricks, bid, expected;
    };
    // Start score 200; the side bid 4.
    const Row rows[] = {
        {8, 5, 4, 200 + 40 + 1},         // 9 bags: no penalty
        {9, 5, 4, 200 + 40 + 1 - 100},   // exactly 10: the penalty
        {8, 6, 4, 200 + 40 + 2 - 100},   // from 8 to 10 in one deal
        {9, 9, 4, 200 + 40 + 5 - 100},   // 14 bags: once
        {0, 4, 4, 200 + 40},             // just making: no bags
    };
    for (const Row& r : rows) {
        scoring::ProjectionInput in;
        in.StartScore = {200, 150};
        in.StartBags = {r.startBags, 0};
        in.TeamBid = {r.bid, 13 - r.bid};
        in.DealTricks = {r.tricks, 13 - r.tricks, 13};
        in.Bids = {"2", "5", "2", "4"};
        const scoring::SideProjection p = scoring::ProjectSide(in, 0);
        EXPECT_EQ(p.Base, r.expected) << r.startBags << " bags, " << r.tricks << " tricks";
        EXPECT_EQ(p.RunningBags, r.startBags + std::max(0, r.tricks - r.bid));
    }
}

}  // namespace
