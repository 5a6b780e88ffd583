#include "scoring/counter.h"

#include <gtest/gtest.h>

using namespace scoring;

namespace {

// Labels as the user sees them: "caption colour" each, joined by ", ".
template <std::size_t N>
std::string Looks(const std::array<Label, N>& labels, bool colours = true) {
    std::string out;
    for (const auto& l : labels) {
        if (&l != &labels[0]) out += ", ";
        const Color c = l.ForeColor;
        const char* name = c == Black ? "black" : c == Red ? "red" : c == Blue ? "blue" : c == Magenta ? "magenta"
                           : c == DarkRed ? "darkred" : "other";
        out += l.Caption + (colours ? std::string(" ") + name : "");
    }
    return out;
}

// A status label: caption, colour, size, weight.
std::string Status(const Label& l) {
    return Looks(std::array<Label, 1>{l}) + " " + std::to_string(static_cast<int>(l.TextFont.Size)) +
           (l.TextFont.Bold ? " bold" : "");
}

// Starts a deal on a right counter and plays it to `tricks` (side 0, 1, sum).
struct Deal {
    RightCounter c;
    Side2 score;
    Bids4 bids;
    Deal(Side2 s, Side2 bags, Bids4 b) : score(s), bids(b) { c.ShowCounterInit(score, bags, bids); }
    void Play(std::array<int, 3> tricks, std::array<int, 4> nilBroken = {}) {
        c.ShowCounterNow(score, tricks, bids, nilBroken);
    }
};

}  // namespace

TEST(LeftCounter, BuiltInDemonstrationAndBidColours) {
    LeftCounter c;
    c.ShowCounterInit({125, 248}, {4, 3}, {"4", "3", "3", "N"}, 4);
    EXPECT_TRUE(c.Window.Visible);
    EXPECT_EQ(Looks(c.cBid), "7 black, 3 red, 10 magenta");  // the "N" at position 3
    EXPECT_EQ(Looks(c.cPts0) + ", " + Looks(c.cBag0), "125 black, 248 black, (4) black, (3) black");
    // The sum's colour once all four bids are known: 13 and more, 11-12.
    c.ShowCounterInit({0, 0}, {0, 0}, {"4", "4", "3", "2"}, 4);
    EXPECT_EQ(Looks(c.cBid), "7 black, 6 black, 13 darkred");
    c.ShowCounterInit({0, 0}, {0, 0}, {"4", "3", "3", "1"}, 4);
    EXPECT_EQ(Looks(c.cBid), "7 black, 4 black, 11 black");
    // Before that all bids are black; a negative score is blue.
    c.ShowCounterInit({-40, 12}, {0, 0}, {"4", "N", "", ""}, 2);
    EXPECT_EQ(Looks(c.cBid) + ", " + Looks(c.cPts0), "4 black, 0 black, 4 black, -40 blue, 12 black");
    c.ClrCounter();
    EXPECT_FALSE(c.Window.Visible);
    EXPECT_EQ(Looks(c.cBid, false) + Looks(c.cPts0, false) + Looks(c.cBag0, false), ", , , , ");
}

TEST(RightCounter, BuiltInDemonstrationAndAllMadeColours) {
    Deal d({478, 482}, {2, 5}, {"4", "2", "3", "1"});
    EXPECT_TRUE(d.c.Window.Visible);
    EXPECT_EQ(d.c.Window.Width, RightCounter::NarrowWidth);
    EXPECT_EQ(Looks(d.c.cBid), "7 black, 3 black, 10 magenta");
    EXPECT_EQ(Looks(d.c.aPt), "[548] red, [512] black");  // larger and at least 500
    EXPECT_FALSE(d.c.cBag[0].Visible);

    d.c.ShowCounterInit({-150, 80}, {0, 0}, {"3", "4", "2", "3"});
    EXPECT_EQ(Looks(d.c.aPt), "[-100] blue, [150] black");
}

