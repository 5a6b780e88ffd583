// The table readers on arbitrary and on damaged rendered table windows:
// statuses, never a crash or a read outside the pixel buffer.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "platform/sim/virtual_clock.h"
#include "platform/sim/sim_desktop.h"
#include "reading/table_reader.h"
#include "sim/render_table.h"

namespace {

void Check(bool ok) {
    if (!ok) __builtin_trap();
}

const platform::Image& Rendered(int lang) {
    static reading::GlyphTable g;
    static platform::Image cache[10];
    platform::Image& img = cache[lang];
    if (img.Width == 0) {
        sim::TableView v;
        v.Language = lang;
        v.Bids = {std::string("4"), std::string("N"), std::string(""), std::string("10")};
        v.Tricks = {1, 2, 0, 3};
        v.MyTurn = true;
        v.Panel = lang % 2 == 0 ? 200 : 100;
        v.DNilPassMarker = true;
        v.Players = {{"river_rat", "1612"}, {"queen_of_h", "1544"}};
        v.Highlight = 1;
        img = sim::RenderTableWindow(v, g);
    }
    return img;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Beyond a few thousand bytes an input only paints more pixels over the
    // same window; capping it keeps the runs at hundreds per second.
    if (size < 4 || size > 4096) return 0;
    static const int kLangs[] = {1, 2, 3, 5, 6, 7, 8, 9};
    const int lang = kLangs[data[0] & 7];
    platform::Image img;
    if (data[1] & 1) {
        // A rendered window with bytes written over it.
        img = Rendered(lang);
        for (std::size_t i = 4; i + 4 <= size; i += 4) {
            const std::uint32_t at = (static_cast<std::uint32_t>(data[i]) << 16 | data[i + 1] << 8 | data[i + 2]) %
                                     static_cast<std::uint32_t>(img.Pixels.size());
            img.Pixels[at] = data[i + 3] & 1 ? 0x000000 : static_cast<std::uint32_t>(data[i + 3]) * 0x010101u;
        }
    } else {
        // Arbitrary pixels, any size up to the readers' regions and beyond.
        const int w = 1 + (data[2] * 3) % 700, h = 1 + (data[3] * 3) % 760;
        img = platform::Image(w, h, 0xECE9D8);
        for (std::size_t i = 4; i < size; ++i) {
            const std::size_t at = (i * 2654435761u) % img.Pixels.size();
            img.Pixels[at] = data[i] & 1 ? 0 : data[i] * 0x0103u;
        }
    }

    // A screen just big enough keeps the desktop copies cheap.
    platform::SimDesktop desk(std::max(img.Width, 320), std::max(img.Height, 560));
    platform::VirtualClock clock;
    reading::Capture cap(desk, desk, clock);
    // Parsing the glyph table is most of a run's cost: parse once, copy per input.
    static const reading::GlyphTable kGlyphs;
    static const reading::WinTitles kTitles;
    reading::GlyphTable glyphs = kGlyphs;
    reading::WinTitles titles = kTitles;
    reading::TableReader reader(cap, glyphs, titles);
    // An empty window takes the image's size from it: no frame painted first.
    cap.GameWindow = desk.AddWindow("Game: Spades", {0, 0, 0, 0});
    desk.SetImage(cap.GameWindow, std::move(img));
    reader.GameLanguage = lang;
    // The fixed layout spares the box search on most garbage inputs.
    if (data[1] & 2) reader.ReduceWidth = 624, reader.GameLanguage = 1;
    reader.BoxSearchTries = 2;  // every try reads the same pixels
    reader.SelectReadingFont();

    // A few readers per input keep the runs quick; each locates the box itself.
    const int which = data[1] >> 2;
    if (which & 1) reader.ScanButtons();
    if (which & 2) {
        reader.MakePlayerList();
        Check(reader.TableNamesRead <= reading::kMaxTableNames);
    }
    if (which & 4) {
        std::array<std::string, 4> bids;
        int status = -1;
        reader.CaptureBid(bids, status);
        Check(status == -1 || status == 0 || status == 11 || status == 12 || status == 13);
    }
    if (which & 8) {
        std::array<int, 4> tricks{};
        reader.CaptureTricks(tricks);
        for (int t : tricks) Check(t >= 0 && t <= 255);
    }
    if (which & 16) reader.TestMyTurn();
    if (which & 32) {
        const int stat = reader.GetBoardStat(0);
        Check(stat == 0 || stat == 100 || stat == 200);
    }
    return 0;
}
