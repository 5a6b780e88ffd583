#include <gtest/gtest.h>

#include <filesystem>

#include "core/text.h"
#include "platform/clock.h"
#include "platform/sim_desktop.h"
#include "players/ratings.h"
#include "players/test_dir.h"

using namespace players;
using players_test::ReadBytes;
using players_test::TempDir;
using players_test::WriteBytes;

namespace {

const std::array<std::string, 4> kSeats = {"zz_north", "zz_me_first", "zz_south_with_long_name", " zz_west "};

platform::LocalTime At(int y, int mo, int d, int h, int mi, int s) {
    platform::LocalTime t;
    t.Year = y, t.Month = mo, t.Day = d, t.Hour = h, t.Minute = mi, t.Second = s;
    return t;
}

}  // namespace

TEST(HistoryLine, EnglishWinWithPaddedNames) {
    std::string line = FormatHistoryLine("1534", At(2013, 3, 5, 21, 7, 44), 1, false, {520, 310}, kSeats, 1);
    EXPECT_EQ(line,
              "1534 2013/03/05 21:07:44 Win  (520,310) "
              "zz_north     zz_me_first  zz_south_wit zz_west      USA");
}

TEST(HistoryLine, ShortTotalsGetABlankAndRequestsCarryNoResult) {
    std::array<std::string, 4> seats = {"a", "b", "c", "d"};
    std::string pad = std::string(12, ' ');
    EXPECT_EQ(FormatHistoryLine("prov", At(2024, 12, 31, 0, 0, 9), 2, false, {50, -41}, seats, 9),
              "prov 2024/12/31 00:00:09 ( 50,-41) a" + pad + "b" + pad + "c" + pad + "d" + pad + "ARGENTINE");
    EXPECT_EQ(FormatHistoryLine("1700", At(2024, 1, 2, 3, 4, 5), 1, true, {5, 500}, seats, 2),
              "1700 2024/01/02 03:04:05 負け ( 5,500) a" + pad + "b" + pad + "c" + pad + "d" + pad + "日本");
    EXPECT_EQ(FormatHistoryLine("1", At(2024, 1, 2, 3, 4, 5), 1, false, {300, 300}, seats, 11).substr(21, 5), " Lost")
        << "a tie is no win";
    EXPECT_EQ(SiteName(0), "");
    EXPECT_EQ(SiteName(11), "");
}

TEST(HistoryLine, RecordedRatingText) {
    EXPECT_EQ(RecordedRatingText("1534 2013/03/05", false), "1534");
    EXPECT_EQ(RecordedRatingText("PROV 2013/03/05", false), "prov");
    EXPECT_EQ(RecordedRatingText("prov 2013/03/05", true), "仮レ");
    EXPECT_EQ(RecordedRatingText("仮レ 2013", false), "仮レ");
    EXPECT_EQ(RecordedRatingText("", false), "");
}

TEST(RenewedRating, NumberAfterTheNameAndTheMarker) {
    std::vector<std::string> lines = {"newrating: 1999 zz_me", "zz_other newrating:1300", "zz_me ... newrating: 1452",
                                      "zz_me newrating:1500"};
    EXPECT_EQ(FindRenewedRating(lines, "zz_me"), 1452);
    EXPECT_EQ(FindRenewedRating(lines, "zz_nobody"), 0);
    EXPECT_EQ(FindRenewedRating(lines, ""), 0);
}

namespace {

struct RatingsFixture : ::testing::Test {
    platform::SimDesktop desktop;
    platform::VirtualClock clock{At(2013, 3, 5, 21, 7, 44)};
    Ratings ratings{desktop, clock};
    TempDir dir;
    TableNames table;
    int listReads = 0;
    RatingContext ctx;

    RatingsFixture() {
        ratings.Options.MyIds = {"zz_me_first", "zz_me_again"};
        ratings.Options.HistoryPath = dir.File("SpadesHistory.TXT");
        ratings.Options.MarkerFilePath = dir.File("SpadesBid.spd");
        ctx.Table.GameWindow = desktop.AddWindow("Spades - Table 3", {0, 0, 640, 480});
        ctx.Table.Names = &table;
        ctx.Table.ReadPlayerList = [this](TableNames& t) {
            ++listReads;
            t = table;
        };
        ctx.TeamScore = {520, 310};
        ctx.SeatNames = kSeats;
    }
    void Seat(const std::string& myLine) {
        table.Names = {"zz_north 1400", myLine, "zz_south 1700"};
        table.Read = 3;
    }
    std::vector<std::string> History() { return core::SplitLines(ReadBytes(ratings.Options.HistoryPath)); }
};

}  // namespace

