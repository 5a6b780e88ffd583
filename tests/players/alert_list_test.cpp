#include <gtest/gtest.h>

#include <filesystem>

#include "core/text.h"
#include "players/alert_list.h"
#include "players/test_dir.h"

using namespace players;
using players_test::ReadBytes;
using players_test::TempDir;
using players_test::WriteBytes;

namespace {

std::vector<std::string> UserEntries(const AlertList& list) {
    std::vector<std::string> out;
    for (std::int32_t i = list.SeparatorIndex() + 1; i <= list.AlertCount; ++i) out.push_back(list.Entry(i));
    return out;
}

// A list with two built-in entries and the separator.
AlertList SmallList() {
    AlertList list;
    ReadDefaultAlertList(list, {"zz_builtin01(Stupid),zz_builtin02"});
    return list;
}

std::string Header() { return "#     << Players to be alerted by TarvelloS. >>\r\n"; }

}  // namespace

TEST(ReadList, SplitsAtCommasKeepingEmptyAndUntrimmedEntries) {
    std::vector<std::string> out(1);
    std::int32_t count = 0;
    ReadList(out, {"", "a(x), b,,c,", "d", "", "never"}, count);
    ASSERT_EQ(count, 5) << "empty line 0 is skipped, a final comma adds nothing, the empty line 3 ends the table";
    EXPECT_EQ(out[1], "a(x)");
    EXPECT_EQ(out[2], " b");
    EXPECT_EQ(out[3], "");
    EXPECT_EQ(out[4], "c");
    EXPECT_EQ(out[5], "d");
}

TEST(DefaultAlertList, SeparatorFollowsTheBuiltInEntries) {
    AlertList list;
    ReadDefaultAlertList(list);
    std::int32_t sep = list.SeparatorIndex();
    ASSERT_GT(sep, 1);
    EXPECT_EQ(list.AlertCount, sep);
    EXPECT_EQ(list.Entry(sep), "//");
    EXPECT_EQ(list.Entry(0), "");
    for (std::int32_t i = 1; i < sep; ++i) EXPECT_FALSE(list.Entry(i).empty()) << i;
    EXPECT_EQ(list.Entry(sep + 1), "");
    EXPECT_EQ(list.Entry(1000000), "") << "slots past the storage read as empty";
}

TEST(DefaultAlertList, OnlyTheFirst501LinesOfTheTableCount) {
    std::vector<std::string> lines;
    for (int i = 0; i < 600; ++i) lines.push_back("zz_line" + std::to_string(i));
    AlertList list;
    ReadDefaultAlertList(list, lines);
    EXPECT_EQ(list.AlertCount, 502);
    EXPECT_EQ(list.Entry(501), "zz_line500");
}

TEST(ReadAlertText, CommentsOnlyLeaveTheBuiltInSection) {
    AlertList list = SmallList();
    AppendAlertText("# one\r\n   # two, three\r\n\r\n", list);
    EXPECT_EQ(list.AlertCount, 3);
    EXPECT_TRUE(UserEntries(list).empty());
}

TEST(ReadAlertText, BlanksSeparateOnlyWhereALineHasNoComma) {
    AlertList list = SmallList();
    AppendAlertText("alpha beta gamma\r\nzz_pair one, zz_third\r\nzz_someone(Bad Play)\r\n", list);
    EXPECT_EQ(UserEntries(list), (std::vector<std::string>{"alpha", "beta", "gamma", "zz_pair one", "zz_third",
                                                           "zz_someone(Bad", "Play)"}));
}

TEST(ReadAlertText, DropsExactRepeatsButKeepsOtherLetterCase) {
    AlertList list = SmallList();
    AppendAlertText("zz_builtin01(Stupid),zz_mixed,ZZ_MIXED,zz_mixed,//,,\r\n", list);
    EXPECT_EQ(UserEntries(list), (std::vector<std::string>{"zz_mixed", "ZZ_MIXED"}));
    EXPECT_EQ(list.SeparatorIndex(), 3);
    EXPECT_GE(list.Size(), list.AlertCount + 11) << "empty slots follow the list";
}

TEST(WriteAlertList, WrapsTwelveCharacterEntriesFourFiveFour) {
    AlertList list = SmallList();
    for (int i = 0; i < 13; ++i) {
        std::string e = "zz_entry" + std::string(i < 10 ? "000" : "00") + std::to_string(i);
        ASSERT_EQ(e.size(), 12u);
        list.SetEntry(++list.AlertCount, e);
    }
    std::string text = FormatAlertFile(list, false);
    std::vector<std::string> lines = core::SplitLines(text);
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0] + "\r\n", Header());
    EXPECT_EQ(lines[1], "zz_entry0000,zz_entry0001,zz_entry0002,zz_entry0003,");
    EXPECT_EQ(lines[2], "zz_entry0004,zz_entry0005,zz_entry0006,zz_entry0007,zz_entry0008,");
    EXPECT_EQ(lines[3], "zz_entry0009,zz_entry0010,zz_entry0011,zz_entry0012,");
    EXPECT_EQ(text.substr(text.size() - 2), "2,") << "no line end after the last entry";
}

TEST(WriteAlertList, CountsCharactersNotBytesWhenWrapping) {
    AlertList list = SmallList();
    // Twelve characters, thirty-six bytes each.
    for (int i = 0; i < 5; ++i) list.SetEntry(++list.AlertCount, "あいうえおかきくけこさ" + std::to_string(i));
    std::vector<std::string> lines = core::SplitLines(FormatAlertFile(list, true));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "#   << Tarvelloがアラートするプレイヤー >>");
    EXPECT_EQ(core::Len(lines[1]), 4u * 13u);
}

