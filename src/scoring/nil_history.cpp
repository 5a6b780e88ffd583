#include "scoring/nil_history.h"

#include <chrono>
#include <climits>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <system_error>

#include "core/folders.h"
#include "core/notation.h"
#include "core/player_files.h"
#include "core/text.h"

namespace scoring {

namespace fs = std::filesystem;

namespace {

// Error numbers written to the log, as the program's run-time errors number them.
constexpr int ErrFileAccess = 75;
constexpr int ErrNoCodePage = 5;  // invalid procedure call

struct Words {
    const char* Titles[7];  // rows 0, 1, 2, 3, totals, 50, 51 (row 5 below)
    const char* Dnil;
    const char* Head;
    const char* Success;
    const char* Failure;
    const char* SuccessProb;
    const char* SetProb;
    const char* MakingTotal;
    const char* Making;
    const char* FourSpades;
    const char* Rule[3];
};

const Words English = {
    {" (1) My NIL Bids  ", " (2) My NIL Covers", " (3)  Set NILs    ", " (3a) Set NILs    ", " (4) NILs Total   ",
     " (4a)  Following the Rule ", " (4b)  Violating the Rule "},
    " (5) DNIL Bids    ",
    "    << History of My NILs >> ",
    " Success",
    ",  Failure",
    " Success Probability =",
    " Set Probability     =",
    " Making Probability  =",
    " Making Probability =",
    " [ 4 spades ]",
    {" Standard Rule for Bidding NILs (Rule of 4 & 8)", "  Never NIL with 4 spades.",
     "  Never NIL, when any 3-card suit has 2 cards higher than or equal to EIGHT."},
};

const Words Japanese = {
    {" (1) 私のニル･ビッド", " (2) 私のニル･カバー", " (3) ニルをセット   ", " (3a) ニルをセット  ", " (4) ニル 合計      ",
     " (4a)  基準適合     ", " (4b) 基準不適合    "},
    " (5) DNIL ビッド    ",
    "    《 ニルの成功と失敗の履歴 》 ",
    " 成功",
    ",  失敗",
    " 成功率＝",
    " 阻止率＝",
    " 成功率＝",
    " 成功率＝",
    " [４枚以上のスペード，内数]",
    {" ニル･ビッドの基準(標準, Rule of 4 & 8)", "  スペードが４枚の手では，ニル しない",
     "  ３枚スートに 8 以上のカードが 2 枚あれば，ニル しない"},
};

void Bump(std::int32_t& v) {
    if (v < INT32_MAX) ++v;  // a count read back at the limit stays there
}

// Format(v, "#0") / Format(v, "#0.0"): rounded half away from zero.
std::string Fixed(double v, int decimals) {
    if (!std::isfinite(v)) return "0";
    const double scale = decimals ? 10.0 : 1.0;
    const double r = std::round(v * scale) / scale;
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*f", decimals, r);
    std::string s = buf;
    if (s == "-0" || s == "-0.0") s.erase(0, 1);
    return s;
}

// Count up to the next "," after `label` in `line`; the count ends the text
// when no comma follows. Returns the rest after that comma.
std::string ReadCount(const std::string& rest, const char* jaLabel, const char* enLabel, std::int32_t& out) {
    out = 0;
    std::size_t pos = core::InStr(rest, jaLabel);
    std::size_t skip = core::Len(jaLabel);
    if (pos == 0) {
        pos = core::InStr(rest, enLabel);
        skip = core::Len(enLabel);
    }
    if (pos == 0) return rest;
    const std::string after = core::Mid(rest, static_cast<std::ptrdiff_t>(pos + skip));
    const std::size_t comma = core::InStr(after, ",");
    if (comma == 0) {
        out = core::ValInt(after);
        return {};
    }
    out = core::ValInt(core::Left(after, static_cast<std::ptrdiff_t>(comma - 1)));
    return core::Mid(after, static_cast<std::ptrdiff_t>(comma + 1));
}

void ParseCountsLine(const std::string& line, std::array<std::int32_t, 2>& row) {
    const std::string rest = ReadCount(line, "成功", "Success", row[0]);
    ReadCount(rest, "失敗", "Failure", row[1]);
}

// Decimal text right-aligned in a field of width + 1 characters.
std::string Field(std::int64_t v, std::size_t width) {
    std::string s = std::to_string(v);
    if (s.size() < width + 1) s.insert(0, width + 1 - s.size(), ' ');
    return s;
}

std::string CountsLine(const std::string& title, std::int64_t s, std::int64_t f, const char* label,
                       std::size_t width, const Words& w) {
    std::string line = title + w.Success + Field(s, width) + w.Failure + Field(f, width);
    if (s + f > 0) {
        line += ", ";
        line += label;
        line += Field(s, width) + " /" + Field(s + f, width) + " = " +
                Fixed(static_cast<double>(s) / static_cast<double>(s + f) * 100.0, 1) + " %";
    }
    return line;
}

std::string Share(std::int64_t part, std::int64_t whole) {
    // Nothing to share out (only double Nils counted so far): 0 %.
    const double pct = whole == 0 ? 0.0 : static_cast<double>(part) / static_cast<double>(whole) * 100.0;
    return " [" + Fixed(pct, 0) + " %]";
}

std::string TwoDigits(int v) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%02d", v);
    return buf;
}

int DayOfLastChange(const fs::path& p, bool& ok) {
    std::error_code ec;
    const auto ft = fs::last_write_time(p, ec);
    ok = !ec;
    if (ec) return 0;
    const std::time_t t = std::chrono::system_clock::to_time_t(
        std::chrono::time_point_cast<std::chrono::system_clock::duration>(std::chrono::file_clock::to_sys(ft)));
    const std::tm* tm = std::localtime(&t);
    return tm ? tm->tm_mday : 0;
}

// Stamps the file with the clock's time, so that "the day of the last change"
// follows the program's clock (virtual in tests and replays).
void StampWithClock(const fs::path& p, const platform::LocalTime& now) {
    std::tm tm{};
    tm.tm_year = now.Year - 1900;
    tm.tm_mon = now.Month - 1;
    tm.tm_mday = now.Day;
    tm.tm_hour = now.Hour;
    tm.tm_min = now.Minute;
    tm.tm_sec = now.Second;
    tm.tm_isdst = -1;
    const std::time_t t = std::mktime(&tm);
    if (t == static_cast<std::time_t>(-1)) return;
    std::error_code ec;
    fs::last_write_time(p, std::chrono::file_clock::from_sys(std::chrono::system_clock::from_time_t(t)), ec);
}

// Copies the report to the backup name through a temporary file, so a
// failure never leaves a half backup.
bool CopySafely(const fs::path& from, const fs::path& to) {
    fs::path tmp = to;
    tmp += ".tmp~";
    std::error_code ec;
    fs::remove(tmp, ec);
    if (!fs::copy_file(from, tmp, fs::copy_options::overwrite_existing, ec)) {
        fs::remove(tmp, ec);
        return false;
    }
    fs::rename(tmp, to, ec);
    if (ec) {
        fs::remove(tmp, ec);
        return false;
    }
    return true;
}

void LogLine(const NilHistoryContext& ctx, const std::string& line) {
    if (ctx.LogPath.empty()) return;
    std::error_code ec;
    if (!fs::exists(core::PathFromUtf8(ctx.LogPath), ec)) return;
    core::AppendTextFile(ctx.LogPath, {line}, ctx.Japanese ? core::kCodePageJapanese : core::kCodePageWestern);
}

void LogError(const NilHistoryContext& ctx, int number) {
    LogLine(ctx, "Error in WriteNilHistory, Error code = " + std::to_string(number));
}

}  // namespace

