#include "reading/cards.h"

#include <cstdlib>

namespace reading {

namespace {

// The card font as the game's marks look when sampled: 8-bit samples, the
// suit first, then the rank.
constexpr std::array<std::string_view, CardFont::kLast + 1> kCardFontText = {
    "",
    "",
    "0 0 0 7E 7E 21 10 8 C",           // 2
    "0 0 0 3C 62 63 3 6 1C",           // 3
    "0 0 0 F 6 6 7F 66 26",            // 4
    "0 0 0 7C E6 C3 3 47 7E",          // 5
    "0 0 0 1C 36 63 63 73 6E",         // 6
    "0 0 0 18 18 18 8 C 4",            // 7
    "0 0 0 1E 33 33 33 33 1E",         // 8
    "0 0 0 3C 66 22 3 3F 63",          // 9
    "0 0 0 E7 CD D8 D8 D8 D8",         // T
    "0 0 0 3C 6E 66  6  6  6",         // J
    "0 0 7  C 3E 63 C1 C1 C1",         // Q
    "0 0 0 F3 67 66 6C 78 70",         // K
    "0 0 0 77 23 23 3F 1E 16",         // A
    "1C 8 EB FF EB 8 1C 3E 1C",        // C
    "8 1C 3E 7F FF 7F 3E 1C 8",        // D
    "8 1C 3E 7F FF FF FF F7 63",       // H
    "1C 8 6B FF FF 7F 3E 1C 8",        // S
};

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view TrimBlanks(std::string_view s) {
    while (!s.empty() && IsBlank(s.front())) s.remove_prefix(1);
    while (!s.empty() && IsBlank(s.back())) s.remove_suffix(1);
    return s;
}

// Cuts the text at its first "," or, without one, at its first blank; both
// parts trimmed, so a run of blanks separates like one.
std::string_view NextPart(std::string_view& rest) {
    rest = TrimBlanks(rest);
    std::size_t cut = rest.find(',');
    if (cut == std::string_view::npos) {
        cut = 0;
        while (cut < rest.size() && !IsBlank(rest[cut])) ++cut;
    }
    std::string_view part = TrimBlanks(rest.substr(0, cut));
    rest = cut < rest.size() ? TrimBlanks(rest.substr(cut + 1)) : std::string_view{};
    return part;
}

// Leading hexadecimal digits as a number; 0 without any.
unsigned HexValue(std::string_view s) {
    unsigned v = 0;
    for (char c : s) {
        int d;
        if (c >= '0' && c <= '9') d = c - '0';
        else if (c >= 'A' && c <= 'F') d = c - 'A' + 10;
        else if (c >= 'a' && c <= 'f') d = c - 'a' + 10;
        else break;
        v = (v << 4) | static_cast<unsigned>(d);
        if (v > 0xFFFF) v &= 0xFFFF;
    }
    return v;
}

}  // namespace

std::string_view CardFontText(int pos) {
    if (pos < CardFont::kFirst || pos > CardFont::kLast) return {};
    return kCardFontText[static_cast<std::size_t>(pos)];
}

int CardFont::LoadCardFont() {
    int bad = 0;
    for (int pos = kFirst; pos <= kLast; ++pos) {
        const auto i = static_cast<std::size_t>(pos);
        EntryText[i] = std::string(CardFontText(pos));
        CardFontEntry e;
        std::string_view rest = EntryText[i];
        while (!TrimBlanks(rest).empty()) {
            std::string_view part = NextPart(rest);
            if (e.Count < kCornerSampleCount)
                e.Samples[static_cast<std::size_t>(e.Count)] = static_cast<std::uint8_t>(HexValue(part) & 0xFF);
            ++e.Count;
        }
        if (e.Count > kCornerSampleCount) e.Count = kCornerSampleCount;
        if (e.Count != kCardFontSamples) ++bad;
        Entry[i] = e;
    }
    return bad;
}

std::string ParseCardText(std::string_view text, int gameLanguage) {
    std::vector<std::string> ch = SplitChars(text);
    if (ch.size() < 2) return std::string(text);
    if (ch[0] == "1" && ch[1] == "0") {
        ch.erase(ch.begin());
        ch[0] = "T";
    }
    std::string out = ch[0];
    if (ch.size() < 2) return out;
    const std::string& letter = ch[1];
    auto byTable = [&](std::string_view screen) {
        const std::size_t at = letter.size() == 1 ? screen.find(letter[0]) : std::string_view::npos;
        if (at != std::string_view::npos) out += "CDHS"[at];
    };
    switch (gameLanguage) {
        case 3:
        case 9:
            byTable("TDCP");
            break;
        case 5:
            byTable("FQCP");
            break;
        case 7:
        case 8:
            out += letter == "P" ? std::string("S") : letter;
            break;
        default:
            out += letter;
            break;
    }
    return out;
}

std::string TrimUnknown(std::string_view text) {
    std::string_view s = TrimBlanks(text);
    while (!s.empty() && s.back() == '?') s.remove_suffix(1);
    while (!s.empty() && s.front() == '?') s.remove_prefix(1);
    return std::string(s);
}

CardReader::CardReader(Capture& cap, const GlyphTable& glyphs, platform::Sound& sound) : cap_(cap), glyphs_(glyphs) {
    FontErrors = Font.LoadCardFont();
    for (int i = 0; i < FontErrors; ++i) sound.Beep();
}

int CardReader::LinePitchNow() const {
    const int f = glyphs_.ReadingFont;
    return LinePitch[static_cast<std::size_t>(f >= 0 && f < 3 ? f : 1)];
}

int CardReader::CaptHand(HandRead& out) {
    out = HandRead{};
    platform::Windows& windows = cap_.Windows();
    const platform::WindowHandle h = cap_.SubWindowHandle(kSubLastHand);
    // The window is read at the screen's origin, where the game's wider
    // layouts fit.
    if (const auto r = h != 0 ? windows.WindowRect(h) : std::nullopt; r && std::abs(r->Left) + std::abs(r->Top) != 0)
        windows.Move(h, {0, 0, r->Width(), r->Height()});
    if (GameLanguage >= 5 && GameLanguage <= 9 && glyphs_.ReadingFont != 0 && h != 0)
        if (const auto r = windows.WindowRect(h); r && r->Width() < 580)
            windows.Move(h, {r->Left, r->Top, r->Left + 580, r->Bottom});

    std::int32_t grayRow = -1;
    for (int attempt = 0; attempt < 4 && grayRow < 0; ++attempt) {
        if (cap_.CaptureSubWindow(kSubLastHand) == 0) return kReadOk;
        const std::int32_t row = cap_.FindGrayRow(10, 20, 20, 30);
        if (row > 20) grayRow = row;
    }
    if (grayRow < 0) {
        if (cap_.Trace) cap_.Trace("CaptHand: no table in four captures");
        if (MinimizeLastHand) windows.Minimize(h);
        return kHandUnreadable;
    }

    std::int32_t y = grayRow + 4;
    LineBmp& line = cap_.LineBMP;
    line.Dim(0, cap_.BMSub.Width);
    for (int p = 0; p < 4; ++p) {
        cap_.GetLineBMP("CaptHand", y, 2);
        y += LinePitchNow();
        std::int32_t pos = 1;
        std::string name = glyphs_.ReadText(line, pos);
        if (!name.empty() && name[0] == '~') name.erase(0, 1);
        if (name.empty()) name = "      ";
        out.Names[static_cast<std::size_t>(p)] = TrimUnknown(name);
        for (int c = 0; c < 13; ++c) {
            std::string t = glyphs_.ReadText(line, pos);
            std::uint8_t mark = 0;
            if (!t.empty() && t[0] == '[') {
                mark = 1;
                t.erase(0, 1);
            } else if (!t.empty() && t[0] == '(') {
                mark = 2;
                t.erase(0, 1);
            }
            out.Cards[static_cast<std::size_t>(p)][static_cast<std::size_t>(c)] = ParseCardText(t, GameLanguage);
            out.Marks[static_cast<std::size_t>(p)][static_cast<std::size_t>(c)] = mark;
            if (t.find('?') != std::string::npos) {
                if (cap_.Trace) cap_.Trace("CaptHand: unknown shape in card " + std::to_string(c + 1) + " of line " +
                                           std::to_string(p + 1) + ": " + t);
                return kHandUnreadable;
            }
        }
    }
    if (MinimizeLastHand) windows.Minimize(h);
    return kReadOk;
}

std::int32_t CardReader::FindAllBlackRow(std::int32_t left, std::int32_t top, std::int32_t right,
                                         std::int32_t /*bottom*/) const {
    // The search runs down to the capture's last row, whatever the bottom.
    const BM& bm = cap_.BMSub;
    for (std::int32_t y = top < 0 ? 0 : top; y < bm.Height; ++y) {
        bool all = true;
        for (std::int32_t x = left; x < right && all; ++x) all = cap_.BlackAt(bm, x, y);
        if (all) return y;
    }
    return -1;
}

std::int32_t CardReader::FindAllBlackCol(std::int32_t left, std::int32_t top, std::int32_t right,
                                         std::int32_t bottom) const {
    const BM& bm = cap_.BMSub;
    if (left < 0 || top < 0 || bottom > bm.Height || bm.Lines <= 0) return -1000;
    for (std::int32_t x = left; x <= right; ++x) {
        bool all = true;
        for (std::int32_t y = top; y < bottom && all; ++y) all = cap_.BlackAt(bm, x, y);
        if (all) return x;
    }
    return -1;
}

void CardReader::ReadCardCorner(std::int32_t x, std::int32_t y, int k) {
    CornerError = 0;
    CornerSamples.fill(0);
    const BM& bm = cap_.BMSub;
    // A pixel whose buffer index would fall before the buffer's start is an
    // error; one merely outside the window counts as no ink.
    auto before = [&](std::int32_t px, std::int32_t py) {
        return static_cast<std::int64_t>(bm.Height - 1 - py) * bm.Length + px < 0;
    };
    if (k == 1 || k == 3) {
        // Upright card: a sample is a column of 8 pixels, row y = bit 7.
        auto column = [&](std::int32_t px, std::uint8_t& s) {
            s = 0;
            for (int b = 0; b < kCornerSampleBits; ++b) {
                if (before(px, y + b)) return false;
                std::uint16_t p;
                if (cap_.Pixel(bm, px, y + b, p) && GreenOf(p) < 15) s |= static_cast<std::uint8_t>(0x80 >> b);
            }
            return true;
        };
        std::int32_t start = -1;
        for (int c = 0; c < kCornerSampleBits && start < 0; ++c) {
            std::uint8_t s;
            if (!column(x + c, s)) {
                CornerError = 1;
                return;
            }
            if (s != 0) start = x + c;
        }
        if (start < 0) return;
        for (int c = 0; c < kCornerSampleCount; ++c) {
            if (!column(start + c, CornerSamples[static_cast<std::size_t>(c)])) {
                CornerError = 1;
                return;
            }
        }
    } else {
        // Sideways card: sample c is the row y + 21 - c, pixel x = bit 7.
        for (int c = 0; c < kCornerSampleCount; ++c) {
            const std::int32_t py = y + kCornerSampleCount - 1 - c;
            std::uint8_t s = 0;
            for (int b = 0; b < kCornerSampleBits; ++b) {
                if (before(x + b, py)) {
                    CornerError = 2;
                    CornerSamples.fill(0);
                    return;
                }
                std::uint16_t p;
                if (cap_.Pixel(bm, x + b, py, p) && BlueOf(p) == 0) s |= static_cast<std::uint8_t>(0x80 >> b);
            }
            if (c == 0 && s == 0) return;
            CornerSamples[static_cast<std::size_t>(c)] = s;
        }
    }
}

void CardReader::MatchCard(int& suit, int& rank) const {
    auto matchesAt = [&](int pos, int q) {
        const CardFontEntry& e = Font.Entry[static_cast<std::size_t>(pos)];
        if (q >= kCornerSampleCount || e.Samples[0] != CornerSamples[static_cast<std::size_t>(q)]) return false;
        for (int i = 1; i < e.Count; ++i) {
            if (q + i >= kCornerSampleCount) return false;
            if (e.Samples[static_cast<std::size_t>(i)] != CornerSamples[static_cast<std::size_t>(q + i)]) return false;
        }
        return true;
    };
    suit = 0;
    rank = 0;
    int q = 0;
    bool found = false;
    for (int pos = CardFont::kFirstSuit; pos <= CardFont::kLast && !found; ++pos) {
        if (matchesAt(pos, q)) {
            suit = pos - CardFont::kFirstSuit;
            q += Font.Entry[static_cast<std::size_t>(pos)].Count;
            found = true;
        }
    }
    if (!found) return;
    for (int pos = CardFont::kFirst; pos < CardFont::kFirstSuit; ++pos) {
        if (matchesAt(pos, q)) {
            rank = pos;
            return;
        }
    }
}

bool CardReader::ReadTrickOnce(TrickRead& out) {
    if (cap_.CaptureSubWindow(kSubLastTrick) == 0) return false;
    std::array<std::int32_t, 4> xs{}, ys{};
    const std::int32_t y0 = FindAllBlackRow(110, 0, 130, 15);
    if (y0 < 0) return false;
    ys[2] = y0 + 3;
    const std::int32_t top = FindAllBlackRow(110, y0 + 4, 130, 100) + 1;
    const std::int32_t y1 = FindAllBlackRow(110, top, 130, 100);
    ys[0] = y1 + 3;
    const std::int32_t y2 = FindAllBlackRow(30, 40, 50, 100);
    ys[1] = ys[3] = y2 + 3;
    const std::int32_t x0 = FindAllBlackCol(85, 30, 110, 60);
    if (x0 + 3 < 0) return false;
    xs[0] = xs[2] = x0 + 3;
    const std::int32_t x1 = FindAllBlackCol(65, 70, 85, 90);
    xs[1] = x1 - 25;
    if (xs[1] < 0) return false;
    const std::int32_t x2 = FindAllBlackCol(230, 70, cap_.BMSub.Width, 90);
    xs[3] = x2 - 25;
    for (int k = 0; k < 4; ++k) {
        ReadCardCorner(xs[static_cast<std::size_t>(k)], ys[static_cast<std::size_t>(k)], k);
        if (CornerError != 0) return false;
        int suit, rank;
        MatchCard(suit, rank);
        if (rank == 0) return false;
        out.Suits[static_cast<std::size_t>(k)] = suit;
        out.Ranks[static_cast<std::size_t>(k)] = rank;
    }
    return true;
}

void CardReader::TakeTrick(const TrickRead& t, bool show) {
    for (std::size_t k = 0; k < 4; ++k) {
        if (show && ShowPlayedCards && DrawPlayedCard) DrawPlayedCard(static_cast<int>(k), t.Suits[k], t.Ranks[k]);
        if (show) ++CardsSeen;
        LastTrickSuits[k] = t.Suits[k];
        LastTrickRanks[k] = t.Ranks[k];
    }
}

bool CardReader::ReadLastTrick(TrickRead& out, int mode) {
    out = TrickRead{};
    bool read = false;
    for (int attempt = 0; attempt < 2 && !read; ++attempt) {
        TrickRead t;
        if (ReadTrickOnce(t)) {
            out = t;
            read = true;
        }
    }
    if (!read) {
        out = TrickRead{};
        out.Suits[0] = -1;
        return false;
    }
    if (mode == 1) {
        TakeTrick(out, false);
    } else if (mode == 2) {
        for (std::size_t k = 0; k < 4; ++k) {
            if (out.Suits[k] == LastTrickSuits[k] && out.Ranks[k] == LastTrickRanks[k]) {
                // The window still shows the trick taken over before.
                out = TrickRead{};
                return true;
            }
        }
        TakeTrick(out, true);
    } else {
        TakeTrick(out, true);
    }
    return true;
}

}  // namespace reading
