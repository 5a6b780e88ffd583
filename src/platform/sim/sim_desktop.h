// An in-memory desktop: windows are images with titles. Records what the
// program does to it (moves, clicks, sounds) and lets tests inject faults.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop.h"
#include "platform/image.h"

namespace platform {

struct SimWindow {
    std::string Title;
    bool Decorated = true;
    bool Visible = true;
    bool Own = false;                  // a window of the program itself
    Rect Outer;                        // screen coordinates
    Rect ClientInset{4, 23, 4, 4};     // frame widths: left, caption+top, right, bottom
    Image Pixels;                      // the whole window, outer size
    bool Topmost = false;
    bool Minimized = false;
};

struct SimClick {
    Point At;                 // screen coordinates
    WindowHandle Target = 0;  // topmost visible window under the point, 0 = none
};

// Every role of a desktop in one object; Roles() hands it out as the bundle.
class SimDesktop final : public DesktopBackend,
                         public Windows,
                         public ScreenCapture,
                         public Input,
                         public Sound,
                         public SystemInfo {
public:
    explicit SimDesktop(std::int32_t screenW = 1280, std::int32_t screenH = 1024);

    // --- building the scene -------------------------------------------------
    // New window on top of the z-order. Its image starts as a plain frame
    // of the outer size (gray caption, white client). `look` gives whether
    // it has a frame and is visible (and starts minimised).
    WindowHandle AddWindow(const std::string& title, const Rect& outer, WindowInfo look = {true, true, false});
    // A window of the program itself (one of its companion windows).
    WindowHandle AddOwnWindow(const std::string& title, const Rect& outer);
    void CloseWindow(WindowHandle h);
    SimWindow* Find(WindowHandle h);
    const SimWindow* Find(WindowHandle h) const;
    void SetTitle(WindowHandle h, const std::string& title);
    // Replaces the whole window image (outer size; resizes the window
    // keeping its top-left corner when the image size differs).
    void SetImage(WindowHandle h, Image img);
    // Replaces the client area's pixels (client size).
    void SetClientImage(WindowHandle h, const Image& img);
    void BringToTop(WindowHandle h);
    void SetScreenSize(std::int32_t w, std::int32_t h) { screen_ = {w, h}; }
    void SetBackground(std::uint32_t rgb) { background_ = rgb; }
    void SetAnsiCodePage(int cp) { codePage_ = cp; }
    void SetPrevInstance(bool v) { prevInstance_ = v; }
    void SetExecutableFolder(std::string f) { exeFolder_ = std::move(f); }
    // Called on every left click (after it is recorded), e.g. by the game
    // simulator to press its buttons.
    void OnClick(std::function<void(const SimClick&)> fn) { onClick_ = std::move(fn); }

    // --- fault injection ----------------------------------------------------
    // The window closes when the program makes its n-th call about it from now
    // (n = 1: the very next call finds it gone).
    void CloseAfterCalls(WindowHandle h, int n) { closeAfter_[h] = n; }
    // The next n copies of this window (0 = any window) deliver no rows.
    void FailCaptures(WindowHandle h, int n) { failCaptures_[h] = n; }

    // --- what the program did ----------------------------------------------
    const std::vector<SimClick>& Clicks() const { return clicks_; }
    const std::vector<std::string>& Sounds() const { return sounds_; }
    int Beeps() const { return beeps_; }
    int CaptureCount() const { return captures_; }
    void ClearRecords() { clicks_.clear(); sounds_.clear(); beeps_ = 0; captures_ = 0; }
    // The screen as the user would see it (all visible windows composed).
    Image Compose() const;
    // The part of it inside `area` (clipped to the screen), its top-left at
    // the area's clipped top-left.
    Image Compose(const Rect& area) const;

    // --- the roles ----------------------------------------------------------
    Desktop Roles() override { return {*this, *this, *this, *this, *this}; }

    std::vector<WindowHandle> TopLevel() override { return zorder_; }
    bool IsWindow(WindowHandle h) override { return Touch(h); }
    bool IsOwnWindow(WindowHandle h) override;
    std::optional<std::string> Title(WindowHandle h) override;
    std::optional<WindowInfo> Info(WindowHandle h) override;
    std::optional<Rect> WindowRect(WindowHandle h) override;
    std::optional<Rect> ClientRect(WindowHandle h) override;
    std::optional<Point> ClientOrigin(WindowHandle h) override;
    Point ScreenSize() override { return screen_; }
    bool Move(WindowHandle h, const Rect& outer) override;
    void SetTopmost(WindowHandle h, bool topmost) override;
    void Minimize(WindowHandle h) override;
    void Restore(WindowHandle h) override;

    std::int32_t CopyRegion(WindowHandle h, Area area, const Rect& region, std::vector<std::uint16_t>& bits) override;
    std::int32_t CopyScreenRegion(const Rect& region, std::vector<std::uint16_t>& bits) override;

    std::optional<Point> CursorPos() override { return cursor_; }
    void SetCursorPos(Point p) override { cursor_ = p; }
    void LeftClick() override;

    void PlaySystemSound(const std::string& alias) override;
    void Beep() override { ++beeps_; }

    bool PrevInstance() override { return prevInstance_; }
    int AnsiCodePage() override { return codePage_; }
    std::optional<std::string> ExecutableFolder() override { return exeFolder_; }

private:
    // Copies rows of `src` (offset by ox, oy) into bits, bottom-up.
    static std::int32_t CopyImage(const Image& src, std::int32_t ox, std::int32_t oy, const Rect& region,
                                  std::vector<std::uint16_t>& bits);
    bool Touch(WindowHandle h);  // counts a call for fault injection; false when gone
    WindowHandle WindowAt(Point p) const;

    std::map<WindowHandle, SimWindow> windows_;
    std::vector<WindowHandle> zorder_;  // topmost first
    WindowHandle next_ = 100;
    Point screen_;
    Point cursor_{};
    std::uint32_t background_ = 0x00008080;
    int codePage_ = 1252;
    bool prevInstance_ = false;
    std::string exeFolder_ = ".";
    std::function<void(const SimClick&)> onClick_;
    std::map<WindowHandle, int> closeAfter_;
    std::map<WindowHandle, int> failCaptures_;
    std::vector<SimClick> clicks_;
    std::vector<std::string> sounds_;
    int beeps_ = 0;
    int captures_ = 0;
};

}  // namespace platform
