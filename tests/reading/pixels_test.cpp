#include <gtest/gtest.h>

#include <fstream>

#include "platform/sim/sim_desktop.h"
#include "platform/sim/virtual_clock.h"
#include "reading/image_file.h"
#include "reading/pixels.h"

using namespace reading;
using platform::Image;
using platform::Rgb;

namespace {

struct Rig {
    platform::SimDesktop desk{800, 600};
    platform::VirtualClock clock;
    Capture cap{desk, desk, clock};
};

// A 24-bit bottom-up BMP of `img`, rows padded to four bytes.
std::string Bmp(const Image& img) {
    std::string b = "BM";
    auto le = [&](std::uint32_t v, int n) {
        for (int i = 0; i < n; ++i) b += static_cast<char>((v >> (8 * i)) & 0xFF);
    };
    const int row = (img.Width * 3 + 3) / 4 * 4, size = row * img.Height;
    le(54 + size, 4), le(0, 4), le(54, 4), le(40, 4), le(img.Width, 4), le(img.Height, 4), le(1, 2), le(24, 2);
    le(0, 4), le(size, 4), le(0, 4), le(0, 4), le(0, 4), le(0, 4);
    for (int y = img.Height - 1; y >= 0; --y) {
        for (int x = 0; x < img.Width; ++x)
            for (int k = 0; k < 3; ++k) b += static_cast<char>((img.At(x, y) >> (8 * k)) & 0xFF);
        b.append(static_cast<std::size_t>(row - img.Width * 3), '\0');
    }
    return b;
}

}  // namespace

TEST(CaptureRectTest, ZeroRightAndBottomMeanTheWholeSourceAndWaitsGoThroughTheClock) {
    Rig r;
    auto h = r.desk.AddWindow("t", {5, 5, 105, 65});
    const auto t0 = r.clock.TickCount();
    r.cap.CaptureRect(h, r.cap.BMScreen, {10, 20, 0, 0}, platform::Area::Window);
    const BM& bm = r.cap.BMScreen;
    EXPECT_EQ((std::array<int, 6>{bm.Width, bm.Height, bm.Right, bm.Bottom, bm.Lines, bm.Length}),
              (std::array<int, 6>{100, 60, 100, 60, 40, 90}));
    // The settling wait goes through the clock, longer for the second font.
    EXPECT_EQ(r.clock.TickCount() - t0, 200u);
    r.cap.FontIndex = 1;
    r.cap.CaptureRect(h, r.cap.BMScreen, {}, platform::Area::Window);
    EXPECT_EQ(r.clock.TickCount() - t0, 200u + 600u);
}

TEST(CaptureRectTest, OddWidthPadsRowsAndAddressesEdgesExactly) {
    Rig r;
    auto h = r.desk.AddWindow("t", {0, 0, 50, 50});
    Image img(50, 50, Rgb(255, 255, 255));
    img.Set(12, 7, 0);   // right-most column, top row of the region
    img.Set(10, 15, 0);  // left column, lowest row
    r.desk.SetImage(h, img);
    r.cap.CaptureRect(h, r.cap.BMScreen, {10, 7, 13, 16}, platform::Area::Window);
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
    r.cap.CaptureRect(h, r.cap.BMScreen, {1001, 0, 1100, 10}, platform::Area::Window);
    EXPECT_EQ(r.cap.BMScreen.Lines, 0) << "left edge beyond 1000";
    r.cap.CaptureRect(h, r.cap.BMScreen, {1000, 0, 1100, 10}, platform::Area::Window);
    EXPECT_EQ(r.cap.BMScreen.Lines, 10);
    // Failed captures and closed windows are met in the session tests.
    auto z = r.desk.AddWindow("z", {0, 0, 0, 30});
    r.cap.CaptureRect(z, r.cap.BMScreen, {}, platform::Area::Window);
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
    r.cap.GetLineBMPmain("MakePlayerList", 5);  // band runs past the bottom
    for (int x = -5; x < 20; ++x) EXPECT_EQ(r.cap.LineBMP[x], 0) << x;
}

// A sub-window copy that delivers nothing asks its finder to open the
// window again, and copies once more.
TEST(SubWindowCapture, RetriesAfterReopen) {
    struct Reopening final : reading::SubWindowSource {
        platform::WindowHandle h = 0;
        int placed = 0, reopened = 0;
        platform::WindowHandle SubWindowHandle(int k) const override { return k == 1 ? h : 0; }
        void PlaceForCapture(int) override { ++placed; }
        void ReopenSubWindow(int k) override { reopened += k; }
    } subs;
    Rig r;
    r.cap.SetSubWindows(&subs);
    subs.h = r.desk.AddWindow("Last Trick", {700, 500, 800, 560});
    r.desk.FailCaptures(subs.h, 1);
    EXPECT_EQ(r.cap.CaptureSubWindow(1), 60 - 27);
    EXPECT_EQ(subs.reopened, 1);
    EXPECT_EQ(subs.placed, 2);
    EXPECT_EQ(r.cap.BMSub.Left, 0);
    EXPECT_EQ(r.cap.BMSub.Top, 0);
}

// PNG saving and loading are checked together with the gamma chunk below.
// A bitmap without rows is an empty picture, not a broken file.
TEST(ImageFiles, BmpLoadsBottomUpAndGarbageIsRefused) {
    Image img(3, 2);
    img.Set(0, 0, Rgb(1, 2, 3));
    img.Set(2, 1, Rgb(250, 128, 7));
    Image back;
    std::string err;
    const std::string bmp = Bmp(img);
    ASSERT_TRUE(LoadImageBytes(bmp, back, err)) << err;
    EXPECT_EQ(back.Pixels, img.Pixels);
    ASSERT_TRUE(LoadImageBytes(Bmp(Image(3, 0)), back, err)) << err;
    EXPECT_EQ((std::pair{back.Width, back.Height}), (std::pair{3, 0}));
    EXPECT_FALSE(LoadImageBytes(bmp.substr(0, 60), back, err));
    EXPECT_FALSE(LoadImageBytes("\x89PNG\r\n\x1a\ngarbage", back, err));
    EXPECT_FALSE(LoadImageBytes("", back, err));
    EXPECT_FALSE(LoadImageFile("/nonexistent/x.png", back, err));
}

// A capture copies pixels as stored: a PNG's gamma chunk must not change them.
TEST(ImageFiles, PngGammaIsIgnored) {
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
}
