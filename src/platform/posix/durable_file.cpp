// File replacement with fsync and rename(2).
#include "platform/durable_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace platform {

namespace {

std::error_code LastError() { return {errno, std::generic_category()}; }

std::error_code WriteAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t n = ::write(fd, bytes.data(), bytes.size());
        if (n < 0) {
            if (errno == EINTR) continue;
            return LastError();
        }
        bytes.remove_prefix(static_cast<std::size_t>(n));
    }
    return {};
}

// The rename is only durable once the folder's entry is on the disk too.
void SyncFolder(const std::filesystem::path& target) {
    std::filesystem::path folder = target.parent_path();
    if (folder.empty()) folder = ".";
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return;
    // Some file systems cannot sync a folder; the file is replaced all the
    // same, so that is no failure of the save.
    (void)::fsync(fd);
    ::close(fd);
}

}  // namespace

ReplaceFailure ReplaceFileDurably(const std::filesystem::path& target, std::string_view bytes) {
    const std::filesystem::path temp = ReplacementTempPath(target);
    // O_NOFOLLOW: a link planted under the temporary name must not redirect
    // the write elsewhere.
    const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0666);
    if (fd < 0) return {LastError(), "cannot create a temporary file"};
    ReplaceFailure failed{WriteAll(fd, bytes), "cannot write the temporary file"};
    if (!failed && ::fsync(fd) != 0) failed = {LastError(), "cannot flush the file to disk"};
    if (::close(fd) != 0 && !failed) failed = {LastError(), "cannot write the temporary file"};
    if (!failed && ::rename(temp.c_str(), target.c_str()) != 0) failed = {LastError(), "cannot replace the file"};
    if (failed) {
        ::unlink(temp.c_str());
        return failed;
    }
    SyncFolder(target);
    return {};
}

}  // namespace platform
