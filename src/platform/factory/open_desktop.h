// Chooses the desktop backend for a run: the real one of this system, or
// the simulated one.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/desktop.h"

namespace platform {

enum class DesktopKind {
    Native,     // the system's own desktop (X11 on Linux, Win32 on Windows)
    Simulated,  // an empty in-memory desktop
};

// "native" or "sim"; nothing for any other name.
[[nodiscard]] std::optional<DesktopKind> ParseDesktopKind(std::string_view name);

struct OpenedDesktop {
    std::unique_ptr<DesktopBackend> Backend;  // null when it could not be opened
    std::string Error;                        // why not, for the user
};

[[nodiscard]] OpenedDesktop OpenDesktop(DesktopKind kind);

}  // namespace platform
