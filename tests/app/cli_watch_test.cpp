// `tarvellos-cli watch` from the outside: refused clearly without an X
// display, stopped by its limits or Ctrl-C with exit 0 and its folder in
// order, on an X server of the test's own.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <string>

#include "platform/x11_rig.h"

namespace {

namespace fs = std::filesystem;

std::string Shell(const std::string& cmd, int& code) {
    std::string out;
    FILE* f = popen((cmd + " 2>&1").c_str(), "r");
    if (!f) return out;
    char buf[4096];
    for (std::size_t n; (n = fread(buf, 1, sizeof buf, f)) > 0;) out.append(buf, n);
    const int st = pclose(f);
    code = WIFEXITED(st) ? WEXITSTATUS(st) : -1;
    return out;
}

struct Home {
    Home() {
        fs::remove_all(path);
        fs::create_directories(path / "run");
        fs::permissions(path / "run", fs::perms::owner_all);
    }
    ~Home() { fs::remove_all(path); }
    fs::path path = fs::temp_directory_path() / "tarvellos_cli_watch";
};

TEST(CliWatch, AWaylandSessionWithoutXWaylandIsRefusedClearly) {
    int code = 0;
    const std::string out =
        Shell(std::string("env -u DISPLAY WAYLAND_DISPLAY=wayland-0 ") + TARVELLOS_CLI + " watch --timeout 1", code);
    EXPECT_EQ(code, 1) << out;
    if (out.find("no desktop backend") != std::string::npos) GTEST_SKIP() << "built without X11";
    EXPECT_NE(out.find("Wayland session without XWayland"), std::string::npos) << out;
    (void)Shell(std::string(TARVELLOS_CLI) + " watch --deals 0", code);
    EXPECT_EQ(code, 2);
}

TEST(CliWatch, StopsOnItsTimeOrOnCtrlCAndLeavesItsFolderInOrder) {
    x11test::XServer server;
    if (!server.Ok()) GTEST_SKIP() << "Xvfb could not be started";
    Home home;
    // Its single-instance lock of its own, away from any other companion.
    setenv("XDG_RUNTIME_DIR", (home.path / "run").c_str(), 1);
    const std::string cli = TARVELLOS_CLI;
    const std::string dir = home.path.string();

    {
        x11test::Child watch({"sh", "-c", "exec " + cli + " watch --home '" + dir + "' --timeout 1 2>&1"});
        EXPECT_EQ(watch.Wait(15000), 0);
        const std::string out = watch.Rest();
        if (out.find("no desktop backend") != std::string::npos) GTEST_SKIP() << "built without X11";
        EXPECT_NE(out.find("stopped after 0 filed deal(s)"), std::string::npos) << out;
    }
    {
        x11test::Child watch({"sh", "-c", "exec " + cli + " watch --home '" + dir + "' --json 2>&1"});
        const auto first = watch.ReadLine(10000);
        ASSERT_TRUE(first);
        EXPECT_NE(first->find("watching from"), std::string::npos) << *first;
        EXPECT_EQ(watch.Signal(SIGINT), 0);
        EXPECT_NE(watch.Rest().find("(interrupted)"), std::string::npos);
    }
    EXPECT_TRUE(fs::is_directory(home.path / "Work"));
    // Nothing half written stays behind.
    for (const auto& e : fs::recursive_directory_iterator(home.path))
        EXPECT_EQ(e.path().string().find(".tmp"), std::string::npos) << e.path();
    unsetenv("XDG_RUNTIME_DIR");
}

}  // namespace
