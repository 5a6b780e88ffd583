#include "platform/temp_folder.h"

#include <filesystem>
#include <random>

namespace platform {

std::optional<std::string> MakeFreshTempFolder(const std::string& stem, std::string& error) {
    namespace fs = std::filesystem;
    std::error_code ec;
    const fs::path base = fs::temp_directory_path(ec);
    if (ec) {
        error = "no temporary folder: " + ec.message();
        return std::nullopt;
    }
    std::random_device seed;
    std::mt19937_64 pick(seed());
    static constexpr char kLetters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::string name = stem + "-";
        for (int i = 0; i < 6; ++i) name += kLetters[pick() % (sizeof kLetters - 1)];
        // create_directory fails on an existing folder: two runs never share one.
        if (fs::create_directory(base / name, ec)) {
            const std::u8string path = (base / name).u8string();
            return std::string(path.begin(), path.end());
        }
        if (ec) {
            error = ec.message();
            return std::nullopt;
        }
    }
    error = "every name tried was taken";
    return std::nullopt;
}

}  // namespace platform
