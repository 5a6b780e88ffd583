// A fresh program folder with its "Work" folder per test: the shared
// temporary-folder helper plus the folders the display code works in.
#pragma once

#include <filesystem>
#include <string>

#include "core/folders.h"
#include "core/temp_dir.h"

namespace display_test {

class ProgramDir : public TempDir {
public:
    ProgramDir() {
        folders_.ProgramFolder = Folder();
        std::filesystem::create_directories(Path() / "Work");
    }
    const core::Folders& Folders() const { return folders_; }
    std::string Work() const { return folders_.WorkFolder(); }
    std::string WorkFile(const std::string& name) const { return File("Work/" + name); }
    void PutWork(const std::string& name, const std::string& bytes) const { Put("Work/" + name, bytes); }
    std::string GetWork(const std::string& name) const { return Get("Work/" + name); }
    bool HasWork(const std::string& name) const { return std::filesystem::exists(WorkFile(name)); }

private:
    core::Folders folders_;
};

}  // namespace display_test
