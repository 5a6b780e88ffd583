// Window handles and screen geometry, shared by every platform role.
#pragma once

#include <cstdint>

namespace platform {

using WindowHandle = std::int64_t;  // 0 = no window

struct Rect {
    std::int32_t Left = 0, Top = 0, Right = 0, Bottom = 0;
    std::int32_t Width() const { return Right - Left; }
    std::int32_t Height() const { return Bottom - Top; }
    bool operator==(const Rect&) const = default;
};

struct Point {
    std::int32_t X = 0, Y = 0;
    bool operator==(const Point&) const = default;
};

}  // namespace platform
