// The Nil history report read back from any bytes: never a crash, and the
// rewritten report holds every count the old one gave plus the deal just
// counted, so an update never writes back less than there was.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "core/notation.h"
#include "core/player_files.h"
#include "core/text.h"
#include "platform/sim/virtual_clock.h"
#include "scoring/nil_history.h"

namespace {

void Check(bool ok) {
    if (!ok) __builtin_trap();
}

void Bump(std::int32_t& v) {
    if (v < INT32_MAX) ++v;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    namespace fs = std::filesystem;
    static const fs::path dir = [] {
        auto d = fs::temp_directory_path() / "tarvellos_nil_history_fuzz";
        fs::create_directories(d);
        return d;
    }();
    const bool japanese = size > 0 && (data[0] & 1) && core::IsCodePageSupported(932);
    const int codePage = japanese ? 932 : 1252;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    // Each input starts from an empty folder: copies set aside by earlier
    // inputs would otherwise pile up.
    std::error_code ec;
    for (const auto& e : fs::directory_iterator(dir, ec)) fs::remove(e.path(), ec);

    // The parser alone, on the lines as the report reader gives them.
    std::vector<std::string> lines = core::SplitLines(bytes);
    for (auto& l : lines) l = core::ToUtf8(l, codePage);
    // What cannot be read as a report is set aside whole and counting
    // starts again; anything else keeps its counts.
    const bool unparsed = !bytes.empty() && (!core::LooksLikeText(bytes) || !scoring::NilReportParses(lines));
    const scoring::NilCounts old = unparsed ? scoring::NilCounts{} : scoring::ReadNilCounts(lines);

    // The whole update on that file: the user's Nil made, the hand keeping the rule.
    const std::string name = scoring::NilReportName(japanese);
    const fs::path report = dir / core::PathFromUtf8(name);
    {
        std::ofstream f(report, std::ios::binary | std::ios::trunc);
        f.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    scoring::NilDeal deal;
    deal.Names = {"me", "left", "pard", "right"};
    deal.Bids = {"N", "4", "5", "3"};
    deal.Tricks = {0, 4, 6, 3};
    const char* low[13] = {"2C", "3C", "4C", "5C", "6C", "2D", "3D", "4D", "5D", "2H", "3H", "4H", "2S"};
    for (auto& hand : deal.Cards)
        for (int i = 0; i < 13; ++i) hand[i] = core::CardCode(low[i]);
    scoring::NilHistoryContext ctx;
    ctx.Folder = core::PathToUtf8(dir);
    ctx.Japanese = japanese;
    ctx.UserIdentified = true;
    platform::VirtualClock clock;
    Check(scoring::WriteNilHistory(deal, {200, 150}, ctx, clock) == scoring::NilHistoryResult::Written);

    std::vector<std::string> back;
    Check(core::ReadTextFile(core::PathToUtf8(report), codePage, back));
    scoring::NilCounts want = old;
    Bump(want.Success(scoring::NilRowMyBids));
    Bump(want.Success(scoring::NilRowRuleKept));
    Check(scoring::ReadNilCounts(back) == want);
    if (unparsed) {
        int aside = 0;
        for (const auto& e : fs::directory_iterator(dir, ec)) {
            if (e.path().filename().string().find(".unreadable-") == std::string::npos) continue;
            std::string kept;
            Check(core::ReadFileBytes(core::PathToUtf8(e.path()), kept) && kept == bytes);
            ++aside;
        }
        Check(aside == 1);
    }
    return 0;
}
