#include <gtest/gtest.h>

#include "platform/clock.h"
#include "platform/sim_desktop.h"
#include "players/alert_checks.h"
#include "players/test_dir.h"

using namespace players;
using players_test::ReadBytes;
using players_test::TempDir;

TEST(NamesMatch, PrefixOfTheLongerIgnoringCaseAndBlanks) {
    EXPECT_TRUE(NamesMatch("zz_twelve_ch", "zz_twelve_chab(Staller)"));
    EXPECT_TRUE(NamesMatch(" ZZ_Name ", "zz_name"));
    EXPECT_TRUE(NamesMatch("zz_name(Slow)", "zz_name"));
    EXPECT_FALSE(NamesMatch("zz_name", "zz_nome"));
    EXPECT_FALSE(NamesMatch("", "zz_name")) << "an empty text matches nothing";
    EXPECT_FALSE(NamesMatch("   ", ""));
    EXPECT_FALSE(NamesMatch("{zz_name}", "zz_name")) << "a marker is part of the text";
}

TEST(PickUpCmt, ReasonBetweenTheParentheses) {
    std::string cmt = "old";
    PickUpCmt(cmt, "zz_name");
    EXPECT_EQ(cmt, "old") << "no parenthesis: left alone";
    PickUpCmt(cmt, "zz_name(Bad Play)x");
    EXPECT_EQ(cmt, "Bad Play");
    PickUpCmt(cmt, "zz_name(runs on");
    EXPECT_EQ(cmt, "runs on");
    PickUpCmt(cmt, "{zz_n(a)(b)}");
    EXPECT_EQ(cmt, "a");
    EXPECT_EQ(EntryKey("{zz_n(a)}"), "zz_n");
    EXPECT_EQ(EntryKey("<zz_n>"), "zz_n");
    EXPECT_EQ(EntryKey("{"), "");
}

namespace {

TableNames Names(std::vector<std::string> names) {
    TableNames t;
    t.Read = static_cast<std::int32_t>(names.size());
    t.Names = std::move(names);
    return t;
}

std::int32_t Search(const std::vector<std::string>& list, TableNames table, std::string* foundOut = nullptr) {
    std::string found = "unchanged";
    std::int32_t index = -1;
    SearchNameInTable(found, index, list, false, table, nullptr);
    if (foundOut) *foundOut = found;
    return index;
}

}  // namespace

TEST(SearchNameInTable, CaseSensitiveContainmentOfKeysOfFourOrMore) {
    std::vector<std::string> list = {"", "abc", "Wxyz(Slow)", "wxyz", "{mark(Cheater)}"};
    std::string found;
    EXPECT_EQ(Search(list, Names({"player_abc 1500", "aawxyzbb 1620"}), &found), 3);
    EXPECT_EQ(found, "aawxyzbb 1620");
    EXPECT_EQ(Search(list, Names({"abcdef 1500", "WXYZ 1200"}), &found), 0) << "capitals differ; 3 letters never match";
    EXPECT_EQ(found, "");
    EXPECT_EQ(Search(list, Names({"zz_marker 1400"})), 4) << "the marker pair is dropped";
    EXPECT_EQ(Search(list, Names({"", "wxyz 1300"})), 0) << "names end at the first empty one";
}

TEST(SearchNameInTable, TenShortEntriesEndTheWalk) {
    std::vector<std::string> list = {"", "//"};
    for (int i = 0; i < 8; ++i) list.push_back("");
    list.push_back("zz_nine_short");  // after nine short ones: still reached
    for (int i = 0; i < 2; ++i) list.push_back("");
    list.push_back("zz_after_ten");
    EXPECT_EQ(Search(list, Names({"zz_nine_short 1"})), 10);
    EXPECT_EQ(Search(list, Names({"zz_after_ten 1"})), 0);
    EXPECT_EQ(Search({"", "zz_x"}, Names({"zz_y"})), 0) << "the end of the storage ends the walk";
}

TEST(SearchNameInTable, ReadsTheListAgainUpToTwice) {
    std::vector<std::string> list = {"", "zz_wanted"};
    TableNames table;
    int reads = 0;
    std::string found = "unchanged";
    std::int32_t index = -1;
    SearchNameInTable(found, index, list, true, table, [&](TableNames& t) { ++reads; t.Read = 0; });
    EXPECT_EQ(reads, 2);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(found, "unchanged") << "no list read: found is kept";

    reads = 0;
    SearchNameInTable(found, index, list, true, table, [&](TableNames& t) {
        ++reads;
        t = Names({"zz_wanted 1700"});
    });
    EXPECT_EQ(reads, 1);
    EXPECT_EQ(index, 1);
}

