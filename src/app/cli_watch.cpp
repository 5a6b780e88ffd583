// tarvellos-cli watch: the companion on this desktop in real time, without
// windows of its own. It finds the game, follows it and files what the
// companion files; JSON Lines as replay prints them, or a line per deal.
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <string>

#include "app/cli_commands.h"
#include "core/text.h"
#include "platform/clock.h"
#include "platform/factory/open_desktop.h"
#include "replay/json_lines.h"
#include "tracking/companion.h"
#include "tracking/pixel_readers.h"

namespace app {

namespace {

std::atomic<bool> g_interrupted{false};
void OnInterrupt(int) { g_interrupted = true; }

std::string OneLine(std::string s) {
    for (char& c : s)
        if (c == '\n' || c == '\r') c = ' ';
    return s;
}

}  // namespace

int RunWatch(const Args& args) {
    WatchArgs a;
    const ArgsOutcome parsed = ParseWatchArgs(args, a);
    if (!parsed.GoOn()) return Finish(parsed);

    platform::OpenedDesktop opened = platform::OpenDesktop(platform::DesktopKind::Native);
    if (!opened.Backend) {
        std::fprintf(stderr, "tarvellos-cli watch: %s\n", opened.Error.c_str());
        return 1;
    }
    const platform::Desktop desktop = opened.Backend->Roles();
    std::string home = a.Home;
    if (home.empty()) home = desktop.system.ExecutableFolder().value_or(".");
    std::error_code ec;
    if (!std::filesystem::is_directory(core::PathFromUtf8(home), ec)) {
        std::fprintf(stderr, "tarvellos-cli watch: %s is not a folder\n", home.c_str());
        return 1;
    }

    platform::SystemClock clock;
    tracking::CallbackEvents events;
    tracking::ScreenReading screen(desktop, clock);
    tracking::Companion companion(desktop, clock, core::Folders{home, "Work"}, screen, events);
    // The archive check is about where the program was unpacked; a folder
    // named with --home is the player's choice.
    companion.SetArchiveCheck(a.Home.empty());

    replay::LostSaves lost;
    int filed = 0;
    bool enough = false;
    events.OnDealFiled = [&](const tracking::FiledDeal& d) {
        lost.Add(d.Saves);
        ++filed;
        if (a.Json) {
            std::printf("%s\n", replay::FiledDealJson(filed, d, d.Saves).Dump().c_str());
        } else {
            std::printf("deal %d filed: %s%s\n", filed, d.File.empty() ? "(no record file)" : (d.File + ".spd").c_str(),
                        replay::FiledDealJson(filed, d, d.Saves).Get("saved")->AsBool() ? "" : " (NOT all saved)");
        }
        std::fflush(stdout);
        if (a.Deals > 0 && filed >= a.Deals) enough = true;
    };
    events.OnGameOver = [&](const tracking::GameOver& g) {
        lost.Add(g.Saves);
        if (a.Json) std::printf("%s\n", replay::GameOverJson(g).Dump().c_str());
        else std::printf("game over: %d / %d\n", g.Score[0], g.Score[2]);
        std::fflush(stdout);
    };
    std::string lastError;
    events.OnError = [&](const std::string& text) {
        // The error window's messages, each once while it repeats.
        if (text == lastError) return;
        lastError = text;
        std::fprintf(stderr, "error window: %s\n", OneLine(text).c_str());
    };

    if (!companion.Start()) {
        std::fprintf(stderr, "tarvellos-cli watch: the companion did not start: %s\n",
                     OneLine(companion.StartupScreen().Text()).c_str());
        return 1;
    }
    std::signal(SIGINT, OnInterrupt);
    std::signal(SIGTERM, OnInterrupt);

    const auto started = std::chrono::steady_clock::now();
    auto timeUp = [&] {
        return a.Timeout > 0 &&
               std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count() >= a.Timeout;
    };
    std::fprintf(stderr, "tarvellos-cli watch: watching from %s\n", home.c_str());
    tracking::OnlineMode mode = companion.Online();
    std::uint32_t nextTick = clock.TickCount();
    // A tick runs whole: a stop asked for meanwhile waits for its end, so no
    // file is left half written.
    while (!companion.Ended() && !g_interrupted && !enough && !timeUp()) {
        if (companion.TimerEnabled()) companion.Tick();
        if (companion.Online() != mode) {
            mode = companion.Online();
            std::fprintf(stderr, "tarvellos-cli watch: %s\n",
                         mode == tracking::OnlineMode::Online ? "on-line: following the table" : "off-line: no game table");
        }
        nextTick += static_cast<std::uint32_t>(std::max(50, companion.TimerInterval()));
        // Short waits keep Ctrl-C quick; the tick rate stays the timer's.
        while (!g_interrupted && static_cast<std::int32_t>(nextTick - clock.TickCount()) > 0)
            clock.Wait(std::min<std::uint32_t>(100, nextTick - clock.TickCount()));
        // After a long step the ticks go on from now rather than catching up.
        if (static_cast<std::int32_t>(clock.TickCount() - nextTick) > 2000) nextTick = clock.TickCount();
    }
    // The companion's own end: the marker file goes, window places are kept.
    if (!companion.Ended()) {
        companion.End();
        companion.Tick();
    }
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    for (const std::string& line : lost.Lines()) std::fprintf(stderr, "tarvellos-cli watch: %s\n", line.c_str());
    std::fprintf(stderr, "tarvellos-cli watch: stopped after %d filed deal(s)%s\n", filed,
                 g_interrupted ? " (interrupted)" : "");
    return lost.Any() ? 1 : 0;
}

}  // namespace app
