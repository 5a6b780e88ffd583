// Costs of the table readers on rendered windows; waits run on the virtual
// clock and cost nothing.
#include <benchmark/benchmark.h>

#include "platform/clock.h"
#include "platform/sim/sim_desktop.h"
#include "reading/table_reader.h"
#include "sim/glyph_draw.h"
#include "sim/render_table.h"
#include "reading/table_rig.h"

namespace {

using Rig = TableRig;

sim::TableView Table(int players) {
    sim::TableView v;
    v.Bids = {std::string("3"), std::string("13"), std::string("N"), std::string("D")};
    v.Tricks = {2, 1, 0, 3};
    v.TrickCards = 3;
    v.Height = 760;
    for (int i = 0; i < players; ++i) v.Players.push_back({"player_no_" + std::to_string(i), std::to_string(1400 + 17 * i)});
    return v;
}

// A band 800 pixels wide full of text, extracted and read glyph by glyph.
void BM_BandRead800(benchmark::State& state) {
    reading::GlyphTable g;
    platform::Image img(820, 40);
    std::string text;
    while (sim::GlyphTextWidth(text, g) < 790) text += "river_rat 1612 queen ";
    while (sim::GlyphTextWidth(text, g) > 798) text.pop_back();
    sim::DrawGlyphText(img, 1, 10, text, 0, g);
    Rig r(img);
    r.cap.CaptureGameRect({0, 0, 0, 0});
    r.cap.LineBMP.Dim(0, 800);
    r.cap.GetLineBMPmain("bench", 10);
    for (auto _ : state) {
        std::int32_t p = 1;
        benchmark::DoNotOptimize(r.glyphs.ReadText(r.cap.LineBMP, p));
    }
}
BENCHMARK(BM_BandRead800);

void BM_BandExtract800(benchmark::State& state) {
    reading::GlyphTable g;
    platform::Image img(820, 40);
    sim::DrawGlyphText(img, 1, 10, "river_rat 1612 queen_of_h 1544 bagmaster_3 1702", 0, g);
    Rig r(img);
    r.cap.CaptureGameRect({0, 0, 0, 0});
    r.cap.LineBMP.Dim(0, 800);
    std::int32_t y = 0;
    for (auto _ : state) {
        r.cap.LastLine = -100;  // full twelve-row extraction each time
        r.cap.GetLineBMPmain("bench", 10 + (y++ & 7));
        benchmark::DoNotOptimize(r.cap.LineBMP.v.data());
    }
}
BENCHMARK(BM_BandExtract800);

void BM_CaptureBidKnownPositions(benchmark::State& state) {
    reading::GlyphTable g;
    Rig r(sim::RenderTableWindow(Table(3), g));
    std::array<std::string, 4> bids;
    int status = 0;
    r.reader.CaptureBid(bids, status);
    for (auto _ : state) {
        r.reader.CaptureBid(bids, status);
        benchmark::DoNotOptimize(bids);
    }
    if (bids[1] != "13") state.SkipWithError("misread");
}
BENCHMARK(BM_CaptureBidKnownPositions)->Unit(benchmark::kMicrosecond);

void BM_CaptureBidSearchAllQuadrants(benchmark::State& state) {
    reading::GlyphTable g;
    Rig r(sim::RenderTableWindow(Table(3), g));
    std::array<std::string, 4> bids;
    int status = 0;
    for (auto _ : state) {
        r.reader.BidPos = {};
        r.reader.CaptureBid(bids, status);
        benchmark::DoNotOptimize(bids);
    }
    if (bids[1] != "13") state.SkipWithError("misread");
}
BENCHMARK(BM_CaptureBidSearchAllQuadrants)->Unit(benchmark::kMicrosecond);

void BM_MakePlayerList12(benchmark::State& state) {
    reading::GlyphTable g;
    Rig r(sim::RenderTableWindow(Table(12), g));
    r.reader.LocateBox();
    for (auto _ : state) {
        r.reader.MakePlayerList();
        benchmark::DoNotOptimize(r.reader.TableNames);
    }
    if (r.reader.TableNamesRead != 12) state.SkipWithError("misread");
}
BENCHMARK(BM_MakePlayerList12)->Unit(benchmark::kMicrosecond);

}  // namespace
