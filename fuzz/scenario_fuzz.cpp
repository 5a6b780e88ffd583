// Scenario files are user input: any bytes parse within the limits or give
// an error naming what is wrong, never a crash, overflow or endless run.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "sim/scenario.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    sim::Scenario sc;
    std::string error;
    if (!sim::ParseScenario(text, sc, error)) {
        if (error.empty()) std::abort();
        return 0;
    }
    if (sc.game.scripted.size() > 1000 || sc.game.randomDeals > 1000) std::abort();
    for (const auto& p : sc.game.players)
        if (p.name.size() > 64 * 4 || p.rating.size() > 64 * 4) std::abort();
    return 0;
}
