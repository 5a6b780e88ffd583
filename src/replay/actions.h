// The player's commands in a scenario: each "actions" entry names a command
// of the companion ("do") with its argument ("arg") and the local time it is
// pressed at ("at"). A session presses them at those virtual times.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "sim/scenario.h"
#include "tracking/companion.h"

namespace replay {

struct Action {
    std::uint32_t AfterMs = 0;  // virtual time after the session's start
    std::string What;           // "actions[2] openRecord", for traces
    bool Ends = false;          // "end": the companion ends, as the player asked
    std::function<void(tracking::Companion&)> Press;
};

// The scenario's actions as commands, in time order (equal times keep their
// order). False, with `error` naming the member, for an unknown command, a
// wrong argument or a time before the session's start.
bool CompileActions(const sim::Scenario& scenario, std::vector<Action>& out, std::string& error);

// Every command name with what its argument is, one line each (usage texts).
std::vector<std::string> ActionHelp();

// A scenario read strictly, its actions included.
bool ParseSessionScenario(const std::string& text, sim::Scenario& out, std::string& error);

}  // namespace replay
