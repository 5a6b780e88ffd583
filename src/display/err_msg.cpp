#include "display/err_msg.h"

#include <array>
#include <cstdint>

#include "platform/sound.h"

namespace display {

namespace {

// ---- sentences ---------------------------------------------------------------
// Window names are wrapped in guillemets, written as entities like every
// accented letter so that the table stays plain ASCII for the Western sites.

const std::string kLaquo = "&laquo;";
const std::string kRaquo = "&raquo;";

std::string Quoted(const std::string& name) { return kLaquo + name + kRaquo; }

bool Bridge(int tableMode) { return tableMode == TableModeBridge; }

std::string English(int code, int mode, bool jp) {
    const std::string bidWindow = Bridge(mode) ? Quoted("Bridge Bidding") : "Bidding";
    const std::string scoreWindow = Quoted(Bridge(mode) ? "Score" : "Spades Score");
    switch (code) {
    case MsgScoreNotOpen: return jp ? "《Score》が オープンしていません." : "Score is not open.";
    case MsgScoreUnchanged: return scoreWindow + " remains Unchanged.";
    case MsgGameNotStarted:
    case MsgGameNotStarted2: return "Game doesn't yet start.";
    case MsgBiddingNotStarted:
    case MsgAuctionNotStarted: return "Bidding doesn't yet start.";
    case MsgBiddingNotOver: return "Bidding is not yet over.";
    case MsgBidsUnchanged: return bidWindow + " remains Unchanged.";
    case MsgBiddingNotOpen: return jp ? "《Bridge Bidding》が オープンしていません." : "Bidding is not open.";
    case MsgLastHandNotOpen: return jp ? "《Last Hand》が オープンしていません." : "LastHand is not open.";
    case MsgLastHandUnchanged: return Quoted("Last Hand") + " is Unchanged.";
    // The English site has always named the last hand here; kept so that
    // users who know the message are not surprised.
    case MsgLastTrickNotOpen: return jp ? "《Last Trick》が オープンしていません." : "LastHand is not open.";
    default: return "";
    }
}

std::string Japanese(int code, int mode) {
    switch (code) {
    case MsgScoreNotOpen:
        if (mode == TableModeBridge) return "《スコア》が見つかりません.";
        if (mode == TableModeSpades) return "《スペードスコア》が見つかりません.";
        return "";
    case MsgScoreUnchanged: return "《スコア》は 変更されていません.";
    case MsgGameNotStarted:
    case MsgGameNotStarted2: return "ゲームは未だ始まっていません.";
    case MsgBiddingNotStarted: return "ビッドは未だ始まっていません.";
    case MsgBiddingNotOver: return "ビッドが未だ終了していません.";
    case MsgBidsUnchanged: return "ビッドが変更されていません.";
    case MsgBiddingNotOpen: return "《ビッド経過》が見つかりません.";
    case MsgAuctionNotStarted: return "オークションは未だ始まっていません.";
    case MsgLastHandNotOpen: return "《最後のハンド》が見つかりません.";
    case MsgLastHandUnchanged: return "《最後のハンド》は 更新されていません.";
    case MsgLastTrickNotOpen: return "《最後のトリック》が見つかりません.";
    default: return "";
    }
}

// The other sites follow the English pattern: window name + phrase. Where a
// language has no word for the last trick, the last hand is named, as on the
// English site.

std::string German(int code, int mode) {
    const std::string lastHand = Quoted("Letztes Spiel");
    const std::string score = Quoted("Punktestand");
    const std::string unchanged = " ist nicht ver&auml;ndert.";
    const std::string notOpen = " ist nicht er&ouml;ffnet.";
    switch (code) {
    case MsgScoreNotOpen: return score + notOpen;
    case MsgScoreUnchanged: return score + unchanged;
    case MsgGameNotStarted:
    case MsgGameNotStarted2: return "Spiel noch nicht beginnt.";
    case MsgBiddingNotStarted:
    case MsgAuctionNotStarted: return "Bieten noch nicht beginnt.";
    case MsgBiddingNotOver: return Bridge(mode) ? "Reizung ist nicht zu Ende." : "Bieten ist nicht zu Ende.";
    case MsgBidsUnchanged: return (Bridge(mode) ? Quoted("Bridge - Reizung") : "Gebot") + unchanged;
    case MsgBiddingNotOpen: return (Bridge(mode) ? Quoted("Bridge - Reizung") : Quoted("Reizung")) + notOpen;
    case MsgLastHandNotOpen:
    case MsgLastTrickNotOpen: return lastHand + notOpen;
    case MsgLastHandUnchanged: return lastHand + unchanged;
    default: return "";
    }
}

std::string French(int code, int mode) {
    const std::string window = "Fen&ecirc;tre de ";
    const std::string lastHand = Quoted("Derni&egrave;re main");
    const std::string score = Quoted(Bridge(mode) ? "Score" : "Spades Score");
    const std::string bid = "Ench&egrave;re";
    const std::string bidWindow = Quoted(Bridge(mode) ? bid + "s du bridge" : bid + "s");
    const std::string isNot = " n'est pas ";
    const std::string open = "ouverte.";
    const std::string changed = "chang&eacute;e";
    switch (code) {
    case MsgScoreNotOpen: return window + score + isNot + open;
    case MsgScoreUnchanged: return window + score + isNot + changed + ".";
    case MsgGameNotStarted:
    case MsgGameNotStarted2: return "Le jeu ne commence pas encore.";
    case MsgBiddingNotStarted:
    case MsgAuctionNotStarted: return bid + " ne commence pas encore.";
    case MsgBiddingNotOver: return bid + "s ne sont pas " + "encore compl&egrave;te.";
    case MsgBidsUnchanged: return bid + "s ne sont pas " + changed + "s.";
    case MsgBiddingNotOpen: return window + bidWindow + isNot + open;
    case MsgLastHandNotOpen:
    case MsgLastTrickNotOpen: return window + lastHand + isNot + open;
    case MsgLastHandUnchanged: return lastHand + isNot + changed + ".";
    default: return "";
    }
}

std::string Italian(int code, int mode) {
    const std::string window = "Fin&egrave;stra di ";
    const std::string score = Quoted("Punteggio");
    const std::string bid = Bridge(mode) ? std::string("Licitazi") + "o" + "ne" : std::string("Dichiarazi") + "o" + "ne";
    const std::string bidWindow = Quoted(Bridge(mode) ? bid + " di Bridge" : bid);
    const std::string lastHand = Quoted("Last Hand");
    const std::string no = " non'";
    const std::string open = " aperta.";
    switch (code) {
    case MsgScoreNotOpen: return window + score + no + open;
    case MsgScoreUnchanged: return score + no + " rinnovato.";
    case MsgGameNotStarted:
    case MsgGameNotStarted2: return "Giuoco ancora" + no + " iniziato.";
    case MsgBiddingNotStarted:
    case MsgAuctionNotStarted: return bid + no + " ancora" + " iniziato.";
    case MsgBiddingNotOver: return bid + no + " ancora" + " completa.";
    case MsgBidsUnchanged: return bid + no + " rinnovata.";
    case MsgBiddingNotOpen: return window + bidWindow + no + open;
    case MsgLastHandNotOpen:
    case MsgLastTrickNotOpen: return window + lastHand + no + open;
    case MsgLastHandUnchanged: return lastHand + no + " rinnovata.";
    default: return "";
    }
}

std::string Spanish(int code, int mode) {
    const std::string lastHand = Quoted("&Uacute;ltima mano");
    const std::string lastTrick = Quoted("&Uacute;ltima baza");
    const std::string score = Quoted("Puntuaci&oacute;n");
    const std::string notOpen = " no est&aacute; abierta.";
    const std::string yet = "todav&iacute;a ";
    switch (code) {
    case MsgScoreNotOpen: return score + notOpen;
    case MsgScoreUnchanged: return score + " no ha se renovado.";
    case MsgGameNotStarted:
    case MsgGameNotStarted2: return "El juego no ha se " + yet + "iniciado.";
    case MsgBiddingNotStarted:
    case MsgAuctionNotStarted: return (Bridge(mode) ? "Apuesta no ha se " : "Subasta no ha se ") + yet + "iniciado.";
    case MsgBiddingNotOver: return (Bridge(mode) ? "Apuestas no han se " : "Subastas no han se ") + yet + "completado.";
    case MsgBidsUnchanged: return Bridge(mode) ? "Apuestas no han se renovado." : "Subastas no han se renovado.";
    case MsgBiddingNotOpen: return Quoted(Bridge(mode) ? "Apuestas de Bridge" : "Subastas") + notOpen;
    case MsgLastHandNotOpen: return lastHand + notOpen;
    case MsgLastHandUnchanged: return lastHand + " no ha se renovado.";
    case MsgLastTrickNotOpen: return lastTrick + notOpen;
    default: return "";
    }
}

std::string Portuguese(int code, int mode) {
    const std::string lastHand = Quoted("&Uacute;ltima rodada");
    const std::string score = Quoted("Pontua&ccedil;&atilde;o");
    const std::string auction = "Leil&atilde;";
    const std::string no = " n&atilde;o";
    const std::string open = " aberta.";
    switch (code) {
    case MsgScoreNotOpen: return score + no + open;
    case MsgScoreUnchanged: return score + no + " foi renovado.";
    case MsgGameNotStarted:
    case MsgGameNotStarted2: return "Jogo ainda" + no + " foi iniciado.";
    case MsgBiddingNotStarted: return auction + "o ainda" + no + " foi iniciado.";
    case MsgAuctionNotStarted: return auction + "o ainda" + no + " foi iniciada.";
    case MsgBiddingNotOver: return auction + "o ainda" + no + " foi conclu&iacute;da.";
    case MsgBidsUnchanged: return (Bridge(mode) ? Quoted(auction + "o do bridge") : auction + "o") + no + " foram renovados.";
    case MsgBiddingNotOpen: return Quoted(auction + "o do bridge") + no + open;
    case MsgLastHandNotOpen:
    case MsgLastTrickNotOpen: return lastHand + no + open;
    case MsgLastHandUnchanged: return lastHand + no + " foi renovado.";
    default: return "";
    }
}

// ---- entities ----------------------------------------------------------------

struct Entity {
    const char* name;
    std::uint16_t code;
};

// HTML 4 entities of ISO 8859-1 (160-255) and the four markup characters.
constexpr std::array<Entity, 100> kEntities = {{
    {"quot", 34},    {"amp", 38},     {"lt", 60},      {"gt", 62},
    {"nbsp", 160},   {"iexcl", 161},  {"cent", 162},   {"pound", 163},  {"curren", 164},
    {"yen", 165},    {"brvbar", 166}, {"sect", 167},   {"uml", 168},    {"copy", 169},
    {"ordf", 170},   {"laquo", 171},  {"not", 172},    {"shy", 173},    {"reg", 174},
    {"macr", 175},   {"deg", 176},    {"plusmn", 177}, {"sup2", 178},   {"sup3", 179},
    {"acute", 180},  {"micro", 181},  {"para", 182},   {"middot", 183}, {"cedil", 184},
    {"sup1", 185},   {"ordm", 186},   {"raquo", 187},  {"frac14", 188}, {"frac12", 189},
    {"frac34", 190}, {"iquest", 191}, {"Agrave", 192}, {"Aacute", 193}, {"Acirc", 194},
    {"Atilde", 195}, {"Auml", 196},   {"Aring", 197},  {"AElig", 198},  {"Ccedil", 199},
    {"Egrave", 200}, {"Eacute", 201}, {"Ecirc", 202},  {"Euml", 203},   {"Igrave", 204},
    {"Iacute", 205}, {"Icirc", 206},  {"Iuml", 207},   {"ETH", 208},    {"Ntilde", 209},
    {"Ograve", 210}, {"Oacute", 211}, {"Ocirc", 212},  {"Otilde", 213}, {"Ouml", 214},
    {"times", 215},  {"Oslash", 216}, {"Ugrave", 217}, {"Uacute", 218}, {"Ucirc", 219},
    {"Uuml", 220},   {"Yacute", 221}, {"THORN", 222},  {"szlig", 223},  {"agrave", 224},
    {"aacute", 225}, {"acirc", 226},  {"atilde", 227}, {"auml", 228},   {"aring", 229},
    {"aelig", 230},  {"ccedil", 231}, {"egrave", 232}, {"eacute", 233}, {"ecirc", 234},
    {"euml", 235},   {"igrave", 236}, {"iacute", 237}, {"icirc", 238},  {"iuml", 239},
    {"eth", 240},    {"ntilde", 241}, {"ograve", 242}, {"oacute", 243}, {"ocirc", 244},
    {"otilde", 245}, {"ouml", 246},   {"divide", 247}, {"oslash", 248}, {"ugrave", 249},
    {"uacute", 250}, {"ucirc", 251},  {"uuml", 252},   {"yacute", 253}, {"thorn", 254},
    {"yuml", 255},
}};

void AppendUtf8(std::string& out, std::uint32_t cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

// Next code point of a UTF-8 text; a malformed byte counts as one character.
std::uint32_t NextCodePoint(std::string_view s, std::size_t& i) {
    auto b = static_cast<unsigned char>(s[i]);
    int extra = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : b >= 0xC0 ? 1 : 0;
    if (b >= 0x80 && b < 0xC0) extra = 0;
    if (extra && i + extra >= s.size()) extra = 0;
    std::uint32_t cp = extra == 0 ? b : extra == 1 ? (b & 0x1F) : extra == 2 ? (b & 0x0F) : (b & 0x07);
    for (int k = 1; k <= extra; ++k) {
        auto c = static_cast<unsigned char>(s[i + k]);
        if ((c & 0xC0) != 0x80) {
            ++i;
            return b;
        }
        cp = (cp << 6) | (c & 0x3F);
    }
    i += 1 + extra;
    return cp;
}

}  // namespace

std::string MessageText(int code, int gameLanguage, int tableMode, bool japaneseInterface) {
    switch (gameLanguage) {
    case LangEnglish: return English(code, tableMode, japaneseInterface);
    case LangJapanese: return Japanese(code, tableMode);
    case LangGerman: return German(code, tableMode);
    case LangFrench: return French(code, tableMode);
    case LangItalian: return Italian(code, tableMode);
    case LangSpanish:
    case 7:
    case 8:
    case 9: return Spanish(code, tableMode);
    case LangPortuguese: return Portuguese(code, tableMode);
    default: return "";
    }
}

std::string DecodeEntities(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        if (text[i] == '&') {
            std::size_t semi = text.find(';', i + 1);
            // Entity names are at most six letters long.
            if (semi != std::string_view::npos && semi - i - 1 <= 6) {
                std::string_view name = text.substr(i + 1, semi - i - 1);
                bool found = false;
                for (const Entity& e : kEntities) {
                    if (name == e.name) {
                        AppendUtf8(out, e.code);
                        found = true;
                        break;
                    }
                }
                if (found) {
                    i = semi + 1;
                    continue;
                }
            }
        }
        out += text[i++];
    }
    return out;
}

bool HasJapanese(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        std::uint32_t cp = NextCodePoint(text, i);
        if ((cp >= 0x3000 && cp <= 0x30FF) ||  // punctuation, kana
            (cp >= 0x3400 && cp <= 0x9FFF) ||  // ideographs
            (cp >= 0xF900 && cp <= 0xFAFF) ||  // compatibility ideographs
            (cp >= 0xFF00 && cp <= 0xFFEF))    // full-width and half-width forms
            return true;
    }
    return false;
}

