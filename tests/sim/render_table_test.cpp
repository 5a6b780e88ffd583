// The table readers on rendered table windows, in every site language.
#include "sim/render_table.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/clock.h"
#include "platform/sim_desktop.h"
#include "reading/image_file.h"
#include "reading/table_reader.h"
#include "sim/glyph_draw.h"

namespace {

constexpr int kLanguages[] = {1, 2, 3, 5, 6, 7, 8, 9};

struct Rig {
    platform::SimDesktop desk{1280, 1024};
    platform::VirtualClock clock;
    reading::Capture cap{desk, clock};
    reading::GlyphTable glyphs;
    reading::WinTitles titles;
    reading::TableReader reader{cap, glyphs, titles};
    platform::WindowHandle game = 0;
    platform::Image image;

    explicit Rig(const sim::TableView& v, int x = 0, int y = 0) {
        image = sim::RenderTableWindow(v, glyphs);
        game = desk.AddWindow(titles.Title(v.Language, reading::SlotTable), {x, y, x + image.Width, y + image.Height});
        desk.SetImage(game, image);
        cap.GameWindow = game;
        reader.GameLanguage = v.Language;
        reader.SelectReadingFont();
    }
    void Show(const sim::TableView& v) {
        image = sim::RenderTableWindow(v, glyphs);
        desk.SetImage(game, image);
    }
};

sim::TableView Bidding(int lang) {
    sim::TableView v;
    v.Language = lang;
    v.Title = "Game: Spades - Table: Oak";
    v.SeatNames = {"me_player", "lefty_one", "partner_x", "righty_two"};
    v.Bids = {std::string("3"), std::string("13"), std::string("N"), std::string("D")};
    v.MyTurn = true;
    v.Panel = 100;
    v.TrickCards = 3;
    v.Players = {{"river_rat", "1612"}, {"queen_of_h", "1544"}, {"bagmaster_3", "1702"}};
    return v;
}

}  // namespace

TEST(RenderedTable, EveryLanguageReadsBoxPlayersBidsTurnAndPanel) {
    for (int lang : kLanguages) {
        SCOPED_TRACE("language " + std::to_string(lang));
        Rig r(Bidding(lang));
        r.reader.ScanButtons();
        r.reader.LocateBox();
        EXPECT_EQ(r.reader.BoxLeft, 236);
        EXPECT_EQ(r.reader.BoxTop, 247);
        EXPECT_EQ(r.reader.BoxRight, 471);
        EXPECT_EQ(r.reader.BoxBottom, 396);
        EXPECT_EQ(r.reader.NameListTop, 419);
        r.reader.MakePlayerList();
        EXPECT_EQ(r.reader.TableNames, (std::vector<std::string>{"river_rat,1612", "queen_of_h,1544", "bagmaster_3,1702"}));

        std::array<std::string, 4> bids{"x", "x", "x", "x"};
        int status = -1;
        r.reader.CaptureBid(bids, status);
        if (lang == 2) {
            // The Japanese labels have no glyphs: nothing is read.
            EXPECT_EQ(status, reading::kBidNoLabel);
            EXPECT_EQ(bids, (std::array<std::string, 4>{"", "", "", ""}));
            EXPECT_EQ(r.reader.SubButtonXY[1], platform::Point{});
        } else {
            EXPECT_EQ(status, reading::kBidRead);
            EXPECT_EQ(bids, (std::array<std::string, 4>{"3", "13", "N", "D"}));
            EXPECT_EQ(r.reader.BidCount, 4);
            EXPECT_EQ(r.reader.BidLocCount, 4);
            for (int k = 1; k <= 3; ++k) {
                EXPECT_NE(r.reader.SubButtonXY[static_cast<std::size_t>(k)].X, 0) << "button " << k;
                // The row is the band above the caption's letters.
                EXPECT_EQ(r.reader.SubButtonXY[static_cast<std::size_t>(k)].Y,
                          sim::TableLayout::kButtonTop + k * sim::TableLayout::kButtonStep + 5);
            }
            EXPECT_FALSE(r.reader.DNilPassTable);
            EXPECT_FALSE(r.reader.SuicideTable);
        }
        EXPECT_TRUE(r.reader.TestMyTurn());
        EXPECT_EQ(r.reader.GetBoardStat(0), reading::kBoardOrdinary);
        for (int b = 1; b <= 14; ++b) EXPECT_NE(r.reader.BtnXY[static_cast<std::size_t>(b)].X, 0) << "bid button " << b;
        EXPECT_EQ(r.reader.BtnXY[1].Y, sim::TableLayout::kPanelTop + 3 + 5);
        EXPECT_EQ(r.reader.BtnXY[14].Y, sim::TableLayout::kPanelTop + 3 + 2 * 26 + 5);
    }
}

