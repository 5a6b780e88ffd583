// tarvellos-game: the simulated Spades game shown as real top-level windows
// of the X11 desktop, played in real time. Its windows carry the game's own
// titles and pictures and its buttons react to real clicks, so the companion
// can be run against it as against the real game.
//
// The game runs on its own in-memory desktop and virtual clock (the clock
// follows real time times --speed); every game window there is mirrored by a
// real window, and what the user does to a real window is done to its twin.
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <map>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "core/json.h"
#include "core/text.h"
#include "platform/clock.h"
#include "platform/sim/sim_desktop.h"
#include "platform/sim/virtual_clock.h"
#include "platform/x11/x11_window_host.h"
#include "replay/demo_scenario.h"
#include "replay/sim_table.h"
#include "sim/scenario.h"
#include "sim/sim_game_desktop.h"

namespace {

std::atomic<bool> g_stop{false};
void OnSignal(int) { g_stop = true; }

std::string StartText(const platform::LocalTime& t) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%04d-%02d-%02dT%02d:%02d:%02d", t.Year, t.Month, t.Day, t.Hour, t.Minute, t.Second);
    return buf;
}

struct Options {
    std::string ScenarioFile, WriteScenario;
    long long Seed = -1, Deals = -1;
    int Language = 0;
    double Speed = 1;
    bool OpenSubWindows = false;
    bool DryRun = false;
};

// One game window on the screen and what it last showed.
struct Mirror {
    std::uint64_t Real = 0;
    std::string Title;
    bool Minimized = false;
    platform::Image Client;
};

class GameHost {
public:
    GameHost(const sim::Scenario& scenario, platform::X11WindowHost& host)
        : host_(host),
          clock_(scenario.start),
          desktop_(scenario.screenWidth, scenario.screenHeight),
          game_(desktop_, clock_, scenario, replay::RenderedTable()) {}

    int Run(double speed, bool openSubWindows) {
        game_.Start(openSubWindows);
        const auto t0 = std::chrono::steady_clock::now();
        std::uint64_t played = 0;
        while (!g_stop) {
            for (const platform::HostEvent& e : host_.Wait(40)) Handle(e);
            if (tableClosed_) break;
            const double realMs =
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - t0).count();
            const auto due = static_cast<std::uint64_t>(realMs * speed);
            if (due > played) {
                clock_.Wait(static_cast<std::uint32_t>(due - played));
                played = due;
            }
            Sync();
            Report();
        }
        Sync();
        return 0;
    }

private:
    platform::Rect ClientOnScreen(const platform::SimWindow& w) const {
        return {w.Outer.Left + w.ClientInset.Left, w.Outer.Top + w.ClientInset.Top, w.Outer.Right - w.ClientInset.Right,
                w.Outer.Bottom - w.ClientInset.Bottom};
    }

    // The game's windows as the screen should show them.
    void Sync() {
        const std::vector<platform::WindowHandle> order = desktop_.TopLevel();
        std::map<platform::WindowHandle, bool> seen;
        const platform::WindowHandle top = order.empty() ? 0 : order.front();
        for (auto it = order.rbegin(); it != order.rend(); ++it) {
            const platform::WindowHandle h = *it;
            const platform::SimWindow* w = desktop_.Find(h);
            if (w == nullptr || !w->Visible) continue;
            seen[h] = true;
            const platform::Rect client = ClientOnScreen(*w);
            auto m = mirrors_.find(h);
            if (m == mirrors_.end()) {
                Mirror fresh;
                fresh.Real = host_.Create(w->Title, client);
                fresh.Title = w->Title;
                byReal_[fresh.Real] = h;
                m = mirrors_.emplace(h, std::move(fresh)).first;
                std::printf("window %llu %s\n", static_cast<unsigned long long>(m->second.Real), w->Title.c_str());
                std::fflush(stdout);
            }
            Mirror& mirror = m->second;
            if (mirror.Title != w->Title) {
                host_.SetTitle(mirror.Real, w->Title);
                mirror.Title = w->Title;
            }
            if (w->Minimized != mirror.Minimized) {
                if (w->Minimized) host_.Minimize(mirror.Real);
                else host_.Restore(mirror.Real);
                mirror.Minimized = w->Minimized;
            }
            // The game raised it (a button opened a window that was open).
            if (h == top && lastTop_ != top && !w->Minimized) host_.Restore(mirror.Real);
            if (client.Width() > 0 && client.Height() > 0) {
                if (mirror.Client.Width != client.Width() || mirror.Client.Height != client.Height())
                    mirror.Client = platform::Image(client.Width(), client.Height());
                for (int y = 0; y < client.Height(); ++y) {
                    const auto* src = w->Pixels.Pixels.data() +
                                      static_cast<std::size_t>(y + w->ClientInset.Top) * static_cast<std::size_t>(w->Pixels.Width) +
                                      w->ClientInset.Left;
                    std::copy(src, src + client.Width(),
                              mirror.Client.Pixels.begin() + static_cast<std::ptrdiff_t>(y) * client.Width());
                }
                host_.Paint(mirror.Real, mirror.Client);
            }
        }
        lastTop_ = top;
        for (auto it = mirrors_.begin(); it != mirrors_.end();) {
            if (seen.count(it->first)) {
                ++it;
                continue;
            }
            host_.Destroy(it->second.Real);
            byReal_.erase(it->second.Real);
            it = mirrors_.erase(it);
        }
    }

    void Handle(const platform::HostEvent& e) {
        const auto found = byReal_.find(e.Window);
        if (found == byReal_.end()) return;
        const platform::WindowHandle h = found->second;
        Mirror& mirror = mirrors_[h];
        switch (e.What) {
            case platform::HostEvent::Kind::Click: {
                // The click reached this window, so it is the one on top there.
                desktop_.BringToTop(h);
                lastTop_ = h;
                const auto origin = desktop_.ClientOrigin(h);
                if (!origin) return;
                desktop_.SetCursorPos({origin->X + e.At.X, origin->Y + e.At.Y});
                desktop_.LeftClick();
                std::printf("click %s %d %d\n", mirror.Title.c_str(), e.At.X, e.At.Y);
                std::fflush(stdout);
                break;
            }
            case platform::HostEvent::Kind::CloseRequest:
                if (h == game_.TableWindow()) {
                    game_.CloseTable();
                    tableClosed_ = true;
                } else {
                    for (int slot = 1; slot <= 3; ++slot)
                        if (game_.SubWindow(slot) == h) game_.CloseSubWindow(slot);
                }
                std::printf("closed %s\n", mirror.Title.c_str());
                std::fflush(stdout);
                break;
            case platform::HostEvent::Kind::Minimized:
                desktop_.Minimize(h);
                mirror.Minimized = true;
                break;
            case platform::HostEvent::Kind::Restored:
                desktop_.Restore(h);
                mirror.Minimized = false;
                break;
            case platform::HostEvent::Kind::Resized:
                if (const platform::SimWindow* w = desktop_.Find(h)) {
                    const platform::Rect o = w->Outer;
                    desktop_.Move(h, {o.Left, o.Top, o.Left + e.At.X + w->ClientInset.Left + w->ClientInset.Right,
                                      o.Top + e.At.Y + w->ClientInset.Top + w->ClientInset.Bottom});
                    game_.Repaint(true);
                }
                break;
        }
    }

    // One line per game event, for whoever watches the game (tests wait on them).
    void Report() {
        const auto& events = game_.Game().Events();
        for (; reported_ < events.size(); ++reported_) {
            const sim::GameEvent& e = events[reported_];
            std::printf("event %s %d %s\n", sim::EventName(e.kind), e.seat, e.text.c_str());
        }
        std::fflush(stdout);
    }

    platform::X11WindowHost& host_;
    platform::VirtualClock clock_;
    platform::SimDesktop desktop_;
    sim::SimGameDesktop game_;
    std::map<platform::WindowHandle, Mirror> mirrors_;
    std::map<std::uint64_t, platform::WindowHandle> byReal_;
    platform::WindowHandle lastTop_ = 0;
    std::size_t reported_ = 0;
    bool tableClosed_ = false;
};

}  // namespace

