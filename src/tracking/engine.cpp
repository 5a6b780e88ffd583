#include "tracking/engine.h"

#include "core/text.h"

namespace tracking {

Engine::Engine(const platform::Desktop& desktop, platform::Clock& clock, core::Folders folders, GameReaders& readers,
               CompanionEvents& events, reading::Capture* cap, reading::WinTitles* titles)
    : ownCap_(cap ? nullptr : std::make_unique<reading::Capture>(desktop.windows, desktop.capture, clock)),
      ownTitles_(titles ? nullptr : std::make_unique<reading::WinTitles>()),
      Desktop(desktop),
      Clock(clock),
      Folders(std::move(folders)),
      Readers(readers),
      Events(events),
      Cap(cap ? *cap : *ownCap_),
      Titles(titles ? *titles : *ownTitles_),
      Models(&desktop.sound) {}

void Engine::Log(const std::string& line) {
    Events.Trace(line);
    if (!Settings.log.empty())
        core::AppendTextFile(Folders.EnterProgramFolder(Settings.log), {line}, Desktop.system.AnsiCodePage());
}

void Engine::ShowError(const std::string& text) {
    Models.frmErrMsg.ShowErrorMsg(text);
    ErrorLog.push_back(Models.frmErrMsg.Text);
    Events.Error(Models.frmErrMsg.Text);
    Changed();
}

void Engine::PutMsg(int code) {
    Models.frmErrMsg.PutMsg(code, LanguageRow(), display::TableModeSpades);
    ErrorLog.push_back(Models.frmErrMsg.Text);
    Events.Error(Models.frmErrMsg.Text);
    Changed();
}

void Engine::PlayAlertSound(const std::string& alias) {
    if (!alias.empty()) Desktop.sound.PlaySystemSound(alias);
}

void Engine::AlertBeep(int n) {
    for (int i = 0; i < n; ++i) {
        Desktop.sound.PlaySystemSound("SystemExclamation");
        Clock.Wait(1200);
    }
}

void Engine::SignalTableFlags(bool dnilPassBefore, bool suicideBefore) {
    static constexpr const char* kDNilPass = "DNil Pass Table ! ";
    static constexpr const char* kSuicide = "Suicide Table ! ";
    auto& label = Models.frmZ.lblMsg;
    auto signal = [&](bool wanted, int alarms, const char* text) {
        Log(text);
        if (!wanted) return;
        for (int i = 0; i < alarms; ++i) VisualAlarm();
        PlayAlertSound(Settings.AlertSound);
        label.Caption = text;
        label.ForeColor = core::Red;
        label.TextFont = core::Font{"Arial", 14, false};
        label.Visible = true;
        Changed();
    };
    if (Table.DNilPassTable && !dnilPassBefore) signal(Settings.AlertDnilPassTable, 1, kDNilPass);
    if (Table.SuicideTable && !suicideBefore) signal(Settings.AlertSuicideTable, 3, kSuicide);
    // Another table: the last one's flag is no longer true.
    const bool named = label.Caption == kDNilPass || label.Caption == kSuicide;
    if (named && !Table.DNilPassTable && !Table.SuicideTable) {
        label.Caption.clear();
        label.Visible = false;
        Changed();
    }
}

void Engine::RefreshBoxState() {
    BoxStatus b = Readers.LastBoxStatus();
    if (b.Text.empty()) {
        // A known layout is taken without a search, which says nothing.
        if (!Table.BoxFound) return;
        b = {"Box OK", true};
    }
    auto& label = Models.frmZ.lblBoxState;
    const core::Color colour = b.Found ? core::Blue : core::Red;
    if (label.Caption == b.Text && label.ForeColor == colour) return;
    label.Caption = b.Text;
    label.ForeColor = colour;
    Changed();
}

players::TableAccess Engine::TableAccessNow(platform::WindowHandle game) {
    players::TableAccess t;
    t.GameWindow = game;
    t.BoardShown = Models.frmBoard.Visible;
    t.Names = &TableNames;
    t.ReadPlayerList = [this](players::TableNames& names) {
        Readers.ReadPlayerList(Table);
        names.Names = Table.PlayerList;
        names.Read = static_cast<std::int32_t>(Table.PlayerList.size());
        Models.frmZ.cntPlayers.Caption = std::to_string(names.Read);
    };
    return t;
}

void Engine::UpdateTableNames() {
    TableNames.Names = Table.PlayerList;
    TableNames.Read = static_cast<std::int32_t>(Table.PlayerList.size());
    Models.frmZ.cntPlayers.Caption = std::to_string(TableNames.Read);
}

void Engine::ReadShowRating(int mode, platform::WindowHandle game) {
    if (!Rating) return;
    players::RatingContext ctx;
    ctx.CaptureBusy = Busy.Is(tracking::Busy::HandCapture);
    ctx.Table = TableAccessNow(game);
    ctx.TeamScore = Scores.TeamScore;
    ctx.SeatNames = Record.Names;
    ctx.GameLanguage = LanguageRow();
    ctx.ReadLines = [this]() { return Readers.RatingLines(); };
    Rating->ReadShowRating(mode, ctx);
}

}  // namespace tracking
