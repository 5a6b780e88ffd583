#include "sim/rules.h"

#include "core/notation.h"

namespace sim {

namespace {
constexpr const char* kRanks = "23456789TJQKA";
constexpr const char* kSuits = "CDHS";
}  // namespace

std::string CardText(Card c) {
    int r = RankOf(c), s = SuitOf(c);
    if (r < 2 || r > 14 || s < 0 || s > 3) return "??";
    return core::CardText(c);
}

Card ParseCard(const std::string& text) {
    if (text.size() != 2) return 0;
    int rank = 0, suit = -1;
    for (int i = 0; i < 13; ++i)
        if (text[0] == kRanks[i]) rank = i + 2;
    for (int i = 0; i < 4; ++i)
        if (text[1] == kSuits[i]) suit = i;
    if (rank == 0 || suit < 0) return 0;
    return suit * 100 + rank;
}

std::vector<Card> FullDeck() {
    std::vector<Card> deck;
    for (int s = 0; s < 4; ++s)
        for (int r = 2; r <= 14; ++r) deck.push_back(s * 100 + r);
    return deck;
}

bool IsNilBid(const std::string& bid) { return bid == "N" || bid == "D"; }

int NilValue(const std::string& bid) { return bid == "N" ? 100 : bid == "D" ? 200 : 0; }

int BidTricks(const std::string& bid) {
    if (bid.empty() || bid.size() > 2) return 0;
    int v = 0;
    for (char c : bid) {
        if (c < '0' || c > '9') return 0;
        v = v * 10 + (c - '0');
    }
    if (bid[0] == '0') return 0;
    return v >= 1 && v <= 13 ? v : 0;
}

bool IsValidBid(const std::string& bid) { return IsNilBid(bid) || BidTricks(bid) > 0; }

bool SuicideAllows(const std::array<std::string, kSeats>& bids, int seat, const std::string& bid) {
    const std::string& partner = bids[PartnerOf(seat)];
    if (partner.empty()) return true;  // the partner decides after us
    return IsNilBid(partner) != IsNilBid(bid);
}

Hand LegalPlays(const Hand& hand, const std::array<Card, kSeats>& trick, int leader, bool spadesBroken) {
    Hand out;
    if (trick[leader] == 0) {
        // Leading.
        for (Card c : hand)
            if (SuitOf(c) != kSpades || spadesBroken) out.push_back(c);
        if (out.empty()) out = hand;  // only spades left
        return out;
    }
    int led = SuitOf(trick[leader]);
    for (Card c : hand)
        if (SuitOf(c) == led) out.push_back(c);
    if (out.empty()) out = hand;
    return out;
}

int TrickWinner(const std::array<Card, kSeats>& trick, int leader) {
    int best = leader;
    for (int i = 1; i < kSeats; ++i) {
        int seat = (leader + i) % kSeats;
        Card c = trick[seat], b = trick[best];
        bool beats = SuitOf(c) == SuitOf(b) ? RankOf(c) > RankOf(b) : SuitOf(c) == kSpades;
        if (beats) best = seat;
    }
    return best;
}

SideResult ScoreSide(int side, const std::array<std::string, kSeats>& bids, const std::array<int, kSeats>& tricks,
                     int prevBags) {
    SideResult r;
    for (int seat = side; seat < kSeats; seat += 2) {
        r.contract += BidTricks(bids[seat]);
        r.tricks += tricks[seat];
    }
    if (r.contract == 0) {
        // Both partners bid Nil: whatever the side takes is overtricks.
        r.bags = r.tricks;
        r.points = r.tricks;
    } else if (r.tricks >= r.contract) {
        r.bags = r.tricks - r.contract;
        r.points = 10 * r.contract + r.bags;
    } else {
        r.points = -10 * r.contract;
    }
    for (int seat = side; seat < kSeats; seat += 2) {
        int v = NilValue(bids[seat]);
        if (v) r.points += tricks[seat] == 0 ? v : -v;
    }
    int total = prevBags + r.bags;
    if (total >= 10) {
        r.bagPenalty = 100 * (total / 10);
        r.points -= r.bagPenalty;
    }
    return r;
}

ScoreLine ScoreDeal(const ScoreLine& prev, const std::array<std::string, kSeats>& bids,
                    const std::array<int, kSeats>& tricks) {
    ScoreLine next = prev;
    for (int side = 0; side < 2; ++side) {
        SideResult r = ScoreSide(side, bids, tricks, prev[side * 2 + 1]);
        next[side * 2] = prev[side * 2] + r.points;
        // The bag count drops by ten for every hundred paid.
        next[side * 2 + 1] = prev[side * 2 + 1] + r.bags - r.bagPenalty / 10;
    }
    return next;
}

bool IsGameOver(const ScoreLine& line, int gamePoint) {
    return (line[0] >= gamePoint || line[2] >= gamePoint) && line[0] != line[2];
}

}  // namespace sim