std::string NilReportName(bool japanese) { return japanese ? "ニル集計.TXT" : "RecordNILs.TXT"; }
std::string NilBackupName(bool japanese) { return japanese ? "ニル集計.BAK" : "RecordNILs.BAK"; }

NilHandCheck CheckNilHand(const std::array<int, 13>& cards) {
    NilHandCheck c;
    for (int code : cards) {
        if (core::SuitOfCode(code) != core::Spades || code < 0) continue;
        ++c.Spades;
        if (code >= 312) c.Rule = core::RankOfCode(code);
    }
    for (int suit = 0; suit < 4; ++suit) {
        int n = 0, high = 0;
        for (int code : cards) {
            if (code < 0 || core::SuitOfCode(code) != suit) continue;
            ++n;
            if (core::RankOfCode(code) >= 8) ++high;
        }
        if (n == 3 && high >= 2) {
            c.Rule = -1;
            break;
        }
    }
    return c;
}

bool NilReportParses(const std::vector<std::string>& lines) {
    // The title, then the counts lines where the report puts them.
    static constexpr int CountLines[] = {1, 2, 3, 4, 6, 7, 8, 10};
    if (lines.size() < 11) return false;
    if (!core::Contains(lines[0], "<< History of My NILs >>") && !core::Contains(lines[0], "《 ニルの成功と失敗の履歴 》"))
        return false;
    for (int i : CountLines) {
        const std::string& l = lines[static_cast<std::size_t>(i)];
        const bool en = core::Contains(l, "Success") && core::Contains(l, "Failure");
        const bool ja = core::Contains(l, "成功") && core::Contains(l, "失敗");
        if (!en && !ja) return false;
    }
    return true;
}

