#include <gtest/gtest.h>

#include <filesystem>

#include "core/text.h"
#include "players/alert_list.h"
#include "core/temp_dir.h"

using namespace players;
using Entries = std::vector<std::string>;

namespace {

Entries UserEntries(const AlertList& list) {
    Entries out;
    for (std::int32_t i = list.SeparatorIndex() + 1; i <= list.AlertCount; ++i) out.push_back(list.Entry(i));
    return out;
}

// Two built-in entries and the separator, then `user` as user entries.
AlertList SmallList(const Entries& user = {}) {
    AlertList list;
    ReadDefaultAlertList(list, {"zz_builtin01(Stupid),zz_builtin02"});
    for (const auto& e : user) list.SetEntry(++list.AlertCount, e);
    return list;
}

const std::string kHeader = "#     << Players to be alerted by TarvelloS. >>\r\n";

}  // namespace

TEST(DefaultAlertList, SplitsTheTableAndEndsWithTheSeparator) {
    Entries out(1);
    std::int32_t count = 0;
    // An empty line 0 is skipped, a final comma adds nothing, the empty line 3 ends the table.
    ReadList(out, {"", "a(x), b,,c,", "d", "", "never"}, count);
    EXPECT_EQ(Entries(out.begin() + 1, out.begin() + 1 + count), (Entries{"a(x)", " b", "", "c", "d"}));

    AlertList list;
    ReadDefaultAlertList(list);
    const std::int32_t sep = list.SeparatorIndex();
    EXPECT_TRUE(sep > 1 && list.AlertCount == sep);
    EXPECT_EQ(list.Entry(0) + list.Entry(sep + 1) + list.Entry(1000000), "") << "unused slots read as empty";
}

TEST(ReadAlertText, CommentsBlankSeparatorsAndRepeats) {
    const std::pair<const char*, Entries> cases[] = {
        {"# one\r\n   # two, three\r\n\r\n", {}},
        // Blanks separate only where a line has no comma.
        {"alpha beta gamma\r\nzz_pair one, zz_third\r\nzz_someone(Bad Play)\r\n",
         {"alpha", "beta", "gamma", "zz_pair one", "zz_third", "zz_someone(Bad", "Play)"}},
        // Exact repeats (of built-in entries too) go; other letter case stays.
        {"zz_builtin01(Stupid),zz_mixed,ZZ_MIXED,zz_mixed,//,,\r\n", {"zz_mixed", "ZZ_MIXED"}},
    };
    for (const auto& [text, want] : cases) {
        AlertList list = SmallList();
        AppendAlertText(text, list);
        EXPECT_EQ(UserEntries(list), want) << text;
        EXPECT_GE(list.Size(), list.AlertCount + 11) << "empty slots follow the list";
    }
}

TEST(WriteAlertList, WrapsAtSixtyCharacters) {
    Entries twelve;
    for (int i = 0; i < 13; ++i) twelve.push_back("zz_entry" + std::string(i < 10 ? "000" : "00") + std::to_string(i));
    // Four entries of 12 characters on the first line, five on the next; no line end after the last.
    EXPECT_EQ(FormatAlertFile(SmallList(twelve), false),
              kHeader + "zz_entry0000,zz_entry0001,zz_entry0002,zz_entry0003,\r\n" +
                  "zz_entry0004,zz_entry0005,zz_entry0006,zz_entry0007,zz_entry0008,\r\n" +
                  "zz_entry0009,zz_entry0010,zz_entry0011,zz_entry0012,");

    // Characters count, not bytes: twelve characters of thirty-six bytes each.
    Entries wide;
    for (int i = 0; i < 5; ++i) wide.push_back("あいうえおかきくけこさ" + std::to_string(i));
    const Entries lines = core::SplitLines(FormatAlertFile(SmallList(wide), true));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "#   << Tarvelloがアラートするプレイヤー >>");
    EXPECT_EQ(core::Len(lines[1]), 4u * 13u);
}

// That what is written reads back to the same entries is fuzzed.
TEST(WriteAlertList, SkipsEmptyAndRepeatedEntries) {
    // User entries, the slot the user emptied, the body written.
    const std::tuple<Entries, std::int32_t, std::string> cases[] = {
        {{}, 0, ""},
        // Repeats ignoring case, of built-in entries too, are not written.
        {{"ZZ_BUILTIN01(stupid)", "zz_keep(Slow)", "zz_gone", "ZZ_KEEP(SLOW)", "zz_last"}, 6, "zz_keep(Slow),zz_last,"},
        // An entry starting with "#" never starts a line, or it would read as a comment.
        {{"zz_x", "#zz_hash"}, 4, ",#zz_hash,"},
    };
    for (const auto& [user, emptied, body] : cases) {
        AlertList list = SmallList(user);
        list.SetEntry(emptied, "");
        EXPECT_EQ(FormatAlertFile(list, false), kHeader + body);
    }
}

TEST(AlertFile, JapaneseEntriesInCodePage932) {
    if (!core::IsCodePageSupported(932)) GTEST_SKIP() << "code page 932 not available";
    TempDir dir;
    const std::string name = "アラート.TXT", path = dir.File(name);
    ASSERT_EQ(WriteAlertList(SmallList({"zz_日本(遅い)"}), path, true, 932), AlertFileResult::Ok);
    EXPECT_EQ(dir.Get(name).find("アラート"), std::string::npos) << "no UTF-8 on disk";
    AlertList ja = SmallList();
    ASSERT_EQ(ReadAlertList(path, ja, 932), AlertFileResult::Ok);
    EXPECT_EQ(UserEntries(ja), (Entries{"zz_日本(遅い)"}));
    EXPECT_EQ(FormatAlertFile(ja, true), core::ToUtf8(dir.Get(name), 932));
}

TEST(AlertFile, MissingFilesAndFailedWritesLoseNothing) {
    TempDir dir;
    AlertList list = SmallList();
    EXPECT_EQ(ReadAlertList(dir.File("none.txt"), list, 1252), AlertFileResult::Missing);
    EXPECT_TRUE(list.AlertCount == 3 && !list.FileUnreadable);

    // Garbage files are fuzzed.
    const std::string path = dir.File("Alert.TXT");

    // A list that never saw the file's entries is not written over it.
    dir.Put("Alert.TXT", "#\r\nzz_old,");
    list.FileUnreadable = true;
    EXPECT_EQ(WriteAlertList(list, path, false, 1252), AlertFileResult::Refused);
    EXPECT_EQ(dir.Get("Alert.TXT"), "#\r\nzz_old,");
    // A folder where the file should go cannot be replaced.
    list.FileUnreadable = false;
    std::filesystem::create_directories(dir.File("busy"));
    EXPECT_EQ(WriteAlertList(list, dir.File("busy"), false, 1252), AlertFileResult::WriteFailed);
    EXPECT_TRUE(std::filesystem::is_directory(dir.File("busy")));
    EXPECT_FALSE(std::filesystem::exists(dir.File("busy") + ".tmp~"));
    EXPECT_EQ(WriteAlertList(list, dir.File("no/such/folder/Alert.TXT"), false, 1252), AlertFileResult::WriteFailed);
}
