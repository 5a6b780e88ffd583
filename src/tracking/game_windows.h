// The game's windows: finding the table window and its "Last Trick", "Last
// Hand" and score windows by title, opening a missing one with the table's
// button, placing them on the screen, and remembering where they stood.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "platform/desktop.h"
#include "reading/pixels.h"
#include "tracking/engine.h"

namespace tracking {

constexpr int kMaxListedWindows = 1000;
constexpr int kMaxPopups = 100;
// Readings of the user's rating when a new table opens (the game may still
// be filling its player list).
constexpr int kRatingSearchTries = 30;

// One of the game's windows as the finder keeps it: 0 the table, 1 "Last
// Trick", 2 "Last Hand", 3 the score window.
struct SubWindowSlot {
    platform::WindowHandle Handle = 0;
    platform::Rect Rect;
    bool Placed = false;  // moved to its remembered place once
    platform::Point Home;  // where the position file says it stood
};

struct ListedWindow {
    platform::WindowHandle Handle = 0;
    std::string Title;
};

// It owns the game's window handles, and tells the capture where the
// sub-windows are.
class GameWindows final : public reading::SubWindowSource {
public:
    explicit GameWindows(Engine& e) : e_(e) {}

    // Window positions kept from the last run (the CFG file), loaded at start.
    void LoadPositions();
    // Saves where the game's and the companion's windows stand (at End).
    void SavePositions();

    // Enumerates the top-level windows: the table window, the site's lobby
    // and pages, and the game's pop-ups.
    void FindGameWindows();
    // Looks up sub-window `slot` (1-3) by title; -1 looks up all three.
    void FindSubWindow(int slot);
    // Clicks the table's button of sub-window `slot` (254 = all three).
    void OpenSubWindows(int slot);
    void PlaceSubWindow(int slot);
    // The table box, the sub-windows, and on a new table its names and rating.
    void GetSubWindows();
    // The window placement rules of the screen width.
    void MoveWinGame();
    void ApplyLeftEdgeRule();
    // A sub-window a reader needed is gone: open it again, else report and
    // look for it on later ticks.
    void NotExistProcess(int slot, int code);
    // Looks again for the sub-windows whose loss was reported.
    void Recheck();
    // Forget the table's windows (off-line, restart).
    void Forget();

    // The score button of the main window: show, hide or minimise.
    void PressScoreButton();
    // The main window was resized to `heightPx`: below 30 the game is minimised.
    void MainResized(int heightPx);
    // Puts the game's pop-ups and the score window on top (every tick).
    void KeepGameWindowsOnTop();
    // Makes sure the game window is not minimised before it is read.
    void RestoreGameIfMinimised();

    [[nodiscard]] platform::WindowHandle Game() const { return game_; }
    [[nodiscard]] platform::WindowHandle Sub(int slot) const;
    // The capture's questions about the sub-windows.
    [[nodiscard]] platform::WindowHandle SubWindowHandle(int k) const override { return Sub(k); }
    void PlaceForCapture(int k) override;
    void ReopenSubWindow(int k) override;
    [[nodiscard]] const platform::Rect& GameRect() const { return gameRect_; }
    [[nodiscard]] platform::Point ScreenSize() const { return screen_; }
    [[nodiscard]] bool SubWindowAlive(int slot) const;
    void SetScreenSize(platform::Point p) { screen_ = p; }

private:
    // Reads the user's rating at a new table until the label shows one.
    void SearchRating();
    void MoveGame(const platform::Rect& r);
    void ShowTop(int mode, platform::WindowHandle h);

    Engine& e_;
    std::array<SubWindowSlot, reading::kSubWindowCount> subs_{};
    std::vector<ListedWindow> list_;
    platform::WindowHandle game_ = 0;
    std::array<int, 3> siteIndex_{-1, -1, -1};
    std::vector<platform::WindowHandle> popups_;
    std::array<bool, 6> recheckSlots_{};
    bool recheckRequested_ = false;
    platform::Rect gameRect_;
    platform::Point screen_;
    int frameExtra_ = 0;
    bool gamePlaced_ = false;
    platform::Point gameHome_;
    std::string tableTitle_;
    bool newTableSeen_ = false;
    platform::WindowHandle lastTableWindow_ = 0;
    std::string scoreCaptionBeforeMinimise_;
};

}  // namespace tracking
