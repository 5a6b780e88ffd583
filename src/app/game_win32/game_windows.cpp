// The game's headers first: windows.h defines macros (near, far) that
// their inline code uses as names.
#include "app/game_win32/game_windows.h"
#include "replay/sim_table.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>

namespace game_win32 {

namespace {

const wchar_t* const kClass = L"TarvellosGameWindow";

std::wstring Wide(const std::string& utf8) {
    if (utf8.empty()) return {};
    const int n = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
    std::wstring w(static_cast<std::size_t>(std::max(n, 0)), L'\0');
    if (n > 0) MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), w.data(), n);
    return w;
}

}  // namespace

// One real window and what it last showed of its simulated window.
struct Mirror {
    GameWindows* owner = nullptr;
    platform::WindowHandle sim = 0;
    HWND hwnd = nullptr;
    platform::Rect inset;  // frame widths: left, top, right, bottom
    platform::Rect outer;  // the simulated window's rectangle last applied
    bool minimized = false;
    std::string title;
    std::vector<std::uint32_t> shown;  // the pixels in the bitmap below
    int width = 0, height = 0;
    HDC memDc = nullptr;
    HBITMAP bitmap = nullptr;
    HGDIOBJ oldBitmap = nullptr;
    std::uint32_t* bits = nullptr;
    bool closing = false;

    ~Mirror() {
        if (memDc) {
            SelectObject(memDc, oldBitmap);
            DeleteDC(memDc);
        }
        if (bitmap) DeleteObject(bitmap);
    }

    // Takes the simulated window's whole picture (frame and client area):
    // 0x00RRGGBB words are what a top-down 32-bit bitmap holds.
    void Show(const platform::Image& img) {
        if (img.Width != width || img.Height != height || !bitmap) {
            if (memDc) {
                SelectObject(memDc, oldBitmap);
                DeleteDC(memDc);
                memDc = nullptr;
            }
            if (bitmap) DeleteObject(bitmap);
            bitmap = nullptr;
            width = img.Width;
            height = img.Height;
            if (width <= 0 || height <= 0) return;
            BITMAPINFO bi;
            std::memset(&bi, 0, sizeof bi);
            bi.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
            bi.bmiHeader.biWidth = width;
            bi.bmiHeader.biHeight = -height;
            bi.bmiHeader.biPlanes = 1;
            bi.bmiHeader.biBitCount = 32;
            bi.bmiHeader.biCompression = BI_RGB;
            void* p = nullptr;
            bitmap = CreateDIBSection(nullptr, &bi, DIB_RGB_COLORS, &p, nullptr, 0);
            if (!bitmap) return;
            bits = static_cast<std::uint32_t*>(p);
            memDc = CreateCompatibleDC(nullptr);
            oldBitmap = SelectObject(memDc, bitmap);
        }
        std::copy(img.Pixels.begin(), img.Pixels.end(), bits);
        GdiFlush();
        shown = img.Pixels;
        RedrawWindow(hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_NOERASE);
    }
};

