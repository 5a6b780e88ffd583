// Card recognition on hand-built buffers: the glyph columns and corner
// marks here are placed pixel by pixel from the fonts' own numbers, not by
// the simulator's renderers.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "platform/sim_desktop.h"
#include "reading/cards.h"
#include "reading/glyphs.h"
#include "reading/pixels.h"

using namespace reading;
using platform::Image;
using platform::Rgb;

namespace {

constexpr std::uint32_t kGray = Rgb(0xC0, 0xC0, 0xC0);
constexpr std::uint32_t kWhite = Rgb(255, 255, 255);
constexpr std::uint32_t kRed = Rgb(0xCC, 0, 0);

// Plots 12-bit column values (three hex digits each, bit 11 at yTop) from x.
// Returns the column after the last one plotted.
int Plot(Image& img, int x, int yTop, const std::string& hex, std::uint32_t rgb = 0) {
    for (std::size_t i = 0; i + 3 <= hex.size(); i += 3, ++x) {
        const unsigned v = static_cast<unsigned>(std::stoul(hex.substr(i, 3), nullptr, 16));
        for (int k = 0; k < 12; ++k)
            if (v & (0x800u >> k)) img.Set(x, yTop + k, rgb);
    }
    return x;
}

// Column hex of a few glyphs, as the glyph table defines them.
const char* const kBracket = "7FF401";
const char* const kParen = "0F8306401";
const char* const k9 = "3C84244244443F8";
const char* const kS = "398444444444444338";
const char* const kA = "00C0703A04203A007000C";
const char* const kH = "7FC0400400400400407FC";
const char* const k1 = "1002007FC";
const char* const k0 = "3F84044044043F8";
const char* const kLowerB = "7FC0881041040F8";
const char* const kLowerO = "0F81041041040F8";
const char* const kTilde = "020040040020020040";

// A "Last Hand" client area with the table's gray grid: the header's lower
// edge at `grayRow`, one 15-row line per player below it, cells separated by
// gray columns.
Image HandGrid(int grayRow = 24, int width = 389, int height = 101) {
    Image img(width, height, kGray);
    img.FillRect(1, 5, 81, grayRow, kWhite);  // header cells
    for (int c = 0; c < 13; ++c) img.FillRect(82 + 23 * c, 5, 82 + 23 * c + 22, grayRow, kWhite);
    for (int p = 0; p < 4; ++p) {
        const int top = grayRow + 1 + 16 * p;
        img.FillRect(1, top, 81, top + 15, kWhite);
        for (int c = 0; c < 13; ++c) img.FillRect(82 + 23 * c, top, 82 + 23 * c + 22, top + 15, kWhite);
    }
    return img;
}

// Writes "9S" (spades: black) in every card cell of line p.
void FillLine(Image& img, int p, int grayRow = 24) {
    const int y = grayRow + 4 + 16 * p;
    for (int c = 0; c < 13; ++c) {
        int x = Plot(img, 82 + 23 * c + 4, y, k9) + 1;
        Plot(img, x, y, kS);
    }
}

struct Rig {
    explicit Rig(int lang = 1) {
        glyphs.ReadingFont = 1;
        glyphs.DigitsOn = true;
        glyphs.SelectFont(1, lang, "Bid:", "Tricks:");
        cap.FontIndex = 1;
        reader.GameLanguage = lang;
    }
    platform::WindowHandle Show(int slot, const Image& client, int left = 0, int top = 0) {
        auto h = desk.AddWindow("w", {left, top, left + client.Width + 8, top + client.Height + 27});
        desk.SetClientImage(h, client);
        cap.SubWindow[static_cast<std::size_t>(slot)].Handle = h;
        return h;
    }
    platform::SimDesktop desk{1280, 1024};
    platform::VirtualClock clock;
    Capture cap{desk, clock};
    GlyphTable glyphs;
    CardReader reader{cap, glyphs};
};

}  // namespace

// --- pure helpers ---------------------------------------------------------------

TEST(ParseCardTextTest, TenAndShortTexts) {
    EXPECT_EQ(ParseCardText("10H", 1), "TH");
    EXPECT_EQ(ParseCardText("10", 1), "T") << "a ten without suit stays one character";
    EXPECT_EQ(ParseCardText("A", 1), "A");
    EXPECT_EQ(ParseCardText("", 1), "");
    EXPECT_EQ(ParseCardText("AS", 1), "AS");
    EXPECT_EQ(ParseCardText("9S]", 1), "9S") << "a closing mark is not part of the card";
}

