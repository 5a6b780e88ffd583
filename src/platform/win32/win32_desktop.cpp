#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#include <mmsystem.h>

#include <algorithm>
#include <cstring>

#include "platform/win32/win32_desktop.h"

namespace platform {

namespace {

HWND Hwnd(WindowHandle h) { return reinterpret_cast<HWND>(static_cast<std::intptr_t>(h)); }
WindowHandle Handle(HWND w) { return static_cast<WindowHandle>(reinterpret_cast<std::intptr_t>(w)); }
Rect FromRect(const RECT& r) { return {r.left, r.top, r.right, r.bottom}; }

// Per-monitor awareness (version 2 where the system has it, else the
// system-wide awareness of older versions). A manifest that declared it
// already wins; the call then fails harmlessly.
void DeclareDpiAwareness() {
    static const bool done = [] {
        using SetContext = BOOL(WINAPI*)(HANDLE);
        HMODULE user = GetModuleHandleW(L"user32.dll");
        auto set = user ? reinterpret_cast<SetContext>(
                              reinterpret_cast<void*>(GetProcAddress(user, "SetProcessDpiAwarenessContext")))
                        : nullptr;
        if (set && set(reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-4)))) return true;
        if (set && GetLastError() == ERROR_ACCESS_DENIED) return true;  // set before, by the manifest
        return SetProcessDPIAware() != 0;
    }();
    (void)done;
}

// Copies `region` (in the coordinates of `src`, whose surface spans
// `bounds`) into `bits` as 5-5-5 words, bottom-up. What lies outside
// `bounds` reads as black rather than as whatever the device holds there.
std::int32_t CopyFromDc(HDC src, const Rect& bounds, const Rect& region, std::vector<std::uint16_t>& bits) {
    const std::int32_t w = region.Width(), h = region.Height();
    if (w <= 0 || h <= 0) return 0;
    const std::size_t length = static_cast<std::size_t>(w + (w & 1));
    if (bits.size() < length * static_cast<std::size_t>(h)) return 0;
    HDC mem = CreateCompatibleDC(src);
    HBITMAP bmp = mem ? CreateCompatibleBitmap(src, w, h) : nullptr;
    if (!bmp) {
        if (mem) DeleteDC(mem);
        return 0;
    }
    HGDIOBJ old = SelectObject(mem, bmp);
    PatBlt(mem, 0, 0, w, h, BLACKNESS);
    const std::int32_t x0 = std::max(region.Left, bounds.Left), y0 = std::max(region.Top, bounds.Top);
    const std::int32_t x1 = std::min(region.Right, bounds.Right), y1 = std::min(region.Bottom, bounds.Bottom);
    bool copied = true;
    if (x1 > x0 && y1 > y0)
        copied = BitBlt(mem, x0 - region.Left, y0 - region.Top, x1 - x0, y1 - y0, src, x0, y0, SRCCOPY) != 0;
    SelectObject(mem, old);
    int lines = 0;
    if (copied) {
        BITMAPINFO info;
        std::memset(&info, 0, sizeof info);
        info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
        info.bmiHeader.biWidth = w;
        info.bmiHeader.biHeight = h;  // positive: rows bottom-up
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 16;  // with BI_RGB: 5-5-5, bit 15 clear
        info.bmiHeader.biCompression = BI_RGB;
        lines = GetDIBits(mem, bmp, 0, static_cast<UINT>(h), bits.data(), &info, DIB_RGB_COLORS);
    }
    DeleteObject(bmp);
    DeleteDC(mem);
    return lines > 0 ? lines : 0;
}

// Waits (briefly) until the window's own thread has handled what was just
// done to it: a window of another process is raised, shown or hidden by its
// thread later, and a click sent before then can meet the cursor where the
// raise put it back (so it is under Wine).
void SettleWith(WindowHandle h) {
    DWORD_PTR ignored = 0;
    SendMessageTimeoutW(Hwnd(h), WM_NULL, 0, 0, SMTO_ABORTIFHUNG | SMTO_BLOCK, 250, &ignored);
}

