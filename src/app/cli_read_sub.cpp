// `read lasthand IMAGE [--lang N]`, `read lasttrick IMAGE`, `read score IMAGE`:
// runs the reader of one auxiliary game window on a stored image of that
// window's client area and prints what it read as JSON.
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "app/cli_commands.h"
#include "core/json.h"
#include "platform/screen_capture.h"
#include "platform/sim/virtual_clock.h"
#include "platform/sound.h"
#include "platform/windowing.h"
#include "reading/cards.h"
#include "reading/glyphs.h"
#include "reading/image_file.h"
#include "reading/pixels.h"
#include "reading/score_reader.h"
#include "reading/win_titles.h"

namespace app {

namespace {

// A desktop holding one window whose client area is the stored image, at the
// screen's origin. A stored image cannot be moved or resized: the readers'
// window moves are accepted and change nothing, so a score table cut off at
// the image's bottom stays cut off, as it would on a screen that cannot grow.
// Nobody listens to a console read: sounds are dropped.
class StoredImageDesktop final : public platform::Windows, public platform::ScreenCapture, public platform::Sound {
public:
    static constexpr platform::WindowHandle kWindow = 100;

    explicit StoredImageDesktop(const platform::Image& img) : img_(img) {}

    std::vector<platform::WindowHandle> TopLevel() override { return {kWindow}; }
    bool IsWindow(platform::WindowHandle h) override { return h == kWindow; }
    bool IsOwnWindow(platform::WindowHandle) override { return false; }
    std::optional<std::string> Title(platform::WindowHandle h) override {
        if (h != kWindow) return std::nullopt;
        return std::string();
    }
    std::optional<platform::WindowInfo> Info(platform::WindowHandle h) override {
        if (h != kWindow) return std::nullopt;
        return platform::WindowInfo{false, true, false};
    }
    std::optional<platform::Rect> WindowRect(platform::WindowHandle h) override { return Bounds(h); }
    std::optional<platform::Rect> ClientRect(platform::WindowHandle h) override { return Bounds(h); }
    std::optional<platform::Point> ClientOrigin(platform::WindowHandle h) override {
        if (h != kWindow) return std::nullopt;
        return platform::Point{};
    }
    platform::Point ScreenSize() override { return {4096, 4096}; }
    bool Move(platform::WindowHandle h, const platform::Rect&) override { return h == kWindow; }
    void SetTopmost(platform::WindowHandle, bool) override {}
    void Minimize(platform::WindowHandle) override {}
    void Restore(platform::WindowHandle) override {}

    std::int32_t CopyRegion(platform::WindowHandle h, platform::Area, const platform::Rect& region,
                            std::vector<std::uint16_t>& bits) override {
        return h == kWindow ? CopyScreenRegion(region, bits) : 0;
    }
    std::int32_t CopyScreenRegion(const platform::Rect& region, std::vector<std::uint16_t>& bits) override {
        const std::int32_t w = region.Width(), hgt = region.Height();
        if (w <= 0 || hgt <= 0) return 0;
        const std::int32_t length = w + (w & 1);
        if (bits.size() < static_cast<std::size_t>(length) * static_cast<std::size_t>(hgt)) return 0;
        for (std::int32_t row = 0; row < hgt; ++row) {
            const std::int32_t y = region.Bottom - 1 - row;  // bottom-up
            std::uint16_t* out = bits.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(length);
            for (std::int32_t x = 0; x < w; ++x) {
                const std::int32_t sx = region.Left + x;
                out[x] = img_.Contains(sx, y) ? platform::To555(img_.At(sx, y)) : 0;
            }
        }
        return hgt;
    }

