// frmZ painted from its models, and what the user's actions on it report.
#include "ui/main_window.h"

#include <QAction>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "ui_test_util.h"

namespace {

using uitest::MatchesReference;

tracking::MainWindow OnlineModel() {
    tracking::MainWindow m;
    m.Caption = "TarvelloS  2.5 - Oak (alice)";
    m.Rect = {600, 40, 950, 600};
    const char* names[4] = {"me_player", "lefty_one", "partner_x", "righty_two"};
    const char* bids[4] = {"4", "3", "N", ""};
    const char* seats[4] = {"S", "W", "N", "E"};
    for (int p = 0; p < 4; ++p) {
        m.plName[p].Caption = names[p];
        m.lblBid[p].Caption = bids[p];
        m.lblSeat[p].Caption = seats[p];
    }
    m.cmdScore = core::MakeButton("Show Score");
    m.cmdTimer = core::MakeButton("Pause");
    m.cmdEnd = core::MakeButton("End");
    m.cmdHand.BackColor = 0x80FFFF;  // automatic hand capture on: yellow
    m.fraCapture.Visible = true;
    m.cntPlayers.Caption = "5";
    m.cntBids.Caption = "3";
    m.cntBidLoc.Caption = "3";
    return m;
}

display::FileBox Files() {
    display::FileBox b;
    b.Entries = {"03_05_003", "03_05_002", "03_05_001"};
    b.Selected = {false, true, false};
    return b;
}

players::AlertView Alerted() {
    players::AlertView v;
    v.AlertName = {"righty_two(Staller)", true, players::AlertRose, 12, ""};
    v.menuPlayer = {{{"me_player", false, false}, {"lefty_one"}, {"partner_x"}, {"righty_two", true, true}}};
    return v;
}

struct Window {
    ui::FrmZ w;
    Window() {
        w.setModel(OnlineModel());
        w.setFileBox(Files());
        w.setAlertView(Alerted());
        players::RatingLabel r{"1534", "Arial", true};
        w.setRating(r);
    }
};

TEST(MainWindow, OnlineLayout) {
    Window f;
    EXPECT_EQ(f.w.width(), 350 - 6);
    EXPECT_EQ(f.w.windowTitle(), QStringLiteral("TarvelloS  2.5 - Oak (alice)"));
    EXPECT_TRUE(MatchesReference(f.w, "frmZ-online"));
}

TEST(MainWindow, ButtonColourAndPauseCount) {
    Window f;
    auto m = OnlineModel();
    m.cmdTimer.Caption = "37";
    m.cmdTimer.TextFont.Bold = true;
    m.cmdTimer.TextFont.Size = 12;
    f.w.setModel(m);
    const QImage img = ui::Snapshot(f.w);
    QPushButton* hand = f.w.button("cmdHand");
    // The automatic capture colour fills the button.
    const QPoint c = hand->geometry().topLeft() + QPoint(4, 4);
    EXPECT_EQ(QColor(img.pixel(c)), ui::ToQColor(0x80FFFF));
    const QPoint b = f.w.button("cmdBid")->geometry().topLeft() + QPoint(4, 4);
    EXPECT_EQ(QColor(img.pixel(b)), ui::ToQColor(core::kMainWindowBackColor));
    EXPECT_EQ(f.w.button("cmdTimer")->text(), QStringLiteral("37"));
    EXPECT_TRUE(f.w.button("cmdTimer")->font().bold());
}

TEST(MainWindow, VisualAlarmDrawsOnceThenClears) {
    Window f;
    auto m = OnlineModel();
    const QImage before = ui::Snapshot(f.w);
    m.VisualAlarms = 1;
    f.w.setModel(m);
    const QImage alarm = ui::Snapshot(f.w);
    f.w.setModel(m);  // next repaint without a new alarm
    const QImage after = ui::Snapshot(f.w);
    const QRect box(4, 24, 316, 100);
    const QColor red(255, 0, 0);
    EXPECT_EQ(uitest::CountColor(before, box, red), 0);
    EXPECT_GT(uitest::CountColor(alarm, box, red), 300);
    EXPECT_EQ(uitest::CountColor(after, box, red), 0);
}

TEST(MainWindow, ButtonsReportIntents) {
    Window f;
    f.w.show();
    QSignalSpy pause(&f.w, &ui::FrmZ::pauseClicked), end(&f.w, &ui::FrmZ::endClicked),
        endRight(&f.w, &ui::FrmZ::endRightClicked), bidRight(&f.w, &ui::FrmZ::bidRightClicked),
        score(&f.w, &ui::FrmZ::scoreClicked);
    QTest::mouseClick(f.w.button("cmdTimer"), Qt::LeftButton);
    QTest::mouseClick(f.w.button("cmdScore"), Qt::LeftButton);
    QTest::mousePress(f.w.button("cmdEnd"), Qt::RightButton);
    QTest::mousePress(f.w.button("cmdBid"), Qt::RightButton);
    EXPECT_EQ(pause.count(), 1);
    EXPECT_EQ(score.count(), 1);
    EXPECT_EQ(endRight.count(), 1);
    EXPECT_EQ(bidRight.count(), 1);
    EXPECT_EQ(end.count(), 0);  // a right press is not a click
}

TEST(MainWindow, SeatMenuCarriesNamesChecksAndReportsTheSeat) {
    Window f;
    QMenu* menu = f.w.alertMenu();
    const auto actions = menu->actions();
    ASSERT_GE(actions.size(), 4);
    EXPECT_EQ(actions[3]->text(), QStringLiteral("righty_two"));
    EXPECT_TRUE(actions[3]->isChecked());
    EXPECT_FALSE(actions[0]->isEnabled());  // the user's own seat
    QSignalSpy seat(&f.w, &ui::FrmZ::seatMenuChosen);
    actions[3]->trigger();
    ASSERT_EQ(seat.count(), 1);
    EXPECT_EQ(seat[0][0].toInt(), 3);
}

TEST(MainWindow, FileBoxDeleteStep) {
    Window f;
    f.w.show();
    QSignalSpy chosen(&f.w, &ui::FrmZ::recordChosen), del(&f.w, &ui::FrmZ::deleteKeyPressed),
        undo(&f.w, &ui::FrmZ::undoClicked), delAll(&f.w, &ui::FrmZ::deleteAllWorkFiles);
    QListWidget* list = f.w.fileList();
    ASSERT_EQ(list->count(), 3);
    EXPECT_TRUE(list->item(1)->isSelected());
    const QRect r = list->visualItemRect(list->item(2));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, r.center());
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen[0][0].toString(), QStringLiteral("03_05_001"));
    QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_EQ(del.count(), 1);

    // The engine starts the delete step: DEL and Undo show, capture waits.
    display::FileBox b = Files();
    b.BeginDelete();
    f.w.setFileBox(b);
    EXPECT_TRUE(f.w.button("cmdDEL")->isVisible());
    EXPECT_TRUE(f.w.button("cmdUndo")->isVisible());
    EXPECT_FALSE(list->isEnabled());
    EXPECT_FALSE(f.w.button("cmdBid")->isEnabled());
    EXPECT_FALSE(f.w.button("cmdDelFiles")->isEnabled());
    QTest::mouseClick(f.w.button("cmdUndo"), Qt::LeftButton);
    EXPECT_EQ(undo.count(), 1);
    EXPECT_TRUE(MatchesReference(f.w, "frmZ-delete-pending"));
    b.cmdUndo_Click();
    f.w.setFileBox(b);
    EXPECT_FALSE(f.w.button("cmdDEL")->isVisible());
    EXPECT_TRUE(f.w.button("cmdBid")->isEnabled());
    QTest::mouseClick(f.w.button("cmdDelFiles"), Qt::LeftButton);
    EXPECT_EQ(delAll.count(), 1);
}

