// A plain 24-bit colour image (0x00RRGGBB per pixel, row 0 at the top), the
// form in which simulated windows hold their pixels and stored images load.
#pragma once

#include <cstdint>
#include <vector>

namespace platform {

struct Image {
    std::int32_t Width = 0, Height = 0;
    std::vector<std::uint32_t> Pixels;  // Width * Height, top row first

    Image() = default;
    Image(std::int32_t w, std::int32_t h, std::uint32_t fill = 0x00FFFFFF)
        : Width(w), Height(h), Pixels(static_cast<std::size_t>(w > 0 && h > 0 ? w * h : 0), fill) {}

    bool Contains(std::int32_t x, std::int32_t y) const { return x >= 0 && y >= 0 && x < Width && y < Height; }
    std::uint32_t At(std::int32_t x, std::int32_t y) const { return Pixels[static_cast<std::size_t>(y * Width + x)]; }
    void Set(std::int32_t x, std::int32_t y, std::uint32_t rgb) {
        if (Contains(x, y)) Pixels[static_cast<std::size_t>(y * Width + x)] = rgb;
    }
    void FillRect(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1, std::uint32_t rgb) {
        // Clipped once, then whole rows: windows are filled on every repaint.
        x0 = x0 < 0 ? 0 : x0;
        y0 = y0 < 0 ? 0 : y0;
        x1 = x1 > Width ? Width : x1;
        y1 = y1 > Height ? Height : y1;
        for (std::int32_t y = y0; y < y1; ++y)
            for (std::int32_t x = x0; x < x1; ++x) Pixels[static_cast<std::size_t>(y * Width + x)] = rgb;
    }
};

constexpr std::uint32_t Rgb(std::uint32_t r, std::uint32_t g, std::uint32_t b) { return (r << 16) | (g << 8) | b; }

// A screen copy's 16-bit 5-5-5 word for a 24-bit colour: each channel >> 3.
constexpr std::uint16_t To555(std::uint32_t rgb) {
    return static_cast<std::uint16_t>((((rgb >> 19) & 31) << 10) | (((rgb >> 11) & 31) << 5) | ((rgb >> 3) & 31));
}

}  // namespace platform
