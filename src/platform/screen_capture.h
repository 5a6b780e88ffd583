// Copies of what the screen shows, in the form the readers work on.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/geometry.h"

namespace platform {

// Which part of a window a region is measured in.
enum class Area {
    Window,  // the outer rectangle, its top-left corner at 0,0
    Client,  // the client area, its top-left corner at 0,0
};

class ScreenCapture {
public:
    virtual ~ScreenCapture() = default;

    // Copies `region` of a window into `bits` as 16-bit 5-5-5 words (each
    // channel's top five bits), rows bottom-up, each row padded to an even
    // number of words; `bits` must already hold that many words. Parts of
    // the region off the window read as black. What lies above the window
    // is not painted over it. Returns the number of rows delivered: 0 when
    // nothing usable came (window gone or minimised, empty region, buffer
    // too small).
    [[nodiscard]] virtual std::int32_t CopyRegion(WindowHandle h, Area area, const Rect& region,
                                                  std::vector<std::uint16_t>& bits) = 0;
    // The same for a region of the whole screen as the user sees it.
    [[nodiscard]] virtual std::int32_t CopyScreenRegion(const Rect& region, std::vector<std::uint16_t>& bits) = 0;
};

}  // namespace platform
