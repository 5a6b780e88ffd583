// The score window reader on hand-built client areas: a gray header edge,
// numbers placed column by column from the glyph table's own values.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/sim/sim_desktop.h"
#include "platform/sim/virtual_clock.h"
#include "reading/glyphs.h"
#include "reading/pixels.h"
#include "reading/score_reader.h"

using namespace reading;
using platform::Image;
using platform::Rgb;

namespace {

constexpr std::uint32_t kGray = Rgb(0xC0, 0xC0, 0xC0);
constexpr std::uint32_t kWhite = Rgb(255, 255, 255);
using Lines = std::vector<std::array<std::int32_t, 4>>;

// Plots numbers (x, text) with the band's top row at yTop.
void PlotNumbers(Image& img, int yTop, std::initializer_list<std::pair<int, std::string>> numbers) {
    const std::pair<char, const char*> glyphs[] = {{'0', "3F84044044043F8"}, {'1', "1002007FC"}, {'2', "20440C414464384"},
                                                   {'5', "1C8684484484478"}, {'-', "020020020000"}};
    for (const auto& [x0, text] : numbers) {
        int x = x0;
        for (char ch : text) {
            std::string hex;
            for (const auto& g : glyphs)
                if (g.first == ch) hex = g.second;
            for (std::size_t i = 0; i + 3 <= hex.size(); i += 3, ++x) {
                const unsigned v = static_cast<unsigned>(std::stoul(hex.substr(i, 3), nullptr, 16));
                for (int k = 0; k < 12; ++k)
                    if (v & (0x800u >> k)) img.Set(x, yTop + k, 0);
            }
            ++x;
        }
    }
}

// White client area with the header's lower edge as a gray row at `edge`
// and (unless `open`) the gray columns that end each cell's field.
Image ScoreArea(int edge, int height, bool open = false) {
    Image img(220, height, kWhite);
    img.FillRect(0, edge, 220, edge + 1, kGray);
    if (!open)
        for (int x : {0, 50, 109, 170, 215}) img.FillRect(x, 0, x + 1, height, kGray);
    return img;
}

struct Rig {
    explicit Rig(const Image& client) {
        glyphs.ReadingFont = 1;
        glyphs.DigitsOn = true;
        glyphs.SelectFont(1, 1, "Bid:", "Tricks:");
        cap.FontIndex = 1;
        h = desk.AddWindow("Spades Score", {20, 30, 20 + client.Width + 8, 30 + client.Height + 27});
        desk.SetClientImage(h, client);
        subs.Handle[kSubScore] = h;
    }
    Rig() = default;
    // Reads the window: status, then the lines read.
    std::pair<int, Lines> Read() {
        ScoreLines lines;
        lines.Count = 7;  // stale: must be reset
        const int status = reader.CaptScore(lines);
        EXPECT_GE(lines.Count, 0);
        EXPECT_LE(lines.Count, kMaxScoreLines);
        return {status, Lines(lines.Line.begin() + 1, lines.Line.begin() + 1 + std::clamp(lines.Count, 0, kMaxScoreLines))};
    }
    platform::Rect WindowRect() { return desk.WindowRect(h).value_or(platform::Rect{}); }
    platform::SimDesktop desk{1280, 1024};
    platform::VirtualClock clock;
    FixedSubWindows subs;
    Capture cap{desk, desk, clock, &subs};
    GlyphTable glyphs;
    ScoreReader reader{cap, glyphs};
    platform::WindowHandle h = 0;
};

}  // namespace

TEST(CaptScoreTest, FirstLineRightBelowTheHeaderEdgeAndNoHigherThanRow37) {
    for (int edge : {36, 37, 40}) {
        SCOPED_TRACE(edge);
        Image img = ScoreArea(edge, 131);
        PlotNumbers(img, edge, {{20, "120"}, {60, "2"}, {130, "-50"}, {180, "1"}});  // ink from edge + 1
        PlotNumbers(img, edge + 16, {{25, "205"}, {60, "5"}, {135, "10"}, {180, "0"}});
        Rig r(img);
        if (edge == 36) {
            EXPECT_EQ(r.Read(), std::make_pair(2, Lines{}));
            EXPECT_EQ(r.desk.CaptureCount(), 4);
        } else {
            EXPECT_EQ(r.Read(), std::make_pair(0, Lines{{120, 2, -50, 1}, {205, 5, 10, 0}}));
        }
    }
}

TEST(CaptScoreTest, FieldsEndAtGrayCellEdgesAndRangeEnds) {
    Image img = ScoreArea(40, 131);
    // "5" past the score range but in the same cell is the same field; "2"
    // and "1" right of the bags ranges are not read.
    PlotNumbers(img, 42, {{20, "50"}, {44, "5"}, {72, "2"}, {120, "15"}, {202, "1"}});
    Rig r(img);
    EXPECT_EQ(r.Read(), std::make_pair(0, Lines{{505, 0, 15, 0}}));

    // Without the gray edge a score field runs on into the bags.
    Image bare = ScoreArea(40, 131, true);
    PlotNumbers(bare, 42, {{20, "120"}, {60, "2"}});
    Rig open(bare);
    EXPECT_EQ(open.Read(), std::make_pair(0, Lines{{1202, 2, 0, 0}}));
}

TEST(CaptScoreTest, NothingCapturedAndEmptyTables) {
    Rig none;
    EXPECT_EQ(none.Read(), std::make_pair(0, Lines{})) << "no window";
    Rig empty(ScoreArea(40, 100));
    EXPECT_EQ(empty.Read(), std::make_pair(0, Lines{}));
    EXPECT_EQ(empty.WindowRect().Height(), 127) << "a client area of 100 rows is not shrunk";
}
