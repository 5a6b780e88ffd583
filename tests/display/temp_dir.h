// A fresh folder per test, removed afterwards, with small file helpers.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "core/folders.h"

namespace display_test {

class TempDir {
public:
    TempDir() {
        std::string tmpl = (std::filesystem::temp_directory_path() / "tarvellos-display-XXXXXX").string();
        char* made = mkdtemp(tmpl.data());
        if (!made) ADD_FAILURE() << "mkdtemp failed";
        path_ = tmpl;
        folders_.ProgramFolder = path_;
        std::filesystem::create_directories(std::filesystem::path(path_) / "Work");
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& Path() const { return path_; }
    const core::Folders& Folders() const { return folders_; }
    std::string Work() const { return folders_.WorkFolder(); }
    std::string WorkFile(const std::string& name) const { return (std::filesystem::path(Work()) / name).string(); }
    std::string ProgramFile(const std::string& name) const { return (std::filesystem::path(path_) / name).string(); }

private:
    std::string path_;
    core::Folders folders_;
};

inline std::string ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void WriteBytes(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

inline bool Exists(const std::string& path) { return std::filesystem::exists(path); }

}  // namespace display_test
