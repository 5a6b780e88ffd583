// Soak: 1,000 simulated deals followed by the companion while faults are
// injected at random: a game window vanishing in the middle of a reading,
// captures that deliver no rows, a sub-window closed by the user, the wall
// clock jumping over midnight, and the work folder refusing every write for
// a while (as a full disk would). Targets: no deal lost but those the game
// never showed while it could be read, every loss told by the companion
// (error window, "missed" deals, saves kept and written later), and memory
// flat: peak resident size after 1,000 deals within 10% of that after 100.
// Run: build/bench/soak_bench (about three minutes); the figures are printed
// and kept as counters.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "core/text.h"
#include "replay/program_files.h"
#include "replay/session.h"
#include "sim/scenario.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kScenario = R"JSON({
  "start": "2026-03-05T21:00:00", "language": 1, "screen": [1280, 1024],
  "table": {"name": "Oak", "host": "alice", "dnilPass": false, "suicide": false},
  "settings": ["MyYahooID = me_player", "BidTrickCounter = (*,0),(*,0)"],
  "players": ["me_player", "lefty_one", "partner_x", "righty_two"],
  "ratings": ["1534", "1620", "1480", "1701"],
  "deals": 1000, "seed": 5})JSON";

enum Fault { Vanish, NoRows, UserClose, Midnight, DiskFull, kFaultKinds };
const char* const kFaultName[kFaultKinds] = {"window vanished mid-read", "capture with no rows",
                                             "sub-window closed by the user", "clock jumped over midnight",
                                             "disk full"};

// Peak resident size of this process so far, in KiB (0 where unknown).
long PeakRssKiB() {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind("VmHWM:", 0) == 0) return std::stol(line.substr(6));
    return 0;
}

struct Injected {
    std::uint32_t tick;
    Fault kind;
};

