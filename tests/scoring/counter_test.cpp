#include "scoring/counter.h"

#include <gtest/gtest.h>

using namespace scoring;

TEST(LeftCounter, BuiltInDemonstration) {
    LeftCounter c;
    c.ShowCounterInit({125, 248}, {4, 3}, {"4", "3", "3", "N"}, 4);
    EXPECT_TRUE(c.Window.Visible);
    EXPECT_EQ(c.cBid[0].Caption, "7");
    EXPECT_EQ(c.cBid[0].ForeColor, Black);
    EXPECT_EQ(c.cBid[1].Caption, "3");
    EXPECT_EQ(c.cBid[1].ForeColor, Red);  // the "N" at position 3
    EXPECT_EQ(c.cBid[2].Caption, "10");
    EXPECT_EQ(c.cBid[2].ForeColor, Magenta);
    EXPECT_EQ(c.cPts0[0].Caption, "125");
    EXPECT_EQ(c.cPts0[1].Caption, "248");
    EXPECT_EQ(c.cBag0[0].Caption, "(4)");
    EXPECT_EQ(c.cBag0[1].Caption, "(3)");
}

TEST(LeftCounter, BidColoursWaitForAllFourBids) {
    LeftCounter c;
    c.ShowCounterInit({-40, 12}, {0, 0}, {"4", "N", "", ""}, 2);
    for (const auto& l : c.cBid) EXPECT_EQ(l.ForeColor, Black);
    EXPECT_EQ(c.cPts0[0].ForeColor, Blue);  // negative score
    EXPECT_EQ(c.cPts0[1].ForeColor, Black);
    c.ShowCounterInit({0, 0}, {0, 0}, {"4", "4", "3", "2"}, 4);
    EXPECT_EQ(c.cBid[2].ForeColor, DarkRed);  // 13
    c.ShowCounterInit({0, 0}, {0, 0}, {"4", "4", "3", "1"}, 4);
    EXPECT_EQ(c.cBid[2].ForeColor, Black);  // 12
    c.ShowCounterInit({0, 0}, {0, 0}, {"4", "3", "3", "1"}, 4);
    EXPECT_EQ(c.cBid[2].ForeColor, Black);  // 11
    c.ClrCounter();
    EXPECT_FALSE(c.Window.Visible);
    EXPECT_EQ(c.cBid[2].Caption, "");
    EXPECT_EQ(c.cBag0[0].Caption, "");
}

TEST(RightCounter, BuiltInDemonstration) {
    RightCounter c;
    c.ShowCounterInit({478, 482}, {2, 5}, {"4", "2", "3", "1"});
    EXPECT_TRUE(c.Window.Visible);
    EXPECT_EQ(c.Window.Width, RightCounter::NarrowWidth);
    EXPECT_EQ(c.cBid[0].Caption, "7");
    EXPECT_EQ(c.cBid[1].Caption, "3");
    EXPECT_EQ(c.cBid[2].Caption, "10");
    EXPECT_EQ(c.aPt[0].Caption, "[548]");
    EXPECT_EQ(c.aPt[0].ForeColor, Red);  // larger and at least 500
    EXPECT_EQ(c.aPt[1].Caption, "[512]");
    EXPECT_EQ(c.aPt[1].ForeColor, Black);
    EXPECT_FALSE(c.cBag[0].Visible);
}

TEST(RightCounter, NegativeAllMadeIsBlue) {
    RightCounter c;
    c.ShowCounterInit({-150, 80}, {0, 0}, {"3", "4", "2", "3"});
    EXPECT_EQ(c.aPt[0].Caption, "[-100]");
    EXPECT_EQ(c.aPt[0].ForeColor, Blue);
}

