// Everything read from the game's table window: the table box and its
// per-width caches, the left button column, the player list, the bid and
// tricks labels, the user's-turn marker and the bid panel. All state lives
// here; captures go through the Capture and its windows, screen copies and clock.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/geometry.h"
#include "reading/glyphs.h"
#include "reading/pixels.h"
#include "reading/win_titles.h"

namespace reading {

constexpr int kBoxWidth = 235;
constexpr int kBoxHeight = 149;
constexpr int kBoxSearchTries = 50;
constexpr int kMaxTableNames = 100;

// Status codes of CaptureBid.
constexpr int kBidRead = 0;
constexpr int kBidWaitPrompt = 11;
constexpr int kBidNoLabel = 12;
constexpr int kBidLastTrick = 13;

// Bid panel kinds (GetBoardStat).
constexpr int kBoardNone = 0;
constexpr int kBoardOrdinary = 100;
constexpr int kBoardDoubleNil = 200;
constexpr int kBidStateBoardHidden = -4;

class TableReader {
public:
    TableReader(Capture& cap, GlyphTable& glyphs, const WinTitles& titles);

    // --- context set by the caller -------------------------------------------------
    int GameLanguage = LangUSA;         // may change to 8 by the Spanish rule of the scan
    int ReduceWidth = 0;                // 624 with English: the known layout, no search
    platform::Rect SavedGameRect{};     // last game window rectangle left of x = 1000
    // Box status for the main window: ("Box OK" text or "BOX (n)", found).
    std::function<void(const std::string&, bool)> BoxStatus;
    // A table flag was set for the first time: slot 4 (Double Nil pass) or 5 (suicide).
    std::function<void(int)> TableFlagSet;

    // --- table box (LocateBox) -----------------------------------------------------
    std::int32_t BoxLeft = 0, BoxTop = 0, BoxRight = 0, BoxBottom = 0, BoxCenterX = 0, BoxCenterY = 0;
    std::int32_t NameListTop = 0;
    int BoxTries = 0;  // tries of the last search
    int BoxSearchTries = kBoxSearchTries;  // tries before a search gives up

    // --- left column (ScanButtons) -------------------------------------------------
    std::array<platform::Point, ButtonSlotCount> SubButtonXY{};  // 1..5, (0,0) = not found
    bool DNilPassTable = false;
    bool SuicideTable = false;

    // --- labels (CaptureBid, CaptureTricks) ----------------------------------------
    std::array<platform::Point, 4> BidPos{};    // by bid position; y = 0 unknown
    std::array<platform::Point, 4> TrickPos{};  // by tricks position; y = 0 unknown
    int BidLocCount = 0;
    int BidCount = 0;
    std::array<int, 4> LastTricks{};  // counts read by the last CaptureBid, by tricks position

    // --- player list ---------------------------------------------------------------
    std::vector<std::string> TableNames;  // at most 100
    int TableNamesRead = 0;

    // --- bid panel -----------------------------------------------------------------
    std::array<platform::Point, 17> BtnXY{};  // 1..13 bids, 14 Nil, 15 Double Nil, 16 Show
    int BoardStat = kBoardNone;

    // --- operations ----------------------------------------------------------------
    // Reading font 1, number reader on, SelectFont(1) for the current language.
    void SelectReadingFont();
    void LocateBox();
    void ScanButtons();
    // The player list's frame corner (x + 1, y - 1) inside `r` of `rec`; (0,0) if none.
    platform::Point FindListCorner(const BM& rec, const platform::Rect& r) const;
    // Words of the current band from `start` (after skip - 1 columns) joined
    // by ","; a gap of more than `gap` blank columns ends a word.
    std::string ReadWords(std::int32_t start, int skip, int gap, std::vector<std::int32_t>* starts = nullptr) const;
    void MakePlayerList();
    // Font, list and the index (1-based) of the first entry with 5 or more
    // lower-case letters and digits; 0 if none.
    int ReadTablePlayers();
    // Texts of the table's text area (x 50 to 400, from the player list's
    // top row down to row 580), one per pixel row that holds ink, top to
    // bottom; rows between text lines read as glyph fragments.
    std::vector<std::string> ReadTextArea();
    static int CountAlnum(const std::string& text);
    // Bids by bid position ("1".."13", "N", "D", "DP" or ""); status 0, 11, 12, 13.
    // Without a capture neither is changed.
    void CaptureBid(std::array<std::string, 4>& bids, int& status);
    // Trick counts by tricks position; returns the number of labels read
    // (-1 when nothing was captured, counts unchanged).
    int CaptureTricks(std::array<int, 4>& tricks);
    bool TestMyTurn();
    // 100, 200 or 0; fills BtnXY. Not read at all when bidState is -4.
    int GetBoardStat(int bidState);

    // Bid code of the text after a label's ":" ("" when it is no bid).
    std::string BidOfValue(const std::string& v) const;

    // Caches by game window width (exposed for tests).
    struct BoxCacheEntry {
        std::int32_t Left = 0, Top = 0;
        bool Found = false;
        std::array<std::int32_t, 4> BidX{}, TrickX{};
    };
    const std::vector<BoxCacheEntry>& BoxCache() const { return cache_; }
    static constexpr int kCacheMinWidth = 500;

private:
    void DimLine(std::int32_t lo, std::int32_t hi);
    bool GameRect(platform::Rect& r);
    BoxCacheEntry* CacheFor(int width);
    bool SearchBox(int width);
    void SetBox(std::int32_t left, std::int32_t top);
    void SetTableFlag(int slot);
    bool CaptureBox(int extraRows);

    Capture& cap_;
    GlyphTable& glyphs_;
    const WinTitles& titles_;
    std::vector<BoxCacheEntry> cache_;  // index = width - 500
    int prevWidth_ = -1;
};

}  // namespace reading
