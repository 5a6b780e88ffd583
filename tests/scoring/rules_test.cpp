#include "scoring/rules.h"

#include <gtest/gtest.h>

#include "core/notation.h"

using namespace scoring;

TEST(ScoreRows, DealFiguresRestoreBagsAfterAPenalty) {
    ScoreRows rows;
    ASSERT_TRUE(rows.AddRow({120, 8, 95, 2}));
    ASSERT_TRUE(rows.AddRow({163, 1, 65, 5}));
    // North/South: count 8 then 1 means 3 bags taken and the ten-bag penalty.
    EXPECT_EQ(rows.DealPoints(2, ScoreRows::NSPoints).Bags, 3);
    EXPECT_EQ(rows.DealPoints(2, ScoreRows::NSPoints).Points, 43);
    EXPECT_EQ(rows.DealPoints(2, ScoreRows::EWPoints).Bags, 3);
    EXPECT_EQ(rows.DealPoints(2, ScoreRows::EWPoints).Points, -30);
    // Row 0 is the zero line before the first deal.
    EXPECT_EQ(rows.DealPoints(1, ScoreRows::EWPoints).Points, 95);
}

TEST(ScoreRows, UserSideFollowsTheSeatParity) {
    ScoreRows rows;
    rows.AddRow({230, 3, -41, 1});
    rows.LoadTeamFigures(core::East);
    EXPECT_EQ(rows.TeamScore, (std::array<std::int32_t, 2>{-41, 230}));
    EXPECT_EQ(rows.TeamBags, (std::array<std::int32_t, 2>{1, 3}));
    rows.LoadTeamFigures(core::South);
    EXPECT_EQ(rows.TeamScore, (std::array<std::int32_t, 2>{230, -41}));
}

TEST(ScoreRows, HoldsAHundredLinesAndNoMore) {
    ScoreRows rows;
    for (int i = 0; i < ScoreRows::MaxRows; ++i) ASSERT_TRUE(rows.AddRow({i, 0, 0, 0}));
    EXPECT_FALSE(rows.AddRow({1, 1, 1, 1}));
    EXPECT_EQ(rows.ScoreRowCount, 100);
    EXPECT_EQ(rows.At(101), ScoreRows::Row{});
}

TEST(Bids, ValueAndNumber) {
    EXPECT_EQ(BidNumber("4"), 4);
    EXPECT_EQ(BidNumber("13"), 13);
    EXPECT_EQ(BidNumber("N"), 0);
    EXPECT_EQ(BidNumber("DP"), 0);
    EXPECT_EQ(BidNumber(""), 0);
    EXPECT_EQ(BidNumber("999999"), 13);
    EXPECT_EQ(AllMadePoints(478, 7, "4", "3"), 548);
    EXPECT_EQ(AllMadePoints(100, 3, "N", "3"), 230);
    EXPECT_EQ(AllMadePoints(100, 0, "D", "N"), 400);
}

namespace {
ProjectionInput Deal(int start, int bags, int bid, int tricks, int otherTricks) {
    ProjectionInput in;
    in.StartScore = {start, 200};
    in.StartBags = {bags, 0};
    in.TeamBid = {bid, 13 - bid};
    in.AllMadePoints = {start + 10 * bid, 200 + 10 * (13 - bid)};
    in.DealTricks = {tricks, otherTricks, tricks + otherTricks};
    in.Bids = {std::to_string(bid), "5", "0", "5"};
    return in;
}
}  // namespace

TEST(Projection, MadeOvertricksAndTheBagPenaltyOnce) {
    SideProjection p = ProjectSide(Deal(300, 2, 4, 4, 3), We);
    EXPECT_EQ(p.Case, ProjectionCase::JustMaking);
    EXPECT_EQ(p.Base, 340);

    p = ProjectSide(Deal(300, 7, 4, 7, 0), We);
    EXPECT_EQ(p.Case, ProjectionCase::Overtricks);
    EXPECT_EQ(p.Base, 300 + 40 + 3 - 100);
    EXPECT_EQ(p.RunningBags, 10);

    // Far past ten bags still costs 100 only once.
    p = ProjectSide(Deal(300, 9, 1, 13, 0), We);
    EXPECT_EQ(p.Base, 300 + 10 + 12 - 100);
    EXPECT_EQ(p.RunningBags, 21);
}

TEST(Projection, SetAsSoonAsTheBidIsOutOfReach) {
    // Bid 5, the opponents have 9: only 4 tricks left.
    SideProjection p = ProjectSide(Deal(300, 0, 5, 0, 9), We);
    EXPECT_EQ(p.Case, ProjectionCase::Set);
    EXPECT_EQ(p.Base, 250);
    // With 8 against them the bid is still reachable: no projection.
    p = ProjectSide(Deal(300, 0, 5, 0, 8), We);
    EXPECT_EQ(p.Case, ProjectionCase::Short);
    EXPECT_FALSE(p.Base.has_value());
    // All 13 played and short.
    p = ProjectSide(Deal(300, 0, 5, 4, 9), We);
    EXPECT_EQ(p.Case, ProjectionCase::Set);
}

