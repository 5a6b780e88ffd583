// An X server of the test's own (Xvfb, depth 24), optionally with a window
// manager, and child processes whose output lines the test waits for with
// a time limit.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace x11test {

class Child {
public:
    // Starts argv[0] (searched in PATH) with stdout on a pipe; stderr stays.
    explicit Child(const std::vector<std::string>& argv, bool quiet = false) {
        int fds[2];
        if (pipe(fds) != 0) return;
        pid_ = fork();
        if (pid_ == 0) {
            dup2(fds[1], 1);
            if (quiet) {
                const int null = open("/dev/null", O_WRONLY);
                dup2(null, 2);
            }
            close(fds[0]);
            close(fds[1]);
            std::vector<char*> args;
            for (const std::string& a : argv) args.push_back(const_cast<char*>(a.c_str()));
            args.push_back(nullptr);
            execvp(args[0], args.data());
            _exit(127);
        }
        close(fds[1]);
        out_ = fds[0];
    }
    ~Child() { Stop(); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    bool Running() const { return pid_ > 0; }
    // The next whole line of output, or nothing when none came in time.
    std::optional<std::string> ReadLine(int timeoutMs = 5000) {
        const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
        for (;;) {
            if (const auto nl = buffer_.find('\n'); nl != std::string::npos) {
                std::string line = buffer_.substr(0, nl);
                buffer_.erase(0, nl + 1);
                return line;
            }
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
            if (left.count() <= 0 || out_ < 0) return std::nullopt;
            pollfd p{out_, POLLIN, 0};
            if (poll(&p, 1, static_cast<int>(left.count())) <= 0) return std::nullopt;
            char buf[512];
            const ssize_t n = read(out_, buf, sizeof buf);
            if (n <= 0) return std::nullopt;
            buffer_.append(buf, static_cast<std::size_t>(n));
        }
    }
    // Sends `sig` and waits for the end: the exit code, or -1 when a signal ended it.
    int Signal(int sig) {
        if (pid_ <= 0) return -1;
        kill(pid_, sig);
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    // Waits for the end by itself (up to timeoutMs): the exit code, or -1.
    int Wait(int timeoutMs) {
        if (pid_ <= 0) return -1;
        const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
        int status = 0;
        while (waitpid(pid_, &status, WNOHANG) == 0) {
            if (std::chrono::steady_clock::now() >= until) return Signal(SIGKILL), -1;
            usleep(10000);
        }
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    // Everything it printed so far and until it closes its output.
    std::string Rest(int timeoutMs = 2000) {
        std::string all;
        while (auto line = ReadLine(timeoutMs)) all += *line + "\n";
        return all + buffer_;
    }
    void Stop() {
        if (pid_ > 0) {
            kill(pid_, SIGTERM);
            waitpid(pid_, nullptr, 0);
            pid_ = -1;
        }
        if (out_ >= 0) close(out_);
        out_ = -1;
    }

private:
    pid_t pid_ = -1;
    int out_ = -1;
    std::string buffer_;
};

// Xvfb on a free display number; DISPLAY points at it while it runs.
class XServer {
public:
    explicit XServer(const std::string& screen = "1024x768x24")
        : server_({"Xvfb", "-displayfd", "1", "-screen", "0", screen, "-nolisten", "tcp"}, true) {
        if (const auto n = server_.ReadLine(10000)) {
            display_ = ":" + *n;
            if (const char* old = std::getenv("DISPLAY")) old_ = old;
            setenv("DISPLAY", display_.c_str(), 1);
        }
    }
    ~XServer() {
        wm_.reset();
        server_.Stop();
        if (old_) setenv("DISPLAY", old_->c_str(), 1);
        else unsetenv("DISPLAY");
    }
    bool Ok() const { return !display_.empty(); }
    const std::string& Display() const { return display_; }
    // Starts openbox; the caller waits until it manages the screen.
    void StartWindowManager() { wm_ = std::make_unique<Child>(std::vector<std::string>{"openbox", "--sm-disable"}, true); }

private:
    Child server_;
    std::unique_ptr<Child> wm_;
    std::string display_;
    std::optional<std::string> old_;
};

// Polls `done` until it holds or the time is up.
template <typename Done>
bool WaitUntil(Done done, int timeoutMs = 5000) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!done()) {
        if (std::chrono::steady_clock::now() >= until) return false;
        usleep(2000);
    }
    return true;
}

}  // namespace x11test
