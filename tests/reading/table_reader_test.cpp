// Table readers on windows drawn pixel by pixel here (not by the simulator),
// so the readers are not only checked against the renderer.
#include "reading/table_reader.h"

#include <gtest/gtest.h>

#include "platform/clock.h"
#include "platform/sim/sim_desktop.h"
#include "reading/table_rig.h"

namespace {

constexpr std::uint32_t kFrame = 0x280000;  // red level 5
constexpr std::uint32_t kBlack = 0x000000;
constexpr std::uint32_t kBack = 0xECE9D8;

// Glyph columns as the font writes them, bit 11 = row yTop.
int PutHex(platform::Image& img, int x, int yTop, const std::string& hex, std::uint32_t rgb = kBlack) {
    for (std::size_t i = 0; i + 3 <= hex.size(); i += 3, ++x) {
        const int v = std::stoi(hex.substr(i, 3), nullptr, 16);
        for (int r = 0; r < 12; ++r)
            if (v & (1 << (11 - r))) img.Set(x, yTop + r, rgb);
    }
    return x;
}

const std::string kB = "7FC4444444444443B8", kI = "5FC000", kD = "0F81041040887FC", kColon = "104000";
const std::string kDigits[10] = {"3F84044044043F8", "1002007FC",       "20440C414464384", "2084044444443B8",
                                 "0300D03107FC010", "1C8684484484478", "3F8444484484278", "40041C4E0500600",
                                 "3B84444444443B8", "3C84244244443F8"};
const std::string kN = "7FC2001800400300087FC", kL = "7FC000";

int PutBidLabel(platform::Image& img, int x, int yTop) {
    x = PutHex(img, x, yTop, kB) + 1;
    x = PutHex(img, x, yTop, kI);
    x = PutHex(img, x, yTop, kD) + 1;
    return PutHex(img, x, yTop, kColon) + 4;
}

int PutNumber(platform::Image& img, int x, int yTop, int n) {
    for (char c : std::to_string(n)) x = PutHex(img, x, yTop, kDigits[c - '0']) + 1;
    return x;
}

// The frame's lower-left corner at (x, y) and the rest of a 1-pixel frame.
void PutFrame(platform::Image& img, int x, int y, std::uint32_t rgb = kFrame) {
    img.FillRect(x, y - 159, x + 246, y - 158, rgb);
    img.FillRect(x, y, x + 246, y + 1, rgb);
    img.FillRect(x, y - 159, x + 1, y + 1, rgb);
    img.FillRect(x + 245, y - 159, x + 246, y + 1, rgb);
}

using Hand = TableRig;

}  // namespace

TEST(LocateBoxByHand, CornerRunsAndFrameColourTolerance) {
    {
        platform::Image img(640, 700, kBack);
        PutFrame(img, 231, 401);
        Hand h(img);
        std::string status;
        h.reader.BoxStatus = [&](const std::string& s, bool ok) { status = s + (ok ? " ok" : " bad"); };
        h.reader.LocateBox();
        EXPECT_EQ((std::array<int, 6>{h.reader.BoxLeft, h.reader.BoxTop, h.reader.BoxRight, h.reader.BoxBottom,
                                      h.reader.BoxCenterX, h.reader.BoxCenterY}),
                  (std::array<int, 6>{236, 247, 471, 396, 353, 321}));
        EXPECT_EQ(status, "236,247 ok");
        EXPECT_EQ(h.reader.BoxTries, 1);
        // Label columns default to the box edges and centre.
        EXPECT_EQ((std::array<int, 2>{h.reader.BidPos[0].X, h.reader.TrickPos[0].X}), (std::array<int, 2>{353, 236}));
    }
    {
        // A vertical run of one pixel is not a corner.
        platform::Image img(640, 700, kBack);
        img.FillRect(231, 401, 236, 402, kFrame);
        img.Set(231, 400, kFrame);
        Hand h(img);
        h.reader.LocateBox();
        EXPECT_EQ(h.reader.BoxLeft, 0);
        EXPECT_EQ(h.reader.BoxTries, 50);
        EXPECT_GE(h.clock.Elapsed(), 49u * 200u);
    }
    struct Shade {
        std::uint32_t rgb;
        bool frame;
    };
    for (const Shade s : {Shade{0x200808, true}, Shade{0x300000, true}, Shade{0x380000, false}, Shade{0x281000, false}}) {
        platform::Image img(640, 700, kBack);
        PutFrame(img, 231, 401, s.rgb);
        Hand h(img);
        h.reader.LocateBox();
        EXPECT_EQ(h.reader.BoxLeft != 0, s.frame) << std::hex << s.rgb;
    }
}

TEST(LocateBoxByHand, JapaneseSearchStartsHigher) {
    platform::Image img(640, 700, kBack);
    PutFrame(img, 231, 190);  // above the rows searched for the other languages
    Hand en(img, 1);
    en.reader.LocateBox();
    EXPECT_EQ(en.reader.BoxLeft, 0);
    Hand ja(img, 2);
    ja.reader.LocateBox();
    EXPECT_EQ(ja.reader.BoxLeft, 236);
    EXPECT_EQ(ja.reader.BoxBottom, 185);
}

