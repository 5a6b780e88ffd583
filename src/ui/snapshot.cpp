#include "ui/snapshot.h"

#include <QApplication>
#include <QLayout>
#include <QWidget>

namespace ui {

QImage Snapshot(QWidget& w) {
    w.ensurePolished();
    if (w.layout()) w.layout()->activate();
    QCoreApplication::sendPostedEvents();
    return w.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

bool SaveSnapshot(QWidget& w, const QString& path) { return Snapshot(w).save(path, "PNG"); }

}  // namespace ui
