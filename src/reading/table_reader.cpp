#include "reading/table_reader.h"

#include <algorithm>
#include <climits>
#include <cstdio>

#include "core/text.h"

namespace reading {

namespace {

constexpr std::uint16_t kFrameColor = 0x1400;  // red 5, green 0, blue 0
constexpr std::uint32_t kSearchPauseMs = 200;

bool IsPunct(const std::string& g) { return g == "_" || g == "-" || g == "." || g == ".." || g == ":"; }

}  // namespace

TableReader::TableReader(Capture& cap, GlyphTable& glyphs, const WinTitles& titles)
    : cap_(cap), glyphs_(glyphs), titles_(titles) {}

void TableReader::DimLine(std::int32_t lo, std::int32_t hi) {
    cap_.LineBMP.Dim(lo, hi);
    // A fresh band has no previous rows to shift from.
    cap_.LastLine = INT_MIN / 2;
}

bool TableReader::GameRect(platform::Rect& r) {
    if (cap_.GameWindow == 0) return false;
    const std::optional<platform::Rect> outer = cap_.Windows().WindowRect(cap_.GameWindow);
    if (!outer) return false;
    r = *outer;
    if (r.Left <= kLeftEdgeLimit) {
        SavedGameRect = r;
    } else if (SavedGameRect.Width() > 0) {
        r = SavedGameRect;
    }
    return true;
}

void TableReader::SelectReadingFont() {
    glyphs_.ReadingFont = 1;
    glyphs_.DigitsOn = true;
    cap_.FontIndex = 1;
    glyphs_.SelectFont(1, GameLanguage, titles_.BidLabel(GameLanguage), titles_.TrickLabel(GameLanguage));
}

// --- table box ----------------------------------------------------------------------

TableReader::BoxCacheEntry* TableReader::CacheFor(int width) {
    if (width < kCacheMinWidth) return nullptr;
    if (cache_.empty()) cache_.resize(900 - kCacheMinWidth + 1);
    if (width - kCacheMinWidth >= static_cast<int>(cache_.size())) cache_.resize(static_cast<std::size_t>(width - kCacheMinWidth + 1));
    return &cache_[static_cast<std::size_t>(width - kCacheMinWidth)];
}

void TableReader::SetBox(std::int32_t left, std::int32_t top) {
    BoxLeft = left;
    BoxTop = top;
    BoxRight = left + kBoxWidth;
    BoxBottom = top + kBoxHeight;
    BoxCenterX = (BoxLeft + BoxRight) / 2;
    BoxCenterY = (BoxTop + BoxBottom) / 2;
}

bool TableReader::SearchBox(int width) {
    const std::int32_t top = GameLanguage == LangJapan ? 140 : 200;
    const platform::Rect region{200, top, 350, 500};
    cap_.CaptureGameRect(region);
    const BM& rec = cap_.BMScreen;
    if (rec.Lines > 0) {
        const int r = RedOf(kFrameColor), g = GreenOf(kFrameColor), b = BlueOf(kFrameColor);
        auto near = [&](std::int32_t x, std::int32_t y) {
            std::uint16_t p;
            return cap_.Pixel(rec, x, y, p) && IsNearColor(p, r, g, b);
        };
        for (std::int32_t y = region.Bottom - 10; y >= region.Top; --y) {
            for (std::int32_t x = region.Left; x <= region.Right - 10; ++x) {
                if (!near(x + 1, y) || !near(x + 2, y) || !near(x + 3, y) || !near(x + 4, y)) continue;
                if (!near(x, y - 1) || !near(x, y - 2)) continue;
                SetBox(x + 5, y - 5 - kBoxHeight);
                if (BoxStatus) BoxStatus(std::to_string(BoxLeft) + "," + std::to_string(BoxTop), true);
                if (BoxCacheEntry* c = CacheFor(width)) {
                    c->Left = BoxLeft;
                    c->Top = BoxTop;
                    c->Found = true;
                }
                return true;
            }
        }
    }
    if (BoxStatus) BoxStatus("BOX (" + std::to_string(BoxTries) + ")", false);
    if (BoxCacheEntry* c = CacheFor(width)) *c = BoxCacheEntry{};
    SetBox(0, 0);
    BoxRight = BoxBottom = BoxCenterX = BoxCenterY = 0;
    return false;
}

void TableReader::LocateBox() {
    if (ReduceWidth == 624 && GameLanguage == LangUSA) {
        BoxLeft = 236, BoxTop = 247, BoxRight = 471, BoxBottom = 396, BoxCenterX = 353, BoxCenterY = 321;
        NameListTop = 503;
        return;
    }
    if (cap_.GameWindow != 0 && platform::IsMinimized(cap_.Windows(), cap_.GameWindow))
        cap_.Windows().Restore(cap_.GameWindow);
    platform::Rect wr;
    const int w = GameRect(wr) ? wr.Width() : 0;
    BoxCacheEntry* c = CacheFor(w);

    if (c && c->Found) {
        if (w == prevWidth_) {
            for (int p = 0; p < 4; ++p) {
                c->BidX[static_cast<std::size_t>(p)] = BidPos[static_cast<std::size_t>(p)].X;
                c->TrickX[static_cast<std::size_t>(p)] = TrickPos[static_cast<std::size_t>(p)].X;
            }
        }
        SetBox(c->Left, c->Top);
    } else {
        bool found = false;
        for (BoxTries = 1; BoxTries <= BoxSearchTries; ++BoxTries) {
            if (SearchBox(w)) {
                found = true;
                break;
            }
            if (BoxTries < BoxSearchTries) cap_.Clock().Wait(kSearchPauseMs);
        }
        if (!found) {
            BoxTries = BoxSearchTries;
            prevWidth_ = w;
            return;
        }
        if (NameListTop == 0) {
            const platform::Rect region{BoxCenterX + 50, BoxBottom, 0, 0};
            cap_.CaptureGameRect(region);
            const BM& rec = cap_.BMScreen;
            if (rec.Lines > 0) {
                const platform::Point pt = FindListCorner(rec, platform::Rect{rec.Left, rec.Top, rec.Right, rec.Bottom});
                if (pt.Y != 0) NameListTop = pt.Y;
            }
        }
        c = CacheFor(w);
    }
    prevWidth_ = w;
    for (int p = 0; p < 4; ++p) {
        const std::size_t i = static_cast<std::size_t>(p);
        const std::int32_t bx = c ? c->BidX[i] : 0;
        const std::int32_t tx = c ? c->TrickX[i] : 0;
        BidPos[i].X = bx != 0 ? bx : (p == 0 || p == 3 ? BoxCenterX : BoxLeft);
        TrickPos[i].X = tx != 0 ? tx : (p == 0 || p == 1 ? BoxLeft : BoxCenterX);
    }
}

platform::Point TableReader::FindListCorner(const BM& rec, const platform::Rect& r) const {
    auto white = [&](std::int32_t x, std::int32_t y) {
        std::uint16_t p;
        return cap_.Pixel(rec, x, y, p) && IsWhite(p);
    };
    auto gray = [&](std::int32_t x, std::int32_t y) {
        std::uint16_t p;
        return cap_.Pixel(rec, x, y, p) && IsGray(p);
    };
    for (std::int32_t y = r.Top; y <= r.Bottom - 10; ++y) {
        for (std::int32_t x = r.Left; x <= r.Right - 10; ++x) {
            if (!white(x, y) || !white(x + 1, y) || !white(x + 2, y)) continue;
            if (!white(x, y + 1) || !gray(x + 1, y + 1) || !white(x + 2, y + 1)) continue;
            if (!white(x, y + 2) || !gray(x + 1, y + 2) || !white(x + 2, y + 2)) continue;
            return {x + 1, y - 1};
        }
    }
    return {0, 0};
}

// --- left button column ---------------------------------------------------------------

void TableReader::SetTableFlag(int slot) {
    bool& flag = slot == ButtonDNilPass ? DNilPassTable : SuicideTable;
    if (flag) return;
    flag = true;
    if (TableFlagSet) TableFlagSet(slot);
}

void TableReader::ScanButtons() {
    if (cap_.GameWindow == 0) return;
    cap_.Windows().SetTopmost(cap_.GameWindow, true);
    cap_.Windows().Restore(cap_.GameWindow);
    platform::Rect wr;
    if (!GameRect(wr)) return;
    const platform::Rect g = wr.Left <= kLeftEdgeLimit ? wr : SavedGameRect;
    const platform::Rect region{g.Left, g.Top + 65, g.Left + 200, g.Bottom};
    cap_.CaptureScreenRect(region);
    if (cap_.BMScreen.Lines <= 0) return;

    glyphs_.ReadingFont = 1;
    cap_.FontIndex = 1;
    glyphs_.DigitsOn = true;

    for (int pass = 0; pass < 2; ++pass) {
        int count = 0;
        DimLine(region.Left, region.Right);
        for (std::int32_t y = region.Top; y < region.Bottom - 15 && count < 4; ++y) {
            cap_.GetLineBMPmain("Scan Button", y);
            if (cap_.LineBMP[cap_.LineBMP.lo] == 0) continue;
            for (int k = ButtonLastTrick; k <= ButtonSuicide && count < 4; ++k) {
                platform::Point& pt = SubButtonXY[static_cast<std::size_t>(k)];
                if (pt.X != 0 || pt.Y != 0) continue;
                std::int32_t at = glyphs_.FindText(cap_.LineBMP, region.Left + 1, titles_.ButtonWord(GameLanguage, k));
                if (at == 0 && k == ButtonScore && GameLanguage == LangSpain) {
                    // The two Spanish sites differ in the score button's word.
                    at = glyphs_.FindText(cap_.LineBMP, region.Left + 1, titles_.ButtonWord(LangEspanol, k));
                    if (at != 0) GameLanguage = LangEspanol;
                }
                if (at == 0) continue;
                pt = {at, y};
                ++count;
                y += 12;
                if (k == ButtonDNilPass || k == ButtonSuicide) SetTableFlag(k);
            }
        }
        if (count >= 3) break;
    }
}

// --- words and the player list --------------------------------------------------------

std::string TableReader::ReadWords(std::int32_t start, int skip, int gap, std::vector<std::int32_t>* starts) const {
    const LineBmp& line = cap_.LineBMP;
    if (starts) starts->clear();
    std::int32_t p = std::max(start, line.lo);
    if (skip > 0) p = std::min(p + skip - 1, line.hi);
    std::string text;
    std::int32_t lastEnd = p;
    while (p < line.hi) {
        if (line[p] == 0) {
            ++p;
            if (p - lastEnd > gap && !text.empty() && text.back() != ',') text += ',';
            continue;
        }
        const std::int32_t q = p;
        const std::string g = glyphs_.GlyphMatch(line, line[p], p);
        if (g == "?") continue;
        if (IsPunct(g)) {
            if (text.empty()) continue;
        } else if (text.empty() || text.back() == ',') {
            if (starts) starts->push_back(q);
        }
        text += g;
        lastEnd = p;
    }
    if (core::Len(text) < 4) {
        text.clear();
        if (starts) starts->clear();
    }
    if (!text.empty() && text.back() == ',') text.pop_back();
    return text;
}

int TableReader::CountAlnum(const std::string& text) {
    int n = 0;
    for (char c : text)
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) ++n;
    return n;
}

