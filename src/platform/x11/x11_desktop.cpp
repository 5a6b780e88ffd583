#include "platform/x11/x11_desktop.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XShm.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xcomposite.h>
#include <canberra.h>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <thread>

namespace platform {

namespace {

// Windows may close between any two requests; their errors are expected and
// must not end the process (Xlib's default handler exits).
int g_lastError = 0;
int RecordError(Display*, XErrorEvent* e) {
    g_lastError = e->error_code;
    return 0;
}
// The display itself went away (the X server ended): nothing can go on.
// Files are only ever replaced whole, so ending here loses none.
int DisplayLost(Display*) {
    std::fputs("tarvellos: the X display went away; ending.\n", stderr);
    std::_Exit(1);
}

struct Masks {
    int Shift[3] = {16, 8, 0};  // right shift that leaves a channel's top five bits
    unsigned long Mask[3] = {0xFF0000, 0x00FF00, 0x0000FF};
    bool Plain = true;          // 8-8-8 at 16/8/0 in 32-bit pixels
};

Masks MasksOf(const Visual* v) {
    Masks m;
    if (v == nullptr) return m;
    const unsigned long masks[3] = {v->red_mask, v->green_mask, v->blue_mask};
    for (int c = 0; c < 3; ++c) {
        const unsigned long mk = masks[c];
        m.Mask[c] = mk;
        if (mk == 0) {
            m.Shift[c] = 0;
            continue;
        }
        const int low = std::countr_zero(mk);
        const int bits = std::popcount(mk);
        m.Shift[c] = low + std::max(0, bits - 5);
    }
    m.Plain = masks[0] == 0xFF0000 && masks[1] == 0x00FF00 && masks[2] == 0x0000FF;
    return m;
}

std::uint16_t To555(unsigned long p, const Masks& m) {
    std::uint16_t out = 0;
    for (int c = 0; c < 3; ++c) {
        unsigned long v = (p & m.Mask[c]) >> m.Shift[c];
        const int bits = std::popcount(m.Mask[c]);
        if (bits < 5) v <<= (5 - bits);
        out = static_cast<std::uint16_t>(out | ((v & 31) << (10 - 5 * c)));
    }
    return out;
}

// Event sound names for the system sound aliases.
const char* EventSoundOf(const std::string& alias) {
    if (alias == "SystemAsterisk") return "dialog-information";
    if (alias == "SystemExclamation") return "dialog-warning";
    if (alias == "SystemStart") return "service-login";
    if (alias == "SystemExit") return "service-logout";
    return nullptr;
}

// Event sounds go through the desktop's sound server; without one the
// library falls back on the sound card directly, which on a machine without
// one only fills the terminal with complaints. The bell is the better answer.
bool SoundServerRunning() {
    if (const char* s = std::getenv("PULSE_SERVER"); s && *s) return true;
    const char* run = std::getenv("XDG_RUNTIME_DIR");
    if (run == nullptr || *run == '\0') return false;
    struct stat st {};
    return ::stat((std::string(run) + "/pulse/native").c_str(), &st) == 0;
}

}  // namespace

std::string NoDisplayReason(const char* display, const char* waylandDisplay) {
    const bool x = display != nullptr && *display != '\0';
    const bool wayland = waylandDisplay != nullptr && *waylandDisplay != '\0';
    if (x) return "";
    if (wayland)
        return "this is a Wayland session without XWayland: the game's windows can only be found, read and "
               "clicked through X11. Start XWayland (or log in to an X11 session) and try again.";
    return "no X display: DISPLAY is not set. Run this on an X11 desktop (or a Wayland session with XWayland).";
}

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

