// frmErrMsg: why a capture could not be made.
#pragma once

#include "display/err_msg.h"
#include "ui/companion_window.h"

namespace ui {

class FrmErrMsg : public CompanionWindow {
    Q_OBJECT
public:
    explicit FrmErrMsg(QWidget* parent = nullptr);
    // Copies what the window shows; the model itself holds a desktop.
    void setModel(const display::ErrMsgWindow& m);

    static constexpr int kMinWidth = 300;
    static constexpr int kHeight = 40;

protected:
    void paintEvent(QPaintEvent*) override;

private:
    std::string font_ = "Arial";
    int size_ = 13, x_ = 6, y_ = 4;
    std::string text_;
};

}  // namespace ui
