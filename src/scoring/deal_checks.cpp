#include "scoring/deal_checks.h"

#include <set>

#include "core/notation.h"

namespace scoring {

namespace {

const char* const kSeat[4] = {"North", "East", "South", "West"};

bool RealCard(int code) {
    const int suit = core::SuitOfCode(code), rank = core::RankOfCode(code);
    return code >= 0 && suit >= 0 && suit <= 3 && rank >= 2 && rank <= 14;
}

std::string Card(int code) { return RealCard(code) ? core::CardText(code) : "card code " + std::to_string(code); }

bool IsBid(const std::string& b) {
    if (b == core::BidNil || b == core::BidDoubleNil || b == core::BidDoubleNilPass) return true;
    if (b.empty() || b.size() > 2 || b[0] == '0') return false;
    for (char c : b)
        if (c < '0' || c > '9') return false;
    const int n = std::stoi(b);
    return n >= 1 && n <= 13;
}

}  // namespace

std::string CheckLastHand(const Hands& hands) {
    std::set<int> seen;
    for (int s = 0; s < 4; ++s)
        for (int code : hands[static_cast<std::size_t>(s)]) {
            if (!RealCard(code)) return std::string(kSeat[s]) + "'s hand holds " + Card(code) + ", not a card";
            if (!seen.insert(code).second) return Card(code) + " appears twice in the last hand";
        }
    return "";
}

std::string CheckTricks(const TrickCards& cards, const TrickMarks& marks, int tricksPlayed) {
    if (tricksPlayed < 0 || tricksPlayed > 13) return std::to_string(tricksPlayed) + " tricks played, at most 13 are";
    std::array<std::array<int, 13>, 4> played{};
    std::set<int> seen;
    for (int t = 0; t < tricksPlayed; ++t) {
        const auto ti = static_cast<std::size_t>(t);
        int leaders = 0;
        for (int s = 0; s < 4; ++s) {
            const auto si = static_cast<std::size_t>(s);
            const int code = cards[ti][si].empty() ? -1 : core::CardCode(cards[ti][si]);
            if (!RealCard(code))
                return "trick " + std::to_string(t + 1) + " has no card of " + kSeat[s] +
                       (cards[ti][si].empty() ? "" : " (\"" + cards[ti][si] + "\")");
            if (!seen.insert(code).second) return Card(code) + " is played twice";
            played[si][ti] = code;
            if (marks[ti][si] == 1) ++leaders;
        }
        if (leaders != 1) return "trick " + std::to_string(t + 1) + " has " + std::to_string(leaders) + " leaders";
    }
    // A player who did not follow the led suit must have had none of it
    // left: no later card of theirs may be of that suit.
    for (int t = 0; t < tricksPlayed; ++t) {
        const auto ti = static_cast<std::size_t>(t);
        int leader = 0;
        for (int s = 0; s < 4; ++s)
            if (marks[ti][static_cast<std::size_t>(s)] == 1) leader = s;
        const int led = core::SuitOfCode(played[static_cast<std::size_t>(leader)][ti]);
        for (int s = 0; s < 4; ++s) {
            const auto si = static_cast<std::size_t>(s);
            if (core::SuitOfCode(played[si][ti]) == led) continue;
            for (int later = t + 1; later < tricksPlayed; ++later) {
                const int c = played[si][static_cast<std::size_t>(later)];
                if (core::SuitOfCode(c) == led)
                    return std::string(kSeat[s]) + " did not follow suit in trick " + std::to_string(t + 1) +
                           " but still held " + Card(c);
            }
        }
    }
    return "";
}

std::string CheckTrickCounts(const std::array<int, 4>& tricks, int tricksPlayed) {
    int sum = 0;
    for (int s = 0; s < 4; ++s) {
        const int t = tricks[static_cast<std::size_t>(s)];
        if (t < 0 || t > 13) return std::string(kSeat[s]) + " took " + std::to_string(t) + " tricks";
        sum += t;
    }
    if (sum != tricksPlayed)
        return "the trick counts add up to " + std::to_string(sum) + ", not to the " + std::to_string(tricksPlayed) +
               " tricks played";
    return "";
}

std::string CheckBids(const std::array<std::string, 4>& bids, bool doubleNilPassTable) {
    for (int s = 0; s < 4; ++s) {
        const std::string& b = bids[static_cast<std::size_t>(s)];
        if (!IsBid(b)) return std::string(kSeat[s]) + "'s bid \"" + b + "\" is not a bid";
        if (b == core::BidDoubleNilPass && !doubleNilPassTable)
            return std::string(kSeat[s]) + " bid a Double Nil with a pass at a table without the pass";
    }
    for (int side = 0; side < 2; ++side) {
        const int n = BidNumber(bids[static_cast<std::size_t>(side)]) + BidNumber(bids[static_cast<std::size_t>(side + 2)]);
        if (n > 13)
            return std::string(side == 0 ? "North/South" : "East/West") + " bid " + std::to_string(n) + " tricks";
    }
    return "";
}

ScoreRows::Row ExpectedScoreLine(const ScoreRows::Row& previous, const std::array<std::string, 4>& bids,
                                 const std::array<int, 4>& tricks) {
    ScoreRows::Row next = previous;
    for (int side = 0; side < 2; ++side) {
        const auto a = static_cast<std::size_t>(side), b = static_cast<std::size_t>(side + 2);
        const int contract = BidNumber(bids[a]) + BidNumber(bids[b]);
        const int taken = tricks[a] + tricks[b];
        int points = 0, bags = 0;
        if (contract == 0) {
            // Two Nil bidders: whatever the side takes is overtricks.
            bags = taken;
            points = taken;
        } else if (taken >= contract) {
            bags = taken - contract;
            points = 10 * contract + bags;
        } else {
            points = -10 * contract;
        }
        for (const std::size_t seat : {a, b}) {
            const int kind = core::BidKind(bids[seat]);
            if (kind != 0) points += (tricks[seat] == 0 ? 100 : -100) * kind;
        }
        // Every ten bags cost a hundred points and leave the count.
        const int tens = (previous[2 * a + 1] + bags) / 10;
        next[2 * a] = previous[2 * a] + points - 100 * tens;
        next[2 * a + 1] = previous[2 * a + 1] + bags - 10 * tens;
    }
    return next;
}

std::string CheckScoreLine(const ScoreRows::Row& previous, const ScoreRows::Row& next,
                           const std::array<std::string, 4>& bids, const std::array<int, 4>& tricks) {
    const ScoreRows::Row want = ExpectedScoreLine(previous, bids, tricks);
    const char* side[2] = {"North/South", "East/West"};
    for (int k = 0; k < 2; ++k) {
        const auto pc = static_cast<std::size_t>(2 * k);
        if (next[pc] != want[pc])
            return std::string(side[k]) + " have " + std::to_string(next[pc]) + " points; bids and tricks give " +
                   std::to_string(want[pc]);
        if (next[pc + 1] != want[pc + 1])
            return std::string(side[k]) + " have " + std::to_string(next[pc + 1]) + " bags; bids and tricks give " +
                   std::to_string(want[pc + 1]);
    }
    return "";
}

std::vector<std::string> CheckDeal(const DealReading& deal) {
    std::vector<std::string> broken;
    const auto add = [&broken](std::string rule) {
        if (!rule.empty()) broken.push_back(std::move(rule));
    };
    // One misread card breaks several card rules; the first one says enough.
    add(CheckLastHand(HandsFromTricks(deal.Cards)));
    if (broken.empty()) add(CheckTricks(deal.Cards, deal.Marks, 13));
    const TrickCounts counts = DealTrickCounts(deal.Cards, deal.Marks);
    std::array<int, 4> tricks{};
    for (std::size_t s = 0; s < 4; ++s) tricks[s] = counts.Tricks[s];
    if (broken.empty()) add(CheckTrickCounts(tricks, 13));
    bool allBids = true;
    for (const auto& b : deal.Bids) allBids = allBids && !b.empty();
    if (allBids) {
        add(CheckBids(deal.Bids, deal.DoubleNilPassTable));
        if (broken.empty()) add(CheckScoreLine(deal.Previous, deal.Next, deal.Bids, tricks));
    }
    return broken;
}

}  // namespace scoring
