// Stored images of game windows: PNG (8-bit RGB/RGBA) and BMP (24/32-bit).
#pragma once

#include <string>

#include "platform/image.h"

namespace reading {

// Pixel (0,0) of the result is the image's top-left corner.
bool LoadImageFile(const std::string& path, platform::Image& out, std::string& error);
bool LoadImageBytes(const std::string& bytes, platform::Image& out, std::string& error);
bool SaveImagePng(const std::string& path, const platform::Image& img, std::string& error);

}  // namespace reading
