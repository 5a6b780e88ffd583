#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <set>

#include "core/settings.h"
#include "core/text.h"

using namespace core;

namespace {

struct Read {
    Settings s;
    SettingsReadResult r;
};

Read ReadLines(const std::vector<std::string>& lines, std::set<std::string> files = {}) {
    Read out;
    out.r = ReadSettingsLines(lines, out.s, [&files](const std::string& n) { return files.count(n) > 0; });
    return out;
}

Read ReadBytes(const std::string& bytes, int codePage = 1252) {
    Read out;
    out.r = ParseSettingsBytes(bytes, codePage, out.s, nullptr);
    return out;
}

class TempDir {
public:
    TempDir() {
        std::random_device rd;
        path_ = std::filesystem::temp_directory_path() / ("core-settings-" + std::to_string(rd()));
        std::filesystem::create_directories(path_);
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    std::string Folder() const { return PathToUtf8(path_); }
    void Put(const std::string& name, const std::string& bytes) const {
        std::ofstream out(path_ / PathFromUtf8(name), std::ios::binary);
        out << bytes;
    }

private:
    std::filesystem::path path_;
};

}  // namespace

TEST(SettingsLineFormat, FlagsIgnoreLayoutAndCase) {
    EXPECT_FALSE(ReadLines({"   AutoCapt Bid = No   "}).s.AutoCaptBid);
    EXPECT_TRUE(ReadLines({"AutoCapt Bid = No", "autocapt bid=ON"}).s.AutoCaptBid);
    // "1" neither begins with y nor equals on.
    EXPECT_FALSE(ReadLines({"AutoCapt Bid = 1"}).s.AutoCaptBid);
    EXPECT_TRUE(ReadLines({"AutoCapt Hand = no", "AUTOCAPT HAND = Yes, please"}).s.AutoCaptHand);
    EXPECT_FALSE(ReadLines({"AutoCapt Hand = only"}).s.AutoCaptHand);
}

TEST(SettingsLineFormat, CommentsLinesWithoutEqualsAndEmptyKeysAreSkipped) {
    const Read r = ReadLines({"# AlertTime = 1", "AlertTime 5", "", "   ", "= stray value", "  #GamePoint=1"});
    EXPECT_FALSE(r.r.Illegal);
    EXPECT_EQ(r.s.AlertTimeMs, 30000);
    // The value keeps any further "=".
    EXPECT_EQ(ReadLines({"CFG = a=b.cfg"}).s.CFG, "a=b.cfg");
}

TEST(SettingsLineFormat, QuotedValuesAndLowerCase) {
    EXPECT_EQ(ReadLines({"AlertSound = \"SystemHand\" played on alarms"}).s.AlertSound, "systemhand");
    EXPECT_EQ(ReadLines({"AlertWinning = \"Tada"}).s.AlertWinning, "tada");
    // CFG, log and history keep the file's case; empty log/history change nothing.
    const Read r = ReadLines({"CFG = \"My Windows.CFG\"", "log = Trace.LOG", "history = \"\"", "log ="});
    EXPECT_EQ(r.s.CFG, "My Windows.CFG");
    EXPECT_EQ(r.s.log, "Trace.LOG");
    EXPECT_EQ(r.s.history, "SpadesHistory.TXT");
}

TEST(SettingsValues, SecondsNumbersAndWidths) {
    const Read r = ReadLines({"WaitTime Bid = 2.5", "WaitTime Hand=0.0004", "AlertTime = x", "GamePoint = 300 points",
                              "BridgeWindowWidth = 800", "Reduce SpadesWindow = 624"});
    EXPECT_EQ(r.s.WaitBidMs, 2500);
    EXPECT_EQ(r.s.WaitHandMs, 0);
    EXPECT_EQ(r.s.AlertTimeMs, 0);
    EXPECT_EQ(r.s.GamePoint, 300);
    EXPECT_EQ(r.s.BridgeWindowWidth, 800);
    EXPECT_FALSE(r.s.ReduceOn);
    EXPECT_EQ(r.s.ReduceWidth, 624);
    EXPECT_TRUE(ReadLines({"Reduce SpadesWindow = ON"}).s.ReduceOn);
    const Read off = ReadLines({"Reduce SpadesWindow = yes", "Reduce SpadesWindow = off"});
    EXPECT_FALSE(off.s.ReduceOn);
    EXPECT_EQ(off.s.ReduceWidth, 0);
    // Absurd numbers saturate instead of wrapping.
    EXPECT_EQ(ReadLines({"AlertTime = 99999999999"}).s.AlertTimeMs, 2147483647);
}

TEST(SettingsValues, LinkAndTopmostOnlyTakeTheirWords) {
    EXPECT_EQ(ReadLines({"link = UK"}).s.link, "uk");
    EXPECT_EQ(ReadLines({"link = usa", "link = france"}).s.link, "usa");
    EXPECT_EQ(ReadLines({"TopMostScoreWindow = yes"}).s.TopMostScoreWindow, 2);
    EXPECT_EQ(ReadLines({"TopMostScoreWindow = yes", "TopMostScoreWindow = no"}).s.TopMostScoreWindow, 2);
    EXPECT_TRUE(ReadLines({"JPN = y", "日本語表示 = no"}).s.JPN);
}

TEST(SettingsValues, OwnIdsFollowTheListRule) {
    const Read r = ReadLines({"MyYahooID = Alpha, beta gamma"});
    EXPECT_EQ(r.s.MyIds, (std::vector<std::string>{"alpha", "beta", "gamma"}));
    EXPECT_EQ(ReadLines({"MyYahooID = a,,b"}).s.MyIds, (std::vector<std::string>{"a", "", "b"}));
    std::string many;
    for (int i = 0; i < 150; ++i) many += "id" + std::to_string(i) + ",";
    const Read m = ReadLines({"MyYahooID = " + many});
    ASSERT_EQ(m.s.MyIds.size(), 100u);
    EXPECT_EQ(m.s.MyIds[99], "id99");
    EXPECT_TRUE(ReadLines({"MyYahooID ="}).s.MyIds.empty());
}

TEST(SettingsValues, AlertListNameOnlyWhenTheFileExists) {
    EXPECT_EQ(ReadLines({"AlertPlayers = Mine.TXT"}, {"mine.txt"}).s.AlertFile, "mine.txt");
    EXPECT_EQ(ReadLines({"AlertPlayers = Gone.TXT"}, {"mine.txt"}).s.AlertFile, "Alert.TXT");
    EXPECT_EQ(ReadLines({"ブラックリスト = Mine.TXT"}, {"mine.txt"}).s.AlertFile, "mine.txt");
    EXPECT_EQ(ReadLines({"AlertPlayers ="}, {""}).s.AlertFile, "Alert.TXT");
}

TEST(SettingsValues, Colours) {
    const Read r = ReadLines({"BackColor = &HFFE0C0", "BackColor2 = c0ffc0", "BackColor3 = FFEEDD", "BackColor4 = \"\"",
                              "BackColor5 ="});
    EXPECT_EQ(r.s.BackColor, 0xFFE0C0u);
    EXPECT_EQ(r.s.BackColor2, 0xC0FFC0u);
    EXPECT_EQ(r.s.BackColor3, "#ffeedd");
    EXPECT_EQ(r.s.BackColor4, "#D0D0D0");
    EXPECT_EQ(r.s.BackColor5, "#E0C0C0");
    EXPECT_EQ(ReadLines({"BackColor ="}).s.BackColor, kMainWindowBackColor);
    EXPECT_EQ(ReadLines({"BackColor2 = nothex"}).s.BackColor2, 0u);
}

TEST(SettingsValues, CardOrderAndSuitMarks) {
    EXPECT_TRUE(ReadLines({"Card Order = Descending"}).s.CardOrderDescending);
    EXPECT_TRUE(ReadLines({"カードの順序 = 降順"}).s.CardOrderDescending);
    EXPECT_FALSE(ReadLines({"Card Order = 降順", "Card Order = 昇順"}).s.CardOrderDescending);
    EXPECT_TRUE(ReadLines({"Card Order = descending", "Card Order = sideways"}).s.CardOrderDescending);

    const Read w = ReadLines({"Suit Marks = (100,90,80,70)"});
    // Widths by suit index: clubs, diamonds, hearts, spades.
    EXPECT_EQ(w.s.SuitMarkWidths, (std::array<std::int32_t, 4>{70, 80, 90, 100}));
    EXPECT_FALSE(w.s.SuitMarksSymbol);
    const Read m = ReadLines({"Suit Marks = SYMBOL and Giff"});
    EXPECT_TRUE(m.s.SuitMarksSymbol);
    EXPECT_TRUE(m.s.SuitMarksImages);
    EXPECT_EQ(m.s.SuitMarkWidths, (std::array<std::int32_t, 4>{90, 120, 90, 95}));
    // Fewer items change only the first widths; no closing ")" is not a width list.
    EXPECT_EQ(ReadLines({"Suit Marks = (50 60)"}).s.SuitMarkWidths, (std::array<std::int32_t, 4>{90, 120, 60, 50}));
    EXPECT_EQ(ReadLines({"Suit Marks = (50,60"}).s.SuitMarkWidths, (std::array<std::int32_t, 4>{90, 120, 90, 95}));
}

TEST(SettingsPositions, PairsDefaultPlaceAndNoParenthesis) {
    const Read r = ReadLines({"CountCards = yes (*,0)", "PasteScoreTable = (10, 20)", "AskAlert = ( 5 7 )",
                              "HelpBidIn4thSeat = yes", "残りのカード = at (-3,4)"});
    EXPECT_EQ(r.s.CountCardsPos, (Position{-100, -100}));
    EXPECT_TRUE(r.s.CountCardsPos.DefaultPlace());
    EXPECT_TRUE(r.s.CardCounting);
    EXPECT_EQ(r.s.PasteScoreTable, (Position{10, 20}));
    EXPECT_EQ(r.s.AskAlertPos, (Position{5, 7}));
    EXPECT_EQ(r.s.HelpBidIn4thSeat, (Position{0, 0}));
    EXPECT_EQ(r.s.RemainingCardsPos, (Position{-3, 4}));
    const Read off = ReadLines({"CountCards = yes"});
    EXPECT_FALSE(off.s.CountCardsPos.On());
    EXPECT_FALSE(off.s.CardCounting);
    // A later value without "(" leaves an earlier position alone.
    EXPECT_EQ(ReadLines({"ShowBiddingSequence = (1,2)", "ShowBiddingSequence = no"}).s.BiddingSequencePos,
              (Position{1, 2}));
    EXPECT_FALSE(ReadLines({"CountCards = (0,50)"}).s.CardCounting);
}

TEST(SettingsPositions, CounterPairsBoardAndHand) {
    const Read c = ReadLines({"BidTrickCounter = (10,20),(300,20)"});
    EXPECT_EQ(c.s.LeftCounterPos, (Position{10, 20}));
    EXPECT_EQ(c.s.RightCounterPos, (Position{300, 20}));
    const Read one = ReadLines({"BidTrickCounter = (10,20)"});
    EXPECT_EQ(one.s.LeftCounterPos, (Position{10, 20}));
    EXPECT_EQ(one.s.RightCounterPos, (Position{0, 0}));

    const Read b = ReadLines({"BiddingBoard = (100,200) Modal"});
    EXPECT_EQ(b.s.BoardMode, 7);
    EXPECT_TRUE(b.s.BoardModal);
    EXPECT_EQ(b.s.BoardPos, (Position{100, 200}));
    // Later tests override the mode of earlier ones.
    const Read d = ReadLines({"BiddingBoard = (1,2) DNil Pass Only"});
    EXPECT_EQ(d.s.BoardMode, 2);
    EXPECT_EQ(d.s.BoardPos, (Position{1, 2}));
    const Read late = ReadLines({"BiddingBoard = yes (1,2)"});
    EXPECT_EQ(late.s.BoardMode, 0);
    EXPECT_EQ(late.s.BoardPos, (Position{0, 0}));

    const Read h = ReadLines({"MyHand = Single (5,6)"});
    EXPECT_EQ(h.s.MyHandLayout, 1);
    EXPECT_EQ(h.s.MyHandPos, (Position{0, 0}));
    const Read h2 = ReadLines({"MyHand = (5,6) single double"});
    EXPECT_EQ(h2.s.MyHandLayout, 0);
    EXPECT_EQ(h2.s.MyHandPos, (Position{5, 6}));
}

TEST(SettingsReading, UnknownKeyStopsWithTheRawPair) {
    const Read r = ReadLines({"AlertTime = 5", "  Colour Scheme =  \"Dark\"  ", "WaitTime Bid = 7"});
    EXPECT_TRUE(r.r.Illegal);
    EXPECT_EQ(r.r.IllegalKey, "Colour Scheme");
    EXPECT_EQ(r.r.IllegalValue, "\"Dark\"");
    EXPECT_EQ(r.s.AlertTimeMs, 5000);
    EXPECT_EQ(r.s.WaitBidMs, 3000);
    // A key with nothing after "=" is still a key.
    const Read e = ReadLines({"Bogus="});
    EXPECT_TRUE(e.r.Illegal);
    EXPECT_EQ(e.r.IllegalValue, "");
}

TEST(SettingsReading, JapaneseKeysInCodePage932) {
    const std::string text =
        "# 設定\r\nニル集計 = yes\r\nスコアの表 = no\r\n日本語表示 = yes\r\n残りのカード = (1,2)\r\n"
        "BOX の状態を表示 = yes\r\nブラックリスト = 黒.TXT\r\nカードの順序 = 降順\r\nMyYahooID = 太郎, ｈａｎａ";
    const std::string sjis = FromUtf8(text, 932);
    Read r;
    r.r = ParseSettingsBytes(sjis, 932, r.s, [](const std::string& n) { return n == "黒.txt"; });
    EXPECT_FALSE(r.r.Illegal) << r.r.IllegalKey;
    EXPECT_TRUE(r.s.NilTally);
    EXPECT_FALSE(r.s.ScoreTable);
    EXPECT_TRUE(r.s.JPN);
    EXPECT_EQ(r.s.RemainingCardsPos, (Position{1, 2}));
    EXPECT_TRUE(r.s.ShowBoxState);
    EXPECT_EQ(r.s.AlertFile, "黒.txt");
    EXPECT_TRUE(r.s.CardOrderDescending);
    EXPECT_EQ(r.s.MyIds, (std::vector<std::string>{"太郎", "ｈａｎａ"}));
    // The same bytes read as Western text do not name a known key.
    const Read w = ReadBytes(sjis, 1252);
    EXPECT_TRUE(w.r.Illegal);
}

TEST(SettingsReading, MalformedFilesNeverCrash) {
    // The last line counts without a line end; CR alone ends lines too.
    EXPECT_EQ(ReadBytes("GamePoint = 1\rAlertTime = 5").s.AlertTimeMs, 5000);
    EXPECT_EQ(ReadBytes("AlertTime = 5\r\n").s.AlertTimeMs, 5000);

    // A 1 MB line without "=" is skipped; a 1 MB value is taken.
    const std::string big(1 << 20, 'x');
    EXPECT_FALSE(ReadBytes(big + "\r\nAlertTime = 4").r.Illegal);
    EXPECT_EQ(ReadBytes(big + "\r\nAlertTime = 4").s.AlertTimeMs, 4000);
    const Read ids = ReadBytes("MyYahooID = " + std::string(1 << 20, ','));
    EXPECT_EQ(ids.s.MyIds.size(), 100u);
    const Read cfg = ReadBytes("CFG = " + big);
    EXPECT_EQ(cfg.s.CFG.size(), big.size());
    const Read key = ReadBytes(big + "=1");
    EXPECT_TRUE(key.r.Illegal);
    EXPECT_EQ(key.r.IllegalKey.size(), big.size());

    // Binary garbage in both code pages: any result, but a defined one.
    std::mt19937 rng(7);
    for (int round = 0; round < 50; ++round) {
        std::string bytes(4096, '\0');
        for (auto& c : bytes) c = static_cast<char>(rng() & 0xFF);
        for (int cp : {1252, 932}) {
            const Read g = ReadBytes(bytes, cp);
            if (g.r.Illegal) {
                EXPECT_FALSE(g.r.IllegalKey.empty());
            }
        }
    }
    // NUL bytes inside a key make it unknown, not truncated.
    const Read nul = ReadBytes(std::string("AlertTime\0x = 5", 15));
    EXPECT_TRUE(nul.r.Illegal);
}

TEST(SettingsPostRead, GamePointJapaneseNamesAndInterface) {
    Settings s;
    s.GamePoint = 300;
    s.JPN = true;
    ApplyPostReadRules(s, true);
    EXPECT_EQ(s.GamePoint, 500);
    EXPECT_EQ(s.AlertFile, "アラート.TXT");
    EXPECT_EQ(s.history, "スペード履歴.TXT");
    EXPECT_TRUE(s.JPN);

    // On a Western system the names still change, then the interface goes off.
    Settings w;
    w.JPN = true;
    w.history = "Mine.TXT";
    ApplyPostReadRules(w, false);
    EXPECT_FALSE(w.JPN);
    EXPECT_EQ(w.AlertFile, "アラート.TXT");
    EXPECT_EQ(w.history, "Mine.TXT");

    Settings e;
    ApplyPostReadRules(e, true);
    EXPECT_EQ(e.AlertFile, "Alert.TXT");
}

TEST(SettingsFile, LookupOrderAndCase) {
    TempDir dir;
    Folders f;
    f.ProgramFolder = dir.Folder();
    std::string path;
    EXPECT_EQ(FindSettingsFile(f, path), "");
    SettingsLoad none = LoadSettings(f, 1252);
    EXPECT_EQ(none.FileName, "");
    EXPECT_EQ(none.Values.GamePoint, 500);

    dir.Put("tarvellos.ini", "GamePoint = 7\r\nAlertTime = 1\r\n");
    EXPECT_EQ(FindSettingsFile(f, path), "TarvelloS.INI");
    SettingsLoad western = LoadSettings(f, 1252);
    EXPECT_EQ(western.FileName, "TarvelloS.INI");
    EXPECT_EQ(western.Values.AlertTimeMs, 1000);
    EXPECT_EQ(western.Values.GamePoint, 500);

    dir.Put("スペード.ini", FromUtf8("日本語表示 = yes\r\nAlertTime = 2\r\n", 932));
    SettingsLoad jp = LoadSettings(f, 932);
    EXPECT_EQ(jp.FileName, "スペード.INI");
    EXPECT_EQ(jp.Values.AlertTimeMs, 2000);
    EXPECT_TRUE(jp.Values.JPN);
    EXPECT_EQ(jp.Values.AlertFile, "アラート.TXT");
}

TEST(SettingsFile, IllegalKeySkipsThePostReadRules) {
    TempDir dir;
    Folders f;
    f.ProgramFolder = dir.Folder();
    dir.Put("TarvelloS.INI", "GamePoint = 250\r\nJPN = yes\r\nNoSuchKey = 1\r\n");
    SettingsLoad l = LoadSettings(f, 1252);
    EXPECT_TRUE(l.Result.Illegal);
    EXPECT_EQ(l.Values.GamePoint, 250);
    EXPECT_TRUE(l.Values.JPN);
    EXPECT_EQ(l.Values.AlertFile, "Alert.TXT");
}

TEST(SettingsFile, AlertListNameIsCheckedInTheProgramFolder) {
    TempDir dir;
    Folders f;
    f.ProgramFolder = dir.Folder();
    dir.Put("TarvelloS.INI", "AlertPlayers = Friends.TXT\r\n");
    EXPECT_EQ(LoadSettings(f, 1252).Values.AlertFile, "Alert.TXT");
    dir.Put("Friends.TXT", "x\r\n");
    EXPECT_EQ(LoadSettings(f, 1252).Values.AlertFile, "friends.txt");
    EXPECT_NE(f.EnterProgramFolder("friends.txt").find("Friends.TXT"), std::string::npos);
}

TEST(SettingsJson, EveryKeyInTableOrder) {
    const Json j = SettingsJson(Settings{});
    std::vector<std::string> keys;
    for (const auto& m : j.Members()) keys.push_back(m.first);
    const std::vector<std::string> expected = {
        "link", "ニル集計", "CFG", "TopMostScoreWindow", "GamePoint", "AlertPlayers", "MyYahooID", "AutoCapt Bid",
        "AutoCapt Hand", "WaitTime Bid", "WaitTime Hand", "AlertTime", "AlertSound", "AlertWinning", "AlertLosing",
        "Reduce SpadesWindow", "Minimize LastHand", "DebugWindow", "BOX の状態を表示", "log", "history", "日本語表示",
        "Text Output", "BackColor", "BackColor2", "BackColor3", "BackColor4", "BackColor5", "Score Table",
        "Card Order", "Suit Marks", "strict", "AlertNilBids", "AlertFailNil", "AlertSuicideTable",
        "AlertDnilPassTable", "AlertCanDNilPass", "BoldBidTrick", "ShowTrickBox", "BridgeWindowWidth",
        "BidTrickCounter", "TopMostBiddingBoard", "BiddingBoard", "残りのカード", "ShowBiddingSequence", "CountCards",
        "PasteScoreTable", "MyHand", "HelpBidIn4thSeat", "AskAlert", "TopmostPlayerInfo"};
    EXPECT_EQ(keys, expected);
    EXPECT_EQ(j.Get("Suit Marks")->Dump(), "{\"symbol\": false, \"images\": false, \"widths\": [95, 90, 120, 90]}");
}
