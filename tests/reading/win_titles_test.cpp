#include "reading/win_titles.h"

#include <gtest/gtest.h>

namespace reading {
namespace {

TEST(WinTitlesTable, EveryTitledRowHasItsLabelsAndWords) {
    const WinTitles t;
    for (int lang = LangFirst; lang <= LangLast; ++lang) {
        EXPECT_FALSE(t.RowName(lang).empty()) << lang;
        const bool titled = !t.EnglishTitle(SlotTable).empty() && !t.Title(lang, SlotTable).empty();
        if (lang == LangFrance || lang == LangBrazil) {
            EXPECT_FALSE(titled) << lang;
            for (int s = 0; s < TitleSlotCount; ++s) EXPECT_EQ(t.Title(lang, s), "") << lang;
            continue;
        }
        ASSERT_TRUE(titled) << lang;
        for (int s = 0; s < TitleSlotCount; ++s) EXPECT_FALSE(t.Title(lang, s).empty()) << lang << "/" << s;
        EXPECT_EQ(t.BidLabel(lang).back(), ':') << lang;
        EXPECT_EQ(t.TrickLabel(lang).back(), ':') << lang;
        EXPECT_FALSE(t.WaitWords(lang)[0].empty()) << lang;
        for (int k = 1; k <= 5; ++k) EXPECT_FALSE(t.ButtonWord(lang, k).empty()) << lang << "/" << k;
        EXPECT_FALSE(t.DoubleNilWord(lang).empty());
        EXPECT_FALSE(t.ShowWord(lang).empty());
    }
}

TEST(WinTitlesTable, RowsTheReadersDependOn) {
    const WinTitles t;
    EXPECT_EQ(t.Title(LangUSA, SlotScore), "Spades Score");
    EXPECT_EQ(t.Title(LangJapan, SlotTable), "ゲーム：Spades");  // full-width colon
    EXPECT_EQ(t.Title(LangMexico, SlotTable), "Partida:Spades");  // no blank
    EXPECT_EQ(t.Title(LangItaly, SlotScore), "Punteggio di Peppa");
    EXPECT_EQ(t.RowName(LangJapan), "日本");
    EXPECT_EQ(t.RowName(LangArgentina), "ARGENTINE");
    EXPECT_EQ(t.BidLabel(LangSpain), "Subasta:");
    EXPECT_EQ(t.BidLabel(LangMexico), "Apuesta:");
    EXPECT_EQ(t.TrickLabel(LangJapan), "トリック:");  // ASCII colon, unlike the title
    EXPECT_EQ(t.WaitWords(LangUSA), (std::array<std::string, 3>{"lick", "ress", "ponent"}));
    EXPECT_EQ(t.WaitWords(LangGermany)[2], "");
    // The button scan's Spanish rule looks for row 8's score word.
    EXPECT_EQ(t.ButtonWord(LangEspanol, ButtonScore), "untuaci");
    EXPECT_EQ(t.ButtonWord(LangSpain, ButtonScore), t.ButtonWord(LangArgentina, ButtonScore));
    EXPECT_EQ(t.ButtonWord(LangItaly, ButtonDNilPass), "DZ");
    EXPECT_EQ(t.ButtonWord(LangJapan, ButtonSuicide), "サイド");
    EXPECT_EQ(t.DoubleNilWord(LangItaly), "Doppiozero");
    EXPECT_EQ(t.ShowWord(LangGermany), "Zeigen");
    EXPECT_EQ(t.ShowWord(LangArgentina), "Mostrar");
}

TEST(WinTitlesTable, OutOfRangeGivesEmptyTexts) {
    const WinTitles t;
    EXPECT_EQ(t.Title(0, SlotTable), "");
    EXPECT_EQ(t.Title(11, SlotLastHand), "");
    EXPECT_EQ(t.Title(LangUSA, 4), "");
    EXPECT_EQ(t.Title(LangUSA, -1), "");
    EXPECT_EQ(t.ButtonWord(LangUSA, 0), "");
    EXPECT_EQ(t.ButtonWord(LangUSA, 6), "");
    EXPECT_EQ(t.BidLabel(-3), "");
    EXPECT_EQ(t.RowName(0), "");
}

TEST(TitleNormalisation, SpanishSubWindowFoundOnlyInSpanish) {
    const WinTitles t;
    std::string title = "Ultima baza";
    int lang = LangSpain;
    EXPECT_TRUE(t.MatchSlot(title, SlotLastTrick, lang));
    EXPECT_EQ(title, "Last Trick");
    EXPECT_EQ(lang, LangSpain);

    title = "Ultima baza";
    lang = LangUSA;
    EXPECT_FALSE(t.MatchSlot(title, SlotLastTrick, lang));
    EXPECT_EQ(title, "Ultima baza");

    // The Italian "Last Trick" title is not Spanish.
    title = "Ultima presa";
    lang = LangSpain;
    EXPECT_FALSE(t.MatchSlot(title, SlotLastTrick, lang));
    // A title of another slot does not match.
    title = "Ultima mano";
    EXPECT_FALSE(t.MatchSlot(title, SlotLastTrick, lang));
    EXPECT_TRUE(t.MatchSlot(title, SlotLastHand, lang));
}

TEST(TitleNormalisation, LowerCaseSpanishSiteSwitchesLanguage) {
    const WinTitles t;
    std::string title = "Partida: spades";
    int lang = LangSpain;
    EXPECT_TRUE(t.NormalizeTitle(title, SlotTable, lang));
    EXPECT_EQ(lang, LangEspanol);
    EXPECT_EQ(title, "Game: Spades");

    // The score title of row 8 switches too, whichever slot is being tried.
    title = "Puntuacion de picas";
    lang = LangSpain;
    EXPECT_FALSE(t.NormalizeTitle(title, SlotLastTrick, lang));
    EXPECT_EQ(lang, LangEspanol);

    // Row 6's own titles keep the language.
    title = "Puntuacion de Picas";
    lang = LangSpain;
    EXPECT_TRUE(t.NormalizeTitle(title, SlotScore, lang));
    EXPECT_EQ(lang, LangSpain);

    // Only language 6 switches: Argentina shares the lower-case score title.
    title = "Puntuacion de picas";
    lang = LangArgentina;
    EXPECT_TRUE(t.NormalizeTitle(title, SlotScore, lang));
    EXPECT_EQ(lang, LangArgentina);
}

TEST(TitleNormalisation, UntitledLanguagesMatchNothing) {
    const WinTitles t;
    for (int lang0 : {LangFrance, LangBrazil, 0, 42}) {
        std::string title;
        int lang = lang0;
        EXPECT_FALSE(t.NormalizeTitle(title, SlotLastHand, lang));
        EXPECT_FALSE(t.MatchSlot(title, SlotLastHand, lang));
        std::vector<std::string> list = {"", "Last Trick"};
        // The English title itself is still recognised.
        EXPECT_EQ(t.FindSubWindow(list, SlotLastTrick, lang), 1);
        EXPECT_EQ(t.FindSubWindow(list, SlotLastHand, lang), -1);
    }
}

TEST(SubWindowSearch, AllSlotsInSpanish) {
    const WinTitles t;
    std::vector<std::string> list = {"Partida: Spades - Table: Oak", "Notes", "Puntuacion de Picas",
                                     "Ultima mano", "Ultima baza", "Ultima baza"};
    int lang = LangSpain;
    const auto found = t.FindSubWindows(list, lang);
    EXPECT_EQ(found[SlotTable], -1);
    EXPECT_EQ(found[SlotLastTrick], 4);  // the first of two equal titles
    EXPECT_EQ(found[SlotLastHand], 3);
    EXPECT_EQ(found[SlotScore], 2);
    EXPECT_EQ(list[2], "Spades Score");
    EXPECT_EQ(list[1], "Notes");
    EXPECT_EQ(lang, LangSpain);
}

TEST(SubWindowSearch, AllSlotsSwitchToLowerCaseSite) {
    const WinTitles t;
    // The score window comes before the others in z-order and flips the site.
    std::vector<std::string> list = {"Puntuacion de picas", "Ultima baza", "Ultima mano"};
    int lang = LangSpain;
    const auto found = t.FindSubWindows(list, lang);
    EXPECT_EQ(lang, LangEspanol);
    EXPECT_EQ(found[SlotScore], 0);
    EXPECT_EQ(found[SlotLastTrick], 1);
    EXPECT_EQ(found[SlotLastHand], 2);
}

TEST(SubWindowSearch, EnglishAndGerman) {
    const WinTitles t;
    std::vector<std::string> list = {"Last Hand", "Last Trick", "Spades Score"};
    int lang = LangUSA;
    auto found = t.FindSubWindows(list, lang);
    EXPECT_EQ(found, (std::array<int, 4>{-1, 1, 0, 2}));

    // German keeps the English score title.
    list = {"Spades Score", "Letztes Spiel", "Letzter Stich", "Last Hand"};
    lang = LangGermany;
    found = t.FindSubWindows(list, lang);
    EXPECT_EQ(found, (std::array<int, 4>{-1, 2, 1, 0}));

    // English titles are compared exactly.
    list = {"Last trick", " Last Trick"};
    lang = LangUSA;
    EXPECT_EQ(t.FindSubWindow(list, SlotLastTrick, lang), -1);
    EXPECT_EQ(t.FindSubWindows(list, lang)[SlotLastTrick], -1);
}

TEST(SubWindowSearch, JapaneseOneSlot) {
    const WinTitles t;
    std::vector<std::string> list = {"最後のハンド", "スペードスコア", "最後のトリック"};
    int lang = LangJapan;
    EXPECT_EQ(t.FindSubWindow(list, SlotScore, lang), 1);
    EXPECT_EQ(list[1], "Spades Score");
    EXPECT_EQ(t.FindSubWindow(list, SlotLastTrick, lang), 2);
    EXPECT_EQ(t.FindSubWindow(list, 7, lang), -1);
}

TEST(TitleLookup, FindTitleGivesLowestRow) {
    const WinTitles t;
    int lang = 0, slot = 0;
    ASSERT_TRUE(t.FindTitle("Spades Score", lang, slot));
    EXPECT_EQ(lang, LangUSA);
    EXPECT_EQ(slot, SlotScore);
    ASSERT_TRUE(t.FindTitle("Ultima mano", lang, slot));
    EXPECT_EQ(lang, LangItaly);
    EXPECT_EQ(slot, SlotLastHand);
    ASSERT_TRUE(t.FindTitle("Partida: spades", lang, slot));
    EXPECT_EQ(lang, LangEspanol);
    EXPECT_EQ(slot, SlotTable);
    EXPECT_FALSE(t.FindTitle("", lang, slot));
    EXPECT_FALSE(t.FindTitle("Last Tricks", lang, slot));
}

TEST(SiteWindows, KindsByTitle) {
    EXPECT_EQ(SiteWindowKind("Yahoo! Games: Game: Spades - Table: Oak Host: alice"), SiteWindow::Table);
    // The table wins over the lobby text in the same title.
    EXPECT_EQ(SiteWindowKind("Yahoo! Spades Game: Spades"), SiteWindow::Table);
    EXPECT_EQ(SiteWindowKind("Yahoo! Spades - Lobby"), SiteWindow::Lobby);
    EXPECT_EQ(SiteWindowKind("Spades at Yahoo! Games - Browser"), SiteWindow::SitePage);
    EXPECT_EQ(SiteWindowKind("game: spades"), SiteWindow::None);
    EXPECT_EQ(SiteWindowKind("ゲーム：Spades"), SiteWindow::None);
    EXPECT_EQ(SiteWindowKind(""), SiteWindow::None);
}

TEST(SiteWindows, PopupRuleComparesSixCharacters) {
    EXPECT_TRUE(IsPopupTitle("Player information"));
    EXPECT_TRUE(IsPopupTitle("Invite friends"));
    EXPECT_TRUE(IsPopupTitle("Alert"));
    EXPECT_FALSE(IsPopupTitle("Alerts"));
    EXPECT_TRUE(IsPopupTitle("  Boot "));
    EXPECT_FALSE(IsPopupTitle("Boot me"));
    EXPECT_TRUE(IsPopupTitle("プレーヤー情報"));  // six characters, not bytes
    EXPECT_TRUE(IsPopupTitle("お知らせ"));
    EXPECT_FALSE(IsPopupTitle("お知らせです"));
    EXPECT_FALSE(IsPopupTitle("player info"));
    EXPECT_FALSE(IsPopupTitle(""));
    EXPECT_FALSE(IsPopupTitle("\xE3\x81"));  // truncated character
}

TEST(TableTitle, CaptionFromTableAndHost) {
    const std::string title = "Yahoo! Games: Game: Spades - Table: Oak Host: alice (advanced)";
    const auto parts = ParseTableTitle(title);
    EXPECT_EQ(parts.table, "Table: Oak");
    EXPECT_EQ(parts.host, "alice");
    EXPECT_EQ(TableCaption("TarvelloS 2.5", title), "TarvelloS 2.5 Table: Oak [alice]");

    // Parts at the very end of the title.
    auto p = ParseTableTitle("Game: Spades Host: bob Table: Elm");
    EXPECT_EQ(p.table, "Table: Elm");
    EXPECT_EQ(p.host, "bob");

    p = ParseTableTitle("Game: Spades - Table: Pine");
    EXPECT_EQ(p.host, "");
    EXPECT_EQ(TableCaption("T", "Game: Spades - Table: Pine"), "T Table: Pine");
    EXPECT_EQ(TableCaption("T", "Game: Spades"), "T");
    EXPECT_EQ(TableCaption("T", "Host: "), "T");
}

}  // namespace
}  // namespace reading
