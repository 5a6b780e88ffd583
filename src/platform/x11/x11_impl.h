// The X11 desktop's connection and the state its files share: windows,
// input and sound in x11_desktop.cpp, pixel copies in x11_capture.cpp.
#pragma once

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>
#include <X11/extensions/Xcomposite.h>
#include <canberra.h>
#include <sys/ipc.h>
#include <sys/shm.h>

#include <array>
#include <chrono>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/x11/x11_desktop.h"

namespace platform {

// The error code of the last failed request; requests on windows that have
// closed fail, and that must not end the process.
inline int g_lastError = 0;

struct X11Desktop::Impl {
    Display* dpy = nullptr;
    int screen = 0;
    Window root = 0;
    X11Options options;
    X11Features features;
    XErrorHandler oldHandler = nullptr;

    // Atoms.
    Atom netClientListStacking = 0, netClientList = 0, netWmName = 0, utf8 = 0, wmState = 0, netFrameExtents = 0,
         netWmState = 0, netWmStateHidden = 0, netWmStateAbove = 0, netActiveWindow = 0, netMoveResize = 0,
         netWmPid = 0, netWmWindowType = 0, netSupportingWmCheck = 0, netSupported = 0;
    std::set<Atom> popupTypes;
    bool moveResizeSupported = false;

    // The shared-memory segment, kept between copies and grown when needed.
    XShmSegmentInfo shm{};
    std::size_t shmSize = 0;
    bool shmAttached = false;

    // Windows whose contents the server keeps off-screen for us.
    std::set<Window> redirected;
    // Without a window manager, minimising is unmapping; these were ours.
    std::set<Window> unmappedByUs;

    ca_context* canberra = nullptr;
    bool canberraFailed = false;

    ~Impl() {
        if (canberra) ca_context_destroy(canberra);
        if (dpy) {
            for (Window w : redirected) XCompositeUnredirectWindow(dpy, w, CompositeRedirectAutomatic);
            if (shmAttached) XShmDetach(dpy, &shm);
            XSync(dpy, False);
            XCloseDisplay(dpy);
        }
        if (shm.shmaddr) shmdt(shm.shmaddr);
        XSetErrorHandler(oldHandler);
    }

    // Runs the requests so far and tells whether any of them failed.
    bool SyncOk() {
        g_lastError = 0;
        XSync(dpy, False);
        return g_lastError == 0;
    }
    void ClearErrors() {
        XSync(dpy, False);
        g_lastError = 0;
    }

    // A window property as a list of 32-bit values (longs in Xlib).
    std::vector<unsigned long> Cardinals(Window w, Atom prop, Atom type, long max = 4096) {
        std::vector<unsigned long> out;
        Atom actual = 0;
        int format = 0;
        unsigned long n = 0, after = 0;
        unsigned char* data = nullptr;
        if (XGetWindowProperty(dpy, w, prop, 0, max, False, type, &actual, &format, &n, &after, &data) == Success &&
            data != nullptr && format == 32) {
            const auto* longs = reinterpret_cast<const unsigned long*>(data);
            out.assign(longs, longs + n);
        }
        if (data) XFree(data);
        return out;
    }

    std::optional<std::string> Bytes(Window w, Atom prop, Atom type) {
        Atom actual = 0;
        int format = 0;
        unsigned long n = 0, after = 0;
        unsigned char* data = nullptr;
        std::optional<std::string> out;
        if (XGetWindowProperty(dpy, w, prop, 0, 65536, False, type, &actual, &format, &n, &after, &data) ==
                Success &&
            data != nullptr && format == 8 && actual == type)
            out = std::string(reinterpret_cast<const char*>(data), n);
        if (data) XFree(data);
        return out;
    }

    bool WmRunning() {
        const auto check = Cardinals(root, netSupportingWmCheck, XA_WINDOW, 1);
        if (check.empty()) return false;
        g_lastError = 0;
        const auto self = Cardinals(static_cast<Window>(check[0]), netSupportingWmCheck, XA_WINDOW, 1);
        XSync(dpy, False);
        return g_lastError == 0 && !self.empty() && self[0] == check[0];
    }

