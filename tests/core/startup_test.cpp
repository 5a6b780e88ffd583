#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "core/startup.h"
#include "core/text.h"
#include "platform/clock.h"
#include "platform/sim_desktop.h"

using namespace core;

namespace {

class TempDir {
public:
    TempDir() {
        std::random_device rd;
        path_ = std::filesystem::temp_directory_path() / ("core-startup-" + std::to_string(rd()));
        std::filesystem::create_directories(path_);
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    std::string Folder() const { return PathToUtf8(path_); }
    const std::filesystem::path& Path() const { return path_; }
    void Put(const std::string& name, const std::string& bytes) const {
        std::ofstream out(path_ / PathFromUtf8(name), std::ios::binary);
        out << bytes;
    }

private:
    std::filesystem::path path_;
};

// A start-up with the simulated platform and virtual time.
struct Rig {
    platform::SimDesktop desktop{1024, 768};
    platform::VirtualClock clock;
    StartupScreen screen;
    StartupContext ctx{desktop, clock, screen};
    std::uint64_t Waited() const { return clock.Elapsed(); }
};

}  // namespace

TEST(StartupArchiveCheck, MarkersInAnyCase) {
    EXPECT_TRUE(IsArchiveOrSystemFolder("C:\\Users\\me\\AppData\\Local\\Temp\\TarvelloS"));
    EXPECT_TRUE(IsArchiveOrSystemFolder("/home/me/tmp/tarvellos"));
    EXPECT_TRUE(IsArchiveOrSystemFolder("/home/me/Downloads/TarvelloS25.zip/bin"));
    EXPECT_TRUE(IsArchiveOrSystemFolder("C:\\windows\\system32"));
    EXPECT_TRUE(IsArchiveOrSystemFolder("D:\\Templates\\Spades"));  // "TEMP" inside a longer name
    EXPECT_FALSE(IsArchiveOrSystemFolder("D:\\Games\\TarvelloS"));
    EXPECT_FALSE(IsArchiveOrSystemFolder("/opt/spades/zip"));  // "ZIP" without its dot
    EXPECT_FALSE(IsArchiveOrSystemFolder(""));
}

TEST(StartupArchiveCheck, AcceptedFolderPrintsNothing) {
    Rig r;
    EXPECT_TRUE(chkZIP(r.ctx, "D:\\Games\\TarvelloS"));
    EXPECT_EQ(r.screen.Text(), "");
    EXPECT_FALSE(r.screen.Ended);
    EXPECT_EQ(r.Waited(), 0u);
}

TEST(StartupArchiveCheck, RefusalInEnglishEndsAfterTenSeconds) {
    Rig r;
    EXPECT_FALSE(chkZIP(r.ctx, "C:\\Temp\\TarvelloS"));
    EXPECT_EQ(r.screen.Text(),
              "  UnZip TarvelloS25.zip before starting\n"
              "  TarvelloS.exe.\n"
              "\n"
              "  App.Path = C:\\Temp\\TarvelloS\n"
              "\n"
              "  Click END (or ESC) and terminate job.\n"
              "\n"
              "  Waiting . . .");
    EXPECT_TRUE(r.screen.Ended);
    EXPECT_FALSE(r.screen.DeleteAllVisible);
    EXPECT_FALSE(r.screen.DeleteAllEnabled);
    EXPECT_FALSE(r.screen.OtherControlsVisible);
    EXPECT_TRUE(r.screen.EndVisible);
    EXPECT_TRUE(r.screen.EndIsCancel);
    EXPECT_EQ(r.screen.EndCaption, "End");
    EXPECT_GT(r.Waited(), 10000u);
    EXPECT_LE(r.Waited(), 10000u + kFatalStopPollMs);
}

TEST(StartupArchiveCheck, TestFlagAndJapaneseMessages) {
    Rig r;
    r.ctx.JapaneseFont = kFontMeiryo;
    r.ctx.Japanese = true;
    EXPECT_FALSE(chkZIP(r.ctx, "D:\\Games\\TarvelloS", true));
    EXPECT_EQ(r.screen.TextFont, "メイリオ");
    EXPECT_EQ(r.screen.Lines[0], " ZIP の中では実行できません。");
    EXPECT_EQ(r.screen.Lines[1], "TarvelloS.exe を ZIP から抜き出して実行して下さい。");
    EXPECT_NE(r.screen.Text().find("  App.Path = D:\\Games\\TarvelloS"), std::string::npos);
    EXPECT_NE(r.screen.Text().find("  終了 (ESC) ボタンを押して終了して下さい。"), std::string::npos);
    EXPECT_EQ(r.screen.EndCaption, "終了");
    EXPECT_EQ(r.screen.EndFont, "メイリオ");
}

TEST(StartupFatalStop, EndOrEscEndsAtOnce) {
    Rig r;
    r.clock.Schedule(r.clock.TickCount() + 2000, [&r] { r.screen.EndRequested = true; });
    FatalStop(r.ctx);
    EXPECT_TRUE(r.screen.Ended);
    EXPECT_GE(r.Waited(), 2000u);
    EXPECT_LE(r.Waited(), 2000u + kFatalStopPollMs);

    // Pressed before the stop even began: no wait at all.
    Rig early;
    early.screen.EndRequested = true;
    FatalStop(early.ctx);
    EXPECT_TRUE(early.screen.Ended);
    EXPECT_EQ(early.Waited(), 0u);
}

TEST(StartupFatalStop, SurvivesTheTickCounterWrapping) {
    platform::SimDesktop desktop(800, 600);
    platform::VirtualClock clock({}, 0xFFFFFFFFu - 3000);
    StartupScreen screen;
    StartupContext ctx{desktop, clock, screen};
    FatalStop(ctx);
    EXPECT_GT(clock.Elapsed(), 10000u);
    EXPECT_LE(clock.Elapsed(), 10000u + kFatalStopPollMs);
}

TEST(StartupPrevInstance, SecondStartIsRefused) {
    Rig r;
    EXPECT_TRUE(chkPrevInstance(r.ctx));
    EXPECT_EQ(r.screen.Text(), "");

    r.desktop.SetPrevInstance(true);
    EXPECT_FALSE(chkPrevInstance(r.ctx));
    EXPECT_EQ(r.screen.Lines[0], "  You are going to start TarvelloS.exe again.");
    EXPECT_TRUE(r.screen.Ended);
    EXPECT_LE(r.Waited(), 10000u + kFatalStopPollMs);

    Rig jp;
    jp.desktop.SetPrevInstance(true);
    jp.ctx.Japanese = true;
    EXPECT_FALSE(chkPrevInstance(jp.ctx));
    EXPECT_EQ(jp.screen.Lines[0], "  TarvelloS.exe を２重に起動しようとしています。");
}

TEST(StartupJapaneseSystem, CodePageRoundTrip) {
    EXPECT_TRUE(TestOSjp(932));
    EXPECT_FALSE(TestOSjp(1252));
    EXPECT_FALSE(TestOSjp(65001));
    platform::SimDesktop d(800, 600);
    d.SetAnsiCodePage(932);
    EXPECT_TRUE(TestOSjp(d));
    d.SetAnsiCodePage(1252);
    EXPECT_FALSE(TestOSjp(d));
}

TEST(StartupJapaneseSystem, FontChoice) {
    EXPECT_EQ(ChooseJapaneseFont([](const std::string& f) { return f == kFontMsPGothic || f == kFontMeiryo; }),
              "メイリオ");
    EXPECT_EQ(ChooseJapaneseFont([](const std::string& f) { return f == kFontMsPGothic; }), "ＭＳ Ｐゴシック");
    EXPECT_EQ(ChooseJapaneseFont([](const std::string&) { return false; }), "");
    EXPECT_EQ(ChooseJapaneseFont(nullptr), "");
}

TEST(StartupNotices, AbsentSettingsFileBreaksLongPaths) {
    StartupScreen narrow;
    narrow.WidthChars = 60;
    AbsentINIfile(narrow, "C:\\Spades");
    const std::string sep = JoinPath("a", "b").substr(1, 1);
    EXPECT_EQ(narrow.Lines[0], "  Initialization file C:\\Spades");
    EXPECT_EQ(narrow.Lines[1], "  " + sep + "TarvelloS.INI  is not found.");
    EXPECT_EQ(narrow.Lines[2], "  TarvelloS.exe is running with standard setting.");

    StartupScreen wide;
    wide.WidthChars = 10;
    AbsentINIfile(wide, "C:\\Spades\\Companion");
    EXPECT_EQ(wide.Lines[0], "  Initialization file C:\\Spades\\Companion" + sep + "TarvelloS.INI");
    EXPECT_EQ(wide.Lines[1], "  is not found.");
    EXPECT_EQ(wide.Lines[2], "  TarvelloS.exe is running with standard setting.");
}

TEST(StartupFolders, EnsureFolderWithTrailingBackslash) {
    TempDir dir;
    const std::string work = dir.Folder() + "/Work\\";
    EnsureFolder(work);
    ASSERT_TRUE(std::filesystem::is_directory(dir.Path() / "Work"));
    dir.Put("Work/keep.txt", "x");
    EnsureFolder(work);
    EXPECT_TRUE(std::filesystem::exists(dir.Path() / "Work" / "keep.txt"));
    // A file in the way is not replaced, and nothing is thrown.
    dir.Put("Blocked", "x");
    EnsureFolder(dir.Folder() + "/Blocked");
    EXPECT_TRUE(std::filesystem::is_regular_file(dir.Path() / "Blocked"));
}

TEST(StartupFolders, PathsResolveAgainstTheProgramFolder) {
    TempDir dir;
    Folders f;
    f.ProgramFolder = dir.Folder();
    EXPECT_EQ(f.WorkFolder(), PathToUtf8(dir.Path() / "Work"));
    dir.Put("Alert.TXT", "x");
    EXPECT_EQ(f.EnterProgramFolder("ALERT.txt"), PathToUtf8(dir.Path() / "Alert.TXT"));
    EXPECT_EQ(f.EnterProgramFolder("new.txt"), PathToUtf8(dir.Path() / "new.txt"));
    EXPECT_TRUE(f.ProgramFileExists("alert.txt"));
    EXPECT_FALSE(f.ProgramFileExists(""));
    EnsureFolder(f.WorkFolder());
    dir.Put("Work/Deal1.spd", "x");
    EXPECT_EQ(f.EnterWorkFolder("deal1.SPD"), PathToUtf8(dir.Path() / "Work" / "Deal1.spd"));
    f.WorkFolderName = "Work\\SpadeSample";
#ifndef _WIN32
    EXPECT_EQ(f.WorkFolder(), PathToUtf8(dir.Path() / "Work" / "SpadeSample"));
#endif

    platform::SimDesktop d(800, 600);
    d.SetExecutableFolder("/opt/tarvellos");
    EXPECT_EQ(FoldersFor("", d).ProgramFolder, "/opt/tarvellos");
    EXPECT_EQ(FoldersFor("/home/me/spades", d).ProgramFolder, "/home/me/spades");
}

TEST(StartupSequence, NormalStartCreatesTheWorkFolder) {
    TempDir dir;
    dir.Put("TarvelloS.INI", "AlertTime = 4\r\n");
    Rig r;
    Folders f;
    f.ProgramFolder = dir.Folder() + "/Spades";
    std::filesystem::create_directory(dir.Path() / "Spades");
    dir.Put("Spades/TarvelloS.INI", "AlertTime = 4\r\n");
    const StartupOutcome o = RunStartupChecks(r.ctx, f, false);
    EXPECT_TRUE(o.Continue);
    EXPECT_EQ(o.Settings.FileName, "TarvelloS.INI");
    EXPECT_EQ(o.Settings.Values.AlertTimeMs, 4000);
    EXPECT_EQ(r.screen.Text(), "");
    EXPECT_TRUE(std::filesystem::is_directory(dir.Path() / "Spades" / "Work"));
}

TEST(StartupSequence, NoSettingsFileGivesTheNotice) {
    TempDir dir;
    Rig r;
    Folders f;
    f.ProgramFolder = dir.Folder();
    const StartupOutcome o = RunStartupChecks(r.ctx, f, false);
    EXPECT_TRUE(o.Continue);
    EXPECT_EQ(o.Settings.FileName, "");
    EXPECT_NE(r.screen.Text().find("is running with standard setting."), std::string::npos);
    EXPECT_FALSE(r.screen.Ended);
}

TEST(StartupSequence, IllegalKeywordStopsBeforeAnythingIsWritten) {
    TempDir dir;
    dir.Put("TarvelloS.INI", "AlertTime = 4\r\n  Colour = Red \r\n");
    Rig r;
    Folders f;
    f.ProgramFolder = dir.Folder();
    const StartupOutcome o = RunStartupChecks(r.ctx, f, false);
    EXPECT_FALSE(o.Continue);
    EXPECT_EQ(r.screen.Lines[0], "  Colour=Red   Illegal Keyword!");
    EXPECT_TRUE(r.screen.Ended);
    EXPECT_FALSE(std::filesystem::exists(dir.Path() / "Work"));
}

TEST(StartupSequence, JapaneseRequestedOnAWesternSystemComesUpInEnglish) {
    TempDir dir;
    dir.Put("TarvelloS.INI", "JPN = yes\r\n");
    Rig r;
    r.desktop.SetAnsiCodePage(1252);
    Folders f;
    f.ProgramFolder = dir.Folder();
    StartupOutcome o = RunStartupChecks(r.ctx, f, false);
    EXPECT_TRUE(o.Continue);
    EXPECT_FALSE(o.Settings.Values.JPN);
    EXPECT_FALSE(r.ctx.Japanese);

    Rig jp;
    jp.desktop.SetAnsiCodePage(932);
    o = RunStartupChecks(jp.ctx, f, false);
    EXPECT_TRUE(o.Settings.Values.JPN);
    EXPECT_TRUE(jp.ctx.Japanese);
}

TEST(StartupSequence, SecondInstanceAndArchiveFolder) {
    TempDir dir;
    Rig r;
    r.desktop.SetPrevInstance(true);
    Folders f;
    f.ProgramFolder = dir.Folder();
    EXPECT_FALSE(RunStartupChecks(r.ctx, f, false).Continue);
    EXPECT_EQ(r.screen.Lines[0], "  You are going to start TarvelloS.exe again.");

    // The temporary folder the test runs in is itself refused by the archive check.
    Rig z;
    Folders t;
    t.ProgramFolder = "/tmp/x";
    EXPECT_FALSE(RunStartupChecks(z.ctx, t, true).Continue);
    EXPECT_EQ(z.screen.Lines[0], "  UnZip TarvelloS25.zip before starting");
}
