// Alert checks: is a listed player at the user's table? The periodic table
// check (containment in the table's player list), the seat check (prefix
// match of the four seat names), the alert label, the seat menu that adds,
// edits and removes listed players with a reason, and the alert prompt.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/sound.h"
#include "platform/windowing.h"
#include "players/alert_list.h"

namespace players {

// Colours as 0x00BBGGRR.
inline constexpr std::uint32_t AlertRed = 0x003030FF;        // R 255, G 48, B 48
inline constexpr std::uint32_t AlertRose = 0x008000FF;       // R 255, G 0, B 128
inline constexpr std::uint32_t AlertOrange = 0x000080FF;     // R 255, G 128, B 0
inline constexpr std::uint32_t AlertLightBlue = 0x00FFC0C0;  // R 192, G 192, B 255

// The names of everyone present at the table window, as the player-list
// reader leaves them: Names[0] is name 1; a name is the player's ID followed
// by what the list shows after it (the rating). Read = number of names read
// (0 = the list could not be read).
struct TableNames {
    std::vector<std::string> Names;
    std::int32_t Read = 0;
};

// Reads the table's player list again into the given names.
using PlayerListReader = std::function<void(TableNames&)>;

// What the table check needs of the table window.
struct TableAccess {
    platform::WindowHandle GameWindow = 0;
    bool BoardShown = false;  // the bidding board is on the screen
    TableNames* Names = nullptr;
    PlayerListReader ReadPlayerList;
};

// Case-insensitive, trimmed: the shorter text is not empty and is the
// beginning of the longer one.
bool NamesMatch(const std::string& a, const std::string& b);
// The comment of an entry: after its first "(" up to the next ")" (or to the
// end); cmt is left as it is when the entry holds no "(".
void PickUpCmt(std::string& cmt, const std::string& entry);
// The part of an entry that names the player: without the "{"/"<" marker
// pair and without the reason.
std::string EntryKey(const std::string& entry);

// Walks list slots 1, 2, ... (slot 0 unused) and returns in index the first
// whose key (at least 4 characters) is contained, case-sensitively, in one
// of the table names; found = that table name. Ten short keys end the walk.
// With retry the player list is read again (up to twice) first. When no
// list was read, index = 0 and found is left unchanged.
void SearchNameInTable(std::string& found, std::int32_t& index, const std::vector<std::string>& list, bool retry,
                       TableNames& table, const PlayerListReader& readPlayerList);

struct LabelModel {
    std::string Caption;
    bool Visible = false;
    std::uint32_t ForeColor = AlertRose;
    std::int32_t FontSize = 12;
    std::string ToolTip;
};

struct ButtonModel {
    std::string Caption;
    bool Visible = false;
    std::uint32_t BackColor = AlertLightBlue;
    std::string ToolTip;
    std::string FontName;  // empty = the window's own font
};

struct MenuItemModel {
    std::string Caption;
    bool Checked = false;
    bool Enabled = true;
};

// The parts of the main window this code drives.
struct AlertView {
    LabelModel AlertName;
    ButtonModel cmdAlertNone;
    std::string menuAlertPlayerCaption = "Alert";
    std::array<MenuItemModel, 4> menuPlayer;
    std::array<std::string, 4> plNameToolTip;
};

// The prompt window frmAskAlert.
struct AskAlertWindow {
    bool Loaded = false;
    bool Visible = false;
    std::int32_t X = 0, Y = 0;
    std::uint32_t BackColor = AlertLightBlue;
    ButtonModel cmdAsk;
};

// Reasons offered by the dialog, in order.
const std::vector<std::string>& ReasonItems();
inline constexpr const char* UnCheckItem = "[UnCheck]";
inline constexpr const char* UnCheckItemJapanese = "[チェックを外す]";

// The reason dialog frmReason. The window (or a test) shows it and acts on
// it; whichever way it closes, AlertReason holds the text box's text.
class ReasonDialog {
public:
    ReasonDialog(platform::Clock& clock, bool japanese);

