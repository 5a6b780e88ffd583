// Cost of filing a deal and of showing a stored one: the record file's text
// in memory, the file written safely and read back, and a message sentence.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <string>
#include <unistd.h>

#include "core/folders.h"
#include "core/text.h"
#include "display/deal_record.h"
#include "display/err_msg.h"
#include "platform/sim/virtual_clock.h"

namespace {

display::DealRecord Deal() {
    display::DealRecord rec;
    rec.Names = {"north_player", "east_player", "south_player", "west_player"};
    rec.Seat2 = {"4", "3", "N", "2"};
    const char* ranks = "AKQJT98765432";
    const char* suits = "SHDC";
    for (int t = 0; t < 13; ++t)
        for (int s = 0; s < 4; ++s) rec.Trick[t][s] = std::string{ranks[t], suits[s]};
    rec.ScoreRowCount = 12;
    for (int r = 0; r < 12; ++r) rec.ScoreRows[r] = {40 * r, r % 10, 35 * r - 100, (r * 3) % 10};
    return rec;
}

void BM_FormatAndParseRecord(benchmark::State& state) {
    const display::DealRecord rec = Deal();
    for (auto _ : state) {
        display::DealRecord back;
        benchmark::DoNotOptimize(display::ParseRecordLines(display::FormatRecordLines(rec), back));
        benchmark::DoNotOptimize(back);
    }
}
BENCHMARK(BM_FormatAndParseRecord);

void BM_WriteAndReadRecordFile(benchmark::State& state) {
    const std::filesystem::path dir =
        std::filesystem::temp_directory_path() / ("tarvellos-record-bench-" + std::to_string(getpid()));
    std::filesystem::create_directories(dir / "Work");
    core::Folders folders;
    folders.ProgramFolder = dir.string();
    platform::VirtualClock clock;
    display::RecordFiles files(clock, folders, static_cast<int>(state.range(0)));
    const display::DealRecord rec = Deal();
    const std::string path = files.PathOf("bench.spd");
    for (auto _ : state) {
        core::WriteTextFile(path, display::FormatRecordLines(rec), files.CodePage());
        display::DealRecord back;
        benchmark::DoNotOptimize(files.ReadRecordFile("bench", back));
    }
    std::filesystem::remove_all(dir);
}
BENCHMARK(BM_WriteAndReadRecordFile)->Arg(1252)->Arg(932);

void BM_PutMsgSentence(benchmark::State& state) {
    display::ErrMsgWindow w;
    for (auto _ : state) {
        w.PutMsg(14, display::LangFrench, display::TableModeSpades);
        benchmark::DoNotOptimize(w.Text);
    }
}
BENCHMARK(BM_PutMsgSentence);

}  // namespace
