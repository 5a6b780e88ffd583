// The game the demo plays and the simulated game shows by default: a table
// of four with the user "me_player", an alert list entry and random deals
// from a seed.
#pragma once

namespace replay {

// Scenario JSON text (see sim/scenario.h).
const char* DemoScenarioText();

}  // namespace replay