TEST(MainWindow, FatalStopLeavesOnlyEndAndTheMessage) {
    ui::FrmZ w;
    core::StartupScreen s;
    s.Print("  You are going to start TarvelloS.exe again.");
    s.NewLine();
    s.NewLine();
    s.Print("  Click END (or ESC) and terminate job.");
    s.OtherControlsVisible = false;
    s.EndVisible = true;
    s.EndIsCancel = true;
    s.DeleteAllEnabled = false;
    w.setStartupScreen(s);
    w.show();
    EXPECT_TRUE(w.button("cmdEnd")->isVisible());
    EXPECT_FALSE(w.button("cmdBid")->isVisible());
    EXPECT_FALSE(w.fileList()->isVisible());
    QSignalSpy end(&w, &ui::FrmZ::endClicked);
    QTest::keyClick(&w, Qt::Key_Escape);
    EXPECT_EQ(end.count(), 1);
    EXPECT_TRUE(MatchesReference(w, "frmZ-fatal-stop"));
}

TEST(MainWindow, JapaneseCaptionsUseTheJapaneseFont) {
    ui::FrmZ w;
    auto m = OnlineModel();
    m.cmdTimer.Caption = "休止";
    m.lblMsg = core::MakeLabel("２人が NIL をビッド");
    w.setModel(m);
    players::AlertView v = Alerted();
    v.menuAlertPlayerCaption = "アラート";
    v.AlertName.Caption = "righty_t(遅い)";
    w.setAlertView(v);
    w.setFileBox(Files());
    EXPECT_TRUE(MatchesReference(w, "frmZ-japanese"));
}

}  // namespace

namespace {

// The "Remaining Cards" box: four lines of ranks, spades down to clubs, in
// the suits' colours; nothing at all while counting is not allowed.
TEST(MainWindow, RemainingCardsBoxOnlyWhileCountingIsAllowed) {
    Window f;
    const QRect box = ui::FrmZ::remainingCardsArea();
    const QRect hearts(box.left() + 2, box.top() + 20, box.width() - 4, 14);
    const QRect spades(box.left() + 2, box.top() + 2, box.width() - 4, 14);
    f.w.setRemainingCards(display::spdShow_AllCards(true), true);
    QImage img = ui::Snapshot(f.w);
    EXPECT_GT(uitest::CountHue(img, hearts, 0), 20);
    EXPECT_GT(uitest::CountDark(img, spades), 20);
    EXPECT_EQ(uitest::CountHue(img, spades, 0), 0);
    f.w.setRemainingCards(display::spdShow_AllCards(false), true);
    img = ui::Snapshot(f.w);
    EXPECT_EQ(uitest::CountDark(img, box.adjusted(1, 1, -1, -1)), 0);
}

}  // namespace