TEST(ParseCardTextTest, SuitLettersOfEachLanguage) {
    // Italian and the TDCP languages map by position; 7 and 8 only rename spades.
    EXPECT_EQ(ParseCardText("AF", 5), "AC");
    EXPECT_EQ(ParseCardText("KP", 5), "KS");
    EXPECT_EQ(ParseCardText("2Q", 5), "2D");
    EXPECT_EQ(ParseCardText("10C", 5), "TH");
    EXPECT_EQ(ParseCardText("AS", 5), "A") << "a letter the language does not use gives no suit";
    for (int lang : {3, 9}) {
        EXPECT_EQ(ParseCardText("AT", lang), "AC");
        EXPECT_EQ(ParseCardText("KD", lang), "KD");
        EXPECT_EQ(ParseCardText("QC", lang), "QH");
        EXPECT_EQ(ParseCardText("JP", lang), "JS");
        EXPECT_EQ(ParseCardText("JH", lang), "J");
    }
    for (int lang : {7, 8}) {
        EXPECT_EQ(ParseCardText("QP", lang), "QS");
        EXPECT_EQ(ParseCardText("QH", lang), "QH");
        EXPECT_EQ(ParseCardText("QC", lang), "QC");
    }
    for (int lang : {1, 2, 6})
        EXPECT_EQ(ParseCardText("QP", lang), "QP");
}

TEST(TrimUnknownTest, BlanksThenQuestionMarks) {
    EXPECT_EQ(TrimUnknown("?river_rat?"), "river_rat");
    EXPECT_EQ(TrimUnknown("??"), "");
    EXPECT_EQ(TrimUnknown("      "), "");
    EXPECT_EQ(TrimUnknown("  jo??  "), "jo");
    EXPECT_EQ(TrimUnknown("a?b"), "a?b") << "only the ends are trimmed";
    EXPECT_EQ(TrimUnknown("? a"), " a") << "blanks are trimmed before the marks, not after";
}

// --- card font and matching ---------------------------------------------------------

TEST(CardFontTest, EveryEntryGivesNineSamplesAndNoBeep) {
    Rig r;
    EXPECT_EQ(r.reader.FontErrors, 0);
    EXPECT_EQ(r.desk.Beeps(), 0);
    for (int pos = CardFont::kFirst; pos <= CardFont::kLast; ++pos)
        EXPECT_EQ(r.reader.Font.Entry[static_cast<std::size_t>(pos)].Count, 9) << "position " << pos;
    // The blank runs in J's entry separate like single blanks.
    const auto& j = r.reader.Font.Entry[11].Samples;
    EXPECT_EQ(j[3], 0x3C);
    EXPECT_EQ(j[6], 6);
    EXPECT_EQ(j[8], 6);
    const auto& q = r.reader.Font.Entry[12].Samples;
    EXPECT_EQ(q[2], 7);
    EXPECT_EQ(q[3], 0xC);
}

TEST(MatchCardTest, EverySuitAndRankFromItsSamples) {
    Rig r;
    for (int suit = 0; suit < 4; ++suit) {
        for (int rank = 2; rank <= 14; ++rank) {
            r.reader.CornerSamples.fill(0xAA);  // the tail is never looked at
            const auto& s = r.reader.Font.Entry[static_cast<std::size_t>(15 + suit)].Samples;
            const auto& k = r.reader.Font.Entry[static_cast<std::size_t>(rank)].Samples;
            for (int i = 0; i < 9; ++i) {
                r.reader.CornerSamples[static_cast<std::size_t>(i)] = s[static_cast<std::size_t>(i)];
                r.reader.CornerSamples[static_cast<std::size_t>(9 + i)] = k[static_cast<std::size_t>(i)];
            }
            int gotSuit = -1, gotRank = -1;
            r.reader.MatchCard(gotSuit, gotRank);
            EXPECT_EQ(gotSuit, suit);
            EXPECT_EQ(gotRank, rank);
        }
    }
}