struct MirrorAccess {
    static LRESULT CALLBACK Proc(HWND h, UINT msg, WPARAM wp, LPARAM lp) {
        if (msg == WM_NCCREATE) {
            auto* cs = reinterpret_cast<CREATESTRUCTW*>(lp);
            SetWindowLongPtrW(h, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(cs->lpCreateParams));
            static_cast<Mirror*>(cs->lpCreateParams)->hwnd = h;
        }
        auto* m = reinterpret_cast<Mirror*>(GetWindowLongPtrW(h, GWLP_USERDATA));
        if (!m) return DefWindowProcW(h, msg, wp, lp);
        switch (msg) {
            case WM_NCCALCSIZE: {
                // The frame of the simulated window, exactly, so that a copy
                // of the whole window holds the same pixels as in the simulator.
                auto* r = reinterpret_cast<RECT*>(lp);  // first rectangle in either form
                r->left += m->inset.Left;
                r->top += m->inset.Top;
                r->right -= m->inset.Right;
                r->bottom -= m->inset.Bottom;
                if (r->right < r->left) r->right = r->left;
                if (r->bottom < r->top) r->bottom = r->top;
                return 0;
            }
            case WM_NCHITTEST: {
                RECT wr;
                GetWindowRect(h, &wr);
                const int y = static_cast<short>(HIWORD(lp)) - wr.top;
                if (y < m->inset.Top) return HTCAPTION;  // dragging by the caption moves it
                const LRESULT hit = DefWindowProcW(h, msg, wp, lp);
                return hit == HTNOWHERE ? HTBORDER : hit;
            }
            case WM_NCPAINT:
            case WM_NCACTIVATE: {
                if (m->memDc) {
                    HDC dc = GetWindowDC(h);
                    BitBlt(dc, 0, 0, m->width, m->height, m->memDc, 0, 0, SRCCOPY);
                    ReleaseDC(h, dc);
                }
                return msg == WM_NCACTIVATE ? TRUE : 0;
            }
            case WM_ERASEBKGND:
                return 1;
            case WM_PAINT: {
                PAINTSTRUCT ps;
                HDC dc = BeginPaint(h, &ps);
                if (m->memDc)
                    BitBlt(dc, 0, 0, m->width - m->inset.Left - m->inset.Right,
                           m->height - m->inset.Top - m->inset.Bottom, m->memDc, m->inset.Left, m->inset.Top, SRCCOPY);
                EndPaint(h, &ps);
                return 0;
            }
            case WM_LBUTTONDOWN:
                m->owner->OnClick(*m, static_cast<short>(LOWORD(lp)), static_cast<short>(HIWORD(lp)));
                return 0;
            case WM_WINDOWPOSCHANGED:
                m->owner->OnMoved(*m);
                return 0;
            case WM_CLOSE:
                m->owner->OnClose(*m);
                return 0;
            case WM_NCDESTROY:
                SetWindowLongPtrW(h, GWLP_USERDATA, 0);
                m->hwnd = nullptr;
                break;
            default:
                break;
        }
        return DefWindowProcW(h, msg, wp, lp);
    }
};

GameWindows::GameWindows(const sim::Scenario& scenario, double speed)
    : scenario_(scenario),
      speed_(speed),
      clock_(scenario.start),
      desk_(scenario.screenWidth, scenario.screenHeight) {
    game_ = std::make_unique<sim::SimGameDesktop>(desk_, clock_, scenario_, replay::RenderedTable());
    WNDCLASSW wc;
    std::memset(&wc, 0, sizeof wc);
    wc.lpfnWndProc = MirrorAccess::Proc;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.lpszClassName = kClass;
    wc.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    RegisterClassW(&wc);
}

GameWindows::~GameWindows() {
    for (auto& [h, m] : mirrors_)
        if (m->hwnd) {
            m->closing = true;
            DestroyWindow(m->hwnd);
        }
}

void GameWindows::OnClick(Mirror& m, int x, int y) {
    // The simulated window stands where the real one does, so the same
    // screen point hits the same place of the game's picture.
    const platform::Point at{m.outer.Left + m.inset.Left + x, m.outer.Top + m.inset.Top + y};
    desk_.BringToTop(m.sim);
    lastTop_ = m.sim;
    desk_.SetCursorPos(at);
    desk_.LeftClick();
    Sync();
}

void GameWindows::OnClose(Mirror& m) {
    if (m.sim == game_->TableWindow()) {
        game_->CloseTable();
        quit_ = true;
    }
    for (int slot = 1; slot <= 3; ++slot)
        if (m.sim == game_->SubWindow(slot)) game_->CloseSubWindow(slot);
    Sync();
}

void GameWindows::OnMoved(Mirror& m) {
    if (m.closing || !m.hwnd) return;
    const bool minimized = IsIconic(m.hwnd) != 0;
    if (minimized != m.minimized) {
        m.minimized = minimized;
        if (minimized) desk_.Minimize(m.sim);
        else desk_.Restore(m.sim);
    }
    if (minimized) return;
    RECT r;
    GetWindowRect(m.hwnd, &r);
    const platform::Rect now{r.left, r.top, r.right, r.bottom};
    if (now == m.outer) return;
    m.outer = now;
    desk_.Move(m.sim, now);
}

