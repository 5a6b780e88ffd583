#include "scoring/nil_history.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "core/notation.h"
#include "core/text.h"

using namespace scoring;
namespace fs = std::filesystem;

namespace {

std::array<int, 13> Hand(const std::string& cards) {
    std::array<int, 13> h{};
    std::istringstream in(cards);
    std::string c;
    for (int i = 0; i < 13 && in >> c; ++i) h[i] = core::CardCode(c);
    return h;
}

const char* LowHand = "2C 3C 4C 5C 6C 2D 3D 4D 5D 2H 3H 4H 2S";    // keeps the rule, 1 spade
const char* FourSpades = "2C 3C 4C 5C 6C 2D 3D 4D 2H 2S 3S 4S 5S";  // keeps it by the check
const char* QueenSpades = "2C 3C 4C 5C 6C 2D 3D 4D 5D 2H 3H 4H QS";
const char* EightAce = "2C 3C 4C 5C 6C 2D 3D 4D 5D 8H AH 2H 2S";

// A deal by seat with the user at North; everybody bids 3 unless told.
NilDeal Deal() {
    NilDeal d;
    d.Names = {"me_one", "lefty", "pard", "righty"};
    d.Bids = {"3", "3", "3", "3"};
    d.Tricks = {4, 3, 3, 3};
    for (auto& h : d.Cards) h = Hand(LowHand);
    return d;
}

void Nil(NilDeal& d, int seat, const char* bid, int tricks, const char* hand = LowHand) {
    d.Bids[seat] = bid;
    d.Tricks[seat] = tricks;
    d.Cards[seat] = Hand(hand);
}

struct TempDir {
    TempDir() {
        std::random_device rd;
        path = fs::temp_directory_path() / ("tarvellos-nil-" + std::to_string(rd()) + std::to_string(rd()));
        fs::create_directories(path);
    }
    ~TempDir() {
        std::error_code ec;
        fs::remove_all(path, ec);
    }
    std::string File(const std::string& name) const { return core::PathToUtf8(path / core::PathFromUtf8(name)); }
    fs::path path;
};

std::string Bytes(const std::string& path) {
    std::ifstream f(core::PathFromUtf8(path), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(f), {});
}

void Put(const std::string& path, const std::string& bytes) {
    std::ofstream f(core::PathFromUtf8(path), std::ios::binary);
    f << bytes;
}

NilCounts Counted(const NilDeal& d, std::array<int, 2> score = {200, 180}, bool dnilPass = false) {
    NilCounts c;
    CountNilDeal(c, d, score, dnilPass);
    return c;
}

}  // namespace

TEST(NilHand, RuleOfFourAndEight) {
    EXPECT_EQ(CheckNilHand(Hand(LowHand)).Rule, 0);
    EXPECT_EQ(CheckNilHand(Hand(LowHand)).Spades, 1);
    EXPECT_EQ(CheckNilHand(Hand(QueenSpades)).Rule, 12);
    EXPECT_EQ(CheckNilHand(Hand(EightAce)).Rule, -1);
    const NilHandCheck four = CheckNilHand(Hand(FourSpades));
    EXPECT_EQ(four.Rule, 0);
    EXPECT_EQ(four.Spades, 4);
    // The jack of spades is no problem; queen, king and ace are.
    EXPECT_EQ(CheckNilHand(Hand("2C 3C 4C 5C 6C 2D 3D 4D 5D 2H 3H 4H JS")).Rule, 0);
    EXPECT_EQ(CheckNilHand(Hand("2C 3C 4C 5C 6C 2D 3D 4D 5D 2H 3H AS KS")).Rule, 13);
}

