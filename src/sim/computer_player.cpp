#include "sim/computer_player.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

int CountSuit(const Hand& hand, int suit) {
    return static_cast<int>(std::count_if(hand.begin(), hand.end(), [suit](Card c) { return SuitOf(c) == suit; }));
}

bool Has(const Hand& hand, Card c) { return std::find(hand.begin(), hand.end(), c) != hand.end(); }

// A hand that is unlikely to take a trick: few high cards, none of them
// unguarded, and only a few low spades.
bool NilHand(const Hand& hand) {
    int spades = CountSuit(hand, kSpades);
    if (spades > 3) return false;
    double risk = 0;
    for (Card c : hand) {
        int len = CountSuit(hand, SuitOf(c)), r = RankOf(c);
        if (SuitOf(c) == kSpades) {
            risk += r >= 12 ? 3 : r >= 10 ? 1.5 : r >= 8 ? 0.5 : 0;
        } else if (r == 14) {
            risk += 3;
        } else if (r == 13) {
            risk += len >= 4 ? 0.5 : 2;
        } else if (r == 12) {
            risk += len >= 4 ? 0.25 : 1;
        }
    }
    return risk <= 2;
}

// Does `c` beat `best` in a trick already led?
bool Beats(Card c, Card best) {
    if (SuitOf(c) == SuitOf(best)) return RankOf(c) > RankOf(best);
    return SuitOf(c) == kSpades;
}

// Order for "cheap" cards: low ranks first, spades after everything else.
int Cost(Card c) { return RankOf(c) + (SuitOf(c) == kSpades ? 100 : 0); }

Card Lowest(const Hand& cards) {
    return *std::min_element(cards.begin(), cards.end(), [](Card a, Card b) { return Cost(a) < Cost(b); });
}
Card Highest(const Hand& cards) {
    return *std::max_element(cards.begin(), cards.end(), [](Card a, Card b) { return Cost(a) < Cost(b); });
}

}  // namespace

double EstimateTricks(const Hand& hand) {
    double est = 0;
    int spades = CountSuit(hand, kSpades);
    for (int suit = 0; suit < 3; ++suit) {
        int len = CountSuit(hand, suit);
        if (Has(hand, suit * 100 + 14)) est += 1;
        if (Has(hand, suit * 100 + 13) && len >= 2) est += len >= 6 ? 0.4 : 0.8;
        if (Has(hand, suit * 100 + 12) && len >= 3 && len <= 4) est += 0.3;
        // Short suits let spades ruff.
        if (spades >= 3 && len <= 1) est += len == 0 ? 0.7 : 0.4;
    }
    if (Has(hand, 314)) est += 1;
    if (Has(hand, 313) && spades >= 2) est += 1;
    if (Has(hand, 312) && spades >= 3) est += 0.8;
    if (Has(hand, 311) && spades >= 4) est += 0.5;
    if (spades > 3) est += 0.9 * (spades - 3);
    return est;
}

std::string ChooseBid(const BidView& view, std::mt19937& rng) {
    const std::string& partner = view.bids[PartnerOf(view.seat)];
    bool partnerNil = IsNilBid(partner);
    int number = static_cast<int>(std::lround(EstimateTricks(view.hand)));
    number = std::clamp(number, 1, 13);
    // The last bidder of the table trims an overbid of the whole table.
    int total = 0, made = 0;
    for (const auto& b : view.bids)
        if (!b.empty()) {
            total += BidTricks(b);
            ++made;
        }
    if (made == 3 && total + number > 13 && number > 1 && rng() % 2 == 0) --number;
    std::string numeric = std::to_string(number);

    if (view.suicide) {
        // One partner of each side bids Nil.
        if (!partner.empty()) return partnerNil ? numeric : (view.doubleNilAllowed && rng() % 4 == 0 ? "D" : "N");
        if (NilHand(view.hand) || EstimateTricks(view.hand) < 3.0) return "N";
        return numeric;
    }
    if (!partnerNil && NilHand(view.hand) && EstimateTricks(view.hand) < 2.0) {
        if (view.doubleNilAllowed && rng() % 3 == 0) return "D";
        if (rng() % 4 != 0) return "N";
    }
    return numeric;
}

Card ChoosePlay(const PlayView& view) {
    Hand legal = LegalPlays(view.hand, view.trick, view.leader, view.spadesBroken);
    const bool leading = view.trick[view.leader] == 0;
    const int partner = PartnerOf(view.seat);
    const bool meNil = IsNilBid(view.bids[view.seat]) && view.tricks[view.seat] == 0;
    const bool partnerNil = IsNilBid(view.bids[partner]) && view.tricks[partner] == 0;

    if (leading) {
        if (meNil) return Lowest(legal);
        if (partnerNil) return Highest(legal);
        for (Card c : legal)
            if (RankOf(c) == 14 && SuitOf(c) != kSpades) return c;
        // Low from the longest side suit.
        int bestSuit = -1, bestLen = 0;
        for (int suit = 0; suit < 4; ++suit) {
            int len = CountSuit(legal, suit);
            if (len > bestLen || (len == bestLen && suit != kSpades && bestSuit == kSpades)) {
                bestLen = len;
                bestSuit = suit;
            }
        }
        Hand ofSuit;
        for (Card c : legal)
            if (SuitOf(c) == bestSuit) ofSuit.push_back(c);
        return Lowest(ofSuit);
    }

    // The trick so far: its winning card and seat, and who is still to play.
    int winner = view.leader;
    int played = 0;
    for (int i = 0; i < kSeats; ++i) {
        int seat = (view.leader + i) % kSeats;
        if (view.trick[seat] == 0) break;
        ++played;
        if (Beats(view.trick[seat], view.trick[winner])) winner = seat;
    }
    const Card best = view.trick[winner];
    const bool last = played == 3;
    Hand winners, losers;
    for (Card c : legal) (Beats(c, best) ? winners : losers).push_back(c);

    if (meNil) {
        if (!losers.empty()) return Highest(losers);
        return Highest(legal);
    }
    if (partnerNil) {
        // Cover the Nil: take the trick away from the partner or play high
        // before the partner has to play.
        if (winner == partner && !winners.empty()) return Lowest(winners);
        if (view.trick[partner] == 0) return Highest(legal);
        return losers.empty() ? Lowest(legal) : Lowest(losers);
    }
    bool partnerWinning = winner == partner && (last || RankOf(best) >= 12 || SuitOf(best) == kSpades);
    if (partnerWinning || winners.empty()) return Lowest(legal);
    return Lowest(winners);
}

}  // namespace sim
