// Another program that holds the keyboard focus: a plain window with a text
// box, for the window-behaviour test.
#include <QApplication>
#include <QLineEdit>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QLineEdit edit;
    edit.setWindowTitle(QStringLiteral("Focus Holder"));
    edit.setGeometry(1320, 40, 240, 40);
    edit.show();
    edit.activateWindow();
    edit.setFocus();
    return QApplication::exec();
}
