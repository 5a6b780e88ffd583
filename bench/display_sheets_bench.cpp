// Start-up cost of the card sheets, and the cost of the display models the
// capture driver rebuilds after a deal: trick table, four hands, card play
// window, score sheet with its mirror (target: each well under a millisecond,
// far below one 500 ms tick).
#include <benchmark/benchmark.h>

#include "core/notation.h"
#include "display/card_play.h"
#include "display/card_sheets.h"
#include "display/hand_view.h"
#include "scoring/score_sheet.h"

namespace {

display::DealRecord SampleDeal() {
    display::DealRecord rec;
    rec.Names = {"Ann", "Bob_2", "Cy", "Dee"};
    rec.Seat2 = {"4", "3", "N", "2"};
    for (int t = 0; t < 13; ++t)
        for (int s = 0; s < 4; ++s)
            rec.Trick[static_cast<std::size_t>(t)][static_cast<std::size_t>(s)] = std::string{"AKQJT98765432"[t], "SHDC"[s]};
    rec.Mark[0][0] = display::MarkBrackets;
    return rec;
}

}  // namespace

static void BM_BuildCardSheet(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(display::BuildCardSheet().Image.Pixels.data());
}
BENCHMARK(BM_BuildCardSheet);

static void BM_BuildTextSheet(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(display::BuildTextSheet().Items.Items.size());
}
BENCHMARK(BM_BuildTextSheet);

static void BM_TrickTableFromRecord(benchmark::State& state) {
    const auto sheet = display::BuildCardSheet();
    const auto rec = SampleDeal();
    for (auto _ : state) {
        const auto played = display::PlayedFromRecord(rec, {2, 3, 0, 1});
        benchmark::DoNotOptimize(display::BuildTrickTable(played, sheet).Items.size());
    }
}
BENCHMARK(BM_TrickTableFromRecord);

static void BM_HandsViewFromRecord(benchmark::State& state) {
    const auto sheet = display::BuildTextSheet();
    const auto rec = SampleDeal();
    for (auto _ : state) {
        auto hands = display::HandsFromRecord(rec, false);
        benchmark::DoNotOptimize(display::BuildHandsView(std::move(hands), {2, 3, 0, 1}, sheet, true).Items.Items.size());
    }
}
BENCHMARK(BM_HandsViewFromRecord);

static void BM_CardPlayRefresh(benchmark::State& state) {
    const auto sheet = display::BuildCardSheet();
    const auto played = display::PlayedFromRecord(SampleDeal(), {2, 3, 0, 1});
    display::CardPlayWindow w;
    display::LoadCardPlay(w, false, display::CompanionBack, {}, {-100, -100}, 0, 0);
    for (auto _ : state) {
        display::ShowCardPlay(w, played, sheet);
        benchmark::DoNotOptimize(w.Items.Items.size());
    }
}
BENCHMARK(BM_CardPlayRefresh);

static void BM_ScoreSheetAndPaste(benchmark::State& state) {
    scoring::ScoreRows rows;
    rows.AddRow({150, 8, 100, 2});
    rows.AddRow({30, 1, 160, 4});
    scoring::ScoreSheetInput in;
    in.Names = {"Christopher", "Bob", "Maximiliana", "Al_ice"};
    in.Bids = {"4", "3", "N", "2"};
    in.FirstLeader = 1;
    in.UserSeat = 2;
    in.Online = true;
    scoring::ScoreWindow w;
    scoring::LoadScoreWindow(w, false, 0xC0C0C0, {-100, -100}, 0, 0);
    for (auto _ : state) {
        const auto sheet = scoring::BuildScoreSheet(rows, in);
        scoring::MirrorScore(w, sheet);
        scoring::Show_Score(w, sheet, in.Names, in.UserSeat, 2);
        benchmark::DoNotOptimize(w.picItems.Items.size());
    }
}
BENCHMARK(BM_ScoreSheetAndPaste);
