// One simulated session: the game simulator on a simulated desktop, the
// companion reading it through its pixel readers, and its timer, all on one
// virtual clock. The replay command, the demo, the scenario tests and the
// benchmark run through it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/json.h"
#include "platform/sim/sim_desktop.h"
#include "platform/sim/virtual_clock.h"
#include "replay/actions.h"
#include "replay/virtual_timer.h"
#include "sim/scenario.h"
#include "sim/sim_game_desktop.h"
#include "tracking/companion.h"
#include "tracking/pixel_readers.h"

namespace replay {

class Session {
public:
    // `programFolder` is the companion's program folder (created if missing).
    // The companion tells `listener` what happens, or Events when none is given.
    Session(const sim::Scenario& scenario, std::string programFolder, tracking::CompanionEvents* listener = nullptr);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Start-up of the companion, then the table opens and the game begins.
    // False when the companion refused to start. Without `ownTimer` the
    // caller ticks the companion itself (the GUI's timer).
    bool Start(bool openSubWindows = false, bool ownTimer = true);
    // Lets virtual time run until the game has no more deals and the
    // companion has filed every deal played (or `limitMs` of virtual time
    // passed; 0 = as long as the game goes on, however many deals it has).
    // True when it ran to its end.
    bool Run(std::uint64_t limitMs = 0);
    // Virtual time the companion gets after the game's last deal.
    static constexpr std::uint64_t kGraceMs = 120000;
    // A game that shows nothing new (no bid, card or deal) for this long has
    // stalled: the session gives up.
    static constexpr std::uint64_t kStallMs = 3600000;
    // Lets virtual time run for ms.
    void Advance(std::uint32_t ms) { Clock.Wait(ms); }

    // The scenario's actions: what was wrong with them ("" = nothing; a
    // session with wrong actions presses none), and how many were pressed.
    const std::string& ActionsError() const { return actionsError_; }
    std::size_t ActionsPressed() const { return pressed_; }
    // Called after each action is pressed.
    std::function<void(const Action&)> OnAction;

    int DealsPlayed() const;  // score lines the game added
    int GamesPlayed() const;  // games the game finished
    bool GameFinished() const { return Game.Game().State().finished; }

    sim::Scenario Scenario;
    std::string ProgramFolder;
    platform::VirtualClock Clock;
    platform::SimDesktop Desktop;
    sim::SimGameDesktop Game;

    // The composition: what the companion reads, what it tells, the
    // companion, and its timer, made in that order.
    tracking::CallbackEvents Events;
    tracking::ScreenReading Screen;
    tracking::Companion App;
    VirtualTimer Timer;

private:
    void ScheduleActions();

    std::vector<Action> actions_;
    std::string actionsError_;
    std::uint32_t startTick_ = 0;
    std::size_t pressed_ = 0;
    bool endPressed_ = false;
};

}  // namespace replay