namespace {

struct Fixture : ::testing::Test {
    platform::SimDesktop desktop;
    platform::VirtualClock clock;
    AlertList list;
    AlertChecker checker{list, desktop, clock};
    TableNames table;
    platform::WindowHandle game = desktop.AddWindow("Spades - Table 12", {0, 0, 640, 480});
    TableAccess access{game, false, &table, nullptr};

    Fixture() {
        ReadDefaultAlertList(list, {"zz_builtin01(Stupid),{zz_marked(Cheater)},<zz_angled>"});
        checker.Options.MyIds = {"zz_me_first", "zz_me_again"};
    }
    void AddUser(const std::string& entry) { list.SetEntry(++list.AlertCount, entry); }
};

}  // namespace

TEST_F(Fixture, SeatCheckMatchesCutNamesAndShowsAShortenedName) {
    AddUser("zz_twelve_chXY(Staller)");
    std::int32_t own = checker.CheckSeatPlayers({"zz_twelve_chXY", "zz_me_again", "zz_marked", "zz_nobody"});
    EXPECT_EQ(own, 1);
    EXPECT_EQ(checker.View.menuPlayer[0].Caption, "zz_twelve_ch") << "seat names are cut to 12";
    EXPECT_TRUE(checker.View.menuPlayer[0].Checked);
    EXPECT_FALSE(checker.View.menuPlayer[1].Enabled) << "the user's own seat";
    EXPECT_FALSE(checker.View.menuPlayer[2].Checked) << "a marked entry never matches a seat";
    EXPECT_FALSE(checker.View.menuPlayer[3].Checked);
    EXPECT_TRUE(checker.View.AlertName.Visible);
    EXPECT_EQ(checker.View.AlertName.Caption, "zz_twelv(Staller)");
    EXPECT_EQ(checker.View.AlertName.ForeColor, AlertRose);
    EXPECT_EQ(checker.View.AlertName.FontSize, 12);

    // A new deal without listed players hides the label and the marks.
    checker.CheckSeatPlayers({"yy_a", "yy_b", "yy_c", "yy_d"});
    EXPECT_FALSE(checker.View.AlertName.Visible);
    EXPECT_FALSE(checker.View.menuPlayer[0].Checked);

    // Prefixes match either way: a short seat name finds a longer entry.
    checker.CheckSeatPlayers({"zz_b", "yy_a", "yy_b", "yy_c"});
    EXPECT_TRUE(checker.View.menuPlayer[0].Checked);
    EXPECT_EQ(checker.View.AlertName.Caption, "zz_b(Stupid)");
}

TEST_F(Fixture, TableCheckFindsMarkedEntriesShowsThemLargeAndSounds) {
    table = Names({"zz_me_first 1500", "xzz_marked_2 1810", "zz_other 1200"});
    checker.CheckAlertPlayer(access);
    EXPECT_TRUE(checker.View.AlertName.Visible);
    EXPECT_EQ(checker.View.AlertName.Caption, "xzz_mark(Cheater)");
    EXPECT_EQ(checker.View.AlertName.FontSize, 18);
    EXPECT_EQ(checker.View.AlertName.ForeColor, AlertRed);
    EXPECT_EQ(desktop.Sounds(), std::vector<std::string>{"SystemExclamation"});
    EXPECT_TRUE(desktop.Find(game)->Topmost) << "the table is brought up to read its list";
    EXPECT_FALSE(checker.InAlertCheck);
    EXPECT_FALSE(checker.View.menuPlayer[0].Checked) << "not seated: no check mark";

    table = Names({"zz_angled_one 1400"});
    desktop.SetFamily(platform::PlatformFamily::Win9x);
    checker.CheckAlertPlayer(access);
    EXPECT_EQ(checker.View.AlertName.FontSize, 15);
    EXPECT_EQ(checker.View.AlertName.Caption, "zz_angled_one");
    EXPECT_EQ(desktop.Beeps(), 1) << "the older family can only beep";
}

