// What became of one write of a file the player owns: written, or why not.
// Every save reports one, so no caller can claim a file it never wrote.
#pragma once

#include <string>

namespace core {

struct SaveResult {
    std::string Path;    // the file meant
    bool Saved = false;
    std::string Reason;  // why not, when not saved ("" when saved)
    // Where the earlier file went when it could not be read and was copied
    // aside before this save replaced it ("" when nothing was set aside).
    std::string SetAside;

    static SaveResult Ok(std::string path) { return {std::move(path), true, {}, {}}; }
    static SaveResult Failed(std::string path, std::string reason) {
        return {std::move(path), false, std::move(reason), {}};
    }
    explicit operator bool() const { return Saved; }
};

}  // namespace core
