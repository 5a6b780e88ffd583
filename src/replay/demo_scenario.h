// The demo's table: four players, twelve deals, the user "me_player".
#pragma once

#include <string>

namespace replay {

// The scenario text of the demo (see sim/scenario.h for its form).
const char* DemoScenarioJson();

}  // namespace replay
