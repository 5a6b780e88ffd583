// A game table window on a simulated desktop with the table readers set up
// to read it, as tests and benchmarks of the table readers need it.
#pragma once

#include <string>

#include "platform/sim/virtual_clock.h"
#include "platform/sim/sim_desktop.h"
#include "reading/glyphs.h"
#include "reading/pixels.h"
#include "reading/table_reader.h"
#include "reading/win_titles.h"

struct TableRig {
    platform::SimDesktop desk{1280, 1024};
    platform::VirtualClock clock;
    reading::Capture cap{desk, desk, clock};
    reading::GlyphTable glyphs;
    reading::WinTitles titles;
    reading::TableReader reader{cap, glyphs, titles};

    TableRig() = default;
    explicit TableRig(const platform::Image& img, int lang = 1) { Open(img, lang, 0, 0, "Game: Spades"); }

    // Puts the window on the desktop at (x, y) and selects the site's font.
    void Open(const platform::Image& img, int lang, int x, int y, const std::string& title) {
        cap.GameWindow = desk.AddWindow(title, {x, y, x + img.Width, y + img.Height});
        desk.SetImage(cap.GameWindow, img);
        reader.GameLanguage = lang;
        reader.SelectReadingFont();
    }
};
