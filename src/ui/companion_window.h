// What every companion window shares: it is a tool window that stays on top
// and never takes the keyboard focus from the game, it stands where its
// model says, and it tells the engine where the user dragged it so the
// position can be saved.
#pragma once

#include <QPoint>
#include <QWidget>

#include "core/view_model.h"

class QPainter;

namespace ui {

class CompanionWindow : public QWidget {
    Q_OBJECT
public:
    explicit CompanionWindow(QWidget* parent = nullptr);

    // Caption, back colour, place, size and visibility of the window model.
    // The model's size is the outer size; the caption bar and borders the
    // window system adds are taken off so the client area matches the form.
    void applyWindow(const core::WindowModel& w);
    // Moves the window without reporting the move as the user's.
    void placeAt(int left, int top);
    // Client size when the window system frame is not known (offscreen).
    static constexpr int kFrameHeight = 26;
    static constexpr int kFrameWidth = 6;

signals:
    // The user moved the window; the new top-left in screen pixels.
    void dragged(QPoint topLeft);
    // The user closed the window with its close box.
    void closedByUser();

protected:
    void moveEvent(QMoveEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

private:
    bool placing_ = false;
    int topmostRequests_ = -1;
};

// Puts a window above the others (a no-op where the platform has no
// stacking, as offscreen).
void RaiseWindow(QWidget* w);

// Painting of the model vocabulary.
void PaintLabel(QPainter& p, const core::Label& l);
void PaintText(QPainter& p, const core::DrawText& d);
void PaintFrame(QPainter& p, const core::Shape& s, core::Color color = core::Black);
void PaintLine(QPainter& p, const core::Shape& s, core::Color color = core::Black);

}  // namespace ui
