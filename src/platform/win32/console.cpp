#include <io.h>

#include <cstdio>

#include "platform/console.h"

namespace platform {

bool OutputIsTerminal() { return _isatty(_fileno(stdout)) != 0; }

}  // namespace platform
