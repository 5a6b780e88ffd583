#include "display/window_positions.h"

#include <filesystem>
#include <system_error>

#include "core/folders.h"
#include "core/player_files.h"
#include "core/text.h"

namespace display {

namespace {

constexpr int kZone = 14;

// x and y of a position line: the first token and the number after it.
platform::Point ReadPair(std::string line) {
    platform::Point p;
    p.X = core::ValInt(core::NextToken(line));
    p.Y = core::ValInt(line);
    return p;
}

int ClampWrite(int v) {
    if (v > 1000) return 0;
    if (v < -10) return -10;
    return v;
}

}  // namespace

std::string PositionFilePath(const core::Folders& folders, const std::string& cfg) {
    return core::Trim(cfg).empty() ? std::string() : folders.EnterProgramFolder(cfg);
}

std::string PrintNum(long long n) {
    return (n < 0 ? std::string() : std::string(" ")) + std::to_string(n) + " ";
}

std::string PrintZones(const std::vector<std::string>& items) {
    std::string line;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i) {
            const std::size_t col = core::Len(line);
            line.append((col / kZone + 1) * kZone - col, ' ');
        }
        line += items[i];
    }
    return line;
}

std::vector<std::string> FormatWindowPositions(int screenWidth, const platform::Rect& mainWindow,
                                               const PosTable& current, const PosTable& previous) {
    std::vector<std::string> lines;
    lines.push_back(PrintZones({PrintNum(screenWidth), "PC Screen Width"}));
    long long left = mainWindow.Left;
    // On a small screen a window near the left edge is kept in view from the
    // right edge instead.
    if (screenWidth < 1000 && mainWindow.Left < 400)
        left = static_cast<long long>(mainWindow.Left) + (static_cast<long long>(screenWidth) - mainWindow.Right);
    lines.push_back(PrintZones({PrintNum(left), PrintNum(mainWindow.Top),
                                PrintNum(static_cast<long long>(mainWindow.Bottom) - mainWindow.Top),
                                "Tarvello Window"}));
    for (int w = 0; w < PosWindowCount; ++w) {
        platform::Point p = current[w];
        if (static_cast<long long>(p.X) + p.Y == 0) p = previous[w];
        lines.push_back(PrintZones({PrintNum(ClampWrite(p.X)), PrintNum(ClampWrite(p.Y)), PosWindowLabels[w]}));
    }
    return lines;
}

PosTable ReadPreviousPositions(const std::string& path, int codePage) {
    PosTable pos{};
    std::vector<std::string> lines;
    if (!core::ReadTextFile(path, codePage, lines)) return pos;
    for (std::size_t i = 2; i < lines.size() && i - 2 < pos.size(); ++i) pos[i - 2] = ReadPair(lines[i]);
    return pos;
}

core::SaveResult SaveWindowPositions(const std::string& path, int screenWidth, const platform::Rect& mainWindow,
                                     const PosTable& current, int codePage) {
    if (path.empty()) return core::SaveResult::Ok(path);
    const PosTable previous = ReadPreviousPositions(path, codePage);
    return core::WriteTextFile(path, FormatWindowPositions(screenWidth, mainWindow, current, previous), codePage);
}

LoadedPositions LoadWindowPositions(const std::string& path, platform::Point screen,
                                    const platform::Rect& mainWindow, int codePage) {
    LoadedPositions out;
    out.Main = mainWindow;
    if (path.empty()) return out;
    std::string bytes;
    if (!core::ReadFileBytes(path, bytes)) return out;
    std::vector<std::string> lines = core::SplitLines(bytes);
    core::LinesToUtf8(lines, codePage);

    if (lines.empty() || core::ValInt(lines[0]) != screen.X) {
        // A file for another screen goes; one that is no position file at
        // all may be something the player wants back, so it is kept aside.
        if (!bytes.empty() && (!core::LooksLikeText(bytes) || core::ValInt(lines[0]) <= 0)) {
            const core::SaveResult aside = core::SetAsideUnreadable(path);
            if (!aside) return out;
            out.SetAside = aside.Path;
        }
        std::error_code ec;
        std::filesystem::remove(core::PathFromUtf8(path), ec);
        out.Deleted = true;
        return out;
    }
    out.Found = true;
    if (lines.size() < 2) return out;

    const platform::Point p = ReadPair(lines[1]);
    const int width = mainWindow.Width(), height = mainWindow.Height();
    long long left = p.X < 0 ? mainWindow.Left : p.X;
    long long top = p.Y < 0 ? mainWindow.Top : p.Y;
    if (left + width > screen.X) left = static_cast<long long>(screen.X) - width;
    if (top + height > screen.Y) top = static_cast<long long>(screen.Y) - height;
    out.Main.Left = static_cast<std::int32_t>(left);
    out.Main.Top = static_cast<std::int32_t>(top);
    out.Main.Right = out.Main.Left + width;
    out.Main.Bottom = out.Main.Top + height;

    for (std::size_t i = 2; i < lines.size() && out.PosCount < PosWindowCount; ++i) {
        platform::Point q = ReadPair(lines[i]);
        if (q.X > 1000) q.X = 0;
        if (q.X < -10) q.X = -10;
        if (q.Y > 1000) q.Y = 0;
        if (q.Y < -15) q.Y = -15;
        out.Pos[out.PosCount++] = q;
    }
    return out;
}

}  // namespace display
