#include "display/file_box.h"

#include <gtest/gtest.h>

#include "temp_dir.h"

using namespace display;
using namespace display_test;

namespace {

struct Box {
    ProgramDir dir;
    FileBox box;
    // Delete the selected entries and answer DEL.
    void Delete(std::vector<int> selected) {
        for (int i : selected) box.Select(i);
        ASSERT_TRUE(box.filBox_KeyDown(KeyDelete));
        box.cmdDEL_Click(dir.Work());
    }
    // The controls a delete locks, "+" usable, "-" not.
    std::string Controls() const {
        auto on = [](bool b) { return b ? "+" : "-"; };
        return std::string("box") + on(box.Enabled) + " all" + on(box.cmdDelFiles.Enabled) + " capture" +
               on(box.CaptureButtonsEnabled()) + " DEL" + on(box.cmdDEL.Visible && box.cmdDEL.Enabled) + " Undo" +
               on(box.cmdUndo.Visible && box.cmdUndo.Enabled);
    }
};

const char* kIdle = "box+ all+ capture+ DEL- Undo-";

}  // namespace

TEST(FileBox, FillListsRecordsNewestFirstWithoutBackupsOrTheMarker) {
    Box b;
    for (const char* f : {"03_05_001.spd", "03_05_007.spd", "03_04_002.SPD", "BAK03_05_003.spd", "SpadesBid.spd",
                          "RecordNILs.TXT"})
        b.dir.PutWork(f, "x");
    std::filesystem::create_directory(b.dir.WorkFile("folder.spd"));
    b.box.Fill(b.dir.Work());
    EXPECT_EQ(b.box.Entries, (std::vector<std::string>{"03_05_007", "03_05_001", "03_04_002"}));
    EXPECT_EQ(b.box.SelectedCount(), 0);
    b.box.InsertTop("03_05_008");
    EXPECT_EQ(std::pair(b.box.Entries.front(), b.box.Selected),
              std::pair(std::string("03_05_008"), std::vector<bool>{true, false, false, false}));

    FileBox none;
    none.Fill(b.dir.WorkFile("no such folder"));
    EXPECT_EQ(none.Count(), 0);
}

TEST(FileBox, DeleteWaitsForTheAnswerAndLocksTheOtherFileOperations) {
    Box b;
    b.dir.PutWork("03_05_001.spd", "one");
    b.box.Fill(b.dir.Work());
    EXPECT_FALSE(b.box.filBox_KeyDown(KeyDelete)) << "nothing selected: nothing happens";
    b.box.Select(0);
    EXPECT_FALSE(b.box.filBox_KeyDown(45));
    EXPECT_FALSE(b.box.filBox_RightButton(true)) << "not while on-line";
    EXPECT_TRUE(b.box.filBox_RightButton(false));
    EXPECT_EQ(b.box.DeleteState, DelWaiting);
    EXPECT_EQ(b.Controls() + " focus " + b.box.Focus, "box- all- capture- DEL+ Undo+ focus cmdDEL");
    // Clicks on the box do not load while the answer is pending, and a second delete cannot start.
    EXPECT_EQ(b.box.ClickedName(0, false), "");
    EXPECT_FALSE(b.box.BeginDelete());

    b.box.cmdUndo_Click();
    EXPECT_EQ(b.box.DeleteState, DelIdle);
    EXPECT_EQ(b.Controls(), kIdle);
    EXPECT_EQ(b.box.ClickedName(0, false), "03_05_001");
    EXPECT_EQ(b.box.ClickedName(0, true), "") << "another file operation runs";
    EXPECT_EQ(b.box.ClickedName(5, false), "");
    // DEL does nothing when no delete is pending.
    b.box.cmdDEL_Click(b.dir.Work());
    EXPECT_EQ(b.dir.GetWork("03_05_001.spd"), "one");
}

TEST(FileBox, DelMovesEverySelectedRecordToItsBackupKeepingOnlyTheNewest) {
    Box b;
    for (const char* n : {"03_05_001", "03_05_002", "03_05_003", "03_05_004"}) b.dir.PutWork(std::string(n) + ".spd", n);
    b.box.Fill(b.dir.Work());  // 004, 003, 002, 001
    b.Delete({0, 2, 3});
    EXPECT_EQ(b.box.Entries, (std::vector<std::string>{"03_05_003"}));
    EXPECT_EQ(b.box.Selected, (std::vector<bool>{false}));
    EXPECT_EQ(b.dir.GetWork("BAK03_05_004.spd") + b.dir.GetWork("BAK03_05_001.spd"), "03_05_00403_05_001");
    EXPECT_TRUE(!b.dir.HasWork("03_05_004.spd") && b.dir.HasWork("03_05_003.spd"));
    EXPECT_EQ(b.Controls(), kIdle);

    // Restored by hand, changed, deleted again: the newer backup replaces the older.
    b.dir.PutWork("03_05_001.spd", "second");
    b.box.Fill(b.dir.Work());
    b.Delete({1});
    EXPECT_EQ(b.dir.GetWork("BAK03_05_001.spd"), "second");
    EXPECT_FALSE(b.dir.HasWork("03_05_001.spd"));

    // An entry whose file is gone never costs the backup.
    b.box.InsertTop("03_05_004");
    b.box.BeginDelete();
    b.box.cmdDEL_Click(b.dir.Work());
    EXPECT_EQ(b.dir.GetWork("BAK03_05_004.spd"), "03_05_004");
}
