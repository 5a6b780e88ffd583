#include "reading/image_file.h"

#ifndef TARVELLOS_NO_PNG
#include <png.h>
#endif

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <vector>

namespace reading {

namespace {

std::uint32_t Le(const std::string& b, std::size_t at, int n) {
    std::uint32_t v = 0;
    for (int i = n - 1; i >= 0; --i) v = (v << 8) | static_cast<unsigned char>(b[at + static_cast<std::size_t>(i)]);
    return v;
}

bool LoadBmp(const std::string& b, platform::Image& out, std::string& error) {
    if (b.size() < 54) {
        error = "BMP file too short";
        return false;
    }
    const std::uint32_t dataOffset = Le(b, 10, 4);
    const std::uint32_t headerSize = Le(b, 14, 4);
    if (headerSize < 40) {
        error = "unsupported BMP header";
        return false;
    }
    const std::int32_t w = static_cast<std::int32_t>(Le(b, 18, 4));
    const std::int32_t rawH = static_cast<std::int32_t>(Le(b, 22, 4));
    const std::uint32_t bpp = Le(b, 28, 2);
    const std::uint32_t compression = Le(b, 30, 4);
    if (bpp != 24 && bpp != 32) {
        error = "BMP must have 24 or 32 bits per pixel";
        return false;
    }
    if (compression != 0 && !(compression == 3 && bpp == 32)) {
        error = "compressed BMP files are not supported";
        return false;
    }
    const bool topDown = rawH < 0;
    const std::int64_t h = topDown ? -static_cast<std::int64_t>(rawH) : rawH;
    if (w < 0 || w > kMaxImageSide || h > kMaxImageSide) {
        error = "BMP size out of range";
        return false;
    }
    // A bitmap without rows or columns is a valid, empty picture: the readers
    // then see a capture that delivered nothing.
    if (w == 0 || h == 0) {
        out = platform::Image(w, static_cast<std::int32_t>(h));
        return true;
    }
    const std::size_t bytesPP = bpp / 8;
    const std::size_t stride = (static_cast<std::size_t>(w) * bytesPP + 3) & ~static_cast<std::size_t>(3);
    if (dataOffset > b.size() || (b.size() - dataOffset) / stride < static_cast<std::size_t>(h)) {
        error = "BMP pixel data truncated";
        return false;
    }
    out = platform::Image(w, static_cast<std::int32_t>(h));
    for (std::int64_t row = 0; row < h; ++row) {
        const std::int32_t y = static_cast<std::int32_t>(topDown ? row : h - 1 - row);
        const std::size_t base = dataOffset + static_cast<std::size_t>(row) * stride;
        for (std::int32_t x = 0; x < w; ++x) {
            const std::size_t p = base + static_cast<std::size_t>(x) * bytesPP;
            const auto bl = static_cast<unsigned char>(b[p]), g = static_cast<unsigned char>(b[p + 1]),
                       r = static_cast<unsigned char>(b[p + 2]);
            out.Set(x, y, platform::Rgb(r, g, bl));
        }
    }
    return true;
}

#ifndef TARVELLOS_NO_PNG
struct PngSource {
    const std::string* bytes;
    std::size_t at;
    char message[200];
};

void PngRead(png_structp png, png_bytep out, png_size_t n) {
    auto* src = static_cast<PngSource*>(png_get_io_ptr(png));
    if (n > src->bytes->size() - src->at) png_error(png, "file truncated");
    std::memcpy(out, src->bytes->data() + src->at, n);
    src->at += n;
}

void PngFail(png_structp png, png_const_charp msg) {
    auto* src = static_cast<PngSource*>(png_get_error_ptr(png));
    std::snprintf(src->message, sizeof src->message, "%s", msg);
    png_longjmp(png, 1);
}

void PngWarn(png_structp, png_const_charp) {}

// The stored bytes of each channel as they are: no gamma, colour-space or
// alpha processing (a capture copies pixels, it does not compose them).
// Only plain objects live in this frame, so the error jump skips no destructor.
bool DecodePng(PngSource& src, std::vector<unsigned char>& rgb, std::vector<png_bytep>& rows, png_uint_32& w,
               png_uint_32& h) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &src, PngFail, PngWarn);
    if (!png) return false;
    png_infop info = png_create_info_struct(png);
    if (!info) {
        png_destroy_read_struct(&png, nullptr, nullptr);
        return false;
    }
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_read_struct(&png, &info, nullptr);
        return false;
    }
    png_set_read_fn(png, &src, PngRead);
    // The header is checked against the limits before any row is allocated,
    // and the decoder's own buffers for other chunks stay small.
    png_set_user_limits(png, kMaxImageSide, kMaxImageSide);
    png_set_chunk_malloc_max(png, 8u << 20);
    png_read_info(png, info);
    w = png_get_image_width(png, info);
    h = png_get_image_height(png, info);
    if (w > static_cast<png_uint_32>(kMaxImageSide) || h > static_cast<png_uint_32>(kMaxImageSide))
        png_error(png, "size out of range (at most 4096 x 4096)");

    const int colour = png_get_color_type(png, info);
    png_set_strip_16(png);
    png_set_expand(png);  // palette and low-depth gray to 8-bit samples
    if (colour == PNG_COLOR_TYPE_GRAY || colour == PNG_COLOR_TYPE_GRAY_ALPHA) png_set_gray_to_rgb(png);
    png_set_strip_alpha(png);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    if (png_get_rowbytes(png, info) != static_cast<png_size_t>(w) * 3) png_error(png, "unsupported pixel layout");
    rgb.resize(static_cast<std::size_t>(w) * h * 3);
    rows.resize(h);
    for (png_uint_32 y = 0; y < h; ++y) rows[y] = rgb.data() + static_cast<std::size_t>(y) * w * 3;
    png_read_image(png, rows.data());
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return true;
}

