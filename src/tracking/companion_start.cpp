// The companion's start-up (settings, start-up checks, alert lists, the
// rating's options, window positions, the file box) and the two automatic
// capture switches that start-up applies.
#include "core/startup.h"
#include "display/work_folder.h"
#include "tracking/companion.h"

namespace tracking {

// ---------------------------------------------------------------------------
// Start-up
// ---------------------------------------------------------------------------

bool Companion::Start() {
    // The main window stands at the right edge of the screen.
    windows_.SetScreenSize(e_.Desktop.windows.ScreenSize());
    auto& z = e_.Models.frmZ;
    const int w = z.Rect.Width();
    z.Rect.Left = windows_.ScreenSize().X - w;
    z.Rect.Right = windows_.ScreenSize().X;
    e_.Titles.SetWinTitles();
    z.Caption = kProgramCaption;
    if (!LoadSettingsAndLists()) {
        e_.Ended = true;
        e_.TimerEnabled = false;
        e_.Events.Ended();
        return false;
    }
    // Automatic capture switches, applied through their own buttons.
    if (e_.Settings.AutoCaptHand) {
        e_.Settings.AutoCaptHand = false;
        ToggleAutoHand();
    }
    if (e_.Settings.AutoCaptBid) {
        e_.Settings.AutoCaptBid = false;
        ToggleAutoBid();
        flow_.EndDealReset();
    }
    for (auto& l : z.lblSeat) l.Visible = true;
    z.fraCapture.Visible = true;
    z.cmdEnd.Visible = true;
    e_.LoopInterval = 500;
    e_.TimerEnabled = true;

    // The diagnostic counters show only with the ordinary work folder.
    const bool diagnostics = e_.Folders.WorkFolderName == "Work";
    z.cntPlayers.Visible = diagnostics;
    z.cntBids.Visible = diagnostics;
    z.cntBidLoc.Visible = diagnostics;
    if (e_.Folders.WorkFolderName == "Work\\SpadeSample" && e_.Rating) e_.Rating->MyRating.Caption = "1840";
    e_.Changed();
    return true;
}

bool Companion::LoadSettingsAndLists() {
    core::StartupContext ctx{e_.Desktop.system, e_.Clock, screen_};
    core::StartupOutcome out = core::RunStartupChecks(ctx, e_.Folders, checkArchive_);
    e_.Settings = out.Settings.Values;
    if (!out.Continue) return false;
    auto& z = e_.Models.frmZ;
    const auto& s = e_.Settings;
    if (s.link == "uk") z.LinkMenuCaption = "Yahoo! Spades UK";
    const int cp = e_.Desktop.system.AnsiCodePage();

    players::ReadDefaultAlertList(e_.AlertList);
    const std::string alertPath = e_.Folders.EnterProgramFolder(s.AlertFile);
    players::ReadAlertList(alertPath, e_.AlertList, cp);
    e_.Alerts = std::make_unique<players::AlertChecker>(e_.AlertList, e_.Desktop.windows, e_.Desktop.sound, e_.Clock);
    auto& ao = e_.Alerts->Options;
    ao.Japanese = s.JPN;
    ao.LogSet = !s.log.empty();
    ao.MyIds = s.MyIds;
    ao.AskAlertPos = {s.AskAlertPos.X, s.AskAlertPos.Y};
    ao.AlertFilePath = alertPath;
    ao.CodePage = cp;
    e_.Alerts->SetCaptions();
    e_.Seats.InitNESW(s.MyIds);
    e_.Seats.SetJapanese(s.JPN);

    e_.Rating = std::make_unique<players::Ratings>(e_.Desktop.windows, e_.Clock);
    auto& ro = e_.Rating->Options;
    ro.Japanese = s.JPN;
    ro.LogSet = !s.log.empty();
    ro.CountCards = s.CardCounting;
    ro.MyIds = s.MyIds;
    ro.HistoryPath = s.history.empty() ? "" : e_.Folders.EnterProgramFolder(s.history);
    ro.MarkerFilePath = e_.Folders.EnterWorkFolder(display::MarkerFileName);
    ro.CodePage = cp;

    e_.Models.frmErrMsg.SetJapaneseInterface(s.JPN);
    e_.Models.Counters = scoring::Counters(s.JPN);
    e_.Models.Counters.frmCounter0.SetBoldBidTrick(s.BoldBidTrick);
    e_.Models.Counters.frmCounter.SetBoldBidTrick(s.BoldBidTrick);
    e_.Models.frmBoard.BoardMode = s.BoardMode;
    if (s.JPN) z.cmdTimer.Caption = "休止";

    e_.Readers.SetReduceWidth(s.ReduceWidth);
    windows_.LoadPositions();
    e_.Records = std::make_unique<display::RecordFiles>(e_.Clock, e_.Folders, cp);
    // With a log, shapes no font knows are written there once each, so that
    // a new site font can be added on purpose rather than found by chance.
    e_.Readers.HarvestUnknownGlyphs(s.log.empty() ? "" : e_.Folders.EnterProgramFolder(s.log), cp);
    e_.Models.filBox.Fill(e_.Folders.WorkFolder());
    return true;
}

void Companion::ToggleAutoBid() {
    e_.Settings.AutoCaptBid = !e_.Settings.AutoCaptBid;
    const std::uint32_t now = e_.Clock.TickCount();
    if (e_.Settings.AutoCaptBid) {
        e_.Slots.Disarm(Job::Reminder);
        e_.Slots.Arm(Job::BidWatch, now + static_cast<std::uint32_t>(e_.Settings.WaitBidMs));
    } else {
        e_.Slots.Disarm(Job::BidWatch);
        e_.Slots.Arm(Job::Reminder, now + static_cast<std::uint32_t>(e_.Settings.AlertTimeMs));
    }
    e_.Changed();
}

void Companion::ToggleAutoHand() {
    e_.Settings.AutoCaptHand = !e_.Settings.AutoCaptHand;
    if (e_.Settings.AutoCaptHand) {
        if (e_.CountingAllowed()) e_.Slots.Arm(Job::LastTrick, e_.Clock.TickCount() + 1000);
    } else {
        e_.Slots.Disarm(Job::LastTrick);
    }
    e_.Changed();
}

}  // namespace tracking
