// Start-up checks: refuse to run from an archive or system folder, refuse a
// second instance, decide whether the Japanese interface can be shown, make
// the work folder, and tell the user when no settings file was found. A
// failed check shows its message in the main window and ends the program
// through the one shared fatal stop.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/folders.h"
#include "core/settings.h"

namespace platform {
class Clock;
class SystemInfo;
}  // namespace platform

namespace core {

constexpr const char* kExeName = "TarvelloS.exe";
constexpr const char* kZipName = "TarvelloS25.zip";
constexpr const char* kFontMsPGothic = "ＭＳ Ｐゴシック";
constexpr const char* kFontMeiryo = "メイリオ";
constexpr std::uint32_t kFatalStopWaitMs = 10000;
// The fatal stop looks at the End flag this often while it waits.
constexpr std::uint32_t kFatalStopPollMs = 50;

// What start-up shows in the main window: the printed lines and the state of
// the few controls the checks touch. The window draws it; tests read it.
struct StartupScreen {
    // Printed lines, one below the other; the last one is the line being
    // printed (Print appends to it, NewLine starts the next).
    std::vector<std::string> Lines{std::string()};
    // Width of the window's text area in characters of the message font
    // (AbsentINIfile breaks a long path against 0.8 of it).
    int WidthChars = 64;
    std::string TextFont;  // "" = the window's own font

    bool DeleteAllEnabled = true;  // the "Delete ALL Work Files" button
    bool DeleteAllVisible = true;
    bool OtherControlsVisible = true;  // every control but the two buttons above and "End"
    bool EndVisible = false;
    bool EndIsCancel = false;  // Esc presses "End"
    std::string EndCaption = "End";
    std::string EndFont;

    // Set by a click on "End" or the Esc key (the window's handlers); the
    // fatal stop checks it between short waits.
    bool EndRequested = false;
    // Set when the program must end (the fatal stop is over).
    bool Ended = false;

    void Print(const std::string& text) { Lines.back() += text; }
    void NewLine() { Lines.emplace_back(); }
    // All lines joined with "\n" (the line being printed included when not empty).
    std::string Text() const;
};

// What the checks need: the platform, the window model and the interface
// language in force.
struct StartupContext {
    StartupContext(platform::SystemInfo& sys, platform::Clock& c, StartupScreen& s) : System(sys), Clock(c), Screen(s) {}
    platform::SystemInfo& System;
    platform::Clock& Clock;
    StartupScreen& Screen;
    bool Japanese = false;       // the Japanese interface is on
    std::string JapaneseFont;    // "" when the system has no Japanese font
};

// "メイリオ" if the system has it, else "ＭＳ Ｐゴシック" if it has that, else "".
std::string ChooseJapaneseFont(const std::function<bool(const std::string&)>& systemHasFont);

// True when the folder (upper-cased) contains ".ZIP", "TMP", "TEMP" or "WINDOWS".
bool IsArchiveOrSystemFolder(const std::string& folder);

// The archive-folder check. With the test flag on, "WINDOWS\TEMP" is tested in
// place of the program folder. Japanese messages are printed when a Japanese
// font is set in the context. False when it failed (the fatal stop has run).
bool chkZIP(StartupContext& ctx, const std::string& programFolder, bool testFlag = false);

// The second-instance check; false when another instance runs (the fatal
// stop has run).
bool chkPrevInstance(StartupContext& ctx);

// Whether the ANSI code page is Japanese, by the single-byte round trip of
// 129, 193 and 225.
bool TestOSjp(int codePage);
bool TestOSjp(platform::SystemInfo& system);

// The notice that no settings file was found.
void AbsentINIfile(StartupScreen& screen, const std::string& programFolder);

// The unknown-key line ("  key=value   Illegal Keyword!") followed by the fatal stop.
void IllegalKeyword(StartupContext& ctx, const SettingsReadResult& result);

// Removes one trailing separator and creates the folder when missing.
// Failures are not reported; the writers of the folder meet them.
void EnsureFolder(const std::string& path);

// Disables and hides everything but "End", prints the end prompt and waits
// 10 seconds through the clock, or less when End/Esc is pressed; then sets
// Screen.Ended. Callers end the program after it.
void FatalStop(StartupContext& ctx);

// The checks of start-up in their order: chkZIP (when `checkArchive`), the
// settings (defaults, file, an unknown key stops), chkPrevInstance, the
// post-read rules with TestOSjp, AbsentINIfile when no file was read, and
// EnsureFolder for the work folder.
struct StartupOutcome {
    bool Continue = false;  // false: the fatal stop ran, the program ends
    SettingsLoad Settings;
    // Temporary files a crashed earlier run left behind, removed at start.
    std::vector<std::string> RemovedTempFiles;
};
StartupOutcome RunStartupChecks(StartupContext& ctx, const Folders& folders, bool checkArchive = true);

}  // namespace core
