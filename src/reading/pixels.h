// The one pixel buffer every reader works on, its capture records, the
// pixel tests and the 12-row text bands (LineBMP) the glyph reader matches.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/image.h"
#include "platform/screen_capture.h"
#include "platform/windowing.h"

namespace reading {

constexpr int GlyphHeight = 12;
constexpr std::uint16_t kEndMark = 0x4000;
constexpr std::int32_t kLeftEdgeLimit = 1000;

// What the buffer currently holds.
struct BM {
    std::int32_t Left = 0, Top = 0, Width = 0, Height = 0, Length = 0, Lines = 0, Right = 0, Bottom = 0;
};

// A text band: one 12-bit column value per x, entry lo = OR of all columns,
// entry hi = end marker.
struct LineBmp {
    std::int32_t lo = 0, hi = 0;
    std::vector<std::uint16_t> v{0};

    void Dim(std::int32_t newLo, std::int32_t newHi) {
        lo = newLo;
        hi = newHi < newLo ? newLo : newHi;
        v.assign(static_cast<std::size_t>(hi - lo + 1), 0);
    }
    std::uint16_t& operator[](std::int32_t x) { return v[static_cast<std::size_t>(x - lo)]; }
    std::uint16_t operator[](std::int32_t x) const { return v[static_cast<std::size_t>(x - lo)]; }
    bool InRange(std::int32_t x) const { return x >= lo && x <= hi; }
};

inline int RedOf(std::uint16_t p) { return (p >> 10) & 31; }
inline int GreenOf(std::uint16_t p) { return (p >> 5) & 31; }
inline int BlueOf(std::uint16_t p) { return p & 31; }
inline bool IsBlack(std::uint16_t p) { return (p & 0x7FFF) == 0; }
inline bool IsWhite(std::uint16_t p) { return (p & 0x7FFF) == 0x7FFF; }
inline bool IsGray(std::uint16_t p) {
    const int b = BlueOf(p);
    return b >= 15 && b <= 27 && RedOf(p) == b && GreenOf(p) == b;
}
// Each channel within 1 level of the reference (r, g, b are 5-bit levels).
inline bool IsNearColor(std::uint16_t p, int r, int g, int b) {
    auto near = [](int a, int c) { return a - c < 2 && c - a < 2; };
    return near(RedOf(p), r) && near(GreenOf(p), g) && near(BlueOf(p), b);
}

std::string FormatRect(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom);
std::string FormatPoint(std::int32_t x, std::int32_t y);

constexpr int kSubWindowCount = 7;

// Where the game's auxiliary windows ("Last Trick" 1, "Last Hand" 2, score 3)
// are: whoever finds and places them answers the capture.
class SubWindowSource {
public:
    virtual ~SubWindowSource() = default;
    // The window of slot k; 0 = not known.
    [[nodiscard]] virtual platform::WindowHandle SubWindowHandle(int k) const = 0;
    // Slot k is about to be copied (on top and restored already): put it
    // where it can be seen whole.
    virtual void PlaceForCapture(int /*k*/) {}
    // Slot k delivered nothing: open it again if possible.
    virtual void ReopenSubWindow(int /*k*/) {}
};

// Fixed handles, for readers of windows that nobody moves (stored images,
// tests, benchmarks).
struct FixedSubWindows final : SubWindowSource {
    std::array<platform::WindowHandle, kSubWindowCount> Handle{};
    [[nodiscard]] platform::WindowHandle SubWindowHandle(int k) const override {
        return k >= 0 && k < kSubWindowCount ? Handle[static_cast<std::size_t>(k)] : 0;
    }
};

class Capture {
public:
    Capture(platform::Windows& windows, platform::ScreenCapture& screen, platform::Clock& clock,
            SubWindowSource* subWindows = nullptr)
        : windows_(windows), screen_(screen), clock_(clock), subs_(subWindows) {}

    platform::Windows& Windows() { return windows_; }
    platform::Clock& Clock() { return clock_; }

    // --- state ----------------------------------------------------------------
    std::vector<std::uint16_t> BMBits = std::vector<std::uint16_t>(1, 0);
    BM BMScreen, BMSub;
    LineBmp LineBMP, LineBMPSave;
    std::int32_t LastLine = 0;
    int FontIndex = 0;  // reading font index; decides the post-copy wait
    platform::WindowHandle GameWindow = 0;
    // The sub-windows' finder; none = no sub-window is known.
    void SetSubWindows(SubWindowSource* source) { subs_ = source; }
    [[nodiscard]] platform::WindowHandle SubWindowHandle(int k) const { return subs_ ? subs_->SubWindowHandle(k) : 0; }
    // Receives trace lines when a log file is named; empty = no log.
    std::function<void(const std::string&)> Trace;

    // --- capture ----------------------------------------------------------------
    void CaptureRect(platform::WindowHandle h, BM& rec, const platform::Rect& region, platform::Area area);
    void CaptureScreenRect(const platform::Rect& region);
    void CaptureGameRect(const platform::Rect& region);
    std::int32_t CaptureSubWindow(int k);
    // Fills the buffer and record from a stored image as a capture of the
    // whole image would (Left = Top = 0, Width/Height = image size).
    void LoadImage(const platform::Image& img, BM& rec);

    // --- pixels -----------------------------------------------------------------
    // False outside the captured region or buffer.
    bool Pixel(const BM& rec, std::int32_t x, std::int32_t y, std::uint16_t& p) const {
        if (rec.Lines <= 0 || x < rec.Left || x >= rec.Right || y < rec.Top || y >= rec.Bottom) return false;
        const std::int64_t idx = static_cast<std::int64_t>(rec.Bottom - 1 - y) * rec.Length + (x - rec.Left);
        if (idx < 0 || idx >= static_cast<std::int64_t>(BMBits.size())) return false;
        p = BMBits[static_cast<std::size_t>(idx)];
        return true;
    }
    bool BlackAt(const BM& rec, std::int32_t x, std::int32_t y) const {
        std::uint16_t p;
        return Pixel(rec, x, y, p) && IsBlack(p);
    }
    bool DarkAt(const BM& rec, std::int32_t x, std::int32_t y) const {
        std::uint16_t p;
        return Pixel(rec, x, y, p) && BlueOf(p) < 15;
    }
    bool GrayAt(const BM& rec, std::int32_t x, std::int32_t y) const {
        std::uint16_t p;
        return Pixel(rec, x, y, p) && IsGray(p);
    }

    // --- bands --------------------------------------------------------------------
    void GetLineBMPmain(const std::string& label, std::int32_t y);
    void GetLineBMP(const std::string& label, std::int32_t y, std::int32_t g);
    std::int32_t FindGrayRow(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) const;
    std::int32_t FindBlackRow(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) const;

private:
    void TraceOutside(const char* name, const std::string& label, std::int32_t y, const BM& rec, std::int32_t g,
                      bool withGray);

    // Sizes the record and buffer for `region` of a source of size `src`;
    // false when nothing is to be copied.
    bool PrepareCopy(BM& rec, const platform::Rect& src, platform::Rect& region);

    platform::Windows& windows_;
    platform::ScreenCapture& screen_;
    platform::Clock& clock_;
    SubWindowSource* subs_ = nullptr;
};

}  // namespace reading
