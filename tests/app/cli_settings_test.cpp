// tarvellos-cli settings, run as a user would run it, on temporary folders.
#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>

#include <sys/wait.h>

#include "core/json.h"
#include "core/temp_dir.h"
#include "core/text.h"

namespace {

struct CliRun {
    int Exit = -1;
    std::string Out, Err;
};

// Runs the tool with a clean locale (plus `env`) and the given arguments.
CliRun RunCli(const std::string& args, const std::string& env = "LANG=C") {
    TempDir io;
    const std::string cmd = "env -u LC_ALL -u LC_CTYPE -u LANG " + env + " '" TARVELLOS_CLI "' settings " + args +
                            " >'" + io.File("out") + "' 2>'" + io.File("err") + "'";
    const int status = std::system(cmd.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, io.Get("out"), io.Get("err")};
}

std::string Home(const TempDir& d) { return "--home '" + d.Folder() + "'"; }

core::Json Parse(const CliRun& r) {
    core::Json j;
    std::string error;
    EXPECT_TRUE(core::Json::Parse(r.Out, j, error)) << error << "\n" << r.Out;
    return j;
}

const core::Json& Setting(const core::Json& j, const std::string& key) {
    static const core::Json missing;
    const core::Json* s = j.Get("settings");
    const core::Json* v = s ? s->Get(key) : nullptr;
    EXPECT_NE(v, nullptr) << key;
    return v ? *v : missing;
}

}  // namespace

TEST(CliSettings, EmptyFolderGivesTheDefaults) {
    TempDir d;
    const CliRun r = RunCli(Home(d));
    ASSERT_EQ(r.Exit, 0) << r.Err;
    EXPECT_EQ(r.Err, "");
    ASSERT_EQ(r.Out.back(), '\n');
    const core::Json j = Parse(r);
    ASSERT_TRUE(j.IsObject());
    EXPECT_EQ(j.Members()[0].first, "file");
    EXPECT_TRUE(j.Get("file")->IsNull());
    EXPECT_TRUE(j.Get("illegal")->IsNull());
    EXPECT_EQ(j.Get("settings")->Size(), 51u);
    EXPECT_EQ(Setting(j, "GamePoint").AsInt(), 500);
    EXPECT_EQ(Setting(j, "WaitTime Hand").AsInt(), 10000);
    EXPECT_EQ(Setting(j, "AlertPlayers").AsString(), "Alert.TXT");
    EXPECT_EQ(Setting(j, "BackColor2").AsInt(), 0xCDCDCD);
    EXPECT_EQ(Setting(j, "log").AsString(), "");
    EXPECT_EQ(Setting(j, "MyHand").Dump(), "{\"layout\": 0, \"pos\": [0, 0]}");
    // The exact separators of the console tool.
    EXPECT_NE(r.Out.find("{\"file\": null, \"illegal\": null, \"settings\": {\"link\": \"\", "), std::string::npos);
}

