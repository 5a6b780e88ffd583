// Deals and scenarios for the simulator tests.
#pragma once

#include <algorithm>
#include <random>

#include "core/json.h"
#include "sim/computer_player.h"
#include "sim/rules.h"
#include "sim/scenario.h"

namespace sim::testing {

// A random deal played out legally by the computer players.
inline ScriptedDeal MakeLegalDeal(std::uint32_t seed, int dealer, std::array<std::string, kSeats> bids) {
    std::mt19937 rng(seed);
    std::vector<Card> deck = FullDeck();
    for (std::size_t i = deck.size() - 1; i > 0; --i) std::swap(deck[i], deck[rng() % (i + 1)]);
    ScriptedDeal d;
    d.dealer = dealer;
    d.bids = bids;
    for (int s = 0; s < kSeats; ++s) {
        d.hands[s].assign(deck.begin() + s * 13, deck.begin() + (s + 1) * 13);
        std::sort(d.hands[s].begin(), d.hands[s].end());
    }
    Hands held = d.hands;
    int leader = NextSeat(dealer);
    bool broken = false;
    std::array<int, kSeats> taken{};
    for (int t = 0; t < kTricks; ++t) {
        std::array<Card, kSeats> trick{};
        for (int i = 0; i < kSeats; ++i) {
            const int s = (leader + i) % kSeats;
            trick[s] = ChoosePlay({.hand = held[s], .seat = s, .bids = bids, .tricks = taken, .trick = trick,
                                   .leader = leader, .spadesBroken = broken});
            held[s].erase(std::find(held[s].begin(), held[s].end(), trick[s]));
            broken = broken || SuitOf(trick[s]) == kSpades;
        }
        d.play[static_cast<std::size_t>(t)] = trick;
        leader = TrickWinner(trick, leader);
        ++taken[leader];
    }
    d.hasPlay = true;
    return d;
}

inline core::Json CardsJson(const Hand& cards) {
    core::Json a = core::Json::Array();
    for (Card c : cards) a.Push(CardText(c));
    return a;
}

inline core::Json DealJson(const ScriptedDeal& d, bool withPlay = true) {
    core::Json j = core::Json::Object(), hands = core::Json::Array(), play = core::Json::Array();
    j.Set("dealer", d.dealer);
    for (const auto& h : d.hands) hands.Push(CardsJson(h));
    j.Set("hands", hands);
    j.Set("bids", core::Json::ArrayOf(std::vector<std::string>(d.bids.begin(), d.bids.end())));
    for (const auto& t : d.play) play.Push(CardsJson(Hand(t.begin(), t.end())));
    if (withPlay) j.Set("play", play);
    return j;
}

// A complete scenario with the given "deals" member.
inline core::Json BaseScenario(core::Json deals) {
    core::Json j;
    std::string error;
    core::Json::Parse(R"J({"start": "2026-03-05T21:00:00", "language": 1, "screen": [1280, 1024],
        "table": {"name": "Oak", "host": "alice", "dnilPass": false, "suicide": false},
        "settings": ["MyYahooID = me_player", "BidTrickCounter = (*,0),(*,0)"], "alertFile": ["badguy_77(Staller),"],
        "players": ["me_player", "lefty_one", "partner_x", "righty_two"], "ratings": ["1534", "1620", "1480", "1701"],
        "watchers": [["kibitz_a", "1500"]], "seed": 7})J", j, error);
    j.Set("deals", std::move(deals));
    return j;
}

// A scenario of the one deal `d` at a table with the given rules.
inline core::Json OneDealScenario(const ScriptedDeal& d, bool dnilPass = false, bool suicide = false) {
    core::Json deals = core::Json::Array();
    deals.Push(DealJson(d));
    core::Json j = BaseScenario(deals), table = *j.Get("table");
    table.Set("dnilPass", dnilPass);
    table.Set("suicide", suicide);
    j.Set("table", table);
    return j;
}

// Runs the clock in small steps until `pred` holds (at most `ms`).
template <typename Pred>
bool RunUntil(platform::VirtualClock& clock, Pred pred, std::uint32_t ms = 900000) {
    for (std::uint32_t t = 0; t < ms && !pred(); t += 100) clock.Wait(100);
    return pred();
}

}  // namespace sim::testing
