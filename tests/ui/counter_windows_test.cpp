// The counters painted from their models: the figures' colours carry the
// meaning (a Nil side in red, the sum of bids by how the tricks share out,
// a set side in magenta), so those are checked by pixel; the layout of the
// two demonstrations is checked against reviewed pictures.
#include "ui/counter_windows.h"

#include "ui_test_util.h"

namespace {

using scoring::Label;
using uitest::CountDark;
using uitest::CountHue;
using uitest::MatchesReference;

QRect Cell(const Label& l) { return QRect(l.Left, l.Top, l.Width, l.Height); }

constexpr int Red = 0, Blue = 2;

int Magenta(const QImage& img, const QRect& r) {
    int n = 0;
    for (int y = r.top(); y <= r.bottom(); ++y)
        for (int x = r.left(); x <= r.right(); ++x) {
            const QColor c(img.pixel(x, y));
            if (c.red() >= 128 && c.blue() >= 128 && c.green() <= 64) ++n;
        }
    return n;
}

scoring::LeftCounter LeftDemo() {
    scoring::LeftCounter m;
    m.ShowCounterInit({125, 248}, {4, 3}, {"4", "3", "3", "N"}, 4);
    return m;
}

scoring::RightCounter RightDemo() {
    scoring::RightCounter m;
    m.ShowCounterInit({478, 482}, {2, 5}, {"4", "2", "3", "1"});
    return m;
}

TEST(CounterWindows, LeftCounterColoursNilSideAndShortSum) {
    ui::FrmCounter0 w;
    const auto m = LeftDemo();
    w.setModel(m);
    const QImage img = ui::Snapshot(w);
    // We 7 in black, They 3 in red (a Nil at position 3), the sum 10 magenta.
    EXPECT_GT(CountDark(img, Cell(m.cBid[0])), 10);
    EXPECT_EQ(CountHue(img, Cell(m.cBid[0]), Red), 0);
    EXPECT_GT(CountHue(img, Cell(m.cBid[1]), Red), 10);
    EXPECT_GT(Magenta(img, Cell(m.cBid[2])), 10);
    EXPECT_TRUE(MatchesReference(w, "counter0-demo"));
}

TEST(CounterWindows, LeftCounterNegativeScoreInBlue) {
    ui::FrmCounter0 w;
    scoring::LeftCounter m;
    m.ShowCounterInit({-41, 230}, {1, 2}, {"2", "", "", ""}, 1);
    w.setModel(m);
    const QImage img = ui::Snapshot(w);
    EXPECT_GT(CountHue(img, Cell(m.cPts0[0]), Blue), 10);
    EXPECT_EQ(CountHue(img, Cell(m.cPts0[1]), Blue), 0);
    // While bids come in the sum stays black.
    EXPECT_EQ(Magenta(img, Cell(m.cBid[2])), 0);
}

TEST(CounterWindows, RightCounterAllMadeLeaderInRed) {
    ui::FrmCounter w;
    const auto m = RightDemo();
    w.setModel(m);
    EXPECT_EQ(w.width(), scoring::RightCounter::NarrowWidth - ui::CompanionWindow::kFrameWidth);
    const QImage img = ui::Snapshot(w);
    // [548] leads and passes 500: red; [512] black.
    EXPECT_GT(CountHue(img, Cell(m.aPt[0]), Red), 10);
    EXPECT_EQ(CountHue(img, Cell(m.aPt[1]), Red), 0);
    EXPECT_GT(CountDark(img, Cell(m.aPt[1])), 10);
    EXPECT_TRUE(MatchesReference(w, "counter-demo-narrow"));
}

TEST(CounterWindows, RightCounterStatusTexts) {
    ui::FrmCounter w;
    auto m = RightDemo();
    // We 7 bid, 8 taken: one overtrick; They 3 bid, 3 taken: just making.
    std::array<int, 3> tricks{8, 3, 11};
    m.ShowCounterNow({478, 482}, tricks, {"4", "2", "3", "1"}, {0, 0, 0, 0});
    w.setModel(m);
    EXPECT_EQ(w.width(), scoring::RightCounter::WideWidth - ui::CompanionWindow::kFrameWidth);
    const QImage img = ui::Snapshot(w);
    EXPECT_GT(CountDark(img, Cell(m.cBag[0])), 20);
    EXPECT_GT(CountHue(img, Cell(m.cBag[1]), Blue), 20);
    EXPECT_GT(CountDark(img, Cell(m.cTrk[2])), 10);
    EXPECT_TRUE(MatchesReference(w, "counter-demo-wide"));
}

TEST(CounterWindows, RightCounterSetSideInMagentaAndNilSetInRed) {
    ui::FrmCounter w;
    scoring::RightCounter m;
    const scoring::Bids4 bids{"N", "6", "5", "5"};
    m.ShowCounterInit({300, 250}, {3, 6}, bids);
    // Nil bidder took a trick; They need 11 but only 4 tricks are left.
    std::array<int, 3> tricks{7, 2, 9};
    m.ShowCounterNow({300, 250}, tricks, bids, {1, 0, 0, 0});
    w.setModel(m);
    const QImage img = ui::Snapshot(w);
    EXPECT_GT(CountHue(img, Cell(m.cBag[0]), Red), 20);
    EXPECT_GT(Magenta(img, Cell(m.cBag[1])), 20);
}

TEST(CounterWindows, DragIsReportedButPlacementIsNot) {
    ui::FrmCounter0 w;
    auto m = LeftDemo();
    m.Window.Left = 40;
    m.Window.Top = 50;
    QList<QPoint> moves;
    QObject::connect(&w, &ui::CompanionWindow::dragged, [&](QPoint p) { moves << p; });
    w.setModel(m);
    EXPECT_TRUE(moves.isEmpty());
    w.move(70, 90);
    ASSERT_EQ(moves.size(), 1);
    EXPECT_EQ(moves[0], QPoint(70, 90));
    EXPECT_TRUE(w.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(w.windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_TRUE(w.windowFlags().testFlag(Qt::Tool));
}

}  // namespace
