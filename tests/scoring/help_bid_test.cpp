#include "scoring/help_bid.h"

#include <gtest/gtest.h>

#include "core/notation.h"

using namespace scoring;

namespace {

using Pair = std::array<int, 2>;

// One score line with the user's side on `we` and the opponents on `they`.
ScoreRows Score(int we, int they, int userSeat = core::North) {
    ScoreRows rows;
    rows.AddRow(userSeat % 2 ? ScoreRows::Row{they, 0, we, 0} : ScoreRows::Row{we, 0, they, 0});
    return rows;
}

const DrawText* Printed(const HelpBid& h, const std::string& text, double y = -1, double x = -1) {
    for (const auto& d : h.Items)
        if (d.Text == text && (y < 0 || d.Y == y) && (x < 0 || d.X == x)) return &d;
    return nullptr;
}

}  // namespace

TEST(HelpBid, LinesForTheThirdAndFourthSeat) {
    struct Row {
        int bidCount, seat, we, they;
        Bids4 bids;
        std::array<const char*, 2> you, them;  // them[1]: third seat only
        Pair weNew, theyNew;                   // theyNew[1]: third seat only
    };
    const Row rows[] = {
        {3, core::North, 465, 458, {"", "3", "1", "3"}, {"1, 4", "1, 5"}, {"3, 3", ""}, {515, 525}, {518, 0}},
        {3, core::East, 465, 458, {"", "3", "1", "3"}, {"1, 4", "1, 5"}, {"3, 3", ""}, {515, 525}, {518, 0}},
        // Already ahead: the user's bid on the lines is 0 and 1.
        {3, core::North, 520, 470, {"", "2", "3", "2"}, {"3, 0", "3, 1"}, {"2, 2", ""}, {550, 560}, {510, 0}},
        {2, core::North, 465, 458, {"", "", "2", "3"}, {"2, 5", "2, 4"}, {"3, 3", "3, 4"}, {535, 525}, {518, 528}},
        // No split puts us ahead: a Nil for the user, then a bid of 1.
        {2, core::North, 300, 480, {"", "", "3", "3"}, {"3, N", "3, 1"}, {"3, 7", "3, 6"}, {430, 340}, {580, 570}},
        {2, core::North, 470, 455, {"", "", "6", "6"}, {"6, 1", "6, N"}, {"6, 0", "6, 1"}, {540, 630}, {515, 525}},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(testing::Message() << "bid count " << r.bidCount << ", " << r.we << " against " << r.they);
        HelpBid h;
        const bool fourth = r.bidCount == 3;
        ASSERT_TRUE(h.Show_HelpBid(Score(r.we, r.they, r.seat), r.seat, r.bids, r.bidCount, ""));
        EXPECT_EQ(h.HelpState, fourth ? HelpFourthSeat : HelpThirdSeat);
        EXPECT_EQ(h.YouBid[0].Caption + "|" + h.YouBid[fourth ? 2 : 1].Caption + "|" + h.TheyBid[0].Caption + "|" +
                      (fourth ? "" : h.TheyBid[1].Caption),
                  std::string(r.you[0]) + "|" + r.you[1] + "|" + r.them[0] + "|" + r.them[1]);
        EXPECT_EQ(h.WeTable.NewScore, r.weNew);
        EXPECT_EQ(fourth ? (Pair{h.TheyTable.NewScore[0], 0}) : h.TheyTable.NewScore, r.theyNew);
    }
}

