// The score window reader on hand-built client areas: a gray header edge,
// numbers placed column by column from the glyph table's own values.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "platform/sim_desktop.h"
#include "reading/glyphs.h"
#include "reading/pixels.h"
#include "reading/score_reader.h"

using namespace reading;
using platform::Image;
using platform::Rgb;

namespace {

constexpr std::uint32_t kGray = Rgb(0xC0, 0xC0, 0xC0);
constexpr std::uint32_t kWhite = Rgb(255, 255, 255);

const char* Digit(char c) {
    switch (c) {
        case '0': return "3F84044044043F8";
        case '1': return "1002007FC";
        case '2': return "20440C414464384";
        case '5': return "1C8684484484478";
        case '-': return "020020020000";
        default: return "";
    }
}

// Plots a number's glyph columns from x with the band's top row at yTop.
void PlotNumber(Image& img, int x, int yTop, const std::string& text) {
    for (char ch : text) {
        const std::string hex = Digit(ch);
        for (std::size_t i = 0; i + 3 <= hex.size(); i += 3, ++x) {
            const unsigned v = static_cast<unsigned>(std::stoul(hex.substr(i, 3), nullptr, 16));
            for (int k = 0; k < 12; ++k)
                if (v & (0x800u >> k)) img.Set(x, yTop + k, 0);
        }
        ++x;
    }
}

// White client area with the header's lower edge as a gray row at `edge`
// and the gray columns that end each cell's field.
Image ScoreArea(int edge, int height) {
    Image img(220, height, kWhite);
    img.FillRect(0, edge, 220, edge + 1, kGray);
    for (int x : {0, 50, 109, 170, 215}) img.FillRect(x, 0, x + 1, height, kGray);
    return img;
}

struct Rig {
    Rig() {
        glyphs.ReadingFont = 1;
        glyphs.DigitsOn = true;
        glyphs.SelectFont(1, 1, "Bid:", "Tricks:");
        cap.FontIndex = 1;
    }
    platform::WindowHandle Show(const Image& client) {
        auto h = desk.AddWindow("Spades Score", {20, 30, 20 + client.Width + 8, 30 + client.Height + 27});
        desk.SetClientImage(h, client);
        cap.SubWindow[kSubScore].Handle = h;
        return h;
    }
    platform::SimDesktop desk{1280, 1024};
    platform::VirtualClock clock;
    Capture cap{desk, clock};
    GlyphTable glyphs;
    ScoreReader reader{cap, glyphs};
};

}  // namespace

TEST(CaptScoreTest, FirstLineRightBelowTheHeaderEdge) {
    Rig r;
    Image img = ScoreArea(40, 131);
    PlotNumber(img, 20, 40, "120");  // ink starts at row 41 = edge + 1
    PlotNumber(img, 60, 40, "2");
    PlotNumber(img, 130, 40, "-50");
    PlotNumber(img, 180, 40, "1");
    PlotNumber(img, 25, 56, "205");
    PlotNumber(img, 60, 56, "5");
    PlotNumber(img, 135, 56, "10");
    PlotNumber(img, 180, 56, "0");
    r.Show(img);
    ScoreLines lines;
    ASSERT_EQ(r.reader.CaptScore(lines), 0);
    ASSERT_EQ(lines.Count, 2);
    EXPECT_EQ(lines.Line[1], (std::array<std::int32_t, 4>{120, 2, -50, 1}));
    EXPECT_EQ(lines.Line[2], (std::array<std::int32_t, 4>{205, 5, 10, 0}));
}

