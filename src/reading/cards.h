// Card recognition: the "Last Hand" window read as text (names and the
// thirteen cards of each player) and the "Last Trick" window read from the
// corner marks of its four card images against a small built-in card font.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/sound.h"
#include "reading/glyphs.h"
#include "reading/pixels.h"

namespace reading {

// Sub-window indexes of the capture's table.
constexpr int kSubLastTrick = 1;
constexpr int kSubLastHand = 2;
constexpr int kSubScore = 3;

constexpr int kCornerSampleCount = 22;
constexpr int kCornerSampleBits = 8;
constexpr int kCardFontSamples = 9;  // samples each entry should give

// Status codes of the readers.
constexpr int kReadOk = 0;
constexpr int kHandUnreadable = 22;

// --- pure helpers -------------------------------------------------------------

// A card field as read ("10H", "AF", "QP") in the card notation ("TH", "AC",
// "QS") for the game language; fewer than two characters are returned as
// they are, a suit letter the language does not use gives a one-character
// text.
std::string ParseCardText(std::string_view text, int gameLanguage);
// Blanks trimmed, then trailing and leading "?" removed.
std::string TrimUnknown(std::string_view text);

// --- card font ----------------------------------------------------------------

struct CardFontEntry {
    int Count = 0;                                  // samples the entry gave
    std::array<std::uint8_t, kCornerSampleCount> Samples{};
};

// One entry per position of the card alphabet: ranks "2".."A" at 2..14,
// suits "C" "D" "H" "S" at 15..18.
class CardFont {
public:
    static constexpr int kFirst = 2;
    static constexpr int kLast = 18;
    static constexpr int kFirstSuit = 15;

    CardFont() { LoadCardFont(); }
    // Builds the font from its text; returns how many entries did not give
    // exactly nine samples (the caller beeps once for each).
    int LoadCardFont();

    std::array<std::string, kLast + 1> EntryText{};
    std::array<CardFontEntry, kLast + 1> Entry{};
};

// The text of entry `pos` (2..18) of the built-in card font.
std::string_view CardFontText(int pos);

// --- results ------------------------------------------------------------------

// The "Last Hand" window by table line p (top to bottom) and card column c.
struct HandRead {
    std::array<std::string, 4> Names{};
    std::array<std::array<std::string, 13>, 4> Cards{};  // [p][c], notation text
    std::array<std::array<std::uint8_t, 13>, 4> Marks{};  // 0 plain, 1 "[", 2 "("
};

// The "Last Trick" window by card slot: 2 top, 0 below it, 1 left, 3 right.
struct TrickRead {
    std::array<int, 4> Suits{};  // 0 clubs .. 3 spades; Suits[0] = -1 = reading failed
    std::array<int, 4> Ranks{};  // 2..14; 0 = nothing
};

// --- the reader -----------------------------------------------------------------

class CardReader {
public:
    // Beeps for each malformed font entry.
    CardReader(Capture& cap, const GlyphTable& glyphs, platform::Sound& sound);

    // Reads the "Last Hand" window. Returns 0 (read, or nothing captured:
    // names empty) or 22 (no table found in four captures, or a card field
    // with an unknown shape); `out` holds what was read up to then.
    int CaptHand(HandRead& out);

    // Reads the "Last Trick" window. mode 0: show, count and store; 1: store
    // only; 2: like 0 unless a slot still shows the stored card, in which
    // case the result is all zeros. Returns false (Suits[0] = -1, the rest
    // 0) when two attempts failed.
    bool ReadLastTrick(TrickRead& out, int mode);

    // Fills CornerSamples from the mark at (x, y) of card slot k; sets
    // CornerError (1 upright, 2 sideways) when the mark lies before the
    // buffer's start.
    void ReadCardCorner(std::int32_t x, std::int32_t y, int k);
    // Suit index and rank value of CornerSamples; rank 0 when no match.
    void MatchCard(int& suit, int& rank) const;

    // First row from top down whose pixels left..right-1 are all black; -1.
    std::int32_t FindAllBlackRow(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) const;
    // First column left..right whose rows top..bottom-1 are all black; -1
    // if none, -1000 when the rectangle reaches outside the captured rows.
    std::int32_t FindAllBlackCol(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) const;

    // --- settings and hooks (set by the owner) -------------------------------
    int GameLanguage = 1;
    bool MinimizeLastHand = false;  // minimise the "Last Hand" window after reading
    bool ShowPlayedCards = false;   // draw taken-over cards in the played-cards display
    std::function<void(int slot, int suit, int rank)> DrawPlayedCard;
    std::array<int, 3> LinePitch{16, 16, 16};  // by reading font slot

    // --- state ------------------------------------------------------------------
    CardFont Font;
    int FontErrors = 0;  // entries that did not give nine samples
    std::array<std::uint8_t, kCornerSampleCount> CornerSamples{};
    int CornerError = 0;
    std::array<int, 4> LastTrickSuits{};
    std::array<int, 4> LastTrickRanks{};
    int CardsSeen = 0;  // cards taken over this deal; the deal tracking resets it

private:
    bool ReadTrickOnce(TrickRead& out);
    void TakeTrick(const TrickRead& t, bool show);
    int LinePitchNow() const;

    Capture& cap_;
    const GlyphTable& glyphs_;
};

}  // namespace reading
