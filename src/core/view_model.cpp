#include "core/view_model.h"

#include <cstdio>

namespace core {

double ApproxTextWidth(std::string_view text, const Font& font) {
    // Em fractions close to Arial's: digits and most letters about 0.56 em,
    // narrow punctuation 0.28, wide capitals 0.72. A UTF-8 lead byte of a
    // non-ASCII character counts one full em (Japanese), continuation bytes
    // nothing.
    const double em = font.Size * 96.0 / 72.0;
    double units = 0;
    for (unsigned char c : text) {
        if ((c & 0xC0) == 0x80) continue;
        if (c >= 0x80) units += 1.0;
        else if (c == ' ' || c == ',' || c == '.' || c == '(' || c == ')' || c == '[' || c == ']' ||
                 c == 'i' || c == 'l' || c == '1' || c == '-' || c == '/')
            units += 0.28;
        else if (c == 'M' || c == 'W' || c == 'm' || c == 'w') units += 0.83;
        else if (c >= 'A' && c <= 'Z') units += 0.67;
        else units += 0.56;
    }
    if (font.Name == "Courier New") units = 0.6 * static_cast<double>(text.size());
    return units * em * (font.Bold ? 1.05 : 1.0);
}

// HTML form "#RRGGBB" of a 0x00BBGGRR colour.
static std::string Hex(Color c) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "#%02X%02X%02X", static_cast<unsigned>(c & 0xFF),
                  static_cast<unsigned>((c >> 8) & 0xFF), static_cast<unsigned>((c >> 16) & 0xFF));
    return buf;
}

core::Json LabelTexts(const Label* labels, std::size_t n) {
    core::Json a = core::Json::Array();
    for (std::size_t i = 0; i < n; ++i) a.Push(labels[i].Caption);
    return a;
}

core::Json ToJson(const Label& l) {
    core::Json j = core::Json::Object();
    j.Set("text", l.Caption);
    j.Set("color", Hex(l.ForeColor));
    j.Set("font", l.TextFont.Name);
    j.Set("size", l.TextFont.Size);
    j.Set("bold", l.TextFont.Bold);
    j.Set("visible", l.Visible);
    return j;
}

core::Json ToJson(const DrawText& d) {
    core::Json j = core::Json::Object();
    j.Set("x", d.X);
    j.Set("y", d.Y);
    j.Set("text", d.Text);
    j.Set("font", d.Typeface);
    j.Set("size", d.Size);
    j.Set("color", Hex(d.ForeColor));
    j.Set("bold", d.Bold);
    return j;
}

}  // namespace core
