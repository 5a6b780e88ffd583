// The score sheet the main window draws after every deal (both sides' names,
// the four bids, the deal's points and bags and the running totals), its
// mirror in the small score window, and that window's paste of the sheet's
// latest lines. Figures end at fixed column edges measured in widths of "0".
#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/draw_list.h"
#include "core/settings.h"
#include "scoring/rules.h"
#include "scoring/view_model.h"

namespace scoring {

// The user's seat: the seat whose player name contains one of the user's
// own IDs (letter case ignored). The ID found is remembered (1-based, as
// MyIdIndex) and tried first at later deals; when it no longer sits, the
// list is searched again from the start. No match gives seat 0.
class UserSeatFinder {
public:
    int Find(const std::array<std::string, 4>& namesBySeat, const std::vector<std::string>& myIds);
    int MyIdIndex() const { return myIdIndex_; }

private:
    int myIdIndex_ = 0;
};

struct ScoreSheetInput {
    std::array<std::string, 4> Names;  // by compass seat
    std::array<std::string, 4> Bids;   // by compass seat
    int FirstLeader = -1;              // seat that led the deal's first trick, -1 unknown
    int UserSeat = 0;                  // compass seat of the user
    bool Online = false;               // mirror into the score window
    int Left = 5;                      // the sheet's left edge on the main window
    int Top = 0;                       // the top of its names line
    double HeightOfA = 0;              // text height of "A" in the sheet font; 0 = estimated from its size
};

// Sheet metrics: w the width of "0"; column edges c0-c3 (the opponents'
// points and bags, then the user's side's).
struct ScoreSheetMetrics {
    double W = 0;
    int Pitch = 20;  // 2.8 x the layout unit 7, rounded
    double X0 = 25;  // left edge + 4 x the margin 5
    std::array<double, 4> C{};
};
inline constexpr std::array<double, 4> ColumnWidths = {13.9, 19.4, 28.9, 34.4};
// Subtracted from c0-c3 where a figure is printed into the score window.
inline constexpr std::array<int, 4> MirrorOffsets = {100, 105, 120, 125};
// Where the mirror prints the bids line and the first figure line.
inline constexpr int MirrorBidsY = 22;
inline constexpr int MirrorFiguresY = 42;

ScoreSheetMetrics SheetMetrics(int left, const TextWidthFn& measure);

struct ScoreSheet {
    ScoreSheetMetrics M;
    int Top = 0;
    // Top of the first figure line (the total before the deal): the block the
    // score window pastes.
    int CurrentY = 0;
    bool Mirroring = false;
    core::DrawList Main;    // on the main window's surface
    core::DrawList Mirror;  // into the score window's picture box
    // Row captions in the sheet's left margin: bids, total before, the deal,
    // total after.
    std::array<Label, 4> Label1;
    Shape Frame, Line1, Line2;
};

// The sheet after a deal, from the latest score line ScoreRowCount.
ScoreSheet BuildScoreSheet(const ScoreRows& rows, const ScoreSheetInput& in,
                           const TextWidthFn& measure = ApproxTextWidth);
// Before a new game: no figures, names labels, frame or lines.
void ClearScoreSheet(ScoreSheet& sheet);

// The small score window.
struct ScoreWindow {
    WindowModel Window;
    Shape pic;
    core::DrawList picItems;
    std::array<Label, 4> MyName;
};

// Loading: caption, size, colours, and the PasteScoreTable place; its default
// place (x = -100) is the spot beside the game window the caller gives.
void LoadScoreWindow(ScoreWindow& w, bool japanese, Color back, const core::Position& setting, int defaultLeft,
                     int defaultTop);
// Mirroring: what the sheet printed for the window, and the window shown.
void MirrorScore(ScoreWindow& w, const ScoreSheet& sheet);
// Show_Score: the four names from the user's left-hand opponent round to the
// user, cut to 65 pixels, and the sheet's latest lines pasted from the main
// window: mode 1 the figure lines, any other mode the bids line too.
void Show_Score(ScoreWindow& w, const ScoreSheet& sheet, const std::array<std::string, 4>& namesBySeat, int userSeat,
                int mode, const TextWidthFn& measure = ApproxTextWidth);

core::Json ToJson(const ScoreSheet& s);

}  // namespace scoring
