#include "display/deal_record.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "core/folders.h"
#include "core/text.h"
#include "platform/clock.h"

namespace display {

namespace {

constexpr std::string_view kSep = ", ";

// A text written inside a line must not end the line.
std::string OneLine(std::string_view s) {
    std::string out(s);
    std::replace(out.begin(), out.end(), '\r', ' ');
    std::replace(out.begin(), out.end(), '\n', ' ');
    return out;
}

std::string Join4(const std::array<std::string, 4>& parts) {
    std::string out;
    for (int i = 0; i < 4; ++i) {
        if (i) out += kSep;
        out += OneLine(parts[i]);
    }
    return out;
}

// Splits at ", " into four texts; the fourth keeps whatever follows the
// third separator, so a last name holding ", " survives.
std::array<std::string, 4> Split4(std::string_view line) {
    std::array<std::string, 4> out;
    for (int i = 0; i < 3; ++i) {
        std::size_t at = line.find(kSep);
        if (at == std::string_view::npos) {
            out[i] = std::string(line);
            return out;
        }
        out[i] = std::string(line.substr(0, at));
        line.remove_prefix(at + kSep.size());
    }
    out[3] = std::string(line);
    return out;
}

// A card text in its two-character cell: shorter texts are padded with
// blanks, longer ones cut (real cards are always two characters).
std::string CardCell(std::string_view card) {
    std::string c = core::Left(OneLine(card), 2);
    while (core::Len(c) < 2) c += ' ';
    return c;
}

std::string TrickLine(const DealRecord& rec, int seat) {
    std::string line;
    for (int t = 0; t < TrickCount; ++t) {
        const std::string card = CardCell(rec.Trick[t][seat]);
        switch (rec.Mark[t][seat]) {
        case MarkBrackets: line += "[" + card + "] "; break;
        case MarkParentheses: line += "(" + card + ") "; break;
        default: line += " " + card + "  "; break;
        }
    }
    return line;
}

void ParseTrickLine(const std::string& line, int seat, DealRecord& rec) {
    for (int t = 0; t < TrickCount; ++t) {
        const std::string cell = core::Mid(line, 5 * t + 1, 5);
        const std::string open = core::Left(cell, 1);
        rec.Mark[t][seat] = open == "[" ? MarkBrackets : open == "(" ? MarkParentheses : MarkNone;
        rec.Trick[t][seat] = core::Trim(core::Mid(cell, 2, 2));
    }
}

// Numbers as the runtime prints them to a file: a sign position (blank or
// "-"), the digits and a trailing blank.
std::string PrintNumber(long long n) {
    return (n < 0 ? std::string() : std::string(" ")) + std::to_string(n) + " ";
}

std::string Seq(int n) {
    std::string s = std::to_string(n);
    while (s.size() < 3) s.insert(s.begin(), '0');
    return s;
}

}  // namespace

std::vector<std::string> FormatRecordLines(const DealRecord& rec) {
    std::vector<std::string> lines;
    lines.push_back(Join4(rec.Names));
    lines.push_back(Join4(rec.Seat2));
    for (int seat = 0; seat < 4; ++seat) lines.push_back(TrickLine(rec, seat));
    const int rows = std::clamp<int>(rec.ScoreRowCount, 0, MaxScoreRows);
    lines.push_back(PrintNumber(rows));
    for (int r = 0; r < rows; ++r) {
        std::string line;
        for (int k = 0; k < 4; ++k) {
            if (k) line += kSep;
            line += std::to_string(rec.ScoreRows[r][k]);
        }
        lines.push_back(line);
    }
    return lines;
}

int ParseRecordLines(const std::vector<std::string>& lines, DealRecord& rec) {
    std::size_t at = 0;
    auto more = [&] { return at < lines.size(); };

    if (!more()) return ErrInputPastEnd;
    rec.Names = Split4(lines[at++]);
    if (!more()) return ErrInputPastEnd;
    rec.Seat2 = Split4(lines[at++]);

    for (int seat = 0; seat < 4; ++seat) {
        if (!more()) return ErrInputPastEnd;
        ParseTrickLine(lines[at++], seat, rec);
    }

    if (!more()) return ErrInputPastEnd;
    const int rows = std::clamp<int>(core::ValInt(lines[at++]), 0, MaxScoreRows);
    rec.ScoreRowCount = 0;
    for (int r = 0; r < rows; ++r) {
        if (!more()) return ErrInputPastEnd;
        std::string_view line = lines[at++];
        std::array<std::int32_t, 4> row{};
        for (int k = 0; k < 4; ++k) {
            std::size_t sep = line.find(kSep);
            row[k] = core::ValInt(line.substr(0, sep));
            if (sep == std::string_view::npos) break;
            line.remove_prefix(sep + kSep.size());
        }
        rec.ScoreRows[r] = row;
        rec.ScoreRowCount = r + 1;
    }
    return ErrNone;
}

std::string DatePart(int month, int day) {
    auto two = [](int n) {
        std::string s = std::to_string(n);
        return s.size() < 2 ? "0" + s : s;
    };
    return two(month) + "_" + two(day) + "_";
}

RecordFiles::RecordFiles(platform::Clock& clock, const core::Folders& folders, int codePage)
    : clock_(clock), folders_(folders), codePage_(codePage) {}

std::string RecordFiles::PathOf(const std::string& fileName) const { return folders_.EnterWorkFolder(fileName); }

core::SaveResult RecordFiles::WriteRecordFile(const DealRecord& rec, const std::vector<std::string>& boxEntries,
                                              std::string& nameOut) {
    if (counter_ == 0) {
        const platform::LocalTime now = clock_.Now();
        datePart_ = DatePart(now.Month, now.Day);
        int next = 1;
        for (const std::string& entry : boxEntries) {
            if (core::Left(entry, 6) != datePart_) continue;
            next = std::max(next, core::ValInt(core::Mid(entry, 7, 3)) + 1);
        }
        counter_ = next;
    }

    std::string name = datePart_ + Seq(counter_);
    // Bounded so that a folder that answers "exists" to everything cannot
    // hang the capture.
    for (int tries = 0; folders_.WorkFileExists(name + RecordExt); ++tries) {
        if (tries > 100000) return core::SaveResult::Failed(PathOf(name + RecordExt), "no free record file name");
        ++counter_;
        name = datePart_ + Seq(counter_);
    }

    std::error_code ec;
    std::filesystem::create_directories(core::PathFromUtf8(folders_.WorkFolder()), ec);
    core::SaveResult r = core::WriteTextFile(PathOf(name + RecordExt), FormatRecordLines(rec), codePage_);
    if (!r) return r;
    ++counter_;
    nameOut = name;
    return r;
}

std::string RecordFiles::WriteRecordFile(const DealRecord& rec, const std::vector<std::string>& boxEntries) {
    std::string name;
    lastSave_ = WriteRecordFile(rec, boxEntries, name);
    return name;
}

int RecordFiles::ReadRecordFile(const std::string& name, DealRecord& rec) const {
    std::vector<std::string> lines;
    if (!core::ReadTextFile(PathOf(name + RecordExt), codePage_, lines)) return ErrFileNotFound;
    return ParseRecordLines(lines, rec);
}

int RecordFiles::LoadRecord(const std::string& name, int onlineMode, DealRecord& rec) {
    rec = DealRecord{};
    const int code = ReadRecordFile(name, rec);
    if (onlineMode == 2) spareMarker_ = true;
    currentName_ = name;
    return code;
}

void RecordFiles::RemoveMarkerAtExit() {
    if (spareMarker_) return;
    if (!MarkerExists()) return;
    std::error_code ec;
    std::filesystem::remove(core::PathFromUtf8(PathOf(MarkerFileName)), ec);
}

bool RecordFiles::MarkerExists() const { return folders_.WorkFileExists(MarkerFileName); }

}  // namespace display
