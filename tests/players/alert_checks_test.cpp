#include <gtest/gtest.h>

#include "platform/sim/virtual_clock.h"
#include "platform/sim/sim_desktop.h"
#include "players/alert_checks.h"
#include "core/temp_dir.h"

using namespace players;

namespace {

TableNames Names(std::vector<std::string> names) { return TableNames{names, static_cast<std::int32_t>(names.size())}; }

std::int32_t Search(const std::vector<std::string>& list, TableNames table) {
    std::string found;
    std::int32_t index = -1;
    SearchNameInTable(found, index, list, false, table, nullptr);
    return index;
}

}  // namespace

TEST(AlertMatching, NamesMatchAndTheTableSearch) {
    EXPECT_TRUE(NamesMatch(" ZZ_Name ", "zz_name(Slow)")) << "case, blanks and a reason do not matter";
    EXPECT_FALSE(NamesMatch("zz_name", "zz_nome") || NamesMatch("", "zz_name")) << "an empty text matches nothing";

    // Keys of four or more characters inside table names, case-sensitive.
    std::vector<std::string> list = {"", "abc", "Wxyz(Slow)", "wxyz", "{mark(Cheater)}"};
    EXPECT_EQ(Search(list, Names({"player_abc 1500", "aawxyzbb 1620"})), 3);
    EXPECT_EQ(Search(list, Names({"abcdef 1500", "WXYZ 1200"})), 0) << "capitals differ; 3 letters never match";
    EXPECT_EQ(Search(list, Names({"zz_marker 1400"})), 4) << "the marker pair is dropped";
    EXPECT_EQ(Search(list, Names({"", "wxyz 1300"})), 0) << "names end at the first empty one";
    // Ten short or empty slots end the walk, as does the end of the storage.
    list = {"", "//", "", "", "", "", "", "", "", "", "zz_nine_short", "", "", "zz_after_ten"};
    EXPECT_EQ(Search(list, Names({"zz_nine_short 1"})), 10);
    EXPECT_EQ(Search(list, Names({"zz_after_ten 1"})), 0);
}

namespace {

struct Fixture : ::testing::Test {
    platform::SimDesktop desktop;
    platform::VirtualClock clock;
    AlertList list;
    AlertChecker checker{list, desktop, desktop, clock};
    AlertView& view = checker.View;
    TableNames table;
    platform::WindowHandle game = desktop.AddWindow("Spades - Table 12", {0, 0, 640, 480});
    TableAccess access{game, false, &table, nullptr};
    TempDir dir;

    Fixture() {
        ReadDefaultAlertList(list, {"zz_builtin01(Stupid),{zz_marked(Cheater)},<zz_angled>"});
        checker.Options.MyIds = {"zz_me_first", "zz_me_again"};
        checker.Options.AlertFilePath = dir.File("Alert.TXT");
    }
    void AddUser(const std::string& entry) { list.SetEntry(++list.AlertCount, entry); }
    void Click(int seat, std::function<void(ReasonDialog&)> answer) { checker.menuPlayer_Click(seat, answer); }
    // What the user sees: the alert label (caption, size, colour) and the
    // seat menu (caption, "*" checked, "!" disabled).
    std::string Label() const {
        const LabelModel& l = view.AlertName;
        const char* colour = l.ForeColor == AlertRed ? "red" : l.ForeColor == AlertRose ? "rose" : "?";
        return l.Visible ? l.Caption + " " + std::to_string(l.FontSize) + " " + colour : "hidden";
    }
    std::string Menu() const {
        std::string out;
        for (const auto& m : view.menuPlayer) out += m.Caption + (m.Checked ? "*" : "") + (m.Enabled ? "" : "!") + ",";
        return out;
    }
    std::string File() const { return dir.Get("Alert.TXT"); }
};

const std::string kHeader = "#     << Players to be alerted by TarvelloS. >>\r\n";

}  // namespace

TEST_F(Fixture, SeatCheckMatchesCutNamesButNotMarkedEntries) {
    AddUser("zz_twelve_chXY(Staller");  // no ")": the reason runs to the end
    // Seat names are cut to 12; the user's own seat is disabled; a marked entry never matches a seat.
    EXPECT_EQ(checker.CheckSeatPlayers({"zz_twelve_chXY", "zz_me_again", "zz_marked", "zz_nobody"}), 1);
    EXPECT_EQ(Menu(), "zz_twelve_ch*,zz_me_again!,zz_marked,zz_nobody,");
    EXPECT_EQ(Label(), "zz_twelv(Staller) 12 rose");
    // A new deal: a short seat name finds a longer entry; the old mark goes.
    checker.CheckSeatPlayers({"yy_a", "zz_b", "yy_b", "yy_c"});
    EXPECT_EQ(Menu() + Label(), "yy_a,zz_b*,yy_b,yy_c,zz_b(Stupid) 12 rose");
    checker.CheckSeatPlayers({"yy_a", "yy_b", "yy_c", "yy_d"});
    EXPECT_EQ(Label(), "hidden");
}

