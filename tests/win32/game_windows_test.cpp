// tarvellos-game.exe as the companion meets it: real top-level windows with
// the game's titles and frame, whose buttons open the sub-windows when the
// desktop backend clicks them, wherever the table has been moved.
// The game's headers first: windows.h defines macros (near, far) that their
// inline code uses as names.
#include "sim/render_table.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#undef OpenDesktop

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <thread>

#include "platform/factory/open_desktop.h"
#include "win32/wait_for.h"

namespace {

using platform::Point;
using platform::Rect;
using platform::WindowHandle;

bool WaitFor(const std::function<bool()>& done, int ms = 20000) { return win32_test::WaitFor(done, ms); }

class GameProcess {
public:
    GameProcess() {
        std::wstring cmd = L"\"" + Wide(TARVELLOS_GAME) + L"\" --scenario \"" +
                           Wide(TARVELLOS_SOURCE_DIR "/tests/data/win32/three_deals.json") + L"\" --speed 1";
        STARTUPINFOW si{};
        si.cb = sizeof si;
        started_ = CreateProcessW(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi_) != 0;
    }
    ~GameProcess() {
        if (!started_) return;
        if (WaitForSingleObject(pi_.hProcess, 0) == WAIT_TIMEOUT) TerminateProcess(pi_.hProcess, 1);
        CloseHandle(pi_.hThread);
        CloseHandle(pi_.hProcess);
    }
    bool Started() const { return started_; }
    bool EndsWithin(int ms) { return WaitForSingleObject(pi_.hProcess, static_cast<DWORD>(ms)) == WAIT_OBJECT_0; }

private:
    static std::wstring Wide(const std::string& s) { return std::wstring(s.begin(), s.end()); }
    PROCESS_INFORMATION pi_{};
    bool started_ = false;
};

WindowHandle FindTitled(platform::Windows& w, const std::string& prefix) {
    for (WindowHandle h : w.TopLevel()) {
        const auto title = w.Title(h);
        const auto info = w.Info(h);
        if (title && info && info->Visible && title->rfind(prefix, 0) == 0) return h;
    }
    return 0;
}

// A press of a table button as the companion makes it: aim, click, put the
// cursor back.
void ClickTableButton(platform::Desktop& d, WindowHandle table, int slot) {
    using L = sim::TableLayout;
    const Rect outer = *d.windows.WindowRect(table);
    const auto saved = d.input.CursorPos();
    d.windows.SetTopmost(table, true);
    d.input.SetCursorPos({outer.Left + L::kButtonLeft + 20, outer.Top + L::kButtonTop + slot * L::kButtonStep + 10});
    d.input.LeftClick();
    if (saved) d.input.SetCursorPos(*saved);
}

TEST(GameWindows, TheTableAndItsSubWindowsBehaveAsTheGamesDo) {
    auto opened = platform::OpenDesktop(platform::DesktopKind::Native);
    ASSERT_TRUE(opened.Backend) << opened.Error;
    platform::Desktop d = opened.Backend->Roles();
    GameProcess game;
    ASSERT_TRUE(game.Started());

    WindowHandle table = 0;
    ASSERT_TRUE(WaitFor([&] { return (table = FindTitled(d.windows, "Game: Spades Table: Oak Host: alice")) != 0; }));
    EXPECT_FALSE(d.windows.IsOwnWindow(table));
    const auto info = d.windows.Info(table);
    ASSERT_TRUE(info);
    EXPECT_TRUE(info->Decorated);
    // The simulator's frame exactly: 4 pixels at the sides, 23 above.
    const Rect outer = *d.windows.WindowRect(table);
    EXPECT_EQ(outer, (Rect{420, 40, 1220, 640}));
    EXPECT_EQ(*d.windows.ClientOrigin(table), (Point{424, 63}));
    EXPECT_EQ(*d.windows.ClientRect(table), (Rect{0, 0, 792, 573}));
    // Painted: the table's background, not a black or empty window.
    std::vector<std::uint16_t> bits(800 * 600);
    ASSERT_TRUE(WaitFor([&] {
        return d.capture.CopyRegion(table, platform::Area::Window, Rect{0, 0, 800, 600}, bits) == 600 &&
               bits[300 * 800 + 400] != 0;
    }));

    EXPECT_EQ(FindTitled(d.windows, "Last Trick"), 0);
    ClickTableButton(d, table, 1);
    WindowHandle lastTrick = 0;
    ASSERT_TRUE(WaitFor([&] { return (lastTrick = FindTitled(d.windows, "Last Trick")) != 0; }));
    // The game opens its sub-windows at the screen's corner.
    EXPECT_EQ(d.windows.WindowRect(lastTrick)->Left, 0);
    EXPECT_EQ(d.windows.WindowRect(lastTrick)->Top, 0);

    // Closed by the user, the window goes; the table stays.
    PostMessageW(reinterpret_cast<HWND>(static_cast<std::intptr_t>(lastTrick)), WM_CLOSE, 0, 0);
    ASSERT_TRUE(WaitFor([&] { return !d.windows.IsWindow(lastTrick); }));
    EXPECT_TRUE(d.windows.IsWindow(table));

    // Moved, the table's buttons are where the window now is.
    const Rect moved{100, 150, 900, 750};
    ASSERT_TRUE(d.windows.Move(table, moved));
    ASSERT_TRUE(WaitFor([&] { return d.windows.WindowRect(table) == moved; }));
    ClickTableButton(d, table, 2);
    ASSERT_TRUE(WaitFor([&] { return FindTitled(d.windows, "Last Hand") != 0; }));

    // Minimised and restored by the companion, the table is read again.
    d.windows.Minimize(table);
    ASSERT_TRUE(WaitFor([&] { return platform::IsMinimized(d.windows, table); }));
    d.windows.Restore(table);
    ASSERT_TRUE(WaitFor([&] { return !platform::IsMinimized(d.windows, table); }));
    EXPECT_EQ(d.windows.WindowRect(table), moved);

    // Closing the table ends the game.
    PostMessageW(reinterpret_cast<HWND>(static_cast<std::intptr_t>(table)), WM_CLOSE, 0, 0);
    EXPECT_TRUE(game.EndsWithin(10000));
}

}  // namespace
