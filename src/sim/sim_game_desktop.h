// The simulated game on a simulated desktop: the table window and its
// "Last Trick", "Last Hand" and score windows, titled in the site language,
// drawn from the game's state whenever it changes, opened by clicks on the
// table's buttons, and the bid panel's buttons bidding for the user.
#pragma once

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/sim/sim_desktop.h"
#include "platform/sim/virtual_clock.h"
#include "reading/glyphs.h"
#include "reading/win_titles.h"
#include "sim/scenario.h"
#include "sim/spades_game.h"
#include "sim/sub_windows.h"

namespace sim {

// Places on the table window that react to a click.
enum class TableButtonKind { LastTrick, LastHand, Score, Bid, DoubleNil, ShowCards };

struct TableButtonArea {
    TableButtonKind Kind = TableButtonKind::LastTrick;
    platform::Rect Area;  // client coordinates, right and bottom exclusive
    std::string Bid;      // Kind == Bid: "1" .. "13" or "N"
};

// The table window's client picture and its buttons, as the table renderer
// makes them.
struct TablePicture {
    platform::Image Client;
    std::vector<TableButtonArea> Buttons;
    // The part the renderer changed in its last call; an empty rectangle
    // means the whole picture. Only that part is copied to the window.
    platform::Rect Dirty;
};

struct TableContext {
    int Language = 1;
    int ClientWidth = 0, ClientHeight = 0;  // current client size of the window
    const reading::GlyphTable* Glyphs = nullptr;
};

// Draws the table into `pic`, which holds the previous picture: a renderer
// reuses its pixels (the table is drawn often, and a fresh window-sized image
// each time costs more than the drawing).
using TableRenderer = std::function<void(const TableState&, const TableContext&, TablePicture& pic)>;

// Without a table renderer: a blank table with the three sub-window buttons
// at fixed places in the left column and the bid panel's buttons while it is
// up, so that clicks can be routed.
void PlainTablePicture(const TableState& state, const TableContext& ctx, TablePicture& pic);

class SimGameDesktop {
public:
    // Sub-window slots (as in the title table).
    static constexpr int kLastTrick = 1, kLastHand = 2, kScore = 3;

    SimGameDesktop(platform::SimDesktop& desktop, platform::VirtualClock& clock, const Scenario& scenario,
                   TableRenderer table = {});
    ~SimGameDesktop();
    SimGameDesktop(const SimGameDesktop&) = delete;
    SimGameDesktop& operator=(const SimGameDesktop&) = delete;

    // Opens the table window (sub-windows closed until their buttons are
    // clicked, unless openSubWindows) and starts the game.
    void Start(bool openSubWindows = false);

    SpadesGame& Game() { return *game_; }
    const SpadesGame& Game() const { return *game_; }
    int Language() const { return language_; }
    platform::WindowHandle TableWindow() const { return table_; }
    platform::WindowHandle SubWindow(int slot) const;
    std::string TableTitle() const;

    // What the table's buttons do: open (or restore and raise) a sub-window
    // at the screen's top-left corner, where the game puts new windows.
    void OpenSubWindow(int slot);
    // The user closes a window.
    void CloseSubWindow(int slot);
    // The table window goes away with its sub-windows, and comes back.
    void CloseTable();
    void ReopenTable();

    // Redraws every open window now (also runs on every game change and,
    // for resized windows, on the repaint tick).
    void Repaint(bool force = false);
    int RepaintCount() const { return repaints_; }
    // Clicks that landed on none of the game's windows.
    int StrayClicks() const { return strayClicks_; }

    // The renderer views of the current state.
    // "Last Trick" slots are table positions seen from the user: 0 the user
    // (bottom), 1 the left-hand opponent, 2 the partner (top), 3 the right.
    static LastTrickView LastTrickViewOf(const TableState& s);
    // "Last Hand" lines are compass seats N, E, S, W; a card that led its
    // trick is marked.
    static LastHandView LastHandViewOf(const TableState& s, int language);
    static ScoreWindowView ScoreViewOf(const TableState& s, int clientHeight);

private:
    void OnClick(const platform::SimClick& click);
    void RepaintTick();
    platform::Rect SubRectAtCorner(int slot) const;
    void PaintSub(int slot, bool force);
    void PaintTable(bool force);

    platform::SimDesktop& desktop_;
    platform::VirtualClock& clock_;
    int language_;
    platform::Rect tableRect_;
    reading::WinTitles titles_;
    reading::GlyphTable glyphs_;
    TableRenderer renderer_;
    std::unique_ptr<SpadesGame> game_;
    platform::WindowHandle table_ = 0;
    std::array<platform::WindowHandle, 4> sub_{};
    TablePicture picture_;
    // What each window last showed (state version and client size), so
    // unchanged windows are not drawn again.
    std::array<platform::Point, 4> paintedSize_{};
    std::array<std::string, 4> paintedKey_{};
    int tickJob_ = 0;
    int repaints_ = 0;
    int strayClicks_ = 0;
};

}  // namespace sim
