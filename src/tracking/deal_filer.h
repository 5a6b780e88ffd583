// Files a captured deal: the record file and the file box, the alert check
// on the names, the counters, the Nil history, and at the game point the
// rating and the next game.
#pragma once

#include <array>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "reading/cards.h"
#include "scoring/nil_history.h"
#include "tracking/deal_flow.h"
#include "tracking/engine.h"
#include "tracking/game_windows.h"
#include "tracking/trick_tracker.h"

namespace tracking {

class DealFiler {
public:
    DealFiler(Engine& e, GameWindows& w, DealFlow& flow, TrickTracker& tricks)
        : e_(e), w_(w), flow_(flow), tricks_(tricks) {}

    // The same four hands as the deal filed last: the game still shows it.
    [[nodiscard]] bool AlreadyFiled(const reading::HandRead& hand) const { return hand.Cards == prevHands_; }
    // Files the deal read from the "Last Hand" window; `userSeat` is the
    // compass seat of the user. `warnings` are the rules of the game the
    // reading broke: the deal is filed all the same, and they are shown.
    // `missed`: deals the game ended before this one that were never read.
    void File(const reading::HandRead& hand, int userSeat, const std::vector<std::string>& warnings = {},
              int missed = 0);

    // Deals whose record or Nil history could not be written: kept in memory
    // and written again at the next deal end, before that deal's own files.
    [[nodiscard]] std::size_t KeptCount() const { return kept_.size(); }
    // At most this many are kept; the oldest beyond it is given up, and said so.
    static constexpr std::size_t kMaxKept = 100;

    // Filed deals and finished games since start.
    [[nodiscard]] int FiledCount() const { return filed_; }
    [[nodiscard]] int GamesOver() const { return gamesOver_; }
    // Seconds of the day at which the right counter is hidden after a deal
    // (set when the deal is filed; -1 = none).
    [[nodiscard]] int HideCounterAt() const { return hideCounterAt_; }
    void ClearHideCounter() { hideCounterAt_ = -1; }

private:
    struct KeptDeal {
        std::optional<display::DealRecord> Record;  // its record file is still to be written
        std::optional<scoring::NilDeal> Nil;         // its Nil history is still to be updated
        std::array<int, 2> TeamScore{};
        scoring::NilHistoryContext NilContext;
    };
    void GameEnd(const reading::HandRead& hand);
    // Writes the record; its name goes into the file box.
    core::SaveResult WriteRecord(const display::DealRecord& rec, std::string& name);
    core::SaveResult WriteNil(const scoring::NilDeal& deal, const std::array<int, 2>& teamScore,
                              const scoring::NilHistoryContext& ctx);
    // Writes what the kept deals still lack; what became of each file.
    std::vector<core::SaveResult> WriteKept();
    // Tells the user of saves that failed (the deal is kept) or were given up.
    void ReportFailedSaves(const std::vector<core::SaveResult>& saves);

    Engine& e_;
    GameWindows& w_;
    DealFlow& flow_;
    TrickTracker& tricks_;
    std::array<std::array<std::string, 13>, 4> prevHands_;
    std::deque<KeptDeal> kept_;
    int filed_ = 0;
    int gamesOver_ = 0;
    int hideCounterAt_ = -1;
};

}  // namespace tracking