void BM_Soak1000DealsWithFaults(benchmark::State& state) {
    sim::Scenario sc;
    std::string err;
    if (!sim::ParseScenario(kScenario, sc, err)) {
        state.SkipWithError(err.c_str());
        return;
    }
    const std::string home = (fs::temp_directory_path() / "tarvellos_soak").string();
    for (auto _ : state) {
        fs::remove_all(home);
        replay::Session s(sc, home);
        (void)replay::WriteProgramFiles(sc, home);
        const fs::path work = fs::path(home) / "Work", away = fs::path(home) / "Work.full";

        std::vector<scoring::ScoreRows::Row> filedRows;
        int missedTold = 0, savesFailed = 0, savesRecovered = 0, kept = 0, warned = 0;
        long rssAt100 = 0;
        std::map<std::string, int> warnings;
        s.Events.OnDealFiled = [&](const tracking::FiledDeal& d) {
            filedRows.push_back(d.ScoreRow);
            missedTold += d.Missed;
            for (const auto& x : d.Saves) savesFailed += x.Saved ? 0 : 1;
            for (const auto& x : d.Retried) savesRecovered += x.Saved ? 1 : 0;
            kept = d.Kept;
            warned += d.Warnings.empty() ? 0 : 1;
            for (const auto& w : d.Warnings) ++warnings[w];
            if (filedRows.size() == 100) rssAt100 = PeakRssKiB();
        };
        // The game's log keeps only what the soak matches against: every
        // card kept for 1,000 deals would be the biggest thing in memory.
        s.Game.Game().KeepEvents([](const sim::GameEvent& e) { return e.kind == sim::EventKind::ScoreLineAdded; });
        if (!s.Start()) {
            state.SkipWithError("the companion did not start");
            return;
        }

        std::mt19937 rng(2026);
        std::vector<Injected> faults;
        std::uint64_t diskBackAt = 0;
        std::uint64_t finishedAt = 0;
        const std::uint64_t limit = 1000ull * 3600 * 200;  // virtual time, far beyond 1,000 deals
        while (s.Clock.Elapsed() < limit) {
            if (s.GameFinished()) {
                if (finishedAt == 0) finishedAt = s.Clock.Elapsed();
                if (diskBackAt == 0 && !s.App.Busy() && s.App.FiledCount() + missedTold >= s.DealsPlayed()) break;
                if (s.Clock.Elapsed() - finishedAt > replay::Session::kGraceMs) break;
            }
            s.Advance(1000);
            if (diskBackAt != 0 && s.Clock.Elapsed() >= diskBackAt) {
                fs::remove(work);
                fs::rename(away, work);
                diskBackAt = 0;
            }
            // About one fault every three minutes of play (a deal takes two or three).
            if (s.GameFinished() || rng() % 180 != 0) continue;
            const auto kind = static_cast<Fault>(rng() % kFaultKinds);
            const int slot = 1 + static_cast<int>(rng() % 3);
            switch (kind) {
                case Vanish:
                    if (const auto h = s.Game.SubWindow(slot)) s.Desktop.CloseAfterCalls(h, 1 + static_cast<int>(rng() % 12));
                    break;
                case NoRows: s.Desktop.FailCaptures(0, 1 + static_cast<int>(rng() % 8)); break;
                case UserClose: s.Game.CloseSubWindow(slot); break;
                case Midnight: {
                    // To a few seconds before midnight, or back across it.
                    const platform::LocalTime now = s.Clock.Now();
                    const std::int64_t toMidnight = 86400 - (now.Hour * 3600 + now.Minute * 60 + now.Second);
                    s.Clock.ShiftWallClock(rng() % 2 ? toMidnight - 5 : -(now.Hour * 3600 + now.Minute * 60 + now.Second) - 5);
                    break;
                }
                case DiskFull:
                    if (diskBackAt != 0) continue;
                    fs::rename(work, away);
                    core::WriteTextFile(work.string(), {"the disk is full"}, 1252);
                    diskBackAt = s.Clock.Elapsed() + 60000 + rng() % 600000;
                    break;
                default: break;
            }
            faults.push_back({s.Clock.TickCount(), kind});
        }
        const long rssAtEnd = PeakRssKiB();

        // The game's deals in order, matched to the filed ones by score line.
        struct GameDeal {
            std::uint32_t tick;
            scoring::ScoreRows::Row row;
        };
        std::vector<GameDeal> played;
        for (const auto& e : s.Game.Game().Events()) {
            if (e.kind != sim::EventKind::ScoreLineAdded) continue;
            GameDeal g{e.tick, {}};
            std::stringstream ss(e.text);
            std::string part;
            for (std::size_t i = 0; i < 4 && std::getline(ss, part, ','); ++i) g.row[i] = std::stoi(part);
            played.push_back(g);
        }
        std::size_t next = 0;
        std::vector<std::size_t> lost;
        for (const auto& row : filedRows) {
            std::size_t k = next;
            while (k < played.size() && played[k].row != row) ++k;
            if (k == played.size()) continue;  // a misread line: counted by the warnings
            for (; next < k; ++next) lost.push_back(next);
            next = k + 1;
        }
        for (; next < played.size(); ++next) lost.push_back(next);

        // Why each lost deal went: the faults injected while it was played or shown.
        std::map<std::string, int> why;
        for (std::size_t i : lost) {
            const std::uint32_t from = i > 0 ? played[i - 1].tick : 0;
            const std::uint32_t to = i + 1 < played.size() ? played[i + 1].tick : s.Clock.TickCount();
            std::string reasons;
            for (const auto& f : faults)
                if (f.tick >= from && f.tick <= to) {
                    const std::string n = kFaultName[f.kind];
                    if (reasons.find(n) == std::string::npos) reasons += (reasons.empty() ? "" : " + ") + n;
                }
            ++why[reasons.empty() ? "no fault near it" : reasons];
            const auto& r = played[i].row;
            std::printf("soak: deal %zu lost (score line %d %d %d %d): %s\n", i + 1, r[0], r[1], r[2], r[3],
                        reasons.empty() ? "no fault near it" : reasons.c_str());
        }
        std::map<std::string, int> injected;
        for (const auto& f : faults) ++injected[kFaultName[f.kind]];

        std::printf("\nsoak: %zu deals played, %zu filed, %zu lost, %d told as missed, %d with a rule warning\n",
                    played.size(), filedRows.size(), lost.size(), missedTold, warned);
        std::printf("soak: %zu faults injected:", faults.size());
        for (const auto& [n, c] : injected) std::printf(" %s %d;", n.c_str(), c);
        std::printf("\nsoak: saves failed %d, written later %d, still kept at the end %d\n", savesFailed,
                    savesRecovered, kept);
        for (const auto& [n, c] : why) std::printf("soak: lost %d: %s\n", c, n.c_str());
        for (const auto& [w, c] : warnings) std::printf("soak: warned %d: %s\n", c, w.c_str());
        std::printf("soak: peak resident size %ld KiB after 100 deals, %ld KiB after %zu (%+.1f%%)\n", rssAt100,
                    rssAtEnd, filedRows.size(),
                    rssAt100 > 0 ? 100.0 * static_cast<double>(rssAtEnd - rssAt100) / static_cast<double>(rssAt100) : 0.0);
        std::printf("soak: %zu error window texts\n", s.App.ErrorLog().size());

        state.counters["played"] = static_cast<double>(played.size());
        state.counters["filed"] = static_cast<double>(filedRows.size());
        state.counters["lost"] = static_cast<double>(lost.size());
        state.counters["missedTold"] = missedTold;
        state.counters["faults"] = static_cast<double>(faults.size());
        state.counters["rss100KiB"] = static_cast<double>(rssAt100);
        state.counters["rssEndKiB"] = static_cast<double>(rssAtEnd);
    }
    fs::remove_all(home);
}
BENCHMARK(BM_Soak1000DealsWithFaults)->Unit(benchmark::kSecond)->Iterations(1);

}  // namespace