TEST(RightCounter, StatusTextsProjectionsTricksAndWidth) {
    Deal d({300, 250}, {8, 1}, {"2", "4", "2", "4"});
    // Both sides short and reachable: no status yet, narrow, no figure.
    d.Play({1, 1, 2});
    EXPECT_TRUE(d.c.Window.Width == RightCounter::NarrowWidth && !d.c.cBag[0].Visible && d.c.cPts[0].Caption.empty());

    d.Play({4, 1, 5});
    EXPECT_EQ(Status(d.c.cBag[0]), "Just Making blue 11");
    EXPECT_EQ(d.c.cPts[0].Caption, "340");
    EXPECT_TRUE(d.c.Window.Width == RightCounter::WideWidth && d.c.Shape1.Width == RightCounter::WideShapeWidth);

    // Bags 8 and three overtricks: the penalty is in the projection. They
    // bid 8 and have 2 with 4 tricks left: set before the last trick.
    d.Play({7, 2, 9});
    EXPECT_EQ(Status(d.c.cBag[0]), " + 3 = 11 blue 12 bold");
    EXPECT_EQ(Status(d.c.cBag[1]), "   Set magenta 12 bold");
    EXPECT_EQ(Looks(d.c.cPts), "243 black, 170 black");
    // A misread lower count leaves the shown one and is replaced by it.
    std::array<int, 3> misread = {6, 3, 9};
    d.c.ShowCounterNow(d.score, misread, d.bids, {});
    EXPECT_EQ(misread, (std::array<int, 3>{7, 3, 9}));
    EXPECT_EQ(Looks(d.c.cTrk, false), "7, 3, 9");
    // The game's own score after the 13th trick is what whole filed games show.

    // Far past ten bags the penalty still counts once.
    Deal far({300, 0}, {9, 0}, {"1", "0", "0", "0"});
    far.Play({13, 0, 13});
    EXPECT_EQ(far.c.cBag[0].Caption, " + 12 = 21");
    EXPECT_EQ(far.c.ProjectedScore[0], 300 + 10 + 12 - 100);
}

TEST(RightCounter, NilsAndTheFloor) {
    Deal nil({200, 150}, {0, 0}, {"4", "3", "N", "3"});
    EXPECT_EQ(nil.c.aPt[0].Caption, "[340]");
    for (int i = 0; i < 3; ++i) nil.Play({4, 1, 5}, {0, 0, 1, 0});  // counted once
    EXPECT_EQ(Status(nil.c.cBag[0]), "Nil Set red 12 bold");
    EXPECT_EQ(nil.c.aPt[0].Caption + " " + nil.c.cPts[0].Caption, "[140] 140");  // 200 + 40 - 100

    Deal dnil({400, 150}, {0, 0}, {"4", "3", "D", "3"});
    dnil.Play({4, 1, 5}, {0, 0, 2, 0});
    EXPECT_EQ(dnil.c.cBag[0].Caption + " " + dnil.c.aPt[0].Caption + " " + dnil.c.cPts[0].Caption,
              "DNil Set [240] 240");  // 400 + 40 + 200 - 400

    Deal made({100, -60}, {0, 0}, {"5", "D", "6", "1"});
    made.Play({11, 2, 13});
    EXPECT_EQ(Status(made.c.cBag[1]), "D Making blue 12 bold");
    EXPECT_EQ(made.c.ProjectedScore[1], -60 + 10 + 1 + 200);

    Deal low({-100, 100}, {0, 0}, {"7", "3", "6", "0"});
    low.Play({2, 10, 12});
    EXPECT_EQ(std::to_string(low.c.ProjectedScore[0]) + " shown as " + low.c.cPts[0].Caption, "-230 shown as -200");
}

TEST(Counters, CallingOrderAndPlacement) {
    Counters c(true);
    EXPECT_EQ(c.frmCounter.Window.Caption + "|" + c.frmCounter0.Window.Caption, " 右カウンタ|左カウンタ");
    c.ShowBids({10, 20}, {1, 2}, {"3", "", "", ""}, 1);
    EXPECT_EQ(c.CounterShown, 1);
    c.StartPlay({10, 20}, {1, 2}, {"3", "4", "2", "3"});
    EXPECT_EQ(c.CounterShown, 2);
    EXPECT_TRUE(!c.frmCounter0.Window.Visible && c.frmCounter.Window.Visible);
    c.HideCounter();
    EXPECT_TRUE(c.CounterShown == 0 && !c.frmCounter.Window.Visible);
    EXPECT_EQ(c.frmCounter.aPt[0].Caption, "[60]");  // not among the cleared captions

    // Saved spot, else the setting, else beside the table.
    using P = platform::Point;
    auto at = [](auto& counter, CounterPlacementInput in) {
        counter.Place(in);
        return P{counter.Window.Left, counter.Window.Top};
    };
    EXPECT_EQ(at(c.frmCounter, {std::nullopt, {-100, 0}, {400, 300}}), (P{406, 367}));
    EXPECT_EQ(at(c.frmCounter, {std::nullopt, {900, 40}, {400, 300}}), (P{900, 40}));
    EXPECT_EQ(at(c.frmCounter, {P{5, 6}, {900, 40}, {400, 300}}), (P{5, 6}));
    const int leftWidth = c.frmCounter0.Window.Width;
    EXPECT_EQ(at(c.frmCounter0, {std::nullopt, {-100, 80}, {400, 300}}), (P{400 - 11 - leftWidth, 290}));
}
