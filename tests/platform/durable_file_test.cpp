#include "platform/durable_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#ifndef _WIN32
#include <sys/resource.h>
#endif

namespace fs = std::filesystem;
using platform::ReplaceFileDurably;

namespace {

class Folder {
public:
    Folder() : path_(fs::temp_directory_path() / ("tarvellos-durable-" + std::to_string(std::random_device{}()))) {
        fs::create_directories(path_);
    }
    ~Folder() {
        std::error_code ec;
        fs::remove_all(path_, ec);
    }
    fs::path operator/(const std::string& name) const { return path_ / name; }
    void Put(const std::string& name, const std::string& bytes) const {
        std::ofstream(path_ / name, std::ios::binary) << bytes;
    }
    std::string Get(const std::string& name) const {
        std::ifstream in(path_ / name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    // Names in the folder, sorted: a left-over temporary file shows here.
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& e : fs::directory_iterator(path_)) names.push_back(e.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    fs::path path_;
};

}  // namespace

TEST(DurableReplace, TheNewContentReplacesTheOldWholeAndNoTempFileStays) {
    Folder dir;
    dir.Put("Alert.TXT", std::string(5000, 'x'));
    ASSERT_FALSE(ReplaceFileDurably(dir / "Alert.TXT", "short\r\n"));
    EXPECT_EQ(dir.Get("Alert.TXT"), "short\r\n") << "no tail of the longer old file";
    EXPECT_EQ(dir.Names(), std::vector<std::string>{"Alert.TXT"});

    ASSERT_FALSE(ReplaceFileDurably(dir / "new.txt", "")) << "a missing file is created, even empty";
    EXPECT_TRUE(fs::is_regular_file(dir / "new.txt"));
    EXPECT_EQ(fs::file_size(dir / "new.txt"), 0u);

    const std::string big(3 * 1024 * 1024 + 7, '\x81');  // more than one write call may take
    ASSERT_FALSE(ReplaceFileDurably(dir / "new.txt", big));
    EXPECT_EQ(dir.Get("new.txt"), big);
    EXPECT_EQ(dir.Names(), (std::vector<std::string>{"Alert.TXT", "new.txt"}));
}

TEST(DurableReplace, AFailureKeepsTheOldFileAndLeavesNothingBehind) {
    Folder dir;
    EXPECT_TRUE(ReplaceFileDurably(dir / "no" / "such" / "x.txt", "x")) << "folder missing";
    EXPECT_TRUE(dir.Names().empty());

    // The target is a folder: the rename fails after the data was written.
    fs::create_directories(dir / "Work" / "inner");
    EXPECT_TRUE(ReplaceFileDurably(dir / "Work", "x"));
    EXPECT_TRUE(fs::is_directory(dir / "Work" / "inner"));
    EXPECT_EQ(dir.Names(), std::vector<std::string>{"Work"});

    // Something else holds the temporary name: it is not ours to delete.
    dir.Put("Alert.TXT", "old");
    fs::create_directory(platform::ReplacementTempPath(dir / "Alert.TXT"));
    EXPECT_TRUE(ReplaceFileDurably(dir / "Alert.TXT", "new"));
    EXPECT_EQ(dir.Get("Alert.TXT"), "old");
    EXPECT_TRUE(fs::is_directory(platform::ReplacementTempPath(dir / "Alert.TXT")));
}

#ifndef _WIN32
TEST(DurableReplace, ALinkUnderTheTempNameIsNotFollowed) {
    Folder dir;
    dir.Put("elsewhere", "precious");
    dir.Put("Alert.TXT", "old");
    fs::create_symlink(dir / "elsewhere", platform::ReplacementTempPath(dir / "Alert.TXT"));
    EXPECT_TRUE(ReplaceFileDurably(dir / "Alert.TXT", "new"));
    EXPECT_EQ(dir.Get("elsewhere"), "precious");
    EXPECT_EQ(dir.Get("Alert.TXT"), "old");
}

// A disk that fills up halfway through the save: the file-size limit makes
// the writes fail the same way.
TEST(DurableReplace, ADiskFullHalfwayKeepsTheOldFile) {
    Folder dir;
    dir.Put("SpadesHistory.TXT", "old history\r\n");
    rlimit saved{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &saved), 0);
    const auto previous = std::signal(SIGXFSZ, SIG_IGN);
    rlimit tight = saved;
    tight.rlim_cur = 4096;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &tight), 0);
    const auto failed = ReplaceFileDurably(dir / "SpadesHistory.TXT", std::string(100000, 'n'));
    setrlimit(RLIMIT_FSIZE, &saved);
    std::signal(SIGXFSZ, previous);
    EXPECT_TRUE(failed);
    EXPECT_STREQ(failed.Step, "cannot write the temporary file");
    EXPECT_EQ(dir.Get("SpadesHistory.TXT"), "old history\r\n");
    EXPECT_EQ(dir.Names(), std::vector<std::string>{"SpadesHistory.TXT"});
}
#endif
