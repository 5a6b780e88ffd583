// The X11 desktop: the game's windows as the X server and the window
// manager see them. Only this folder includes X headers; this header keeps
// them out of its users.
#pragma once

#include <memory>
#include <string>

#include "platform/desktop.h"

namespace platform {

struct X11Options {
    bool UseShm = true;        // copy through a shared-memory segment where the server offers one
    bool UseComposite = true;  // read a window's own off-screen contents where the server keeps them
    bool UseCanberra = true;   // event sounds; the bell otherwise
};

// What the backend found on the display when it opened.
struct X11Features {
    bool WindowManager = false;  // an EWMH window manager runs
    bool Shm = false;
    bool Composite = false;
    bool XTest = false;
};

class X11Desktop final : public DesktopBackend,
                         public Windows,
                         public ScreenCapture,
                         public Input,
                         public Sound,
                         public SystemInfo {
public:
    // Connects to $DISPLAY (or `display` when given). Null with `error`
    // saying why: no X display, or a Wayland session without XWayland.
    static std::unique_ptr<X11Desktop> Open(std::string& error, const X11Options& options = {},
                                            const std::string& display = "");
    ~X11Desktop() override;
    X11Desktop(const X11Desktop&) = delete;
    X11Desktop& operator=(const X11Desktop&) = delete;

    [[nodiscard]] const X11Features& Features() const;

    Desktop Roles() override { return {*this, *this, *this, *this, *this}; }

    std::vector<WindowHandle> TopLevel() override;
    bool IsWindow(WindowHandle h) override;
    bool IsOwnWindow(WindowHandle h) override;
    std::optional<std::string> Title(WindowHandle h) override;
    std::optional<WindowInfo> Info(WindowHandle h) override;
    std::optional<Rect> WindowRect(WindowHandle h) override;
    std::optional<Rect> ClientRect(WindowHandle h) override;
    std::optional<Point> ClientOrigin(WindowHandle h) override;
    Point ScreenSize() override;
    bool Move(WindowHandle h, const Rect& outer) override;
    void SetTopmost(WindowHandle h, bool topmost) override;
    void Minimize(WindowHandle h) override;
    void Restore(WindowHandle h) override;

    std::int32_t CopyRegion(WindowHandle h, Area area, const Rect& region, std::vector<std::uint16_t>& bits) override;
    std::int32_t CopyScreenRegion(const Rect& region, std::vector<std::uint16_t>& bits) override;

    std::optional<Point> CursorPos() override;
    void SetCursorPos(Point p) override;
    void LeftClick() override;

    void PlaySystemSound(const std::string& alias) override;
    void Beep() override;

    bool PrevInstance() override { return host_.PrevInstance(); }
    int AnsiCodePage() override { return host_.AnsiCodePage(); }
    std::optional<std::string> ExecutableFolder() override { return host_.ExecutableFolder(); }

    struct Impl;

private:
    explicit X11Desktop(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
    HostSystemInfo host_;
};

// The message for a session that cannot reach an X server, or "" when one
// may be reachable: a Wayland session without XWayland is named as such.
[[nodiscard]] std::string NoDisplayReason(const char* display, const char* waylandDisplay);

}  // namespace platform