void TableReader::MakePlayerList() {
    if (cap_.GameWindow == 0) return;
    if (cap_.Trace) {
        const platform::LocalTime t = cap_.Clock().Now();
        char stamp[80];
        std::snprintf(stamp, sizeof stamp, "%04d/%02d/%02d %02d:%02d:%02d", t.Year, t.Month, t.Day, t.Hour, t.Minute, t.Second);
        cap_.Trace(std::string(stamp) + " MakePlayerList " + std::to_string(cap_.GameWindow));
    }
    platform::Rect wr;
    if (!GameRect(wr)) return;
    if (BoxLeft == 0) LocateBox();
    if (BoxLeft == 0) return;
    const platform::Rect region{BoxRight - 50, NameListTop != 0 ? NameListTop : BoxBottom, wr.Width(), wr.Height()};
    cap_.CaptureGameRect(region);
    if (region.Left > region.Right) return;

    LineBmp& line = cap_.LineBMP;
    DimLine(region.Left, region.Right);
    cap_.LineBMPSave.Dim(region.Left, region.Right);
    TableNames.clear();
    for (std::int32_t y = region.Top; y <= region.Bottom - 15; ++y) {
        cap_.GetLineBMPmain("MakePlayerList", y);
        for (int pass = 0; pass < 2; ++pass) {
            if (pass == 0) cap_.LineBMPSave = line;
            std::uint16_t any = 0;
            for (std::int32_t x = line.lo + 1; x <= line.hi - 1; ++x) {
                // A highlighted row is light text on a dark bar.
                if (pass == 1) line[x] ^= 0x7FF;
                line[x] &= 0x7FF;
                any |= line[x];
            }
            if (any != 0) {
                std::string text = core::Trim(ReadWords(region.Left, 5, 5));
                while (!text.empty() && text.front() == '?') text.erase(0, 1);
                while (!text.empty() && text.back() == '?') text.pop_back();
                text = core::Trim(text);
                const std::size_t comma = core::InStr(text, ",");
                if (core::Len(text) >= 6 && (comma == 0 || comma >= 5) &&
                    static_cast<int>(TableNames.size()) < kMaxTableNames)
                    TableNames.push_back(text);
            }
            line = cap_.LineBMPSave;
        }
    }
    TableNamesRead = static_cast<int>(TableNames.size());
}

