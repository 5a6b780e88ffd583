#include "platform/x11/x11_window_host.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>

#include "platform/x11/x11_desktop.h"

namespace platform {

struct X11WindowHost::Impl {
    Display* dpy = nullptr;
    int screen = 0;
    Visual* visual = nullptr;
    int depth = 24;
    GC gc = nullptr;
    Atom wmDelete = 0, wmProtocols = 0, netWmName = 0, utf8 = 0, netWmPid = 0;
    struct Win {
        Image Shown;  // what the window shows, for exposures and to send only changes
        bool Iconic = false;
        Point Size;
    };
    std::map<Window, Win> wins;

    ~Impl() {
        if (dpy) {
            for (auto& [w, _] : wins) XDestroyWindow(dpy, w);
            if (gc) XFreeGC(dpy, gc);
            XCloseDisplay(dpy);
        }
    }

    // Puts rows [y0, y1) of the window's picture on the screen.
    void PutRows(Window w, const Image& img, int y0, int y1) {
        if (y1 <= y0 || img.Width <= 0) return;
        XImage* x = XCreateImage(dpy, visual, static_cast<unsigned>(depth), ZPixmap, 0, nullptr,
                                 static_cast<unsigned>(img.Width), static_cast<unsigned>(y1 - y0), 32, 0);
        if (x == nullptr) return;
        std::vector<char> data(static_cast<std::size_t>(x->bytes_per_line) * static_cast<std::size_t>(y1 - y0));
        x->data = data.data();
        const bool plain = x->bits_per_pixel == 32 && visual->red_mask == 0xFF0000 && visual->green_mask == 0xFF00 &&
                           visual->blue_mask == 0xFF && x->byte_order == LSBFirst;
        for (int y = y0; y < y1; ++y) {
            const std::uint32_t* row = img.Pixels.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(img.Width);
            if (plain) {
                std::memcpy(x->data + static_cast<std::ptrdiff_t>(y - y0) * x->bytes_per_line, row,
                            static_cast<std::size_t>(img.Width) * 4);
            } else {
                for (int c = 0; c < img.Width; ++c) {
                    const std::uint32_t p = row[c];
                    XColor col{};
                    col.red = static_cast<unsigned short>(((p >> 16) & 0xFF) * 257);
                    col.green = static_cast<unsigned short>(((p >> 8) & 0xFF) * 257);
                    col.blue = static_cast<unsigned short>((p & 0xFF) * 257);
                    XAllocColor(dpy, DefaultColormap(dpy, screen), &col);
                    XPutPixel(x, c, y - y0, col.pixel);
                }
            }
        }
        XPutImage(dpy, w, gc, x, 0, 0, 0, y0, static_cast<unsigned>(img.Width), static_cast<unsigned>(y1 - y0));
        x->data = nullptr;
        XDestroyImage(x);
    }
};

std::unique_ptr<X11WindowHost> X11WindowHost::Open(std::string& error) {
    error = NoDisplayReason(std::getenv("DISPLAY"), std::getenv("WAYLAND_DISPLAY"));
    if (!error.empty()) return nullptr;
    auto impl = std::make_unique<Impl>();
    impl->dpy = XOpenDisplay(nullptr);
    if (impl->dpy == nullptr) {
        error = std::string("cannot open the X display \"") + std::getenv("DISPLAY") + "\"";
        return nullptr;
    }
    Display* d = impl->dpy;
    impl->screen = DefaultScreen(d);
    impl->visual = DefaultVisual(d, impl->screen);
    impl->depth = DefaultDepth(d, impl->screen);
    impl->gc = XCreateGC(d, RootWindow(d, impl->screen), 0, nullptr);
    impl->wmDelete = XInternAtom(d, "WM_DELETE_WINDOW", False);
    impl->wmProtocols = XInternAtom(d, "WM_PROTOCOLS", False);
    impl->netWmName = XInternAtom(d, "_NET_WM_NAME", False);
    impl->utf8 = XInternAtom(d, "UTF8_STRING", False);
    impl->netWmPid = XInternAtom(d, "_NET_WM_PID", False);
    return std::unique_ptr<X11WindowHost>(new X11WindowHost(std::move(impl)));
}

X11WindowHost::X11WindowHost(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
X11WindowHost::~X11WindowHost() = default;

std::uint64_t X11WindowHost::Create(const std::string& title, const Rect& client) {
    Impl& x = *impl_;
    const unsigned w = static_cast<unsigned>(std::max(1, client.Width()));
    const unsigned h = static_cast<unsigned>(std::max(1, client.Height()));
    const Window win = XCreateSimpleWindow(x.dpy, RootWindow(x.dpy, x.screen), client.Left, client.Top, w, h, 0, 0,
                                           WhitePixel(x.dpy, x.screen));
    XSizeHints hints{};
    hints.flags = USPosition | PPosition;
    hints.x = client.Left;
    hints.y = client.Top;
    XSetWMNormalHints(x.dpy, win, &hints);
    XClassHint cls{const_cast<char*>("tarvellos-game"), const_cast<char*>("TarvelloS-Game")};
    XSetClassHint(x.dpy, win, &cls);
    const unsigned long pid = static_cast<unsigned long>(getpid());
    XChangeProperty(x.dpy, win, x.netWmPid, XA_CARDINAL, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&pid), 1);
    XSetWMProtocols(x.dpy, win, &x.wmDelete, 1);
    XSelectInput(x.dpy, win, ExposureMask | ButtonPressMask | StructureNotifyMask);
    x.wins[win] = {Image(static_cast<int>(w), static_cast<int>(h)), false, {static_cast<int>(w), static_cast<int>(h)}};
    SetTitle(win, title);
    XMapRaised(x.dpy, win);
    XFlush(x.dpy);
    return win;
}

void X11WindowHost::SetTitle(std::uint64_t w, const std::string& title) {
    Impl& x = *impl_;
    if (!x.wins.count(w)) return;
    XChangeProperty(x.dpy, w, x.netWmName, x.utf8, 8, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(title.data()), static_cast<int>(title.size()));
    // The old-style name for clients that read only WM_NAME.
    char* list[1] = {const_cast<char*>(title.c_str())};
    XTextProperty prop{};
    if (Xutf8TextListToTextProperty(x.dpy, list, 1, XStdICCTextStyle, &prop) >= Success) {
        XSetWMName(x.dpy, w, &prop);
        XFree(prop.value);
    }
    XFlush(x.dpy);
}

void X11WindowHost::Paint(std::uint64_t w, const Image& picture) {
    Impl& x = *impl_;
    auto it = x.wins.find(w);
    if (it == x.wins.end()) return;
    Image& shown = it->second.Shown;
    if (shown.Width != picture.Width || shown.Height != picture.Height) {
        shown = picture;
        x.PutRows(w, shown, 0, shown.Height);
        XFlush(x.dpy);
        return;
    }
    // The changed band of rows.
    const std::size_t rowLen = static_cast<std::size_t>(picture.Width);
    int y0 = picture.Height, y1 = 0;
    for (int y = 0; y < picture.Height; ++y) {
        const auto* a = shown.Pixels.data() + static_cast<std::size_t>(y) * rowLen;
        const auto* b = picture.Pixels.data() + static_cast<std::size_t>(y) * rowLen;
        if (std::memcmp(a, b, rowLen * 4) != 0) {
            y0 = std::min(y0, y);
            y1 = y + 1;
        }
    }
    if (y1 <= y0) return;
    std::copy(picture.Pixels.begin() + static_cast<std::ptrdiff_t>(y0 * rowLen),
              picture.Pixels.begin() + static_cast<std::ptrdiff_t>(y1 * rowLen),
              shown.Pixels.begin() + static_cast<std::ptrdiff_t>(y0 * rowLen));
    x.PutRows(w, shown, y0, y1);
    XFlush(x.dpy);
}

void X11WindowHost::Minimize(std::uint64_t w) {
    if (!impl_->wins.count(w)) return;
    XIconifyWindow(impl_->dpy, w, impl_->screen);
    XFlush(impl_->dpy);
}

void X11WindowHost::Restore(std::uint64_t w) {
    if (!impl_->wins.count(w)) return;
    XMapRaised(impl_->dpy, w);
    XFlush(impl_->dpy);
}

void X11WindowHost::Destroy(std::uint64_t w) {
    Impl& x = *impl_;
    if (!x.wins.erase(w)) return;
    XDestroyWindow(x.dpy, w);
    XFlush(x.dpy);
}

std::vector<HostEvent> X11WindowHost::Wait(int timeoutMs) {
    Impl& x = *impl_;
    std::vector<HostEvent> out;
    if (XPending(x.dpy) == 0 && timeoutMs > 0) {
        pollfd p{ConnectionNumber(x.dpy), POLLIN, 0};
        poll(&p, 1, timeoutMs);
    }
    while (XPending(x.dpy) > 0) {
        XEvent ev;
        XNextEvent(x.dpy, &ev);
        const Window w = ev.xany.window;
        auto it = x.wins.find(w);
        if (it == x.wins.end()) continue;
        Impl::Win& win = it->second;
        switch (ev.type) {
            case Expose:
                x.PutRows(w, win.Shown, std::max(0, ev.xexpose.y),
                          std::min(win.Shown.Height, ev.xexpose.y + ev.xexpose.height));
                break;
            case ButtonPress:
                if (ev.xbutton.button == Button1)
                    out.push_back({HostEvent::Kind::Click, w, {ev.xbutton.x, ev.xbutton.y}});
                break;
            case ClientMessage:
                if (static_cast<Atom>(ev.xclient.data.l[0]) == x.wmDelete)
                    out.push_back({HostEvent::Kind::CloseRequest, w, {}});
                break;
            case UnmapNotify:
                if (!win.Iconic) out.push_back({HostEvent::Kind::Minimized, w, {}});
                win.Iconic = true;
                break;
            case MapNotify:
                if (win.Iconic) out.push_back({HostEvent::Kind::Restored, w, {}});
                win.Iconic = false;
                break;
            case DestroyNotify:
                // Destroyed by someone else (a window closed by force): as if
                // the user had closed it.
                x.wins.erase(it);
                out.push_back({HostEvent::Kind::CloseRequest, w, {}});
                break;
            case ConfigureNotify:
                if (ev.xconfigure.width != win.Size.X || ev.xconfigure.height != win.Size.Y) {
                    win.Size = {ev.xconfigure.width, ev.xconfigure.height};
                    out.push_back({HostEvent::Kind::Resized, w, win.Size});
                }
                break;
            default:
                break;
        }
    }
    XFlush(x.dpy);
    return out;
}

}  // namespace platform
