// The built-in run-length pixel font of the card sheet: a 61-colour palette
// and 21 glyphs (ranks "2".."A", the four suit marks and the brackets "[]()")
// of ten pixel rows each, and the strip image they are decoded into once at
// start-up.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "core/view_model.h"
#include "platform/image.h"

namespace display {

inline constexpr int GlyphCount = 21;
inline constexpr int GlyphHeight = 10;   // rows per glyph
inline constexpr int GlyphPitch = 10;    // strip pixels per cell
inline constexpr int WhiteCells = 21;    // cell offset of the glyphs drawn on white
inline constexpr int StripCells = 43;
inline constexpr int PaletteSize = 61;
inline constexpr int PaletteWhite = 1;   // the transparent colour

// Glyph numbers of the brackets and of the first suit mark.
inline constexpr int GlyphClubs = 13;
inline constexpr int GlyphOpenSquare = 17;
inline constexpr int GlyphCloseSquare = 18;
inline constexpr int GlyphOpenRound = 19;
inline constexpr int GlyphCloseRound = 20;

struct PaletteColor {
    std::uint8_t R = 0, G = 0, B = 0;
};

const std::array<PaletteColor, PaletteSize>& PixelPalette();
// Row texts of every glyph: run tokens "k" (one pixel of colour k) or "k*n"
// (n pixels), separated by single blanks, rows left-aligned, top row first.
const std::array<std::array<std::string_view, GlyphHeight>, GlyphCount>& PixelGlyphRows();

// Glyph number of a card-alphabet character: its position in CARD_CHARS
// minus 2 ("2" -> 0 ... "A" -> 12, "C" -> 13 ... "S" -> 16, "[" -> 17 ...
// ")" -> 20); "1" gives -1 and a character outside the alphabet -2.
int fontNo(char c);

// A 0x00BBGGRR colour as an image pixel (0x00RRGGBB), and back.
constexpr std::uint32_t ImageRgb(core::Color c) {
    return ((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF);
}
constexpr core::Color ColorOfPixel(std::uint32_t rgb) { return ImageRgb(rgb); }

// The decoded font: cells 0-20 hold the glyphs on the companion background,
// cells 21-41 the same glyphs on white (cell 42 stays white); Width[g] is the
// longest row of glyph g, repeated at g + 21.
struct FontStrip {
    platform::Image Image;  // 430 x 10
    std::array<int, StripCells> Width{};
};

FontStrip BuildFontStrip(core::Color companionBack);

}  // namespace display