    void PlaySystemSound(const std::string&) override {}
    void Beep() override {}

private:
    std::optional<platform::Rect> Bounds(platform::WindowHandle h) const {
        if (h != kWindow) return std::nullopt;
        return platform::Rect{0, 0, img_.Width, img_.Height};
    }
    const platform::Image& img_;
};

// Everything a reader needs, set up as the tracking does when it takes up
// a table: reading font 1 with the number reader on, virtual time.
struct Readers {
    Readers(const platform::Image& img, int lang) : desk(img), cap(desk, desk, clock) {
        cap.FontIndex = 1;
        for (int k = 1; k <= 3; ++k) subs.Handle[static_cast<std::size_t>(k)] = StoredImageDesktop::kWindow;
        cap.SetSubWindows(&subs);
        glyphs.ReadingFont = 1;
        glyphs.DigitsOn = true;
        glyphs.SelectFont(1, lang, titles.BidLabel(lang), titles.TrickLabel(lang));
    }
    StoredImageDesktop desk;
    platform::VirtualClock clock;
    reading::Capture cap;
    reading::FixedSubWindows subs;
    reading::WinTitles titles;
    reading::GlyphTable glyphs;
};

core::Json IntArray(const int* v, std::size_t n) {
    core::Json a = core::Json::Array();
    for (std::size_t i = 0; i < n; ++i) a.Push(core::Json(v[i]));
    return a;
}

core::Json ReadLastHand(Readers& r, int lang) {
    reading::CardReader reader(r.cap, r.glyphs, r.desk);
    reader.GameLanguage = lang;
    reading::HandRead hand;
    const int status = reader.CaptHand(hand);
    core::Json names = core::Json::Array(), cards = core::Json::Array(), marks = core::Json::Array();
    for (std::size_t p = 0; p < 4; ++p) {
        names.Push(core::Json(hand.Names[p]));
        core::Json c = core::Json::Array(), m = core::Json::Array();
        for (std::size_t i = 0; i < 13; ++i) {
            c.Push(core::Json(hand.Cards[p][i]));
            m.Push(core::Json(static_cast<int>(hand.Marks[p][i])));
        }
        cards.Push(std::move(c));
        marks.Push(std::move(m));
    }
    core::Json out = core::Json::Object();
    out.Set("status", core::Json(status));
    out.Set("names", std::move(names));
    out.Set("cards", std::move(cards));
    out.Set("marks", std::move(marks));
    return out;
}

core::Json ReadLastTrick(Readers& r) {
    reading::CardReader reader(r.cap, r.glyphs, r.desk);
    reading::TrickRead trick;
    reader.ReadLastTrick(trick, 1);
    core::Json out = core::Json::Object();
    out.Set("suits", IntArray(trick.Suits.data(), 4));
    out.Set("ranks", IntArray(trick.Ranks.data(), 4));
    return out;
}

core::Json ReadScore(Readers& r) {
    reading::ScoreReader reader(r.cap, r.glyphs);
    reading::ScoreLines lines;
    const int status = reader.CaptScore(lines);
    core::Json list = core::Json::Array();
    for (int n = 1; n <= lines.Count; ++n) list.Push(IntArray(lines.Line[static_cast<std::size_t>(n)].data(), 4));
    core::Json out = core::Json::Object();
    out.Set("status", core::Json(status));
    out.Set("lines", std::move(list));
    return out;
}

}  // namespace

int RunReadSub(const std::string& kind, const Args& args) {
    ReadArgs a;
    const ArgsOutcome parsed = ParseReadArgs(kind, args, a);
    if (!parsed.GoOn()) return Finish(parsed);
    const std::string& path = a.Image;
    const int lang = a.Lang;

    platform::Image img;
    std::string error;
    if (!reading::LoadImageFile(path, img, error)) {
        std::fprintf(stderr, "tarvellos-cli read %s: %s\n", kind.c_str(), error.c_str());
        return 1;
    }
    Readers readers(img, lang);
    core::Json out;
    if (kind == "lasthand") out = ReadLastHand(readers, lang);
    else if (kind == "lasttrick") out = ReadLastTrick(readers);
    else if (kind == "score") out = ReadScore(readers);
    else {
        std::fprintf(stderr, "tarvellos-cli read: unknown window kind '%s'\n", kind.c_str());
        return 2;
    }
    std::printf("%s\n", out.Dump().c_str());
    return 0;
}

}  // namespace app
