#include "scoring/nil_history.h"

#include <gtest/gtest.h>

#include <system_error>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "core/notation.h"
#include "core/temp_dir.h"
#include "core/text.h"
#include "platform/sim/virtual_clock.h"

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
const char* JackSpades = "2C 3C 4C 5C 6C 2D 3D 4D 5D 2H 3H 4H JS";  // the jack is no problem

struct NilBid {
    int seat;
    const char* bid;
    int tricks;
    const char* hand = LowHand;
};

// A deal by seat with the user at North; everybody bids 3 unless told.
NilDeal Deal(const std::vector<NilBid>& nils = {}) {
    NilDeal d;
    d.Names = {"me_one", "lefty", "pard", "righty"};
    d.Bids = {"3", "3", "3", "3"};
    d.Tricks = {4, 3, 3, 3};
    for (auto& h : d.Cards) h = Hand(LowHand);
    for (const NilBid& n : nils) {
        d.Bids[n.seat] = n.bid;
        d.Tricks[n.seat] = n.tricks;
        d.Cards[n.seat] = Hand(n.hand);
    }
    return d;
}

// Counts from (row, success, failure) triples.
NilCounts Counts(std::initializer_list<std::array<std::int32_t, 3>> rows) {
    NilCounts c;
    for (const auto& r : rows) c.Rows[r[0]] = {r[1], r[2]};
    return c;
}

}  // namespace

