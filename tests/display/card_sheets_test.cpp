#include "display/card_sheets.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "core/notation.h"

using namespace display;

namespace {

constexpr std::uint32_t kBack = 0xCFCF9F;  // RGB (207, 207, 159) as an image pixel
constexpr std::uint32_t kWhite = 0xFFFFFF;

std::uint32_t Pal(int i) {
    const auto& c = PixelPalette()[static_cast<std::size_t>(i)];
    return platform::Rgb(c.R, c.G, c.B);
}

// The first eight rows of the "2" as the font's row texts give them, counted
// out by hand: '.' background, '#' black (0), digits the palette shades.
const std::vector<std::string> kTwoByHand = {
    ".###4",   // 1 0*3 4
    "#4..#5",  // 0 4 1*2 0 5
    "....#5",  // 1*4 0 5
    "....#",   // 1*4 0
    "..6#5",   // 1*2 6 0 5
    ".7#8",    // 1 7 0 8
    "9#",      // 9 0
    "#####5",  // 0*5 5
};

std::uint32_t HandPixel(char c, std::uint32_t back) {
    if (c == '.') return back;
    if (c == '#') return Pal(0);
    return Pal(c - '0');
}

// An independent reading of one glyph: per row the (colour, run) pairs.
std::vector<std::vector<std::pair<int, int>>> ParseGlyph(int g) {
    std::vector<std::vector<std::pair<int, int>>> rows;
    for (std::string_view text : PixelGlyphRows()[static_cast<std::size_t>(g)]) {
        std::vector<std::pair<int, int>> runs;
        std::istringstream in{std::string(text)};
        std::string tok;
        while (in >> tok) {
            const auto star = tok.find('*');
            runs.emplace_back(std::stoi(tok.substr(0, star)), star == std::string::npos ? 1 : std::stoi(tok.substr(star + 1)));
        }
        rows.push_back(runs);
    }
    return rows;
}

// Paints a glyph the way the font's rule reads (white runs only advance)
// and returns its width: the longest row.
int PaintGlyph(platform::Image& img, int g, int x0, int y0) {
    int width = 0, r = 0;
    for (const auto& row : ParseGlyph(g)) {
        int x = x0;
        for (auto [colour, run] : row) {
            for (int i = 0; i < run; ++i)
                if (colour != 1) img.Set(x + i, y0 + r, Pal(colour));
            x += run;
        }
        width = std::max(width, x - x0);
        ++r;
    }
    return width;
}

// The whole card sheet from the stated layout: columns of 25 pixels per
// rank, rows of 16 per (style, background, suit), glyphs 4 pixels below the
// row's top; plain cards start 5 pixels in with suit then rank, bracketed
// ones 2 pixels in with a pixel before "]", parenthesised ones with a pixel
// after "(" and before ")".
platform::Image ExpectedSheet(bool withRound) {
    platform::Image img(325, 24 * 16, kBack);
    for (int style = 0; style < (withRound ? 3 : 2); ++style)
        for (int bg = 0; bg < 2; ++bg)
            for (int suit = 0; suit < 4; ++suit) {
                const int top = 16 * (8 * style + 4 * bg + suit);
                img.FillRect(0, top, 325, top + 16, bg ? kWhite : kBack);
                for (int rank = 2; rank <= 14; ++rank) {
                    int x = 25 * (rank - 2);
                    const int y = top + 4;
                    const int suitGlyph = 13 + suit, rankGlyph = rank - 2;
                    if (style == 0) {
                        x += 5;
                        x += PaintGlyph(img, suitGlyph, x, y);
                        x += PaintGlyph(img, rankGlyph, x, y);
                    } else if (style == 1) {
                        x += 2;
                        x += PaintGlyph(img, 17, x, y);
                        x += PaintGlyph(img, suitGlyph, x, y);
                        x += PaintGlyph(img, rankGlyph, x, y);
                        x += 1;
                        PaintGlyph(img, 18, x, y);
                    } else {
                        x += 2;
                        x += PaintGlyph(img, 19, x, y) + 1;
                        x += PaintGlyph(img, suitGlyph, x, y);
                        x += PaintGlyph(img, rankGlyph, x, y) + 1;
                        PaintGlyph(img, 20, x, y);
                    }
                }
            }
    return img;
}

void ExpectSameImage(const platform::Image& got, const platform::Image& want) {
    ASSERT_EQ(got.Width, want.Width);
    ASSERT_EQ(got.Height, want.Height);
    int bad = 0;
    for (int y = 0; y < want.Height && bad < 5; ++y)
        for (int x = 0; x < want.Width && bad < 5; ++x)
            if (got.At(x, y) != want.At(x, y)) {
                ++bad;
                const int row = y / 16, col = x / 25;
                ADD_FAILURE() << "pixel (" << x << ", " << y << ") style " << row / 8 << " white " << (row / 4) % 2
                              << " card " << core::CardText((row % 4) * 100 + col + 2) << ": got " << std::hex
                              << got.At(x, y) << " want " << want.At(x, y);
            }
}

}  // namespace

