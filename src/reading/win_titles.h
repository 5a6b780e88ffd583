// The game's window titles, labels and on-screen words for every site
// language, and the pure title helpers the window pass builds on: which
// window a title names, the normalisation of a localised sub-window title to
// its English form, the pop-up rule and the table/host part of the caption.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "core/game_language.h"

namespace reading {

// Game languages as the rows of the title table (core::GameLanguage).
constexpr int LangUSA = core::LanguageRow(core::GameLanguage::English);
constexpr int LangJapan = core::LanguageRow(core::GameLanguage::Japanese);
constexpr int LangGermany = core::LanguageRow(core::GameLanguage::German);
constexpr int LangFrance = core::LanguageRow(core::GameLanguage::French);
constexpr int LangItaly = core::LanguageRow(core::GameLanguage::Italian);
constexpr int LangSpain = core::LanguageRow(core::GameLanguage::Spanish);
constexpr int LangMexico = core::LanguageRow(core::GameLanguage::Mexican);
constexpr int LangEspanol = core::LanguageRow(core::GameLanguage::Espanol);
constexpr int LangArgentina = core::LanguageRow(core::GameLanguage::Argentine);
constexpr int LangBrazil = core::LanguageRow(core::GameLanguage::Brazilian);
constexpr int LangFirst = LangUSA;
constexpr int LangLast = LangBrazil;

// Title slots (also the job-slot and sub-window numbers).
constexpr int SlotTable = 0;      // the game's table window
constexpr int SlotLastTrick = 1;
constexpr int SlotLastHand = 2;
constexpr int SlotScore = 3;      // "Spades Score"
constexpr int TitleSlotCount = 4;

// Button/marker slots of the table's left column (button scan).
constexpr int ButtonLastTrick = 1;
constexpr int ButtonLastHand = 2;
constexpr int ButtonScore = 3;
constexpr int ButtonDNilPass = 4;  // marker: Double Nil with the card pass
constexpr int ButtonSuicide = 5;   // marker: suicide table
constexpr int ButtonSlotCount = 6; // indexes 1..5 used

struct LanguageRow {
    std::string name;                          // "USA", "日本", ...
    std::array<std::string, TitleSlotCount> titles;  // by title slot; "" = not known
    std::string bidLabel;                      // "Bid:"
    std::string trickLabel;                    // "Tricks:"
    std::array<std::string, 3> waitWords;      // fragments of the pre-bidding prompts; "" skipped
    std::array<std::string, ButtonSlotCount> buttonWords;  // 1..5; [0] unused
    std::string doubleNilWord;                 // bid panel's Double Nil button
    std::string showWord;                      // bid panel's Show cards button
};

// The per-language table, built by SetWinTitles (the constructor runs it).
class WinTitles {
public:
    WinTitles();
    void SetWinTitles();

    // A language outside 1..10 gives an all-empty row.
    const LanguageRow& Row(int lang) const;
    const std::string& RowName(int lang) const { return Row(lang).name; }
    // Title of `slot` (0..3) in `lang`; "" when unknown or out of range.
    const std::string& Title(int lang, int slot) const;
    const std::string& EnglishTitle(int slot) const { return Title(LangUSA, slot); }
    const std::string& BidLabel(int lang) const { return Row(lang).bidLabel; }
    const std::string& TrickLabel(int lang) const { return Row(lang).trickLabel; }
    const std::array<std::string, 3>& WaitWords(int lang) const { return Row(lang).waitWords; }
    // Word of button slot k (1..5); "" out of range.
    const std::string& ButtonWord(int lang, int k) const;
    const std::string& DoubleNilWord(int lang) const { return Row(lang).doubleNilWord; }
    const std::string& ShowWord(int lang) const { return Row(lang).showWord; }

    // Title normalisation for one slot. The Spanish rule first: with language
    // 6, a title equal to the row-8 table or score title switches
    // `gameLanguage` to 8. Then a title equal to the slot's title in
    // `gameLanguage` is replaced by the English title and true is returned.
    // An empty row title never matches.
    bool NormalizeTitle(std::string& title, int slot, int& gameLanguage) const;
    // True when `title` names `slot` in `gameLanguage` (normalising it in
    // place unless the language is English).
    bool MatchSlot(std::string& title, int slot, int& gameLanguage) const;
    // One-slot sub-window search over a window list: index of the first
    // title that names `slot`, -1 if none. Titles are normalised in place.
    int FindSubWindow(std::vector<std::string>& titles, int slot, int& gameLanguage) const;
    // All-slot search: normalises every title (slots 1, 2, 3 in turn), then
    // gives for slots 1..3 the index of the first title equal to the English
    // title (-1 if none). Entry 0 (the table window) is always -1.
    std::array<int, TitleSlotCount> FindSubWindows(std::vector<std::string>& titles, int& gameLanguage) const;
    // Which language row and slot a title belongs to: the first row (lowest
    // number) with a non-empty title equal to it. False when none.
    bool FindTitle(std::string_view title, int& lang, int& slot) const;

private:
    std::array<LanguageRow, LangLast + 1> rows_;  // [0] unused
    LanguageRow empty_;
};

// What FindGameWindows makes of a listed title.
enum class SiteWindow {
    None = -1,
    Table = 0,     // contains "Game: Spades"
    Lobby = 1,     // contains "Yahoo! Spades"
    SitePage = 2,  // contains "Spades at Yahoo! Games"
};
SiteWindow SiteWindowKind(std::string_view title);

// The game's pop-up windows (player information, notices, boot, invite,
// alert): the first 6 characters of the trimmed title equal one of the
// names, so names shorter than 6 characters match only the exact title.
extern const std::array<std::string_view, 8> PopupNames;
bool IsPopupTitle(std::string_view title);

// The table and host named in the game window's title: "Table: Oak" (prefix
// included, up to the first blank after it) and "alice" (after "Host: ", up
// to the next blank). Empty when absent.
struct TableTitleParts {
    std::string table;
    std::string host;
};
TableTitleParts ParseTableTitle(std::string_view title);
// Main-window caption for a table: program caption, blank, table part,
// " [", host, "]". Missing parts are left out (no empty brackets).
std::string TableCaption(std::string_view programCaption, std::string_view gameTitle);

}  // namespace reading
