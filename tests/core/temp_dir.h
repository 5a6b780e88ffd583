// A fresh folder under the system's temporary folder, removed with all it
// holds when the test ends. Names are UTF-8, as everywhere in the program.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

#include "core/text.h"

class TempDir {
public:
    TempDir() : path_(std::filesystem::temp_directory_path() / ("tarvellos-" + std::to_string(std::random_device{}()))) {
        std::filesystem::create_directories(path_);
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    const std::filesystem::path& Path() const { return path_; }
    std::string Folder() const { return core::PathToUtf8(path_); }
    std::string File(const std::string& name) const { return core::PathToUtf8(path_ / core::PathFromUtf8(name)); }
    void Put(const std::string& name, const std::string& bytes) const {
        std::ofstream out(path_ / core::PathFromUtf8(name), std::ios::binary);
        out << bytes;
    }
    std::string Get(const std::string& name) const {
        std::ifstream in(path_ / core::PathFromUtf8(name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

private:
    std::filesystem::path path_;
};
