// The two sheets the hand displays copy cards from, built once at start-up:
// the card sheet (every card in its frame styles on two backgrounds, drawn
// from the pixel font) and the text-font sheet (rank characters and suit
// marks in system typefaces, which the window layer paints from an item
// list). Drawing a card is one block copy out of a sheet.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "core/draw_list.h"
#include "display/pixel_font.h"
#include "platform/image.h"

namespace display {

// The companion windows' background in the Spades table mode, RGB (207, 207, 159).
inline constexpr core::Color CompanionBack = 0x9FCFCF;
// RGB (232, 232, 232): the text-font sheet in the second colour scheme.
inline constexpr core::Color SecondSchemeBack = 0xE8E8E8;
// RGB (255, 0, 128): the outline and underline of a marked card.
inline constexpr core::Color Rose = 0x8000FF;

// Table modes: 3 the Spades table (the normal case), 0 the bridge-bidding table.
inline constexpr int TableModeSpades = 3;
inline constexpr int TableModeBridge = 0;

// Card frame styles.
inline constexpr int StylePlain = 0;
inline constexpr int StyleSquare = 1;  // "[", suit, rank, "]"
inline constexpr int StyleRound = 2;   // "(", suit, rank, ")"

inline constexpr int CardColumns = 13;
inline constexpr int CardColumnPitch = 25;
inline constexpr int CardSheetRows = 24;
// One printed line of the sheet. The pixel glyphs stand 4 rows below its top
// and are 10 rows high; 16 leaves the card play window's rows 16 or 17
// pixels apart without overlap.
inline constexpr int CardLineHeight = 16;

struct CardSheet {
    platform::Image Image;        // 325 x 384, 0x00RRGGBB
    FontStrip Strip;
    core::Color Back = CompanionBack;
    int TableMode = TableModeSpades;
    int CellWidth = 25;           // w: the sheet's width / 13
    int LineHeight = CardLineHeight;  // h

    // Whether the rows of a style were drawn (the parenthesised style only
    // for the bridge-bidding table).
    bool HasStyle(int style) const;
    // Top-left of a card's cell: column rank - 2, row 8 x style + 4 x white + suit.
    int CellX(int code) const;
    int CellY(int code, int style, bool white) const;
};

CardSheet BuildCardSheet(core::Color companionBack = CompanionBack, int tableMode = TableModeSpades);

// Draws one glyph of the strip at (x, y + 4) of an image and advances x by
// its width; white selects the cells drawn on white. Negative glyph numbers
// draw nothing.
void dspFont(platform::Image& target, const FontStrip& strip, int glyph, bool white, int& x, int y);

// Adds the copy of a card's cell (w x (h - 1) pixels) at (x, y) to a draw
// list; a negative code (a marked card) also gets a rose outline 24 x (h - 1).
// A style the sheet does not hold is drawn plain. Codes that are no card
// draw nothing.
void dspCardP(core::DrawList& target, const CardSheet& sheet, int x, int y, int code, int style, bool white);

// The text-font sheet's cell sizes: measured by the window layer from the
// printed texts; the start values stand until then.
struct TextSheetMetrics {
    int RankWidth = 11;
    int RankHeight = 21;
    int SuitWidth = 14;
};

struct TextSheet {
    TextSheetMetrics Metrics;
    int Width = 0, Height = 0;
    // What the window layer prints onto a surface of Width x Height filled
    // with Items.BackColor to make the sheet.
    core::DrawList Items;

    // Source cells: rank characters (row 0, or row 1 in bold), RankWidth x
    // (RankHeight + 1); suit marks (row 2), SuitWidth x (RankHeight - 2).
    core::DrawImage RankCell(int rank, bool bold) const;
    core::DrawImage SuitCell(int suit) const;
    int SuitRowY() const;
};

TextSheet BuildTextSheet(const TextSheetMetrics& m = {}, bool secondScheme = false);

// Paints the block copies, outlines and lines of a list onto an image
// (texts are the window layer's; they are skipped). Sheets that are not
// given skip their copies. With clear set the image is first filled with the
// list's back colour.
void RenderDrawList(platform::Image& target, const core::DrawList& list, const platform::Image* cardSheet,
                    const platform::Image* textSheet = nullptr, const platform::Image* mainSurface = nullptr,
                    bool clear = true);

// Writes an image as a binary PPM file (for looking at a sheet or a window
// during development and in failing tests). False when it cannot be written.
bool WritePpm(const platform::Image& image, const std::string& path);

}  // namespace display
