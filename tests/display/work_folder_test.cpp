#include "display/work_folder.h"

#include <gtest/gtest.h>

#include "display/deal_record.h"
#include "display/file_box.h"
#include "temp_dir.h"

using namespace display;
using display_test::Exists;
using display_test::ReadBytes;
using display_test::TempDir;
using display_test::WriteBytes;

namespace {

const platform::Rect kMain{40, 30, 340, 630};

struct Work {
    TempDir dir;
    FileBox box;
    DealRecord rec;
    DelWorkDialog seen;
    int asked = 0;

    void Put(const std::string& file, const std::string& text = "x") { WriteBytes(dir.WorkFile(file), text); }
    bool Has(const std::string& file) { return Exists(dir.WorkFile(file)); }

    DelWorkResult Press(bool answer, bool japanese = false, int tableMode = 3, bool busy = false) {
        return cmdDelFiles_Click(dir.Work(), tableMode, japanese, kMain, busy,
                                 [&](DelWorkDialog& d) {
                                     ++asked;
                                     EXPECT_TRUE(d.Visible);
                                     seen = d;
                                     if (answer)
                                         d.cmdDelete_Click();
                                     else
                                         d.cmdCancel_Click();
                                 },
                                 box, rec);
    }
};

}  // namespace

TEST(WorkFolder, ScanSortsFilesAndRemovesBackupsOfBackups) {
    Work w;
    w.Put("03_05_001.spd");
    w.Put("12_31_100.SPD");
    w.Put("BAK03_05_002.spd");
    w.Put("bak03_05_003.spd");
    w.Put("BAKBAK03_05_004.spd");
    w.Put("bakBak.spd");
    w.Put("03_05.spd");          // 9 characters: not a record name
    w.Put("BAKnotes0001.spd");   // no digit after BAK
    w.Put("03_05_001.brg");      // another table's record
    w.Put("x3_05_001.spd");      // does not begin with a digit
    const WorkScan scan = ScanWorkFolder(w.dir.Work(), ".spd");
    EXPECT_EQ(scan.Records, (std::vector<std::string>{"03_05_001", "12_31_100"}));
    EXPECT_EQ(scan.Backups, (std::vector<std::string>{"03_05_002", "03_05_003"}));
    EXPECT_EQ(scan.Removed, 2);
    EXPECT_FALSE(w.Has("BAKBAK03_05_004.spd"));
    EXPECT_FALSE(w.Has("bakBak.spd"));
    for (const char* kept : {"03_05.spd", "BAKnotes0001.spd", "03_05_001.brg", "x3_05_001.spd"})
        EXPECT_TRUE(w.Has(kept)) << kept;

    EXPECT_EQ(ScanWorkFolder(w.dir.Work(), ".brg").Records, (std::vector<std::string>{"03_05_001"}));
    EXPECT_TRUE(ScanWorkFolder(w.dir.WorkFile("missing"), ".spd").Records.empty());
}

TEST(WorkFolder, DeleteReplacesTheOlderBackupGeneration) {
    Work w;
    w.Put("03_05_001.spd", "new record");
    w.Put("BAK03_04_009.spd", "older backup");
    w.Put("BAK_readme.txt", "the user's");
    w.box.Entries = {"03_05_001"};
    w.box.Selected = {true};
    w.rec.ScoreRowCount = 4;

    const DelWorkResult r = w.Press(true);
    EXPECT_EQ(w.asked, 1);
    EXPECT_FALSE(w.seen.RestoreMode);
    EXPECT_TRUE(r.Confirmed);
    EXPECT_EQ(r.Deleted, 1);
    EXPECT_EQ(r.Renamed, 1);
    EXPECT_FALSE(w.Has("BAK03_04_009.spd"));
    EXPECT_FALSE(w.Has("03_05_001.spd"));
    EXPECT_EQ(ReadBytes(w.dir.WorkFile("BAK03_05_001.spd")), "new record");
    EXPECT_TRUE(w.Has("BAK_readme.txt"));
    EXPECT_EQ(w.box.Count(), 0);
    EXPECT_EQ(w.rec.ScoreRowCount, 0);
}

