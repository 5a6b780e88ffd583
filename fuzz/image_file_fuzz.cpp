// Stored images come from anywhere: any bytes give a picture within the size
// limit or an error, never a crash or an allocation beyond the limit.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "reading/image_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    platform::Image img;
    std::string error;
    if (reading::LoadImageBytes(bytes, img, error)) {
        if (img.Width < 0 || img.Height < 0 || img.Width > reading::kMaxImageSide || img.Height > reading::kMaxImageSide)
            std::abort();
        if (img.Pixels.size() != static_cast<std::size_t>(img.Width) * static_cast<std::size_t>(img.Height)) std::abort();
    } else if (error.empty()) {
        std::abort();
    }
    return 0;
}
