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

    Rig() = default;
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

TEST(RenderedTable, EveryLanguageReadsBoxPlayersBidsTurnAndBothPanels) {
    for (int lang : kLanguages) {
        SCOPED_TRACE("language " + std::to_string(lang));
        sim::TableView v = Bidding(lang);
        Rig r(v);
        r.reader.ScanButtons();
        r.reader.LocateBox();
        EXPECT_EQ((std::array<int, 5>{r.reader.BoxLeft, r.reader.BoxTop, r.reader.BoxRight, r.reader.BoxBottom, r.reader.NameListTop}),
                  (std::array<int, 5>{236, 247, 471, 396, 419}));
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
            EXPECT_EQ(r.reader.BidLocCount, 4);
            // A button's row is the band above its caption's letters.
            for (int k = 1; k <= 3; ++k)
                EXPECT_EQ(r.reader.SubButtonXY[static_cast<std::size_t>(k)].Y,
                          sim::TableLayout::kButtonTop + k * sim::TableLayout::kButtonStep + 5) << "button " << k;
            EXPECT_FALSE(r.reader.DNilPassTable || r.reader.SuicideTable);
        }
        EXPECT_TRUE(r.reader.TestMyTurn());
        EXPECT_EQ(r.reader.GetBoardStat(0), reading::kBoardOrdinary);
        for (int b = 1; b <= 14; ++b) EXPECT_NE(r.reader.BtnXY[static_cast<std::size_t>(b)].X, 0) << "bid button " << b;
        EXPECT_EQ(r.reader.BtnXY[14].Y, sim::TableLayout::kPanelTop + 3 + 2 * 26 + 5);

        v.Panel = 200;
        r.Show(v);
        EXPECT_EQ(r.reader.GetBoardStat(0), reading::kBoardDoubleNil);
        EXPECT_EQ(r.reader.BtnXY[15].X, sim::TableLayout::kPanelLeft + 6 + 7);
        EXPECT_NE(r.reader.BtnXY[16].X, 0);
        EXPECT_EQ(r.reader.BtnXY[1], platform::Point{});
        EXPECT_EQ(r.reader.GetBoardStat(reading::kBidStateBoardHidden), reading::kBoardNone);
    }
}