TEST(CaptScoreTest, FieldsEndAtGrayCellEdgesAndRangeEnds) {
    Rig r;
    Image img = ScoreArea(40, 131);
    PlotNumber(img, 20, 42, "50");
    PlotNumber(img, 44, 42, "5");    // past the score range but in the same cell: same field
    PlotNumber(img, 72, 42, "2");    // right of the first bags range
    PlotNumber(img, 120, 42, "15");
    PlotNumber(img, 202, 42, "1");   // right of the second bags range
    r.Show(img);
    ScoreLines lines;
    ASSERT_EQ(r.reader.CaptScore(lines), 0);
    ASSERT_EQ(lines.Count, 1);
    EXPECT_EQ(lines.Line[1], (std::array<std::int32_t, 4>{505, 0, 15, 0}));

    // Without the gray edge a score field runs on into the bags.
    Rig open;
    Image bare(220, 131, kWhite);
    bare.FillRect(0, 40, 220, 41, kGray);
    PlotNumber(bare, 20, 42, "120");
    PlotNumber(bare, 60, 42, "2");
    open.Show(bare);
    ASSERT_EQ(open.reader.CaptScore(lines), 0);
    EXPECT_EQ(lines.Line[1][0], 1202);
    EXPECT_EQ(lines.Line[1][1], 2);
}

TEST(CaptScoreTest, HeaderEdgeAtRow36IsNotAccepted) {
    Rig r;
    Image img = ScoreArea(36, 131);
    PlotNumber(img, 20, 38, "100");
    r.Show(img);
    ScoreLines lines;
    EXPECT_EQ(r.reader.CaptScore(lines), 2);
    EXPECT_EQ(lines.Count, 0);
    EXPECT_EQ(r.desk.CaptureCount(), 4);

    Rig ok;
    Image img37 = ScoreArea(37, 131);
    PlotNumber(img37, 20, 39, "100");
    ok.Show(img37);
    EXPECT_EQ(ok.reader.CaptScore(lines), 0);
    EXPECT_EQ(lines.Count, 1);
    EXPECT_EQ(lines.Line[1][0], 100);
}

TEST(CaptScoreTest, HiddenLineGrowsTheWindowByOnePitch) {
    Rig r;
    // Two lines; the second band ends 10 rows above the bottom.
    Image img = ScoreArea(40, 80);
    PlotNumber(img, 20, 42, "100");
    PlotNumber(img, 20, 58, "200");
    auto h = r.Show(img);
    platform::Rect before, after;
    r.desk.GetWindowRect(h, before);
    ScoreLines lines;
    EXPECT_EQ(r.reader.CaptScore(lines), 0) << "the grown area is blank: the table ends there";
    EXPECT_EQ(lines.Count, 2);
    r.desk.GetWindowRect(h, after);
    EXPECT_EQ(after.Height(), before.Height() + 16);
    EXPECT_EQ(after.Left, 0);
    EXPECT_EQ(after.Top, before.Top);
}

TEST(CaptScoreTest, NothingCapturedAndNoLines) {
    Rig r;
    ScoreLines lines;
    lines.Count = 7;
    EXPECT_EQ(r.reader.CaptScore(lines), 0) << "no window";
    EXPECT_EQ(lines.Count, 0);

    Rig empty;
    auto h = empty.Show(ScoreArea(40, 100));
    EXPECT_EQ(empty.reader.CaptScore(lines), 0);
    EXPECT_EQ(lines.Count, 0);
    platform::Rect rect;
    empty.desk.GetWindowRect(h, rect);
    EXPECT_EQ(rect.Height(), 127) << "a client area of 100 rows is not shrunk";
}

TEST(CaptScoreTest, GarbageAndTinyImagesGiveStatusCodes) {
    std::mt19937 rng(3);
    for (int w : {1, 11, 51, 220}) {
        for (int hgt : {1, 37, 56, 131}) {
            Rig r;
            Image img(w, hgt);
            for (auto& px : img.Pixels) px = (rng() & 1) ? kGray : (rng() & 0xFFFFFF);
            r.Show(img);
            ScoreLines lines;
            const int status = r.reader.CaptScore(lines);
            EXPECT_TRUE(status == 0 || status == 2) << w << "x" << hgt;
            EXPECT_GE(lines.Count, 0);
            EXPECT_LE(lines.Count, kMaxScoreLines);
        }
    }
}