TEST(NilCount, EveryCategory) {
    enum { S = 0, F = 1 };  // success, failure
    const int Me = NilRowMyBids, Cover = NilRowMyCovers, Set = NilRowSetNils, Set4 = NilRowSetNils4Spades,
              DNil = NilRowDoubleNils, Kept = NilRowRuleKept, Broken = NilRowRuleBroken;
    struct Case {
        const char* what;
        std::vector<NilBid> nils;
        std::vector<std::pair<int, int>> counted;  // (row, column), one each
        std::array<int, 2> score = {200, 180};
        bool dnilPass = false;
    };
    const Case cases[] = {
        {"my Nil made", {{0, "N", 0}}, {{Me, S}, {Kept, S}}},
        {"my Nil set", {{0, "N", 1}}, {{Me, F}, {Kept, F}}},
        {"my Nil set, they won", {{0, "N", 1}}, {}, {300, 510}},
        {"cover failed", {{2, "N", 2}}, {{Cover, F}, {Kept, F}}},
        {"cover failed, 4 spades", {{2, "N", 2, FourSpades}}, {}},
        {"cover failed, rule broken", {{2, "N", 2, QueenSpades}}, {}},
        {"cover made, rule broken", {{2, "N", 0, QueenSpades}}, {{Cover, S}, {Broken, S}}},
        {"cover made, jack of spades", {{2, "N", 0, JackSpades}}, {{Cover, S}, {Kept, S}}},
        {"their Nil made, 4 spades", {{1, "N", 0, FourSpades}}, {{Set, F}, {Set4, F}, {Kept, S}}},
        {"their Nil made with ours", {{1, "N", 0, FourSpades}, {2, "N", 0}}, {{Cover, S}, {Kept, S}}},
        {"their Nil made, ours set", {{1, "N", 0}, {0, "N", 2}}, {{Me, F}, {Kept, F}, {Set, F}, {Kept, S}}},
        {"their Nil set", {{3, "N", 1, EightAce}}, {{Set, S}, {Broken, F}}},
        {"their Nil set, we lead by 200", {{3, "N", 1}}, {}, {400, 200}, true},
        {"their Nil set, we lead by 199", {{3, "N", 1}}, {{Set, S}, {Kept, F}}, {399, 200}, true},
        {"their Nil set, no DNil pass", {{3, "N", 1}}, {{Set, S}, {Kept, F}}, {400, 200}},
        {"their Nil set, we won", {{3, "N", 1}}, {}, {510, 420}},
        {"my double Nil made", {{0, "D", 0}}, {{DNil, S}}},
        {"double Nil, DNil pass", {{0, "D", 0}}, {}, {200, 180}, true},
        {"my double Nil set", {{0, "DP", 2}}, {{DNil, F}}},
        {"my double Nil set, we lost", {{0, "DP", 2}}, {}, {300, 505}},
        {"their double Nil set, they lost", {{1, "D", 1}}, {{DNil, F}}, {300, 505}},
        {"their double Nil set, we lost", {{1, "D", 1}}, {}, {505, 300}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        NilCounts want, got;
        for (const auto& [row, col] : c.counted) ++want.Rows[row][col];
        EXPECT_EQ(CountNilDeal(got, Deal(c.nils), c.score, c.dnilPass), !c.counted.empty());
        EXPECT_EQ(got, want);
    }
}

// The fuzz target reads back what the report writes, in both languages.
TEST(NilReport, LinesAndReadBack) {
    EXPECT_EQ(ReadNilCounts({"title", " (1) My NIL Bids   Success 5,  Failure 2, ...", "garbage", "Success",
                             "Failure 9", "-", "-", " Success 3"}),
              Counts({{0, 5, 2}, {3, 0, 9}, {50, 3, 0}}));

    // Shares and number fields grow with the counts.
    const auto lines = NilReportLines(Counts({{0, 9, 1}, {2, 1, 0}, {50, 3, 1}}), false, {});
    EXPECT_EQ(lines[1], " (1) My NIL Bids   Success  9,  Failure  1,  Success Probability =  9 / 10 = 90.0 % [91 %]");
    EXPECT_EQ(lines[3], " (3)  Set NILs     Success  1,  Failure  0,  Set Probability     =  1 /  1 = 100.0 % [9 %]");
    EXPECT_EQ(lines[7], " (4a)  Following the Rule  Success  3,  Failure  1,  Making Probability =  3 /  4 = 75.0 % [100 %]");
}

class NilHistoryFile : public ::testing::Test {
protected:
    NilHistoryContext Ctx(bool japanese = false) {
        NilHistoryContext ctx;
        ctx.Folder = tmp.Folder();
        ctx.Japanese = japanese;
        ctx.UserIdentified = true;
        return ctx;
    }
    NilHistoryResult Write(const NilDeal& d, const NilHistoryContext& ctx, std::array<int, 2> score = {200, 180}) {
        return WriteNilHistory(d, score, ctx, clock);
    }
    void Seed(const NilCounts& c) {
        ASSERT_TRUE(core::WriteTextFile(tmp.File("RecordNILs.TXT"), NilReportLines(c, false, {}), 1252));
    }
    std::string Bytes(const std::string& name = "RecordNILs.TXT") const { return tmp.Get(name); }
    TempDir tmp;
    const fs::path& dir = tmp.Path();
    fs::path report = dir / "RecordNILs.TXT";
    platform::VirtualClock clock{platform::LocalTime{2026, 11, 21, 22, 5, 9, 6}};
};

TEST_F(NilHistoryFile, FirstNilEverWritesTheWholeReport) {
    ASSERT_EQ(Write(Deal({{0, "N", 0}}), Ctx()), NilHistoryResult::Written);
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
    EXPECT_EQ(Bytes(), expected);
}

TEST_F(NilHistoryFile, JapaneseReportInCodePage932) {
    if (!core::IsCodePageSupported(932)) GTEST_SKIP() << "no code page 932 here";
    // Counts in the English report are not read by the Japanese interface.
    Seed(Counts({{0, 40, 4}}));
    const std::string englishBytes = Bytes();
    ASSERT_EQ(Write(Deal({{2, "N", 0}}), Ctx(true)), NilHistoryResult::Written);
    ASSERT_EQ(Write(Deal({{2, "N", 0}}), Ctx(true)), NilHistoryResult::Written);
    EXPECT_EQ(Bytes(), englishBytes);

    const std::string bytes = Bytes("ニル集計.TXT");
    std::string expected;
    for (const auto& l : NilReportLines(Counts({{1, 2, 0}, {50, 2, 0}}), true, clock.Now()))
        expected += core::FromUtf8(l, 932) + "\r\n";
    EXPECT_EQ(bytes, expected);
    // " (2) 私のニル･カバー 成功 2," in the code page: the half-width dot is one byte.
    EXPECT_NE(bytes.find("\xA5\x83\x4A\x83\x6F\x81\x5B \x90\xAC\x8C\xF7 2,"), std::string::npos);
}

TEST_F(NilHistoryFile, NothingToCountLeavesTheFileAlone) {
    Seed(Counts({{0, 3, 1}}));
    const std::string before = Bytes();
    NilDeal robot = Deal({{1, "N", 0}});
    robot.Names[3] = "Robot_4";
    NilHistoryContext suicide = Ctx(), unknown = Ctx();
    unknown.UserIdentified = false;
    // The fail-Nil alert sounds for each broken Nil even when nothing is counted.
    int alerts = 0;
    suicide.SuicideTable = suicide.AlertFailNil = true;
    suicide.FailNilAlert = [&alerts] { ++alerts; };
    EXPECT_EQ(Write(Deal(), Ctx()), NilHistoryResult::NotApplicable);
    EXPECT_EQ(Write(robot, Ctx()), NilHistoryResult::NotApplicable);
    EXPECT_EQ(Write(Deal({{1, "N", 0}}), unknown), NilHistoryResult::NotApplicable);
    EXPECT_EQ(Write(Deal({{0, "N", 2}, {1, "D", 1}}), suicide), NilHistoryResult::NotApplicable);
    EXPECT_EQ(alerts, 2);
    EXPECT_EQ(clock.Elapsed(), 1600u);
    // Their Nil made in a game we won: a Nil, but nothing to count.
    EXPECT_EQ(Write(Deal({{1, "N", 0}}), Ctx(), {520, 300}), NilHistoryResult::NothingCounted);
    EXPECT_EQ(Bytes(), before);
}

TEST_F(NilHistoryFile, BackupOnTheFirstUpdateOfANewDay) {
    const NilDeal d = Deal({{0, "N", 0}});
    ASSERT_EQ(Write(d, Ctx()), NilHistoryResult::Written);
    clock.Advance(3600 * 1000);
    ASSERT_EQ(Write(d, Ctx()), NilHistoryResult::Written);
    EXPECT_FALSE(fs::exists(dir / "RecordNILs.BAK"));  // same day

    const std::string lastOfDay = Bytes();
    for (int i = 0; i < 2; ++i) {
        clock.Advance(i == 0 ? 24 * 3600 * 1000 : 60 * 1000);
        ASSERT_EQ(Write(d, Ctx()), NilHistoryResult::Written);
        EXPECT_EQ(Bytes("RecordNILs.BAK"), lastOfDay) << "the state before the day's first update";
    }
    // That each update adds to what was read back is fuzzed.
    EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 2) << "no temporary files left";
}

