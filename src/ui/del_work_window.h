// frmDelWork: the confirmation before the work folder is emptied into
// backups or restored from them.
#pragma once

#include <QDialog>
#include <functional>

#include "display/work_folder.h"

class QPushButton;

namespace ui {

class FrmDelWork : public QDialog {
    Q_OBJECT
public:
    explicit FrmDelWork(QWidget* parent = nullptr);
    void setModel(const display::DelWorkDialog& m);
    QPushButton* deleteButton() const { return cmdDelete_; }
    QPushButton* cancelButton() const { return cmdCancel_; }

    // The `ask` of cmdDelFiles_Click: shows the dialog modally and records
    // the answer in the model.
    static std::function<void(display::DelWorkDialog&)> Asker(QWidget* parent);

signals:
    void deleteConfirmed();
    void cancelled();

protected:
    void paintEvent(QPaintEvent*) override;

private:
    display::DelWorkDialog m_;
    QPushButton* cmdDelete_;
    QPushButton* cmdCancel_;
    int textHeight_ = 0;
};

}  // namespace ui
