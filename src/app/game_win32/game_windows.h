// The simulated game shown as real Windows top-level windows: every window
// of the game's simulated desktop gets a real window with the same title,
// place, size, frame and pixels, and what happens to the real windows
// (moves, resizes, minimising, clicks, closing) happens to the simulated
// ones, so the game reacts exactly as in a simulated session.
#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/sim/sim_desktop.h"
#include "platform/sim/virtual_clock.h"
#include "sim/scenario.h"
#include "sim/sim_game_desktop.h"

namespace game_win32 {

struct Mirror;

class GameWindows {
public:
    // speed: game seconds per real second.
    GameWindows(const sim::Scenario& scenario, double speed);
    ~GameWindows();
    GameWindows(const GameWindows&) = delete;
    GameWindows& operator=(const GameWindows&) = delete;

    // Opens the table and runs the game and the windows until the table
    // window is closed. Returns the process exit code.
    int Run();

private:
    friend struct MirrorAccess;
    void Step();  // lets game time catch up with real time, then Sync()
    void Sync();  // makes the real windows show the simulated ones
    void OnClick(Mirror& m, int x, int y);
    void OnClose(Mirror& m);
    void OnMoved(Mirror& m);

    sim::Scenario scenario_;
    double speed_;
    platform::VirtualClock clock_;
    platform::SimDesktop desk_;
    std::unique_ptr<sim::SimGameDesktop> game_;
    std::map<platform::WindowHandle, std::unique_ptr<Mirror>> mirrors_;
    platform::WindowHandle lastTop_ = 0;
    std::chrono::steady_clock::time_point last_{};
    double carry_ = 0;  // game milliseconds not yet run
    bool finishedTold_ = false;
    bool quit_ = false;
};

}  // namespace game_win32
