// The deal record (one per deal, filled by the capture driver) and its text
// file in the work folder: naming and numbering, writing, reading, and
// loading a stored deal back for display.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/save_result.h"

namespace platform {
class Clock;
}
namespace core {
struct Folders;
}

namespace display {

inline constexpr int MaxScoreRows = 100;
inline constexpr int TrickCount = 13;

// Result codes of reading, as the runtime numbers them.
inline constexpr int ErrNone = 0;
inline constexpr int ErrFileNotFound = 53;
inline constexpr int ErrInputPastEnd = 62;

// Trick cell marks.
inline constexpr std::uint8_t MarkNone = 0;
inline constexpr std::uint8_t MarkBrackets = 1;     // "[AS]"
inline constexpr std::uint8_t MarkParentheses = 2;  // "(AS)"

inline constexpr const char* RecordExt = ".spd";

struct DealRecord {
    std::int32_t State = 0;                   // capture state (capture driver)
    std::array<std::string, 4> Names;         // by compass seat
    std::array<std::string, 4> Seat2;         // second per-seat field, kept as is
    // Trick[t][seat]: the card played in trick t + 1 by the seat ("AS").
    std::array<std::array<std::string, 4>, TrickCount> Trick;
    std::array<std::array<std::uint8_t, 4>, TrickCount> Mark{};
    std::int32_t ScoreRowCount = 0;  // 0 to 100
    // Per row: N/S points, N/S bags, E/W points, E/W bags.
    std::array<std::array<std::int32_t, 4>, MaxScoreRows> ScoreRows{};

    bool operator==(const DealRecord&) const = default;
};

// The file's lines (UTF-8, without line ends). Card texts are written in
// two-character cells, so every trick line is 65 characters long.
std::vector<std::string> FormatRecordLines(const DealRecord& rec);
// Fills `rec` from the lines of a record file. Returns 0, or 62 when the
// lines end before the trick lines, the row count or the last score row;
// what was read before stays in `rec`.
int ParseRecordLines(const std::vector<std::string>& lines, DealRecord& rec);

// "03_05_" on 5 March.
std::string DatePart(int month, int day);

// Record files of one work folder, with the sequence counter of the run.
class RecordFiles {
public:
    // `folders` must outlive this object; `codePage` is the system's ANSI
    // code page (932 when the Japanese interface runs). File names are
    // matched without regard to letter case, as on the player's system.
    RecordFiles(platform::Clock& clock, const core::Folders& folders, int codePage);

    // Writes the record under the next free name of today and returns that
    // name without extension ("03_05_008"); "" when the file could not be
    // written. `boxEntries` are the file box's names, which seed the counter
    // on the first write of the run.
    // `nameOut` gets the name only when the file was written.
    core::SaveResult WriteRecordFile(const DealRecord& rec, const std::vector<std::string>& boxEntries,
                                     std::string& nameOut);
    // The same returning the name ("" when not written); LastSave() tells why.
    std::string WriteRecordFile(const DealRecord& rec, const std::vector<std::string>& boxEntries);
    const core::SaveResult& LastSave() const { return lastSave_; }

    // Reads "<name>.spd" into `rec` (which is not cleared first). Returns 0,
    // 53 when the file cannot be opened, or 62 when it is cut short.
    int ReadRecordFile(const std::string& name, DealRecord& rec) const;

    // Shows a stored deal: starts from an empty record, reads the file and
    // remembers the name as the current record. While on-line mode is 2 the
    // marker file is spared at exit. Returns the code of ReadRecordFile.
    int LoadRecord(const std::string& name, int onlineMode, DealRecord& rec);

    // At program end: removes "SpadesBid.spd" from the work folder unless a
    // record was loaded while on-line mode was 2.
    void RemoveMarkerAtExit();
    // Whether "SpadesBid.spd" exists in the work folder.
    bool MarkerExists() const;

    // The counter: 0 until the first write, then the next sequence number.
    int Counter() const { return counter_; }
    const std::string& CounterDatePart() const { return datePart_; }
    const std::string& CurrentName() const { return currentName_; }
    bool SpareMarker() const { return spareMarker_; }
    int CodePage() const { return codePage_; }

    // Full UTF-8 path of a file of the work folder (the existing file in any
    // letter case, else the name joined to the folder).
    std::string PathOf(const std::string& fileName) const;

private:
    platform::Clock& clock_;
    const core::Folders& folders_;
    int codePage_;
    int counter_ = 0;
    std::string datePart_;
    std::string currentName_;
    bool spareMarker_ = false;
    core::SaveResult lastSave_;
};

inline constexpr const char* MarkerFileName = "SpadesBid.spd";

}  // namespace display
