// Pressing a button of the game for the user, only when it is safe: the
// game window is still there and where the button was read, nothing stands
// over the point, and the button read again is still the one meant. Then
// one press, the cursor put back, and the effect awaited. A game state is
// clicked at most once: a click that did not take is not repeated blindly.
#pragma once

#include <deque>
#include <functional>
#include <string>

#include "platform/clock.h"
#include "platform/geometry.h"
#include "platform/input.h"
#include "platform/windowing.h"

namespace tracking {

struct ClickTarget {
    platform::WindowHandle Window = 0;  // the game window that holds the button
    platform::Rect ReadAt;              // its outer rectangle when the button was read
    platform::Point Screen;             // where to press
    std::string What;                   // for the log and the user ("bid 4", "Last Hand button")
    std::string State;                  // the game state the click belongs to
};

enum class ClickResult {
    Done,            // pressed, and the effect showed
    NoEffect,        // pressed, the effect did not show in time
    WindowGone,      // refused: the game window closed
    WindowMoved,     // refused: it is no longer where the button was read
    WindowHidden,    // refused: minimised or hidden
    Covered,         // refused: another window stands over the point
    ButtonChanged,   // refused: the button read again is not the one meant
    AlreadyClicked,  // refused: this game state had its click
};

[[nodiscard]] const char* ClickResultText(ClickResult r);
[[nodiscard]] inline bool ClickMade(ClickResult r) { return r == ClickResult::Done || r == ClickResult::NoEffect; }

class SafeClicker {
public:
    // `log` receives one line per click or refusal (it writes only when the
    // user's settings name a log file).
    SafeClicker(platform::Windows& windows, platform::Input& input, platform::Clock& clock,
                std::function<void(const std::string&)> log);

    // `reread` reads the button again (true: it is still the one meant);
    // `effect` tells whether the click has done its work, polled for up to
    // effectMs. Either may be empty. A click whose effect showed leaves its
    // state free (the game moved on); any other click spends it.
    ClickResult Click(const ClickTarget& t, const std::function<bool()>& reread, const std::function<bool()>& effect,
                      std::uint32_t effectMs = 1000);

    // The window standing over `p` above `h` (0 = none): what a click at p
    // would reach instead.
    [[nodiscard]] platform::WindowHandle CoveredBy(platform::WindowHandle h, platform::Point p);

private:
    ClickResult Check(const ClickTarget& t, const std::function<bool()>& reread);
    void Log(const ClickTarget& t, ClickResult r);

    platform::Windows& windows_;
    platform::Input& input_;
    platform::Clock& clock_;
    std::function<void(const std::string&)> log_;
    // The states that had their click, most recent last (a few deals' worth).
    std::deque<std::string> clicked_;
};

}  // namespace tracking