TEST(RenderedTable, TricksAndTheLastTrickOfTheDeal) {
    for (int lang : {1, 3, 5, 6}) {
        SCOPED_TRACE("language " + std::to_string(lang));
        sim::TableView v = Bidding(lang);
        v.Panel = 0;
        v.MyTurn = false;
        v.Tricks = {3, 4, 2, 4};
        Rig r(v);
        std::array<std::string, 4> bids;
        int status = -1;
        r.reader.CaptureBid(bids, status);
        EXPECT_EQ(status, reading::kBidLastTrick);
        EXPECT_EQ(r.reader.LastTricks, (std::array<int, 4>{3, 4, 2, 4}));
        std::array<int, 4> tricks{};
        EXPECT_EQ(r.reader.CaptureTricks(tricks), 4);
        EXPECT_EQ(tricks, (std::array<int, 4>{3, 4, 2, 4}));
        EXPECT_FALSE(r.reader.TestMyTurn());
        EXPECT_EQ(r.reader.GetBoardStat(0), reading::kBoardNone);

        // Twelve tricks shown: read, and the buffer is given up.
        v.Tricks = {3, 4, 2, 3};
        r.Show(v);
        r.reader.CaptureBid(bids, status);
        EXPECT_EQ(status, reading::kBidRead);
        EXPECT_EQ(r.cap.BMBits.size(), 1u);
        r.reader.CaptureTricks(tricks);
        EXPECT_EQ(tricks, (std::array<int, 4>{3, 4, 2, 3}));
    }
}

TEST(RenderedTable, WaitPromptsStopTheBidReading) {
    for (int lang : kLanguages) {
        for (int prompt = 0; prompt < 3; ++prompt) {
            if (sim::TextsFor(lang).WaitPrompts[static_cast<std::size_t>(prompt)].empty()) continue;
            SCOPED_TRACE("language " + std::to_string(lang) + " prompt " + std::to_string(prompt));
            sim::TableView v = Bidding(lang);
            v.Bids = {};
            v.TrickCards = 0;
            v.WaitPrompt = prompt;
            Rig r(v);
            std::array<std::string, 4> bids{"x", "x", "x", "x"};
            int status = -1;
            r.reader.CaptureBid(bids, status);
            EXPECT_EQ(status, lang == 2 ? reading::kBidNoLabel : reading::kBidWaitPrompt);
        }
    }
}

TEST(RenderedTable, NilLettersDoubleNilPassAndEmptyLabels) {
    sim::TableView v = Bidding(5);
    v.Bids = {std::string(""), std::string("N"), std::string("D"), std::nullopt};
    Rig r(v);
    std::array<std::string, 4> bids;
    int status = -1;
    r.reader.CaptureBid(bids, status);
    EXPECT_EQ(bids, (std::array<std::string, 4>{"", "N", "D", ""}));
    EXPECT_EQ(r.reader.BidCount, 3);
    EXPECT_EQ(r.reader.BidLocCount, 3);
    r.reader.DNilPassTable = true;
    r.reader.CaptureBid(bids, status);
    EXPECT_EQ(bids[2], "DP");

    // No label anywhere.
    v.Bids = {};
    Rig none(v);
    status = -1;
    none.reader.CaptureBid(bids, status);
    EXPECT_EQ(status, reading::kBidNoLabel);
    EXPECT_EQ(none.reader.BidLocCount, 0);
}

