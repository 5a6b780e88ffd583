#include <cstdio>

#include "app/cli_commands.h"

namespace app {

int RunReadTable(const Args&) {
    std::fputs("tarvellos-cli read table: not built yet in this version\n", stderr);
    return 3;
}

}  // namespace app
