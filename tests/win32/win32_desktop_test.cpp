// The Windows desktop against a target window of the test's own: a window
// on its own thread that paints a known pattern and records the clicks it
// receives, as the game's windows would.
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// windows.h names a function of its own OpenDesktop.
#undef OpenDesktop

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/factory/open_desktop.h"
#include "win32/wait_for.h"
#include "platform/image.h"

namespace {

using platform::Area;
using platform::Point;
using platform::Rect;

constexpr int kClientW = 203, kClientH = 151;  // odd width: rows get a padding word

std::uint32_t PatternAt(int x, int y) {
    return platform::Rgb(static_cast<std::uint32_t>(x * 7) & 0xF8, static_cast<std::uint32_t>(y * 5) & 0xF8,
                         static_cast<std::uint32_t>((x + y) * 3) & 0xF8);
}

bool WaitFor(const std::function<bool()>& done, int ms = 5000) { return win32_test::WaitFor(done, ms); }

class TargetWindow {
public:
    explicit TargetWindow(const wchar_t* title, int left = 120, int top = 90) {
        thread_ = std::thread([this, title, left, top] { Run(title, left, top); });
        WaitFor([this] { return hwnd_.load() != nullptr; });
        // Shown and painted once before the test looks at it.
        WaitFor([this] { return painted_.load(); });
    }
    ~TargetWindow() {
        if (HWND h = hwnd_.load()) PostMessageW(h, WM_CLOSE, 0, 0);
        thread_.join();
    }
    HWND Hwnd() const { return hwnd_.load(); }
    platform::WindowHandle Handle() const { return static_cast<platform::WindowHandle>(reinterpret_cast<std::intptr_t>(Hwnd())); }
    std::vector<Point> Clicks() {
        std::lock_guard<std::mutex> lock(mutex_);
        return clicks_;
    }

private:
    static LRESULT CALLBACK Proc(HWND h, UINT msg, WPARAM wp, LPARAM lp) {
        auto* self = reinterpret_cast<TargetWindow*>(GetWindowLongPtrW(h, GWLP_USERDATA));
        switch (msg) {
            case WM_PAINT: {
                PAINTSTRUCT ps;
                HDC dc = BeginPaint(h, &ps);
                std::vector<std::uint32_t> px(static_cast<std::size_t>(kClientW * kClientH));
                for (int y = 0; y < kClientH; ++y)
                    for (int x = 0; x < kClientW; ++x) px[static_cast<std::size_t>(y * kClientW + x)] = PatternAt(x, y);
                BITMAPINFO bi{};
                bi.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
                bi.bmiHeader.biWidth = kClientW;
                bi.bmiHeader.biHeight = -kClientH;
                bi.bmiHeader.biPlanes = 1;
                bi.bmiHeader.biBitCount = 32;
                bi.bmiHeader.biCompression = BI_RGB;
                SetDIBitsToDevice(dc, 0, 0, kClientW, kClientH, 0, 0, 0, kClientH, px.data(), &bi, DIB_RGB_COLORS);
                EndPaint(h, &ps);
                if (self) self->painted_ = true;
                return 0;
            }
            case WM_LBUTTONDOWN:
                if (self) {
                    std::lock_guard<std::mutex> lock(self->mutex_);
                    self->clicks_.push_back({static_cast<short>(LOWORD(lp)), static_cast<short>(HIWORD(lp))});
                }
                return 0;
            case WM_DESTROY:
                PostQuitMessage(0);
                return 0;
            default:
                return DefWindowProcW(h, msg, wp, lp);
        }
    }