std::vector<std::string> TableReader::ReadTextArea() {
    constexpr std::int32_t kLeft = 50, kRight = 400, kBottom = 580, kBandRows = 20;
    std::vector<std::string> lines;
    platform::Rect wr;
    if (!GameRect(wr)) return lines;
    if (BoxLeft == 0) LocateBox();
    if (BoxLeft == 0) return lines;
    const std::int32_t top = NameListTop != 0 ? NameListTop : BoxBottom;
    const std::int32_t bottom = std::min(kBottom, wr.Height());
    if (top >= bottom - kBandRows) return lines;
    cap_.CaptureGameRect(platform::Rect{kLeft, top, kRight, bottom});
    if (cap_.BMScreen.Lines == 0) return lines;
    LineBmp& line = cap_.LineBMP;
    DimLine(kLeft, kRight);
    for (std::int32_t y = top; y <= bottom - kBandRows; ++y) {
        cap_.GetLineBMPmain("GetRenewedRating", y);
        std::uint16_t any = 0;
        for (std::int32_t x = line.lo + 1; x <= line.hi - 1; ++x) {
            line[x] &= 0x7FF;
            any |= line[x];
        }
        if (any == 0) continue;
        std::int32_t p = line.lo + 1;
        std::string text = glyphs_.ReadText(line, p);
        // Rows between two text lines match no glyph at all.
        if (text.find_first_not_of('?') != std::string::npos) lines.push_back(std::move(text));
    }
    return lines;
}

