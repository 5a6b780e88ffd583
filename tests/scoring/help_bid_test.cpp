#include "scoring/help_bid.h"

#include <gtest/gtest.h>

#include "core/notation.h"

using namespace scoring;

namespace {

// One score line with the user (North) on `we` and the opponents on `they`.
ScoreRows Score(int we, int they) {
    ScoreRows rows;
    rows.AddRow({we, 0, they, 0});
    return rows;
}

bool Printed(const HelpBid& h, const std::string& text, double y) {
    for (const auto& d : h.Items)
        if (d.Text == text && d.Y == y) return true;
    return false;
}

}  // namespace

TEST(HelpBid, FourthSeatExample) {
    HelpBid h;
    ASSERT_TRUE(h.Show_HelpBid(Score(465, 458), core::North, {"", "3", "1", "3"}, 3, ""));
    EXPECT_EQ(h.HelpState, HelpFourthSeat);
    EXPECT_EQ(h.Window.Caption, "Help 4-th Bid");
    EXPECT_TRUE(h.Window.Visible);
    EXPECT_EQ(h.TheyBid[0].Caption, "3, 3");
    EXPECT_EQ(h.YouBid[0].Caption, "1, 4");
    EXPECT_EQ(h.YouBid[2].Caption, "1, 5");
    EXPECT_EQ(h.WeTable.NewScore, (std::array<int, 2>{515, 525}));
    EXPECT_EQ(h.TheyTable.NewScore[0], 518);
    EXPECT_FALSE(h.TheyBid[1].Visible);
    EXPECT_FALSE(h.YouBid[1].Visible);
    EXPECT_FALSE(h.Capt[9].Visible);
    EXPECT_EQ(h.Window.Height, 1980 / 15);
    EXPECT_EQ(h.Window.Width, 2735 / 15);
    // Each figure line beside its bid pair, at x = 92.
    EXPECT_TRUE(Printed(h, "458", h.TheyBid[0].Top));
    EXPECT_TRUE(Printed(h, "518", h.TheyBid[0].Top));
    EXPECT_TRUE(Printed(h, "515", h.YouBid[0].Top));
    EXPECT_TRUE(Printed(h, "525", h.YouBid[2].Top));
    EXPECT_EQ(h.Items.front().X, 92);
}

TEST(HelpBid, FourthSeatOnlyNearTheGamePoint) {
    HelpBid h;
    // Opponents at 480 with bids worth 10: 490 is not enough.
    EXPECT_FALSE(h.Show_HelpBid(Score(300, 480), core::North, {"", "1", "4", "0"}, 3, ""));
    EXPECT_FALSE(h.Window.Visible);
    EXPECT_TRUE(h.Show_HelpBid(Score(300, 480), core::North, {"", "1", "4", "0"}, 3, "trace.log"));
    HelpBid h2;
    EXPECT_TRUE(h2.Show_HelpBid(Score(300, 481), core::North, {"", "1", "4", "0"}, 3, ""));
    // No score line yet: nothing.
    HelpBid h3;
    EXPECT_FALSE(h3.Show_HelpBid(ScoreRows{}, core::North, {"", "1", "4", "0"}, 3, "trace.log"));
}

TEST(HelpBid, FourthSeatAlreadyAhead) {
    HelpBid h;
    ASSERT_TRUE(h.Show_HelpBid(Score(520, 470), core::North, {"", "2", "3", "2"}, 3, ""));
    EXPECT_EQ(h.YouBid[0].Caption, "3, 0");
    EXPECT_EQ(h.YouBid[2].Caption, "3, 1");
    EXPECT_EQ(h.WeTable.NewScore, (std::array<int, 2>{550, 560}));
}

TEST(HelpBid, UsesTheUserSideColumn) {
    // The user sits East: the user's side is the East/West column.
    HelpBid h;
    ScoreRows rows;
    rows.AddRow({458, 0, 465, 0});
    ASSERT_TRUE(h.Show_HelpBid(rows, core::East, {"", "3", "1", "3"}, 3, ""));
    EXPECT_EQ(h.YouBid[0].Caption, "1, 4");
}

TEST(HelpBid, ThirdSeatExample) {
    HelpBid h;
    ASSERT_TRUE(h.Show_HelpBid(Score(465, 458), core::North, {"", "", "2", "3"}, 2, ""));
    EXPECT_EQ(h.HelpState, HelpThirdSeat);
    EXPECT_EQ(h.Window.Caption, "Help Bid in 3-rd Seat");
    EXPECT_EQ(h.Window.Height, 1680 / 15);
    EXPECT_EQ(h.YouBid[0].Caption, "2, 5");
    EXPECT_EQ(h.YouBid[1].Caption, "2, 4");
    EXPECT_EQ(h.WeTable.NewScore, (std::array<int, 2>{535, 525}));
    EXPECT_EQ(h.TheyBid[0].Caption, "3, 3");
    EXPECT_EQ(h.TheyBid[1].Caption, "3, 4");
    EXPECT_EQ(h.TheyTable.NewScore, (std::array<int, 2>{518, 528}));
    for (const auto& l : h.YouBid) EXPECT_FALSE(l.Visible);
    // The bid pair is printed after the figures: partner black, the
    // suggestion blue.
    const double y = h.YouBid[0].Top;
    bool black = false, blue = false;
    for (const auto& d : h.Items) {
        if (d.Y != y) continue;
        black = black || (d.Text == "2" && d.ForeColor == Black);
        blue = blue || (d.Text == ", 5" && d.ForeColor == Blue);
    }
    EXPECT_TRUE(black);
    EXPECT_TRUE(blue);
    // Line 1 figures start at x = 240.
    bool at240 = false;
    for (const auto& d : h.Items) at240 = at240 || (d.X == 240 && d.Text == "458");
    EXPECT_TRUE(at240);
}

