#include "display/pixel_font.h"

#include <algorithm>

#include "core/notation.h"

namespace display {

namespace {

// Black, white, blue and magenta first; then greys, the brown of the "2",
// and the lighter and darker shades of blue, magenta and red that soften
// the glyphs' edges. Red proper is 48.
constexpr std::array<PaletteColor, PaletteSize> kPalette = {{
    {0, 0, 0},       {255, 255, 255}, {0, 0, 255},     {255, 0, 255},   {96, 96, 96},
    {160, 160, 160}, {64, 64, 64},    {184, 124, 64},  {128, 128, 128}, {200, 200, 200},
    {32, 32, 32},    {48, 48, 48},    {80, 80, 80},    {112, 112, 112}, {144, 144, 144},
    {176, 176, 176}, {192, 192, 192}, {224, 224, 224}, {96, 96, 255},   {128, 128, 255},
    {160, 160, 255}, {192, 192, 255}, {64, 64, 224},   {32, 32, 192},   {0, 0, 160},
    {0, 0, 128},     {48, 48, 255},   {80, 80, 240},   {112, 112, 224}, {144, 144, 240},
    {255, 96, 255},  {255, 128, 255}, {255, 160, 255}, {255, 192, 255}, {224, 64, 224},
    {192, 32, 192},  {160, 0, 160},   {128, 0, 128},   {255, 48, 255},  {240, 80, 240},
    {224, 112, 224}, {240, 144, 240}, {208, 160, 112}, {224, 192, 160}, {160, 96, 48},
    {128, 80, 32},   {240, 224, 208}, {96, 64, 32},    {255, 0, 0},     {255, 96, 96},
    {255, 128, 128}, {255, 160, 160}, {255, 192, 192}, {224, 64, 64},   {192, 32, 32},
    {160, 0, 0},     {128, 0, 0},     {255, 48, 48},   {240, 80, 80},   {224, 112, 112},
    {240, 144, 144},
}};

// Ranks stand eight rows high from the top row, suit marks seven or eight,
// brackets nine, so every card line shares one baseline.
constexpr std::array<std::array<std::string_view, GlyphHeight>, GlyphCount> kGlyphs = {{
    // "2"
    {"1 0*3 4", "0 4 1*2 0 5", "1*4 0 5", "1*4 0", "1*2 6 0 5", "1 7 0 8", "9 0", "0*5 5", "", ""},
    // "3"
    {"4 0*3 4", "0 4 1*2 4 0", "1*4 4 0", "1*2 0*3", "1*4 4 0", "1*4 4 0", "0 4 1*2 4 0", "4 0*3 4", "", ""},
    // "4"
    {"1*3 4 0", "1*2 4 0*2", "1 4 0 4 0", "4 0 1 4 0", "0 1*2 4 0", "0*6", "1*3 4 0", "1*3 4 0", "", ""},
    // "5"
    {"0*6", "0", "0", "0*4 4", "1*4 4 0", "1*5 0", "0 4 1*2 4 0", "4 0*3 4", "", ""},
    // "6"
    {"1 4 0*2 4", "4 0", "0", "0*4 4", "0 4 1*2 4 0", "0 1*4 0", "0 4 1*2 4 0", "4 0*3 4", "", ""},
    // "7"
    {"0*6", "1*4 4 0", "1*3 4 0", "1*3 0 4", "1*2 4 0", "1*2 0 4", "1 4 0", "1 0 4", "", ""},
    // "8"
    {"4 0*3 4", "0 4 1*2 4 0", "0 4 1*2 4 0", "4 0*3 4", "0 4 1*2 4 0", "0 1*4 0", "0 4 1*2 4 0", "4 0*3 4", "", ""},
    // "9"
    {"4 0*3 4", "0 4 1*2 4 0", "0 1*4 0", "0 4 1*2 4 0", "4 0*4", "1*5 0", "1*4 0 4", "1 0*2 4", "", ""},
    // "T"
    {"0*6", "1*2 0*2", "1*2 0*2", "1*2 0*2", "1*2 0*2", "1*2 0*2", "1*2 0*2", "1*2 0*2", "", ""},
    // "J"
    {"1*2 0*4", "1*4 0", "1*4 0", "1*4 0", "1*4 0", "0 1*3 0", "0 4 1 4 0", "4 0*3 4", "", ""},
    // "Q"
    {"4 0*3 4", "0 4 1*2 4 0", "0 1*4 0", "0 1*4 0", "0 1*4 0", "0 1*2 0 4 0", "0 4 1 4 0 4", "4 0*3 4 0", "", ""},
    // "K"
    {"0 1*3 4 0", "0 1*2 4 0", "0 1 4 0", "0*3", "0 4 0 4", "0 1*2 0 4", "0 1*2 4 0", "0 1*3 4 0", "", ""},
    // "A"
    {"1*2 0*2", "1*2 0*2", "1 4 0*2 4", "1 0 4*2 0", "1 0 1*2 0", "4 0*4 4", "0 4 1*2 4 0", "0 1*4 0", "", ""},
    // clubs
    {"1*2 18 2 18", "1*2 2*3", "18 2 18 2 18 2 18", "2*7", "18 2 18 2 18 2 18", "1*3 2", "1*2 2*3", "", "", ""},
    // diamonds
    {"1*3 3", "1*2 30 3 30", "1 30 3*3 30", "3*7", "1 30 3*3 30", "1*2 30 3 30", "1*3 3", "", "", ""},
    // hearts
    {"1 50 48 1 48 50", "48*7", "48*7", "50 48*5 50", "1 50 48*3 50", "1*2 50 48 50", "1*3 48", "", "", ""},
    // spades
    {"1*3 0", "1*2 4 0 4", "1 4 0*3 4", "4 0*5 4", "0*7", "4 0 4 0 4 0 4", "1*3 0", "1*2 0*3", "", ""},
    // "["
    {"0*2", "0", "0", "0", "0", "0", "0", "0", "0*2", ""},
    // "]"
    {"0*2", "1 0", "1 0", "1 0", "1 0", "1 0", "1 0", "1 0", "0*2", ""},
    // "("
    {"1 0", "0", "0", "0", "0", "0", "0", "0", "1 0", ""},
    // ")"
    {"0", "1 0", "1 0", "1 0", "1 0", "1 0", "1 0", "1 0", "0", ""},
}};

// Leading decimal number of a text; 0 when there is none.
int LeadingNumber(std::string_view s) {
    int v = 0;
    for (char c : s) {
        if (c < '0' || c > '9') break;
        v = v * 10 + (c - '0');
    }
    return v;
}

}  // namespace

const std::array<PaletteColor, PaletteSize>& PixelPalette() { return kPalette; }

const std::array<std::array<std::string_view, GlyphHeight>, GlyphCount>& PixelGlyphRows() { return kGlyphs; }

int fontNo(char c) {
    const auto pos = core::CARD_CHARS.find(c);
    if (pos == std::string_view::npos) return -2;
    return static_cast<int>(pos) + 1 - 2;
}

FontStrip BuildFontStrip(core::Color companionBack) {
    FontStrip s;
    s.Image = platform::Image(StripCells * GlyphPitch, GlyphHeight, ImageRgb(companionBack));
    s.Image.FillRect(WhiteCells * GlyphPitch, 0, s.Image.Width, GlyphHeight, 0xFFFFFF);
    for (int g = 0; g < GlyphCount; ++g) {
        int width = 0;
        for (int r = 0; r < GlyphHeight; ++r) {
            int x = GlyphPitch * g;
            std::string_view row = kGlyphs[static_cast<std::size_t>(g)][static_cast<std::size_t>(r)];
            while (!row.empty()) {
                const auto blank = row.find(' ');
                const std::string_view token = row.substr(0, blank);
                row = blank == std::string_view::npos ? std::string_view{} : row.substr(blank + 1);
                const auto star = token.find('*');
                const int index = LeadingNumber(token);
                const int run = star == std::string_view::npos ? 1 : LeadingNumber(token.substr(star + 1));
                if (index != PaletteWhite && index >= 0 && index < PaletteSize) {
                    const PaletteColor& c = kPalette[static_cast<std::size_t>(index)];
                    const std::uint32_t rgb = platform::Rgb(c.R, c.G, c.B);
                    for (int i = 0; i < run; ++i) {
                        s.Image.Set(x + i, r, rgb);
                        s.Image.Set(x + i + WhiteCells * GlyphPitch, r, rgb);
                    }
                }
                x += run;  // white runs advance too
            }
            width = std::max(width, x - GlyphPitch * g);
        }
        s.Width[static_cast<std::size_t>(g)] = width;
        s.Width[static_cast<std::size_t>(g + WhiteCells)] = width;
    }
    return s;
}

}  // namespace display