int TableReader::ReadTablePlayers() {
    SelectReadingFont();
    MakePlayerList();
    for (std::size_t i = 0; i < TableNames.size(); ++i)
        if (CountAlnum(TableNames[i]) >= 5) return static_cast<int>(i) + 1;
    return 0;
}

// --- bids and tricks --------------------------------------------------------------------

bool TableReader::CaptureBox(int extraRows) {
    if (BoxLeft == 0) return false;
    cap_.CaptureGameRect(platform::Rect{BoxLeft, BoxTop, BoxRight, BoxBottom + extraRows});
    return cap_.BMScreen.Lines > 0;
}

std::string TableReader::BidOfValue(const std::string& v) const {
    static const char* const kBids[] = {"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12", "13"};
    for (const char* b : kBids)
        if (v == b) return v;
    if (v == "N" || v == "Z") return "N";
    if (v == "D" || v == "Q") return DNilPassTable ? "DP" : "D";
    return "";
}

namespace {

// The text after the first ":" of a label reading; false when there is none.
bool AfterColon(const std::string& t, std::string& v) {
    const std::size_t c = t.find(':');
    if (c == std::string::npos) return false;
    v = core::Unquote(t.substr(c + 1));
    return true;
}

}  // namespace

void TableReader::CaptureBid(std::array<std::string, 4>& bids, int& status) {
    LocateBox();
    if (!CaptureBox(15)) return;
    for (auto& b : bids) b.clear();
    LineBmp& line = cap_.LineBMP;

    DimLine(BoxLeft, BoxRight);
    const auto& waits = titles_.WaitWords(GameLanguage);
    for (std::int32_t y = BoxTop + 20; y <= BoxBottom - 20; ++y) {
        cap_.GetLineBMPmain("Ask Wait", y);
        if (line[line.lo] == 0) continue;
        for (const auto& w : waits) {
            if (!w.empty() && glyphs_.FindWord(line, w)) {
                status = kBidWaitPrompt;
                return;
            }
        }
    }

    BidCount = 0;
    const std::string& label = titles_.BidLabel(GameLanguage);
    static const int kPairedTricks[4] = {0, 3, 2, 1};
    for (int p = 0; p < 4; ++p) {
        platform::Point& pos = BidPos[static_cast<std::size_t>(p)];
        std::string text;
        bool done = false;
        DimLine(BoxLeft, BoxRight);
        if (pos.Y > BoxTop) {
            cap_.GetLineBMPmain("Read Bid", pos.Y);
            if (line[line.lo] == 0) {
                done = true;
            } else if (const std::int32_t s = glyphs_.ReadNumber(line, label, text); s != 0) {
                pos.X = s;
                done = true;
            } else {
                pos.Y = 0;  // the label has moved
            }
        }
        if (!done) {
            const bool right = p == 0 || p == 3, lower = p == 0 || p == 1;
            const std::int32_t ql = right ? BoxCenterX : BoxLeft, qr = right ? BoxRight : BoxCenterX;
            const std::int32_t qt = lower ? BoxCenterY : BoxTop, qb = lower ? BoxBottom : BoxCenterY;
            DimLine(ql, qr);
            for (std::int32_t y = qt; y < qb; ++y) {
                cap_.GetLineBMPmain("Search Bid", y);
                if (line[line.lo] == 0) continue;
                if (const std::int32_t s = glyphs_.ReadNumber(line, label, text); s != 0) {
                    pos = {s, y};
                    TrickPos[static_cast<std::size_t>(kPairedTricks[p])].Y = y;
                    break;
                }
            }
        }
        std::string v;
        if (AfterColon(text, v)) {
            ++BidCount;
            bids[static_cast<std::size_t>(p)] = BidOfValue(v);
        }
    }
    BidLocCount = 0;
    for (const auto& pos : BidPos)
        if (pos.Y != 0) ++BidLocCount;
    if (BidCount == 0) {
        status = kBidNoLabel;
        return;
    }

    DimLine(BoxLeft, BoxRight);
    const std::string& tlabel = titles_.TrickLabel(GameLanguage);
    status = kBidRead;
    int total = 0;
    LastTricks = {};
    for (int q = 0; q < 4; ++q) {
        platform::Point& pos = TrickPos[static_cast<std::size_t>(q)];
        if (pos.Y == 0) continue;
        cap_.GetLineBMPmain("Read Trick", pos.Y);
        std::string text;
        if (const std::int32_t s = glyphs_.ReadNumber(line, tlabel, text); s != 0) {
            pos.X = s;
            std::string v;
            AfterColon(text, v);
            LastTricks[static_cast<std::size_t>(q)] = core::ValInt(v);
            total += core::ValInt(v);
        } else {
            pos.X = BoxLeft;
        }
    }
    if (total == 13) {
        status = kBidLastTrick;
        return;
    }
    cap_.BMBits.assign(1, 0);
}