TEST(TestMyTurnByHand, BlackBarBelowTheFirstRow) {
    struct Bar {
        int left, top, bottom;  // relative to the box's corner; -1: no bar
        bool turn;
    };
    const Bar bars[] = {{107, -1, 0, false},
                        {107, 112, 119, false},  // fully black: the first black row is 112
                        {107, 113, 119, true},
                        {107, 120, 125, false},  // below the test rectangle
                        {108, 114, 119, false}};  // one pixel short of the rectangle's width
    for (const Bar& b : bars) {
        platform::Image img(640, 700, kBack);
        PutFrame(img, 231, 401);
        if (b.top >= 0) img.FillRect(236 + b.left, 247 + b.top, 236 + 128, 247 + b.bottom + 1, kBlack);
        Hand h(img);
        EXPECT_EQ(h.reader.TestMyTurn(), b.turn) << b.left << "," << b.top;
    }
}

TEST(CaptureBidByHand, LabelsInTheirQuadrantsAndTheWaitPromptMargin) {
    platform::Image img(640, 700, kBack);
    PutFrame(img, 231, 401);
    int x = PutBidLabel(img, 244, 247 + 128);  // lower left: bid position 1
    PutNumber(img, x, 247 + 128, 7);
    x = PutBidLabel(img, 380, 247 + 100);  // lower right: bid position 0
    PutNumber(img, x, 247 + 100, 0);       // zero is no bid
    Hand h(img);
    std::array<std::string, 4> bids;
    int status = -1;
    h.reader.CaptureBid(bids, status);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(bids, (std::array<std::string, 4>{"", "7", "", ""}));
    EXPECT_EQ(h.reader.BidCount, 2);
    EXPECT_EQ(h.reader.BidLocCount, 2);
    EXPECT_EQ((std::array<platform::Point, 2>{h.reader.BidPos[0], h.reader.BidPos[1]}),
              (std::array<platform::Point, 2>{{{380, 247 + 100}, {244, 247 + 128}}}));

    // "lick" on the box's top 20 rows is not a wait prompt; lower down it is.
    const std::string kLower[4] = {"7FC000", "5FC000", "0F8104104088", "7FC020060098104"};  // l i c k
    for (const auto& [row, want] : {std::pair{5, 0}, std::pair{40, 11}}) {
        platform::Image im = img;
        int cx = 300;
        for (const auto& s : kLower) cx = PutHex(im, cx, 247 + row, s) + (s.substr(s.size() - 3) == "000" ? 0 : 1);
        Hand hw(im);
        status = -1;
        hw.reader.CaptureBid(bids, status);
        EXPECT_EQ(status, want) << "row " << row;
    }
}

TEST(GetBoardStatByHand, OrdinaryPanelGivesFourteenButtons) {
    platform::Image img(640, 700, kBack);
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 5; ++col) {
            const int n = row * 5 + col + 1;
            const int x = 120 + col * 28, y = 420 + row * 26;
            if (n <= 13) {
                PutNumber(img, x, y, n);
            } else if (n == 14) {
                int cx = PutHex(img, x, y, kN) + 1;
                cx = PutHex(img, cx, y, kI);
                PutHex(img, cx, y, kL);
            }
        }
    }
    Hand h(img);
    EXPECT_EQ(h.reader.GetBoardStat(0), 100);
    EXPECT_EQ(h.reader.BtnXY[10], (platform::Point{120 + 4 * 28, 446}));
    EXPECT_EQ(h.reader.BtnXY[14], (platform::Point{120 + 3 * 28, 472}));
    EXPECT_EQ(h.reader.BtnXY[15], platform::Point{});
    // Without the fourth word after 13 the panel is not recognised.
    platform::Image cut = img;
    cut.FillRect(120 + 3 * 28, 470, 250, 490, kBack);
    Hand hc(cut);
    EXPECT_EQ(hc.reader.GetBoardStat(0), 0);
    EXPECT_EQ(hc.reader.BtnXY[6], (platform::Point{120, 446}));
}

TEST(CaptureTricksByHand, LabelOnTheCentreColumnTakesThePreviousPosition) {
    const std::string kTricks[7] = {"4004004007FC400400400", "1FC080100", "5FC000", "0F8104104088",
                                    "7FC020060098104",       "0C8124124124098", "104000"};
    auto putTricks = [&](platform::Image& img, int x, int y, int n) {
        for (const auto& s : kTricks) x = PutHex(img, x, y, s) + (s.substr(s.size() - 3) == "000" ? 0 : 1);
        PutNumber(img, x + 4, y, n);
    };
    platform::Image img(640, 700, kBack);
    PutFrame(img, 231, 401);
    putTricks(img, 353, 260, 5);  // first label of the scan, on the centre: position 0
    putTricks(img, 250, 280, 1);  // upper left: position 1
    putTricks(img, 353, 340, 6);  // on the centre again: takes position 1
    putTricks(img, 400, 370, 2);  // lower right: position 3
    Hand h(img);
    std::array<int, 4> tricks{9, 9, 9, 9};
    EXPECT_EQ(h.reader.CaptureTricks(tricks), 4);
    EXPECT_EQ(tricks, (std::array<int, 4>{5, 6, 9, 2}));
    EXPECT_EQ((std::array<platform::Point, 3>{h.reader.TrickPos[0], h.reader.TrickPos[1], h.reader.TrickPos[3]}),
              (std::array<platform::Point, 3>{{{353, 260}, {353, 340}, {400, 370}}}));
    EXPECT_EQ(h.cap.BMBits.size(), 1u);  // the buffer is given up after the scan
}
