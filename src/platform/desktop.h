// The desktop the game runs on, by role. Logic takes only the roles it
// uses (a score sheet needs a sound, the readers need windows and screen
// copies); the program's top level hands out this bundle.
#pragma once

#include "platform/geometry.h"
#include "platform/input.h"
#include "platform/screen_capture.h"
#include "platform/sound.h"
#include "platform/system_info.h"
#include "platform/windowing.h"

namespace platform {

struct Desktop {
    Windows& windows;
    ScreenCapture& capture;
    Input& input;
    Sound& sound;
    SystemInfo& system;
};

// A desktop implementation (simulated, X11, Win32). It owns its role
// objects; the bundle it hands out lives as long as it does.
class DesktopBackend {
public:
    virtual ~DesktopBackend() = default;
    [[nodiscard]] virtual Desktop Roles() = 0;
};

}  // namespace platform
