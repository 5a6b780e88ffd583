// The bid and trick counters beside the game table. The left counter
// (frmCounter0) shows the bids as they come in; once all four are known the
// right counter (frmCounter) takes over and adds tricks, the all-made figure,
// the projected score and a status text per side. Both are view models: they
// hold everything the windows show and no window code.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "core/json.h"
#include "platform/geometry.h"
#include "scoring/rules.h"
#include "scoring/view_model.h"

namespace scoring {

using Bids4 = std::array<std::string, 4>;  // by table position
using Side2 = std::array<int, 2>;          // the user's side first

// Where a counter goes when it is loaded: its saved spot, else a configured
// position, else beside the table (`tableAt` = table left/top plus the table
// box offset inside the game window).
struct CounterPlacementInput {
    std::optional<platform::Point> Saved;
    platform::Point Setting{-100, 0};  // the counter's pair of BidTrickCounter
    platform::Point TableAt{};
};

// Left counter, frmCounter0.
class LeftCounter {
public:
    explicit LeftCounter(bool japanese = false);

    WindowModel Window;
    Shape Shape1;
    std::array<Label, 3> Capt;   // " We", "They", "Sum"
    std::array<Label, 3> cBid;   // bid of each side, sum of bids
    std::array<Label, 2> cPts0;  // score at deal start
    std::array<Label, 2> cBag0;  // bag count at deal start, "(n)"

    Side2 TeamBid{};

    // Fills and shows the counter; the owner records CounterShown = 1.
    void ShowCounterInit(const Side2& score, const Side2& bags, const Bids4& bids, int bidCount);
    void ClrCounter();
    void Place(const CounterPlacementInput& in);
    void SetBoldBidTrick(bool bold);
    core::Json ToJson() const;
};

// Right counter, frmCounter.
class RightCounter {
public:
    static constexpr int NarrowWidth = 210;              // 3150 twips
    static constexpr int WideWidth = (4800 + 60) / 15;   // 4860 twips = 324 px
    static constexpr int NarrowShapeWidth = 200;
    static constexpr int WideShapeWidth = 320 - 6;

    explicit RightCounter(bool japanese = false);

    WindowModel Window;
    Shape Shape1;
    std::array<Label, 3> Capt;   // " We", "They", "Sum"
    std::array<Label, 3> cBid;   // bid of each side, sum of bids
    std::array<Label, 2> cPts0;  // score at deal start
    std::array<Label, 2> cBag0;  // bag count at deal start
    std::array<Label, 3> cTrk;   // tricks of each side, sum
    std::array<Label, 2> aPt;    // points if all bids made, "[n]"
    std::array<Label, 2> cPts;   // projected score
    std::array<Label, 2> cBag;   // status text of the side

    Side2 StartScore{};
    Side2 StartBags{};
    Side2 TeamBid{};
    Side2 AllMadePoints{};
    Side2 ProjectedScore{};
    std::array<std::string, 3> NilWords = {"", "Nil", "DNil"};

    // Fills the counter when play begins (all four bids known) and shows it
    // narrow; the owner records CounterShown = 2.
    void ShowCounterInit(const Side2& score, const Side2& bags, const Bids4& bids, int bidCount = 4);
    // Updates tricks, projection and status. `tricks` (side 0, side 1, sum)
    // is raised to the counts already shown: tricks never go down in a deal.
    // `score` is the latest score line, shown once all 13 tricks are played.
    void ShowCounterNow(const Side2& score, std::array<int, 3>& tricks, const Bids4& bids,
                        const std::array<int, 4>& nilBroken);
    void ClrCounter();
    void SetWidth1();
    void SetWidth2();
    void Place(const CounterPlacementInput& in);
    void SetBoldBidTrick(bool bold);
    // True once the side has a projection in this deal.
    bool HasProjection(int side) const { return side >= 0 && side < 2 && base_[side].has_value(); }
    core::Json ToJson() const;

private:
    std::array<std::optional<int>, 2> base_;  // projection from bid and tricks, kept while short
};

// The pair of counters and which of them is up (CounterShown: 0 none, 1 the
// left, 2 the right), with the calling order of a deal.
class Counters {
public:
    explicit Counters(bool japanese = false) : frmCounter0(japanese), frmCounter(japanese) {}

    LeftCounter frmCounter0;
    RightCounter frmCounter;
    int CounterShown = 0;

    // While bids come in (bidCount <= 3), and once more with the fourth.
    void ShowBids(const Side2& score, const Side2& bags, const Bids4& bids, int bidCount);
    // All four bids known: the left counter gives way to the right one.
    void StartPlay(const Side2& score, const Side2& bags, const Bids4& bids);
    void HideCounter();
};

}  // namespace scoring
