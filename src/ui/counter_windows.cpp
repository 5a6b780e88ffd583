#include "ui/counter_windows.h"

#include <QPainter>

namespace ui {

FrmCounter0::FrmCounter0(QWidget* parent) : CompanionWindow(parent) { setModel(m_); }

void FrmCounter0::setModel(const scoring::LeftCounter& m) {
    m_ = m;
    applyWindow(m_.Window);
}

void FrmCounter0::paintEvent(QPaintEvent*) {
    QPainter p(this);
    PaintFrame(p, m_.Shape1);
    for (const auto& l : m_.Capt) PaintLabel(p, l);
    for (const auto& l : m_.cBid) PaintLabel(p, l);
    for (const auto& l : m_.cPts0) PaintLabel(p, l);
    for (const auto& l : m_.cBag0) PaintLabel(p, l);
}

FrmCounter::FrmCounter(QWidget* parent) : CompanionWindow(parent) { setModel(m_); }

void FrmCounter::setModel(const scoring::RightCounter& m) {
    m_ = m;
    applyWindow(m_.Window);
}

void FrmCounter::paintEvent(QPaintEvent*) {
    QPainter p(this);
    PaintFrame(p, m_.Shape1);
    for (const auto& l : m_.Capt) PaintLabel(p, l);
    for (const auto& l : m_.cBid) PaintLabel(p, l);
    for (const auto& l : m_.cTrk) PaintLabel(p, l);
    for (const auto& l : m_.cPts0) PaintLabel(p, l);
    for (const auto& l : m_.cBag0) PaintLabel(p, l);
    for (const auto& l : m_.aPt) PaintLabel(p, l);
    for (const auto& l : m_.cPts) PaintLabel(p, l);
    for (const auto& l : m_.cBag) PaintLabel(p, l);
}

}  // namespace ui
