// Copies of a window's pixels into the 5-5-5 bottom-up buffer: from the
// server's off-screen copy of the top-level where Composite is there, through
// one shared-memory segment kept between copies, or XGetImage.
#include <algorithm>
#include <bit>

#include "platform/x11/x11_impl.h"

namespace platform {

namespace {

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

}  // namespace

bool X11Desktop::Impl::EnsureShm(std::size_t bytes) {
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
bool X11Desktop::Impl::Read(Drawable d, Visual* visual, int depth, const Rect& src, const Rect& region, std::int32_t length,
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
std::int32_t X11Desktop::Impl::CopyFrom(Drawable d, Visual* visual, int depth, int dw, int dh, const Rect& region,
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

}  // namespace platform
