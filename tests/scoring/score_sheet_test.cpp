#include "scoring/score_sheet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

using namespace scoring;

namespace {

// Every character 8 pixels, a Courier minus 6, so positions are exact.
double Eight(std::string_view text, const Font& f) {
    return (f.Name == "Courier New" ? 6.0 : 8.0) * static_cast<double>(text.size());
}

// Column edges for w = 8 from the left edge 5: 25 + 13.9, 19.4, 28.9, 34.4 widths.
constexpr double C0 = 25 + 13.9 * 8, C1 = 25 + 19.4 * 8, C2 = 25 + 28.9 * 8, C3 = 25 + 34.4 * 8;

std::optional<DrawText> Find(const core::DrawList& list, const std::string& text, double y) {
    for (const auto& d : list.All<DrawText>())
        if (d.Text == text && std::abs(d.Y - y) < 1e-9) return d;
    return std::nullopt;
}

// The user sits South: they are East-West (columns 2 and 3 of a row), we
// North-South.
ScoreRows TwoDeals() {
    ScoreRows rows;
    rows.AddRow({150, 8, 100, 2});
    rows.AddRow({30, 1, 160, 4});
    return rows;
}

ScoreSheetInput South(bool online = false) {
    ScoreSheetInput in;
    in.UserSeat = 2;
    in.Names = {"Christopher", "Bob", "Maximiliana", "Alice"};
    in.Bids = {"4", "3", "N", "2"};
    in.FirstLeader = 1;
    in.Online = online;
    in.HeightOfA = 20;
    return in;
}

}  // namespace

TEST(ScoreSheetMetricsTest, ColumnsFromTheWidthOfZero) {
    const ScoreSheetMetrics m = SheetMetrics(5, Eight);
    EXPECT_FLOAT_EQ(static_cast<float>(m.W), 8.0f);
    EXPECT_EQ(m.Pitch, 20);
    EXPECT_DOUBLE_EQ(m.X0, 25);
    EXPECT_NEAR(m.C[0], C0, 1e-4);
    EXPECT_NEAR(m.C[1], C1, 1e-4);
    EXPECT_NEAR(m.C[2], C2, 1e-4);
    EXPECT_NEAR(m.C[3], C3, 1e-4);
}

TEST(ScoreSheetFigures, LossHangsItsMinusAndBagsComeBackFromAPenalty) {
    const ScoreSheet s = BuildScoreSheet(TwoDeals(), South(), Eight);
    const int y = s.CurrentY;
    // We lost 120 in deal 2: digits end at c2, the Courier minus just left of them.
    const auto digits = Find(s.Main, "120", y + 20);
    ASSERT_TRUE(digits);
    EXPECT_NEAR(digits->X, C2 - 24, 1e-4);
    const auto minus = Find(s.Main, "-", y + 20);
    ASSERT_TRUE(minus);
    EXPECT_EQ(minus->Typeface, "Courier New");
    EXPECT_NEAR(minus->X, C2 - 24 - 6, 1e-4);
    // Bag counts 8 then 1: three bags this deal, a running count of 1.
    const auto dealBags = Find(s.Main, "(3)", y + 20);
    ASSERT_TRUE(dealBags);
    EXPECT_NEAR(dealBags->X, C3 - 12, 1e-4);
    ASSERT_TRUE(Find(s.Main, "(1)", y + 40));
    // Totals before and after; they gained 60 and 2 bags.
    EXPECT_NEAR(Find(s.Main, "150", y)->X, C2 - 24, 1e-4);
    EXPECT_NEAR(Find(s.Main, "30", y + 40)->X, C2 - 16, 1e-4);
    EXPECT_NEAR(Find(s.Main, "60", y + 20)->X, C0 - 16, 1e-4);
    EXPECT_NEAR(Find(s.Main, "(2)", y + 20)->X, C1 - 12, 1e-4);
    EXPECT_NEAR(Find(s.Main, "160", y + 40)->X, C0 - 24, 1e-4);
    EXPECT_TRUE(s.Label1[1].Visible);
    EXPECT_TRUE(s.Line2.Visible);
    // Off-line nothing is mirrored.
    EXPECT_FALSE(s.Mirroring);
    EXPECT_TRUE(s.Mirror.Items.empty());
}

TEST(ScoreSheetFigures, OneLineHasNoTotals) {
    ScoreRows rows;
    rows.AddRow({-41, 1, 230, 3});
    const ScoreSheet s = BuildScoreSheet(rows, South(), Eight);
    for (const auto& d : s.Main.All<DrawText>()) {
        EXPECT_NE(d.Y, s.CurrentY) << d.Text;
        EXPECT_NE(d.Y, s.CurrentY + 40) << d.Text;
    }
    EXPECT_TRUE(Find(s.Main, "41", s.CurrentY + 20));
    EXPECT_TRUE(Find(s.Main, "230", s.CurrentY + 20));
    EXPECT_FALSE(s.Label1[1].Visible);
    EXPECT_FALSE(s.Line2.Visible);
}

