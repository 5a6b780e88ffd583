// The card and score readers on rendered windows, captures included (the
// virtual clock makes the capture waits free).
#include <benchmark/benchmark.h>

#include <string>

#include "platform/sim/virtual_clock.h"
#include "platform/sim/sim_desktop.h"
#include "reading/cards.h"
#include "reading/glyphs.h"
#include "reading/pixels.h"
#include "reading/score_reader.h"
#include "sim/sub_windows.h"

namespace {

struct Rig {
    Rig() {
        glyphs.ReadingFont = 1;
        glyphs.DigitsOn = true;
        glyphs.SelectFont(1, 1, "Bid:", "Tricks:");
        cap.FontIndex = 1;
    }
    void Show(int slot, const platform::Image& client) {
        auto h = desk.AddWindow("w", {0, 0, client.Width + 8, client.Height + 27});
        desk.SetClientImage(h, client);
        subs.Handle[static_cast<std::size_t>(slot)] = h;
    }
    platform::SimDesktop desk{1280, 1024};
    platform::VirtualClock clock;
    reading::FixedSubWindows subs;
    reading::Capture cap{desk, desk, clock, &subs};
    reading::GlyphTable glyphs;
    reading::CardReader cards{cap, glyphs, desk};
    reading::ScoreReader score{cap, glyphs};
};

void BM_CaptHand(benchmark::State& state) {
    Rig r;
    sim::LastHandView v;
    v.Names = {"river_rat", "queen_of_h", "bagmaster_3", "slow_joe"};
    const std::string ranks = "23456789TJQKA", suits = "SHDC";
    for (std::size_t p = 0; p < 4; ++p)
        for (std::size_t c = 0; c < 13; ++c) v.Cards[p][c] = std::string(1, ranks[12 - c]) + suits[(p + c) % 4];
    v.Marks[0][0] = 1;
    r.Show(reading::kSubLastHand, sim::RenderLastHand(v, r.glyphs));
    reading::HandRead hand;
    for (auto _ : state) {
        int status = r.cards.CaptHand(hand);
        benchmark::DoNotOptimize(status);
    }
}
BENCHMARK(BM_CaptHand);

void BM_ReadLastTrick(benchmark::State& state) {
    Rig r;
    r.Show(reading::kSubLastTrick, sim::RenderLastTrick({{3, 2, 1, 0}, {14, 10, 7, 12}}));
    reading::TrickRead t;
    for (auto _ : state) {
        bool ok = r.cards.ReadLastTrick(t, 1);
        benchmark::DoNotOptimize(ok);
    }
}
BENCHMARK(BM_ReadLastTrick);

void BM_CaptScore20(benchmark::State& state) {
    Rig r;
    sim::ScoreWindowView v;
    for (int i = 1; i <= 20; ++i) v.Lines.push_back({i * 37 - 100, i % 10, 510 - i * 23, (i * 3) % 10});
    r.Show(reading::kSubScore, sim::RenderScoreWindow(v, r.glyphs));
    reading::ScoreLines lines;
    for (auto _ : state) {
        int status = r.score.CaptScore(lines);
        benchmark::DoNotOptimize(status);
    }
}
BENCHMARK(BM_CaptScore20);

}  // namespace

namespace {
void BM_CaptureLastHandOnly(benchmark::State& state) {
    Rig r;
    r.Show(reading::kSubLastHand, sim::RenderLastHand({}, r.glyphs));
    for (auto _ : state) benchmark::DoNotOptimize(r.cap.CaptureSubWindow(reading::kSubLastHand));
}
BENCHMARK(BM_CaptureLastHandOnly);
}  // namespace
