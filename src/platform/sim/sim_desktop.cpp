#include "platform/sim/sim_desktop.h"

#include <algorithm>

namespace platform {

namespace {
constexpr std::uint32_t kCaptionColor = 0x000A246A;
constexpr std::uint32_t kFrameColor = 0x00D4D0C8;
}  // namespace

SimDesktop::SimDesktop(std::int32_t screenW, std::int32_t screenH) : screen_{screenW, screenH} {}

WindowHandle SimDesktop::AddWindow(const std::string& title, const Rect& outer, WindowInfo look) {
    WindowHandle h = next_++;
    SimWindow w;
    w.Title = title;
    w.Decorated = look.Decorated;
    w.Visible = look.Visible;
    w.Minimized = look.Minimized;
    w.Outer = outer;
    w.Pixels = Image(std::max(outer.Width(), 0), std::max(outer.Height(), 0), kFrameColor);
    w.Pixels.FillRect(w.ClientInset.Left, 1, outer.Width() - w.ClientInset.Right, w.ClientInset.Top - 1, kCaptionColor);
    w.Pixels.FillRect(w.ClientInset.Left, w.ClientInset.Top, outer.Width() - w.ClientInset.Right,
                      outer.Height() - w.ClientInset.Bottom, 0x00FFFFFF);
    windows_[h] = std::move(w);
    zorder_.insert(zorder_.begin(), h);
    return h;
}

WindowHandle SimDesktop::AddOwnWindow(const std::string& title, const Rect& outer) {
    const WindowHandle h = AddWindow(title, outer);
    Find(h)->Own = true;
    return h;
}

void SimDesktop::CloseWindow(WindowHandle h) {
    windows_.erase(h);
    zorder_.erase(std::remove(zorder_.begin(), zorder_.end(), h), zorder_.end());
    closeAfter_.erase(h);
}

SimWindow* SimDesktop::Find(WindowHandle h) {
    auto it = windows_.find(h);
    return it == windows_.end() ? nullptr : &it->second;
}

const SimWindow* SimDesktop::Find(WindowHandle h) const {
    auto it = windows_.find(h);
    return it == windows_.end() ? nullptr : &it->second;
}

void SimDesktop::SetTitle(WindowHandle h, const std::string& title) {
    if (SimWindow* w = Find(h)) w->Title = title;
}

void SimDesktop::SetImage(WindowHandle h, Image img) {
    SimWindow* w = Find(h);
    if (!w) return;
    w->Outer.Right = w->Outer.Left + img.Width;
    w->Outer.Bottom = w->Outer.Top + img.Height;
    w->Pixels = std::move(img);
}

void SimDesktop::SetClientImage(WindowHandle h, const Image& img) {
    SimWindow* w = Find(h);
    if (!w) return;
    for (std::int32_t y = 0; y < img.Height; ++y)
        for (std::int32_t x = 0; x < img.Width; ++x) w->Pixels.Set(x + w->ClientInset.Left, y + w->ClientInset.Top, img.At(x, y));
}

void SimDesktop::BringToTop(WindowHandle h) {
    auto it = std::find(zorder_.begin(), zorder_.end(), h);
    if (it == zorder_.end()) return;
    zorder_.erase(it);
    // Topmost windows stay above the others.
    auto pos = zorder_.begin();
    if (!Find(h)->Topmost)
        while (pos != zorder_.end() && Find(*pos)->Topmost) ++pos;
    zorder_.insert(pos, h);
}

bool SimDesktop::Touch(WindowHandle h) {
    auto it = closeAfter_.find(h);
    if (it != closeAfter_.end() && --it->second <= 0) CloseWindow(h);
    return Find(h) != nullptr;
}

bool SimDesktop::IsOwnWindow(WindowHandle h) { return Touch(h) && Find(h)->Own; }

std::optional<std::string> SimDesktop::Title(WindowHandle h) {
    if (!Touch(h)) return std::nullopt;
    return Find(h)->Title;
}

std::optional<WindowInfo> SimDesktop::Info(WindowHandle h) {
    if (!Touch(h)) return std::nullopt;
    const SimWindow* w = Find(h);
    return WindowInfo{w->Decorated, w->Visible, w->Minimized};
}

std::optional<Rect> SimDesktop::WindowRect(WindowHandle h) {
    if (!Touch(h)) return std::nullopt;
    return Find(h)->Outer;
}

std::optional<Rect> SimDesktop::ClientRect(WindowHandle h) {
    if (!Touch(h)) return std::nullopt;
    const SimWindow* w = Find(h);
    if (w->Minimized) return Rect{};
    return Rect{0, 0, std::max(0, w->Outer.Width() - w->ClientInset.Left - w->ClientInset.Right),
                std::max(0, w->Outer.Height() - w->ClientInset.Top - w->ClientInset.Bottom)};
}

std::optional<Point> SimDesktop::ClientOrigin(WindowHandle h) {
    if (!Touch(h)) return std::nullopt;
    const SimWindow* w = Find(h);
    return Point{w->Outer.Left + w->ClientInset.Left, w->Outer.Top + w->ClientInset.Top};
}

bool SimDesktop::Move(WindowHandle h, const Rect& r) {
    if (!Touch(h)) return false;
    SimWindow* w = Find(h);
    if (r.Width() != w->Outer.Width() || r.Height() != w->Outer.Height()) {
        // A resized window keeps its drawing anchored at the top-left.
        Image img(std::max(r.Width(), 0), std::max(r.Height(), 0), kFrameColor);
        for (std::int32_t y = 0; y < std::min(img.Height, w->Pixels.Height); ++y)
            for (std::int32_t x = 0; x < std::min(img.Width, w->Pixels.Width); ++x) img.Set(x, y, w->Pixels.At(x, y));
        w->Pixels = std::move(img);
    }
    w->Outer = r;
    return true;
}

void SimDesktop::SetTopmost(WindowHandle h, bool topmost) {
    if (h == 0 || !Touch(h)) return;
    Find(h)->Topmost = topmost;
    BringToTop(h);
}

void SimDesktop::Minimize(WindowHandle h) {
    if (Touch(h)) Find(h)->Minimized = true;
}

void SimDesktop::Restore(WindowHandle h) {
    if (Touch(h)) Find(h)->Minimized = false;
}

Image SimDesktop::Compose() const { return Compose({0, 0, screen_.X, screen_.Y}); }

Image SimDesktop::Compose(const Rect& area) const {
    const std::int32_t left = std::max(area.Left, 0), top = std::max(area.Top, 0);
    const std::int32_t right = std::min(area.Right, screen_.X), bottom = std::min(area.Bottom, screen_.Y);
    Image out(std::max(right - left, 0), std::max(bottom - top, 0), background_);
    if (out.Pixels.empty()) return out;
    // Only the rows and columns of each window inside the area are copied:
    // screen copies of a few lines are the readers' most frequent call.
    for (auto it = zorder_.rbegin(); it != zorder_.rend(); ++it) {
        const SimWindow& w = windows_.at(*it);
        if (!w.Visible || w.Minimized) continue;
        const std::int32_t x0 = std::max(w.Outer.Left, left), x1 = std::min(w.Outer.Left + w.Pixels.Width, right);
        const std::int32_t y0 = std::max(w.Outer.Top, top), y1 = std::min(w.Outer.Top + w.Pixels.Height, bottom);
        for (std::int32_t y = y0; y < y1; ++y) {
            const std::uint32_t* in = &w.Pixels.Pixels[static_cast<std::size_t>(y - w.Outer.Top) * static_cast<std::size_t>(w.Pixels.Width)];
            std::uint32_t* row = &out.Pixels[static_cast<std::size_t>(y - top) * static_cast<std::size_t>(out.Width)];
            for (std::int32_t x = x0; x < x1; ++x) row[x - left] = in[x - w.Outer.Left];
        }
    }
    return out;
}

std::int32_t SimDesktop::CopyRegion(WindowHandle h, Area area, const Rect& region, std::vector<std::uint16_t>& bits) {
    ++captures_;
    if (!Touch(h)) return 0;
    for (WindowHandle k : {h, WindowHandle{0}}) {
        auto it = failCaptures_.find(k);
        if (it != failCaptures_.end() && it->second > 0) {
            --it->second;
            return 0;
        }
    }
    // A window copies its own image: what lies above it is not painted over it.
    const SimWindow* sw = Find(h);
    if (sw->Minimized) return 0;
    if (area == Area::Client) return CopyImage(sw->Pixels, sw->ClientInset.Left, sw->ClientInset.Top, region, bits);
    return CopyImage(sw->Pixels, 0, 0, region, bits);
}

std::int32_t SimDesktop::CopyScreenRegion(const Rect& region, std::vector<std::uint16_t>& bits) {
    ++captures_;
    auto it = failCaptures_.find(0);
    if (it != failCaptures_.end() && it->second > 0) {
        --it->second;
        return 0;
    }
    return CopyImage(Compose(region), -std::max(region.Left, 0), -std::max(region.Top, 0), region, bits);
}

std::int32_t SimDesktop::CopyImage(const Image& src, std::int32_t ox, std::int32_t oy, const Rect& region,
                                   std::vector<std::uint16_t>& bits) {
    const std::int32_t w = region.Width(), hgt = region.Height();
    if (w <= 0 || hgt <= 0) return 0;
    const std::int32_t length = w + (w & 1);
    if (bits.size() < static_cast<std::size_t>(length) * static_cast<std::size_t>(hgt)) return 0;
    // Columns of the region that lie inside the source image; the rest of a
    // row reads as black, as a copy from off the surface would.
    const std::int32_t x0 = std::clamp(-(region.Left + ox), 0, w);
    const std::int32_t x1 = std::clamp(src.Width - (region.Left + ox), x0, w);
    for (std::int32_t row = 0; row < hgt; ++row) {
        const std::int32_t sy = region.Bottom - 1 - row + oy;  // bottom-up
        std::uint16_t* out = bits.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(length);
        if (sy < 0 || sy >= src.Height) {
            std::fill(out, out + w, std::uint16_t{0});
            continue;
        }
        std::fill(out, out + x0, std::uint16_t{0});
        const std::uint32_t* in = src.Pixels.data() + static_cast<std::size_t>(sy) * static_cast<std::size_t>(src.Width) +
                                  (region.Left + ox + x0);
        for (std::int32_t x = x0; x < x1; ++x) out[x] = To555(in[x - x0]);
        std::fill(out + x1, out + w, std::uint16_t{0});
    }
    return hgt;
}

WindowHandle SimDesktop::WindowAt(Point p) const {
    for (WindowHandle h : zorder_) {
        const SimWindow& w = windows_.at(h);
        if (!w.Visible || w.Minimized) continue;
        if (p.X >= w.Outer.Left && p.X < w.Outer.Right && p.Y >= w.Outer.Top && p.Y < w.Outer.Bottom) return h;
    }
    return 0;
}

void SimDesktop::LeftClick() {
    SimClick c{cursor_, WindowAt(cursor_)};
    clicks_.push_back(c);
    if (onClick_) onClick_(c);
}

void SimDesktop::PlaySystemSound(const std::string& alias) {
    if (!alias.empty()) sounds_.push_back(alias);
}

}  // namespace platform
