#include "reading/win_titles.h"

namespace reading {

namespace {

// Byte length of the UTF-8 character starting at s[i]; stray bytes count as
// one character so malformed titles still advance.
std::size_t CharBytes(std::string_view s, std::size_t i) {
    const auto c = static_cast<unsigned char>(s[i]);
    std::size_t n = 1;
    if (c >= 0xF0 && c < 0xF8) n = 4;
    else if (c >= 0xE0 && c < 0xF0) n = 3;
    else if (c >= 0xC0 && c < 0xE0) n = 2;
    if (i + n > s.size()) return 1;
    for (std::size_t k = 1; k < n; ++k) {
        if ((static_cast<unsigned char>(s[i + k]) & 0xC0) != 0x80) return 1;
    }
    return n;
}

// The first `count` characters of s.
std::string_view LeftChars(std::string_view s, std::size_t count) {
    std::size_t i = 0;
    for (std::size_t n = 0; n < count && i < s.size(); ++n) i += CharBytes(s, i);
    return s.substr(0, i);
}

std::string_view TrimBlanks(std::string_view s) {
    const auto first = s.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    const auto last = s.find_last_not_of(' ');
    return s.substr(first, last - first + 1);
}

const std::string& Empty() {
    static const std::string empty;
    return empty;
}

}  // namespace

WinTitles::WinTitles() { SetWinTitles(); }

void WinTitles::SetWinTitles() {
    struct Def {
        int lang;
        const char* name;
        std::array<const char*, 4> titles;
        const char* bid;
        const char* trick;
        std::array<const char*, 3> wait;
        std::array<const char*, 5> buttons;
        const char* dnil;
        const char* show;
    };
    // The bid panel of the Japanese site (and of the sites without a known
    // vocabulary) is taken to carry the English button words.
    static const Def defs[] = {
        {LangUSA, "USA", {"Game: Spades", "Last Trick", "Last Hand", "Spades Score"},
         "Bid:", "Tricks:", {"lick", "ress", "ponent"},
         {"Trick", "Hand", "core", "ssing", "cide"}, "DoubleNil", "Show"},
        {LangJapan, "日本", {"ゲーム：Spades", "最後のトリック", "最後のハンド", "スペードスコア"},
         "ビッド:", "トリック:", {"開始", "つく", "ます。"},
         {"リック", "ハンド", "スコア", "ニルパス", "サイド"}, "DoubleNil", "Show"},
        {LangGermany, "ドイツ", {"Spiel: Spades", "Letzter Stich", "Letztes Spiel", "Spades Score"},
         "Geboten:", "Stiche:", {"KlickenSie", "auf", ""},
         {"Stich", "Spiel", "stand", "ssing", "mord"}, "DoubleNil", "Zeigen"},
        {LangFrance, "フランス", {"", "", "", ""}, "", "", {"", "", ""}, {"", "", "", "", ""},
         "DoubleNil", "Show"},
        {LangItaly, "イタリア", {"Partita: Spades", "Ultima presa", "Ultima mano", "Punteggio di Peppa"},
         "Dichiara:", "Prese:", {"attesa", "Clicca", ""},
         {"timapresa", "timamano", "Punteggio", "DZ", "dio"}, "Doppiozero", "Mostra"},
        {LangSpain, "スペイン", {"Partida: Spades", "Ultima baza", "Ultima mano", "Puntuacion de Picas"},
         "Subasta:", "Bazas:", {"Esperando", "clic", ""},
         {"mabaza", "mamano", "untos", "ynulo", "dio"}, "Nuladoble", "Mostrar"},
        {LangMexico, "メキシコ", {"Partida:Spades", "Ultima baza", "Ultima mano", "Puntuacion de espadas"},
         "Apuesta:", "Bazas:", {"Esperando", "clic", ""},
         {"mabaza", "mamano", "tuaci", "ynulo", "dio"}, "Nuladoble", "Mostrar"},
        {LangEspanol, "ESPANOL", {"Partida: spades", "Ultima baza", "Ultima mano", "Puntuacion de picas"},
         "Apuesta:", "Bazas:", {"Esperando", "clic", ""},
         {"timabaza", "timamano", "untuaci", "ynulo", "dio"}, "Nuladoble", "Mostrar"},
        {LangArgentina, "ARGENTINE", {"Juego: Spades", "Ultima baza", "Ultima mano", "Puntuacion de picas"},
         "Apuesta:", "Bazas:", {"Esperando", "clic", ""},
         {"mabaza", "mamano", "untos", "ynulo", "dio"}, "Nuladoble", "Mostrar"},
        {LangBrazil, "ブラジル", {"", "", "", ""}, "", "", {"", "", ""}, {"", "", "", "", ""},
         "DoubleNil", "Show"},
    };
    rows_ = {};
    for (const Def& d : defs) {
        LanguageRow& r = rows_[static_cast<std::size_t>(d.lang)];
        r.name = d.name;
        for (int s = 0; s < TitleSlotCount; ++s) r.titles[s] = d.titles[s];
        r.bidLabel = d.bid;
        r.trickLabel = d.trick;
        for (int w = 0; w < 3; ++w) r.waitWords[w] = d.wait[w];
        r.buttonWords[0].clear();
        for (int k = 1; k < ButtonSlotCount; ++k) r.buttonWords[k] = d.buttons[k - 1];
        r.doubleNilWord = d.dnil;
        r.showWord = d.show;
    }
}

const LanguageRow& WinTitles::Row(int lang) const {
    if (lang < LangFirst || lang > LangLast) return empty_;
    return rows_[static_cast<std::size_t>(lang)];
}

const std::string& WinTitles::Title(int lang, int slot) const {
    if (slot < 0 || slot >= TitleSlotCount) return Empty();
    return Row(lang).titles[static_cast<std::size_t>(slot)];
}

const std::string& WinTitles::ButtonWord(int lang, int k) const {
    if (k < 1 || k >= ButtonSlotCount) return Empty();
    return Row(lang).buttonWords[static_cast<std::size_t>(k)];
}

bool WinTitles::NormalizeTitle(std::string& title, int slot, int& gameLanguage) const {
    if (gameLanguage == LangSpain &&
        (title == Title(LangEspanol, SlotTable) || title == Title(LangEspanol, SlotScore))) {
        gameLanguage = LangEspanol;
    }
    const std::string& local = Title(gameLanguage, slot);
    if (local.empty() || title != local) return false;
    title = EnglishTitle(slot);
    return true;
}

bool WinTitles::MatchSlot(std::string& title, int slot, int& gameLanguage) const {
    const std::string& english = EnglishTitle(slot);
    if (english.empty()) return false;
    if (gameLanguage != LangUSA) NormalizeTitle(title, slot, gameLanguage);
    return title == english;
}

int WinTitles::FindSubWindow(std::vector<std::string>& titles, int slot, int& gameLanguage) const {
    for (std::size_t i = 0; i < titles.size(); ++i) {
        if (MatchSlot(titles[i], slot, gameLanguage)) return static_cast<int>(i);
    }
    return -1;
}

std::array<int, TitleSlotCount> WinTitles::FindSubWindows(std::vector<std::string>& titles,
                                                           int& gameLanguage) const {
    std::array<int, TitleSlotCount> found = {-1, -1, -1, -1};
    if (gameLanguage != LangUSA) {
        for (std::string& t : titles) {
            for (int slot = SlotLastTrick; slot <= SlotScore; ++slot) {
                if (NormalizeTitle(t, slot, gameLanguage)) break;
            }
        }
    }
    for (int slot = SlotLastTrick; slot <= SlotScore; ++slot) {
        for (std::size_t i = 0; i < titles.size(); ++i) {
            if (titles[i] == EnglishTitle(slot)) {
                found[static_cast<std::size_t>(slot)] = static_cast<int>(i);
                break;
            }
        }
    }
    return found;
}

bool WinTitles::FindTitle(std::string_view title, int& lang, int& slot) const {
    for (int l = LangFirst; l <= LangLast; ++l) {
        for (int s = 0; s < TitleSlotCount; ++s) {
            const std::string& t = Title(l, s);
            if (!t.empty() && t == title) {
                lang = l;
                slot = s;
                return true;
            }
        }
    }
    return false;
}

SiteWindow SiteWindowKind(std::string_view title) {
    if (title.find("Game: Spades") != std::string_view::npos) return SiteWindow::Table;
    if (title.find("Yahoo! Spades") != std::string_view::npos) return SiteWindow::Lobby;
    if (title.find("Spades at Yahoo! Games") != std::string_view::npos) return SiteWindow::SitePage;
    return SiteWindow::None;
}

const std::array<std::string_view, 8> PopupNames = {
    "プレーヤー情", "お知らせ", "追い出す", "招待する", "Invite", "Player", "Alert", "Boot"};

bool IsPopupTitle(std::string_view title) {
    const std::string_view head = LeftChars(TrimBlanks(title), 6);
    for (std::string_view name : PopupNames) {
        if (head == name) return true;
    }
    return false;
}

TableTitleParts ParseTableTitle(std::string_view title) {
    TableTitleParts parts;
    constexpr std::string_view tablePrefix = "Table: ";
    constexpr std::string_view hostPrefix = "Host: ";
    if (const auto at = title.find(tablePrefix); at != std::string_view::npos) {
        const auto blank = title.find(' ', at + tablePrefix.size());
        parts.table = std::string(title.substr(at, blank == std::string_view::npos ? std::string_view::npos : blank - at));
    }
    if (const auto at = title.find(hostPrefix); at != std::string_view::npos) {
        const auto from = at + hostPrefix.size();
        const auto blank = title.find(' ', from);
        parts.host = std::string(title.substr(from, blank == std::string_view::npos ? std::string_view::npos : blank - from));
    }
    return parts;
}

std::string TableCaption(std::string_view programCaption, std::string_view gameTitle) {
    const TableTitleParts parts = ParseTableTitle(gameTitle);
    std::string caption(programCaption);
    if (!parts.table.empty()) caption += " " + parts.table;
    if (!parts.host.empty()) caption += " [" + parts.host + "]";
    return caption;
}

}  // namespace reading
