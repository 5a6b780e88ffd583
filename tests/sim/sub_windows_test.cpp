// The auxiliary windows as the simulator draws them, read back by the
// readers in every site language, and compared with stored images of how
// the game draws them.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <iterator>
#include <string>

#include "core/json.h"
#include "platform/sim/sim_desktop.h"
#include "platform/sim/virtual_clock.h"
#include "reading/cards.h"
#include "reading/image_file.h"
#include "reading/score_reader.h"
#include "reading/win_titles.h"
#include "sim/rules.h"
#include "sim/sub_windows.h"

using namespace reading;
using platform::Image;

namespace {

constexpr int kSiteLanguages[] = {1, 2, 3, 5, 6, 7, 8, 9};
using Lines = std::vector<std::array<int, 4>>;

struct Rig {
    explicit Rig(int lang = 1) {
        glyphs.ReadingFont = 1;
        glyphs.DigitsOn = true;
        glyphs.SelectFont(1, lang, titles.BidLabel(lang), titles.TrickLabel(lang));
        cap.FontIndex = 1;
        cards.GameLanguage = lang;
    }
    platform::WindowHandle Show(int slot, const Image& client) {
        auto h = desk.AddWindow("w", {30, 40, 30 + client.Width + 8, 40 + client.Height + 27});
        desk.SetClientImage(h, client);
        subs.Handle[static_cast<std::size_t>(slot)] = h;
        return h;
    }
    // Reads the score window; the lines read in `got`.
    int Score(Lines& got) {
        ScoreLines lines;
        const int status = score.CaptScore(lines);
        got.assign(lines.Line.begin() + 1, lines.Line.begin() + 1 + lines.Count);
        return status;
    }
    platform::SimDesktop desk{1280, 1024};
    platform::VirtualClock clock;
    FixedSubWindows subs;
    Capture cap{desk, desk, clock, &subs};
    WinTitles titles;
    GlyphTable glyphs;
    CardReader cards{cap, glyphs, desk};
    ScoreReader score{cap, glyphs};
};

core::Json ReadJson(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    core::Json j;
    std::string err;
    EXPECT_TRUE(core::Json::Parse(std::string(std::istreambuf_iterator<char>(f), {}), j, err)) << path << ": " << err;
    return j;
}

void ExpectSameImage(const Image& got, const std::string& path) {
    Image want;
    std::string err;
    ASSERT_TRUE(LoadImageFile(path, want, err)) << err;
    ASSERT_EQ((std::pair{got.Width, got.Height}), (std::pair{want.Width, want.Height}));
    std::size_t diffs = 0;
    for (std::size_t i = 0; i < want.Pixels.size(); ++i) diffs += got.Pixels[i] != want.Pixels[i];
    EXPECT_EQ(diffs, 0u) << "pixels differing from " << path;
}

}  // namespace

TEST(SubWindowLookTest, LastHandAndScoreMatchTheStoredImages) {
    const std::string dir = std::string(TARVELLOS_SOURCE_DIR) + "/tests/data/examples/readers/";
    GlyphTable glyphs;
    const core::Json hand = ReadJson(dir + "example_lasthand.json");
    sim::LastHandView v;
    for (std::size_t p = 0; p < 4; ++p) {
        v.Names[p] = (*hand.Get("names"))[p].AsString();
        for (std::size_t c = 0; c < 13; ++c) {
            v.Cards[p][c] = (*hand.Get("cards"))[p][c].AsString();
            v.Marks[p][c] = static_cast<int>((*hand.Get("marks"))[p][c].AsInt());
        }
    }
    ExpectSameImage(sim::RenderLastHand(v, glyphs), dir + "example_lasthand.png");
    const core::Json score = ReadJson(dir + "example_score.json");
    sim::ScoreWindowView sv;
    for (const auto& l : score.Get("lines")->Items())
        sv.Lines.push_back({static_cast<int>(l[0].AsInt()), static_cast<int>(l[1].AsInt()),
                            static_cast<int>(l[2].AsInt()), static_cast<int>(l[3].AsInt())});
    ExpectSameImage(sim::RenderScoreWindow(sv, glyphs), dir + "example_score.png");
}