TEST(NilCount, OwnAndPartnersNils) {
    NilDeal d = Deal();
    Nil(d, 0, "N", 0);
    NilCounts c = Counted(d);
    EXPECT_EQ(c.Success(NilRowMyBids), 1);
    EXPECT_EQ(c.Success(NilRowRuleKept), 1);

    // Set in a deal the opponents win: nothing.
    d = Deal();
    Nil(d, 0, "N", 1);
    NilCounts none;
    EXPECT_FALSE(CountNilDeal(none, d, {300, 510}, false));
    EXPECT_EQ(none, NilCounts{});

    // Partner's Nil set though the hand kept the rule: a cover that failed.
    d = Deal();
    Nil(d, 2, "N", 2);
    c = Counted(d);
    EXPECT_EQ(c.Failure(NilRowMyCovers), 1);
    EXPECT_EQ(c.Failure(NilRowRuleKept), 1);
    // ... not with four spades or a broken rule.
    Nil(d, 2, "N", 2, FourSpades);
    EXPECT_FALSE(CountNilDeal(none, d, {200, 180}, false));
    Nil(d, 2, "N", 2, QueenSpades);
    EXPECT_FALSE(CountNilDeal(none, d, {200, 180}, false));
    Nil(d, 2, "N", 0, QueenSpades);
    c = Counted(d);
    EXPECT_EQ(c.Success(NilRowMyCovers), 1);
    EXPECT_EQ(c.Success(NilRowRuleBroken), 1);
}

TEST(NilCount, OpponentsNils) {
    // Made with four spades, no Nil of ours.
    NilDeal d = Deal();
    Nil(d, 1, "N", 0, FourSpades);
    NilCounts c = Counted(d);
    EXPECT_EQ(c.Failure(NilRowSetNils), 1);
    EXPECT_EQ(c.Failure(NilRowSetNils4Spades), 1);
    EXPECT_EQ(c.Success(NilRowRuleKept), 1);

    // Made while the partner made a Nil too: only the partner's counts.
    Nil(d, 2, "N", 0);
    c = Counted(d);
    EXPECT_EQ(c.Failure(NilRowSetNils), 0);
    EXPECT_EQ(c.Failure(NilRowSetNils4Spades), 0);
    EXPECT_EQ(c.Success(NilRowMyCovers), 1);
    EXPECT_EQ(c.Success(NilRowRuleKept), 1);

    // Set, bidder with the 8 and ace in a three-card suit.
    d = Deal();
    Nil(d, 3, "N", 1, EightAce);
    c = Counted(d);
    EXPECT_EQ(c.Success(NilRowSetNils), 1);
    EXPECT_EQ(c.Success(NilRowSetNils4Spades), 0);
    EXPECT_EQ(c.Failure(NilRowRuleBroken), 1);

    // On a double-Nil-pass table a Nil set while we lead by 200 is not ours.
    NilCounts none;
    EXPECT_FALSE(CountNilDeal(none, d, {400, 200}, true));
    EXPECT_TRUE(CountNilDeal(none, d, {399, 200}, true));
    EXPECT_TRUE(CountNilDeal(none, d, {400, 200}, false));
    // Not when we won the game.
    NilCounts won;
    EXPECT_FALSE(CountNilDeal(won, d, {510, 420}, false));
}

TEST(NilCount, DoubleNils) {
    NilDeal d = Deal();
    Nil(d, 0, "D", 0);
    EXPECT_EQ(Counted(d).Success(NilRowDoubleNils), 1);
    // A double Nil counts in no other row.
    EXPECT_EQ(Counted(d).Success(NilRowMyBids), 0);
    EXPECT_EQ(Counted(d, {200, 180}, true), NilCounts{});
    Nil(d, 0, "DP", 2);
    EXPECT_EQ(Counted(d).Failure(NilRowDoubleNils), 1);
    EXPECT_EQ(Counted(d, {300, 505}), NilCounts{});  // the bidder's side lost
    d = Deal();
    Nil(d, 1, "D", 1);
    EXPECT_EQ(Counted(d, {300, 505}).Failure(NilRowDoubleNils), 1);
    EXPECT_EQ(Counted(d, {505, 300}), NilCounts{});
}

