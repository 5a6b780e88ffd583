// tarvellos-cli: the console face of the companion.
#include <cstdio>
#include <exception>
#include <string>

#include "app/cli_commands.h"

namespace {

void Usage() {
    std::fputs(
        "usage: tarvellos-cli COMMAND [ARGS]\n"
        "  settings [--home DIR] [--codepage N]   show what the settings file sets\n"
        "  read lasthand|lasttrick|score|table IMAGE [options]\n"
        "                                         read a stored image of a game window\n"
        "  replay SCENARIO.json --out DIR         follow a simulated session\n"
        "  demo                                   follow a simulated game and tell what happens\n"
        "  watch [--home DIR] [--deals N] [--timeout S] [--json]\n"
        "                                         follow the game on this desktop in real time\n",
        stdout);
}

int Main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("tarvellos-cli: which command? (settings, read, replay, demo, watch; see --help)\n", stderr);
        return 2;
    }
    const std::string cmd = argv[1];
    app::Args args(argv + 2, argv + argc);
    if (cmd == "settings") return app::RunSettings(args);
    if (cmd == "read") return app::RunRead(args);
    if (cmd == "replay") return app::RunReplay(args);
    if (cmd == "demo") return app::RunDemo(args);
    if (cmd == "watch") return app::RunWatch(args);
    if (cmd == "--help" || cmd == "-h" || cmd == "help") {
        Usage();
        return 0;
    }
    std::fprintf(stderr, "tarvellos-cli: unknown command '%s' (see --help)\n", cmd.c_str());
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    // Whatever a command did not foresee ends here as one line, not an abort.
    try {
        return Main(argc, argv);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "tarvellos-cli: internal error: %s\n", e.what());
    } catch (...) {
        std::fprintf(stderr, "tarvellos-cli: internal error\n");
    }
    return 1;
}
