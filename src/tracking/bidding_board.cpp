#include "tracking/bidding_board.h"

#include <optional>

namespace tracking {

int BiddingBoard::GetBoardStat() {
    Board& b = e_.Models.frmBoard;
    if (e_.Deal.Bidding == BidState::BoardHiddenAfterBid) return 0;
    b.BtnXY = {};
    b.BoardStat = e_.Readers.GetBoardStat(b.BtnXY);
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

void BiddingBoard::ClickBidButton(int index, bool reread) {
    w_.RestoreGameIfMinimised();
    const Board& b = e_.Models.frmBoard;
    const int s = reread ? GetBoardStat() : b.BoardStat;
    if (s == BoardOrdinary) {
        if (!((index >= 1 && index <= 10) || index == 14)) return;
    } else if (s == BoardDoubleNil) {
        if (index != 15 && index != 16) return;
    } else {
        return;
    }
    platform::Point p = b.BtnXY[static_cast<std::size_t>(index)];
    if (p.X == 0 && p.Y == 0) return;
    if (index == 16) p = {p.X + 15, p.Y + 5};
    if (index == 15) p = {p.X + 5, p.Y + 5};
    const std::optional<platform::Point> saved = e_.Desktop.input.CursorPos();
    e_.Desktop.input.SetCursorPos({p.X + 2, p.Y + 2});
    e_.Clock.Wait(0);
    e_.Desktop.input.LeftClick();
    e_.Clock.Wait(0);
    if (saved) e_.Desktop.input.SetCursorPos(*saved);
}

void BiddingBoard::DoClickEver(int index) {
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

void BiddingBoard::Press(int index) {
    Board& b = e_.Models.frmBoard;
    e_.Models.frmZ.LastBoardIndex = std::to_string(index);
    if ((index >= 1 && index <= 10) || index == 14) {
        if (b.BoardMode & BoardModeConfirmBit) {
            b.RememberedBid = index;
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
        DoClickEver(b.RememberedBid);
        HideMe();
    } else if (index == 18) {
        ShowBoard(BoardOrdinary);
    } else if (index == 20) {
        b.BoardMode &= ~BoardModeConfirmBit;
        b.Btn[20].Visible = false;
        DoClickEver(b.RememberedBid);
        HideMe();
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