int TableReader::CaptureTricks(std::array<int, 4>& tricks) {
    if (BoxLeft == 0) LocateBox();
    if (!CaptureBox(15)) return -1;
    LineBmp& line = cap_.LineBMP;
    DimLine(BoxLeft, BoxRight);
    const std::string& label = titles_.TrickLabel(GameLanguage);
    int found = 0, prevQ = 0;
    for (std::int32_t y = BoxTop; y <= BoxBottom; ++y) {
        cap_.GetLineBMPmain("Capture Trick", y);
        if (line[line.lo] == 0) continue;
        std::string text;
        const std::int32_t x = glyphs_.ReadNumber(line, label, text);
        if (x == 0) continue;
        int q = prevQ;
        if (x < BoxCenterX) q = y >= BoxCenterY ? 0 : 1;
        else if (x > BoxCenterX) q = y < BoxCenterY ? 2 : 3;
        prevQ = q;
        TrickPos[static_cast<std::size_t>(q)] = {x, y};
        ++found;
        std::string v;
        if (AfterColon(text, v)) tricks[static_cast<std::size_t>(q)] = std::clamp(core::ValInt(v), 0, 255);
    }
    cap_.BMBits.assign(1, 0);
    return found;
}

bool TableReader::TestMyTurn() {
    if (BoxLeft == 0) LocateBox();
    if (cap_.GameWindow != 0) cap_.Windows().Restore(cap_.GameWindow);
    if (!CaptureBox(0)) return false;
    for (std::int32_t ry = 112; ry < 120; ++ry) {
        bool all = true;
        for (std::int32_t rx = 107; rx < 128 && all; ++rx) all = cap_.BlackAt(cap_.BMScreen, BoxLeft + rx, BoxTop + ry);
        if (all) return ry > 112;
    }
    return false;
}

