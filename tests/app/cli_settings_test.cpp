// tarvellos-cli settings, run as a user would run it, on temporary folders.
#include <gtest/gtest.h>

#include <cstdlib>
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

// The values of `keys` as the tool prints them, one per line.
std::string Values(const core::Json& j, std::initializer_list<const char*> keys) {
    std::string out;
    for (const char* k : keys) out += std::string(k) + ": " + Setting(j, k).Dump() + "\n";
    return out;
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
    EXPECT_EQ(j.Get("settings")->Size(), 51u);
    EXPECT_EQ(Values(j, {"GamePoint", "WaitTime Hand", "AlertPlayers", "BackColor2", "log", "MyHand"}),
              "GamePoint: 500\nWaitTime Hand: 10000\nAlertPlayers: \"Alert.TXT\"\nBackColor2: 13487565\nlog: \"\"\n"
              "MyHand: {\"layout\": 0, \"pos\": [0, 0]}\n");
    // The exact separators of the console tool.
    EXPECT_NE(r.Out.find("{\"file\": null, \"illegal\": null, \"settings\": {\"link\": \"\", "), std::string::npos);
}

TEST(CliSettings, WesternFileWithEveryValueForm) {
    TempDir d;
    d.Put("TarvelloS.INI",
          "link = UK\r\n"
          "CFG = \"Win Pos.CFG\"\r\n"
          "GamePoint = 300\r\n"
          "MyYahooID = Alpha, beta gamma\r\n"
          "AutoCapt Bid = No\n"
          "WaitTime Bid = 2.5\r"
          "AlertSound = \"SystemHand\" loud\r\n"
          "Reduce SpadesWindow = 624\r\n"
          "BackColor = &HFFE0C0\r\n"
          "Suit Marks = (100,90,80,70)\r\n"
          "BidTrickCounter = (10,20),(300,20)\r\n"
          "BiddingBoard = (5,6) Modal\r\n"
          "CountCards = yes (*,0)\r\n"
          "AlertTime = 5");
    const CliRun r = RunCli(Home(d) + " --codepage 1252");
    ASSERT_EQ(r.Exit, 0) << r.Err;
    const core::Json j = Parse(r);
    EXPECT_EQ(j.Get("file")->AsString(), "TarvelloS.INI");
    EXPECT_EQ(Values(j, {"link", "CFG", "GamePoint", "MyYahooID", "AutoCapt Bid", "WaitTime Bid", "AlertSound",
                         "Reduce SpadesWindow", "BackColor", "Suit Marks", "BidTrickCounter", "BiddingBoard", "CountCards",
                         "AlertTime"}),
              R"(link: "uk"
CFG: "Win Pos.CFG"
GamePoint: 500
MyYahooID: ["alpha", "beta", "gamma"]
AutoCapt Bid: false
WaitTime Bid: 2500
AlertSound: "systemhand"
Reduce SpadesWindow: {"on": false, "width": 624}
BackColor: 16769216
Suit Marks: {"symbol": false, "images": false, "widths": [100, 90, 80, 70]}
BidTrickCounter: [[10, 20], [300, 20]]
BiddingBoard: {"mode": 7, "modal": true, "pos": [5, 6]}
CountCards: [-100, -100]
AlertTime: 5000
)");
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
    EXPECT_EQ(Values(j, {"日本語表示", "ニル集計", "Score Table", "残りのカード", "Card Order", "MyYahooID", "AlertPlayers",
                         "history", "AlertTime"}),
              "日本語表示: true\nニル集計: true\nScore Table: false\n残りのカード: [1, 2]\nCard Order: \"descending\"\n"
              "MyYahooID: [\"太郎\"]\nAlertPlayers: \"アラート.TXT\"\nhistory: \"スペード履歴.TXT\"\nAlertTime: 30000\n");
}

TEST(CliSettings, JapaneseInterfaceGoesOffOnAWesternSystem) {
    TempDir d;
    d.Put("tarvellos.ini", "JPN = yes\r\n");
    for (const std::string& how : {std::string("--codepage 1252"), std::string()}) {
        const CliRun r = RunCli(Home(d) + " " + how, "LANG=en_US.UTF-8");
        ASSERT_EQ(r.Exit, 0) << r.Err;
        const core::Json j = Parse(r);
        EXPECT_EQ(j.Get("file")->AsString(), "TarvelloS.INI");
        // The Japanese default names were set before the interface went off.
        EXPECT_EQ(Values(j, {"日本語表示", "AlertPlayers"}), "日本語表示: false\nAlertPlayers: \"アラート.TXT\"\n");
    }
    // The locale picks the code page when --codepage is not given.
    const CliRun ja = RunCli(Home(d), "LC_ALL=ja_JP.eucJP");
    EXPECT_TRUE(Setting(Parse(ja), "日本語表示").AsBool());
}

TEST(CliSettings, IllegalKeywordIsReportedWithTheSettingsSoFar) {
    TempDir d;
    d.Put("TarvelloS.INI", "GamePoint = 250\r\nAlertTime = 4\r\n   Colour Scheme =  \"Dark\"  \r\nWaitTime Bid = 7\r\n");
    const CliRun r = RunCli(Home(d) + " --codepage 1252");
    ASSERT_EQ(r.Exit, 0) << r.Err;
    const core::Json j = Parse(r);
    EXPECT_EQ(j.Get("illegal")->Dump(), "{\"key\": \"Colour Scheme\", \"value\": \"\\\"Dark\\\"\"}");
    // Reading stopped there, before the post-read rules.
    EXPECT_EQ(Values(j, {"AlertTime", "WaitTime Bid", "GamePoint"}), "AlertTime: 4000\nWaitTime Bid: 3000\nGamePoint: 250\n");
}

TEST(CliSettings, UsageErrorsAndArgumentForms) {
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
    // Without --home the tool reads its own folder.
    const CliRun byDefault = RunCli("--codepage 1252");
    ASSERT_EQ(byDefault.Exit, 0) << byDefault.Err;
    EXPECT_TRUE(Parse(byDefault).Get("settings")->IsObject());
}
