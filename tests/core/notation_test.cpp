#include "core/notation.h"

#include <gtest/gtest.h>

#include <set>

namespace core {
namespace {

TEST(CardNotation, CodesOfCardTexts) {
    EXPECT_EQ(CardCode("AS"), 314);
    EXPECT_EQ(CardCode("[AS"), 314);   // leading bracket mark
    EXPECT_EQ(CardCode(" AS"), 314);   // leading blank
    EXPECT_EQ(CardCode("(AS)"), 314);  // only characters 2 and 3 count
    EXPECT_EQ(CardCode("2C"), 2);
    EXPECT_EQ(CardCode("TH"), 210);
    EXPECT_EQ(CardCode("QD"), 112);
    // A leading multi-byte mark is one character, not three bytes.
    EXPECT_EQ(CardCode("\xE2\x96\xA0KH"), 213);
}

TEST(CardNotation, UnknownPartsFallBack) {
    EXPECT_EQ(CardCode("AX"), 14);    // unknown suit reads as clubs
    EXPECT_EQ(CardCode("ZS"), 300);   // unknown rank is 0
    EXPECT_EQ(CardCode("as"), 0);     // letters are case-sensitive
    EXPECT_EQ(CardCode(""), 0);
    EXPECT_EQ(CardCode("A"), 14);     // no suit letter: clubs
    EXPECT_EQ(CardCode("?S"), 300);
}

TEST(CardNotation, EveryCardRoundTrips) {
    std::set<int> codes;
    for (int suit = 0; suit < 4; ++suit) {
        for (int rank = 2; rank <= 14; ++rank) {
            const std::string text = RankChar(rank) + SuitLetter(suit);
            ASSERT_EQ(text.size(), 2u);
            const int code = CardCode(text);
            EXPECT_EQ(code, suit * 100 + rank) << text;
            EXPECT_EQ(CardText(code), text);
            EXPECT_EQ(SuitOfCode(code), suit);
            EXPECT_EQ(RankOfCode(code), rank);
            codes.insert(code);
        }
    }
    EXPECT_EQ(codes.size(), 52u);
    // Codes order by suit first: the two of spades beats the ace of hearts.
    EXPECT_GT(CardCode("2S"), CardCode("AH"));
    EXPECT_EQ(CardText(314), "AS");
    EXPECT_EQ(CardText(-5), "");
}

TEST(CardNotation, RanksAndAlphabet) {
    EXPECT_EQ(SuitBase, 15);
    EXPECT_EQ(RankValue("2"), 2);
    EXPECT_EQ(RankValue("9"), 9);
    EXPECT_EQ(RankValue("T"), 10);
    EXPECT_EQ(RankValue("J"), 11);
    EXPECT_EQ(RankValue("K"), 13);
    EXPECT_EQ(RankValue("A"), 14);
    EXPECT_EQ(RankValue("x"), 0);
    EXPECT_EQ(RankValue(""), 0);
    EXPECT_EQ(RankChar(1), "1");
    EXPECT_EQ(RankChar(10), "T");
    EXPECT_EQ(RankChar(19), "[");
    EXPECT_EQ(RankChar(22), ")");
    EXPECT_EQ(RankChar(0), "");
    EXPECT_EQ(RankChar(23), "");
}

TEST(SuitNotation, LettersAndIndexes) {
    EXPECT_EQ(SuitLetter(0), "C");
    EXPECT_EQ(SuitLetter(3), "S");
    EXPECT_EQ(SuitLetter(4), "NT");
    EXPECT_EQ(SuitLetter(5), "");
    EXPECT_EQ(SuitLetter(-1), "");
    EXPECT_EQ(SuitIndex("NT"), 4);
    EXPECT_EQ(SuitIndex("NTX"), 4);
    EXPECT_EQ(SuitIndex("N"), 0);   // a lone N is not no trump
    EXPECT_EQ(SuitIndex("Diamonds"), 1);
    EXPECT_EQ(SuitIndex("H"), 2);
    EXPECT_EQ(SuitIndex("S"), 3);
    EXPECT_EQ(SuitIndex("s"), 0);
    EXPECT_EQ(SuitIndex(""), 0);
    for (int s = 0; s <= 4; ++s) EXPECT_EQ(SuitIndex(SuitLetter(s)), s);
}

TEST(SuitNotation, DisplayTables) {
    EXPECT_EQ(SuitColor(0), 0xFF0000u);  // blue in 0xBBGGRR
    EXPECT_EQ(SuitColor(2), 0x0000FFu);  // red
    EXPECT_EQ(SuitColorName(1), "fuchsia");
    EXPECT_EQ(SuitEntity(3), "&spades;");
    EXPECT_EQ(SuitShortName(2), "hrt");
    EXPECT_EQ(SuitImageFile(1), "D.gif");
    EXPECT_EQ(SuitSymbolChar(0), 167);
    EXPECT_EQ(SuitSymbolChar(3), 170);
    EXPECT_EQ(SuitSymbolChar(4), 0);
    EXPECT_EQ(SuitImageFile(4), "");
    EXPECT_EQ(SuitEntity(9), "");
}

TEST(BidNotation, ScoreBid) {
    EXPECT_EQ(ScoreBid("N"), 100);
    EXPECT_EQ(ScoreBid("D"), 200);
    EXPECT_EQ(ScoreBid("DP"), 200);
    EXPECT_EQ(ScoreBid("13"), 130);
    EXPECT_EQ(ScoreBid("4"), 40);
    EXPECT_EQ(ScoreBid(""), 0);
    EXPECT_EQ(ScoreBid("x3"), 0);
    EXPECT_EQ(ScoreBid("3?"), 30);    // leading number only
    EXPECT_EQ(ScoreBid(" 5"), 50);
    EXPECT_EQ(ScoreBid("1.5"), 15);
    EXPECT_EQ(ScoreBid(".5"), 5);
    EXPECT_EQ(ScoreBid("-3"), -30);
    EXPECT_EQ(ScoreBid("+-3"), 0);
    EXPECT_EQ(ScoreBid("0.25"), 2);   // tie rounds to even
    EXPECT_EQ(ScoreBid("0.35"), 4);
    EXPECT_EQ(ScoreBid("n"), 0);      // codes are case-sensitive
    EXPECT_EQ(ScoreBid("99999999999999"), 2147483647);
}

TEST(BidNotation, BidKind) {
    for (int n = 1; n <= 13; ++n) EXPECT_EQ(BidKind(std::to_string(n)), 0) << n;
    EXPECT_EQ(BidKind("N"), 1);
    EXPECT_EQ(BidKind("D"), 2);
    EXPECT_EQ(BidKind("DP"), 2);
    EXPECT_EQ(BidKind(""), 0);
    EXPECT_EQ(BidKind("Nil"), 0);
    EXPECT_EQ(BidKind("DPX"), 0);
    EXPECT_EQ(BidKind("d"), 0);
}

TEST(SeatMapTest, StartsAtNorthWithNoLetters) {
    SeatMap m;
    EXPECT_EQ(m.SeatOfPos(), (std::array<int, 4>{0, 0, 0, 0}));
    EXPECT_EQ(m.MenuIndex(), 0);
    EXPECT_EQ(m.View().seatLetters[0], "");
}

TEST(SeatMapTest, RotationAndInverse) {
    SeatMap m;
    m.sitNESW(2);
    EXPECT_EQ(m.SeatOfPos(), (std::array<int, 4>{2, 3, 0, 1}));
    EXPECT_EQ(m.View().seatLetters, (std::array<std::string, 4>{"S", "W", "N", "E"}));
    EXPECT_EQ(m.InvSeat(North), 2);
    EXPECT_EQ(m.InvSeat(South), 0);
    EXPECT_EQ(m.InvSeat(East), 3);
    EXPECT_EQ(m.SeatAt(1), West);
    for (int first = 0; first < 4; ++first) {
        m.sitNESW(first);
        for (int p = 0; p < 4; ++p) EXPECT_EQ(m.InvSeat(m.SeatAt(p)), p);
    }
    // Out-of-range arguments change nothing.
    m.sitNESW(3);
    m.sitNESW(4);
    m.sitNESW(-1);
    EXPECT_EQ(m.SeatOfPos(), (std::array<int, 4>{3, 0, 1, 2}));
}

TEST(SeatMapTest, InverseOfMissingSeatIsZero) {
    SeatMap m;  // all positions North before any rotation
    EXPECT_EQ(m.InvSeat(North), 0);
    EXPECT_EQ(m.InvSeat(West), 0);
    m.sitNESW(1);
    EXPECT_EQ(m.InvSeat(7), 0);
    EXPECT_EQ(m.InvSeat(-1), 0);
}

TEST(SeatMapTest, MenuChecksExactlyOneEntry) {
    SeatMap m;
    auto checkedCount = [&] {
        int n = 0;
        for (bool b : m.View().menuChecked) n += b;
        return n;
    };
    m.sitNESWmenu(3);
    EXPECT_EQ(checkedCount(), 1);
    EXPECT_EQ(m.MenuIndex(), 3);
    EXPECT_EQ(m.SeatOfPos()[0], West);
    // Auto keeps the map for the automatic seat search to set.
    m.sitNESWmenu(SeatMenuAuto);
    EXPECT_EQ(checkedCount(), 1);
    EXPECT_TRUE(m.IsAuto());
    EXPECT_EQ(m.SeatOfPos()[0], West);
    m.sitNESW(1);  // automatic search leaves the menu on Auto
    EXPECT_TRUE(m.IsAuto());
    m.sitNESWmenu(0);
    EXPECT_FALSE(m.IsAuto());
    EXPECT_EQ(checkedCount(), 1);
    EXPECT_EQ(m.SeatOfPos()[0], North);
    m.sitNESWmenu(5);  // not a menu entry
    EXPECT_EQ(m.MenuIndex(), 0);
}

TEST(SeatMapTest, InitFromOwnId) {
    SeatMap m;
    m.sitNESW(2);
    m.InitNESW("alice");
    EXPECT_TRUE(m.IsAuto());
    EXPECT_EQ(m.SeatOfPos()[0], South);  // untouched until the seat search
    m.InitNESW("");
    EXPECT_EQ(m.MenuIndex(), 0);
    EXPECT_EQ(m.SeatOfPos(), (std::array<int, 4>{0, 1, 2, 3}));
    m.InitNESW(std::vector<std::string>{"", "bob"});  // only entry 1 counts
    EXPECT_EQ(m.MenuIndex(), 0);
    m.InitNESW(std::vector<std::string>{"bob"});
    EXPECT_TRUE(m.IsAuto());
    m.InitNESW(std::vector<std::string>{});
    EXPECT_EQ(m.MenuIndex(), 0);
    EXPECT_EQ(m.View().menuCaptions[4], "Auto");
    m.SetJapanese(true);
    EXPECT_EQ(m.View().menuCaptions[4], "自動選択");
    EXPECT_EQ(m.View().menuCaptions[0], "North");
}

}  // namespace
}  // namespace core
