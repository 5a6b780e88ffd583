#include <gtest/gtest.h>

#include <filesystem>

#include "core/text.h"
#include "platform/sim/virtual_clock.h"
#include "platform/sim/sim_desktop.h"
#include "players/ratings.h"
#include "core/temp_dir.h"

using namespace players;

namespace {
const std::array<std::string, 4> kSeats = {"zz_north", "zz_me_first", "zz_south_with_long_name", " zz_west "};
const std::string kPad(12, ' ');
}  // namespace

TEST(HistoryLine, FormatAndRenewedRating) {
    const std::array<std::string, 4> abcd = {"a", "b", "c", "d"};
    // Short totals get a blank; a request carries no result.
    EXPECT_EQ(FormatHistoryLine("prov", {2024, 12, 31, 0, 0, 9}, 2, false, {50, -41}, abcd, 9),
              "prov 2024/12/31 00:00:09 ( 50,-41) a" + kPad + "b" + kPad + "c" + kPad + "d" + kPad + "ARGENTINE");
    EXPECT_EQ(FormatHistoryLine("1700", {2024, 1, 2, 3, 4, 5}, 1, true, {5, 500}, abcd, 2),
              "1700 2024/01/02 03:04:05 負け ( 5,500) a" + kPad + "b" + kPad + "c" + kPad + "d" + kPad + "日本");
    EXPECT_EQ(FormatHistoryLine("1", {2024, 1, 2, 3, 4, 5}, 1, false, {300, 300}, abcd, 11).substr(21, 5), " Lost")
        << "a tie is no win";

    const std::vector<std::string> lines = {"newrating: 1999 zz_me", "zz_me ... newrating: 1452", "zz_me newrating:1500"};
    EXPECT_EQ(FindRenewedRating(lines, "zz_me"), 1452);
    EXPECT_EQ(FindRenewedRating(lines, "zz_nobody") + FindRenewedRating(lines, ""), 0);
}

namespace {

struct RatingsFixture : ::testing::Test {
    platform::SimDesktop desktop;
    platform::VirtualClock clock{platform::LocalTime{2013, 3, 5, 21, 7, 44}};
    Ratings ratings{desktop, clock};
    TempDir dir;
    const std::string history = dir.File("SpadesHistory.TXT");
    TableNames table;
    int listReads = 0;
    RatingContext ctx;