// Plain names, cards and lead marks are followed in whole games by the session tests;
// here accented names, read only where the site's font has the letters (an
// unknown shape in a name never fails the reading), in every site language.
TEST(LastHandRoundTripTest, AccentedNamesInEverySiteLanguage) {
    const std::array<std::string, 4> accented = {"jos\xC3\xA9", "b\xC3\xA9" "a", "\xC3\xA7" "a", "x_1234567"};
    std::mt19937 rng(11);
    for (int lang : kSiteLanguages) {
        SCOPED_TRACE("language " + std::to_string(lang));
        std::vector<sim::Card> deck = sim::FullDeck();
        std::shuffle(deck.begin(), deck.end(), rng);
        sim::LastHandView v;
        v.Language = lang;
        v.Names = accented;
        for (std::size_t p = 0; p < 4; ++p)
            for (std::size_t c = 0; c < 13; ++c) v.Cards[p][c] = sim::CardText(deck[p * 13 + c]);
        Rig r(lang);
        r.Show(kSubLastHand, sim::RenderLastHand(v, r.glyphs));
        HandRead hand;
        ASSERT_EQ(r.cards.CaptHand(hand), 0);
        // Without the accented letters a trailing unknown shape is trimmed.
        const bool plain = lang == 1 || lang == 2;
        EXPECT_EQ(hand.Names, (std::array<std::string, 4>{plain ? "jos" : "jose", plain ? "b?a" : "bea",
                                                          plain ? "a" : "ca", "x_1234567"}));
        EXPECT_EQ(hand.Cards, v.Cards);
    }
}

// Every card in every slot is read in the session tests' whole games; here
// what each mode does with a trick already seen.
TEST(LastTrickRoundTripTest, ModeOneStoresModeTwoTakesOnlyANewTrick) {
    Rig r;
    int shown = 0;
    r.cards.ShowPlayedCards = true;
    r.cards.DrawPlayedCard = [&](int, int, int) { ++shown; };
    auto h = r.Show(kSubLastTrick, sim::RenderLastTrick({{3, 3, 3, 3}, {14, 2, 9, 12}}));
    TrickRead t;
    ASSERT_TRUE(r.cards.ReadLastTrick(t, 1));
    EXPECT_EQ(r.cards.CardsSeen, 0) << "mode 1 only stores";
    ASSERT_TRUE(r.cards.ReadLastTrick(t, 0));
    EXPECT_EQ(r.cards.CardsSeen, 4);
    EXPECT_EQ(shown, 4);
    // The same trick again, then a new one sharing one card in the same slot:
    // both taken as the old trick.
    ASSERT_TRUE(r.cards.ReadLastTrick(t, 2));
    EXPECT_EQ(t.Ranks, (std::array<int, 4>{}));
    r.desk.SetClientImage(h, sim::RenderLastTrick({{2, 3, 0, 1}, {5, 2, 7, 7}}));
    ASSERT_TRUE(r.cards.ReadLastTrick(t, 2));
    EXPECT_EQ(t.Suits, (std::array<int, 4>{}));
    EXPECT_EQ(r.cards.CardsSeen, 4);

    const sim::LastTrickView next{{2, 2, 0, 1}, {5, 3, 7, 7}};
    r.desk.SetClientImage(h, sim::RenderLastTrick(next));
    ASSERT_TRUE(r.cards.ReadLastTrick(t, 2));
    EXPECT_EQ(t.Suits, next.Suits);
    EXPECT_EQ(t.Ranks, next.Ranks);
    EXPECT_EQ(r.cards.LastTrickRanks, next.Ranks);
    EXPECT_EQ((std::array<int, 2>{r.cards.CardsSeen, shown}), (std::array<int, 2>{8, 8}));
}

