#include "tracking/bidding_board.h"

#include <optional>

namespace tracking {

int BiddingBoard::GetBoardStat() {
    Board& b = e_.Models.frmBoard;
    if (e_.Deal.Bidding == BidState::BoardHiddenAfterBid) return 0;
    b.BtnXY = {};
    b.BoardStat = e_.Readers.GetBoardStat(b.BtnXY);
    readAt_ = e_.Desktop.windows.WindowRect(w_.Game()).value_or(platform::Rect{});
    return b.BoardStat;
}

void BiddingBoard::CheckBoard() {
    Board& b = e_.Models.frmBoard;
    if (e_.Deal.Bidding == BidState::OrdinaryBoard || e_.Deal.Bidding == BidState::DoubleNilBoard) return;
    if (b.BoardMode == 2 && !e_.Table.DNilPassTable) return;
    const int s = GetBoardStat();
    if (s == 0 || s == b.LastBoardStat) {
        b.LastBoardStat = s;
        return;
    }
    if (s == BoardDoubleNil && e_.Table.DNilPassTable && e_.Settings.AlertCanDNilPass && !b.DNilSignalGiven) {
        e_.AlertBeep(1);
        b.DNilSignalGiven = true;
    }
    if (s == BoardOrdinary && b.BoardMode == 2) return;
    if (b.BoardMode == 0) return;
    b.LastBoardStat = s;
    b.Loaded = true;
    ShowBoard(s);
}

void BiddingBoard::ShowBoard(int mode) {
    Board& b = e_.Models.frmBoard;
    b.Layout(mode, e_.Table.DNilPassTable);
    b.Visible = true;
    b.Topmost = e_.Settings.TopMostBiddingBoard;
    e_.Deal.BoardShown = 2;
    if (mode == BoardOrdinary) e_.Deal.Bidding = BidState::OrdinaryBoard;
    else if (mode == BoardDoubleNil) e_.Deal.Bidding = BidState::DoubleNilBoard;
    e_.Changed();
    e_.Events.RaiseWindow(CompanionWindow::Board);
}

bool BiddingBoard::ClickBidButton(int index) {
    w_.RestoreGameIfMinimised();
    const int want = WantedPanel(index);
    if (want == 0) return false;
    const std::string what = index == 14   ? std::string("Nil bid button")
                             : index == 15 ? std::string("Double Nil button")
                             : index == 16 ? std::string("Show Cards button")
                                           : "bid " + std::to_string(index) + " button";
    // Read now, so the place checked is the place pressed. The panel is read
    // from the screen: a window over it hides it.
    const platform::Point before = e_.Models.frmBoard.BtnXY[static_cast<std::size_t>(index)];
    const int stat = GetBoardStat();
    const Board& b = e_.Models.frmBoard;
    platform::Point p = b.BtnXY[static_cast<std::size_t>(index)];
    if (stat != want || (p.X == 0 && p.Y == 0)) {
        const bool covered = (before.X != 0 || before.Y != 0) &&
                             e_.Clicker.CoveredBy(w_.Game(), {before.X + 2, before.Y + 2}) != 0;
        const ClickResult r = covered ? ClickResult::Covered : ClickResult::ButtonChanged;
        e_.Log("Click " + what + ": " + ClickResultText(r));
        e_.ClickRefused(what, r);
        return false;
    }
    const platform::Point read = p;
    if (index == 16) p = {p.X + 15, p.Y + 5};
    if (index == 15) p = {p.X + 5, p.Y + 5};
    ClickTarget t;
    t.Window = w_.Game();
    t.ReadAt = readAt_;
    t.Screen = {p.X + 2, p.Y + 2};
    t.What = what;
    t.State = "bid " + std::to_string(e_.DealNumber) + " " + std::to_string(e_.Deal.BidCount) + " " +
              std::to_string(want);
    const ClickResult r = e_.Clicker.Click(
        t,
        [&] {
            ButtonTable again{};
            return e_.Readers.GetBoardStat(again) == want && again[static_cast<std::size_t>(index)] == read;
        },
        [&] { return e_.Readers.GetBoardStat(buttons_) != want; });
    if (r != ClickResult::Done && r != ClickResult::AlreadyClicked) e_.ClickRefused(t.What, r);
    return r == ClickResult::Done;
}

int BiddingBoard::WantedPanel(int index) {
    if ((index >= 1 && index <= 10) || index == 14) return BoardOrdinary;
    if (index == 15 || index == 16) return BoardDoubleNil;
    return 0;
}

bool BiddingBoard::DoClickEver(int index) {
    // One press per state of the game: a press that did not take is not
    // repeated, the user is told instead and the board stays up.
    return ClickBidButton(index);
}

void BiddingBoard::Press(int index) {
    Board& b = e_.Models.frmBoard;
    e_.Models.frmZ.LastBoardIndex = std::to_string(index);
    if ((index >= 1 && index <= 10) || index == 14) {
        if (b.BoardMode & BoardModeConfirmBit) {
            b.RememberedBid = index;
            ShowBoard(BoardConfirm);
        } else if (DoClickEver(index)) {
            HideMe();
        }
    } else if (index == 15) {
        if (DoClickEver(15)) HideMe();
    } else if (index == 16) {
        ShowBoard(BoardOrdinary);
        DoClickEver(16);
    } else if (index == 17) {
        if (DoClickEver(b.RememberedBid)) HideMe();
    } else if (index == 18) {
        ShowBoard(BoardOrdinary);
    } else if (index == 20) {
        b.BoardMode &= ~BoardModeConfirmBit;
        b.Btn[20].Visible = false;
        if (DoClickEver(b.RememberedBid)) HideMe();
    } else if (index == 21) {
        b.BoardMode &= 2;
        b.Btn[21].Visible = false;
        HideMe();
    }
    e_.Changed();
}

void BiddingBoard::HideMe() {
    e_.Models.frmBoard.Visible = false;
    e_.Deal.BoardShown = 1;
    e_.TimerInterval = e_.LoopInterval;
    e_.Deal.Bidding = BidState::BoardHiddenAfterBid;
    e_.Models.frmHelpBid.Window.Visible = false;
    e_.Changed();
}

void BiddingBoard::NewDeal() {
    Board& b = e_.Models.frmBoard;
    if (b.Visible) {
        b.Visible = false;
        e_.Deal.BoardShown = 1;
        e_.TimerInterval = e_.LoopInterval;
    }
    b.DNilSignalGiven = false;
    // The next deal's panel is new even when it is of the same kind.
    b.LastBoardStat = 0;
}

}  // namespace tracking
