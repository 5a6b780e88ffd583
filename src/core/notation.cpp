#include "core/notation.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace core {

namespace {

bool ValidSuit(int suit) { return suit >= 0 && suit < 4; }

// Byte length of the UTF-8 character starting at s[i] (1 for stray bytes, so
// malformed text still advances).
std::size_t CharBytes(std::string_view s, std::size_t i) {
    const auto c = static_cast<unsigned char>(s[i]);
    std::size_t n = 1;
    if (c >= 0xF0 && c < 0xF8) n = 4;
    else if (c >= 0xE0) n = (c < 0xF0) ? 3 : 1;
    else if (c >= 0xC0) n = 2;
    if (i + n > s.size()) return 1;
    for (std::size_t k = 1; k < n; ++k) {
        if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80) return 1;
    }
    return n;
}

// Splits text into its characters (as byte ranges).
std::array<std::string_view, 3> FirstThreeChars(std::string_view s, int& count) {
    std::array<std::string_view, 3> out{};
    count = 0;
    std::size_t i = 0;
    while (i < s.size()) {
        const std::size_t n = CharBytes(s, i);
        if (count < 3) out[count] = s.substr(i, n);
        ++count;
        i += n;
    }
    return out;
}

// The leading number of a text the way the classic Val reads it: white space
// anywhere is skipped, then an optional sign, digits and a decimal fraction.
double LeadingNumber(std::string_view s) {
    std::string compact;
    for (char c : s) {
        if (c != ' ' && c != '\t' && c != '\r' && c != '\n') compact.push_back(c);
    }
    std::size_t i = 0;
    if (i < compact.size() && compact[i] == '+') ++i;  // from_chars takes only '-'
    std::size_t end = i;
    if (end < compact.size() && compact[end] == '-' && i == 0) ++end;
    while (end < compact.size() && compact[end] >= '0' && compact[end] <= '9') ++end;
    if (end < compact.size() && compact[end] == '.') {
        ++end;
        while (end < compact.size() && compact[end] >= '0' && compact[end] <= '9') ++end;
    }
    // Locale-independent and exactly rounded, so ties like "0.25" stay ties.
    double value = 0;
    if (std::from_chars(compact.data() + i, compact.data() + end, value).ec != std::errc()) return 0;
    return value;
}

}  // namespace

int SuitSymbolChar(int suit) { return ValidSuit(suit) ? 167 + suit : 0; }
std::uint32_t SuitColor(int suit) { return ValidSuit(suit) ? SuitColors[suit] : 0; }
std::string SuitColorName(int suit) { return ValidSuit(suit) ? std::string(SuitColorNames[suit]) : std::string(); }
std::string SuitEntity(int suit) { return ValidSuit(suit) ? std::string(SuitEntities[suit]) : std::string(); }
std::string SuitShortName(int suit) { return ValidSuit(suit) ? std::string(SuitShortNames[suit]) : std::string(); }
std::string SuitImageFile(int suit) { return ValidSuit(suit) ? SuitLetter(suit) + ".gif" : std::string(); }

std::string SeatName(int seat) { return (seat >= 0 && seat < 4) ? std::string(SeatNames[seat]) : std::string(); }
std::string SeatLetter(int seat) { return (seat >= 0 && seat < 4) ? std::string(SeatNames[seat].substr(0, 1)) : std::string(); }

std::string SuitLetter(int suit) {
    if (ValidSuit(suit)) return std::string(1, CARD_CHARS[SuitBase - 1 + suit]);
    if (suit == NoTrump) return "NT";
    return {};
}

int SuitIndex(std::string_view suit) {
    if (suit.substr(0, 2) == "NT") return NoTrump;
    if (suit.empty()) return Clubs;
    switch (suit[0]) {
        case 'D': return Diamonds;
        case 'H': return Hearts;
        case 'S': return Spades;
        default: return Clubs;
    }
}

int RankValue(std::string_view rankChar) {
    if (rankChar.empty()) return 0;
    const auto pos = CARD_CHARS.find(rankChar[0]);
    // A non-ASCII lead byte never matches the ASCII alphabet.
    if (pos == std::string_view::npos || static_cast<unsigned char>(rankChar[0]) >= 0x80) return 0;
    return static_cast<int>(pos) + 1;
}

std::string RankChar(int n) {
    if (n < 1 || n > static_cast<int>(CARD_CHARS.size())) return {};
    return std::string(1, CARD_CHARS[n - 1]);
}

std::int16_t CardCode(std::string_view text) {
    int count = 0;
    const auto chars = FirstThreeChars(text, count);
    std::string_view rank, suit;
    if (count < 3) {
        rank = chars[0];
        suit = chars[1];  // empty for a one-character text: reads as clubs
    } else {
        rank = chars[1];
        suit = chars[2];
    }
    return static_cast<std::int16_t>(RankValue(rank) + 100 * SuitIndex(suit));
}

std::string CardText(int code) {
    if (code < 0) return {};
    return RankChar(code % 100) + SuitLetter(code / 100);
}

int ScoreBid(std::string_view bid) {
    if (bid == BidNil) return 100;
    if (bid == BidDoubleNil || bid == BidDoubleNilPass) return 200;
    // Ties round to even, as the classic integer conversion does.
    const double scaled = std::nearbyint(LeadingNumber(bid) * 10);
    constexpr double lo = std::numeric_limits<int>::min();
    constexpr double hi = std::numeric_limits<int>::max();
    if (!(scaled >= lo)) return std::numeric_limits<int>::min();
    if (scaled > hi) return std::numeric_limits<int>::max();
    return static_cast<int>(scaled);
}

int BidKind(std::string_view bid) {
    if (bid >= "1" && bid <= "9") return 0;
    if (bid >= "10" && bid <= "13") return 0;
    if (bid == BidNil) return 1;
    if (bid == BidDoubleNil || bid == BidDoubleNilPass) return 2;
    return 0;
}

int SeatMap::MenuIndex() const {
    for (int i = 0; i < 5; ++i) {
        if (view_.menuChecked[i]) return i;
    }
    return 0;
}

void SeatMap::sitNESW(int firstSeat) {
    if (firstSeat < 0 || firstSeat > 3) return;
    for (int p = 0; p < 4; ++p) {
        const int s = (firstSeat + p) % 4;
        view_.seatLetters[p] = SeatLetter(s);
        seatOfPos_[p] = s;
    }
}

int SeatMap::InvSeat(int seat) const {
    for (int p = 0; p < 4; ++p) {
        if (seatOfPos_[p] == seat) return p;
    }
    return 0;
}

void SeatMap::sitNESWmenu(int index) {
    if (index < 0 || index > SeatMenuAuto) return;
    for (int i = 0; i < 4; ++i) view_.menuChecked[i] = false;
    if (index == SeatMenuAuto) {
        view_.menuChecked[SeatMenuAuto] = true;
        return;
    }
    view_.menuChecked[SeatMenuAuto] = false;
    view_.menuChecked[index] = true;
    sitNESW(index);
}

void SeatMap::InitNESW(std::string_view firstOwnId) {
    sitNESWmenu(firstOwnId.empty() ? North : SeatMenuAuto);
}

void SeatMap::InitNESW(const std::vector<std::string>& myIds) {
    InitNESW(myIds.empty() ? std::string_view() : std::string_view(myIds[0]));
}

void SeatMap::SetJapanese(bool japanese) {
    view_.menuCaptions[SeatMenuAuto] = japanese ? "自動選択" : "Auto";
}

}  // namespace core