NilCounts ReadNilCounts(const std::vector<std::string>& lines) {
    // Line by line: title, rows 0-3, dashes and totals, rows 50 and 51,
    // dashes, row 5.
    static constexpr int RowOfLine[11] = {-1, 0, 1, 2, 3, -1, -1, 50, 51, -1, 5};
    NilCounts c;
    for (std::size_t i = 0; i < lines.size() && i < 11; ++i) {
        if (RowOfLine[i] >= 0) ParseCountsLine(lines[i], c.Rows[RowOfLine[i]]);
    }
    return c;
}

bool CountNilDeal(NilCounts& counts, const NilDeal& deal, const std::array<int, 2>& teamScore,
                  bool doubleNilPassTable) {
    const int weScore = teamScore[0], theyScore = teamScore[1];
    // The literal 500: a game decided at the usual game point.
    const bool wonByThem = theyScore > weScore && theyScore >= 500;
    const bool wonByUs = weScore > theyScore && weScore >= 500;
    const auto seatOf = [&deal](int p) { return ((deal.SeatOfPos[p] % 4) + 4) % 4; };
    const auto madeNil = [&](int p) {
        const int s = seatOf(p);
        return core::BidKind(deal.Bids[s]) > 0 && deal.Tricks[s] == 0;
    };
    bool counted = false;
    const auto byHand = [&](const NilHandCheck& hc, bool made) {
        Bump(counts.Rows[hc.Rule == 0 ? NilRowRuleKept : NilRowRuleBroken][made ? 0 : 1]);
    };
    for (int p = 0; p < 4; ++p) {
        const int s = seatOf(p);
        const NilHandCheck hc = CheckNilHand(deal.Cards[s]);
        const int k = core::BidKind(deal.Bids[s]);
        const bool tookTrick = deal.Tricks[s] != 0;
        if (k == 1) {
            if (p == 0) {
                if (wonByThem) continue;
                Bump(counts.Rows[NilRowMyBids][tookTrick ? 1 : 0]);
                byHand(hc, !tookTrick);
                counted = true;
            } else if (p == 2) {
                if (wonByThem) continue;
                if (!tookTrick) {
                    Bump(counts.Success(NilRowMyCovers));
                    byHand(hc, true);
                    counted = true;
                } else if (hc.Spades < 4 && hc.Rule == 0) {
                    // A partner who broke the rule is not a cover the user failed.
                    Bump(counts.Failure(NilRowMyCovers));
                    byHand(hc, false);
                    counted = true;
                }
            } else {
                if (wonByUs) continue;
                if (!tookTrick) {
                    // With our own Nil made we did not try to set theirs.
                    if (madeNil(0) || madeNil(2)) continue;
                    Bump(counts.Failure(NilRowSetNils));
                    if (hc.Spades >= 4) Bump(counts.Failure(NilRowSetNils4Spades));
                    byHand(hc, true);
                    counted = true;
                } else if (weScore - theyScore < 200 || !doubleNilPassTable) {
                    Bump(counts.Success(NilRowSetNils));
                    if (hc.Spades >= 4) Bump(counts.Success(NilRowSetNils4Spades));
                    byHand(hc, false);
                    counted = true;
                }
            }
        } else if (k == 2) {
            if (doubleNilPassTable) continue;
            const bool bidderLost = (p % 2 == 0) ? wonByThem : wonByUs;
            if (bidderLost) continue;
            Bump(counts.Rows[NilRowDoubleNils][tookTrick ? 1 : 0]);
            counted = true;
        }
    }
    return counted;
}

