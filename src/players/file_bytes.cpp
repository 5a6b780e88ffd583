#include "players/file_bytes.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "core/text.h"

namespace players {

namespace fs = std::filesystem;

bool FileExists(const std::string& path) {
    std::error_code ec;
    return fs::is_regular_file(core::PathFromUtf8(path), ec);
}

bool ReadFileBytes(const std::string& path, std::string& bytes) {
    std::ifstream in(core::PathFromUtf8(path), std::ios::binary);
    if (!in) return false;
    std::string data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad()) return false;
    bytes = std::move(data);
    return true;
}

bool WriteFileSafely(const std::string& path, const std::string& bytes) {
    fs::path target = core::PathFromUtf8(path);
    fs::path tmp = target;
    tmp += ".tmp~";
    std::error_code ec;
    {
        std::ofstream out(tmp, std::ios::binary | std::ios::trunc);
        if (!out) return false;
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        out.flush();
        if (!out) {
            out.close();
            fs::remove(tmp, ec);
            return false;
        }
    }
    fs::rename(tmp, target, ec);
    if (ec) {
        fs::remove(tmp, ec);
        return false;
    }
    return true;
}

}  // namespace players
