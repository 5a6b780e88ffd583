#include "tracking/companion.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "core/text.h"

namespace tracking {

namespace {

bool IsNilKind(const std::string& bid) { return core::BidKind(bid) != 0; }

std::string Num(int v) { return std::to_string(v); }

}  // namespace

Companion::Companion(const platform::Desktop& desktop, platform::Clock& clock, core::Folders folders,
                     GameReaders& readers)
    : frmErrMsg(&desktop.sound), Cap(desktop.windows, desktop.capture, clock), desktop_(desktop), clock_(clock), folders_(std::move(folders)),
      readers_(readers) {
    Cap.ReopenSubWindow = [this](int k) {
        OpenSubWindows(k);
        clock_.Wait(800);
        FindGameWindows();
        FindSubWindow(k);
    };
}

Companion::~Companion() = default;

void Companion::Log(const std::string& line) {
    if (Trace) Trace(line);
    if (!Settings.log.empty()) {
        core::AppendTextFile(folders_.EnterProgramFolder(Settings.log), {line}, desktop_.system.AnsiCodePage());
    }
}

// ---------------------------------------------------------------------------
// Start-up
// ---------------------------------------------------------------------------

bool Companion::Form_Load() {
    if (!FormLoad()) return false;
    const bool diagnostics = folders_.WorkFolderName == "Work";
    frmZ.cntPlayers.Visible = diagnostics;
    frmZ.cntBids.Visible = diagnostics;
    frmZ.cntBidLoc.Visible = diagnostics;
    if (folders_.WorkFolderName == "Work\\SpadeSample" && Rating) Rating->MyRating.Caption = "1840";
    return true;
}

bool Companion::FormLoad() {
    // Screen size, and the main window at the right edge of the screen.
    ScreenSize = desktop_.windows.ScreenSize();
    const int w = frmZ.Rect.Width();
    frmZ.Rect.Left = ScreenSize.X - w;
    frmZ.Rect.Right = ScreenSize.X;
    Titles.SetWinTitles();
    frmZ.Caption = kProgramCaption;

    // Archive check, settings, second instance, post-read rules, the notice
    // about a missing settings file, the work folder.
    core::StartupContext ctx{desktop_.system, clock_, Screen};
    core::StartupOutcome out = core::RunStartupChecks(ctx, folders_, CheckArchive);
    Settings = out.Settings.Values;
    SettingsFileFound = !out.Settings.FileName.empty();
    if (!out.Continue) {
        Ended = true;
        TimerEnabled = false;
        return false;
    }
    if (Settings.link == "uk") frmZ.LinkMenuCaption = "Yahoo! Spades UK";
    const int cp = desktop_.system.AnsiCodePage();

    // Alert lists.
    players::ReadDefaultAlertList(AlertList);
    const std::string alertPath = folders_.EnterProgramFolder(Settings.AlertFile);
    players::ReadAlertList(alertPath, AlertList, cp);
    Alerts = std::make_unique<players::AlertChecker>(AlertList, desktop_.windows, desktop_.sound, clock_);
    Alerts->Options.Japanese = Settings.JPN;
    Alerts->Options.LogSet = !Settings.log.empty();
    Alerts->Options.MyIds = Settings.MyIds;
    Alerts->Options.AskAlertPos = {Settings.AskAlertPos.X, Settings.AskAlertPos.Y};
    Alerts->Options.AlertFilePath = alertPath;
    Alerts->Options.CodePage = cp;
    Alerts->SetCaptions();
    Seats.InitNESW(Settings.MyIds);
    Seats.SetJapanese(Settings.JPN);

    Rating = std::make_unique<players::Ratings>(desktop_.windows, clock_);
    Rating->Options.Japanese = Settings.JPN;
    Rating->Options.LogSet = !Settings.log.empty();
    Rating->Options.CountCards = Settings.CardCounting;
    Rating->Options.MyIds = Settings.MyIds;
    Rating->Options.HistoryPath = Settings.history.empty() ? "" : folders_.EnterProgramFolder(Settings.history);
    Rating->Options.MarkerFilePath = folders_.EnterWorkFolder(display::MarkerFileName);
    Rating->Options.CodePage = cp;

    frmErrMsg.SetJapaneseInterface(Settings.JPN);
    Counters = scoring::Counters(Settings.JPN);
    Counters.frmCounter0.SetBoldBidTrick(Settings.BoldBidTrick);
    Counters.frmCounter.SetBoldBidTrick(Settings.BoldBidTrick);
    frmBoard.BoardMode = Settings.BoardMode;
    if (Settings.JPN) frmZ.cmdTimer.Caption = "休止";

    // Window positions kept from the last run on a screen of this width.
    if (!Settings.CFG.empty()) {
        const display::LoadedPositions lp =
            display::LoadWindowPositions(folders_.EnterProgramFolder(Settings.CFG), ScreenSize, frmZ.Rect, cp);
        if (lp.Found) {
            frmZ.Rect = lp.Main;
            GameHome = lp.Pos[display::PosSpadesWindow];
            Cap.SubWindow[SlotScore].Home = lp.Pos[display::PosScoreWindow];
            Cap.SubWindow[SlotHand].Home = lp.Pos[display::PosLastHandWindow];
            Cap.SubWindow[SlotTrick].Home = lp.Pos[display::PosLastTrickWindow];
        }
    }

    // File box.
    Records = std::make_unique<display::RecordFiles>(clock_, folders_, cp);
    filBox.Fill(folders_.WorkFolder());

    // Automatic capture switches, applied through their own buttons.
    if (Settings.AutoCaptHand) {
        Settings.AutoCaptHand = false;
        cmdHand_MouseDown(2);
    }
    if (Settings.AutoCaptBid) {
        Settings.AutoCaptBid = false;
        cmdBid_MouseDown(2);
        EndDealReset();
    }
    for (auto& l : frmZ.lblSeat) l.Visible = true;
    frmZ.fraCapture.Visible = true;
    frmZ.cmdEnd.Visible = true;

    LoopInterval = 500;
    TimerEnabled = true;
    return true;
}

void Companion::cmdBid_MouseDown(int button) {
    if (button != 2) return;
    Settings.AutoCaptBid = !Settings.AutoCaptBid;
    const std::uint32_t now = clock_.TickCount();
    if (Settings.AutoCaptBid) {
        Disarm(SlotReminder);
        ArmSlot(SlotBidWatch, now + static_cast<std::uint32_t>(Settings.WaitBidMs));
    } else {
        Disarm(SlotBidWatch);
        ArmSlot(SlotReminder, now + static_cast<std::uint32_t>(Settings.AlertTimeMs));
    }
}

void Companion::cmdHand_MouseDown(int button) {
    if (button != 2) return;
    Settings.AutoCaptHand = !Settings.AutoCaptHand;
    if (Settings.AutoCaptHand) {
        if (Rating && Rating->CountingAllowed) ArmSlot(SlotTrick, clock_.TickCount() + 1000);
    } else {
        Disarm(SlotTrick);
    }
}

// ---------------------------------------------------------------------------
// The tick
// ---------------------------------------------------------------------------

void Companion::VisualAlarm() { ++frmZ.VisualAlarms; }

void Companion::PlayAlertSound(const std::string& alias) {
    if (!alias.empty()) desktop_.sound.PlaySystemSound(alias);
}

void Companion::AlertBeep(int n) {
    for (int i = 0; i < n; ++i) {
        desktop_.sound.PlaySystemSound("SystemExclamation");
        clock_.Wait(1200);
    }
}

void Companion::ShowTop(int mode, platform::WindowHandle h) {
    if (mode == 2 && h != 0) desktop_.windows.SetTopmost(h, true);
}

void Companion::Timer1_Timer() {
    if (Ended || !TimerEnabled) return;
    TickStart = clock_.TickCount();
    if (InWindowPass || InBidStep || InTrickStep || InFileView || InHandCapture || GameMinimised == 1 ||
        (Alerts && Alerts->InAlertCheck))
        return;

    InWindowPass = true;
    WindowPass();
    InWindowPass = false;
    if (Ended) return;
    if (OffLine()) return;

    if (HideCounterAt != 0 && clock_.SecondsOfDay() > HideCounterAt) {
        RemainingCardsState = 0;  // the card counter window
        HideCounterAt = 0;
    }

    if (PausedAt != 0) {
        // Pause display: whole seconds since the pause began.
        const std::uint32_t ms = clock_.TickCount() - PausedAt;
        const long secs = std::lround(static_cast<double>(ms) / 1000.0);
        frmZ.cmdTimer.Caption = std::to_string(secs);
        const long shown = core::ValInt(frmZ.cmdTimer.Caption);
        if (shown == 120 || shown == 180) {
            VisualAlarm();
            PlayAlertSound(Settings.AlertSound);
        }
        return;
    }

    ++TickCount;
    if (TickCount == 1) TimerInterval = LoopInterval;
    if (TickCount < 2) return;

    // Slot 0: the reminder that automatic bid capture is off.
    if (SlotArmed[SlotReminder] && Due(SlotReminder, TickStart)) {
        VisualAlarm();
        PlayAlertSound(Settings.AlertSound);
    }

    if (SlotArmed[SlotTrick]) {
        if (frmBoard.Visible) HideMe();
        if (MyTurnSeen == 0 && TestMyTurn()) {
            desktop_.windows.SetTopmost(GameWindow, true);
            MyTurnSeen = 1;
        }
        for (int twice = 0; twice < 2; ++twice) {
            if (SlotArmed[SlotTrick] && Due(SlotTrick, TickStart)) {
                if (Rating && Rating->CountingAllowed) TrickStepCounting();
                else TrickStep();
            }
        }
    }

    if (SlotArmed[SlotHand]) {
        if (Due(SlotHand, clock_.TickCount())) CaptureLastHand(1);
    } else if (SlotArmed[SlotBidWatch]) {
        bool toTop = false;
        switch (BidState) {
            case -4:
                TimerInterval = LoopInterval;
                ClickBidAuto();
                break;
            case -3: {
                ClickBidAuto();
                const int s = GetBoardStat();
                if (s == 0) HideMe();
                else if (s == BoardOrdinary) ShowBoard(BoardOrdinary);
                toTop = true;
                break;
            }
            case -2:
            case -1: {
                ClickBidAuto();
                if (GetBoardStat() == 0) {
                    HideMe();
                    return;
                }
                toTop = true;
                break;
            }
            case 0: {
                TimerInterval = LoopInterval;
                ClickBidAuto();
                const bool boardCheck = (frmBoard.BoardMode & 1) != 0 ||
                                        (Settings.AlertDnilPassTable && Table.DNilPassTable);
                const bool helpOn = Settings.HelpBidIn4thSeat.On();
                if (boardCheck) {
                    if (TestMyTurn()) {
                        CheckBoard();
                        ClickBidAuto();
                        if (frmBoard.Visible) frmBoard.Topmost = true;
                        if ((BidCount == 2 || BidCount == 3) && helpOn)
                            frmHelpBid.Show_HelpBid(Scores, UserSeat(), Bids, BidCount, Settings.log);
                    }
                } else if (helpOn && (BidCount == 2 || BidCount == 3) && TestMyTurn()) {
                    frmHelpBid.Show_HelpBid(Scores, UserSeat(), Bids, BidCount, Settings.log);
                }
                break;
            }
            default:
                break;
        }
        if (toTop) {
            if (Counters.CounterShown == 1) ++Counters.frmCounter0.Window.TopmostRequests;
            if (frmHelpBid.Window.Visible) ++frmHelpBid.Window.TopmostRequests;
            return;
        }
    }

    // Step 12: box state and the alert prompt's follow-up.
    if (Alerts && Alerts->AskAlertPending()) {
        players::TableAccess t = TableAccessNow();
        Alerts->ExecAskAlert(t);
    }

    // Step 13: keep the companion windows and the game's pop-ups on top.
    if (Counters.CounterShown == 1) ++Counters.frmCounter0.Window.TopmostRequests;
    else if (Counters.CounterShown == 2) ++Counters.frmCounter.Window.TopmostRequests;
    ShowTop(Settings.TopMostScoreWindow, Cap.SubWindow[SlotScore].Handle);
    for (platform::WindowHandle h : PopupWindows) desktop_.windows.SetTopmost(h, true);
}

void Companion::ClickBidAuto() {
    if (SlotArmed[SlotBidWatch] && Due(SlotBidWatch, TickStart)) BidStep(1);
}

void Companion::WindowPass() {
    if (EndFlag) {
        if (Records) Records->RemoveMarkerAtExit();
        if (!Settings.CFG.empty()) {
            display::PosTable now{};
            auto at = [this](platform::WindowHandle h) {
                const std::optional<platform::Rect> r = h ? desktop_.windows.WindowRect(h) : std::nullopt;
                return r ? platform::Point{r->Left, r->Top} : platform::Point{};
            };
            now[display::PosSpadesWindow] = at(GameWindow);
            now[display::PosScoreWindow] = at(Cap.SubWindow[SlotScore].Handle);
            now[display::PosLastHandWindow] = at(Cap.SubWindow[SlotHand].Handle);
            now[display::PosLastTrickWindow] = at(Cap.SubWindow[SlotTrick].Handle);
            now[display::PosLeftCounter] = {Counters.frmCounter0.Window.Left, Counters.frmCounter0.Window.Top};
            now[display::PosRightCounter] = {Counters.frmCounter.Window.Left, Counters.frmCounter.Window.Top};
            display::SaveWindowPositions(folders_.EnterProgramFolder(Settings.CFG), ScreenSize.X, frmZ.Rect, now,
                                         desktop_.system.AnsiCodePage());
        }
        Ended = true;
        TimerEnabled = false;
        return;
    }
    if (RecheckRequested) {
        for (int k = 1; k <= 5; ++k) {
            if (!RecheckSlots[k]) continue;
            if (k < reading::kSubWindowCount && Cap.SubWindow[k].Handle != 0 &&
                desktop_.windows.IsWindow(Cap.SubWindow[k].Handle)) {
                frmErrMsg.Hide();
                RecheckSlots[k] = false;
                RecheckRequested = false;
            } else {
                FindGameWindows();
                FindSubWindow(k);
            }
        }
    }
    FindGameWindows();
    if (GameWindow != 0) {
        if (OffLine()) {
            desktop_.windows.SetTopmost(GameWindow, true);
            desktop_.windows.Restore(GameWindow);
        }
        ApplyLeftEdgeRule();
        MoveWinGame();
        if (OffLine()) OffToOn();
        if (!SuppressSubWindowSearch) GetSubWindows();
        if (GameWindow != 0 && Alerts && !Alerts->testAlert() && SlotArmed[SlotBidWatch] && BidCount <= 3 &&
            TickCount % 10 == 4) {
            players::TableAccess t = TableAccessNow();
            Alerts->CheckAlertPlayer(t);
        }
    } else if (!OffLine()) {
        OnToOff();
    }
}

void Companion::cmdTimer_Click() {
    if (OffLine()) return;
    PausedAt = clock_.TickCount();
    if (PausedAt == 0) PausedAt = 1;
    if (frmZ.cmdTimer.Caption == "Pause" || frmZ.cmdTimer.Caption == "休止") {
        frmZ.cmdTimer.Caption = "0";
        frmZ.cmdTimer.Bold = true;
        if (!Settings.JPN) frmZ.cmdTimer.FontSize = 12;
        for (int k = 1; k <= 3; ++k) {
            if (static_cast<std::int32_t>(SlotDue[k] - PausedAt) > 0)
                SlotLeft[k] = static_cast<std::int32_t>(SlotDue[k] - PausedAt);
            else
                SlotLeft[k] = 0;
        }
        desktop_.windows.SetTopmost(GameWindow, false);
        frmZ.Topmost = true;
    } else {
        frmZ.cmdTimer.Caption = Settings.JPN ? "休止" : "Pause";
        frmZ.cmdTimer.Bold = false;
        frmZ.cmdTimer.FontSize = 10;
        const std::uint32_t now = clock_.TickCount();
        for (int k = 1; k <= 3; ++k) SlotDue[k] = now + static_cast<std::uint32_t>(SlotLeft[k]);
        PausedAt = 0;
        BidLocCount = 0;
        frmZ.Topmost = false;
        desktop_.windows.SetTopmost(GameWindow, true);
    }
}

void Companion::Form_Resize(int heightPx) {
    frmZ.Rect.Bottom = frmZ.Rect.Top + heightPx;
    if (heightPx < 30) {
        if (GameWindow) desktop_.windows.Minimize(GameWindow);
        GameMinimised = 1;
    } else {
        GameMinimised = 0;
        if (GameWindow) desktop_.windows.Restore(GameWindow);
    }
}

// ---------------------------------------------------------------------------
// Windows of the game
// ---------------------------------------------------------------------------

void Companion::FindGameWindows() {
    WindowList.clear();
    GameWindow = 0;
    SiteIndex = {-1, -1, -1};
    PopupWindows.clear();
    for (platform::WindowHandle h : desktop_.windows.TopLevel()) {
        const std::optional<platform::WindowInfo> info = desktop_.windows.Info(h);
        if (!info || !info->Decorated || !info->Visible) continue;
        // Our own windows show the game's names and titles too.
        if (desktop_.windows.IsOwnWindow(h)) continue;
        std::string title = core::Trim(desktop_.windows.Title(h).value_or(""));
        if (!OffLine() && Settings.TopmostPlayerInfo && reading::IsPopupTitle(title) &&
            static_cast<int>(PopupWindows.size()) < kMaxPopups)
            PopupWindows.push_back(h);
        if (static_cast<int>(WindowList.size()) >= kMaxListedWindows) continue;
        WindowList.push_back({h, title});
        const int index = static_cast<int>(WindowList.size());  // numbered from 1
        // The table window: the English title or the table title of a site
        // language. A table title of another language tells the game's
        // language before the button scan has run.
        int tableLang = 0;
        if (reading::SiteWindowKind(title) == reading::SiteWindow::Table) tableLang = reading::LangUSA;
        for (int lang = reading::LangFirst + 1; lang <= reading::LangLast && tableLang == 0; ++lang) {
            const std::string& t = Titles.Title(lang, reading::SlotTable);
            if (!t.empty() && core::Contains(title, t)) tableLang = lang;
        }
        if (tableLang != 0) {
            if (GameWindow == 0) {
                GameWindow = h;
                SiteIndex[0] = index;
                if (tableLang != reading::LangUSA && GameLanguage == reading::LangUSA) GameLanguage = tableLang;
                TableTitle = title;
            }
            continue;
        }
        switch (reading::SiteWindowKind(title)) {
            case reading::SiteWindow::Lobby:
                SiteIndex[1] = index;
                if (ScreenSize.X > 1000)
                    if (const auto r = desktop_.windows.WindowRect(h); r && r->Width() > 800)
                        desktop_.windows.Move(h, {200, 100, 1000, 700});
                break;
            case reading::SiteWindow::SitePage:
                SiteIndex[2] = index;
                if (ScreenSize.X > 1000)
                    if (const auto r = desktop_.windows.WindowRect(h); r && r->Width() > 800)
                        desktop_.windows.Move(h, {r->Left, r->Top, r->Left + 800, r->Top + 600});
                break;
            default:
                break;
        }
    }
    Cap.GameWindow = GameWindow;
}

void Companion::FindSubWindow(int slot) {
    std::vector<std::string> titles;
    titles.reserve(WindowList.size());
    for (const auto& w : WindowList) titles.push_back(w.Title);
    if (slot == -1) {
        const auto found = Titles.FindSubWindows(titles, GameLanguage);
        for (int k = 1; k <= 3; ++k)
            Cap.SubWindow[k].Handle = found[k] >= 0 ? WindowList[static_cast<std::size_t>(found[k])].Handle : 0;
        return;
    }
    if (slot < 0 || slot >= reading::kSubWindowCount) return;
    Cap.SubWindow[slot].Handle = 0;
    const int i = Titles.FindSubWindow(titles, slot, GameLanguage);
    if (i >= 0) Cap.SubWindow[slot].Handle = WindowList[static_cast<std::size_t>(i)].Handle;
}

void Companion::OpenSubWindows(int slot) {
    const std::optional<platform::Point> saved = desktop_.input.CursorPos();
    const int from = slot == 254 ? 1 : slot;
    const int to = slot == 254 ? 3 : slot;
    for (int k = from; k <= to; ++k) {
        if (k < 1 || k > 3) continue;
        const platform::Point p = Table.ButtonXY[static_cast<std::size_t>(k)];
        if (p.X + p.Y == 0) continue;
        // A sub-window opened by the previous click may cover the buttons.
        desktop_.windows.SetTopmost(GameWindow, true);
        ClickAt(p.X - 10, p.Y + 4);
        clock_.Wait(0);
    }
    if (saved) desktop_.input.SetCursorPos(*saved);
}

void Companion::ApplyLeftEdgeRule() {
    std::optional<platform::Rect> r = desktop_.windows.WindowRect(GameWindow);
    if (!r) return;
    if (r->Left < 0 && !(frmBoard.BoardMode & 1)) {
        desktop_.windows.Move(GameWindow, {0, r->Top, r->Width(), r->Bottom});
        r = desktop_.windows.WindowRect(GameWindow).value_or(*r);
    }
    GameRect = *r;
}

void Companion::MoveGame(const platform::Rect& r) {
    desktop_.windows.Move(GameWindow, r);
    GameRect = desktop_.windows.WindowRect(GameWindow).value_or(GameRect);
}

void Companion::PlaceSubWindow(int slot) {
    const platform::WindowHandle h = slot == 0 ? GameWindow : Cap.SubWindow[static_cast<std::size_t>(slot)].Handle;
    if (h == 0 || !desktop_.windows.IsWindow(h)) return;
    desktop_.windows.SetTopmost(h, true);
    desktop_.windows.Restore(h);
    const platform::Rect r = desktop_.windows.WindowRect(h).value_or(platform::Rect{});
    reading::SubWindowSlot& s = Cap.SubWindow[static_cast<std::size_t>(slot)];
    s.Rect = r;
    if (!s.Placed && r.Left + r.Top < 1) {
        if (!(s.Home.X == 0 && s.Home.Y == 0)) {
            desktop_.windows.Move(h, {s.Home.X, s.Home.Y, s.Home.X + r.Width(), s.Home.Y + r.Height()});
        }
        s.Rect = desktop_.windows.WindowRect(h).value_or(s.Rect);
        if (slot == 0) ApplyLeftEdgeRule();
        s.Placed = true;
    }
    if (slot == 0) GameRect = s.Rect;
}

players::TableAccess Companion::TableAccessNow() {
    players::TableAccess t;
    t.GameWindow = GameWindow;
    t.BoardShown = frmBoard.Visible;
    t.Names = &TableNames;
    t.ReadPlayerList = [this](players::TableNames& names) {
        readers_.ReadPlayerList(Table);
        names.Names = Table.PlayerList;
        names.Read = static_cast<std::int32_t>(Table.PlayerList.size());
        frmZ.cntPlayers.Caption = Num(names.Read);
    };
    return t;
}

void Companion::UpdateTableNames() {
    TableNames.Names = Table.PlayerList;
    TableNames.Read = static_cast<std::int32_t>(Table.PlayerList.size());
    frmZ.cntPlayers.Caption = Num(TableNames.Read);
}

players::RatingContext Companion::RatingContextNow() {
    players::RatingContext ctx;
    ctx.CaptureBusy = InHandCapture;
    ctx.Table = TableAccessNow();
    ctx.TeamScore = Scores.TeamScore;
    ctx.SeatNames = Record.Names;
    ctx.GameLanguage = GameLanguage;
    ctx.ReadLines = [this]() { return readers_.RatingLines(); };
    return ctx;
}

void Companion::ReadShowRating(int mode) {
    if (!Rating) return;
    players::RatingContext ctx = RatingContextNow();
    Rating->ReadShowRating(mode, ctx);
}

void Companion::GetSubWindows() {
    readers_.SetGameWindow(GameWindow, GameLanguage);
    readers_.ReadTableInfo(Table);
    if (Table.GameLanguage != 0) GameLanguage = Table.GameLanguage;
    const bool newTable = Table.BoxFound && (GameWindow != lastTableWindow_ || !NewTableSeen);
    if (newTable) {
        readers_.ReadPlayerList(Table);
        UpdateTableNames();
        NewTableSeen = true;
        lastTableWindow_ = GameWindow;
        frmZ.Caption = reading::TableCaption(kProgramCaption, TableTitle);
        if (Rating) Rating->MyRating.Caption.clear();
        ReadShowRating(0);
        OpenSubWindows(254);
        clock_.Wait(800);
        FindGameWindows();
        if (GameWindow == 0) return;
        FindSubWindow(-1);
        for (int k = 1; k <= 3; ++k) {
            if (Cap.SubWindow[k].Handle == 0) break;
            PlaceSubWindow(k);
        }
    } else {
        // Sub-windows that went away are looked up again each tick.
        for (int k = 1; k <= 3; ++k)
            if (Cap.SubWindow[k].Handle == 0 || !desktop_.windows.IsWindow(Cap.SubWindow[k].Handle)) FindSubWindow(k);
    }
    if (Settings.MinimizeLastHand && Cap.SubWindow[SlotHand].Handle)
        desktop_.windows.Minimize(Cap.SubWindow[SlotHand].Handle);
    reading::SubWindowSlot& lt = Cap.SubWindow[SlotTrick];
    if (lt.Handle && std::abs(lt.Rect.Left) + std::abs(lt.Rect.Top) < 10) {
        if (const auto now = desktop_.windows.WindowRect(lt.Handle)) {
            lt.Rect = *now;
            if (std::abs(lt.Rect.Left) + std::abs(lt.Rect.Top) < 10) {
                const int w = lt.Rect.Width(), h = lt.Rect.Height();
                desktop_.windows.Move(lt.Handle, {ScreenSize.X - w, ScreenSize.Y - h, ScreenSize.X, ScreenSize.Y});
                lt.Rect = desktop_.windows.WindowRect(lt.Handle).value_or(lt.Rect);
            }
        }
    }
}

void Companion::LoadCompanionWindows() {
    if (Alerts && Alerts->PromptOn()) Alerts->ShowAskAlert(GameRect);
    frmBoard.Loaded = frmBoard.BoardMode != 0;
    CardPlayState = Settings.CountCardsPos.On() ? 2 : 0;
    if (Settings.RightCounterPos.On()) {
        scoring::CounterPlacementInput in;
        in.Setting = {Settings.RightCounterPos.X, Settings.RightCounterPos.Y};
        in.TableAt = {GameRect.Left + Table.Box.Left, GameRect.Top + Table.Box.Top};
        Counters.frmCounter.Place(in);
    }
    if (Settings.LeftCounterPos.On()) {
        scoring::CounterPlacementInput in;
        in.Setting = {Settings.LeftCounterPos.X, Settings.LeftCounterPos.Y};
        in.TableAt = {GameRect.Left + Table.Box.Left, GameRect.Top + Table.Box.Top};
        Counters.frmCounter0.Place(in);
    }
    if (Settings.HelpBidIn4thSeat.On())
        frmHelpBid.Place({Settings.HelpBidIn4thSeat.X, Settings.HelpBidIn4thSeat.Y}, {GameRect.Left, GameRect.Top});
    RemainingCardsState = Settings.RemainingCardsPos.On() ? 1 : 0;
    ScoreWindowState = Settings.PasteScoreTable.On() ? 2 : 0;
}

void Companion::UnloadCompanionWindows() {
    frmBoard.Visible = false;
    frmBoard.Loaded = false;
    CardPlayState = 0;
    Counters.HideCounter();
    Counters.frmCounter.Window.Visible = false;
    Counters.frmCounter0.Window.Visible = false;
    frmErrMsg.Hide();
    frmHelpBid.Window.Visible = false;
    RemainingCardsState = 0;
    ScoreWindowState = 0;
    if (Alerts) Alerts->UnloadAskAlert();
}

void Companion::OffToOn() {
    OnlineMode = 1;
    frmZ.LinkMenuEnabled = false;
    frmZ.AlertMenuEnabled = false;
    frmBoard.BoardMode = Settings.BoardMode;
    if (Alerts) Alerts->SetToolTipTextPlNames(true);
    GetSubWindows();
    LoadCompanionWindows();
    frmZ.cmdScore.Visible = true;
    if (Settings.TopMostScoreWindow == 2) {
        if (Cap.SubWindow[SlotScore].Handle)
            desktop_.windows.Restore(Cap.SubWindow[SlotScore].Handle);
        frmZ.cmdScore.Caption = "Hide Score";
    } else {
        frmZ.cmdScore.Caption = "Minimize";
    }
    frmZ.lblLog.Visible = !Settings.log.empty();
    frmZ.lblBoxState.Visible = Settings.ShowBoxState;
    frmZ.cmdTimer.Visible = true;
    ArmSlot(SlotBidWatch, clock_.TickCount() + static_cast<std::uint32_t>(Settings.WaitBidMs));
    Seats.InitNESW(Settings.MyIds);
    TickCount = 0;
    Log("Offline ==> Online");
}

void Companion::OnToOff() {
    frmZ.cmdScore.Visible = false;
    frmZ.LinkMenuEnabled = true;
    frmZ.AlertMenuEnabled = true;
    if (Alerts) Alerts->SetToolTipTextPlNames(false);
    if (!Settings.log.empty()) {
        const platform::LocalTime t = clock_.Now();
        char buf[64];
        std::snprintf(buf, sizeof buf, "%04d/%02d/%02d %02d:%02d:%02d", t.Year, t.Month, t.Day, t.Hour, t.Minute,
                      t.Second);
        Log(std::string(buf) + " Online ==> OffLine");
    }
    UnloadCompanionWindows();
    frmZ.lblMsg.Visible = false;
    frmBoard.BoardMode = Settings.BoardMode;
    Table = TableInfo{};
    TableNames = players::TableNames{};
    PlayerNames = {};
    Record.Names = {};
    Bids = {};
    PrevBids = {};
    if (Alerts) {
        Alerts->View.AlertName.Caption.clear();
        Alerts->View.AlertName.Visible = false;
        Alerts->View.cmdAlertNone.Visible = false;
    }
    frmZ.cmdTimer.Visible = false;
    frmZ.lblBoxState.Visible = false;
    SlotArmed = {};
    GameLanguage = 1;
    frmZ.Caption = kProgramCaption;
    OnlineMode = 2;
    NewTableSeen = false;
    lastTableWindow_ = 0;
    for (auto& s : Cap.SubWindow) s.Handle = 0;
}

void Companion::MoveWinGame() {
    if (GameWindow == 0) return;
    GameRect = desktop_.windows.WindowRect(GameWindow).value_or(GameRect);
    const int sw = ScreenSize.X, sh = ScreenSize.Y;
    if (!GamePlaced) {
        platform::Rect r = GameRect;
        if (r.Left < 3 && r.Top < 3 && !(GameHome.X == 0 && GameHome.Y == 0)) {
            MoveGame({GameHome.X, GameHome.Y, GameHome.X + r.Width(), GameHome.Y + r.Height()});
        }
        r = GameRect;
        if (sw >= 1200) {
            MoveGame({0, 0, 615, 700});
        } else if (sw >= 1000) {
            const int mainW = frmZ.Rect.Width();
            if (Settings.ReduceOn && frmZ.Rect.Right >= sw - 2 && r.Width() + mainW > sw) {
                const int width = sw == 1024 ? 615 : sw - mainW + 40;
                MoveGame({0, r.Top, width, r.Bottom});
            }
        } else {
            if (Settings.ReduceWidth != 0) {
                if (r.Width() > Settings.ReduceWidth)
                    MoveGame({-5, r.Top - 5, -5 + Settings.ReduceWidth, r.Bottom - 5});
            } else {
                MoveGame({0, r.Top, r.Width(), r.Bottom});
            }
        }
        if (const auto client = desktop_.windows.ClientRect(GameWindow))
            FrameExtra = std::max(0, GameRect.Height() - client->Height() - 35);
        GamePlaced = true;
        Cap.SubWindow[0].Placed = true;
    }
    if (frmBoard.BoardMode & 1) {
        const platform::Point at = sh > 600 ? platform::Point{0, 0} : platform::Point{-5, -12};
        if (GameRect.Left != at.X || GameRect.Top != at.Y)
            MoveGame({at.X, at.Y, at.X + GameRect.Width(), at.Y + GameRect.Height()});
    }
}

void Companion::cmdScore_Click() {
    const platform::WindowHandle score = Cap.SubWindow[SlotScore].Handle;
    if (frmZ.cmdScore.Caption == "Show Score") {
        Settings.TopMostScoreWindow = 2;
        if (score) desktop_.windows.Restore(score);
        frmZ.cmdScore.Caption = "Hide Score";
    } else if (frmZ.cmdScore.Caption == "Hide Score") {
        Settings.TopMostScoreWindow = 0;
        if (score) desktop_.windows.Minimize(score);
        frmZ.cmdScore.Caption = "Show Score";
    } else if (frmZ.cmdScore.Caption == "Minimize") {
        GameMinimised = 1;
        if (GameWindow) desktop_.windows.Minimize(GameWindow);
        frmZ.Rect.Bottom = frmZ.Rect.Top;  // the main window is minimised too
        if (SiteIndex[1] > 0)
            desktop_.windows.Restore(WindowList[static_cast<std::size_t>(SiteIndex[1] - 1)].Handle);
    }
}

// ---------------------------------------------------------------------------
// Messages
// ---------------------------------------------------------------------------

void Companion::ShowError(const std::string& text) {
    frmErrMsg.ShowErrorMsg(text);
    ErrorLog.push_back(frmErrMsg.Text);
}

void Companion::PutMsg(int code) {
    frmErrMsg.PutMsg(code, GameLanguage, display::TableModeSpades);
    ErrorLog.push_back(frmErrMsg.Text);
}

void Companion::NotExistProcess(int slot, int code) {
    FindGameWindows();
    FindSubWindow(slot);
    // A sub-window the user closed is opened again with the table's button.
    if (Cap.SubWindow[static_cast<std::size_t>(slot)].Handle == 0 && GameWindow != 0 && Cap.ReopenSubWindow)
        Cap.ReopenSubWindow(slot);
    if (Cap.SubWindow[static_cast<std::size_t>(slot)].Handle == 0) {
        if (slot >= 1 && slot <= 5) RecheckSlots[static_cast<std::size_t>(slot)] = true;
        RecheckRequested = true;
        PutMsg(code);
    }
}

// ---------------------------------------------------------------------------
// Deal steps
// ---------------------------------------------------------------------------

void Companion::RefreshBidLabels() {
    for (int p = 0; p < 4; ++p) frmZ.lblBid[p].Caption = Bids[p];
}

std::array<int, 3> Companion::SideTricks(const std::array<int, 4>& byPos) const {
    std::array<int, 3> t{byPos[0] + byPos[2], byPos[1] + byPos[3], 0};
    t[2] = t[0] + t[1];
    return t;
}

void Companion::BidStep(int autoMode) {
    if (FileOperation || InBidStep) return;
    if (CardPlayState == 2) CardPlayState = 1;
    InBidStep = true;
    int code = 0;
    const auto& hand = Cap.SubWindow[SlotHand];
    const auto& score = Cap.SubWindow[SlotScore];
    if (hand.Handle == 0 || !desktop_.windows.IsWindow(hand.Handle)) {
        code = 21;
    } else if (score.Handle == 0 || !desktop_.windows.IsWindow(score.Handle)) {
        code = 1;
    } else {
        frmZ.cmdTimer.Enabled = false;
        [&] {
            if (LastTrickMinimised == 0 && Cap.SubWindow[SlotTrick].Handle) {
                desktop_.windows.Minimize(Cap.SubWindow[SlotTrick].Handle);
                LastTrickMinimised = 1;
            }
            if (Rating && Rating->MyRating.Caption.empty()) ReadShowRating(0);
            code = readers_.CaptureBid(Bids, BidCount, BidLocCount);
            frmZ.cntBidLoc.Caption = Num(BidLocCount);
            if (code == 11 || code == 13) return;
            if (BidCount > BidsShown) {
                BidsShown = BidCount;
                RefreshBidLabels();
                if (BidCount == 4) BidsShown = 0;
            }
            frmZ.cntBids.Caption = Num(BidCount);
            if (BidCount == 0) return;
            if (Bids == PrevBids) {
                code = 16;
                return;
            }
            if (Settings.AlertNilBids) {
                for (int p = 0; p < 4; ++p) {
                    if (IsNilKind(Bids[p]) && !IsNilKind(PrevBids[p])) {
                        AlertBeep(1);
                        clock_.Wait(500);
                    }
                }
            }
            PrevBids = Bids;
            if (BidCount >= 2 && Alerts && !Alerts->View.AlertName.Visible) {
                Alerts->HideAskAlert();
                Alerts->View.cmdAlertNone.Visible = true;
            }
            frmHelpBid.HideForBidCount(BidCount);
            if (PlayerNames[0].empty() && PlayerNames[1].empty() && NameState == 0) {
                NameState = 1;
                int c = 0;
                for (int attempt = 1; attempt <= 3; ++attempt) {
                    std::vector<ScoreLine> lines;
                    c = readers_.CaptScore(lines);
                    if (c == 0) {
                        Scores.Clear();
                        for (const auto& l : lines) Scores.AddRow(l);
                        Scores.LoadTeamFigures(UserSeat());
                        break;
                    }
                }
                if (c != 0) {
                    code = c;
                    return;
                }
            }
            if (Rating && Rating->MyIdIndex != 0 && NameState == 1) {
                NameState = 2;
                reading::HandRead hr;
                readers_.CaptHand(hr);
                for (int p = 0; p < 4; ++p) {
                    if (!hr.Names[p].empty()) Record.Names[p] = hr.Names[p];
                }
                const std::size_t idIndex = static_cast<std::size_t>(Rating->MyIdIndex - 1);
                const std::string id = idIndex < Settings.MyIds.size() ? Settings.MyIds[idIndex] : std::string();
                for (int p = 0; p < 4; ++p) {
                    if (!core::Trim(id).empty() && players::NamesMatch(hr.Names[p], id)) {
                        Seats.sitNESW(p);
                        break;
                    }
                }
                for (int k = 0; k < 4; ++k) PlayerNames[k] = Record.Names[Seats.SeatAt(k)];
                for (int k = 0; k < 4; ++k) frmZ.plName[k].Caption = PlayerNames[k];
            }
            if (CountersOn() || Settings.LeftCounterPos.On()) {
                const scoring::Side2 sc{Scores.TeamScore[0], Scores.TeamScore[1]};
                const scoring::Side2 bg{Scores.TeamBags[0], Scores.TeamBags[1]};
                if (BidCount > 3) {
                    Counters.StartPlay(sc, bg, Bids);
                    Counters.frmCounter0.Window.Visible = false;
                } else {
                    Counters.ShowBids(sc, bg, Bids, BidCount);
                    Counters.frmCounter.Window.Visible = false;
                }
            }
            if (BidCount == 0) {
                code = 12;
            } else if (BidCount < 4) {
                code = 15;
            } else {
                if (frmZ.cmdScore.Caption == "Minimize") frmZ.cmdScore.Caption = "Show Score";
                PrevTrickCount = -1;
                readers_.NewDeal();
                if (Rating && Rating->CountingAllowed) PlayedCards.clear();
                int nils = 0;
                for (const auto& b : Bids) nils += IsNilKind(b) ? 1 : 0;
                if (nils >= 2) {
                    AlertBeep(2);
                    if (Settings.JPN) {
                        frmZ.lblMsg.Caption = "２人が NIL をビッド";
                        frmZ.lblMsg.Visible = true;
                    }
                }
            }
        }();
    }

    // Dispatch.
    bool newDue = true;
    switch (code) {
        case 0:
            PrepareBidding();
            newDue = false;
            break;
        case 1:
            if (TickCount > 10) NotExistProcess(SlotScore, 1);
            break;
        case 2:
            ShowError("Error occurred in reading score.");
            break;
        case 4:
            ShowError("Error occurred in reading player names.");
            break;
        case 11:
        case 12:
        case 13:
        case 19:
            PrevBids = {};
            Bids = {};
            PlayedCards.clear();
            if (!autoMode) PutMsg(code);
            break;
        case 15:
            Bids = {};
            if (!autoMode) PutMsg(15);
            break;
        case 16:
            if (!autoMode) PutMsg(16);
            break;
        case 21:
            if (TickCount >= 11) NotExistProcess(SlotHand, 21);
            break;
        default:
            break;
    }
    if (newDue) {
        const std::uint32_t now = clock_.TickCount();
        SlotDue[SlotBidWatch] = now + (TickCount < 3 ? 1000u : static_cast<std::uint32_t>(Settings.WaitBidMs));
        if (code == 15) {
            if (BidCount == 1) SlotDue[SlotBidWatch] = now + 2000;
            else if (BidCount == 2) SlotDue[SlotBidWatch] = now + 1500;
            else if (BidCount == 3) SlotDue[SlotBidWatch] = now + 800;
        } else if (code >= 11 && code <= 13) {
        } else if (BidCount == 4) {
            SlotDue[SlotBidWatch] = now + 2000;
        }
    }
    frmZ.cmdBid.Enabled = true;
    frmZ.cmdTimer.Enabled = true;
    frmZ.cmdHand.Visible = true;
    InBidStep = false;
}

void Companion::EndDealReset() {
    BidState = 0;
    frmZ.lblMsg.Caption.clear();
    PrevBids = {};
    Bids = {};
    frmZ.cmdHand.BackColor = core::kMainWindowBackColor;
    frmZ.cmdBid.BackColor = core::kMainWindowBackColor;
    if (Settings.AutoCaptBid) ArmSlot(SlotBidWatch, clock_.TickCount() + static_cast<std::uint32_t>(Settings.WaitBidMs));
    else Disarm(SlotBidWatch);
    Disarm(SlotHand);
    Disarm(SlotTrick);
    PlayedCards.clear();
    RemainingCardsState = 0;
}

void Companion::PrepareBidding() {
    BidState = 0;
    CardsSeen = 0;
    if (frmBoard.Visible) {
        frmBoard.Visible = false;
        BoardShown = 1;
        TimerInterval = LoopInterval;
    }
    frmBoard.DNilSignalGiven = false;
    // The next deal's panel is new even when it is of the same kind.
    frmBoard.LastBoardStat = 0;
    if (Alerts) Alerts->HideAskAlert();
    frmZ.Topmost = false;
    TricksPlayed = 0;
    TrickCounts = {};
    NilBroken = {};
    Disarm(SlotReminder);
    Disarm(SlotBidWatch);
    const std::uint32_t now = clock_.TickCount();
    if ((Rating && Rating->CountingAllowed) || CountersOn()) ArmSlot(SlotTrick, now + 300);
    if (Settings.AutoCaptHand) ArmSlot(SlotHand, now + static_cast<std::uint32_t>(Settings.WaitHandMs));
    frmZ.cmdBid.BackColor = Settings.BackColor;
    frmZ.cmdHand.BackColor = 0x0080FF;
}

int Companion::GetWinner(const std::array<int, 4>& counts) {
    int winner = -1;
    for (int p = 0; p < 4; ++p) {
        if (counts[p] > TrickCounts[p]) {
            winner = p;
            const int kind = core::BidKind(Bids[p]);
            if (kind != 0) {
                NilBroken[p] = kind;
                if (Settings.AlertFailNil) AlertBeep(1);
            }
        }
        TrickCounts[p] = counts[p];
    }
    return winner;
}

void Companion::TrickStep() {
    if (!CountersOn() || InTrickStep) return;
    SlotDue[SlotTrick] = clock_.TickCount() + 800;
    InTrickStep = true;
    TrickReading tr;
    readers_.CaptureTricks(tr);
    GetWinner(tr.Counts);
    if (tr.NoTrick && PrevTrickCount != 12) {
        InTrickStep = false;
        return;
    }
    const int t = tr.TrickNumber, p = PrevTrickCount;
    bool over = false;
    if (t != 0) over = tr.IsNew && t < p && p >= 10;
    else over = p != -1;
    if (tr.IsNew && t > TricksPlayed) TricksPlayed = t;
    AfterTrick(t, 3000, 2000);
    if (over) CaptureLastHand(1);
    InTrickStep = false;
}

// What both trick steps do after reading trick number t: the right counter
// shows the trick, and the last-hand capture moves earlier near the end.
void Companion::AfterTrick(int t, std::uint32_t delayAt11, std::uint32_t delayAt12) {
    if (Counters.CounterShown == 2) {
        auto tricks = SideTricks(TrickCounts);
        Counters.frmCounter.ShowCounterNow({Scores.TeamScore[0], Scores.TeamScore[1]}, tricks, Bids, NilBroken);
    }
    PrevTrickCount = t;
    const std::uint32_t now = clock_.TickCount();
    if (t == 11) SlotDue[SlotHand] = now + delayAt11;
    if (t == 12) SlotDue[SlotHand] = now + delayAt12;
}

void Companion::TrickStepCounting() {
    if (!CountersOn() || InTrickStep) return;
    SlotDue[SlotTrick] = clock_.TickCount() + 1000;
    InTrickStep = true;
    [&] {
        const auto& lt = Cap.SubWindow[SlotTrick];
        if (lt.Handle == 0 || !desktop_.windows.IsWindow(lt.Handle)) {
            NotExistProcess(SlotTrick, 25);
            return;
        }
        TrickReading tr;
        readers_.CaptureTricks(tr);
        GetWinner(tr.Counts);
        if (tr.NoTrick && PrevTrickCount != 12) return;
        std::array<std::string, 4> cards;
        bool got = false;
        for (int attempt = 0; attempt < 2 && !got; ++attempt) got = readers_.ReadLastTrick(cards, CardsSeen);
        if (!got) return;
        PlayedCards.push_back(cards);
        TricksPlayed = std::max(TricksPlayed + 1, tr.TrickNumber);
        if (CardsSeen >= 52 || TricksPlayed >= 13) {
            LastTrickMinimised = 1;
            InTrickStep = false;
            CaptureLastHand(1);
            return;
        }
        const int t = tr.TrickNumber, p = PrevTrickCount;
        const bool over = t != 0 ? (t < p && p >= 10) : (p != -1);
        AfterTrick(t, 10000, 8000);
        if (over) {
            InTrickStep = false;
            CaptureLastHand(1);
        }
    }();
    InTrickStep = false;
}

bool Companion::TestMyTurn() {
    if (GameWindow == 0) return false;
    if (platform::IsMinimized(desktop_.windows, GameWindow)) desktop_.windows.Restore(GameWindow);
    return readers_.TestMyTurn();
}

void Companion::PrepareNextGame() {
    Record = display::DealRecord{};
    PrevTrickCount = -1;
    Bids = {};
    PrevBids = {};
    TrickCounts = {};
    NilBroken = {};
    Counters.frmCounter0.ClrCounter();
    if (Alerts) {
        Alerts->View.AlertName.Caption.clear();
        Alerts->View.AlertName.Visible = false;
        Alerts->View.cmdAlertNone.Visible = false;
        if (!OffLine() && Alerts->PromptOn()) Alerts->ShowAskAlert(GameRect);
    }
    NameState = 0;
    PlayerNames = {};
}

void Companion::Restart() {
    OnlineMode = 0;
    frmBoard.BoardMode = Settings.BoardMode;
    UnloadCompanionWindows();
    if (Rating) Rating->MyRating.Caption.clear();
    filBox.Fill(folders_.WorkFolder());
    PrepareNextGame();
    EndDealReset();
    NewTableSeen = false;
    lastTableWindow_ = 0;
    FindGameWindows();
    FindSubWindow(-1);
}

// ---------------------------------------------------------------------------
// The capture of a finished deal
// ---------------------------------------------------------------------------

void Companion::CaptureLastHand(int autoMode) {
    if (OffLine()) return;
    if (autoMode) {
        if (!SlotArmed[SlotHand]) return;
        SlotDue[SlotHand] = clock_.TickCount() + static_cast<std::uint32_t>(Settings.WaitHandMs);
    }
    if (InHandCapture) return;
    InHandCapture = true;
    frmZ.cmdBid.Visible = false;
    frmZ.cmdHand.Enabled = false;
    const int before = Record.ScoreRowCount;
    const auto beforeRows = Record.ScoreRows;
    const int code = CaptureLastHandBody(autoMode);
    if (code != 0 && code != -1 && code != 7) {
        // The deal was not filed: the next attempt must see the new score
        // line as new again.
        Record.ScoreRowCount = before;
        Record.ScoreRows = beforeRows;
    }
    switch (code) {
        case 0:
        case -1:
            break;
        case 1:
            NotExistProcess(SlotScore, 1);
            break;
        case 2:
            if (Settings.JPN)
                ShowError(Titles.Title(GameLanguage, SlotHand) + " 読み取りのエラー.");
            else
                ShowError("Error occurred in reading score.");
            break;
        case 4:
            ShowError("Error occurred in reading player names.");
            break;
        case 7:
        case 24:
            if (!autoMode) PutMsg(code);
            break;
        case 21:
            NotExistProcess(SlotHand, 21);
            break;
        case 22: {
            const std::string title = desktop_.windows.Title(Cap.SubWindow[SlotHand].Handle).value_or("");
            if (Settings.JPN) ShowError(title + " 読み取りのエラー.");
            else ShowError("Failed in reading \"" + title + "\".");
            Record.ScoreRowCount = 0;
            break;
        }
        default:
            break;
    }
    frmZ.cmdBid.Visible = true;
    frmZ.cmdHand.Enabled = true;
    InHandCapture = false;
    frmZ.cntBids.Caption = "9";
}

int Companion::CaptureLastHandBody(int autoMode) {
    (void)autoMode;
    const auto& handWin = Cap.SubWindow[SlotHand];
    const auto& scoreWin = Cap.SubWindow[SlotScore];
    if (handWin.Handle == 0 || !desktop_.windows.IsWindow(handWin.Handle)) return 21;
    if (scoreWin.Handle == 0 || !desktop_.windows.IsWindow(scoreWin.Handle)) return 1;

    const int before = Record.ScoreRowCount;
    std::vector<ScoreLine> lines;
    int code = 0;
    for (int attempt = 1; attempt <= 5; ++attempt) {
        lines.clear();
        code = readers_.CaptScore(lines);
        if (code == 0) break;
    }
    if (code != 0) return code;
    const int count = static_cast<int>(std::min<std::size_t>(lines.size(), display::MaxScoreRows));
    Record.ScoreRowCount = count;
    for (int i = 0; i < count; ++i) Record.ScoreRows[static_cast<std::size_t>(i)] = lines[static_cast<std::size_t>(i)];
    Scores.Clear();
    for (int i = 0; i < count; ++i) Scores.AddRow(lines[static_cast<std::size_t>(i)]);
    if (count == before) return 7;
    if (count == 0) {
        const std::string& third = Counters.frmCounter.cTrk[2].Caption;
        if (!third.empty() && third != "0") EndDealReset();
        return -1;
    }

    reading::HandRead hand;
    bool emptyOnce = false;
    code = 0;
    for (int attempt = 1; attempt <= 5; ++attempt) {
        hand = reading::HandRead{};
        code = readers_.CaptHand(hand);
        if (code != 0) continue;
        const bool empty = std::all_of(hand.Names.begin(), hand.Names.end(), [](const std::string& n) { return n.empty(); });
        if (!empty) break;
        if (emptyOnce) {
            code = 11;
            break;
        }
        emptyOnce = true;
        attempt = 4;  // the fifth attempt comes next
    }
    if (code != 0) return code;

    for (int p = 0; p < 4; ++p) {
        if (hand.Names[p].empty()) hand.Names[p] = Record.Names[p];
    }
    if (hand.Cards == PrevHands) return 24;

    // The user's seat.
    int p = Seats.SeatAt(0);
    if (Seats.IsAuto()) {
        bool found = false;
        for (std::size_t i = 0; i < Settings.MyIds.size() && !found; ++i) {
            if (core::Trim(Settings.MyIds[i]).empty()) continue;
            for (int s = 0; s < 4; ++s) {
                if (players::NamesMatch(hand.Names[s], Settings.MyIds[i])) {
                    p = s;
                    if (Rating) Rating->MyIdIndex = static_cast<std::int32_t>(i + 1);
                    found = true;
                    break;
                }
            }
        }
    }
    Seats.sitNESW(p);
    FileDeal(hand, p);
    return 0;
}

void Companion::FileDeal(const reading::HandRead& hand, int p) {
    PrevHands = hand.Cards;
    std::array<std::string, 4> bidsBySeat;
    for (int k = 0; k < 4; ++k) bidsBySeat[static_cast<std::size_t>((p + k) % 4)] = PrevBids[k].empty() ? Bids[k] : PrevBids[k];

    display::DealRecord& rec = Record;
    rec.State = 1;
    rec.Names = hand.Names;
    rec.Seat2 = bidsBySeat;
    for (int t = 0; t < display::TrickCount; ++t) {
        for (int s = 0; s < 4; ++s) {
            rec.Trick[t][s] = hand.Cards[s][t];
            rec.Mark[t][s] = hand.Marks[s][t];
        }
    }
    for (int k = 0; k < 4; ++k) {
        PlayerNames[k] = rec.Names[Seats.SeatAt(k)];
        frmZ.plName[k].Caption = PlayerNames[k];
    }

    const std::string name = Records->WriteRecordFile(rec, filBox.Entries);
    if (!name.empty()) filBox.InsertTop(name);

    if (Alerts) Alerts->CheckSeatPlayers(rec.Names);
    int firstSeat = 0;
    for (int s = 0; s < 4; ++s)
        if (rec.Mark[0][s] == display::MarkBrackets) firstSeat = s;
    FirstPlayerPos = Seats.InvSeat(firstSeat);

    // The score line of this deal, then the counters.
    Scores.LoadTeamFigures(UserSeat());
    scoring::TrickMarks leadMarks{};
    for (int t = 0; t < 13; ++t)
        for (int s = 0; s < 4; ++s) leadMarks[t][s] = rec.Mark[t][s] == display::MarkBrackets ? 1 : 0;
    const scoring::TrickCounts tc = scoring::DealTrickCounts(rec.Trick, leadMarks);
    std::array<int, 4> tricksByPos{};
    for (int k = 0; k < 4; ++k) tricksByPos[k] = tc.Tricks[Seats.SeatAt(k)];
    Bids4 bidsByPos;
    for (int k = 0; k < 4; ++k) bidsByPos[k] = bidsBySeat[Seats.SeatAt(k)];
    if (CountersOn()) {
        for (int k = 0; k < 4; ++k) {
            const int kind = core::BidKind(bidsByPos[k]);
            if (kind != 0 && tricksByPos[k] > 0) NilBroken[k] = kind;
        }
        if (Counters.CounterShown != 2) {
            // The bids were never all seen: start the right counter from the
            // line before this deal.
            const auto prev = Scores.At(Scores.ScoreRowCount - 1);
            const int uc = scoring::ScoreRows::UserPointsColumn(UserSeat());
            const int oc = scoring::ScoreRows::OpponentPointsColumn(UserSeat());
            Counters.StartPlay({prev[uc], prev[oc]}, {prev[uc + 1], prev[oc + 1]}, bidsByPos);
        }
        auto tricks = SideTricks(tricksByPos);
        Counters.frmCounter.ShowCounterNow({Scores.TeamScore[0], Scores.TeamScore[1]}, tricks, bidsByPos, NilBroken);
        HideCounterAt = clock_.SecondsOfDay() + 1;
    }
    {
        scoring::NilDeal nd;
        nd.Names = rec.Names;
        nd.Bids = bidsBySeat;
        for (int s = 0; s < 4; ++s) nd.Tricks[s] = tc.Tricks[s];
        nd.Cards = scoring::HandsFromTricks(rec.Trick);
        nd.SeatOfPos = Seats.SeatOfPos();
        scoring::NilHistoryContext ctx;
        ctx.Folder = folders_.WorkFolder();
        ctx.Japanese = Settings.JPN;
        ctx.UserIdentified = Rating && Rating->MyIdIndex != 0;
        ctx.SuicideTable = Table.SuicideTable;
        ctx.DoubleNilPassTable = Table.DNilPassTable;
        ctx.AlertFailNil = Settings.AlertFailNil;
        if (!Settings.log.empty()) ctx.LogPath = folders_.EnterProgramFolder(Settings.log);
        ctx.FailNilAlert = [this] { AlertBeep(1); };
        LastNilHistory = scoring::WriteNilHistory(nd, {Scores.TeamScore[0], Scores.TeamScore[1]}, ctx, clock_);
    }
    if (Settings.MinimizeLastHand && Cap.SubWindow[SlotHand].Handle)
        desktop_.windows.Minimize(Cap.SubWindow[SlotHand].Handle);

    ++FiledCount;
    if (OnDealFiled) {
        FiledDeal d;
        d.File = name;
        d.ScoreRow = Scores.At(Scores.ScoreRowCount);
        const auto& c = Counters.frmCounter;
        for (int i = 0; i < 3; ++i) d.cTrk[i] = c.cTrk[i].Caption;
        for (int i = 0; i < 2; ++i) {
            d.cPts[i] = c.cPts[i].Caption;
            d.cBag[i] = c.cBag[i].Caption;
            d.aPt[i] = c.aPt[i].Caption;
        }
        d.Bids = bidsBySeat;
        d.Names = rec.Names;
        for (int s = 0; s < 4; ++s) d.Tricks[s] = tc.Tricks[s];
        d.UserSeat = UserSeat();
        OnDealFiled(d);
    }

    // The end of the game.
    const int we = Scores.TeamScore[0], they = Scores.TeamScore[1];
    if ((we >= Settings.GamePoint || they >= Settings.GamePoint) && we != they) {
        clock_.Wait(1000);
        ReadShowRating(1);
        PlayAlertSound(we > they ? Settings.AlertWinning : Settings.AlertLosing);
        const auto last = Scores.At(Scores.ScoreRowCount);
        ++GamesOver;
        PrepareNextGame();
        PrevHands = hand.Cards;
        if (OnGameOver) OnGameOver(last);
    }
    EndDealReset();
}

// ---------------------------------------------------------------------------
// The bidding board
// ---------------------------------------------------------------------------

int Companion::GetBoardStat() {
    if (BidState == -4) return 0;
    frmBoard.BtnXY = {};
    frmBoard.BoardStat = readers_.GetBoardStat(frmBoard.BtnXY);
    return frmBoard.BoardStat;
}

void Companion::CheckBoard() {
    if (BidState == -3 || BidState == -2) return;
    if (frmBoard.BoardMode == 2 && !Table.DNilPassTable) return;
    const int s = GetBoardStat();
    if (s == 0 || s == frmBoard.LastBoardStat) {
        frmBoard.LastBoardStat = s;
        return;
    }
    if (s == BoardDoubleNil && Table.DNilPassTable && Settings.AlertCanDNilPass && !frmBoard.DNilSignalGiven) {
        AlertBeep(1);
        frmBoard.DNilSignalGiven = true;
    }
    if (s == BoardOrdinary && frmBoard.BoardMode == 2) return;
    if (frmBoard.BoardMode == 0) return;
    frmBoard.LastBoardStat = s;
    frmBoard.Loaded = true;
    ShowBoard(s);
}

void Companion::ShowBoard(int mode) {
    frmBoard.Layout(mode, Table.DNilPassTable);
    frmBoard.Visible = true;
    frmBoard.Topmost = Settings.TopMostBiddingBoard;
    BoardShown = 2;
    if (mode == BoardOrdinary) BidState = -3;
    else if (mode == BoardDoubleNil) BidState = -2;
}

void Companion::ClickAt(int x, int y) {
    desktop_.input.SetCursorPos({x, y});
    clock_.Wait(0);
    desktop_.input.LeftClick();
    clock_.Wait(0);
}

void Companion::ClickBidButton(int index, bool reread) {
    if (GameWindow && platform::IsMinimized(desktop_.windows, GameWindow)) desktop_.windows.Restore(GameWindow);
    const int s = reread ? GetBoardStat() : frmBoard.BoardStat;
    if (s == BoardOrdinary) {
        if (!((index >= 1 && index <= 10) || index == 14)) return;
    } else if (s == BoardDoubleNil) {
        if (index != 15 && index != 16) return;
    } else {
        return;
    }
    platform::Point p = frmBoard.BtnXY[static_cast<std::size_t>(index)];
    if (p.X == 0 && p.Y == 0) return;
    if (index == 16) p = {p.X + 15, p.Y + 5};
    if (index == 15) p = {p.X + 5, p.Y + 5};
    const std::optional<platform::Point> saved = desktop_.input.CursorPos();
    ClickAt(p.X + 2, p.Y + 2);
    if (saved) desktop_.input.SetCursorPos(*saved);
}

void Companion::DoClickEver(int index) {
    int want = 0;
    if ((index >= 1 && index <= 10) || index == 14) want = BoardOrdinary;
    else if (index == 15 || index == 16) want = BoardDoubleNil;
    else return;
    // A missed click is repeated while the panel is still up; a panel that
    // never goes away does not hold the program for ever.
    bool first = true;
    for (int round = 0; round < 20; ++round) {
        ClickBidButton(index, first);
        first = false;
        if (GetBoardStat() != want) break;
    }
}

void Companion::Btn_Click(int index) {
    frmZ.LastBoardIndex = Num(index);
    if ((index >= 1 && index <= 10) || index == 14) {
        if (frmBoard.BoardMode & BoardModeConfirmBit) {
            frmBoard.RememberedBid = index;
            ShowBoard(BoardConfirm);
        } else {
            DoClickEver(index);
            HideMe();
        }
    } else if (index == 15) {
        DoClickEver(15);
        HideMe();
    } else if (index == 16) {
        ShowBoard(BoardOrdinary);
        DoClickEver(16);
    } else if (index == 17) {
        DoClickEver(frmBoard.RememberedBid);
        HideMe();
    } else if (index == 18) {
        ShowBoard(BoardOrdinary);
    } else if (index == 20) {
        frmBoard.BoardMode &= ~BoardModeConfirmBit;
        frmBoard.Btn[20].Visible = false;
        DoClickEver(frmBoard.RememberedBid);
        HideMe();
    } else if (index == 21) {
        frmBoard.BoardMode &= 2;
        frmBoard.Btn[21].Visible = false;
        HideMe();
    }
}

void Companion::HideMe() {
    frmBoard.Visible = false;
    BoardShown = 1;
    TimerInterval = LoopInterval;
    BidState = -4;
    if (frmHelpBid.Window.Visible) frmHelpBid.Window.Visible = false;
}

}  // namespace tracking
