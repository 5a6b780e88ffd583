// How the models' typefaces and colours become Qt fonts and colours. The
// forms name Windows typefaces ("Arial", "Arial Narrow", "Courier New", the
// Japanese interface font); each resolves to a metric-compatible free font
// so the layouts keep their designed widths.
#pragma once

#include <QColor>
#include <QFont>
#include <QStringList>
#include <string>

#include "core/view_model.h"

namespace ui {

// 0x00BBGGRR -> QColor.
QColor ToQColor(core::Color c);
core::Color FromQColor(const QColor& c);

// The free family standing in for a named typeface.
QString ResolveFamily(const std::string& typeface);
// The family Japanese text falls back to.
QString JapaneseFamily();

// Font of a model. Sizes are points at 96 dpi, set as pixels so the result
// does not depend on the screen's resolution. Japanese characters missing
// from the Latin family fall back to the Japanese family.
QFont ToQFont(const std::string& typeface, double points, bool bold);
QFont ToQFont(const core::Font& f);

// Width in pixels of a text in a model font, measured with the real font;
// the models that lay text out take it in place of their approximation.
double QtTextWidth(std::string_view text, const core::Font& font);
core::TextWidthFn QtTextMeasure();

// Registers the font files the windows rely on with the application so
// they resolve without depending on the system's font configuration.
// Returns the files that could not be loaded (empty when all are there).
QStringList RegisterWindowFonts();
// The font files RegisterWindowFonts loads.
QStringList WindowFontFiles();

inline QString Q(const std::string& s) { return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size())); }

}  // namespace ui
