// The window-position file (named by the setting CFG): where the user left
// the main window, the game's windows and the companion windows, kept
// between runs for the same screen width.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/save_result.h"
#include "platform/geometry.h"

namespace core {
struct Folders;
}

namespace display {

// The windows of lines 3 to 9, in file order.
enum PosWindow {
    PosSpadesWindow = 0,
    PosScoreWindow,
    PosLastHandWindow,
    PosLastTrickWindow,
    PosCardPlayWindow,
    PosLeftCounter,
    PosRightCounter,
    PosWindowCount
};

inline constexpr std::array<const char*, PosWindowCount> PosWindowLabels = {
    "Spades Window",     "Score Window",  "Last Hand Window", "Last Trick Window",
    "Card Play Window",  "Left Counter",  "Right Counter"};

using PosTable = std::array<platform::Point, PosWindowCount>;

// Path of the file named by the setting CFG in the program folder; "" when
// the setting is empty (then nothing is read or written).
std::string PositionFilePath(const core::Folders& folders, const std::string& cfg);

// One line as the runtime's print statement lays it out: numbers with a sign
// position and a trailing blank, items in print zones of 14 characters.
std::string PrintZones(const std::vector<std::string>& items);
std::string PrintNum(long long n);

// The text of the file (lines without line ends).
// `current`: each window's current left and top ({0, 0} when the window is
// not there); `previous`: the pairs read from the old file.
std::vector<std::string> FormatWindowPositions(int screenWidth, const platform::Rect& mainWindow,
                                               const PosTable& current, const PosTable& previous);

// Reads the pairs of lines 3 to 9 of an existing file ({0, 0} where missing).
PosTable ReadPreviousPositions(const std::string& path, int codePage);

// At program end. Nothing happens when `path` is empty (then Saved with an
// empty Path). When the file could not be written the old one stays as it was.
core::SaveResult SaveWindowPositions(const std::string& path, int screenWidth, const platform::Rect& mainWindow,
                         const PosTable& current, int codePage);

struct LoadedPositions {
    bool Found = false;         // a file for this screen width was read
    bool Deleted = false;       // a file for another screen width was removed
    platform::Rect Main;        // where the main window goes (size kept)
    PosTable Pos{};             // pairs of lines 3 to 9, clamped
    int PosCount = 0;           // how many pairs the file held
    std::string SetAside;       // where a file that did not read as one was copied first
};

// At start-up: `screen` is the screen size, `mainWindow` the main window's
// current rectangle.
LoadedPositions LoadWindowPositions(const std::string& path, platform::Point screen,
                                    const platform::Rect& mainWindow, int codePage);

}  // namespace display