TEST(PixelFont, GlyphNumbersFollowTheCardAlphabet) {
    EXPECT_EQ(fontNo('2'), 0);
    EXPECT_EQ(fontNo('9'), 7);
    EXPECT_EQ(fontNo('T'), 8);
    EXPECT_EQ(fontNo('A'), 12);
    EXPECT_EQ(fontNo('C'), 13);
    EXPECT_EQ(fontNo('S'), 16);
    EXPECT_EQ(fontNo('['), 17);
    EXPECT_EQ(fontNo(')'), 20);
    EXPECT_EQ(fontNo('1'), -1);
    EXPECT_EQ(fontNo('X'), -2);
}

TEST(PixelFont, PaletteAnchorsAndEveryGlyphFitsItsCell) {
    EXPECT_EQ(Pal(0), 0x000000u);
    EXPECT_EQ(Pal(1), 0xFFFFFFu);
    EXPECT_EQ(Pal(2), platform::Rgb(0, 0, 255));
    EXPECT_EQ(Pal(3), platform::Rgb(255, 0, 255));
    EXPECT_EQ(Pal(7), platform::Rgb(184, 124, 64));
    EXPECT_EQ(Pal(48), platform::Rgb(255, 0, 0));
    // Only the transparent index may be white, or a glyph pixel would vanish.
    for (int i = 2; i < PaletteSize; ++i) EXPECT_NE(Pal(i), 0xFFFFFFu) << i;
    for (int g = 0; g < GlyphCount; ++g) {
        int width = 0;
        for (const auto& row : ParseGlyph(g)) {
            int x = 0;
            for (auto [colour, run] : row) {
                EXPECT_GE(colour, 0);
                EXPECT_LT(colour, PaletteSize) << "glyph " << g;
                EXPECT_GE(run, 1);
                x += run;
            }
            width = std::max(width, x);
        }
        // A glyph wider than its 10-pixel cell would copy its neighbour's pixels.
        EXPECT_LE(width, GlyphPitch) << "glyph " << g;
        EXPECT_GT(width, 0) << "glyph " << g;
    }
}

TEST(PixelFont, StripHoldsTheTwoAsWrittenOnBothBackgrounds) {
    const FontStrip s = BuildFontStrip(0x9FCFCF);
    ASSERT_EQ(s.Image.Width, 430);
    ASSERT_EQ(s.Image.Height, 10);
    for (int r = 0; r < 10; ++r) {
        const std::string row = r < 8 ? kTwoByHand[static_cast<std::size_t>(r)] : "";
        for (int x = 0; x < 10; ++x) {
            const char c = x < static_cast<int>(row.size()) ? row[static_cast<std::size_t>(x)] : '.';
            EXPECT_EQ(s.Image.At(x, r), HandPixel(c, kBack)) << "row " << r << " x " << x;
            EXPECT_EQ(s.Image.At(210 + x, r), HandPixel(c, kWhite)) << "white row " << r << " x " << x;
        }
    }
    EXPECT_EQ(s.Width[0], 6);
    EXPECT_EQ(s.Width[21], 6);
    // The last cell is never drawn into.
    for (int x = 420; x < 430; ++x)
        for (int r = 0; r < 10; ++r) EXPECT_EQ(s.Image.At(x, r), kWhite);
    for (int g = 0; g < GlyphCount; ++g) EXPECT_EQ(s.Width[static_cast<std::size_t>(g)], s.Width[static_cast<std::size_t>(g + 21)]);
}

TEST(CardSheet, EveryCardDecodedAndPlacedExactly) {
    const CardSheet spades = BuildCardSheet();
    EXPECT_EQ(spades.CellWidth, 25);
    EXPECT_EQ(spades.LineHeight, 16);
    // The Spades table holds the plain and bracketed styles; the
    // parenthesised rows stay background.
    ExpectSameImage(spades.Image, ExpectedSheet(false));
    ExpectSameImage(BuildCardSheet(CompanionBack, TableModeBridge).Image, ExpectedSheet(true));
}

TEST(CardSheet, TheTwoOfHeartsCarriesTheHandCountedTwo) {
    const CardSheet s = BuildCardSheet();
    // Plain, white: row 4 + hearts = 6; the heart is 7 wide from x 5, the "2" follows at x 12.
    const int top = 16 * 6 + 4;
    for (int r = 0; r < 8; ++r) {
        const std::string& row = kTwoByHand[static_cast<std::size_t>(r)];
        for (int x = 0; x < static_cast<int>(row.size()); ++x)
            EXPECT_EQ(s.Image.At(12 + x, top + r), HandPixel(row[static_cast<std::size_t>(x)], kWhite)) << r << "," << x;
    }
    // The bracketed two of spades on the companion colour: "[" at 2, the
    // spade at 4, the "2" at 11, a gap, "]" at 18.
    const int t2 = 16 * (8 + 3) + 4;
    EXPECT_EQ(s.Image.At(2, t2), Pal(0));
    EXPECT_EQ(s.Image.At(3, t2 + 1), kBack);
    EXPECT_EQ(s.Image.At(12, t2), Pal(0));  // second pixel of the 2's top row
    EXPECT_EQ(s.Image.At(17, t2), kBack);
    EXPECT_EQ(s.Image.At(18, t2), Pal(0));
    EXPECT_EQ(s.Image.At(19, t2 + 1), Pal(0));
}

