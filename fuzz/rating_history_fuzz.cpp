// The rating history: whatever the old file holds, recording a game puts one
// line in front and keeps every old byte behind it, or, when the old file is
// no text, keeps it aside whole and starts afresh.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "core/text.h"
#include "platform/sim/virtual_clock.h"
#include "platform/sim/sim_desktop.h"
#include "players/ratings.h"

namespace {

void Check(bool ok) {
    if (!ok) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string dir = [] {
        auto d = std::filesystem::temp_directory_path() / "tarvellos_rating_fuzz";
        std::filesystem::create_directories(d);
        return d.string();
    }();
    std::string old(reinterpret_cast<const char*>(data), size);
    int codePage = (size > 0 && (data[0] & 1)) ? 932 : 1252;
    bool japanese = size > 1 && (data[1] & 1);

    // The readers of single lines take the same bytes.
    std::vector<std::string> lines = core::SplitLines(core::ToUtf8(old, codePage));
    for (const std::string& line : lines) players::RecordedRatingText(line, japanese);
    players::FindRenewedRating(lines, lines.empty() ? std::string("x") : core::Left(lines[0], 5));

    std::string path = dir + "/SpadesHistory.TXT";
    if (!core::WriteFileBytes(path, old)) return 0;
    platform::SimDesktop desktop;
    platform::VirtualClock clock;
    players::Ratings ratings(desktop, clock);
    ratings.Options.Japanese = japanese;
    ratings.Options.CodePage = codePage;
    ratings.Options.HistoryPath = path;
    ratings.Options.MyIds = {"zz_fuzz_me"};
    players::TableNames table;
    table.Names = {"zz_fuzz_me 1234"};
    table.Read = 1;
    players::RatingContext ctx;
    ctx.Table.Names = &table;
    ctx.TeamScore = {510, 200};
    ctx.SeatNames = {"a", "zz_fuzz_me", "b", "c"};
    ratings.ReadShowRating(2, ctx);

    std::string now;
    Check(core::ReadFileBytes(path, now));
    const std::string& aside = ratings.LastSave.SetAside;
    if (ratings.LastHistory == players::HistoryResult::Written) {
        std::size_t end = now.find("\r\n");
        Check(end != std::string::npos);
        std::string kept = now.substr(end + 2);
        if (!aside.empty()) {
            // An old file that is no text is kept aside whole; the new
            // history starts from nothing rather than garble it further.
            std::string copy;
            Check(core::ReadFileBytes(aside, copy));
            Check(copy == old);
            Check(kept.empty());
        } else {
            Check(kept.compare(0, old.size(), old) == 0);
            Check(kept.size() - old.size() <= 2);
        }
    } else {
        Check(now == old);
    }
    std::error_code ec;
    for (const auto& e : std::filesystem::directory_iterator(dir, ec))
        if (e.path().filename().string().find(".unreadable-") != std::string::npos) std::filesystem::remove(e.path(), ec);
    return 0;
}
