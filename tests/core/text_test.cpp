#include <gtest/gtest.h>

#include <system_error>

#include <tuple>

#include <utility>

#include "core/text.h"
#include "temp_dir.h"

using namespace core;

namespace {

using Lines = std::vector<std::string>;

// Cuts the whole text by the list rule (at most 10 tokens, so a rest that
// never shrinks ends the test instead of hanging it).
Lines Tokens(std::string t) {
    Lines out;
    do {
        out.push_back(NextToken(t));
    } while (!t.empty() && out.size() < 10);
    return out;
}

}  // namespace

TEST(TextCharacters, CountAndCutByCharactersNotBytes) {
    EXPECT_EQ(Len("スペード.INI"), 8u);
    EXPECT_EQ(Left("スペード.INI", 4) + "|" + Right("スペード.INI", 4) + "|" + Mid("スペード.INI", 2, 3), "スペード|.INI|ペード");
    // Out-of-range arguments give what is there, never a fault.
    EXPECT_EQ(Left("ab", -1) + "|" + Mid("ab", 5, 2) + "|" + Mid("ab", 0, 1), "||a");
    // Invalid UTF-8: each stray byte is one character and is kept.
    const std::string bad = "a\xE3\x82" "b\xFF";
    EXPECT_EQ(Len(bad), 5u);
    EXPECT_EQ(UCase(bad), "A\xE3\x82" "B\xFF");
    EXPECT_EQ(InStr(bad, "b"), 4u);
}

TEST(TextCharacters, InStrIsOneBasedAndZeroWhenAbsent) {
    EXPECT_EQ(InStr("スペード履歴.TXT", "履歴"), 5u);
    EXPECT_EQ(InStr(3, "a,b,c", ","), 4u);
    EXPECT_EQ(InStr(9, "a,b,c", ","), 0u);
    EXPECT_EQ(InStr("abc", ""), 1u);
    EXPECT_EQ(InStr("", ""), 0u);
    EXPECT_EQ(InStrRev("a,b,c", ","), 4u);
}

TEST(TextCharacters, CaseMappingAndTrim) {
    EXPECT_EQ(UCase("äöüéñçåæø ÿšœž autocapt"), "ÄÖÜÉÑÇÅÆØ ŸŠŒŽ AUTOCAPT");
    EXPECT_EQ(LCase("ÄÖÜÉÑÇÅÆØ ŸŠŒŽ AutoCapt"), "äöüéñçåæø ÿšœž autocapt");
    EXPECT_EQ(UCase("×÷ß"), "×÷ß");  // not letters / no single upper-case letter
    EXPECT_EQ(LCase("ＢＯＸ の状態を表示"), "ｂｏｘ の状態を表示");
    EXPECT_TRUE(EqualNoCase("TarvelloS.INI", "tarvellos.ini"));
    EXPECT_FALSE(EqualNoCase("TarvelloS.INI", "tarvellos.in"));
    EXPECT_EQ(Trim("  a b \t") + "|" + LTrim("  a b  ") + "|" + RTrim("  a b  ") + "|" + Trim(" \t "), "a b|a b  |  a b|");
    EXPECT_EQ(Trim("　x　"), "　x　");  // a full-width space is a character, not a blank
}

TEST(TextNumbers, LeadingDecimalAndHexadecimalNumbers) {
    const std::pair<const char*, double> vals[] = {{"2.5", 2.5}, {"  -7 seconds", -7}, {".5", 0.5},
                                                   {"1,000", 1},  {"abc", 0},           {"+.", 0}};
    for (const auto& [text, v] : vals) EXPECT_DOUBLE_EQ(Val(text), v) << text;
    const std::pair<std::string, std::int32_t> ints[] = {{"2.5", 3}, {"-2.5", -3}, {"-99999999999999", -2147483647 - 1},
                                                         {std::string(400, '9'), 2147483647}};
    for (const auto& [text, v] : ints) EXPECT_EQ(ValInt(text), v) << text;
    const std::pair<const char*, std::uint32_t> hex[] = {{"&hffe0c0", 0xFFE0C0}, {" cdcdcd trailing", 0xCDCDCD},
                                                         {"&H", 0}, {"123456789", 0x23456789}};  // low 32 bits
    for (const auto& [text, v] : hex) EXPECT_EQ(HexVal(text), v) << text;
}

TEST(TextTokens, ListRuleAndQuotes) {
    // A comma anywhere wins over an earlier blank; a token keeps its right
    // blanks; two commas give an empty token.
    const std::pair<const char*, Lines> lists[] = {{"alpha, beta gamma", {"alpha", "beta", "gamma"}},
                                                   {"ab cd, ef", {"ab cd", "ef"}},
                                                   {"ab ,c", {"ab ", "c"}},
                                                   {"a,,b", {"a", "", "b"}},
                                                   {"   ", {""}}};
    for (const auto& [text, tokens] : lists) EXPECT_EQ(Tokens(text), tokens) << text;
    EXPECT_EQ(Unquote("  \"SystemHand\" and more ") + "|" + Unquote("x \"open to the end") + "|" + Unquote("  plain  "),
              "SystemHand|open to the end|plain");
}

