#include "ui/bridge.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPushButton>
#include <QThread>

#include "core/folders.h"
#include "scoring/nil_history.h"
#include "ui/del_work_window.h"
#include "ui/qt_style.h"

namespace ui {

void GuiClock::Wait(std::uint32_t ms) {
    QElapsedTimer t;
    t.start();
    for (qint64 left = ms; left > 0; left = static_cast<qint64>(ms) - t.elapsed()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, static_cast<int>(left));
        QThread::msleep(static_cast<unsigned long>(std::min<qint64>(5, left)));
    }
}

CompanionUi::CompanionUi(QObject* parent) : QObject(parent) {
    main_ = std::make_unique<FrmZ>();
    main_->installEventFilter(this);
    timer_.setTimerType(Qt::CoarseTimer);
    connect(&timer_, &QTimer::timeout, this, &CompanionUi::tick);
}

CompanionUi::~CompanionUi() { timer_.stop(); }

void CompanionUi::attach(tracking::Companion& companion) {
    c_ = &companion;
    c_->SetTextMeasure(QtTextMeasure());
    const auto& m = c_->Models();
    sheets_ = MakeCardSheets(m.CardSheet, m.TextSheet);
    sheet_ = new ScoreSheetView;
    main_->setScoreSheet(sheet_);
    score_ = std::make_unique<FrmScore>(*sheet_);
    counter0_ = std::make_unique<FrmCounter0>();
    counter_ = std::make_unique<FrmCounter>();
    helpBid_ = std::make_unique<FrmHelpBid>();
    errMsg_ = std::make_unique<FrmErrMsg>();
    board_ = std::make_unique<FrmBoard>();
    askAlert_ = std::make_unique<FrmAskAlert>();
    cardPlay_ = std::make_unique<FrmCardPlay>(sheets_);
    hands_ = std::make_unique<FrmHands>(sheets_);
    wire();
    connect(&startupTimer_, &QTimer::timeout, this, [this] { main_->setStartupScreen(c_->StartupScreen()); });
}

void CompanionUi::track(CompanionWindow* w, tracking::CompanionWindow kind) {
    connect(w, &CompanionWindow::dragged, this, [this, kind](QPoint at) {
        if (c_) c_->MoveCompanionWindow(kind, at.x(), at.y());
    });
}

void CompanionUi::wire() {
    using tracking::Companion;
    auto cmd = [this](void (Companion::*f)()) {
        return [this, f] {
            if (!c_) return;
            (c_->*f)();
            repaint();
        };
    };
    FrmZ* z = main_.get();
    connect(z, &FrmZ::bidClicked, this, cmd(&Companion::CaptureBidsNow));
    connect(z, &FrmZ::bidRightClicked, this, cmd(&Companion::ToggleAutoBid));
    connect(z, &FrmZ::handClicked, this, cmd(&Companion::CaptureHandNow));
    connect(z, &FrmZ::handRightClicked, this, cmd(&Companion::ToggleAutoHand));
    connect(z, &FrmZ::scoreClicked, this, cmd(&Companion::PressScoreButton));
    connect(z, &FrmZ::pauseClicked, this, cmd(&Companion::TogglePause));
    connect(z, &FrmZ::endClicked, this, &CompanionUi::end);
    connect(z, &FrmZ::endRightClicked, this, cmd(&Companion::RecordRatingNow));
    connect(z, &FrmZ::alertNoneClicked, this, cmd(&Companion::PressNoneButton));
    connect(z, &FrmZ::deleteKeyPressed, this, [this] {
        if (c_) (void)c_->DeleteRecord();
        repaint();
    });
    connect(z, &FrmZ::delClicked, this, cmd(&Companion::ConfirmDelete));
    connect(z, &FrmZ::undoClicked, this, cmd(&Companion::UndoDelete));
    connect(z, &FrmZ::recordChosen, this, [this](const QString& name) {
        if (c_) (void)c_->OpenRecord(name.toStdString());
        repaint();
    });
    connect(z, &FrmZ::fileSelectionChanged, this, [this](const QList<int>& rows) {
        if (!c_) return;
        const int n = c_->Models().filBox.Count();
        for (int i = 0; i < n; ++i) c_->SelectRecord(i, rows.contains(i));
        repaint();
    });
    connect(z, &FrmZ::seatMenuChosen, this, [this](int pos) {
        if (c_) c_->ChooseSeatMenuEntry(pos, FrmReason::Asker(main_.get()));
        repaint();
    });
    connect(z, &FrmZ::deleteAllWorkFiles, this, [this] {
        if (c_) (void)c_->EmptyWorkFolder(FrmDelWork::Asker(main_.get()));
        repaint();
    });
    connect(z, &FrmZ::dragged, this, [this](QPoint at) {
        if (c_) c_->MoveCompanionWindow(tracking::CompanionWindow::Main, at.x(), at.y());
    });
    connect(z, &FrmZ::heightChanged, this, [this](int h) {
        if (c_) c_->ResizeMain(h);
        repaint();
    });
    connect(z, &FrmZ::historyMenuChosen, this, [this] {
        if (!c_ || !c_->Rating()) return;
        if (!history_) history_ = std::make_unique<HistoryWindow>();
        const auto& o = c_->Rating()->Options;
        const bool jp = c_->Settings().JPN;
        history_->loadFiles(o.HistoryPath, core::JoinPath(c_->Folders().WorkFolder(), scoring::NilReportName(jp)),
                            o.CodePage, jp);
        history_->show();
    });
    connect(board_.get(), &FrmBoard::boardButtonClicked, this, [this](int i) {
        if (c_) c_->PressBoardButton(i);
        repaint();
    });
    connect(askAlert_.get(), &FrmAskAlert::askClicked, this, cmd(&Companion::PressPromptButton));
    track(counter0_.get(), tracking::CompanionWindow::LeftCounter);
    track(counter_.get(), tracking::CompanionWindow::RightCounter);
    track(helpBid_.get(), tracking::CompanionWindow::HelpBid);
    track(cardPlay_.get(), tracking::CompanionWindow::CardPlay);
    track(score_.get(), tracking::CompanionWindow::Score);
    track(hands_.get(), tracking::CompanionWindow::Hands);
}

