// The Windows desktop: top-level windows through the window manager of the
// system, screen copies by BitBlt and GetDIBits, clicks by SendInput,
// system sounds by PlaySound. Only its .cpp sees the system's headers.
#pragma once

#include "platform/desktop.h"

namespace platform {

class Win32Desktop final : public DesktopBackend,
                           public Windows,
                           public ScreenCapture,
                           public Input,
                           public Sound {
public:
    // Declares the process aware of each monitor's DPI (unless its manifest
    // already did), so that every rectangle, copy and click is in real pixels.
    Win32Desktop();

    Desktop Roles() override { return {*this, *this, *this, *this, system_}; }

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

private:
    HostSystemInfo system_;
};

}  // namespace platform
