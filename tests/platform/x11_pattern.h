// The pattern the X11 test window draws: every pixel differs from its
// neighbours in each channel's top five bits, so a copy shifted, flipped or
// with channels swapped cannot match it.
#pragma once

#include <cstdint>

namespace x11test {

inline std::uint32_t PatternAt(int x, int y) {
    const std::uint32_t r = static_cast<std::uint32_t>(x * 8 + y * 40) & 0xFF;
    const std::uint32_t g = static_cast<std::uint32_t>(y * 8 + x * 24) & 0xFF;
    const std::uint32_t b = static_cast<std::uint32_t>((x ^ y) * 8 + 3) & 0xFF;
    return (r << 16) | (g << 8) | b;
}

}  // namespace x11test
