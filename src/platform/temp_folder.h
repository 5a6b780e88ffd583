// A new, empty folder of this run's own under the system's temporary folder.
#pragma once

#include <optional>
#include <string>

namespace platform {

// Creates "<temp>/<stem>-XXXXXX" with a random suffix that no other folder
// has; nothing (and `error` says why) when it cannot be made.
[[nodiscard]] std::optional<std::string> MakeFreshTempFolder(const std::string& stem, std::string& error);

}  // namespace platform
