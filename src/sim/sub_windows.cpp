#include "sim/sub_windows.h"

#include <algorithm>
#include <string>

#include "reading/cards.h"
#include "sim/glyph_draw.h"

namespace sim {

namespace {

constexpr std::uint32_t kGray = 0x00C0C0C0;
constexpr std::uint32_t kWhite = 0x00FFFFFF;
constexpr std::uint32_t kBlack = 0x00000000;
constexpr std::uint32_t kRed = 0x00CC0000;
constexpr std::uint32_t kUnset = 0xFF000000u;  // no real pixel has the top byte set

std::uint32_t SuitInk(int suit) { return suit == 1 || suit == 2 ? kRed : kBlack; }

// Text clipped to a cell, as the game's table cells clip their contents.
void DrawInCell(platform::Image& img, int cellLeft, int cellTop, int cellRight, int cellBottom, int x, int yTop,
                const std::string& text, std::uint32_t rgb, const reading::GlyphTable& glyphs) {
    const int w = cellRight - cellLeft + 1, h = cellBottom - cellTop + 1;
    if (w <= 0 || h <= 0) return;
    platform::Image cell(w, h, kUnset);
    DrawGlyphText(cell, x - cellLeft, yTop - cellTop, text, rgb, glyphs);
    for (int yy = 0; yy < h; ++yy)
        for (int xx = 0; xx < w; ++xx)
            if (cell.At(xx, yy) != kUnset) img.Set(cellLeft + xx, cellTop + yy, cell.At(xx, yy));
}

// Columns from the first glyph's first column to the last inked one: the
// width the game centres and right-aligns by (no gap after the last glyph).
int InkWidth(const std::string& text, const reading::GlyphTable& glyphs) {
    const int advance = GlyphTextWidth(text, glyphs);
    if (advance <= 0) return 0;
    platform::Image scratch(advance, reading::GlyphHeight, kWhite);
    DrawGlyphText(scratch, 0, 0, text, kBlack, glyphs);
    for (int x = advance - 1; x >= 0; --x)
        for (int y = 0; y < reading::GlyphHeight; ++y)
            if (scratch.At(x, y) != kWhite) return x + 1;
    return 0;
}

void DrawCentered(platform::Image& img, int cellLeft, int cellTop, int cellRight, int cellBottom, int yTop,
                  const std::string& text, std::uint32_t rgb, const reading::GlyphTable& glyphs) {
    const int width = InkWidth(text, glyphs);
    const int x = cellLeft + (cellRight - cellLeft + 1 - width) / 2;
    DrawInCell(img, cellLeft, cellTop, cellRight, cellBottom, x, yTop, text, rgb, glyphs);
}

}  // namespace

// --- "Last Hand" ----------------------------------------------------------------------

std::string LastHandCardText(const std::string& card, int language) {
    if (card.size() < 2) return card;
    std::string rank = card[0] == 'T' ? std::string("10") : std::string(1, card[0]);
    const char* letters;
    switch (language) {
        case 3:
        case 9:
            letters = "TDCP";
            break;
        case 5:
            letters = "FQCP";
            break;
        case 7:
        case 8:
            letters = "CDHP";
            break;
        default:
            letters = "CDHS";
            break;
    }
    const std::string_view notation = "CDHS";
    const std::size_t suit = notation.find(card[1]);
    return rank + (suit == std::string_view::npos ? std::string(1, card[1]) : std::string(1, letters[suit]));
}

platform::Image RenderLastHand(const LastHandView& view, const reading::GlyphTable& glyphs) {
    using namespace last_hand;
    platform::Image img(kWidth, kHeight, kGray);
    auto rowCells = [&](int top, int bottom) {
        img.FillRect(kNameLeft, top, kNameLeft + kNameWidth, bottom + 1, kWhite);
        for (int c = 0; c < 13; ++c) img.FillRect(CellLeft(c), top, CellLeft(c) + kCellWidth, bottom + 1, kWhite);
    };
    // Header: "Player" and the trick numbers.
    rowCells(kHeaderTop, kTableTop - 1);
    DrawInCell(img, kNameLeft, kHeaderTop, kNameLeft + kNameWidth - 1, kTableTop - 1, kNameLeft + 3, kHeaderText,
               "Player", kBlack, glyphs);
    for (int c = 0; c < 13; ++c)
        DrawCentered(img, CellLeft(c), kHeaderTop, CellLeft(c) + kCellWidth - 1, kTableTop - 1, kHeaderText,
                     std::to_string(c + 1), kBlack, glyphs);
    for (int p = 0; p < 4; ++p) {
        const int top = kTableTop + 1 + kLinePitch * p, bottom = top + kLinePitch - 2;
        rowCells(top, bottom);
        const int yText = LineTextTop(p);
        DrawInCell(img, kNameLeft, top, kNameLeft + kNameWidth - 1, bottom, kNameLeft + 3, yText,
                   view.Names[static_cast<std::size_t>(p)], kBlack, glyphs);
        for (int c = 0; c < 13; ++c) {
            const std::string& card = view.Cards[static_cast<std::size_t>(p)][static_cast<std::size_t>(c)];
            if (card.empty()) continue;
            std::string text = LastHandCardText(card, view.Language);
            // The game marks a lead with an opening bracket only: "[10H]" would not fit a cell.
            if (view.Marks[static_cast<std::size_t>(p)][static_cast<std::size_t>(c)] == 1) text = "[" + text;
            const int suit = static_cast<int>(std::string_view("CDHS").find(card.size() > 1 ? card[1] : 'S'));
            DrawCentered(img, CellLeft(c), top, CellLeft(c) + kCellWidth - 1, bottom, yText, text, SuitInk(suit),
                         glyphs);
        }
    }
    return img;
}

// --- "Last Trick" -----------------------------------------------------------------------

platform::Image RenderLastTrick(const LastTrickView& view) {
    using namespace last_trick;
    const reading::CardFont font;
    platform::Image img(kWidth, kHeight, kTableColor);
    for (int k = 0; k < 4; ++k) {
        const int rank = view.Ranks[static_cast<std::size_t>(k)], suit = view.Suits[static_cast<std::size_t>(k)];
        if (rank < 2 || rank > 14 || suit < 0 || suit > 3) continue;
        const CardBox& b = kCards[static_cast<std::size_t>(k)];
        img.FillRect(b.Left, b.Top, b.Right + 1, b.Bottom + 1, kBlack);
        img.FillRect(b.Left + 1, b.Top + 1, b.Right, b.Bottom, kWhite);
        // The corner mark: the suit's samples, then the rank's.
        std::vector<std::uint8_t> samples;
        for (int pos : {reading::CardFont::kFirstSuit + suit, rank}) {
            const auto& e = font.Entry[static_cast<std::size_t>(pos)];
            samples.insert(samples.end(), e.Samples.begin(), e.Samples.begin() + e.Count);
        }
        const std::uint32_t ink = SuitInk(suit);
        if (k == 1 || k == 3) {
            // Upright: one sample per column from the left, bit 7 at the top.
            const int x = b.Right - 25, y = b.Top + 3;
            for (std::size_t c = 0; c < samples.size(); ++c)
                for (int bit = 0; bit < 8; ++bit)
                    if (samples[c] & (0x80 >> bit)) img.Set(x + static_cast<int>(c), y + bit, ink);
        } else {
            // Lying: one sample per row from the bottom up, bit 7 at the left.
            const int x = b.Left + 3, y = b.Top + 3;
            for (std::size_t c = 0; c < samples.size(); ++c)
                for (int bit = 0; bit < 8; ++bit)
                    if (samples[c] & (0x80 >> bit))
                        img.Set(x + bit, y + reading::kCornerSampleCount - 1 - static_cast<int>(c), ink);
        }
    }
    return img;
}

// --- score window -------------------------------------------------------------------------

platform::Image RenderScoreWindow(const ScoreWindowView& view, const reading::GlyphTable& glyphs) {
    using namespace score_window;
    const int lines = static_cast<int>(view.Lines.size());
    const int rows = view.Rows >= 0 ? view.Rows : std::max(5, lines + 2);
    platform::Image img(kWidth, Height(rows), kGray);
    auto rowCells = [&](int top, int bottom) {
        for (std::size_t c = 0; c < 4; ++c) img.FillRect(kCellLeft[c], top, kCellRight[c] + 1, bottom + 1, kWhite);
    };
    rowCells(kHeaderTop, kTableTop - 1);
    const std::array<const char*, 4> header = {"Us", "Bags", "Them", "Bags"};
    for (std::size_t c = 0; c < 4; ++c)
        DrawCentered(img, kCellLeft[c], kHeaderTop, kCellRight[c], kTableTop - 1, kHeaderTop + 5, header[c], kBlack,
                     glyphs);
    for (int r = 0; r < rows; ++r) {
        const int top = kTableTop + 1 + kLinePitch * r, bottom = top + kLinePitch - 2;
        rowCells(top, bottom);
        if (r >= lines) continue;
        const auto& l = view.Lines[static_cast<std::size_t>(r)];
        const int y = LineTextTop(r);
        const std::string s0 = std::to_string(l[0]), s2 = std::to_string(l[2]);
        DrawInCell(img, kCellLeft[0], top, kCellRight[0], bottom, kScoreRight0 + 1 - InkWidth(s0, glyphs), y, s0,
                   kBlack, glyphs);
        DrawInCell(img, kCellLeft[1], top, kCellRight[1], bottom, kBagsLeft1, y, std::to_string(l[1]), kBlack, glyphs);
        DrawInCell(img, kCellLeft[2], top, kCellRight[2], bottom, kScoreRight2 + 1 - InkWidth(s2, glyphs), y, s2,
                   kBlack, glyphs);
        DrawInCell(img, kCellLeft[3], top, kCellRight[3], bottom, kBagsLeft3, y, std::to_string(l[3]), kBlack, glyphs);
    }
    return img;
}

}  // namespace sim
