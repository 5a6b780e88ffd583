// Cost of the scoring steps that run inside a timer tick: a right-counter
// update after a trick, the bid help, and the Nil history update with its
// file read and safe rewrite (target: well under a tick of 500 ms).
#include <benchmark/benchmark.h>

#include <filesystem>

#include "core/notation.h"
#include "core/text.h"
#include "platform/sim/virtual_clock.h"
#include "scoring/counter.h"
#include "scoring/help_bid.h"
#include "scoring/nil_history.h"

static void BM_ShowCounterNow(benchmark::State& state) {
    scoring::RightCounter c;
    const scoring::Bids4 bids = {"4", "N", "3", "5"};
    c.ShowCounterInit({320, 410}, {7, 2}, bids);
    int n = 0;
    for (auto _ : state) {
        std::array<int, 3> tricks = {n % 8, n % 5, n % 8 + n % 5};
        c.ShowCounterNow({320, 410}, tricks, bids, {0, (n & 1), 0, 0});
        benchmark::DoNotOptimize(c.cPts[0].Caption);
        ++n;
    }
}
BENCHMARK(BM_ShowCounterNow);

static void BM_HelpBidThirdSeat(benchmark::State& state) {
    scoring::ScoreRows rows;
    rows.AddRow({465, 3, 458, 4});
    scoring::HelpBid h;
    for (auto _ : state) {
        benchmark::DoNotOptimize(h.Show_HelpBid(rows, core::North, {"", "", "2", "3"}, 2, ""));
    }
}
BENCHMARK(BM_HelpBidThirdSeat);

static void BM_WriteNilHistory(benchmark::State& state) {
    namespace fs = std::filesystem;
    const fs::path dir = fs::temp_directory_path() / "tarvellos_nil_bench";
    fs::remove_all(dir);
    fs::create_directories(dir);
    scoring::NilDeal deal;
    deal.Names = {"me", "left", "pard", "right"};
    deal.Bids = {"N", "4", "5", "3"};
    deal.Tricks = {0, 4, 6, 3};
    for (auto& hand : deal.Cards)
        for (int i = 0; i < 13; ++i) hand[i] = 2 + i % 5 + 100 * (i / 5);
    scoring::NilHistoryContext ctx;
    ctx.Folder = core::PathToUtf8(dir);
    ctx.Japanese = state.range(0) != 0;
    ctx.UserIdentified = true;
    platform::VirtualClock clock;
    for (auto _ : state) {
        benchmark::DoNotOptimize(scoring::WriteNilHistory(deal, {200, 150}, ctx, clock));
    }
    fs::remove_all(dir);
}
BENCHMARK(BM_WriteNilHistory)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);
