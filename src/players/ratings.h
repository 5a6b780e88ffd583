// The user's rating: found in the table's player list, shown on the main
// window, recorded once per finished game in the history file (newest line
// first), and used to decide whether the card-counting displays may be on.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/save_result.h"
#include "platform/clock.h"
#include "platform/windowing.h"
#include "players/alert_checks.h"

namespace players {

// Site names by game language 1..10; "" outside.
std::string SiteName(std::int32_t gameLanguage);

// The label MyRating.
struct RatingLabel {
    std::string Caption;
    std::string FontName;
    bool Bold = false;
};

// Texts of the pixel lines of the table window's text area, top to bottom,
// as the screen reader reads them after a game (the capture is the
// reader's business).
using RatingLineReader = std::function<std::vector<std::string>()>;

struct RatingOptions {
    bool Japanese = false;
    bool LogSet = false;
    bool CountCards = false;                // card counting switched on
    std::string JapaneseFont = "ＭＳ Ｐゴシック";  // the start-up check picks the real one
    std::vector<std::string> MyIds;         // the user's IDs, first one first
    std::vector<std::string> SecondIds;     // up to 1000, ends at the first empty one
    std::string HistoryPath;                // "" = no history kept
    std::string MarkerFilePath;             // "SpadesBid.spd" in the work folder
    int CodePage = 1252;
};

// One history line (without line end).
std::string FormatHistoryLine(const std::string& caption, const platform::LocalTime& t, std::int32_t mode,
                              bool japanese, const std::array<std::int32_t, 2>& teamScore,
                              const std::array<std::string, 4>& seatNames, std::int32_t gameLanguage);
// The rating text of a history line as the program compares it.
std::string RecordedRatingText(const std::string& line, bool japanese);
// The value of the new rating in lines like "<name> ... newrating: 1523";
// 0 when no line holds the name followed by "newrating:".
std::int32_t FindRenewedRating(const std::vector<std::string>& lines, const std::string& name);

enum class HistoryResult {
    Written = 0,
    NotRecorded = 1,  // not a game to record (no history file, no score, not read after a game)
    Unreadable = 2,   // the old file could not be read: left as it is
    WriteFailed = 3,  // the new file could not be written: old one kept
    Unchanged = 4,    // the rating is the one last recorded
    RobotTable = 5,   // two or more robots played
    NotAtTable = 6,   // none of the user's IDs is in the player list
};
// Why a game's line was or was not written, in a few words.
std::string HistoryResultText(HistoryResult r);

// What ReadShowRating needs of the game and the deal.
struct RatingContext {
    bool CaptureBusy = false;  // mode 2 stops while a capture is in progress
    TableAccess Table;
    std::array<std::int32_t, 2> TeamScore{0, 0};  // the user's team first
    std::array<std::string, 4> SeatNames;
    std::int32_t GameLanguage = 1;
    RatingLineReader ReadLines;  // for the renewed rating after a game
};

class Ratings {
public:
    Ratings(platform::Windows& windows, platform::Clock& clock);

    RatingOptions Options;
    RatingLabel MyRating;
    std::int32_t RatingMode = 0;
    std::int32_t MyIdIndex = 0;  // 1-based index into MyIds, 0 = not found
    std::string MyName;          // the user's name as the player list shows it
    bool CountingAllowed = false;
    HistoryResult LastHistory = HistoryResult::NotRecorded;
    // The last attempt to write the history file (Path "" when the last game
    // was not to be recorded): only Saved means the rating is in the file.
    core::SaveResult LastSave;

    // Mode 0 read only, 1 after a finished game, 2 on request.
    void ReadShowRating(std::int32_t mode, RatingContext& ctx);
    // Sets the label from the rating text; value: the rating, -1 provisional,
    // 0 no rating (no number, or below 1000).
    void ShowMyRating(std::string& text, std::int32_t& value);
    // The permission rule (only applied when card counting is on).
    bool CountingPermission(const std::string& text, std::int32_t value) const;
    void UpdateCountingAllowed(const std::string& text, std::int32_t value);
    // Records the finished game: checks, then rewrites the history file with
    // the new line first. text/value are the current rating. A history that
    // is not text (NUL bytes: another encoding or random data) is copied
    // aside and a new one begun. Sets LastSave.
    HistoryResult WriteHistory(std::string& text, std::int32_t& value, RatingContext& ctx);
    // The rating the game shows after a game ended with a provisional one.
    void GetRenewedRating(std::int32_t& value, const std::string& name, platform::WindowHandle gameWindow,
                          const RatingLineReader& reader);

private:
    platform::Windows& windows_;
    platform::Clock& clock_;
};

}  // namespace players
