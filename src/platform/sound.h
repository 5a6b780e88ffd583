// Sounds the companion makes to draw the user's attention.
#pragma once

#include <string>

namespace platform {

class Sound {
public:
    virtual ~Sound() = default;
    // A system sound by its alias ("SystemAsterisk", "SystemExclamation",
    // "SystemStart", "SystemExit"), played without waiting. An empty or
    // unknown alias plays nothing, never a default sound.
    virtual void PlaySystemSound(const std::string& alias) = 0;
    // The plain warning beep.
    virtual void Beep() = 0;
};

}  // namespace platform
