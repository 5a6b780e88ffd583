// A fresh program folder with its "Work" folder per test, removed afterwards,
// and whole-file reads and writes.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "core/folders.h"
#include "core/text.h"

namespace display_test {

class TempDir {
public:
    TempDir() {
        std::string tmpl = (std::filesystem::temp_directory_path() / "tarvellos-display-XXXXXX").string();
        if (!mkdtemp(tmpl.data())) ADD_FAILURE() << "mkdtemp failed";
        folders_.ProgramFolder = tmpl;
        std::filesystem::create_directories(Work());
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(folders_.ProgramFolder, ec);
    }
    const core::Folders& Folders() const { return folders_; }
    std::string Work() const { return folders_.WorkFolder(); }
    std::string WorkFile(const std::string& name) const { return core::JoinPath(Work(), name); }
    std::string ProgramFile(const std::string& name) const { return core::JoinPath(folders_.ProgramFolder, name); }

private:
    core::Folders folders_;
};

inline std::string ReadBytes(const std::string& path) {
    std::string bytes;
    core::ReadFileBytes(path, bytes);
    return bytes;
}

inline void WriteBytes(const std::string& path, const std::string& bytes) {
    ASSERT_TRUE(core::WriteFileBytes(path, bytes));
}

inline bool Exists(const std::string& path) { return std::filesystem::exists(path); }

}  // namespace display_test
