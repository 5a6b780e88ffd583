#include "display/file_box.h"

#include <gtest/gtest.h>

#include "temp_dir.h"

using namespace display;
using display_test::Exists;
using display_test::ReadBytes;
using display_test::TempDir;
using display_test::WriteBytes;

namespace {

struct Box {
    TempDir dir;
    FileBox box;
    void Put(const std::string& file, const std::string& text) { WriteBytes(dir.WorkFile(file), text); }
    std::string Get(const std::string& file) { return ReadBytes(dir.WorkFile(file)); }
};

}  // namespace

TEST(FileBox, FillListsRecordsNewestFirstWithoutBackupsOrTheMarker) {
    Box b;
    b.Put("03_05_001.spd", "1");
    b.Put("03_05_007.spd", "7");
    b.Put("03_04_002.SPD", "2");
    b.Put("BAK03_05_003.spd", "b");
    b.Put("SpadesBid.spd", "");
    b.Put("RecordNILs.TXT", "");
    std::filesystem::create_directory(b.dir.WorkFile("folder.spd"));
    b.box.Fill(b.dir.Work());
    EXPECT_EQ(b.box.Entries, (std::vector<std::string>{"03_05_007", "03_05_001", "03_04_002"}));
    EXPECT_EQ(b.box.SelectedCount(), 0);

    b.box.InsertTop("03_05_008");
    EXPECT_EQ(b.box.Entries.front(), "03_05_008");
    EXPECT_TRUE(b.box.Selected[0]);
    EXPECT_EQ(b.box.SelectedCount(), 1);

    FileBox none;
    none.Fill(b.dir.WorkFile("no such folder"));
    EXPECT_EQ(none.Count(), 0);
}

TEST(FileBox, DeleteWaitsForTheAnswerAndLocksTheOtherFileOperations) {
    Box b;
    b.Put("03_05_001.spd", "one");
    b.box.Fill(b.dir.Work());
    // Nothing selected: nothing happens.
    EXPECT_FALSE(b.box.filBox_KeyDown(KeyDelete));
    EXPECT_EQ(b.box.DeleteState, DelIdle);

    b.box.Select(0);
    EXPECT_FALSE(b.box.filBox_KeyDown(45));
    EXPECT_FALSE(b.box.filBox_RightButton(true));  // not while on-line
    EXPECT_TRUE(b.box.filBox_RightButton(false));
    EXPECT_EQ(b.box.DeleteState, DelWaiting);
    EXPECT_FALSE(b.box.Enabled);
    EXPECT_FALSE(b.box.cmdDelFiles.Enabled);
    EXPECT_FALSE(b.box.CaptureButtonsEnabled());
    EXPECT_TRUE(b.box.cmdDEL.Visible && b.box.cmdDEL.Enabled);
    EXPECT_TRUE(b.box.cmdUndo.Visible && b.box.cmdUndo.Enabled);
    EXPECT_EQ(b.box.Focus, "cmdDEL");
    // Clicks on the box do not load while the answer is pending, and a
    // second delete cannot start.
    EXPECT_EQ(b.box.ClickedName(0, false), "");
    EXPECT_FALSE(b.box.BeginDelete());

    b.box.cmdUndo_Click();
    EXPECT_EQ(b.box.DeleteState, DelIdle);
    EXPECT_TRUE(b.box.Enabled);
    EXPECT_TRUE(b.box.cmdDelFiles.Enabled);
    EXPECT_TRUE(b.box.CaptureButtonsEnabled());
    EXPECT_FALSE(b.box.cmdDEL.Visible);
    EXPECT_FALSE(b.box.cmdUndo.Visible);
    EXPECT_EQ(b.box.Count(), 1);
    EXPECT_TRUE(Exists(b.dir.WorkFile("03_05_001.spd")));
    EXPECT_EQ(b.box.ClickedName(0, false), "03_05_001");
    EXPECT_EQ(b.box.ClickedName(0, true), "");  // another file operation runs
    EXPECT_EQ(b.box.ClickedName(5, false), "");

    // The answers do nothing when no delete is pending.
    b.box.cmdDEL_Click(b.dir.Work());
    EXPECT_TRUE(Exists(b.dir.WorkFile("03_05_001.spd")));
}

TEST(FileBox, DelMovesEverySelectedRecordToItsBackup) {
    Box b;
    for (const char* n : {"03_05_001", "03_05_002", "03_05_003", "03_05_004"}) b.Put(std::string(n) + ".spd", n);
    b.box.Fill(b.dir.Work());  // 004, 003, 002, 001
    b.box.Select(0);
    b.box.Select(2);
    b.box.Select(3);
    ASSERT_TRUE(b.box.filBox_KeyDown(KeyDelete));
    b.box.cmdDEL_Click(b.dir.Work());
    EXPECT_EQ(b.box.Entries, (std::vector<std::string>{"03_05_003"}));
    EXPECT_EQ(b.box.Selected, (std::vector<bool>{false}));
    EXPECT_EQ(b.Get("BAK03_05_004.spd"), "03_05_004");
    EXPECT_EQ(b.Get("BAK03_05_001.spd"), "03_05_001");
    EXPECT_FALSE(Exists(b.dir.WorkFile("03_05_004.spd")));
    EXPECT_TRUE(Exists(b.dir.WorkFile("03_05_003.spd")));
    EXPECT_EQ(b.box.DeleteState, DelIdle);
    EXPECT_TRUE(b.box.Enabled);
}

TEST(FileBox, DeletingANameTwiceKeepsOnlyTheNewerBackup) {
    Box b;
    b.Put("03_05_001.spd", "first");
    b.box.Fill(b.dir.Work());
    b.box.Select(0);
    b.box.BeginDelete();
    b.box.cmdDEL_Click(b.dir.Work());
    EXPECT_EQ(b.Get("BAK03_05_001.spd"), "first");

    // Restored by hand, changed, deleted again.
    b.Put("03_05_001.spd", "second");
    b.box.Fill(b.dir.Work());
    b.box.Select(0);
    b.box.BeginDelete();
    b.box.cmdDEL_Click(b.dir.Work());
    EXPECT_EQ(b.Get("BAK03_05_001.spd"), "second");
    EXPECT_FALSE(Exists(b.dir.WorkFile("03_05_001.spd")));
}

TEST(FileBox, AnEntryWhoseFileIsGoneNeverCostsTheBackup) {
    Box b;
    b.Put("BAK03_05_001.spd", "backup");
    b.box.InsertTop("03_05_001");  // listed, but the file was removed meanwhile
    b.box.BeginDelete();
    b.box.cmdDEL_Click(b.dir.Work());
    EXPECT_EQ(b.box.Count(), 0);
    EXPECT_EQ(b.Get("BAK03_05_001.spd"), "backup");
}
