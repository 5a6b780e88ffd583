// Card recognition on hand-built buffers: the glyph columns and corner
// marks here are placed pixel by pixel from the fonts' own numbers, not by
// the simulator's renderers.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "platform/sim/sim_desktop.h"
#include "platform/sim/virtual_clock.h"
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
const char* const k9S = "3C84244244443F8" "000" "398444444444444338";  // "9S" with its blank column
const char* const kA = "00C0703A04203A007000C";
const char* const kLowerB = "7FC0881041040F8";
const char* const kLowerO = "0F81041041040F8";

// A "Last Hand" client area with the table's gray grid: the header's lower
// edge at `grayRow`, one 15-row line per player below it, cells separated by
// gray columns, "9S" (spades: black) in every card cell.
Image HandGrid(int grayRow = 24) {
    Image img(389, 101, kGray);
    for (int p = -1; p < 4; ++p) {
        const int top = p < 0 ? 5 : grayRow + 1 + 16 * p, bottom = p < 0 ? grayRow : top + 15;
        img.FillRect(1, top, 81, bottom, kWhite);
        for (int c = 0; c < 13; ++c) {
            img.FillRect(82 + 23 * c, top, 82 + 23 * c + 22, bottom, kWhite);
            if (p >= 0) Plot(img, 82 + 23 * c + 4, top + 3, k9S);
        }
    }
    return img;
}

// The corner mark of a card drawn from the card font's samples: upright
// (sample c is column x + c, bit 7 at row y) or lying (sample c is row
// y + 21 - c, bit 7 at column x).
void PlotCorner(Image& img, const CardFont& font, int suit, int rank, int x, int y, bool lying, std::uint32_t rgb) {
    for (int c = 0; c < 18; ++c) {
        const auto& e = font.Entry[static_cast<std::size_t>(c < 9 ? CardFont::kFirstSuit + suit : rank)];
        const std::uint8_t v = e.Samples[static_cast<std::size_t>(c % 9)];
        for (int b = 0; b < 8; ++b)
            if (v & (0x80 >> b)) img.Set(lying ? x + b : x + c, lying ? y + 21 - c : y + b, rgb);
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
        subs.Handle[static_cast<std::size_t>(slot)] = h;
        return h;
    }
    std::pair<int, int> Match() const {
        int suit = -1, rank = -1;
        reader.MatchCard(suit, rank);
        return {suit, rank};
    }
    platform::SimDesktop desk{1280, 1024};
    platform::VirtualClock clock;
    FixedSubWindows subs;
    Capture cap{desk, desk, clock, &subs};
    GlyphTable glyphs;
    CardReader reader{cap, glyphs, desk};
};

}  // namespace

TEST(ParseCardTextTest, TensShortTextsAndEachLanguagesSuitLetters) {
    // Italian and the TDCP languages (3, 9) map by position; 7 and 8 only
    // rename spades; a letter the language does not use gives no suit.
    const struct {
        const char* text;
        std::vector<int> langs;
        const char* want;
    } rows[] = {
        {"10H", {1}, "TH"}, {"10", {1}, "T"}, {"", {1}, ""},
        {"9S]", {1}, "9S"},  // a closing mark is not part of the card
        {"AF", {5}, "AC"}, {"KP", {5}, "KS"}, {"2Q", {5}, "2D"}, {"10C", {5}, "TH"}, {"AS", {5}, "A"},
        {"AT", {3, 9}, "AC"}, {"QC", {3, 9}, "QH"}, {"JP", {3, 9}, "JS"}, {"JH", {3, 9}, "J"},
        {"QP", {7, 8}, "QS"}, {"QH", {7, 8}, "QH"}, {"QP", {1, 2, 6}, "QP"},
    };
    for (const auto& r : rows)
        for (int lang : r.langs) EXPECT_EQ(ParseCardText(r.text, lang), r.want) << r.text << " in language " << lang;
}

TEST(CardFontTest, EveryEntryGivesNineSamplesAndNoBeep) {
    Rig r;
    EXPECT_EQ(r.reader.FontErrors, 0);
    EXPECT_EQ(r.desk.Beeps(), 0);
    for (int pos = CardFont::kFirst; pos <= CardFont::kLast; ++pos)
        EXPECT_EQ(r.reader.Font.Entry[static_cast<std::size_t>(pos)].Count, 9) << "position " << pos;
}

TEST(ReadCardCornerTest, UprightAndLyingMarksAndWhereTheyMustStart) {
    Rig r;
    Image img(60, 60, kWhite);
    PlotCorner(img, r.reader.Font, 2, 14, 13, 5, false, kRed);  // ace of hearts, upright
    PlotCorner(img, r.reader.Font, 0, 7, 40, 30, true, 0);      // seven of clubs, lying
    r.cap.LoadImage(img, r.cap.BMSub);
    r.reader.ReadCardCorner(10, 5, 1);  // three blank columns before the mark
    EXPECT_EQ(r.reader.CornerError, 0);
    std::fill(r.reader.CornerSamples.begin() + 18, r.reader.CornerSamples.end(), 0xAA);  // the tail is never looked at
    EXPECT_EQ(r.Match(), std::make_pair(2, 14));
    r.reader.ReadCardCorner(5, 5, 3);  // eight columns before the mark: nothing
    EXPECT_EQ(r.Match().second, 0);

    r.reader.ReadCardCorner(40, 30, 0);  // lying marks are read from the bottom row up
    EXPECT_EQ(r.reader.CornerError, 0);
    EXPECT_EQ(r.Match(), std::make_pair(0, 7));
    r.reader.ReadCardCorner(40, 31, 2);  // one row too high: the bottom sample is blank
    EXPECT_EQ(r.Match().second, 0);

    // A good suit with a rank shape one bit off matches nothing.
    r.reader.ReadCardCorner(10, 5, 1);
    r.reader.CornerSamples[16] ^= 1;
    EXPECT_EQ(r.Match().second, 0);
    r.reader.CornerSamples.fill(0);
    EXPECT_EQ(r.Match().second, 0);
}