bool LoadPng(const std::string& b, platform::Image& out, std::string& error) {
    PngSource src{&b, 0, "cannot decode"};
    std::vector<unsigned char> buf;
    std::vector<png_bytep> rows;
    png_uint_32 pw = 0, ph = 0;
    if (!DecodePng(src, buf, rows, pw, ph)) {
        error = std::string("PNG: ") + src.message;
        return false;
    }
    const auto w = static_cast<std::int32_t>(pw), h = static_cast<std::int32_t>(ph);
    out = platform::Image(w, h);
    for (std::int32_t y = 0; y < h; ++y)
        for (std::int32_t x = 0; x < w; ++x) {
            const unsigned char* p = &buf[(static_cast<std::size_t>(y) * static_cast<std::size_t>(w) + static_cast<std::size_t>(x)) * 3];
            out.Set(x, y, platform::Rgb(p[0], p[1], p[2]));
        }
    return true;
}

#else
// Builds without a PNG library (the Windows cross build) read BMP only.
bool LoadPng(const std::string&, platform::Image&, std::string& error) {
    error = "PNG images cannot be read by this build; save the picture as BMP";
    return false;
}
#endif

}  // namespace

bool LoadImageBytes(const std::string& bytes, platform::Image& out, std::string& error) {
    if (bytes.size() >= 8 && std::memcmp(bytes.data(), "\x89PNG\r\n\x1a\n", 8) == 0) return LoadPng(bytes, out, error);
    if (bytes.size() >= 2 && bytes[0] == 'B' && bytes[1] == 'M') return LoadBmp(bytes, out, error);
    error = "not a PNG or BMP image";
    return false;
}

bool LoadImageFile(const std::string& path, platform::Image& out, std::string& error) {
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::file_status st = fs::status(path, ec);
    if (ec || !fs::exists(st)) {
        error = "cannot open " + path + ": no such file";
        return false;
    }
    // A folder, FIFO or device would fail late, block for ever or never end.
    if (!fs::is_regular_file(st)) {
        error = path + ": not a regular file";
        return false;
    }
    const auto size = fs::file_size(path, ec);
    if (ec || size > kMaxImageFileBytes) {
        error = path + (ec ? ": cannot read its size" : ": too large for an image of a game window");
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "cannot open " + path;
        return false;
    }
    std::string bytes;
    bytes.resize(static_cast<std::size_t>(size));
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    if (!LoadImageBytes(bytes, out, error)) {
        error = path + ": " + error;
        return false;
    }
    return true;
}

bool SaveImagePng(const std::string& path, const platform::Image& img, std::string& error) {
    if (img.Width <= 0 || img.Height <= 0) {
        error = "empty image";
        return false;
    }
#ifdef TARVELLOS_NO_PNG
    (void)path;
    error = "PNG images cannot be written by this build";
    return false;
#else
    std::vector<unsigned char> buf(static_cast<std::size_t>(img.Width) * static_cast<std::size_t>(img.Height) * 3);
    for (std::size_t i = 0; i < img.Pixels.size(); ++i) {
        buf[i * 3] = static_cast<unsigned char>(img.Pixels[i] >> 16);
        buf[i * 3 + 1] = static_cast<unsigned char>(img.Pixels[i] >> 8);
        buf[i * 3 + 2] = static_cast<unsigned char>(img.Pixels[i]);
    }
    png_image pi;
    std::memset(&pi, 0, sizeof pi);
    pi.version = PNG_IMAGE_VERSION;
    pi.width = static_cast<png_uint_32>(img.Width);
    pi.height = static_cast<png_uint_32>(img.Height);
    pi.format = PNG_FORMAT_RGB;
    // Written beside the target and renamed, so a failed write leaves no half file.
    const std::string tmp = path + ".tmp";
    if (!png_image_write_to_file(&pi, tmp.c_str(), 0, buf.data(), 0, nullptr)) {
        error = std::string("PNG: ") + pi.message;
        std::remove(tmp.c_str());
        return false;
    }
    if (std::rename(tmp.c_str(), path.c_str()) != 0) {
        error = "cannot write " + path;
        std::remove(tmp.c_str());
        return false;
    }
    return true;
#endif
}

}  // namespace reading
