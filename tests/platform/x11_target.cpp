// A small X11 window for the backend's tests: it draws a known pattern,
// says its window id when it is on the screen, and prints every button
// press it receives in its own client coordinates.
//
//   x11_target TITLE X Y WIDTH HEIGHT [--on-map]
//   stdout: "window <id>" once drawn, then "click <button> <x> <y>" per press.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "x11_pattern.h"

int main(int argc, char** argv) {
    // --on-map: say the id once mapped, for a window that only has to stand
    // somewhere (an exposure may come late while a manager is busy).
    const bool onMap = argc == 7 && std::strcmp(argv[6], "--on-map") == 0;
    if (argc != 6 && !onMap) {
        std::fprintf(stderr, "usage: x11_target TITLE X Y WIDTH HEIGHT [--on-map]\n");
        return 2;
    }
    const std::string title = argv[1];
    const int x = std::atoi(argv[2]), y = std::atoi(argv[3]);
    const int w = std::atoi(argv[4]), h = std::atoi(argv[5]);
    Display* d = XOpenDisplay(nullptr);
    if (d == nullptr) {
        std::fprintf(stderr, "x11_target: no display\n");
        return 1;
    }
    const int screen = DefaultScreen(d);
    Window win = XCreateSimpleWindow(d, RootWindow(d, screen), x, y, static_cast<unsigned>(w),
                                     static_cast<unsigned>(h), 0, 0, 0xFFFFFF);
    // The title as window managers read it (UTF-8) and as old clients set it.
    XStoreName(d, win, title.c_str());
    XChangeProperty(d, win, XInternAtom(d, "_NET_WM_NAME", False), XInternAtom(d, "UTF8_STRING", False), 8,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(title.data()),
                    static_cast<int>(title.size()));
    // Placed where asked, also under a window manager.
    XSizeHints hints{};
    hints.flags = USPosition | PPosition;
    hints.x = x;
    hints.y = y;
    XSetWMNormalHints(d, win, &hints);
    XSelectInput(d, win, ExposureMask | ButtonPressMask | StructureNotifyMask);
    XMapWindow(d, win);

    XImage* img = XCreateImage(d, DefaultVisual(d, screen), static_cast<unsigned>(DefaultDepth(d, screen)), ZPixmap,
                               0, nullptr, static_cast<unsigned>(w), static_cast<unsigned>(h), 32, 0);
    img->data = static_cast<char*>(std::malloc(static_cast<std::size_t>(img->bytes_per_line) * static_cast<std::size_t>(h)));
    for (int yy = 0; yy < h; ++yy)
        for (int xx = 0; xx < w; ++xx) XPutPixel(img, xx, yy, x11test::PatternAt(xx, yy));
    GC gc = XCreateGC(d, win, 0, nullptr);

    bool announced = false;
    for (;;) {
        XEvent ev;
        XNextEvent(d, &ev);
        if (ev.type == MapNotify && onMap && !announced) {
            std::printf("window %lu\n", static_cast<unsigned long>(win));
            std::fflush(stdout);
            announced = true;
        } else if (ev.type == Expose) {
            XPutImage(d, win, gc, img, 0, 0, 0, 0, static_cast<unsigned>(w), static_cast<unsigned>(h));
            XSync(d, False);
            if (!announced) {
                std::printf("window %lu\n", static_cast<unsigned long>(win));
                std::fflush(stdout);
                announced = true;
            }
        } else if (ev.type == ButtonPress) {
            std::printf("click %u %d %d\n", ev.xbutton.button, ev.xbutton.x, ev.xbutton.y);
            std::fflush(stdout);
        } else if (ev.type == DestroyNotify) {
            break;
        }
    }
    XCloseDisplay(d);
    return 0;
}