ErrMsgWindow::ErrMsgWindow(platform::Sound* sound) : sound_(sound) {}

void ErrMsgWindow::SetJapaneseInterface(bool japanese, std::string japaneseFont) {
    japanese_ = japanese;
    japaneseFont_ = std::move(japaneseFont);
    Caption = japanese ? " エラー・メッセージ" : " Error Message";
}

void ErrMsgWindow::Open() {
    Text.clear();
    Visible = true;
    TextX = 6;
    TextY = 4;
}

void ErrMsgWindow::PlayAlertSound() {
    ++SoundCount;
    if (sound_) sound_->PlaySystemSound("SystemExclamation");
}

void ErrMsgWindow::ShowErrorMsg(const std::string& text) {
    Open();
    if (HasJapanese(text)) {
        FontName = japaneseFont_;
        FontSize = 12;
    } else {
        FontName = "Arial";
        FontSize = 13;
    }
    Text = text;
    Shown = true;
    PlayAlertSound();
}

void ErrMsgWindow::PutMsg(int code, int gameLanguage, int tableMode) {
    Open();
    PlayAlertSound();
    Shown = true;
    FontName = "Arial";
    FontSize = 13;
    std::string sentence = MessageText(code, gameLanguage, tableMode, japanese_);
    // Sentences in Japanese need a font that has the glyphs; the Japanese
    // site always uses the interface font.
    if (gameLanguage == LangJapanese || HasJapanese(sentence)) {
        FontName = japaneseFont_;
        FontSize = 12;
    }
    PMsg(sentence);
}

void ErrMsgWindow::PMsg(std::string_view text) { Text += DecodeEntities(text); }

void ErrMsgWindow::Hide() {
    Visible = false;
    Shown = false;
}

}  // namespace display
