// The table readers on rendered table windows, in every site language.
#include "sim/render_table.h"

#include <gtest/gtest.h>

#include "platform/clock.h"
#include "platform/sim/sim_desktop.h"
#include "reading/image_file.h"
#include "reading/table_reader.h"
#include "reading/table_rig.h"

namespace {

constexpr int kLanguages[] = {1, 2, 3, 5, 6, 7, 8, 9};

struct Rig : TableRig {
    platform::WindowHandle game = 0;
    platform::Image image;

    explicit Rig(const sim::TableView& v, int x = 0, int y = 0) {
        image = sim::RenderTableWindow(v, glyphs);
        Open(image, v.Language, x, y, titles.Title(v.Language, reading::SlotTable));
        game = cap.GameWindow;
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
            EXPECT_FALSE(r.reader.DNilPassTable || r.reader.SuicideTable);
        }
        EXPECT_TRUE(r.reader.TestMyTurn());
        EXPECT_EQ(r.reader.GetBoardStat(0), reading::kBoardOrdinary);
        EXPECT_EQ(r.reader.BtnXY[14].Y, sim::TableLayout::kPanelTop + 3 + 2 * 26 + 5);

        v.Panel = 200;
        r.Show(v);
        EXPECT_EQ(r.reader.GetBoardStat(0), reading::kBoardDoubleNil);
        EXPECT_NE(r.reader.BtnXY[16].X, 0);
        EXPECT_EQ(r.reader.BtnXY[1], platform::Point{});
        EXPECT_EQ(r.reader.GetBoardStat(reading::kBidStateBoardHidden), reading::kBoardNone);
    }
}

TEST(RenderedTable, PlayerListWithHighlightPunctuationAndShortNames) {
    sim::TableView v = Bidding(1);
    v.Players = {{"_lead_under", "1500"}, {"abc", ""},    {"highlighted", "1710"}, {"id.with.dots", "999"},
                 {"x", "1200"},           {"joined", ""}, {"m_n", "1"},            {"twelve_char", "1234"}};
    v.Highlight = 2;
    Rig r(v);
    r.reader.MakePlayerList();
    EXPECT_EQ(r.reader.TableNames, (std::vector<std::string>{"lead_under,1500", "highlighted,1710", "id.with.dots,999",
                                                             "joined", "twelve_char,1234"}));
    EXPECT_EQ(r.reader.TableNamesRead, 5);
    EXPECT_EQ(r.reader.ReadTablePlayers(), 1);
}

// Each marker alone is recognised in the session tests' special tables.
TEST(RenderedTable, BothMarkersAndTheSpanishScoreButton) {
    // A flag is signalled once per table.
    sim::TableView v = Bidding(1);
    v.DNilPassMarker = true;
    Rig r(v);
    std::vector<int> signalled;
    r.reader.TableFlagSet = [&](int k) { signalled.push_back(k); };
    r.reader.ScanButtons();
    r.reader.ScanButtons();
    EXPECT_EQ(r.reader.SubButtonXY[4].Y, sim::TableLayout::kMarkerTop);
    EXPECT_EQ(signalled, std::vector<int>{4});
    // Three buttons and both markers: the pass ends at four positions, before the suicide marker.
    v.SuicideMarker = true;
    Rig both(v);
    both.reader.ScanButtons();
    EXPECT_TRUE(both.reader.DNilPassTable && !both.reader.SuicideTable);

    // The lower-case Spanish site shows "Puntuación": language 6 becomes 8.
    Rig es(Bidding(8));
    es.reader.GameLanguage = 6;
    es.reader.ScanButtons();
    EXPECT_EQ(es.reader.GameLanguage, 8);
    EXPECT_NE(es.reader.SubButtonXY[3].X, 0);
}

TEST(RenderedTable, OtherWindowPlacesAndWidths) {
    sim::TableView v = Bidding(1);
    v.Width = 800;
    v.Height = 720;
    v.BoxLeft = 300;
    v.BoxTop = 280;
    Rig r(v, 40, 30);
    r.reader.ScanButtons();
    EXPECT_EQ(r.reader.SubButtonXY[1].Y, 30 + sim::TableLayout::kButtonTop + 26 + 5);
    r.reader.LocateBox();
    EXPECT_EQ((platform::Point{r.reader.BoxLeft, r.reader.BoxTop}), (platform::Point{300, 280}));
    std::array<std::string, 4> bids;
    int status = -1;
    r.reader.CaptureBid(bids, status);
    EXPECT_EQ(bids, (std::array<std::string, 4>{"3", "13", "N", "D"}));
    EXPECT_EQ(r.reader.GetBoardStat(0), reading::kBoardOrdinary);
    EXPECT_EQ(r.reader.BtnXY[1].Y, 30 + sim::TableLayout::kPanelTop + 8);
}

TEST(RenderedTable, ExampleSceneIsDrawnExactlyLikeTheGamesOwnWindow) {
    // The scene of the stored example window: what the readers find on it is
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
    ASSERT_TRUE(reading::LoadImageFile(std::string(TARVELLOS_SOURCE_DIR) + "/tests/data/examples/readers/example_table.png", game, err)) << err;
    ASSERT_EQ((std::pair{game.Width, game.Height}), (std::pair{r.image.Width, r.image.Height}));
    int differing = 0;
    for (std::size_t i = 0; i < game.Pixels.size(); ++i) differing += game.Pixels[i] != r.image.Pixels[i];
    EXPECT_EQ(differing, 0);
}