    void Run(const wchar_t* title, int left, int top) {
        WNDCLASSW wc{};
        wc.lpfnWndProc = Proc;
        wc.hInstance = GetModuleHandleW(nullptr);
        wc.lpszClassName = L"TarvellosTestTarget";
        wc.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
        RegisterClassW(&wc);  // fails harmlessly when a previous target registered it
        RECT r{0, 0, kClientW, kClientH};
        const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
        AdjustWindowRect(&r, style, FALSE);
        HWND h = CreateWindowW(wc.lpszClassName, title, style, left, top, r.right - r.left, r.bottom - r.top,
                               nullptr, nullptr, wc.hInstance, nullptr);
        SetWindowLongPtrW(h, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        ShowWindow(h, SW_SHOWNORMAL);
        UpdateWindow(h);
        hwnd_ = h;
        MSG m;
        while (GetMessageW(&m, nullptr, 0, 0) > 0) {
            TranslateMessage(&m);
            DispatchMessageW(&m);
        }
        hwnd_ = nullptr;
    }

    std::thread thread_;
    std::atomic<HWND> hwnd_{nullptr};
    std::atomic<bool> painted_{false};
    std::mutex mutex_;
    std::vector<Point> clicks_;
};

class Win32DesktopTest : public ::testing::Test {
protected:
    void SetUp() override {
        opened_ = platform::OpenDesktop(platform::DesktopKind::Native);
        ASSERT_TRUE(opened_.Backend) << opened_.Error;
    }
    platform::Desktop D() { return opened_.Backend->Roles(); }
    platform::OpenedDesktop opened_;
};

// The pixels of a region as the 5-5-5 bottom-up copy must hold them.
void ExpectPattern(const std::vector<std::uint16_t>& bits, const Rect& region) {
    const int w = region.Width(), h = region.Height(), length = w + (w & 1);
    int wrong = 0;
    for (int row = 0; row < h; ++row)
        for (int x = 0; x < w; ++x) {
            const int cx = region.Left + x, cy = region.Bottom - 1 - row;
            const bool inside = cx >= 0 && cy >= 0 && cx < kClientW && cy < kClientH;
            const std::uint16_t want = inside ? platform::To555(PatternAt(cx, cy)) : 0;
            const std::uint16_t got = bits[static_cast<std::size_t>(row * length + x)];
            if (got != want && wrong++ < 5)
                ADD_FAILURE() << "pixel " << cx << "," << cy << ": got " << std::hex << got << " want " << want;
        }
    EXPECT_EQ(wrong, 0);
}

TEST_F(Win32DesktopTest, FindsTheWindowWithItsTitleAndGeometry) {
    TargetWindow target(L"Game: Spades Table: Ek\u00f6 \u30c6\u30b9\u30c8");
    auto d = D();
    const auto all = d.windows.TopLevel();
    EXPECT_NE(std::find(all.begin(), all.end(), target.Handle()), all.end());
    EXPECT_EQ(d.windows.Title(target.Handle()).value_or("?"), "Game: Spades Table: Ek\xc3\xb6 \xe3\x83\x86\xe3\x82\xb9\xe3\x83\x88");
    const auto info = d.windows.Info(target.Handle());
    ASSERT_TRUE(info);
    EXPECT_TRUE(info->Decorated);
    EXPECT_TRUE(info->Visible);
    EXPECT_FALSE(info->Minimized);
    EXPECT_TRUE(d.windows.IsOwnWindow(target.Handle()));
    EXPECT_EQ(d.windows.ClientRect(target.Handle()).value_or(Rect{}), (Rect{0, 0, kClientW, kClientH}));
    const Rect outer = d.windows.WindowRect(target.Handle()).value_or(Rect{});
    const Point origin = d.windows.ClientOrigin(target.Handle()).value_or(Point{-1, -1});
    EXPECT_GE(origin.X, outer.Left);
    EXPECT_GT(origin.Y, outer.Top);  // below the caption
    EXPECT_LE(origin.X + kClientW, outer.Right);
    EXPECT_LE(origin.Y + kClientH, outer.Bottom);

    const Rect moved{300, 200, 300 + outer.Width(), 200 + outer.Height()};
    ASSERT_TRUE(d.windows.Move(target.Handle(), moved));
    EXPECT_TRUE(WaitFor([&] { return d.windows.WindowRect(target.Handle()) == moved; }));
}

TEST_F(Win32DesktopTest, CopiesEveryPixelOfTheClientAreaAndOfTheScreen) {
    TargetWindow target(L"TarvelloS capture target");
    auto d = D();
    const Rect whole{0, 0, kClientW, kClientH};
    std::vector<std::uint16_t> bits(static_cast<std::size_t>((kClientW + 1) * kClientH));
    ASSERT_EQ(d.capture.CopyRegion(target.Handle(), Area::Client, whole, bits), kClientH);
    ExpectPattern(bits, whole);
    // A part reaching past the client area: the outside reads black.
    const Rect part{150, 100, 250, 181};
    std::vector<std::uint16_t> partBits(static_cast<std::size_t>(100 * 81));
    ASSERT_EQ(d.capture.CopyRegion(target.Handle(), Area::Client, part, partBits), 81);
    ExpectPattern(partBits, part);
    // The window copy holds the client area at the client's offset.
    const Rect outer = *d.windows.WindowRect(target.Handle());
    const Point origin = *d.windows.ClientOrigin(target.Handle());
    const Rect inWindow{origin.X - outer.Left, origin.Y - outer.Top, origin.X - outer.Left + kClientW,
                        origin.Y - outer.Top + kClientH};
    ASSERT_EQ(d.capture.CopyRegion(target.Handle(), Area::Window, inWindow, bits), kClientH);
    ExpectPattern(bits, whole);
    // The screen as the user sees it, with the window on top.
    d.windows.SetTopmost(target.Handle(), true);
    const Rect onScreen{origin.X, origin.Y, origin.X + kClientW, origin.Y + kClientH};
    ASSERT_TRUE(WaitFor([&] {
        return d.capture.CopyScreenRegion(onScreen, bits) == kClientH &&
               bits[0] == platform::To555(PatternAt(0, kClientH - 1));
    }));
    ExpectPattern(bits, whole);
    // Too small a buffer, or an empty region, gives nothing.
    std::vector<std::uint16_t> small(10);
    EXPECT_EQ(d.capture.CopyRegion(target.Handle(), Area::Client, whole, small), 0);
    EXPECT_EQ(d.capture.CopyRegion(target.Handle(), Area::Client, Rect{5, 5, 5, 9}, bits), 0);
}

TEST_F(Win32DesktopTest, AClickLandsAtTheExactClientPointAndTheCursorGoesBack) {
    TargetWindow target(L"TarvelloS click target");
    auto d = D();
    d.windows.SetTopmost(target.Handle(), true);
    const Point origin = *d.windows.ClientOrigin(target.Handle());
    d.input.SetCursorPos({5, 7});
    const std::optional<Point> saved = d.input.CursorPos();
    ASSERT_TRUE(saved);
    EXPECT_EQ(*saved, (Point{5, 7}));
    for (const Point at : {Point{37, 21}, Point{0, 0}, Point{kClientW - 1, kClientH - 1}}) {
        const std::size_t before = target.Clicks().size();
        // The engine's own sequence: aim, press and release, put the cursor back.
        d.input.SetCursorPos({origin.X + at.X, origin.Y + at.Y});
        d.input.LeftClick();
        ASSERT_TRUE(WaitFor([&] { return target.Clicks().size() > before; })) << "no click arrived";
        d.input.SetCursorPos(*saved);
        EXPECT_EQ(target.Clicks().back(), at);
        EXPECT_EQ(d.input.CursorPos(), saved);
    }
    EXPECT_EQ(target.Clicks().size(), 3u);
}

TEST_F(Win32DesktopTest, MinimiseRestoreTopmostAndAWindowThatIsGone) {
    auto d = D();
    platform::WindowHandle gone = 0;
    {
        TargetWindow target(L"TarvelloS state target");
        const auto h = target.Handle();
        d.windows.SetTopmost(h, true);
        EXPECT_NE(GetWindowLongPtrW(target.Hwnd(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
        d.windows.SetTopmost(h, false);
        EXPECT_EQ(GetWindowLongPtrW(target.Hwnd(), GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
        d.windows.Minimize(h);
        ASSERT_TRUE(WaitFor([&] { return platform::IsMinimized(d.windows, h); }));
        std::vector<std::uint16_t> bits(static_cast<std::size_t>((kClientW + 1) * kClientH));
        EXPECT_EQ(d.capture.CopyRegion(h, Area::Client, Rect{0, 0, kClientW, kClientH}, bits), 0);
        d.windows.Restore(h);
        ASSERT_TRUE(WaitFor([&] { return !platform::IsMinimized(d.windows, h); }));
        EXPECT_EQ(d.windows.ClientRect(h).value_or(Rect{}), (Rect{0, 0, kClientW, kClientH}));
        gone = h;
    }
    EXPECT_FALSE(d.windows.IsWindow(gone));
    EXPECT_FALSE(d.windows.Title(gone));
    EXPECT_FALSE(d.windows.WindowRect(gone));
    EXPECT_FALSE(d.windows.Move(gone, Rect{0, 0, 10, 10}));
    std::vector<std::uint16_t> bits(100);
    EXPECT_EQ(d.capture.CopyRegion(gone, Area::Client, Rect{0, 0, 5, 5}, bits), 0);
    d.windows.SetTopmost(0, true);  // ignored
    // Sounds never wait and never fall back to a default sound.
    d.sound.PlaySystemSound("");
    d.sound.PlaySystemSound("NoSuchSoundAlias");
    EXPECT_GT(d.system.AnsiCodePage(), 0);
}

}  // namespace