TEST(RenderedTable, TricksAndTheLastTrickOfTheDeal) {
    for (int lang : {1, 3, 5, 6}) {
        SCOPED_TRACE("language " + std::to_string(lang));
        sim::TableView v = Bidding(lang);
        v.Panel = 0;
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
}

TEST(RenderedTable, KnownBidRowsAreReusedOrSearchedAgain) {
    Rig r(Bidding(1));
    std::array<std::string, 4> bids;
    int status = -1;
    r.reader.CaptureBid(bids, status);
    const auto rows = r.reader.BidPos;
    EXPECT_EQ(rows[2].Y, 247 + sim::TableLayout::kBidLabel[2][1]);
    // The tricks position paired with each bid takes its row.
    EXPECT_EQ((std::array<int, 4>{r.reader.TrickPos[0].Y, r.reader.TrickPos[3].Y, r.reader.TrickPos[2].Y, r.reader.TrickPos[1].Y}),
              (std::array<int, 4>{rows[0].Y, rows[1].Y, rows[2].Y, rows[3].Y}));

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
    struct Case {
        int lang;
        bool dnil, suicide, wantDnil, wantSuicide;
    };
    // Three buttons and both markers: the pass ends at four positions, before the suicide marker.
    for (const Case c : {Case{1, true, false, true, false}, Case{3, false, true, false, true}, Case{5, false, true, false, true},
                         Case{6, false, true, false, true}, Case{1, true, true, true, false}}) {
        SCOPED_TRACE("language " + std::to_string(c.lang));
        sim::TableView v = Bidding(c.lang);
        v.DNilPassMarker = c.dnil;
        v.SuicideMarker = c.suicide;
        Rig r(v);
        std::vector<int> signalled;
        r.reader.TableFlagSet = [&](int k) { signalled.push_back(k); };
        r.reader.ScanButtons();
        EXPECT_EQ(r.reader.DNilPassTable, c.wantDnil);
        EXPECT_EQ(r.reader.SuicideTable, c.wantSuicide);
        if (c.dnil && !c.suicide) {
            EXPECT_EQ(r.reader.SubButtonXY[4].Y, sim::TableLayout::kMarkerTop);
            r.reader.ScanButtons();  // a flag is signalled once per table
            EXPECT_EQ(signalled, std::vector<int>{4});
        }
    }
    {
        // The lower-case Spanish site shows "Puntuación": language 6 becomes 8.
        Rig r(Bidding(8));
        r.reader.GameLanguage = 6;
        r.reader.ScanButtons();
        EXPECT_EQ(r.reader.GameLanguage, 8);
        EXPECT_NE(r.reader.SubButtonXY[3].X, 0);
    }
    // Only two buttons found in the first pass: a second pass runs and finds nothing new.
    sim::TableView v = Bidding(1);
    v.Buttons = {true, true, false, false, true};
    Rig r(v);
    r.reader.ScanButtons();
    EXPECT_NE(r.reader.SubButtonXY[1].X, 0);
    EXPECT_EQ(r.reader.SubButtonXY[3], platform::Point{});
}

TEST(RenderedTable, OtherWindowPlacesWidthsAndThePerWidthCaches) {
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
    int captures = r.desk.CaptureCount();
    r.reader.LocateBox();
    EXPECT_EQ(r.desk.CaptureCount(), captures);

    // The known English layout needs no search at all.
    Rig k(Bidding(1));
    k.reader.ReduceWidth = 624;
    k.reader.LocateBox();
    EXPECT_EQ(k.desk.CaptureCount(), 0);
    EXPECT_EQ(k.reader.NameListTop, 503);
    EXPECT_EQ(k.reader.BoxCenterY, 321);

    // Label columns found at one width come back with that width; a new width starts from the box edges.
    v = Bidding(1);
    Rig c(v);
    c.reader.CaptureBid(bids, status);
    c.reader.CaptureBid(bids, status);  // same width: the columns go into the cache
    EXPECT_EQ(c.reader.BoxCache()[640 - 500].BidX[1], 244);
    v.Width = 760;
    c.Show(v);
    c.reader.LocateBox();
    EXPECT_EQ(c.reader.BidPos[1].X, c.reader.BoxLeft);
    v.Width = 640;
    c.Show(v);
    captures = c.desk.CaptureCount();
    c.reader.LocateBox();
    EXPECT_EQ(c.desk.CaptureCount(), captures);
    EXPECT_EQ(c.reader.BidPos[1].X, 244);
    EXPECT_EQ(c.reader.BidPos[0].X, 361);
}

TEST(RenderedTable, GarbageTinyAndMissingWindowsGiveStatusesNotCrashes) {
    std::mt19937 rng(7);
    for (int size : {0, 1, 2, 30, 250, 640}) {  // 0: no game window at all
        SCOPED_TRACE("size " + std::to_string(size));
        Rig g;
        auto& reader = g.reader;
        if (size > 0) {
            platform::Image img(size, size);
            for (auto& p : img.Pixels) p = rng() & 0xFFFFFF;
            g.cap.GameWindow = g.desk.AddWindow("Game: Spades", {0, 0, size, size});
            g.desk.SetImage(g.cap.GameWindow, img);
        }
        std::string box;
        reader.BoxStatus = [&](const std::string& s, bool) { box = s; };
        reader.SelectReadingFont();
        reader.ScanButtons();
        reader.LocateBox();
        EXPECT_EQ(reader.BoxLeft, 0);
        if (size > 0) { EXPECT_EQ(box, "BOX (50)"); }
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
        const int board = reader.GetBoardStat(0);
        if (size == 0) { EXPECT_EQ(board, 0); }
    }
}

TEST(GlyphDraw, DrawnTextReadsBackAndUnknownCharactersReadAsUnknown) {
    reading::GlyphTable g;
    g.SelectFont(1, 6, "Subasta:", "Bazas:");
    auto drawAndRead = [&](const std::string& text) {
        platform::Image img(200, 14);
        EXPECT_EQ(sim::DrawGlyphText(img, 3, 1, text, 0, g), 3 + sim::GlyphTextWidth(text, g)) << text;
        reading::LineBmp l;
        l.Dim(0, 199);
        for (int x = 1; x < 199; ++x)
            for (int k = 0; k < 12; ++k)
                if (img.At(x, 1 + k) == 0) l[x] = static_cast<std::uint16_t>(l[x] | (1u << (11 - k)));
        l[199] = reading::kEndMark;
        std::int32_t p = 1;
        return g.ReadText(l, p);
    };
    EXPECT_EQ(drawAndRead("river_rat"), "river_rat");
    EXPECT_EQ(drawAndRead("Puntuaci\xC3\xB3n"), "Puntuacion");
    EXPECT_EQ(drawAndRead("abc@xyz.12"), "abc@xyz.12");
    EXPECT_EQ(drawAndRead("ビッド"), "???");  // Japanese characters: boxes the reader does not know
}

TEST(RenderedTable, ExampleSceneIsDrawnExactlyLikeTheGamesOwnWindow) {
    // The scene of the shared example window: what the readers find on it is
    // pinned by the exact comparison of `read table` on that picture.
    sim::TableView v;
    v.Title = "Game: Spades - Table: Oak  Host: alice";
    v.SeatNames = {"me_player", "lefty_one", "partner_x", "righty_two"};
    v.Bids = {std::string(""), std::string("5"), std::string("N"), std::nullopt};
    v.MyTurn = true;
    v.Panel = 100;
    v.TrickCards = 3;
    v.Players = {{"river_rat", "1612"}, {"queen_of_h", "1544"}, {"bagmaster_3", "1702"}, {"slow_joe", "1390"}, {"watcher_99", "1455"}};
    Rig r(v);
    platform::Image game;
    std::string err;
    ASSERT_TRUE(reading::LoadImageFile(std::string(TARVELLOS_SHARED_DIR) + "/examples/readers/example_table.png", game, err)) << err;
    ASSERT_EQ(game.Width, r.image.Width);
    ASSERT_EQ(game.Height, r.image.Height);
    int differing = 0;
    for (std::size_t i = 0; i < game.Pixels.size(); ++i) differing += game.Pixels[i] != r.image.Pixels[i];
    EXPECT_EQ(differing, 0);
    std::array<std::string, 4> bids;
    int status = -1;
    r.reader.CaptureBid(bids, status);
    EXPECT_EQ(r.reader.BidPos[1], (platform::Point{244, 375}));
    EXPECT_EQ(r.reader.BidPos[0], (platform::Point{361, 333}));
}
