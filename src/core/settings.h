// The settings file: key = value lines read once at start-up. The reader is
// forgiving about layout (blank lines, comments, quotes, letter case) and
// strict about vocabulary: the first unknown key stops it.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/folders.h"
#include "core/json.h"

namespace core {

// A companion window's place, which also switches it on: x = 0 is off,
// x = -100 means "on, at the place the window chooses for itself".
struct Position {
    std::int32_t X = 0, Y = 0;
    bool On() const { return X != 0; }
    bool DefaultPlace() const { return X == kDefaultPlace; }
    bool operator==(const Position&) const = default;
    static constexpr std::int32_t kDefaultPlace = -100;
};

// The main window's own background colour, the default of BackColor.
constexpr std::uint32_t kMainWindowBackColor = 0xC0C0C0;

constexpr const char* kSettingsFileJapanese = "スペード.INI";
constexpr const char* kSettingsFile = "TarvelloS.INI";
constexpr const char* kAlertFileDefault = "Alert.TXT";
constexpr const char* kAlertFileJapanese = "アラート.TXT";
constexpr const char* kHistoryFileDefault = "SpadesHistory.TXT";
constexpr const char* kHistoryFileJapanese = "スペード履歴.TXT";
constexpr std::size_t kMaxOwnIds = 100;

// Every setting with its default. Texts read from "value" are lower-cased;
// CFG, log and history keep the case of the file.
struct Settings {
    std::string link;                      // "", "usa" or "uk"
    bool NilTally = false;                 // ニル集計
    std::string CFG;                       // window-position file name
    int TopMostScoreWindow = 0;            // 0 or 2 (kept on top)
    int GamePoint = 500;
    std::string AlertFile = kAlertFileDefault;  // AlertPlayers / ブラックリスト
    std::vector<std::string> MyIds;        // MyYahooID: entry 1 is MyIds[0]
    bool AutoCaptBid = true;
    bool AutoCaptHand = true;
    std::int32_t WaitBidMs = 3000;         // WaitTime Bid
    std::int32_t WaitHandMs = 10000;       // WaitTime Hand
    std::int32_t AlertTimeMs = 30000;      // AlertTime
    std::string AlertSound = "SystemAsterisk";
    std::string AlertWinning = "SystemStart";
    std::string AlertLosing = "SystemExit";
    bool ReduceOn = false;                 // Reduce SpadesWindow
    std::int32_t ReduceWidth = 0;
    bool MinimizeLastHand = false;
    bool DebugWindow = false;
    bool ShowBoxState = false;             // BOX の状態を表示
    std::string log;                       // log file name, "" = no log
    std::string history = kHistoryFileDefault;
    bool JPN = false;                      // 日本語表示: the Japanese interface
    bool TextOutput = false;
    std::uint32_t BackColor = kMainWindowBackColor;  // 0xBBGGRR
    std::uint32_t BackColor2 = 0xCDCDCD;
    std::string BackColor3 = "#FFE8E8";    // HTML colours
    std::string BackColor4 = "#D0D0D0";
    std::string BackColor5 = "#E0C0C0";
    bool ScoreTable = true;
    bool CardOrderDescending = false;      // Card Order
    bool SuitMarksSymbol = false;          // Suit Marks: from the Symbol typeface
    bool SuitMarksImages = false;          //   from the image files
    // Suit-mark widths by suit index (clubs, diamonds, hearts, spades); the
    // file lists them spades, hearts, diamonds, clubs.
    std::array<std::int32_t, 4> SuitMarkWidths{90, 120, 90, 95};
    bool strict = true;
    bool AlertNilBids = false;
    bool AlertFailNil = false;
    bool AlertSuicideTable = false;
    bool AlertDnilPassTable = false;
    bool AlertCanDNilPass = false;
    bool BoldBidTrick = false;
    bool ShowTrickBox = true;
    std::int32_t BridgeWindowWidth = 0;
    Position LeftCounterPos;               // BidTrickCounter: frmCounter0
    Position RightCounterPos;              //                  frmCounter
    bool TopMostBiddingBoard = false;
    int BoardMode = 0;                     // BiddingBoard: 0 off, 2 DNil Pass Only, 7 placed
    bool BoardModal = false;
    Position BoardPos;
    Position RemainingCardsPos;            // 残りのカード: frmMyBOX
    Position BiddingSequencePos;           // ShowBiddingSequence
    Position CountCardsPos;                // frmCardPlay
    bool CardCounting = false;             // switched on by CountCards with x != 0
    Position PasteScoreTable;              // frmScore
    int MyHandLayout = 0;                  // 0 double, 1 single
    Position MyHandPos;
    Position HelpBidIn4thSeat;             // frmHelpBid
    Position AskAlertPos;                  // frmAskAlert
    bool TopmostPlayerInfo = false;
};

// What reading stopped at: the first unknown key, as written in the file.
struct SettingsReadResult {
    bool Illegal = false;
    std::string IllegalKey;    // trimmed, case as written
    std::string IllegalValue;  // the raw value, trimmed
};

// Whether a file of that name exists (the alert-list key only takes names of
// existing files); resolved against the program folder by LoadSettings.
using FileExistsFn = std::function<bool(const std::string& name)>;

// Applies UTF-8 lines to `s` in order, stopping at the first unknown key.
SettingsReadResult ReadSettingsLines(const std::vector<std::string>& lines, Settings& s,
                                     const FileExistsFn& fileExists);
// The same from the bytes of a file in the code page (any line ends).
SettingsReadResult ParseSettingsBytes(std::string_view bytes, int codePage, Settings& s,
                                      const FileExistsFn& fileExists);

// The settings file of a folder: "スペード.INI" if present, else
// "TarvelloS.INI" (letter case ignored). Returns the canonical name found
// ("" for none) and its path in `path`.
std::string FindSettingsFile(const Folders& folders, std::string& path);

// The rules start-up applies after a complete read, in this order: the game
// point is 500; in the Japanese interface the default alert list and history
// names become the Japanese ones; the Japanese interface is switched off on a
// system that is not Japanese.
void ApplyPostReadRules(Settings& s, bool systemJapanese);

struct SettingsLoad {
    std::string FileName;  // kSettingsFile, kSettingsFileJapanese or "" (none found)
    std::string Path;
    SettingsReadResult Result;
    Settings Values;
};

// What start-up does: defaults, the file of the program folder read in the
// code page, then (unless an unknown key stopped the reading, which stops the
// program, or the caller applies them itself) the post-read rules for a
// system with that code page.
SettingsLoad LoadSettings(const Folders& folders, int codePage, bool applyPostReadRules = true);

// One member per key of the settings table, named by the first name of its
// row, in table order (the console tool's "settings" object).
Json SettingsJson(const Settings& s);

}  // namespace core
