#include "display/card_play.h"

#include <gtest/gtest.h>

using namespace display;

namespace {

CardPlayWindow Loaded() {
    CardPlayWindow w;
    LoadCardPlay(w, false, CompanionBack, {}, {core::Position::kDefaultPlace, core::Position::kDefaultPlace}, 200, 50);
    return w;
}

}  // namespace

TEST(CardPlayGeometry, ColumnsAndRows) {
    EXPECT_EQ(CardPlayColumnX(0), 38);
    EXPECT_EQ(CardPlayColumnX(12), 350);
    // 53.5 rounds to the even 54; the others are plain.
    EXPECT_EQ(CardPlayRowY(0), 21);
    EXPECT_EQ(CardPlayRowY(1), 37);
    EXPECT_EQ(CardPlayRowY(2), 54);
    EXPECT_EQ(CardPlayRowY(3), 70);
}

TEST(CardPlayLoad, PlaceCaptionFrameAndTrickNumbers) {
    CardPlayWindow w = Loaded();
    EXPECT_EQ(w.Window.Caption, "CardPlay");
    EXPECT_EQ(w.Window.Left, 230);
    EXPECT_EQ(w.Window.Top, 60);
    EXPECT_EQ(w.Window.Width, 390);
    EXPECT_EQ(w.Window.Height, 122);
    EXPECT_EQ(w.Window.BackColor, CompanionBack);
    EXPECT_EQ(w.State, CardPlayLoaded);
    EXPECT_FALSE(w.Window.Visible);
    EXPECT_EQ(w.Frame.Left, 1);
    EXPECT_EQ(w.Frame.Width, 380);
    EXPECT_EQ(w.Frame.Height, 87);
    EXPECT_EQ(w.Line.Top, 19);
    for (int t = 0; t < 13; ++t) {
        EXPECT_EQ(w.TrickNo[static_cast<std::size_t>(t)].Caption, std::to_string(t + 1));
        EXPECT_EQ(w.TrickNo[static_cast<std::size_t>(t)].Top, 4);
        EXPECT_EQ(w.TrickNo[static_cast<std::size_t>(t)].Left, 26 * t + 43);
    }
    for (int p = 0; p < 4; ++p) EXPECT_EQ(w.SeatLabel[static_cast<std::size_t>(p)].Top, CardPlayRowY(p));

    // A stored place wins unless it is (0, 0); then the setting's own place.
    CardPlayWindow j;
    LoadCardPlay(j, true, 0xC0C0C0, {0, 0}, {600, 20}, 200, 50);
    EXPECT_EQ(j.Window.Caption, " プレイ経過");
    EXPECT_EQ(j.Window.Left, 600);
    EXPECT_EQ(j.Window.Top, 20);
    LoadCardPlay(j, true, 0xC0C0C0, {-20, 20}, {600, 20}, 200, 50);
    EXPECT_EQ(j.Window.Left, 600);  // x + y = 0 counts as no stored place
    LoadCardPlay(j, true, 0xC0C0C0, {15, 40}, {600, 20}, 200, 50);
    EXPECT_EQ(j.Window.Left, 15);
    EXPECT_EQ(j.Window.Top, 40);
}

TEST(CardPlayShow, NoTrickLeavesOnlyTheFrame) {
    CardPlayWindow w = Loaded();
    ShowCardPlay(w, PlayedCards{}, BuildCardSheet());
    EXPECT_TRUE(w.Items.Items.empty());
    EXPECT_TRUE(w.Window.Visible);
    EXPECT_EQ(w.State, CardPlayDrawn);
}

TEST(CardPlayShow, RowsRunFromTheLeftHandOpponentToTheUser) {
    const CardSheet sheet = BuildCardSheet();
    PlayedCards played;
    played.TricksPlayed = 1;
    played.Code[0] = {314, -2, 102, 213};  // the user, LHO (marked), partner, RHO
    played.Style[0][0] = StyleSquare;
    played.White[0][2] = 1;
    CardPlayWindow w = Loaded();
    ShowCardPlay(w, played, sheet);
    const auto cells = w.Items.All<core::DrawImage>();
    ASSERT_EQ(cells.size(), 4u);
    EXPECT_EQ(cells[0], (core::DrawImage{38, 21, core::SheetId::CardSheet, 0, 0, 25, 15}));         // LHO's 2C
    EXPECT_EQ(cells[1], (core::DrawImage{38, 37, core::SheetId::CardSheet, 0, 16 * 5, 25, 15}));    // partner's 2D on white
    EXPECT_EQ(cells[2], (core::DrawImage{38, 54, core::SheetId::CardSheet, 275, 16 * 2, 25, 15}));  // RHO's KH
    EXPECT_EQ(cells[3], (core::DrawImage{38, 70, core::SheetId::CardSheet, 300, 16 * 11, 25, 15})); // the user's [AS]
    const auto outlines = w.Items.All<core::DrawRect>();
    ASSERT_EQ(outlines.size(), 1u);
    EXPECT_EQ(outlines[0], (core::DrawRect{38, 21, 24, 15, Rose}));

    // A redraw starts from a clear window.
    ShowCardPlay(w, played, sheet);
    EXPECT_EQ(w.Items.All<core::DrawImage>().size(), 4u);
}

TEST(CardPlayShow, ThirteenthTrickFillsTheLastColumn) {
    const CardSheet sheet = BuildCardSheet();
    PlayedCards played;
    for (int t = 0; t < 13; ++t) played.Code[static_cast<std::size_t>(t)] = {300 + t + 2, 200 + t + 2, 100 + t + 2, t + 2};
    played.TricksPlayed = 13;
    CardPlayWindow w = Loaded();
    ShowCardPlay(w, played, sheet);
    ASSERT_EQ(w.Items.Items.size(), 52u);
    platform::Image out(390, 122);
    RenderDrawList(out, w.Items, &sheet.Image);
    // The user's ace of spades stands at (350, 70), exactly as the sheet holds it.
    for (int y = 0; y < 15; ++y)
        for (int x = 0; x < 25; ++x) ASSERT_EQ(out.At(350 + x, 70 + y), sheet.Image.At(300 + x, 48 + y)) << x << "," << y;
    // Nothing is drawn beyond the last column.
    for (int y = 0; y < 122; ++y)
        for (int x = 375; x < 390; ++x) ASSERT_EQ(out.At(x, y), ImageRgb(CompanionBack));
    // More tricks than 13 are not drawn past the window.
    played.TricksPlayed = 20;
    ShowCardPlay(w, played, sheet);
    EXPECT_EQ(w.Items.Items.size(), 52u);
}
