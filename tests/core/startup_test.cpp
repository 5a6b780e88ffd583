#include <gtest/gtest.h>

#include <tuple>

#include "core/startup.h"
#include "core/text.h"
#include "platform/sim/virtual_clock.h"
#include "platform/sim/sim_desktop.h"
#include "temp_dir.h"

using namespace core;

namespace {

// A start-up on the simulated platform with virtual time, its program
// folder a fresh temporary folder.
struct Rig {
    explicit Rig(std::uint32_t startTick = 1000000) : clock({}, startTick) { folders.ProgramFolder = dir.Folder(); }
    TempDir dir;
    Folders folders;
    platform::SimDesktop desktop{1024, 768};
    platform::VirtualClock clock;
    StartupScreen screen;
    StartupContext ctx{desktop, clock, screen};
    StartupOutcome Run() { return RunStartupChecks(ctx, folders, false); }
};

// The fatal stop ended at `ms` or within one poll after it.
bool StoppedAfter(const Rig& r, std::uint32_t ms) {
    return r.clock.Elapsed() >= ms && r.clock.Elapsed() <= ms + kFatalStopPollMs;
}

}  // namespace

TEST(StartupArchiveCheck, MarkersInAnyCase) {
    for (const char* refused : {"C:\\Users\\me\\AppData\\Local\\Temp\\TarvelloS", "/home/me/tmp/tarvellos",
                                "/home/me/Downloads/TarvelloS25.zip/bin", "C:\\windows\\system32",
                                "D:\\Templates\\Spades"})  // "TEMP" inside a longer name counts
        EXPECT_TRUE(IsArchiveOrSystemFolder(refused)) << refused;
    for (const char* accepted : {"D:\\Games\\TarvelloS", "/opt/spades/zip", ""})  // "ZIP" needs its dot
        EXPECT_FALSE(IsArchiveOrSystemFolder(accepted)) << accepted;
}

TEST(StartupArchiveCheck, RefusalInEnglishEndsAfterTenSeconds) {
    Rig r;
    EXPECT_FALSE(chkZIP(r.ctx, "C:\\Temp\\TarvelloS"));
    EXPECT_EQ(r.screen.Text(),
              "  UnZip TarvelloS25.zip before starting\n  TarvelloS.exe.\n\n  App.Path = C:\\Temp\\TarvelloS\n\n"
              "  Click END (or ESC) and terminate job.\n\n  Waiting . . .");
    // Only "End" is left, and Esc presses it.
    const StartupScreen& s = r.screen;
    EXPECT_EQ(std::tuple(s.Ended, s.DeleteAllVisible, s.DeleteAllEnabled, s.OtherControlsVisible, s.EndVisible,
                         s.EndIsCancel, s.EndCaption),
              std::tuple(true, false, false, false, true, true, std::string("End")));
    EXPECT_TRUE(StoppedAfter(r, 10001));
}

TEST(StartupJapaneseMessages, ArchiveFolderWithTheTestFlagAndSecondStart) {
    Rig r;
    r.ctx.JapaneseFont = kFontMeiryo;
    r.ctx.Japanese = true;
    EXPECT_FALSE(chkZIP(r.ctx, "D:\\Games\\TarvelloS", true));
    EXPECT_EQ(r.screen.Lines[0] + "|" + r.screen.Lines[1] + "|" + r.screen.EndCaption + "|" + r.screen.TextFont +
                  "|" + r.screen.EndFont,
              " ZIP の中では実行できません。|TarvelloS.exe を ZIP から抜き出して実行して下さい。|終了|メイリオ|メイリオ");
    EXPECT_NE(r.screen.Text().find("  終了 (ESC) ボタンを押して終了して下さい。"), std::string::npos);

    Rig twice;
    twice.desktop.SetPrevInstance(true);
    twice.ctx.Japanese = true;
    EXPECT_FALSE(chkPrevInstance(twice.ctx));
    EXPECT_EQ(twice.screen.Lines[0], "  TarvelloS.exe を２重に起動しようとしています。");
}

