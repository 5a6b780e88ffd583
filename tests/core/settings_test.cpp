#include <gtest/gtest.h>

#include <set>
#include <tuple>

#include "core/settings.h"
#include "core/text.h"
#include "temp_dir.h"

using namespace core;

namespace {

using Lines = std::vector<std::string>;

struct Read {
    Settings s;
    SettingsReadResult r;
};

Read ReadLines(const Lines& lines, std::set<std::string> files = {}) {
    Read out;
    out.r = ReadSettingsLines(lines, out.s, [&files](const std::string& n) { return files.count(n) > 0; });
    return out;
}

Read ReadBytes(const std::string& bytes, int codePage = 1252) {
    Read out;
    out.r = ParseSettingsBytes(bytes, codePage, out.s, nullptr);
    return out;
}

}  // namespace

// Each row: the lines of a file and the resulting value of one key, in the
// console tool's JSON form (which shows compound values whole).
TEST(SettingsValues, LinesGiveTheirValues) {
    struct Row {
        Lines lines;
        const char* key;
        const char* json;
    };
    const Row rows[] = {
        // Layout and case do not matter; "1" neither begins with y nor equals on.
        {{"   AutoCapt Bid = No   "}, "AutoCapt Bid", "false"},
        {{"AutoCapt Bid = No", "autocapt bid=ON"}, "AutoCapt Bid", "true"},
        {{"AutoCapt Bid = 1"}, "AutoCapt Bid", "false"},
        {{"AutoCapt Hand = no", "AUTOCAPT HAND = Yes, please"}, "AutoCapt Hand", "true"},
        {{"AutoCapt Hand = only"}, "AutoCapt Hand", "false"},
        // Comments, lines without "=" and empty keys are skipped; a value keeps further "=".
        {{"# AlertTime = 1", "AlertTime 5", "", "   ", "= stray value", "  #GamePoint=1"}, "AlertTime", "30000"},
        {{"CFG = a=b.cfg"}, "CFG", R"("a=b.cfg")"},
        // Quotes; texts are lower-cased except CFG, log and history; empty log/history change nothing.
        {{"AlertSound = \"SystemHand\" played on alarms"}, "AlertSound", R"("systemhand")"},
        {{"CFG = \"My Windows.CFG\""}, "CFG", R"("My Windows.CFG")"},
        {{"log = Trace.LOG", "log ="}, "log", R"("Trace.LOG")"},
        {{"history = \"\""}, "history", R"("SpadesHistory.TXT")"},
        // Seconds, numbers and saturation.
        {{"WaitTime Bid = 2.5"}, "WaitTime Bid", "2500"},
        {{"AlertTime = x"}, "AlertTime", "0"},
        {{"AlertTime = 99999999999"}, "AlertTime", "2147483647"},
        {{"GamePoint = 300 points"}, "GamePoint", "300"},
        {{"Reduce SpadesWindow = 624"}, "Reduce SpadesWindow", R"({"on": false, "width": 624})"},
        {{"Reduce SpadesWindow = ON"}, "Reduce SpadesWindow", R"({"on": true, "width": 0})"},
        {{"Reduce SpadesWindow = yes", "Reduce SpadesWindow = off"}, "Reduce SpadesWindow", R"({"on": false, "width": 0})"},
        // Keys that take only their own words.
        {{"link = UK"}, "link", R"("uk")"},
        {{"link = usa", "link = france"}, "link", R"("usa")"},
        {{"TopMostScoreWindow = yes", "TopMostScoreWindow = no"}, "TopMostScoreWindow", "2"},
        {{"JPN = y", "日本語表示 = no"}, "日本語表示", "true"},
        {{"カードの順序 = 降順"}, "Card Order", R"("descending")"},
        {{"Card Order = 降順", "Card Order = 昇順"}, "Card Order", R"("ascending")"},
        {{"Card Order = Descending", "Card Order = sideways"}, "Card Order", R"("descending")"},
        // Lists.
        {{"MyYahooID = Alpha, beta gamma"}, "MyYahooID", R"(["alpha", "beta", "gamma"])"},
        {{"MyYahooID = a,,b"}, "MyYahooID", R"(["a", "", "b"])"},
        {{"MyYahooID ="}, "MyYahooID", "[]"},
        {{"Suit Marks = (100,90,80,70)"}, "Suit Marks", R"({"symbol": false, "images": false, "widths": [100, 90, 80, 70]})"},
        {{"Suit Marks = SYMBOL and Giff"}, "Suit Marks", R"({"symbol": true, "images": true, "widths": [95, 90, 120, 90]})"},
        {{"Suit Marks = (50 60)"}, "Suit Marks", R"({"symbol": false, "images": false, "widths": [50, 60, 120, 90]})"},
        {{"Suit Marks = (50,60"}, "Suit Marks", R"({"symbol": false, "images": false, "widths": [95, 90, 120, 90]})"},
        // Positions: (*,...) is the default place; no "(" changes nothing.
        {{"CountCards = yes (*,0)"}, "CountCards", "[-100, -100]"},
        {{"CountCards = yes"}, "CountCards", "[0, 0]"},
        {{"AskAlert = ( 5 7 )"}, "AskAlert", "[5, 7]"},
        {{"残りのカード = at (-3,4)"}, "残りのカード", "[-3, 4]"},
        {{"ShowBiddingSequence = (1,2)", "ShowBiddingSequence = no"}, "ShowBiddingSequence", "[1, 2]"},
        {{"BidTrickCounter = (10,20),(300,20)"}, "BidTrickCounter", "[[10, 20], [300, 20]]"},
        {{"BidTrickCounter = (10,20)"}, "BidTrickCounter", "[[10, 20], [0, 0]]"},
        // Later tests override the mode of earlier ones; a position must lead.
        {{"BiddingBoard = (100,200) Modal"}, "BiddingBoard", R"({"mode": 7, "modal": true, "pos": [100, 200]})"},
        {{"BiddingBoard = (1,2) DNil Pass Only"}, "BiddingBoard", R"({"mode": 2, "modal": false, "pos": [1, 2]})"},
        {{"BiddingBoard = yes (1,2)"}, "BiddingBoard", R"({"mode": 0, "modal": false, "pos": [0, 0]})"},
        {{"MyHand = Single (5,6)"}, "MyHand", R"({"layout": 1, "pos": [0, 0]})"},
        {{"MyHand = (5,6) single double"}, "MyHand", R"({"layout": 0, "pos": [5, 6]})"},
    };
    for (const Row& row : rows) {
        const Read r = ReadLines(row.lines);
        SCOPED_TRACE(row.lines.back());
        EXPECT_FALSE(r.r.Illegal) << r.r.IllegalKey;
        const Json all = SettingsJson(r.s);
        const Json* v = all.Get(row.key);
        ASSERT_NE(v, nullptr) << row.key;
        EXPECT_EQ(v->Dump(), row.json);
    }
}

