// The alert list: players the user wants to be warned about. One ordered
// list: the built-in section (rebuilt at every start, never written), the
// separator "//", then the user's own entries, kept in a plain text file in
// the program folder.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/save_result.h"
#include "platform/clock.h"

namespace players {

// Slot 0 is never used; entries sit in slots 1..AlertCount; every slot past
// AlertCount reads as an empty text. The storage grows on demand, so code
// that walks "until the empty slots" also has to stop at Size().
class AlertList {
public:
    AlertList() : Slots(1) {}

    std::vector<std::string> Slots;
    std::int32_t AlertCount = 0;
    // Slot of the separator as the last read placed it (0 = none yet).
    std::int32_t SeparatorSlot = 0;
    // Set when the user's file exists but could not be read or is not text.
    // The list then lacks entries the file holds, so WriteAlertList copies
    // the file aside before replacing it (or refuses when it cannot).
    bool FileUnreadable = false;

    std::int32_t Size() const { return static_cast<std::int32_t>(Slots.size()); }
    // Slot i, or an empty text for any slot that does not exist.
    const std::string& Entry(std::int32_t i) const;
    // Stores text in slot i (i >= 1), growing the storage when needed.
    void SetEntry(std::int32_t i, std::string text);
    // Slot index of the separator, 0 when the list holds none.
    std::int32_t SeparatorIndex() const;
};

inline constexpr const char* AlertSeparator = "//";

// Splits each line of the table into comma-separated entries (untrimmed,
// empty ones kept) and stores them after position count, updating count.
// Stops at the first empty line from index 1 on; an empty line 0 is skipped.
void ReadList(std::vector<std::string>& out, const std::vector<std::string>& lines, std::int32_t& count);

// The built-in table of lines (at most 501 are used).
const std::vector<std::string>& DefaultAlertLines();

// Rebuilds the list from the built-in table (or from the given lines) and
// puts the separator after the last built-in entry.
void ReadDefaultAlertList(AlertList& list);
void ReadDefaultAlertList(AlertList& list, const std::vector<std::string>& lines);

enum class AlertFileResult {
    Ok = 0,
    Missing = 1,      // no such file: the list is unchanged (no error)
    Unreadable = 2,   // the file exists but could not be read or decoded
    WriteFailed = 3,  // the new file could not be written; the old one stays
    Refused = 4,      // not written: the list never held the file's entries
};

// Appends the entries of the user's file (decoded from codePage) to the list
// and drops exact duplicates, keeping the first occurrence.
AlertFileResult ReadAlertList(const std::string& path, AlertList& list, int codePage);
// The same on text already decoded (the file's lines).
void AppendAlertText(const std::string& text, AlertList& list);

// The file content for the user section: header, then each entry followed
// by ",", lines wrapped after about 60 characters, no final line end.
std::string FormatAlertFile(const AlertList& list, bool japanese);
// Writes the user section to path (temporary file, then rename). A file the
// list could not read is first copied aside under a name made from `now`
// (refused without `now`). `save`, when given, tells what became of the write.
AlertFileResult WriteAlertList(const AlertList& list, const std::string& path, bool japanese, int codePage,
                               const platform::LocalTime* now = nullptr, core::SaveResult* save = nullptr);

}  // namespace players
