// The computer players of the simulated table: a plain counting bidder that
// now and then bids Nil, and a card player that always plays legally and
// tries to make its side's contract and protect a Nil.
#pragma once

#include <array>
#include <random>
#include <string>

#include "sim/rules.h"

namespace sim {

struct BidView {
    Hand hand;
    int seat = 0;
    std::array<std::string, kSeats> bids;  // made so far, "" = not yet
    bool suicide = false;
    bool doubleNilAllowed = false;  // the side trails far enough to bid it
};

struct PlayView {
    Hand hand;
    int seat = 0;
    std::array<std::string, kSeats> bids;
    std::array<int, kSeats> tricks{};     // taken so far in this deal
    std::array<Card, kSeats> trick{};     // on the table, 0 = not played
    int leader = 0;
    bool spadesBroken = false;
};

// Expected tricks of a hand by plain high-card and spade-length counting.
double EstimateTricks(const Hand& hand);
std::string ChooseBid(const BidView& view, std::mt19937& rng);
// Always one of LegalPlays(view...).
Card ChoosePlay(const PlayView& view);

}  // namespace sim
