// The companion on a real X server (an Xvfb of the benchmark's own, depth 24):
// copying an 800x600 window into the pixel buffer through shared memory and
// through the plain fallback (target: a few milliseconds), a whole on-line
// tick against tarvellos-game (window pass, copies, reads; target: under
// 5 ms at the median), and the processor time `watch` takes following a
// game (target: under 1% of one core).
#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <thread>

#include "core/text.h"
#include "platform/clock.h"
#include "platform/image.h"
#include "platform/x11/x11_desktop.h"
#include "platform/x11/x11_window_host.h"
#include "platform/x11_rig.h"
#include "replay/program_files.h"
#include "replay/demo_scenario.h"
#include "sim/scenario.h"
#include "tracking/companion.h"
#include "tracking/pixel_readers.h"

namespace {

x11test::XServer& Server() {
    static x11test::XServer server("1280x1024x24");
    return server;
}

// An 800x600 window with a busy picture, shown by a host of the benchmark's own.
struct Window800 {
    Window800() {
        std::string error;
        host = platform::X11WindowHost::Open(error);
        if (!host) return;
        id = host->Create("bench 800x600", {50, 50, 850, 650});
        platform::Image img(800, 600);
        for (int y = 0; y < 600; ++y)
            for (int x = 0; x < 800; ++x) img.Set(x, y, platform::Rgb(x & 255, y & 255, (x * y) & 255));
        host->Paint(id, img);
        for (int i = 0; i < 50; ++i) (void)host->Wait(10);
    }
    std::unique_ptr<platform::X11WindowHost> host;
    std::uint64_t id = 0;
};

void Capture(benchmark::State& state, bool shm) {
    if (!Server().Ok()) {
        state.SkipWithError("no Xvfb");
        return;
    }
    static Window800 window;
    std::string error;
    auto d = platform::X11Desktop::Open(error, {shm, true, false});
    if (!d || window.id == 0) {
        state.SkipWithError("no X display");
        return;
    }
    std::vector<std::uint16_t> bits(800 * 600);
    for (auto _ : state) {
        const auto rows = d->CopyRegion(static_cast<platform::WindowHandle>(window.id), platform::Area::Client,
                                        {0, 0, 800, 600}, bits);
        if (rows != 600) state.SkipWithError("copy failed");
        benchmark::DoNotOptimize(bits.data());
    }
    state.SetBytesProcessed(state.iterations() * 800 * 600 * 4);
}

void BM_X11Capture800x600Shm(benchmark::State& state) { Capture(state, true); }
void BM_X11Capture800x600Fallback(benchmark::State& state) { Capture(state, false); }
BENCHMARK(BM_X11Capture800x600Shm)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_X11Capture800x600Fallback)->Unit(benchmark::kMillisecond);

std::string FreshFolder(const std::string& name) {
    const auto p = std::filesystem::temp_directory_path() / ("tarvellos-bench-" + name);
    std::filesystem::remove_all(p);
    std::filesystem::create_directories(p);
    return p.string();
}

sim::Scenario DemoScenario() {
    sim::Scenario sc;
    std::string error;
    (void)sim::ParseScenario(replay::DemoScenarioText(), sc, error);
    return sc;
}

// Ticks of the companion following tarvellos-game, each timed on its own.
void BM_X11OnlineTick(benchmark::State& state) {
    if (!Server().Ok()) {
        state.SkipWithError("no Xvfb");
        return;
    }
    x11test::Child game({TARVELLOS_GAME, "--seed", "3", "--speed", "4"});
    if (!game.ReadLine(10000)) {
        state.SkipWithError("tarvellos-game did not start");
        return;
    }
    const std::string home = FreshFolder("tick");
    (void)replay::WriteProgramFiles(DemoScenario(), home);
    std::string error;
    auto d = platform::X11Desktop::Open(error);
    platform::SystemClock clock;
    tracking::CallbackEvents events;
    tracking::ScreenReading screen(d->Roles(), clock);
    tracking::Companion app(d->Roles(), clock, core::Folders{home, "Work"}, screen, events);
    app.SetArchiveCheck(false);
    if (!app.Start()) {
        state.SkipWithError("the companion did not start");
        return;
    }
    std::vector<double> ms;
    for (auto _ : state) {
        const auto t0 = std::chrono::steady_clock::now();
        app.Tick();
        const auto t1 = std::chrono::steady_clock::now();
        ms.push_back(std::chrono::duration<double, std::milli>(t1 - t0).count());
        state.SetIterationTime(std::chrono::duration<double>(t1 - t0).count());
        // The timer's pace, shortened: the game plays four times as fast.
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    std::sort(ms.begin(), ms.end());
    if (!ms.empty()) {
        state.counters["median_ms"] = ms[ms.size() / 2];
        state.counters["p90_ms"] = ms[ms.size() * 9 / 10];
        state.counters["max_ms"] = ms.back();
    }
    state.counters["online"] = app.Online() == tracking::OnlineMode::Online ? 1 : 0;
    std::filesystem::remove_all(home);
}
BENCHMARK(BM_X11OnlineTick)->UseManualTime()->Iterations(300)->Unit(benchmark::kMillisecond);

// Processor time of the whole watch process over a stretch of a game.
void BM_X11WatchCpu(benchmark::State& state) {
    if (!Server().Ok()) {
        state.SkipWithError("no Xvfb");
        return;
    }
    const std::string home = FreshFolder("watch");
    (void)replay::WriteProgramFiles(DemoScenario(), home);
    const int seconds = 40;
    for (auto _ : state) {
        x11test::Child game({TARVELLOS_GAME, "--seed", "3", "--speed", "1"});
        (void)game.ReadLine(10000);
        const pid_t pid = fork();
        if (pid == 0) {
            // Its single-instance lock away from any companion the user runs.
            setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
            const std::string t = std::to_string(seconds);
            execl(TARVELLOS_CLI, TARVELLOS_CLI, "watch", "--home", home.c_str(), "--timeout", t.c_str(), "--json",
                  static_cast<char*>(nullptr));
            _exit(127);
        }
        int status = 0;
        rusage use{};
        wait4(pid, &status, 0, &use);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) state.SkipWithError("watch failed");
        const double cpu = static_cast<double>(use.ru_utime.tv_sec + use.ru_stime.tv_sec) +
                           static_cast<double>(use.ru_utime.tv_usec + use.ru_stime.tv_usec) / 1e6;
        state.counters["cpu_percent_of_core"] = 100.0 * cpu / seconds;
        state.SetIterationTime(seconds);
    }
    std::filesystem::remove_all(home);
}
BENCHMARK(BM_X11WatchCpu)->UseManualTime()->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace
