#include "reading/pixels.h"

#include <algorithm>
#include <cstdlib>

namespace reading {

std::string FormatRect(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) {
    return "(" + std::to_string(left) + "," + std::to_string(top) + ")-(" + std::to_string(right) + "," +
           std::to_string(bottom) + ")";
}

std::string FormatPoint(std::int32_t x, std::int32_t y) {
    return "(" + std::to_string(x) + "," + std::to_string(y) + ") ";
}

bool Capture::PrepareCopy(BM& rec, const platform::Rect& src, platform::Rect& r) {
    rec.Width = src.Width();
    rec.Height = src.Height();
    if (static_cast<std::int64_t>(rec.Width) * rec.Height == 0) return false;
    if (r.Right == 0) r.Right = rec.Width;
    if (r.Bottom == 0) r.Bottom = rec.Height;
    if (r.Left > kLeftEdgeLimit) return false;
    const std::int32_t w = r.Right - r.Left, hgt = r.Bottom - r.Top;
    rec.Left = r.Left;
    rec.Top = r.Top;
    rec.Right = r.Right;
    rec.Bottom = r.Bottom;
    rec.Length = w + (w % 2);
    if (w <= 0 || hgt <= 0) return false;
    // Every word of the rows is written by the copy; no need to clear first.
    BMBits.resize(static_cast<std::size_t>(rec.Length) * static_cast<std::size_t>(hgt));
    clock_.Wait(FontIndex != 0 ? 500 : 100);
    return true;
}

void Capture::CaptureRect(platform::WindowHandle h, BM& rec, const platform::Rect& region, platform::Area area) {
    rec.Lines = 0;
    clock_.Wait(100);
    const std::optional<platform::Rect> src =
        area == platform::Area::Client ? windows_.ClientRect(h) : windows_.WindowRect(h);
    platform::Rect r = region;
    if (!src || !PrepareCopy(rec, *src, r)) return;
    const std::int32_t lines = screen_.CopyRegion(h, area, r, BMBits);
    rec.Lines = lines < 0 ? 0 : lines;
}

void Capture::CaptureScreenRect(const platform::Rect& region) {
    BMScreen.Lines = 0;
    clock_.Wait(100);
    const platform::Point size = windows_.ScreenSize();
    platform::Rect r = region;
    if (!PrepareCopy(BMScreen, {0, 0, size.X, size.Y}, r)) return;
    const std::int32_t lines = screen_.CopyScreenRegion(r, BMBits);
    BMScreen.Lines = lines < 0 ? 0 : lines;
}

void Capture::CaptureGameRect(const platform::Rect& region) { CaptureRect(GameWindow, BMScreen, region, platform::Area::Window); }

std::int32_t Capture::CaptureSubWindow(int k) {
    if (k < 0 || k >= kSubWindowCount) return 0;
    auto once = [&]() {
        const platform::WindowHandle h = SubWindowHandle(k);
        windows_.SetTopmost(h, true);
        if (platform::IsMinimized(windows_, h)) windows_.Restore(h);
        if (subs_) subs_->PlaceForCapture(k);
        CaptureRect(h, BMSub, {}, platform::Area::Client);
    };
    once();
    if (BMSub.Lines == 0 && subs_) {
        subs_->ReopenSubWindow(k);
        once();
    }
    return BMSub.Lines;
}

void Capture::LoadImage(const platform::Image& img, BM& rec) {
    rec = BM{};
    rec.Width = img.Width;
    rec.Height = img.Height;
    if (img.Width <= 0 || img.Height <= 0) {
        BMBits.assign(1, 0);
        return;
    }
    rec.Right = img.Width;
    rec.Bottom = img.Height;
    rec.Length = img.Width + (img.Width % 2);
    BMBits.assign(static_cast<std::size_t>(rec.Length) * static_cast<std::size_t>(img.Height), 0);
    for (std::int32_t y = 0; y < img.Height; ++y) {
        std::uint16_t* row = BMBits.data() + static_cast<std::size_t>(img.Height - 1 - y) * static_cast<std::size_t>(rec.Length);
        for (std::int32_t x = 0; x < img.Width; ++x) row[x] = platform::To555(img.At(x, y));
    }
    rec.Lines = img.Height;
}

void Capture::TraceOutside(const char* name, const std::string& label, std::int32_t y, const BM& rec, std::int32_t g,
                           bool withGray) {
    if (!Trace) return;
    std::string line = std::string(name) + " from " + label + ", BM.Length = " + std::to_string(rec.Length) +
                       " Line = " + std::to_string(y) + " BM = " + FormatRect(rec.Left, rec.Top, rec.Right, rec.Bottom) +
                       " k, UB =" + std::to_string(LineBMP.hi) + " " + std::to_string(BMBits.size());
    if (withGray) line += " GraySwitch = " + std::to_string(g);
    Trace(line);
}

namespace {

// Buffer offsets (minus Left) of the band's rows, -1 for rows outside the
// captured region, and the captured column range; lets the band loops read
// the buffer directly instead of testing every pixel's address.
struct BandRows {
    std::int64_t Off[GlyphHeight];
    std::int32_t X0, X1;  // inclusive column range inside the capture

    BandRows(const BM& rec, std::size_t size, std::int32_t y, std::int32_t lo, std::int32_t hi) {
        X0 = std::max(lo + 1, rec.Left);
        X1 = std::min(hi - 1, rec.Right - 1);
        for (int k = 0; k < GlyphHeight; ++k) {
            const std::int32_t yy = y + k;
            Off[k] = -1;
            if (rec.Lines <= 0 || yy < rec.Top || yy >= rec.Bottom) continue;
            const std::int64_t row = static_cast<std::int64_t>(rec.Bottom - 1 - yy) * rec.Length;
            if (row < 0 || row + (rec.Right - rec.Left) > static_cast<std::int64_t>(size)) continue;
            Off[k] = row - rec.Left;
        }
    }
};

}  // namespace

void Capture::GetLineBMPmain(const std::string& label, std::int32_t y) {
    if (BMBits.size() <= 1) return;
    const BM& rec = BMScreen;
    if (y < rec.Top || y + GlyphHeight > rec.Bottom) TraceOutside("GetLineBMPmain", label, y, rec, 0, false);
    const BandRows band(rec, BMBits.size(), y, LineBMP.lo, LineBMP.hi);
    const std::int32_t a = LineBMP.lo + 1, b = LineBMP.hi - 1;
    if (a <= b) {
        std::uint16_t* out = &LineBMP[a];
        const std::size_t n = static_cast<std::size_t>(b - a + 1);
        // Row-wise over the captured columns; columns off the capture get no ink.
        auto addRow = [&](int k, std::uint16_t bit) {
            if (band.Off[k] < 0 || band.X0 > band.X1) return;
            const std::uint16_t* row = BMBits.data() + (band.Off[k] + band.X0);
            std::uint16_t* o = out + (band.X0 - a);
            for (std::int32_t i = 0, m = band.X1 - band.X0; i <= m; ++i)
                o[i] = static_cast<std::uint16_t>(o[i] | (((row[i] & 0x7FFF) == 0) ? bit : 0));
        };
        if (y == LastLine + 1) {
            // The band moved down one row: keep 11 rows, add the new bottom one.
            for (std::size_t i = 0; i < n; ++i) out[i] = static_cast<std::uint16_t>((out[i] & 0x7FF) << 1);
            addRow(GlyphHeight - 1, 1);
        } else {
            std::fill(out, out + n, std::uint16_t{0});
            for (int k = 0; k < GlyphHeight; ++k) addRow(k, static_cast<std::uint16_t>(1u << (11 - k)));
        }
        std::uint16_t summary = 0;
        for (std::size_t i = 0; i < n; ++i) summary |= out[i];
        LineBMP[LineBMP.lo] = summary;
    } else {
        LineBMP[LineBMP.lo] = 0;
    }
    LineBMP[LineBMP.hi] = kEndMark;
    LastLine = y;
}

void Capture::GetLineBMP(const std::string& label, std::int32_t y, std::int32_t g) {
    const BM& rec = BMSub;
    if (y < 0 || y + GlyphHeight > rec.Height) TraceOutside("GetLineBMP", label, y, rec, g, true);
    const BandRows band(rec, BMBits.size(), y, LineBMP.lo, LineBMP.hi);
    const std::uint16_t* bits = BMBits.data();
    std::uint16_t summary = 0;
    for (std::int32_t x = LineBMP.lo + 1; x <= LineBMP.hi - 1; ++x) {
        std::uint16_t value = 0;
        const bool inside = x >= band.X0 && x <= band.X1;
        if (inside)
            for (int k = 0; k < GlyphHeight; ++k)
                if (band.Off[k] >= 0 && BlueOf(bits[band.Off[k] + x]) < 15) value |= static_cast<std::uint16_t>(1u << (11 - k));
        if (value == 0 && g != 0) {
            // The field ends where the gray background begins.
            bool allGray = inside;
            for (std::int32_t r = g; r <= 10 && allGray; ++r) {
                if (r >= 0 && r < GlyphHeight)
                    allGray = band.Off[r] >= 0 && IsGray(bits[band.Off[r] + x]);
                else
                    allGray = GrayAt(rec, x, y + r);
            }
            if (allGray) value = kEndMark;
        }
        LineBMP[x] = value;
        summary |= value;
    }
    LineBMP[LineBMP.lo] = summary;
    LineBMP[LineBMP.hi] = kEndMark;
}

std::int32_t Capture::FindGrayRow(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) const {
    for (std::int32_t y = top; y <= bottom; ++y) {
        bool all = true;
        for (std::int32_t x = left; x <= right && all; ++x) all = GrayAt(BMSub, x, y);
        if (all) return y;
    }
    return -1;
}

std::int32_t Capture::FindBlackRow(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) const {
    for (std::int32_t y = top; y <= bottom - 1; ++y)
        for (std::int32_t x = left; x <= right; ++x)
            if (BlackAt(BMSub, x, y)) return y;
    return -1;
}

}  // namespace reading
