// Figures of the Windows desktop (run under Wine here, which is not Windows):
// the copy of an 800x600 game window into the pixel buffer, and whole
// on-line ticks of the companion (window pass, copies and reads) following
// tarvellos-game.exe. Google Benchmark is not built for Windows here, so
// this program times its own runs and prints medians.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "platform/factory/open_desktop.h"
#include "replay/program_files.h"
#include "core/text.h"
#include "sim/scenario.h"
#include "tracking/companion.h"
#include "tracking/companion_events.h"
#include "tracking/pixel_readers.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// windows.h names a function of its own OpenDesktop.
#undef OpenDesktop

namespace {

using Ms = std::chrono::duration<double, std::milli>;

// Real time whose waits do not sleep: a tick is timed for its own work,
// not for the pauses the engine makes for the game to repaint.
class NoWaitClock final : public platform::Clock {
public:
    std::uint32_t TickCount() override { return real_.TickCount(); }
    platform::LocalTime Now() override { return real_.Now(); }
    void Wait(std::uint32_t) override {}

private:
    platform::SystemClock real_;
};

struct Figures {
    double median = 0, p90 = 0, max = 0;
};

Figures Summarise(std::vector<double> ms) {
    std::sort(ms.begin(), ms.end());
    if (ms.empty()) return {};
    return {ms[ms.size() / 2], ms[ms.size() * 9 / 10], ms.back()};
}

std::wstring Wide(const std::string& s) { return std::wstring(s.begin(), s.end()); }

}  // namespace

int main() {
    auto opened = platform::OpenDesktop(platform::DesktopKind::Native);
    if (!opened.Backend) {
        std::fprintf(stderr, "no desktop: %s\n", opened.Error.c_str());
        return 1;
    }
    platform::Desktop d = opened.Backend->Roles();

    const std::string scenarioPath = TARVELLOS_SOURCE_DIR "/tests/data/win32/three_deals.json";
    std::wstring cmd = L"\"" + Wide(TARVELLOS_GAME) + L"\" --scenario \"" + Wide(scenarioPath) + L"\" --speed 1";
    STARTUPINFOW si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    if (!CreateProcessW(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi)) {
        std::fprintf(stderr, "cannot start tarvellos-game.exe\n");
        return 1;
    }
    platform::WindowHandle table = 0;
    for (int i = 0; i < 1000 && !table; ++i) {
        for (platform::WindowHandle h : d.windows.TopLevel())
            if (d.windows.Title(h).value_or("").rfind("Game: Spades", 0) == 0) table = h;
        if (!table) std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    int status = 0;
    if (!table) {
        std::fprintf(stderr, "tarvellos-game.exe showed no table\n");
        status = 1;
    } else {
        // The copy of the whole 800x600 table window.
        std::vector<std::uint16_t> bits(800 * 600);
        std::vector<double> copies;
        for (int i = 0; i < 300; ++i) {
            const auto t0 = std::chrono::steady_clock::now();
            const auto lines = d.capture.CopyRegion(table, platform::Area::Window, {0, 0, 800, 600}, bits);
            copies.push_back(Ms(std::chrono::steady_clock::now() - t0).count());
            if (lines != 600) status = 1;
        }
        const Figures c = Summarise(copies);
        std::printf("capture 800x600 window (BitBlt + GetDIBits, under Wine): median %.3f ms, p90 %.3f ms, max %.3f ms\n",
                    c.median, c.p90, c.max);

        // Whole on-line ticks of the companion following the game.
        sim::Scenario scenario;
        std::string text, error;
        const std::string home = (std::filesystem::temp_directory_path() / "tarvellos-bench-win32").string();
        std::error_code ec;
        std::filesystem::remove_all(home, ec);
        if (!core::ReadFileBytes(scenarioPath, text) || !sim::ParseScenario(text, scenario, error) ||
            !replay::WriteProgramFiles(scenario, home).Ok) {
            std::fprintf(stderr, "cannot prepare the companion's folder: %s\n", error.c_str());
            status = 1;
        } else {
            NoWaitClock clock;
            tracking::CallbackEvents events;
            tracking::ScreenReading screen(d, clock);
            tracking::Companion app(d, clock, core::Folders{home, "Work"}, screen, events);
            app.SetArchiveCheck(false);
            if (!app.Start()) {
                std::fprintf(stderr, "the companion did not start\n");
                status = 1;
            } else {
                std::vector<double> ticks;
                for (int i = 0; i < 120; ++i) {
                    const auto t0 = std::chrono::steady_clock::now();
                    app.Tick();
                    const double ms = Ms(std::chrono::steady_clock::now() - t0).count();
                    if (i >= 5) ticks.push_back(ms);  // after going on-line and arranging the windows
                    std::this_thread::sleep_for(std::chrono::milliseconds(100));
                }
                const Figures t = Summarise(ticks);
                std::printf("on-line tick (window pass + captures + reads, waits not slept, under Wine): "
                            "median %.3f ms, p90 %.3f ms, max %.3f ms over %zu ticks\n",
                            t.median, t.p90, t.max, ticks.size());
            }
        }
    }
    TerminateProcess(pi.hProcess, 0);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
    return status;
}
