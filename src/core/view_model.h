// The one vocabulary of the companion's view models: what a label or button
// shows, how a window stands, menu entries, and text items drawn onto a
// picture surface. The logic writes these; a toolkit window paints them;
// tests and the console tool read them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/json.h"

namespace core {

// Colours are 0x00BBGGRR.
using Color = std::uint32_t;
inline constexpr Color Black = 0x000000;
inline constexpr Color White = 0xFFFFFF;
inline constexpr Color Red = 0x0000FF;
inline constexpr Color Blue = 0xFF0000;
inline constexpr Color Magenta = 0xFF00FF;
inline constexpr Color DarkRed = 0x0000C8;  // 200, 0, 0

struct Font {
    std::string Name = "Arial";
    double Size = 10;  // points
    bool Bold = false;
    bool operator==(const Font&) const = default;
};

struct Label {
    std::string Caption;
    Color ForeColor = Black;
    Font TextFont;
    bool Visible = true;
    int Left = 0, Top = 0, Width = 0, Height = 0;  // pixels, client coordinates
};

// A frame shape or line of a form design.
struct Shape {
    int Left = 0, Top = 0, Width = 0, Height = 0;
    bool Visible = true;
};

struct WindowModel {
    std::string Caption;
    int Left = 0, Top = 0;          // screen pixels
    int Width = 0, Height = 0;      // outer size in pixels
    bool Visible = false;
    Color BackColor = White;
    // Raised by every request to put the window on top again; the window
    // layer calls SetWindowPos(topmost) whenever it changes.
    int TopmostRequests = 0;
};

// One text drawn on a picture surface: (X, Y) is the top-left of the text.
struct DrawText {
    double X = 0, Y = 0;
    std::string Text;
    std::string Typeface = "Arial";
    double Size = 10;
    Color ForeColor = Black;
    bool Bold = false;
};

// Width in pixels of a text in a font. The window layer can supply the real
// measure; the default is a fixed approximation good enough for layout.
using TextWidthFn = std::function<double(std::string_view text, const Font& font)>;
double ApproxTextWidth(std::string_view text, const Font& font);

// Twips per pixel at the usual 96 dpi.
inline constexpr int TwipsPerPixel = 15;

struct Button {
    std::string Caption;
    bool Visible = true;
    bool Enabled = true;
    Color BackColor = 0xC0C0C0;  // the main window's grey
    Font TextFont;
    std::string ToolTip;
};

struct MenuItem {
    std::string Caption;
    bool Checked = false;
    bool Enabled = true;
    bool Visible = true;
};

// A label or button with only its caption and visibility set.
inline Label MakeLabel(std::string caption, bool visible = true) {
    Label l;
    l.Caption = std::move(caption);
    l.Visible = visible;
    return l;
}
inline Button MakeButton(std::string caption, bool visible = true) {
    Button b;
    b.Caption = std::move(caption);
    b.Visible = visible;
    return b;
}

Json LabelTexts(const Label* labels, std::size_t n);
Json ToJson(const Label& l);
Json ToJson(const DrawText& d);

}  // namespace core
