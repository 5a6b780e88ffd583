// A fresh scratch folder per test, removed afterwards, and whole-file reads.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "core/text.h"

namespace players_test {

class TempDir {
public:
    TempDir() {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        path_ = std::filesystem::temp_directory_path() /
                (std::string("tarvellos_players_") + info->test_suite_name() + "_" + info->name());
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    std::string File(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

inline std::string ReadBytes(const std::string& path) {
    std::string bytes;
    core::ReadFileBytes(path, bytes);
    return bytes;
}

inline void WriteBytes(const std::string& path, const std::string& bytes) {
    ASSERT_TRUE(core::WriteFileBytes(path, bytes));
}

}  // namespace players_test
