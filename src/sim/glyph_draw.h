// Draws text into an image in the game's bitmap fonts, so that the glyph
// readers read it back: the simulator's windows use it for every label.
#pragma once

#include <cstdint>
#include <string>

#include "platform/image.h"
#include "reading/glyphs.h"

namespace sim {

struct GlyphDrawOptions {
    int Gap = 1;          // blank columns between two glyphs
    int SpaceWidth = 4;   // blank columns drawn for a " "
    bool Bold = false;    // prefer the bold font (digits, lower case, "_", ".", "@")
    bool Alternate = false;  // prefer a letter's second glyph (extra pixel in its first column)
};

// Draws `text` (UTF-8) with its band's top row at yTop starting at column x;
// returns the column just after the last glyph drawn. A character without a
// glyph (a Japanese character, for instance) is drawn as a box the readers
// do not know, as the game's other fonts look to them; accented letters use
// their entity glyphs ("é" -> "&eacute;"). Pixels outside the image are skipped.
int DrawGlyphText(platform::Image& img, int x, int yTop, const std::string& text, std::uint32_t rgb,
                  const reading::GlyphTable& table, const GlyphDrawOptions& opt = {});
// Columns DrawGlyphText would use for `text`.
int GlyphTextWidth(const std::string& text, const reading::GlyphTable& table, const GlyphDrawOptions& opt = {});

}  // namespace sim
