// Plain top-level X11 windows that show pictures and report what the user
// does to them: the windows of the simulated game when it runs on a real
// desktop. Only this folder includes X headers.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/geometry.h"
#include "platform/image.h"

namespace platform {

struct HostEvent {
    enum class Kind {
        Click,         // left button pressed at `At` (client coordinates)
        CloseRequest,  // the user asked the window to close
        Minimized,     // the window was iconified (by the user or a program)
        Restored,      // it is shown again
        Resized,       // client size changed to `At` (width, height)
    };
    Kind What = Kind::Click;
    std::uint64_t Window = 0;
    Point At;
};

class X11WindowHost {
public:
    static std::unique_ptr<X11WindowHost> Open(std::string& error);
    ~X11WindowHost();
    X11WindowHost(const X11WindowHost&) = delete;
    X11WindowHost& operator=(const X11WindowHost&) = delete;

    // A new window whose client area stands at `client` (screen coordinates)
    // with that size, shown at once; its id.
    std::uint64_t Create(const std::string& title, const Rect& client);
    void SetTitle(std::uint64_t w, const std::string& title);
    // Shows `picture` (client size) in the window; only rows that changed
    // since the last picture are sent.
    void Paint(std::uint64_t w, const Image& picture);
    void Minimize(std::uint64_t w);
    void Restore(std::uint64_t w);  // also raises it
    void Destroy(std::uint64_t w);

    // What happened, waiting up to timeoutMs for the first event.
    std::vector<HostEvent> Wait(int timeoutMs);

    struct Impl;

private:
    explicit X11WindowHost(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

}  // namespace platform
