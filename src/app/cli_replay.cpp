#include <cstdio>

#include "app/cli_commands.h"

namespace app {

int RunReplay(const Args&) {
    std::fputs("tarvellos-cli replay: not built yet in this version\n", stderr);
    return 3;
}

}  // namespace app