TEST(SettingsValues, FieldsOtherModulesRead) {
    // Widths are kept by suit index: clubs, diamonds, hearts, spades.
    EXPECT_EQ(ReadLines({"Suit Marks = (100,90,80,70)"}).s.SuitMarkWidths, (std::array<std::int32_t, 4>{70, 80, 90, 100}));
    EXPECT_TRUE(ReadLines({"CountCards = yes (*,0)"}).s.CardCounting);
    EXPECT_FALSE(ReadLines({"CountCards = (0,50)"}).s.CardCounting);
    EXPECT_FALSE(ReadLines({"CountCards = yes"}).s.CardCounting);
    // Colours: hexadecimal with or without "&H"; an empty value is ignored.
    const Read c = ReadLines({"BackColor = &HFFE0C0", "BackColor2 = c0ffc0", "BackColor3 = FFEEDD", "BackColor4 = \"\""});
    EXPECT_EQ(std::tuple(c.s.BackColor, c.s.BackColor2, c.s.BackColor3, c.s.BackColor4),
              std::tuple(0xFFE0C0u, 0xC0FFC0u, std::string("#ffeedd"), std::string("#D0D0D0")));
    EXPECT_EQ(ReadLines({"BackColor ="}).s.BackColor, kMainWindowBackColor);
    EXPECT_EQ(ReadLines({"BackColor2 = nothex"}).s.BackColor2, 0u);
    // The alert list name is taken only when such a file exists.
    EXPECT_EQ(ReadLines({"AlertPlayers = Mine.TXT"}, {"mine.txt"}).s.AlertFile, "mine.txt");
    EXPECT_EQ(ReadLines({"AlertPlayers = Gone.TXT"}, {"mine.txt"}).s.AlertFile, "Alert.TXT");
    EXPECT_EQ(ReadLines({"ブラックリスト = Mine.TXT"}, {"mine.txt"}).s.AlertFile, "mine.txt");
    std::string many;
    for (int i = 0; i < 150; ++i) many += "id" + std::to_string(i) + ",";
    const Read m = ReadLines({"MyYahooID = " + many});
    ASSERT_EQ(m.s.MyIds.size(), 100u);
    EXPECT_EQ(m.s.MyIds[99], "id99");
}

TEST(SettingsReading, UnknownKeyStopsWithTheRawPair) {
    const Read r = ReadLines({"AlertTime = 5", "  Colour Scheme =  \"Dark\"  ", "WaitTime Bid = 7"});
    EXPECT_TRUE(r.r.Illegal);
    EXPECT_EQ(r.r.IllegalKey, "Colour Scheme");
    EXPECT_EQ(r.r.IllegalValue, "\"Dark\"");
    EXPECT_EQ(r.s.AlertTimeMs, 5000);
    EXPECT_EQ(r.s.WaitBidMs, 3000);
    const Read e = ReadLines({"Bogus="});  // nothing after "=" is still a key
    EXPECT_TRUE(e.r.Illegal);
    EXPECT_EQ(e.r.IllegalValue, "");
}

