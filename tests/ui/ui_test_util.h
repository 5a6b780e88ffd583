// Pixels and reference pictures for the window tests.
#pragma once

#include <gtest/gtest.h>

#include <QColor>
#include <QDir>
#include <QImage>
#include <QRect>
#include <QWidget>

#include "ui/qt_style.h"
#include "ui/snapshot.h"

namespace uitest {

inline QString RefPath(const QString& name) {
    return QStringLiteral(TARVELLOS_SOURCE_DIR "/tests/data/ui/") + name + ".png";
}
inline QString OutPath(const QString& name) {
    QDir().mkpath(QStringLiteral(TARVELLOS_BINARY_DIR "/ui-shots"));
    return QStringLiteral(TARVELLOS_BINARY_DIR "/ui-shots/") + name + ".png";
}

// Compares a window with its reviewed reference picture. The picture taken
// is always written to the build folder's ui-shots for review; with
// TARVELLOS_UPDATE_UI_REFS set it also becomes the new reference.
inline ::testing::AssertionResult MatchesReference(QWidget& w, const QString& name) {
    const QImage shot = ui::Snapshot(w);
    shot.save(OutPath(name));
    if (qEnvironmentVariableIsSet("TARVELLOS_UPDATE_UI_REFS")) shot.save(RefPath(name));
    QImage ref(RefPath(name));
    if (ref.isNull()) return ::testing::AssertionFailure() << "no reference picture " << qPrintable(RefPath(name));
    ref = ref.convertToFormat(QImage::Format_RGB32);
    if (ref.size() != shot.size())
        return ::testing::AssertionFailure() << qPrintable(name) << ": size " << shot.width() << "x" << shot.height()
                                             << ", reference " << ref.width() << "x" << ref.height();
    int differ = 0;
    QPoint first;
    for (int y = 0; y < ref.height(); ++y)
        for (int x = 0; x < ref.width(); ++x)
            if (ref.pixel(x, y) != shot.pixel(x, y) && differ++ == 0) first = QPoint(x, y);
    if (differ == 0) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << qPrintable(name) << ": " << differ << " pixels differ, first at ("
                                         << first.x() << ", " << first.y() << "); see " << qPrintable(OutPath(name));
}

// How many pixels of a colour lie in a rectangle of the picture.
inline int CountColor(const QImage& img, const QRect& r, const QColor& c) {
    int n = 0;
    const QRect area = r.intersected(img.rect());
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (QColor(img.pixel(x, y)).rgb() == c.rgb()) ++n;
    return n;
}

// Pixels that are clearly of a hue: strong in `channel` (0 red, 1 green,
// 2 blue) and weak in the others. Anti-aliased text keeps its hue.
inline int CountHue(const QImage& img, const QRect& r, int channel) {
    int n = 0;
    const QRect area = r.intersected(img.rect());
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) {
            const QColor c(img.pixel(x, y));
            const int v[3] = {c.red(), c.green(), c.blue()};
            const int others = channel == 0 ? std::max(v[1], v[2]) : channel == 1 ? std::max(v[0], v[2])
                                                                                   : std::max(v[0], v[1]);
            if (v[channel] >= 128 && others <= v[channel] / 2) ++n;
        }
    return n;
}

// Pixels darker than mid grey (ink of black text).
inline int CountDark(const QImage& img, const QRect& r) {
    int n = 0;
    const QRect area = r.intersected(img.rect());
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (qGray(img.pixel(x, y)) < 96) ++n;
    return n;
}

}  // namespace uitest