TEST(StartupFatalStop, EndOrEscEndsAtOnceAndTheTickCounterMayWrap) {
    Rig r;
    r.clock.Schedule(r.clock.TickCount() + 2000, [&r] { r.screen.EndRequested = true; });
    FatalStop(r.ctx);
    EXPECT_TRUE(r.screen.Ended && StoppedAfter(r, 2000));

    Rig early;  // pressed before the stop even began: no wait at all
    early.screen.EndRequested = true;
    FatalStop(early.ctx);
    EXPECT_TRUE(early.screen.Ended && early.clock.Elapsed() == 0u);

    Rig wrap(0xFFFFFFFFu - 3000);
    FatalStop(wrap.ctx);
    EXPECT_TRUE(StoppedAfter(wrap, 10001));
}

TEST(StartupJapaneseSystem, CodePageAndFont) {
    EXPECT_TRUE(TestOSjp(932) && !TestOSjp(1252));
    EXPECT_EQ(ChooseJapaneseFont([](const std::string& f) { return f == kFontMsPGothic || f == kFontMeiryo; }),
              "メイリオ");
    EXPECT_EQ(ChooseJapaneseFont([](const std::string& f) { return f == kFontMsPGothic; }), "ＭＳ Ｐゴシック");
    EXPECT_EQ(ChooseJapaneseFont(nullptr), "");
}

TEST(StartupNotices, AbsentSettingsFileBreaksLongPaths) {
    const std::string sep = JoinPath("a", "b").substr(1, 1);
    StartupScreen narrow;
    narrow.WidthChars = 60;
    AbsentINIfile(narrow, "C:\\Spades");
    EXPECT_EQ(narrow.Text(), "  Initialization file C:\\Spades\n  " + sep +
                                 "TarvelloS.INI  is not found.\n  TarvelloS.exe is running with standard setting.");
    StartupScreen wide;
    wide.WidthChars = 10;
    AbsentINIfile(wide, "C:\\Spades\\Companion");
    EXPECT_EQ(wide.Text(), "  Initialization file C:\\Spades\\Companion" + sep +
                               "TarvelloS.INI\n  is not found.\n  TarvelloS.exe is running with standard setting.");
}

TEST(StartupFolders, EnsureFolderAndPathsInTheProgramFolder) {
    TempDir dir;
    const std::string work = dir.Folder() + "/Work\\";  // one trailing backslash is removed
    EnsureFolder(work);
    ASSERT_TRUE(std::filesystem::is_directory(dir.Path() / "Work"));
    dir.Put("Work/Deal1.spd", "x");
    EnsureFolder(work);
    EXPECT_TRUE(std::filesystem::exists(dir.Path() / "Work" / "Deal1.spd"));
    dir.Put("Blocked", "x");  // a file in the way is not replaced, and nothing is thrown
    EnsureFolder(dir.Folder() + "/Blocked");
    EXPECT_TRUE(std::filesystem::is_regular_file(dir.Path() / "Blocked"));

    Folders f;
    f.ProgramFolder = dir.Folder();
    dir.Put("Alert.TXT", "x");
    EXPECT_EQ(f.EnterProgramFolder("ALERT.txt"), PathToUtf8(dir.Path() / "Alert.TXT"));
    EXPECT_FALSE(f.ProgramFileExists(""));
    EXPECT_EQ(f.EnterWorkFolder("deal1.SPD"), PathToUtf8(dir.Path() / "Work" / "Deal1.spd"));
#ifndef _WIN32
    f.WorkFolderName = "Work\\SpadeSample";
    EXPECT_EQ(f.WorkFolder(), PathToUtf8(dir.Path() / "Work" / "SpadeSample"));
#endif
    platform::SimDesktop d(800, 600);
    d.SetExecutableFolder("/opt/tarvellos");
    EXPECT_EQ(FoldersFor("", d).ProgramFolder, "/opt/tarvellos");
    EXPECT_EQ(FoldersFor("/home/me/spades", d).ProgramFolder, "/home/me/spades");
}

