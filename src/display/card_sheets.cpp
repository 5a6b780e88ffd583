#include "display/card_sheets.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "core/notation.h"

namespace display {

namespace {

bool IsCard(int code) {
    const int a = std::abs(code);
    return a / 100 <= 3 && a % 100 >= 2 && a % 100 <= 14;
}

int RankGlyph(int rank) { return rank - 2; }
int SuitGlyph(int suit) { return GlyphClubs + suit; }

}  // namespace

bool CardSheet::HasStyle(int style) const {
    return style == StylePlain || style == StyleSquare || (style == StyleRound && TableMode == TableModeBridge);
}

int CardSheet::CellX(int code) const { return CardColumnPitch * (std::abs(code) % 100 - 2); }

int CardSheet::CellY(int code, int style, bool white) const {
    return LineHeight * (8 * style + 4 * (white ? 1 : 0) + std::abs(code) / 100);
}

void dspFont(platform::Image& target, const FontStrip& strip, int glyph, bool white, int& x, int y) {
    if (glyph < 0 || glyph >= GlyphCount) return;
    const int cell = glyph + (white ? WhiteCells : 0);
    const int w = strip.Width[static_cast<std::size_t>(cell)];
    for (int r = 0; r < GlyphHeight; ++r)
        for (int c = 0; c < w; ++c) target.Set(x + c, y + 4 + r, strip.Image.At(cell * GlyphPitch + c, r));
    x += w;
}

CardSheet BuildCardSheet(core::Color companionBack, int tableMode) {
    CardSheet s;
    s.Back = companionBack;
    s.TableMode = tableMode;
    s.Strip = BuildFontStrip(companionBack);
    const std::uint32_t back = ImageRgb(companionBack);
    s.Image = platform::Image(CardColumns * CardColumnPitch, CardSheetRows * s.LineHeight, back);
    s.CellWidth = static_cast<int>(std::lround(static_cast<double>(s.Image.Width) / CardColumns));

    for (int style = StylePlain; style <= StyleRound; ++style) {
        if (!s.HasStyle(style)) continue;
        for (int bg = 0; bg < 2; ++bg) {
            const bool white = bg == 1;
            for (int suit = core::Clubs; suit <= core::Spades; ++suit) {
                const int top = s.CellY(suit * 100 + 2, style, white);
                s.Image.FillRect(0, top, s.Image.Width, top + s.LineHeight, white ? 0xFFFFFF : back);
                for (int rank = 2; rank <= 14; ++rank) {
                    const int left = s.CellX(suit * 100 + rank);
                    int x = left;
                    switch (style) {
                        case StylePlain:
                            x += 5;
                            dspFont(s.Image, s.Strip, SuitGlyph(suit), white, x, top);
                            dspFont(s.Image, s.Strip, RankGlyph(rank), white, x, top);
                            break;
                        case StyleSquare:
                            x += 2;
                            dspFont(s.Image, s.Strip, GlyphOpenSquare, white, x, top);
                            dspFont(s.Image, s.Strip, SuitGlyph(suit), white, x, top);
                            dspFont(s.Image, s.Strip, RankGlyph(rank), white, x, top);
                            x += 1;
                            dspFont(s.Image, s.Strip, GlyphCloseSquare, white, x, top);
                            break;
                        default:
                            x += 2;
                            dspFont(s.Image, s.Strip, GlyphOpenRound, white, x, top);
                            x += 1;
                            dspFont(s.Image, s.Strip, SuitGlyph(suit), white, x, top);
                            dspFont(s.Image, s.Strip, RankGlyph(rank), white, x, top);
                            x += 1;
                            dspFont(s.Image, s.Strip, GlyphCloseRound, white, x, top);
                            break;
                    }
                }
            }
        }
    }
    // A clean edge between neighbouring cells: a line at the left of columns
    // 1-12 in bands of four rows that follow the row backgrounds.
    for (int k = 1; k < CardColumns; ++k)
        for (int band = 0; band < 4; ++band)
            s.Image.FillRect(CardColumnPitch * k, band * 4 * s.LineHeight, CardColumnPitch * k + 1,
                             (band + 1) * 4 * s.LineHeight, band % 2 == 0 ? back : 0xFFFFFF);
    return s;
}

void dspCardP(core::DrawList& target, const CardSheet& sheet, int x, int y, int code, int style, bool white) {
    if (code == 0 || !IsCard(code)) return;
    if (!sheet.HasStyle(style)) style = StylePlain;
    target.Items.push_back(core::DrawImage{x, y, core::SheetId::CardSheet, sheet.CellX(code),
                                           sheet.CellY(code, style, white), sheet.CellWidth, sheet.LineHeight - 1});
    if (code < 0) target.Items.push_back(core::DrawRect{x, y, 24, sheet.LineHeight - 1, Rose});
}

core::DrawImage TextSheet::RankCell(int rank, bool bold) const {
    return {0, 0, core::SheetId::TextSheet, (rank - 2) * Metrics.RankWidth, bold ? Metrics.RankHeight : 0,
            Metrics.RankWidth, Metrics.RankHeight + 1};
}

core::DrawImage TextSheet::SuitCell(int suit) const {
    return {0, 0, core::SheetId::TextSheet, suit * Metrics.SuitWidth, SuitRowY(), Metrics.SuitWidth,
            Metrics.RankHeight - 2};
}

int TextSheet::SuitRowY() const { return static_cast<int>(std::lround(1.8 * Metrics.RankHeight)); }

TextSheet BuildTextSheet(const TextSheetMetrics& m, bool secondScheme) {
    TextSheet s;
    s.Metrics = m;
    s.Items.BackColor = secondScheme ? SecondSchemeBack : CompanionBack;
    s.Width = 15 * m.RankWidth;
    s.Height = 4 * m.RankHeight + 2;
    // Each character at its own cell origin, so the cells line up whatever
    // the printed width of the typeface.
    const std::string_view ranks = "23456789TJQKA";
    for (int k = 0; k < 13; ++k) {
        const std::string ch(1, ranks[static_cast<std::size_t>(k)]);
        s.Items.Items.push_back(core::DrawText{double(k * m.RankWidth), 0, ch, "Courier New", 14, core::Black, false});
        s.Items.Items.push_back(
            core::DrawText{double(k * m.RankWidth), double(m.RankHeight), ch, "Courier New", 14, core::Black, true});
    }
    // The Symbol typeface's club, diamond, heart and spade.
    static constexpr std::array<const char*, 4> marks = {"\u2663", "\u2666", "\u2665", "\u2660"};
    for (int suit = 0; suit < 4; ++suit)
        s.Items.Items.push_back(core::DrawText{double(suit * m.SuitWidth), 1.8 * m.RankHeight,
                                               marks[static_cast<std::size_t>(suit)], "Symbol", 14,
                                               core::SuitColor(suit), false});
    const double y3 = 3.0 * m.RankHeight;
    const double size3 = m.RankHeight - 2;
    for (int d = 0; d < 10; ++d)
        s.Items.Items.push_back(
            core::DrawText{double(d * m.RankWidth), y3, std::string(1, char('0' + d)), "Arial", size3, core::Black, true});
    s.Items.Items.push_back(core::DrawText{10.0 * m.RankWidth, y3, "D", "Arial", size3, core::Red, true});
    s.Items.Items.push_back(core::DrawText{11.0 * m.RankWidth, y3, "N", "Arial", size3, core::Red, true});
    s.Items.Items.push_back(core::DrawText{12.6 * m.RankWidth, y3, "[", "Arial", size3, core::Black, false});
    s.Items.Items.push_back(core::DrawText{13.4 * m.RankWidth, y3, "]", "Arial", size3, core::Black, false});
    return s;
}

namespace {

void Line(platform::Image& img, int x0, int y0, int x1, int y1, std::uint32_t rgb) {
    const int dx = std::abs(x1 - x0), sx = x0 < x1 ? 1 : -1;
    const int dy = -std::abs(y1 - y0), sy = y0 < y1 ? 1 : -1;
    int err = dx + dy;
    for (;;) {
        img.Set(x0, y0, rgb);
        if (x0 == x1 && y0 == y1) break;
        const int e2 = 2 * err;
        if (e2 >= dy) err += dy, x0 += sx;
        if (e2 <= dx) err += dx, y0 += sy;
    }
}

}  // namespace

void RenderDrawList(platform::Image& target, const core::DrawList& list, const platform::Image* cardSheet,
                    const platform::Image* textSheet, const platform::Image* mainSurface, bool clear) {
    if (clear) target.FillRect(0, 0, target.Width, target.Height, ImageRgb(list.BackColor));
    for (const auto& item : list.Items) {
        if (const auto* im = std::get_if<core::DrawImage>(&item)) {
            const platform::Image* src = im->Source == core::SheetId::CardSheet   ? cardSheet
                                         : im->Source == core::SheetId::TextSheet ? textSheet
                                                                                  : mainSurface;
            if (!src) continue;
            for (int r = 0; r < im->Height; ++r)
                for (int c = 0; c < im->Width; ++c)
                    if (src->Contains(im->SrcX + c, im->SrcY + r))
                        target.Set(im->X + c, im->Y + r, src->At(im->SrcX + c, im->SrcY + r));
        } else if (const auto* rc = std::get_if<core::DrawRect>(&item)) {
            if (rc->Width <= 0 || rc->Height <= 0) continue;
            const std::uint32_t rgb = ImageRgb(rc->LineColor);
            const int x1 = rc->X + rc->Width - 1, y1 = rc->Y + rc->Height - 1;
            Line(target, rc->X, rc->Y, x1, rc->Y, rgb);
            Line(target, rc->X, y1, x1, y1, rgb);
            Line(target, rc->X, rc->Y, rc->X, y1, rgb);
            Line(target, x1, rc->Y, x1, y1, rgb);
        } else if (const auto* ln = std::get_if<core::DrawLine>(&item)) {
            Line(target, static_cast<int>(std::lround(ln->X1)), static_cast<int>(std::lround(ln->Y1)),
                 static_cast<int>(std::lround(ln->X2)), static_cast<int>(std::lround(ln->Y2)), ImageRgb(ln->LineColor));
        }
    }
}

bool WritePpm(const platform::Image& image, const std::string& path) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> f(std::fopen(path.c_str(), "wb"), &std::fclose);
    if (!f) return false;
    std::fprintf(f.get(), "P6\n%d %d\n255\n", image.Width, image.Height);
    std::string bytes;
    bytes.reserve(image.Pixels.size() * 3);
    for (std::uint32_t p : image.Pixels) {
        bytes.push_back(static_cast<char>((p >> 16) & 0xFF));
        bytes.push_back(static_cast<char>((p >> 8) & 0xFF));
        bytes.push_back(static_cast<char>(p & 0xFF));
    }
    return std::fwrite(bytes.data(), 1, bytes.size(), f.get()) == bytes.size();
}

}  // namespace display
