// The game-facing operating system: windows, screen copy, mouse, sound.
// Every backend (simulated, X11, Win32) implements this; the logic above
// never talks to the OS directly.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform {

using WindowHandle = std::int64_t;  // 0 = no window

struct Rect {
    std::int32_t Left = 0, Top = 0, Right = 0, Bottom = 0;
    std::int32_t Width() const { return Right - Left; }
    std::int32_t Height() const { return Bottom - Top; }
    bool operator==(const Rect&) const = default;
};

struct Point {
    std::int32_t X = 0, Y = 0;
    bool operator==(const Point&) const = default;
};

// Style bits as the window-long style word reports them.
constexpr std::uint32_t kStyleCaptionOrBorder = 0x00C00000u;
constexpr std::uint32_t kStyleVisible = 0x10000000u;

// Insert-after values of SetWindowPos used by the program.
enum class ZOrder { Topmost, NotTopmost };

// ShowWindow commands used by the program.
enum class ShowCmd { Minimize = 6, Restore = 9 };

// Platform id as the version query reports it: 1 = the older family that
// can only beep, 2 = the NT family with system sound aliases.
enum class PlatformFamily { Win9x = 1, NT = 2 };

class Desktop {
public:
    virtual ~Desktop() = default;

    // --- windows -----------------------------------------------------------
    // The screen as a window (GetDesktopWindow); its window rectangle is the
    // screen in screen coordinates.
    virtual WindowHandle DesktopWindow() = 0;
    // Top-level windows in z-order, topmost first (GetWindow first/next).
    virtual std::vector<WindowHandle> TopLevelWindows() = 0;
    virtual bool IsWindow(WindowHandle h) = 0;
    // Title in UTF-8 (GetWindowTextA, converted); "" for a vanished window.
    virtual std::string WindowText(WindowHandle h) = 0;
    // GetWindowLongA(GWL_STYLE); 0 for a vanished window.
    virtual std::uint32_t WindowStyle(WindowHandle h) = 0;
    // Outer rectangle in screen coordinates; false when the window is gone.
    virtual bool GetWindowRect(WindowHandle h, Rect& r) = 0;
    // Client rectangle: Left = Top = 0, Right/Bottom = client size.
    virtual bool GetClientRect(WindowHandle h, Rect& r) = 0;
    // Screen position of the client area's top-left corner.
    virtual bool ClientOrigin(WindowHandle h, Point& p) = 0;
    virtual bool MoveWindow(WindowHandle h, const Rect& r) = 0;
    // SetWindowPos with keep-position-and-size; a zero handle is ignored.
    virtual void SetWindowPos(WindowHandle h, ZOrder z) = 0;
    virtual void ShowWindow(WindowHandle h, ShowCmd cmd) = 0;
    virtual bool IsMinimized(WindowHandle h) = 0;
    virtual Point ScreenSize() = 0;

    // --- screen copy ---------------------------------------------------------
    // Copies `region` (in the source's coordinates: window rectangle with its
    // outer top-left at 0,0, or client area when `client`) of window `h` into
    // `bits` as 16-bit 5-5-5 words, rows bottom-up, each row padded to an
    // even number of words; `bits` must already hold that many words.
    // Returns the number of rows delivered (0 = nothing usable).
    virtual std::int32_t CopyRegion(WindowHandle h, bool client, const Rect& region,
                                    std::vector<std::uint16_t>& bits) = 0;

    // --- mouse ---------------------------------------------------------------
    virtual Point GetCursorPos() = 0;
    virtual void SetCursorPos(Point p) = 0;
    // Left button down and up at the cursor position (SendInput).
    virtual void LeftClick() = 0;

    // --- sound ---------------------------------------------------------------
    // PlaySoundA with a system sound alias, asynchronous, no default sound.
    virtual void PlaySystemSound(const std::string& alias) = 0;
    virtual void Beep() = 0;
    virtual PlatformFamily Family() = 0;

    // --- process -------------------------------------------------------------
    // The application object's previous-instance flag.
    virtual bool PrevInstance() = 0;
    // The system's ANSI code page (1252 Western, 932 Japanese, ...).
    virtual int AnsiCodePage() = 0;
    // Folder of the executable (the default program folder).
    virtual std::string ExecutableFolder() = 0;
};

}  // namespace platform
