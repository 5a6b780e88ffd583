#include "ui/qt_style.h"

#include <QFile>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <cmath>

namespace ui {

namespace {

const char* const kFontDir = "/usr/share/fonts/";

struct FamilyMap {
    const char* Typeface;
    const char* Family;
};

// Metric-compatible stand-ins: text measured for the named typeface takes
// the same room in these.
const FamilyMap kFamilies[] = {
    {"Arial", "Liberation Sans"},
    {"Arial Narrow", "Liberation Sans Narrow"},
    {"Times New Roman", "Liberation Serif"},
    {"Courier New", "Liberation Mono"},
    {"Verdana", "Liberation Sans"},
    {"Symbol", "Liberation Serif"},
    {"ＭＳ Ｐゴシック", "IPAPGothic"},
    {"MS PGothic", "IPAPGothic"},
    {"メイリオ", "IPAPGothic"},
    {"Meiryo", "IPAPGothic"},
    {"ＭＳ ゴシック", "IPAGothic"},
    {"MS Gothic", "IPAGothic"},
};

}  // namespace

QColor ToQColor(core::Color c) {
    return QColor(static_cast<int>(c & 0xFF), static_cast<int>((c >> 8) & 0xFF), static_cast<int>((c >> 16) & 0xFF));
}

core::Color FromQColor(const QColor& c) {
    return static_cast<core::Color>(c.red()) | (static_cast<core::Color>(c.green()) << 8) |
           (static_cast<core::Color>(c.blue()) << 16);
}

QString ResolveFamily(const std::string& typeface) {
    for (const FamilyMap& m : kFamilies)
        if (typeface == m.Typeface) return QString::fromUtf8(m.Family);
    return QStringLiteral("Liberation Sans");
}

QString JapaneseFamily() { return QStringLiteral("IPAPGothic"); }

QFont ToQFont(const std::string& typeface, double points, bool bold) {
    QFont f;
    f.setFamilies({ResolveFamily(typeface), JapaneseFamily()});
    f.setPixelSize(std::max(1, static_cast<int>(std::lround(points * 96.0 / 72.0))));
    f.setBold(bold);
    f.setKerning(false);
    // Whole-pixel glyph positions give the same pixels on every run.
    f.setHintingPreference(QFont::PreferFullHinting);
    f.setStyleStrategy(QFont::NoSubpixelAntialias);
    return f;
}

QFont ToQFont(const core::Font& f) { return ToQFont(f.Name, f.Size, f.Bold); }

double QtTextWidth(std::string_view text, const core::Font& font) {
    QFontMetricsF m(ToQFont(font));
    return m.horizontalAdvance(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

core::TextWidthFn QtTextMeasure() { return [](std::string_view t, const core::Font& f) { return QtTextWidth(t, f); }; }

QStringList WindowFontFiles() {
    const QString lib = QString::fromUtf8(kFontDir) + "truetype/liberation/";
    const QString ipa = QString::fromUtf8(kFontDir) + "opentype/ipafont-gothic/";
    return {lib + "LiberationSans-Regular.ttf",       lib + "LiberationSans-Bold.ttf",
            lib + "LiberationSansNarrow-Regular.ttf", lib + "LiberationSansNarrow-Bold.ttf",
            lib + "LiberationSerif-Regular.ttf",      lib + "LiberationSerif-Bold.ttf",
            lib + "LiberationMono-Regular.ttf",       lib + "LiberationMono-Bold.ttf",
            ipa + "ipagp.ttf",                        ipa + "ipag.ttf"};
}

QStringList RegisterWindowFonts() {
    QStringList missing;
    for (const QString& file : WindowFontFiles()) {
        if (!QFile::exists(file) || QFontDatabase::addApplicationFont(file) < 0) missing << file;
    }
    return missing;
}

}  // namespace ui
