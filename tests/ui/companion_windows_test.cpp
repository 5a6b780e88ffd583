// The bidding board, the bid help, the error window and the alert prompt.
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "scoring/rules.h"
#include "ui/alert_windows.h"
#include "ui/board_window.h"
#include "ui/err_msg_window.h"
#include "ui/help_bid_window.h"
#include "ui_test_util.h"

namespace {

using uitest::CountDark;
using uitest::CountHue;
using uitest::MatchesReference;

tracking::Board Board(int mode, bool dnilPass = false, int remembered = 0) {
    tracking::Board b;
    b.Loaded = b.Visible = true;
    b.RememberedBid = remembered;
    b.Layout(mode, dnilPass);
    return b;
}

TEST(BoardWindow, OrdinaryBoardShowsBidsAndReportsTheIndex) {
    ui::FrmBoard w;
    w.setModel(Board(tracking::BoardOrdinary));
    for (int i = 1; i <= 14; ++i) EXPECT_TRUE(w.button(i)->isVisible()) << i;
    EXPECT_FALSE(w.button(15)->isVisible());
    EXPECT_EQ(w.button(14)->text(), QStringLiteral("Nil"));
    QSignalSpy clicked(&w, &ui::FrmBoard::boardButtonClicked);
    QTest::mouseClick(w.button(12), Qt::LeftButton);
    QTest::mouseClick(w.button(14), Qt::LeftButton);
    ASSERT_EQ(clicked.count(), 2);
    EXPECT_EQ(clicked[0][0].toInt(), 12);  // the engine decides 11..13 press nothing
    EXPECT_EQ(clicked[1][0].toInt(), 14);
    EXPECT_TRUE(MatchesReference(w, "board-ordinary"));
}

TEST(BoardWindow, DoubleNilAndConfirmationBoards) {
    ui::FrmBoard w;
    w.setModel(Board(tracking::BoardDoubleNil, true));
    EXPECT_EQ(w.button(15)->text(), QStringLiteral(" DNIL Pass"));
    EXPECT_FALSE(w.button(1)->isVisible());
    EXPECT_TRUE(MatchesReference(w, "board-dnil-pass"));
    w.setModel(Board(tracking::BoardConfirm, false, 14));
    EXPECT_EQ(w.button(17)->text(), QStringLiteral("NIL OK?"));
    EXPECT_TRUE(w.button(18)->isVisible());
    EXPECT_TRUE(w.button(20)->isVisible());
    // The confirmation sits above its two answers.
    EXPECT_LT(w.button(17)->y(), w.button(18)->y());
    EXPECT_TRUE(MatchesReference(w, "board-confirm"));
}

scoring::ScoreRows Rows(int we, int they) {
    scoring::ScoreRows rows;
    rows.ScoreRowCount = 1;
    // The user sits South: North/South points first.
    rows.Rows[1] = {we, 0, they, 0};
    return rows;
}

TEST(HelpBidWindow, FourthSeatLines) {
    scoring::HelpBid m(ui::QtTextMeasure());
    ASSERT_TRUE(m.Show_HelpBid(Rows(465, 458), 2, {"", "3", "1", "3"}, 3, ""));
    ui::FrmHelpBid w;
    w.setModel(m);
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Help 4-th Bid"));
    const QImage img = ui::Snapshot(w);
    // 465 -> 515 and 465 -> 525 printed beside "1, 4" and "1, 5".
    for (const auto* l : {&m.YouBid[0], &m.YouBid[2], &m.TheyBid[0]})
        EXPECT_GT(CountDark(img, QRect(92, l->Top, 90, l->Height)), 30) << l->Caption;
    EXPECT_TRUE(MatchesReference(w, "helpbid-fourth"));
}

TEST(HelpBidWindow, ThirdSeatSuggestionInBlueAndMinusHanging) {
    scoring::HelpBid m(ui::QtTextMeasure());
    ASSERT_TRUE(m.Show_HelpBid(Rows(-35, 458), 2, {"", "", "2", "3"}, 2, "log.txt"));
    ui::FrmHelpBid w;
    w.setModel(m);
    const QImage img = ui::Snapshot(w);
    // The user's suggested bid follows the partner's in blue.
    EXPECT_GT(CountHue(img, QRect(0, m.YouBid[0].Top, w.width(), 18), 2), 10);
    // The minus of -35 hangs left of the column of figures (x = 92).
    EXPECT_GT(CountDark(img, QRect(84, m.YouBid[0].Top, 8, 18)), 2);
    EXPECT_EQ(CountDark(img, QRect(84, m.TheyBid[0].Top, 7, 18)), 0);
    EXPECT_TRUE(MatchesReference(w, "helpbid-third"));
}

TEST(ErrMsgWindow, SentenceInItsFontAndTheWindowFitsIt) {
    display::ErrMsgWindow m;
    m.PutMsg(display::MsgScoreUnchanged, display::LangEnglish, display::TableModeSpades);
    ui::FrmErrMsg w;
    w.setModel(m);
    EXPECT_TRUE(w.isVisible());
    EXPECT_EQ(w.windowTitle(), QStringLiteral(" Error Message"));
    EXPECT_TRUE(MatchesReference(w, "errmsg-english"));

    display::ErrMsgWindow j;
    j.PutMsg(display::MsgScoreNotOpen, display::LangJapanese, display::TableModeSpades);
    w.setModel(j);
    const QImage img = ui::Snapshot(w);
    EXPECT_GT(CountDark(img, QRect(6, 4, 200, 20)), 50);
    EXPECT_TRUE(MatchesReference(w, "errmsg-japanese"));

    j.Hide();
    w.setModel(j);
    EXPECT_FALSE(w.isVisible());
}

TEST(AskAlertWindow, PromptButtonAndColours) {
    players::AskAlertWindow m;
    m.Loaded = m.Visible = true;
    m.X = 200;
    m.Y = 300;
    m.cmdAsk.Caption = "NoneToAlert ?";
    m.cmdAsk.Visible = true;
    ui::FrmAskAlert w;
    QSignalSpy dragged(&w, &ui::CompanionWindow::dragged);
    w.setModel(m);
    EXPECT_EQ(w.pos(), QPoint(200, 300));
    EXPECT_EQ(dragged.count(), 0);
    const QImage img = ui::Snapshot(w);
    EXPECT_EQ(QColor(img.pixel(1, 1)), QColor(192, 192, 255));
    QSignalSpy ask(&w, &ui::FrmAskAlert::askClicked);
    QTest::mouseClick(w.askButton(), Qt::LeftButton);
    EXPECT_EQ(ask.count(), 1);
    EXPECT_TRUE(MatchesReference(w, "askalert"));
}

}  // namespace
