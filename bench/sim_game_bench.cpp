// The simulated game alone: twelve random deals on the simulated desktop
// with every window drawn, in virtual time. The replay of a whole game must
// stay well under two seconds, so the simulator's share has to be small.
#include <benchmark/benchmark.h>

#include "sim/sim_game_desktop.h"

static void BM_TwelveDealsOnTheDesktop(benchmark::State& state) {
    for (auto _ : state) {
        platform::SimDesktop desk;
        platform::VirtualClock clock;
        sim::Scenario sc;
        sc.game.randomDeals = 12;
        sc.game.seed = 5;
        sim::SimGameDesktop game(desk, clock, sc);
        game.Start(true);
        while (!game.Game().State().finished) clock.Wait(1000);
        benchmark::DoNotOptimize(game.RepaintCount());
    }
}
BENCHMARK(BM_TwelveDealsOnTheDesktop)->Unit(benchmark::kMillisecond);

static void BM_TwelveDealsEngineOnly(benchmark::State& state) {
    for (auto _ : state) {
        platform::VirtualClock clock;
        sim::GameSetup g;
        g.randomDeals = 12;
        g.seed = 5;
        sim::SpadesGame game(clock, g);
        game.Start();
        while (!game.State().finished) clock.Wait(60000);
        benchmark::DoNotOptimize(game.Version());
    }
}
BENCHMARK(BM_TwelveDealsEngineOnly)->Unit(benchmark::kMillisecond);
