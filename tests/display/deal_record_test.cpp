#include "display/deal_record.h"

#include <gtest/gtest.h>

#include "core/text.h"
#include "platform/clock.h"
#include "temp_dir.h"

using namespace display;
using display_test::Exists;
using display_test::ReadBytes;
using display_test::TempDir;
using display_test::WriteBytes;

namespace {

const char* kRanks = "AKQJT98765432";
const char* kSuits = "SHDC";

// A complete deal: seat s plays suit kSuits[s], ace first; trick 1 of North
// is bracketed and trick 13 of North in parentheses.
DealRecord SampleDeal() {
    DealRecord rec;
    rec.Names = {"Ann", "Bob", "Cy", "Dee"};
    rec.Seat2 = {"4", "3", "N", "2"};
    for (int t = 0; t < 13; ++t)
        for (int s = 0; s < 4; ++s) rec.Trick[t][s] = std::string{kRanks[t], kSuits[s]};
    rec.Mark[0][0] = MarkBrackets;
    rec.Mark[12][0] = MarkParentheses;
    rec.ScoreRowCount = 2;
    rec.ScoreRows[0] = {230, 3, -41, 1};
    rec.ScoreRows[1] = {-100, 0, 55, 12};
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

platform::LocalTime March5() {
    platform::LocalTime t;
    t.Year = 2026;
    t.Month = 3;
    t.Day = 5;
    t.Hour = 23;
    t.Minute = 59;
    return t;
}

struct RecordDir {
    TempDir dir;
    platform::VirtualClock clock{March5()};
    RecordFiles files{clock, dir.Folders(), core::kCodePageWestern};
};

}  // namespace

TEST(DealRecordFile, WritesTheExactBytesAndReadsThemBack) {
    RecordDir d;
    const DealRecord rec = SampleDeal();
    const std::string name = d.files.WriteRecordFile(rec, {});
    ASSERT_EQ(name, "03_05_001");
    EXPECT_EQ(ReadBytes(d.dir.WorkFile("03_05_001.spd")), kSampleFile);

    DealRecord back;
    EXPECT_EQ(d.files.ReadRecordFile(name, back), ErrNone);
    EXPECT_EQ(back, rec);
    EXPECT_EQ(back.ScoreRows[0][2], -41);
}

TEST(DealRecordFile, NumberingOnTheFifthOfMarch) {
    RecordDir d;
    // Entries of today seed the counter; another day's entry does not.
    const std::vector<std::string> box = {"03_05_001", "02_28_004", "03_05_007"};
    EXPECT_EQ(d.files.WriteRecordFile(SampleDeal(), box), "03_05_008");
    EXPECT_TRUE(Exists(d.dir.WorkFile("03_05_008.spd")));
    // The counter lives for the run: the box is not looked at again.
    EXPECT_EQ(d.files.WriteRecordFile(SampleDeal(), {"03_05_050"}), "03_05_009");
    EXPECT_EQ(d.files.Counter(), 10);
}

TEST(DealRecordFile, SkipsNamesTakenOnDiskInAnyLetterCase) {
    RecordDir d;
    WriteBytes(d.dir.WorkFile("03_05_001.spd"), "keep me\r\n");
    WriteBytes(d.dir.WorkFile("03_05_002.SPD"), "keep me too\r\n");
    EXPECT_EQ(d.files.WriteRecordFile(SampleDeal(), {}), "03_05_003");
    // The files that were there are untouched.
    EXPECT_EQ(ReadBytes(d.dir.WorkFile("03_05_001.spd")), "keep me\r\n");
    EXPECT_EQ(ReadBytes(d.dir.WorkFile("03_05_002.SPD")), "keep me too\r\n");
}

TEST(DealRecordFile, TheDateOfTheFirstWriteHoldsForTheRun) {
    RecordDir d;
    EXPECT_EQ(d.files.WriteRecordFile(SampleDeal(), {}), "03_05_001");
    d.clock.Advance(2 * 60 * 1000);  // past midnight: 6 March
    EXPECT_EQ(d.clock.Now().Day, 6);
    EXPECT_EQ(d.files.WriteRecordFile(SampleDeal(), {}), "03_05_002");
}

TEST(DealRecordFile, SequenceNumbersPastThreeDigitsAreWrittenInFull) {
    RecordDir d;
    EXPECT_EQ(d.files.WriteRecordFile(SampleDeal(), {"03_05_999"}), "03_05_1000");
}

TEST(DealRecordFile, TruncatedFilesGiveError62AndKeepWhatWasRead) {
    RecordDir d;
    const std::string& full = kSampleFile;
    auto cutAfterLines = [&](int n) {
        std::size_t at = 0;
        for (int i = 0; i < n; ++i) at = full.find("\r\n", at) + 2;
        return full.substr(0, at);
    };

    // After the two name lines.
    WriteBytes(d.dir.WorkFile("a.spd"), cutAfterLines(2));
    DealRecord a;
    EXPECT_EQ(d.files.ReadRecordFile("a", a), ErrInputPastEnd);
    EXPECT_EQ(a.Names[3], "Dee");
    EXPECT_EQ(a.Seat2[2], "N");
    EXPECT_EQ(a.Trick[0][0], "");

    // In the middle of the trick lines.
    WriteBytes(d.dir.WorkFile("b.spd"), cutAfterLines(4));
    DealRecord b;
    EXPECT_EQ(d.files.ReadRecordFile("b", b), ErrInputPastEnd);
    EXPECT_EQ(b.Trick[12][1], "2H");
    EXPECT_EQ(b.Trick[0][2], "");

    // After the trick lines.
    WriteBytes(d.dir.WorkFile("c.spd"), cutAfterLines(6));
    DealRecord c;
    EXPECT_EQ(d.files.ReadRecordFile("c", c), ErrInputPastEnd);
    EXPECT_EQ(c.Trick[12][0], "2S");
    EXPECT_EQ(c.Mark[12][0], MarkParentheses);
    EXPECT_EQ(c.ScoreRowCount, 0);

    // One score row short: the row that was there is kept.
    WriteBytes(d.dir.WorkFile("e.spd"), cutAfterLines(8));
    DealRecord e;
    EXPECT_EQ(d.files.ReadRecordFile("e", e), ErrInputPastEnd);
    EXPECT_EQ(e.ScoreRowCount, 1);
    EXPECT_EQ(e.ScoreRows[0][2], -41);

    // Empty file.
    WriteBytes(d.dir.WorkFile("f.spd"), "");
    DealRecord f;
    EXPECT_EQ(d.files.ReadRecordFile("f", f), ErrInputPastEnd);

    DealRecord g;
    EXPECT_EQ(d.files.ReadRecordFile("missing", g), ErrFileNotFound);
}

TEST(DealRecordFile, GarbageReadsAsEmptyCardsAndZeros) {
    std::vector<std::string> lines = {"only one name", "", "[", "((((((((((((((((((((((", "xyz", "",
                                      " 250 ", "abc, 7", "1,2,3,4", "5, x, -6, 9, 10"};
    DealRecord rec;
    // 250 rows announced, three present.
    EXPECT_EQ(ParseRecordLines(lines, rec), ErrInputPastEnd);
    EXPECT_EQ(rec.Names[0], "only one name");
    EXPECT_EQ(rec.Names[1], "");
    EXPECT_EQ(rec.Mark[0][0], MarkBrackets);
    EXPECT_EQ(rec.Trick[0][0], "");
    EXPECT_EQ(rec.Mark[4][1], MarkParentheses);
    EXPECT_EQ(rec.Trick[0][2], "yz");
    EXPECT_EQ(rec.ScoreRowCount, 3);
    EXPECT_EQ(rec.ScoreRows[0], (std::array<std::int32_t, 4>{0, 7, 0, 0}));
    EXPECT_EQ(rec.ScoreRows[1], (std::array<std::int32_t, 4>{1, 0, 0, 0}));
    EXPECT_EQ(rec.ScoreRows[2], (std::array<std::int32_t, 4>{5, 0, -6, 9}));

    std::vector<std::string> many(6, "");
    many.push_back(" -3 ");
    DealRecord none;
    EXPECT_EQ(ParseRecordLines(many, none), ErrNone);
    EXPECT_EQ(none.ScoreRowCount, 0);
}

TEST(DealRecordFile, OddTextsStayOnTheirLines) {
    RecordDir d;
    DealRecord rec = SampleDeal();
    rec.Names[1] = "two\r\nlines";
    rec.Trick[3][2] = "";     // not read: blank cell
    rec.Trick[4][2] = "10H";  // too long for a cell: cut
    rec.ScoreRowCount = 500;  // more than a record holds
    const std::string name = d.files.WriteRecordFile(rec, {});
    DealRecord back;
    EXPECT_EQ(d.files.ReadRecordFile(name, back), ErrNone);
    EXPECT_EQ(back.Names[1], "two  lines");
    EXPECT_EQ(back.Names[2], "Cy");
    EXPECT_EQ(back.Trick[3][2], "");
    EXPECT_EQ(back.Trick[4][2], "10");
    EXPECT_EQ(back.Trick[5][2], "9D");
    EXPECT_EQ(back.ScoreRowCount, MaxScoreRows);
}

TEST(DealRecordFile, JapaneseInterfaceWritesCodePage932) {
    TempDir dir;
    platform::VirtualClock clock{March5()};
    RecordFiles files{clock, dir.Folders(), core::kCodePageJapanese};
    DealRecord rec = SampleDeal();
    rec.Names[0] = "あいう";
    rec.Names[2] = "ﾀﾛｳ";
    const std::string name = files.WriteRecordFile(rec, {});
    const std::string bytes = ReadBytes(dir.WorkFile(name + ".spd"));
    // Shift-JIS: あ = 82 A0, い = 82 A2, う = 82 A4; half-width katakana are single bytes.
    EXPECT_EQ(bytes.substr(0, 6), "\x82\xA0\x82\xA2\x82\xA4");
    EXPECT_NE(bytes.find(", \xC0\xDB\xB3, "), std::string::npos);
    DealRecord back;
    EXPECT_EQ(files.ReadRecordFile(name, back), ErrNone);
    EXPECT_EQ(back, rec);
}

TEST(DealRecordFile, WesternCodePageKeepsAccentsAsSingleBytes) {
    RecordDir d;
    DealRecord rec = SampleDeal();
    rec.Names[1] = "José";
    const std::string name = d.files.WriteRecordFile(rec, {});
    EXPECT_EQ(ReadBytes(d.dir.WorkFile(name + ".spd")).substr(0, 11), "Ann, Jos\xE9, ");
    DealRecord back;
    EXPECT_EQ(d.files.ReadRecordFile(name, back), ErrNone);
    EXPECT_EQ(back.Names[1], "José");
}

TEST(DealRecordFile, LoadRecordStartsEmptyAndSparesTheMarkerOnlyOnline) {
    RecordDir d;
    WriteBytes(d.dir.WorkFile("SpadesBid.spd"), "");
    const std::string name = d.files.WriteRecordFile(SampleDeal(), {});

    DealRecord rec;
    rec.State = 7;
    rec.ScoreRowCount = 40;
    EXPECT_EQ(d.files.LoadRecord(name, 1, rec), ErrNone);
    EXPECT_EQ(rec.State, 0);
    EXPECT_EQ(rec.ScoreRowCount, 2);
    EXPECT_EQ(d.files.CurrentName(), name);
    EXPECT_FALSE(d.files.SpareMarker());
    EXPECT_TRUE(d.files.MarkerExists());

    // A truncated record loaded over a full one leaves nothing of the old.
    WriteBytes(d.dir.WorkFile("cut.spd"), "A, B, C, D\r\n");
    EXPECT_EQ(d.files.LoadRecord("cut", 1, rec), ErrInputPastEnd);
    EXPECT_EQ(rec.ScoreRowCount, 0);
    EXPECT_EQ(rec.Trick[0][0], "");

    d.files.RemoveMarkerAtExit();
    EXPECT_FALSE(d.files.MarkerExists());

    WriteBytes(d.dir.WorkFile("SpadesBid.spd"), "");
    d.files.LoadRecord(name, 2, rec);
    EXPECT_TRUE(d.files.SpareMarker());
    d.files.RemoveMarkerAtExit();
    EXPECT_TRUE(d.files.MarkerExists());
}