    bool EnsureShm(std::size_t bytes) {
        if (!features.Shm) return false;
        if (shmAttached && shmSize >= bytes) return true;
        if (shmAttached) {
            XShmDetach(dpy, &shm);
            XSync(dpy, False);
            shmdt(shm.shmaddr);
            shm = {};
            shmAttached = false;
        }
        const std::size_t size = std::max<std::size_t>(bytes, 800 * 600 * 4);
        shm.shmid = shmget(IPC_PRIVATE, size, IPC_CREAT | 0600);
        if (shm.shmid < 0) {
            features.Shm = false;
            return false;
        }
        shm.shmaddr = static_cast<char*>(shmat(shm.shmid, nullptr, 0));
        // Marked for removal now: it goes away with the last detach, even
        // when the process dies.
        shmctl(shm.shmid, IPC_RMID, nullptr);
        if (shm.shmaddr == reinterpret_cast<char*>(-1)) {
            shm = {};
            features.Shm = false;
            return false;
        }
        shm.readOnly = False;
        g_lastError = 0;
        XShmAttach(dpy, &shm);
        if (!SyncOk()) {
            // A remote server cannot share memory with us.
            shmdt(shm.shmaddr);
            shm = {};
            features.Shm = false;
            return false;
        }
        shmAttached = true;
        shmSize = size;
        return true;
    }

    // Copies `src` (in drawable coordinates, inside its bounds) of a
    // drawable into out rows. False when the server delivered nothing.
    bool Read(Drawable d, Visual* visual, int depth, const Rect& src, const Rect& region, std::int32_t length,
              std::vector<std::uint16_t>& bits) {
        const int w = src.Width(), h = src.Height();
        XImage* img = nullptr;
        bool viaShm = false;
        if (EnsureShm(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * 4)) {
            img = XShmCreateImage(dpy, visual, static_cast<unsigned>(depth), ZPixmap, nullptr, &shm,
                                  static_cast<unsigned>(w), static_cast<unsigned>(h));
            if (img != nullptr && static_cast<std::size_t>(img->bytes_per_line) * static_cast<std::size_t>(h) <= shmSize) {
                img->data = shm.shmaddr;
                g_lastError = 0;
                if (XShmGetImage(dpy, d, img, src.Left, src.Top, AllPlanes) && SyncOk()) {
                    viaShm = true;
                } else {
                    img->data = nullptr;
                    XDestroyImage(img);
                    img = nullptr;
                }
            } else if (img != nullptr) {
                XDestroyImage(img);
                img = nullptr;
            }
        }
        if (img == nullptr) {
            g_lastError = 0;
            img = XGetImage(dpy, d, src.Left, src.Top, static_cast<unsigned>(w), static_cast<unsigned>(h), AllPlanes,
                            ZPixmap);
            if (img == nullptr || g_lastError != 0) {
                if (img) XDestroyImage(img);
                return false;
            }
        }
        const Masks m = MasksOf(visual);
        // Source rows land at their place in the bottom-up region.
        for (int y = 0; y < h; ++y) {
            const int regionRow = src.Top + y - region.Top;                 // top-down row in the region
            const std::int32_t outRow = region.Height() - 1 - regionRow;  // bottom-up
            std::uint16_t* out = bits.data() + static_cast<std::size_t>(outRow) * static_cast<std::size_t>(length) +
                                 (src.Left - region.Left);
            const char* line = img->data + static_cast<std::ptrdiff_t>(y) * img->bytes_per_line;
            if (img->bits_per_pixel == 32 && m.Plain && img->byte_order == LSBFirst) {
                const auto* px = reinterpret_cast<const std::uint32_t*>(line);
                for (int x = 0; x < w; ++x) {
                    const std::uint32_t p = px[x];
                    out[x] = static_cast<std::uint16_t>(((p >> 9) & 0x7C00) | ((p >> 6) & 0x03E0) | ((p >> 3) & 0x001F));
                }
            } else {
                for (int x = 0; x < w; ++x) out[x] = To555(XGetPixel(img, x, y), m);
            }
        }
        if (viaShm) img->data = nullptr;  // the segment stays ours
        XDestroyImage(img);
        return true;
    }

    // Copies `region` (coordinates of drawable `d`, sized dw x dh) with the
    // parts off the drawable black.
    std::int32_t CopyFrom(Drawable d, Visual* visual, int depth, int dw, int dh, const Rect& region,
                          std::vector<std::uint16_t>& bits) {
        const std::int32_t w = region.Width(), h = region.Height();
        if (w <= 0 || h <= 0) return 0;
        const std::int32_t length = w + (w & 1);
        if (bits.size() < static_cast<std::size_t>(length) * static_cast<std::size_t>(h)) return 0;
        const Rect src{std::max(region.Left, 0), std::max(region.Top, 0), std::min(region.Right, dw),
                       std::min(region.Bottom, dh)};
        if (src.Width() < w || src.Height() < h)
            std::fill(bits.begin(), bits.begin() + static_cast<std::ptrdiff_t>(length) * h, std::uint16_t{0});
        if (src.Width() <= 0 || src.Height() <= 0) return h;
        return Read(d, visual, depth, src, region, length, bits) ? h : 0;
    }
};

