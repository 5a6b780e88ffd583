#include <cstdio>

#include "app/cli_commands.h"

namespace app {

int RunDemo(const Args&) {
    std::puts(
        "TarvelloS is a desktop companion for players of an online Spades game.\n"
        "It finds the game's windows by their titles, reads names, bids, tricks, cards\n"
        "and score lines from their pixels, follows each deal and game, and shows bid\n"
        "and trick counters, bid help, player alerts and one record file per deal.\n"
        "\n"
        "The demo (the companion following a simulated game) arrives with the game\n"
        "simulator. Until then, try:\n"
        "  build/tarvellos-cli settings --home DIR   what a settings file sets\n");
    return 0;
}

}  // namespace app
