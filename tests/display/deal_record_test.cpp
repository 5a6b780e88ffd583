#include "display/deal_record.h"

#include <gtest/gtest.h>

#include "core/text.h"
#include "platform/sim/virtual_clock.h"
#include "temp_dir.h"

using namespace display;
using namespace display_test;

namespace {

// A complete deal: seat s plays suit "SHDC"[s], ace first; North's trick 1 is
// bracketed and trick 13 in parentheses; `seats` trick lines and `rows`
// score rows of it are kept.
DealRecord SampleDeal(int seats = 4, int rows = 2) {
    DealRecord rec;
    rec.Names = {"Ann", "Bob", "Cy", "Dee"};
    rec.Seat2 = {"4", "3", "N", "2"};
    for (int t = 0; t < 13; ++t)
        for (int s = 0; s < seats; ++s) rec.Trick[t][s] = std::string{"AKQJT98765432"[t], "SHDC"[s]};
    rec.Mark[0][0] = seats > 0 ? MarkBrackets : MarkNone;
    rec.Mark[12][0] = seats > 0 ? MarkParentheses : MarkNone;
    rec.ScoreRowCount = rows;
    if (rows > 0) rec.ScoreRows[0] = {230, 3, -41, 1};
    if (rows > 1) rec.ScoreRows[1] = {-100, 0, 55, 12};
    return rec;
}

const std::string kSampleFile =
    "Ann, Bob, Cy, Dee\r\n"
    "4, 3, N, 2\r\n"
    "[AS]  KS   QS   JS   TS   9S   8S   7S   6S   5S   4S   3S  (2S) \r\n"
    " AH   KH   QH   JH   TH   9H   8H   7H   6H   5H   4H   3H   2H  \r\n"
    " AD   KD   QD   JD   TD   9D   8D   7D   6D   5D   4D   3D   2D  \r\n"
    " AC   KC   QC   JC   TC   9C   8C   7C   6C   5C   4C   3C   2C  \r\n"
    " 2 \r\n"
    "230, 3, -41, 1\r\n"
    "-100, 0, 55, 12\r\n";

struct RecordDir {
    explicit RecordDir(int codePage = core::kCodePageWestern) : files{clock, dir.Folders(), codePage} {}
    ProgramDir dir;
    platform::VirtualClock clock{platform::LocalTime{2026, 3, 5, 23, 59, 0}};  // 5 March, a minute to midnight
    RecordFiles files;
    // Writes `rec` and reads it back; the name written goes to `name`.
    DealRecord RoundTrip(const DealRecord& rec, std::string* name = nullptr) {
        const std::string n = files.WriteRecordFile(rec, {});
        if (name) *name = n;
        DealRecord back;
        EXPECT_EQ(files.ReadRecordFile(n, back), ErrNone);
        return back;
    }
};

}  // namespace

TEST(DealRecordFile, NumberingOnTheFifthOfMarch) {
    RecordDir d;
    d.dir.PutWork("03_05_009.SPD", "keep me\r\n");
    // Entries of today seed the counter; another day's entry does not.
    EXPECT_EQ(d.files.WriteRecordFile(SampleDeal(), {"03_05_001", "02_28_044", "03_05_007"}), "03_05_008");
    // The counter and its date live for the run: past midnight, and with
    // other entries in the box, the numbering goes on; a name taken on disk
    // in any letter case is skipped and left alone.
    d.clock.Advance(2 * 60 * 1000);
    EXPECT_EQ(d.files.WriteRecordFile(SampleDeal(), {"03_06_050"}), "03_05_010");
    EXPECT_EQ(d.dir.GetWork("03_05_009.SPD"), "keep me\r\n");
    EXPECT_EQ(d.files.Counter(), 11);

    RecordDir big;
    EXPECT_EQ(big.files.WriteRecordFile(SampleDeal(), {"03_05_999"}), "03_05_1000");
}