TEST(CliSettings, WesternFileWithEveryValueForm) {
    TempDir d;
    d.Put("Friends.TXT", "x\r\n");
    d.Put("TarvelloS.INI",
          "# my settings\r\n"
          "link = UK\r\n"
          "CFG = \"Win Pos.CFG\"\r\n"
          "TopMostScoreWindow = yes\r\n"
          "GamePoint = 300\r\n"
          "AlertPlayers = Friends.TXT\r\n"
          "MyYahooID = Alpha, beta gamma\r\n"
          "AutoCapt Bid = No\n"
          "WaitTime Bid = 2.5\r"
          "AlertSound = \"SystemHand\" loud\r\n"
          "Reduce SpadesWindow = 624\r\n"
          "BackColor = &HFFE0C0\r\n"
          "BackColor2 = c0c0ff\r\n"
          "BackColor3 = Ffeedd\r\n"
          "Card Order = descending\r\n"
          "Suit Marks = (100,90,80,70)\r\n"
          "BidTrickCounter = (10,20),(300,20)\r\n"
          "BiddingBoard = (5,6) Modal\r\n"
          "CountCards = yes (*,0)\r\n"
          "MyHand = single\r\n"
          "AlertTime = 5");
    const CliRun r = RunCli(Home(d) + " --codepage 1252");
    ASSERT_EQ(r.Exit, 0) << r.Err;
    const core::Json j = Parse(r);
    EXPECT_EQ(j.Get("file")->AsString(), "TarvelloS.INI");
    EXPECT_EQ(Setting(j, "link").AsString(), "uk");
    EXPECT_EQ(Setting(j, "CFG").AsString(), "Win Pos.CFG");
    EXPECT_EQ(Setting(j, "TopMostScoreWindow").AsInt(), 2);
    EXPECT_EQ(Setting(j, "GamePoint").AsInt(), 500);
    EXPECT_EQ(Setting(j, "AlertPlayers").AsString(), "friends.txt");
    EXPECT_EQ(Setting(j, "MyYahooID").Dump(), "[\"alpha\", \"beta\", \"gamma\"]");
    EXPECT_FALSE(Setting(j, "AutoCapt Bid").AsBool());
    EXPECT_EQ(Setting(j, "WaitTime Bid").AsInt(), 2500);
    EXPECT_EQ(Setting(j, "AlertSound").AsString(), "systemhand");
    EXPECT_EQ(Setting(j, "Reduce SpadesWindow").Dump(), "{\"on\": false, \"width\": 624}");
    EXPECT_EQ(Setting(j, "BackColor").AsInt(), 0xFFE0C0);
    EXPECT_EQ(Setting(j, "BackColor2").AsInt(), 0xC0C0FF);
    EXPECT_EQ(Setting(j, "BackColor3").AsString(), "#ffeedd");
    EXPECT_EQ(Setting(j, "Card Order").AsString(), "descending");
    EXPECT_EQ(Setting(j, "Suit Marks").Dump(), "{\"symbol\": false, \"images\": false, \"widths\": [100, 90, 80, 70]}");
    EXPECT_EQ(Setting(j, "BidTrickCounter").Dump(), "[[10, 20], [300, 20]]");
    EXPECT_EQ(Setting(j, "BiddingBoard").Dump(), "{\"mode\": 7, \"modal\": true, \"pos\": [5, 6]}");
    EXPECT_EQ(Setting(j, "CountCards").Dump(), "[-100, -100]");
    EXPECT_EQ(Setting(j, "MyHand").Dump(), "{\"layout\": 1, \"pos\": [0, 0]}");
    EXPECT_EQ(Setting(j, "AlertTime").AsInt(), 5000);
}

TEST(CliSettings, JapaneseFileInCodePage932) {
    TempDir d;
    d.Put("TarvelloS.INI", "AlertTime = 9\r\n");  // the Japanese name wins
    d.Put("スペード.INI", core::FromUtf8("# 設定\r\n日本語表示 = yes\r\nニル集計 = yes\r\nスコアの表 = no\r\n"
                                         "残りのカード = (1,2)\r\nカードの順序 = 降順\r\nMyYahooID = 太郎\r\n",
                                         932));
    const CliRun r = RunCli(Home(d) + " --codepage 932");
    ASSERT_EQ(r.Exit, 0) << r.Err;
    const core::Json j = Parse(r);
    EXPECT_EQ(j.Get("file")->AsString(), "スペード.INI");
    EXPECT_TRUE(j.Get("illegal")->IsNull());
    EXPECT_TRUE(Setting(j, "日本語表示").AsBool());
    EXPECT_TRUE(Setting(j, "ニル集計").AsBool());
    EXPECT_FALSE(Setting(j, "Score Table").AsBool());
    EXPECT_EQ(Setting(j, "残りのカード").Dump(), "[1, 2]");
    EXPECT_EQ(Setting(j, "Card Order").AsString(), "descending");
    EXPECT_EQ(Setting(j, "MyYahooID").Dump(), "[\"太郎\"]");
    EXPECT_EQ(Setting(j, "AlertPlayers").AsString(), "アラート.TXT");
    EXPECT_EQ(Setting(j, "history").AsString(), "スペード履歴.TXT");
    EXPECT_EQ(Setting(j, "AlertTime").AsInt(), 30000);

    // The locale picks the code page when --codepage is not given.
    const CliRun byLocale = RunCli(Home(d), "LANG=ja_JP.UTF-8");
    ASSERT_EQ(byLocale.Exit, 0) << byLocale.Err;
    EXPECT_TRUE(Setting(Parse(byLocale), "日本語表示").AsBool());
}