TEST(NilReport, ReadsBackWhatItWrites) {
    NilCounts c;
    c.Rows[0] = {12, 3};
    c.Rows[1] = {7, 0};
    c.Rows[2] = {0, 0};
    c.Rows[3] = {1, 2};
    c.Rows[5] = {123456, 2};
    c.Rows[50] = {15, 1};
    c.Rows[51] = {4, 2};
    for (bool ja : {false, true}) {
        const auto lines = NilReportLines(c, ja, {2026, 3, 5, 9, 7, 3});
        EXPECT_EQ(ReadNilCounts(lines), c) << (ja ? "Japanese" : "English");
    }
    NilCounts big;
    big.Rows[0] = {INT32_MAX, INT32_MAX};
    big.Rows[2] = {-4, 1};
    EXPECT_EQ(ReadNilCounts(NilReportLines(big, false, {})), big);
}

TEST(NilReport, UnreadableLinesCountZero) {
    std::vector<std::string> lines = {"title", " (1) My NIL Bids   Success 5,  Failure 2, ...", "garbage",
                                      "Success", "Failure 9", "-", "-", " Success 3"};
    NilCounts c = ReadNilCounts(lines);
    EXPECT_EQ(c.Rows[0], (std::array<std::int32_t, 2>{5, 2}));
    EXPECT_EQ(c.Rows[1], (std::array<std::int32_t, 2>{0, 0}));
    EXPECT_EQ(c.Rows[2], (std::array<std::int32_t, 2>{0, 0}));
    EXPECT_EQ(c.Rows[3], (std::array<std::int32_t, 2>{0, 9}));
    EXPECT_EQ(c.Rows[50], (std::array<std::int32_t, 2>{3, 0}));
}

class NilHistoryFile : public ::testing::Test {
protected:
    NilHistoryContext Ctx(bool japanese = false) {
        NilHistoryContext ctx;
        ctx.Folder = core::PathToUtf8(dir.path);
        ctx.Japanese = japanese;
        ctx.UserIdentified = true;
        return ctx;
    }
    TempDir dir;
    platform::VirtualClock clock{platform::LocalTime{2026, 11, 21, 22, 5, 9, 6}};
};

TEST_F(NilHistoryFile, FirstNilEverWritesTheWholeReport) {
    NilDeal d = Deal();
    Nil(d, 0, "N", 0);
    ASSERT_EQ(WriteNilHistory(d, {200, 180}, Ctx(), clock), NilHistoryResult::Written);
    const std::string dashes74(74, '-'), dashes90(90, '-');
    const std::string expected =
        "    << History of My NILs >> 2026/11/21, 22:05:09\r\n"
        " (1) My NIL Bids   Success 1,  Failure 0,  Success Probability = 1 / 1 = 100.0 % [100 %]\r\n"
        " (2) My NIL Covers Success 0,  Failure 0 [0 %]\r\n"
        " (3)  Set NILs     Success 0,  Failure 0 [0 %]\r\n"
        " (3a) Set NILs     Success 0,  Failure 0 [ 4 spades ]\r\n" +
        dashes74 + "\r\n" +
        " (4) NILs Total    Success 1,  Failure 0,  Making Probability  = 1 / 1 = 100.0 %\r\n"
        " (4a)  Following the Rule  Success 1,  Failure 0,  Making Probability = 1 / 1 = 100.0 % [100 %]\r\n"
        " (4b)  Violating the Rule  Success 0,  Failure 0 [0 %]\r\n" +
        dashes90 + "\r\n" + " (5) DNIL Bids     Success 0,  Failure 0\r\n" + dashes90 + "\r\n" +
        " Standard Rule for Bidding NILs (Rule of 4 & 8)\r\n"
        "  Never NIL with 4 spades.\r\n"
        "  Never NIL, when any 3-card suit has 2 cards higher than or equal to EIGHT.\r\n" +
        dashes90 + "\r\n";
    EXPECT_EQ(Bytes(dir.File("RecordNILs.TXT")), expected);
    EXPECT_FALSE(fs::exists(dir.path / "RecordNILs.BAK"));
}