std::vector<std::string> NilReportLines(const NilCounts& counts, bool japanese, const platform::LocalTime& now) {
    const Words& w = japanese ? Japanese : English;
    const auto S = [&counts](int r) { return std::int64_t{counts.Rows[r][0]}; };
    const auto F = [&counts](int r) { return std::int64_t{counts.Rows[r][1]}; };
    const std::int64_t grand = S(0) + F(0) + S(1) + F(1) + S(2) + F(2);
    const std::size_t width = std::to_string(grand).size();
    std::vector<std::string> out;
    out.push_back(std::string(w.Head) + std::to_string(now.Year) + "/" + TwoDigits(now.Month) + "/" +
                  TwoDigits(now.Day) + ", " + TwoDigits(now.Hour) + ":" + TwoDigits(now.Minute) + ":" +
                  TwoDigits(now.Second));
    const char* probs[3] = {w.SuccessProb, w.SuccessProb, w.SetProb};
    for (int r = 0; r < 3; ++r)
        out.push_back(CountsLine(w.Titles[r], S(r), F(r), probs[r], width, w) + Share(S(r) + F(r), grand));
    out.push_back(CountsLine(w.Titles[3], S(3), F(3), w.SetProb, width, w) + w.FourSpades);
    out.push_back(std::string(74, '-'));
    // Nils made and Nils set over the first three categories: a set
    // opponent's Nil is a failure of that Nil.
    out.push_back(CountsLine(w.Titles[4], S(0) + S(1) + F(2), F(0) + F(1) + S(2), w.MakingTotal, width, w));
    const std::int64_t byHand = S(50) + F(50) + S(51) + F(51);
    out.push_back(CountsLine(w.Titles[5], S(50), F(50), w.Making, width, w) + Share(S(50) + F(50), byHand));
    out.push_back(CountsLine(w.Titles[6], S(51), F(51), w.Making, width, w) + Share(S(51) + F(51), byHand));
    out.push_back(std::string(90, '-'));
    out.push_back(CountsLine(w.Dnil, S(5), F(5), w.Making, width, w));
    out.push_back(std::string(90, '-'));
    for (const char* rule : w.Rule) out.push_back(rule);
    out.push_back(std::string(90, '-'));
    return out;
}

