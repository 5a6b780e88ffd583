#include "app/gui_demo.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPainter>
#include <cstdio>

#include "platform/sim/sim_desktop.h"
#include "platform/temp_folder.h"
#include "replay/demo_scenario.h"
#include "replay/json_lines.h"
#include "replay/program_files.h"
#include "replay/session.h"
#include "sim/scenario.h"
#include "ui/bridge.h"
#include "ui/card_windows.h"
#include "ui/snapshot.h"

namespace app {

namespace {

// What the demo switches on beyond the console demo's table: the card play
// window, the hand display, the score window, and the position file that
// keeps where the user dragged the windows.
const char* const kDemoWindows[] = {"CountCards = yes (*,0)", "MyHand = (*,0)", "PasteScoreTable = (*,0)",
                                    "CFG = Windows.CFG"};

// The right and bottom edge of the game's windows on the simulated screen.
QSize GameExtent(platform::SimDesktop& d) {
    QSize s(1, 1);
    for (platform::WindowHandle h : d.TopLevel()) {
        const platform::SimWindow* w = d.Find(h);
        if (!w || w->Own || !w->Visible || w->Minimized) continue;
        s = s.expandedTo(QSize(w->Outer.Right, w->Outer.Bottom));
    }
    return s;
}

}  // namespace

GameView::GameView(platform::SimDesktop& desktop, QWidget* parent) : QWidget(parent), desktop_(desktop) {
    setWindowTitle(QStringLiteral("Yahoo! Spades (simulated)"));
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void GameView::refresh() {
    const QSize extent = GameExtent(desktop_);
    if (picture_.size() != extent) {
        picture_ = QImage(extent, QImage::Format_RGB32);
        resize(extent);
    }
    picture_.fill(QColor(0, 96, 128));
    QPainter p(&picture_);
    const auto order = desktop_.TopLevel();
    for (auto it = order.rbegin(); it != order.rend(); ++it) {
        const platform::SimWindow* w = desktop_.Find(*it);
        if (!w || w->Own || !w->Visible || w->Minimized) continue;
        p.drawImage(w->Outer.Left, w->Outer.Top, ui::ToQImage(w->Pixels));
    }
    update();
}

void GameView::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.drawImage(0, 0, picture_);
}

void GameView::mousePressEvent(QMouseEvent* e) {
    if (e->button() != Qt::LeftButton) return;
    const QPoint at = e->position().toPoint();
    desktop_.SetCursorPos({at.x(), at.y()});
    desktop_.LeftClick();
    refresh();
}

int RunGuiDemo(const GuiDemoOptions& o) {
    sim::Scenario scenario;
    std::string error;
    if (!replay::DemoScenario(scenario, error)) {
        std::fprintf(stderr, "tarvellos --demo: built-in scenario: %s\n", error.c_str());
        return 1;
    }
    for (const char* line : kDemoWindows) scenario.settings.emplace_back(line);
    scenario.game.randomDeals = o.Deals;
    std::string home = o.Home.toStdString();
    if (home.empty()) home = platform::MakeFreshTempFolder("tarvellos-demo", error).value_or("");
    if (home.empty()) {
        std::fprintf(stderr, "tarvellos --demo: cannot create a folder for the demo: %s\n", error.c_str());
        return 1;
    }
    const replay::ProgramFiles files = replay::WriteProgramFiles(scenario, home);
    if (!files.Ok) {
        std::fprintf(stderr, "tarvellos --demo: %s\n", files.Error.c_str());
        return 1;
    }
    QString shots = o.Snapshots;
    if (o.Headless && shots.isEmpty()) {
        const std::string made = platform::MakeFreshTempFolder("tarvellos-snapshots", error).value_or("");
        if (made.empty()) {
            std::fprintf(stderr, "tarvellos --demo: cannot create a folder for the pictures: %s\n", error.c_str());
            return 1;
        }
        shots = QString::fromStdString(made);
    }
    if (!shots.isEmpty() && !QDir().mkpath(shots)) {
        std::fprintf(stderr, "tarvellos --demo: cannot create the pictures folder %s\n", qPrintable(shots));
        return 1;
    }

    ui::CompanionUi ui;
    replay::Session session(scenario, home, &ui);
    ui.attach(session.App);
    GameView game(session.Desktop);

    int filed = 0;
    bool shotPending = false;
    int exitCode = 0;
    bool done = false;
    replay::LostSaves lost;
    auto finish = [&](int code) {
        if (done) return;
        done = true;
        exitCode = code;
        ui.stop();
        QApplication::exit(code);
    };
    ui.OnDealFiled = [&](const tracking::FiledDeal& d) {
        ++filed;
        lost.Add(d.Saves);
        lost.Recovered(d.Retried);
        std::printf("%s\n", replay::FiledDealJson(filed, d, d.Saves).Dump().c_str());
        std::fflush(stdout);
        shotPending = true;
    };
    // The pictures show the windows once the tick that filed the deal is over.
    ui.AfterTick = [&] {
        if (!shotPending) return;
        shotPending = false;
        if (!shots.isEmpty()) {
            const QString n = QStringLiteral("%1").arg(filed, 3, 10, QLatin1Char('0'));
            for (const ui::NamedWindow& w : ui.windows()) {
                if (!w.Window->isVisible()) continue;
                const QString path = shots + "/" + QString::fromLatin1(w.Name) + "-" + n + ".png";
                if (!ui::SaveSnapshot(*w.Window, path)) std::fprintf(stderr, "tarvellos --demo: cannot write %s\n", qPrintable(path));
            }
            game.refresh();
            game.picture().save(shots + "/game-" + n + ".png");
        }
        if (o.Headless && filed >= o.Deals) finish(lost.Any() ? 1 : 0);
    };
    ui.OnGameOver = [&](const tracking::GameOver& g) {
        lost.Add(g.Saves);
        std::printf("%s\n", replay::GameOverJson(g).Dump().c_str());
        std::fflush(stdout);
    };
    ui.OnEnded = [&] { finish(lost.Any() ? 1 : 0); };

    // The game's time follows real time (times the speed); without a
    // screen it runs as fast as the ticks go.
    QElapsedTimer real;
    std::uint64_t virtualStart = 0;
    int repaints = -1;
    ui.IntervalFor = [&](int ms) { return o.Headless ? 0 : std::max(1, static_cast<int>(ms / o.Speed)); };
    ui.BeforeTick = [&] {
        if (o.Headless) {
            session.Advance(static_cast<std::uint32_t>(session.App.TimerInterval()));
        } else {
            const auto target = virtualStart + static_cast<std::uint64_t>(static_cast<double>(real.elapsed()) * o.Speed);
            if (target > session.Clock.Elapsed())
                session.Advance(static_cast<std::uint32_t>(target - session.Clock.Elapsed()));
            if (session.Game.RepaintCount() != repaints) {
                repaints = session.Game.RepaintCount();
                game.refresh();
            }
        }
        // A game with no deals left ends the run once every deal is filed.
        if (o.Headless && session.GameFinished() && session.App.FiledCount() >= session.DealsPlayed() &&
            !session.App.Busy())
            finish(lost.Any() ? 1 : 0);
    };

    if (!o.Headless) ui.showStartup();
    if (!session.Start(false, false)) {
        std::string screen = session.App.StartupScreen().Text();
        std::fprintf(stderr, "tarvellos --demo: the companion did not start: %s\n", screen.c_str());
        return 1;
    }
    virtualStart = session.Clock.Elapsed();
    real.start();
    if (!o.Headless) {
        game.refresh();
        game.move(0, 0);
        game.show();
    }
    ui.start();
    if (o.Headless) std::fprintf(stderr, "tarvellos --demo: pictures in %s\n", qPrintable(shots));
    const int rc = QApplication::exec();
    for (const std::string& line : lost.Lines()) std::fprintf(stderr, "tarvellos --demo: %s\n", line.c_str());
    if (done) return exitCode;
    return rc;
}

}  // namespace app
