// The console a command-line run writes to.
#pragma once

namespace platform {

// Standard output goes to a terminal (a person reads it), not to a file or pipe.
[[nodiscard]] bool OutputIsTerminal();

}  // namespace platform
