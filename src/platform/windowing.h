// The top-level windows of the screen: finding the game's windows, reading
// their geometry and arranging them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/geometry.h"

namespace platform {

// What the window pass needs to know about a window besides its title.
struct WindowInfo {
    bool Decorated = false;  // has a caption or a border (a real top-level window, not a tooltip)
    bool Visible = false;
    bool Minimized = false;
    bool operator==(const WindowInfo&) const = default;
};

class Windows {
public:
    virtual ~Windows() = default;

    // Top-level windows in z-order, topmost first.
    [[nodiscard]] virtual std::vector<WindowHandle> TopLevel() = 0;
    [[nodiscard]] virtual bool IsWindow(WindowHandle h) = 0;
    // A window of this program. Our own windows carry titles of the game's
    // players and tables, so the search for the game's windows skips them.
    [[nodiscard]] virtual bool IsOwnWindow(WindowHandle h) = 0;

    // Every query gives nothing when the window is gone (it may close at any
    // moment between two calls).
    // Title in UTF-8.
    [[nodiscard]] virtual std::optional<std::string> Title(WindowHandle h) = 0;
    [[nodiscard]] virtual std::optional<WindowInfo> Info(WindowHandle h) = 0;
    // Outer rectangle in screen coordinates.
    [[nodiscard]] virtual std::optional<Rect> WindowRect(WindowHandle h) = 0;
    // Client rectangle: Left = Top = 0, Right/Bottom = client size (empty
    // while the window is minimised).
    [[nodiscard]] virtual std::optional<Rect> ClientRect(WindowHandle h) = 0;
    // Screen position of the client area's top-left corner.
    [[nodiscard]] virtual std::optional<Point> ClientOrigin(WindowHandle h) = 0;
    [[nodiscard]] virtual Point ScreenSize() = 0;

    // Actions on a window that has gone do nothing; the next window pass
    // notices that it is gone.
    // New outer rectangle; false when the window is gone.
    virtual bool Move(WindowHandle h, const Rect& outer) = 0;
    // Keeps the window above all others (or lets it fall back among them),
    // bringing it to the top; position and size stay. A zero handle is ignored.
    virtual void SetTopmost(WindowHandle h, bool topmost) = 0;
    virtual void Minimize(WindowHandle h) = 0;
    virtual void Restore(WindowHandle h) = 0;
};

// A window that is there and minimised.
[[nodiscard]] inline bool IsMinimized(Windows& w, WindowHandle h) {
    const std::optional<WindowInfo> info = w.Info(h);
    return info && info->Minimized;
}

}  // namespace platform
