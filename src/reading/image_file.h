// Stored images of game windows: PNG (8-bit RGB/RGBA) and BMP (24/32-bit).
#pragma once

#include <cstddef>
#include <string>

#include "platform/image.h"

namespace reading {

// The largest picture accepted, in either direction: well above any game
// window or screen the companion reads, and small enough (64 MB of pixels)
// that a header claiming more is refused before anything is allocated.
inline constexpr int kMaxImageSide = 4096;
// The largest image file read at all (a 4096 x 4096 BMP with 32-bit pixels and headers).
inline constexpr std::size_t kMaxImageFileBytes = 4096u * 4096u * 4u + 4096u;

// Pixel (0,0) of the result is the image's top-left corner. Only a regular
// file is read (not a folder, FIFO or device).
bool LoadImageFile(const std::string& path, platform::Image& out, std::string& error);
bool LoadImageBytes(const std::string& bytes, platform::Image& out, std::string& error);
bool SaveImagePng(const std::string& path, const platform::Image& img, std::string& error);

}  // namespace reading