TEST_F(NilHistoryFile, SharesAndWidthsGrowWithTheCounts) {
    NilDeal d = Deal();
    Nil(d, 0, "N", 0);
    NilCounts c;
    c.Rows[0] = {8, 1};
    c.Rows[2] = {1, 0};
    c.Rows[50] = {2, 1};
    ASSERT_TRUE(core::WriteTextFile(dir.File("RecordNILs.TXT"), NilReportLines(c, false, {}), 1252));
    ASSERT_EQ(WriteNilHistory(d, {200, 180}, Ctx(), clock), NilHistoryResult::Written);
    std::vector<std::string> lines;
    ASSERT_TRUE(core::ReadTextFile(dir.File("RecordNILs.TXT"), 1252, lines));
    ASSERT_GE(lines.size(), 8u);
    EXPECT_EQ(lines[1], " (1) My NIL Bids   Success  9,  Failure  1,  Success Probability =  9 / 10 = 90.0 % [91 %]");
    EXPECT_EQ(lines[3], " (3)  Set NILs     Success  1,  Failure  0,  Set Probability     =  1 /  1 = 100.0 % [9 %]");
    EXPECT_EQ(lines[7], " (4a)  Following the Rule  Success  3,  Failure  1,  Making Probability =  3 /  4 = 75.0 % [100 %]");
}

TEST_F(NilHistoryFile, JapaneseReportInCodePage932) {
    if (!core::IsCodePageSupported(932)) GTEST_SKIP() << "no code page 932 here";
    // Counts in the English report are not read by the Japanese interface.
    NilCounts english;
    english.Rows[0] = {40, 4};
    ASSERT_TRUE(core::WriteTextFile(dir.File("RecordNILs.TXT"), NilReportLines(english, false, {}), 1252));
    const std::string englishBytes = Bytes(dir.File("RecordNILs.TXT"));

    NilDeal d = Deal();
    Nil(d, 2, "N", 0);
    ASSERT_EQ(WriteNilHistory(d, {200, 180}, Ctx(true), clock), NilHistoryResult::Written);
    ASSERT_EQ(WriteNilHistory(d, {200, 180}, Ctx(true), clock), NilHistoryResult::Written);
    EXPECT_EQ(Bytes(dir.File("RecordNILs.TXT")), englishBytes);

    const std::string bytes = Bytes(dir.File("ニル集計.TXT"));
    NilCounts want;
    want.Rows[1] = {2, 0};
    want.Rows[50] = {2, 0};
    std::string expected;
    for (const auto& l : NilReportLines(want, true, clock.Now())) expected += core::FromUtf8(l, 932) + "\r\n";
    EXPECT_EQ(bytes, expected);
    // " (2) 私のニル･カバー 成功 2," in the code page: the half-width dot is one byte.
    EXPECT_NE(bytes.find("\xA5\x83\x4A\x83\x6F\x81\x5B \x90\xAC\x8C\xF7 2,"), std::string::npos);
    EXPECT_NE(bytes.find("    \x81\x73 \x83\x6A\x83\x8B\x82\xCC"), std::string::npos);  // "    《 ニルの"
}

TEST_F(NilHistoryFile, NothingToCountLeavesTheFileAlone) {
    NilCounts c;
    c.Rows[0] = {3, 1};
    ASSERT_TRUE(core::WriteTextFile(dir.File("RecordNILs.TXT"), NilReportLines(c, false, {}), 1252));
    const std::string before = Bytes(dir.File("RecordNILs.TXT"));

    NilDeal d = Deal();
    EXPECT_EQ(WriteNilHistory(d, {200, 180}, Ctx(), clock), NilHistoryResult::NotApplicable);  // no Nil
    Nil(d, 1, "N", 0);
    d.Names[3] = "Robot_4";
    EXPECT_EQ(WriteNilHistory(d, {200, 180}, Ctx(), clock), NilHistoryResult::NotApplicable);
    d.Names[3] = "righty";
    NilHistoryContext ctx = Ctx();
    ctx.SuicideTable = true;
    EXPECT_EQ(WriteNilHistory(d, {200, 180}, ctx, clock), NilHistoryResult::NotApplicable);
    ctx = Ctx();
    ctx.UserIdentified = false;
    EXPECT_EQ(WriteNilHistory(d, {200, 180}, ctx, clock), NilHistoryResult::NotApplicable);
    // Their Nil made in a game we won: a Nil, but nothing to count.
    EXPECT_EQ(WriteNilHistory(d, {520, 300}, Ctx(), clock), NilHistoryResult::NothingCounted);
    EXPECT_EQ(Bytes(dir.File("RecordNILs.TXT")), before);
}

