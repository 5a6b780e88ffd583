#include "display/hand_view.h"

#include <gtest/gtest.h>

#include <cmath>

#include "core/notation.h"

using namespace display;

namespace {

// Fixed widths keep positions exact: every character 10 pixels.
double TenEach(std::string_view text, const core::Font&) { return 10.0 * static_cast<double>(text.size()); }

// A complete deal by compass seat: North all spades, East hearts, South
// diamonds, West clubs, ace first.
std::array<std::array<int, 13>, 4> SuitPerSeat() {
    std::array<std::array<int, 13>, 4> h{};
    for (int seat = 0; seat < 4; ++seat)
        for (int k = 0; k < 13; ++k) h[static_cast<std::size_t>(seat)][static_cast<std::size_t>(k)] = (3 - seat) * 100 + 14 - k;
    return h;
}

std::vector<core::DrawImage> ImagesNear(const HandsView& v, int y0, int y1) {
    std::vector<core::DrawImage> out;
    for (const auto& im : v.Items.All<core::DrawImage>())
        if (im.Y >= y0 && im.Y < y1) out.push_back(im);
    return out;
}

}  // namespace

TEST(HandSort, CardOrderSetting) {
    EXPECT_EQ(SortHand({302, 314, 102, 207}, true), (std::vector<int>{314, 302, 207, 102}));
    EXPECT_EQ(SortHand({302, 314, 102, 207}, false), (std::vector<int>{102, 207, 302, 314}));
    // A marked card keeps its place as the card it is.
    EXPECT_EQ(SortHand({5, -310, 312}, true), (std::vector<int>{312, -310, 5}));

    std::array<std::array<int, 13>, 4> h{};
    h[0] = {302, 314, 102, 207, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    const FourHands asc = HandsFromCodes(h, false);
    EXPECT_EQ(asc.Rows[0][core::Spades].Cards, (std::vector<int>{302, 314}));
    EXPECT_EQ(asc.Rows[0][core::Hearts].Cards, (std::vector<int>{207}));
    EXPECT_EQ(asc.Rows[0][core::Diamonds].Cards, (std::vector<int>{102}));
    EXPECT_EQ(asc.KnownCards(), 4);
    EXPECT_EQ(HandsFromCodes(h, true).Rows[0][core::Spades].Cards, (std::vector<int>{314, 302}));
}

TEST(HandSort, RecordHandsAreWhatEachSeatPlayed) {
    DealRecord rec;
    for (int t = 0; t < 13; ++t)
        for (int s = 0; s < 4; ++s) rec.Trick[static_cast<std::size_t>(t)][static_cast<std::size_t>(s)] = std::string{"AKQJT98765432"[t], "SHDC"[s]};
    const FourHands h = HandsFromRecord(rec, true);
    EXPECT_EQ(h.KnownCards(), 52);
    EXPECT_EQ(h.Rows[core::East][core::Hearts].Cards.front(), 214);
    EXPECT_EQ(h.Rows[core::West][core::Clubs].Cards.back(), 2);
}

TEST(ShortSuits, CompleteSuitsAndInferredHolders) {
    FourHands h;
    // Clubs: all thirteen seen.
    for (int r = 2; r <= 14; ++r) h.Rows[r % 4][core::Clubs].Cards.push_back(r);
    // Hearts: three seats known void; the fourth holds the rest.
    h.Rows[0][core::Hearts].Status = h.Rows[1][core::Hearts].Status = h.Rows[3][core::Hearts].Status = SuitVoid;
    h.Rows[2][core::Hearts].Cards = {214};
    // East void in spades and diamonds too: with clubs and hearts that is
    // three voids, so the last suit is all East's.
    h.Rows[1][core::Spades].Status = SuitVoid;
    FindShortSuits(h);
    for (int seat = 0; seat < 4; ++seat) EXPECT_EQ(h.Rows[static_cast<std::size_t>(seat)][core::Clubs].Status, SuitVoid);
    EXPECT_TRUE(h.SuitMarked[core::Clubs]);
    EXPECT_FALSE(h.SuitMarked[core::Hearts]);
    EXPECT_EQ(h.Rows[2][core::Hearts].Status, SuitHoldsRest);
    EXPECT_EQ(h.Rows[1][core::Diamonds].Status, SuitHoldsRest);
    EXPECT_EQ(h.Rows[0][core::Diamonds].Status, SuitOpen);
    EXPECT_EQ(h.Rows[0][core::Spades].Status, SuitOpen);
}

TEST(HandsView, BlocksRowsAndCellsFromTheTextSheet) {
    const TextSheet sheet = BuildTextSheet();
    std::array<std::array<int, 13>, 4> h = SuitPerSeat();
    h[0][5] = -(h[0][5]);  // North's nine of spades is marked
    // The user sits South: North is the partner, drawn on top.
    const HandsView v = BuildHandsView(HandsFromCodes(h, true), {2, 3, 0, 1}, sheet, true, TenEach);
    ASSERT_TRUE(v.Visible);
    EXPECT_EQ(v.Anchor[core::North], (std::array<int, 2>{150, 0}));
    EXPECT_EQ(v.Anchor[core::South], (std::array<int, 2>{150, 152}));
    EXPECT_EQ(v.Anchor[core::West], (std::array<int, 2>{0, 76}));  // left-hand opponent
    EXPECT_EQ(v.Anchor[core::East], (std::array<int, 2>{300, 76}));

    // North's spade row: first line top 76 / 42 = 1.81; the mark at y + 1,
    // the cards at y + 2, 11 apart after the 14-pixel mark, bold.
    const auto top = ImagesNear(v, 0, 10);
    std::vector<core::DrawImage> north;
    for (const auto& im : top)
        if (im.X >= 150 && im.X < 300) north.push_back(im);
    ASSERT_EQ(north.size(), 14u);
    EXPECT_EQ(north[0], (core::DrawImage{150, 3, core::SheetId::TextSheet, 3 * 14, 38, 14, 19}));
    for (int k = 0; k < 13; ++k) {
        const auto& c = north[static_cast<std::size_t>(k + 1)];
        EXPECT_EQ(c.X, 164 + 11 * k);
        EXPECT_EQ(c.Y, 4);
        EXPECT_EQ(c.SrcX, (12 - k) * 11);
        EXPECT_EQ(c.SrcY, 21);  // bold row
        EXPECT_EQ(c.Height, 22);
    }
    // The marked nine is underlined in rose below its cell.
    bool underline = false;
    for (const auto& l : v.Items.All<core::DrawLine>())
        if (l.LineColor == Rose && l.X1 == 164 + 55 && std::lround(l.Y1) == 18) underline = true;
    EXPECT_TRUE(underline);

    // Clubs sit one pixel right and one lower: West's clubs, fourth line.
    const double clubsTop = 76 + HandLinePitch * 3.1;
    bool clubMark = false;
    for (const auto& im : v.Items.All<core::DrawImage>())
        if (im.SrcY == 38 && im.SrcX == 0 && im.X == 1 && im.Y == std::lround(clubsTop + 2)) clubMark = true;
    EXPECT_TRUE(clubMark);
    // Non-spade ranks come from the plain row.
    for (const auto& im : v.Items.All<core::DrawImage>())
        if (im.X >= 300 && im.SrcY != 38) {
            EXPECT_EQ(im.SrcY, 0);
        }
}

TEST(HandsView, VoidsAndHoldersAreMarkedOnlyWhenCountingIsAllowed) {
    const TextSheet sheet = BuildTextSheet();
    FourHands partial;
    partial.Rows[0][core::Spades].Cards = {314};
    partial.Rows[0][core::Hearts].Status = SuitVoid;
    partial.Rows[1][core::Diamonds].Status = SuitHoldsRest;
    const std::array<int, 4> seats = {0, 1, 2, 3};

    const HandsView counted = BuildHandsView(partial, seats, sheet, true, TenEach);
    ASSERT_TRUE(counted.Visible);
    const auto slashes = counted.Items.All<core::DrawText>();
    ASSERT_EQ(slashes.size(), 2u);
    // North's heart row is its second line; the row ends after the mark at 164.
    EXPECT_EQ(slashes[0].Text, "/");
    EXPECT_DOUBLE_EQ(slashes[0].X, 164);
    EXPECT_DOUBLE_EQ(slashes[1].X, 164 + 10 - 6);
    EXPECT_NEAR(slashes[0].Y, 152 + HandLinePitch * 1.1, 1e-9);
    // Hearts are not complete, so no grey strike; East's diamonds underlined in blue.
    int grey = 0, blue = 0;
    for (const auto& l : counted.Items.All<core::DrawLine>()) {
        grey += l.LineColor == StrikeGrey;
        blue += l.LineColor == core::Blue;
    }
    EXPECT_EQ(grey, 0);
    EXPECT_EQ(blue, 1);

    // Without counting a deal in progress is not shown at all ...
    EXPECT_FALSE(BuildHandsView(partial, seats, sheet, false, TenEach).Visible);
    // ... and a complete deal carries no counting marks.
    const HandsView whole = BuildHandsView(HandsFromCodes(SuitPerSeat(), true), seats, sheet, false, TenEach);
    EXPECT_TRUE(whole.Visible);
    EXPECT_TRUE(whole.Items.All<core::DrawText>().empty());
    EXPECT_TRUE(whole.Items.All<core::DrawLine>().empty());
    // With counting, every suit of a complete deal is done: struck in grey.
    const HandsView done = BuildHandsView(HandsFromCodes(SuitPerSeat(), true), seats, sheet, true, TenEach);
    EXPECT_EQ(done.Items.All<core::DrawText>().size(), 32u);
    EXPECT_EQ(done.Items.All<core::DrawLine>().size(), 32u);
}

TEST(RemainingCards, FourLinesSpadesFirstWhileCounting) {
    const RemainingCardsBox box = spdShow_AllCards(true);
    ASSERT_TRUE(box.Visible);
    const auto lines = box.Items.All<core::DrawText>();
    ASSERT_EQ(lines.size(), 4u);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(lines[static_cast<std::size_t>(i)].Text, "AKQJT98765432");
        EXPECT_DOUBLE_EQ(lines[static_cast<std::size_t>(i)].Y, 2 + i * (RemainingLineHeight + 2));
        EXPECT_EQ(lines[static_cast<std::size_t>(i)].ForeColor, core::SuitColor(3 - i));
    }
    EXPECT_FALSE(spdShow_AllCards(false).Visible);
    EXPECT_TRUE(spdShow_AllCards(false).Items.Items.empty());
}

