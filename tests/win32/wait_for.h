// Waiting for something the system does in its own time: with a time
// limit, never a fixed sleep.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace win32_test {

inline bool WaitFor(const std::function<bool()>& done, int ms = 5000) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (!done()) {
        if (std::chrono::steady_clock::now() > until) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

}  // namespace win32_test
