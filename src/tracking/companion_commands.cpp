// The companion's commands on its own files and lists: the file box
// (showing, deleting and restoring records), emptying the work folder, the
// alert list's seat menu and prompt, and where the player put its windows.
#include "display/work_folder.h"
#include "tracking/companion.h"

namespace tracking {

int Companion::OpenRecord(const std::string& name) {
    if (e_.Busy.Any() || e_.Models.filBox.DeleteState != display::DelIdle || !e_.Records) return -1;
    BusyFlags::Guard guard(e_.Busy, Busy::FileView);
    display::DealRecord rec;
    const int code = e_.Records->LoadRecord(name, static_cast<int>(e_.Online), rec);
    if (code == 0) {
        shown_ = rec;
        shownName_ = name;
        if (e_.Alerts) e_.Alerts->CheckSeatPlayers(rec.Names);
        auto& z = e_.Models.frmZ;
        for (int k = 0; k < 4; ++k) z.plName[k].Caption = rec.Names[e_.Seats.SeatAt(k)];
    } else {
        e_.ShowError("Failed in reading \"" + name + display::RecordExt + "\".");
    }
    e_.Changed();
    return code;
}

void Companion::SelectRecord(int index, bool selected) {
    e_.Models.filBox.Select(index, selected);
    e_.Changed();
}

bool Companion::DeleteRecord() {
    const bool started = e_.Models.filBox.filBox_KeyDown(display::KeyDelete);
    e_.Changed();
    return started;
}

void Companion::ConfirmDelete() {
    e_.Models.filBox.cmdDEL_Click(e_.Folders.WorkFolder());
    e_.Changed();
}

void Companion::UndoDelete() {
    e_.Models.filBox.cmdUndo_Click();
    e_.Changed();
}

display::DelWorkResult Companion::EmptyWorkFolder(bool confirm) {
    return EmptyWorkFolder([confirm](display::DelWorkDialog& d) {
        if (confirm) d.cmdDelete_Click();
        else d.cmdCancel_Click();
    });
}

display::DelWorkResult Companion::EmptyWorkFolder(const std::function<void(display::DelWorkDialog&)>& ask) {
    const bool busy = e_.Busy.Any() || e_.Models.filBox.DeleteState != display::DelIdle;
    display::DelWorkResult r =
        display::cmdDelFiles_Click(e_.Folders.WorkFolder(), display::TableModeSpades, e_.Settings.JPN,
                                   e_.Models.frmZ.Rect, busy, ask, e_.Models.filBox, e_.Record);
    e_.Changed();
    return r;
}

void Companion::ChooseSeatMenuEntry(int pos, const std::string& reason) {
    ChooseSeatMenuEntry(pos, [&reason](players::ReasonDialog& d) {
        d.txtReason = reason;
        d.KeyDown(13);
    });
}

void Companion::ChooseSeatMenuEntry(int pos, const players::ReasonQuestion& ask) {
    if (!e_.Alerts || pos < 0 || pos > 3) return;
    e_.Alerts->menuPlayer_Click(pos, ask);
    e_.Changed();
}

void Companion::PressPromptButton() {
    if (!e_.Alerts) return;
    e_.Alerts->cmdAsk_Click();
    e_.Changed();
}

void Companion::PressNoneButton() {
    if (!e_.Alerts) return;
    e_.Alerts->View.cmdAlertNone.Visible = false;
    players::TableAccess t = e_.TableAccessNow(windows_.Game());
    e_.Alerts->ExecAskAlert(t);
    e_.Changed();
}

void Companion::MoveCompanionWindow(CompanionWindow w, int x, int y) {
    auto& m = e_.Models;
    if (w == CompanionWindow::Main) {
        const int wd = m.frmZ.Rect.Width(), ht = m.frmZ.Rect.Height();
        m.frmZ.Rect = {x, y, x + wd, y + ht};
        return;
    }
    core::WindowModel* moved = nullptr;
    switch (w) {
        case CompanionWindow::LeftCounter: moved = &m.Counters.frmCounter0.Window; break;
        case CompanionWindow::RightCounter: moved = &m.Counters.frmCounter.Window; break;
        case CompanionWindow::HelpBid: moved = &m.frmHelpBid.Window; break;
        case CompanionWindow::CardPlay: moved = &m.frmCardPlay.Window; break;
        case CompanionWindow::Score: moved = &m.frmScore.Window; break;
        case CompanionWindow::Hands: moved = &m.Hands.Window; break;
        default: break;
    }
    if (moved) {
        moved->Left = x;
        moved->Top = y;
    }
}

}  // namespace tracking