TEST_F(RatingsFixture, ShowMyRatingStylesAndValues) {
    std::string text = "1000";
    std::int32_t value = 0;
    ratings.ShowMyRating(text, value);
    EXPECT_EQ(value, 1000);
    EXPECT_EQ(ratings.MyRating.FontName, "Arial");
    EXPECT_TRUE(ratings.MyRating.Bold);

    text = "999";
    ratings.ShowMyRating(text, value);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(ratings.MyRating.Caption, "999");

    text = "provisional";
    ratings.ShowMyRating(text, value);
    EXPECT_EQ(value, -1);
    EXPECT_EQ(text, "prov");
    EXPECT_TRUE(ratings.MyRating.Bold);

    text = "-1";
    ratings.ShowMyRating(text, value);
    EXPECT_EQ(value, 0) << "a negative number is no provisional mark";

    ratings.Options.Japanese = true;
    text = "pr";
    ratings.ShowMyRating(text, value);
    EXPECT_EQ(text, "仮レ");
    EXPECT_EQ(value, -1);
    EXPECT_EQ(ratings.MyRating.FontName, ratings.Options.JapaneseFont);
    EXPECT_FALSE(ratings.MyRating.Bold);
    text = "仮レ";
    ratings.ShowMyRating(text, value);
    EXPECT_EQ(value, -1);
}

TEST_F(RatingsFixture, CountingPermissionByRatingLevel) {
    ratings.Options.CountCards = true;
    ratings.UpdateCountingAllowed("1599", 1599);
    EXPECT_TRUE(ratings.CountingAllowed);
    ratings.UpdateCountingAllowed("1600", 1600);
    EXPECT_FALSE(ratings.CountingAllowed) << "1600 needs the marker file";
    WriteBytes(dir.File("SpadesBid.spd"), "");
    ratings.UpdateCountingAllowed("1600", 1600);
    EXPECT_TRUE(ratings.CountingAllowed);
    ratings.UpdateCountingAllowed("2000", 2000);
    EXPECT_FALSE(ratings.CountingAllowed);
    ratings.UpdateCountingAllowed("999", 0);
    EXPECT_FALSE(ratings.CountingAllowed);
    ratings.UpdateCountingAllowed("prov", -1);
    EXPECT_TRUE(ratings.CountingAllowed);

    ratings.Options.SecondIds = {"zz_other", "ZZ_ME_AGAIN", "", "zz_me_first"};
    ratings.MyIdIndex = 1;
    ratings.UpdateCountingAllowed("2100", 2100);
    EXPECT_FALSE(ratings.CountingAllowed) << "the second list ends at its first empty entry";
    ratings.MyIdIndex = 2;
    ratings.UpdateCountingAllowed("2100", 2100);
    EXPECT_TRUE(ratings.CountingAllowed);

    ratings.Options.CountCards = false;
    ratings.UpdateCountingAllowed("2100", 2100);
    EXPECT_TRUE(ratings.CountingAllowed) << "unchanged while card counting is off";
}

TEST_F(RatingsFixture, AFinishedGameGoesOnTopOfTheHistory) {
    WriteBytes(ratings.Options.HistoryPath, "1490 2013/03/04 20:00:00 Lost (210,505) old\r\n1450 older\r\n");
    Seat("zz_me_first 1534");
    ratings.ReadShowRating(1, ctx);
    EXPECT_EQ(ratings.MyRating.Caption, "1534");
    EXPECT_EQ(ratings.MyIdIndex, 1);
    ASSERT_EQ(ratings.LastHistory, HistoryResult::Written);
    EXPECT_EQ(ReadBytes(ratings.Options.HistoryPath),
              "1534 2013/03/05 21:07:44 Win  (520,310) zz_north     zz_me_first  zz_south_wit zz_west      USA\r\n"
              "1490 2013/03/04 20:00:00 Lost (210,505) old\r\n1450 older\r\n");
}

TEST_F(RatingsFixture, ARatingOfOneThousandUsesBothAttemptsAndRecordsNothing) {
    Seat("zz_me_first 1000");
    ratings.ReadShowRating(1, ctx);
    EXPECT_EQ(listReads, 2);
    EXPECT_EQ(ratings.MyRating.Caption, "1000");
    EXPECT_TRUE(ratings.MyRating.Bold);
    EXPECT_FALSE(std::filesystem::exists(ratings.Options.HistoryPath));
}

