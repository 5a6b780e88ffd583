// Scenario files: the table, its players, the user's program settings and
// either scripted deals or a number of random deals, as JSON:
//
//   {"start": "2026-03-05T21:00:00", "language": 1, "screen": [1280, 1024],
//    "table": {"name": "Oak", "host": "alice", "dnilPass": false, "suicide": false},
//    "settings": ["MyYahooID = me_player"], "alertFile": ["badguy_77(Staller),"],
//    "players": [4 names, compass seats N, E, S, W], "ratings": [4 texts],
//    "watchers": [["kibitz_a", "1500"]], "codepage": 1252,
//    "deals": [{"dealer": 0, "hands": [[13 cards] x 4], "bids": [4],
//               "play": [[4 cards by seat] x 13]}] or a number of random deals,
//    "seed": 7, "games": 3, "ratingsAfterGame": [[4 texts by seat], ...]}
//
// alertFile, watchers, codepage, seed, games, ratingsAfterGame and each
// deal's play are optional. "games" ends random deals after that many
// finished games; "ratingsAfterGame" gives the player list's ratings after
// each finished game.
#pragma once

#include <string>
#include <vector>

#include "core/game_language.h"
#include "core/json.h"
#include "platform/clock.h"
#include "sim/spades_game.h"

namespace sim {

// A command of the player, pressed at a local time of the session. The
// simulator only keeps it; the session that runs the companion knows the
// commands and checks them.
struct ScenarioAction {
    platform::LocalTime at;
    std::string command;
    core::Json arg;    // null when the action has none
    std::string path;  // "actions[2]", for messages
};

struct Scenario {
    platform::LocalTime start;
    core::GameLanguage language = core::GameLanguage::English;  // any but French and Brazilian
    int screenWidth = 1280, screenHeight = 1024;
    int codepage = 1252;
    std::vector<std::string> settings;   // lines of the user's settings file
    std::vector<std::string> alertFile;  // lines of the user's alert list
    GameSetup game;                      // table, players, user seat, deals, seed
    std::vector<ScenarioAction> actions;  // in the order given
};

// Strict reading; on failure `error` names the member that is wrong
// (e.g. "deals[0].play[4][1]: East plays 9H but must follow clubs").
bool ParseScenario(const std::string& text, Scenario& out, std::string& error);
bool ScenarioFromJson(const core::Json& json, Scenario& out, std::string& error);

// Value of "Key = value" in settings lines (key compared case-insensitively,
// both sides trimmed); "" when absent.
std::string SettingValue(const std::vector<std::string>& settings, const std::string& key);
// The seat of the first ID of the MyYahooID setting found among the
// players (case-insensitive); 0 when none is.
int UserSeatFromSettings(const std::vector<std::string>& settings, const std::array<Player, kSeats>& players);

}  // namespace sim