TEST(CardSheet, CardCopiesLocateTheCellAndMarkNegativeCodes) {
    const CardSheet s = BuildCardSheet();
    core::DrawList list;
    dspCardP(list, s, 40, 21, 314, StyleSquare, true);
    ASSERT_EQ(list.Items.size(), 1u);
    EXPECT_EQ(std::get<core::DrawImage>(list.Items[0]),
              (core::DrawImage{40, 21, core::SheetId::CardSheet, 300, 16 * 15, 25, 15}));

    list.Clear();
    dspCardP(list, s, 64, 37, -207, StylePlain, false);
    ASSERT_EQ(list.Items.size(), 2u);
    EXPECT_EQ(std::get<core::DrawImage>(list.Items[0]),
              (core::DrawImage{64, 37, core::SheetId::CardSheet, 125, 16 * 2, 25, 15}));
    EXPECT_EQ(std::get<core::DrawRect>(list.Items[1]), (core::DrawRect{64, 37, 24, 15, 0x8000FF}));

    // No card, or a style the sheet does not hold.
    list.Clear();
    dspCardP(list, s, 0, 0, 0, StylePlain, false);
    dspCardP(list, s, 0, 0, 301, StylePlain, false);
    EXPECT_TRUE(list.Items.empty());
    dspCardP(list, s, 0, 0, 102, StyleRound, false);
    EXPECT_EQ(std::get<core::DrawImage>(list.Items[0]).SrcY, 16 * 1);
    core::DrawList bridge;
    dspCardP(bridge, BuildCardSheet(CompanionBack, TableModeBridge), 0, 0, 102, StyleRound, false);
    EXPECT_EQ(std::get<core::DrawImage>(bridge.Items[0]).SrcY, 16 * 17);
}

TEST(CardSheet, RenderedMarkedCardIsTheCellInsideARoseOutline) {
    const CardSheet s = BuildCardSheet();
    core::DrawList list;
    list.BackColor = core::White;
    dspCardP(list, s, 3, 2, -314, StylePlain, false);
    platform::Image out(40, 20, 0);
    RenderDrawList(out, list, &s.Image);
    const std::uint32_t rose = platform::Rgb(255, 0, 128);
    for (int x = 3; x < 27; ++x) {
        EXPECT_EQ(out.At(x, 2), rose);
        EXPECT_EQ(out.At(x, 16), rose);
    }
    EXPECT_EQ(out.At(3, 9), rose);
    EXPECT_EQ(out.At(26, 9), rose);
    // Inside the outline, the cell as the sheet holds it; the 25th column
    // of the cell lies outside the 24-pixel outline.
    for (int y = 3; y < 16; ++y)
        for (int x = 4; x < 26; ++x) EXPECT_EQ(out.At(x, y), s.Image.At(300 + x - 3, 48 + y - 2));
    EXPECT_EQ(out.At(27, 9), s.Image.At(324, 48 + 7));
    EXPECT_EQ(out.At(30, 9), 0xFFFFFFu);
}

TEST(TextSheet, CellsFollowTheMeasuredMetrics) {
    const TextSheet t = BuildTextSheet({12, 20, 15});
    EXPECT_EQ(t.RankCell(14, false), (core::DrawImage{0, 0, core::SheetId::TextSheet, 144, 0, 12, 21}));
    EXPECT_EQ(t.RankCell(2, true), (core::DrawImage{0, 0, core::SheetId::TextSheet, 0, 20, 12, 21}));
    EXPECT_EQ(t.SuitCell(2), (core::DrawImage{0, 0, core::SheetId::TextSheet, 30, 36, 15, 18}));
    EXPECT_EQ(t.Items.BackColor, CompanionBack);
    EXPECT_EQ(BuildTextSheet({}, true).Items.BackColor, core::Color{0xE8E8E8});
    // Every item lies inside the sheet, and the suit marks are in suit colours.
    int marks = 0;
    for (const auto& d : t.Items.All<core::DrawText>()) {
        EXPECT_LT(d.X, t.Width);
        EXPECT_LT(d.Y, t.Height);
        if (d.Typeface == "Symbol") {
            EXPECT_EQ(d.ForeColor, core::SuitColor(marks));
            ++marks;
        }
    }
    EXPECT_EQ(marks, 4);
}
