#include "ui/alert_windows.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

#include "ui/qt_style.h"

namespace ui {

FrmAskAlert::FrmAskAlert(QWidget* parent) : CompanionWindow(parent) {
    cmdAsk_ = new QPushButton(this);
    cmdAsk_->setFocusPolicy(Qt::NoFocus);
    cmdAsk_->setGeometry(4, 4, kWidth - 8, kHeight - 8);
    cmdAsk_->setFont(ToQFont("Arial", 9, false));
    connect(cmdAsk_, &QPushButton::clicked, this, &FrmAskAlert::askClicked);
    setFixedSize(kWidth, kHeight);
    setModel(players::AskAlertWindow{});
}

void FrmAskAlert::setModel(const players::AskAlertWindow& m) {
    setWindowTitle(QString());
    QPalette pal = palette();
    pal.setColor(QPalette::Window, ToQColor(m.BackColor));
    setPalette(pal);
    cmdAsk_->setText(Q(m.cmdAsk.Caption));
    cmdAsk_->setToolTip(Q(m.cmdAsk.ToolTip));
    cmdAsk_->setStyleSheet(QStringLiteral("QPushButton{background-color:%1;border:1px solid #404040;}")
                               .arg(ToQColor(m.cmdAsk.BackColor).name()));
    if (!m.cmdAsk.FontName.empty()) cmdAsk_->setFont(ToQFont(m.cmdAsk.FontName, 9, false));
    if (pos() != QPoint(m.X, m.Y)) placeAt(m.X, m.Y);
    const bool show = m.Loaded && m.Visible;
    if (show != isVisible()) setVisible(show);
}

FrmReason::FrmReason(QWidget* parent) : QDialog(parent) {
    setModal(true);
    setWindowFlag(Qt::WindowStaysOnTopHint, true);
    setFont(ToQFont("Arial", 10, false));
    txtReason_ = new QLineEdit(this);
    txtReason_->setGeometry(6, 6, 168, 22);
    boxReason_ = new QListWidget(this);
    boxReason_->setGeometry(6, 32, 168, 206);
    setFixedSize(180, 244);
    connect(boxReason_, &QListWidget::itemClicked, this, [this](QListWidgetItem* it) {
        txtReason_->setText(it->text());
        emit itemChosen(boxReason_->row(it));
        finish();
    });
    connect(txtReason_, &QLineEdit::returnPressed, this, &FrmReason::finish);
}

void FrmReason::setModel(const players::ReasonDialog& m) {
    setWindowTitle(Q(m.Caption));
    txtReason_->setText(Q(m.txtReason));
    boxReason_->clear();
    for (const auto& item : m.boxReason) boxReason_->addItem(Q(item));
    if (!m.ListFontName.empty()) boxReason_->setFont(ToQFont(m.ListFontName, 10, false));
    if (m.ListIndex >= 0 && m.ListIndex < boxReason_->count()) boxReason_->setCurrentRow(m.ListIndex);
}

QString FrmReason::reason() const { return txtReason_->text(); }

void FrmReason::finish() {
    if (finished_) return;
    finished_ = true;
    emit reasonChosen(reason());
    accept();
}

void FrmReason::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) {
        finish();
        return;
    }
    QDialog::keyPressEvent(e);
}

void FrmReason::closeEvent(QCloseEvent* e) {
    // Closing the window any other way also takes the text box's text.
    finish();
    QDialog::closeEvent(e);
}

players::ReasonQuestion FrmReason::Asker(QWidget* mainWindow) {
    return [mainWindow](players::ReasonDialog& model) {
        FrmReason dlg(mainWindow);
        model.Load();
        dlg.setModel(model);
        if (mainWindow) {
            const int off = model.OffsetTwips / core::TwipsPerPixel;
            dlg.move(mainWindow->pos() + QPoint(off, off));
        }
        int chosen = -1;
        QObject::connect(&dlg, &FrmReason::itemChosen, &dlg, [&chosen](int i) { chosen = i; });
        dlg.exec();
        if (chosen >= 0) {
            model.ClickItem(chosen);
        } else {
            model.txtReason = dlg.reason().toStdString();
            model.KeyDown(13);
        }
    };
}

}  // namespace ui