TEST(TrickTable, RecordCardsByTablePositionUnderTheirHeads) {
    DealRecord rec;
    rec.Trick[0] = {"AS", "2S", "KS", "3S"};
    rec.Mark[0] = {MarkBrackets, 0, 0, 0};
    rec.Trick[1] = {"4H", "", "?H", "QH"};  // unread cards stay empty
    TrickWinners winners{};
    winners[0][0] = 1;
    // The user sits East: positions show East, South, West, North.
    const PlayedCards played = PlayedFromRecord(rec, {1, 2, 3, 0}, &winners);
    EXPECT_EQ(played.TricksPlayed, 2);
    EXPECT_EQ(played.Code[0], (std::array<int, 4>{2 + 300, 313, 303, 314}));
    EXPECT_EQ(played.Style[0][3], MarkBrackets);
    EXPECT_EQ(played.White[0][3], 1);
    EXPECT_EQ(played.White[0][0], 0);
    EXPECT_EQ(played.Code[1], (std::array<int, 4>{0, 0, 212, 204}));

    const CardSheet sheet = BuildCardSheet();
    const core::DrawList table = BuildTrickTable(played, sheet, 10, 100);
    const auto heads = table.All<core::DrawText>();
    ASSERT_GE(heads.size(), 4u);
    EXPECT_EQ(heads[0].Text, "LHO");
    EXPECT_EQ(heads[3].Text, "Me");
    const auto cells = table.All<core::DrawImage>();
    ASSERT_EQ(cells.size(), 6u);
    // Trick 1: LHO (South, 2S) first, the user (East, 2S's neighbour) last;
    // North's winning ace in brackets on white under "RHO".
    EXPECT_EQ(cells[0].X, 32);
    EXPECT_EQ(cells[0].Y, 116);
    EXPECT_EQ(cells[0].SrcX, 11 * 25);  // KS
    EXPECT_EQ(cells[2].X, 32 + 52);
    EXPECT_EQ(cells[2].SrcY, 16 * (8 + 4 + 3));
    EXPECT_EQ(cells[3].SrcX, 0);  // the user's 2S
    EXPECT_EQ(cells[4].Y, 132);
}