TEST_F(Fixture, TableCheckStaysQuietWhenItMayNotRun) {
    table = Names({"zz_builtin01 1500"});
    checker.InAlertCheck = true;
    checker.CheckAlertPlayer(access);
    EXPECT_FALSE(checker.View.AlertName.Visible);
    checker.InAlertCheck = false;
    access.BoardShown = true;
    checker.CheckAlertPlayer(access);
    EXPECT_FALSE(checker.View.AlertName.Visible);
    EXPECT_TRUE(desktop.Sounds().empty());
}

TEST_F(Fixture, RobotNamesGetTheirLostFirstLetterBack) {
    checker.ShowAlert(0, "obot_3");
    EXPECT_EQ(checker.View.AlertName.Caption, "robot_3");
}

TEST_F(Fixture, AddingAPlayerWithAChosenReason) {
    TempDir dir;
    checker.Options.AlertFilePath = dir.File("Alert.TXT");
    checker.CheckSeatPlayers({"zz_newcomer", "zz_me_first", "yy_b", "yy_c"});
    std::uint32_t before = clock.TickCount();
    std::vector<std::string> offered;
    checker.menuPlayer_Click(0, [&](ReasonDialog& d) {
        EXPECT_EQ(d.Caption, "Why Alert ?");
        EXPECT_EQ(d.txtReason, "");
        offered = d.boxReason;
        d.ClickItem(5);  // "Overbidder"
    });
    EXPECT_EQ(offered, ReasonItems()) << "no [UnCheck] for a player not listed";
    EXPECT_EQ(clock.TickCount() - before, 1000u) << "the choice stays a second on the screen";
    EXPECT_EQ(list.Entry(list.AlertCount), "zz_newcomer(Overbidder)");
    EXPECT_TRUE(checker.View.menuPlayer[0].Checked);
    EXPECT_EQ(checker.View.AlertName.Caption, "zz_newco(Overbidder)");
    EXPECT_TRUE(checker.SettingsChanged);
    EXPECT_EQ(ReadBytes(dir.File("Alert.TXT")),
              "#     << Players to be alerted by TarvelloS. >>\r\nzz_newcomer(Overbidder),");

    // The user's own seat and a seat without a name do nothing.
    std::int32_t count = list.AlertCount;
    checker.menuPlayer_Click(1, [](ReasonDialog&) { ADD_FAILURE() << "no dialog for the own seat"; });
    checker.View.menuPlayer[2].Caption = "  ";
    checker.menuPlayer_Click(2, [](ReasonDialog&) { ADD_FAILURE() << "no dialog for an empty seat"; });
    EXPECT_EQ(list.AlertCount, count);
}

TEST_F(Fixture, TypedReasonsCannotSplitTheEntryInTheFile) {
    checker.CheckSeatPlayers({"zz_typed", "yy_a", "yy_b", "yy_c"});
    checker.menuPlayer_Click(0, [](ReasonDialog& d) {
        d.txtReason = "  slow, rude\r\n";
        d.KeyDown(13);
    });
    EXPECT_EQ(list.Entry(list.AlertCount), "zz_typed(slow; rude)");
}

TEST_F(Fixture, EditingAndRemovingAListedPlayer) {
    TempDir dir;
    checker.Options.AlertFilePath = dir.File("Alert.TXT");
    AddUser("zz_listed(Slow)");
    AddUser("zz_keeper");
    checker.CheckSeatPlayers({"zz_listed", "yy_a", "yy_b", "yy_c"});
    ASSERT_TRUE(checker.View.menuPlayer[0].Checked);

    checker.menuPlayer_Click(0, [](ReasonDialog& d) {
        EXPECT_EQ(d.txtReason, "Slow");
        EXPECT_EQ(d.ListIndex, 11) << "the current reason is selected";
        EXPECT_EQ(d.boxReason.back(), "[UnCheck]");
        d.txtReason = "Abusive";
        d.Close();
    });
    EXPECT_EQ(list.Entry(5), "zz_listed(Abusive)");
    EXPECT_TRUE(checker.View.menuPlayer[0].Checked);

    checker.menuPlayer_Click(0, [](ReasonDialog& d) { d.ClickItem(static_cast<std::int32_t>(d.boxReason.size()) - 1); });
    EXPECT_EQ(list.Entry(5), "") << "the slot is emptied";
    EXPECT_FALSE(checker.View.menuPlayer[0].Checked);
    EXPECT_FALSE(checker.View.AlertName.Visible);
    EXPECT_EQ(checker.SearchAlertPlayer("zz_listed"), 0);
    std::string file = ReadBytes(dir.File("Alert.TXT"));
    EXPECT_EQ(file.find("zz_listed"), std::string::npos);
    EXPECT_NE(file.find("zz_keeper,"), std::string::npos);
}

