// The "Last Hand" and "Last Trick" readers on whatever a screen may show:
// random images of any size and rendered windows with bytes written over
// them. Nothing may crash or read outside the pixel buffer, and the results
// stay inside their ranges.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>

#include "platform/sim/virtual_clock.h"
#include "platform/sim/sim_desktop.h"
#include "reading/cards.h"
#include "reading/glyphs.h"
#include "reading/pixels.h"
#include "sim/sub_windows.h"

namespace {

struct Bytes {
    const std::uint8_t* d;
    std::size_t n, i = 0;
    std::uint8_t Next() { return i < n ? d[i++] : 0; }
    std::uint32_t Rgb() { return (std::uint32_t{Next()} << 16) | (std::uint32_t{Next()} << 8) | Next(); }
};

// A rendered window (or a random one) with the input's bytes painted over it.
platform::Image Scene(Bytes& in, int kind, const reading::GlyphTable& glyphs) {
    const int shape = in.Next() % 3;
    if (shape == 0) {
        const int w = in.Next() % 300, h = in.Next() % 140;
        platform::Image img(w, h);
        for (auto& p : img.Pixels) p = in.Rgb();
        return img;
    }
    platform::Image img;
    if (kind == 0) {
        // Rendering the text is slow under the sanitizers: one picture per language.
        static std::map<int, platform::Image> drawn;
        const int lang = 1 + in.Next() % 9;
        auto it = drawn.find(lang);
        if (it == drawn.end()) {
            sim::LastHandView v;
            v.Language = lang;
            v.Names = {"river_rat", "queen_of_h", "~bag?", "x"};
            const std::string ranks = "23456789TJQKA", suits = "CDHS";
            for (std::size_t p = 0; p < 4; ++p)
                for (std::size_t c = 0; c < 13; ++c) {
                    v.Cards[p][c] = std::string(1, ranks[(c + p * 3) % 13]) + suits[(c + p) % 4];
                    v.Marks[p][c] = (c + p) % 5 == 0;
                }
            it = drawn.emplace(lang, sim::RenderLastHand(v, glyphs)).first;
        }
        img = it->second;
    } else {
        sim::LastTrickView v;
        for (std::size_t k = 0; k < 4; ++k) {
            v.Suits[k] = in.Next() % 4;
            v.Ranks[k] = 2 + in.Next() % 13;
        }
        img = sim::RenderLastTrick(v);
    }
    // Paint runs of pixels and crop the window.
    while (in.i + 6 <= in.n) {
        const int x = in.Next() * 2, y = in.Next() % 140, len = in.Next() % 24;
        const std::uint32_t rgb = in.Rgb();
        for (int k = 0; k < len; ++k) img.Set(x + k, y, rgb);
        if (shape == 2 && (x & 7) == 0) break;
    }
    if (shape == 2) {
        platform::Image cut(std::max(0, img.Width - in.Next()), std::max(0, img.Height - in.Next() % 120));
        for (int y = 0; y < cut.Height; ++y)
            for (int x = 0; x < cut.Width; ++x) cut.Set(x, y, img.At(x, y));
        return cut;
    }
    return img;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes in{data, size};
    const int kind = in.Next() & 1;
    const int lang = 1 + in.Next() % 9;

    platform::SimDesktop desk(1280, 1024);
    platform::VirtualClock clock;
    reading::FixedSubWindows subs;
    reading::Capture cap(desk, desk, clock, &subs);
    static reading::GlyphTable glyphs;  // built once: the table text parse is the slow part
    glyphs.ReadingFont = 1;
    glyphs.DigitsOn = true;
    glyphs.SelectFont(1, lang, "Bid:", "Tricks:");
    cap.FontIndex = 1;
    reading::CardReader reader(cap, glyphs, desk);
    reader.GameLanguage = lang;

    const platform::Image img = Scene(in, kind, glyphs);
    const auto h = desk.AddWindow("w", {0, 0, img.Width + 8, img.Height + 27});
    desk.SetClientImage(h, img);
    subs.Handle[static_cast<std::size_t>(kind == 0 ? reading::kSubLastHand : reading::kSubLastTrick)] = h;

    if (kind == 0) {
        reading::HandRead hand;
        const int status = reader.CaptHand(hand);
        if (status != 0 && status != 22) std::abort();
        for (const auto& line : hand.Marks)
            for (auto m : line)
                if (m > 2) std::abort();
    } else {
        reading::TrickRead t;
        const bool ok = reader.ReadLastTrick(t, in.Next() % 3);
        for (int k = 0; k < 4; ++k) {
            if (ok && (t.Suits[static_cast<std::size_t>(k)] < 0 || t.Suits[static_cast<std::size_t>(k)] > 3)) std::abort();
            if (ok && t.Ranks[static_cast<std::size_t>(k)] != 0 &&
                (t.Ranks[static_cast<std::size_t>(k)] < 2 || t.Ranks[static_cast<std::size_t>(k)] > 14))
                std::abort();
        }
        if (!ok && t.Suits[0] != -1) std::abort();
        // Corner reads and line searches anywhere around the capture.
        const int x = static_cast<int>(in.Next()) * 2 - 200, y = static_cast<int>(in.Next()) - 60;
        reader.ReadCardCorner(x, y, in.Next() % 4);
        int suit, rank;
        reader.MatchCard(suit, rank);
        if (rank != 0 && (rank < 2 || rank > 14 || suit < 0 || suit > 3)) std::abort();
        (void)reader.FindAllBlackRow(x, y, x + in.Next(), y + 20);
        (void)reader.FindAllBlackCol(x, y, x + in.Next(), y + in.Next());
    }
    const std::string text(reinterpret_cast<const char*>(data), size < 16 ? size : 16);
    (void)reading::ParseCardText(text, lang);
    if (reading::TrimUnknown(text).size() > text.size()) std::abort();
    return 0;
}
