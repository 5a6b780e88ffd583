// The mouse, for pressing the game's own buttons.
#pragma once

#include <optional>

#include "platform/geometry.h"

namespace platform {

class Input {
public:
    virtual ~Input() = default;
    // Cursor position in screen coordinates; nothing when the system does
    // not tell (then there is nothing to put back after a click either).
    [[nodiscard]] virtual std::optional<Point> CursorPos() = 0;
    virtual void SetCursorPos(Point p) = 0;
    // Left button down and up at the cursor position.
    virtual void LeftClick() = 0;
};

}  // namespace platform
