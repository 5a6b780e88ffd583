// Named results of the engine's steps. Where a file, a message or the game's
// own numbering shows the number, the enum keeps it as its value, so a
// message lookup (`PutMsg`) can still take the number.
#pragma once

#include <cstdint>

#include "core/game_language.h"

namespace tracking {

// Scheduled jobs of the timer loop; the numbers also index the game's
// sub-windows ("Last Trick" 1, "Last Hand" 2, "Spades Score" 3).
enum class Job : int { Reminder = 0, LastTrick = 1, LastHand = 2, ScoreWindow = 3, BidWatch = 4 };
inline constexpr int kJobCount = 6;
inline constexpr int JobIndex(Job j) { return static_cast<int>(j); }

// Whether a game table is being followed. A fresh start and a restart are
// neither on-line nor a table that went away.
enum class OnlineMode : int { Fresh = 0, Online = 1, Offline = 2 };

// Where the bidding stands, shared by the loop and the bidding board.
enum class BidState : int {
    BoardHiddenAfterBid = -4,
    OrdinaryBoard = -3,
    DoubleNilBoard = -2,
    BoardShown = -1,
    Watching = 0,
};

// The game's site language, the one type of the readers and the simulator.
using core::GameLanguage;
using core::LanguageOfRow;
using core::LanguageRow;

// Outcome of one bid step (the message numbers of the bid reader).
enum class BidResult : int {
    DealBegins = 0,
    ScoreWindowMissing = 1,
    ScoreReadFailed = 2,
    NamesReadFailed = 4,
    GameNotStarted = 11,
    BiddingNotStarted = 12,
    NoTableBox = 13,
    BidsIncomplete = 15,
    BidsUnchanged = 16,
    NoBidLabels = 19,
    LastHandWindowMissing = 21,
    Skipped = -100,  // busy or filing: nothing was read
};

// Outcome of one capture of a finished deal.
enum class CaptureResult : int {
    Filed = 0,
    NewGame = -1,  // the score window lists no line: a new game began
    ScoreWindowMissing = 1,
    ScoreReadFailed = 2,
    NamesReadFailed = 4,
    ScoreUnchanged = 7,
    EmptyNames = 11,
    LastHandWindowMissing = 21,
    LastHandUnreadable = 22,
    HandUnchanged = 24,
    Skipped = -100,
};

// Outcome of one trick step.
enum class TrickResult : int {
    Skipped,         // busy or counters off
    Read,            // a trick read; the deal goes on
    NoTrick,         // the "Last Trick" window shows none yet
    DealOver,        // the last trick was seen: the deal was captured
    WindowMissing = 25,
};

inline constexpr int Code(BidResult r) { return static_cast<int>(r); }
inline constexpr int Code(CaptureResult r) { return static_cast<int>(r); }

}  // namespace tracking