TEST_F(NilHistoryFile, FailedNilAlertSoundsEvenWhenNotCounted) {
    NilDeal d = Deal();
    Nil(d, 0, "N", 2);
    Nil(d, 1, "D", 1);
    int alerts = 0;
    NilHistoryContext ctx = Ctx();
    ctx.AlertFailNil = true;
    ctx.SuicideTable = true;
    ctx.FailNilAlert = [&alerts] { ++alerts; };
    EXPECT_EQ(WriteNilHistory(d, {200, 180}, ctx, clock), NilHistoryResult::NotApplicable);
    EXPECT_EQ(alerts, 2);
    EXPECT_EQ(clock.Elapsed(), 1600u);
}

TEST_F(NilHistoryFile, BackupOnTheFirstUpdateOfANewDay) {
    NilDeal d = Deal();
    Nil(d, 0, "N", 0);
    const std::string report = dir.File("RecordNILs.TXT"), backup = dir.File("RecordNILs.BAK");
    ASSERT_EQ(WriteNilHistory(d, {200, 180}, Ctx(), clock), NilHistoryResult::Written);
    clock.Advance(3600 * 1000);
    ASSERT_EQ(WriteNilHistory(d, {200, 180}, Ctx(), clock), NilHistoryResult::Written);
    EXPECT_FALSE(fs::exists(core::PathFromUtf8(backup)));  // same day

    const std::string lastOfDay = Bytes(report);
    clock.Advance(24 * 3600 * 1000);
    ASSERT_EQ(WriteNilHistory(d, {200, 180}, Ctx(), clock), NilHistoryResult::Written);
    EXPECT_EQ(Bytes(backup), lastOfDay);
    clock.Advance(60 * 1000);
    ASSERT_EQ(WriteNilHistory(d, {200, 180}, Ctx(), clock), NilHistoryResult::Written);
    EXPECT_EQ(Bytes(backup), lastOfDay);  // still the state before the day's first update
    std::vector<std::string> lines;
    ASSERT_TRUE(core::ReadTextFile(report, 1252, lines));
    EXPECT_EQ(ReadNilCounts(lines).Success(NilRowMyBids), 4);
    // No temporary files are left behind.
    int files = 0;
    for ([[maybe_unused]] const auto& e : fs::directory_iterator(dir.path)) ++files;
    EXPECT_EQ(files, 2);
}

TEST_F(NilHistoryFile, GarbageNeverCostsCounts) {
    NilDeal d = Deal();
    Nil(d, 0, "N", 0);
    const std::string report = dir.File("RecordNILs.TXT");
    const char garbage[] = "\x00\xff\r\n Success 99999999999999, Failure -7\n\r\x81";
    Put(report, std::string(garbage, sizeof garbage - 1));
    ASSERT_EQ(WriteNilHistory(d, {200, 180}, Ctx(), clock), NilHistoryResult::Written);
    std::vector<std::string> lines;
    ASSERT_TRUE(core::ReadTextFile(report, 1252, lines));
    // Line 2 of the file held row 0: clamped count, plus the one counted now
    // stays at the limit.
    NilCounts c = ReadNilCounts(lines);
    EXPECT_EQ(c.Success(NilRowMyBids), INT32_MAX);
    EXPECT_EQ(c.Failure(NilRowMyBids), -7);

    // A report that cannot be read is not replaced, and the log says so.
    const std::string log = dir.File("trace.log");
    Put(log, "");
    fs::remove(core::PathFromUtf8(report));
    fs::create_directory(core::PathFromUtf8(report));
    NilHistoryContext ctx = Ctx();
    ctx.LogPath = log;
    EXPECT_EQ(WriteNilHistory(d, {200, 180}, ctx, clock), NilHistoryResult::Error);
    EXPECT_TRUE(fs::is_directory(core::PathFromUtf8(report)));
    EXPECT_EQ(Bytes(log), "Error in WriteNilHistory, Error code = 75\r\n");
}
