// The simulated game's table window drawn as the game draws it (so the
// pixel readers read it), with the places its buttons react to.
#pragma once

#include "sim/render_table.h"
#include "sim/sim_game_desktop.h"

namespace replay {

// What the table shows in a state, seen from the user's seat.
sim::TableView TableViewOf(const sim::TableState& s, int language, int width, int height);
// A TableRenderer for SimGameDesktop: renders the window and keeps its
// client part; redraws only when the view changed.
sim::TableRenderer RenderedTable();

}  // namespace replay
