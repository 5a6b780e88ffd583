#include "platform/factory/open_desktop.h"

#include "platform/sim/sim_desktop.h"
#ifdef _WIN32
#include "platform/win32/win32_desktop.h"
#endif

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
#ifdef _WIN32
            out.Backend = std::make_unique<Win32Desktop>();
#else
            // The X11 backend joins here.
            out.Error = "this build has no desktop backend for this system; only the simulated desktop is available";
#endif
            break;
    }
    return out;
}

}  // namespace platform