TEST(MatchCardTest, NoSuitOrNoRankGivesRankZero) {
    Rig r;
    int suit, rank;
    r.reader.CornerSamples.fill(0);
    r.reader.MatchCard(suit, rank);
    EXPECT_EQ(rank, 0);
    // A good suit followed by a rank shape off by one bit.
    const auto& s = r.reader.Font.Entry[18].Samples;
    const auto& k = r.reader.Font.Entry[14].Samples;
    for (std::size_t i = 0; i < 9; ++i) {
        r.reader.CornerSamples[i] = s[i];
        r.reader.CornerSamples[9 + i] = k[i];
    }
    r.reader.CornerSamples[16] ^= 1;
    r.reader.MatchCard(suit, rank);
    EXPECT_EQ(rank, 0);
}

// --- corners and black lines on hand-placed pixels ---------------------------------------

TEST(ReadCardCornerTest, UprightMarkStartsAtItsFirstInkColumn) {
    Rig r;
    Image img(60, 40, kWhite);
    // The ace of hearts in red, as columns from x = 13, row 5 = bit 7.
    const auto& s = r.reader.Font.Entry[17].Samples;
    const auto& a = r.reader.Font.Entry[14].Samples;
    for (int c = 0; c < 18; ++c) {
        const std::uint8_t v = c < 9 ? s[static_cast<std::size_t>(c)] : a[static_cast<std::size_t>(c - 9)];
        for (int b = 0; b < 8; ++b)
            if (v & (0x80 >> b)) img.Set(13 + c, 5 + b, kRed);
    }
    r.cap.LoadImage(img, r.cap.BMSub);
    r.reader.ReadCardCorner(10, 5, 1);  // three blank columns before the mark
    EXPECT_EQ(r.reader.CornerError, 0);
    EXPECT_EQ(r.reader.CornerSamples[0], 8);
    EXPECT_EQ(r.reader.CornerSamples[8], 0x63);
    int suit, rank;
    r.reader.MatchCard(suit, rank);
    EXPECT_EQ(suit, 2);
    EXPECT_EQ(rank, 14);
    // Starting eight or more columns before the mark finds nothing.
    r.reader.ReadCardCorner(5, 5, 3);
    EXPECT_EQ(r.reader.CornerSamples[0], 0);
    r.reader.MatchCard(suit, rank);
    EXPECT_EQ(rank, 0);
}

TEST(ReadCardCornerTest, LyingMarkRunsFromTheBottomRowUp) {
    Rig r;
    Image img(40, 60, kWhite);
    // Seven of clubs: sample c at row 10 + 21 - c, pixel x = 4 is bit 7.
    const auto& s = r.reader.Font.Entry[15].Samples;
    const auto& seven = r.reader.Font.Entry[7].Samples;
    for (int c = 0; c < 18; ++c) {
        const std::uint8_t v = c < 9 ? s[static_cast<std::size_t>(c)] : seven[static_cast<std::size_t>(c - 9)];
        for (int b = 0; b < 8; ++b)
            if (v & (0x80 >> b)) img.Set(4 + b, 31 - c, 0);
    }
    r.cap.LoadImage(img, r.cap.BMSub);
    r.reader.ReadCardCorner(4, 10, 0);
    EXPECT_EQ(r.reader.CornerError, 0);
    int suit, rank;
    r.reader.MatchCard(suit, rank);
    EXPECT_EQ(suit, 0);
    EXPECT_EQ(rank, 7);
    // One row too high: the bottom sample is blank and the corner stays empty.
    r.reader.ReadCardCorner(4, 11, 2);
    EXPECT_EQ(r.reader.CornerSamples[0], 0);
    r.reader.MatchCard(suit, rank);
    EXPECT_EQ(rank, 0);
}

TEST(ReadCardCornerTest, MarksBelowTheBufferSetTheErrorFlag) {
    Rig r;
    Image img(40, 30, 0);  // all black: every sample is ink
    r.cap.LoadImage(img, r.cap.BMSub);
    r.reader.ReadCardCorner(0, 20, 0);  // rows 20..41 of a 30-row buffer
    EXPECT_EQ(r.reader.CornerError, 2);
    r.reader.ReadCardCorner(0, 25, 1);  // rows 25..32
    EXPECT_EQ(r.reader.CornerError, 1);
    r.reader.ReadCardCorner(0, 0, 1);
    EXPECT_EQ(r.reader.CornerError, 0);
    r.reader.ReadCardCorner(-3, 5, 0);  // left of the window but inside the buffer: no ink, no error
    EXPECT_EQ(r.reader.CornerError, 0);
    EXPECT_EQ(r.reader.CornerSamples[0], 0x1F);
}

