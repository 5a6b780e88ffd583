#include "core/player_files.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "core/text.h"
#include "platform/clock.h"

namespace core {

namespace fs = std::filesystem;

std::string UnreadableCopyPath(const std::string& path, const platform::LocalTime& now) {
    char stamp[40];
    std::snprintf(stamp, sizeof stamp, ".unreadable-%04d%02d%02d-%02d%02d%02d", now.Year, now.Month, now.Day, now.Hour,
                  now.Minute, now.Second);
    return path + stamp;
}

SaveResult SetAsideUnreadable(const std::string& path, const platform::LocalTime& now) {
    const std::string base = UnreadableCopyPath(path, now);
    std::string aside = base;
    std::error_code ec;
    // Never overwrite an earlier copy: it may be the only one of other data.
    for (int n = 2; fs::exists(PathFromUtf8(aside), ec) && n < 1000; ++n) aside = base + "-" + std::to_string(n);
    if (!fs::copy_file(PathFromUtf8(path), PathFromUtf8(aside), fs::copy_options::none, ec))
        return SaveResult::Failed(aside, "cannot copy the unreadable file aside: " + ec.message());
    return SaveResult::Ok(aside);
}

SaveResult SetAsideUnreadable(const std::string& path) {
    platform::SystemClock clock;
    return SetAsideUnreadable(path, clock.Now());
}

bool IsOwnTempFileName(const std::string& fileName) {
    if (EndsWith(fileName, ".tmp~") && fileName.size() > 5) return true;
    const std::string upper = UCase(fileName);
    return upper == "RECORDNILS.BAK.TMP" || upper == UCase("ニル集計.BAK.tmp");
}

std::vector<std::string> RemoveLeftoverTempFiles(const std::string& folder) {
    std::vector<std::string> removed;
    std::error_code ec;
    fs::directory_iterator it(PathFromUtf8(folder), ec), end;
    for (; !ec && it != end; it.increment(ec)) {
        std::error_code fe;
        if (!it->is_regular_file(fe)) continue;
        const std::string name = PathToUtf8(it->path().filename());
        if (!IsOwnTempFileName(name)) continue;
        if (fs::remove(it->path(), fe)) removed.push_back(PathToUtf8(it->path()));
    }
    return removed;
}

bool LooksLikeText(const std::string& bytes) { return bytes.find('\0') == std::string::npos; }

}  // namespace core
