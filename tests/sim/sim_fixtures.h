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
            int s = (leader + i) % kSeats;
            PlayView v;
            v.hand = held[s];
            v.seat = s;
            v.bids = bids;
            v.tricks = taken;
            v.trick = trick;
            v.leader = leader;
            v.spadesBroken = broken;
            Card c = ChoosePlay(v);
            trick[s] = c;
            held[s].erase(std::find(held[s].begin(), held[s].end(), c));
            broken = broken || SuitOf(c) == kSpades;
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
    core::Json j = core::Json::Object();
    j.Set("dealer", d.dealer);
    core::Json hands = core::Json::Array();
    for (const auto& h : d.hands) hands.Push(CardsJson(h));
    j.Set("hands", hands);
    j.Set("bids", core::Json::ArrayOf(std::vector<std::string>(d.bids.begin(), d.bids.end())));
    if (withPlay) {
        core::Json play = core::Json::Array();
        for (const auto& t : d.play) play.Push(CardsJson(Hand(t.begin(), t.end())));
        j.Set("play", play);
    }
    return j;
}

inline core::Json BaseScenario(core::Json deals) {
    core::Json j = core::Json::Object();
    j.Set("start", "2026-03-05T21:00:00");
    j.Set("language", 1);
    core::Json screen = core::Json::Array();
    screen.Push(1280);
    screen.Push(1024);
    j.Set("screen", screen);
    core::Json table = core::Json::Object();
    table.Set("name", "Oak");
    table.Set("host", "alice");
    table.Set("dnilPass", false);
    table.Set("suicide", false);
    j.Set("table", table);
    j.Set("settings", core::Json::ArrayOf(std::vector<std::string>{"MyYahooID = me_player", "BidTrickCounter = (*,0),(*,0)"}));
    j.Set("alertFile", core::Json::ArrayOf(std::vector<std::string>{"badguy_77(Staller),"}));
    j.Set("players", core::Json::ArrayOf(std::vector<std::string>{"me_player", "lefty_one", "partner_x", "righty_two"}));
    j.Set("ratings", core::Json::ArrayOf(std::vector<std::string>{"1534", "1620", "1480", "1701"}));
    core::Json w = core::Json::Array();
    w.Push(core::Json::ArrayOf(std::vector<std::string>{"kibitz_a", "1500"}));
    j.Set("watchers", w);
    j.Set("deals", std::move(deals));
    j.Set("seed", 7);
    return j;
}

}  // namespace sim::testing