TEST(Projection, NilResults) {
    ProjectionInput in = Deal(300, 0, 3, 1, 2);
    in.Bids = {"3", "5", "N", "5"};
    in.AllMadePoints[0] = AllMadePoints(300, 3, "3", "N");
    in.NilBroken = {0, 0, 1, 0};
    SideProjection p = ProjectSide(in, We);
    EXPECT_EQ(p.NilDelta, -100);
    EXPECT_EQ(p.AllMadeShown, in.AllMadePoints[0] - 200);
    EXPECT_TRUE(p.NilSet);

    in.Bids[2] = "D";
    in.NilBroken[2] = 2;
    p = ProjectSide(in, We);
    EXPECT_EQ(p.NilDelta, -200);
    EXPECT_EQ(p.AllMadeShown, in.AllMadePoints[0] - 400);

    // Unbroken: no result until the last trick, then the bonus.
    in.NilBroken[2] = 0;
    EXPECT_EQ(ProjectSide(in, We).NilStatusKind, 0);
    in.DealTricks = {3, 10, 13};
    p = ProjectSide(in, We);
    EXPECT_EQ(p.NilDelta, 200);
    EXPECT_FALSE(p.NilSet);
    EXPECT_EQ(p.NilStatusKind, 2);
}

TEST(Projection, ShownFigure) {
    EXPECT_EQ(ShownProjection(-250, 9, 0), "-200");
    EXPECT_EQ(ShownProjection(-200, 9, 0), "-200");
    EXPECT_EQ(ShownProjection(340, 9, 0), "340");
    EXPECT_EQ(ShownProjection(340, 13, 338), "338");
}

TEST(Game, OverAtTheGamePointUnlessTied) {
    EXPECT_EQ(GameOver(510, 510), GameResult::Running);
    EXPECT_EQ(GameOver(520, 480), GameResult::WeWon);
    EXPECT_EQ(GameOver(480, 520), GameResult::TheyWon);
    EXPECT_EQ(GameOver(499, 300), GameResult::Running);
    EXPECT_EQ(GameOver(500, 499), GameResult::WeWon);
    EXPECT_EQ(GameOver(-210, 120), GameResult::Running);
}

TEST(Tricks, WinnerBySuitAndTrump) {
    const int h5 = core::CardCode("5H"), hK = core::CardCode("KH"), s2 = core::CardCode("2S"),
              s9 = core::CardCode("9S"), dA = core::CardCode("AD"), c2 = core::CardCode("2C");
    EXPECT_EQ(TrickWinner({h5, s2, hK, s9}, 0, core::Spades), 3);
    EXPECT_EQ(TrickWinner({h5, s2, hK, s9}, 0, core::NoTrump), 2);
    // A higher code of another suit does not follow the lead.
    EXPECT_EQ(TrickWinner({dA, c2, h5, hK}, 1, core::Spades), 1);
    // The leader keeps it when nobody follows higher.
    EXPECT_EQ(TrickWinner({c2, c2 + 3, dA, hK}, 1, core::Spades), 1);
    EXPECT_EQ(TrickWinner({h5, s2, hK, s9}, 7, core::Spades), 0);
}

namespace {
// Seat t % 4 leads trick t with a low club and the next trick's leader wins it
// with the ace; the last trick is led by North with a heart and ruffed by East.
void BuildDeal(TrickCards& cards, TrickMarks& marks) {
    for (int t = 0; t < 13; ++t) {
        for (int s = 0; s < 4; ++s) {
            cards[t][s] = core::CardText(s == (t + 1) % 4 ? 14 : 2 + s);
            marks[t][s] = s == t % 4 ? 1 : 0;
        }
    }
    cards[12] = {"4H", "3S", "2H", "AH"};
}
}  // namespace

TEST(Tricks, CountsOfAFullDealRecord) {
    TrickCards cards;
    TrickMarks marks{};
    BuildDeal(cards, marks);
    const TrickCounts c = DealTrickCounts(cards, marks);
    // Trick t is won by the leader of t + 1; the last one by East's spade.
    EXPECT_EQ(c.Tricks[0], 3);
    EXPECT_EQ(c.Tricks[1], 3 + 1);
    EXPECT_EQ(c.Tricks[2], 3);
    EXPECT_EQ(c.Tricks[3], 3);
    EXPECT_EQ(c.Winner[11][0], 1);  // trick 12 was led by seat 0
    EXPECT_EQ(c.Winner[12][1], 1);
}

TEST(Tricks, CountsStopAtTheFirstUnknownTrick) {
    TrickCards cards;
    TrickMarks marks{};
    BuildDeal(cards, marks);
    for (int t = 5; t < 13; ++t) marks[t] = {2, 2, 2, 2};
    cards[4] = {"2D", "KD", "3D", "4D"};  // led by seat 0, won by seat 1
    const TrickCounts c = DealTrickCounts(cards, marks);
    EXPECT_EQ(c.Tricks[0] + c.Tricks[1] + c.Tricks[2] + c.Tricks[3], 5);
    EXPECT_EQ(c.Winner[4][1], 1);
    for (int t = 5; t < 13; ++t)
        for (int s = 0; s < 4; ++s) EXPECT_EQ(c.Winner[t][s], 0);
    // Nothing known at all.
    TrickMarks none{};
    for (auto& row : none) row = {2, 2, 2, 2};
    const TrickCounts empty = DealTrickCounts(cards, none);
    EXPECT_EQ(empty.Tricks, (std::array<std::uint8_t, 4>{}));
}

TEST(Tricks, HandsComeFromTheTrickTable) {
    TrickCards cards;
    TrickMarks marks{};
    BuildDeal(cards, marks);
    const Hands h = HandsFromTricks(cards);
    EXPECT_EQ(h[0][12], 204);
    EXPECT_EQ(h[3][12], 214);
}
