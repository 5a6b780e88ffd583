#include "players/ratings.h"

#include <cstdio>

#include "core/player_files.h"
#include "core/text.h"

namespace players {

namespace {

const std::array<const char*, 10> kSiteNames = {"USA",    "日本",    "ドイツ",    "フランス",  "イタリア",
                                                "スペイン", "メキシコ", "ESPANOL", "ARGENTINE", "ブラジル"};

constexpr const char* kProvisional = "prov";
constexpr const char* kProvisionalJapanese = "仮レ";
constexpr const char* kRatingFont = "Arial";
// Earlier lines looked at when finding the last recorded rating.
constexpr std::size_t kHistoryLinesRead = 3000;
constexpr std::size_t kMaxSecondIds = 1000;

std::string TwoDigits(int v) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%02d", v);
    return buf;
}

// Totals line up in the file: short ones get one blank in front.
std::string TotalText(std::int32_t total) {
    std::string s = std::to_string(total);
    return s.size() < 3 ? " " + s : s;
}

std::string PaddedName(const std::string& name) {
    std::string s = core::Trim(name);
    if (core::Len(s) >= 13) s = core::Left(s, 12);
    for (std::size_t n = core::Len(s); n < 13; ++n) s += ' ';
    return s;
}

std::vector<std::string> OneBased(const std::vector<std::string>& ids) {
    std::vector<std::string> list;
    list.reserve(ids.size() + 1);
    list.emplace_back();
    list.insert(list.end(), ids.begin(), ids.end());
    return list;
}

}  // namespace

std::string SiteName(std::int32_t gameLanguage) {
    if (gameLanguage < 1 || gameLanguage > 10) return {};
    return kSiteNames[static_cast<std::size_t>(gameLanguage - 1)];
}

std::string FormatHistoryLine(const std::string& caption, const platform::LocalTime& t, std::int32_t mode,
                              bool japanese, const std::array<std::int32_t, 2>& teamScore,
                              const std::array<std::string, 4>& seatNames, std::int32_t gameLanguage) {
    char date[32];
    std::snprintf(date, sizeof date, "%04d/", t.Year);
    std::string line = caption + " " + date + TwoDigits(t.Month) + "/" + TwoDigits(t.Day) + " ";
    line += TwoDigits(t.Hour) + ":" + TwoDigits(t.Minute) + ":" + TwoDigits(t.Second);
    if (mode == 1) {
        bool won = teamScore[0] > teamScore[1];
        if (japanese)
            line += won ? " 勝ち" : " 負け";
        else
            line += won ? " Win " : " Lost";
    }
    line += " (" + TotalText(teamScore[0]) + "," + TotalText(teamScore[1]) + ") ";
    for (const std::string& name : seatNames) line += PaddedName(name);
    line += SiteName(gameLanguage);
    return line;
}

std::string RecordedRatingText(const std::string& line, bool japanese) {
    if (core::StartsWith(line, "仮")) return kProvisionalJapanese;
    if (core::LCase(core::Left(line, 3)) == "pro") return japanese ? kProvisionalJapanese : kProvisional;
    return core::Left(line, 4);
}

std::int32_t FindRenewedRating(const std::vector<std::string>& lines, const std::string& name) {
    static const std::string marker = "newrating:";
    if (name.empty()) return 0;
    for (const std::string& line : lines) {
        std::size_t at = line.find(name);
        if (at == std::string::npos) continue;
        std::size_t m = line.find(marker, at + name.size());
        if (m == std::string::npos) continue;
        return core::ValInt(std::string_view(line).substr(m + marker.size()));
    }
    return 0;
}

std::string HistoryResultText(HistoryResult r) {
    switch (r) {
        case HistoryResult::Written: return "recorded";
        case HistoryResult::NotRecorded: return "not a game to record";
        case HistoryResult::Unreadable: return "the history file cannot be read";
        case HistoryResult::WriteFailed: return "the history file cannot be written";
        case HistoryResult::Unchanged: return "unchanged since the last recorded game";
        case HistoryResult::RobotTable: return "robots played";
        case HistoryResult::NotAtTable: return "the user's ID is not in the player list";
    }
    return "?";
}

Ratings::Ratings(platform::Windows& windows, platform::Clock& clock) : windows_(windows), clock_(clock) {}

void Ratings::ShowMyRating(std::string& text, std::int32_t& value) {
    value = core::ValInt(text);
    bool provisional = false;
    if (value == 0) {
        if (core::StartsWith(text, "pr")) {
            provisional = true;
            if (Options.Japanese) {
                text = kProvisionalJapanese;
                MyRating.FontName = Options.JapaneseFont;
                MyRating.Bold = false;
            } else {
                text = kProvisional;
                MyRating.FontName = kRatingFont;
                MyRating.Bold = true;
            }
        } else if (core::StartsWith(text, kProvisionalJapanese)) {
            provisional = true;
            MyRating.FontName = Options.JapaneseFont;
            MyRating.Bold = false;
        }
    }
    if (provisional) {
        value = -1;
    } else if (value >= 1000) {
        MyRating.FontName = kRatingFont;
        MyRating.Bold = true;
    } else {
        value = 0;
    }
    MyRating.Caption = text;
}

