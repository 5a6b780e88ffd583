// Reading a settings file: a typical file of every key, and the code-page
// conversion of a larger text.
#include <benchmark/benchmark.h>

#include <string>

#include "core/settings.h"
#include "core/text.h"

namespace {

std::string TypicalFile() {
    return "# settings\r\nlink = usa\r\nCFG = Win.CFG\r\nTopMostScoreWindow = yes\r\nGamePoint = 500\r\n"
           "MyYahooID = alpha, beta gamma\r\nAutoCapt Bid = yes\r\nAutoCapt Hand = yes\r\nWaitTime Bid = 2.5\r\n"
           "WaitTime Hand = 10\r\nAlertTime = 30\r\nAlertSound = \"SystemAsterisk\"\r\nReduce SpadesWindow = 624\r\n"
           "BackColor = &HFFE0C0\r\nBackColor3 = FFE8E8\r\nCard Order = descending\r\n"
           "Suit Marks = (100,90,80,70)\r\nBidTrickCounter = (10,20),(300,20)\r\nBiddingBoard = (5,6) modal\r\n"
           "CountCards = yes (*,0)\r\nMyHand = single\r\nHelpBidIn4thSeat = (400,300)\r\nAskAlert = (1,2)\r\n";
}

void BM_ReadTypicalSettings(benchmark::State& state) {
    const std::string bytes = TypicalFile();
    const int codePage = static_cast<int>(state.range(0));
    for (auto _ : state) {
        core::Settings s;
        benchmark::DoNotOptimize(core::ParseSettingsBytes(bytes, codePage, s, nullptr));
        benchmark::DoNotOptimize(s);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes.size()));
}
BENCHMARK(BM_ReadTypicalSettings)->Arg(1252)->Arg(932);

void BM_Convert932(benchmark::State& state) {
    std::string text;
    while (text.size() < 64 * 1024) text += "スペード履歴 player42 1840 ";
    const std::string sjis = core::FromUtf8(text, 932);
    for (auto _ : state) benchmark::DoNotOptimize(core::ToUtf8(sjis, 932));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * sjis.size()));
}
BENCHMARK(BM_Convert932);

}  // namespace