void CompanionUi::end() {
    if (!c_) return;
    c_->End();
    // A running companion ends at its next tick, saving the window
    // positions; one stopped at start-up has no tick to wait for.
    if (!c_->TimerEnabled()) Ended();
    else if (!timer_.isActive()) tick();
}

void CompanionUi::showStartup() {
    if (!c_) return;
    main_->show();
    // Start-up's waits run the event loop: the lines are shown as printed.
    startupTimer_.start(100);
}

void CompanionUi::start() {
    if (!c_) return;
    startupTimer_.stop();
    main_->setStartupScreen(c_->StartupScreen());
    repaint();
    main_->show();
    timer_.start(IntervalFor(c_->TimerInterval()));
}

void CompanionUi::stop() { timer_.stop(); }

void CompanionUi::tick() {
    if (!c_ || inTick_) return;
    inTick_ = true;
    if (BeforeTick) BeforeTick();
    if (c_->TimerEnabled()) c_->Tick();
    ++ticks_;
    inTick_ = false;
    if (dirty_) repaint();
    if (AfterTick) AfterTick();
    if (!c_) return;
    if (!c_->TimerEnabled() && c_->Ended()) {
        timer_.stop();
        return;
    }
    const int want = IntervalFor(c_->TimerInterval());
    if (timer_.isActive() && timer_.interval() != want) timer_.setInterval(want);
}

void CompanionUi::repaint() {
    dirty_ = false;
    if (!c_) return;
    const auto& m = c_->Models();
    main_->setModel(m.frmZ);
    main_->setFileBox(m.filBox);
    if (const auto* a = c_->Alerts()) {
        main_->setAlertView(a->View);
        askAlert_->setModel(a->AskAlert);
    }
    if (const auto* r = c_->Rating()) main_->setRating(r->MyRating);
    sheet_->setModel(m.ScoreSheet);
    main_->setRemainingCards(m.RemainingCards, m.States.RemainingCards == 2);
    score_->setModel(m.frmScore);
    counter0_->setModel(m.Counters.frmCounter0);
    counter_->setModel(m.Counters.frmCounter);
    helpBid_->setModel(m.frmHelpBid);
    errMsg_->setModel(m.frmErrMsg);
    board_->setModel(m.frmBoard);
    cardPlay_->setModel(m.frmCardPlay);
    hands_->setModel(m.Hands);
}

void CompanionUi::ModelsChanged() {
    // Inside a tick the windows are painted once when it ends.
    dirty_ = true;
    if (!inTick_) repaint();
}

QWidget* CompanionUi::windowOf(tracking::CompanionWindow w) const {
    using W = tracking::CompanionWindow;
    switch (w) {
        case W::Main: return main_.get();
        case W::Board: return board_.get();
        case W::LeftCounter: return counter0_.get();
        case W::RightCounter: return counter_.get();
        case W::HelpBid: return helpBid_.get();
        case W::ErrMsg: return errMsg_.get();
        case W::AskAlert: return askAlert_.get();
        case W::CardPlay: return cardPlay_.get();
        case W::Score: return score_.get();
        case W::Hands: return hands_.get();
        default: return nullptr;
    }
}

void CompanionUi::RaiseWindow(tracking::CompanionWindow w) {
    QWidget* win = windowOf(w);
    if (win && win->isVisible()) ui::RaiseWindow(win);
}

void CompanionUi::DealFiled(const tracking::FiledDeal& d) {
    if (!OnDealFiled) return;
    repaint();
    OnDealFiled(d);
}

void CompanionUi::GameEnded(const tracking::GameOver& g) {
    if (OnGameOver) OnGameOver(g);
}

void CompanionUi::Ended() {
    timer_.stop();
    if (OnEnded) OnEnded();
}

bool CompanionUi::eventFilter(QObject* o, QEvent* e) {
    // Closing the main window is "End": the next tick saves the window
    // positions and ends the program.
    if (o == main_.get() && e->type() == QEvent::Close && c_ && !c_->Ended()) {
        e->ignore();
        end();
        return true;
    }
    return QObject::eventFilter(o, e);
}

QWidget* CompanionUi::window(const char* name) const {
    for (const NamedWindow& w : windows())
        if (std::string_view(w.Name) == name) return w.Window;
    return nullptr;
}

std::vector<NamedWindow> CompanionUi::windows() const {
    std::vector<NamedWindow> out{{"main", main_.get()}};
    if (!c_) return out;
    out.insert(out.end(), {{"counter0", counter0_.get()},
                           {"counter", counter_.get()},
                           {"score", score_.get()},
                           {"cardplay", cardPlay_.get()},
                           {"hands", hands_.get()},
                           {"helpbid", helpBid_.get()},
                           {"board", board_.get()},
                           {"errmsg", errMsg_.get()},
                           {"askalert", askAlert_.get()}});
    return out;
}

}  // namespace ui