TEST(DealRecordFile, TruncatedFilesGiveError62AndKeepWhatWasRead) {
    RecordDir d;
    // Lines kept of the sample file, and the record they give.
    const std::tuple<int, DealRecord> cuts[] = {
        {2, SampleDeal(0, 0)}, {4, SampleDeal(2, 0)}, {6, SampleDeal(4, 0)}, {8, SampleDeal(4, 1)}};
    for (const auto& [lines, want] : cuts) {
        std::size_t at = 0;
        for (int i = 0; i < lines; ++i) at = kSampleFile.find("\r\n", at) + 2;
        d.dir.PutWork("cut.spd", kSampleFile.substr(0, at));
        DealRecord rec;
        EXPECT_EQ(d.files.ReadRecordFile("cut", rec), ErrInputPastEnd) << lines;
        EXPECT_EQ(rec, want) << lines;
    }
    d.dir.PutWork("empty.spd", "");
    DealRecord rec;
    EXPECT_EQ(std::pair(d.files.ReadRecordFile("empty", rec), d.files.ReadRecordFile("missing", rec)),
              std::pair(ErrInputPastEnd, ErrFileNotFound));
}

// Garbage lines are fuzzed: they read without harm and survive a rewrite.
TEST(DealRecordFile, OddTextsStayOnTheirLines) {
    RecordDir d;
    DealRecord rec = SampleDeal();
    rec.Names[1] = "two\r\nlines";
    rec.Trick[3][2] = "";     // not read: blank cell
    rec.Trick[4][2] = "10H";  // too long for a cell: cut
    rec.ScoreRowCount = 500;  // more than a record holds
    DealRecord want = rec;
    want.Names[1] = "two  lines";
    want.Trick[4][2] = "10";
    want.ScoreRowCount = MaxScoreRows;
    EXPECT_EQ(d.RoundTrip(rec), want);
}

// Whole games file and read back records of every deal; these are the exact bytes.
TEST(DealRecordFile, ExactBytesInTheInterfaceCodePage) {
    RecordDir western;
    DealRecord rec = SampleDeal();
    rec.Names[1] = "José";
    std::string name;
    EXPECT_EQ(western.RoundTrip(rec, &name), rec);
    EXPECT_EQ(western.dir.GetWork(name + ".spd"), "Ann, Jos\xE9" + kSampleFile.substr(8));

    RecordDir japanese(core::kCodePageJapanese);
    rec.Names = {"あいう", "Bob", "ﾀﾛｳ", "Dee"};
    EXPECT_EQ(japanese.RoundTrip(rec, &name), rec);
    // Shift-JIS: あ = 82 A0, い = 82 A2, う = 82 A4; half-width katakana are single bytes.
    const std::string bytes = japanese.dir.GetWork(name + ".spd");
    EXPECT_EQ(bytes.substr(0, 6), "\x82\xA0\x82\xA2\x82\xA4");
    EXPECT_NE(bytes.find(", \xC0\xDB\xB3, "), std::string::npos);
}

TEST(DealRecordFile, LoadRecordStartsEmptyAndSparesTheMarkerOnlyOnline) {
    RecordDir d;
    d.dir.PutWork("SpadesBid.spd", "");
    const std::string name = d.files.WriteRecordFile(SampleDeal(), {});
    DealRecord rec;
    rec.State = 7;
    rec.ScoreRowCount = 40;
    EXPECT_EQ(d.files.LoadRecord(name, 1, rec), ErrNone);
    EXPECT_EQ(rec, SampleDeal());
    EXPECT_EQ(d.files.CurrentName(), name);
    // A truncated record loaded over a full one leaves nothing of the old.
    d.dir.PutWork("cut.spd", "A, B, C, D\r\n");
    EXPECT_EQ(d.files.LoadRecord("cut", 1, rec), ErrInputPastEnd);
    EXPECT_TRUE(rec.ScoreRowCount == 0 && rec.Trick[0][0].empty());

    d.files.RemoveMarkerAtExit();
    EXPECT_FALSE(d.files.MarkerExists());
    d.dir.PutWork("SpadesBid.spd", "");
    d.files.LoadRecord(name, 2, rec);
    d.files.RemoveMarkerAtExit();
    EXPECT_TRUE(d.files.MarkerExists()) << "a record loaded in on-line mode 2 spares it";
}
