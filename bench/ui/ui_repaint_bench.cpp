// A repaint of each companion window from its model (model copied in,
// window painted into an image): what the window layer costs per tick when
// a window changes. Target: well under a millisecond per small window, so
// the 500 ms tick never waits on painting.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QStyleFactory>
#include <filesystem>

#include "platform/temp_folder.h"
#include "replay/demo_scenario.h"
#include "replay/program_files.h"
#include "replay/session.h"
#include "ui/alert_windows.h"
#include "ui/bridge.h"
#include "ui/board_window.h"
#include "ui/counter_windows.h"
#include "ui/err_msg_window.h"
#include "ui/help_bid_window.h"
#include "ui/history_window.h"
#include "ui/main_window.h"
#include "ui/qt_style.h"
#include "ui/snapshot.h"

namespace {

template <class W, class M>
void Repaint(benchmark::State& state, const M& m) {
    W w;
    for (auto _ : state) {
        w.setModel(m);
        QImage img = ui::Snapshot(w);
        benchmark::DoNotOptimize(img.constBits());
    }
}

void BM_Counter0(benchmark::State& s) {
    scoring::LeftCounter m;
    m.ShowCounterInit({125, 248}, {4, 3}, {"4", "3", "3", "N"}, 4);
    Repaint<ui::FrmCounter0>(s, m);
}
BENCHMARK(BM_Counter0);

void BM_Counter(benchmark::State& s) {
    scoring::RightCounter m;
    m.ShowCounterInit({478, 482}, {2, 5}, {"4", "2", "3", "1"});
    std::array<int, 3> tricks{8, 3, 11};
    m.ShowCounterNow({478, 482}, tricks, {"4", "2", "3", "1"}, {0, 0, 0, 0});
    Repaint<ui::FrmCounter>(s, m);
}
BENCHMARK(BM_Counter);

void BM_HelpBid(benchmark::State& s) {
    scoring::HelpBid m(ui::QtTextMeasure());
    scoring::ScoreRows rows;
    rows.ScoreRowCount = 1;
    rows.Rows[1] = {465, 0, 458, 0};
    m.Show_HelpBid(rows, 2, {"", "3", "1", "3"}, 3, "");
    Repaint<ui::FrmHelpBid>(s, m);
}
BENCHMARK(BM_HelpBid);

void BM_Board(benchmark::State& s) {
    tracking::Board m;
    m.Visible = true;
    m.Layout(tracking::BoardOrdinary, false);
    Repaint<ui::FrmBoard>(s, m);
}
BENCHMARK(BM_Board);

void BM_ErrMsg(benchmark::State& s) {
    display::ErrMsgWindow m;
    m.PutMsg(display::MsgScoreUnchanged, display::LangEnglish, display::TableModeSpades);
    Repaint<ui::FrmErrMsg>(s, m);
}
BENCHMARK(BM_ErrMsg);

void BM_AskAlert(benchmark::State& s) {
    players::AskAlertWindow m;
    m.Loaded = m.Visible = true;
    m.cmdAsk.Caption = "NoneToAlert ?";
    Repaint<ui::FrmAskAlert>(s, m);
}
BENCHMARK(BM_AskAlert);

void BM_MainWindow(benchmark::State& s) {
    tracking::MainWindow m;
    const char* names[4] = {"me_player", "lefty_one", "partner_x", "righty_two"};
    for (int p = 0; p < 4; ++p) {
        m.plName[p].Caption = names[p];
        m.lblBid[p].Caption = std::to_string(p + 2);
    }
    Repaint<ui::FrmZ>(s, m);
}
BENCHMARK(BM_MainWindow);

void BM_History(benchmark::State& s) {
    std::vector<ui::RatingPoint> pts;
    for (int i = 0; i < 200; ++i) pts.push_back({2013, 1 + i / 28, 1 + i % 28, 21, 0, 0, 1500 + (i * 37) % 150, i % 2 == 0, i % 2 == 1});
    scoring::NilCounts c;
    c.Success(0) = 7;
    c.Failure(0) = 3;
    ui::HistoryWindow w;
    for (auto _ : s) {
        w.setData(pts, ui::NilRates(c, false), false);
        QImage img = ui::Snapshot(w);
        benchmark::DoNotOptimize(img.constBits());
    }
}
BENCHMARK(BM_History);

// The companion beside a simulated game played to its end, every window
// its models show on the screen (offscreen).
struct PlayedGame {
    PlayedGame() {
        std::string err;
        (void)replay::DemoScenario(scenario, err);
        scenario.settings.insert(scenario.settings.end(),
                                 {"CountCards = yes (*,0)", "MyHand = (*,0)", "PasteScoreTable = (*,0)"});
        scenario.game.randomDeals = 2;
        home = platform::MakeFreshTempFolder("tarvellos-bench", err).value_or("/tmp/tarvellos-bench");
        (void)replay::WriteProgramFiles(scenario, home);
        session = std::make_unique<replay::Session>(scenario, home, &ui);
        ui.attach(session->App);
        ui.BeforeTick = [this] { session->Advance(static_cast<std::uint32_t>(session->App.TimerInterval())); };
        (void)session->Start(false, false);
        ui.start();
        ui.stop();
        auto& s = *session;
        for (int i = 0; i < 40000 && !(s.GameFinished() && s.App.FiledCount() >= s.DealsPlayed()); ++i) ui.tick();
        for (const auto& w : ui.windows()) w.Window->show();
        QApplication::processEvents();
    }
    ~PlayedGame() { std::filesystem::remove_all(home); }
    sim::Scenario scenario;
    std::string home;
    ui::CompanionUi ui;
    std::unique_ptr<replay::Session> session;
};

// One timer tick when nothing at the table changes: the window pass, the
// due jobs, keeping the windows on top, and whatever the windows repaint.
// Target: under 1 ms of CPU.
void BM_IdleTickEveryWindowShown(benchmark::State& state) {
    PlayedGame g;
    for (auto _ : state) {
        g.ui.tick();
        QApplication::processEvents();
    }
    int shown = 0;
    for (const auto& w : g.ui.windows()) shown += w.Window->isVisible() ? 1 : 0;
    state.counters["windows_shown"] = shown;
}
BENCHMARK(BM_IdleTickEveryWindowShown)->MeasureProcessCPUTime()->Unit(benchmark::kMicrosecond);

// Every window painted again from the models of a filed deal (main window
// with the score sheet, counters, card play, hands, score window ...).
// Target: under 10 ms.
void BM_RepaintAfterDeal(benchmark::State& state) {
    PlayedGame g;
    for (auto _ : state) {
        g.ui.repaint();
        for (const auto& w : g.ui.windows()) w.Window->repaint();
    }
}
BENCHMARK(BM_RepaintAfterDeal)->MeasureProcessCPUTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    ui::RegisterWindowFonts();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
