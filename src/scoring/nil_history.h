// The Nil history: a running report of how Nil bids fared at the user's
// tables (own Nils, partner's Nils covered, opponents' Nils set, double
// Nils), split by whether the bidder's hand kept the "Rule of 4 & 8". The
// report is also the store of the counts: it is read back, increased and
// written out again after every deal with a Nil.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/save_result.h"
#include "platform/clock.h"
#include "scoring/rules.h"

namespace scoring {

// Rows of the count table (category = row + 1); column 0 success, 1 failure.
inline constexpr int NilRowMyBids = 0;
inline constexpr int NilRowMyCovers = 1;
inline constexpr int NilRowSetNils = 2;
inline constexpr int NilRowSetNils4Spades = 3;
inline constexpr int NilRowDoubleNils = 5;
inline constexpr int NilRowRuleKept = 50;
inline constexpr int NilRowRuleBroken = 51;

struct NilCounts {
    std::array<std::array<std::int32_t, 2>, 52> Rows{};
    std::int32_t& Success(int row) { return Rows[row][0]; }
    std::int32_t& Failure(int row) { return Rows[row][1]; }
    bool operator==(const NilCounts&) const = default;
};

// The Rule of 4 & 8 for one seat's dealt cards (card codes). Rule 0 = kept;
// otherwise 12-14 (a queen, king or ace of spades, the last one met) or -1 (a
// three-card suit with two cards of eight or higher).
struct NilHandCheck {
    int Spades = 0;
    int Rule = 0;
};
NilHandCheck CheckNilHand(const std::array<int, 13>& cards);

// What one finished deal tells, by compass seat.
struct NilDeal {
    std::array<std::string, 4> Names;
    std::array<std::string, 4> Bids;
    std::array<int, 4> Tricks{};
    Hands Cards{};
    std::array<int, 4> SeatOfPos = {0, 1, 2, 3};  // table position -> seat
};

struct NilHistoryContext {
    std::string Folder;           // where the report lives (the work folder)
    bool Japanese = false;        // Japanese interface: Japanese file, code page 932
    bool UserIdentified = false;  // one of the user's IDs was found at the table
    bool SuicideTable = false;
    bool DoubleNilPassTable = false;
    bool AlertFailNil = false;
    std::string LogPath;               // log file; errors are appended when it exists
    std::function<void()> FailNilAlert;  // the alert sound for a broken Nil
};

enum class NilHistoryResult {
    NotApplicable,  // a precondition failed (unknown user, suicide table, robot, no Nil)
    NothingCounted, // Nils were bid but none counted; the report is untouched
    Written,
    Error,          // reading or writing failed; the report is untouched
};

// File names of the report and its backup for the interface language.
std::string NilReportName(bool japanese);
std::string NilBackupName(bool japanese);

// Counts from the report's lines (UTF-8); unreadable lines count 0.
NilCounts ReadNilCounts(const std::vector<std::string>& lines);
// Adds the deal to `counts`; false when nothing was counted.
bool CountNilDeal(NilCounts& counts, const NilDeal& deal, const std::array<int, 2>& teamScore,
                  bool doubleNilPassTable);
// The report text, one UTF-8 string per line.
std::vector<std::string> NilReportLines(const NilCounts& counts, bool japanese, const platform::LocalTime& now);

// After a finished deal: checks, reads the old counts back, keeps a daily
// backup, counts the deal and rewrites the report (temporary file renamed
// over the old one). `teamScore` is the latest score line, the user's side
// first. The clock gives today's date and the wait after a fail-Nil alert.
// A report that exists but does not read as one (random bytes, another
// encoding) is copied aside ("<name>.unreadable-<time>") before the new one
// replaces it. `save`, when given, is set whenever the report was to be
// written: what became of it, with the path of any copy set aside.
NilHistoryResult WriteNilHistory(const NilDeal& deal, const std::array<int, 2>& teamScore,
                                 const NilHistoryContext& ctx, platform::Clock& clock,
                                 core::SaveResult* save = nullptr);
// Whether the lines read back as a report this program wrote.
bool NilReportParses(const std::vector<std::string>& lines);

}  // namespace scoring
