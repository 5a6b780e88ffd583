// The built-in table of the demo and of the game host's --seed runs: twelve
// random deals at table Oak, the user me_player.
#pragma once

#include <string>

#include "sim/scenario.h"

namespace replay {

// seed < 0 and deals <= 0 keep the built-in values.
bool DemoScenario(sim::Scenario& out, std::string& error, long long seed = -1, long long deals = -1);

}  // namespace replay
