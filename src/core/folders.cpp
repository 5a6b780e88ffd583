#include "core/folders.h"

#include <filesystem>
#include <system_error>

#include "core/text.h"
#include "platform/system_info.h"

namespace core {

namespace fs = std::filesystem;

std::string JoinPath(const std::string& folder, const std::string& name) {
    std::string n = name;
#ifndef _WIN32
    for (char& c : n)
        if (c == '\\') c = '/';
#endif
    if (folder.empty()) return n;
    if (PathFromUtf8(n).is_absolute()) return n;
    return PathToUtf8(PathFromUtf8(folder) / PathFromUtf8(n));
}

std::string FindFileNoCase(const std::string& folder, const std::string& name) {
    if (name.empty()) return {};
    const std::string exact = JoinPath(folder, name);
    std::error_code ec;
#ifndef _WIN32
    if (fs::exists(PathFromUtf8(exact), ec)) return exact;
#endif
    // Only the last part of the name is matched without case; the folders
    // above it must exist as written. (On Windows the name as written would
    // open the file too, but the file box and messages show the name the
    // file really has.)
    const fs::path full = PathFromUtf8(exact);
    const fs::path dir = full.has_parent_path() ? full.parent_path() : fs::path(".");
    const std::string want = UCase(PathToUtf8(full.filename()));
    fs::directory_iterator it(dir, ec), end;
    for (; !ec && it != end; it.increment(ec))
        if (UCase(PathToUtf8(it->path().filename())) == want) return PathToUtf8(it->path());
#ifdef _WIN32
    if (fs::exists(PathFromUtf8(exact), ec)) return exact;
#endif
    return {};
}

std::string Folders::EnterProgramFolder(const std::string& name) const {
    std::string found = FindFileNoCase(ProgramFolder, name);
    return found.empty() ? JoinPath(ProgramFolder, name) : found;
}

std::string Folders::EnterWorkFolder(const std::string& name) const {
    const std::string work = WorkFolder();
    std::string found = FindFileNoCase(work, name);
    return found.empty() ? JoinPath(work, name) : found;
}

Folders FoldersFor(const std::string& home, platform::SystemInfo& system) {
    Folders f;
    f.ProgramFolder = home.empty() ? system.ExecutableFolder().value_or(".") : home;
    return f;
}

}  // namespace core
