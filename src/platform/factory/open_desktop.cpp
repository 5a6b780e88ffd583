#include "platform/factory/open_desktop.h"

#include "platform/sim/sim_desktop.h"

namespace platform {

std::optional<DesktopKind> ParseDesktopKind(std::string_view name) {
    if (name == "native") return DesktopKind::Native;
    if (name == "sim") return DesktopKind::Simulated;
    return std::nullopt;
}

OpenedDesktop OpenDesktop(DesktopKind kind) {
    OpenedDesktop out;
    switch (kind) {
        case DesktopKind::Simulated:
            out.Backend = std::make_unique<SimDesktop>();
            break;
        case DesktopKind::Native:
            // The X11 and Win32 backends join here as they are built.
            out.Error = "this build has no desktop backend for this system; only the simulated desktop is available";
            break;
    }
    return out;
}

}  // namespace platform
