#include "ui/companion_window.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QMoveEvent>
#include <QPainter>

#include "ui/qt_style.h"

namespace ui {

CompanionWindow::CompanionWindow(QWidget* parent)
    : QWidget(parent, Qt::Tool | Qt::WindowStaysOnTopHint | Qt::WindowDoesNotAcceptFocus) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setAutoFillBackground(true);
}

void CompanionWindow::applyWindow(const core::WindowModel& w) {
    setWindowTitle(Q(w.Caption));
    QPalette pal = palette();
    pal.setColor(QPalette::Window, ToQColor(w.BackColor));
    setPalette(pal);
    const int cw = std::max(1, w.Width - kFrameWidth);
    const int ch = std::max(1, w.Height - kFrameHeight);
    if (size() != QSize(cw, ch)) setFixedSize(cw, ch);
    if (pos() != QPoint(w.Left, w.Top)) placeAt(w.Left, w.Top);
    if (w.Visible != isVisible()) setVisible(w.Visible);
    if (w.Visible && w.TopmostRequests != topmostRequests_) RaiseWindow(this);
    topmostRequests_ = w.TopmostRequests;
    update();
}

void CompanionWindow::placeAt(int left, int top) {
    placing_ = true;
    move(left, top);
    placing_ = false;
}

void CompanionWindow::moveEvent(QMoveEvent* e) {
    QWidget::moveEvent(e);
    if (!placing_ && isVisible() && e->pos() != e->oldPos()) emit dragged(pos());
}

void CompanionWindow::closeEvent(QCloseEvent* e) {
    // Companion windows are hidden, never destroyed; the engine decides.
    e->ignore();
    hide();
    emit closedByUser();
}

void RaiseWindow(QWidget* w) {
    if (QGuiApplication::platformName() != QLatin1String("offscreen")) w->raise();
}

void PaintLabel(QPainter& p, const core::Label& l) {
    if (!l.Visible || l.Caption.empty()) return;
    p.setFont(ToQFont(l.TextFont));
    p.setPen(ToQColor(l.ForeColor));
    const int h = l.Height > 0 ? l.Height : 18;
    const int w = l.Width > 0 ? l.Width : 400;
    // Labels of the forms are left-aligned and may run past their box.
    p.drawText(QRect(l.Left, l.Top, w + 200, h), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, Q(l.Caption));
}

void PaintText(QPainter& p, const core::DrawText& d) {
    const QFont f = ToQFont(d.Typeface, d.Size, d.Bold);
    p.setFont(f);
    p.setPen(ToQColor(d.ForeColor));
    // (X, Y) is the top-left of the text cell.
    const QFontMetricsF m(f);
    p.drawText(QPointF(d.X, d.Y + m.ascent()), Q(d.Text));
}

void PaintFrame(QPainter& p, const core::Shape& s, core::Color color) {
    if (!s.Visible) return;
    p.setPen(QPen(ToQColor(color), 1));
    p.setBrush(Qt::NoBrush);
    p.drawRect(s.Left, s.Top, std::max(0, s.Width - 1), std::max(0, s.Height - 1));
}

void PaintLine(QPainter& p, const core::Shape& s, core::Color color) {
    if (!s.Visible) return;
    p.setPen(QPen(ToQColor(color), 1));
    p.drawLine(s.Left, s.Top, s.Left + s.Width, s.Top + s.Height);
}

}  // namespace ui
