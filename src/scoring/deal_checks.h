// Rule checks of what was read of one deal. A reading that breaks a rule of
// the game was misread somewhere; each check says which rule broke, in
// words fit for the log and a visible warning ("" when the rule holds).
#pragma once

#include <array>
#include <string>
#include <vector>

#include "scoring/rules.h"

namespace scoring {

// The last hand: 13 card codes per seat (100 x suit + rank 2..14), 52
// different cards in all.
std::string CheckLastHand(const Hands& hands);

// The tricks played so far (`tricksPlayed` rows of the trick table, card
// texts by seat, lead marks 1 on the leader): one card of each player per
// trick, every card once, and the leader's suit followed by anyone whose
// hand (`hands`, the cards each seat played or holds) shows they could.
std::string CheckTricks(const TrickCards& cards, const TrickMarks& marks, int tricksPlayed);

// Trick counts by seat add up to the tricks played (0..13).
std::string CheckTrickCounts(const std::array<int, 4>& tricks, int tricksPlayed);

// Bids by seat: each "1".."13", "N", "D" or "DP" ("DP" only at a Double Nil
// pass table), and together at most 13 tricks bid by a side.
std::string CheckBids(const std::array<std::string, 4>& bids, bool doubleNilPassTable);

// The new score line equals the previous one plus what the bids and tricks
// of the deal give each side (points, then bags with the ten-bag penalty).
// Rows are as the game shows them: N/S points and bags, E/W points and bags.
std::string CheckScoreLine(const ScoreRows::Row& previous, const ScoreRows::Row& next,
                           const std::array<std::string, 4>& bids, const std::array<int, 4>& tricks);

// Everything known of one finished deal, as read.
struct DealReading {
    TrickCards Cards;               // [trick][seat]
    TrickMarks Marks{};             // 1 on the leader of each trick
    std::array<std::string, 4> Bids;  // by seat; any "" = the bids were not all seen
    ScoreRows::Row Previous{}, Next{};  // the score line before and after the deal
    bool DoubleNilPassTable = false;
};

// Every rule the reading breaks, one text each (empty when all hold). Bids
// and the score line are checked only when all four bids were seen, and the
// score line only when the cards, counts and bids hold, since it follows
// from them.
std::vector<std::string> CheckDeal(const DealReading& deal);

// What the rule gives: the line after the deal.
ScoreRows::Row ExpectedScoreLine(const ScoreRows::Row& previous, const std::array<std::string, 4>& bids,
                                 const std::array<int, 4>& tricks);

}  // namespace scoring
