#include "core/notation.h"

#include <gtest/gtest.h>

#include <utility>

namespace core {
namespace {

TEST(CardNotation, CodesOfCardTexts) {
    const std::pair<const char*, int> cases[] = {
        {"AS", 314}, {"(AS)", 314},      // one leading mark; only characters 2 and 3 count
        {"\xE2\x96\xA0KH", 213},        // a multi-byte leading mark is one character
        {"AX", 14},  {"A", 14},          // unknown or missing suit reads as clubs
        {"ZS", 300}, {"as", 0}, {"", 0}};  // unknown rank is 0; letters are case-sensitive
    for (const auto& [text, code] : cases) EXPECT_EQ(CardCode(text), code) << text;
}

TEST(CardNotation, EveryCardRoundTripsAndCodesOrderBySuit) {
    for (int suit = 0; suit < 4; ++suit) {
        for (int rank = 2; rank <= 14; ++rank) {
            const std::string text = RankChar(rank) + SuitLetter(suit);
            const int code = CardCode(text);
            EXPECT_EQ(code, suit * 100 + rank) << text;
            EXPECT_EQ(CardText(code), text);
            EXPECT_EQ(RankValue(RankChar(rank)), rank);
        }
    }
    EXPECT_GT(CardCode("2S"), CardCode("AH"));
    EXPECT_EQ(CardText(-5), "");
    EXPECT_EQ(RankValue("x") + RankValue(""), 0);
    // The whole 22-character alphabet is reachable, nothing past it.
    EXPECT_EQ(RankChar(0) + "|" + RankChar(22) + "|" + RankChar(23), "|)|");
}

TEST(SuitNotation, LettersIndexesAndBadIndexes) {
    for (int s = 0; s <= 4; ++s) EXPECT_EQ(SuitIndex(SuitLetter(s)), s);
    EXPECT_EQ(SuitLetter(-1) + "|" + SuitLetter(4) + "|" + SuitLetter(5), "|NT|");
    const std::pair<const char*, int> indexes[] = {{"NTX", 4}, {"N", 0}, {"Diamonds", 1}, {"s", 0}, {"", 0}};
    for (const auto& [text, index] : indexes) EXPECT_EQ(SuitIndex(text), index) << text;
    // The display tables tolerate a bad index.
    EXPECT_EQ(SuitImageFile(4) + SuitEntity(9), "");
    EXPECT_EQ(SuitSymbolChar(4) + SuitColor(-1), 0u);
}

TEST(BidNotation, ScoreBidAndBidKind) {
    const std::pair<const char*, int> scores[] = {
        {"N", 100},  {"DP", 200}, {"13", 130}, {"x3", 0},   {"3?", 30}, {" 5", 50},
        {".5", 5},   {"-3", -30}, {"+-3", 0},  {"0.25", 2}, {"0.35", 4},  // ties round to even
        {"n", 0},    {"99999999999999", 2147483647}};
    for (const auto& [bid, score] : scores) EXPECT_EQ(ScoreBid(bid), score) << bid;
    for (int n = 1; n <= 13; ++n) EXPECT_EQ(BidKind(std::to_string(n)), 0) << n;
    const std::pair<const char*, int> kinds[] = {{"N", 1}, {"DP", 2}, {"", 0}, {"Nil", 0}, {"DPX", 0}, {"d", 0}};
    for (const auto& [bid, kind] : kinds) EXPECT_EQ(BidKind(bid), kind) << bid;
}

// Whole games filed by seat show the common rotations; these are the edges.
TEST(SeatMapTest, RotationInverseAndBadArguments) {
    SeatMap m;  // every position North before any rotation; nothing shown
    EXPECT_EQ(m.SeatOfPos(), (std::array<int, 4>{0, 0, 0, 0}));
    EXPECT_EQ(m.View().seatLetters[0] + std::to_string(m.InvSeat(West)), "0");
    m.sitNESW(2);
    EXPECT_EQ(m.View().seatLetters, (std::array<std::string, 4>{"S", "W", "N", "E"}));
    EXPECT_EQ(std::pair(m.InvSeat(North), m.InvSeat(7)), std::pair(2, 0));
    for (int first = 0; first < 4; ++first) {
        m.sitNESW(first);
        for (int p = 0; p < 4; ++p) EXPECT_EQ(m.InvSeat(m.SeatAt(p)), p);
    }
    m.sitNESW(4);
    m.sitNESW(-1);
    EXPECT_EQ(m.SeatOfPos(), (std::array<int, 4>{3, 0, 1, 2})) << "out-of-range arguments change nothing";
}

TEST(SeatMapTest, MenuAutoAndOwnIds) {
    SeatMap m;
    auto checked = [&] {
        int n = 0;
        for (bool b : m.View().menuChecked) n += b;
        return n;
    };
    m.sitNESWmenu(3);
    EXPECT_EQ(std::pair(checked(), m.MenuIndex()), std::pair(1, 3));
    EXPECT_EQ(m.SeatOfPos()[0], West);
    // Auto keeps the map for the automatic seat search, which leaves the menu on Auto.
    m.sitNESWmenu(SeatMenuAuto);
    EXPECT_EQ(m.SeatOfPos()[0], West);
    m.sitNESW(1);
    EXPECT_TRUE(m.IsAuto());
    m.sitNESWmenu(0);
    EXPECT_FALSE(m.IsAuto());
    EXPECT_EQ(std::pair(checked(), m.SeatOfPos()[0]), std::pair(1, int(North)));
    m.sitNESWmenu(5);  // not a menu entry
    EXPECT_EQ(m.MenuIndex(), 0);

    m.sitNESW(2);
    m.InitNESW(std::vector<std::string>{"alice"});
    EXPECT_TRUE(m.IsAuto());
    EXPECT_EQ(m.SeatOfPos()[0], South);  // untouched until the seat search
    m.InitNESW(std::vector<std::string>{"", "bob"});  // only entry 1 counts
    EXPECT_EQ(m.MenuIndex(), 0);
    EXPECT_EQ(m.SeatOfPos(), (std::array<int, 4>{0, 1, 2, 3}));
    m.SetJapanese(true);
    EXPECT_EQ(m.View().menuCaptions[4] + m.View().menuCaptions[0], "自動選択North");
}

}  // namespace
}  // namespace core
