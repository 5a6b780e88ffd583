#include <cstdio>

#include "app/cli_commands.h"

namespace app {

int RunSettings(const Args&) {
    std::fputs("tarvellos-cli settings: not built yet in this version\n", stderr);
    return 3;
}

}  // namespace app