TEST(ScoreSheetFigures, MirrorShiftsEachColumnByItsOffset) {
    const ScoreSheet s = BuildScoreSheet(TwoDeals(), South(true), Eight);
    ASSERT_TRUE(s.Mirroring);
    EXPECT_NEAR(Find(s.Mirror, "120", MirrorFiguresY + 20)->X, C2 - 24 - 120, 1e-4);
    EXPECT_NEAR(Find(s.Mirror, "-", MirrorFiguresY + 20)->X, C2 - 30 - 120, 1e-4);
    EXPECT_NEAR(Find(s.Mirror, "(3)", MirrorFiguresY + 20)->X, C3 - 12 - 125, 1e-4);
    EXPECT_NEAR(Find(s.Mirror, "60", MirrorFiguresY + 20)->X, C0 - 16 - 100, 1e-4);
    EXPECT_NEAR(Find(s.Mirror, "(2)", MirrorFiguresY + 20)->X, C1 - 12 - 105, 1e-4);
    EXPECT_NEAR(Find(s.Mirror, "2", MirrorBidsY)->X, C0 - 8 - 100, 1e-4);
    // Names are not mirrored; the window's labels carry them.
    EXPECT_FALSE(Find(s.Mirror, "Bob", 0));

    ScoreWindow w;
    LoadScoreWindow(w, false, 0xC0C0C0, {core::Position::kDefaultPlace, 0}, 700, 10);
    EXPECT_EQ(w.Window.Left, 700);
    MirrorScore(w, s);
    EXPECT_TRUE(w.Window.Visible);
    EXPECT_EQ(w.picItems.Items.size(), s.Mirror.Items.size());
}

TEST(ScoreSheetBids, ColumnsAndTheFirstLeader) {
    ScoreSheetInput in = South();
    const ScoreSheet s = BuildScoreSheet(TwoDeals(), in, Eight);
    const int y = s.Top + 20;
    // They: West (left-hand opponent) then East; we: North then South.
    EXPECT_NEAR(Find(s.Main, "2", y)->X, C0 - 8, 1e-4);
    const auto lead = Find(s.Main, "[3]", y);
    ASSERT_TRUE(lead);
    EXPECT_NEAR(lead->X, C1 - 24, 1e-4);
    EXPECT_TRUE(lead->Bold);
    EXPECT_EQ(lead->ForeColor, Blue);
    EXPECT_NEAR(Find(s.Main, "4", y)->X, C2 - 8, 1e-4);
    EXPECT_NEAR(Find(s.Main, "N", y)->X, C3 - 8, 1e-4);
    EXPECT_FALSE(Find(s.Main, "4", y)->Bold);

    // A leader without a bid prints nothing, not even the brackets.
    in.Bids[1] = "";
    const ScoreSheet empty = BuildScoreSheet(TwoDeals(), in, Eight);
    for (const auto& d : empty.Main.All<DrawText>()) EXPECT_NE(d.Text, "[]");
    EXPECT_EQ(empty.Main.All<DrawText>().size(), s.Main.All<DrawText>().size() - 1);
}

TEST(ScoreSheetNames, PairsFitTheirRoomAndUnderscoresAreLines) {
    ScoreSheetInput in = South();
    const ScoreSheet s = BuildScoreSheet(TwoDeals(), in, Eight);
    // They: "Alice/Bob" is 72 of 111.2 pixels from x0 + 5.5 w; 0.8 of the rest goes left of it.
    const double theyX = 25 + 44 + 0.8 * (C1 - 69 - 72);
    EXPECT_NEAR(Find(s.Main, "Alice", 0)->X, theyX, 1e-4);
    const auto slash = Find(s.Main, "/", 0);
    ASSERT_TRUE(slash);
    EXPECT_TRUE(slash->Bold);
    EXPECT_NEAR(slash->X, theyX + 41, 1e-4);
    EXPECT_NEAR(Find(s.Main, "Bob", 0)->X, theyX + 50, 1e-4);
    // We: 11 + 11 characters do not fit 108 pixels; the longer (the second
    // on a tie) loses its last character until 6 + 6 fit, then 0.6 of the rest.
    EXPECT_FALSE(Find(s.Main, "Christopher", 0));
    const auto north = Find(s.Main, "Christ", 0);
    ASSERT_TRUE(north);
    EXPECT_NEAR(north->X, C1 + 12 + 0.6 * (C3 - C1 - 12 - 104), 1e-4);
    EXPECT_TRUE(Find(s.Main, "Maximi", 0));

    in.Names = {"", "Cy", "", "Al_Bo"};
    const ScoreSheet u = BuildScoreSheet(TwoDeals(), in, Eight);
    const double x = 69 + 0.8 * (C1 - 69 - 64);
    EXPECT_NEAR(Find(u.Main, "Al", 0)->X, x, 1e-4);
    EXPECT_NEAR(Find(u.Main, "Bo", 0)->X, x + 20, 1e-4);
    const auto lines = u.Main.All<core::DrawLine>();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NEAR(lines[0].X1, x + 16, 1e-4);
    EXPECT_NEAR(lines[0].X2, x + 20, 1e-4);
    EXPECT_DOUBLE_EQ(lines[0].Y1, 18);
    // No names on our side: no pair, no slash for it.
    int slashes = 0;
    for (const auto& d : u.Main.All<DrawText>()) slashes += d.Text == "/";
    EXPECT_EQ(slashes, 1);
}

