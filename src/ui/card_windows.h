// The windows that copy cards out of the prepared sheets and the score
// sheet: the card play window, the hand display (four hands and the trick
// table), the score sheet on the main window and the small score window.
// They only paint their models; where each card and figure goes is decided
// by the display and scoring libraries.
#pragma once

#include <QImage>
#include <QWidget>

#include "core/draw_list.h"
#include "display/card_play.h"
#include "display/card_sheets.h"
#include "platform/image.h"
#include "scoring/score_sheet.h"
#include "tracking/companion_models.h"
#include "ui/companion_window.h"

class QPainter;

namespace ui {

// An image of the logic (0x00RRGGBB) as a Qt image.
QImage ToQImage(const platform::Image& img);

// The card sheet and the text-font sheet as images, made once: the text
// sheet's characters are printed here in the real fonts.
struct CardSheets {
    QImage Card;
    QImage Text;
};
CardSheets MakeCardSheets(const display::CardSheet& card, const display::TextSheet& text);

// Paints a draw list in order: texts, block copies out of the sheets given
// (a missing sheet skips its copies), outlines and lines.
void PaintDrawList(QPainter& p, const core::DrawList& list, const CardSheets* sheets, const QImage* mainSurface = nullptr);

class FrmCardPlay : public CompanionWindow {
    Q_OBJECT
public:
    FrmCardPlay(const CardSheets& sheets, QWidget* parent = nullptr);
    void setModel(const display::CardPlayWindow& m);
    const display::CardPlayWindow& model() const { return m_; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    const CardSheets& sheets_;
    display::CardPlayWindow m_;
};

class FrmHands : public CompanionWindow {
    Q_OBJECT
public:
    FrmHands(const CardSheets& sheets, QWidget* parent = nullptr);
    void setModel(const tracking::HandWindow& m);
    const tracking::HandWindow& model() const { return m_; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    const CardSheets& sheets_;
    tracking::HandWindow m_;
};

// The score sheet's part of the main window. It keeps what it drew as an
// image: the score window pastes its blocks from there.
class ScoreSheetView : public QWidget {
    Q_OBJECT
public:
    explicit ScoreSheetView(QWidget* parent = nullptr);
    void setModel(const scoring::ScoreSheet& m);
    const QImage& surface() const { return surface_; }

protected:
    void paintEvent(QPaintEvent*) override;
    void resizeEvent(QResizeEvent*) override;

private:
    void render();
    scoring::ScoreSheet m_;
    QImage surface_;
};

class FrmScore : public CompanionWindow {
    Q_OBJECT
public:
    // `sheet` is the main window's sheet the picture box pastes from.
    explicit FrmScore(const ScoreSheetView& sheet, QWidget* parent = nullptr);
    void setModel(const scoring::ScoreWindow& m);
    const scoring::ScoreWindow& model() const { return m_; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    const ScoreSheetView& sheet_;
    scoring::ScoreWindow m_;
};

}  // namespace ui
