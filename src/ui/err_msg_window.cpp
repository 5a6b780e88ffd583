#include "ui/err_msg_window.h"

#include <QFontMetrics>
#include <QPainter>

#include "ui/qt_style.h"

namespace ui {

FrmErrMsg::FrmErrMsg(QWidget* parent) : CompanionWindow(parent) {
    setWindowTitle(QStringLiteral(" Error Message"));
    setFixedSize(kMinWidth, kHeight);
}

void FrmErrMsg::setModel(const display::ErrMsgWindow& m) {
    font_ = m.FontName;
    size_ = m.FontSize;
    x_ = m.TextX;
    y_ = m.TextY;
    text_ = m.Text;
    setWindowTitle(Q(m.Caption));
    // Sized to the sentence, never narrower than the design.
    const QFontMetrics fm(ToQFont(font_, size_, false));
    const int w = std::max(kMinWidth, x_ + fm.horizontalAdvance(Q(text_)) + 12);
    setFixedSize(w, std::max(kHeight, y_ + fm.height() + 8));
    if (m.Visible != isVisible()) setVisible(m.Visible);
    if (m.Visible) RaiseWindow(this);
    update();
}

void FrmErrMsg::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const QFont f = ToQFont(font_, size_, false);
    p.setFont(f);
    p.setPen(Qt::black);
    p.drawText(x_, y_ + QFontMetrics(f).ascent(), Q(text_));
}

}  // namespace ui
