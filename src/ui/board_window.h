// frmBoard, the bidding board: large buttons that press the game's bid
// buttons for the user, with a confirmation step.
#pragma once

#include <QPushButton>
#include <array>

#include "tracking/companion_models.h"
#include "ui/companion_window.h"

namespace ui {

class FrmBoard : public CompanionWindow {
    Q_OBJECT
public:
    explicit FrmBoard(QWidget* parent = nullptr);
    void setModel(const tracking::Board& m);
    const tracking::Board& model() const { return m_; }
    QPushButton* button(int index) const { return btn_.at(static_cast<std::size_t>(index)); }

signals:
    // Btn_Click with the board's button index (1..13 bids, 14 Nil, 15 Double
    // Nil, 16 Show, 17 confirmation, 18, 20, 21 the answers).
    void boardButtonClicked(int index);

private:
    void layoutButtons();
    tracking::Board m_;
    std::array<QPushButton*, tracking::kBoardButtons> btn_{};
};

}  // namespace ui
