// The rules of the simulated Spades table: cards, legal play, trick
// winners, bids and the game's official scoring. Pure functions only; the
// timed table (spades_game.h) and the computer players build on them.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace sim {

// Seats are compass seats 0 = North, 1 = East, 2 = South, 3 = West;
// North/South and East/West are partners.
constexpr int kSeats = 4;
constexpr int kTricks = 13;
inline int NextSeat(int seat) { return (seat + 1) % kSeats; }
inline int PartnerOf(int seat) { return (seat + 2) % kSeats; }
inline int SideOf(int seat) { return seat % 2; }  // 0 = North/South, 1 = East/West

// A card is 100 x suit + rank (suit 0 clubs .. 3 spades, rank 2 .. 14 ace),
// its text the rank character and the suit letter ("AS", "TH", "2C").
using Card = int;
constexpr int kSpades = 3;
inline int SuitOf(Card c) { return c / 100; }
inline int RankOf(Card c) { return c % 100; }
std::string CardText(Card c);
// Strict: exactly two characters, rank "23456789TJQKA", suit "CDHS";
// returns 0 for anything else.
Card ParseCard(const std::string& text);
// The 52 cards in code order.
std::vector<Card> FullDeck();

using Hand = std::vector<Card>;
using Hands = std::array<Hand, kSeats>;

// --- bids ---------------------------------------------------------------
// Bids are held as the game shows them: "1" .. "13", "N" (Nil),
// "D" (Double Nil); "" is no bid yet.
bool IsNilBid(const std::string& bid);      // "N" or "D"
int NilValue(const std::string& bid);       // 100 for "N", 200 for "D", else 0
int BidTricks(const std::string& bid);      // 1 .. 13 for a number bid, else 0
bool IsValidBid(const std::string& bid);    // "1" .. "13", "N", "D"
// At a suicide table exactly one partner of each side bids Nil or Double
// Nil. `bids` may be partial ("" = not yet bid); returns whether `bid` by
// `seat` keeps that possible.
bool SuicideAllows(const std::array<std::string, kSeats>& bids, int seat, const std::string& bid);

// --- play ---------------------------------------------------------------
// Cards of `hand` that may be played. `trick` holds the cards already on
// the table by seat (0 = not played), `leader` the seat that led (or the
// seat about to lead when nothing is played yet). Follow suit; spades are
// not led before they are broken unless the hand holds nothing else.
Hand LegalPlays(const Hand& hand, const std::array<Card, kSeats>& trick, int leader, bool spadesBroken);
// The seat whose card wins a complete trick (spades trump).
int TrickWinner(const std::array<Card, kSeats>& trick, int leader);

// --- scoring ------------------------------------------------------------
// A score line as the game's score window shows it: N/S points, N/S bags,
// E/W points, E/W bags (running totals).
using ScoreLine = std::array<int, 4>;

struct SideResult {
    int contract = 0;   // sum of the non-Nil bids
    int tricks = 0;     // tricks of both partners
    int points = 0;     // change of points in this deal, bag penalties included
    int bags = 0;       // bags taken in this deal
    int bagPenalty = 0; // points lost to bags (a multiple of 100, >= 0)
};

// Scores one side's deal. `bids` and `tricks` by seat; `prevBags` the
// side's running bag count before the deal.
SideResult ScoreSide(int side, const std::array<std::string, kSeats>& bids, const std::array<int, kSeats>& tricks,
                     int prevBags);
// The next score line after a deal.
ScoreLine ScoreDeal(const ScoreLine& prev, const std::array<std::string, kSeats>& bids,
                    const std::array<int, kSeats>& tricks);
// A side has reached the game point and the scores differ.
bool IsGameOver(const ScoreLine& line, int gamePoint = 500);

}  // namespace sim
