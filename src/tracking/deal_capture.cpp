#include "tracking/deal_capture.h"

#include <algorithm>

#include "core/text.h"
#include "tracking/deal_views.h"

namespace tracking {

CaptureResult DealCapture::Capture(bool automatic) {
    if (e_.OffLine()) return CaptureResult::Skipped;
    if (automatic) {
        if (!e_.Slots.Armed(Job::LastHand)) return CaptureResult::Skipped;
        e_.Slots.SetDue(Job::LastHand, e_.Clock.TickCount() + static_cast<std::uint32_t>(e_.Settings.WaitHandMs));
    }
    BusyFlags::Guard guard(e_.Busy, Busy::HandCapture);
    if (!guard.Held()) return CaptureResult::Skipped;
    auto& z = e_.Models.frmZ;
    z.cmdBid.Visible = false;
    z.cmdHand.Enabled = false;
    const int before = e_.Record.ScoreRowCount;
    const auto beforeRows = e_.Record.ScoreRows;
    const CaptureResult r = ReadAndFile();
    if (r != CaptureResult::Filed && r != CaptureResult::NewGame && r != CaptureResult::ScoreUnchanged) {
        // The deal was not filed: the next attempt must see the new score
        // line as new again.
        e_.Record.ScoreRowCount = before;
        e_.Record.ScoreRows = beforeRows;
    }
    Report(r, automatic);
    z.cmdBid.Visible = true;
    z.cmdHand.Enabled = true;
    z.cntBids.Caption = "9";
    e_.Changed();
    return r;
}

void DealCapture::Report(CaptureResult r, bool automatic) {
    switch (r) {
        case CaptureResult::ScoreWindowMissing:
            w_.NotExistProcess(JobIndex(Job::ScoreWindow), Code(r));
            break;
        case CaptureResult::ScoreReadFailed:
            if (e_.Settings.JPN)
                e_.ShowError(e_.Titles.Title(e_.LanguageRow(), JobIndex(Job::LastHand)) + " 読み取りのエラー.");
            else
                e_.ShowError("Error occurred in reading score.");
            break;
        case CaptureResult::NamesReadFailed:
            e_.ShowError("Error occurred in reading player names.");
            break;
        case CaptureResult::ScoreUnchanged:
        case CaptureResult::HandUnchanged:
            if (!automatic) e_.PutMsg(Code(r));
            break;
        case CaptureResult::LastHandWindowMissing:
            w_.NotExistProcess(JobIndex(Job::LastHand), Code(r));
            break;
        case CaptureResult::LastHandUnreadable: {
            const std::string title = e_.Desktop.windows.Title(w_.Sub(JobIndex(Job::LastHand))).value_or("");
            if (e_.Settings.JPN) e_.ShowError(title + " 読み取りのエラー.");
            else e_.ShowError("Failed in reading \"" + title + "\".");
            e_.Record.ScoreRowCount = 0;
            break;
        }
        default:
            break;
    }
}

CaptureResult DealCapture::ReadAndFile() {
    if (!w_.SubWindowAlive(JobIndex(Job::LastHand))) return CaptureResult::LastHandWindowMissing;
    if (!w_.SubWindowAlive(JobIndex(Job::ScoreWindow))) return CaptureResult::ScoreWindowMissing;

    const int before = e_.Record.ScoreRowCount;
    std::vector<ScoreLine> lines;
    int code = 0;
    for (int attempt = 1; attempt <= 5; ++attempt) {
        lines.clear();
        code = e_.Readers.CaptScore(lines);
        if (code == 0) break;
    }
    if (code != 0) return static_cast<CaptureResult>(code);
    const int count = static_cast<int>(std::min<std::size_t>(lines.size(), display::MaxScoreRows));
    e_.Record.ScoreRowCount = count;
    for (int i = 0; i < count; ++i)
        e_.Record.ScoreRows[static_cast<std::size_t>(i)] = lines[static_cast<std::size_t>(i)];
    e_.Scores.Clear();
    for (int i = 0; i < count; ++i) e_.Scores.AddRow(lines[static_cast<std::size_t>(i)]);
    if (count == before) return CaptureResult::ScoreUnchanged;
    if (count == 0) {
        const std::string& third = e_.Models.Counters.frmCounter.cTrk[2].Caption;
        if (!third.empty() && third != "0") flow_.EndDealReset();
        ClearDealScore(e_);
        return CaptureResult::NewGame;
    }

    reading::HandRead hand;
    bool emptyOnce = false;
    code = 0;
    for (int attempt = 1; attempt <= 5; ++attempt) {
        hand = reading::HandRead{};
        code = e_.Readers.CaptHand(hand);
        if (code != 0) continue;
        const bool empty =
            std::all_of(hand.Names.begin(), hand.Names.end(), [](const std::string& n) { return n.empty(); });
        if (!empty) break;
        if (emptyOnce) {
            code = Code(CaptureResult::EmptyNames);
            break;
        }
        emptyOnce = true;
        attempt = 4;  // the fifth attempt comes next
    }
    if (code != 0) return static_cast<CaptureResult>(code);

    for (int p = 0; p < 4; ++p)
        if (hand.Names[p].empty()) hand.Names[p] = e_.Record.Names[p];
    ClearHandsView(e_);
    if (filer_.AlreadyFiled(hand)) return CaptureResult::HandUnchanged;

    // The user's seat.
    int p = e_.Seats.SeatAt(0);
    if (e_.Seats.IsAuto()) {
        bool found = false;
        for (std::size_t i = 0; i < e_.Settings.MyIds.size() && !found; ++i) {
            if (core::Trim(e_.Settings.MyIds[i]).empty()) continue;
            for (int s = 0; s < 4; ++s) {
                if (players::NamesMatch(hand.Names[s], e_.Settings.MyIds[i])) {
                    p = s;
                    if (e_.Rating) e_.Rating->MyIdIndex = static_cast<std::int32_t>(i + 1);
                    found = true;
                    break;
                }
            }
        }
    }
    e_.Seats.sitNESW(p);
    filer_.File(hand, p);
    return CaptureResult::Filed;
}

}  // namespace tracking
