// The X11 desktop against windows of the test's own on an X server of its
// own: what is copied is exactly what the window drew, clicks land at the
// exact client point, and windows that go away are only ever "not there".
#include <gtest/gtest.h>

#if defined(TARVELLOS_HAVE_X11)

#include <algorithm>
#include <memory>
#include <string>

#include "platform/image.h"
#include "platform/x11/x11_desktop.h"
#include "platform/x11_pattern.h"
#include "platform/x11_rig.h"

namespace {

using platform::Area;
using platform::Rect;
using platform::X11Desktop;
using platform::X11Options;
using x11test::Child;
using x11test::WaitUntil;

// A target window process; Id() once it is drawn on the screen.
struct Target {
    Target(const std::string& title, int x, int y, int w, int h, int timeoutMs = 5000)
        : proc({TARVELLOS_X11_TARGET, title, std::to_string(x), std::to_string(y), std::to_string(w),
                std::to_string(h)}) {
        if (const auto line = proc.ReadLine(timeoutMs); line && line->rfind("window ", 0) == 0)
            id = std::stoll(line->substr(7));
    }
    Child proc;
    platform::WindowHandle id = 0;
};

std::unique_ptr<X11Desktop> OpenDesktop(const X11Options& options = {}) {
    std::string error;
    auto d = X11Desktop::Open(error, options);
    EXPECT_TRUE(d) << error;
    return d;
}

// Rows of a copy, top-down, as 5-5-5 words (the padding column dropped).
std::int32_t Copy(X11Desktop& d, platform::WindowHandle h, Area area, const Rect& r, std::vector<std::uint16_t>& rows) {
    const std::int32_t length = r.Width() + (r.Width() & 1);
    rows.assign(static_cast<std::size_t>(length) * static_cast<std::size_t>(r.Height()), 0xFFFF);
    return d.CopyRegion(h, area, r, rows);
}

// Every pixel of a client region copy equals the pattern (black off the window).
int Mismatches(const std::vector<std::uint16_t>& bits, const Rect& r, int winW, int winH) {
    const std::int32_t length = r.Width() + (r.Width() & 1);
    int bad = 0;
    for (int row = 0; row < r.Height(); ++row) {
        const int y = r.Bottom - 1 - row;
        for (int col = 0; col < r.Width(); ++col) {
            const int x = r.Left + col;
            const bool inside = x >= 0 && y >= 0 && x < winW && y < winH;
            const std::uint16_t want = inside ? platform::To555(x11test::PatternAt(x, y)) : 0;
            if (bits[static_cast<std::size_t>(row * length + col)] != want) ++bad;
        }
    }
    return bad;
}

class X11Bare : public ::testing::Test {
protected:
    void SetUp() override {
        if (!server.Ok()) GTEST_SKIP() << "Xvfb could not be started";
    }
    x11test::XServer server;
};

TEST_F(X11Bare, CopiesEveryPixelOfTheWindowEvenWhereAnotherWindowCoversIt) {
    Target t("pattern", 40, 30, 201, 150);  // odd width: rows are padded
    ASSERT_NE(t.id, 0);
    // Another window of the screen lies over most of it.
    Target cover("cover", 60, 50, 120, 90);
    ASSERT_NE(cover.id, 0);
    for (const bool shm : {true, false}) {
        auto d = OpenDesktop({shm, true, false});
        ASSERT_TRUE(d);
        EXPECT_EQ(d->Features().Shm, shm);
        EXPECT_TRUE(d->Features().Composite);
        std::vector<std::uint16_t> bits;
        const Rect whole{0, 0, 201, 150};
        // The first copy may still show the cover: the window repaints the
        // part it had under it only once the server keeps its pixels apart.
        ASSERT_TRUE(WaitUntil([&] { return Copy(*d, t.id, Area::Client, whole, bits) == 150 && Mismatches(bits, whole, 201, 150) == 0; }, 2000))
            << (shm ? "shared memory" : "fallback") << ": " << Mismatches(bits, whole, 201, 150) << " pixels differ";
        // A region reaching past the window's edges: the outside is black.
        const Rect edge{-5, 140, 210, 160};
        ASSERT_EQ(Copy(*d, t.id, Area::Client, edge, bits), 20);
        EXPECT_EQ(Mismatches(bits, edge, 201, 150), 0);
        // Without a frame the outer rectangle is the client's.
        const Rect inner{3, 7, 50, 9};
        ASSERT_EQ(Copy(*d, t.id, Area::Window, inner, bits), 2);
        EXPECT_EQ(Mismatches(bits, inner, 201, 150), 0);
    }
}

TEST_F(X11Bare, WithoutCompositeTheVisiblePartIsStillExact) {
    Target t("pattern", 10, 10, 64, 48);
    ASSERT_NE(t.id, 0);
    auto d = OpenDesktop({true, false, false});
    std::vector<std::uint16_t> bits;
    const Rect r{0, 0, 64, 48};
    ASSERT_EQ(Copy(*d, t.id, Area::Client, r, bits), 48);
    EXPECT_EQ(Mismatches(bits, r, 64, 48), 0);
    // The screen copy shows the same pixels where the window stands.
    const Rect onScreen{10, 10, 74, 58};
    std::vector<std::uint16_t> screen(64 * 48);
    ASSERT_EQ(d->CopyScreenRegion(onScreen, screen), 48);
    EXPECT_EQ(screen, bits);
}

TEST_F(X11Bare, ListsWindowsTopmostFirstWithUtf8TitlesAndRootGeometry) {
    Target a("Spades – Tisch Eiche ä", 100, 80, 160, 120);
    Target b("Last Trick", 130, 90, 90, 70);
    ASSERT_NE(a.id, 0);
    ASSERT_NE(b.id, 0);
    auto d = OpenDesktop();
    std::vector<platform::WindowHandle> top = d->TopLevel();
    auto pos = [&](platform::WindowHandle h) { return std::find(top.begin(), top.end(), h) - top.begin(); };
    ASSERT_LT(pos(b.id), static_cast<long>(top.size()));
    EXPECT_LT(pos(b.id), pos(a.id));
    EXPECT_EQ(d->Title(a.id), "Spades – Tisch Eiche ä");
    EXPECT_EQ(d->WindowRect(a.id), (Rect{100, 80, 260, 200}));
    EXPECT_EQ(d->ClientRect(a.id), (Rect{0, 0, 160, 120}));
    EXPECT_EQ(d->ClientOrigin(a.id), (platform::Point{100, 80}));
    const auto info = d->Info(a.id);
    ASSERT_TRUE(info);
    EXPECT_TRUE(info->Decorated && info->Visible && !info->Minimized);
    EXPECT_FALSE(d->IsOwnWindow(a.id));

    d->SetTopmost(a.id, true);
    top = d->TopLevel();
    EXPECT_LT(pos(a.id), pos(b.id));
    EXPECT_TRUE(d->Move(a.id, {300, 200, 460, 320}));
    EXPECT_EQ(d->WindowRect(a.id), (Rect{300, 200, 460, 320}));
}

TEST_F(X11Bare, AWindowThatClosedIsNotThereAndNothingBreaks) {
    auto t = std::make_unique<Target>("gone soon", 10, 10, 50, 40);
    const platform::WindowHandle id = t->id;
    ASSERT_NE(id, 0);
    auto d = OpenDesktop();
    ASSERT_TRUE(d->IsWindow(id));
    t.reset();
    ASSERT_TRUE(WaitUntil([&] { return !d->IsWindow(id); }));
    EXPECT_FALSE(d->Title(id));
    EXPECT_FALSE(d->Info(id));
    EXPECT_FALSE(d->WindowRect(id));
    EXPECT_FALSE(d->ClientOrigin(id));
    std::vector<std::uint16_t> bits(50 * 40);
    EXPECT_EQ(d->CopyRegion(id, Area::Client, {0, 0, 50, 40}, bits), 0);
    EXPECT_FALSE(d->Move(id, {0, 0, 10, 10}));
    d->SetTopmost(id, true);
    d->Minimize(id);
    d->Restore(id);
    EXPECT_EQ(std::count(d->TopLevel().begin(), d->TopLevel().end(), id), 0);
}

TEST_F(X11Bare, ClicksLandAtTheExactClientPoint) {
    Target t("clicks", 200, 150, 120, 100);
    ASSERT_NE(t.id, 0);
    auto d = OpenDesktop();
    ASSERT_TRUE(d->Features().XTest);
    const auto origin = d->ClientOrigin(t.id);
    ASSERT_TRUE(origin);
    for (const platform::Point p : {platform::Point{0, 0}, platform::Point{37, 21}, platform::Point{119, 99}}) {
        d->SetCursorPos({origin->X + p.X, origin->Y + p.Y});
        EXPECT_EQ(d->CursorPos(), (platform::Point{origin->X + p.X, origin->Y + p.Y}));
        d->LeftClick();
        EXPECT_EQ(t.proc.ReadLine(3000), "click 1 " + std::to_string(p.X) + " " + std::to_string(p.Y));
    }
    // Outside the window nothing reaches it.
    d->SetCursorPos({5, 5});
    d->LeftClick();
    EXPECT_FALSE(t.proc.ReadLine(200));
}

// Under a window manager: frames, the manager's stacking list, keep-above,
// minimise and restore.
class X11Managed : public X11Bare {
protected:
    void SetUp() override {
        X11Bare::SetUp();
        if (IsSkipped()) return;
        server.StartWindowManager();
        std::string error;
        desktop = X11Desktop::Open(error);
        ASSERT_TRUE(desktop) << error;
        if (!WaitUntil([&] {
                (void)desktop->TopLevel();
                return desktop->Features().WindowManager;
            }, 10000))
            GTEST_SKIP() << "openbox did not start";
        // Openbox announces itself a moment before it maps new windows; a
        // window it maps is the sign that it is ready.
        bool ready = false;
        for (int attempt = 0; attempt < 10 && !ready; ++attempt) ready = Target("probe", 0, 0, 10, 10, 1000).id != 0;
        if (!ready) GTEST_SKIP() << "openbox does not map windows";
    }
    std::unique_ptr<X11Desktop> desktop;
};

TEST_F(X11Managed, FramesWidenTheOuterRectangleAndCopiesStayExact) {
    Target t("framed", 100, 100, 201, 150);
    ASSERT_NE(t.id, 0);
    X11Desktop& d = *desktop;
    // The manager reparents and frames the window in its own time.
    ASSERT_TRUE(WaitUntil([&] {
        const auto r = d.WindowRect(t.id);
        const auto top = d.TopLevel();
        return r && r->Width() > 201 && std::count(top.begin(), top.end(), t.id) == 1;
    }));
    const Rect outer = *d.WindowRect(t.id);
    const platform::Point origin = *d.ClientOrigin(t.id);
    EXPECT_GT(origin.Y, outer.Top);  // a caption above the client
    EXPECT_EQ(d.ClientRect(t.id), (Rect{0, 0, 201, 150}));
    std::vector<std::uint16_t> bits;
    const Rect whole{0, 0, 201, 150};
    ASSERT_EQ(Copy(d, t.id, Area::Client, whole, bits), 150);
    EXPECT_EQ(Mismatches(bits, whole, 201, 150), 0);
    // The same pixels through the outer rectangle's coordinates.
    const int dx = origin.X - outer.Left, dy = origin.Y - outer.Top;
    std::vector<std::uint16_t> viaOuter;
    ASSERT_EQ(Copy(d, t.id, Area::Window, {dx, dy, dx + 201, dy + 150}, viaOuter), 150);
    EXPECT_EQ(viaOuter, bits);

    // A window kept above covers it; the copy does not change.
    Target cover("above", origin.X + 20, origin.Y + 20, 100, 80);
    ASSERT_NE(cover.id, 0);
    d.SetTopmost(cover.id, true);
    ASSERT_TRUE(WaitUntil([&] { return d.TopLevel().front() == cover.id; }));
    ASSERT_EQ(Copy(d, t.id, Area::Client, whole, bits), 150);
    EXPECT_EQ(Mismatches(bits, whole, 201, 150), 0);

    EXPECT_TRUE(d.Move(t.id, {50, 60, 50 + outer.Width(), 60 + outer.Height()}));
    EXPECT_EQ(d.WindowRect(t.id), (Rect{50, 60, 50 + outer.Width(), 60 + outer.Height()}));
}

TEST_F(X11Managed, MinimisedWindowsCopyNothingUntilRestored) {
    Target t("minimise me", 100, 100, 80, 60);
    ASSERT_NE(t.id, 0);
    X11Desktop& d = *desktop;
    ASSERT_TRUE(WaitUntil([&] {
        const auto top = d.TopLevel();
        return std::count(top.begin(), top.end(), t.id) == 1;
    }));
    d.Minimize(t.id);
    const auto info = d.Info(t.id);
    ASSERT_TRUE(info);
    EXPECT_TRUE(info->Minimized);
    EXPECT_TRUE(info->Visible);
    EXPECT_EQ(d.ClientRect(t.id), (Rect{}));
    std::vector<std::uint16_t> bits(80 * 60);
    EXPECT_EQ(d.CopyRegion(t.id, Area::Client, {0, 0, 80, 60}, bits), 0);
    d.Restore(t.id);
    EXPECT_FALSE(d.Info(t.id)->Minimized);
    const Rect whole{0, 0, 80, 60};
    // Repainted after the restore.
    ASSERT_TRUE(WaitUntil([&] { return Copy(d, t.id, Area::Client, whole, bits) == 60 && Mismatches(bits, whole, 80, 60) == 0; }));
}

}  // namespace

TEST(X11Display, AWaylandSessionWithoutXWaylandIsNamed) {
    EXPECT_NE(platform::NoDisplayReason(nullptr, "wayland-0").find("Wayland session without XWayland"),
              std::string::npos);
    EXPECT_NE(platform::NoDisplayReason("", nullptr).find("DISPLAY is not set"), std::string::npos);
    EXPECT_EQ(platform::NoDisplayReason(":0", "wayland-0"), "");
}

#else

TEST(X11Desktop, NotBuilt) { GTEST_SKIP() << "built without the X11 libraries"; }

#endif