TEST(FindAllBlackTest, RowsAndColumns) {
    Rig r;
    Image img(50, 40, kWhite);
    img.FillRect(5, 12, 30, 13, 0);  // row 12 black from x = 5 to 29
    img.FillRect(20, 3, 21, 35, 0);  // column 20 black from y = 3 to 34
    r.cap.LoadImage(img, r.cap.BMSub);
    EXPECT_EQ(r.reader.FindAllBlackRow(5, 0, 30, 15), 12);
    EXPECT_EQ(r.reader.FindAllBlackRow(5, 0, 31, 15), -1) << "one white pixel at the right end";
    EXPECT_EQ(r.reader.FindAllBlackRow(20, 13, 21, 15), 13) << "the search goes on past the bottom given";
    EXPECT_EQ(r.reader.FindAllBlackCol(10, 3, 30, 35), 20);
    EXPECT_EQ(r.reader.FindAllBlackCol(10, 2, 30, 35), -1);
    EXPECT_EQ(r.reader.FindAllBlackCol(10, 3, 30, 41), -1000) << "rows below the buffer";
    EXPECT_EQ(r.reader.FindAllBlackCol(45, 3, 60, 35), -1) << "columns right of the window are not black";
}

// --- the "Last Hand" window ---------------------------------------------------------

TEST(CaptHandTest, ReadsNamesCardsAndMarks) {
    Rig r;
    Image img = HandGrid();
    for (int p = 0; p < 4; ++p) FillLine(img, p);
    // Line 0: "bob" with a lead mark on card 0 and a ten of hearts in red at card 1.
    Plot(img, 4, 28, std::string(kLowerB) + "000" + kLowerO + "000" + kLowerB);
    img.FillRect(82, 25, 104, 40, kWhite);
    int x = Plot(img, 84, 28, kBracket) + 1;
    x = Plot(img, x, 28, k9) + 1;
    Plot(img, x, 28, kS);
    img.FillRect(105, 25, 127, 40, kWhite);
    x = Plot(img, 106, 28, k1, kRed) + 1;
    x = Plot(img, x, 28, k0, kRed) + 1;
    Plot(img, x, 28, kH, kRed);
    // Line 1: a leading "~" and a trailing unknown shape are dropped; line 2 has no name.
    Plot(img, 4, 44, std::string(kTilde) + "000" + kA + "000" + kParen);
    auto h = r.Show(kSubLastHand, img, 40, 30);
    HandRead hand;
    ASSERT_EQ(r.reader.CaptHand(hand), 0);
    EXPECT_EQ(hand.Names[0], "bob");
    EXPECT_EQ(hand.Names[1], "A");
    EXPECT_EQ(hand.Names[2], "");
    EXPECT_EQ(hand.Cards[0][0], "9S");
    EXPECT_EQ(hand.Marks[0][0], 1);
    EXPECT_EQ(hand.Cards[0][1], "TH");
    EXPECT_EQ(hand.Marks[0][1], 0);
    for (int p = 1; p < 4; ++p)
        for (int c = 0; c < 13; ++c) EXPECT_EQ(hand.Cards[static_cast<std::size_t>(p)][static_cast<std::size_t>(c)], "9S");
    platform::Rect rect;
    ASSERT_TRUE(r.desk.GetWindowRect(h, rect));
    EXPECT_EQ(rect.Left, 0) << "the window is read at the screen's origin";
    EXPECT_EQ(rect.Top, 0);
    EXPECT_FALSE(r.desk.IsMinimized(h));
}

