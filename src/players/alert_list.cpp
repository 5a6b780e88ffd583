#include "players/alert_list.h"

#include <algorithm>
#include <unordered_set>

#include "core/player_files.h"
#include "core/text.h"

namespace players {

using core::Trim;

namespace {

// The built-in section. Made-up example entries that show every form an
// entry can take; a team that keeps its own list replaces these lines.
const std::vector<std::string> kDefaultLines = {
    "zz_example01(Overbidder),zz_example02(NIL Mania),zz_example03,",
    "zz_sample_bag(BAGer),zz_sample_slo(Staller)",
    "{zz_marked_ex(Bad Play)},<zz_flagged(Novice)>,zz_example04(Careless),",
};

// Lines of the built-in table that are looked at.
constexpr std::size_t kLineTableSlots = 501;

}  // namespace

const std::string& AlertList::Entry(std::int32_t i) const {
    static const std::string empty;
    if (i < 0 || i >= Size()) return empty;
    return Slots[static_cast<std::size_t>(i)];
}

void AlertList::SetEntry(std::int32_t i, std::string text) {
    if (i < 1) return;
    if (i >= Size()) Slots.resize(static_cast<std::size_t>(i) + 12);
    Slots[static_cast<std::size_t>(i)] = std::move(text);
}

std::int32_t AlertList::SeparatorIndex() const {
    if (SeparatorSlot > 0 && Entry(SeparatorSlot) == AlertSeparator) return SeparatorSlot;
    for (std::int32_t i = 1; i <= AlertCount && i < Size(); ++i)
        if (Slots[static_cast<std::size_t>(i)] == AlertSeparator) return i;
    return 0;
}

void ReadList(std::vector<std::string>& out, const std::vector<std::string>& lines, std::int32_t& count) {
    if (count < 0) count = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::string_view line = lines[i];
        if (line.empty()) {
            if (i >= 1) break;
            continue;
        }
        while (!line.empty()) {
            std::string_view entry;
            std::size_t comma = line.find(',');
            if (comma != std::string_view::npos) {
                entry = line.substr(0, comma);
                line = line.substr(comma + 1);
            } else {
                entry = line;
                line = {};
            }
            ++count;
            if (static_cast<std::size_t>(count) >= out.size()) out.resize(static_cast<std::size_t>(count) + 1);
            out[static_cast<std::size_t>(count)] = std::string(entry);
        }
    }
}

const std::vector<std::string>& DefaultAlertLines() { return kDefaultLines; }

void ReadDefaultAlertList(AlertList& list) { ReadDefaultAlertList(list, kDefaultLines); }

void ReadDefaultAlertList(AlertList& list, const std::vector<std::string>& lines) {
    std::vector<std::string> table(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(std::min(lines.size(), kLineTableSlots)));
    list.Slots.assign(3001, std::string());
    list.FileUnreadable = false;
    std::int32_t count = 0;
    ReadList(list.Slots, table, count);
    list.SetEntry(count + 1, AlertSeparator);
    list.AlertCount = count + 1;
    list.SeparatorSlot = count + 1;
    if (list.Size() < list.AlertCount + 12) list.Slots.resize(static_cast<std::size_t>(list.AlertCount) + 12);
}

void AppendAlertText(const std::string& text, AlertList& list) {
    std::vector<std::string> work;
    work.reserve(static_cast<std::size_t>(list.AlertCount) + 64);
    for (std::int32_t i = 1; i <= list.AlertCount; ++i) work.push_back(list.Entry(i));
    for (const std::string& raw : core::SplitLines(text)) {
        std::string line = Trim(raw);
        if (line.empty() || line[0] == '#') continue;
        while (!line.empty()) {
            std::string token = core::NextToken(line);
            if (!token.empty()) work.push_back(std::move(token));
        }
    }

    // Built-in entries and the separator come first, so an exact repeat
    // of them (or of an earlier user entry) is the one dropped. An emptied
    // slot is passed over rather than ending the walk, so no file entry is
    // lost behind it.
    std::int32_t oldSeparator = list.SeparatorIndex();
    std::vector<std::string> kept;
    kept.reserve(work.size());
    std::unordered_set<std::string> seen;
    std::int32_t newSeparator = 0;
    for (std::size_t k = 0; k < work.size(); ++k) {
        if (work[k].empty()) continue;
        if (!seen.insert(work[k]).second) continue;
        kept.push_back(std::move(work[k]));
        if (static_cast<std::int32_t>(k) + 1 == oldSeparator) newSeparator = static_cast<std::int32_t>(kept.size());
    }
    list.Slots.assign(kept.size() + 12, std::string());
    for (std::size_t k = 0; k < kept.size(); ++k) list.Slots[k + 1] = std::move(kept[k]);
    list.AlertCount = static_cast<std::int32_t>(kept.size());
    list.SeparatorSlot = newSeparator;
}

AlertFileResult ReadAlertList(const std::string& path, AlertList& list, int codePage) {
    if (!core::IsFile(path)) return AlertFileResult::Missing;
    std::string bytes;
    // NUL bytes mean another encoding or no text at all: reading names out
    // of it would only add garbage entries.
    if (!core::ReadFileBytes(path, bytes) || !core::LooksLikeText(bytes)) {
        list.FileUnreadable = true;
        return AlertFileResult::Unreadable;
    }
    list.FileUnreadable = false;
    AppendAlertText(core::ToUtf8(bytes, codePage), list);
    return AlertFileResult::Ok;
}

std::string FormatAlertFile(const AlertList& list, bool japanese) {
    std::string out = japanese ? "#   << Tarvelloがアラートするプレイヤー >>" : "#     << Players to be alerted by TarvelloS. >>";
    out += "\r\n";
    std::int32_t separator = list.SeparatorIndex();
    std::unordered_set<std::string> earlier;
    std::int32_t lineLength = 0;
    bool lineStart = true;
    for (std::int32_t i = 1; i <= list.AlertCount; ++i) {
        const std::string& entry = list.Entry(i);
        std::string lower = core::LCase(entry);
        bool repeat = !earlier.insert(lower).second;
        if (i <= separator || entry.empty() || repeat) continue;
        lineLength += static_cast<std::int32_t>(core::Len(entry));
        if (lineLength >= 60) {
            out += "\r\n";
            lineLength = 0;
            lineStart = true;
        }
        // A line that begins with "#" reads back as a comment; an empty
        // entry in front keeps such an entry in the list.
        if (lineStart && core::StartsWith(core::LTrim(entry), "#")) out += ',';
        lineStart = false;
        out += entry;
        out += ',';
    }
    return out;
}

AlertFileResult WriteAlertList(const AlertList& list, const std::string& path, bool japanese, int codePage,
                               const platform::LocalTime* now, core::SaveResult* save) {
    core::SaveResult ignored;
    core::SaveResult& out = save ? *save : ignored;
    std::string aside;
    if (list.FileUnreadable && core::IsFile(path)) {
        if (!now) {
            out = core::SaveResult::Failed(path, "the file could not be read; not replaced");
            return AlertFileResult::Refused;
        }
        const core::SaveResult copy = core::SetAsideUnreadable(path, *now);
        if (!copy) {
            out = core::SaveResult::Failed(path, copy.Reason);
            return AlertFileResult::Refused;
        }
        aside = copy.Path;
    }
    out = core::WriteFileBytes(path, core::FromUtf8(FormatAlertFile(list, japanese), codePage));
    out.SetAside = aside;
    return out ? AlertFileResult::Ok : AlertFileResult::WriteFailed;
}

}  // namespace players
