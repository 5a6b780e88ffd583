#include "replay/demo_scenario.h"

namespace replay {

namespace {

constexpr const char* kDemoScenario = R"JSON({
  "start": "2026-03-05T21:00:00", "language": 1, "screen": [1280, 1024],
  "table": {"name": "Oak", "host": "alice", "dnilPass": false, "suicide": false},
  "settings": ["MyYahooID = me_player", "BidTrickCounter = (*,0),(*,0)", "AlertNilBids = yes"],
  "alertFile": ["righty_two(Staller),"],
  "players": ["me_player", "lefty_one", "partner_x", "righty_two"],
  "ratings": ["1534", "1620", "1480", "1701"],
  "watchers": [["kibitz_a", "1500"]],
  "deals": 12, "seed": 2})JSON";

}  // namespace

bool DemoScenario(sim::Scenario& out, std::string& error, long long seed, long long deals) {
    if (!sim::ParseScenario(kDemoScenario, out, error)) return false;
    if (seed >= 0) out.game.seed = static_cast<std::uint32_t>(seed);
    if (deals > 0) out.game.randomDeals = static_cast<int>(deals);
    return true;
}

}  // namespace replay
