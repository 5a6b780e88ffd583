// A repaint of each companion window from its model: what one tick costs
// the window layer when every window changes.
#include <benchmark/benchmark.h>

#include <QApplication>

#include "ui/counter_windows.h"
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

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ui::RegisterWindowFonts();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
