#include "ui/main_window.h"

#include <QAction>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>

#include "ui/card_windows.h"
#include "ui/qt_style.h"

namespace ui {

namespace {

// Client layout, pixels. The menu bar takes the top kTop pixels.
constexpr int kTop = 20;
constexpr int kFrameHeight = 26;
constexpr int kFrameWidth = 6;
const QRect kTableBox(4, kTop + 4, 316, 100);
const QRect kCaptureFrame(5, kTop + 149, 120, 32);
const QRect kSheetArea(4, kTop + 208, 316, 180);
const QRect kRemBox(222, kTop + 448, 118, 72);

// Where each table position sits around the table box: the user at the
// bottom, the left-hand opponent left, the partner on top, the right-hand
// opponent right (bidding runs clockwise).
struct SeatPlace {
    int X, Y, NameWidth;
};
constexpr SeatPlace kSeats[4] = {{104, kTop + 64, 130}, {8, kTop + 34, 92}, {104, kTop + 6, 130}, {214, kTop + 34, 104}};

QString ColorHex(core::Color c) { return ToQColor(c).name(QColor::HexRgb); }

void SetLabelFont(QLabel* l, const char* face, double size, bool bold, core::Color color) {
    l->setFont(ToQFont(face, size, bold));
    QPalette pal = l->palette();
    pal.setColor(QPalette::WindowText, ToQColor(color));
    l->setPalette(pal);
}

void SetLabel(QLabel* l, const core::Label& m) {
    l->setText(Q(m.Caption));
    l->setVisible(m.Visible);
}

}  // namespace

FrmZ::FrmZ(QWidget* parent) : QWidget(parent) {
    setAutoFillBackground(true);
    QPalette pal = palette();
    pal.setColor(QPalette::Window, ToQColor(core::kMainWindowBackColor));
    setPalette(pal);
    setFont(ToQFont("Arial", 10, false));

    menuBar_ = new QMenuBar(this);
    menuBar_->setGeometry(0, 0, kClientWidth, kTop);
    menuBar_->setFont(ToQFont("Arial", 9, false));
    menuAlert_ = menuBar_->addMenu(QStringLiteral("Alert"));
    for (int i = 0; i < 4; ++i) {
        static const char* seats[4] = {"North", "East", "South", "West"};
        menuPlayer_[i] = menuAlert_->addAction(QString::fromLatin1(seats[i]));
        menuPlayer_[i]->setCheckable(true);
        connect(menuPlayer_[i], &QAction::triggered, this, [this, i] { emit seatMenuChosen(i); });
    }
    menuAlert_->addSeparator();
    alertListAction_ = menuAlert_->addAction(QStringLiteral("Alert List"));
    connect(alertListAction_, &QAction::triggered, this, &FrmZ::alertListMenuChosen);
    menuLink_ = menuBar_->addMenu(QStringLiteral("Link"));
    linkAction_ = menuLink_->addAction(QStringLiteral("Yahoo! Spades"));
    connect(linkAction_, &QAction::triggered, this, &FrmZ::linkMenuChosen);
    // The rating history and the Nil success rates as charts.
    QAction* history = menuBar_->addAction(QStringLiteral("History"));
    connect(history, &QAction::triggered, this, &FrmZ::historyMenuChosen);

    for (int p = 0; p < 4; ++p) {
        const SeatPlace& s = kSeats[p];
        lblSeat_[p] = makeLabel(s.X, s.Y, 14, 16);
        SetLabelFont(lblSeat_[p], "Arial", 10, true, core::DarkRed);
        plName_[p] = makeLabel(s.X + 16, s.Y, s.NameWidth, 16);
        SetLabelFont(plName_[p], "Arial", 10, false, core::Black);
        plName_[p]->installEventFilter(this);
        lblBid_[p] = makeLabel(s.X + 16, s.Y + 16, 40, 18);
        SetLabelFont(lblBid_[p], "Arial", 12, true, core::Blue);
    }
    myRating_ = makeLabel(262, kTop + 88, 56, 16);
    SetLabelFont(myRating_, "Arial", 10, true, core::Black);
    alertName_ = makeLabel(8, kTop + 108, 310, 24);
    lblMsg_ = makeLabel(8, kTop + 132, 310, 16);
    SetLabelFont(lblMsg_, "Arial", 10, false, core::Red);

    cmdBid_ = makeButton("cmdBid", 8, kTop + 152, 56, 26);
    cmdHand_ = makeButton("cmdHand", 66, kTop + 152, 56, 26);
    cmdScore_ = makeButton("cmdScore", 128, kTop + 152, 78, 26);
    cmdTimer_ = makeButton("cmdTimer", 208, kTop + 152, 54, 26);
    cmdEnd_ = makeButton("cmdEnd", 264, kTop + 152, 54, 26);
    connect(cmdBid_, &QPushButton::clicked, this, &FrmZ::bidClicked);
    connect(cmdHand_, &QPushButton::clicked, this, &FrmZ::handClicked);
    connect(cmdScore_, &QPushButton::clicked, this, &FrmZ::scoreClicked);
    connect(cmdTimer_, &QPushButton::clicked, this, &FrmZ::pauseClicked);
    connect(cmdEnd_, &QPushButton::clicked, this, &FrmZ::endClicked);

    cmdAlertNone_ = makeButton("cmdAlertNone", 8, kTop + 182, 104, 22);
    connect(cmdAlertNone_, &QPushButton::clicked, this, &FrmZ::alertNoneClicked);
    lblLog_ = makeLabel(118, kTop + 184, 24, 18);
    SetLabelFont(lblLog_, "Arial", 9, false, core::Red);
    lblBoxState_ = makeLabel(146, kTop + 184, 80, 18);
    SetLabelFont(lblBoxState_, "Arial", 9, false, core::Black);
    cntPlayers_ = makeLabel(232, kTop + 184, 26, 18);
    cntBids_ = makeLabel(262, kTop + 184, 26, 18);
    cntBidLoc_ = makeLabel(292, kTop + 184, 26, 18);

    filBox_ = new QListWidget(this);
    filBox_->setGeometry(4, kTop + 392, 210, 92);
    filBox_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    filBox_->setFont(ToQFont("Arial", 9, false));
    filBox_->installEventFilter(this);
    filBox_->viewport()->installEventFilter(this);
    connect(filBox_, &QListWidget::itemClicked, this, [this](QListWidgetItem* it) { emit recordChosen(it->text()); });
    connect(filBox_, &QListWidget::itemSelectionChanged, this, [this] {
        if (applying_) return;
        QList<int> rows;
        for (int i = 0; i < filBox_->count(); ++i)
            if (filBox_->item(i)->isSelected()) rows << i;
        emit fileSelectionChanged(rows);
    });
    cmdDEL_ = makeButton("cmdDEL", 220, kTop + 392, 98, 24);
    cmdUndo_ = makeButton("cmdUndo", 220, kTop + 420, 98, 24);
    cmdDelFiles_ = makeButton("cmdDelFiles", 4, kTop + 486, 150, 24);
    connect(cmdDEL_, &QPushButton::clicked, this, &FrmZ::delClicked);
    connect(cmdUndo_, &QPushButton::clicked, this, &FrmZ::undoClicked);
    connect(cmdDelFiles_, &QPushButton::clicked, this, &FrmZ::deleteAllWorkFiles);

    setModel(m_);
    setFileBox(display::FileBox{});
    setAlertView(players::AlertView{});
}

QPushButton* FrmZ::makeButton(const char* name, int x, int y, int w, int h) {
    auto* b = new QPushButton(this);
    b->setObjectName(QString::fromLatin1(name));
    b->setGeometry(x, y, w, h);
    b->installEventFilter(this);
    return b;
}

QLabel* FrmZ::makeLabel(int x, int y, int w, int h) {
    auto* l = new QLabel(this);
    l->setGeometry(x, y, w, h);
    l->setFont(ToQFont("Arial", 10, false));
    return l;
}

QPushButton* FrmZ::button(const QString& name) const { return findChild<QPushButton*>(name); }

void FrmZ::applyButton(QPushButton* b, const core::Button& m) {
    b->setText(Q(m.Caption));
    b->setEnabled(m.Enabled);
    b->setFont(ToQFont("Arial", m.TextFont.Size, m.TextFont.Bold));
    b->setStyleSheet(QStringLiteral("QPushButton{background-color:%1;border:1px solid #404040;}"
                                    "QPushButton:disabled{color:#808080;}")
                         .arg(ColorHex(m.BackColor)));
    b->setProperty("modelVisible", m.Visible);
    b->setVisible(m.Visible && otherControlsVisible_);
}

void FrmZ::setModel(const tracking::MainWindow& m) {
    applying_ = true;
    m_ = m;
    // After a fatal stop "End" stays as start-up left it.
    if (startupShown_ && screen_.EndVisible) {
        m_.cmdEnd.Visible = true;
        m_.cmdEnd.Caption = screen_.EndCaption;
    }
    setWindowTitle(Q(m.Caption));
    const bool wasTop = windowFlags().testFlag(Qt::WindowStaysOnTopHint);
    if (wasTop != m.Topmost) {
        const bool shown = isVisible();
        setWindowFlag(Qt::WindowStaysOnTopHint, m.Topmost);
        if (shown) show();
    }
    const int h = m.Rect.Height();
    if (h > 0) {
        resize(m.Rect.Width() - kFrameWidth, std::max(1, h - kFrameHeight));
        if (isMinimized()) showNormal();
    } else if (isVisible()) {
        showMinimized();
    }
    if (pos() != QPoint(m.Rect.Left, m.Rect.Top)) move(m.Rect.Left, m.Rect.Top);

    for (int p = 0; p < 4; ++p) {
        SetLabel(plName_[p], m.plName[p]);
        SetLabel(lblBid_[p], m.lblBid[p]);
        SetLabel(lblSeat_[p], m.lblSeat[p]);
    }
    SetLabel(cntPlayers_, m.cntPlayers);
    SetLabel(cntBids_, m.cntBids);
    SetLabel(cntBidLoc_, m.cntBidLoc);
    SetLabel(lblMsg_, m.lblMsg);
    SetLabel(lblLog_, m.lblLog);
    SetLabel(lblBoxState_, m.lblBoxState);
    applyButton(cmdBid_, m.cmdBid);
    applyButton(cmdHand_, m.cmdHand);
    applyButton(cmdScore_, m.cmdScore);
    applyButton(cmdTimer_, m.cmdTimer);
    applyButton(cmdEnd_, m.cmdEnd);
    menuLink_->setEnabled(m.LinkMenuEnabled);
    linkAction_->setText(Q(m.LinkMenuCaption));
    alertListAction_->setEnabled(m.AlertMenuEnabled);
    // The red box of the alarm stands until the next repaint of the model.
    alarm_ = m.VisualAlarms != lastAlarms_;
    lastAlarms_ = m.VisualAlarms;
    updateControlsVisible();
    applying_ = false;
    update();
}

void FrmZ::setAlertView(const players::AlertView& v) {
    alertName_->setText(Q(v.AlertName.Caption));
    SetLabelFont(alertName_, "Arial", v.AlertName.FontSize, true, v.AlertName.ForeColor);
    alertName_->setVisible(v.AlertName.Visible && otherControlsVisible_);
    alertName_->setProperty("modelVisible", v.AlertName.Visible);
    core::Button b;
    b.Caption = v.cmdAlertNone.Caption;
    b.Visible = v.cmdAlertNone.Visible;
    b.BackColor = v.cmdAlertNone.BackColor;
    b.TextFont.Size = 9;
    applyButton(cmdAlertNone_, b);
    cmdAlertNone_->setToolTip(Q(v.cmdAlertNone.ToolTip));
    menuAlert_->setTitle(Q(v.menuAlertPlayerCaption));
    for (int i = 0; i < 4; ++i) {
        const auto& e = v.menuPlayer[static_cast<std::size_t>(i)];
        if (!e.Caption.empty()) menuPlayer_[i]->setText(Q(e.Caption));
        menuPlayer_[i]->setChecked(e.Checked);
        menuPlayer_[i]->setEnabled(e.Enabled);
        plName_[i]->setToolTip(Q(v.plNameToolTip[static_cast<std::size_t>(i)]));
    }
}

void FrmZ::setRating(const players::RatingLabel& r) {
    myRating_->setText(Q(r.Caption));
    myRating_->setFont(ToQFont(r.FontName.empty() ? std::string("Arial") : r.FontName, 10, r.Bold));
}

void FrmZ::setFileBox(const display::FileBox& b) {
    applying_ = true;
    if (b.Entries != entries_) {
        entries_ = b.Entries;
        filBox_->clear();
        for (const auto& e : entries_) filBox_->addItem(Q(e));
    }
    for (int i = 0; i < filBox_->count(); ++i) {
        const bool sel = static_cast<std::size_t>(i) < b.Selected.size() && b.Selected[static_cast<std::size_t>(i)];
        filBox_->item(i)->setSelected(sel);
    }
    filBox_->setEnabled(b.Enabled);
    filBox_->setToolTip(Q(b.ToolTip));
    const std::pair<QPushButton*, const display::ButtonView*> views[] = {
        {cmdDEL_, &b.cmdDEL}, {cmdUndo_, &b.cmdUndo}, {cmdDelFiles_, &b.cmdDelFiles}};
    for (const auto& [btn, v] : views) {
        core::Button m;
        m.Caption = v->Caption;
        m.Visible = v->Visible;
        m.Enabled = v->Enabled;
        m.TextFont.Size = 9;
        applyButton(btn, m);
        btn->setToolTip(Q(v->ToolTip));
    }
    // The capture buttons wait while a delete is pending.
    cmdBid_->setEnabled(m_.cmdBid.Enabled && b.CaptureButtonsEnabled());
    cmdHand_->setEnabled(m_.cmdHand.Enabled && b.CaptureButtonsEnabled());
    if (b.Focus == "cmdDEL" && cmdDEL_->isVisible()) cmdDEL_->setFocus();
    applying_ = false;
}

void FrmZ::setStartupScreen(const core::StartupScreen& s) {
    screen_ = s;
    startupShown_ = true;
    otherControlsVisible_ = s.OtherControlsVisible;
    core::Button end = m_.cmdEnd;
    end.Caption = s.EndCaption;
    end.Visible = s.EndVisible || m_.cmdEnd.Visible;
    m_.cmdEnd = end;
    updateControlsVisible();
    cmdEnd_->setText(Q(s.EndCaption));
    if (!s.EndFont.empty()) cmdEnd_->setFont(ToQFont(s.EndFont, 10, false));
    cmdEnd_->setVisible(end.Visible);
    cmdDelFiles_->setVisible(s.DeleteAllVisible);
    cmdDelFiles_->setEnabled(s.DeleteAllEnabled);
    update();
}

void FrmZ::updateControlsVisible() {
    const bool on = otherControlsVisible_;
    for (QWidget* w : {static_cast<QWidget*>(filBox_), static_cast<QWidget*>(myRating_), static_cast<QWidget*>(menuBar_)})
        w->setVisible(on);
    for (QPushButton* b : {cmdBid_, cmdHand_, cmdScore_, cmdTimer_, cmdAlertNone_, cmdDEL_, cmdUndo_})
        b->setVisible(on && b->property("modelVisible").toBool());
    if (alertName_) alertName_->setVisible(on && alertName_->property("modelVisible").toBool());
    for (int p = 0; p < 4; ++p) {
        plName_[p]->setVisible(on && m_.plName[p].Visible);
        lblBid_[p]->setVisible(on && m_.lblBid[p].Visible);
        lblSeat_[p]->setVisible(on && m_.lblSeat[p].Visible);
    }
    const std::pair<QLabel*, const core::Label*> labels[] = {
        {cntPlayers_, &m_.cntPlayers}, {cntBids_, &m_.cntBids},     {cntBidLoc_, &m_.cntBidLoc},
        {lblMsg_, &m_.lblMsg},         {lblLog_, &m_.lblLog},       {lblBoxState_, &m_.lblBoxState}};
    for (const auto& [l, m] : labels) l->setVisible(on && m->Visible);
    if (sheet_) sheet_->setVisible(on);
}

void FrmZ::setScoreSheet(QWidget* sheet) {
    sheet_ = sheet;
    if (!sheet_) return;
    sheet_->setParent(this);
    // The sheet's columns are measured from the window's left edge.
    sheet_->setGeometry(0, kSheetArea.top(), kClientWidth, kSheetArea.height());
    sheet_->setVisible(otherControlsVisible_);
}

QRect FrmZ::scoreSheetArea() const { return kSheetArea; }

QRect FrmZ::remainingCardsArea() { return kRemBox; }

void FrmZ::setRemainingCards(const display::RemainingCardsBox& box, bool shown) {
    remBox_ = box;
    remShown_ = shown && box.Visible;
    update(kRemBox);
}

bool FrmZ::eventFilter(QObject* o, QEvent* e) {
    if (e->type() == QEvent::MouseButtonPress) {
        auto* me = static_cast<QMouseEvent*>(e);
        if (me->button() == Qt::RightButton) {
            if (o == cmdBid_) emit bidRightClicked();
            else if (o == cmdHand_) emit handRightClicked();
            else if (o == cmdEnd_) emit endRightClicked();
            else if (o == cmdAlertNone_) emit alertNoneRightClicked();
            else if (o == filBox_->viewport()) emit fileBoxRightClicked();
            else {
                for (int p = 0; p < 4; ++p)
                    if (o == plName_[p]) menuAlert_->popup(me->globalPosition().toPoint());
                return false;
            }
            return true;
        }
    } else if (e->type() == QEvent::KeyPress && o == filBox_) {
        if (static_cast<QKeyEvent*>(e)->key() == Qt::Key_Delete) {
            emit deleteKeyPressed();
            return true;
        }
    }
    return QWidget::eventFilter(o, e);
}

void FrmZ::keyPressEvent(QKeyEvent* e) {
    // After a fatal stop, Esc stands for "End".
    if (e->key() == Qt::Key_Escape && startupShown_ && screen_.EndIsCancel) {
        emit endClicked();
        return;
    }
    QWidget::keyPressEvent(e);
}

void FrmZ::paintEvent(QPaintEvent*) {
    QPainter p(this);
    if (otherControlsVisible_) {
        p.setPen(QColor(128, 128, 128));
        p.drawRect(kTableBox.adjusted(0, 0, -1, -1));
        if (m_.fraCapture.Visible) p.drawRect(kCaptureFrame.adjusted(0, 0, -1, -1));
        if (!sheet_) {
            p.setPen(QColor(160, 160, 160));
            p.drawRect(kSheetArea.adjusted(0, 0, -1, -1));
        }
        if (remShown_) {
            p.setPen(QColor(128, 128, 128));
            p.drawRect(kRemBox.adjusted(0, 0, -1, -1));
            p.save();
            p.translate(kRemBox.left() + 2, kRemBox.top());
            PaintDrawList(p, remBox_.Items, nullptr);
            p.restore();
        }
        if (alarm_) {
            p.setPen(QPen(QColor(255, 0, 0), 3));
            p.drawRect(kTableBox.adjusted(1, 1, -2, -2));
        }
    }
    if (startupShown_) {
        // The lines start-up printed, one below the other.
        const QFont f = ToQFont(screen_.TextFont.empty() ? std::string("Arial") : screen_.TextFont, 10, false);
        p.setFont(f);
        p.setPen(Qt::black);
        const QFontMetrics fm(f);
        // Notices of a normal start go where the score sheet will stand.
        int y = (otherControlsVisible_ ? kSheetArea.top() + 4 : kTop + 4) + fm.ascent();
        for (const std::string& line : screen_.Lines) {
            p.drawText(4, y, Q(line));
            y += fm.height();
        }
    }
}

void FrmZ::moveEvent(QMoveEvent* e) {
    QWidget::moveEvent(e);
    if (!applying_ && isVisible() && e->pos() != e->oldPos()) emit dragged(pos());
}

void FrmZ::resizeEvent(QResizeEvent* e) {
    QWidget::resizeEvent(e);
    if (!applying_ && isVisible()) emit heightChanged(height() + kFrameHeight);
}

}  // namespace ui
