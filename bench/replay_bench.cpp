// A 12-deal game (about half an hour of game time) followed by the companion
// in virtual time: simulator, rendering of the game's windows, captures,
// pixel reading, the loop and the record files. Target: under 2 s.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "sim/scenario.h"
#include "replay/program_files.h"
#include "replay/session.h"

namespace {

constexpr const char* kScenario = R"JSON({
  "start": "2026-03-05T21:00:00", "language": 1, "screen": [1280, 1024],
  "table": {"name": "Oak", "host": "alice", "dnilPass": false, "suicide": false},
  "settings": ["MyYahooID = me_player", "BidTrickCounter = (*,0),(*,0)"],
  "players": ["me_player", "lefty_one", "partner_x", "righty_two"],
  "ratings": ["1534", "1620", "1480", "1701"],
  "deals": 12, "seed": 2})JSON";

void BM_Replay12Deals(benchmark::State& state) {
    sim::Scenario sc;
    std::string err;
    if (!sim::ParseScenario(kScenario, sc, err)) {
        state.SkipWithError(err.c_str());
        return;
    }
    const std::string home = (std::filesystem::temp_directory_path() / "tarvellos_replay_bench").string();
    int filed = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove_all(home);
        state.ResumeTiming();
        replay::Session s(sc, home);
        replay::WriteProgramFiles(sc, home);
        if (!s.Start() || !s.Run()) {
            state.SkipWithError("the session did not run to its end");
            break;
        }
        filed = s.App.FiledCount();
    }
    state.counters["deals"] = filed;
    std::filesystem::remove_all(home);
}
BENCHMARK(BM_Replay12Deals)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
