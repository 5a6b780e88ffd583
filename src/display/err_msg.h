// The error message window (frmErrMsg): tells the user why a capture could
// not be made. Callers pass a free text (ShowErrorMsg) or a message code
// (PutMsg) that is turned into a sentence in the language of the game site
// being watched. The window is a plain model; a GUI window paints it.
#pragma once

#include <string>
#include <string_view>

#include "display/card_sheets.h"

namespace platform {
class Sound;
}

#include "core/game_language.h"

namespace display {

// Game site languages by their rows (core::GameLanguage); 7 to 9 are
// further Spanish sites.
enum GameLanguageIndex {
    LangEnglish = core::LanguageRow(core::GameLanguage::English),
    LangJapanese = core::LanguageRow(core::GameLanguage::Japanese),
    LangGerman = core::LanguageRow(core::GameLanguage::German),
    LangFrench = core::LanguageRow(core::GameLanguage::French),
    LangItalian = core::LanguageRow(core::GameLanguage::Italian),
    LangSpanish = core::LanguageRow(core::GameLanguage::Spanish),
    LangPortuguese = core::LanguageRow(core::GameLanguage::Brazilian),
};

// The table modes (TableModeSpades, TableModeBridge of card_sheets.h) choose
// the window names inside the sentences.

// Message codes that have a sentence (others print nothing).
enum MsgCode {
    MsgScoreNotOpen = 1,
    MsgScoreUnchanged = 7,
    MsgGameNotStarted = 11,
    MsgBiddingNotStarted = 12,
    MsgGameNotStarted2 = 13,
    MsgBiddingNotOver = 14,
    MsgBidsUnchanged = 16,
    MsgBiddingNotOpen = 18,
    MsgAuctionNotStarted = 19,
    MsgLastHandNotOpen = 21,
    MsgLastHandUnchanged = 24,
    MsgLastTrickNotOpen = 25,
};

// The sentence of a code as stored: accented letters and guillemets are HTML
// character entities ("&eacute;", "&laquo;"). Empty when the code has no
// sentence in that language. `japaneseInterface` replaces some English-site
// sentences by their Japanese form.
std::string MessageText(int code, int gameLanguage, int tableMode, bool japaneseInterface);

// Replaces the ISO 8859-1 character entity references of HTML 4 ("&eacute;",
// "&nbsp;", "&laquo;" ...) and "&quot;", "&amp;", "&lt;", "&gt;" by their
// characters. Anything else, including unknown or unterminated entities,
// passes through unchanged. Input and output are UTF-8.
std::string DecodeEntities(std::string_view text);

// True when the text holds a Japanese character (kana, CJK ideographs,
// full-width forms, Japanese punctuation).
bool HasJapanese(std::string_view text);

// frmErrMsg as a model. Showing it always plays the alert sound and sets the
// error-window flag that the main loop reads to hide it again.
class ErrMsgWindow {
public:
    // `sound` plays the alert sound; may be null (no sound, for tests).
    explicit ErrMsgWindow(platform::Sound* sound = nullptr);

    // Interface language and the Japanese interface font chosen at start-up.
    void SetJapaneseInterface(bool japanese, std::string japaneseFont = "ＭＳ Ｐゴシック");

    // A free text; drawn in the Japanese interface font (12) when it holds
    // Japanese characters, else in Arial 13.
    void ShowErrorMsg(const std::string& text);
    // A numbered message for the game site's language and table mode. A code
    // without a sentence shows the empty window (with the sound).
    void PutMsg(int code, int gameLanguage, int tableMode);
    // Draws a text that carries HTML entities at the current position.
    void PMsg(std::string_view text);
    // Hides the window and clears the flag (the main loop's job).
    void Hide();

    // --- what the window shows -------------------------------------------
    std::string Caption = " Error Message";
    bool Visible = false;
    bool AlwaysOnTop = true;
    std::string FontName = "Arial";
    int FontSize = 13;
    int TextX = 6, TextY = 4;
    std::string Text;  // UTF-8, entities already decoded

    // Set whenever the window is shown; the main loop hides it and clears it.
    bool Shown = false;
    // How many times the alert sound was requested (for tests and replays).
    int SoundCount = 0;

private:
    void Open();
    void PlayAlertSound();

    platform::Sound* sound_;
    bool japanese_ = false;
    std::string japaneseFont_ = "ＭＳ Ｐゴシック";
};

}  // namespace display