namespace {

NilHistoryResult WriteNilHistoryBody(const NilDeal& deal, const std::array<int, 2>& teamScore,
                                     const NilHistoryContext& ctx, platform::Clock& clock, core::SaveResult& save) {
    if (!ctx.UserIdentified) return NilHistoryResult::NotApplicable;
    if (ctx.AlertFailNil) {
        for (int s = 0; s < 4; ++s) {
            if (core::BidKind(deal.Bids[s]) > 0 && deal.Tricks[s] >= 1) {
                if (ctx.FailNilAlert) ctx.FailNilAlert();
                clock.Wait(800);
            }
        }
    }
    if (ctx.SuicideTable) return NilHistoryResult::NotApplicable;
    for (const auto& name : deal.Names)
        if (core::Contains(name, "obot")) return NilHistoryResult::NotApplicable;
    bool anyNil = false;
    for (const auto& bid : deal.Bids) anyNil = anyNil || core::BidKind(bid) > 0;
    if (!anyNil) return NilHistoryResult::NotApplicable;

    const int codePage = ctx.Japanese ? core::kCodePageJapanese : core::kCodePageWestern;
    // Without the code page the report could not be read back next time,
    // and the counts it holds would be lost on the following write.
    if (!core::IsCodePageSupported(codePage)) {
        LogError(ctx, ErrNoCodePage);
        return NilHistoryResult::Error;
    }
    std::string reportPath = core::FindFileNoCase(ctx.Folder, NilReportName(ctx.Japanese));
    const bool exists = !reportPath.empty();
    if (!exists) reportPath = core::JoinPath(ctx.Folder, NilReportName(ctx.Japanese));
    const fs::path report = core::PathFromUtf8(reportPath);

    NilCounts counts;
    bool unparsed = false;
    if (exists) {
        std::string bytes;
        // A report that is there but cannot be read must not be replaced by
        // one that starts again from nothing.
        std::error_code ec;
        if (!fs::is_regular_file(report, ec) || !core::ReadFileBytes(reportPath, bytes)) {
            LogError(ctx, ErrFileAccess);
            save = core::SaveResult::Failed(reportPath, "the old report cannot be read");
            return NilHistoryResult::Error;
        }
        std::vector<std::string> lines = core::SplitLines(bytes);
        core::LinesToUtf8(lines, codePage);
        // An empty file holds no counts to lose.
        unparsed = !bytes.empty() && (!core::LooksLikeText(bytes) || !NilReportParses(lines));
        if (!unparsed) counts = ReadNilCounts(lines);
    }

    if (!CountNilDeal(counts, deal, teamScore, ctx.DoubleNilPassTable)) return NilHistoryResult::NothingCounted;

    const platform::LocalTime now = clock.Now();
    if (unparsed) {
        // Whatever it holds stays with the player: copied aside, then a new
        // report starts from this deal.
        const core::SaveResult aside = core::SetAsideUnreadable(reportPath, now);
        if (!aside) {
            LogError(ctx, ErrFileAccess);
            save = core::SaveResult::Failed(reportPath, aside.Reason);
            return NilHistoryResult::Error;
        }
        save.SetAside = aside.Path;
        LogLine(ctx, "WriteNilHistory: " + reportPath + " could not be read as a report; kept as " + aside.Path);
    } else if (exists) {
        bool ok = false;
        const int day = DayOfLastChange(report, ok);
        if (ok && day != now.Day) {
            std::string backupPath = core::FindFileNoCase(ctx.Folder, NilBackupName(ctx.Japanese));
            if (backupPath.empty()) backupPath = core::JoinPath(ctx.Folder, NilBackupName(ctx.Japanese));
            // The backup holds the report as it stood before the day's first update.
            if (!CopySafely(report, core::PathFromUtf8(backupPath))) {
                LogError(ctx, ErrFileAccess);
                save = core::SaveResult::Failed(reportPath, "cannot make the daily backup " + backupPath);
                return NilHistoryResult::Error;
            }
        }
    }

    core::SaveResult written = core::WriteTextFile(reportPath, NilReportLines(counts, ctx.Japanese, now), codePage);
    written.SetAside = save.SetAside;
    save = written;
    if (!written) {
        LogError(ctx, ErrFileAccess);
        return NilHistoryResult::Error;
    }
    StampWithClock(report, now);
    return NilHistoryResult::Written;
}

}  // namespace

NilHistoryResult WriteNilHistory(const NilDeal& deal, const std::array<int, 2>& teamScore,
                                 const NilHistoryContext& ctx, platform::Clock& clock, core::SaveResult* save) {
    core::SaveResult s;
    NilHistoryResult r;
    // Any run-time failure ends the update; the old report stays as it was.
    try {
        r = WriteNilHistoryBody(deal, teamScore, ctx, clock, s);
    } catch (const std::exception& e) {
        try {
            LogError(ctx, ErrFileAccess);
        } catch (...) {
        }
        s.Saved = false;
        s.Reason = e.what();
        r = NilHistoryResult::Error;
    }
    if (r == NilHistoryResult::Error && s.Path.empty())
        s.Path = core::JoinPath(ctx.Folder, NilReportName(ctx.Japanese));
    if (r == NilHistoryResult::Error && s.Reason.empty()) s.Reason = "the report could not be updated";
    if (save && (r == NilHistoryResult::Written || r == NilHistoryResult::Error)) *save = s;
    return r;
}

}  // namespace scoring