TEST(WriteAlertList, SkipsRemovedEmptyAndCaseInsensitiveRepeats) {
    AlertList list = SmallList();
    for (const char* e : {"ZZ_BUILTIN01(stupid)", "zz_keep(Slow)", "zz_gone", "ZZ_KEEP(SLOW)", "zz_last"})
        list.SetEntry(++list.AlertCount, e);
    list.SetEntry(6, "");  // the user removed zz_gone
    EXPECT_EQ(FormatAlertFile(list, false), Header() + "zz_keep(Slow),zz_last,");
}

TEST(WriteAlertList, AnEntryStartingWithANumberSignNeverStartsALine) {
    AlertList list = SmallList();
    AppendAlertText("zz_x,#zz_hash\r\n", list);
    list.SetEntry(4, "");  // zz_x removed: "#zz_hash" would begin the line
    std::string text = FormatAlertFile(list, false);
    EXPECT_EQ(text, Header() + ",#zz_hash,");
    AlertList again = SmallList();
    AppendAlertText(text, again);
    EXPECT_EQ(UserEntries(again), std::vector<std::string>{"#zz_hash"});
}

TEST(WriteAlertList, NoUserEntriesGiveTheHeaderAlone) {
    EXPECT_EQ(FormatAlertFile(SmallList(), false), Header());
}

TEST(AlertFile, RoundTripKeepsTheUserSection) {
    TempDir dir;
    std::string path = dir.File("Alert.TXT");
    AlertList list = SmallList();
    for (const char* e : {"zz_one(Bad Play)", "{zz_two(NIL Mania)}", "<zz_three>", "zz_four"})
        list.SetEntry(++list.AlertCount, e);
    ASSERT_EQ(WriteAlertList(list, path, false, 1252), AlertFileResult::Ok);
    EXPECT_FALSE(std::filesystem::exists(path + ".tmp~"));

    AlertList again = SmallList();
    ASSERT_EQ(ReadAlertList(path, again, 1252), AlertFileResult::Ok);
    EXPECT_EQ(UserEntries(again), UserEntries(list));
    EXPECT_EQ(FormatAlertFile(again, false), ReadBytes(path));
}

TEST(AlertFile, JapaneseEntriesAreWrittenInTheJapaneseCodePage) {
    if (!core::IsCodePageSupported(932)) GTEST_SKIP() << "code page 932 not available";
    TempDir dir;
    std::string path = dir.File("アラート.TXT");
    AlertList list = SmallList();
    list.SetEntry(++list.AlertCount, "zz_日本(遅い)");
    ASSERT_EQ(WriteAlertList(list, path, true, 932), AlertFileResult::Ok);
    std::string bytes = ReadBytes(path);
    EXPECT_EQ(bytes.find("アラート"), std::string::npos) << "no UTF-8 on disk";
    AlertList again = SmallList();
    ASSERT_EQ(ReadAlertList(path, again, 932), AlertFileResult::Ok);
    EXPECT_EQ(UserEntries(again), (std::vector<std::string>{"zz_日本(遅い)"}));
}

TEST(AlertFile, MissingFileIsNoErrorAndChangesNothing) {
    TempDir dir;
    AlertList list = SmallList();
    EXPECT_EQ(ReadAlertList(dir.File("none.txt"), list, 1252), AlertFileResult::Missing);
    EXPECT_EQ(list.AlertCount, 3);
    EXPECT_FALSE(list.FileUnreadable);
}

TEST(AlertFile, GarbageIsReadWithoutHarm) {
    TempDir dir;
    std::string path = dir.File("Alert.TXT");
    std::string junk;
    for (int i = 0; i < 4096; ++i) junk += static_cast<char>((i * 7919) & 0xFF);
    junk += std::string(3, '\0') + ",,,   ,\r\r\n\n(((";
    WriteBytes(path, junk);
    AlertList list = SmallList();
    ASSERT_EQ(ReadAlertList(path, list, 1252), AlertFileResult::Ok);
    for (std::int32_t i = 1; i <= list.AlertCount; ++i) EXPECT_FALSE(list.Entry(i).empty());
    EXPECT_EQ(list.Entry(3), "//");
}

TEST(AlertFile, AFailedWriteKeepsTheOldFile) {
    TempDir dir;
    std::string path = dir.File("Alert.TXT");
    WriteBytes(path, "#\r\nzz_old,");
    AlertList list = SmallList();
    ASSERT_EQ(ReadAlertList(path, list, 1252), AlertFileResult::Ok);

    // The list never saw the file's entries: writing would lose them.
    list.FileUnreadable = true;
    EXPECT_EQ(WriteAlertList(list, path, false, 1252), AlertFileResult::Refused);
    EXPECT_EQ(ReadBytes(path), "#\r\nzz_old,");

    // A folder where the file should go cannot be replaced.
    list.FileUnreadable = false;
    std::filesystem::create_directories(dir.File("busy"));
    EXPECT_EQ(WriteAlertList(list, dir.File("busy"), false, 1252), AlertFileResult::WriteFailed);
    EXPECT_TRUE(std::filesystem::is_directory(dir.File("busy")));
    EXPECT_FALSE(std::filesystem::exists(dir.File("busy") + ".tmp~"));
    EXPECT_EQ(WriteAlertList(list, dir.File("no/such/folder/Alert.TXT"), false, 1252), AlertFileResult::WriteFailed);
}