TEST(StartupSequence, NormalStartWithAndWithoutASettingsFile) {
    Rig none;
    StartupOutcome o = none.Run();
    EXPECT_TRUE(o.Continue && o.Settings.FileName.empty() && !none.screen.Ended);
    EXPECT_NE(none.screen.Text().find("is running with standard setting."), std::string::npos);

    Rig r;
    r.dir.Put("TarvelloS.INI", "AlertTime = 4\r\n");
    o = r.Run();
    EXPECT_TRUE(o.Continue && r.screen.Text().empty());
    EXPECT_EQ(o.Settings.Values.AlertTimeMs, 4000);
    EXPECT_TRUE(std::filesystem::is_directory(r.dir.Path() / "Work"));
}

TEST(StartupSequence, JapaneseRequestedOnAWesternSystemComesUpInEnglish) {
    for (const int codePage : {1252, 932}) {
        Rig r;
        r.dir.Put("TarvelloS.INI", "JPN = yes\r\n");
        r.desktop.SetAnsiCodePage(codePage);
        const StartupOutcome o = r.Run();
        EXPECT_TRUE(o.Continue);
        EXPECT_EQ(std::tuple(o.Settings.Values.JPN, r.ctx.Japanese), std::tuple(codePage == 932, codePage == 932));
    }
}

TEST(StartupSequence, FailedChecksStopBeforeAnythingIsWritten) {
    // A bad settings key, a second start, an archive (here: temporary) folder.
    const char* const firstLines[] = {"  Colour=Red   Illegal Keyword!", "  You are going to start TarvelloS.exe again.",
                                      "  UnZip TarvelloS25.zip before starting"};
    for (int failure = 0; failure < 3; ++failure) {
        Rig r;
        r.dir.Put("TarvelloS.INI", failure == 0 ? "AlertTime = 4\r\n  Colour = Red \r\n" : "");
        r.desktop.SetPrevInstance(failure == 1);
        if (failure == 2) r.folders.ProgramFolder = r.dir.Folder() + "/Temp";
        EXPECT_FALSE(RunStartupChecks(r.ctx, r.folders, failure == 2).Continue);
        EXPECT_EQ(r.screen.Lines[0], firstLines[failure]);
        EXPECT_TRUE(r.screen.Ended);
        EXPECT_FALSE(std::filesystem::exists(PathFromUtf8(r.folders.ProgramFolder) / "Work"));
    }
}

namespace {

// Temporary files a crashed run left beside the player's files go at start,
// in the program and the work folder; nothing else of the player's does.
TEST(StartupLeftovers, OurOwnTempFilesAreRemovedAtStart) {
    Rig r;
    std::filesystem::create_directories(r.dir.Path() / "Work");
    const char* ours[] = {"TarvelloS.INI.tmp~", "Alert.TXT.tmp~", "Work/03_05_001.spd.tmp~", "Work/RecordNILs.BAK.tmp",
                          "Work/RecordNILs.TXT.tmp~"};
    const char* theirs[] = {"notes.tmp", "Alert.TXT", "~", ".tmp~x", "Work/RecordNILs.BAK", "Work/other.BAK.tmp",
                            "Work/03_05_001.spd"};
    for (const char* f : ours) r.dir.Put(f, "half");
    for (const char* f : theirs) r.dir.Put(f, "keep");
    std::filesystem::create_directories(r.dir.Path() / "Work" / "Sub");
    r.dir.Put("Work/Sub/deep.tmp~", "not ours to look into");
    const StartupOutcome out = r.Run();
    ASSERT_TRUE(out.Continue);
    EXPECT_EQ(out.RemovedTempFiles.size(), std::size(ours));
    for (const char* f : ours) EXPECT_FALSE(std::filesystem::exists(r.dir.Path() / f)) << f;
    for (const char* f : theirs) EXPECT_EQ(r.dir.Get(f), "keep") << f;
    EXPECT_TRUE(std::filesystem::exists(r.dir.Path() / "Work" / "Sub" / "deep.tmp~"));
}

}  // namespace
