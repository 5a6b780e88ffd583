#include "ui/board_window.h"

#include "core/settings.h"
#include "ui/qt_style.h"

namespace ui {

namespace {

constexpr int kCell = 44;  // bid buttons are squares this size
constexpr int kGap = 4;
constexpr int kCols = 5;
constexpr int kWideHeight = 40;
constexpr int kSmallHeight = 28;

// Bid buttons white, Nil and Double Nil rose, the confirmation and Show pale
// yellow, the answers grey: the kinds stay apart at a glance.
core::Color ButtonColor(int index) {
    if (index <= 13) return 0xFFFFFF;
    if (index == 14 || index == 15) return 0xE0C0FF;
    if (index == 16 || index == 17) return 0xC0FFFF;
    return 0xE0E0E0;
}

}  // namespace

FrmBoard::FrmBoard(QWidget* parent) : CompanionWindow(parent) {
    for (int i = 1; i < tracking::kBoardButtons; ++i) {
        auto* b = new QPushButton(this);
        b->setFocusPolicy(Qt::NoFocus);
        b->setObjectName(QStringLiteral("Btn%1").arg(i));
        const bool big = i <= 17;
        b->setFont(ToQFont("Arial", big ? 14 : 10, big));
        b->setStyleSheet(QStringLiteral("QPushButton{background-color:%1;border:1px solid #404040;}"
                                        "QPushButton:pressed{background-color:#808080;}")
                             .arg(ToQColor(ButtonColor(i)).name()));
        b->hide();
        connect(b, &QPushButton::clicked, this, [this, i] { emit boardButtonClicked(i); });
        btn_[static_cast<std::size_t>(i)] = b;
    }
    setModel(m_);
}

void FrmBoard::setModel(const tracking::Board& m) {
    m_ = m;
    setWindowTitle(Q(m_.Caption));
    QPalette pal = palette();
    pal.setColor(QPalette::Window, ToQColor(core::kMainWindowBackColor));
    setPalette(pal);
    for (int i = 1; i < tracking::kBoardButtons; ++i) {
        const auto& bm = m_.Btn[static_cast<std::size_t>(i)];
        btn_[static_cast<std::size_t>(i)]->setText(Q(bm.Caption));
        btn_[static_cast<std::size_t>(i)]->setVisible(bm.Visible);
    }
    layoutButtons();
    if (m_.Visible != isVisible()) setVisible(m_.Visible);
    if (m_.Visible && m_.Topmost) RaiseWindow(this);
}

void FrmBoard::layoutButtons() {
    // Bids in rows of five, Nil after 13; the wide buttons (Double Nil,
    // Show, the confirmation) one per row below; the answers in a last row.
    const int width = kGap + kCols * (kCell + kGap);
    int y = kGap;
    bool anyBid = false;
    for (int i = 1; i <= 14; ++i) {
        if (!m_.Btn[static_cast<std::size_t>(i)].Visible) continue;
        anyBid = true;
        const int k = i - 1;
        btn_[static_cast<std::size_t>(i)]->setGeometry(kGap + (k % kCols) * (kCell + kGap),
                                                       kGap + (k / kCols) * (kCell + kGap), kCell, kCell);
    }
    if (anyBid) y += 3 * (kCell + kGap);
    for (int i : {15, 17, 16}) {
        if (!m_.Btn[static_cast<std::size_t>(i)].Visible) continue;
        btn_[static_cast<std::size_t>(i)]->setGeometry(kGap, y, width - 2 * kGap, kWideHeight);
        y += kWideHeight + kGap;
    }
    int shown = 0;
    for (int i : {18, 19, 20, 21}) shown += m_.Btn[static_cast<std::size_t>(i)].Visible ? 1 : 0;
    if (shown > 0) {
        const int w = (width - kGap) / shown - kGap;
        int x = kGap;
        for (int i : {18, 19, 20, 21}) {
            if (!m_.Btn[static_cast<std::size_t>(i)].Visible) continue;
            btn_[static_cast<std::size_t>(i)]->setGeometry(x, y, w, kSmallHeight);
            x += w + kGap;
        }
        y += kSmallHeight + kGap;
    }
    setFixedSize(width, std::max(y, kGap + kCell));
}

}  // namespace ui
