#include "sim/scenario.h"

#include <gtest/gtest.h>

#include "sim/sim_fixtures.h"

namespace sim {
namespace {

using testing::BaseScenario;
using testing::DealJson;
using testing::MakeLegalDeal;

core::Json OneDeal(const ScriptedDeal& d, bool withPlay = true) {
    core::Json deals = core::Json::Array();
    deals.Push(DealJson(d, withPlay));
    return deals;
}

ScriptedDeal Sample() { return MakeLegalDeal(11, 0, {"4", "3", "N", "5"}); }

// The error of a scenario, "" when it parses.
std::string ErrorOf(const core::Json& j) {
    Scenario sc;
    std::string error;
    if (ParseScenario(j.Dump(), sc, error)) return "";
    return error;
}

TEST(SimScenario, ReadsEveryMember) {
    Scenario sc;
    std::string error;
    ASSERT_TRUE(ParseScenario(BaseScenario(OneDeal(Sample())).Dump(), sc, error)) << error;
    EXPECT_EQ(sc.start.Year, 2026);
    EXPECT_EQ(sc.start.Month, 3);
    EXPECT_EQ(sc.start.Hour, 21);
    EXPECT_EQ(sc.start.Weekday, 4);  // a Thursday
    EXPECT_EQ(sc.language, 1);
    EXPECT_EQ(sc.screenWidth, 1280);
    EXPECT_EQ(sc.codepage, 1252);
    EXPECT_EQ(sc.settings.size(), 2u);
    EXPECT_EQ(sc.alertFile, std::vector<std::string>{"badguy_77(Staller),"});
    const GameSetup& g = sc.game;
    EXPECT_EQ(g.tableName, "Oak");
    EXPECT_EQ(g.host, "alice");
    EXPECT_EQ(g.players[3].name, "righty_two");
    EXPECT_EQ(g.players[1].rating, "1620");
    ASSERT_EQ(g.watchers.size(), 1u);
    EXPECT_EQ(g.watchers[0].name, "kibitz_a");
    EXPECT_EQ(g.seed, 7u);
    EXPECT_EQ(g.userSeat, 0);
    ASSERT_EQ(g.scripted.size(), 1u);
    const ScriptedDeal& d = g.scripted[0];
    EXPECT_TRUE(d.hasPlay);
    EXPECT_EQ(d.hands, Sample().hands);
    EXPECT_EQ(d.play, Sample().play);
    EXPECT_EQ(d.bids[2], "N");
}

TEST(SimScenario, OptionalMembersAndRandomDeals) {
    core::Json j = BaseScenario(12);
    core::Json lean = core::Json::Object();
    for (const auto& m : j.Members())
        if (m.first != "alertFile" && m.first != "watchers" && m.first != "seed") lean.Set(m.first, m.second);
    lean.Set("codepage", 932);
    lean.Set("settings", core::Json::ArrayOf(std::vector<std::string>{"myyahooid =  Someone, PARTNER_X"}));
    Scenario sc;
    std::string error;
    ASSERT_TRUE(ScenarioFromJson(lean, sc, error)) << error;
    EXPECT_EQ(sc.game.randomDeals, 12);
    EXPECT_TRUE(sc.game.scripted.empty());
    EXPECT_EQ(sc.codepage, 932);
    EXPECT_TRUE(sc.game.watchers.empty());
    EXPECT_EQ(sc.game.userSeat, 2);  // the second own ID sits South

    // Without play the deal is still read; numbers are accepted as bids.
    core::Json deal = DealJson(Sample(), false);
    deal.Set("bids", core::Json::ArrayOf(std::vector<int>{4, 3, 2, 13}));
    core::Json deals = core::Json::Array();
    deals.Push(deal);
    ASSERT_TRUE(ParseScenario(BaseScenario(deals).Dump(), sc, error)) << error;
    EXPECT_FALSE(sc.game.scripted[0].hasPlay);
    EXPECT_EQ(sc.game.scripted[0].bids[3], "13");
}

TEST(SimScenario, TopLevelErrorsNameTheMember) {
    const core::Json good = BaseScenario(OneDeal(Sample()));
    auto with = [&](const std::string& key, core::Json v) {
        core::Json j = good;
        j.Set(key, std::move(v));
        return ErrorOf(j);
    };
    auto without = [&](const std::string& key) {
        core::Json j = core::Json::Object();
        for (const auto& m : good.Members())
            if (m.first != key) j.Set(m.first, m.second);
        return ErrorOf(j);
    };
    EXPECT_EQ(ErrorOf(good), "");
    Scenario sc;
    std::string error;
    EXPECT_FALSE(ParseScenario("{\"start\": ", sc, error));
    EXPECT_NE(error.find("not valid JSON"), std::string::npos) << error;

    EXPECT_EQ(with("colour", "red"), "colour: unknown member");
    EXPECT_EQ(without("players"), "players: missing");
    EXPECT_EQ(without("deals"), "deals: missing");
    EXPECT_EQ(with("players", core::Json::ArrayOf(std::vector<std::string>{"a", "b", "c"})),
              "players: has 3 entries, needs 4");
    EXPECT_EQ(with("players", core::Json::ArrayOf(std::vector<std::string>{"a", "b", "A", "d"})),
              "players[2]: \"A\" sits twice");
    EXPECT_EQ(with("ratings", core::Json::ArrayOf(std::vector<std::string>{"1", "2", "", "4"})),
              "ratings[2]: must not be empty");
    EXPECT_NE(with("language", 4).find("language: 4"), std::string::npos);
    EXPECT_EQ(with("language", 12), "language: must be between 1 and 9");
    EXPECT_EQ(with("language", 1.5), "language: must be a whole number");
    EXPECT_EQ(with("codepage", 850), "codepage: must be 1252 or 932");
    EXPECT_NE(with("start", "2026-02-30T21:00:00").find("start: \"2026-02-30T21:00:00\" is not a date"),
              std::string::npos);
    EXPECT_NE(with("start", "2026-03-05 21:00").find("start:"), std::string::npos);
    EXPECT_EQ(with("screen", core::Json::ArrayOf(std::vector<int>{1280})), "screen: has 1 entries, needs 2");
    EXPECT_EQ(with("deals", core::Json::Array()), "deals: the list is empty");
    EXPECT_EQ(with("deals", 0), "deals: must be between 1 and 1000");
    EXPECT_EQ(with("deals", "twelve"), "deals: must be a number of random deals or a list of deals");
    EXPECT_EQ(with("seed", -1), "seed: must be between 0 and 4294967295");
    core::Json watchers = core::Json::Array();
    watchers.Push("kibitz_a");
    EXPECT_EQ(with("watchers", watchers), "watchers[0]: must be [name, rating]");

    core::Json table = *good.Get("table");
    table.Set("dnilPass", "no");
    EXPECT_EQ(with("table", table), "table.dnilPass: must be true or false");
    table = *good.Get("table");
    table.Set("name", "Oak Room");
    EXPECT_EQ(with("table", table), "table.name: must not contain blanks");
}

TEST(SimScenario, HandErrors) {
    auto errorOf = [](const ScriptedDeal& d) { return ErrorOf(BaseScenario(OneDeal(d))); };
    ScriptedDeal d = Sample();
    d.hands[1].push_back(d.hands[0].back());
    d.hands[0].pop_back();
    EXPECT_EQ(errorOf(d), "deals[0].hands[0]: 12 cards in North's hand, needs 13");

    d = Sample();
    d.hands[2][5] = d.hands[0][3];
    EXPECT_EQ(errorOf(d), "deals[0].hands[2][5]: " + CardText(d.hands[0][3]) + " is dealt twice");

    core::Json deal = DealJson(Sample());
    core::Json hands = *deal.Get("hands");
    core::Json west = core::Json::Array();
    for (std::size_t i = 0; i < 13; ++i) west.Push(i == 4 ? core::Json("10H") : hands[3][i]);
    core::Json newHands = core::Json::Array();
    for (std::size_t s = 0; s < 3; ++s) newHands.Push(hands[s]);
    newHands.Push(west);
    deal.Set("hands", newHands);
    core::Json deals = core::Json::Array();
    deals.Push(deal);
    EXPECT_NE(ErrorOf(BaseScenario(deals)).find("deals[0].hands[3][4]: \"10H\" is not a card"), std::string::npos);

    deal = DealJson(Sample());
    deal.Set("dealer", 4);
    deals = core::Json::Array();
    deals.Push(deal);
    EXPECT_EQ(ErrorOf(BaseScenario(deals)), "deals[0].dealer: must be between 0 and 3");
    deal = DealJson(Sample());
    deal.Set("passes", 2);
    deals = core::Json::Array();
    deals.Push(deal);
    EXPECT_EQ(ErrorOf(BaseScenario(deals)), "deals[0].passes: unknown member");
}

TEST(SimScenario, BidErrorsAndTableRules) {
    auto errorOf = [](const ScriptedDeal& d, bool dnilPass = false, bool suicide = false) {
        core::Json j = BaseScenario(OneDeal(d));
        core::Json table = *j.Get("table");
        table.Set("dnilPass", dnilPass);
        table.Set("suicide", suicide);
        j.Set("table", table);
        return ErrorOf(j);
    };
    ScriptedDeal d = Sample();
    d.bids[2] = "0";
    EXPECT_NE(errorOf(d).find("deals[0].bids[2]: \"0\" is not a bid"), std::string::npos);
    d.bids[2] = "14";
    EXPECT_NE(errorOf(d).find("deals[0].bids[2]: \"14\" is not a bid"), std::string::npos);
    d.bids[2] = "DP";
    EXPECT_EQ(errorOf(d), "deals[0].bids[2]: \"DP\" is only bid at a Double Nil pass table");
    EXPECT_EQ(errorOf(d, true), "");

    core::Json deal = DealJson(Sample());
    deal.Set("bids", core::Json::ArrayOf(std::vector<int>{4, 14, 2, 2}));
    core::Json deals = core::Json::Array();
    deals.Push(deal);
    EXPECT_EQ(ErrorOf(BaseScenario(deals)), "deals[0].bids[1]: must be between 1 and 13");

    // Suicide: one Nil per side.
    d = Sample();
    d.bids = {"N", "4", "5", "D"};
    EXPECT_EQ(errorOf(d, false, true), "");
    d.bids = {"N", "4", "N", "D"};
    EXPECT_EQ(errorOf(d, false, true), "deals[0].bids: at a suicide table exactly one of North and South bids Nil or Double Nil");
    d.bids = {"N", "4", "5", "3"};
    EXPECT_EQ(errorOf(d, false, true), "deals[0].bids: at a suicide table exactly one of East and West bids Nil or Double Nil");
}

TEST(SimScenario, PlayErrors) {
    auto errorOf = [](const ScriptedDeal& d) { return ErrorOf(BaseScenario(OneDeal(d))); };
    const ScriptedDeal good = Sample();
    const int lead = NextSeat(good.dealer);
    const char* seats[] = {"North", "East", "South", "West"};

    // A card from someone else's hand.
    ScriptedDeal d = good;
    d.play[0][lead] = d.play[0][NextSeat(lead)];
    EXPECT_EQ(errorOf(d), "deals[0].play[0][" + std::to_string(lead) + "]: " + seats[lead] + " plays " +
                              CardText(d.play[0][lead]) + ", which is not in the hand");

    // The same card twice.
    d = good;
    int second = TrickWinner(good.play[0], lead);  // leads trick 2
    d.play[1][second] = d.play[0][second];
    EXPECT_NE(errorOf(d).find("deals[0].play[1][" + std::to_string(second) + "]: " + seats[second] + " plays " +
                              CardText(d.play[0][second]) + ", which was already played"),
              std::string::npos)
        << errorOf(d);

    // Revoke: a follower who followed suit swaps that card with a later
    // card of another suit.
    bool found = false;
    std::array<int, kTricks> leaders{};
    leaders[0] = lead;
    for (int t = 1; t < kTricks; ++t) leaders[t] = TrickWinner(good.play[t - 1], leaders[t - 1]);
    for (int t = 0; t < 12 && !found; ++t) {
        int led = SuitOf(good.play[t][leaders[t]]);
        for (int s = 0; s < kSeats && !found; ++s) {
            if (s == leaders[t] || SuitOf(good.play[t][s]) != led) continue;
            for (int t2 = t + 1; t2 < kTricks && !found; ++t2) {
                if (SuitOf(good.play[t2][s]) == led) continue;
                d = good;
                std::swap(d.play[t][s], d.play[t2][s]);
                std::string suit[] = {"clubs", "diamonds", "hearts", "spades"};
                EXPECT_EQ(errorOf(d), "deals[0].play[" + std::to_string(t) + "][" + std::to_string(s) + "]: " + seats[s] +
                                          " plays " + CardText(d.play[t][s]) + " but must follow " + suit[led]);
                found = true;
            }
        }
    }
    EXPECT_TRUE(found);

    // Leading a spade before spades are broken.
    found = false;
    for (int t2 = 1; t2 < kTricks && !found; ++t2) {
        if (SuitOf(good.play[t2][lead]) != kSpades) continue;
        d = good;
        std::swap(d.play[0][lead], d.play[t2][lead]);
        EXPECT_EQ(errorOf(d), "deals[0].play[0][" + std::to_string(lead) + "]: " + seats[lead] + " plays " +
                                  CardText(d.play[0][lead]) + ": spades may not be led before they are broken");
        found = true;
    }
    EXPECT_TRUE(found);

    // Twelve tricks.
    core::Json deal = DealJson(good);
    core::Json play = core::Json::Array();
    for (std::size_t t = 0; t < 12; ++t) play.Push((*deal.Get("play"))[t]);
    deal.Set("play", play);
    core::Json deals = core::Json::Array();
    deals.Push(deal);
    EXPECT_EQ(ErrorOf(BaseScenario(deals)), "deals[0].play: has 12 entries, needs 13");
}

TEST(SimScenario, SettingsLinesAndTheUsersSeat) {
    const std::vector<std::string> lines = {"; comment", "Log=", "  MyYahooID =  Alpha ,me_player", "Other = 1"};
    EXPECT_EQ(SettingValue(lines, "myyahooid"), "Alpha ,me_player");
    EXPECT_EQ(SettingValue(lines, "Log"), "");
    EXPECT_EQ(SettingValue(lines, "Missing"), "");
    std::array<Player, kSeats> players{Player{"north", "1"}, Player{"ME_PLAYER", "2"}, Player{"s", "3"}, Player{"w", "4"}};
    EXPECT_EQ(UserSeatFromSettings(lines, players), 1);
    // No own ID at the table: the user is taken to sit North.
    EXPECT_EQ(UserSeatFromSettings({"MyYahooID = stranger"}, players), 0);
    EXPECT_EQ(UserSeatFromSettings({}, players), 0);
}

TEST(SimScenario, DoubleNilPassBidIsStoredAsDoubleNil) {
    ScriptedDeal d = Sample();
    d.bids = {"DP", "3", "5", "4"};
    core::Json j = BaseScenario(OneDeal(d));
    core::Json table = *j.Get("table");
    table.Set("dnilPass", true);
    j.Set("table", table);
    Scenario sc;
    std::string error;
    ASSERT_TRUE(ScenarioFromJson(j, sc, error)) << error;
    EXPECT_TRUE(sc.game.dnilPass);
    EXPECT_EQ(sc.game.scripted[0].bids[0], "D");
}

}  // namespace
}  // namespace sim