TEST(RenderedTable, KnownBidRowsAreReusedOrSearchedAgain) {
    Rig r(Bidding(1));
    std::array<std::string, 4> bids;
    int status = -1;
    r.reader.CaptureBid(bids, status);
    const auto rows = r.reader.BidPos;
    EXPECT_EQ(rows[2].Y, 247 + sim::TableLayout::kBidLabel[2][1]);
    // The tricks position paired with each bid takes its row.
    EXPECT_EQ(r.reader.TrickPos[0].Y, rows[0].Y);
    EXPECT_EQ(r.reader.TrickPos[3].Y, rows[1].Y);
    EXPECT_EQ(r.reader.TrickPos[2].Y, rows[2].Y);
    EXPECT_EQ(r.reader.TrickPos[1].Y, rows[3].Y);

    // A known row that now shows something else (the turn marker) is
    // forgotten and searched again. A row is read across the whole box.
    r.reader.BidPos[2].Y = 247 + 113;
    r.reader.CaptureBid(bids, status);
    EXPECT_EQ(bids[2], "N");
    EXPECT_EQ(r.reader.BidPos[2].Y, rows[2].Y);

    // A known row that went blank keeps its place and gives no bid.
    sim::TableView v = Bidding(1);
    v.Bids[2] = std::nullopt;
    r.Show(v);
    r.reader.CaptureBid(bids, status);
    EXPECT_EQ(bids[2], "");
    EXPECT_EQ(r.reader.BidPos[2].Y, rows[2].Y);
    EXPECT_EQ(r.reader.BidCount, 3);
}

TEST(RenderedTable, PlayerListWithHighlightPunctuationAndShortNames) {
    sim::TableView v = Bidding(1);
    v.Players = {{"_lead_under", "1500"}, {"abc", ""},        {"highlighted", "1710"}, {"id.with.dots", "999"},
                 {"x", "1200"},           {"joined", ""},     {"m_n", "1"},            {"twelve_char", "1234"},
                 {"nine_nine", "1800"},   {"tenth_one", "1"}, {"eleventh", "1100"},    {"last_of_12", "1300"}};
    v.Highlight = 2;
    Rig r(v);
    r.reader.MakePlayerList();
    EXPECT_EQ(r.reader.TableNames,
              (std::vector<std::string>{"lead_under,1500", "highlighted,1710", "id.with.dots,999", "joined",
                                        "twelve_char,1234", "nine_nine,1800", "tenth_one,1", "eleventh,1100",
                                        "last_of_12,1300"}));
    EXPECT_EQ(r.reader.TableNamesRead, 9);
    EXPECT_EQ(r.reader.ReadTablePlayers(), 1);
}