    bool HasWmState(Window w) {
        Atom actual = 0;
        int format = 0;
        unsigned long n = 0, after = 0;
        unsigned char* data = nullptr;
        const bool has = XGetWindowProperty(dpy, w, wmState, 0, 2, False, AnyPropertyType, &actual, &format, &n,
                                            &after, &data) == Success &&
                         actual != None;
        if (data) XFree(data);
        return has;
    }

    // A client window at or below a child of the root (the window manager's
    // frame holds it), or 0.
    Window ClientBelow(Window w, int depth) {
        if (HasWmState(w)) return w;
        if (depth == 0) return 0;
        Window r = 0, parent = 0, *children = nullptr;
        unsigned int n = 0;
        if (!XQueryTree(dpy, w, &r, &parent, &children, &n)) return 0;
        Window found = 0;
        for (unsigned int i = n; i-- > 0 && found == 0;) found = ClientBelow(children[i], depth - 1);
        if (children) XFree(children);
        return found;
    }

    // The child of the root that holds `w` (its frame, or itself).
    Window TopAncestor(Window w) {
        Window current = w;
        for (int guard = 0; guard < 64; ++guard) {
            Window r = 0, parent = 0, *children = nullptr;
            unsigned int n = 0;
            if (!XQueryTree(dpy, current, &r, &parent, &children, &n)) return 0;
            if (children) XFree(children);
            if (parent == root || parent == 0) return current;
            current = parent;
        }
        return 0;
    }

    std::optional<XWindowAttributes> Attributes(Window w) {
        XWindowAttributes a{};
        g_lastError = 0;
        if (!XGetWindowAttributes(dpy, w, &a) || g_lastError != 0) return std::nullopt;
        return a;
    }

    std::optional<Point> OriginOnRoot(Window w) {
        int x = 0, y = 0;
        Window child = 0;
        g_lastError = 0;
        if (!XTranslateCoordinates(dpy, w, root, 0, 0, &x, &y, &child) || g_lastError != 0) return std::nullopt;
        return Point{x, y};
    }

    // Frame widths left, right, top, bottom (all zero without a frame).
    std::array<long, 4> Extents(Window w) {
        const auto e = Cardinals(w, netFrameExtents, XA_CARDINAL, 4);
        if (e.size() < 4) return {0, 0, 0, 0};
        return {static_cast<long>(e[0]), static_cast<long>(e[1]), static_cast<long>(e[2]), static_cast<long>(e[3])};
    }

    bool Iconic(Window w) {
        const auto s = Cardinals(w, wmState, wmState, 2);
        if (!s.empty() && s[0] == IconicState) return true;
        for (unsigned long a : Cardinals(w, netWmState, XA_ATOM))
            if (a == netWmStateHidden) return true;
        return unmappedByUs.count(w) > 0;
    }

    void SendWmMessage(Window w, Atom type, long a0, long a1 = 0, long a2 = 0, long a3 = 0, long a4 = 0) {
        XEvent ev{};
        ev.xclient.type = ClientMessage;
        ev.xclient.window = w;
        ev.xclient.message_type = type;
        ev.xclient.format = 32;
        ev.xclient.data.l[0] = a0;
        ev.xclient.data.l[1] = a1;
        ev.xclient.data.l[2] = a2;
        ev.xclient.data.l[3] = a3;
        ev.xclient.data.l[4] = a4;
        XSendEvent(dpy, root, False, SubstructureRedirectMask | SubstructureNotifyMask, &ev);
    }

    // The window manager acts on requests in its own time; the caller reads
    // the result at once, so wait (briefly) until it shows.
    template <typename Done>
    bool WaitFor(Done done, int ms = 500) {
        const auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
        for (;;) {
            XSync(dpy, False);
            if (done()) return true;
            if (std::chrono::steady_clock::now() >= until) return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    // Pixel copies (x11_capture.cpp).
    bool EnsureShm(std::size_t bytes);
    // Copies `src` (in drawable coordinates, inside its bounds) of a
    // drawable into out rows. False when the server delivered nothing.
    bool Read(Drawable d, Visual* visual, int depth, const Rect& src, const Rect& region, std::int32_t length,
              std::vector<std::uint16_t>& bits);
    // Copies `region` (coordinates of drawable `d`, sized dw x dh) with the
    // parts off the drawable black.
    std::int32_t CopyFrom(Drawable d, Visual* visual, int depth, int dw, int dh, const Rect& region,
                          std::vector<std::uint16_t>& bits);
};

}  // namespace platform
