#include "reading/win_titles.h"

#include <gtest/gtest.h>

namespace reading {
namespace {

TEST(WinTitlesTable, RowsTheReadersDependOnAndEmptyTextsElsewhere) {
    const WinTitles t;
    EXPECT_EQ(t.Title(LangJapan, SlotTable), "ゲーム：Spades");  // full-width colon
    EXPECT_EQ(t.TrickLabel(LangJapan), "トリック:");  // ASCII colon, unlike the title
    for (int lang = LangFirst; lang <= LangLast; ++lang) {
        const bool untitled = lang == LangFrance || lang == LangBrazil;
        for (int s = 0; s < TitleSlotCount; ++s) EXPECT_EQ(t.Title(lang, s).empty(), untitled) << lang << "/" << s;
        if (!untitled) { EXPECT_EQ(t.BidLabel(lang).back(), ':') << lang; }
    }
    // Rows and slots out of range give empty texts.
    EXPECT_EQ(t.Title(0, SlotTable) + t.Title(11, SlotLastHand) + t.Title(LangUSA, 4) + t.Title(LangUSA, -1) +
                  t.ButtonWord(LangUSA, 0) + t.ButtonWord(LangUSA, 6) + t.BidLabel(-3) + t.RowName(0),
              "");
}

TEST(TitleNormalisation, SpanishTitlesAndTheLowerCaseSite) {
    const WinTitles t;
    struct Row {
        const char* title;
        int slot, lang;
        bool normalize, match;
        const char* titleOut;  // "" = not checked
        int langOut;
    };
    const Row rows[] = {
        {"Ultima baza", SlotLastTrick, LangSpain, false, true, "Last Trick", LangSpain},
        {"Ultima baza", SlotLastTrick, LangUSA, false, false, "Ultima baza", LangUSA},  // only in Spanish
        {"Ultima presa", SlotLastTrick, LangSpain, false, false, "", LangSpain},  // the Italian title
        {"Ultima mano", SlotLastTrick, LangSpain, false, false, "", LangSpain},   // another slot's title
        {"Partida: spades", SlotTable, LangSpain, true, true, "Game: Spades", LangEspanol},
        // Row 8's score title switches the site whichever slot is being tried.
        {"Puntuacion de picas", SlotLastTrick, LangSpain, true, false, "", LangEspanol},
        {"Puntuacion de Picas", SlotScore, LangSpain, true, true, "", LangSpain},
        // Only language 6 switches: Argentina shares the lower-case score title.
        {"Puntuacion de picas", SlotScore, LangArgentina, true, true, "", LangArgentina},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(std::string(r.title) + " slot " + std::to_string(r.slot) + " lang " + std::to_string(r.lang));
        std::string title = r.title;
        int lang = r.lang;
        EXPECT_EQ(r.normalize ? t.NormalizeTitle(title, r.slot, lang) : t.MatchSlot(title, r.slot, lang), r.match);
        if (*r.titleOut) { EXPECT_EQ(title, r.titleOut); }
        EXPECT_EQ(lang, r.langOut);
    }
}

TEST(TitleNormalisation, UntitledLanguagesFindOnlyTheEnglishTitles) {
    const WinTitles t;
    for (int lang0 : {LangFrance, LangBrazil, 0, 42}) {
        int lang = lang0;
        std::vector<std::string> list = {"", "Last Trick"};
        // The English title itself is still recognised.
        EXPECT_EQ(t.FindSubWindow(list, SlotLastTrick, lang), 1);
        EXPECT_EQ(t.FindSubWindow(list, SlotLastHand, lang), -1);
    }
}

TEST(SubWindowSearch, AllSlotsBySiteLanguage) {
    const WinTitles t;
    struct Row {
        std::vector<std::string> list;
        int lang;
        std::array<int, 4> found;  // table, last trick, last hand, score
        int langOut;
    };
    const Row rows[] = {
        // The first of two equal titles; the table's own title is not searched.
        {{"Partida: Spades - Table: Oak", "Notes", "Puntuacion de Picas", "Ultima mano", "Ultima baza", "Ultima baza"},
         LangSpain, {-1, 4, 3, 2}, LangSpain},
        // The score window comes first in z-order and flips the site.
        {{"Puntuacion de picas", "Ultima baza", "Ultima mano"}, LangSpain, {-1, 1, 2, 0}, LangEspanol},
        // German keeps the English score title.
        {{"Spades Score", "Letztes Spiel", "Letzter Stich", "Last Hand"}, LangGermany, {-1, 2, 1, 0}, LangGermany},
        // English titles are compared exactly.
        {{"Last trick", " Last Trick"}, LangUSA, {-1, -1, -1, -1}, LangUSA},
        {{"最後のハンド", "スペードスコア", "最後のトリック"}, LangJapan, {-1, 2, 0, 1}, LangJapan},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.list[0]);
        std::vector<std::string> list = r.list;
        int lang = r.lang;
        EXPECT_EQ(t.FindSubWindows(list, lang), r.found);
        EXPECT_EQ(lang, r.langOut);
        if (r.found[SlotScore] >= 0) { EXPECT_EQ(list[static_cast<std::size_t>(r.found[SlotScore])], "Spades Score"); }
    }
    std::vector<std::string> list = {"Notes", "Last Trick"};
    int lang = LangUSA;
    EXPECT_EQ(t.FindSubWindow(list, SlotLastTrick, lang), 1);
    EXPECT_EQ(list[0], "Notes");
    EXPECT_EQ(t.FindSubWindow(list, 7, lang), -1);
}

TEST(SiteWindows, KindsByTitleAndThePopupRule) {
    EXPECT_EQ(SiteWindowKind("Yahoo! Games: Game: Spades - Table: Oak Host: alice"), SiteWindow::Table);
    // The table wins over the lobby text in the same title.
    EXPECT_EQ(SiteWindowKind("Yahoo! Spades Game: Spades"), SiteWindow::Table);
    EXPECT_EQ(SiteWindowKind("Yahoo! Spades - Lobby"), SiteWindow::Lobby);
    EXPECT_EQ(SiteWindowKind("Spades at Yahoo! Games - Browser"), SiteWindow::SitePage);
    EXPECT_EQ(SiteWindowKind("game: spades"), SiteWindow::None);
    EXPECT_EQ(SiteWindowKind(""), SiteWindow::None);
    // Popups: six characters, not bytes, after trimming.
    const std::pair<std::string, bool> rows[] = {
        {"Player information", true}, {"Alert", true},          {"Alerts", false},       {"  Boot ", true},
        {"Boot me", false},           {"プレーヤー情報", true},
        {"お知らせ", true},           {"お知らせです", false},  {"player info", false},  {"", false},
        {"\xE3\x81", false},  // truncated character
    };
    for (const auto& [title, popup] : rows) EXPECT_EQ(IsPopupTitle(title), popup) << title;
}

TEST(TableTitle, CaptionFromTableAndHost) {
    EXPECT_EQ(TableCaption("TarvelloS 2.5", "Yahoo! Games: Game: Spades - Table: Oak Host: alice (advanced)"),
              "TarvelloS 2.5 Table: Oak [alice]");
    // Parts at the very end of the title.
    const auto p = ParseTableTitle("Game: Spades Host: bob Table: Elm");
    EXPECT_EQ(p.table + "|" + p.host, "Table: Elm|bob");
    EXPECT_EQ(TableCaption("T", "Game: Spades - Table: Pine"), "T Table: Pine");
    EXPECT_EQ(TableCaption("T", "Game: Spades"), "T");
    EXPECT_EQ(TableCaption("T", "Host: "), "T");
}

}  // namespace
}  // namespace reading
