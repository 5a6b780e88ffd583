// The host system on Linux and other POSIX systems.
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "platform/system_info.h"

namespace platform {

namespace {

std::string LockFilePath() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime && *runtime) return std::string(runtime) + "/tarvellos.lock";
    return "/tmp/tarvellos-" + std::to_string(::getuid()) + ".lock";
}

// The first instance holds an exclusive lock on the lock file for as long
// as it runs; the system releases it when the process ends, however it ends.
bool OtherInstanceHoldsLock() {
    static const bool other = [] {
        const int fd = ::open(LockFilePath().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (fd < 0) return false;  // no lock file possible: assume we are alone
        if (::flock(fd, LOCK_EX | LOCK_NB) == 0) return false;  // kept open on purpose
        const bool held = errno == EWOULDBLOCK;
        ::close(fd);
        return held;
    }();
    return other;
}

bool StartsWithJa(const char* v) { return v[0] == 'j' && v[1] == 'a'; }

}  // namespace

bool HostSystemInfo::PrevInstance() { return OtherInstanceHoldsLock(); }

// There is no ANSI code page here: the locale's language decides, Japanese
// for a Japanese locale and Western otherwise, as on a Windows system set
// up for that language.
int HostSystemInfo::AnsiCodePage() {
    for (const char* var : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* v = std::getenv(var);
        if (v && *v) return StartsWithJa(v) ? 932 : 1252;
    }
    return 1252;
}

std::optional<std::string> HostSystemInfo::ExecutableFolder() {
    std::error_code ec;
    const std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec) return std::nullopt;
    const std::u8string folder = exe.parent_path().u8string();
    return std::string(folder.begin(), folder.end());
}

}  // namespace platform
