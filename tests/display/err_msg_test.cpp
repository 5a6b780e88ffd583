#include "display/err_msg.h"

#include <gtest/gtest.h>

#include "platform/sim_desktop.h"

using namespace display;

namespace {

const int kCodes[] = {MsgScoreNotOpen,     MsgScoreUnchanged,  MsgGameNotStarted,  MsgBiddingNotStarted,
                      MsgGameNotStarted2,  MsgBiddingNotOver,  MsgBidsUnchanged,   MsgBiddingNotOpen,
                      MsgAuctionNotStarted, MsgLastHandNotOpen, MsgLastHandUnchanged, MsgLastTrickNotOpen};

}  // namespace

TEST(ErrMsg, EnglishSiteSentences) {
    ErrMsgWindow w;
    w.PutMsg(7, LangEnglish, TableModeSpades);
    EXPECT_EQ(w.Text, "«Spades Score» remains Unchanged.");
    w.PutMsg(7, LangEnglish, TableModeBridge);
    EXPECT_EQ(w.Text, "«Score» remains Unchanged.");
    w.PutMsg(16, LangEnglish, TableModeBridge);
    EXPECT_EQ(w.Text, "«Bridge Bidding» remains Unchanged.");
    // The last-trick message names the last hand on the English site.
    w.PutMsg(25, LangEnglish, TableModeSpades);
    EXPECT_EQ(w.Text, "LastHand is not open.");
    EXPECT_EQ(w.FontName, "Arial");
    EXPECT_EQ(w.FontSize, 13);
    EXPECT_EQ(MessageText(7, LangEnglish, TableModeSpades, false), "&laquo;Spades Score&raquo; remains Unchanged.");
}

TEST(ErrMsg, JapaneseInterfaceReplacesSomeEnglishSiteSentences) {
    ErrMsgWindow w;
    w.SetJapaneseInterface(true, "メイリオ");
    EXPECT_EQ(w.Caption, " エラー・メッセージ");
    w.PutMsg(25, LangEnglish, TableModeSpades);
    EXPECT_EQ(w.Text, "《Last Trick》が オープンしていません.");
    EXPECT_EQ(w.FontName, "メイリオ");
    w.PutMsg(1, LangEnglish, TableModeSpades);
    EXPECT_EQ(w.Text, "《Score》が オープンしていません.");
    // Sentences without a Japanese form stay English.
    w.PutMsg(14, LangEnglish, TableModeSpades);
    EXPECT_EQ(w.Text, "Bidding is not yet over.");
    EXPECT_EQ(w.FontName, "Arial");
}

TEST(ErrMsg, JapaneseSite) {
    ErrMsgWindow w;
    w.SetJapaneseInterface(false, "ＭＳ Ｐゴシック");
    w.PutMsg(1, LangJapanese, TableModeSpades);
    EXPECT_EQ(w.Text, "《スペードスコア》が見つかりません.");
    EXPECT_EQ(w.FontName, "ＭＳ Ｐゴシック");
    EXPECT_EQ(w.FontSize, 12);
    w.PutMsg(1, LangJapanese, TableModeBridge);
    EXPECT_EQ(w.Text, "《スコア》が見つかりません.");
    w.PutMsg(1, LangJapanese, 5);
    EXPECT_EQ(w.Text, "");
}

TEST(ErrMsg, EveryCodeHasASentenceInEveryLanguage) {
    for (int lang = 1; lang <= 10; ++lang)
        for (int mode : {TableModeBridge, TableModeSpades})
            for (int code : kCodes)
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
    EXPECT_EQ(DecodeEntities(MessageText(25, LangSpanish, TableModeSpades, false)), "«Última baza» no está abierta.");
    EXPECT_EQ(DecodeEntities(MessageText(14, LangFrench, TableModeSpades, false)),
              "Enchères ne sont pas encore complète.");
    EXPECT_EQ(DecodeEntities(MessageText(7, LangGerman, TableModeSpades, false)), "«Punktestand» ist nicht verändert.");
    EXPECT_EQ(DecodeEntities(MessageText(11, LangPortuguese, TableModeSpades, false)), "Jogo ainda não foi iniciado.");
    // The further Spanish sites speak Spanish.
    EXPECT_EQ(MessageText(21, 8, TableModeSpades, false), MessageText(21, LangSpanish, TableModeSpades, false));
}

TEST(ErrMsg, UnknownCodesAndLanguagesShowTheEmptyWindowWithTheSound) {
    platform::SimDesktop desk;
    ErrMsgWindow w(&desk);
    w.PutMsg(15, LangEnglish, TableModeSpades);
    EXPECT_TRUE(w.Visible);
    EXPECT_TRUE(w.Shown);
    EXPECT_EQ(w.Text, "");
    w.PutMsg(7, 11, TableModeSpades);
    w.PutMsg(7, -1, TableModeSpades);
    EXPECT_EQ(w.Text, "");
    EXPECT_EQ(desk.Sounds().size(), 3u);
    EXPECT_EQ(desk.Sounds().back(), "SystemExclamation");

    w.Hide();
    EXPECT_FALSE(w.Visible);
    EXPECT_FALSE(w.Shown);
}

TEST(ErrMsg, ShowErrorMsgChoosesTheFontByTheText) {
    platform::SimDesktop desk;
    desk.SetFamily(platform::PlatformFamily::Win9x);
    ErrMsgWindow w(&desk);
    w.SetJapaneseInterface(true, "メイリオ");
    w.ShowErrorMsg("Error occurred in reading score.");
    EXPECT_EQ(w.FontName, "Arial");
    EXPECT_EQ(w.FontSize, 13);
    EXPECT_EQ(w.Text, "Error occurred in reading score.");
    EXPECT_EQ(w.TextX, 6);
    EXPECT_EQ(w.TextY, 4);
    w.ShowErrorMsg("競技者名読み取りのエラー.");
    EXPECT_EQ(w.FontName, "メイリオ");
    EXPECT_EQ(w.FontSize, 12);
    // A free text is shown as it is, entities and all.
    w.ShowErrorMsg("a &eacute; b");
    EXPECT_EQ(w.Text, "a &eacute; b");
    // The older platform family can only beep.
    EXPECT_EQ(desk.Beeps(), 3);
    EXPECT_TRUE(desk.Sounds().empty());
}

TEST(ErrMsg, EntityDecoding) {
    EXPECT_EQ(DecodeEntities("Fen&ecirc;tre &laquo;x&raquo; &Uacute;&ccedil;&atilde;&nbsp;"), "Fenêtre «x» Úçã\u00a0");
    EXPECT_EQ(DecodeEntities("&eacute;&yuml;&AElig;&szlig;"), "éÿÆß");
    EXPECT_EQ(DecodeEntities("&amp;lt;"), "&lt;");
    EXPECT_EQ(DecodeEntities("R&D; &unknown; &eacute &; &"), "R&D; &unknown; &eacute &; &");
    EXPECT_EQ(DecodeEntities("《&laquo;》"), "《«》");
    EXPECT_FALSE(HasJapanese("Última «mano»"));
    EXPECT_FALSE(HasJapanese(std::string("\xE3\x81", 2)));  // cut in the middle
    EXPECT_EQ(DecodeEntities(std::string("\xFF&uuml;\x80", 8)), std::string("\xFFü\x80"));
    ErrMsgWindow w;
    w.PMsg("Jos&eacute;");
    w.PMsg(", ");
    w.PMsg("Ren&eacute;e");
    EXPECT_EQ(w.Text, "José, Renée");
}
