// The program folder and its work folder. The program never changes the
// process's current directory: every relative file name is resolved against
// the folders held here (EnterProgramFolder / EnterWorkFolder give the path
// to open).
#pragma once

#include <string>

namespace platform {
class SystemInfo;
}

namespace core {

// Joins a folder and a relative name. A "\" in the name is a folder separator
// on every platform (names in settings and record files are written that way).
std::string JoinPath(const std::string& folder, const std::string& name);

// The full path of an existing file (or folder) `name` in `folder`, matched
// exactly first and then without regard to letter case (so "alert.txt" finds
// "Alert.TXT" on a case-sensitive file system); "" when there is none.
std::string FindFileNoCase(const std::string& folder, const std::string& name);
inline bool FileExistsNoCase(const std::string& folder, const std::string& name) {
    return !FindFileNoCase(folder, name).empty();
}

struct Folders {
    // The executable's folder unless --home names another.
    std::string ProgramFolder;
    // "Work", or the sample folder "Work\SpadeSample".
    std::string WorkFolderName = "Work";

    std::string WorkFolder() const { return JoinPath(ProgramFolder, WorkFolderName); }
    // Path of a file of the program folder: the existing file of that name in
    // any letter case, else the name joined to the folder (for a new file).
    std::string EnterProgramFolder(const std::string& name) const;
    // The same in the work folder.
    std::string EnterWorkFolder(const std::string& name) const;
    bool ProgramFileExists(const std::string& name) const { return FileExistsNoCase(ProgramFolder, name); }
    bool WorkFileExists(const std::string& name) const { return FileExistsNoCase(WorkFolder(), name); }
};

// Folders for a run: `home` when given (the --home option), else the
// executable's folder that the system reports (the current folder when it
// cannot tell).
Folders FoldersFor(const std::string& home, platform::SystemInfo& system);

}  // namespace core
