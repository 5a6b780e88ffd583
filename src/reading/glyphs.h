// The game's bitmap fonts as a table of column patterns, and the readers
// that match a text band (LineBmp) against it: free text, a text finder, a
// word test and the label-plus-number reader for bids and tricks.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "reading/pixels.h"

namespace reading {

class GlyphHarvest;

constexpr int kGlyphEntryCount = 146;  // entries of the built-in table text
constexpr int kFontACount = 102;       // entries of the regular font; the rest is bold
constexpr int kGlyphCapacity = 351;    // glyph numbers 0..350, 0 unused
constexpr int kMaxGlyphColumns = 14;
constexpr int kDigitListSize = 22;     // glyphs a candidate list holds
constexpr int kDigitListTried = 20;    // glyphs the number reader tries

// Game languages (rows of the title table) the readers distinguish.
constexpr int kLangEnglish = 1;
constexpr int kLangJapanese = 2;
constexpr int kLangItalian = 5;

struct Glyph {
    std::int16_t Next = 0;        // next glyph with the same first column; 0 ends the chain
    std::uint16_t WideKey = 0;    // first column of a glyph named by a non-ANSI character
    std::uint16_t AccentKey = 0;  // first column of a glyph named by an HTML entity
    std::int16_t Width = 0;
    std::array<std::uint16_t, kMaxGlyphColumns + 1> Column{};  // 1..14; Column[1] = key, 0 disables
    std::string Name;    // what the glyph reads as
    std::string Source;  // the name as written in the table ("&eacute;"), for drawing
    std::uint16_t Key0 = 0;  // first column as parsed (drawing uses it even when disabled)
};

class GlyphTable {
public:
    // Runs LoadGlyphTable; fonts still have to be selected before reading.
    GlyphTable();

    // The built-in table text, dedup, parse into font slot 1, "(" and ")" off.
    void LoadGlyphTable();
    // Language gating, chains, digit masks and candidate lists for slot f.
    // The labels are the language's bid and tricks labels ("Bid:", "Tricks:").
    void SelectFont(int f, int gameLanguage, std::string_view bidLabel, std::string_view trickLabel);

    // --- readers (positions are LineBmp indexes, i.e. pixel x) ---------------
    // Name of the glyph matching at p (p advanced past it) or "?" (p moved to
    // the next blank column).
    std::string GlyphMatch(const LineBmp& line, std::uint16_t v, std::int32_t& p) const;
    // One field from p: glyph names without blanks; p left after the field.
    std::string ReadText(const LineBmp& line, std::int32_t& p) const;
    // Position just after the first occurrence of target at or after start; 0 if none.
    std::int32_t FindText(const LineBmp& line, std::int32_t start, std::string_view target) const;
    bool FindWord(const LineBmp& line, std::string_view target) const;
    // GlyphMatch under the digit mask over candidate list `list` (0 labels, 1 digits).
    std::string DigitMatch(const LineBmp& line, std::uint16_t v, std::int32_t& p, int list) const;
    // Finds `label` on the band and reads the number after it. Returns the
    // label's start column (0 = not found, `text` unchanged); on success
    // `text` = label followed by the number ("Bid:10", "Bid:N", "Tricks:").
    std::int32_t ReadNumber(const LineBmp& line, std::string_view label, std::string& text) const;

    // --- state -------------------------------------------------------------------
    std::vector<std::string> TableText;  // 1..146 (index 0 unused)
    std::vector<Glyph> Glyphs;           // 1..count (index 0 unused)
    int FontACount = 0;
    std::array<int, 3> FontFirst{};  // glyph range of each font slot (only slot 1 filled)
    std::array<int, 3> FontLast{};
    std::vector<std::int16_t> GlyphHead = std::vector<std::int16_t>(16385, 0);
    std::array<std::uint16_t, 3> DigitMask{0xFFE, 0xFFE, 0xFF8};
    std::array<std::array<std::int16_t, kDigitListSize + 1>, 2> DigitList{};
    int ReadingFont = 0;     // font slot the readers use (mask of the number reader)
    bool DigitsOn = false;   // the number reader works only when on
    int SelectedFont = 0;    // slot of the last SelectFont
    int Language = 1;        // language of the last SelectFont
    // When set, every shape read as "?" is handed to it (see glyph_harvest.h).
    GlyphHarvest* Harvest = nullptr;

    int GlyphCount() const { return static_cast<int>(Glyphs.size()) - 1; }
    std::uint16_t Mask() const { return DigitMask[static_cast<std::size_t>(ReadingFont >= 0 && ReadingFont < 3 ? ReadingFont : 1)]; }
};

// Characters of a UTF-8 text, one std::string each (helper for the readers
// and the simulator's drawing).
std::vector<std::string> SplitChars(std::string_view text);

}  // namespace reading
