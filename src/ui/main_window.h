// frmZ, the main window: the four seats with names, bids and seat letters,
// the capture and control buttons, the alert label and prompt button, the
// user's rating, the file box of stored deals with its DEL/Undo step, the
// menus, and the lines start-up prints. A place is kept for the score sheet,
// which another widget draws.
#pragma once

#include <QList>
#include <QPoint>
#include <QWidget>
#include <array>

#include "core/startup.h"
#include "display/file_box.h"
#include "display/hand_view.h"
#include "players/alert_checks.h"
#include "players/ratings.h"
#include "tracking/companion_models.h"

class QAction;
class QLabel;
class QListWidget;
class QMenu;
class QMenuBar;
class QPushButton;

namespace ui {

class FrmZ : public QWidget {
    Q_OBJECT
public:
    explicit FrmZ(QWidget* parent = nullptr);

    void setModel(const tracking::MainWindow& m);
    void setAlertView(const players::AlertView& v);
    void setRating(const players::RatingLabel& r);
    void setFileBox(const display::FileBox& b);
    // The lines start-up prints and the fatal stop's state of the controls.
    void setStartupScreen(const core::StartupScreen& s);
    // The score sheet's widget takes the sheet's place on the window.
    void setScoreSheet(QWidget* sheet);
    // The "Remaining Cards" box below the score sheet.
    void setRemainingCards(const display::RemainingCardsBox& box, bool shown);
    static QRect remainingCardsArea();
    QRect scoreSheetArea() const;

    // Controls, for tests and the bridge.
    QPushButton* button(const QString& name) const;
    QListWidget* fileList() const { return filBox_; }
    QMenu* alertMenu() const { return menuAlert_; }

    static constexpr int kClientWidth = 344;

signals:
    void bidClicked();
    void bidRightClicked();
    void handClicked();
    void handRightClicked();
    void scoreClicked();
    void pauseClicked();
    void endClicked();
    void endRightClicked();
    void alertNoneClicked();
    void alertNoneRightClicked();
    void seatMenuChosen(int seat);
    void linkMenuChosen();
    void alertListMenuChosen();
    void historyMenuChosen();
    // The file box.
    void recordChosen(QString name);
    void fileSelectionChanged(QList<int> selected);
    void deleteKeyPressed();
    void fileBoxRightClicked();
    void delClicked();
    void undoClicked();
    void deleteAllWorkFiles();
    // The user dragged or resized the window (outer rectangle, screen pixels).
    void dragged(QPoint topLeft);
    void heightChanged(int outerHeight);

protected:
    bool eventFilter(QObject* o, QEvent* e) override;
    void paintEvent(QPaintEvent*) override;
    void moveEvent(QMoveEvent* e) override;
    void resizeEvent(QResizeEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;

private:
    QPushButton* makeButton(const char* name, int x, int y, int w, int h);
    QLabel* makeLabel(int x, int y, int w, int h);
    void applyButton(QPushButton* b, const core::Button& m);
    void updateControlsVisible();

    tracking::MainWindow m_;
    core::StartupScreen screen_;
    bool startupShown_ = false;
    int lastAlarms_ = 0;
    bool alarm_ = false;
    bool applying_ = false;

    QMenuBar* menuBar_ = nullptr;
    QMenu* menuAlert_ = nullptr;
    QMenu* menuLink_ = nullptr;
    std::array<QAction*, 4> menuPlayer_{};
    QAction* linkAction_ = nullptr;
    QAction* alertListAction_ = nullptr;
    std::array<QLabel*, 4> plName_{}, lblBid_{}, lblSeat_{};
    QPushButton *cmdBid_, *cmdHand_, *cmdScore_, *cmdTimer_, *cmdEnd_, *cmdAlertNone_;
    QPushButton *cmdDEL_, *cmdUndo_, *cmdDelFiles_;
    QLabel *cntPlayers_, *cntBids_, *cntBidLoc_, *lblMsg_, *lblLog_, *lblBoxState_, *alertName_, *myRating_;
    QListWidget* filBox_ = nullptr;
    QWidget* sheet_ = nullptr;
    std::vector<std::string> entries_;
    bool otherControlsVisible_ = true;
    display::RemainingCardsBox remBox_;
    bool remShown_ = false;
};

}  // namespace ui
