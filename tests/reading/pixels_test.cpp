#include <gtest/gtest.h>

#include <fstream>

#include "platform/sim_desktop.h"
#include "reading/image_file.h"
#include "reading/pixels.h"

using namespace reading;
using platform::Image;
using platform::Rgb;

namespace {

struct Rig {
    platform::SimDesktop desk{800, 600};
    platform::VirtualClock clock;
    Capture cap{desk, clock};
};

constexpr std::uint32_t kGray = Rgb(0xC0, 0xC0, 0xC0);

}  // namespace

TEST(CaptureRectTest, ZeroRightAndBottomMeanTheWholeSourceAndWaitsGoThroughTheClock) {
    Rig r;
    auto h = r.desk.AddWindow("t", {5, 5, 105, 65});
    const auto t0 = r.clock.TickCount();
    r.cap.CaptureRect(h, r.cap.BMScreen, {10, 20, 0, 0}, false);
    const BM& bm = r.cap.BMScreen;
    EXPECT_EQ(bm.Width, 100);
    EXPECT_EQ(bm.Height, 60);
    EXPECT_EQ(bm.Right, 100);
    EXPECT_EQ(bm.Bottom, 60);
    EXPECT_EQ(bm.Lines, 40);
    EXPECT_EQ(bm.Length, 90);
    // The settling wait goes through the clock, longer for the second font.
    EXPECT_EQ(r.clock.TickCount() - t0, 200u);
    r.cap.FontIndex = 1;
    r.cap.CaptureRect(h, r.cap.BMScreen, {}, false);
    EXPECT_EQ(r.clock.TickCount() - t0, 200u + 600u);
}

TEST(CaptureRectTest, OddWidthPadsRowsAndAddressesEdgesExactly) {
    Rig r;
    auto h = r.desk.AddWindow("t", {0, 0, 50, 50});
    Image img(50, 50, Rgb(255, 255, 255));
    img.Set(12, 7, 0);   // right-most column, top row of the region
    img.Set(10, 15, 0);  // left column, lowest row
    r.desk.SetImage(h, img);
    r.cap.CaptureRect(h, r.cap.BMScreen, {10, 7, 13, 16}, false);
    const BM& bm = r.cap.BMScreen;
    ASSERT_EQ(bm.Length, 4);
    ASSERT_EQ(bm.Lines, 9);
    EXPECT_EQ(r.cap.BMBits[0], 0) << "lowest row at index x - Left";
    EXPECT_EQ(r.cap.BMBits[static_cast<std::size_t>((bm.Bottom - bm.Top - 1) * bm.Length + 2)], 0) << "top row";
    std::uint16_t p;
    EXPECT_TRUE(r.cap.Pixel(bm, 12, 7, p) && IsBlack(p));
    EXPECT_FALSE(r.cap.Pixel(bm, 13, 7, p)) << "the pad column is outside";
    EXPECT_FALSE(r.cap.Pixel(bm, 9, 7, p));
}

TEST(CaptureRectTest, NothingCapturedGivesZeroLines) {
    Rig r;
    auto h = r.desk.AddWindow("t", {0, 0, 1200, 50});
    r.cap.CaptureRect(h, r.cap.BMScreen, {1001, 0, 1100, 10}, false);
    EXPECT_EQ(r.cap.BMScreen.Lines, 0) << "left edge beyond 1000";
    r.cap.CaptureRect(h, r.cap.BMScreen, {1000, 0, 1100, 10}, false);
    EXPECT_EQ(r.cap.BMScreen.Lines, 10);
    auto z = r.desk.AddWindow("z", {0, 0, 0, 30});
    r.cap.CaptureRect(z, r.cap.BMScreen, {}, false);
    EXPECT_EQ(r.cap.BMScreen.Lines, 0);
    r.desk.FailCaptures(h, 1);
    r.cap.CaptureRect(h, r.cap.BMScreen, {}, false);
    EXPECT_EQ(r.cap.BMScreen.Lines, 0);
    r.desk.CloseWindow(h);
    r.cap.CaptureRect(h, r.cap.BMScreen, {}, false);
    EXPECT_EQ(r.cap.BMScreen.Lines, 0);
}

TEST(PixelTests, Classification) {
    EXPECT_TRUE(IsBlack(0x8000));
    EXPECT_TRUE(IsWhite(0x7FFF));
    EXPECT_TRUE(IsGray(platform::To555(Rgb(0x78, 0x78, 0x78))));
    EXPECT_TRUE(IsGray(platform::To555(Rgb(0xDF, 0xDF, 0xDF))));
    EXPECT_FALSE(IsGray((14 << 10) | (14 << 5) | 14));
    EXPECT_FALSE(IsGray((28 << 10) | (28 << 5) | 28));
    EXPECT_FALSE(IsGray((20 << 10) | (21 << 5) | 21));
    EXPECT_TRUE(IsNearColor((10 << 10) | (11 << 5) | 9, 10, 10, 10));
    EXPECT_FALSE(IsNearColor((12 << 10) | (10 << 5) | 10, 10, 10, 10));
    EXPECT_EQ(FormatRect(1, 2, 3, 4), "(1,2)-(3,4)");
    EXPECT_EQ(FormatPoint(5, 6), "(5,6) ");
}

