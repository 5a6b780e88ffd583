// Draws the game's table window as the game shows it, in the game's bitmap
// font, for every site language: the frame of the table area with the bid
// and tricks labels, wait prompts, the user's-turn marker, the player list,
// the left button column with the table markers and the bid panel.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "platform/image.h"
#include "reading/glyphs.h"

namespace sim {

struct TablePlayerRow {
    std::string Id;
    std::string Rating;
};

struct TableView {
    int Language = 1;  // game language row (1, 2, 3, 5, 6-9)
    int Width = 640, Height = 700;
    std::string Title;  // drawn in the title bar (not read from pixels)
    int BoxLeft = 236, BoxTop = 247;  // the table area inside its frame

    std::array<std::string, 4> SeatNames;  // by table position: 0 user (below), 1 left, 2 partner, 3 right
    // Bid labels by bid position (0 lower right ... 3 upper right): nullopt =
    // no label, "" = the label alone, else a bid code "1".."13", "N", "D", "DP".
    std::array<std::optional<std::string>, 4> Bids;
    // Tricks labels by tricks position (0 lower left, 1 upper left, 2 upper right, 3 lower right).
    std::array<std::optional<int>, 4> Tricks;
    int WaitPrompt = -1;  // 0..2: which of the language's wait prompts is shown
    bool MyTurn = false;
    int TrickCards = 0;   // cards lying in the middle (0..4), decoration

    std::vector<TablePlayerRow> Players;
    // The table's text area left of the player list, oldest line first.
    std::vector<std::string> TextArea;
    int Highlight = -1;  // player row drawn as light text on a dark bar

    // Left column: stand up, last trick, last hand, score, options.
    std::array<bool, 5> Buttons{true, true, true, true, true};
    bool DNilPassMarker = false;
    bool SuicideMarker = false;

    int Panel = 0;  // 0 none, 100 ordinary bid panel, 200 Double Nil panel
};

// Geometry the renderer uses (window coordinates), for tests and scenarios.
struct TableLayout {
    static constexpr int kButtonLeft = 8, kButtonWidth = 93, kButtonHeight = 22, kButtonTop = 70, kButtonStep = 26;
    static constexpr int kMarkerTop = 207, kMarkerStep = 18;
    static constexpr int kPanelLeft = 104, kPanelTop = 412;
    static constexpr int kBidButtonWidth = 24, kBidButtonHeight = 21, kBidButtonStep = 28, kBidRowStep = 26;
    static constexpr int kListRowStep = 14;
    // The player list and the text area begin 23 rows below the table area,
    // except in a window narrowed to 624 pixels, where they begin at row 503.
    static constexpr int kListGap = 23, kNarrowWidth = 624, kNarrowListTop = 503;
    static constexpr int kTextAreaLeft = 56, kTextAreaLines = 4;
    static int ListTop(int windowWidth, int boxBottom) {
        return windowWidth == kNarrowWidth ? kNarrowListTop : boxBottom + kListGap;
    }
    // Band top (row above the letters) and start column of a label, relative to the box.
    static constexpr std::array<std::array<int, 2>, 4> kBidLabel = {{{125, 86}, {8, 128}, {8, 6}, {150, 24}}};
    static constexpr std::array<std::array<int, 2>, 4> kTrickLabel = {{{8, 86}, {8, 24}, {150, 6}, {150, 128}}};
};

// Texts the game shows in a site language.
struct SiteTexts {
    std::array<std::string, 5> Buttons;  // stand up, last trick, last hand, score, options
    std::string DNilPassMarker, SuicideMarker;
    std::array<std::string, 3> WaitPrompts;
    std::string NilButton, DoubleNilButton, ShowButton;
    std::string NilLetter, DoubleNilLetter;  // as the bid labels show them
};
const SiteTexts& TextsFor(int language);

platform::Image RenderTableWindow(const TableView& view, const reading::GlyphTable& glyphs);

}  // namespace sim
