// The windows need an application object; they are painted offscreen, with
// the fonts they name loaded from their files so every run paints the same
// pixels.
#include <gtest/gtest.h>

#include <QApplication>
#include <QStyleFactory>
#include <cstdio>
#include <cstdlib>

#include "ui/qt_style.h"

int main(int argc, char** argv) {
    if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication app(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QStringList missing = ui::RegisterWindowFonts();
    if (!missing.isEmpty()) {
        for (const QString& f : missing) std::fprintf(stderr, "missing font file: %s\n", qPrintable(f));
        std::fprintf(stderr, "install fonts-liberation and fonts-ipafont-gothic (scripts/install-deps)\n");
        return 1;
    }
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