TEST(CliSettings, JapaneseInterfaceGoesOffOnAWesternSystem) {
    TempDir d;
    d.Put("tarvellos.ini", "JPN = yes\r\n");
    for (const std::string& how : {std::string("--codepage 1252"), std::string()}) {
        const CliRun r = RunCli(Home(d) + " " + how, "LANG=en_US.UTF-8");
        ASSERT_EQ(r.Exit, 0) << r.Err;
        const core::Json j = Parse(r);
        EXPECT_EQ(j.Get("file")->AsString(), "TarvelloS.INI");
        EXPECT_FALSE(Setting(j, "日本語表示").AsBool());
        // The Japanese default names were set before the interface went off.
        EXPECT_EQ(Setting(j, "AlertPlayers").AsString(), "アラート.TXT");
    }
    const CliRun ja = RunCli(Home(d), "LC_ALL=ja_JP.eucJP");
    EXPECT_TRUE(Setting(Parse(ja), "日本語表示").AsBool());
}

TEST(CliSettings, IllegalKeywordIsReportedWithTheSettingsSoFar) {
    TempDir d;
    d.Put("TarvelloS.INI", "GamePoint = 250\r\nAlertTime = 4\r\n   Colour Scheme =  \"Dark\"  \r\nWaitTime Bid = 7\r\n");
    const CliRun r = RunCli(Home(d) + " --codepage 1252");
    ASSERT_EQ(r.Exit, 0) << r.Err;
    const core::Json j = Parse(r);
    ASSERT_TRUE(j.Get("illegal")->IsObject());
    EXPECT_EQ(j.Get("illegal")->Dump(), "{\"key\": \"Colour Scheme\", \"value\": \"\\\"Dark\\\"\"}");
    EXPECT_EQ(Setting(j, "AlertTime").AsInt(), 4000);
    EXPECT_EQ(Setting(j, "WaitTime Bid").AsInt(), 3000);
    EXPECT_EQ(Setting(j, "GamePoint").AsInt(), 250);  // reading stopped before the post-read rules
}

TEST(CliSettings, MalformedFilesStillGiveAnObject) {
    TempDir d;
    std::mt19937 rng(11);
    std::string garbage(64 * 1024, '\0');
    for (auto& c : garbage) c = static_cast<char>(rng() & 0xFF);
    for (const std::string& bytes : {garbage, std::string(1 << 20, 'k'), std::string("AlertTime=3") + std::string(1 << 20, ' ')}) {
        d.Put("TarvelloS.INI", bytes);
        for (const char* cp : {"1252", "932"}) {
            const CliRun r = RunCli(Home(d) + " --codepage " + cp);
            ASSERT_EQ(r.Exit, 0) << r.Err;
            const core::Json j = Parse(r);
            EXPECT_EQ(j.Get("file")->AsString(), "TarvelloS.INI");
            EXPECT_EQ(j.Get("settings")->Size(), 51u);
        }
    }
    d.Put("TarvelloS.INI", std::string("AlertTime=3") + std::string(1 << 20, ' '));
    EXPECT_EQ(Setting(Parse(RunCli(Home(d))), "AlertTime").AsInt(), 3000);
}

TEST(CliSettings, UsageErrors) {
    TempDir d;
    for (const std::string& args :
         {std::string("--codepage abc"), std::string("--codepage"), std::string("--codepage 0"),
          std::string("--codepage 987654"), std::string("--bogus"), std::string("--home"),
          std::string("--home '") + d.Folder() + "/missing'", std::string("extra")}) {
        const CliRun r = RunCli(args);
        EXPECT_NE(r.Exit, 0) << args;
        EXPECT_EQ(r.Out, "") << args;
        EXPECT_NE(r.Err.find("tarvellos-cli settings:"), std::string::npos) << args;
    }
    // --name=value works as well as two words.
    const CliRun eq = RunCli("--home='" + d.Folder() + "' --codepage=932");
    EXPECT_EQ(eq.Exit, 0) << eq.Err;
}

TEST(CliSettings, DefaultHomeIsTheToolsFolder) {
    const CliRun r = RunCli("--codepage 1252");
    ASSERT_EQ(r.Exit, 0) << r.Err;
    const core::Json j = Parse(r);
    EXPECT_TRUE(j.Get("settings")->IsObject());
}