std::unique_ptr<X11Desktop> X11Desktop::Open(std::string& error, const X11Options& options,
                                             const std::string& display) {
    if (display.empty()) {
        error = NoDisplayReason(std::getenv("DISPLAY"), std::getenv("WAYLAND_DISPLAY"));
        if (!error.empty()) return nullptr;
    }
    auto impl = std::make_unique<Impl>();
    impl->options = options;
    impl->dpy = XOpenDisplay(display.empty() ? nullptr : display.c_str());
    if (impl->dpy == nullptr) {
        const char* name = display.empty() ? std::getenv("DISPLAY") : display.c_str();
        error = std::string("cannot open the X display \"") + (name ? name : "") +
                "\" (is the X server running, and may this user connect to it?)";
        return nullptr;
    }
    impl->oldHandler = XSetErrorHandler(RecordError);
    XSetIOErrorHandler(DisplayLost);
    Display* d = impl->dpy;
    impl->screen = DefaultScreen(d);
    impl->root = RootWindow(d, impl->screen);
    auto atom = [&](const char* name) { return XInternAtom(d, name, False); };
    impl->netClientListStacking = atom("_NET_CLIENT_LIST_STACKING");
    impl->netClientList = atom("_NET_CLIENT_LIST");
    impl->netWmName = atom("_NET_WM_NAME");
    impl->utf8 = atom("UTF8_STRING");
    impl->wmState = atom("WM_STATE");
    impl->netFrameExtents = atom("_NET_FRAME_EXTENTS");
    impl->netWmState = atom("_NET_WM_STATE");
    impl->netWmStateHidden = atom("_NET_WM_STATE_HIDDEN");
    impl->netWmStateAbove = atom("_NET_WM_STATE_ABOVE");
    impl->netActiveWindow = atom("_NET_ACTIVE_WINDOW");
    impl->netMoveResize = atom("_NET_MOVERESIZE_WINDOW");
    impl->netWmPid = atom("_NET_WM_PID");
    impl->netWmWindowType = atom("_NET_WM_WINDOW_TYPE");
    impl->netSupportingWmCheck = atom("_NET_SUPPORTING_WM_CHECK");
    impl->netSupported = atom("_NET_SUPPORTED");
    for (const char* t : {"_NET_WM_WINDOW_TYPE_TOOLTIP", "_NET_WM_WINDOW_TYPE_MENU", "_NET_WM_WINDOW_TYPE_POPUP_MENU",
                          "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU", "_NET_WM_WINDOW_TYPE_NOTIFICATION",
                          "_NET_WM_WINDOW_TYPE_COMBO", "_NET_WM_WINDOW_TYPE_DND", "_NET_WM_WINDOW_TYPE_DOCK",
                          "_NET_WM_WINDOW_TYPE_DESKTOP"})
        impl->popupTypes.insert(atom(t));

    int major = 0, minor = 0, ev = 0, err = 0;
    Bool pixmaps = False;
    impl->features.Shm = options.UseShm && XShmQueryVersion(d, &major, &minor, &pixmaps);
    impl->features.Composite = options.UseComposite && XCompositeQueryExtension(d, &ev, &err) &&
                               XCompositeQueryVersion(d, &major, &minor) && (major > 0 || minor >= 2);
    impl->features.XTest = XTestQueryExtension(d, &ev, &err, &major, &minor);
    impl->features.WindowManager = impl->WmRunning();
    for (unsigned long a : impl->Cardinals(impl->root, impl->netSupported, XA_ATOM, 65536))
        if (a == impl->netMoveResize) impl->moveResizeSupported = true;
    impl->ClearErrors();
    return std::unique_ptr<X11Desktop>(new X11Desktop(std::move(impl)));
}

