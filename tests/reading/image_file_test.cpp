// Stored images as hostile files can make them: sizes beyond any game
// window are refused before their pixels are allocated.
#include "reading/image_file.h"

#include <gtest/gtest.h>

#include <zlib.h>

#include <filesystem>

#include "core/temp_dir.h"

namespace {

void Be32(std::string& out, std::uint32_t v) {
    for (int s = 24; s >= 0; s -= 8) out += static_cast<char>((v >> s) & 0xFF);
}

// A PNG of only a header (and an end) that claims w x h pixels, with correct
// checksums so the decoder believes it.
std::string PngHeaderOnly(std::uint32_t w, std::uint32_t h) {
    std::string png = "\x89PNG\r\n\x1a\n";
    const auto chunk = [&png](const char* type, const std::string& data) {
        Be32(png, static_cast<std::uint32_t>(data.size()));
        const std::string body = type + data;
        png += body;
        Be32(png, static_cast<std::uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()))));
    };
    std::string ihdr;
    Be32(ihdr, w);
    Be32(ihdr, h);
    ihdr += std::string("\x08\x02\x00\x00\x00", 5);  // 8-bit RGB
    chunk("IHDR", ihdr);
    chunk("IEND", "");
    return png;
}

TEST(ImageFile, SizesBeyondTheLimitAreRefusedBeforeDecoding) {
    for (const auto& [w, h] : {std::pair{20000u, 20000u}, std::pair{4097u, 1u}, std::pair{1u, 4097u}}) {
        platform::Image img;
        std::string error;
        EXPECT_FALSE(reading::LoadImageBytes(PngHeaderOnly(w, h), img, error)) << w << "x" << h;
        EXPECT_EQ(img.Pixels.size(), 0u);
    }
    // A real picture one pixel too wide is refused; one at the limit is read.
    TempDir dir;
    std::string error;
    ASSERT_TRUE(reading::SaveImagePng(dir.File("wide.png"), platform::Image(4097, 1), error)) << error;
    ASSERT_TRUE(reading::SaveImagePng(dir.File("limit.png"), platform::Image(4096, 2), error)) << error;
    platform::Image img;
    EXPECT_FALSE(reading::LoadImageFile(dir.File("wide.png"), img, error));
    EXPECT_TRUE(reading::LoadImageFile(dir.File("limit.png"), img, error)) << error;
    EXPECT_EQ(img.Width, 4096);
}

TEST(ImageFile, OnlyRegularFilesAreRead) {
    TempDir dir;
    platform::Image img;
    std::string error;
    for (const std::string& path : {dir.Folder(), std::string("/dev/zero")}) {
        EXPECT_FALSE(reading::LoadImageFile(path, img, error)) << path;
        EXPECT_NE(error.find("not a regular file"), std::string::npos) << error;
    }
}

}  // namespace
