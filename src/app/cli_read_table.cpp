// `read table IMAGE [--lang N] [--dnilpass] [--annotate OUT.png]`: runs the
// table readers on a stored image of the game's table window, as the
// tracking would on the screen, and prints what they found as JSON.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/cli_commands.h"
#include "core/json.h"
#include "platform/sim/sim_desktop.h"
#include "platform/sim/virtual_clock.h"
#include "reading/glyphs.h"
#include "reading/image_file.h"
#include "reading/pixels.h"
#include "reading/table_reader.h"
#include "reading/win_titles.h"

namespace app {

namespace {

core::Json PointJson(const platform::Point& p) {
    core::Json a = core::Json::Array();
    a.Push(core::Json(static_cast<int>(p.X)));
    a.Push(core::Json(static_cast<int>(p.Y)));
    return a;
}

// Found points only, keyed by slot number.
template <std::size_t N>
core::Json PointsJson(const std::array<platform::Point, N>& pts, std::size_t first, std::size_t last) {
    core::Json o = core::Json::Object();
    for (std::size_t i = first; i <= last && i < N; ++i)
        if (pts[i].X != 0 || pts[i].Y != 0) o.Set(std::to_string(i), PointJson(pts[i]));
    return o;
}

void Mark(platform::Image& img, std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1, std::uint32_t rgb) {
    for (std::int32_t x = x0; x <= x1; ++x) {
        img.Set(x, y0, rgb);
        img.Set(x, y1, rgb);
    }
    for (std::int32_t y = y0; y <= y1; ++y) {
        img.Set(x0, y, rgb);
        img.Set(x1, y, rgb);
    }
}

// What was found, drawn over the image: the box, the rows where labels
// were read, the list top and every button position.
platform::Image Annotate(platform::Image img, const reading::TableReader& r) {
    const std::uint32_t box = 0xFF00FF, row = 0x00C0FF, button = 0xFF8000, list = 0x00A000;
    if (r.BoxLeft != 0) Mark(img, r.BoxLeft, r.BoxTop, r.BoxRight, r.BoxBottom, box);
    for (const auto& p : r.BidPos)
        if (p.Y != 0) Mark(img, p.X, p.Y, p.X + 40, p.Y + 11, row);
    for (const auto& p : r.TrickPos)
        if (p.Y != 0) Mark(img, p.X, p.Y, p.X + 50, p.Y + 11, row);
    if (r.NameListTop != 0)
        for (std::int32_t x = r.BoxRight - 50; x < img.Width; ++x) img.Set(x, r.NameListTop, list);
    auto cross = [&](const platform::Point& p) {
        if (p.X == 0 && p.Y == 0) return;
        Mark(img, p.X - 2, p.Y - 2, p.X + 2, p.Y + 2, button);
    };
    for (const auto& p : r.SubButtonXY) cross(p);
    for (const auto& p : r.BtnXY) cross(p);
    return img;
}

}  // namespace

int RunReadTable(const Args& args) {
    ReadArgs a;
    const ArgsOutcome parsed = ParseReadArgs("table", args, a);
    if (!parsed.GoOn()) return Finish(parsed);
    const std::string& path = a.Image;
    const std::string& annotate = a.Annotate;
    const int lang = a.Lang;
    const bool dnilPass = a.DnilPass;

    platform::Image img;
    std::string error;
    if (!reading::LoadImageFile(path, img, error)) {
        std::fprintf(stderr, "tarvellos-cli read table: %s\n", error.c_str());
        return 1;
    }

    // The image is the game window standing at the screen's origin.
    reading::WinTitles titles;
    platform::SimDesktop desktop(std::max(img.Width, 1280), std::max(img.Height, 1024));
    platform::VirtualClock clock;
    const platform::WindowHandle game =
        desktop.AddWindow(titles.Title(lang, reading::SlotTable), platform::Rect{0, 0, std::max(img.Width, 1), std::max(img.Height, 1)});
    if (img.Width > 0 && img.Height > 0) desktop.SetImage(game, img);

    reading::Capture cap(desktop, desktop, clock);
    cap.GameWindow = game;
    reading::GlyphTable glyphs;
    reading::TableReader reader(cap, glyphs, titles);
    reader.GameLanguage = lang;
    reader.DNilPassTable = dnilPass;
    reader.SelectReadingFont();

    reader.ScanButtons();
    // The Spanish rule of the scan may have switched the site; its labels follow.
    if (reader.GameLanguage != lang) reader.SelectReadingFont();
    reader.LocateBox();
    reader.MakePlayerList();
    std::array<std::string, 4> bids{};
    int bidStatus = 0;
    reader.CaptureBid(bids, bidStatus);
    std::array<int, 4> tricks{};
    reader.CaptureTricks(tricks);
    const bool myTurn = reader.TestMyTurn();
    const int stat = reader.GetBoardStat(0);

    core::Json out = core::Json::Object();
    core::Json box = core::Json::Array();
    for (std::int32_t v : {reader.BoxLeft, reader.BoxTop, reader.BoxRight, reader.BoxBottom}) box.Push(core::Json(static_cast<int>(v)));
    out.Set("box", box);
    out.Set("nameListTop", core::Json(static_cast<int>(reader.NameListTop)));
    core::Json players = core::Json::Array();
    for (const auto& n : reader.TableNames) players.Push(core::Json(n));
    out.Set("players", players);
    out.Set("bidStatus", core::Json(bidStatus));
    core::Json jb = core::Json::Array();
    for (const auto& b : bids) jb.Push(core::Json(b));
    out.Set("bids", jb);
    out.Set("bidCount", core::Json(reader.BidCount));
    out.Set("bidLocCount", core::Json(reader.BidLocCount));
    core::Json jt = core::Json::Array();
    for (int t : tricks) jt.Push(core::Json(t));
    out.Set("tricks", jt);
    out.Set("myTurn", core::Json(myTurn));
    out.Set("buttons", PointsJson(reader.SubButtonXY, 1, 5));
    out.Set("dnilPass", core::Json(reader.DNilPassTable));
    out.Set("suicide", core::Json(reader.SuicideTable));
    core::Json panel = core::Json::Object();
    panel.Set("stat", core::Json(stat));
    panel.Set("buttons", PointsJson(reader.BtnXY, 1, 16));
    out.Set("panel", panel);

    if (!annotate.empty()) {
        if (!reading::SaveImagePng(annotate, Annotate(img, reader), error)) {
            std::fprintf(stderr, "tarvellos-cli read table: %s: %s\n", annotate.c_str(), error.c_str());
            return 1;
        }
    }
    std::printf("%s\n", out.Dump().c_str());
    return 0;
}

}  // namespace app
