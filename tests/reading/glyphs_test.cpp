// The glyph table and the band readers, on bands built column by column
// from the font's hexadecimal shapes.
#include "reading/glyphs.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using reading::GlyphTable;
using reading::LineBmp;

namespace {

// Band builder: shapes as the table writes them, blanks between them.
struct Band {
    std::vector<std::uint16_t> cols;
    Band& Hex(const std::string& hex) {
        for (std::size_t i = 0; i + 3 <= hex.size(); i += 3) cols.push_back(static_cast<std::uint16_t>(std::stoi(hex.substr(i, 3), nullptr, 16)));
        return *this;
    }
    Band& Blank(int n = 1) {
        cols.insert(cols.end(), static_cast<std::size_t>(n), 0);
        return *this;
    }
    Band& Col(std::uint16_t v) {
        cols.push_back(v);
        return *this;
    }
    // LineBmp with lo = 9 (summary), text from x = 10, end marker at hi.
    LineBmp Line(int extraBlank = 2) const {
        LineBmp l;
        l.Dim(9, 10 + static_cast<int>(cols.size()) + extraBlank);
        std::uint16_t any = 0;
        for (std::size_t i = 0; i < cols.size(); ++i) {
            l[10 + static_cast<int>(i)] = cols[i];
            any |= cols[i];
        }
        l[l.lo] = any;
        l[l.hi] = reading::kEndMark;
        return l;
    }
};

const char* kB = "7FC4444444444443B8";
const char* kI = "5FC000";
const char* kD = "0F81041040887FC";
const char* kColon = "104000";
const char* kN = "7FC2001800400300087FC";
const char* k1 = "1002007FC";
const char* k3 = "2084044444443B8";
const char* k0 = "3F84044044043F8";
const char* kA = "0981241241280FC";
const char* kBsmall = "7FC0881041040F8";

GlyphTable English() {
    GlyphTable t;
    t.ReadingFont = 1;
    t.DigitsOn = true;
    t.SelectFont(1, 1, "Bid:", "Tricks:");
    return t;
}

Band BidLabel() {
    Band b;
    b.Hex(kB).Blank().Hex(kI).Hex(kD).Blank().Hex(kColon).Blank(4);
    return b;
}

}  // namespace

TEST(GlyphTable, ParsesAllEntriesDroppingTheRepeatedUnderline) {
    GlyphTable t;
    EXPECT_EQ(t.GlyphCount(), 145);  // entry 114 repeats entry 99
    // Glyph numbers from entry 114 on are one less than the entry numbers.
    EXPECT_EQ(t.Glyphs[145].Source, "@");
    EXPECT_EQ(t.Glyphs[39].Column[1], 0) << "\"(\" is parsed but switched off";
}

TEST(FindText, BreakingShapeMayStartTheTargetAgain) {
    GlyphTable t = English();
    LineBmp l = Band().Hex(kA).Blank().Hex(kA).Blank().Hex(kBsmall).Line();
    EXPECT_EQ(t.FindText(l, 10, "ab"), 10 + 6 + 6 + 5);  // just after the "b"
    EXPECT_TRUE(t.FindWord(l, "ab"));
    EXPECT_TRUE(t.FindWord(l, "aab"));

    l = Band().Hex(kA).Blank().Hex(kA).Blank().Hex(kA).Blank().Hex(kBsmall).Line();
    EXPECT_FALSE(t.FindWord(l, "aab"));
    EXPECT_TRUE(t.FindWord(l, "ab"));
    EXPECT_EQ(t.FindText(l, 10, ""), 0);
    EXPECT_EQ(t.FindText(l, 30, "ab"), 0);  // a start after the word misses it
}

TEST(ReadNumber, LabelsDigitsAndLetters) {
    GlyphTable t = English();
    struct Row {
        Band band;
        std::string want;
    };
    const Row rows[] = {
        {BidLabel().Hex(k1).Blank(8).Hex(k3), "Bid:13"},  // a digit starting eight columns later still belongs
        {BidLabel().Hex(k1).Blank(11).Hex(k3), "Bid:1"},
        {BidLabel().Hex(k1).Blank().Hex(k0), "Bid:10"},
        {BidLabel().Hex(kN), "Bid:N"},
        // An underline pixel on the band's bottom row is ignored by the mask.
        {BidLabel().Col(0x208 | 1).Col(0x404 | 1).Col(0x444 | 1).Col(0x444 | 1).Col(0x3B8), "Bid:3"},
        {BidLabel(), "Bid:"},  // label alone: the text is the label
    };
    for (const Row& r : rows) {
        LineBmp l = r.band.Line();
        std::string text = "unchanged";
        EXPECT_EQ(t.ReadNumber(l, "Bid:", text), 10) << r.want;
        EXPECT_EQ(text, r.want);
    }
    // No label, or the number reader not switched on yet: start 0, text untouched.
    std::string text = "kept";
    LineBmp l = Band().Hex(k3).Line();
    EXPECT_EQ(t.ReadNumber(l, "Bid:", text), 0);
    t.DigitsOn = false;
    l = rows[0].band.Line();
    EXPECT_EQ(t.ReadNumber(l, "Bid:", text), 0);
    EXPECT_EQ(text, "kept");
}

TEST(ReadNumber, ItalianLettersForNil) {
    GlyphTable t = English();
    t.SelectFont(1, 5, "Dichiara:", "Prese:");
    const char *kDcap = "7FC4044044044042081F0", *kC = "0F8104104088", *kH = "7FC0801001000FC", *kR = "1FC080100",
               *kZ = "00440C434444584604404";
    LineBmp l = Band().Hex(kDcap).Blank().Hex(kI).Hex(kC).Blank().Hex(kH).Blank().Hex(kI).Hex(kA).Blank().Hex(kR).Blank()
                    .Hex(kA).Blank().Hex(kColon).Blank(4).Hex(kZ).Line();
    std::string text;
    EXPECT_EQ(t.ReadNumber(l, "Dichiara:", text), 10);
    EXPECT_EQ(text, "Dichiara:Z");
}

// Garbage bands are the fuzz target's; here the glyph cut by the band's end.
TEST(GlyphReaders, NeverLeaveTheBand) {
    GlyphTable t = English();
    std::int32_t p = 10;
    Band cut;
    cut.Hex("7FC4444444");  // "B" without its last columns
    LineBmp c = cut.Line(0);
    EXPECT_EQ(t.GlyphMatch(c, c[10], p), "?");
    EXPECT_EQ(p, c.hi);
}