TEST(HelpBid, DrawingAndWhenItIsShown) {
    HelpBid h;
    ASSERT_TRUE(h.Show_HelpBid(Score(465, 458), core::North, {"", "3", "1", "3"}, 3, ""));
    EXPECT_EQ(h.Window.Caption, "Help 4-th Bid");
    EXPECT_FALSE(h.TheyBid[1].Visible || h.YouBid[1].Visible || h.Capt[9].Visible);
    // Each figure line beside its bid pair, at x = 92.
    EXPECT_TRUE(Printed(h, "458", h.TheyBid[0].Top, 92) && Printed(h, "518", h.TheyBid[0].Top));
    EXPECT_TRUE(Printed(h, "515", h.YouBid[0].Top) && Printed(h, "525", h.YouBid[2].Top));

    // Opponents at 480 with bids worth 10: 490 is not enough, unless logging.
    EXPECT_FALSE(HelpBid().Show_HelpBid(Score(300, 480), core::North, {"", "1", "4", "0"}, 3, ""));
    EXPECT_TRUE(HelpBid().Show_HelpBid(Score(300, 480), core::North, {"", "1", "4", "0"}, 3, "trace.log"));
    EXPECT_TRUE(HelpBid().Show_HelpBid(Score(300, 481), core::North, {"", "1", "4", "0"}, 3, ""));
    EXPECT_FALSE(HelpBid().Show_HelpBid(ScoreRows{}, core::North, {"", "1", "4", "0"}, 3, "trace.log"));
    // The third seat needs both earlier bids, and the opponents above 450.
    EXPECT_FALSE(h.Show_HelpBid(Score(465, 458), core::North, {"", "", "", "3"}, 2, "trace.log"));
    EXPECT_FALSE(h.Show_HelpBid(Score(465, 458), core::North, {"", "", "2", ""}, 2, "trace.log"));
    EXPECT_FALSE(h.Show_HelpBid(Score(465, 420), core::North, {"", "", "2", "3"}, 2, ""));

    // Negative scores print with the minus hanging left of x in Courier New.
    ASSERT_TRUE(h.Show_HelpBid(Score(-120, 470), core::North, {"", "3", "4", "3"}, 3, ""));
    const DrawText *minus = Printed(h, "-"), *digits = Printed(h, "120", -1, 92);
    ASSERT_TRUE(minus && digits);
    EXPECT_EQ(minus->Typeface + "|" + digits->Typeface, "Courier New|Arial");
    EXPECT_DOUBLE_EQ(minus->X + ApproxTextWidth("-", Font{"Courier New", minus->Size, minus->Bold}), 92);
}

TEST(HelpBid, StatesThirdSeatDrawingAndPlacement) {
    HelpBid h;
    ASSERT_TRUE(h.Show_HelpBid(Score(465, 458), core::North, {"", "3", "1", "3"}, 3, ""));
    h.HideForBidCount(3);
    EXPECT_EQ(h.HelpState, HelpFourthSeat);
    h.HideForBidCount(4);
    EXPECT_TRUE(h.HelpState == HelpHidden && !h.Window.Visible);

    // A third-seat help after a fourth-seat one shows its second column again.
    ASSERT_TRUE(h.Show_HelpBid(Score(465, 458), core::North, {"", "", "2", "3"}, 2, ""));
    EXPECT_EQ(h.Window.Caption, "Help Bid in 3-rd Seat");
    EXPECT_TRUE(h.TheyBid[1].Visible && h.Capt[9].Visible);
    EXPECT_FALSE(h.YouBid[0].Visible || h.YouBid[1].Visible || h.YouBid[2].Visible);
    // The bid pair is printed after the figures, the partner's bid black and
    // the suggestion blue; line 1 figures start at x = 240.
    const double y = h.YouBid[0].Top;
    ASSERT_TRUE(Printed(h, "2", y) && Printed(h, ", 5", y));
    EXPECT_TRUE(Printed(h, "2", y)->ForeColor == Black && Printed(h, ", 5", y)->ForeColor == Blue);
    EXPECT_TRUE(Printed(h, "458", -1, 240));
    h.HideForBidCount(3);
    EXPECT_EQ(h.HelpState, HelpHidden);
    ASSERT_TRUE(h.Show_HelpBid(Score(465, 458), core::North, {"", "", "2", "3"}, 2, ""));
    h.Close();
    EXPECT_TRUE(h.HelpState == HelpClosed && !h.Window.Visible);

    h.Place({-100, 0}, {200, 100});
    EXPECT_EQ(std::pair(h.Window.Left, h.Window.Top), std::pair(260, 220));
    h.Place({15, 25}, {200, 100});
    EXPECT_EQ(std::pair(h.Window.Left, h.Window.Top), std::pair(15, 25));
}