TEST_F(Fixture, AnEmptyReasonRemovesAListedPlayer) {
    AddUser("zz_listed(Slow)");
    checker.Options.Japanese = true;
    checker.CheckSeatPlayers({"yy_a", "yy_b", "zz_listed", "yy_c"});
    checker.menuPlayer_Click(2, [](ReasonDialog& d) {
        EXPECT_EQ(d.Caption, "アラートの理由");
        EXPECT_EQ(d.boxReason.back(), "[チェックを外す]");
        EXPECT_FALSE(d.ListFontName.empty());
        d.txtReason = "   ";
    });
    EXPECT_EQ(list.Entry(5), "");
    EXPECT_FALSE(checker.View.menuPlayer[2].Checked);
}

TEST_F(Fixture, TheSeparatorIsNeverRemoved) {
    checker.UnCheckPlayer("//x");
    EXPECT_EQ(list.Entry(list.SeparatorIndex()), "//");
    checker.UnCheckPlayer("zz_builtin01");
    EXPECT_EQ(list.Entry(1), "") << "built-in entries can be removed for this run";
}

TEST_F(Fixture, PromptStatesAndTheNoneButton) {
    checker.Options.AskAlertPos = {-100, 0};
    checker.SetCaptions();
    EXPECT_EQ(checker.View.cmdAlertNone.Caption, "None To Alert ?");
    checker.ShowAskAlert({200, 100, 840, 580});
    EXPECT_EQ(checker.AskAlertState, 1);
    EXPECT_EQ(checker.AskAlert.X, 300);
    EXPECT_EQ(checker.AskAlert.Y, 280);
    checker.cmdAsk_Click();
    EXPECT_TRUE(checker.AskAlertPending());

    table = Names({"zz_nobody_here 1500"});
    checker.ExecAskAlert(access);
    EXPECT_EQ(checker.AskAlertState, 2);
    EXPECT_EQ(checker.View.cmdAlertNone.Caption, "None");
    EXPECT_TRUE(checker.View.cmdAlertNone.Visible);
    EXPECT_EQ(checker.View.cmdAlertNone.BackColor, AlertLightBlue);
    EXPECT_TRUE(checker.testAlert());

    checker.ShowAskAlert({0, 0, 640, 480});
    EXPECT_EQ(checker.AskAlertState, 2) << "showing it again does not load it again";
    checker.UnloadAskAlert();
    EXPECT_EQ(checker.AskAlertState, 0);
    EXPECT_FALSE(checker.AskAlert.Visible);
}

TEST_F(Fixture, ExecAskAlertHidesTheNoneButtonWhenSomeoneIsFound) {
    checker.Options.AskAlertPos = {50, 60};
    checker.Options.Japanese = true;
    checker.SetCaptions();
    table = Names({"zz_builtin01 1500"});
    checker.ExecAskAlert(access);
    EXPECT_TRUE(checker.View.AlertName.Visible);
    EXPECT_FALSE(checker.View.cmdAlertNone.Visible);
    EXPECT_EQ(checker.View.cmdAlertNone.Caption, "確認中");
    EXPECT_EQ(checker.View.cmdAlertNone.BackColor, AlertOrange);

    // No list could be read: no alert, the None button with its caption.
    table = TableNames{};
    access.ReadPlayerList = [](TableNames& t) { t.Read = 0; };
    checker.ExecAskAlert(access);
    EXPECT_FALSE(checker.View.AlertName.Visible);
    EXPECT_TRUE(checker.View.cmdAlertNone.Visible);
    EXPECT_EQ(checker.View.cmdAlertNone.Caption, "該当者なし");
}

TEST_F(Fixture, PromptOffShowsNothing) {
    checker.ShowAskAlert({0, 0, 640, 480});
    EXPECT_FALSE(checker.AskAlert.Loaded);
    table = Names({"zz_nobody 1"});
    checker.ExecAskAlert(access);
    EXPECT_FALSE(checker.View.cmdAlertNone.Visible);
    EXPECT_FALSE(checker.testAlert());
}
