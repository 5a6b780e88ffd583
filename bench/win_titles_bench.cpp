// The window pass normalises every listed title on every tick (500 ms), so
// a full desktop list must cost a small fraction of a tick.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "core/notation.h"
#include "reading/win_titles.h"

static void BM_FindSubWindowsThousandTitles(benchmark::State& state) {
    const reading::WinTitles titles;
    std::vector<std::string> base;
    for (int i = 0; i < 997; ++i) base.push_back("Some window " + std::to_string(i));
    base.push_back("Ultima baza");
    base.push_back("Ultima mano");
    base.push_back("Puntuacion de Picas");
    for (auto _ : state) {
        std::vector<std::string> list = base;
        int lang = reading::LangSpain;
        benchmark::DoNotOptimize(titles.FindSubWindows(list, lang));
    }
}
BENCHMARK(BM_FindSubWindowsThousandTitles);

static void BM_CardCodeDeck(benchmark::State& state) {
    std::vector<std::string> deck;
    for (int s = 0; s < 4; ++s)
        for (int r = 2; r <= 14; ++r) deck.push_back("[" + core::RankChar(r) + core::SuitLetter(s));
    for (auto _ : state) {
        int sum = 0;
        for (const auto& c : deck) sum += core::CardCode(c);
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_CardCodeDeck);