    RatingsFixture() {
        ratings.Options.MyIds = {"zz_me_first", "zz_me_again"};
        ratings.Options.HistoryPath = history;
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
    void Seat(const std::string& myLine) { table = TableNames{{"zz_north 1400", myLine, "zz_south 1700"}, 3}; }
};

}  // namespace

TEST_F(RatingsFixture, RatingValuesStylesAndCountingPermission) {
    ratings.Options.JapaneseFont = "JFont";
    // Interface, rating text, value, label shown, counting allowed.
    const std::tuple<bool, const char*, int, const char*, bool> cases[] = {
        {false, "1000", 1000, "1000 Arial bold", true},
        {false, "1599", 1599, "1599 Arial bold", true},
        {false, "1600", 1600, "1600 Arial bold", false},  // only with the marker file
        {false, "999", 0, "999", false},  // below 1000: no value
        {false, "provisional", -1, "prov Arial bold", true},
        {true, "仮レ", -1, "仮レ JFont", true},
    };
    for (const auto& [ja, text, value, shown, allowed] : cases) {
        ratings.Options.Japanese = ja;
        ratings.MyRating = {};
        std::string t = text;
        std::int32_t v = 12345;
        ratings.ShowMyRating(t, v);
        EXPECT_EQ(v, value) << text;
        const RatingLabel& l = ratings.MyRating;
        EXPECT_EQ(l.Caption + (l.FontName.empty() ? "" : " " + l.FontName) + (l.Bold ? " bold" : ""), shown) << text;
        EXPECT_EQ(ratings.CountingPermission(t, v), allowed) << text;
    }
    ratings.Options.Japanese = false;
    dir.Put("SpadesBid.spd", "");
    EXPECT_TRUE(ratings.CountingPermission("1600", 1600)) << "1600 to 1999 with the marker file";
    EXPECT_FALSE(ratings.CountingPermission("2000", 2000));
    for (const bool counting : {false, true}) {
        ratings.Options.CountCards = counting;
        ratings.UpdateCountingAllowed("1599", 1599);
        EXPECT_EQ(ratings.CountingAllowed, counting) << "unchanged while card counting is off";
    }
}

TEST_F(RatingsFixture, AFinishedGameGoesOnTopOfTheHistoryKeepingEveryOldByte) {
    // Any old bytes are fuzzed; here a history without a final line end.
    const std::string old = "1400 older line\r\nlast";
    dir.Put("SpadesHistory.TXT", old);
    Seat("zz_me_first 1534");
    ratings.ReadShowRating(1, ctx);
    ASSERT_EQ(std::pair(ratings.MyIdIndex, ratings.LastHistory), std::pair(1, HistoryResult::Written));
    EXPECT_EQ(dir.Get("SpadesHistory.TXT"),
              "1534 2013/03/05 21:07:44 Win  (520,310) zz_north     zz_me_first  zz_south_wit zz_west      USA\r\n" +
                  old + "\r\n");
    EXPECT_FALSE(std::filesystem::exists(history + ".tmp~"));

    // A history that cannot be replaced is left alone.
    std::filesystem::remove(history);
    std::filesystem::create_directories(history);
    Seat("zz_me_first 1535");
    ratings.ReadShowRating(1, ctx);
    EXPECT_EQ(ratings.LastHistory, HistoryResult::WriteFailed);
    EXPECT_TRUE(std::filesystem::is_directory(history));
}

TEST_F(RatingsFixture, GamesThatAreNotRecorded) {
    // A rating of 1000 is not above 1000: both attempts are made, nothing is recorded.
    Seat("zz_me_first 1000");
    ratings.ReadShowRating(1, ctx);
    EXPECT_EQ(listReads, 2);
    // Not found: the label stays blank.
    Seat("zz_stranger 1534");
    ratings.ReadShowRating(2, ctx);
    EXPECT_EQ(ratings.MyRating.Caption + std::to_string(ratings.MyIdIndex), " 0");
    // Mode 0 reads what is there without reading the list again.
    Seat("zz_me_again 1620");
    listReads = 0;
    ratings.ReadShowRating(0, ctx);
    EXPECT_EQ(std::to_string(listReads) + " " + ratings.MyRating.Caption + " " + std::to_string(ratings.MyIdIndex),
              "0 1620 2");
    EXPECT_FALSE(std::filesystem::exists(history));

    Seat("zz_me_first 1534");
    ctx.SeatNames = {"robot_1", "zz_me_first", "robot_2", "zz_west"};
    ratings.ReadShowRating(1, ctx);
    EXPECT_EQ(ratings.LastHistory, HistoryResult::RobotTable) << "two robots at the table";
    EXPECT_EQ(dir.Get("SpadesHistory.TXT"), "") << "created empty all the same";
    ctx.SeatNames = kSeats;
    ctx.TeamScore = {0, 0};
    ratings.ReadShowRating(1, ctx);
    EXPECT_EQ(ratings.LastHistory, HistoryResult::NotRecorded);
    // The same rating as the last line read: the game is already there.
    ctx.TeamScore = {520, 310};
    dir.Put("SpadesHistory.TXT", "1400 newest\r\n1534 oldest\r\n");
    ratings.ReadShowRating(2, ctx);
    EXPECT_EQ(dir.Get("SpadesHistory.TXT"), "1400 newest\r\n1534 oldest\r\n");

    ctx.CaptureBusy = true;
    Seat("zz_me_first 1777");
    ratings.ReadShowRating(2, ctx);
    EXPECT_EQ(ratings.MyRating.Caption, "1534") << "mode 2 waits for the capture to finish";
}

TEST_F(RatingsFixture, AProvisionalRatingIsRenewedAfterTheGame) {
    Seat("zz_me_first prov");
    ctx.ReadLines = [] { return std::vector<std::string>{"zz_me_first: newrating: 1456"}; };
    ratings.ReadShowRating(1, ctx);
    EXPECT_EQ(ratings.MyRating.Caption, "1456");
    // Without a renewed number the line says "prov".
    ctx.ReadLines = [] { return std::vector<std::string>{"nothing here"}; };
    ratings.ReadShowRating(1, ctx);
    const std::vector<std::string> lines = core::SplitLines(dir.Get("SpadesHistory.TXT"));
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].substr(0, 5), "prov ");
    EXPECT_EQ(lines[1].substr(0, 30), "1456 2013/03/05 21:07:44 Win  ");
}
