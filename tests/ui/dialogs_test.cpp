// The modal dialogs: the reason for an alert and the work-folder emptying.
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "platform/sim/virtual_clock.h"
#include "ui/alert_windows.h"
#include "ui/del_work_window.h"
#include "ui_test_util.h"

namespace {

using uitest::MatchesReference;

players::ReasonDialog Reason(platform::Clock& clock, const std::string& text, bool listed) {
    players::ReasonDialog d(clock, false);
    d.Caption = "Why Alert ?";
    d.txtReason = text;
    d.boxReason = players::ReasonItems();
    if (listed) d.boxReason.push_back(players::UnCheckItem);
    d.Load();
    return d;
}

TEST(ReasonDialog, OpensOnTheCurrentReason) {
    platform::VirtualClock clock;
    ui::FrmReason w;
    w.setModel(Reason(clock, "Staller", true));
    EXPECT_EQ(w.windowTitle(), QStringLiteral("Why Alert ?"));
    EXPECT_EQ(w.list()->count(), static_cast<int>(players::ReasonItems().size()) + 1);
    EXPECT_EQ(w.list()->currentItem()->text(), QStringLiteral("Staller"));
    EXPECT_EQ(w.list()->item(w.list()->count() - 1)->text(), QStringLiteral("[UnCheck]"));
    EXPECT_TRUE(MatchesReference(w, "reason-listed"));
}

// Enter is covered by the asker below.
TEST(ReasonDialog, ItemClickAndClosingGiveTheReason) {
    platform::VirtualClock clock;
    {
        ui::FrmReason w;
        w.setModel(Reason(clock, "", false));
        QSignalSpy reason(&w, &ui::FrmReason::reasonChosen);
        QListWidget* list = w.list();
        w.show();
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(2)).center());
        ASSERT_EQ(reason.count(), 1);
        EXPECT_EQ(reason[0][0].toString(), QStringLiteral("Bad Play"));
    }
    {
        ui::FrmReason w;
        w.setModel(Reason(clock, "Kid", false));
        QSignalSpy reason(&w, &ui::FrmReason::reasonChosen);
        w.show();
        w.close();
        ASSERT_EQ(reason.count(), 1);
        EXPECT_EQ(reason[0][0].toString(), QStringLiteral("Kid"));
    }
}

TEST(ReasonDialog, AskerHandsTheAnswerToTheModel) {
    platform::VirtualClock clock;
    players::ReasonDialog d = Reason(clock, "", false);
    QTimer::singleShot(0, [] {
        auto* dlg = qobject_cast<ui::FrmReason*>(QApplication::activeModalWidget());
        ASSERT_NE(dlg, nullptr);
        dlg->textBox()->setText("Abusive");
        QTest::keyClick(dlg->textBox(), Qt::Key_Return);
    });
    ui::FrmReason::Asker(nullptr)(d);
    EXPECT_TRUE(d.Closed());
    EXPECT_EQ(d.AlertReason(), "Abusive");
}

display::DelWorkDialog DeleteMode() {
    display::WorkScan scan;
    scan.Records = {"03_05_001", "03_05_002"};
    display::DelWorkDialog d;
    display::PrepareDelWork(d, scan, ".spd", "/home/player/TarvelloS/Work", false, {600, 40, 930, 600});
    return d;
}

TEST(DelWorkDialog, TextOneLinePerPieceAndAnswers) {
    ui::FrmDelWork w;
    const auto d = DeleteMode();
    w.setModel(d);
    EXPECT_EQ(w.windowTitle(), QStringLiteral(" Empty Work Folder"));
    EXPECT_EQ(w.deleteButton()->text(), ui::Q(d.ButtonCaption));
    EXPECT_TRUE(MatchesReference(w, "delwork-delete"));
    QSignalSpy yes(&w, &ui::FrmDelWork::deleteConfirmed), no(&w, &ui::FrmDelWork::cancelled);
    w.show();
    QTest::mouseClick(w.cancelButton(), Qt::LeftButton);
    EXPECT_EQ(no.count(), 1);
    EXPECT_EQ(yes.count(), 0);
}

TEST(DelWorkDialog, AskerRecordsTheConfirmation) {
    auto d = DeleteMode();
    QTimer::singleShot(0, [] {
        auto* dlg = qobject_cast<ui::FrmDelWork*>(QApplication::activeModalWidget());
        ASSERT_NE(dlg, nullptr);
        QTest::mouseClick(dlg->deleteButton(), Qt::LeftButton);
    });
    ui::FrmDelWork::Asker(nullptr)(d);
    EXPECT_TRUE(d.Confirmed);
    EXPECT_FALSE(d.Visible);
}

TEST(DelWorkDialog, JapaneseRestoreMode) {
    display::WorkScan scan;
    scan.Backups = {"03_05_001"};
    display::DelWorkDialog d;
    display::PrepareDelWork(d, scan, ".spd", "/home/player/TarvelloS/Work", true, {600, 40, 930, 600});
    ui::FrmDelWork w;
    w.setModel(d);
    EXPECT_TRUE(MatchesReference(w, "delwork-restore-japanese"));
}

}  // namespace