TEST(RightCounter, TricksNeverGoDown) {
    RightCounter c;
    const Bids4 bids = {"4", "2", "3", "1"};
    c.ShowCounterInit({100, 100}, {0, 0}, bids);
    std::array<int, 3> tricks = {5, 2, 7};
    c.ShowCounterNow({100, 100}, tricks, bids, {});
    EXPECT_EQ(c.cTrk[0].Caption, "5");
    std::array<int, 3> misread = {4, 3, 7};
    c.ShowCounterNow({100, 100}, misread, bids, {});
    EXPECT_EQ(misread, (std::array<int, 3>{5, 3, 7}));
    EXPECT_EQ(c.cTrk[0].Caption, "5");
    EXPECT_EQ(c.cTrk[1].Caption, "3");
}

TEST(RightCounter, StatusTextsAndWidth) {
    RightCounter c;
    const Bids4 bids = {"2", "4", "2", "4"};
    c.ShowCounterInit({300, 250}, {8, 1}, bids);
    // Both sides short and reachable: no status yet, narrow, no figure.
    std::array<int, 3> t = {1, 1, 2};
    c.ShowCounterNow({300, 250}, t, bids, {});
    EXPECT_EQ(c.Window.Width, RightCounter::NarrowWidth);
    EXPECT_FALSE(c.cBag[0].Visible);
    EXPECT_EQ(c.cPts[0].Caption, "");

    t = {4, 1, 5};
    c.ShowCounterNow({300, 250}, t, bids, {});
    EXPECT_EQ(c.cBag[0].Caption, "Just Making");
    EXPECT_EQ(c.cBag[0].ForeColor, Blue);
    EXPECT_EQ(c.cBag[0].TextFont.Size, 11);
    EXPECT_FALSE(c.cBag[0].TextFont.Bold);
    EXPECT_EQ(c.cPts[0].Caption, "340");
    EXPECT_EQ(c.Window.Width, RightCounter::WideWidth);
    EXPECT_EQ(c.Shape1.Width, RightCounter::WideShapeWidth);

    // Bags 8 and three overtricks: the penalty is in the projection.
    t = {7, 2, 9};
    c.ShowCounterNow({300, 250}, t, bids, {});
    EXPECT_EQ(c.cBag[0].Caption, " + 3 = 11");
    EXPECT_TRUE(c.cBag[0].TextFont.Bold);
    EXPECT_EQ(c.cBag[0].TextFont.Size, 12);
    EXPECT_EQ(c.cPts[0].Caption, std::to_string(300 + 40 + 3 - 100));
    // They bid 8 and have 2 with 4 tricks left: set before the last trick.
    EXPECT_EQ(c.cBag[1].Caption, "   Set");
    EXPECT_EQ(c.cBag[1].ForeColor, Magenta);
    EXPECT_EQ(c.cPts[1].Caption, "170");

    // After the 13th trick the game's own score replaces the projection.
    t = {10, 3, 13};
    c.ShowCounterNow({238, 170}, t, bids, {});
    EXPECT_EQ(c.cPts[0].Caption, "238");
    EXPECT_EQ(c.cPts[1].Caption, "170");

    c.ClrCounter();
    EXPECT_FALSE(c.Window.Visible);
    EXPECT_EQ(c.cTrk[2].Caption, "");
    EXPECT_EQ(c.cBag[0].Caption, "");
}

TEST(RightCounter, NilSetAtOnceAndCountedOnce) {
    RightCounter c;
    const Bids4 bids = {"4", "3", "N", "3"};
    c.ShowCounterInit({200, 150}, {0, 0}, bids);
    EXPECT_EQ(c.aPt[0].Caption, "[340]");
    std::array<int, 3> t = {4, 1, 5};
    for (int i = 0; i < 3; ++i) {
        // Repeated updates with the same broken Nil.
        c.ShowCounterNow({200, 150}, t, bids, {0, 0, 1, 0});
    }
    EXPECT_EQ(c.cBag[0].Caption, "Nil Set");
    EXPECT_EQ(c.cBag[0].ForeColor, Red);
    EXPECT_EQ(c.aPt[0].Caption, "[140]");
    EXPECT_EQ(c.cPts[0].Caption, "140");  // 200 + 40 - 100
    EXPECT_EQ(c.ProjectedScore[0], 140);
}

