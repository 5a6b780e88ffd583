// Card, suit, seat and bid notation shared by everything that reads, stores,
// scores or shows a deal. All conversions are pure and total: input outside
// the notation yields a fixed fallback value, never an exception.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace core {

// The card alphabet, positions counted from 1: ranks "1".."9" (1-9),
// "T" "J" "Q" "K" "A" (10-14), suit letters "C" "D" "H" "S" (15-18) and the
// bracket characters of the pixel display font (19-22).
inline constexpr std::string_view CARD_CHARS = "123456789TJQKACDHS[]()";

// 1-based position of the first suit letter ("C") in CARD_CHARS (15).
inline constexpr int SuitBase = static_cast<int>(CARD_CHARS.find('C')) + 1;

// Suit indexes: clubs < diamonds < hearts < spades, then no trump.
inline constexpr int Clubs = 0;
inline constexpr int Diamonds = 1;
inline constexpr int Hearts = 2;
inline constexpr int Spades = 3;
inline constexpr int NoTrump = 4;

// Per-suit tables (index 0-3).
inline constexpr std::array<std::uint32_t, 4> SuitColors = {0xFF0000, 0xFF00FF, 0x0000FF, 0x000000};  // 0xBBGGRR
inline constexpr std::array<std::string_view, 4> SuitColorNames = {"blue", "fuchsia", "red", "black"};
inline constexpr std::array<std::string_view, 4> SuitEntities = {"&clubs;", "&diams;", "&hearts;", "&spades;"};
inline constexpr std::array<std::string_view, 4> SuitShortNames = {"clb", "dmd", "hrt", "spd"};
inline constexpr std::array<std::string_view, 4> SuitImageFiles = {"C.gif", "D.gif", "H.gif", "S.gif"};

// Symbol-typeface character code of the suit mark (167 + suit); 0 outside 0-3.
int SuitSymbolChar(int suit);
// Table lookups that tolerate a bad index: 0 / empty text outside 0-3.
std::uint32_t SuitColor(int suit);
std::string SuitColorName(int suit);
std::string SuitEntity(int suit);
std::string SuitShortName(int suit);
std::string SuitImageFile(int suit);  // letter + ".gif"

// Seats, clockwise; North-South and East-West are partners.
inline constexpr int North = 0;
inline constexpr int East = 1;
inline constexpr int South = 2;
inline constexpr int West = 3;
inline constexpr std::array<std::string_view, 4> SeatNames = {"North", "East", "South", "West"};
// Hands labelled relative to the user.
inline constexpr std::array<std::string_view, 4> RelNames = {"LHO", "Pard", "RHO", "Me"};

// "N", "E", "S", "W"; empty text outside 0-3.
std::string SeatLetter(int seat);
std::string SeatName(int seat);

// "C", "D", "H", "S" for 0-3, "NT" for 4, empty text otherwise.
std::string SuitLetter(int suit);
// 4 for a text starting "NT"; 0-3 for a first character C/D/H/S; 0 otherwise
// (an unknown suit reads as clubs).
int SuitIndex(std::string_view suit);
// 1-based position of the text's first character in CARD_CHARS; 0 if absent
// or empty ("2" = 2 ... "A" = 14).
int RankValue(std::string_view rankChar);
// The character at position n (1-22) of CARD_CHARS; empty text otherwise.
std::string RankChar(int n);

// Card code = suit index * 100 + rank value ("AS" = 314, "2C" = 2).
// A text of three or more characters is read from its 2nd and 3rd characters,
// so a card with one leading mark ("[AS", " AS") reads as the bare card.
std::int16_t CardCode(std::string_view text);
// Rank character of (code mod 100) + suit letter of (code div 100). Codes
// that are not real cards give whatever parts exist (possibly empty text).
std::string CardText(int code);
inline int SuitOfCode(int code) { return code / 100; }
inline int RankOfCode(int code) { return code % 100; }

// Bid codes: "1".."13", "N" (Nil), "D" (Double Nil), "DP" (Double Nil with
// the card pass), "" (not read yet).
inline constexpr std::string_view BidNil = "N";
inline constexpr std::string_view BidDoubleNil = "D";
inline constexpr std::string_view BidDoubleNilPass = "DP";
// 100 for "N", 200 for "D"/"DP", else the leading number of the text * 10
// rounded to nearest (0 when the text does not start with a number).
int ScoreBid(std::string_view bid);
// 0 number bid (or not a bid code), 1 Nil, 2 Double Nil.
int BidKind(std::string_view bid);

// The seat menu and the seat-letter labels of the main window, as plain data
// for the window to draw.
struct SeatView {
    std::array<std::string, 4> seatLetters;  // label text per table position
    std::array<std::string, 5> menuCaptions = {"North", "East", "South", "West", "Auto"};
    std::array<bool, 5> menuChecked = {true, false, false, false, false};
};

inline constexpr int SeatMenuAuto = 4;

// The rotation from table positions (0 = the user) to compass seats, and the
// seat menu that chooses it.
class SeatMap {
public:
    // Entry p is the compass seat shown at table position p.
    const std::array<int, 4>& SeatOfPos() const { return seatOfPos_; }
    int SeatAt(int pos) const { return (pos >= 0 && pos < 4) ? seatOfPos_[pos] : 0; }
    const SeatView& View() const { return view_; }
    // Index of the checked menu entry (0-3 a fixed seat, 4 "Auto").
    int MenuIndex() const;
    bool IsAuto() const { return view_.menuChecked[SeatMenuAuto]; }

    // Puts seat `firstSeat` at table position 0 and the others clockwise;
    // ignored outside 0-3.
    void sitNESW(int firstSeat);
    // First table position that shows `seat`; 0 when none does.
    int InvSeat(int seat) const;
    // Checks menu entry `index` (0-4) and unchecks the others; 0-3 also set
    // the seat map, 4 ("Auto") leaves it for the automatic seat search.
    // Ignored outside 0-4.
    void sitNESWmenu(int index);
    // "Auto" when the user's first own ID (MyIds entry 1) is not empty, else North.
    void InitNESW(std::string_view firstOwnId);
    // The same from the whole own-ID list (its element 0 is entry 1).
    void InitNESW(const std::vector<std::string>& myIds);
    // Caption of the "Auto" entry in the Japanese interface.
    void SetJapanese(bool japanese);

private:
    std::array<int, 4> seatOfPos_ = {0, 0, 0, 0};
    SeatView view_;
};

}  // namespace core