BOOL CALLBACK Collect(HWND w, LPARAM out) {
    reinterpret_cast<std::vector<WindowHandle>*>(out)->push_back(Handle(w));
    return TRUE;
}

}  // namespace

Win32Desktop::Win32Desktop() { DeclareDpiAwareness(); }

std::vector<WindowHandle> Win32Desktop::TopLevel() {
    // EnumWindows walks the top-level windows from the top of the z-order down.
    std::vector<WindowHandle> out;
    EnumWindows(Collect, reinterpret_cast<LPARAM>(&out));
    return out;
}

bool Win32Desktop::IsWindow(WindowHandle h) { return h != 0 && ::IsWindow(Hwnd(h)); }

bool Win32Desktop::IsOwnWindow(WindowHandle h) {
    DWORD pid = 0;
    return IsWindow(h) && GetWindowThreadProcessId(Hwnd(h), &pid) != 0 && pid == GetCurrentProcessId();
}

std::optional<std::string> Win32Desktop::Title(WindowHandle h) {
    if (!IsWindow(h)) return std::nullopt;
    wchar_t text[512];
    SetLastError(ERROR_SUCCESS);
    const int n = GetWindowTextW(Hwnd(h), text, static_cast<int>(std::size(text)));
    if (n <= 0) {
        if (!IsWindow(h)) return std::nullopt;
        return std::string();
    }
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, text, n, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<std::size_t>(std::max(bytes, 0)), '\0');
    if (bytes > 0) WideCharToMultiByte(CP_UTF8, 0, text, n, out.data(), bytes, nullptr, nullptr);
    return out;
}

std::optional<WindowInfo> Win32Desktop::Info(WindowHandle h) {
    if (!IsWindow(h)) return std::nullopt;
    const LONG_PTR style = GetWindowLongPtrW(Hwnd(h), GWL_STYLE);
    WindowInfo info;
    info.Decorated = (style & WS_CAPTION) != 0;  // a caption or a border bit
    info.Visible = (style & WS_VISIBLE) != 0;
    info.Minimized = IsIconic(Hwnd(h)) != 0;
    if (!IsWindow(h)) return std::nullopt;
    return info;
}

std::optional<Rect> Win32Desktop::WindowRect(WindowHandle h) {
    RECT r;
    if (!IsWindow(h) || !GetWindowRect(Hwnd(h), &r)) return std::nullopt;
    return FromRect(r);
}

std::optional<Rect> Win32Desktop::ClientRect(WindowHandle h) {
    RECT r;
    if (!IsWindow(h) || !GetClientRect(Hwnd(h), &r)) return std::nullopt;
    return FromRect(r);
}

std::optional<Point> Win32Desktop::ClientOrigin(WindowHandle h) {
    POINT p{0, 0};
    if (!IsWindow(h) || !ClientToScreen(Hwnd(h), &p)) return std::nullopt;
    return Point{p.x, p.y};
}

Point Win32Desktop::ScreenSize() { return {GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)}; }

bool Win32Desktop::Move(WindowHandle h, const Rect& outer) {
    if (!IsWindow(h) || !MoveWindow(Hwnd(h), outer.Left, outer.Top, outer.Width(), outer.Height(), TRUE)) return false;
    SettleWith(h);
    return true;
}