TEST_F(RatingsFixture, NotFoundLeavesTheLabelBlankAndWritesNothing) {
    Seat("zz_stranger 1534");
    ratings.ReadShowRating(2, ctx);
    EXPECT_EQ(ratings.MyRating.Caption, " ");
    EXPECT_EQ(ratings.MyIdIndex, 0);
    EXPECT_FALSE(std::filesystem::exists(ratings.Options.HistoryPath));

    // Mode 0 reads what is there without reading the list again.
    Seat("zz_me_again 1620");
    ratings.Options.CountCards = true;
    listReads = 0;
    ratings.ReadShowRating(0, ctx);
    EXPECT_EQ(listReads, 0);
    EXPECT_EQ(ratings.MyRating.Caption, "1620");
    EXPECT_EQ(ratings.MyIdIndex, 2);
    EXPECT_FALSE(ratings.CountingAllowed);
    EXPECT_FALSE(std::filesystem::exists(ratings.Options.HistoryPath)) << "mode 0 keeps no history";
}

TEST_F(RatingsFixture, GamesThatAreNotRecorded) {
    Seat("zz_me_first 1534");
    ctx.SeatNames = {"robot_1", "zz_me_first", "robot_2", "zz_west"};
    ratings.ReadShowRating(1, ctx);
    EXPECT_EQ(ratings.LastHistory, HistoryResult::NotRecorded) << "two robots at the table";
    EXPECT_TRUE(std::filesystem::exists(ratings.Options.HistoryPath)) << "created empty all the same";
    EXPECT_EQ(ReadBytes(ratings.Options.HistoryPath), "");

    ctx.SeatNames = kSeats;
    ctx.TeamScore = {0, 0};
    ratings.ReadShowRating(1, ctx);
    EXPECT_EQ(ratings.LastHistory, HistoryResult::NotRecorded);

    // The same rating as the last line read: the game is already there.
    ctx.TeamScore = {520, 310};
    WriteBytes(ratings.Options.HistoryPath, "1400 newest\r\n1534 oldest\r\n");
    ratings.ReadShowRating(2, ctx);
    EXPECT_EQ(ratings.LastHistory, HistoryResult::NotRecorded);

    ratings.CountingAllowed = false;
    ctx.CaptureBusy = true;
    Seat("zz_me_first 1777");
    ratings.ReadShowRating(2, ctx);
    EXPECT_EQ(ratings.MyRating.Caption, "1534") << "mode 2 waits for the capture to finish";
}

TEST_F(RatingsFixture, AProvisionalRatingIsRenewedAfterTheGame) {
    Seat("zz_me_first prov");
    ctx.ReadLines = [] { return std::vector<std::string>{"zz_me_first: newrating: 1456"}; };
    desktop.ShowWindow(ctx.Table.GameWindow, platform::ShowCmd::Minimize);
    ratings.ReadShowRating(1, ctx);
    EXPECT_FALSE(desktop.IsMinimized(ctx.Table.GameWindow));
    EXPECT_EQ(ratings.MyRating.Caption, "1456");
    ASSERT_EQ(History().size(), 1u);
    EXPECT_EQ(History()[0].substr(0, 30), "1456 2013/03/05 21:07:44 Win  ");

    // Without a renewed number the line says "prov".
    ctx.ReadLines = [] { return std::vector<std::string>{"nothing here"}; };
    ratings.ReadShowRating(1, ctx);
    ASSERT_EQ(History().size(), 2u);
    EXPECT_EQ(History()[0].substr(0, 5), "prov ");
}

TEST_F(RatingsFixture, TheRewriteKeepsEveryOldLineByteForByte) {
    std::string old;
    for (int i = 0; i < 3500; ++i) old += std::to_string(1000 + i) + " line\r\n";
    old += std::string("\x81\x00\xff tail", 8);  // no final line end, bytes of no character
    WriteBytes(ratings.Options.HistoryPath, old);
    Seat("zz_me_first 1534");
    ratings.ReadShowRating(1, ctx);
    ASSERT_EQ(ratings.LastHistory, HistoryResult::Written);
    std::string now = ReadBytes(ratings.Options.HistoryPath);
    std::size_t first = now.find("\r\n");
    EXPECT_EQ(now.substr(first + 2), old + "\r\n");
    EXPECT_FALSE(std::filesystem::exists(ratings.Options.HistoryPath + ".tmp~"));
}

TEST_F(RatingsFixture, AHistoryThatCannotBeReplacedIsLeftAlone) {
    std::filesystem::create_directories(ratings.Options.HistoryPath);
    Seat("zz_me_first 1534");
    ratings.ReadShowRating(1, ctx);
    EXPECT_EQ(ratings.LastHistory, HistoryResult::WriteFailed);
    EXPECT_TRUE(std::filesystem::is_directory(ratings.Options.HistoryPath));
}
