#include "display/err_msg.h"

#include <gtest/gtest.h>

#include "platform/sim/sim_desktop.h"

using namespace display;

TEST(ErrMsg, SentencesBySiteInterfaceAndTableMode) {
    // Site, table mode, Japanese interface, code, text shown.
    const std::tuple<int, int, bool, int, const char*> cases[] = {
        {LangEnglish, TableModeSpades, false, 7, "«Spades Score» remains Unchanged."},
        {LangEnglish, TableModeBridge, false, 7, "«Score» remains Unchanged."},
        {LangEnglish, TableModeBridge, false, 16, "«Bridge Bidding» remains Unchanged."},
        {LangEnglish, TableModeSpades, false, 25, "LastHand is not open."},  // names the last hand
        {LangEnglish, TableModeSpades, true, 25, "《Last Trick》が オープンしていません."},
        {LangEnglish, TableModeSpades, true, 1, "《Score》が オープンしていません."},
        {LangEnglish, TableModeSpades, true, 14, "Bidding is not yet over."},  // no Japanese form
        {LangJapanese, TableModeSpades, false, 1, "《スペードスコア》が見つかりません."},
        {LangJapanese, TableModeBridge, false, 1, "《スコア》が見つかりません."},
        {LangJapanese, 5, false, 1, ""},
        {LangSpanish, TableModeSpades, false, 25, "«Última baza» no está abierta."},
        {LangFrench, TableModeSpades, false, 14, "Enchères ne sont pas encore complète."},
        {LangEnglish, TableModeSpades, false, 15, ""},  // unknown code
        {11, TableModeSpades, false, 7, ""},             // unknown language
    };
    platform::SimDesktop desk;
    for (const auto& [lang, mode, jp, code, text] : cases) {
        ErrMsgWindow w(&desk);
        w.SetJapaneseInterface(jp, "JFont");
        w.PutMsg(code, lang, mode);
        SCOPED_TRACE(testing::Message() << "lang " << lang << " mode " << mode << " code " << code);
        EXPECT_EQ(w.Text, text);
        EXPECT_TRUE(w.Visible && w.Shown) << "the empty window shows too";
        // The Japanese site and Japanese sentences use the Japanese font at 12, all else Arial 13.
        const bool jpFont = lang == LangJapanese || std::string(text).find("が") != std::string::npos;
        EXPECT_EQ(w.FontName + " " + std::to_string(w.FontSize), jpFont ? "JFont 12" : "Arial 13");
    }
    EXPECT_EQ(desk.Sounds(), std::vector<std::string>(std::size(cases), "SystemExclamation"));
    // The further Spanish sites speak Spanish.
    EXPECT_EQ(MessageText(21, 8, TableModeSpades, false), MessageText(21, LangSpanish, TableModeSpades, false));
}

TEST(ErrMsg, EveryCodeHasASentenceInEveryLanguage) {
    const int codes[] = {1, 7, 11, 12, 13, 14, 16, 18, 19, 21, 24, 25};
    for (int lang = 1; lang <= 10; ++lang)
        for (int mode : {TableModeBridge, TableModeSpades})
            for (int code : codes)
                for (bool jp : {false, true}) {
                    const std::string raw = MessageText(code, lang, mode, jp);
                    SCOPED_TRACE(testing::Message() << "lang " << lang << " mode " << mode << " code " << code);
                    ASSERT_FALSE(raw.empty());
                    const std::string shown = DecodeEntities(raw);
                    // Every entity used is one the window can decode.
                    EXPECT_EQ(shown.find('&'), std::string::npos) << raw;
                    EXPECT_EQ(shown.back(), '.');
                    EXPECT_EQ(shown.find("  "), std::string::npos) << shown;
                }
}

TEST(ErrMsg, FreeTextsAndEntityDecoding) {
    ErrMsgWindow w;
    w.SetJapaneseInterface(true, "メイリオ");
    // The font follows the text; a free text is shown as it is, entities and all.
    w.ShowErrorMsg("a &eacute; b");
    EXPECT_EQ(w.Text + " " + w.FontName + " " + std::to_string(w.FontSize), "a &eacute; b Arial 13");
    w.ShowErrorMsg("競技者名読み取りのエラー.");
    EXPECT_EQ(w.FontName + " " + std::to_string(w.FontSize), "メイリオ 12");
    w.Hide();
    EXPECT_FALSE(w.Visible || w.Shown);
    EXPECT_EQ(DecodeEntities("Fen&ecirc;tre &laquo;x&raquo; &Uacute;&ccedil;&atilde;&nbsp;"), "Fenêtre «x» Úçã\u00a0");
    EXPECT_EQ(DecodeEntities("&amp;lt;"), "&lt;");
    EXPECT_EQ(DecodeEntities("R&D; &unknown; &eacute &; &"), "R&D; &unknown; &eacute &; &");
    EXPECT_EQ(DecodeEntities(std::string("\xFF&uuml;\x80", 8)), std::string("\xFFü\x80"));
    EXPECT_FALSE(HasJapanese("Última «mano»"));
    EXPECT_FALSE(HasJapanese(std::string("\xE3\x81", 2)));  // cut in the middle
    ErrMsgWindow pieces;
    pieces.PMsg("Jos&eacute;");
    pieces.PMsg(", Ren&eacute;e");
    EXPECT_EQ(pieces.Text, "José, Renée");
}
