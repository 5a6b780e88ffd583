#include "tracking/game_windows.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "core/text.h"
#include "display/window_positions.h"

namespace tracking {

namespace {
constexpr int kScore = JobIndex(Job::ScoreWindow);
constexpr int kHand = JobIndex(Job::LastHand);
constexpr int kTrick = JobIndex(Job::LastTrick);
}  // namespace

platform::WindowHandle GameWindows::Sub(int slot) const {
    if (slot < 0 || slot >= reading::kSubWindowCount) return 0;
    return subs_[static_cast<std::size_t>(slot)].Handle;
}

void GameWindows::PlaceForCapture(int k) {
    if (k < 0 || k >= reading::kSubWindowCount) return;
    SubWindowSlot& s = subs_[static_cast<std::size_t>(k)];
    auto& windows = e_.Desktop.windows;
    const std::optional<platform::Rect> outer = windows.WindowRect(s.Handle);
    if (!outer) return;
    s.Rect = *outer;
    platform::Rect r = s.Rect;
    // A window the game put at the corner goes where the player keeps it.
    if (!s.Placed && std::abs(r.Left) + std::abs(r.Top) < 11 && !(s.Home.X == 0 && s.Home.Y == 0)) {
        r = {s.Home.X, s.Home.Y, s.Home.X + r.Width(), s.Home.Y + r.Height()};
        s.Placed = true;
    }
    // Only what is on the screen can be copied.
    const platform::Point screen = windows.ScreenSize();
    if (r.Left < 0) r = {0, r.Top, r.Width(), r.Bottom};
    if (r.Top < 0) r = {r.Left, 0, r.Right, r.Height()};
    if (r.Right > screen.X + 5) {
        const std::int32_t dx = r.Right - (screen.X + 5);
        r = {r.Left - dx, r.Top, r.Right - dx, r.Bottom};
    }
    if (r.Bottom > screen.Y) {
        const std::int32_t dy = r.Bottom - screen.Y;
        r = {r.Left, r.Top - dy, r.Right, r.Bottom - dy};
    }
    if (!(r == s.Rect)) {
        windows.Move(s.Handle, r);
        s.Rect = r;
    }
}

void GameWindows::ReopenSubWindow(int k) {
    OpenSubWindows(k);
    e_.Clock.Wait(800);
    FindGameWindows();
    FindSubWindow(k);
}

bool GameWindows::SubWindowAlive(int slot) const {
    const platform::WindowHandle h = Sub(slot);
    return h != 0 && e_.Desktop.windows.IsWindow(h);
}

void GameWindows::LoadPositions() {
    if (e_.Settings.CFG.empty()) return;
    const display::LoadedPositions lp = display::LoadWindowPositions(
        e_.Folders.EnterProgramFolder(e_.Settings.CFG), screen_, e_.Models.frmZ.Rect, e_.Desktop.system.AnsiCodePage());
    if (!lp.Found) return;
    e_.Models.frmZ.Rect = lp.Main;
    gameHome_ = lp.Pos[display::PosSpadesWindow];
    e_.StoredCardPlayPos = lp.Pos[display::PosCardPlayWindow];
    subs_[kScore].Home = lp.Pos[display::PosScoreWindow];
    subs_[kHand].Home = lp.Pos[display::PosLastHandWindow];
    subs_[kTrick].Home = lp.Pos[display::PosLastTrickWindow];
    auto& c = e_.Models.Counters;
    const platform::Point l = lp.Pos[display::PosLeftCounter], r = lp.Pos[display::PosRightCounter];
    if (l.X + l.Y != 0) {
        c.frmCounter0.Window.Left = l.X;
        c.frmCounter0.Window.Top = l.Y;
    }
    if (r.X + r.Y != 0) {
        c.frmCounter.Window.Left = r.X;
        c.frmCounter.Window.Top = r.Y;
    }
}

void GameWindows::SavePositions() {
    if (e_.Settings.CFG.empty()) return;
    display::PosTable now{};
    auto at = [this](platform::WindowHandle h) {
        const std::optional<platform::Rect> r = h ? e_.Desktop.windows.WindowRect(h) : std::nullopt;
        return r ? platform::Point{r->Left, r->Top} : platform::Point{};
    };
    const auto& c = e_.Models.Counters;
    now[display::PosSpadesWindow] = at(game_);
    now[display::PosScoreWindow] = at(Sub(kScore));
    now[display::PosLastHandWindow] = at(Sub(kHand));
    now[display::PosLastTrickWindow] = at(Sub(kTrick));
    if (e_.Models.frmCardPlay.State != display::CardPlayUnloaded)
        now[display::PosCardPlayWindow] = {e_.Models.frmCardPlay.Window.Left, e_.Models.frmCardPlay.Window.Top};
    now[display::PosLeftCounter] = {c.frmCounter0.Window.Left, c.frmCounter0.Window.Top};
    now[display::PosRightCounter] = {c.frmCounter.Window.Left, c.frmCounter.Window.Top};
    display::SaveWindowPositions(e_.Folders.EnterProgramFolder(e_.Settings.CFG), screen_.X, e_.Models.frmZ.Rect, now,
                                 e_.Desktop.system.AnsiCodePage());
}

void GameWindows::FindGameWindows() {
    list_.clear();
    game_ = 0;
    siteIndex_ = {-1, -1, -1};
    popups_.clear();
    for (platform::WindowHandle h : e_.Desktop.windows.TopLevel()) {
        const std::optional<platform::WindowInfo> info = e_.Desktop.windows.Info(h);
        if (!info || !info->Decorated || !info->Visible) continue;
        // Our own windows show the game's names and titles too.
        if (e_.Desktop.windows.IsOwnWindow(h)) continue;
        std::string title = core::Trim(e_.Desktop.windows.Title(h).value_or(""));
        if (!e_.OffLine() && e_.Settings.TopmostPlayerInfo && reading::IsPopupTitle(title) &&
            static_cast<int>(popups_.size()) < kMaxPopups)
            popups_.push_back(h);
        if (static_cast<int>(list_.size()) >= kMaxListedWindows) continue;
        list_.push_back({h, title});
        const int index = static_cast<int>(list_.size());  // numbered from 1
        // The table window: the English title or the table title of a site
        // language. A table title of another language tells the game's
        // language before the button scan has run.
        int tableLang = 0;
        if (reading::SiteWindowKind(title) == reading::SiteWindow::Table) tableLang = reading::LangUSA;
        for (int lang = reading::LangFirst + 1; lang <= reading::LangLast && tableLang == 0; ++lang) {
            const std::string& t = e_.Titles.Title(lang, reading::SlotTable);
            if (!t.empty() && core::Contains(title, t)) tableLang = lang;
        }
        if (tableLang != 0) {
            if (game_ == 0) {
                game_ = h;
                siteIndex_[0] = index;
                if (tableLang != reading::LangUSA && e_.Language == GameLanguage::English)
                    e_.Language = LanguageOfRow(tableLang);
                tableTitle_ = title;
            }
            continue;
        }
        switch (reading::SiteWindowKind(title)) {
            case reading::SiteWindow::Lobby:
                siteIndex_[1] = index;
                if (screen_.X > 1000)
                    if (const auto r = e_.Desktop.windows.WindowRect(h); r && r->Width() > 800)
                        e_.Desktop.windows.Move(h, {200, 100, 1000, 700});
                break;
            case reading::SiteWindow::SitePage:
                siteIndex_[2] = index;
                if (screen_.X > 1000)
                    if (const auto r = e_.Desktop.windows.WindowRect(h); r && r->Width() > 800)
                        e_.Desktop.windows.Move(h, {r->Left, r->Top, r->Left + 800, r->Top + 600});
                break;
            default:
                break;
        }
    }
    e_.Cap.GameWindow = game_;
}

void GameWindows::FindSubWindow(int slot) {
    std::vector<std::string> titles;
    titles.reserve(list_.size());
    for (const auto& w : list_) titles.push_back(w.Title);
    if (slot == -1) {
        int lang = e_.LanguageRow();
        const auto found = e_.Titles.FindSubWindows(titles, lang);
        e_.Language = LanguageOfRow(lang);
        for (int k = 1; k <= 3; ++k)
            subs_[k].Handle = found[k] >= 0 ? list_[static_cast<std::size_t>(found[k])].Handle : 0;
        return;
    }
    if (slot < 0 || slot >= reading::kSubWindowCount) return;
    subs_[static_cast<std::size_t>(slot)].Handle = 0;
    int lang = e_.LanguageRow();
    const int i = e_.Titles.FindSubWindow(titles, slot, lang);
    e_.Language = LanguageOfRow(lang);
    if (i >= 0) subs_[static_cast<std::size_t>(slot)].Handle = list_[static_cast<std::size_t>(i)].Handle;
}

void GameWindows::OpenSubWindows(int slot) {
    const int from = slot == 254 ? 1 : slot;
    const int to = slot == 254 ? 3 : slot;
    static const char* const kButton[] = {"", "Last Trick button", "Last Hand button", "score button"};
    for (int k = from; k <= to; ++k) {
        if (k < 1 || k > 3) continue;
        const platform::Point p = e_.Table.ButtonXY[static_cast<std::size_t>(k)];
        if (p.X + p.Y == 0) continue;
        // A sub-window opened by the previous click may cover the buttons.
        e_.Desktop.windows.SetTopmost(game_, true);
        ClickTarget t;
        t.Window = game_;
        t.ReadAt = buttonsReadAt_;
        t.Screen = {p.X - 10, p.Y + 4};
        t.What = kButton[k];
        // A window the user closes again may be opened again, once per deal.
        t.State = "sub " + std::to_string(k) + " " + std::to_string(game_) + " " + std::to_string(e_.DealNumber);
        const ClickResult r = e_.Clicker.Click(
            t,
            [&] {
                TableInfo again;
                e_.Readers.ReadTableInfo(again);
                return again.ButtonXY[static_cast<std::size_t>(k)] == p;
            },
            [&] { return SubWindowShown(k); });
        if (!ClickMade(r) && r != ClickResult::AlreadyClicked) e_.ClickRefused(t.What, r);
    }
}

bool GameWindows::SubWindowShown(int slot) {
    for (const platform::WindowHandle h : e_.Desktop.windows.TopLevel()) {
        if (e_.Desktop.windows.IsOwnWindow(h)) continue;
        const std::optional<std::string> title = e_.Desktop.windows.Title(h);
        if (!title) continue;
        std::vector<std::string> one{*title};
        int lang = e_.LanguageRow();
        if (e_.Titles.FindSubWindow(one, slot, lang) >= 0) return true;
    }
    return false;
}

void GameWindows::ApplyLeftEdgeRule() {
    std::optional<platform::Rect> r = e_.Desktop.windows.WindowRect(game_);
    if (!r) return;
    if (r->Left < 0 && !(e_.Models.frmBoard.BoardMode & 1)) {
        e_.Desktop.windows.Move(game_, {0, r->Top, r->Width(), r->Bottom});
        r = e_.Desktop.windows.WindowRect(game_).value_or(*r);
    }
    gameRect_ = *r;
}

void GameWindows::MoveGame(const platform::Rect& r) {
    e_.Desktop.windows.Move(game_, r);
    gameRect_ = e_.Desktop.windows.WindowRect(game_).value_or(gameRect_);
}

void GameWindows::PlaceSubWindow(int slot) {
    const platform::WindowHandle h = slot == 0 ? game_ : Sub(slot);
    if (h == 0 || !e_.Desktop.windows.IsWindow(h)) return;
    e_.Desktop.windows.SetTopmost(h, true);
    e_.Desktop.windows.Restore(h);
    const platform::Rect r = e_.Desktop.windows.WindowRect(h).value_or(platform::Rect{});
    SubWindowSlot& s = subs_[static_cast<std::size_t>(slot)];
    s.Rect = r;
    if (!s.Placed && r.Left + r.Top < 1) {
        if (!(s.Home.X == 0 && s.Home.Y == 0))
            e_.Desktop.windows.Move(h, {s.Home.X, s.Home.Y, s.Home.X + r.Width(), s.Home.Y + r.Height()});
        s.Rect = e_.Desktop.windows.WindowRect(h).value_or(s.Rect);
        if (slot == 0) ApplyLeftEdgeRule();
        s.Placed = true;
    }
    if (slot == 0) gameRect_ = s.Rect;
}

void GameWindows::GetSubWindows() {
    e_.Readers.SetGameWindow(game_, e_.LanguageRow());
    const bool dnilPassBefore = e_.Table.DNilPassTable, suicideBefore = e_.Table.SuicideTable;
    e_.Readers.ReadTableInfo(e_.Table);
    e_.SignalTableFlags(dnilPassBefore, suicideBefore);
    buttonsReadAt_ = e_.Desktop.windows.WindowRect(game_).value_or(platform::Rect{});
    if (e_.Table.GameLanguage != 0) e_.Language = LanguageOfRow(e_.Table.GameLanguage);
    const bool newTable = e_.Table.BoxFound && (game_ != lastTableWindow_ || !newTableSeen_);
    if (newTable) {
        e_.Readers.ReadPlayerList(e_.Table);
        e_.UpdateTableNames();
        newTableSeen_ = true;
        lastTableWindow_ = game_;
        e_.Models.frmZ.Caption = reading::TableCaption(kProgramCaption, tableTitle_);
        SearchRating();
        OpenSubWindows(254);
        e_.Clock.Wait(800);
        FindGameWindows();
        if (game_ == 0) return;
        FindSubWindow(-1);
        for (int k = 1; k <= 3; ++k) {
            if (Sub(k) == 0) break;
            PlaceSubWindow(k);
        }
        e_.Changed();
    } else {
        // Sub-windows that went away are looked up again each tick.
        for (int k = 1; k <= 3; ++k)
            if (!SubWindowAlive(k)) FindSubWindow(k);
    }
    if (e_.Settings.MinimizeLastHand && Sub(kHand))
        e_.Desktop.windows.Minimize(Sub(kHand));
    SubWindowSlot& lt = subs_[kTrick];
    if (lt.Handle && std::abs(lt.Rect.Left) + std::abs(lt.Rect.Top) < 10) {
        if (const auto now = e_.Desktop.windows.WindowRect(lt.Handle)) {
            lt.Rect = *now;
            if (std::abs(lt.Rect.Left) + std::abs(lt.Rect.Top) < 10) {
                const int w = lt.Rect.Width(), h = lt.Rect.Height();
                e_.Desktop.windows.Move(lt.Handle, {screen_.X - w, screen_.Y - h, screen_.X, screen_.Y});
                lt.Rect = e_.Desktop.windows.WindowRect(lt.Handle).value_or(lt.Rect);
            }
        }
    }
}

void GameWindows::SearchRating() {
    if (!e_.Rating) return;
    e_.Rating->MyRating.Caption.clear();
    for (int i = 1; i <= kRatingSearchTries; ++i) {
        if (i > 1) {
            // The game may still be filling its player list.
            e_.Readers.ReadPlayerList(e_.Table);
            e_.UpdateTableNames();
        }
        e_.ReadShowRating(0, game_);
        if (!core::Trim(e_.Rating->MyRating.Caption).empty()) return;
    }
}

void GameWindows::MoveWinGame() {
    if (game_ == 0) return;
    gameRect_ = e_.Desktop.windows.WindowRect(game_).value_or(gameRect_);
    const int sw = screen_.X, sh = screen_.Y;
    if (!gamePlaced_) {
        platform::Rect r = gameRect_;
        if (r.Left < 3 && r.Top < 3 && !(gameHome_.X == 0 && gameHome_.Y == 0))
            MoveGame({gameHome_.X, gameHome_.Y, gameHome_.X + r.Width(), gameHome_.Y + r.Height()});
        r = gameRect_;
        if (sw >= 1200) {
            MoveGame({0, 0, 615, 700});
        } else if (sw >= 1000) {
            const auto& main = e_.Models.frmZ.Rect;
            const int mainW = main.Width();
            if (e_.Settings.ReduceOn && main.Right >= sw - 2 && r.Width() + mainW > sw) {
                const int width = sw == 1024 ? 615 : sw - mainW + 40;
                MoveGame({0, r.Top, width, r.Bottom});
            }
        } else if (e_.Settings.ReduceWidth != 0) {
            if (r.Width() > e_.Settings.ReduceWidth)
                MoveGame({-5, r.Top - 5, -5 + e_.Settings.ReduceWidth, r.Bottom - 5});
        } else {
            MoveGame({0, r.Top, r.Width(), r.Bottom});
        }
        if (const auto client = e_.Desktop.windows.ClientRect(game_))
            frameExtra_ = std::max(0, gameRect_.Height() - client->Height() - 35);
        gamePlaced_ = true;
        subs_[0].Placed = true;
    }
    if (e_.Models.frmBoard.BoardMode & 1) {
        const platform::Point at = sh > 600 ? platform::Point{0, 0} : platform::Point{-5, -12};
        if (gameRect_.Left != at.X || gameRect_.Top != at.Y)
            MoveGame({at.X, at.Y, at.X + gameRect_.Width(), at.Y + gameRect_.Height()});
    }
}

void GameWindows::NotExistProcess(int slot, int code) {
    FindGameWindows();
    FindSubWindow(slot);
    // A sub-window the user closed is opened again with the table's button.
    if (Sub(slot) == 0 && game_ != 0) {
        OpenSubWindows(slot);
        e_.Clock.Wait(800);
        FindGameWindows();
        FindSubWindow(slot);
    }
    if (Sub(slot) == 0) {
        if (slot >= 1 && slot <= 5) recheckSlots_[static_cast<std::size_t>(slot)] = true;
        recheckRequested_ = true;
        e_.PutMsg(code);
    }
}

void GameWindows::Recheck() {
    if (!recheckRequested_) return;
    for (int k = 1; k <= 5; ++k) {
        if (!recheckSlots_[static_cast<std::size_t>(k)]) continue;
        if (k < reading::kSubWindowCount && SubWindowAlive(k)) {
            e_.Models.frmErrMsg.Hide();
            recheckSlots_[static_cast<std::size_t>(k)] = false;
            recheckRequested_ = false;
            e_.Changed();
        } else {
            FindGameWindows();
            FindSubWindow(k);
        }
    }
}

void GameWindows::Forget() {
    newTableSeen_ = false;
    lastTableWindow_ = 0;
    for (auto& s : subs_) s.Handle = 0;
}

void GameWindows::PressScoreButton() {
    const platform::WindowHandle score = Sub(kScore);
    auto& button = e_.Models.frmZ.cmdScore;
    if (button.Caption == "Show Score") {
        e_.Settings.TopMostScoreWindow = 2;
        if (score) e_.Desktop.windows.Restore(score);
        button.Caption = "Hide Score";
    } else if (button.Caption == "Hide Score") {
        e_.Settings.TopMostScoreWindow = 0;
        if (score) e_.Desktop.windows.Minimize(score);
        button.Caption = "Show Score";
    } else if (button.Caption == "Minimize") {
        e_.GameMinimised = true;
        if (game_) e_.Desktop.windows.Minimize(game_);
        e_.Models.frmZ.Rect.Bottom = e_.Models.frmZ.Rect.Top;  // the main window is minimised too
        if (siteIndex_[1] > 0)
            e_.Desktop.windows.Restore(list_[static_cast<std::size_t>(siteIndex_[1] - 1)].Handle);
    }
    e_.Changed();
}

void GameWindows::MainResized(int heightPx) {
    e_.Models.frmZ.Rect.Bottom = e_.Models.frmZ.Rect.Top + heightPx;
    e_.GameMinimised = heightPx < 30;
    if (game_) {
        if (e_.GameMinimised) e_.Desktop.windows.Minimize(game_);
        else e_.Desktop.windows.Restore(game_);
    }
}

void GameWindows::ShowTop(int mode, platform::WindowHandle h) {
    if (mode == 2 && h != 0) e_.Desktop.windows.SetTopmost(h, true);
}

void GameWindows::KeepGameWindowsOnTop() {
    ShowTop(e_.Settings.TopMostScoreWindow, Sub(kScore));
    for (platform::WindowHandle h : popups_) e_.Desktop.windows.SetTopmost(h, true);
}

void GameWindows::RestoreGameIfMinimised() {
    if (game_ && platform::IsMinimized(e_.Desktop.windows, game_)) e_.Desktop.windows.Restore(game_);
}

}  // namespace tracking