int main(int argc, char** argv) {
    Options o;
    CLI::App app{"The simulated Spades game as real windows on the X11 desktop, in real time.", "tarvellos-game"};
    auto* file = app.add_option("--scenario", o.ScenarioFile, "scenario file (JSON) to play");
    app.add_option("--seed", o.Seed, "seed of the built-in game's random deals")
        ->check(CLI::Range(0LL, 4294967295LL))
        ->excludes(file);
    app.add_option("--deals", o.Deals, "number of deals of the built-in game")->check(CLI::Range(1LL, 1000LL))->excludes(file);
    app.add_option("--language", o.Language, "site language of the game (1 English, 2 Japanese, 3 German, 5 Italian, 6-9 Spanish)")
        ->check(CLI::IsMember({1, 2, 3, 5, 6, 7, 8, 9}));
    app.add_option("--speed", o.Speed, "how many times faster than real time the game plays")->check(CLI::Range(0.1, 100.0));
    app.add_flag("--open-windows", o.OpenSubWindows, "open \"Last Trick\", \"Last Hand\" and the score window at once");
    app.add_option("--write-scenario", o.WriteScenario,
                   "write the scenario played (its start set to now) to this file, for a replay of the same game");
    app.add_flag("--dry-run", o.DryRun, "only write the scenario (--write-scenario) and end");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return app.exit(e);
    }

    std::string text;
    if (!o.ScenarioFile.empty()) {
        if (!core::IsFile(o.ScenarioFile) || !core::ReadFileBytes(o.ScenarioFile, text)) {
            std::fprintf(stderr, "tarvellos-game: cannot read %s\n", o.ScenarioFile.c_str());
            return 1;
        }
    } else {
        text = replay::DemoScenarioText();
    }
    core::Json json;
    std::string error;
    if (!core::Json::Parse(text, json, error) || !json.IsObject()) {
        std::fprintf(stderr, "tarvellos-game: %s: %s\n", o.ScenarioFile.c_str(), error.empty() ? "not a JSON object" : error.c_str());
        return 1;
    }
    // The game is played now: its clock starts at the time of day.
    platform::SystemClock realClock;
    json.Set("start", StartText(realClock.Now()));
    if (o.Seed >= 0) json.Set("seed", static_cast<std::int64_t>(o.Seed));
    if (o.Deals > 0) json.Set("deals", static_cast<std::int64_t>(o.Deals));
    if (o.Language > 0) json.Set("language", o.Language);
    sim::Scenario scenario;
    if (!sim::ScenarioFromJson(json, scenario, error)) {
        std::fprintf(stderr, "tarvellos-game: %s\n", error.c_str());
        return 1;
    }
    if (!o.WriteScenario.empty() && !core::WriteFileBytes(o.WriteScenario, json.Dump() + "\n")) {
        std::fprintf(stderr, "tarvellos-game: cannot write %s\n", o.WriteScenario.c_str());
        return 1;
    }
    if (o.DryRun) return 0;

    auto host = platform::X11WindowHost::Open(error);
    if (!host) {
        std::fprintf(stderr, "tarvellos-game: %s\n", error.c_str());
        return 1;
    }
    std::signal(SIGINT, OnSignal);
    std::signal(SIGTERM, OnSignal);
    GameHost game(scenario, *host);
    return game.Run(o.Speed, o.OpenSubWindows);
}
