// What the tracking engine needs to know from the game's windows, as one
// interface: the table box and buttons, the player list, bids, tricks, the
// last trick, the last hand, the score lines and the bid panel. The pixel
// readers of src/reading stand behind it in the product; tests and the
// simulated sessions may put other sources behind it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/geometry.h"
#include "reading/cards.h"

namespace tracking {

using Bids4 = std::array<std::string, 4>;  // by table position, "" = no bid

// Result of the table scan (table box, buttons of the left column, player list).
struct TableInfo {
    bool BoxFound = false;
    // Table box in game-window coordinates (outer window, top-left = 0,0).
    platform::Rect Box;
    // Screen positions of the buttons that open sub-windows 1..3 (0,0 = not found).
    std::array<platform::Point, 4> ButtonXY{};
    // Game language recognised by the button words; 0 = not decided.
    int GameLanguage = 0;
    bool DNilPassTable = false;
    bool SuicideTable = false;
    // Everyone listed below the table: ID followed by what the list shows.
    std::vector<std::string> PlayerList;
};

// Trick reading: counts by table position, the trick number the "Last
// Trick" window shows (0 = none), and whether the window holds no trick.
struct TrickReading {
    std::array<int, 4> Counts{};
    int TrickNumber = 0;
    bool NoTrick = false;
    bool IsNew = true;  // the trick differs from the one read before
};

// What the table box locator said last, for the main window's status label:
// the box's "left,top" when found, "BOX (n)" after n failed tries.
struct BoxStatus {
    std::string Text;  // "" = nothing said yet
    bool Found = false;
};

// Board panel positions: index 1..13 bids, 14 Nil, 15 Double Nil, 16 Show.
using ButtonTable = std::array<platform::Point, 17>;

// Score lines as the game's score window lists them (N/S points, N/S bags,
// E/W points, E/W bags).
using ScoreLine = std::array<std::int32_t, 4>;

class GameReaders {
public:
    virtual ~GameReaders() = default;

    // The game window changed (new handle or gone): forget cached boxes.
    virtual void SetGameWindow(platform::WindowHandle h, int gameLanguage) = 0;
    // The table box and the buttons of the left column (scanned until found).
    virtual void ReadTableInfo(TableInfo& info) = 0;
    // The player list below the table into info.PlayerList.
    virtual void ReadPlayerList(TableInfo& info) = 0;
    // Result codes as the bid reader defines them: 0 a deal begins (no bid
    // yet, wait prompt gone), 2/4 and 11-13, 19 reading states; Bids by
    // table position (positions relative to the seat map in force).
    virtual int CaptureBid(Bids4& bids, int& bidCount, int& bidLocCount) = 0;
    virtual int CaptureTricks(TrickReading& out) = 0;
    // Cards of the last trick by table position ("" = none); false when
    // the window could not be read.
    virtual bool ReadLastTrick(std::array<std::string, 4>& cards, int& cardsSeen) = 0;
    virtual int CaptScore(std::vector<ScoreLine>& lines) = 0;
    virtual int CaptHand(reading::HandRead& out) = 0;
    // 100 ordinary panel, 200 Double Nil panel, 0 none; fills `xy` (screen).
    virtual int GetBoardStat(ButtonTable& xy) = 0;
    // The game shows that the user is to act (the black bar in the box).
    virtual bool TestMyTurn() = 0;
    // Texts of the table window's text area, top to bottom (ratings).
    virtual std::vector<std::string> RatingLines() = 0;
    // A new deal's bidding is over: the "Last Trick" reader starts afresh.
    virtual void NewDeal() = 0;
    // The width the game window is narrowed to (0 = not narrowed): at 624
    // the English table's layout is known and needs no search.
    virtual void SetReduceWidth(int /*width*/) {}
    [[nodiscard]] virtual BoxStatus LastBoxStatus() const { return {}; }
    // Every text shape the readers cannot name is written once to the log
    // at `logPath` ("" = none), in the glyph table's form.
    virtual void HarvestUnknownGlyphs(const std::string& /*logPath*/, int /*codePage*/) {}
};

}  // namespace tracking
