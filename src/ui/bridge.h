// The bridge between the engine and the windows: it listens to the
// companion's events, owns the timer that drives its tick, repaints the
// windows from the models after every change, and turns what the user does
// in a window into the companion's commands. A tick never starts inside
// another (a wait inside a tick lets the event loop run, and with it the
// timer).
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

#include "platform/clock.h"
#include "tracking/companion.h"
#include "tracking/companion_events.h"
#include "ui/alert_windows.h"
#include "ui/board_window.h"
#include "ui/card_windows.h"
#include "ui/counter_windows.h"
#include "ui/err_msg_window.h"
#include "ui/help_bid_window.h"
#include "ui/history_window.h"
#include "ui/main_window.h"

namespace ui {

// Real time whose waits keep the windows alive: pending events run while
// the time passes.
class GuiClock final : public platform::Clock {
public:
    std::uint32_t TickCount() override { return system_.TickCount(); }
    platform::LocalTime Now() override { return system_.Now(); }
    void Wait(std::uint32_t ms) override;

private:
    platform::SystemClock system_;
};

// A companion window with the name its pictures are saved under.
struct NamedWindow {
    const char* Name;
    QWidget* Window;
};

class CompanionUi final : public QObject, public tracking::CompanionEvents {
    Q_OBJECT
public:
    explicit CompanionUi(QObject* parent = nullptr);
    ~CompanionUi() override;

    // Joins the windows to a companion made with this object as its
    // listener: texts are measured in the windows' fonts, the card sheets
    // are made, the windows' actions become commands.
    void attach(tracking::Companion& companion);
    // Before Companion::Start: the main window shows the lines start-up
    // prints while it runs (a fatal stop waits there for "End").
    void showStartup();
    // After Companion::Start: the start-up lines, then the timer runs.
    void start();
    void stop();
    // "End": the companion ends at its next tick (at once when it never started).
    void end();
    // Paints every window from the models now.
    void repaint();
    // Runs before each tick (the demo lets its game's time catch up here).
    std::function<void()> BeforeTick;
    // Timer interval in milliseconds for a given engine interval (the demo
    // runs its game faster than real time).
    std::function<int(int)> IntervalFor = [](int ms) { return ms; };
    std::function<void(const tracking::FiledDeal&)> OnDealFiled;
    std::function<void(const tracking::GameOver&)> OnGameOver;
    std::function<void()> OnEnded;
    // Runs after each tick, once the windows show its outcome.
    std::function<void()> AfterTick;

    // The windows, the main window first.
    std::vector<NamedWindow> windows() const;
    FrmZ& mainWindow() { return *main_; }
    QWidget* window(const char* name) const;
    const ScoreSheetView* scoreSheet() const { return sheet_; }
    const CardSheets& sheets() const { return sheets_; }
    int ticks() const { return ticks_; }
    // One tick as the timer runs it (tests and benchmarks call it directly).
    void tick();

    // --- events of the companion ---
    void ModelsChanged() override;
    void RaiseWindow(tracking::CompanionWindow w) override;
    void DealFiled(const tracking::FiledDeal& d) override;
    void GameEnded(const tracking::GameOver& g) override;
    void Ended() override;

protected:
    bool eventFilter(QObject* o, QEvent* e) override;

private:
    void wire();
    QWidget* windowOf(tracking::CompanionWindow w) const;
    void track(CompanionWindow* w, tracking::CompanionWindow kind);

    tracking::Companion* c_ = nullptr;
    QTimer timer_;
    QTimer startupTimer_;
    bool inTick_ = false;
    bool dirty_ = false;
    int ticks_ = 0;
    CardSheets sheets_;
    std::unique_ptr<FrmZ> main_;
    ScoreSheetView* sheet_ = nullptr;  // a child of the main window
    std::unique_ptr<FrmScore> score_;
    std::unique_ptr<FrmCounter0> counter0_;
    std::unique_ptr<FrmCounter> counter_;
    std::unique_ptr<FrmHelpBid> helpBid_;
    std::unique_ptr<FrmErrMsg> errMsg_;
    std::unique_ptr<FrmBoard> board_;
    std::unique_ptr<FrmAskAlert> askAlert_;
    std::unique_ptr<FrmCardPlay> cardPlay_;
    std::unique_ptr<FrmHands> hands_;
    std::unique_ptr<HistoryWindow> history_;
};

}  // namespace ui
