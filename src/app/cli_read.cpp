#include <cstdio>

#include "app/cli_commands.h"

namespace app {

int RunRead(const Args& args) {
    if (args.empty()) {
        std::fputs("tarvellos-cli read: which window? (lasthand, lasttrick, score or table IMAGE; see --help)\n", stderr);
        return 2;
    }
    const std::string& kind = args[0];
    if (kind == "--help" || kind == "-h") {
        std::fputs("usage: tarvellos-cli read lasthand|lasttrick|score|table IMAGE [options]\n"
                   "  reads a stored image of a game window; tarvellos-cli read KIND --help for the options\n",
                   stdout);
        return 0;
    }
    Args rest(args.begin() + 1, args.end());
    if (kind == "table") return RunReadTable(rest);
    if (kind == "lasthand" || kind == "lasttrick" || kind == "score") return RunReadSub(kind, rest);
    std::fprintf(stderr, "tarvellos-cli read: unknown window kind '%s' (lasthand, lasttrick, score, table)\n", kind.c_str());
    return 2;
}

}  // namespace app
