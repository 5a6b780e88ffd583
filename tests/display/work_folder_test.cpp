#include "display/work_folder.h"

#include <gtest/gtest.h>

#include "display/deal_record.h"
#include "display/file_box.h"
#include "temp_dir.h"

using namespace display;
using namespace display_test;
using Names = std::vector<std::string>;

namespace {

const platform::Rect kMain{40, 30, 340, 630};

struct Work {
    ProgramDir dir;
    FileBox box;
    DealRecord rec;
    DelWorkDialog seen;
    int asked = 0;

    void Put(const std::string& file, const std::string& text = "x") { dir.PutWork(file, text); }
    // Presses "Delete ALL Work Files" and answers the dialog; `meanwhile` runs while it is open.
    DelWorkResult Press(bool answer, int tableMode = 3, bool busy = false, std::function<void()> meanwhile = {}) {
        return cmdDelFiles_Click(dir.Work(), tableMode, false, kMain, busy,
                                 [&](DelWorkDialog& d) {
                                     ++asked;
                                     seen = d;
                                     if (meanwhile) meanwhile();
                                     answer ? d.cmdDelete_Click() : d.cmdCancel_Click();
                                 },
                                 box, rec);
    }
};

}  // namespace

TEST(WorkFolder, ScanSortsFilesAndRemovesBackupsOfBackups) {
    Work w;
    for (const char* f : {"03_05_001.spd", "12_31_100.SPD", "BAK03_05_002.spd", "bak03_05_003.spd",
                          "BAKBAK03_05_004.spd", "bakBak.spd"})
        w.Put(f);
    // A 9-character name, no digit after BAK, another table's record, no digit first.
    const Names others = {"03_05.spd", "BAKnotes0001.spd", "03_05_001.brg", "x3_05_001.spd"};
    for (const auto& f : others) w.Put(f);
    const WorkScan scan = ScanWorkFolder(w.dir.Work(), ".spd");
    EXPECT_EQ(std::tuple(scan.Records, scan.Backups, scan.Removed),
              std::tuple(Names{"03_05_001", "12_31_100"}, Names{"03_05_002", "03_05_003"}, 2));
    EXPECT_FALSE(w.dir.HasWork("BAKBAK03_05_004.spd") || w.dir.HasWork("bakBak.spd"));
    for (const auto& f : others) EXPECT_TRUE(w.dir.HasWork(f)) << f << " is never touched";
    EXPECT_EQ(ScanWorkFolder(w.dir.Work(), ".brg").Records, (Names{"03_05_001"}));
    EXPECT_TRUE(ScanWorkFolder(w.dir.WorkFile("missing"), ".spd").Records.empty());
}

TEST(WorkFolder, DeleteReplacesTheOlderBackupGenerationAndRestoreUndoesIt) {
    Work w;
    w.Put("03_05_001.spd", "new record");
    w.Put("BAK03_04_009.spd", "older backup");
    w.Put("BAK_readme.txt", "the user's");
    w.box.Entries = {"03_05_001"};
    w.box.Selected = {true};
    w.rec.ScoreRowCount = 4;
    DelWorkResult r = w.Press(true);
    EXPECT_TRUE(!w.seen.RestoreMode && r.Confirmed);
    EXPECT_EQ(std::pair(r.Deleted, r.Renamed), std::pair(1, 1));
    EXPECT_FALSE(w.dir.HasWork("BAK03_04_009.spd") || w.dir.HasWork("03_05_001.spd"));
    EXPECT_EQ(w.dir.GetWork("BAK03_05_001.spd"), "new record");
    EXPECT_TRUE(w.dir.HasWork("BAK_readme.txt"));
    EXPECT_EQ(std::pair(w.box.Count(), w.rec.ScoreRowCount), std::pair(0, 0));

    // Backups alone: the button offers to restore, then to delete again.
    w.Put("BAK03_05_002.spd", "two");
    r = w.Press(true);
    EXPECT_TRUE(w.seen.RestoreMode && r.Restored && r.Renamed == 2);
    EXPECT_EQ(w.seen.ButtonCaption, "Restore Work Files");
    EXPECT_EQ(w.dir.GetWork("03_05_001.spd"), "new record");
    EXPECT_FALSE(w.dir.HasWork("BAK03_05_001.spd"));
    EXPECT_EQ(w.box.Entries, (Names{"03_05_002", "03_05_001"}));
    // Cancelled: nothing moved, the box stays as it was.
    w.Put("BAK03_05_001.spd");
    w.Press(false);
    EXPECT_FALSE(w.seen.RestoreMode) << "a record and a backup mean delete mode";
    EXPECT_EQ(w.seen.Lines, (Names{" Delete All Files ( *.spd) in Work Folder", w.dir.Work(), "  May really Delete All ?"}));
    EXPECT_TRUE(w.dir.HasWork("03_05_001.spd"));
    EXPECT_EQ(w.box.Count(), 2);
}

TEST(WorkFolder, BusyBridgeTablesAndRecordsWrittenMeanwhile) {
    Work w;
    w.Put("03_05_001.brg", "bridge");
    w.Put("03_05_002.spd", "spades");
    EXPECT_FALSE(w.Press(true, 3, true).Ran);
    EXPECT_EQ(w.asked, 0) << "nothing runs while another file operation does";
    w.Press(true, 0);
    EXPECT_EQ(w.seen.Lines[0], " Delete All Files ( *.brg) in Work Folder");
    EXPECT_TRUE(w.dir.HasWork("BAK03_05_001.brg") && w.dir.HasWork("03_05_002.spd"));

    // A record filed while the restore dialog is open is never overwritten.
    const DelWorkResult r = w.Press(true, 0, false, [&] { w.Put("03_05_001.brg", "newer"); });
    EXPECT_EQ(r.Renamed, 0);
    EXPECT_EQ(w.dir.GetWork("03_05_001.brg"), "newer");
    EXPECT_EQ(w.dir.GetWork("BAK03_05_001.brg"), "bridge");
}

TEST(WorkFolder, JapaneseDialogTexts) {
    WorkScan scan;
    scan.Backups = {"03_05_001"};
    DelWorkDialog d;
    PrepareDelWork(d, scan, ".brg", "/p/Work", true, kMain);
    EXPECT_TRUE(d.RestoreMode);
    EXPECT_EQ(d.Lines, (Names{" 作業用ファイル ( *.brg) を復元できます。", " 復元しますか ？"}));
    EXPECT_EQ(d.ButtonCaption + " " + d.CancelCaption, "作業用ファイルを復元する 取り消し");
}