TEST(RenderedTable, MarkersAndTheSpanishScoreButton) {
    {
        sim::TableView v = Bidding(1);
        v.DNilPassMarker = true;
        Rig r(v);
        std::vector<int> signalled;
        r.reader.TableFlagSet = [&](int k) { signalled.push_back(k); };
        r.reader.ScanButtons();
        EXPECT_TRUE(r.reader.DNilPassTable);
        EXPECT_FALSE(r.reader.SuicideTable);
        EXPECT_EQ(r.reader.SubButtonXY[4].Y, sim::TableLayout::kMarkerTop);
        EXPECT_EQ(signalled, std::vector<int>{4});
        r.reader.ScanButtons();  // set once per table
        EXPECT_EQ(signalled, std::vector<int>{4});
    }
    for (int lang : {3, 5, 6}) {
        sim::TableView v = Bidding(lang);
        v.SuicideMarker = true;
        Rig r(v);
        r.reader.ScanButtons();
        EXPECT_TRUE(r.reader.SuicideTable) << lang;
        EXPECT_FALSE(r.reader.DNilPassTable) << lang;
    }
    {
        // Three buttons and both markers: the pass ends at four positions.
        sim::TableView v = Bidding(1);
        v.DNilPassMarker = v.SuicideMarker = true;
        Rig r(v);
        r.reader.ScanButtons();
        EXPECT_TRUE(r.reader.DNilPassTable);
        EXPECT_FALSE(r.reader.SuicideTable);
    }
    {
        // The lower-case Spanish site shows "Puntuación": language 6 becomes 8.
        sim::TableView v = Bidding(8);
        Rig r(v);
        r.reader.GameLanguage = 6;
        r.reader.ScanButtons();
        EXPECT_EQ(r.reader.GameLanguage, 8);
        EXPECT_NE(r.reader.SubButtonXY[3].X, 0);
    }
    {
        // Only two buttons found in the first pass: a second pass runs and finds nothing new.
        sim::TableView v = Bidding(1);
        v.Buttons = {true, true, false, false, true};
        Rig r(v);
        r.reader.ScanButtons();
        EXPECT_NE(r.reader.SubButtonXY[1].X, 0);
        EXPECT_EQ(r.reader.SubButtonXY[3], platform::Point{});
    }
}

TEST(RenderedTable, DoubleNilPanelInEveryLanguage) {
    for (int lang : kLanguages) {
        sim::TableView v = Bidding(lang);
        v.Panel = 200;
        Rig r(v);
        EXPECT_EQ(r.reader.GetBoardStat(0), reading::kBoardDoubleNil) << lang;
        EXPECT_EQ(r.reader.BtnXY[15].X, sim::TableLayout::kPanelLeft + 6 + 7) << lang;
        EXPECT_NE(r.reader.BtnXY[16].X, 0) << lang;
        EXPECT_EQ(r.reader.BtnXY[1], platform::Point{}) << lang;
        EXPECT_EQ(r.reader.GetBoardStat(reading::kBidStateBoardHidden), reading::kBoardNone);
    }
}

TEST(RenderedTable, OtherWindowPlacesWidthsAndTheBoxCache) {
    sim::TableView v = Bidding(1);
    v.Width = 800;
    v.Height = 720;
    v.BoxLeft = 300;
    v.BoxTop = 280;
    Rig r(v, 40, 30);
    r.reader.ScanButtons();
    EXPECT_EQ(r.reader.SubButtonXY[1].Y, 30 + sim::TableLayout::kButtonTop + 26 + 5);
    r.reader.LocateBox();
    EXPECT_EQ(r.reader.BoxLeft, 300);
    EXPECT_EQ(r.reader.BoxTop, 280);
    std::array<std::string, 4> bids;
    int status = -1;
    r.reader.CaptureBid(bids, status);
    EXPECT_EQ(bids, (std::array<std::string, 4>{"3", "13", "N", "D"}));
    EXPECT_EQ(r.reader.GetBoardStat(0), reading::kBoardOrdinary);
    EXPECT_EQ(r.reader.BtnXY[1].Y, 30 + sim::TableLayout::kPanelTop + 8);

    // Same width again: the cache answers without a capture.
    const int before = r.desk.CaptureCount();
    r.reader.LocateBox();
    EXPECT_EQ(r.desk.CaptureCount(), before);
    EXPECT_TRUE(r.reader.BoxCache()[800 - 500].Found);

    // The known English layout needs no search at all.
    Rig k(Bidding(1));
    k.reader.ReduceWidth = 624;
    k.reader.LocateBox();
    EXPECT_EQ(k.desk.CaptureCount(), 0);
    EXPECT_EQ(k.reader.NameListTop, 503);
    EXPECT_EQ(k.reader.BoxCenterY, 321);
}