void GameWindows::Sync() {
    // Windows the game closed.
    for (auto it = mirrors_.begin(); it != mirrors_.end();) {
        if (desk_.Find(it->first)) {
            ++it;
            continue;
        }
        if (it->second->hwnd) {
            it->second->closing = true;
            DestroyWindow(it->second->hwnd);
        }
        it = mirrors_.erase(it);
    }
    const std::vector<platform::WindowHandle> order = desk_.TopLevel();
    for (auto it = order.rbegin(); it != order.rend(); ++it) {
        const platform::SimWindow* sw = desk_.Find(*it);
        if (!sw || !sw->Visible) continue;
        auto found = mirrors_.find(*it);
        if (found == mirrors_.end()) {
            auto m = std::make_unique<Mirror>();
            m->owner = this;
            m->sim = *it;
            m->inset = sw->ClientInset;
            m->outer = sw->Outer;
            m->title = sw->Title;
            m->minimized = false;
            // A popup with a border: the system decorates nothing, the frame
            // drawn is the game's own.
            CreateWindowExW(0, kClass, Wide(sw->Title).c_str(), WS_POPUP | WS_BORDER | WS_CLIPCHILDREN,
                            sw->Outer.Left, sw->Outer.Top, sw->Outer.Width(), sw->Outer.Height(), nullptr, nullptr,
                            GetModuleHandleW(nullptr), m.get());
            if (!m->hwnd) {
                std::fprintf(stderr, "tarvellos-game: cannot open the window \"%s\"\n", sw->Title.c_str());
                continue;
            }
            m->Show(sw->Pixels);
            ShowWindow(m->hwnd, sw->Minimized ? SW_SHOWMINNOACTIVE : SW_SHOWNOACTIVATE);
            m->minimized = sw->Minimized;
            found = mirrors_.emplace(*it, std::move(m)).first;
            continue;
        }
        Mirror& m = *found->second;
        if (!m.hwnd) continue;
        if (sw->Title != m.title) {
            m.title = sw->Title;
            SetWindowTextW(m.hwnd, Wide(m.title).c_str());
        }
        if (sw->Minimized != m.minimized) {
            m.minimized = sw->Minimized;
            ShowWindow(m.hwnd, m.minimized ? SW_MINIMIZE : SW_RESTORE);
        }
        if (!(sw->Outer == m.outer) && !m.minimized) {
            m.outer = sw->Outer;
            SetWindowPos(m.hwnd, nullptr, m.outer.Left, m.outer.Top, m.outer.Width(), m.outer.Height(),
                         SWP_NOZORDER | SWP_NOACTIVATE);
        }
        if (sw->Pixels.Width != m.width || sw->Pixels.Height != m.height || sw->Pixels.Pixels != m.shown)
            m.Show(sw->Pixels);
    }
    // A window the game brought to the top (a sub-window opened again).
    if (!order.empty() && order.front() != lastTop_) {
        lastTop_ = order.front();
        auto found = mirrors_.find(lastTop_);
        if (found != mirrors_.end() && found->second->hwnd)
            SetWindowPos(found->second->hwnd, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
}

void GameWindows::Step() {
    const auto now = std::chrono::steady_clock::now();
    carry_ += std::chrono::duration<double, std::milli>(now - last_).count() * speed_;
    last_ = now;
    // In steps of at most a second of game time, so the windows keep up.
    while (carry_ >= 1.0) {
        const auto ms = static_cast<std::uint32_t>(std::min(carry_, 1000.0));
        clock_.Advance(ms);
        carry_ -= ms;
    }
    Sync();
    if (game_->Game().State().finished && !finishedTold_) {
        finishedTold_ = true;
        std::printf("tarvellos-game: the game is over\n");
        std::fflush(stdout);
    }
}

int GameWindows::Run() {
    game_->Start();
    last_ = std::chrono::steady_clock::now();
    Sync();
    std::printf("tarvellos-game: table open: %s\n", game_->TableTitle().c_str());
    std::fflush(stdout);
    for (;;) {
        // Wake for input at once, and at least every 20 ms for the game.
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 20, QS_ALLINPUT);
        MSG msg;
        while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
            if (msg.message == WM_QUIT) return static_cast<int>(msg.wParam);
            TranslateMessage(&msg);
            DispatchMessageW(&msg);
        }
        if (quit_) return 0;
        Step();
    }
}

}  // namespace game_win32
