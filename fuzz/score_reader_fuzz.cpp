// The score window reader on random images and on rendered score windows
// with bytes written over them: no crash, no read outside the buffer, the
// line count within the table.
#include <cstdint>
#include <cstdlib>

#include "platform/sim/virtual_clock.h"
#include "platform/sim/sim_desktop.h"
#include "reading/glyphs.h"
#include "reading/pixels.h"
#include "reading/score_reader.h"
#include "sim/sub_windows.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::size_t i = 0;
    auto next = [&]() -> std::uint8_t { return i < size ? data[i++] : 0; };

    static reading::GlyphTable glyphs;  // built once: the table text parse is the slow part
    glyphs.ReadingFont = 1;
    glyphs.DigitsOn = true;
    glyphs.SelectFont(1, 1, "Bid:", "Tricks:");

    platform::Image img;
    if (next() & 1) {
        img = platform::Image(next() % 240, next());
        for (auto& p : img.Pixels) p = (std::uint32_t{next()} << 16) | (std::uint32_t{next()} << 8) | next();
    } else {
        sim::ScoreWindowView v;
        const int lines = next() % 40;
        for (int n = 0; n < lines; ++n)
            v.Lines.push_back({static_cast<int>(next()) * 7 - 600, next() % 14, static_cast<int>(next()) * 9 - 900,
                               next() % 14});
        v.Rows = (next() & 1) ? -1 : next() % 45;
        img = sim::RenderScoreWindow(v, glyphs);
        while (i + 5 <= size) {
            const int x = next(), y = next() * 3, len = next() % 16;
            const std::uint32_t rgb = (next() & 1) ? 0 : 0xC0C0C0u + next();
            for (int k = 0; k < len; ++k) img.Set(x + k, y, rgb);
        }
    }

    platform::SimDesktop desk(1280, 1024);
    platform::VirtualClock clock;
    reading::FixedSubWindows subs;
    reading::Capture cap(desk, desk, clock, &subs);
    cap.FontIndex = 1;
    const auto h = desk.AddWindow("Spades Score", {0, 0, img.Width + 8, img.Height + 27});
    desk.SetClientImage(h, img);
    subs.Handle[reading::kSubScore] = h;
    reading::ScoreReader reader(cap, glyphs);
    reading::ScoreLines out;
    const int status = reader.CaptScore(out);
    if (status != 0 && status != 2) std::abort();
    if (out.Count < 0 || out.Count > reading::kMaxScoreLines) std::abort();
    return 0;
}
