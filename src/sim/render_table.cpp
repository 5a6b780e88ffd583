#include "sim/render_table.h"

#include <algorithm>

#include "reading/win_titles.h"
#include "sim/glyph_draw.h"

namespace sim {

namespace {

constexpr std::uint32_t kBackground = platform::Rgb(236, 233, 216);
constexpr std::uint32_t kTitleBar = platform::Rgb(0, 84, 227);
constexpr std::uint32_t kFrame = platform::Rgb(40, 0, 0);
constexpr std::uint32_t kFelt = platform::Rgb(200, 232, 200);
constexpr std::uint32_t kInk = 0x000000;
constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr std::uint32_t kButtonFace = platform::Rgb(228, 226, 220);
constexpr std::uint32_t kButtonShadow = platform::Rgb(96, 96, 96);
constexpr std::uint32_t kListLine = platform::Rgb(128, 128, 128);
constexpr std::uint32_t kPanel = platform::Rgb(214, 224, 236);
constexpr std::uint32_t kSeatName = platform::Rgb(0, 0, 160);
constexpr std::uint32_t kRedSuit = platform::Rgb(204, 0, 0);
constexpr std::uint32_t kDarkSuit = platform::Rgb(40, 40, 40);

SiteTexts Make(std::array<std::string, 5> b, std::string dnil, std::string suicide, std::array<std::string, 3> wait,
               std::string nil, std::string dn, std::string show, std::string nilLetter, std::string dnLetter) {
    return SiteTexts{std::move(b), std::move(dnil), std::move(suicide), std::move(wait), std::move(nil), std::move(dn),
                     std::move(show), std::move(nilLetter), std::move(dnLetter)};
}

const std::array<SiteTexts, 11>& AllTexts() {
    static const std::array<SiteTexts, 11> t = [] {
        std::array<SiteTexts, 11> a{};
        a[1] = Make({"Stand Up", "Last Trick", "Last Hand", "Score", "Options"}, "DNil Passing", "Suicide",
                    {"Click Start to play", "Press Start", "Waiting for an opponent"}, "Nil", "Double Nil", "Show Cards",
                    "N", "D");
        a[2] = Make({"立つ", "最後のトリック", "最後のハンド", "スコア", "オプション"}, "ダブルニルパス", "スーサイド",
                    {"開始を押す", "席につく", "待っています。"}, "Nil", "Double Nil", "Show", "N", "D");
        a[3] = Make({"Aufstehen", "Letzter Stich", "Letztes Spiel", "Spielstand", "Optionen"}, "DNil Passing", "Selbstmord",
                    {"Klicken Sie auf Start", "Warten auf Spieler", ""}, "Nil", "Double Nil", "Zeigen", "N", "D");
        a[5] = Make({"Alzati", "Ultima presa", "Ultima mano", "Punteggio", "Opzioni"}, "DZ passaggio", "Suicidio",
                    {"In attesa di giocatori", "Clicca su Inizia", ""}, "Zero", "Doppio zero", "Mostra", "Z", "Q");
        const std::string ult = "\xC3\x9Altima";  // "Última"
        a[6] = Make({"Levantarse", ult + " baza", ult + " mano", "Puntos", "Opciones"}, "Pasar y nulo", "Suicidio",
                    {"Esperando jugadores", "Haga clic en Empezar", ""}, "Nulo", "Nula doble", "Mostrar", "N", "D");
        a[7] = a[6];
        a[7].Buttons[3] = "Puntuaci\xC3\xB3n";
        a[8] = a[7];
        a[9] = a[6];
        a[4] = a[1];
        a[10] = a[1];
        a[0] = a[1];
        return a;
    }();
    return t;
}

void Raised(platform::Image& img, int x, int y, int w, int h, std::uint32_t face) {
    img.FillRect(x, y, x + w, y + h, face);
    img.FillRect(x, y, x + w, y + 1, kWhite);
    img.FillRect(x, y, x + 1, y + h, kWhite);
    img.FillRect(x, y + h - 1, x + w, y + h, kButtonShadow);
    img.FillRect(x + w - 1, y, x + w, y + h, kButtonShadow);
}

// A button with its caption centred the way the game centres it.
void Button(platform::Image& img, int x, int y, int w, int h, const std::string& text, const reading::GlyphTable& g) {
    Raised(img, x, y, w, h, kButtonFace);
    const int tw = GlyphTextWidth(text, g);
    DrawGlyphText(img, x + (w - tw + 1) / 2, y + 5, text, kInk, g);
}

void Outline(platform::Image& img, int x0, int y0, int x1, int y1, std::uint32_t rgb) {
    img.FillRect(x0, y0, x1 + 1, y0 + 1, rgb);
    img.FillRect(x0, y1, x1 + 1, y1 + 1, rgb);
    img.FillRect(x0, y0, x0 + 1, y1 + 1, rgb);
    img.FillRect(x1, y0, x1 + 1, y1 + 1, rgb);
}

// The suit marks of the cards in the middle (a heart, a spade and a
// diamond lying on their side), as rows of the card's inner area.
constexpr std::array<std::array<const char*, 8>, 3> kSuitMarks = {{
    {".............####..........", "............######.........", "...........#######.........",
     "..........#######..........", ".........#######...........", "..........#######..........",
     "...........#######.........", "............######........."},
    {"............##.............", "...........####............", "...........#####...........",
     ".........#..#####..........", ".........#########.........", ".........#..#####..........",
     "...........#####...........", "...........####............"},
    {".............#.............", "............###............", "...........#####...........",
     "..........#######..........", ".........#########.........", "..........#######..........",
     "...........#####...........", "............###............"},
}};

void Card(platform::Image& img, int x, int y, int i) {
    img.FillRect(x, y, x + 29, y + 28, kWhite);
    Outline(img, x, y, x + 28, y + 27, kListLine);
    const int kind = i % 3;
    const std::uint32_t c = kind == 1 ? kDarkSuit : kRedSuit;
    for (int r = 0; r < 8; ++r)
        for (int k = 0; kSuitMarks[static_cast<std::size_t>(kind)][static_cast<std::size_t>(r)][k] != '\0'; ++k)
            if (kSuitMarks[static_cast<std::size_t>(kind)][static_cast<std::size_t>(r)][k] == '#') img.Set(x + 1 + k, y + 10 + r, c);
}

std::string BidText(const std::string& code, const SiteTexts& t) {
    if (code == "N") return t.NilLetter;
    if (code == "D" || code == "DP") return t.DoubleNilLetter;
    return code;
}

}  // namespace

const SiteTexts& TextsFor(int language) {
    const auto& all = AllTexts();
    return all[static_cast<std::size_t>(language >= 0 && language <= 10 ? language : 1)];
}

platform::Image RenderTableWindow(const TableView& v, const reading::GlyphTable& g) {
    using L = TableLayout;
    static const reading::WinTitles titles;
    const SiteTexts& t = TextsFor(v.Language);
    platform::Image img(std::max(v.Width, 1), std::max(v.Height, 1), kBackground);

    img.FillRect(0, 0, img.Width, 23, kTitleBar);
    DrawGlyphText(img, 6, 6, v.Title, kWhite, g);

    // Left column: buttons, then the table markers.
    for (int i = 0; i < 5; ++i)
        if (v.Buttons[static_cast<std::size_t>(i)])
            Button(img, L::kButtonLeft, L::kButtonTop + i * L::kButtonStep, L::kButtonWidth, L::kButtonHeight,
                   t.Buttons[static_cast<std::size_t>(i)], g);
    int markerY = L::kMarkerTop;
    if (v.DNilPassMarker) {
        DrawGlyphText(img, L::kButtonLeft + 4, markerY, t.DNilPassMarker, kInk, g);
        markerY += L::kMarkerStep;
    }
    if (v.SuicideMarker) DrawGlyphText(img, L::kButtonLeft + 4, markerY, t.SuicideMarker, kInk, g);

    // The table area: frame, felt, seat names around it.
    const int bl = v.BoxLeft, bt = v.BoxTop, br = bl + 235, bb = bt + 149;
    img.FillRect(bl - 5, bt - 5, br + 6, bb + 6, kFrame);
    img.FillRect(bl - 4, bt - 4, br + 5, bb + 5, kFelt);
    auto seat = [&](int pos, int x, int y, bool alignRight, bool centre) {
        const std::string& name = v.SeatNames[static_cast<std::size_t>(pos)];
        if (name.empty()) return;
        const int w = GlyphTextWidth(name, g);
        const int sx = centre ? (bl + br - w + 1) / 2 : alignRight ? x - w : x;
        DrawGlyphText(img, sx, y, name, kSeatName, g);
    };
    seat(2, 0, bt - 22, false, true);
    seat(0, 0, bb + 9, false, true);
    seat(1, bl - 10, (bt + bb) / 2 - 6, true, false);
    seat(3, br + 10, (bt + bb) / 2 - 6, false, false);

    for (int i = 0; i < std::clamp(v.TrickCards, 0, 4); ++i) Card(img, bl + 69 + 34 * i, bt + 56, i);

    const std::string& bidLabel = titles.BidLabel(v.Language);
    const std::string& trickLabel = titles.TrickLabel(v.Language);
    for (int p = 0; p < 4; ++p) {
        const auto& bid = v.Bids[static_cast<std::size_t>(p)];
        if (!bid) continue;
        const auto& at = L::kBidLabel[static_cast<std::size_t>(p)];
        std::string text = bidLabel;
        if (!bid->empty()) text += " " + BidText(*bid, t);
        DrawGlyphText(img, bl + at[0], bt + at[1], text, kInk, g);
    }
    for (int q = 0; q < 4; ++q) {
        const auto& tr = v.Tricks[static_cast<std::size_t>(q)];
        if (!tr) continue;
        const auto& at = L::kTrickLabel[static_cast<std::size_t>(q)];
        DrawGlyphText(img, bl + at[0], bt + at[1], trickLabel + " " + std::to_string(*tr), kInk, g);
    }
    if (v.WaitPrompt >= 0 && v.WaitPrompt < 3) {
        const std::string& prompt = t.WaitPrompts[static_cast<std::size_t>(v.WaitPrompt)];
        const int w = GlyphTextWidth(prompt, g);
        DrawGlyphText(img, (bl + br - w) / 2, bt + 60, prompt, kInk, g);
    }
    if (v.MyTurn) {
        for (int r = 0; r < 4; ++r) img.FillRect(bl + 113 + r, bt + 106 + r, bl + 122 - r, bt + 107 + r, kListLine);
        img.FillRect(bl + 107, bt + 114, bl + 128, bt + 120, kInk);
    }

    // Player list below the table, ID and rating columns; the text area left of it.
    const int ty = L::ListTop(v.Width, bb);
    const std::size_t textLines = std::min(v.TextArea.size(), static_cast<std::size_t>(L::kTextAreaLines));
    for (std::size_t i = 0; i < textLines; ++i)
        DrawGlyphText(img, L::kTextAreaLeft, ty + 4 + static_cast<int>(i) * L::kListRowStep,
                      v.TextArea[v.TextArea.size() - textLines + i], kInk, g);
    if (!v.Players.empty()) {
        const int lx = bl + 175, rx = std::max(lx + 120, img.Width - 10);
        const int rows = static_cast<int>(v.Players.size());
        const int by = ty + rows * L::kListRowStep + 17;
        const int sep = lx + 105;
        img.FillRect(lx, ty, rx + 1, by + 1, kWhite);
        Outline(img, lx, ty, rx, by, kListLine);
        img.FillRect(sep, ty + 2, sep + 1, by, kListLine);
        for (int i = 0; i < rows; ++i) {
            const int band = ty + 4 + i * L::kListRowStep;
            const bool hi = i == v.Highlight;
            if (hi) img.FillRect(lx + 1, band + 1, rx, band + 13, kInk);
            const std::uint32_t ink = hi ? kWhite : kInk;
            DrawGlyphText(img, lx + 16, band, v.Players[static_cast<std::size_t>(i)].Id, ink, g);
            DrawGlyphText(img, sep + 6, band, v.Players[static_cast<std::size_t>(i)].Rating, ink, g);
        }
    }

    // Bid panel.
    if (v.Panel == 100) {
        img.FillRect(L::kPanelLeft, L::kPanelTop, L::kPanelLeft + 156, L::kPanelTop + 82, kPanel);
        for (int b = 1; b <= 14; ++b) {
            const int row = (b - 1) / 5, col = (b - 1) % 5;
            const int x = L::kPanelLeft + 6 + col * L::kBidButtonStep, y = L::kPanelTop + 3 + row * L::kBidRowStep;
            const bool nil = b == 14;
            Button(img, x, y, nil ? 30 : L::kBidButtonWidth, L::kBidButtonHeight, nil ? t.NilButton : std::to_string(b), g);
        }
    } else if (v.Panel == 200) {
        const int w1 = GlyphTextWidth(t.DoubleNilButton, g) + 14, w2 = GlyphTextWidth(t.ShowButton, g) + 14;
        img.FillRect(L::kPanelLeft, L::kPanelTop, L::kPanelLeft + 22 + w1 + w2, L::kPanelTop + 30, kPanel);
        Button(img, L::kPanelLeft + 6, L::kPanelTop + 3, w1, L::kBidButtonHeight, t.DoubleNilButton, g);
        Button(img, L::kPanelLeft + 16 + w1, L::kPanelTop + 3, w2, L::kBidButtonHeight, t.ShowButton, g);
    }
    return img;
}

}  // namespace sim
