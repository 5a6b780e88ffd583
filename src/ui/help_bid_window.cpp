#include "ui/help_bid_window.h"

#include <QPainter>

#include "ui/qt_style.h"

namespace ui {

FrmHelpBid::FrmHelpBid(QWidget* parent) : CompanionWindow(parent) {
    // The user's close ends the help for the deal (HelpState 0); the engine
    // learns it from closedByUser.
    setModel(m_);
}

void FrmHelpBid::setModel(const scoring::HelpBid& m) {
    m_ = m;
    applyWindow(m_.Window);
}

void FrmHelpBid::paintEvent(QPaintEvent*) {
    QPainter p(this);
    // The frame holds the bid labels; the figures are printed from the
    // first column on, so the frame stops short of them.
    core::Shape frame = m_.Shape1;
    for (const auto& d : m_.Items) frame.Width = std::min(frame.Width, static_cast<int>(d.X) - 2 - frame.Left);
    PaintFrame(p, frame);
    PaintLine(p, m_.Line1);
    PaintLine(p, m_.Line3);
    PaintLine(p, m_.Line5);
    for (const auto& l : m_.Capt) PaintLabel(p, l);
    for (const auto& l : m_.TheyBid) PaintLabel(p, l);
    for (const auto& l : m_.YouBid) PaintLabel(p, l);
    for (const auto& d : m_.Items) PaintText(p, d);
}

}  // namespace ui
