// The bid and trick counters beside the game table: frmCounter0 while the
// bids come in, frmCounter once play begins.
#pragma once

#include "scoring/counter.h"
#include "ui/companion_window.h"

namespace ui {

class FrmCounter0 : public CompanionWindow {
    Q_OBJECT
public:
    explicit FrmCounter0(QWidget* parent = nullptr);
    void setModel(const scoring::LeftCounter& m);
    const scoring::LeftCounter& model() const { return m_; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    scoring::LeftCounter m_;
};

class FrmCounter : public CompanionWindow {
    Q_OBJECT
public:
    explicit FrmCounter(QWidget* parent = nullptr);
    void setModel(const scoring::RightCounter& m);
    const scoring::RightCounter& model() const { return m_; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    scoring::RightCounter m_;
};

}  // namespace ui