TEST(RightCounter, DoubleNilMakingAfterTheLastTrick) {
    RightCounter c;
    const Bids4 bids = {"5", "D", "6", "1"};
    c.ShowCounterInit({100, -60}, {0, 0}, bids);
    std::array<int, 3> t = {11, 2, 13};
    c.ShowCounterNow({100, -60}, t, bids, {});
    EXPECT_EQ(c.cBag[1].Caption, "D Making");
    EXPECT_EQ(c.cBag[1].ForeColor, Blue);
    EXPECT_EQ(c.ProjectedScore[1], -60 + 10 + 1 + 200);
}

TEST(RightCounter, FloorOfTheShownProjection) {
    RightCounter c;
    const Bids4 bids = {"7", "3", "6", "0"};
    c.ShowCounterInit({-100, 100}, {0, 0}, bids);
    std::array<int, 3> t = {2, 10, 12};
    c.ShowCounterNow({-100, 100}, t, bids, {});
    EXPECT_EQ(c.cBag[0].Caption, "   Set");
    EXPECT_EQ(c.ProjectedScore[0], -230);
    EXPECT_EQ(c.cPts[0].Caption, "-200");
}

TEST(Counters, CallingOrderOfADeal) {
    Counters c(true);
    EXPECT_EQ(c.frmCounter.Window.Caption, " 右カウンタ");
    EXPECT_EQ(c.frmCounter0.Window.Caption, "左カウンタ");
    c.ShowBids({10, 20}, {1, 2}, {"3", "", "", ""}, 1);
    EXPECT_EQ(c.CounterShown, 1);
    c.StartPlay({10, 20}, {1, 2}, {"3", "4", "2", "3"});
    EXPECT_EQ(c.CounterShown, 2);
    EXPECT_FALSE(c.frmCounter0.Window.Visible);
    EXPECT_TRUE(c.frmCounter.Window.Visible);
    c.HideCounter();
    EXPECT_EQ(c.CounterShown, 0);
    EXPECT_FALSE(c.frmCounter.Window.Visible);
    // The all-made figure is not among the cleared captions.
    EXPECT_EQ(c.frmCounter.aPt[0].Caption, "[60]");
}

TEST(Counters, ReportNamesForTheConsoleTool) {
    RightCounter c;
    c.ShowCounterInit({478, 482}, {2, 5}, {"4", "2", "3", "1"});
    const core::Json j = c.ToJson();
    ASSERT_TRUE(j.Has("cTrk") && j.Has("cPts") && j.Has("cBag") && j.Has("aPt"));
    EXPECT_EQ(j.Get("cTrk")->Size(), 3u);
    EXPECT_EQ(j.Get("cPts")->Size(), 2u);
    EXPECT_EQ(j.Get("aPt")->Dump(), "[\"[548]\", \"[512]\"]");
}

TEST(Counters, Placement) {
    RightCounter r;
    r.Place({std::nullopt, {-100, 0}, {400, 300}});
    EXPECT_EQ(r.Window.Left, 406);
    EXPECT_EQ(r.Window.Top, 367);
    r.Place({std::nullopt, {900, 40}, {400, 300}});
    EXPECT_EQ(r.Window.Left, 900);
    r.Place({platform::Point{5, 6}, {900, 40}, {400, 300}});
    EXPECT_EQ(r.Window.Left, 5);

    LeftCounter l;
    l.Place({std::nullopt, {0, 80}, {400, 300}});
    EXPECT_EQ(l.Window.Left, 0);
    EXPECT_EQ(l.Window.Top, 80);
    l.Place({std::nullopt, {-100, 80}, {400, 300}});
    EXPECT_EQ(l.Window.Left + l.Window.Width, 400 - 11);
    EXPECT_EQ(l.Window.Top, 290);
}
