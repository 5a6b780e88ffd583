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
// console tool's JSON form (which shows compound values whole). The console
// tool's test reads one example of each value form; these are the edges.
TEST(SettingsValues, LinesGiveTheirValues) {
    struct Row {
        Lines lines;
        const char* key;
        const char* json;
    };
    const Row rows[] = {
        // Layout and case do not matter; "1" neither begins with y nor equals on.
        {{"   AutoCapt Bid = No   ", "autocapt bid=ON"}, "AutoCapt Bid", "true"},
        {{"AutoCapt Bid = 1"}, "AutoCapt Bid", "false"},
        {{"AutoCapt Hand = no", "AUTOCAPT HAND = Yes, please"}, "AutoCapt Hand", "true"},
        // Comments, lines without "=" and empty keys are skipped; a value keeps further "=".
        {{"# AlertTime = 1", "AlertTime 5", "", "   ", "= stray value", "  #GamePoint=1"}, "AlertTime", "30000"},
        {{"CFG = a=b.cfg"}, "CFG", R"("a=b.cfg")"},
        // Quotes; texts are lower-cased except CFG, log and history; empty log/history change nothing.
        {{"log = Trace.LOG", "log ="}, "log", R"("Trace.LOG")"},
        {{"history = \"\""}, "history", R"("SpadesHistory.TXT")"},
        // Seconds, numbers and saturation.
        {{"AlertTime = x"}, "AlertTime", "0"},
        {{"AlertTime = 99999999999"}, "AlertTime", "2147483647"},
        {{"Reduce SpadesWindow = ON"}, "Reduce SpadesWindow", R"({"on": true, "width": 0})"},
        // Keys that take only their own words.
        {{"link = usa", "link = france"}, "link", R"("usa")"},
        {{"TopMostScoreWindow = yes", "TopMostScoreWindow = no"}, "TopMostScoreWindow", "2"},
        {{"JPN = y", "日本語表示 = no"}, "日本語表示", "true"},
        {{"Card Order = 降順", "Card Order = 昇順"}, "Card Order", R"("ascending")"},
        {{"Card Order = Descending", "Card Order = sideways"}, "Card Order", R"("descending")"},
        // Lists.
        {{"MyYahooID ="}, "MyYahooID", "[]"},
        {{"Suit Marks = SYMBOL and Giff"}, "Suit Marks", R"({"symbol": true, "images": true, "widths": [95, 90, 120, 90]})"},
        {{"Suit Marks = (50 60)"}, "Suit Marks", R"({"symbol": false, "images": false, "widths": [50, 60, 120, 90]})"},
        {{"Suit Marks = (50,60"}, "Suit Marks", R"({"symbol": false, "images": false, "widths": [95, 90, 120, 90]})"},
        // Positions: (*,...) is the default place; no "(" changes nothing.
        {{"CountCards = yes"}, "CountCards", "[0, 0]"},
        {{"AskAlert = ( 5 7 )"}, "AskAlert", "[5, 7]"},
        {{"ShowBiddingSequence = (1,2)", "ShowBiddingSequence = no"}, "ShowBiddingSequence", "[1, 2]"},
        // Later tests override the mode of earlier ones; a position must lead.
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
    std::string many;
    for (int i = 0; i < 150; ++i) many += "id" + std::to_string(i) + ",";
    const Read m = ReadLines({"MyYahooID = " + many});
    EXPECT_EQ(std::pair(m.s.MyIds.size(), m.s.MyIds.back()), std::pair(std::size_t{100}, std::string("id99")));
}

// The console tool's test reads the other Japanese keys.
TEST(SettingsReading, JapaneseKeysInCodePage932) {
    const std::string sjis = FromUtf8("BOX の状態を表示 = yes\r\nブラックリスト = 黒.TXT\r\nMyYahooID = 太郎, ｈａｎａ", 932);
    Read r;
    r.r = ParseSettingsBytes(sjis, 932, r.s, [](const std::string& n) { return n == "黒.txt"; });
    EXPECT_FALSE(r.r.Illegal) << r.r.IllegalKey;
    EXPECT_TRUE(r.s.ShowBoxState);
    EXPECT_EQ(r.s.AlertFile, "黒.txt");
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
    EXPECT_EQ(std::pair(skipped.r.Illegal, skipped.s.AlertTimeMs), std::pair(false, 4000));
    EXPECT_EQ(ReadBytes("CFG = " + big).s.CFG.size(), big.size());
    const Read key = ReadBytes(big + "=1");
    EXPECT_EQ(std::pair(key.r.Illegal, key.r.IllegalKey.size()), std::pair(true, big.size()));
    // NUL bytes inside a key make it unknown, not truncated; nothing after "=" is still a key.
    EXPECT_TRUE(ReadBytes(std::string("AlertTime\0x = 5", 15)).r.Illegal);
    EXPECT_EQ(ReadBytes("Bogus=").r.IllegalKey, "Bogus");
}

// The console tool's test shows the game point and the Japanese default names.
TEST(SettingsPostRead, OwnNamesStayAndWesternDefaultsOnAJapaneseSystem) {
    auto after = [](Settings s, bool systemJapanese) {
        ApplyPostReadRules(s, systemJapanese);
        return s.AlertFile + " " + s.history + (s.JPN ? " JPN" : "");
    };
    Settings jp;
    jp.JPN = true;
    jp.history = "Mine.TXT";
    EXPECT_EQ(after(jp, true), "アラート.TXT Mine.TXT JPN");
    EXPECT_EQ(after(Settings{}, true), "Alert.TXT SpadesHistory.TXT");
}

// Which file is read in which code page goes through the console tool's test.
TEST(SettingsFile, NameInAnyLetterCase) {
    TempDir dir;
    Folders f;
    f.ProgramFolder = dir.Folder();
    EXPECT_EQ(LoadSettings(f, 1252).FileName, "");
    dir.Put("tarvellos.ini", "AlertTime = 1\r\n");
    const SettingsLoad western = LoadSettings(f, 1252);
    EXPECT_EQ(western.FileName + " " + std::to_string(western.Values.AlertTimeMs), "TarvelloS.INI 1000");
}