TEST(ReadCardCornerTest, MarksBelowTheBufferSetTheErrorFlag) {
    Rig r;
    r.cap.LoadImage(Image(40, 30, 0), r.cap.BMSub);  // all black: every sample is ink
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

TEST(CaptHandTest, ReadsNamesCardsAndMarks) {
    Rig r;
    Image img = HandGrid();
    // Line 0: "bob" with a lead mark on card 0 and a ten of hearts in red at card 1.
    Plot(img, 4, 28, std::string(kLowerB) + "000" + kLowerO + "000" + kLowerB);
    for (int x : {82, 105}) img.FillRect(x, 25, x + 22, 40, kWhite);
    Plot(img, Plot(img, 84, 28, kBracket) + 1, 28, k9S);
    Plot(img, 106, 28, "1002007FC" "000" "3F84044044043F8" "000" "7FC0400400400400407FC", kRed);
    // Line 1: a leading "~" and a trailing unknown shape are dropped; line 2 has no name.
    Plot(img, 4, 44, std::string("020040040020020040") + "000" + kA + "000" + kParen);
    auto h = r.Show(kSubLastHand, img, 40, 30);
    HandRead hand;
    ASSERT_EQ(r.reader.CaptHand(hand), 0);
    EXPECT_EQ(hand.Names, (std::array<std::string, 4>{"bob", "A", "", ""}));
    EXPECT_EQ((std::array<std::string, 2>{hand.Cards[0][0], hand.Cards[0][1]}), (std::array<std::string, 2>{"9S", "TH"}));
    EXPECT_EQ((std::array<int, 2>{hand.Marks[0][0], hand.Marks[0][1]}), (std::array<int, 2>{1, 0}));
    for (std::size_t p = 1; p < 4; ++p)
        for (std::size_t c = 0; c < 13; ++c) EXPECT_EQ(hand.Cards[p][c], "9S");
    const auto rect = r.desk.WindowRect(h);
    ASSERT_TRUE(rect);
    EXPECT_TRUE(rect->Left == 0 && rect->Top == 0) << "the window is read at the screen's origin";
    EXPECT_FALSE(platform::IsMinimized(r.desk, h));
}

TEST(CaptHandTest, NoTableOrAnUnknownShapeFailsTheReading) {
    // A gray row at 20 is not the table's header edge; at 21 it is.
    Rig r;
    r.Show(kSubLastHand, HandGrid(20));
    r.reader.MinimizeLastHand = true;
    HandRead hand;
    EXPECT_EQ(r.reader.CaptHand(hand), 22);
    EXPECT_EQ(r.desk.CaptureCount(), 4) << "four captures before giving up";
    EXPECT_TRUE(platform::IsMinimized(r.desk, r.subs.Handle[kSubLastHand]));
    EXPECT_EQ(hand.Names[0], "");
    Rig ok;
    ok.Show(kSubLastHand, HandGrid(21));
    EXPECT_EQ(ok.reader.CaptHand(hand), 0);
    EXPECT_EQ(hand.Cards[3][12], "9S");

    Rig paren;
    Image img = HandGrid();
    img.FillRect(128, 41, 150, 56, kWhite);  // line 1, card 2: "(9S"
    Plot(img, Plot(img, 130, 44, kParen) + 1, 44, k9S);
    paren.Show(kSubLastHand, img);
    EXPECT_EQ(paren.reader.CaptHand(hand), 22);
    EXPECT_EQ(hand.Cards[1][1], "9S") << "what was read before stays";
    EXPECT_EQ(hand.Marks[1][2], 0);
    EXPECT_EQ(hand.Cards[1][2], "?9");
    EXPECT_EQ(hand.Cards[1][3], "") << "reading stops at the bad card";
}

TEST(CaptHandTest, NoCaptureAndTheItalianWidth) {
    Rig r;
    HandRead hand;
    EXPECT_EQ(r.reader.CaptHand(hand), 0) << "no window at all";
    EXPECT_EQ(hand.Names[0], "");

    Rig it(5);
    auto h = it.Show(kSubLastHand, HandGrid(), 10, 10);
    EXPECT_EQ(it.reader.CaptHand(hand), 0);
    EXPECT_EQ(hand.Cards[0][0], "9") << "Italian has no suit letter S: the card is one character";
    const auto rect = it.desk.WindowRect(h);
    ASSERT_TRUE(rect);
    EXPECT_EQ((std::pair{rect->Left, rect->Width()}), (std::pair{0, 580}));
}
