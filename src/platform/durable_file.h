// Replacing a file so that a crash or power cut at any moment leaves either
// the old or the new content, whole: the player's files are never lost to
// a half-written save.
#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

namespace platform {

// The temporary file next to `target` that a replacement writes first.
[[nodiscard]] std::filesystem::path ReplacementTempPath(const std::filesystem::path& target);

// Why a replacement failed: the step that failed and what the system said.
struct ReplaceFailure {
    std::error_code Error;
    const char* Step = "";
    explicit operator bool() const { return static_cast<bool>(Error); }
};

// Writes `bytes` to the temporary file, flushes them to the disk, renames the
// file over `target` and flushes the folder entry. On failure the error is
// returned with its step, `target` is untouched and no temporary file is
// left behind.
[[nodiscard]] ReplaceFailure ReplaceFileDurably(const std::filesystem::path& target, std::string_view bytes);

}  // namespace platform
