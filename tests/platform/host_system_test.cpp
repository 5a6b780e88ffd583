#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "platform/system_info.h"

namespace {

#ifndef _WIN32
// Sets a locale variable for one test and puts the old value back.
class EnvVar {
public:
    EnvVar(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        if (value) setenv(name, value, 1);
        else unsetenv(name);
    }
    ~EnvVar() {
        if (old_) setenv(name_, old_->c_str(), 1);
        else unsetenv(name_);
    }

private:
    const char* name_;
    std::optional<std::string> old_;
};
#endif

}  // namespace

TEST(HostSystem, TheExecutableFolderHoldsThisTest) {
    platform::HostSystemInfo host;
    const std::optional<std::string> folder = host.ExecutableFolder();
    ASSERT_TRUE(folder);
    EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(*folder) / "test_platform_host_system_test") ||
                std::filesystem::exists(std::filesystem::path(*folder) / "test_platform_host_system_test.exe"));
}

#ifndef _WIN32
// The most specific locale variable that is set decides, as for any program.
TEST(HostSystem, TheLocaleLanguageChoosesTheCodePage) {
    platform::HostSystemInfo host;
    EnvVar all("LC_ALL", nullptr), ctype("LC_CTYPE", nullptr), lang("LANG", nullptr);
    EXPECT_EQ(host.AnsiCodePage(), 1252) << "no locale at all";
    {
        EnvVar ja("LANG", "ja_JP.UTF-8");
        EXPECT_EQ(host.AnsiCodePage(), 932);
        EnvVar c("LC_ALL", "C");
        EXPECT_EQ(host.AnsiCodePage(), 1252) << "LC_ALL overrides LANG";
    }
    EnvVar empty("LC_ALL", "");
    EnvVar ja("LC_CTYPE", "ja_JP.eucJP");
    EXPECT_EQ(host.AnsiCodePage(), 932) << "an empty LC_ALL counts as unset";
}
#endif
