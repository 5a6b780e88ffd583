// The game's auxiliary windows as the simulator draws them: the "Last Hand"
// window (player names and their thirteen cards as text), the "Last Trick"
// window (four card images with their corner marks) and the score window.
// Each takes a plain view and returns the window's client area.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "platform/image.h"
#include "reading/glyphs.h"

namespace sim {

// --- "Last Hand" ------------------------------------------------------------------

struct LastHandView {
    int Language = 1;  // game language row: decides the suit letters
    std::array<std::string, 4> Names{};
    std::array<std::array<std::string, 13>, 4> Cards{};  // [line][column] "AS", "TH"; "" = empty cell
    std::array<std::array<int, 13>, 4> Marks{};          // 1 = the card led its trick, shown as "[AS"
};

// Geometry of the "Last Hand" client area.
namespace last_hand {
constexpr int kWidth = 389, kHeight = 101;
constexpr int kNameLeft = 1, kNameWidth = 80;
constexpr int kCellLeft = 82, kCellWidth = 22, kCellPitch = 23;
constexpr int kHeaderTop = 5, kTableTop = 24, kLinePitch = 16;  // kTableTop: gray row above line 0
constexpr int kHeaderText = 9;                                   // top row of the header's band
inline int LineTextTop(int line) { return kTableTop + 4 + kLinePitch * line; }
inline int CellLeft(int column) { return kCellLeft + kCellPitch * column; }
}  // namespace last_hand

// The card as the window writes it for a language: "TH" -> "10H", "AS" ->
// "AP" in Italian.
std::string LastHandCardText(const std::string& card, int language);
platform::Image RenderLastHand(const LastHandView& view, const reading::GlyphTable& glyphs);

// --- "Last Trick" -----------------------------------------------------------------

// By card slot: 2 top, 0 below it, 1 left, 3 right. A slot with rank 0
// shows no card.
struct LastTrickView {
    std::array<int, 4> Suits{};
    std::array<int, 4> Ranks{};
};

namespace last_trick {
constexpr int kWidth = 270, kHeight = 130;
// Card rectangles (left, top, right, bottom inclusive of the black border).
struct CardBox {
    int Left, Top, Right, Bottom;
};
constexpr std::array<CardBox, 4> kCards = {{
    {96, 34, 151, 63},    // slot 0: lying, below slot 2
    {26, 44, 70, 123},    // slot 1: upright, left
    {96, 4, 151, 33},     // slot 2: lying, top
    {200, 44, 244, 123},  // slot 3: upright, right
}};
constexpr std::uint32_t kTableColor = 0x002E8B57;  // green felt; never read as ink
}  // namespace last_trick

platform::Image RenderLastTrick(const LastTrickView& view);

// --- score window ------------------------------------------------------------------

struct ScoreWindowView {
    std::vector<std::array<int, 4>> Lines;  // score and bags of the first side, then of the second
    int Rows = -1;  // table rows the window shows; -1 = the lines and two blank rows, at least 5
};

namespace score_window {
constexpr int kWidth = 220;
constexpr int kHeaderTop = 20, kTableTop = 40, kLinePitch = 16;  // kTableTop: gray row under the header
constexpr std::array<int, 4> kCellLeft = {1, 51, 110, 171};
constexpr std::array<int, 4> kCellRight = {49, 108, 169, 214};  // inclusive
constexpr int kScoreRight0 = 38, kScoreRight2 = 148;            // scores end here (inclusive)
constexpr int kBagsLeft1 = 60, kBagsLeft3 = 178;
inline int Height(int rows) { return 51 + kLinePitch * rows; }
inline int LineTextTop(int row) { return kTableTop + 2 + kLinePitch * row; }
}  // namespace score_window

platform::Image RenderScoreWindow(const ScoreWindowView& view, const reading::GlyphTable& glyphs);

}  // namespace sim
