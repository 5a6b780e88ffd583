#include "platform/x11/x11_desktop.h"

#include <X11/extensions/XTest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/x11/x11_impl.h"

namespace platform {

namespace {

// Windows may close between any two requests; their errors are expected and
// must not end the process (Xlib's default handler exits).
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