// --- bid panel ----------------------------------------------------------------------------

int TableReader::GetBoardStat(int bidState) {
    if (bidState == kBidStateBoardHidden) return kBoardNone;
    const std::string dnil = titles_.DoubleNilWord(GameLanguage);
    const std::string show = titles_.ShowWord(GameLanguage);
    BtnXY = {};
    BoardStat = kBoardNone;
    platform::Rect wr;
    if (!GameRect(wr)) return BoardStat;
    const platform::Rect g = wr.Left < kLeftEdgeLimit ? wr : SavedGameRect;
    const platform::Rect region{g.Left + 100, g.Top + 200, g.Left + 300, g.Top + 550};
    cap_.CaptureScreenRect(region);
    if (cap_.BMScreen.Lines <= 0) return BoardStat;

    LineBmp& line = cap_.LineBMP;
    DimLine(region.Left, region.Right);
    std::vector<std::int32_t> starts;
    auto word = [&](std::size_t i, std::int32_t y) {
        return i < starts.size() ? platform::Point{starts[i], y} : platform::Point{};
    };
    const std::string dnilShow = dnil + "," + show;
    for (std::int32_t y = region.Top; y < region.Bottom - 30; ++y) {
        cap_.GetLineBMPmain("GetBoardStat", y);
        if (line[line.lo] == 0) continue;
        const std::string text = ReadWords(region.Left + 1, 8, 7, &starts);
        if (core::Len(text) < 8) continue;
        if (core::Contains(text, "1,2,3,4,5")) {
            for (int i = 0; i < 5; ++i) BtnXY[static_cast<std::size_t>(1 + i)] = word(static_cast<std::size_t>(i), y);
            y += 5;
        } else if (core::Contains(text, "6,7,8,9,10")) {
            for (int i = 0; i < 5; ++i) BtnXY[static_cast<std::size_t>(6 + i)] = word(static_cast<std::size_t>(i), y);
            y += 5;
        } else if (core::Contains(text, "11,12,13,")) {
            BoardStat = kBoardOrdinary;
            for (int i = 0; i < 4; ++i) BtnXY[static_cast<std::size_t>(11 + i)] = word(static_cast<std::size_t>(i), y);
            break;
        } else if (!dnil.empty() && !show.empty() && core::Contains(text, dnilShow)) {
            BoardStat = kBoardDoubleNil;
            BtnXY[15] = word(0, y);
            BtnXY[16] = word(1, y);
            break;
        }
    }
    return BoardStat;
}

}  // namespace reading