TEST(LastTrickRoundTripTest, AMissingCardFailsCleanly) {
    const std::array<int, 4> failed{-1, 0, 0, 0};
    for (std::size_t missing = 0; missing < 5; ++missing) {
        sim::LastTrickView v{{0, 1, 2, 3}, {10, 11, 12, 13}};
        if (missing < 4) v.Ranks[missing] = 0;
        Rig r;
        if (missing < 4) r.Show(kSubLastTrick, sim::RenderLastTrick(v));  // 4: no window at all
        TrickRead t;
        t.Ranks = {3, 3, 3, 3};
        EXPECT_FALSE(r.cards.ReadLastTrick(t, 0)) << "slot " << missing;
        EXPECT_EQ(t.Suits, failed);
        EXPECT_EQ(t.Ranks, (std::array<int, 4>{}));
        EXPECT_EQ(r.cards.CardsSeen, 0);
        EXPECT_EQ(r.desk.CaptureCount(), missing < 4 ? 2 : 0) << "two attempts";
    }
}

TEST(ScoreRoundTripTest, ZeroLinesAndEmptyTables) {
    // Zero scores with bags are overwritten by the next line.
    Rig r;
    r.Show(kSubScore, sim::RenderScoreWindow({{{50, 1, 60, 0}, {0, 3, 0, 2}, {110, 2, -20, 0}}}, r.glyphs));
    Lines got;
    EXPECT_EQ(r.Score(got), 0);
    EXPECT_EQ(got, (Lines{{50, 1, 60, 0}, {110, 2, -20, 0}}));

    // An empty table shrinks a tall window.
    Rig tall;
    auto h = tall.Show(kSubScore, sim::RenderScoreWindow({{}, 8}, tall.glyphs));
    EXPECT_EQ(tall.Score(got), 0);
    EXPECT_TRUE(got.empty());
    EXPECT_EQ(tall.desk.WindowRect(h), (platform::Rect{30, 0, 30 + 228, 140}));
}

// The game redraws its score window at whatever size it is given; here
// redraws scheduled on the clock stand in for it.
TEST(ScoreRoundTripTest, HiddenLinesMakeTheWindowGrowForFourCaptures) {
    for (int count : {6, 8}) {
        SCOPED_TRACE(count);
        Rig r;
        sim::ScoreWindowView view{{}, 4};
        for (int i = 1; i <= count; ++i) view.Lines.push_back({i * 100, i, -i * 10, 0});
        const auto h = r.Show(kSubScore, sim::RenderScoreWindow(view, r.glyphs));
        for (std::uint32_t t = 1; t < 20000; t += 50)
            r.clock.Schedule(r.clock.TickCount() + t, [&] {
                const auto c = r.desk.ClientRect(h);
                if (!c) return;
                view.Rows = (c->Height() - sim::score_window::Height(0)) / sim::score_window::kLinePitch;
                r.desk.SetClientImage(h, sim::RenderScoreWindow(view, r.glyphs));
            });
        Lines got;
        // Three rows more are enough within four captures; five are not, and
        // the caller gets what the last attempt read.
        EXPECT_EQ(r.Score(got), count == 6 ? 0 : 2);
        EXPECT_EQ(got, Lines(view.Lines.begin(), view.Lines.begin() + 7 - (count == 6)));
        const platform::Rect c = r.desk.ClientRect(h).value_or(platform::Rect{});
        const platform::Rect w = r.desk.WindowRect(h).value_or(platform::Rect{});
        EXPECT_EQ(c.Height(), sim::score_window::Height(count == 6 ? 7 : 8)) << "one line pitch more per capture";
        EXPECT_TRUE(w.Left == 0 && w.Top == 40) << "moved to the screen's left edge, top kept";
    }
}