TEST_F(Fixture, TableCheckFindsMarkedEntriesAndSounds) {
    table = Names({"zz_me_first 1500", "xzz_marked_2 1810", "zz_other 1200"});
    checker.CheckAlertPlayer(access);
    EXPECT_EQ(Label(), "xzz_mark(Cheater) 18 red");
    EXPECT_EQ(desktop.Sounds(), std::vector<std::string>{"SystemExclamation"});
    EXPECT_TRUE(desktop.Find(game)->Topmost) << "the table is brought up to read its list";
    EXPECT_EQ(Menu(), "North,East,South,West,") << "not seated: no check mark";
    checker.ShowAlert(0, "obot_3");
    EXPECT_EQ(view.AlertName.Caption, "robot_3") << "a robot's name gets its lost first letter back";

    // Not while a check runs or the bidding board is up.
    for (const bool board : {false, true}) {
        view.AlertName.Visible = false;
        checker.InAlertCheck = !board;
        access.BoardShown = board;
        checker.CheckAlertPlayer(access);
        EXPECT_EQ(Label(), "hidden");
    }
    EXPECT_EQ(desktop.Sounds().size(), 1u) << "a check that does not run stays silent";
}

TEST_F(Fixture, AddingAPlayerWithAChosenOrTypedReason) {
    checker.CheckSeatPlayers({"zz_newcomer", "zz_me_first", "zz_typed", "  "});
    const std::uint32_t before = clock.TickCount();
    Click(0, [](ReasonDialog& d) {
        EXPECT_EQ(d.boxReason, ReasonItems()) << "no [UnCheck] for a player not listed";
        d.ClickItem(5);  // "Overbidder"
    });
    EXPECT_EQ(clock.TickCount() - before, 1000u) << "the choice stays a second on the screen";
    EXPECT_EQ(Menu() + Label(), "zz_newcomer*,zz_me_first!,zz_typed,  ,zz_newco(Overbidder) 12 rose");
    EXPECT_TRUE(checker.SettingsChanged);
    // A typed reason cannot split the entry in the file.
    Click(2, [](ReasonDialog& d) {
        d.txtReason = "  slow, rude\r\n";
        d.KeyDown(13);
    });
    EXPECT_EQ(File(), kHeader + "zz_newcomer(Overbidder),zz_typed(slow; rude),");
    // The user's own seat and a seat without a name do nothing.
    Click(1, [](ReasonDialog&) { ADD_FAILURE() << "no dialog for the own seat"; });
    Click(3, [](ReasonDialog&) { ADD_FAILURE() << "no dialog for an empty seat"; });
    EXPECT_EQ(list.AlertCount, 6);
}

TEST_F(Fixture, EditingAndRemovingAListedPlayer) {
    AddUser("zz_listed(Slow)");
    AddUser("zz_keeper");
    AddUser("zz_again(Slow)");
    checker.CheckSeatPlayers({"zz_listed", "yy_a", "zz_again", "yy_c"});
    Click(0, [](ReasonDialog& d) {
        EXPECT_EQ(d.boxReason.back(), "[UnCheck]");
        d.txtReason = "Abusive";
        d.Close();
    });
    EXPECT_EQ(list.Entry(5), "zz_listed(Abusive)");
    EXPECT_EQ(Menu(), "zz_listed*,yy_a,zz_again*,yy_c,");
    Click(0, [](ReasonDialog& d) { d.ClickItem(static_cast<std::int32_t>(d.boxReason.size()) - 1); });
    EXPECT_EQ(Menu() + Label(), "zz_listed,yy_a,zz_again*,yy_c,hidden");
    EXPECT_EQ(checker.SearchAlertPlayer("zz_listed"), 0) << "the emptied slot no longer matches";
    EXPECT_EQ(File(), kHeader + "zz_keeper,zz_again(Slow),");
    // In Japanese; an empty reason removes the player too.
    checker.Options.Japanese = true;
    Click(2, [](ReasonDialog& d) {
        EXPECT_EQ(d.boxReason.back(), "[チェックを外す]");
        d.txtReason = "   ";
    });
    EXPECT_EQ(list.Entry(7) + Menu(), "zz_listed,yy_a,zz_again,yy_c,");

    checker.UnCheckPlayer("//x");
    EXPECT_EQ(list.Entry(list.SeparatorIndex()), "//") << "the separator is never removed";
}

TEST_F(Fixture, PromptStatesAndTheNoneButton) {
    auto none = [this] { return view.cmdAlertNone.Visible ? view.cmdAlertNone.Caption : "hidden"; };
    checker.ShowAskAlert({0, 0, 640, 480});
    table = Names({"zz_nobody 1"});
    checker.ExecAskAlert(access);
    EXPECT_FALSE(checker.AskAlert.Loaded || checker.testAlert()) << "prompt off: nothing shows";

    checker.Options.AskAlertPos = {-100, 0};
    checker.ShowAskAlert({200, 100, 840, 580});
    const std::int32_t shown = checker.AskAlertState;
    EXPECT_EQ((platform::Point{checker.AskAlert.X, checker.AskAlert.Y}), (platform::Point{300, 280}));
    checker.ExecAskAlert(access);
    EXPECT_EQ(std::to_string(shown) + std::to_string(checker.AskAlertState) + " " + none(), "12 None");
    checker.UnloadAskAlert();
    EXPECT_EQ(checker.AskAlertState, 0);

    // Someone found: the None button goes, left with the "checking" caption.
    checker.Options.Japanese = true;
    checker.SetCaptions();
    table = Names({"zz_builtin01 1500"});
    checker.ExecAskAlert(access);
    EXPECT_EQ(Label() + " " + view.cmdAlertNone.Caption + " " + none(), "zz_built(Stupid) 12 rose 確認中 hidden");
    // No list could be read after two tries: no alert, the None button.
    int reads = 0;
    access.ReadPlayerList = [&reads](TableNames& t) {
        ++reads;
        t.Read = 0;
    };
    checker.ExecAskAlert(access);
    EXPECT_EQ(reads, 2);
    EXPECT_EQ(Label() + " " + none(), "hidden 該当者なし");
}
