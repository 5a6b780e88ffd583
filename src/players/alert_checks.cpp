#include "players/alert_checks.h"

#include <algorithm>

#include "core/text.h"

namespace players {

namespace {

const std::array<std::array<const char*, 3>, 2> kAlertButtonCaptions = {{
    {"None To Alert ?", " Wait ", "None"},
    {"アラート確認", "確認中", "該当者なし"},
}};

const std::vector<std::string> kReasonItems = {
    "Excellent", "Good",     "Bad Play", "Worst Play", "Careless",   "Overbidder", "Underbidder",
    "Wrong Bids", "NIL Mania", "NIL 4 Spades", "BAGer", "Slow",     "Staller",    "brb often",
    "Bad Manner", "Abusive", "Novice",   "Stupid",     "Kid",        "Cheater"};

// Ten short keys in a row of the walk mean the list has ended.
constexpr int kShortEntriesToEnd = 10;
constexpr std::size_t kMaxTableNames = 100;

// A reason becomes part of an entry in a comma-separated file: a comma or a
// line end in it would split the entry when the file is read back.
std::string CleanReason(const std::string& reason) {
    std::string out = reason;
    for (char& c : out) {
        if (c == ',') c = ';';
        if (c == '\r' || c == '\n') c = ' ';
    }
    return core::Trim(out);
}

}  // namespace

bool NamesMatch(const std::string& a, const std::string& b) {
    std::string x = core::LCase(core::Trim(a));
    std::string y = core::LCase(core::Trim(b));
    if (x.size() > y.size()) std::swap(x, y);
    if (x.empty()) return false;
    return y.compare(0, x.size(), x) == 0;
}

void PickUpCmt(std::string& cmt, const std::string& entry) {
    std::size_t open = entry.find('(');
    if (open == std::string::npos) return;
    std::size_t close = entry.find(')', open + 1);
    cmt = close == std::string::npos ? entry.substr(open + 1) : entry.substr(open + 1, close - open - 1);
}

std::string EntryKey(const std::string& entry) {
    std::string key = entry;
    if (!key.empty() && (key[0] == '<' || key[0] == '{')) {
        std::size_t n = core::Len(key);
        key = n >= 2 ? core::Mid(key, 2, static_cast<std::ptrdiff_t>(n) - 2) : std::string();
    }
    std::size_t open = key.find('(');
    if (open != std::string::npos) key.resize(open);
    return key;
}

void SearchNameInTable(std::string& found, std::int32_t& index, const std::vector<std::string>& list, bool retry,
                       TableNames& table, const PlayerListReader& readPlayerList) {
    index = 0;
    if (retry && readPlayerList) {
        for (int attempt = 0; attempt < 2; ++attempt) {
            readPlayerList(table);
            if (table.Read != 0) break;
        }
    }
    if (table.Read == 0) return;

    std::size_t names = std::min(table.Names.size(), kMaxTableNames);
    int shortEntries = 0;
    for (std::size_t slot = 1; slot < list.size(); ++slot) {
        std::string key = EntryKey(list[slot]);
        if (core::Len(key) < 4) {
            if (++shortEntries >= kShortEntriesToEnd) break;
            continue;
        }
        for (std::size_t k = 0; k < names && !table.Names[k].empty(); ++k) {
            if (table.Names[k].find(key) != std::string::npos) {
                found = table.Names[k];
                index = static_cast<std::int32_t>(slot);
                return;
            }
        }
    }
    found.clear();
}

const std::vector<std::string>& ReasonItems() { return kReasonItems; }

ReasonDialog::ReasonDialog(platform::Clock& clock, bool japanese)
    : Caption(japanese ? "アラートの理由" : "Why Alert ?"), boxReason(kReasonItems), clock_(clock) {}

void ReasonDialog::Load() {
    ListIndex = -1;
    for (std::size_t i = 0; i < boxReason.size(); ++i) {
        if (boxReason[i] == txtReason) {
            ListIndex = static_cast<std::int32_t>(i);
            break;
        }
    }
}

void ReasonDialog::ClickItem(std::int32_t i) {
    if (closed_ || i < 0 || static_cast<std::size_t>(i) >= boxReason.size()) return;
    ListIndex = i;
    txtReason = boxReason[static_cast<std::size_t>(i)];
    alertReason_ = txtReason;
    // The choice stays on the screen for a moment before the dialog closes.
    clock_.Wait(1000);
    closed_ = true;
}

void ReasonDialog::KeyDown(std::int32_t keyCode) {
    if (keyCode == 13) Close();
}

void ReasonDialog::Close() {
    if (closed_) return;
    alertReason_ = txtReason;
    closed_ = true;
}

AlertChecker::AlertChecker(AlertList& list, platform::Windows& windows, platform::Sound& sound, platform::Clock& clock)
    : list_(list), windows_(windows), sound_(sound), clock_(clock) {
    SetCaptions();
}

void AlertChecker::SetCaptions() {
    const auto& captions = kAlertButtonCaptions[Options.Japanese ? 1 : 0];
    View.AlertName.Caption = "Player Alerted";
    View.AlertName.Visible = false;
    View.cmdAlertNone.Caption = captions[0];
    View.cmdAlertNone.ToolTip = "No Players to Alert";
    View.cmdAlertNone.FontName = Options.Japanese ? Options.JapaneseFont : std::string();
    View.cmdAlertNone.Visible = false;
    View.cmdAlertNone.BackColor = AlertLightBlue;
    static const std::array<const char*, 4> seats = {"North", "East", "South", "West"};
    for (std::size_t i = 0; i < 4; ++i) {
        if (View.menuPlayer[i].Caption.empty()) View.menuPlayer[i].Caption = seats[i];
    }
    AskAlert.cmdAsk.Caption = Options.Japanese ? "アラート確認" : "NoneToAlert ?";
    AskAlert.cmdAsk.FontName = Options.Japanese ? Options.JapaneseFont : std::string();
    AskAlert.cmdAsk.BackColor = AlertLightBlue;
    AskAlert.cmdAsk.Visible = true;
}

void AlertChecker::SetToolTipTextPlNames(bool onlineMode) {
    std::string tip;
    if (!onlineMode) tip = Options.Japanese ? "このプレイヤーをアラートの対象とする" : "Alert This Player";
    View.plNameToolTip.fill(tip);
}

void AlertChecker::ShowAlert(std::int32_t index, const std::string& name) {
    std::string display = name;
    // The reader loses the first letter of a robot player's name.
    if (core::StartsWith(display, "obot")) display = "r" + display;
    const std::string& entry = list_.Entry(index);
    LabelModel& label = View.AlertName;
    if (!entry.empty() && entry[0] == '{') {
        label.FontSize = 18;
        label.ForeColor = AlertRed;
    } else if (!entry.empty() && entry[0] == '<') {
        label.FontSize = 15;
        label.ForeColor = AlertRed;
    } else {
        label.FontSize = 12;
        label.ForeColor = AlertRose;
    }
    std::string cmt;
    PickUpCmt(cmt, entry);
    if (!cmt.empty()) {
        if (core::Len(display) >= 9) display = core::Left(display, 8);
        label.Caption = display + "(" + cmt + ")";
    } else {
        label.Caption = display;
    }
    label.Visible = true;
}

std::int32_t AlertChecker::SearchAlertPlayer(const std::string& name) const {
    for (std::int32_t i = 1; i <= list_.AlertCount; ++i)
        if (NamesMatch(EntryKey(list_.Entry(i)), name)) return i;
    return 0;
}

void AlertChecker::UnCheckPlayer(const std::string& name) {
    std::int32_t separator = list_.SeparatorIndex();
    for (std::int32_t i = 1; i <= list_.AlertCount; ++i) {
        if (i == separator) continue;
        if (NamesMatch(list_.Entry(i), name)) {
            list_.SetEntry(i, std::string());
            return;
        }
    }
}

void AlertChecker::PlayAlertSound() { sound_.PlaySystemSound("SystemExclamation"); }

void AlertChecker::CheckAlertPlayer(TableAccess& table) {
    if (InAlertCheck || list_.Size() <= 1 || table.BoardShown) return;
    InAlertCheck = true;
    View.AlertName.Visible = false;

    // The player list can only be read while the table window is on top.
    if (table.GameWindow != 0) {
        windows_.SetTopmost(table.GameWindow, true);
        windows_.Restore(table.GameWindow);
    }
    TableNames none;
    TableNames& names = table.Names ? *table.Names : none;
    std::string found;
    std::int32_t index = 0;
    SearchNameInTable(found, index, list_.Slots, true, names, table.ReadPlayerList);
    if (index != 0) {
        std::string rest = found;
        ShowAlert(index, core::NextToken(rest));
        PlayAlertSound();
    } else if (PromptOn()) {
        View.cmdAlertNone.Visible = true;
    }
    InAlertCheck = false;
}

std::int32_t AlertChecker::CheckSeatPlayers(const std::array<std::string, 4>& seatNames) {
    View.AlertName.Visible = false;
    for (auto& item : View.menuPlayer) item.Checked = false;
    std::int32_t ownSeat = -1;
    for (std::size_t seat = 0; seat < 4; ++seat) {
        std::string name = core::Left(seatNames[seat], 12);
        MenuItemModel& item = View.menuPlayer[seat];
        item.Caption = name;
        item.Enabled = true;
        bool own = false;
        for (const std::string& id : Options.MyIds) {
            if (id.empty()) break;
            if (NamesMatch(name, id)) {
                own = true;
                break;
            }
        }
        if (own) {
            item.Enabled = false;
            ownSeat = static_cast<std::int32_t>(seat);
            continue;
        }
        for (std::int32_t i = 1; i <= list_.AlertCount; ++i) {
            if (NamesMatch(list_.Entry(i), name)) {
                item.Checked = true;
                ShowAlert(i, name);
            }
        }
    }
    return ownSeat;
}

void AlertChecker::menuPlayer_Click(std::int32_t index, const ReasonQuestion& ask) {
    if (index < 0 || index > 3) return;
    MenuItemModel& item = View.menuPlayer[static_cast<std::size_t>(index)];
    std::string name = item.Caption;
    // A seat without a name, or the user's own seat, has nothing to list.
    if (core::Trim(name).empty() || !item.Enabled) return;

    ReasonDialog dialog(clock_, Options.Japanese);
    std::int32_t slot = SearchAlertPlayer(name);
    ShowAlert(slot, name);
    bool listed = item.Checked && slot != 0;
    if (listed) {
        PickUpCmt(dialog.txtReason, list_.Entry(slot));
        if (Options.Japanese && !Options.LogSet) {
            dialog.boxReason.push_back(UnCheckItemJapanese);
            dialog.ListFontName = Options.JapaneseFont;
        } else {
            dialog.boxReason.push_back(UnCheckItem);
        }
    }
    dialog.Load();
    if (ask) ask(dialog);
    dialog.Close();
    AlertReason = dialog.AlertReason();
    std::string reason = core::Trim(AlertReason);

    if (listed) {
        if (reason == UnCheckItem || reason == UnCheckItemJapanese || reason.empty()) {
            UnCheckPlayer(name);
            item.Checked = false;
            View.AlertName.Visible = false;
        } else {
            list_.SetEntry(slot, name + "(" + CleanReason(reason) + ")");
            ShowAlert(slot, name);
        }
    } else {
        reason = CleanReason(reason);
        std::string entry = reason.empty() ? name : name + "(" + reason + ")";
        std::int32_t newSlot = list_.AlertCount + 1;
        list_.SetEntry(newSlot, entry);
        ShowAlert(newSlot, name);
        list_.AlertCount = newSlot;
        item.Checked = true;
    }
    Write();
    SettingsChanged = true;
}

void AlertChecker::Write() {
    if (Options.AlertFilePath.empty()) return;
    const platform::LocalTime now = clock_.Now();
    LastWrite = WriteAlertList(list_, Options.AlertFilePath, Options.Japanese, Options.CodePage, &now, &LastSave);
}

void AlertChecker::ShowAskAlert(const platform::Rect& gameWindow) {
    if (!PromptOn()) return;
    if (!AskAlert.Loaded) {
        AskAlert.Loaded = true;
        AskAlertState = 1;
    }
    if (Options.AskAlertPos.X == -100) {
        AskAlert.X = gameWindow.Left + 100;
        AskAlert.Y = gameWindow.Top + 180;
    } else {
        AskAlert.X = Options.AskAlertPos.X;
        AskAlert.Y = Options.AskAlertPos.Y;
    }
    AskAlert.Visible = true;
}

void AlertChecker::UnloadAskAlert() {
    if (AskAlertState == 0) return;
    AskAlert.Loaded = false;
    AskAlert.Visible = false;
    AskAlertState = 0;
}

void AlertChecker::ExecAskAlert(TableAccess& table) {
    const auto& captions = kAlertButtonCaptions[Options.Japanese ? 1 : 0];
    View.cmdAlertNone.Caption = captions[1];
    View.cmdAlertNone.BackColor = AlertOrange;
    CheckAlertPlayer(table);
    if (View.AlertName.Visible) {
        View.cmdAlertNone.Visible = false;
    } else if (PromptOn()) {
        View.cmdAlertNone.Caption = captions[2];
        View.cmdAlertNone.Visible = true;
        View.cmdAlertNone.BackColor = AskAlert.cmdAsk.BackColor;
    }
    AskAlertState = 2;
}

}  // namespace players