TEST(SettingsReading, JapaneseKeysInCodePage932) {
    const std::string sjis = FromUtf8(
        "# 設定\r\nニル集計 = yes\r\nスコアの表 = no\r\n日本語表示 = yes\r\n残りのカード = (1,2)\r\n"
        "BOX の状態を表示 = yes\r\nブラックリスト = 黒.TXT\r\nカードの順序 = 降順\r\nMyYahooID = 太郎, ｈａｎａ",
        932);
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
    EXPECT_EQ(r.s.MyIds, (Lines{"太郎", "ｈａｎａ"}));
    EXPECT_TRUE(ReadBytes(sjis, 1252).r.Illegal) << "the same bytes as Western text name no known key";
}

// Binary garbage goes through the console tool's test and the fuzz target.
TEST(SettingsReading, LineEndsAndHugeLines) {
    // The last line counts without a line end; CR alone ends lines too.
    EXPECT_EQ(ReadBytes("GamePoint = 1\rAlertTime = 5").s.AlertTimeMs, 5000);
    // A 1 MB line without "=" is skipped; a 1 MB value or key is taken whole.
    const std::string big(1 << 20, 'x');
    const Read skipped = ReadBytes(big + "\r\nAlertTime = 4");
    EXPECT_FALSE(skipped.r.Illegal);
    EXPECT_EQ(skipped.s.AlertTimeMs, 4000);
    EXPECT_EQ(ReadBytes("MyYahooID = " + std::string(1 << 20, ',')).s.MyIds.size(), 100u);
    EXPECT_EQ(ReadBytes("CFG = " + big).s.CFG.size(), big.size());
    const Read key = ReadBytes(big + "=1");
    EXPECT_TRUE(key.r.Illegal);
    EXPECT_EQ(key.r.IllegalKey.size(), big.size());
    // NUL bytes inside a key make it unknown, not truncated.
    EXPECT_TRUE(ReadBytes(std::string("AlertTime\0x = 5", 15)).r.Illegal);
}

TEST(SettingsPostRead, GamePointJapaneseNamesAndInterface) {
    auto after = [](Settings s, bool systemJapanese) {
        ApplyPostReadRules(s, systemJapanese);
        return std::to_string(s.GamePoint) + " " + s.AlertFile + " " + s.history + (s.JPN ? " JPN" : "");
    };
    Settings jp;
    jp.GamePoint = 300;
    jp.JPN = true;
    EXPECT_EQ(after(jp, true), "500 アラート.TXT スペード履歴.TXT JPN");
    // On a Western system the default names still change, then the interface goes off.
    jp.history = "Mine.TXT";
    EXPECT_EQ(after(jp, false), "500 アラート.TXT Mine.TXT");
    EXPECT_EQ(after(Settings{}, true), "500 Alert.TXT SpadesHistory.TXT");
}

TEST(SettingsFile, LookupOrderCaseAndWhatStartUpApplies) {
    TempDir dir;
    Folders f;
    f.ProgramFolder = dir.Folder();
    EXPECT_EQ(LoadSettings(f, 1252).FileName, "");

    // The alert list name is checked in the program folder, in any letter case.
    dir.Put("tarvellos.ini", "GamePoint = 7\r\nAlertTime = 1\r\nAlertPlayers = Friends.TXT\r\n");
    const SettingsLoad western = LoadSettings(f, 1252);
    EXPECT_EQ(western.FileName, "TarvelloS.INI");
    EXPECT_EQ(western.Values.AlertTimeMs, 1000);
    EXPECT_EQ(western.Values.GamePoint, 500);
    EXPECT_EQ(western.Values.AlertFile, "Alert.TXT");
    dir.Put("Friends.TXT", "x\r\n");
    EXPECT_EQ(LoadSettings(f, 1252).Values.AlertFile, "friends.txt");

    // An unknown key stops before the post-read rules.
    dir.Put("tarvellos.ini", "GamePoint = 250\r\nJPN = yes\r\nNoSuchKey = 1\r\n");
    const SettingsLoad stopped = LoadSettings(f, 1252);
    EXPECT_TRUE(stopped.Result.Illegal);
    EXPECT_EQ(stopped.Values.GamePoint, 250);
    EXPECT_TRUE(stopped.Values.JPN);
    EXPECT_EQ(stopped.Values.AlertFile, "Alert.TXT");

    dir.Put("スペード.ini", FromUtf8("日本語表示 = yes\r\nAlertTime = 2\r\n", 932));
    const SettingsLoad jp = LoadSettings(f, 932);
    EXPECT_EQ(jp.FileName, "スペード.INI");
    EXPECT_EQ(jp.Values.AlertTimeMs, 2000);
    EXPECT_TRUE(jp.Values.JPN);
    EXPECT_EQ(jp.Values.AlertFile, "アラート.TXT");
}

TEST(SettingsJson, EveryKeyInTableOrder) {
    const Json all = SettingsJson(Settings{});
    std::vector<std::string> keys;
    for (const auto& m : all.Members()) keys.push_back(m.first);
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
}
