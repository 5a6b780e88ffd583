#include "tracking/deal_capture.h"

#include <algorithm>

#include "core/text.h"
#include "tracking/deal_views.h"
#include "scoring/deal_checks.h"

namespace tracking {

namespace {

// The "Last Hand" by trick: card texts by seat, 1 on each trick's leader.
void TricksOf(const reading::HandRead& hand, scoring::TrickCards& cards, scoring::TrickMarks& marks) {
    for (int t = 0; t < 13; ++t)
        for (int s = 0; s < 4; ++s) {
            cards[t][s] = hand.Cards[s][t];
            marks[t][s] = hand.Marks[s][t] == display::MarkBrackets ? 1 : 0;
        }
}

}  // namespace

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

int DealCapture::ReadScore(std::vector<ScoreLine>& lines) {
    int code = 0;
    for (int attempt = 1; attempt <= 5; ++attempt) {
        lines.clear();
        code = e_.Readers.CaptScore(lines);
        if (code == 0) break;
    }
    return code;
}

int DealCapture::StoreScore(const std::vector<ScoreLine>& lines) {
    const int count = static_cast<int>(std::min<std::size_t>(lines.size(), display::MaxScoreRows));
    e_.Record.ScoreRowCount = count;
    for (int i = 0; i < count; ++i)
        e_.Record.ScoreRows[static_cast<std::size_t>(i)] = lines[static_cast<std::size_t>(i)];
    e_.Scores.Clear();
    for (int i = 0; i < count; ++i) e_.Scores.AddRow(lines[static_cast<std::size_t>(i)]);
    return count;
}

int DealCapture::UserSeatOf(const reading::HandRead& hand) {
    int p = e_.Seats.SeatAt(0);
    if (!e_.Seats.IsAuto()) return p;
    for (std::size_t i = 0; i < e_.Settings.MyIds.size(); ++i) {
        if (core::Trim(e_.Settings.MyIds[i]).empty()) continue;
        for (int s = 0; s < 4; ++s) {
            if (players::NamesMatch(hand.Names[s], e_.Settings.MyIds[i])) {
                if (e_.Rating) e_.Rating->MyIdIndex = static_cast<std::int32_t>(i + 1);
                return s;
            }
        }
    }
    return p;
}

std::vector<std::string> DealCapture::RuleBreaks(const reading::HandRead& hand, int userSeat, bool scoreKnown) const {
    scoring::DealReading d;
    TricksOf(hand, d.Cards, d.Marks);
    if (scoreKnown) {
        d.Bids = BidsBySeat(userSeat);
        d.Previous = e_.Scores.At(e_.Scores.ScoreRowCount - 1);
        d.Next = e_.Scores.At(e_.Scores.ScoreRowCount);
    }
    d.DoubleNilPassTable = e_.Table.DNilPassTable;
    return scoring::CheckDeal(d);
}

std::array<std::string, 4> DealCapture::BidsBySeat(int userSeat) const {
    const DealState& deal = e_.Deal;
    std::array<std::string, 4> bids;
    for (int k = 0; k < 4; ++k)
        bids[static_cast<std::size_t>((userSeat + k) % 4)] = deal.PrevBids[k].empty() ? deal.Bids[k] : deal.PrevBids[k];
    return bids;
}

int DealCapture::ReadHand(reading::HandRead& hand, int& p, std::vector<std::string>& broken, int scoreLines) {
    // An attempt whose reading breaks a rule of the game counts as failed:
    // the hand and the score are read again, and the fifth reading is filed
    // whatever it shows, with the rules it breaks as a warning.
    bool emptyOnce = false;
    int code = 0;
    for (int attempt = 1; attempt <= 5; ++attempt) {
        hand = reading::HandRead{};
        code = e_.Readers.CaptHand(hand);
        if (code != 0) continue;
        const bool empty =
            std::all_of(hand.Names.begin(), hand.Names.end(), [](const std::string& n) { return n.empty(); });
        if (empty) {
            if (emptyOnce) return Code(CaptureResult::EmptyNames);
            emptyOnce = true;
            attempt = 4;  // the fifth attempt comes next
            continue;
        }
        for (int s = 0; s < 4; ++s)
            if (hand.Names[s].empty()) hand.Names[s] = e_.Record.Names[s];
        if (filer_.AlreadyFiled(hand)) return Code(CaptureResult::HandUnchanged);
        p = UserSeatOf(hand);
        broken = RuleBreaks(hand, p, scoreLines > 0);
        if (broken.empty()) return 0;
        std::string rules;
        for (const auto& b : broken) rules += (rules.empty() ? "" : "; ") + b;
        e_.Log("CaptureLastHand: reading " + std::to_string(attempt) + " breaks a rule: " + rules +
               (attempt < 5 ? "; read again" : "; filed with a warning"));
        if (attempt == 5) return 0;
        std::vector<ScoreLine> again;
        if (scoreLines > 0 && ReadScore(again) == 0 &&
            static_cast<int>(std::min<std::size_t>(again.size(), display::MaxScoreRows)) == scoreLines)
            StoreScore(again);
    }
    return code;
}

bool DealCapture::FileLastDealOfGame(const std::vector<ScoreLine>& oldLines) {
    reading::HandRead hand;
    int p = 0;
    std::vector<std::string> broken;
    StoreScore(oldLines);
    if (ReadHand(hand, p, broken, 0) != 0 || !broken.empty()) return false;
    const std::array<std::string, 4> bids = BidsBySeat(p);
    for (const auto& b : bids)
        if (b.empty()) return false;
    scoring::TrickMarks marks{};
    scoring::TrickCards cards;
    TricksOf(hand, cards, marks);
    const scoring::TrickCounts tc = scoring::DealTrickCounts(cards, marks);
    std::array<int, 4> tricks{};
    for (std::size_t s = 0; s < 4; ++s) tricks[s] = tc.Tricks[s];
    std::vector<ScoreLine> lines = oldLines;
    lines.push_back(scoring::ExpectedScoreLine(oldLines.back(), bids, tricks));
    StoreScore(lines);
    e_.Log("CaptureLastHand: the game's last deal was read after its score window had emptied; filed with the score "
           "line its bids and tricks give");
    e_.Seats.sitNESW(p);
    filer_.File(hand, p,
                {"the score line is computed from the bids and tricks: the game had emptied its score window for the "
                 "next game"});
    return true;
}

CaptureResult DealCapture::ReadAndFile() {
    if (!w_.SubWindowAlive(JobIndex(Job::LastHand))) return CaptureResult::LastHandWindowMissing;
    if (!w_.SubWindowAlive(JobIndex(Job::ScoreWindow))) return CaptureResult::ScoreWindowMissing;

    const int before = e_.Record.ScoreRowCount;
    const std::vector<ScoreLine> beforeLines(e_.Record.ScoreRows.begin(),
                                             e_.Record.ScoreRows.begin() + std::max(before, 0));
    std::vector<ScoreLine> lines;
    int code = ReadScore(lines);
    if (code != 0) return static_cast<CaptureResult>(code);
    const int count = StoreScore(lines);
    if (count == before) return CaptureResult::ScoreUnchanged;
    if (count == 0) {
        // A new game: when the old one ended with a deal not yet filed, the
        // "Last Hand" window still shows it, and its line follows from the
        // rules; filed so, with a warning, it is not lost.
        if (filedLines_ > 0 && !filedEndedGame_ && before == filedLines_ && FileLastDealOfGame(beforeLines)) {
            filedEndedGame_ = true;
            StoreScore({});
        } else if (filedLines_ > 0 && !filedEndedGame_) {
            oldGameMissed_ = true;
            StoreScore({});
        }
        const std::string& third = e_.Models.Counters.frmCounter.cTrk[2].Caption;
        if (!third.empty() && third != "0") flow_.EndDealReset();
        if (filedLines_ >= 0) filedLines_ = 0;
        ClearDealScore(e_);
        return CaptureResult::NewGame;
    }

    reading::HandRead hand;
    std::vector<std::string> broken;
    int p = 0;
    code = ReadHand(hand, p, broken, count);
    if (code != 0) return static_cast<CaptureResult>(code);
    ClearHandsView(e_);

    // Lines the game added beyond this deal's own are deals it ended while
    // nothing could be read; they cannot be filed, but they are told. Fewer
    // lines than at the last filing mean a new game began meanwhile, and a
    // game that ended after a deal which did not end it lost its last deal.
    int missed = oldGameMissed_ ? 1 : 0;
    if (filedLines_ >= 0) {
        if (count > filedLines_) missed += count - filedLines_ - 1;
        else missed += count - 1 + (filedEndedGame_ ? 0 : 1);
    }
    oldGameMissed_ = false;
    filedLines_ = count;
    e_.Seats.sitNESW(p);
    const int gamesBefore = filer_.GamesOver();
    filer_.File(hand, p, broken, missed);
    filedEndedGame_ = filer_.GamesOver() > gamesBefore;
    return CaptureResult::Filed;
}

}  // namespace tracking
