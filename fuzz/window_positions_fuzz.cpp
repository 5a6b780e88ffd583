// Window-position files from arbitrary bytes: loading never crashes and
// clamps every pair; saving keeps every pair of a window that is not open.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

#include "display/window_positions.h"

namespace {

// A folder of its own: a file that cannot be read is copied aside before it
// is replaced, and those copies are cleared after every input.
const std::filesystem::path& FuzzFolder() {
    static const std::filesystem::path dir = [] {
        auto d = std::filesystem::temp_directory_path() / ("tarvellos-winpos-fuzz-" + std::to_string(getpid()));
        std::filesystem::create_directories(d);
        return d;
    }();
    return dir;
}

std::string FuzzFile() { return (FuzzFolder() / "positions.cfg").string(); }

int Clamped(int v) { return v > 1000 ? 0 : v < -10 ? -10 : v; }

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = FuzzFile();
    {
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    const platform::Rect main{100, 100, 400, 700};

    const display::PosTable previous = display::ReadPreviousPositions(path, 1252);
    const display::LoadedPositions got = display::LoadWindowPositions(path, {1280, 1024}, main, 1252);
    if (got.PosCount < 0 || got.PosCount > display::PosWindowCount) std::abort();
    for (const platform::Point& p : got.Pos)
        if (p.X > 1000 || p.X < -10 || p.Y > 1000 || p.Y < -15) std::abort();
    if (got.Main.Width() != main.Width() || got.Main.Height() != main.Height()) std::abort();
    if (got.Main.Right > 1280 || got.Main.Bottom > 1024) std::abort();

    if (got.Found) {
        // Nothing open: every stored pair is written back (clamped).
        if (!display::SaveWindowPositions(path, 1280, main, display::PosTable{}, 1252)) std::abort();
        const display::PosTable after = display::ReadPreviousPositions(path, 1252);
        for (int w = 0; w < display::PosWindowCount; ++w)
            if (after[w].X != Clamped(previous[w].X) || after[w].Y != Clamped(previous[w].Y)) std::abort();
    }
    std::error_code ec;
    for (const auto& e : std::filesystem::directory_iterator(FuzzFolder(), ec)) std::filesystem::remove(e.path(), ec);
    return 0;
}