TEST(CaptHandTest, GrayRowAtTwentyIsNotTheTable) {
    Rig r;
    Image img = HandGrid(20);
    for (int p = 0; p < 4; ++p) FillLine(img, p, 20);
    r.Show(kSubLastHand, img);
    r.reader.MinimizeLastHand = true;
    HandRead hand;
    EXPECT_EQ(r.reader.CaptHand(hand), 22);
    EXPECT_EQ(r.desk.CaptureCount(), 4) << "four captures before giving up";
    EXPECT_TRUE(r.desk.IsMinimized(r.cap.SubWindow[kSubLastHand].Handle));
    EXPECT_EQ(hand.Names[0], "");

    Rig ok;
    Image img21 = HandGrid(21);
    for (int p = 0; p < 4; ++p) FillLine(img21, p, 21);
    ok.Show(kSubLastHand, img21);
    EXPECT_EQ(ok.reader.CaptHand(hand), 0);
    EXPECT_EQ(hand.Cards[3][12], "9S");
}

TEST(CaptHandTest, ParenthesisIsUnknownAndFailsTheReading) {
    Rig r;
    Image img = HandGrid();
    for (int p = 0; p < 4; ++p) FillLine(img, p);
    img.FillRect(128, 41, 150, 56, kWhite);  // line 1, card 2
    int x = Plot(img, 130, 44, kParen) + 1;
    x = Plot(img, x, 44, k9) + 1;
    Plot(img, x, 44, kS);
    r.Show(kSubLastHand, img);
    HandRead hand;
    EXPECT_EQ(r.reader.CaptHand(hand), 22);
    EXPECT_EQ(hand.Cards[1][1], "9S") << "what was read before stays";
    EXPECT_EQ(hand.Marks[1][2], 0);
    EXPECT_EQ(hand.Cards[1][2], "?9");
    EXPECT_EQ(hand.Cards[1][3], "") << "reading stops at the bad card";
}

TEST(CaptHandTest, NoCaptureGivesStatusZeroAndNothing) {
    Rig r;
    HandRead hand;
    EXPECT_EQ(r.reader.CaptHand(hand), 0) << "no window at all";
    EXPECT_EQ(hand.Names[0], "");
    r.Show(kSubLastHand, HandGrid());
    r.desk.FailCaptures(0, 10);
    EXPECT_EQ(r.reader.CaptHand(hand), 0);
    EXPECT_EQ(hand.Cards[0][0], "");
}

TEST(CaptHandTest, ItalianWindowIsWidenedTo580) {
    Rig r(5);
    Image img = HandGrid();
    for (int p = 0; p < 4; ++p) FillLine(img, p);
    auto h = r.Show(kSubLastHand, img, 10, 10);
    HandRead hand;
    EXPECT_EQ(r.reader.CaptHand(hand), 0);
    EXPECT_EQ(hand.Cards[0][0], "9") << "Italian has no suit letter S: the card is one character";
    platform::Rect rect;
    ASSERT_TRUE(r.desk.GetWindowRect(h, rect));
    EXPECT_EQ(rect.Width(), 580);
    EXPECT_EQ(rect.Left, 0);
}

TEST(CaptHandTest, GarbageAndTinyImagesGiveStatusCodes) {
    std::mt19937 rng(7);
    for (int w : {1, 2, 15, 389}) {
        for (int hgt : {1, 3, 30, 101}) {
            Rig r;
            Image img(w, hgt);
            for (auto& px : img.Pixels) px = rng() & 0xFFFFFF;
            r.Show(kSubLastHand, img);
            HandRead hand;
            const int status = r.reader.CaptHand(hand);
            EXPECT_TRUE(status == 0 || status == 22) << w << "x" << hgt;
        }
    }
}

// --- the "Last Trick" window on hand-built lines -------------------------------------

TEST(ReadLastTrickTest, MissingTopCardFailsAfterTwoCaptures) {
    Rig r;
    Image img(270, 130, Rgb(0x2E, 0x8B, 0x57));
    r.Show(kSubLastTrick, img);
    TrickRead t;
    t.Suits = {3, 3, 3, 3};
    EXPECT_FALSE(r.reader.ReadLastTrick(t, 1));
    EXPECT_EQ(t.Suits, (std::array<int, 4>{-1, 0, 0, 0}));
    EXPECT_EQ(t.Ranks, (std::array<int, 4>{0, 0, 0, 0}));
    EXPECT_EQ(r.desk.CaptureCount(), 2);

    Rig none;
    EXPECT_FALSE(none.reader.ReadLastTrick(t, 0)) << "no window";
    EXPECT_EQ(t.Suits[0], -1);
    EXPECT_EQ(none.reader.CardsSeen, 0);
}