TEST(RenderedTable, GarbageAndTinyWindowsGiveStatusesNotCrashes) {
    std::mt19937 rng(7);
    for (int size : {1, 2, 30, 250, 640}) {
        platform::Image img(size, size);
        for (auto& p : img.Pixels) p = rng() & 0xFFFFFF;
        platform::SimDesktop desk;
        platform::VirtualClock clock;
        reading::Capture cap(desk, clock);
        reading::GlyphTable glyphs;
        reading::WinTitles titles;
        reading::TableReader reader(cap, glyphs, titles);
        cap.GameWindow = desk.AddWindow("Game: Spades", {0, 0, size, size});
        desk.SetImage(cap.GameWindow, img);
        std::string box;
        reader.BoxStatus = [&](const std::string& s, bool) { box = s; };
        reader.SelectReadingFont();
        reader.ScanButtons();
        reader.LocateBox();
        EXPECT_EQ(reader.BoxLeft, 0);
        EXPECT_EQ(box, "BOX (50)");
        reader.MakePlayerList();
        EXPECT_TRUE(reader.TableNames.empty());
        std::array<std::string, 4> bids{"kept", "", "", ""};
        int status = 99;
        reader.CaptureBid(bids, status);
        EXPECT_EQ(status, 99);
        EXPECT_EQ(bids[0], "kept");
        std::array<int, 4> tricks{1, 2, 3, 4};
        EXPECT_EQ(reader.CaptureTricks(tricks), -1);
        EXPECT_FALSE(reader.TestMyTurn());
        reader.GetBoardStat(0);
    }
    // No game window at all.
    platform::SimDesktop desk;
    platform::VirtualClock clock;
    reading::Capture cap(desk, clock);
    reading::GlyphTable glyphs;
    reading::WinTitles titles;
    reading::TableReader reader(cap, glyphs, titles);
    reader.ScanButtons();
    reader.MakePlayerList();
    EXPECT_EQ(reader.GetBoardStat(0), 0);
    EXPECT_FALSE(reader.TestMyTurn());
}

TEST(GlyphDraw, DrawnTextReadsBackAndUnknownCharactersReadAsUnknown) {
    reading::GlyphTable g;
    g.SelectFont(1, 6, "Subasta:", "Bazas:");
    for (const std::string& text : {std::string("river_rat"), std::string("Puntuaci\xC3\xB3n"), std::string("abc@xyz.12")}) {
        platform::Image img(200, 14);
        const int end = sim::DrawGlyphText(img, 3, 1, text, 0, g);
        EXPECT_EQ(end, 3 + sim::GlyphTextWidth(text, g));
        reading::LineBmp l;
        l.Dim(0, 199);
        for (int x = 1; x < 199; ++x) {
            std::uint16_t v = 0;
            for (int k = 0; k < 12; ++k)
                if (img.At(x, 1 + k) == 0) v |= static_cast<std::uint16_t>(1u << (11 - k));
            l[x] = v;
        }
        l[199] = reading::kEndMark;
        std::int32_t p = 1;
        std::string expect;
        for (char c : text) if (c != ' ') expect += c;
        if (text.find('\xC3') != std::string::npos) expect = "Puntuacion";
        EXPECT_EQ(g.ReadText(l, p), expect);
    }
    // Japanese characters: boxes the reader does not know.
    platform::Image img(200, 14);
    sim::DrawGlyphText(img, 3, 1, "ビッド", 0, g);
    reading::LineBmp l;
    l.Dim(0, 199);
    for (int x = 1; x < 199; ++x) {
        std::uint16_t v = 0;
        for (int k = 0; k < 12; ++k)
            if (img.At(x, 1 + k) == 0) v |= static_cast<std::uint16_t>(1u << (11 - k));
        l[x] = v;
    }
    l[199] = reading::kEndMark;
    std::int32_t p = 1;
    EXPECT_EQ(g.ReadText(l, p), "???");
}

