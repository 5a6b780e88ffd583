// The capture of a finished deal: reads the game's score lines and the four
// hands of the "Last Hand" window (with the retries the game's slow windows
// need), finds the user's seat, and hands the deal to the filer.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "tracking/deal_filer.h"
#include "tracking/deal_flow.h"
#include "tracking/engine.h"
#include "tracking/game_windows.h"

namespace tracking {

class DealCapture {
public:
    DealCapture(Engine& e, GameWindows& w, DealFlow& flow, DealFiler& filer)
        : e_(e), w_(w), flow_(flow), filer_(filer) {}

    // `automatic`: run by the "Last Hand" job (only while it is armed), else
    // by the "Hand" button, which reports every failure.
    CaptureResult Capture(bool automatic);

private:
    CaptureResult ReadAndFile();
    // The score window's lines, up to five attempts; the code of the last.
    int ReadScore(std::vector<ScoreLine>& lines);
    // Takes the lines as the record's and the scores'; their count.
    int StoreScore(const std::vector<ScoreLine>& lines);
    // The compass seat of the user among the names read.
    int UserSeatOf(const reading::HandRead& hand);
    // The rules of the game the reading of the deal breaks; the bids and the
    // score line only when `scoreKnown`.
    std::vector<std::string> RuleBreaks(const reading::HandRead& hand, int userSeat, bool scoreKnown) const;
    // The deal's bids by compass seat, as the bid steps read them.
    std::array<std::string, 4> BidsBySeat(int userSeat) const;
    // The "Last Hand" with its retries (a reading that breaks a rule is read
    // again, with the score when `scoreLines` > 0 lines are known); the
    // user's seat and the rules still broken. A result code.
    int ReadHand(reading::HandRead& hand, int& p, std::vector<std::string>& broken, int scoreLines);
    // Files the old game's last deal, still shown after a new game emptied
    // the score window, with the line its bids and tricks give. False when
    // it cannot be read whole.
    bool FileLastDealOfGame(const std::vector<ScoreLine>& oldLines);
    void Report(CaptureResult r, bool automatic);

    Engine& e_;
    GameWindows& w_;
    DealFlow& flow_;
    DealFiler& filer_;
    // Score lines the game showed when the last deal was filed (-1 = none
    // filed yet, so nothing before is known).
    int filedLines_ = -1;
    bool filedEndedGame_ = false;  // the last deal filed ended its game
    bool oldGameMissed_ = false;   // a new game began before the old one's last deal was read
};

}  // namespace tracking