TEST(ScoreSheetClear, HidesLabelsFrameAndLines) {
    ScoreSheet s = BuildScoreSheet(TwoDeals(), South(true), Eight);
    ClearScoreSheet(s);
    EXPECT_TRUE(s.Main.Items.empty());
    EXPECT_TRUE(s.Mirror.Items.empty());
    for (const auto& l : s.Label1) EXPECT_FALSE(l.Visible);
    EXPECT_FALSE(s.Frame.Visible);
    EXPECT_FALSE(s.Line1.Visible);
    EXPECT_FALSE(s.Line2.Visible);
}

TEST(ScoreWindowPaste, BlocksOfBothColumnGroupsAndCutNames) {
    const ScoreSheet s = BuildScoreSheet(TwoDeals(), South(true), Eight);
    ScoreWindow w;
    LoadScoreWindow(w, true, 0xC0C0C0, {40, 50}, 700, 10);
    EXPECT_EQ(w.Window.Caption, " 現在のスコア");
    EXPECT_EQ(w.Window.Left, 40);
    Show_Score(w, s, South().Names, 2, 1, Eight);
    EXPECT_TRUE(w.Window.Visible);
    // Names from the left-hand opponent round to the user, cut to 65 pixels.
    EXPECT_EQ(w.MyName[0].Caption, "Alice");
    EXPECT_EQ(w.MyName[1].Caption, "Christop");
    EXPECT_EQ(w.MyName[2].Caption, "Bob");
    EXPECT_EQ(w.MyName[3].Caption, "Maximili");
    const auto one = w.picItems.All<core::DrawImage>();
    ASSERT_EQ(one.size(), 2u);
    const int width = static_cast<int>(std::lround(12.5 * 8));
    EXPECT_EQ(one[0], (core::DrawImage{5, 22, core::SheetId::MainSurface, static_cast<int>(std::lround(C0 - 36)),
                                       s.CurrentY, width, 60}));
    EXPECT_EQ(one[1].X, 5 + width + 20);
    EXPECT_EQ(one[1].SrcX, static_cast<int>(std::lround(C2 - 36)));

    Show_Score(w, s, South().Names, 2, 2, Eight);
    const auto two = w.picItems.All<core::DrawImage>();
    ASSERT_EQ(two.size(), 4u);
    EXPECT_EQ(two[0].SrcY, s.CurrentY - 25);
    EXPECT_EQ(two[0].Height, 20);
    EXPECT_EQ(two[1].Y, 42);
    EXPECT_EQ(two[1].SrcY, s.CurrentY);
    EXPECT_EQ(two[1].Height, 80);
    // The pasted bids line is the sheet's bids line.
    EXPECT_EQ(two[0].SrcY, s.Top + 20);
}

TEST(UserSeat, OwnIdsFoundRememberedAndSearchedAgain) {
    UserSeatFinder f;
    const std::vector<std::string> ids = {"zed", "spadeace", "", "bob"};
    EXPECT_EQ(f.Find({"Ann", "SpadeAce77", "Cy", "zed_x"}, ids), 3);  // the first ID in the list wins
    EXPECT_EQ(f.MyIdIndex(), 1);
    // The remembered ID is tried first, whatever comes earlier in the list.
    EXPECT_EQ(f.Find({"zed", "x", "y", "w"}, ids), 0);
    // Gone from the table: the list is searched again; an empty entry ends it.
    EXPECT_EQ(f.Find({"a", "b", "spadeace", "bob"}, ids), 2);
    EXPECT_EQ(f.MyIdIndex(), 2);
    EXPECT_EQ(f.Find({"a", "b", "c", "bob"}, ids), 0);
    EXPECT_EQ(f.MyIdIndex(), 0);
}
