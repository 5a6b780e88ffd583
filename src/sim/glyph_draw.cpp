#include "sim/glyph_draw.h"

#include <array>
#include <string_view>
#include <utility>

namespace sim {

namespace {

// Accented letters the fonts hold, by their entity names.
constexpr std::array<std::pair<std::string_view, std::string_view>, 6> kAccents = {{
    {"\xC3\xA1", "&aacute;"},
    {"\xC3\xA3", "&atilde;"},
    {"\xC3\xA7", "&ccedil;"},
    {"\xC3\xA8", "&egrave;"},
    {"\xC3\xA9", "&eacute;"},
    {"\xC3\xB3", "&oacute;"},
}};

// A shape no glyph starts with: the game's other fonts as the readers see them.
constexpr std::array<std::uint16_t, 9> kUnknownShape = {0x3FE, 0x202, 0x202, 0x202, 0x202, 0x202, 0x202, 0x202, 0x3FE};

struct Shape {
    const std::uint16_t* cols = nullptr;
    int width = 0;
    std::uint16_t key = 0;  // first column as parsed
};

Shape Lookup(const std::string& ch, const reading::GlyphTable& t, const GlyphDrawOptions& opt) {
    std::string source = ch;
    for (const auto& [utf8, entity] : kAccents)
        if (ch == utf8) source = std::string(entity);
    const int count = t.GlyphCount();
    int regular[2] = {0, 0}, bold = 0, n = 0;
    for (int e = 1; e <= count; ++e) {
        if (t.Glyphs[static_cast<std::size_t>(e)].Source != source) continue;
        if (e <= t.FontACount) {
            if (n < 2) regular[n++] = e;
        } else if (bold == 0) {
            bold = e;
        }
    }
    int best = regular[0];
    if (opt.Alternate && regular[1] != 0) best = regular[1];
    if ((opt.Bold && bold != 0) || best == 0) best = bold;
    if (best == 0) return {};
    const reading::Glyph& g = t.Glyphs[static_cast<std::size_t>(best)];
    Shape s;
    s.cols = g.Column.data() + 1;
    s.width = g.Width;
    s.key = g.Key0;
    return s;
}

template <typename Plot>
int Walk(const std::string& text, int x, const reading::GlyphTable& table, const GlyphDrawOptions& opt, Plot plot) {
    for (const std::string& ch : reading::SplitChars(text)) {
        if (ch == " ") {
            x += opt.SpaceWidth;
            continue;
        }
        Shape s = Lookup(ch, table, opt);
        std::array<std::uint16_t, reading::kMaxGlyphColumns> first{};
        if (s.width == 0) {
            s.cols = kUnknownShape.data();
            s.width = static_cast<int>(kUnknownShape.size());
        } else {
            // Column 1 may be switched off by the font selection; draw the shape as parsed.
            for (int k = 0; k < s.width; ++k) first[static_cast<std::size_t>(k)] = s.cols[k];
            first[0] = s.key;
            s.cols = first.data();
        }
        for (int k = 0; k < s.width; ++k) plot(x + k, s.cols[k]);
        x += s.width;
        // The game leaves one blank column after a glyph that does not end with one.
        if (s.cols[s.width - 1] != 0) x += opt.Gap;
    }
    return x;
}

}  // namespace

int DrawGlyphText(platform::Image& img, int x, int yTop, const std::string& text, std::uint32_t rgb,
                  const reading::GlyphTable& table, const GlyphDrawOptions& opt) {
    return Walk(text, x, table, opt, [&](int cx, std::uint16_t col) {
        for (int r = 0; r < reading::GlyphHeight; ++r)
            if (col & (1u << (11 - r))) img.Set(cx, yTop + r, rgb);
    });
}

int GlyphTextWidth(const std::string& text, const reading::GlyphTable& table, const GlyphDrawOptions& opt) {
    return Walk(text, 0, table, opt, [](int, std::uint16_t) {});
}

}  // namespace sim
