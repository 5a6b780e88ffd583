#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "core/text.h"

using namespace core;

namespace {

std::string RawFile(const std::filesystem::path& p) {
    std::ifstream in(p, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

class TempDir {
public:
    TempDir() {
        std::random_device rd;
        path_ = std::filesystem::temp_directory_path() / ("core-text-" + std::to_string(rd()));
        std::filesystem::create_directories(path_);
    }
    ~TempDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    std::string File(const std::string& name) const { return PathToUtf8(path_ / PathFromUtf8(name)); }
    const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace

TEST(TextCharacters, CountsCharactersNotBytes) {
    EXPECT_EQ(Len("スペード.INI"), 8u);
    EXPECT_EQ(Len("Ångström"), 8u);
    EXPECT_EQ(Len(""), 0u);
    EXPECT_EQ(Left("スペード.INI", 4), "スペード");
    EXPECT_EQ(Right("スペード.INI", 4), ".INI");
    EXPECT_EQ(Mid("スペード.INI", 2, 3), "ペード");
    EXPECT_EQ(Mid("スペード.INI", 5), ".INI");
    // Out-of-range arguments give what is there, never a fault.
    EXPECT_EQ(Left("ab", 10), "ab");
    EXPECT_EQ(Left("ab", -1), "");
    EXPECT_EQ(Right("ab", 10), "ab");
    EXPECT_EQ(Mid("ab", 5, 2), "");
    EXPECT_EQ(Mid("ab", 0, 1), "a");
    EXPECT_EQ(Mid("abc", 2, 0), "");
}

TEST(TextCharacters, InvalidUtf8CountsEachStrayByteAndSurvives) {
    const std::string bad = "a\xE3\x82" "b\xFF";  // truncated sequence, then a lone 0xFF
    EXPECT_EQ(Len(bad), 5u);
    EXPECT_EQ(Mid(bad, 4, 1), "b");
    EXPECT_EQ(UCase(bad), "A\xE3\x82" "B\xFF");
    EXPECT_EQ(InStr(bad, "b"), 4u);
}

TEST(TextCharacters, InStrIsOneBasedAndZeroWhenAbsent) {
    EXPECT_EQ(InStr("alpha, beta", ","), 6u);
    EXPECT_EQ(InStr("alpha", "x"), 0u);
    EXPECT_EQ(InStr("スペード履歴.TXT", "履歴"), 5u);
    EXPECT_EQ(InStr(3, "a,b,c", ","), 4u);
    EXPECT_EQ(InStr(9, "a,b,c", ","), 0u);
    EXPECT_EQ(InStr("abc", ""), 1u);
    EXPECT_EQ(InStr("", ""), 0u);
    EXPECT_EQ(InStr("", "a"), 0u);
    EXPECT_EQ(InStrRev("a,b,c", ","), 4u);
    EXPECT_EQ(InStrRev("abc", "x"), 0u);
}

TEST(TextCharacters, CaseMappingCoversLatin1And1252Letters) {
    EXPECT_EQ(UCase("autocapt bid"), "AUTOCAPT BID");
    EXPECT_EQ(LCase("AutoCapt Bid"), "autocapt bid");
    EXPECT_EQ(UCase("äöüéñçåæø ÿšœž"), "ÄÖÜÉÑÇÅÆØ ŸŠŒŽ");
    EXPECT_EQ(LCase("ÄÖÜÉÑÇÅÆØ ŸŠŒŽ"), "äöüéñçåæø ÿšœž");
    // × and ÷ are not letters; ß has no single upper-case letter.
    EXPECT_EQ(UCase("×÷ß"), "×÷ß");
    EXPECT_EQ(LCase("ＢＯＸ"), "ｂｏｘ");
    EXPECT_EQ(LCase("BOX の状態を表示"), "box の状態を表示");
    EXPECT_TRUE(EqualNoCase("TarvelloS.INI", "tarvellos.ini"));
    EXPECT_FALSE(EqualNoCase("TarvelloS.INI", "tarvellos.in"));
}

TEST(TextCharacters, TrimRemovesBlanksAtTheEndsOnly) {
    EXPECT_EQ(Trim("  a b \t"), "a b");
    EXPECT_EQ(LTrim("  a b  "), "a b  ");
    EXPECT_EQ(RTrim("  a b  "), "  a b");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim("　x　"), "　x　");  // a full-width space is a character, not a blank
}

TEST(TextNumbers, ValReadsTheLeadingDecimalNumber) {
    EXPECT_DOUBLE_EQ(Val("2.5"), 2.5);
    EXPECT_DOUBLE_EQ(Val("  -7 seconds"), -7);
    EXPECT_DOUBLE_EQ(Val(".5"), 0.5);
    EXPECT_DOUBLE_EQ(Val("20)"), 20);
    EXPECT_DOUBLE_EQ(Val("1,000"), 1);
    EXPECT_DOUBLE_EQ(Val("abc"), 0);
    EXPECT_DOUBLE_EQ(Val(""), 0);
    EXPECT_DOUBLE_EQ(Val("-"), 0);
    EXPECT_DOUBLE_EQ(Val("+."), 0);
    EXPECT_EQ(ValInt("2.5"), 3);
    EXPECT_EQ(ValInt("-2.5"), -3);
    EXPECT_EQ(ValInt("624px"), 624);
    EXPECT_EQ(ValInt("99999999999999"), 2147483647);
    EXPECT_EQ(ValInt("-99999999999999"), -2147483647 - 1);
    EXPECT_EQ(ValInt(std::string(400, '9')), 2147483647);
}

TEST(TextNumbers, HexValWithOrWithoutPrefix) {
    EXPECT_EQ(HexVal("&HFFE0C0"), 0xFFE0C0u);
    EXPECT_EQ(HexVal("&hffe0c0"), 0xFFE0C0u);
    EXPECT_EQ(HexVal("ffe0c0"), 0xFFE0C0u);
    EXPECT_EQ(HexVal(" cdcdcd trailing"), 0xCDCDCDu);
    EXPECT_EQ(HexVal("&H"), 0u);
    EXPECT_EQ(HexVal("zz"), 0u);
    EXPECT_EQ(HexVal("123456789"), 0x23456789u);  // only the low 32 bits
}

TEST(TextTokens, NextTokenCutsAtCommaElseBlank) {
    std::string t = "alpha, beta gamma";
    EXPECT_EQ(NextToken(t), "alpha");
    EXPECT_EQ(t, "beta gamma");
    EXPECT_EQ(NextToken(t), "beta");
    EXPECT_EQ(NextToken(t), "gamma");
    EXPECT_EQ(t, "");
    // A comma anywhere wins over an earlier blank; the token keeps its right blanks.
    t = "ab cd, ef";
    EXPECT_EQ(NextToken(t), "ab cd");
    t = "ab ,c";
    EXPECT_EQ(NextToken(t), "ab ");
    // Two commas in a row give an empty token.
    t = "a,,b";
    EXPECT_EQ(NextToken(t), "a");
    EXPECT_EQ(NextToken(t), "");
    EXPECT_EQ(NextToken(t), "b");
    t = "   ";
    EXPECT_EQ(NextToken(t), "");
    EXPECT_EQ(t, "");
}

TEST(TextTokens, UnquoteTakesTheQuotedPart) {
    EXPECT_EQ(Unquote("  \"SystemHand\" and more "), "SystemHand");
    EXPECT_EQ(Unquote("x \"open to the end"), "open to the end");
    EXPECT_EQ(Unquote("  plain  "), "plain");
}

TEST(TextCodePages, Western1252RoundTripsEveryByte) {
    for (int b = 0; b < 256; ++b) {
        const std::string one(1, static_cast<char>(b));
        EXPECT_EQ(FromUtf8(ToUtf8(one, 1252), 1252), one) << b;
        EXPECT_EQ(ByteRoundTrip(1252, static_cast<std::uint8_t>(b)), b);
    }
    EXPECT_EQ(ToUtf8("\x80 \xE9t\xE9", 1252), "€ été");
    EXPECT_EQ(FromUtf8("€ été", 1252), "\x80 \xE9t\xE9");
    // Characters the code page cannot hold become "?", one per character.
    EXPECT_EQ(FromUtf8("aスペードb", 1252), "a????b");
    EXPECT_EQ(FromUtf8("a\xFF" "b", 1252), "a?b");
}

TEST(TextCodePages, Japanese932ConvertsBothWays) {
    ASSERT_TRUE(IsCodePageSupported(932));
    const std::string sjis = "\x83\x58\x83\x79\x81\x5B\x83\x68.INI";  // スペード.INI
    EXPECT_EQ(ToUtf8(sjis, 932), "スペード.INI");
    EXPECT_EQ(FromUtf8("スペード.INI", 932), sjis);
    EXPECT_EQ(ToUtf8("\xC1", 932), "ﾁ");  // single-byte katakana
    EXPECT_EQ(FromUtf8("€", 932), "?");
    // A lead byte without its trail byte, or followed by a line end, is one "?".
    EXPECT_EQ(ToUtf8("a\x81", 932), "a?");
    EXPECT_EQ(ToUtf8("\x81\r", 932), "?\r");
    EXPECT_EQ(ToUtf8("\xA0x", 932), "?x");
}

TEST(TextCodePages, ByteRoundTripTellsJapaneseFromWestern) {
    EXPECT_NE(ByteRoundTrip(932, 129), 129);
    EXPECT_EQ(ByteRoundTrip(932, 193), 193);
    EXPECT_NE(ByteRoundTrip(932, 225), 225);
    EXPECT_EQ(ByteRoundTrip(1252, 129), 129);
    EXPECT_FALSE(IsCodePageSupported(0));
    EXPECT_FALSE(IsCodePageSupported(-5));
    EXPECT_FALSE(IsCodePageSupported(987654));
    // An unknown code page never crashes a conversion.
    EXPECT_EQ(ToUtf8("abc", 987654), "abc");
}

TEST(TextFiles, SplitLinesAcceptsEveryLineEnd) {
    EXPECT_EQ(SplitLines("a\r\nb\nc\rd"), (std::vector<std::string>{"a", "b", "c", "d"}));
    EXPECT_EQ(SplitLines("a\r\n"), (std::vector<std::string>{"a"}));
    EXPECT_EQ(SplitLines("\r\n\r\n"), (std::vector<std::string>{"", ""}));
    EXPECT_EQ(SplitLines("a\n\rb"), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_TRUE(SplitLines("").empty());
}

TEST(TextFiles, WriteIsCrLfInTheCodePageAndReadsBack) {
    TempDir dir;
    const std::string path = dir.File("スペード履歴.TXT");
    ASSERT_TRUE(WriteTextFile(path, {"スペード", "", "été"}, 932));
    EXPECT_EQ(RawFile(PathFromUtf8(path)), "\x83\x58\x83\x79\x81\x5B\x83\x68\r\n\r\n?t?\r\n");
    std::vector<std::string> lines;
    ASSERT_TRUE(ReadTextFile(path, 932, lines));
    EXPECT_EQ(lines, (std::vector<std::string>{"スペード", "", "?t?"}));

    ASSERT_TRUE(WriteTextFile(path, {"été"}, 1252));
    EXPECT_EQ(RawFile(PathFromUtf8(path)), "\xE9t\xE9\r\n");
    ASSERT_TRUE(AppendTextFile(path, {"x"}, 1252));
    EXPECT_EQ(RawFile(PathFromUtf8(path)), "\xE9t\xE9\r\nx\r\n");
}

TEST(TextFiles, SafeWriteReplacesAndLeavesNoTemporaryFile) {
    TempDir dir;
    const std::string path = dir.File("Alert.TXT");
    ASSERT_TRUE(WriteTextFile(path, {"old"}, 1252));
    ASSERT_TRUE(WriteTextFile(path, {"new", "lines"}, 1252));
    EXPECT_EQ(RawFile(PathFromUtf8(path)), "new\r\nlines\r\n");
    int files = 0;
    for (auto& e : std::filesystem::directory_iterator(dir.Path())) {
        (void)e;
        ++files;
    }
    EXPECT_EQ(files, 1);
}

TEST(TextFiles, FailuresAreReportedNotThrown) {
    TempDir dir;
    std::vector<std::string> lines{"stale"};
    EXPECT_FALSE(ReadTextFile(dir.File("missing.txt"), 1252, lines));
    EXPECT_TRUE(lines.empty());
    std::filesystem::create_directory(dir.Path() / "AFolder");
    EXPECT_FALSE(ReadTextFile(dir.File("AFolder"), 1252, lines)) << "a folder reads as no file";
    EXPECT_FALSE(WriteTextFile(dir.File("no/such/folder/x.txt"), {"x"}, 1252));
    // A folder standing where the file should go is left alone.
    std::filesystem::create_directory(dir.Path() / "Taken");
    EXPECT_FALSE(WriteTextFile(dir.File("Taken"), {"x"}, 1252));
    EXPECT_TRUE(std::filesystem::is_directory(dir.Path() / "Taken"));
}

TEST(TextFiles, ReadsMixedLineEndsAndBadBytes) {
    TempDir dir;
    const std::string path = dir.File("mixed.txt");
    {
        std::ofstream out(PathFromUtf8(path), std::ios::binary);
        out << "one\r\ntwo\nthree\r\x81\nlast";
    }
    std::vector<std::string> lines;
    ASSERT_TRUE(ReadTextFile(path, 932, lines));
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "three", "?", "last"}));
}