bool Ratings::CountingPermission(const std::string& text, std::int32_t value) const {
    if (Options.LogSet || Options.Japanese || text == kProvisional) return true;
    if (value >= 1000 && value <= 1599) return true;
    if (value >= 1600 && value <= 1999 && !Options.MarkerFilePath.empty() && core::IsFile(Options.MarkerFilePath))
        return true;
    if (MyIdIndex >= 1 && static_cast<std::size_t>(MyIdIndex) <= Options.MyIds.size()) {
        const std::string& own = Options.MyIds[static_cast<std::size_t>(MyIdIndex - 1)];
        for (std::size_t i = 0; i < Options.SecondIds.size() && i < kMaxSecondIds; ++i) {
            if (Options.SecondIds[i].empty()) break;
            if (NamesMatch(own, Options.SecondIds[i])) return true;
        }
    }
    return false;
}

void Ratings::UpdateCountingAllowed(const std::string& text, std::int32_t value) {
    if (Options.CountCards) CountingAllowed = CountingPermission(text, value);
}

void Ratings::GetRenewedRating(std::int32_t& value, const std::string& name, platform::WindowHandle gameWindow,
                               const RatingLineReader& reader) {
    value = 0;
    if (gameWindow != 0) {
        windows_.SetTopmost(gameWindow, true);
        windows_.Restore(gameWindow);
    }
    if (!reader) return;
    value = FindRenewedRating(reader(), name);
}

void Ratings::ReadShowRating(std::int32_t mode, RatingContext& ctx) {
    RatingMode = mode;
    if (mode == 2 && ctx.CaptureBusy) return;
    MyRating.Caption = " ";
    std::string text;
    std::int32_t value = 0;
    TableNames none;
    TableNames& names = ctx.Table.Names ? *ctx.Table.Names : none;
    std::vector<std::string> ids = OneBased(Options.MyIds);
    for (std::int32_t attempt = 1; attempt <= mode + 1; ++attempt) {
        std::string found;
        std::int32_t index = 0;
        SearchNameInTable(found, index, ids, mode != 0, names, ctx.Table.ReadPlayerList);
        MyIdIndex = index;
        if (index != 0) {
            std::string rest = found;
            MyName = core::NextToken(rest);
            text = core::NextToken(rest);
            ShowMyRating(text, value);
            if (value > 1000 || value == -1) break;
        }
        if (attempt == 2) {
            LastHistory = index == 0 ? HistoryResult::NotAtTable : HistoryResult::NotRecorded;
            return;
        }
        if (mode == 0) break;
    }
    UpdateCountingAllowed(text, value);
    LastHistory = WriteHistory(text, value, ctx);
}

HistoryResult Ratings::WriteHistory(std::string& text, std::int32_t& value, RatingContext& ctx) {
    LastSave = {};
    if (RatingMode != 1 && RatingMode != 2) return HistoryResult::NotRecorded;
    if (Options.HistoryPath.empty()) return HistoryResult::NotRecorded;
    if (ctx.TeamScore[0] == 0 && ctx.TeamScore[1] == 0) return HistoryResult::NotRecorded;

    const std::string& path = Options.HistoryPath;
    if (!core::IsFile(path)) {
        LastSave = core::WriteFileBytes(path, std::string());
        if (!LastSave) return HistoryResult::WriteFailed;
    }
    std::string old;
    if (!core::ReadFileBytes(path, old)) {
        LastSave = core::SaveResult::Failed(path, "the old history cannot be read");
        return HistoryResult::Unreadable;
    }
    std::string asidePath;
    if (!core::LooksLikeText(old)) {
        // Lines of ours in front of it would only garble it further.
        const core::SaveResult aside = core::SetAsideUnreadable(path, clock_.Now());
        if (!aside) {
            LastSave = core::SaveResult::Failed(path, aside.Reason);
            return HistoryResult::Unreadable;
        }
        asidePath = aside.Path;
        old.clear();
    }
    std::vector<std::string> lines = core::SplitLines(core::ToUtf8(old, Options.CodePage));
    if (lines.size() > kHistoryLinesRead) lines.resize(kHistoryLinesRead);
    std::string last = lines.empty() ? std::string() : RecordedRatingText(lines.back(), Options.Japanese);
    if (value >= 1000 && value == core::ValInt(last)) return HistoryResult::Unchanged;

    int robots = 0;
    for (const std::string& name : ctx.SeatNames)
        if (core::Contains(name, "robot")) ++robots;
    if (robots >= 2) return HistoryResult::RobotTable;

    if (RatingMode == 1 && text == kProvisional) {
        std::int32_t renewed = 0;
        std::string name = MyName;
        if (name.empty() && MyIdIndex >= 1 && static_cast<std::size_t>(MyIdIndex) <= Options.MyIds.size())
            name = Options.MyIds[static_cast<std::size_t>(MyIdIndex - 1)];
        GetRenewedRating(renewed, name, ctx.Table.GameWindow, ctx.ReadLines);
        if (renewed > 1000) text = std::to_string(renewed);
    }
    ShowMyRating(text, value);

    std::string line = FormatHistoryLine(MyRating.Caption, clock_.Now(), RatingMode, Options.Japanese, ctx.TeamScore,
                                         ctx.SeatNames, ctx.GameLanguage);
    // The old lines follow byte for byte, every one of them, so nothing the
    // file held is lost or re-encoded by the rewrite.
    std::string bytes = core::FromUtf8(line, Options.CodePage) + "\r\n" + old;
    if (!old.empty() && old.back() != '\n' && old.back() != '\r') bytes += "\r\n";
    LastSave = core::WriteFileBytes(path, bytes);
    LastSave.SetAside = asidePath;
    return LastSave ? HistoryResult::Written : HistoryResult::WriteFailed;
}

}  // namespace players