TEST(LineBands, ShiftedUpdateEqualsAFreshRead) {
    Rig r;
    Image img(40, 40, Rgb(255, 255, 255));
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x)
            if ((x * 7 + y * 13) % 5 == 0) img.Set(x, y, 0);
    for (int y = 0; y < 40; ++y) img.Set(3, y, 0);  // a fully black column
    r.cap.LoadImage(img, r.cap.BMScreen);
    r.cap.LineBMP.Dim(0, 39);
    r.cap.GetLineBMPmain("t", 10);
    EXPECT_EQ(r.cap.LineBMP[3], 0xFFF);
    r.cap.GetLineBMPmain("t", 11);
    std::vector<std::uint16_t> shifted = r.cap.LineBMP.v;
    r.cap.LastLine = 0;
    r.cap.GetLineBMPmain("t", 11);
    EXPECT_EQ(shifted, r.cap.LineBMP.v);
    EXPECT_EQ(r.cap.LineBMP[39], kEndMark);
    EXPECT_NE(r.cap.LineBMP[0], 0);
}

TEST(LineBands, WhiteColumnIsZeroAndOutsideIsNoInk) {
    Rig r;
    r.cap.LoadImage(Image(10, 10, Rgb(255, 255, 255)), r.cap.BMScreen);
    r.cap.LineBMP.Dim(-5, 20);
    std::vector<std::string> traces;
    r.cap.Trace = [&](const std::string& s) { traces.push_back(s); };
    r.cap.GetLineBMPmain("MakePlayerList", 5);  // band runs past the bottom
    for (int x = -4; x < 20; ++x) EXPECT_EQ(r.cap.LineBMP[x], 0) << x;
    EXPECT_EQ(r.cap.LineBMP[-5], 0);
    ASSERT_EQ(traces.size(), 1u);
    EXPECT_NE(traces[0].find("GetLineBMPmain from MakePlayerList"), std::string::npos);
}

TEST(LineBands, GrayBackgroundEndsAFieldOnlyWithTheGraySwitch) {
    Rig r;
    Image img(6, 14, kGray);
    img.Set(1, 0, Rgb(255, 255, 255));  // row y+0 of column 1 is white, rows 2..10 gray
    img.Set(2, 5, Rgb(0, 0, 0x70));      // blue 14: dark
    img.Set(3, 5, Rgb(0, 0, 0x78));      // blue 15: not dark
    r.cap.LoadImage(img, r.cap.BMSub);
    r.cap.LineBMP.Dim(0, 5);
    r.cap.GetLineBMP("CaptHand", 0, 2);
    EXPECT_EQ(r.cap.LineBMP[1], kEndMark);
    EXPECT_EQ(r.cap.LineBMP[2], 1 << (11 - 5));
    EXPECT_EQ(r.cap.LineBMP[3], 0) << "a blank but not gray pixel keeps the field open";
    EXPECT_EQ(r.cap.LineBMP[4], kEndMark);
    r.cap.GetLineBMP("CaptHand", 0, 0);
    EXPECT_EQ(r.cap.LineBMP[1], 0);
    EXPECT_EQ(r.cap.LineBMP[4], 0);
}

TEST(RowSearch, GrayAndBlackRows) {
    Rig r;
    Image img(10, 10, Rgb(255, 255, 255));
    img.FillRect(0, 6, 10, 7, kGray);
    img.Set(4, 3, 0);
    r.cap.LoadImage(img, r.cap.BMSub);
    EXPECT_EQ(r.cap.FindGrayRow(0, 0, 9, 9), 6);
    EXPECT_EQ(r.cap.FindGrayRow(0, 0, 9, 5), -1);
    EXPECT_EQ(r.cap.FindBlackRow(0, 0, 9, 9), 3);
    EXPECT_EQ(r.cap.FindBlackRow(0, 0, 9, 3), -1) << "bottom row itself is not searched";
    EXPECT_EQ(r.cap.FindBlackRow(5, 0, 9, 9), -1);
}