// What garbage in the report reads as, and that an update keeps it, is fuzzed.
TEST_F(NilHistoryFile, AReportThatCannotBeReadIsNotReplaced) {
    NilHistoryContext ctx = Ctx();
    ctx.LogPath = core::PathToUtf8(dir / "trace.log");
    std::ofstream(dir / "trace.log").close();
    fs::create_directory(report);
    EXPECT_EQ(Write(Deal({{0, "N", 0}}), ctx), NilHistoryResult::Error);
    EXPECT_TRUE(fs::is_directory(report));
    EXPECT_EQ(Bytes("trace.log"), "Error in WriteNilHistory, Error code = 75\r\n");
}

namespace {

// A report that is there but is no report of ours (garbage, or the same
// report saved as UTF-16) is kept aside, byte for byte, before a new one is
// written, even on the day of its last change when no backup is due.
TEST_F(NilHistoryFile, AnUnparseableReportIsKeptAsideBeforeANewOne) {
    std::string utf16;
    for (const auto& l : NilReportLines(Counts({{0, 5, 1}}), false, clock.Now()))
        for (char c : l + "\r\n") utf16 += std::string{c, '\0'};
    static const char kGarbage[] = "\x8f\x01zq\xff\xfe\x00\x13 not a report";
    const std::string garbage(kGarbage, sizeof kGarbage - 1);
    for (const std::string& old : {utf16, garbage}) {
        tmp.Put("RecordNILs.TXT", old);
        for (const auto& e : fs::directory_iterator(dir))
            if (e.path().filename().string().find(".unreadable-") != std::string::npos) fs::remove(e.path());
        core::SaveResult save;
        ASSERT_EQ(WriteNilHistory(Deal({{0, "N", 0}}), {200, 180}, Ctx(), clock, &save), NilHistoryResult::Written);
        EXPECT_TRUE(save.Saved);
        ASSERT_EQ(save.SetAside, core::PathToUtf8(report) + ".unreadable-20261121-220509");
        EXPECT_EQ(tmp.Get("RecordNILs.TXT.unreadable-20261121-220509"), old);
        EXPECT_NE(Bytes().find("Success 1,  Failure 0"), std::string::npos);
    }
    // A report of ours is read on, nothing set aside.
    core::SaveResult save;
    ASSERT_EQ(WriteNilHistory(Deal({{0, "N", 0}}), {200, 180}, Ctx(), clock, &save), NilHistoryResult::Written);
    EXPECT_EQ(save.SetAside, "");
    EXPECT_NE(Bytes().find("Success 2,  Failure 0"), std::string::npos);
}

// A report that cannot be written says why, with its path.
TEST_F(NilHistoryFile, AFailedWriteSaysWhy) {
    fs::create_directory(dir / "RecordNILs.TXT.tmp~");
    core::SaveResult save;
    EXPECT_EQ(WriteNilHistory(Deal({{0, "N", 0}}), {200, 180}, Ctx(), clock, &save), NilHistoryResult::Error);
    EXPECT_FALSE(save.Saved);
    EXPECT_EQ(save.Path, core::PathToUtf8(report));
#ifdef _WIN32
    const std::string isFolder = std::system_category().message(5);  // ERROR_ACCESS_DENIED
#else
    const std::string isFolder = "Is a directory";
#endif
    EXPECT_NE(save.Reason.find(isFolder), std::string::npos) << save.Reason;
}

}  // namespace
