#include "ui/del_work_window.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPushButton>

#include "ui/qt_style.h"

namespace ui {

namespace {
constexpr int kMargin = 8;
constexpr int kButtonHeight = 26;
}  // namespace

FrmDelWork::FrmDelWork(QWidget* parent) : QDialog(parent) {
    setModal(true);
    setWindowFlag(Qt::WindowStaysOnTopHint, true);
    setFont(ToQFont("Arial", 10, false));
    cmdDelete_ = new QPushButton(this);
    cmdDelete_->setObjectName(QStringLiteral("cmdDelete"));
    cmdCancel_ = new QPushButton(this);
    cmdCancel_->setObjectName(QStringLiteral("cmdCancel"));
    connect(cmdDelete_, &QPushButton::clicked, this, [this] {
        m_.cmdDelete_Click();
        emit deleteConfirmed();
        accept();
    });
    connect(cmdCancel_, &QPushButton::clicked, this, [this] {
        m_.cmdCancel_Click();
        emit cancelled();
        reject();
    });
    setModel(m_);
}

void FrmDelWork::setModel(const display::DelWorkDialog& m) {
    m_ = m;
    setWindowTitle(Q(m_.Caption));
    cmdDelete_->setText(Q(m_.ButtonCaption));
    cmdCancel_->setText(Q(m_.CancelCaption));
    cmdCancel_->setFont(ToQFont(m_.CancelFont.empty() ? std::string("Arial") : m_.CancelFont, 10, false));
    // One line per text piece; the dialog takes the size of its text.
    const QFontMetrics fm(font());
    int w = 0;
    for (const auto& line : m_.Lines) w = std::max(w, fm.horizontalAdvance(Q(line)));
    textHeight_ = static_cast<int>(m_.Lines.size()) * fm.height();
    const int bw1 = fm.horizontalAdvance(cmdDelete_->text()) + 24;
    const int bw2 = std::max(80, fm.horizontalAdvance(cmdCancel_->text()) + 24);
    w = std::max(w, bw1 + bw2 + kMargin) + 2 * kMargin;
    const int y = kMargin + textHeight_ + kMargin;
    cmdDelete_->setGeometry(kMargin, y, bw1, kButtonHeight);
    cmdCancel_->setGeometry(w - kMargin - bw2, y, bw2, kButtonHeight);
    setFixedSize(w, y + kButtonHeight + kMargin);
    if (m_.Rect.Width() > 0) move(m_.Rect.Left, m_.Rect.Top);
    update();
}

void FrmDelWork::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setFont(font());
    p.setPen(Qt::black);
    const QFontMetrics fm(font());
    int y = kMargin + fm.ascent();
    for (const auto& line : m_.Lines) {
        p.drawText(kMargin, y, Q(line));
        y += fm.height();
    }
}

std::function<void(display::DelWorkDialog&)> FrmDelWork::Asker(QWidget* parent) {
    return [parent](display::DelWorkDialog& model) {
        FrmDelWork dlg(parent);
        model.Visible = true;
        dlg.setModel(model);
        if (dlg.exec() == QDialog::Accepted) model.cmdDelete_Click();
        else model.cmdCancel_Click();
    };
}

}  // namespace ui
