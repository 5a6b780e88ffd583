// frmHelpBid: the bid help for the third and fourth seat.
#pragma once

#include "scoring/help_bid.h"
#include "ui/companion_window.h"

namespace ui {

class FrmHelpBid : public CompanionWindow {
    Q_OBJECT
public:
    explicit FrmHelpBid(QWidget* parent = nullptr);
    void setModel(const scoring::HelpBid& m);
    const scoring::HelpBid& model() const { return m_; }

protected:
    void paintEvent(QPaintEvent*) override;

private:
    scoring::HelpBid m_;
};

}  // namespace ui
