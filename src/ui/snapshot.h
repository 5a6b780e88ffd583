// Renders a window offscreen to a PNG: for the demo's pictures and for the
// screenshot tests.
#pragma once

#include <QImage>
#include <QString>

class QWidget;

namespace ui {

// The window's client area as it would be painted now (not shown on the
// screen). Layouts are settled first.
QImage Snapshot(QWidget& w);
// Snapshot written as a PNG; false when the file cannot be written.
bool SaveSnapshot(QWidget& w, const QString& path);

}  // namespace ui