TEST(HelpBid, ThirdSeatWithoutAWinningSplitSuggestsNil) {
    HelpBid h;
    ASSERT_TRUE(h.Show_HelpBid(Score(300, 480), core::North, {"", "", "3", "3"}, 2, ""));
    EXPECT_EQ(h.YouBid[0].Caption, "3, N");
    EXPECT_EQ(h.YouBid[1].Caption, "3, 1");
    EXPECT_EQ(h.WeTable.NewScore, (std::array<int, 2>{430, 340}));
    EXPECT_EQ(h.TheyBid[0].Caption, "3, 7");
    EXPECT_EQ(h.TheyTable.NewScore, (std::array<int, 2>{580, 570}));
}

TEST(HelpBid, ThirdSeatWhereOneTrickIsEnough) {
    HelpBid h;
    ASSERT_TRUE(h.Show_HelpBid(Score(470, 455), core::North, {"", "", "6", "6"}, 2, ""));
    EXPECT_EQ(h.YouBid[0].Caption, "6, 1");
    EXPECT_EQ(h.YouBid[1].Caption, "6, N");
    EXPECT_EQ(h.WeTable.NewScore, (std::array<int, 2>{540, 630}));
    EXPECT_EQ(h.TheyBid[0].Caption, "6, 0");
    EXPECT_EQ(h.TheyBid[1].Caption, "6, 1");
}

TEST(HelpBid, ThirdSeatNeedsBothBidsAndCloseScores) {
    HelpBid h;
    EXPECT_FALSE(h.Show_HelpBid(Score(465, 458), core::North, {"", "", "", "3"}, 2, "trace.log"));
    EXPECT_FALSE(h.Show_HelpBid(Score(465, 458), core::North, {"", "", "2", ""}, 2, "trace.log"));
    EXPECT_FALSE(h.Show_HelpBid(Score(465, 420), core::North, {"", "", "2", "3"}, 2, ""));  // 450
    EXPECT_EQ(h.HelpState, HelpClosed);
}

TEST(HelpBid, NegativeScoresHangTheMinusLeft) {
    HelpBid h;
    ASSERT_TRUE(h.Show_HelpBid(Score(-120, 470), core::North, {"", "3", "4", "3"}, 3, ""));
    const DrawText* minus = nullptr;
    const DrawText* digits = nullptr;
    for (const auto& d : h.Items) {
        if (d.Text == "-" && !minus) minus = &d;
        if (d.Text == "120" && !digits) digits = &d;
    }
    ASSERT_TRUE(minus && digits);
    EXPECT_EQ(minus->Typeface, "Courier New");
    EXPECT_EQ(digits->Typeface, "Arial");
    Font courier;
    courier.Name = "Courier New";
    EXPECT_DOUBLE_EQ(minus->X + ApproxTextWidth("-", courier), digits->X);
    EXPECT_EQ(digits->X, 92);
}

TEST(HelpBid, StatesAndLayoutSwitches) {
    HelpBid h;
    ASSERT_TRUE(h.Show_HelpBid(Score(465, 458), core::North, {"", "3", "1", "3"}, 3, ""));
    h.HideForBidCount(3);
    EXPECT_EQ(h.HelpState, HelpFourthSeat);
    h.HideForBidCount(4);
    EXPECT_EQ(h.HelpState, HelpHidden);
    EXPECT_FALSE(h.Window.Visible);

    // A third-seat help after a fourth-seat one shows its second column again.
    ASSERT_TRUE(h.Show_HelpBid(Score(465, 458), core::North, {"", "", "2", "3"}, 2, ""));
    EXPECT_TRUE(h.TheyBid[1].Visible);
    EXPECT_TRUE(h.Capt[9].Visible);
    h.HideForBidCount(3);
    EXPECT_EQ(h.HelpState, HelpHidden);

    ASSERT_TRUE(h.Show_HelpBid(Score(465, 458), core::North, {"", "", "2", "3"}, 2, ""));
    h.Close();
    EXPECT_EQ(h.HelpState, HelpClosed);
    EXPECT_FALSE(h.Window.Visible);

    h.Place({-100, 0}, {200, 100});
    EXPECT_EQ(h.Window.Left, 260);
    EXPECT_EQ(h.Window.Top, 220);
    h.Place({15, 25}, {200, 100});
    EXPECT_EQ(h.Window.Left, 15);
}
