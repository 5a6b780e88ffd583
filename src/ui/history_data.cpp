#include "ui/history_data.h"

#include <cstdio>

#include "core/text.h"

namespace ui {

namespace {

bool ParseStamp(const std::string& line, RatingPoint& p) {
    // "<rating> yyyy/mm/dd hh:mm:ss ..." : the stamp follows the first blank.
    const std::size_t sp = line.find(' ');
    if (sp == std::string::npos) return false;
    return std::sscanf(line.c_str() + sp + 1, "%4d/%2d/%2d %2d:%2d:%2d", &p.Year, &p.Month, &p.Day, &p.Hour,
                       &p.Minute, &p.Second) == 6;
}

}  // namespace

std::vector<RatingPoint> ParseRatingHistory(const std::vector<std::string>& lines) {
    std::vector<RatingPoint> out;
    for (auto it = lines.rbegin(); it != lines.rend(); ++it) {
        const std::string& line = *it;
        RatingPoint p;
        p.Rating = core::ValInt(line);
        if (p.Rating < 1000 || !ParseStamp(line, p)) continue;
        p.Won = line.find(" Win ") != std::string::npos || line.find(" 勝ち") != std::string::npos;
        p.Lost = line.find(" Lost") != std::string::npos || line.find(" 負け") != std::string::npos;
        out.push_back(p);
    }
    return out;
}

std::vector<NilRate> NilRates(const scoring::NilCounts& counts, bool japanese) {
    struct Row {
        int Index;
        const char* En;
        const char* Ja;
    };
    static const Row rows[] = {
        {scoring::NilRowMyBids, "(1) My NIL Bids", "(1) 私のニル･ビッド"},
        {scoring::NilRowMyCovers, "(2) My NIL Covers", "(2) 私のニル･カバー"},
        {scoring::NilRowSetNils, "(3) Set NILs", "(3) ニルをセット"},
        {scoring::NilRowSetNils4Spades, "(3a) Set NILs", "(3a) ニルをセット"},
        {scoring::NilRowRuleKept, "(4a) Following the Rule", "(4a) 基準適合"},
        {scoring::NilRowRuleBroken, "(4b) Violating the Rule", "(4b) 基準不適合"},
        {scoring::NilRowDoubleNils, "(5) DNIL Bids", "(5) DNIL ビッド"},
    };
    std::vector<NilRate> out;
    for (const Row& r : rows) {
        const auto& c = counts.Rows[static_cast<std::size_t>(r.Index)];
        out.push_back({japanese ? r.Ja : r.En, c[0], c[1]});
    }
    return out;
}

std::vector<std::string> ReadPlayerFile(const std::string& path, int codePage) {
    std::string bytes;
    if (path.empty() || !core::ReadFileBytes(path, bytes)) return {};
    return core::SplitLines(core::ToUtf8(bytes, codePage));
}

}  // namespace ui