    std::string Caption;
    std::string txtReason;
    std::vector<std::string> boxReason;
    std::int32_t ListIndex = -1;  // selected item, -1 = none
    std::string ListFontName;     // empty = the dialog's own font
    std::int32_t OffsetTwips = 2100;  // from the main window's left and top
    bool Topmost = true;

    // Selects the item equal to the text box's text (on load).
    void Load();
    // Copies item i into the text box, waits a second and closes.
    void ClickItem(std::int32_t i);
    // Enter (13) closes with the text box's text; other keys do nothing.
    void KeyDown(std::int32_t keyCode);
    void Close();
    bool Closed() const { return closed_; }
    const std::string& AlertReason() const { return alertReason_; }

private:
    platform::Clock& clock_;
    bool closed_ = false;
    std::string alertReason_;
};

// Shows the dialog modally; returns when it is closed (an unclosed dialog
// counts as closed with the text box's text).
using ReasonQuestion = std::function<void(ReasonDialog&)>;

struct AlertOptions {
    bool Japanese = false;
    bool LogSet = false;              // a log file is named in the settings
    std::string JapaneseFont = "ＭＳ Ｐゴシック";  // the start-up check picks the real one
    std::vector<std::string> MyIds;   // the user's IDs, first one first
    platform::Point AskAlertPos;      // X = 0: prompt off; X = -100: no position given
    std::string AlertFilePath;        // where WriteAlertList writes
    int CodePage = 1252;
};

class AlertChecker {
public:
    AlertChecker(AlertList& list, platform::Windows& windows, platform::Sound& sound, platform::Clock& clock);

    AlertOptions Options;
    AlertView View;
    AskAlertWindow AskAlert;
    // 0 no prompt, 1 loaded, 100 prompt button pressed, 2 handled.
    std::int32_t AskAlertState = 0;
    std::string AlertReason;
    bool InAlertCheck = false;
    bool SettingsChanged = false;
    AlertFileResult LastWrite = AlertFileResult::Ok;
    core::SaveResult LastSave;  // the last write of the alert file

    AlertList& List() { return list_; }

    // Captions, tool tips and the initial state of the controls for the
    // interface language in Options.
    void SetCaptions();
    // Seat name tool tips: "Alert This Player" off-line, none on-line.
    void SetToolTipTextPlNames(bool onlineMode);
    bool PromptOn() const { return Options.AskAlertPos.X != 0; }
    // An alert indication is on the screen.
    bool testAlert() const { return View.cmdAlertNone.Visible || View.AlertName.Visible; }

    void ShowAlert(std::int32_t index, const std::string& name);
    // First slot 1..AlertCount whose key matches name; 0 if none.
    std::int32_t SearchAlertPlayer(const std::string& name) const;
    // Empties the first slot 1..AlertCount that matches name.
    void UnCheckPlayer(const std::string& name);

    // The table check.
    void CheckAlertPlayer(TableAccess& table);
    // The seat check when the four seat names (North, East, South, West) are
    // set. Returns the seat of the user's own ID, -1 when none sits.
    std::int32_t CheckSeatPlayers(const std::array<std::string, 4>& seatNames);
    // The seat menu: adds, edits or removes the player of seat index.
    void menuPlayer_Click(std::int32_t index, const ReasonQuestion& ask);

    // The prompt: shown on going on-line and for each new game.
    void ShowAskAlert(const platform::Rect& gameWindow);
    void HideAskAlert() { AskAlert.Visible = false; }
    // On going off-line.
    void UnloadAskAlert();
    void cmdAsk_Click() { AskAlertState = 100; }
    bool AskAlertPending() const { return AskAlertState == 100; }
    // The table check on the user's request (cmdAsk via the loop, cmdAlertNone).
    void ExecAskAlert(TableAccess& table);

private:
    void PlayAlertSound();
    void Write();

    AlertList& list_;
    platform::Windows& windows_;
    platform::Sound& sound_;
    platform::Clock& clock_;
};

}  // namespace players
