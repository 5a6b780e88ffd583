#include <unistd.h>

#include "platform/console.h"

namespace platform {

bool OutputIsTerminal() { return ::isatty(STDOUT_FILENO) != 0; }

}  // namespace platform