TEST(TextCodePages, Western1252) {
    for (int b = 0; b < 256; ++b) {
        const std::string one(1, static_cast<char>(b));
        EXPECT_EQ(FromUtf8(ToUtf8(one, 1252), 1252), one) << b;
        EXPECT_EQ(ByteRoundTrip(1252, static_cast<std::uint8_t>(b)), b);
    }
    EXPECT_EQ(ToUtf8("\x80 \xE9t\xE9", 1252), "€ été");
    EXPECT_EQ(FromUtf8("€ été", 1252), "\x80 \xE9t\xE9");
    // What the code page cannot hold becomes one "?" per character.
    EXPECT_EQ(FromUtf8("aスペードb", 1252), "a????b");
    EXPECT_EQ(FromUtf8("a\xFF" "b", 1252), "a?b");
}

TEST(TextCodePages, Japanese932AndUnknownPages) {
    ASSERT_TRUE(IsCodePageSupported(932));
    const std::string sjis = "\x83\x58\x83\x79\x81\x5B\x83\x68.INI";  // スペード.INI
    EXPECT_EQ(ToUtf8(sjis, 932), "スペード.INI");
    EXPECT_EQ(FromUtf8("スペード.INI", 932), sjis);
    EXPECT_EQ(ToUtf8("\xC1", 932), "ﾁ");  // single-byte katakana
    EXPECT_EQ(FromUtf8("€", 932), "?");
    // A lead byte without its trail byte, or followed by a line end, is one "?".
    EXPECT_EQ(ToUtf8("a\x81", 932) + ToUtf8("\x81\r", 932), "a??\r");
    // The byte round trip that tells a Japanese system from a Western one.
    EXPECT_NE(ByteRoundTrip(932, 129), 129);
    EXPECT_EQ(ByteRoundTrip(932, 193), 193);
    EXPECT_FALSE(IsCodePageSupported(987654));
    EXPECT_EQ(ToUtf8("abc", 987654), "abc");
}

TEST(TextFiles, WriteIsCrLfInTheCodePageReadIsAnyLineEnd) {
    TempDir dir;
    const std::string path = dir.File("スペード履歴.TXT");
    ASSERT_TRUE(WriteTextFile(path, {"old"}, 1252));
    ASSERT_TRUE(WriteTextFile(path, {"スペード", "", "été"}, 932));
    EXPECT_EQ(dir.Get("スペード履歴.TXT"), "\x83\x58\x83\x79\x81\x5B\x83\x68\r\n\r\n?t?\r\n");
    Lines lines;
    ASSERT_TRUE(ReadTextFile(path, 932, lines));
    EXPECT_EQ(lines, (Lines{"スペード", "", "?t?"}));
    ASSERT_TRUE(WriteTextFile(path, {"été"}, 1252));
    ASSERT_TRUE(AppendTextFile(path, {"x"}, 1252));
    EXPECT_EQ(dir.Get("スペード履歴.TXT"), "\xE9t\xE9\r\nx\r\n");
    // The replacing write leaves no temporary file behind.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()), {}), 1);

    dir.Put("mixed.txt", "one\r\ntwo\nthree\r\x81\nlast");
    ASSERT_TRUE(ReadTextFile(dir.File("mixed.txt"), 932, lines));
    EXPECT_EQ(lines, (Lines{"one", "two", "three", "?", "last"}));
    EXPECT_EQ(SplitLines("a\n\rb\r\n"), (Lines{"a", "", "b"}));
    EXPECT_TRUE(SplitLines("").empty());
}

TEST(TextFiles, FailuresAreReportedNotThrown) {
    TempDir dir;
    Lines lines{"stale"};
    EXPECT_FALSE(ReadTextFile(dir.File("missing.txt"), 1252, lines));
    EXPECT_TRUE(lines.empty());
    std::filesystem::create_directory(dir.Path() / "Taken");
    EXPECT_FALSE(ReadTextFile(dir.File("Taken"), 1252, lines)) << "a folder reads as no file";
    // Each failure names the file and says why, in the system's words.
    const SaveResult missing = WriteTextFile(dir.File("no/such/folder/x.txt"), {"x"}, 1252);
    EXPECT_EQ(std::tuple(missing.Saved, missing.Path), std::tuple(false, dir.File("no/such/folder/x.txt")));
#ifdef _WIN32
    const std::string noFolder = std::system_category().message(3);  // ERROR_PATH_NOT_FOUND
#else
    const std::string noFolder = "No such file or directory";
#endif
    EXPECT_NE(missing.Reason.find(noFolder), std::string::npos) << missing.Reason;
    // A folder standing where the file should go is left alone.
    const SaveResult taken = WriteTextFile(dir.File("Taken"), {"x"}, 1252);
    EXPECT_FALSE(taken.Saved);
    EXPECT_NE(taken.Reason.find("cannot replace the file"), std::string::npos) << taken.Reason;
    EXPECT_TRUE(std::filesystem::is_directory(dir.Path() / "Taken"));
}