TEST(RenderedTable, ExampleSceneReadsLikeTheGamesOwnWindow) {
    // The scene of the shared example window, drawn by the simulator: the
    // readers must find the same positions as on the game's picture.
    sim::TableView v;
    v.Title = "Game: Spades - Table: Oak  Host: alice";
    v.SeatNames = {"me_player", "lefty_one", "partner_x", "righty_two"};
    v.Bids = {std::string(""), std::string("5"), std::string("N"), std::nullopt};
    v.MyTurn = true;
    v.Panel = 100;
    v.TrickCards = 3;
    v.Players = {{"river_rat", "1612"}, {"queen_of_h", "1544"}, {"bagmaster_3", "1702"}, {"slow_joe", "1390"}, {"watcher_99", "1455"}};
    Rig r(v);
    // The simulator draws that scene exactly as the game did.
    platform::Image game;
    std::string err;
    ASSERT_TRUE(reading::LoadImageFile(std::string(TARVELLOS_SHARED_DIR) + "/examples/readers/example_table.png", game, err)) << err;
    ASSERT_EQ(game.Width, r.image.Width);
    ASSERT_EQ(game.Height, r.image.Height);
    int differing = 0;
    for (std::size_t i = 0; i < game.Pixels.size(); ++i) differing += game.Pixels[i] != r.image.Pixels[i];
    EXPECT_EQ(differing, 0);

    r.reader.ScanButtons();
    r.reader.LocateBox();
    r.reader.MakePlayerList();
    std::array<std::string, 4> bids;
    int status = -1;
    r.reader.CaptureBid(bids, status);
    EXPECT_EQ(r.reader.NameListTop, 419);
    EXPECT_EQ(r.reader.TableNames.size(), 5u);
    EXPECT_EQ(bids, (std::array<std::string, 4>{"", "5", "N", ""}));
    EXPECT_EQ(r.reader.BidCount, 3);
    EXPECT_EQ(r.reader.BidPos[1], (platform::Point{244, 375}));
    EXPECT_EQ(r.reader.BidPos[0], (platform::Point{361, 333}));
    EXPECT_EQ(r.reader.SubButtonXY[1], (platform::Point{80, 101}));
    EXPECT_EQ(r.reader.SubButtonXY[2], (platform::Point{80, 127}));
    EXPECT_EQ(r.reader.SubButtonXY[3], (platform::Point{68, 153}));
    EXPECT_TRUE(r.reader.TestMyTurn());
    EXPECT_EQ(r.reader.GetBoardStat(0), 100);
    const std::array<platform::Point, 15> want = {{{0, 0},
                                                   {120, 420}, {147, 420}, {175, 420}, {203, 420}, {231, 420},
                                                   {119, 446}, {147, 446}, {175, 446}, {203, 446}, {229, 446},
                                                   {118, 472}, {145, 472}, {173, 472}, {203, 472}}};
    for (int b = 1; b <= 14; ++b) EXPECT_EQ(r.reader.BtnXY[static_cast<std::size_t>(b)], want[static_cast<std::size_t>(b)]) << b;
}

TEST(RenderedTable, LabelColumnsComeBackWithTheWindowWidth) {
    sim::TableView v = Bidding(1);
    Rig r(v);
    std::array<std::string, 4> bids;
    int status = -1;
    r.reader.CaptureBid(bids, status);
    r.reader.CaptureBid(bids, status);  // same width: the columns go into the cache
    EXPECT_EQ(r.reader.BoxCache()[640 - 500].BidX[1], 244);

    v.Width = 760;
    r.Show(v);
    r.reader.LocateBox();
    EXPECT_EQ(r.reader.BidPos[1].X, r.reader.BoxLeft);  // a new width starts from the box edges
    EXPECT_EQ(r.reader.BidPos[0].X, r.reader.BoxCenterX);

    v.Width = 640;
    r.Show(v);
    const int captures = r.desk.CaptureCount();
    r.reader.LocateBox();
    EXPECT_EQ(r.desk.CaptureCount(), captures);
    EXPECT_EQ(r.reader.BidPos[1].X, 244);
    EXPECT_EQ(r.reader.BidPos[0].X, 361);
}
