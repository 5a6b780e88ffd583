// The alert prompt frmAskAlert and the reason dialog frmReason.
#pragma once

#include <QDialog>

#include "players/alert_checks.h"
#include "ui/companion_window.h"

class QLineEdit;
class QListWidget;
class QPushButton;

namespace ui {

class FrmAskAlert : public CompanionWindow {
    Q_OBJECT
public:
    explicit FrmAskAlert(QWidget* parent = nullptr);
    void setModel(const players::AskAlertWindow& m);
    QPushButton* askButton() const { return cmdAsk_; }

    static constexpr int kWidth = 120;
    static constexpr int kHeight = 32;

signals:
    void askClicked();

private:
    QPushButton* cmdAsk_;
};

// The reason dialog. It is modal and topmost; whichever way it closes, the
// text box's text is the reason.
class FrmReason : public QDialog {
    Q_OBJECT
public:
    explicit FrmReason(QWidget* parent = nullptr);
    // Caption, text box, list items and selection of the model.
    void setModel(const players::ReasonDialog& m);
    QLineEdit* textBox() const { return txtReason_; }
    QListWidget* list() const { return boxReason_; }
    QString reason() const;

    // A ReasonQuestion for the alert checker: shows the dialog modally at
    // the main window's left and top plus the dialog's offset, and hands the
    // user's answer to the model (ClickItem, Enter, or closing).
    static players::ReasonQuestion Asker(QWidget* mainWindow);

signals:
    // The user picked a list item (index into boxReason).
    void itemChosen(int index);
    // The dialog closed with this reason.
    void reasonChosen(QString reason);

protected:
    void keyPressEvent(QKeyEvent* e) override;
    void closeEvent(QCloseEvent* e) override;

private:
    void finish();
    QLineEdit* txtReason_;
    QListWidget* boxReason_;
    bool finished_ = false;
};

}  // namespace ui