TEST(SubWindowCapture, KeepsTheWindowOnScreenMovesItHomeAndRetriesAfterReopen) {
    Rig r;
    auto h = r.desk.AddWindow("Last Trick", {780, 590, 880, 650});
    r.cap.SubWindow[1].Handle = h;
    int reopened = 0;
    r.cap.ReopenSubWindow = [&](int k) { reopened += k; };
    r.desk.FailCaptures(h, 1);
    EXPECT_EQ(r.cap.CaptureSubWindow(1), 60 - 27);
    EXPECT_EQ(reopened, 1);
    platform::Rect rect;
    r.desk.GetWindowRect(h, rect);
    EXPECT_EQ(rect, (platform::Rect{705, 540, 805, 600}));
    EXPECT_EQ(r.cap.BMSub.Left, 0);
    EXPECT_EQ(r.cap.BMSub.Top, 0);

    // A window in the corner goes to its home.
    auto c = r.desk.AddWindow("Last Hand", {3, 4, 203, 104});
    r.cap.SubWindow[2] = {c, {}, false, {300, 200}};
    r.cap.CaptureSubWindow(2);
    r.desk.GetWindowRect(c, rect);
    EXPECT_EQ(rect, (platform::Rect{300, 200, 500, 300}));
    EXPECT_TRUE(r.cap.SubWindow[2].Placed);
}

// PNG saving and loading are checked together with the gamma chunk below.
TEST(ImageFiles, BmpLoadsBottomUpAndGarbageIsRefused) {
    Image img(3, 2);
    img.Set(0, 0, Rgb(1, 2, 3));
    img.Set(2, 1, Rgb(250, 128, 7));
    Image back;
    std::string err;
    // 24-bit bottom-up BMP, 3x2, rows padded to 12 bytes.
    std::string bmp = "BM";
    auto le = [&](std::uint32_t v, int n) {
        for (int i = 0; i < n; ++i) bmp += static_cast<char>((v >> (8 * i)) & 0xFF);
    };
    le(54 + 24, 4); le(0, 4); le(54, 4); le(40, 4); le(3, 4); le(2, 4); le(1, 2); le(24, 2);
    le(0, 4); le(24, 4); le(0, 4); le(0, 4); le(0, 4); le(0, 4);
    for (int y = 1; y >= 0; --y) {
        for (int x = 0; x < 3; ++x) {
            std::uint32_t p = img.At(x, y);
            bmp += static_cast<char>(p & 0xFF);
            bmp += static_cast<char>((p >> 8) & 0xFF);
            bmp += static_cast<char>((p >> 16) & 0xFF);
        }
        bmp += std::string(3, '\0');
    }
    ASSERT_TRUE(LoadImageBytes(bmp, back, err)) << err;
    EXPECT_EQ(back.Pixels, img.Pixels);
    EXPECT_FALSE(LoadImageBytes(bmp.substr(0, 60), back, err));
    EXPECT_FALSE(LoadImageBytes("\x89PNG\r\n\x1a\ngarbage", back, err));
    EXPECT_FALSE(LoadImageBytes("", back, err));
    EXPECT_FALSE(LoadImageFile("/nonexistent/x.png", back, err));
}

// A capture copies pixels as stored: a PNG's gamma chunk must not change
// them, and a bitmap without rows is an empty picture, not a broken file.
TEST(ImageFiles, PngGammaIsIgnoredAndARowlessBmpIsEmpty) {
    Image img(3, 2);
    img.Set(1, 0, Rgb(100, 150, 200));
    img.Set(2, 1, Rgb(8, 0, 248));
    const std::string path = ::testing::TempDir() + "/pixels_gamma.png";
    std::string err;
    ASSERT_TRUE(SaveImagePng(path, img, err)) << err;
    std::ifstream in(path, std::ios::binary);
    std::string png((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    ASSERT_GT(png.size(), 33u);
    auto crc = [](const std::string& s) {
        std::uint32_t c = 0xFFFFFFFFu;
        for (unsigned char b : s) {
            c ^= b;
            for (int k = 0; k < 8; ++k) c = (c >> 1) ^ (0xEDB88320u & (0u - (c & 1u)));
        }
        return ~c;
    };
    auto be = [](std::uint32_t v) {
        return std::string{static_cast<char>(v >> 24), static_cast<char>(v >> 16), static_cast<char>(v >> 8), static_cast<char>(v)};
    };
    const std::string body = "gAMA" + be(100000);  // linear light
    png.insert(33, be(4) + body + be(crc(body)));   // right after IHDR
    Image back;
    ASSERT_TRUE(LoadImageBytes(png, back, err)) << err;
    EXPECT_EQ(back.Pixels, img.Pixels);

    std::string bmp = "BM";
    auto le = [&](std::uint32_t v, int n) {
        for (int i = 0; i < n; ++i) bmp += static_cast<char>((v >> (8 * i)) & 0xFF);
    };
    le(54, 4); le(0, 4); le(54, 4); le(40, 4); le(3, 4); le(0, 4); le(1, 2); le(24, 2);
    le(0, 4); le(0, 4); le(0, 4); le(0, 4); le(0, 4); le(0, 4);
    ASSERT_TRUE(LoadImageBytes(bmp, back, err)) << err;
    EXPECT_EQ(back.Width, 3);
    EXPECT_EQ(back.Height, 0);
}
