// Care of the files the player owns beyond writing them: an earlier file
// that cannot be read is copied aside before anything replaces it, and
// temporary files left by a crashed run are cleared at start.
#pragma once

#include <string>
#include <vector>

#include "core/save_result.h"
#include "platform/clock.h"

namespace core {

// "<path>.unreadable-YYYYMMDD-HHMMSS" for the given time.
std::string UnreadableCopyPath(const std::string& path, const platform::LocalTime& now);

// Copies `path` to UnreadableCopyPath (a second copy in the same second gets
// "-2", "-3", ... appended). The result names the copy; when it is not
// Saved the original must not be replaced.
SaveResult SetAsideUnreadable(const std::string& path, const platform::LocalTime& now);
// The same named by the system's local time, where no program clock is at hand.
SaveResult SetAsideUnreadable(const std::string& path);

// Whether a file name is one of the temporary files this program creates
// beside a file it rewrites ("<name>.tmp~", and the Nil backup's
// "<name>.BAK.tmp" of earlier versions).
bool IsOwnTempFileName(const std::string& fileName);

// Removes our leftover temporary files directly in `folder` (no subfolders,
// nothing else); returns the paths removed.
std::vector<std::string> RemoveLeftoverTempFiles(const std::string& folder);

// Whether the bytes look like text at all: no NUL byte (random data or
// UTF-16 always holds some), so a line-based reader can make sense of them.
bool LooksLikeText(const std::string& bytes);

}  // namespace core