X11Desktop::X11Desktop(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
X11Desktop::~X11Desktop() = default;

const X11Features& X11Desktop::Features() const { return impl_->features; }

std::vector<WindowHandle> X11Desktop::TopLevel() {
    Impl& x = *impl_;
    std::vector<WindowHandle> out;
    x.features.WindowManager = x.WmRunning();
    if (x.features.WindowManager) {
        // Bottom to top in the property; topmost first here.
        const auto stack = x.Cardinals(x.root, x.netClientListStacking, XA_WINDOW, 65536);
        if (!stack.empty()) {
            for (auto it = stack.rbegin(); it != stack.rend(); ++it) out.push_back(static_cast<WindowHandle>(*it));
            return out;
        }
    }
    Window r = 0, parent = 0, *children = nullptr;
    unsigned int n = 0;
    if (!XQueryTree(x.dpy, x.root, &r, &parent, &children, &n)) return out;
    for (unsigned int i = n; i-- > 0;) {
        Window client = x.features.WindowManager ? x.ClientBelow(children[i], 2) : children[i];
        if (!x.features.WindowManager) {
            // Without a manager every input-output child of the root is a
            // top-level window; input-only ones draw nothing.
            const auto a = x.Attributes(children[i]);
            if (!a || a->c_class != InputOutput) client = 0;
        }
        if (client != 0) out.push_back(static_cast<WindowHandle>(client));
    }
    if (children) XFree(children);
    x.ClearErrors();
    return out;
}

bool X11Desktop::IsWindow(WindowHandle h) {
    if (h == 0) return false;
    return impl_->Attributes(static_cast<Window>(h)).has_value();
}

bool X11Desktop::IsOwnWindow(WindowHandle h) {
    if (h == 0) return false;
    const auto pid = impl_->Cardinals(static_cast<Window>(h), impl_->netWmPid, XA_CARDINAL, 1);
    impl_->ClearErrors();
    return !pid.empty() && pid[0] == static_cast<unsigned long>(getpid());
}

std::optional<std::string> X11Desktop::Title(WindowHandle h) {
    Impl& x = *impl_;
    if (!IsWindow(h)) return std::nullopt;
    const Window w = static_cast<Window>(h);
    if (auto name = x.Bytes(w, x.netWmName, x.utf8)) return name;
    XTextProperty prop{};
    std::string out;
    if (XGetWMName(x.dpy, w, &prop) && prop.value != nullptr) {
        char** list = nullptr;
        int count = 0;
        if (Xutf8TextPropertyToTextList(x.dpy, &prop, &list, &count) >= Success && list != nullptr && count > 0)
            out = list[0];
        else
            out.assign(reinterpret_cast<const char*>(prop.value), prop.nitems);
        if (list) XFreeStringList(list);
        XFree(prop.value);
    }
    x.ClearErrors();
    if (!IsWindow(h)) return std::nullopt;
    return out;
}

std::optional<WindowInfo> X11Desktop::Info(WindowHandle h) {
    Impl& x = *impl_;
    if (h == 0) return std::nullopt;
    const Window w = static_cast<Window>(h);
    const auto a = x.Attributes(w);
    if (!a) return std::nullopt;
    WindowInfo info;
    info.Minimized = x.Iconic(w);
    info.Visible = a->map_state == IsViewable || info.Minimized;
    bool popup = a->override_redirect != 0 || a->c_class != InputOutput;
    for (unsigned long t : x.Cardinals(w, x.netWmWindowType, XA_ATOM))
        if (x.popupTypes.count(t)) popup = true;
    info.Decorated = !popup;
    x.ClearErrors();
    return info;
}

std::optional<Rect> X11Desktop::WindowRect(WindowHandle h) {
    Impl& x = *impl_;
    if (h == 0) return std::nullopt;
    const Window w = static_cast<Window>(h);
    const auto a = x.Attributes(w);
    const auto o = x.OriginOnRoot(w);
    if (!a || !o) return std::nullopt;
    const auto e = x.Extents(w);
    x.ClearErrors();
    return Rect{static_cast<std::int32_t>(o->X - e[0]), static_cast<std::int32_t>(o->Y - e[2]),
                static_cast<std::int32_t>(o->X + a->width + e[1]), static_cast<std::int32_t>(o->Y + a->height + e[3])};
}

std::optional<Rect> X11Desktop::ClientRect(WindowHandle h) {
    Impl& x = *impl_;
    if (h == 0) return std::nullopt;
    const auto a = x.Attributes(static_cast<Window>(h));
    if (!a) return std::nullopt;
    if (x.Iconic(static_cast<Window>(h))) return Rect{};
    return Rect{0, 0, a->width, a->height};
}

std::optional<Point> X11Desktop::ClientOrigin(WindowHandle h) {
    if (h == 0) return std::nullopt;
    return impl_->OriginOnRoot(static_cast<Window>(h));
}

Point X11Desktop::ScreenSize() {
    return {DisplayWidth(impl_->dpy, impl_->screen), DisplayHeight(impl_->dpy, impl_->screen)};
}

bool X11Desktop::Move(WindowHandle h, const Rect& outer) {
    Impl& x = *impl_;
    if (!IsWindow(h)) return false;
    const Window w = static_cast<Window>(h);
    const auto e = x.Extents(w);
    const int cw = std::max<int>(1, outer.Width() - static_cast<int>(e[0] + e[1]));
    const int ch = std::max<int>(1, outer.Height() - static_cast<int>(e[2] + e[3]));
    if (x.features.WindowManager && x.moveResizeSupported) {
        // North-west gravity: x, y place the frame's outer corner.
        const long flags = NorthWestGravity | (0xF << 8) | (2 << 12);
        x.SendWmMessage(w, x.netMoveResize, flags, outer.Left, outer.Top, cw, ch);
    } else {
        XMoveResizeWindow(x.dpy, w, outer.Left, outer.Top, static_cast<unsigned>(cw), static_cast<unsigned>(ch));
    }
    x.WaitFor([&] {
        const auto r = WindowRect(h);
        return !r || *r == outer;
    });
    return IsWindow(h);
}

void X11Desktop::SetTopmost(WindowHandle h, bool topmost) {
    Impl& x = *impl_;
    if (h == 0 || !IsWindow(h)) return;
    const Window w = static_cast<Window>(h);
    if (x.features.WindowManager) x.SendWmMessage(w, x.netWmState, topmost ? 1 : 0, static_cast<long>(x.netWmStateAbove), 0, 2);
    XRaiseWindow(x.dpy, w);
    x.ClearErrors();
}

void X11Desktop::Minimize(WindowHandle h) {
    Impl& x = *impl_;
    if (h == 0 || !IsWindow(h)) return;
    const Window w = static_cast<Window>(h);
    if (x.features.WindowManager) {
        XIconifyWindow(x.dpy, w, x.screen);
        x.WaitFor([&] { return !IsWindow(h) || x.Iconic(w); });
    } else {
        XUnmapWindow(x.dpy, w);
        x.unmappedByUs.insert(w);
    }
    x.ClearErrors();
}

void X11Desktop::Restore(WindowHandle h) {
    Impl& x = *impl_;
    if (h == 0 || !IsWindow(h)) return;
    const Window w = static_cast<Window>(h);
    const bool wasIconic = x.Iconic(w);
    x.unmappedByUs.erase(w);
    if (!wasIconic) return;
    XMapRaised(x.dpy, w);
    if (x.features.WindowManager) x.SendWmMessage(w, x.netActiveWindow, 2, CurrentTime, 0);
    x.WaitFor([&] {
        const auto a = x.Attributes(w);
        return !a || (a->map_state == IsViewable && !x.Iconic(w));
    });
    x.ClearErrors();
}

std::int32_t X11Desktop::CopyRegion(WindowHandle h, Area area, const Rect& region, std::vector<std::uint16_t>& bits) {
    Impl& x = *impl_;
    if (h == 0 || region.Width() <= 0 || region.Height() <= 0) return 0;
    const Window w = static_cast<Window>(h);
    const auto a = x.Attributes(w);
    if (!a || a->map_state != IsViewable || x.Iconic(w)) return 0;
    // The region in the client window's coordinates.
    Rect r = region;
    if (area == Area::Window) {
        const auto e = x.Extents(w);
        r = {region.Left - static_cast<std::int32_t>(e[0]), region.Top - static_cast<std::int32_t>(e[2]),
             region.Right - static_cast<std::int32_t>(e[0]), region.Bottom - static_cast<std::int32_t>(e[2])};
    }
    if (x.features.Composite) {
        // The top-level's own pixels (frame included), kept off-screen by the
        // server: whatever lies above it on the screen is not in them.
        const Window top = x.TopAncestor(w);
        if (top != 0) {
            if (!x.redirected.count(top)) {
                XCompositeRedirectWindow(x.dpy, top, CompositeRedirectAutomatic);
                x.ClearErrors();
                x.redirected.insert(top);
                // The new off-screen copy starts as the screen showed it, with
                // whatever covered the window; the window repaints what was
                // covered when the server tells it. Give it that moment, once.
                std::this_thread::sleep_for(std::chrono::milliseconds(50));
                XSync(x.dpy, False);
            }
            int cx = 0, cy = 0;
            Window child = 0;
            const auto ta = x.Attributes(top);
            g_lastError = 0;
            const Pixmap pix = ta && XTranslateCoordinates(x.dpy, w, top, 0, 0, &cx, &cy, &child)
                                   ? XCompositeNameWindowPixmap(x.dpy, top)
                                   : 0;
            if (pix != 0 && x.SyncOk()) {
                // The pixmap includes the top-level's border.
                const int bw = ta->border_width;
                const Rect pr{r.Left + cx + bw, r.Top + cy + bw, r.Right + cx + bw, r.Bottom + cy + bw};
                // Only the window's own part: the rest of the frame pixmap is
                // not the region's business when it asks for client pixels.
                const std::int32_t rows = x.CopyFrom(pix, ta->visual, ta->depth, ta->width + 2 * bw,
                                                     ta->height + 2 * bw, pr, bits);
                XFreePixmap(x.dpy, pix);
                x.ClearErrors();
                if (rows > 0) return rows;
            } else if (pix != 0) {
                XFreePixmap(x.dpy, pix);
                x.ClearErrors();
            }
        }
    }
    // Without off-screen contents: the client window as the screen shows it.
    return x.CopyFrom(w, a->visual, a->depth, a->width, a->height, r, bits);
}

std::int32_t X11Desktop::CopyScreenRegion(const Rect& region, std::vector<std::uint16_t>& bits) {
    Impl& x = *impl_;
    XWindowAttributes a{};
    XGetWindowAttributes(x.dpy, x.root, &a);
    return x.CopyFrom(x.root, a.visual, a.depth, a.width, a.height, region, bits);
}

std::optional<Point> X11Desktop::CursorPos() {
    Impl& x = *impl_;
    Window r = 0, child = 0;
    int rx = 0, ry = 0, wx = 0, wy = 0;
    unsigned int mask = 0;
    if (!XQueryPointer(x.dpy, x.root, &r, &child, &rx, &ry, &wx, &wy, &mask)) return std::nullopt;
    return Point{rx, ry};
}

void X11Desktop::SetCursorPos(Point p) {
    Impl& x = *impl_;
    if (x.features.XTest)
        XTestFakeMotionEvent(x.dpy, x.screen, p.X, p.Y, CurrentTime);
    else
        XWarpPointer(x.dpy, None, x.root, 0, 0, 0, 0, p.X, p.Y);
    XSync(x.dpy, False);
}

void X11Desktop::LeftClick() {
    Impl& x = *impl_;
    if (!x.features.XTest) return;  // without XTest a press cannot be made
    XTestFakeButtonEvent(x.dpy, 1, True, CurrentTime);
    XTestFakeButtonEvent(x.dpy, 1, False, CurrentTime);
    XSync(x.dpy, False);
}

void X11Desktop::PlaySystemSound(const std::string& alias) {
    Impl& x = *impl_;
    const char* id = EventSoundOf(alias);
    if (id == nullptr) return;
    if (x.options.UseCanberra && !x.canberraFailed && SoundServerRunning()) {
        if (x.canberra == nullptr && ca_context_create(&x.canberra) != CA_SUCCESS) {
            x.canberra = nullptr;
            x.canberraFailed = true;
        }
        if (x.canberra != nullptr &&
            ca_context_play(x.canberra, 0, CA_PROP_EVENT_ID, id, CA_PROP_EVENT_DESCRIPTION, alias.c_str(), nullptr) ==
                CA_SUCCESS)
            return;
        // No sound server or no theme: the bell says it instead, from now on.
        x.canberraFailed = true;
    }
    Beep();
}

void X11Desktop::Beep() {
    XBell(impl_->dpy, 0);
    XFlush(impl_->dpy);
}

}  // namespace platform
