#include "ui/card_windows.h"

#include <QPainter>

#include "ui/qt_style.h"

namespace ui {

QImage ToQImage(const platform::Image& img) {
    QImage out(img.Width, img.Height, QImage::Format_RGB32);
    for (int y = 0; y < img.Height; ++y) {
        auto* row = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < img.Width; ++x) row[x] = 0xFF000000u | img.At(x, y);
    }
    return out;
}

CardSheets MakeCardSheets(const display::CardSheet& card, const display::TextSheet& text) {
    CardSheets s;
    s.Card = ToQImage(card.Image);
    s.Text = QImage(std::max(1, text.Width), std::max(1, text.Height), QImage::Format_RGB32);
    s.Text.fill(ToQColor(text.Items.BackColor));
    QPainter p(&s.Text);
    PaintDrawList(p, text.Items, nullptr);
    return s;
}

void PaintDrawList(QPainter& p, const core::DrawList& list, const CardSheets* sheets, const QImage* mainSurface) {
    for (const core::DrawItem& item : list.Items) {
        if (const auto* t = std::get_if<core::DrawText>(&item)) {
            PaintText(p, *t);
        } else if (const auto* i = std::get_if<core::DrawImage>(&item)) {
            const QImage* src = nullptr;
            switch (i->Source) {
                case core::SheetId::CardSheet: src = sheets ? &sheets->Card : nullptr; break;
                case core::SheetId::TextSheet: src = sheets ? &sheets->Text : nullptr; break;
                case core::SheetId::MainSurface: src = mainSurface; break;
            }
            if (src && !src->isNull()) p.drawImage(QPoint(i->X, i->Y), *src, QRect(i->SrcX, i->SrcY, i->Width, i->Height));
        } else if (const auto* r = std::get_if<core::DrawRect>(&item)) {
            p.setPen(QPen(ToQColor(r->LineColor), 1));
            p.setBrush(Qt::NoBrush);
            p.drawRect(r->X, r->Y, std::max(0, r->Width - 1), std::max(0, r->Height - 1));
        } else if (const auto* l = std::get_if<core::DrawLine>(&item)) {
            p.setPen(QPen(ToQColor(l->LineColor), l->Width));
            p.drawLine(QPointF(l->X1, l->Y1), QPointF(l->X2, l->Y2));
        }
    }
}

FrmCardPlay::FrmCardPlay(const CardSheets& sheets, QWidget* parent) : CompanionWindow(parent), sheets_(sheets) {}

void FrmCardPlay::setModel(const display::CardPlayWindow& m) {
    m_ = m;
    applyWindow(m_.Window);
}

void FrmCardPlay::paintEvent(QPaintEvent*) {
    QPainter p(this);
    PaintFrame(p, m_.Frame);
    PaintLine(p, m_.Line);
    for (const auto& l : m_.TrickNo) PaintLabel(p, l);
    for (const auto& l : m_.SeatLabel) PaintLabel(p, l);
    PaintDrawList(p, m_.Items, &sheets_);
}

FrmHands::FrmHands(const CardSheets& sheets, QWidget* parent) : CompanionWindow(parent), sheets_(sheets) {}

void FrmHands::setModel(const tracking::HandWindow& m) {
    m_ = m;
    applyWindow(m_.Window);
}

void FrmHands::paintEvent(QPaintEvent*) {
    QPainter p(this);
    // The four hands stand a few pixels in from the window's edge.
    p.save();
    p.translate(6, 2);
    PaintDrawList(p, m_.Hands.Items, &sheets_);
    p.restore();
    PaintDrawList(p, m_.TrickTable, &sheets_);
}

ScoreSheetView::ScoreSheetView(QWidget* parent) : QWidget(parent) { setAttribute(Qt::WA_OpaquePaintEvent); }

void ScoreSheetView::setModel(const scoring::ScoreSheet& m) {
    m_ = m;
    render();
    update();
}

void ScoreSheetView::resizeEvent(QResizeEvent*) { render(); }

void ScoreSheetView::render() {
    if (width() <= 0 || height() <= 0) return;
    if (surface_.size() != size()) surface_ = QImage(size(), QImage::Format_RGB32);
    const QWidget* host = parentWidget();
    surface_.fill(host ? host->palette().color(QPalette::Window) : ToQColor(core::kMainWindowBackColor));
    QPainter p(&surface_);
    PaintFrame(p, m_.Frame);
    PaintLine(p, m_.Line1);
    PaintLine(p, m_.Line2);
    for (const auto& l : m_.Label1) PaintLabel(p, l);
    PaintDrawList(p, m_.Main, nullptr);
}

void ScoreSheetView::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.drawImage(0, 0, surface_);
}

FrmScore::FrmScore(const ScoreSheetView& sheet, QWidget* parent) : CompanionWindow(parent), sheet_(sheet) {}

void FrmScore::setModel(const scoring::ScoreWindow& m) {
    m_ = m;
    applyWindow(m_.Window);
}

void FrmScore::paintEvent(QPaintEvent*) {
    QPainter p(this);
    for (const auto& l : m_.MyName) PaintLabel(p, l);
    if (!m_.pic.Visible) return;
    const QRect pic(m_.pic.Left, m_.pic.Top, m_.pic.Width, m_.pic.Height);
    p.fillRect(pic, ToQColor(m_.picItems.BackColor));
    p.setClipRect(pic);
    p.translate(pic.topLeft());
    PaintDrawList(p, m_.picItems, nullptr, &sheet_.surface());
}

}  // namespace ui