TEST(WorkFolder, BackupsAloneOfferARestoreAndThenADelete) {
    Work w;
    w.Put("BAK03_05_001.spd", "one");
    w.Put("BAK03_05_002.spd", "two");

    const DelWorkResult r = w.Press(true);
    EXPECT_TRUE(w.seen.RestoreMode);
    EXPECT_EQ(w.seen.ButtonCaption, "Restore Work Files");
    EXPECT_TRUE(r.Restored);
    EXPECT_EQ(r.Renamed, 2);
    EXPECT_EQ(ReadBytes(w.dir.WorkFile("03_05_002.spd")), "two");
    EXPECT_FALSE(w.Has("BAK03_05_001.spd"));
    EXPECT_EQ(w.box.Entries, (std::vector<std::string>{"03_05_002", "03_05_001"}));

    w.Press(false);
    EXPECT_FALSE(w.seen.RestoreMode);
    EXPECT_EQ(w.seen.Lines.back(), "  May really Delete All ?");
    // Cancelled: nothing moved, the box stays as it was.
    EXPECT_TRUE(w.Has("03_05_001.spd"));
    EXPECT_EQ(w.box.Count(), 2);
}

TEST(WorkFolder, ARecordAndABackupMeanDeleteMode) {
    Work w;
    w.Put("03_05_001.spd");
    w.Put("BAK03_05_001.spd");
    w.Press(false);
    EXPECT_FALSE(w.seen.RestoreMode);
}

TEST(WorkFolder, NothingRunsWhileAnotherFileOperationDoes) {
    Work w;
    w.Put("03_05_001.spd");
    const DelWorkResult r = w.Press(true, false, 3, true);
    EXPECT_FALSE(r.Ran);
    EXPECT_EQ(w.asked, 0);
    EXPECT_TRUE(w.Has("03_05_001.spd"));
}

TEST(WorkFolder, BridgeTableWorksOnItsOwnExtension) {
    Work w;
    w.Put("03_05_001.brg", "bridge");
    w.Put("03_05_002.spd", "spades");
    w.Press(true, false, 0);
    EXPECT_EQ(w.seen.Lines[0], " Delete All Files ( *.brg) in Work Folder");
    EXPECT_TRUE(w.Has("BAK03_05_001.brg"));
    EXPECT_TRUE(w.Has("03_05_002.spd"));
}

TEST(WorkFolder, DialogTextsFollowTheModeAndTheInterface) {
    WorkScan del;
    del.Records = {"03_05_001"};
    DelWorkDialog d;
    PrepareDelWork(d, del, ".spd", "/p/Work", false, kMain);
    EXPECT_EQ(d.Lines, (std::vector<std::string>{" Delete All Files ( *.spd) in Work Folder", "/p/Work",
                                                 "  May really Delete All ?"}));
    EXPECT_EQ(d.Rect.Left, kMain.Left);
    EXPECT_EQ(d.Rect.Top, kMain.Top);

    WorkScan restore;
    restore.Backups = {"03_05_001"};
    PrepareDelWork(d, restore, ".brg", "/p/Work", true, kMain);
    EXPECT_TRUE(d.RestoreMode);
    EXPECT_EQ(d.ButtonCaption, "作業用ファイルを復元する");
    EXPECT_EQ(d.Lines[0], " 作業用ファイル ( *.brg) を復元できます。");
    EXPECT_EQ(d.CancelCaption, "取り消し");
}

TEST(WorkFolder, RestoreNeverOverwritesARecordWrittenMeanwhile) {
    Work w;
    w.Put("BAK03_05_001.spd", "old");
    const DelWorkResult r = cmdDelFiles_Click(
        w.dir.Work(), 3, false, kMain, false,
        [&](DelWorkDialog& d) {
            // A deal is filed while the dialog is open.
            w.Put("03_05_001.spd", "newer");
            d.cmdDelete_Click();
        },
        w.box, w.rec);
    EXPECT_EQ(r.Renamed, 0);
    EXPECT_EQ(ReadBytes(w.dir.WorkFile("03_05_001.spd")), "newer");
    EXPECT_EQ(ReadBytes(w.dir.WorkFile("BAK03_05_001.spd")), "old");
}
