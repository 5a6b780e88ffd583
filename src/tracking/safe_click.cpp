#include "tracking/safe_click.h"

#include <algorithm>
#include <optional>

namespace tracking {

const char* ClickResultText(ClickResult r) {
    switch (r) {
        case ClickResult::Done: return "clicked";
        case ClickResult::NoEffect: return "clicked, no effect seen";
        case ClickResult::WindowGone: return "not clicked: the game window has closed";
        case ClickResult::WindowMoved: return "not clicked: the game window moved since the button was read";
        case ClickResult::WindowHidden: return "not clicked: the game window is minimised or hidden";
        case ClickResult::Covered: return "not clicked: another window covers the button";
        case ClickResult::ButtonChanged: return "not clicked: the button is no longer the one meant";
        case ClickResult::AlreadyClicked: return "not clicked again: this state of the game had its click";
    }
    return "";
}

SafeClicker::SafeClicker(platform::Windows& windows, platform::Input& input, platform::Clock& clock,
                         std::function<void(const std::string&)> log)
    : windows_(windows), input_(input), clock_(clock), log_(std::move(log)) {}

platform::WindowHandle SafeClicker::CoveredBy(platform::WindowHandle h, platform::Point p) {
    for (const platform::WindowHandle w : windows_.TopLevel()) {
        if (w == h) return 0;
        const std::optional<platform::WindowInfo> info = windows_.Info(w);
        if (!info || !info->Visible || info->Minimized) continue;
        const std::optional<platform::Rect> r = windows_.WindowRect(w);
        if (r && p.X >= r->Left && p.X < r->Right && p.Y >= r->Top && p.Y < r->Bottom) return w;
    }
    return 0;
}

ClickResult SafeClicker::Check(const ClickTarget& t, const std::function<bool()>& reread) {
    if (!t.State.empty() && std::find(clicked_.begin(), clicked_.end(), t.State) != clicked_.end())
        return ClickResult::AlreadyClicked;
    if (t.Window == 0 || !windows_.IsWindow(t.Window)) return ClickResult::WindowGone;
    const std::optional<platform::WindowInfo> info = windows_.Info(t.Window);
    if (!info) return ClickResult::WindowGone;
    if (!info->Visible || info->Minimized) return ClickResult::WindowHidden;
    const std::optional<platform::Rect> now = windows_.WindowRect(t.Window);
    if (!now) return ClickResult::WindowGone;
    if (*now != t.ReadAt) return ClickResult::WindowMoved;
    const platform::Point p = t.Screen;
    if (p.X < now->Left || p.X >= now->Right || p.Y < now->Top || p.Y >= now->Bottom) return ClickResult::WindowMoved;
    if (CoveredBy(t.Window, p) != 0) return ClickResult::Covered;
    if (reread && !reread()) return ClickResult::ButtonChanged;
    return ClickResult::Done;
}

ClickResult SafeClicker::Click(const ClickTarget& t, const std::function<bool()>& reread,
                               const std::function<bool()>& effect, std::uint32_t effectMs) {
    ClickResult r = Check(t, reread);
    if (r != ClickResult::Done) {
        Log(t, r);
        return r;
    }
    // Between the checks and the press nothing of ours runs, so what was
    // checked still holds (as far as this program can know).
    const std::optional<platform::Point> saved = input_.CursorPos();
    input_.SetCursorPos(t.Screen);
    clock_.Wait(0);
    input_.LeftClick();
    clock_.Wait(0);
    if (saved) input_.SetCursorPos(*saved);
    if (effect) {
        r = ClickResult::NoEffect;
        for (std::uint32_t waited = 0;; waited += 100) {
            if (effect()) {
                r = ClickResult::Done;
                break;
            }
            if (waited >= effectMs) break;
            clock_.Wait(100);
        }
    }
    // A click that did its work moved the game on; the next one that looks
    // the same belongs to a new state. One without a visible effect spends
    // its state.
    if (r != ClickResult::Done || !effect) {
        if (!t.State.empty()) clicked_.push_back(t.State);
        if (clicked_.size() > 64) clicked_.pop_front();
    }
    Log(t, r);
    return r;
}

void SafeClicker::Log(const ClickTarget& t, ClickResult r) {
    if (!log_) return;
    log_("Click " + t.What + " at " + std::to_string(t.Screen.X) + "," + std::to_string(t.Screen.Y) + ": " +
         ClickResultText(r));
}

}  // namespace tracking
