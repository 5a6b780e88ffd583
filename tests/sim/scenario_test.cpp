#include "sim/scenario.h"

#include <gtest/gtest.h>

#include <functional>

#include "sim/sim_fixtures.h"

namespace sim {
namespace {

using testing::BaseScenario;
using testing::DealJson;

ScriptedDeal Sample() { return testing::MakeLegalDeal(11, 0, {"4", "3", "N", "5"}); }

core::Json Deals(const core::Json& deal) {
    core::Json deals = core::Json::Array();
    deals.Push(deal);
    return deals;
}

// The error of a scenario, "" when it parses.
std::string ErrorOfText(const std::string& text) {
    Scenario sc;
    std::string error;
    return ParseScenario(text, sc, error) ? "" : error;
}
std::string ErrorOf(const core::Json& j) { return ErrorOfText(j.Dump()); }
// `want` exactly, or only its start when it ends in '*'.
void ExpectError(const std::string& error, const std::string& want) {
    const bool start = !want.empty() && want.back() == '*';
    EXPECT_EQ(start ? error.substr(0, want.size() - 1) : error, start ? want.substr(0, want.size() - 1) : want);
}
using testing::OneDealScenario;

TEST(SimScenario, ReadsEveryMemberAndTheOptionalOnes) {
    Scenario sc;
    std::string error;
    ASSERT_TRUE(ParseScenario(OneDealScenario(Sample()).Dump(), sc, error)) << error;
    // Names, ratings and deals reach the game of every session test; here
    // the members no session checks.
    EXPECT_EQ(sc.start.Weekday, 4);  // a Thursday
    EXPECT_EQ(sc.codepage, 1252);
    EXPECT_EQ(sc.alertFile, std::vector<std::string>{"badguy_77(Staller),"});
    ASSERT_EQ(sc.game.scripted.size(), 1u);
    EXPECT_EQ(sc.game.scripted[0].play, Sample().play);

    const core::Json full = BaseScenario(12);
    core::Json lean = core::Json::Object();
    for (const auto& m : full.Members())
        if (m.first != "alertFile" && m.first != "watchers" && m.first != "seed") lean.Set(m.first, m.second);
    lean.Set("codepage", 932);
    ASSERT_TRUE(ScenarioFromJson(lean, sc, error)) << error;
    EXPECT_EQ(sc.game.randomDeals, 12);
    EXPECT_TRUE(sc.game.scripted.empty() && sc.game.watchers.empty());
    EXPECT_EQ(sc.codepage, 932);

    // Without play the deal is still read; numbers are accepted as bids.
    core::Json deal = DealJson(Sample(), false);
    deal.Set("bids", core::Json::ArrayOf(std::vector<int>{4, 3, 2, 13}));
    ASSERT_TRUE(ScenarioFromJson(BaseScenario(Deals(deal)), sc, error)) << error;
    EXPECT_FALSE(sc.game.scripted[0].hasPlay);
    EXPECT_EQ(sc.game.scripted[0].bids[3], "13");

    // "DP" at a Double Nil pass table is a Double Nil.
    ScriptedDeal d = Sample();
    d.bids = {"DP", "3", "5", "4"};
    ASSERT_TRUE(ScenarioFromJson(OneDealScenario(d, true), sc, error)) << error;
    EXPECT_TRUE(sc.game.dnilPass);
    EXPECT_EQ(sc.game.scripted[0].bids[0], "D");
}

TEST(SimScenario, TopLevelErrorsNameTheMember) {
    const core::Json good = OneDealScenario(Sample());
    EXPECT_EQ(ErrorOf(good), "");
    EXPECT_NE(ErrorOfText("{\"start\": ").find("not valid JSON"), std::string::npos);
    core::Json noDeals = core::Json::Object();
    for (const auto& m : good.Members())
        if (m.first != "deals") noDeals.Set(m.first, m.second);
    EXPECT_EQ(ErrorOf(noDeals), "deals: missing");
    core::Json table = *good.Get("table"), blankName = table, watchers = core::Json::Array();
    table.Set("dnilPass", "no");
    blankName.Set("name", "Oak Room");
    watchers.Push("kibitz_a");
    using S = std::vector<std::string>;
    const struct {
        const char* key;
        core::Json value;
        std::string want;
    } rows[] = {
        {"colour", "red", "colour: unknown member"},
        {"players", core::Json::ArrayOf(S{"a", "b", "c"}), "players: has 3 entries, needs 4"},
        {"players", core::Json::ArrayOf(S{"a", "b", "A", "d"}), "players[2]: \"A\" sits twice"},
        {"ratings", core::Json::ArrayOf(S{"1", "2", "", "4"}), "ratings[2]: must not be empty"},
        {"language", 4, "language: 4*"},
        {"language", 12, "language: must be between 1 and 9"},
        {"language", 1.5, "language: must be a whole number"},
        {"codepage", 850, "codepage: must be 1252 or 932"},
        {"start", "2026-02-30T21:00:00", "start: \"2026-02-30T21:00:00\" is not a date*"},
        {"deals", core::Json::Array(), "deals: the list is empty"},
        {"deals", 0, "deals: must be between 1 and 1000"},
        {"deals", "twelve", "deals: must be a number of random deals or a list of deals"},
        {"seed", -1, "seed: must be between 0 and 4294967295"},
        {"watchers", watchers, "watchers[0]: must be [name, rating]"},
        {"table", table, "table.dnilPass: must be true or false"},
        {"table", blankName, "table.name: must not contain blanks"},
    };
    for (const auto& r : rows) {
        core::Json j = good;
        j.Set(r.key, r.value);
        ExpectError(ErrorOf(j), r.want);
    }
}

// Hostile sizes and numbers are refused with the key named, before the
// simulator would run for hours or a number overflow its conversion.
TEST(SimScenario, LimitsOfSizesAndNumbers) {
    const core::Json good = OneDealScenario(Sample());
    core::Json hugeRating = core::Json::Array(), manyDeals = core::Json::Array(), longName = *good.Get("players");
    for (double r : {1e300, 1534.0, -1e19, 1701.0}) hugeRating.Push(r);
    for (int i = 0; i < 1001; ++i) manyDeals.Push(DealJson(Sample()));
    core::Json players = core::Json::Array();
    players.Push(std::string(100000, 'x'));
    for (const char* p : {"b", "c", "d"}) players.Push(p);
    const struct {
        const char* key;
        core::Json value;
        std::string want;
    } rows[] = {
        {"ratings", hugeRating, "ratings[0]: must be a whole number up to 999999999 or a text"},
        {"deals", manyDeals, "deals: more than 1000 deals"},
        {"players", players, "players[0]: longer than 64 characters"},
    };
    for (const auto& r : rows) {
        core::Json j = good;
        j.Set(r.key, r.value);
        ExpectError(ErrorOf(j), r.want);
    }
    // Brackets nested beyond any scenario, and a file beyond any scenario.
    EXPECT_NE(ErrorOfText(std::string(100000, '[') + std::string(100000, ']')).find("nesting too deep"), std::string::npos);
    EXPECT_NE(ErrorOfText(std::string(9u << 20, ' ')).find("larger than"), std::string::npos);
}

TEST(SimScenario, HandAndBidErrors) {
    const ScriptedDeal good = Sample();
    using Change = std::function<void(ScriptedDeal&)>;
    auto bids = [](std::array<std::string, kSeats> b) { return Change([b](ScriptedDeal& d) { d.bids = b; }); };
    const struct {
        Change change;
        bool dnilPass, suicide;
        std::string want;
    } rows[] = {
        {[](ScriptedDeal& d) { d.hands[1].push_back(d.hands[0].back()), d.hands[0].pop_back(); }, false, false,
         "deals[0].hands[0]: 12 cards in North's hand, needs 13"},
        {[](ScriptedDeal& d) { d.hands[2][5] = d.hands[0][3]; }, false, false,
         "deals[0].hands[2][5]: " + CardText(good.hands[0][3]) + " is dealt twice"},
        {[](ScriptedDeal& d) { d.dealer = 4; }, false, false, "deals[0].dealer: must be between 0 and 3"},
        {bids({"4", "3", "0", "5"}), false, false, "deals[0].bids[2]: \"0\" is not a bid*"},
        {bids({"4", "3", "DP", "5"}), false, false, "deals[0].bids[2]: \"DP\" is only bid at a Double Nil pass table"},
        {bids({"N", "4", "N", "D"}), false, true, "deals[0].bids: at a suicide table exactly one of North and South bids Nil or Double Nil"},
        {bids({"N", "4", "5", "3"}), false, true, "deals[0].bids: at a suicide table exactly one of East and West bids Nil or Double Nil"},
    };
    for (const auto& r : rows) {
        ScriptedDeal d = good;
        r.change(d);
        ExpectError(ErrorOf(OneDealScenario(d, r.dnilPass, r.suicide)), r.want);
    }
    // Hands come before play in the text: the first mention is West's fifth card.
    std::string text = OneDealScenario(good).Dump();
    text.replace(text.find("\"" + CardText(good.hands[3][4]) + "\""), 4, "\"10H\"");
    ExpectError(ErrorOfText(text), "deals[0].hands[3][4]: \"10H\" is not a card*");
    core::Json deal = DealJson(good);
    deal.Set("bids", core::Json::ArrayOf(std::vector<int>{4, 14, 2, 2}));
    EXPECT_EQ(ErrorOf(BaseScenario(Deals(deal))), "deals[0].bids[1]: must be between 1 and 13");
}

TEST(SimScenario, PlayErrors) {
    const ScriptedDeal good = Sample();
    const char* seats[] = {"North", "East", "South", "West"};
    const char* suits[] = {"clubs", "diamonds", "hearts", "spades"};
    std::array<int, kTricks> leaders{NextSeat(good.dealer)};
    for (int t = 1; t < kTricks; ++t) leaders[t] = TrickWinner(good.play[t - 1], leaders[t - 1]);
    auto prefix = [&](int t, int s, Card c) {
        return "deals[0].play[" + std::to_string(t) + "][" + std::to_string(s) + "]: " + seats[s] + " plays " + CardText(c);
    };
    const int lead = leaders[0], second = leaders[1];

    ScriptedDeal d = good;
    d.play[0][lead] = d.play[0][NextSeat(lead)];
    EXPECT_EQ(ErrorOf(OneDealScenario(d)), prefix(0, lead, d.play[0][lead]) + ", which is not in the hand");
    d = good;
    d.play[1][second] = d.play[0][second];
    ExpectError(ErrorOf(OneDealScenario(d)), prefix(1, second, d.play[1][second]) + ", which was already played*");

    // Revoke: a follower who followed suit swaps that card with a later card of another suit.
    bool revoked = false;
    for (int t = 0; t < 12 && !revoked; ++t) {
        const int led = SuitOf(good.play[t][leaders[t]]);
        for (int s = 0; s < kSeats; ++s) {
            if (revoked || s == leaders[t] || SuitOf(good.play[t][s]) != led) continue;
            for (int t2 = t + 1; t2 < kTricks && !revoked; ++t2) {
                if (SuitOf(good.play[t2][s]) == led) continue;
                d = good;
                std::swap(d.play[t][s], d.play[t2][s]);
                EXPECT_EQ(ErrorOf(OneDealScenario(d)), prefix(t, s, d.play[t][s]) + " but must follow " + suits[led]);
                revoked = true;
            }
        }
    }
    EXPECT_TRUE(revoked);

    bool spadeLed = false;
    for (int t2 = 1; t2 < kTricks && !spadeLed; ++t2) {
        if (SuitOf(good.play[t2][lead]) != kSpades) continue;
        d = good;
        std::swap(d.play[0][lead], d.play[t2][lead]);
        EXPECT_EQ(ErrorOf(OneDealScenario(d)), prefix(0, lead, d.play[0][lead]) + ": spades may not be led before they are broken");
        spadeLed = true;
    }
    EXPECT_TRUE(spadeLed);
}

}  // namespace
}  // namespace sim