void Win32Desktop::SetTopmost(WindowHandle h, bool topmost) {
    if (!IsWindow(h)) return;
    SetWindowPos(Hwnd(h), topmost ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    SettleWith(h);
}

void Win32Desktop::Minimize(WindowHandle h) {
    if (!IsWindow(h)) return;
    ShowWindow(Hwnd(h), SW_MINIMIZE);
    SettleWith(h);
}

void Win32Desktop::Restore(WindowHandle h) {
    if (!IsWindow(h)) return;
    ShowWindow(Hwnd(h), SW_RESTORE);
    SettleWith(h);
}

std::int32_t Win32Desktop::CopyRegion(WindowHandle h, Area area, const Rect& region, std::vector<std::uint16_t>& bits) {
    if (!IsWindow(h) || IsIconic(Hwnd(h))) return 0;
    RECT r;
    const bool client = area == Area::Client;
    if (!(client ? GetClientRect(Hwnd(h), &r) : GetWindowRect(Hwnd(h), &r))) return 0;
    const Rect bounds{0, 0, r.right - r.left, r.bottom - r.top};
    if (bounds.Width() <= 0 || bounds.Height() <= 0) return 0;
    HDC dc = client ? GetDC(Hwnd(h)) : GetWindowDC(Hwnd(h));
    if (!dc) return 0;
    const std::int32_t lines = CopyFromDc(dc, bounds, region, bits);
    ReleaseDC(Hwnd(h), dc);
    return lines;
}

std::int32_t Win32Desktop::CopyScreenRegion(const Rect& region, std::vector<std::uint16_t>& bits) {
    HDC dc = GetDC(nullptr);
    if (!dc) return 0;
    const int left = GetSystemMetrics(SM_XVIRTUALSCREEN), top = GetSystemMetrics(SM_YVIRTUALSCREEN);
    const Rect bounds{left, top, left + GetSystemMetrics(SM_CXVIRTUALSCREEN), top + GetSystemMetrics(SM_CYVIRTUALSCREEN)};
    const std::int32_t lines = CopyFromDc(dc, bounds, region, bits);
    ReleaseDC(nullptr, dc);
    return lines;
}

std::optional<Point> Win32Desktop::CursorPos() {
    POINT p;
    if (!GetCursorPos(&p)) return std::nullopt;
    return Point{p.x, p.y};
}

void Win32Desktop::SetCursorPos(Point p) { ::SetCursorPos(p.X, p.Y); }

void Win32Desktop::LeftClick() {
    // Press and release in one call, so no other input comes between them,
    // led by a move to where the cursor stands: the press then carries its
    // own position, and a cursor update still on its way from another
    // process (as under Wine, right after SetCursorPos) cannot misplace it.
    POINT at;
    if (!GetCursorPos(&at)) return;
    const LONG left = GetSystemMetrics(SM_XVIRTUALSCREEN), top = GetSystemMetrics(SM_YVIRTUALSCREEN);
    const LONG w = std::max(GetSystemMetrics(SM_CXVIRTUALSCREEN), 1), h = std::max(GetSystemMetrics(SM_CYVIRTUALSCREEN), 1);
    // The system maps a normalised n to pixel n * size / 65536 (rounded
    // down); the smallest n that maps to the pixel hits it exactly.
    auto norm = [](LONG pixel, LONG size) { return static_cast<LONG>((static_cast<long long>(pixel) * 65536 + size - 1) / size); };
    INPUT in[3];
    std::memset(in, 0, sizeof in);
    in[0].type = in[1].type = in[2].type = INPUT_MOUSE;
    in[0].mi.dx = norm(at.x - left, w);
    in[0].mi.dy = norm(at.y - top, h);
    in[0].mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_VIRTUALDESK;
    in[1].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    in[2].mi.dwFlags = MOUSEEVENTF_LEFTUP;
    SendInput(3, in, sizeof(INPUT));
}

void Win32Desktop::PlaySystemSound(const std::string& alias) {
    if (alias.empty()) return;
    const int n = MultiByteToWideChar(CP_UTF8, 0, alias.data(), static_cast<int>(alias.size()), nullptr, 0);
    std::wstring name(static_cast<std::size_t>(std::max(n, 0)), L'\0');
    if (n > 0) MultiByteToWideChar(CP_UTF8, 0, alias.data(), static_cast<int>(alias.size()), name.data(), n);
    // Without waiting, and nothing at all for an alias the system lacks.
    PlaySoundW(name.c_str(), nullptr, SND_ALIAS | SND_ASYNC | SND_NODEFAULT);
}

void Win32Desktop::Beep() { MessageBeep(0xFFFFFFFF); }

}  // namespace platform
